// The cell identities of the radio technologies.

#include <trelvo/schema/CdmaCellDn.h>
#include <trelvo/schema/EUtraCellDn.h>
#include <trelvo/schema/GeranCellDn.h>
#include <trelvo/schema/UtraCellDn.h>

#include "objects/FieldTable.h"
#include "objects/MakeObject.h"
#include "schema/ClassIds.h"

namespace trelvo::schema {

// GERAN

struct GeranCellDn::Fields
    : gom::FieldTable<
          gom::Mask8,  // wire order
          gom::Field<HasMcc, &GeranCellDn::m_mcc>, gom::Field<HasMnc, &GeranCellDn::m_mnc>,
          gom::Field<HasLac, &GeranCellDn::m_lac>, gom::Field<HasCid, &GeranCellDn::m_cid>> {};

GeranCellDn::GeranCellDn() : ObjectBase(kGeranCellDn) {}

GeranCellDn::GeranCellDn(unsigned short mcc, unsigned short mnc, unsigned short lac,
                         unsigned short cid)
    : ObjectBase(kGeranCellDn), m_mcc(mcc), m_mnc(mnc), m_lac(lac), m_cid(cid) {
  valueSet(HasMcc | HasMnc | HasLac | HasCid);
}

gom::SharedPointer<GeranCellDn> GeranCellDn::create() { return gom::makeObject<GeranCellDn>(); }
gom::SharedPointer<GeranCellDn> GeranCellDn::create(unsigned short mcc, unsigned short mnc,
                                                    unsigned short lac, unsigned short cid) {
  return gom::makeObject<GeranCellDn>(mcc, mnc, lac, cid);
}
gom::SharedPointer<GeranCellDn> GeranCellDn::create(const gom::SharedPointer<GeranCellDn>& other) {
  return gom::copyObject(other);
}

void GeranCellDn::dump() const {}
GeranCellDn* GeranCellDn::clone() const { return gom::cloneRecord<Fields>(*this); }
bool GeranCellDn::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
bool GeranCellDn::write(IStream& stream) const { return gom::writeRecord(*this, stream); }
bool GeranCellDn::read(IStream& stream) { return gom::readRecord<Fields>(*this, stream); }
bool GeranCellDn::operator==(const GeranCellDn& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

Status GeranCellDn::setMcc(unsigned short mcc) { return setField(HasMcc, m_mcc, mcc); }
Status GeranCellDn::setMnc(unsigned short mnc) { return setField(HasMnc, m_mnc, mnc); }
Status GeranCellDn::setLac(unsigned short lac) { return setField(HasLac, m_lac, lac); }
Status GeranCellDn::setCid(unsigned short cid) { return setField(HasCid, m_cid, cid); }

// UTRA

struct UtraCellDn::Fields : gom::FieldTable<gom::Mask8,  // wire order
                                            gom::Field<HasMcc, &UtraCellDn::m_mcc>,
                                            gom::Field<HasMnc, &UtraCellDn::m_mnc>,
                                            gom::Field<HasUcid, &UtraCellDn::m_ucid>> {};

UtraCellDn::UtraCellDn() : ObjectBase(kUtraCellDn) {}

UtraCellDn::UtraCellDn(unsigned short mcc, unsigned short mnc, unsigned int ucid)
    : ObjectBase(kUtraCellDn), m_mcc(mcc), m_mnc(mnc), m_ucid(ucid) {
  valueSet(HasMcc | HasMnc | HasUcid);
}

gom::SharedPointer<UtraCellDn> UtraCellDn::create() { return gom::makeObject<UtraCellDn>(); }
gom::SharedPointer<UtraCellDn> UtraCellDn::create(unsigned short mcc, unsigned short mnc,
                                                  unsigned int ucid) {
  return gom::makeObject<UtraCellDn>(mcc, mnc, ucid);
}
gom::SharedPointer<UtraCellDn> UtraCellDn::create(const gom::SharedPointer<UtraCellDn>& other) {
  return gom::copyObject(other);
}

void UtraCellDn::dump() const {}
UtraCellDn* UtraCellDn::clone() const { return gom::cloneRecord<Fields>(*this); }
bool UtraCellDn::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
bool UtraCellDn::write(IStream& stream) const { return gom::writeRecord(*this, stream); }
bool UtraCellDn::read(IStream& stream) { return gom::readRecord<Fields>(*this, stream); }
bool UtraCellDn::operator==(const UtraCellDn& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

Status UtraCellDn::setMcc(unsigned short mcc) { return setField(HasMcc, m_mcc, mcc); }
Status UtraCellDn::setMnc(unsigned short mnc) { return setField(HasMnc, m_mnc, mnc); }
Status UtraCellDn::setUcid(unsigned int ucid) { return setField(HasUcid, m_ucid, ucid); }

unsigned short UtraCellDn::rncId() const noexcept {
  unsigned short rncId = 0;
  unsigned short cid = 0;
  splitUcid(m_ucid, rncId, cid);
  return rncId;
}

unsigned short UtraCellDn::cid() const noexcept {
  unsigned short rncId = 0;
  unsigned short cid = 0;
  splitUcid(m_ucid, rncId, cid);
  return cid;
}

void UtraCellDn::splitUcid(unsigned int ucid, unsigned short& rncId, unsigned short& cid) noexcept {
  rncId = static_cast<unsigned short>(ucid >> 16 & 0xFFF);
  cid = static_cast<unsigned short>(ucid & 0xFFFF);
}

unsigned int UtraCellDn::mergeUcid(unsigned short rncId, unsigned short cid) noexcept {
  return static_cast<unsigned int>(rncId) << 16 | cid;
}

// E-UTRA

struct EUtraCellDn::Fields : gom::FieldTable<gom::Mask8,  // wire order
                                             gom::Field<HasMcc, &EUtraCellDn::m_mcc>,
                                             gom::Field<HasMnc, &EUtraCellDn::m_mnc>,
                                             gom::Field<HasUcid, &EUtraCellDn::m_ucid>> {};

EUtraCellDn::EUtraCellDn() : ObjectBase(kEUtraCellDn) {}

EUtraCellDn::EUtraCellDn(unsigned short mcc, unsigned short mnc, unsigned int ucid)
    : ObjectBase(kEUtraCellDn), m_mcc(mcc), m_mnc(mnc), m_ucid(ucid) {
  valueSet(HasMcc | HasMnc | HasUcid);
}

gom::SharedPointer<EUtraCellDn> EUtraCellDn::create() { return gom::makeObject<EUtraCellDn>(); }
gom::SharedPointer<EUtraCellDn> EUtraCellDn::create(unsigned short mcc, unsigned short mnc,
                                                    unsigned int ucid) {
  return gom::makeObject<EUtraCellDn>(mcc, mnc, ucid);
}
gom::SharedPointer<EUtraCellDn> EUtraCellDn::create(const gom::SharedPointer<EUtraCellDn>& other) {
  return gom::copyObject(other);
}

void EUtraCellDn::dump() const {}
EUtraCellDn* EUtraCellDn::clone() const { return gom::cloneRecord<Fields>(*this); }
bool EUtraCellDn::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
bool EUtraCellDn::write(IStream& stream) const { return gom::writeRecord(*this, stream); }
bool EUtraCellDn::read(IStream& stream) { return gom::readRecord<Fields>(*this, stream); }
bool EUtraCellDn::operator==(const EUtraCellDn& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

Status EUtraCellDn::setMcc(unsigned short mcc) { return setField(HasMcc, m_mcc, mcc); }
Status EUtraCellDn::setMnc(unsigned short mnc) { return setField(HasMnc, m_mnc, mnc); }
Status EUtraCellDn::setUcid(unsigned int ucid) { return setField(HasUcid, m_ucid, ucid); }

unsigned int EUtraCellDn::eNodeBId() const noexcept {
  unsigned int eNodeBId = 0;
  unsigned char lcid = 0;
  splitUcid(m_ucid, eNodeBId, lcid);
  return eNodeBId;
}

unsigned char EUtraCellDn::lcid() const noexcept {
  unsigned int eNodeBId = 0;
  unsigned char lcid = 0;
  splitUcid(m_ucid, eNodeBId, lcid);
  return lcid;
}

void EUtraCellDn::splitUcid(unsigned int ucid, unsigned int& eNodeBId,
                            unsigned char& lcid) noexcept {
  eNodeBId = ucid >> 8 & 0xFFFFF;
  lcid = static_cast<unsigned char>(ucid & 0xFF);
}

unsigned int EUtraCellDn::mergeUcid(unsigned int eNodeBId, unsigned char lcid) noexcept {
  return eNodeBId << 8 | lcid;
}

// CDMA

struct CdmaCellDn::Fields : gom::FieldTable<gom::Mask8,  // wire order
                                            gom::Field<HasSid, &CdmaCellDn::m_sid>,
                                            gom::Field<HasNid, &CdmaCellDn::m_nid>,
                                            gom::Field<HasBsid, &CdmaCellDn::m_bsid>> {};

CdmaCellDn::CdmaCellDn() : ObjectBase(kCdmaCellDn) {}

CdmaCellDn::CdmaCellDn(unsigned short sid, unsigned short nid, unsigned short bsid)
    : ObjectBase(kCdmaCellDn), m_sid(sid), m_nid(nid), m_bsid(bsid) {
  valueSet(HasSid | HasNid | HasBsid);
}

gom::SharedPointer<CdmaCellDn> CdmaCellDn::create() { return gom::makeObject<CdmaCellDn>(); }
gom::SharedPointer<CdmaCellDn> CdmaCellDn::create(unsigned short sid, unsigned short nid,
                                                  unsigned short bsid) {
  return gom::makeObject<CdmaCellDn>(sid, nid, bsid);
}
gom::SharedPointer<CdmaCellDn> CdmaCellDn::create(const gom::SharedPointer<CdmaCellDn>& other) {
  return gom::copyObject(other);
}

void CdmaCellDn::dump() const {}
CdmaCellDn* CdmaCellDn::clone() const { return gom::cloneRecord<Fields>(*this); }
bool CdmaCellDn::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
bool CdmaCellDn::write(IStream& stream) const { return gom::writeRecord(*this, stream); }
bool CdmaCellDn::read(IStream& stream) { return gom::readRecord<Fields>(*this, stream); }
bool CdmaCellDn::operator==(const CdmaCellDn& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

Status CdmaCellDn::setSid(unsigned short sid) { return setField(HasSid, m_sid, sid); }
Status CdmaCellDn::setNid(unsigned short nid) { return setField(HasNid, m_nid, nid); }
Status CdmaCellDn::setBsid(unsigned short bsid) { return setField(HasBsid, m_bsid, bsid); }

}  // namespace trelvo::schema

template struct trelvo::gom::RecordAccess<trelvo::schema::GeranCellDn>;
template struct trelvo::gom::RecordAccess<trelvo::schema::UtraCellDn>;
template struct trelvo::gom::RecordAccess<trelvo::schema::EUtraCellDn>;
template struct trelvo::gom::RecordAccess<trelvo::schema::CdmaCellDn>;
