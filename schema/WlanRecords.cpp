// What is known of WLAN access points, as flat records.

#include <algorithm>
#include <cstring>

#include <trelvo/schema/Wlan.h>
#include <trelvo/schema/WlanApMeasurement.h>
#include <trelvo/schema/WlanDn.h>

#include "objects/FieldTable.h"
#include "objects/MakeObject.h"
#include "schema/BssidText.h"
#include "schema/ClassIds.h"
#include "schema/Records.h"

namespace trelvo::schema {

// A WlanDn has no table of fields: its one bit covers a length byte and that many bytes.

WlanDn::WlanDn() : ObjectBase(kWlanDn) {}
WlanDn::WlanDn(unsigned long long bssid) : WlanDn() { setBssid(bssid); }

gom::SharedPointer<WlanDn> WlanDn::create() { return gom::makeObject<WlanDn>(); }
gom::SharedPointer<WlanDn> WlanDn::create(unsigned long long bssid) {
  return gom::makeObject<WlanDn>(bssid);
}
gom::SharedPointer<WlanDn> WlanDn::create(const gom::SharedPointer<WlanDn>& other) {
  return gom::copyObject(other);
}

void WlanDn::dump() const { dumpShort(); }

void WlanDn::dumpShort() const {
  unsigned int length = 0;
  if (const unsigned char* const bytes = getBssid(length)) {
    static_cast<void>(bssidText(bytes, length));
  }
}

WlanDn* WlanDn::clone() const {
  auto copy = std::make_unique<WlanDn>();
  std::copy(std::begin(m_bssid), std::end(m_bssid), copy->m_bssid);
  copy->m_bssidLength = m_bssidLength;
  return copy->cloneFrom(*this) == StatusOk ? copy.release() : nullptr;
}

bool WlanDn::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}

void WlanDn::unset(unsigned int mask) {
  if (mask == HasBssid) {
    m_bssidLength = 0;
  }
  ObjectBase::unset(mask);
}

bool WlanDn::write(IStream& stream) const { return gom::writeRecord(*this, stream); }

bool WlanDn::read(IStream& stream) {
  unset(HasBssid);
  WireReader reader(stream);
  return gom::RecordAccess<WlanDn>::read(*this, reader);
}

bool WlanDn::operator==(const WlanDn& other) const {
  const bool both = (values() & other.values() & HasBssid) != 0;
  if (both && (m_bssidLength != other.m_bssidLength ||
               std::memcmp(m_bssid, other.m_bssid, m_bssidLength) != 0)) {
    return false;
  }
  return ObjectBase::operator==(other);
}

unsigned long long WlanDn::bssid() const noexcept {
  unsigned int length = 0;
  const unsigned char* const bytes = getBssid(length);
  unsigned long long value = 0;
  for (unsigned int i = 0; i < length; ++i) {
    value = value << 8 | bytes[i];
    if (length == kMacLength && i == 2) {
      value = value << 16 | 0xFFFF;
    }
  }
  return value;
}

const unsigned char* WlanDn::getBssid(unsigned int& length) const noexcept {
  const bool there = (values() & HasBssid) != 0;
  length = there ? m_bssidLength : 0;
  return there ? m_bssid : nullptr;
}

Status WlanDn::setBssid(unsigned long long bssid) {
  unsigned char bytes[kLongLength];
  for (unsigned int i = 0; i < kLongLength; ++i) {
    bytes[i] = static_cast<unsigned char>(bssid >> (8 * (kLongLength - 1 - i)));
  }
  return setBssid(bytes, kLongLength);
}

Status WlanDn::setBssid(const unsigned char* bytes, unsigned int length) {
  if (bytes == nullptr || !isLength(length)) {
    return StatusInvalidParameter;
  }
  std::memmove(m_bssid, bytes, length);  // the bytes may be this record's own
  m_bssidLength = length;
  valueSet(HasBssid);
  return StatusOk;
}

struct WlanApMeasurement::Fields
    : gom::FieldTable<gom::Mask32,  // wire order
                      gom::Field<HasSsid, &WlanApMeasurement::m_ssid>,
                      gom::Field<HasRxLevel, &WlanApMeasurement::m_rxLevel>,
                      gom::Field<HasTxLevel, &WlanApMeasurement::m_txLevel>,
                      gom::Field<HasRssi, &WlanApMeasurement::m_rssi>,
                      gom::Field<HasDistance, &WlanApMeasurement::m_distance>,
                      gom::Field<HasDistanceUncertainty, &WlanApMeasurement::m_distanceUncertainty>,
                      gom::Field<HasBand, &WlanApMeasurement::m_band>,
                      gom::Field<HasApLatitude, &WlanApMeasurement::m_apLatitude>,
                      gom::Field<HasApLongitude, &WlanApMeasurement::m_apLongitude>> {};

WlanApMeasurement::WlanApMeasurement() : ObjectBase(kWlanApMeasurement) {}

gom::SharedPointer<WlanApMeasurement> WlanApMeasurement::create() {
  return gom::makeObject<WlanApMeasurement>();
}
gom::SharedPointer<WlanApMeasurement> WlanApMeasurement::create(
    const gom::SharedPointer<WlanApMeasurement>& other) {
  return gom::copyObject(other);
}

void WlanApMeasurement::dump() const {}
WlanApMeasurement* WlanApMeasurement::clone() const { return gom::cloneRecord<Fields>(*this); }
bool WlanApMeasurement::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
bool WlanApMeasurement::write(IStream& stream) const { return gom::writeRecord(*this, stream); }
bool WlanApMeasurement::read(IStream& stream) { return gom::readRecord<Fields>(*this, stream); }
bool WlanApMeasurement::operator==(const WlanApMeasurement& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

Status WlanApMeasurement::setSsid(unsigned short ssid) { return setField(HasSsid, m_ssid, ssid); }
Status WlanApMeasurement::setRxLevel(signed char rxLevel) {
  return setField(HasRxLevel, m_rxLevel, rxLevel);
}
Status WlanApMeasurement::setTxLevel(signed char txLevel) {
  return setField(HasTxLevel, m_txLevel, txLevel);
}
Status WlanApMeasurement::setRssi(unsigned char rssi) { return setField(HasRssi, m_rssi, rssi); }
Status WlanApMeasurement::setDistance(unsigned char distance) {
  return setField(HasDistance, m_distance, distance);
}
Status WlanApMeasurement::setDistanceUncertainty(unsigned char distanceUncertainty) {
  return setField(HasDistanceUncertainty, m_distanceUncertainty, distanceUncertainty);
}
Status WlanApMeasurement::setBand(unsigned char band) { return setField(HasBand, m_band, band); }
Status WlanApMeasurement::setApLatitude(int apLatitude) {
  return setField(HasApLatitude, m_apLatitude, apLatitude);
}
Status WlanApMeasurement::setApLongitude(int apLongitude) {
  return setField(HasApLongitude, m_apLongitude, apLongitude);
}

struct Wlan::Fields : gom::FieldTable<gom::NoWireForm, gom::Field<HasDn, &Wlan::m_dn>,
                                      gom::Field<HasCoverage, &Wlan::m_coverage>> {};

Wlan::Wlan() : ObjectBase(kWlan) {}
Wlan::Wlan(const gom::SharedPointer<WlanDn>& dn) : Wlan() { setDn(dn); }

gom::SharedPointer<Wlan> Wlan::create() { return gom::makeObject<Wlan>(); }
gom::SharedPointer<Wlan> Wlan::create(const gom::SharedPointer<WlanDn>& dn) {
  return gom::makeObject<Wlan>(dn);
}
gom::SharedPointer<Wlan> Wlan::create(const gom::SharedPointer<Wlan>& other) {
  return gom::copyObject(other);
}

void Wlan::dump() const { gom::dumpNested<Fields>(*this); }
Wlan* Wlan::clone() const { return gom::cloneRecord<Fields>(*this); }
bool Wlan::compare(const gom::ObjectBase* other) const { return gom::compareRecords(*this, other); }
bool Wlan::operator==(const Wlan& other) const { return gom::equalRecords<Fields>(*this, other); }

void Wlan::unset(unsigned int mask) {
  gom::releaseHandles<Fields>(*this, mask);
  ObjectBase::unset(mask);
}

gom::SharedPointer<WlanDn> Wlan::dn() const { return fieldIfSet(HasDn, m_dn); }
Status Wlan::setDn(const gom::SharedPointer<WlanDn>& dn) { return setField(HasDn, m_dn, dn); }

gom::SharedPointer<Area> Wlan::coverage() const { return fieldIfSet(HasCoverage, m_coverage); }
Status Wlan::setCoverage(const gom::SharedPointer<Area>& coverage) {
  return setField(HasCoverage, m_coverage, coverage);
}

}  // namespace trelvo::schema

template struct trelvo::gom::RecordAccess<trelvo::schema::WlanApMeasurement>;

namespace trelvo::gom {

using schema::WlanDn;

bool RecordAccess<WlanDn>::write(const WlanDn& dn, WireWriter& writer) {
  unsigned char* to = writer.reserve(3 + WlanDn::kLongLength);
  to = storeWire(to, kVersion);
  to = storeWire(to, static_cast<unsigned char>(dn.m_values));
  if ((dn.m_values & WlanDn::HasBssid) != 0) {
    to = storeWire(to, static_cast<unsigned char>(dn.m_bssidLength));
    to = std::copy(dn.m_bssid, dn.m_bssid + dn.m_bssidLength, to);
  }
  writer.advance(to);
  return true;
}

bool RecordAccess<WlanDn>::addSize(const WlanDn& dn, unsigned long long& total) {
  total += (dn.m_values & WlanDn::HasBssid) != 0 ? 3 + dn.m_bssidLength : 2;
  return true;
}

bool RecordAccess<WlanDn>::read(WlanDn& dn, WireReader& reader) {
  unsigned char mask = 0;
  if (!readVersion(reader) || !reader.get(mask) || mask > WlanDn::HasBssid) {
    return false;
  }
  dn.m_values = mask;
  if ((mask & WlanDn::HasBssid) == 0) {
    return reader.good();
  }
  unsigned char length = 0;
  if (!reader.get(length) || !WlanDn::isLength(length)) {
    return false;
  }
  dn.m_bssidLength = length;
  return reader.bytes(dn.m_bssid, length) == length && reader.good();
}

}  // namespace trelvo::gom
