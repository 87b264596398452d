// WLAN access points in containers: as measured, and as injected.

#include <trelvo/schema/WlanInjection.h>
#include <trelvo/schema/WlanMeasurement.h>

#include <utility>

#include "objects/PropertyTable.h"
#include "schema/ObjectKeys.h"
#include "schema/PropertyKeys.h"
#include "schema/WrapperFactory.h"

namespace trelvo::schema {

struct WlanMeasurement::Properties
    : PropertyTable<Property<HasDn, kDn>, Property<HasTimeStamp, kTimeStamp>,
                    Property<HasElapsedRealtimeTimeStamp, kElapsedRealtimeTimeStamp>,
                    Property<HasWlanApMeasurement, kApMeasurement>> {};

gom::SharedPointer<WlanMeasurement> WlanMeasurement::create() {
  return WrapperFactory::createWrapper<WlanMeasurement>(kWlanMeasurement);
}

gom::SharedPointer<WlanMeasurement> WlanMeasurement::create(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return WrapperFactory::wrapObject<WlanMeasurement>(object, kWlanMeasurement);
}

gom::SharedPointer<WlanMeasurement> WlanMeasurement::create(const gom::SharedPointer<WlanDn>& dn,
                                                            unsigned int timeStamp) {
  gom::SharedPointer<WlanMeasurement> made = create();
  const bool set = made && made->setTimeStamp(timeStamp) == StatusOk && made->setDn(dn) == StatusOk;
  return gom::onlyIf(set, std::move(made));
}

bool WlanMeasurement::valueExists(unsigned int mask) const {
  return Properties::exist(m_object, mask, false);
}

void WlanMeasurement::unset(unsigned int mask) { Properties::remove(m_object, mask); }

gom::SharedPointer<WlanDn> WlanMeasurement::dn() const { return getObjectProperty<WlanDn>(kDn); }

Status WlanMeasurement::setDn(const gom::SharedPointer<WlanDn>& dn) {
  return setRecordProperty(*this, kDn, dn, "dn");
}

unsigned int WlanMeasurement::timeStamp() const {
  return propertyOrDefault<unsigned int>(*this, kTimeStamp, "timeStamp");
}

Status WlanMeasurement::setTimeStamp(unsigned int timeStamp) {
  return setProperty(kTimeStamp, timeStamp, "timeStamp");
}

long long WlanMeasurement::elapsedRealtimeTimeStamp() const {
  return propertyOrDefault<long long>(*this, kElapsedRealtimeTimeStamp, "elapsedRealtimeTimeStamp");
}

Status WlanMeasurement::setElapsedRealtimeTimeStamp(long long elapsedRealtimeTimeStamp) {
  return setProperty(kElapsedRealtimeTimeStamp, elapsedRealtimeTimeStamp,
                     "elapsedRealtimeTimeStamp");
}

gom::SharedPointer<WlanApMeasurement> WlanMeasurement::wlanApMeasurement() const {
  return getObjectProperty<WlanApMeasurement>(kApMeasurement);
}

Status WlanMeasurement::setWlanApMeasurement(
    const gom::SharedPointer<WlanApMeasurement>& wlanApMeasurement) {
  if (!m_object) {
    return StatusFailed;
  }
  return setRecordProperty(*this, kApMeasurement, wlanApMeasurement, "wlanApMeasurement");
}

struct WlanInjection::Properties
    : PropertyTable<Property<HasDn, kDn>, Property<HasTimeStamp, kTimeStamp>,
                    Property<HasWlanApMeasurement, kApMeasurement>,
                    Property<HasCoverage, kCoverage>> {};

gom::SharedPointer<WlanInjection> WlanInjection::create() {
  return WrapperFactory::createWrapper<WlanInjection>(kWlanInjection);
}

gom::SharedPointer<WlanInjection> WlanInjection::create(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return WrapperFactory::wrapObject<WlanInjection>(object, kWlanInjection);
}

gom::SharedPointer<WlanInjection> WlanInjection::create(const gom::SharedPointer<WlanDn>& dn,
                                                        unsigned int timeStamp,
                                                        const gom::SharedPointer<Area>& coverage) {
  gom::SharedPointer<WlanInjection> made = create();
  const bool set = made && made->setDn(dn) == StatusOk &&
                   made->setTimeStamp(timeStamp) == StatusOk &&
                   made->setCoverage(coverage) == StatusOk;
  return gom::onlyIf(set, std::move(made));
}

void WlanInjection::dump() const { GenericObjectWrapper::dump(); }

bool WlanInjection::valueExists(unsigned int mask) const {
  return Properties::exist(m_object, mask, true);
}

void WlanInjection::unset(unsigned int mask) { Properties::remove(m_object, mask); }

gom::SharedPointer<WlanDn> WlanInjection::dn() const { return getObjectProperty<WlanDn>(kDn); }

Status WlanInjection::setDn(const gom::SharedPointer<WlanDn>& dn) {
  return setRecordProperty(*this, kDn, dn, "dn");
}

unsigned int WlanInjection::timeStamp() const {
  return propertyOrDefault<unsigned int>(*this, kTimeStamp, "timeStamp");
}

Status WlanInjection::setTimeStamp(unsigned int timeStamp) {
  return setProperty(kTimeStamp, timeStamp, "timeStamp");
}

gom::SharedPointer<WlanApMeasurement> WlanInjection::wlanApMeasurement() const {
  return getObjectProperty<WlanApMeasurement>(kApMeasurement);
}

Status WlanInjection::setWlanApMeasurement(
    const gom::SharedPointer<WlanApMeasurement>& wlanApMeasurement) {
  return setRecordProperty(*this, kApMeasurement, wlanApMeasurement, "wlanApMeasurement");
}

gom::SharedPointer<Area> WlanInjection::coverage() const {
  return getObjectProperty<Area>(kCoverage);
}

Status WlanInjection::setCoverage(const gom::SharedPointer<Area>& coverage) {
  return setRecordProperty(*this, kCoverage, coverage, "coverage");
}

}  // namespace trelvo::schema
