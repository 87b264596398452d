// What is measured of serving cells, for the five radio technologies.

#include <trelvo/schema/CdmaServingCellMeasurement.h>
#include <trelvo/schema/EUtraServingCellMeasurement.h>
#include <trelvo/schema/GeranServingCellMeasurement.h>
#include <trelvo/schema/UtraFddServingCellMeasurement.h>
#include <trelvo/schema/UtraTddServingCellMeasurement.h>

#include "objects/FieldTable.h"
#include "objects/MakeObject.h"
#include "schema/ClassIds.h"
#include "schema/Records.h"

namespace trelvo::schema {

namespace {

/// A field of the nested measurement; 0 or an empty handle when there is none.
template <class Nested, class Value>
Value forwarded(const gom::SharedPointer<Nested>& nested, Value (Nested::*get)() const) {
  return nested ? (nested.get()->*get)() : Value();
}

/// Sets a field of the measurement nested in `serving`, which is made first when there is none.
template <class Serving, class Nested, class Parameter, class Value>
Status setForwarded(Serving& serving, const gom::SharedPointer<Nested>& nested,
                    Status (Nested::*set)(Parameter), const Value& value) {
  if (!nested) {
    const Status status = serving.setNwMeasurement(Nested::create());
    if (status != StatusOk) {
      return status;
    }
  }
  return (nested.get()->*set)(value);
}

}  // namespace

// GERAN

struct GeranServingCellMeasurement::Fields
    : gom::FieldTable<
          gom::Mask8,  // wire order
          gom::Field<HasNwMeasurement, &GeranServingCellMeasurement::m_nwMeasurement>,
          gom::Field<HasFrequency, &GeranServingCellMeasurement::m_frequency>,
          gom::Field<HasTimingAdvance, &GeranServingCellMeasurement::m_timingAdvance>,
          gom::Forwarded<HasRxLevel, &GeranServingCellMeasurement::m_nwMeasurement,
                         GeranNwMeasurement::HasRxLevel>,
          gom::Forwarded<HasFrequencyInfo, &GeranServingCellMeasurement::m_nwMeasurement,
                         GeranNwMeasurement::HasFrequencyInfo>> {};

GeranServingCellMeasurement::GeranServingCellMeasurement()
    : ObjectBase(kGeranServingCellMeasurement) {}

gom::SharedPointer<GeranServingCellMeasurement> GeranServingCellMeasurement::create() {
  return gom::makeObject<GeranServingCellMeasurement>();
}
gom::SharedPointer<GeranServingCellMeasurement> GeranServingCellMeasurement::create(
    const gom::SharedPointer<GeranServingCellMeasurement>& other) {
  return gom::copyObject(other);
}

void GeranServingCellMeasurement::dump() const { gom::dumpNested<Fields>(*this); }
GeranServingCellMeasurement* GeranServingCellMeasurement::clone() const {
  return gom::cloneRecord<Fields>(*this);
}
bool GeranServingCellMeasurement::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
bool GeranServingCellMeasurement::valueExists(unsigned int mask) const {
  return gom::forwardingValueExists<Fields>(*this, mask);
}
void GeranServingCellMeasurement::unset(unsigned int mask) {
  gom::releaseHandles<Fields>(*this, mask);
  ObjectBase::unset(mask);
}
bool GeranServingCellMeasurement::write(IStream& stream) const {
  return gom::writeRecord(*this, stream);
}
bool GeranServingCellMeasurement::read(IStream& stream) {
  return gom::readRecord<Fields>(*this, stream);
}
bool GeranServingCellMeasurement::operator==(const GeranServingCellMeasurement& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

gom::SharedPointer<GeranNwMeasurement> GeranServingCellMeasurement::nwMeasurement() const {
  return fieldIfSet(HasNwMeasurement, m_nwMeasurement);
}
Status GeranServingCellMeasurement::setNwMeasurement(
    const gom::SharedPointer<GeranNwMeasurement>& nwMeasurement) {
  return setField(HasNwMeasurement, m_nwMeasurement, nwMeasurement);
}
Status GeranServingCellMeasurement::setFrequency(unsigned char frequency) {
  return setField(HasFrequency, m_frequency, frequency);
}
Status GeranServingCellMeasurement::setTimingAdvance(unsigned char timingAdvance) {
  return setField(HasTimingAdvance, m_timingAdvance, timingAdvance);
}

unsigned char GeranServingCellMeasurement::rxLevel() const {
  return forwarded(m_nwMeasurement, &GeranNwMeasurement::rxLevel);
}
Status GeranServingCellMeasurement::setRxLevel(unsigned char rxLevel) {
  return setForwarded(*this, m_nwMeasurement, &GeranNwMeasurement::setRxLevel, rxLevel);
}
gom::SharedPointer<GeranFrequencyInfo> GeranServingCellMeasurement::frequencyInfo() const {
  return forwarded(m_nwMeasurement, &GeranNwMeasurement::frequencyInfo);
}
Status GeranServingCellMeasurement::setFrequencyInfo(
    const gom::SharedPointer<GeranFrequencyInfo>& frequencyInfo) {
  return setForwarded(*this, m_nwMeasurement, &GeranNwMeasurement::setFrequencyInfo, frequencyInfo);
}

// UTRA FDD

struct UtraFddServingCellMeasurement::Fields
    : gom::FieldTable<
          gom::Mask8,  // wire order
          gom::Field<HasNwMeasurement, &UtraFddServingCellMeasurement::m_nwMeasurement>,
          gom::Field<HasLac, &UtraFddServingCellMeasurement::m_lac>,
          gom::Forwarded<HasFrequencyInfo, &UtraFddServingCellMeasurement::m_nwMeasurement,
                         UtraFddNwMeasurement::HasFrequencyInfo>,
          gom::Forwarded<HasUarfcnUl, &UtraFddServingCellMeasurement::m_nwMeasurement,
                         UtraFddNwMeasurement::HasUarfcnUl>> {};

UtraFddServingCellMeasurement::UtraFddServingCellMeasurement()
    : ObjectBase(kUtraFddServingCellMeasurement) {}

gom::SharedPointer<UtraFddServingCellMeasurement> UtraFddServingCellMeasurement::create() {
  return gom::makeObject<UtraFddServingCellMeasurement>();
}
gom::SharedPointer<UtraFddServingCellMeasurement> UtraFddServingCellMeasurement::create(
    const gom::SharedPointer<UtraFddServingCellMeasurement>& other) {
  return gom::copyObject(other);
}

void UtraFddServingCellMeasurement::dump() const { gom::dumpNested<Fields>(*this); }
UtraFddServingCellMeasurement* UtraFddServingCellMeasurement::clone() const {
  return gom::cloneRecord<Fields>(*this);
}
bool UtraFddServingCellMeasurement::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
bool UtraFddServingCellMeasurement::valueExists(unsigned int mask) const {
  return gom::forwardingValueExists<Fields>(*this, mask);
}
void UtraFddServingCellMeasurement::unset(unsigned int mask) {
  gom::releaseHandles<Fields>(*this, mask);
  ObjectBase::unset(mask);
}
bool UtraFddServingCellMeasurement::write(IStream& stream) const {
  return gom::writeRecord(*this, stream);
}
bool UtraFddServingCellMeasurement::read(IStream& stream) {
  return gom::readRecord<Fields>(*this, stream);
}
bool UtraFddServingCellMeasurement::operator==(const UtraFddServingCellMeasurement& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

gom::SharedPointer<UtraFddNwMeasurement> UtraFddServingCellMeasurement::nwMeasurement() const {
  return fieldIfSet(HasNwMeasurement, m_nwMeasurement);
}
Status UtraFddServingCellMeasurement::setNwMeasurement(
    const gom::SharedPointer<UtraFddNwMeasurement>& nwMeasurement) {
  return setField(HasNwMeasurement, m_nwMeasurement, nwMeasurement);
}
Status UtraFddServingCellMeasurement::setLac(unsigned short lac) {
  return setField(HasLac, m_lac, lac);
}

gom::SharedPointer<UtraFddFrequencyInfo> UtraFddServingCellMeasurement::frequencyInfo() const {
  return forwarded(m_nwMeasurement, &UtraFddNwMeasurement::frequencyInfo);
}
Status UtraFddServingCellMeasurement::setFrequencyInfo(
    const gom::SharedPointer<UtraFddFrequencyInfo>& frequencyInfo) {
  return setForwarded(*this, m_nwMeasurement, &UtraFddNwMeasurement::setFrequencyInfo,
                      frequencyInfo);
}
unsigned short UtraFddServingCellMeasurement::uarfcnUl() const {
  return forwarded(m_nwMeasurement, &UtraFddNwMeasurement::uarfcnUl);
}
Status UtraFddServingCellMeasurement::setUarfcnUl(unsigned short uarfcnUl) {
  return setForwarded(*this, m_nwMeasurement, &UtraFddNwMeasurement::setUarfcnUl, uarfcnUl);
}

// UTRA TDD

struct UtraTddServingCellMeasurement::Fields
    : gom::FieldTable<
          gom::Mask8,  // wire order
          gom::Field<HasNwMeasurement, &UtraTddServingCellMeasurement::m_nwMeasurement>,
          gom::Field<HasLac, &UtraTddServingCellMeasurement::m_lac>,
          gom::Field<HasTimingAdvance, &UtraTddServingCellMeasurement::m_timingAdvance>,
          gom::Forwarded<HasFrequencyInfo, &UtraTddServingCellMeasurement::m_nwMeasurement,
                         UtraTddNwMeasurement::HasFrequencyInfo>> {};

UtraTddServingCellMeasurement::UtraTddServingCellMeasurement()
    : ObjectBase(kUtraTddServingCellMeasurement) {}

gom::SharedPointer<UtraTddServingCellMeasurement> UtraTddServingCellMeasurement::create() {
  return gom::makeObject<UtraTddServingCellMeasurement>();
}
gom::SharedPointer<UtraTddServingCellMeasurement> UtraTddServingCellMeasurement::create(
    const gom::SharedPointer<UtraTddServingCellMeasurement>& other) {
  return gom::copyObject(other);
}

void UtraTddServingCellMeasurement::dump() const { gom::dumpNested<Fields>(*this); }
UtraTddServingCellMeasurement* UtraTddServingCellMeasurement::clone() const {
  return gom::cloneRecord<Fields>(*this);
}
bool UtraTddServingCellMeasurement::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
bool UtraTddServingCellMeasurement::valueExists(unsigned int mask) const {
  return gom::forwardingValueExists<Fields>(*this, mask);
}
void UtraTddServingCellMeasurement::unset(unsigned int mask) {
  gom::releaseHandles<Fields>(*this, mask);
  ObjectBase::unset(mask);
}
bool UtraTddServingCellMeasurement::write(IStream& stream) const {
  return gom::writeRecord(*this, stream);
}
bool UtraTddServingCellMeasurement::read(IStream& stream) {
  return gom::readRecord<Fields>(*this, stream);
}
bool UtraTddServingCellMeasurement::operator==(const UtraTddServingCellMeasurement& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

gom::SharedPointer<UtraTddNwMeasurement> UtraTddServingCellMeasurement::nwMeasurement() const {
  return fieldIfSet(HasNwMeasurement, m_nwMeasurement);
}
Status UtraTddServingCellMeasurement::setNwMeasurement(
    const gom::SharedPointer<UtraTddNwMeasurement>& nwMeasurement) {
  return setField(HasNwMeasurement, m_nwMeasurement, nwMeasurement);
}
Status UtraTddServingCellMeasurement::setLac(unsigned short lac) {
  return setField(HasLac, m_lac, lac);
}
Status UtraTddServingCellMeasurement::setTimingAdvance(unsigned short timingAdvance) {
  return setField(HasTimingAdvance, m_timingAdvance, timingAdvance);
}

gom::SharedPointer<UtraTddFrequencyInfo> UtraTddServingCellMeasurement::frequencyInfo() const {
  return forwarded(m_nwMeasurement, &UtraTddNwMeasurement::frequencyInfo);
}
Status UtraTddServingCellMeasurement::setFrequencyInfo(
    const gom::SharedPointer<UtraTddFrequencyInfo>& frequencyInfo) {
  return setForwarded(*this, m_nwMeasurement, &UtraTddNwMeasurement::setFrequencyInfo,
                      frequencyInfo);
}

// E-UTRA

struct EUtraServingCellMeasurement::Fields
    : gom::FieldTable<
          gom::Mask8,  // wire order
          gom::Field<HasNwMeasurement, &EUtraServingCellMeasurement::m_nwMeasurement>,
          gom::Field<HasTimingAdvance, &EUtraServingCellMeasurement::m_timingAdvance>,
          gom::Forwarded<HasFrequencyInfo, &EUtraServingCellMeasurement::m_nwMeasurement,
                         EUtraNwMeasurement::HasFrequencyInfo>> {};

EUtraServingCellMeasurement::EUtraServingCellMeasurement()
    : ObjectBase(kEUtraServingCellMeasurement) {}

gom::SharedPointer<EUtraServingCellMeasurement> EUtraServingCellMeasurement::create() {
  return gom::makeObject<EUtraServingCellMeasurement>();
}
gom::SharedPointer<EUtraServingCellMeasurement> EUtraServingCellMeasurement::create(
    const gom::SharedPointer<EUtraServingCellMeasurement>& other) {
  return gom::copyObject(other);
}

void EUtraServingCellMeasurement::dump() const { gom::dumpNested<Fields>(*this); }
EUtraServingCellMeasurement* EUtraServingCellMeasurement::clone() const {
  return gom::cloneRecord<Fields>(*this);
}
bool EUtraServingCellMeasurement::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
bool EUtraServingCellMeasurement::valueExists(unsigned int mask) const {
  return gom::forwardingValueExists<Fields>(*this, mask);
}
void EUtraServingCellMeasurement::unset(unsigned int mask) {
  gom::releaseHandles<Fields>(*this, mask);
  ObjectBase::unset(mask);
}
bool EUtraServingCellMeasurement::write(IStream& stream) const {
  return gom::writeRecord(*this, stream);
}
bool EUtraServingCellMeasurement::read(IStream& stream) {
  return gom::readRecord<Fields>(*this, stream);
}
bool EUtraServingCellMeasurement::operator==(const EUtraServingCellMeasurement& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

gom::SharedPointer<EUtraNwMeasurement> EUtraServingCellMeasurement::nwMeasurement() const {
  return fieldIfSet(HasNwMeasurement, m_nwMeasurement);
}
Status EUtraServingCellMeasurement::setNwMeasurement(
    const gom::SharedPointer<EUtraNwMeasurement>& nwMeasurement) {
  return setField(HasNwMeasurement, m_nwMeasurement, nwMeasurement);
}
Status EUtraServingCellMeasurement::setTimingAdvance(unsigned short timingAdvance) {
  return setField(HasTimingAdvance, m_timingAdvance, timingAdvance);
}

gom::SharedPointer<EUtraFrequencyInfo> EUtraServingCellMeasurement::frequencyInfo() const {
  return forwarded(m_nwMeasurement, &EUtraNwMeasurement::frequencyInfo);
}
Status EUtraServingCellMeasurement::setFrequencyInfo(
    const gom::SharedPointer<EUtraFrequencyInfo>& frequencyInfo) {
  return setForwarded(*this, m_nwMeasurement, &EUtraNwMeasurement::setFrequencyInfo, frequencyInfo);
}

// CDMA

struct CdmaServingCellMeasurement::Fields
    : gom::FieldTable<gom::Mask8,  // wire order
                      gom::Field<HasNwMeasurement, &CdmaServingCellMeasurement::m_nwMeasurement>,
                      gom::Forwarded<HasFrequencyInfo, &CdmaServingCellMeasurement::m_nwMeasurement,
                                     CdmaNwMeasurement::HasFrequencyInfo>> {};

CdmaServingCellMeasurement::CdmaServingCellMeasurement()
    : ObjectBase(kCdmaServingCellMeasurement) {}

gom::SharedPointer<CdmaServingCellMeasurement> CdmaServingCellMeasurement::create() {
  return gom::makeObject<CdmaServingCellMeasurement>();
}
gom::SharedPointer<CdmaServingCellMeasurement> CdmaServingCellMeasurement::create(
    const gom::SharedPointer<CdmaServingCellMeasurement>& other) {
  return gom::copyObject(other);
}

void CdmaServingCellMeasurement::dump() const { gom::dumpNested<Fields>(*this); }
CdmaServingCellMeasurement* CdmaServingCellMeasurement::clone() const {
  return gom::cloneRecord<Fields>(*this);
}
bool CdmaServingCellMeasurement::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
bool CdmaServingCellMeasurement::valueExists(unsigned int mask) const {
  return gom::forwardingValueExists<Fields>(*this, mask);
}
void CdmaServingCellMeasurement::unset(unsigned int mask) {
  gom::releaseHandles<Fields>(*this, mask);
  ObjectBase::unset(mask);
}
bool CdmaServingCellMeasurement::write(IStream& stream) const {
  return gom::writeRecord(*this, stream);
}
bool CdmaServingCellMeasurement::read(IStream& stream) {
  return gom::readRecord<Fields>(*this, stream);
}
bool CdmaServingCellMeasurement::operator==(const CdmaServingCellMeasurement& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

gom::SharedPointer<CdmaNwMeasurement> CdmaServingCellMeasurement::nwMeasurement() const {
  return fieldIfSet(HasNwMeasurement, m_nwMeasurement);
}
Status CdmaServingCellMeasurement::setNwMeasurement(
    const gom::SharedPointer<CdmaNwMeasurement>& nwMeasurement) {
  return setField(HasNwMeasurement, m_nwMeasurement, nwMeasurement);
}

gom::SharedPointer<CdmaFrequencyInfo> CdmaServingCellMeasurement::frequencyInfo() const {
  return forwarded(m_nwMeasurement, &CdmaNwMeasurement::frequencyInfo);
}
Status CdmaServingCellMeasurement::setFrequencyInfo(
    const gom::SharedPointer<CdmaFrequencyInfo>& frequencyInfo) {
  return setForwarded(*this, m_nwMeasurement, &CdmaNwMeasurement::setFrequencyInfo, frequencyInfo);
}

}  // namespace trelvo::schema

template struct trelvo::gom::RecordAccess<trelvo::schema::GeranServingCellMeasurement>;
template struct trelvo::gom::RecordAccess<trelvo::schema::UtraFddServingCellMeasurement>;
template struct trelvo::gom::RecordAccess<trelvo::schema::UtraTddServingCellMeasurement>;
template struct trelvo::gom::RecordAccess<trelvo::schema::EUtraServingCellMeasurement>;
template struct trelvo::gom::RecordAccess<trelvo::schema::CdmaServingCellMeasurement>;
