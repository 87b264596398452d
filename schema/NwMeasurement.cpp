// Cells as heard on the air, for the five radio technologies.

#include <trelvo/schema/CdmaNwMeasurement.h>
#include <trelvo/schema/EUtraNwMeasurement.h>
#include <trelvo/schema/GeranNwMeasurement.h>
#include <trelvo/schema/UtraFddNwMeasurement.h>
#include <trelvo/schema/UtraTddNwMeasurement.h>

#include "objects/FieldTable.h"
#include "objects/MakeObject.h"
#include "schema/ClassIds.h"
#include "schema/Records.h"

namespace trelvo::schema {

// GERAN

struct GeranNwMeasurement::Fields
    : gom::FieldTable<gom::Mask8,  // wire order
                      gom::Field<HasFrequencyInfo, &GeranNwMeasurement::m_frequencyInfo>,
                      gom::Field<HasLac, &GeranNwMeasurement::m_lac>,
                      gom::Field<HasCid, &GeranNwMeasurement::m_cid>,
                      gom::Field<HasRxLevel, &GeranNwMeasurement::m_rxLevel>> {};

GeranNwMeasurement::GeranNwMeasurement() : ObjectBase(kGeranNwMeasurement) {}

GeranNwMeasurement::GeranNwMeasurement(const gom::SharedPointer<GeranFrequencyInfo>& frequencyInfo)
    : GeranNwMeasurement() {
  setFrequencyInfo(frequencyInfo);
}

gom::SharedPointer<GeranNwMeasurement> GeranNwMeasurement::create() {
  return gom::makeObject<GeranNwMeasurement>();
}
gom::SharedPointer<GeranNwMeasurement> GeranNwMeasurement::create(
    const gom::SharedPointer<GeranFrequencyInfo>& frequencyInfo) {
  return gom::makeObject<GeranNwMeasurement>(frequencyInfo);
}
gom::SharedPointer<GeranNwMeasurement> GeranNwMeasurement::create(
    const gom::SharedPointer<GeranNwMeasurement>& other) {
  return gom::copyObject(other);
}

void GeranNwMeasurement::dump() const { gom::dumpNested<Fields>(*this); }
GeranNwMeasurement* GeranNwMeasurement::clone() const { return gom::cloneRecord<Fields>(*this); }
bool GeranNwMeasurement::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
void GeranNwMeasurement::unset(unsigned int mask) {
  gom::releaseHandles<Fields>(*this, mask);
  ObjectBase::unset(mask);
}
bool GeranNwMeasurement::write(IStream& stream) const { return gom::writeRecord(*this, stream); }
bool GeranNwMeasurement::read(IStream& stream) { return gom::readRecord<Fields>(*this, stream); }
bool GeranNwMeasurement::operator==(const GeranNwMeasurement& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

gom::SharedPointer<GeranFrequencyInfo> GeranNwMeasurement::frequencyInfo() const {
  return fieldIfSet(HasFrequencyInfo, m_frequencyInfo);
}
Status GeranNwMeasurement::setFrequencyInfo(
    const gom::SharedPointer<GeranFrequencyInfo>& frequencyInfo) {
  return setField(HasFrequencyInfo, m_frequencyInfo, frequencyInfo);
}
Status GeranNwMeasurement::setLac(unsigned short lac) { return setField(HasLac, m_lac, lac); }
Status GeranNwMeasurement::setCid(unsigned short cid) { return setField(HasCid, m_cid, cid); }
Status GeranNwMeasurement::setRxLevel(unsigned char rxLevel) {
  return setField(HasRxLevel, m_rxLevel, rxLevel);
}

// UTRA FDD

struct UtraFddNwMeasurement::Fields
    : gom::FieldTable<gom::Mask8,  // wire order
                      gom::Field<HasFrequencyInfo, &UtraFddNwMeasurement::m_frequencyInfo>,
                      gom::Field<HasUcid, &UtraFddNwMeasurement::m_ucid>,
                      gom::Field<HasUarfcnUl, &UtraFddNwMeasurement::m_uarfcnUl>,
                      gom::Field<HasUtraCarrierRssi, &UtraFddNwMeasurement::m_utraCarrierRssi>,
                      gom::Field<HasEcNo, &UtraFddNwMeasurement::m_ecNo>,
                      gom::Field<HasRscp, &UtraFddNwMeasurement::m_rscp>,
                      gom::Field<HasPathloss, &UtraFddNwMeasurement::m_pathloss>> {};

UtraFddNwMeasurement::UtraFddNwMeasurement() : ObjectBase(kUtraFddNwMeasurement) {}

UtraFddNwMeasurement::UtraFddNwMeasurement(
    const gom::SharedPointer<UtraFddFrequencyInfo>& frequencyInfo)
    : UtraFddNwMeasurement() {
  setFrequencyInfo(frequencyInfo);
}

gom::SharedPointer<UtraFddNwMeasurement> UtraFddNwMeasurement::create() {
  return gom::makeObject<UtraFddNwMeasurement>();
}
gom::SharedPointer<UtraFddNwMeasurement> UtraFddNwMeasurement::create(
    const gom::SharedPointer<UtraFddFrequencyInfo>& frequencyInfo) {
  return gom::makeObject<UtraFddNwMeasurement>(frequencyInfo);
}
gom::SharedPointer<UtraFddNwMeasurement> UtraFddNwMeasurement::create(
    const gom::SharedPointer<UtraFddNwMeasurement>& other) {
  return gom::copyObject(other);
}

void UtraFddNwMeasurement::dump() const { gom::dumpNested<Fields>(*this); }
UtraFddNwMeasurement* UtraFddNwMeasurement::clone() const {
  return gom::cloneRecord<Fields>(*this);
}
bool UtraFddNwMeasurement::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
void UtraFddNwMeasurement::unset(unsigned int mask) {
  gom::releaseHandles<Fields>(*this, mask);
  ObjectBase::unset(mask);
}
bool UtraFddNwMeasurement::write(IStream& stream) const { return gom::writeRecord(*this, stream); }
bool UtraFddNwMeasurement::read(IStream& stream) { return gom::readRecord<Fields>(*this, stream); }
bool UtraFddNwMeasurement::operator==(const UtraFddNwMeasurement& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

gom::SharedPointer<UtraFddFrequencyInfo> UtraFddNwMeasurement::frequencyInfo() const {
  return fieldIfSet(HasFrequencyInfo, m_frequencyInfo);
}
Status UtraFddNwMeasurement::setFrequencyInfo(
    const gom::SharedPointer<UtraFddFrequencyInfo>& frequencyInfo) {
  return setField(HasFrequencyInfo, m_frequencyInfo, frequencyInfo);
}
Status UtraFddNwMeasurement::setUcid(unsigned int ucid) { return setField(HasUcid, m_ucid, ucid); }
Status UtraFddNwMeasurement::setUarfcnUl(unsigned short uarfcnUl) {
  return setField(HasUarfcnUl, m_uarfcnUl, uarfcnUl);
}
Status UtraFddNwMeasurement::setUtraCarrierRssi(unsigned char utraCarrierRssi) {
  return setField(HasUtraCarrierRssi, m_utraCarrierRssi, utraCarrierRssi);
}
Status UtraFddNwMeasurement::setEcNo(unsigned char ecNo) { return setField(HasEcNo, m_ecNo, ecNo); }
Status UtraFddNwMeasurement::setRscp(signed char rscp) { return setField(HasRscp, m_rscp, rscp); }
Status UtraFddNwMeasurement::setPathloss(unsigned char pathloss) {
  return setField(HasPathloss, m_pathloss, pathloss);
}

// UTRA TDD

struct UtraTddNwMeasurement::Fields
    : gom::FieldTable<gom::Mask8,  // wire order
                      gom::Field<HasFrequencyInfo, &UtraTddNwMeasurement::m_frequencyInfo>,
                      gom::Field<HasUcid, &UtraTddNwMeasurement::m_ucid>,
                      gom::Field<HasUtraCarrierRssi, &UtraTddNwMeasurement::m_utraCarrierRssi>,
                      gom::Field<HasRscp, &UtraTddNwMeasurement::m_rscp>,
                      gom::Field<HasPathloss, &UtraTddNwMeasurement::m_pathloss>> {};

UtraTddNwMeasurement::UtraTddNwMeasurement() : ObjectBase(kUtraTddNwMeasurement) {}

UtraTddNwMeasurement::UtraTddNwMeasurement(
    const gom::SharedPointer<UtraTddFrequencyInfo>& frequencyInfo)
    : UtraTddNwMeasurement() {
  setFrequencyInfo(frequencyInfo);
}

gom::SharedPointer<UtraTddNwMeasurement> UtraTddNwMeasurement::create() {
  return gom::makeObject<UtraTddNwMeasurement>();
}
gom::SharedPointer<UtraTddNwMeasurement> UtraTddNwMeasurement::create(
    const gom::SharedPointer<UtraTddFrequencyInfo>& frequencyInfo) {
  return gom::makeObject<UtraTddNwMeasurement>(frequencyInfo);
}
gom::SharedPointer<UtraTddNwMeasurement> UtraTddNwMeasurement::create(
    const gom::SharedPointer<UtraTddNwMeasurement>& other) {
  return gom::copyObject(other);
}

void UtraTddNwMeasurement::dump() const { gom::dumpNested<Fields>(*this); }
UtraTddNwMeasurement* UtraTddNwMeasurement::clone() const {
  return gom::cloneRecord<Fields>(*this);
}
bool UtraTddNwMeasurement::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
void UtraTddNwMeasurement::unset(unsigned int mask) {
  gom::releaseHandles<Fields>(*this, mask);
  ObjectBase::unset(mask);
}
bool UtraTddNwMeasurement::write(IStream& stream) const { return gom::writeRecord(*this, stream); }
bool UtraTddNwMeasurement::read(IStream& stream) { return gom::readRecord<Fields>(*this, stream); }
bool UtraTddNwMeasurement::operator==(const UtraTddNwMeasurement& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

gom::SharedPointer<UtraTddFrequencyInfo> UtraTddNwMeasurement::frequencyInfo() const {
  return fieldIfSet(HasFrequencyInfo, m_frequencyInfo);
}
Status UtraTddNwMeasurement::setFrequencyInfo(
    const gom::SharedPointer<UtraTddFrequencyInfo>& frequencyInfo) {
  return setField(HasFrequencyInfo, m_frequencyInfo, frequencyInfo);
}
Status UtraTddNwMeasurement::setUcid(unsigned int ucid) { return setField(HasUcid, m_ucid, ucid); }
Status UtraTddNwMeasurement::setUtraCarrierRssi(unsigned char utraCarrierRssi) {
  return setField(HasUtraCarrierRssi, m_utraCarrierRssi, utraCarrierRssi);
}
Status UtraTddNwMeasurement::setRscp(signed char rscp) { return setField(HasRscp, m_rscp, rscp); }
Status UtraTddNwMeasurement::setPathloss(unsigned char pathloss) {
  return setField(HasPathloss, m_pathloss, pathloss);
}

// E-UTRA

struct EUtraNwMeasurement::Fields
    : gom::FieldTable<gom::Mask8,  // wire order
                      gom::Field<HasFrequencyInfo, &EUtraNwMeasurement::m_frequencyInfo>,
                      gom::Field<HasUcid, &EUtraNwMeasurement::m_ucid>,
                      gom::Field<HasTac, &EUtraNwMeasurement::m_tac>,
                      gom::Field<HasRsrp, &EUtraNwMeasurement::m_rsrp>,
                      gom::Field<HasRsrq, &EUtraNwMeasurement::m_rsrq>> {};

EUtraNwMeasurement::EUtraNwMeasurement() : ObjectBase(kEUtraNwMeasurement) {}

EUtraNwMeasurement::EUtraNwMeasurement(const gom::SharedPointer<EUtraFrequencyInfo>& frequencyInfo)
    : EUtraNwMeasurement() {
  setFrequencyInfo(frequencyInfo);
}

gom::SharedPointer<EUtraNwMeasurement> EUtraNwMeasurement::create() {
  return gom::makeObject<EUtraNwMeasurement>();
}
gom::SharedPointer<EUtraNwMeasurement> EUtraNwMeasurement::create(
    const gom::SharedPointer<EUtraFrequencyInfo>& frequencyInfo) {
  return gom::makeObject<EUtraNwMeasurement>(frequencyInfo);
}
gom::SharedPointer<EUtraNwMeasurement> EUtraNwMeasurement::create(
    const gom::SharedPointer<EUtraNwMeasurement>& other) {
  return gom::copyObject(other);
}

void EUtraNwMeasurement::dump() const { gom::dumpNested<Fields>(*this); }
EUtraNwMeasurement* EUtraNwMeasurement::clone() const { return gom::cloneRecord<Fields>(*this); }
bool EUtraNwMeasurement::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
void EUtraNwMeasurement::unset(unsigned int mask) {
  gom::releaseHandles<Fields>(*this, mask);
  ObjectBase::unset(mask);
}
bool EUtraNwMeasurement::write(IStream& stream) const { return gom::writeRecord(*this, stream); }
bool EUtraNwMeasurement::read(IStream& stream) { return gom::readRecord<Fields>(*this, stream); }
bool EUtraNwMeasurement::operator==(const EUtraNwMeasurement& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

gom::SharedPointer<EUtraFrequencyInfo> EUtraNwMeasurement::frequencyInfo() const {
  return fieldIfSet(HasFrequencyInfo, m_frequencyInfo);
}
Status EUtraNwMeasurement::setFrequencyInfo(
    const gom::SharedPointer<EUtraFrequencyInfo>& frequencyInfo) {
  return setField(HasFrequencyInfo, m_frequencyInfo, frequencyInfo);
}
Status EUtraNwMeasurement::setUcid(unsigned int ucid) { return setField(HasUcid, m_ucid, ucid); }
Status EUtraNwMeasurement::setTac(unsigned short tac) { return setField(HasTac, m_tac, tac); }
Status EUtraNwMeasurement::setRsrp(unsigned char rsrp) { return setField(HasRsrp, m_rsrp, rsrp); }
Status EUtraNwMeasurement::setRsrq(unsigned char rsrq) { return setField(HasRsrq, m_rsrq, rsrq); }

// CDMA

struct CdmaNwMeasurement::Fields
    : gom::FieldTable<gom::Mask8,  // wire order
                      gom::Field<HasFrequencyInfo, &CdmaNwMeasurement::m_frequencyInfo>> {};

CdmaNwMeasurement::CdmaNwMeasurement() : ObjectBase(kCdmaNwMeasurement) {}

CdmaNwMeasurement::CdmaNwMeasurement(const gom::SharedPointer<CdmaFrequencyInfo>& frequencyInfo)
    : CdmaNwMeasurement() {
  setFrequencyInfo(frequencyInfo);
}

gom::SharedPointer<CdmaNwMeasurement> CdmaNwMeasurement::create() {
  return gom::makeObject<CdmaNwMeasurement>();
}
gom::SharedPointer<CdmaNwMeasurement> CdmaNwMeasurement::create(
    const gom::SharedPointer<CdmaFrequencyInfo>& frequencyInfo) {
  return gom::makeObject<CdmaNwMeasurement>(frequencyInfo);
}
gom::SharedPointer<CdmaNwMeasurement> CdmaNwMeasurement::create(
    const gom::SharedPointer<CdmaNwMeasurement>& other) {
  return gom::copyObject(other);
}

void CdmaNwMeasurement::dump() const { gom::dumpNested<Fields>(*this); }
CdmaNwMeasurement* CdmaNwMeasurement::clone() const { return gom::cloneRecord<Fields>(*this); }
bool CdmaNwMeasurement::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
void CdmaNwMeasurement::unset(unsigned int mask) {
  gom::releaseHandles<Fields>(*this, mask);
  ObjectBase::unset(mask);
}
bool CdmaNwMeasurement::write(IStream& stream) const { return gom::writeRecord(*this, stream); }
bool CdmaNwMeasurement::read(IStream& stream) { return gom::readRecord<Fields>(*this, stream); }
bool CdmaNwMeasurement::operator==(const CdmaNwMeasurement& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

gom::SharedPointer<CdmaFrequencyInfo> CdmaNwMeasurement::frequencyInfo() const {
  return fieldIfSet(HasFrequencyInfo, m_frequencyInfo);
}
Status CdmaNwMeasurement::setFrequencyInfo(
    const gom::SharedPointer<CdmaFrequencyInfo>& frequencyInfo) {
  return setField(HasFrequencyInfo, m_frequencyInfo, frequencyInfo);
}

}  // namespace trelvo::schema

template struct trelvo::gom::RecordAccess<trelvo::schema::GeranNwMeasurement>;
template struct trelvo::gom::RecordAccess<trelvo::schema::UtraFddNwMeasurement>;
template struct trelvo::gom::RecordAccess<trelvo::schema::UtraTddNwMeasurement>;
template struct trelvo::gom::RecordAccess<trelvo::schema::EUtraNwMeasurement>;
template struct trelvo::gom::RecordAccess<trelvo::schema::CdmaNwMeasurement>;
