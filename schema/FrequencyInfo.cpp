// How cells are told apart on the air, for the five radio technologies.

#include <trelvo/schema/CdmaFrequencyInfo.h>
#include <trelvo/schema/EUtraFrequencyInfo.h>
#include <trelvo/schema/GeranFrequencyInfo.h>
#include <trelvo/schema/UtraFddFrequencyInfo.h>
#include <trelvo/schema/UtraTddFrequencyInfo.h>

#include "objects/FieldTable.h"
#include "objects/MakeObject.h"
#include "schema/ClassIds.h"

namespace trelvo::schema {

// GERAN

struct GeranFrequencyInfo::Fields
    : gom::FieldTable<gom::Mask8,  // wire order
                      gom::Field<HasBsic, &GeranFrequencyInfo::m_bsic>,
                      gom::Field<HasArfcn, &GeranFrequencyInfo::m_arfcn>> {};

GeranFrequencyInfo::GeranFrequencyInfo() : ObjectBase(kGeranFrequencyInfo) {}

GeranFrequencyInfo::GeranFrequencyInfo(unsigned char bsic, unsigned short arfcn)
    : ObjectBase(kGeranFrequencyInfo), m_bsic(bsic), m_arfcn(arfcn) {
  valueSet(HasBsic | HasArfcn);
}

gom::SharedPointer<GeranFrequencyInfo> GeranFrequencyInfo::create() {
  return gom::makeObject<GeranFrequencyInfo>();
}
gom::SharedPointer<GeranFrequencyInfo> GeranFrequencyInfo::create(unsigned char bsic,
                                                                  unsigned short arfcn) {
  return gom::makeObject<GeranFrequencyInfo>(bsic, arfcn);
}
gom::SharedPointer<GeranFrequencyInfo> GeranFrequencyInfo::create(
    const gom::SharedPointer<GeranFrequencyInfo>& other) {
  return gom::copyObject(other);
}

void GeranFrequencyInfo::dump() const {}
GeranFrequencyInfo* GeranFrequencyInfo::clone() const { return gom::cloneRecord<Fields>(*this); }
bool GeranFrequencyInfo::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
bool GeranFrequencyInfo::write(IStream& stream) const { return gom::writeRecord(*this, stream); }
bool GeranFrequencyInfo::read(IStream& stream) { return gom::readRecord<Fields>(*this, stream); }
bool GeranFrequencyInfo::operator==(const GeranFrequencyInfo& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

Status GeranFrequencyInfo::setBsic(unsigned char bsic) { return setField(HasBsic, m_bsic, bsic); }
Status GeranFrequencyInfo::setArfcn(unsigned short arfcn) {
  return setField(HasArfcn, m_arfcn, arfcn);
}

// UTRA FDD

struct UtraFddFrequencyInfo::Fields
    : gom::FieldTable<gom::Mask8,  // wire order
                      gom::Field<HasUarfcnDl, &UtraFddFrequencyInfo::m_uarfcnDl>,
                      gom::Field<HasPcpich, &UtraFddFrequencyInfo::m_pcpich>> {};

UtraFddFrequencyInfo::UtraFddFrequencyInfo() : ObjectBase(kUtraFddFrequencyInfo) {}

UtraFddFrequencyInfo::UtraFddFrequencyInfo(unsigned short uarfcnDl, unsigned short pcpich)
    : ObjectBase(kUtraFddFrequencyInfo), m_uarfcnDl(uarfcnDl), m_pcpich(pcpich) {
  valueSet(HasUarfcnDl | HasPcpich);
}

gom::SharedPointer<UtraFddFrequencyInfo> UtraFddFrequencyInfo::create() {
  return gom::makeObject<UtraFddFrequencyInfo>();
}
gom::SharedPointer<UtraFddFrequencyInfo> UtraFddFrequencyInfo::create(unsigned short uarfcnDl,
                                                                      unsigned short pcpich) {
  return gom::makeObject<UtraFddFrequencyInfo>(uarfcnDl, pcpich);
}
gom::SharedPointer<UtraFddFrequencyInfo> UtraFddFrequencyInfo::create(
    const gom::SharedPointer<UtraFddFrequencyInfo>& other) {
  return gom::copyObject(other);
}

void UtraFddFrequencyInfo::dump() const {}
UtraFddFrequencyInfo* UtraFddFrequencyInfo::clone() const {
  return gom::cloneRecord<Fields>(*this);
}
bool UtraFddFrequencyInfo::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
bool UtraFddFrequencyInfo::write(IStream& stream) const { return gom::writeRecord(*this, stream); }
bool UtraFddFrequencyInfo::read(IStream& stream) { return gom::readRecord<Fields>(*this, stream); }
bool UtraFddFrequencyInfo::operator==(const UtraFddFrequencyInfo& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

Status UtraFddFrequencyInfo::setUarfcnDl(unsigned short uarfcnDl) {
  return setField(HasUarfcnDl, m_uarfcnDl, uarfcnDl);
}
Status UtraFddFrequencyInfo::setPcpich(unsigned short pcpich) {
  return setField(HasPcpich, m_pcpich, pcpich);
}

// UTRA TDD

struct UtraTddFrequencyInfo::Fields
    : gom::FieldTable<gom::Mask8,  // wire order
                      gom::Field<HasUarfcn, &UtraTddFrequencyInfo::m_uarfcn>,
                      gom::Field<HasCellParam, &UtraTddFrequencyInfo::m_cellParam>> {};

UtraTddFrequencyInfo::UtraTddFrequencyInfo() : ObjectBase(kUtraTddFrequencyInfo) {}

UtraTddFrequencyInfo::UtraTddFrequencyInfo(unsigned short uarfcn, unsigned char cellParam)
    : ObjectBase(kUtraTddFrequencyInfo), m_uarfcn(uarfcn), m_cellParam(cellParam) {
  valueSet(HasUarfcn | HasCellParam);
}

gom::SharedPointer<UtraTddFrequencyInfo> UtraTddFrequencyInfo::create() {
  return gom::makeObject<UtraTddFrequencyInfo>();
}
gom::SharedPointer<UtraTddFrequencyInfo> UtraTddFrequencyInfo::create(unsigned short uarfcn,
                                                                      unsigned char cellParam) {
  return gom::makeObject<UtraTddFrequencyInfo>(uarfcn, cellParam);
}
gom::SharedPointer<UtraTddFrequencyInfo> UtraTddFrequencyInfo::create(
    const gom::SharedPointer<UtraTddFrequencyInfo>& other) {
  return gom::copyObject(other);
}

void UtraTddFrequencyInfo::dump() const {}
UtraTddFrequencyInfo* UtraTddFrequencyInfo::clone() const {
  return gom::cloneRecord<Fields>(*this);
}
bool UtraTddFrequencyInfo::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
bool UtraTddFrequencyInfo::write(IStream& stream) const { return gom::writeRecord(*this, stream); }
bool UtraTddFrequencyInfo::read(IStream& stream) { return gom::readRecord<Fields>(*this, stream); }
bool UtraTddFrequencyInfo::operator==(const UtraTddFrequencyInfo& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

Status UtraTddFrequencyInfo::setUarfcn(unsigned short uarfcn) {
  return setField(HasUarfcn, m_uarfcn, uarfcn);
}
Status UtraTddFrequencyInfo::setCellParam(unsigned char cellParam) {
  return setField(HasCellParam, m_cellParam, cellParam);
}

// E-UTRA

struct EUtraFrequencyInfo::Fields
    : gom::FieldTable<gom::Mask8,  // wire order
                      gom::Field<HasEarfcn, &EUtraFrequencyInfo::m_earfcn>,
                      gom::Field<HasPci, &EUtraFrequencyInfo::m_pci>> {};

EUtraFrequencyInfo::EUtraFrequencyInfo() : ObjectBase(kEUtraFrequencyInfo) {}

EUtraFrequencyInfo::EUtraFrequencyInfo(unsigned short earfcn, unsigned short pci)
    : ObjectBase(kEUtraFrequencyInfo), m_earfcn(earfcn), m_pci(pci) {
  valueSet(HasEarfcn | HasPci);
}

gom::SharedPointer<EUtraFrequencyInfo> EUtraFrequencyInfo::create() {
  return gom::makeObject<EUtraFrequencyInfo>();
}
gom::SharedPointer<EUtraFrequencyInfo> EUtraFrequencyInfo::create(unsigned short earfcn,
                                                                  unsigned short pci) {
  return gom::makeObject<EUtraFrequencyInfo>(earfcn, pci);
}
gom::SharedPointer<EUtraFrequencyInfo> EUtraFrequencyInfo::create(
    const gom::SharedPointer<EUtraFrequencyInfo>& other) {
  return gom::copyObject(other);
}

void EUtraFrequencyInfo::dump() const {}
EUtraFrequencyInfo* EUtraFrequencyInfo::clone() const { return gom::cloneRecord<Fields>(*this); }
bool EUtraFrequencyInfo::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
bool EUtraFrequencyInfo::write(IStream& stream) const { return gom::writeRecord(*this, stream); }
bool EUtraFrequencyInfo::read(IStream& stream) { return gom::readRecord<Fields>(*this, stream); }
bool EUtraFrequencyInfo::operator==(const EUtraFrequencyInfo& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

Status EUtraFrequencyInfo::setEarfcn(unsigned short earfcn) {
  return setField(HasEarfcn, m_earfcn, earfcn);
}
Status EUtraFrequencyInfo::setPci(unsigned short pci) { return setField(HasPci, m_pci, pci); }

// CDMA

struct CdmaFrequencyInfo::Fields : gom::FieldTable<gom::Mask8> {};

CdmaFrequencyInfo::CdmaFrequencyInfo() : ObjectBase(kCdmaFrequencyInfo) {}

gom::SharedPointer<CdmaFrequencyInfo> CdmaFrequencyInfo::create() {
  return gom::makeObject<CdmaFrequencyInfo>();
}
gom::SharedPointer<CdmaFrequencyInfo> CdmaFrequencyInfo::create(
    const gom::SharedPointer<CdmaFrequencyInfo>& other) {
  return gom::copyObject(other);
}

void CdmaFrequencyInfo::dump() const {}
CdmaFrequencyInfo* CdmaFrequencyInfo::clone() const { return gom::cloneRecord<Fields>(*this); }
bool CdmaFrequencyInfo::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
bool CdmaFrequencyInfo::write(IStream& stream) const { return gom::writeRecord(*this, stream); }
bool CdmaFrequencyInfo::read(IStream& stream) { return gom::readRecord<Fields>(*this, stream); }
bool CdmaFrequencyInfo::operator==(const CdmaFrequencyInfo& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

}  // namespace trelvo::schema

template struct trelvo::gom::RecordAccess<trelvo::schema::GeranFrequencyInfo>;
template struct trelvo::gom::RecordAccess<trelvo::schema::UtraFddFrequencyInfo>;
template struct trelvo::gom::RecordAccess<trelvo::schema::UtraTddFrequencyInfo>;
template struct trelvo::gom::RecordAccess<trelvo::schema::EUtraFrequencyInfo>;
template struct trelvo::gom::RecordAccess<trelvo::schema::CdmaFrequencyInfo>;
