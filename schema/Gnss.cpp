// Satellite fixes in containers: as measured, and as injected.

#include <trelvo/schema/GnssInjection.h>
#include <trelvo/schema/GnssMeasurement.h>

#include <utility>

#include "objects/PropertyTable.h"
#include "schema/ObjectKeys.h"
#include "schema/PropertyKeys.h"
#include "schema/WrapperFactory.h"

namespace trelvo::schema {

struct GnssMeasurement::Properties
    : PropertyTable<Property<HasTimeStamp, kTimeStamp>, Property<HasMeasurementData, kGnssData>> {};

gom::SharedPointer<GnssMeasurement> GnssMeasurement::create() {
  return WrapperFactory::createWrapper<GnssMeasurement>(kGnssMeasurement);
}

gom::SharedPointer<GnssMeasurement> GnssMeasurement::create(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return WrapperFactory::wrapObject<GnssMeasurement>(object, kGnssMeasurement);
}

gom::SharedPointer<GnssMeasurement> GnssMeasurement::create(
    unsigned int timeStamp, const gom::SharedPointer<GnssMeasurementData>& data) {
  gom::SharedPointer<GnssMeasurement> made = create();
  const bool set = made && made->setTimeStamp(timeStamp) == StatusOk &&
                   made->setMeasurementData(data) == StatusOk;
  return gom::onlyIf(set, std::move(made));
}

gom::SharedPointer<GnssMeasurement> GnssMeasurement::create(const PositionEstimate& estimate) {
  if (!estimate.valueExists(PositionEstimate::HasTimeStamp)) {
    return {};
  }
  return create(estimate.timeStamp(), GnssMeasurementData::create(estimate));
}

bool GnssMeasurement::valueExists(unsigned int mask) const {
  return Properties::exist(m_object, mask, false);
}

void GnssMeasurement::unset(unsigned int mask) { Properties::remove(m_object, mask); }

gom::SharedPointer<PositionEstimate> GnssMeasurement::toPosition() const {
  const gom::SharedPointer<GnssMeasurementData> data = measurementData();
  gom::SharedPointer<PositionEstimate> estimate =
      data ? data->toPosition() : gom::SharedPointer<PositionEstimate>();
  if (!estimate || !valueExists(HasTimeStamp)) {
    return estimate;
  }
  return gom::unlessFailed(estimate->setTimeStamp(timeStamp()), estimate);
}

unsigned int GnssMeasurement::timeStamp() const {
  return propertyOrDefault<unsigned int>(*this, kTimeStamp, "timeStamp");
}

Status GnssMeasurement::setTimeStamp(unsigned int timeStamp) {
  return setProperty(kTimeStamp, timeStamp, "timeStamp");
}

gom::SharedPointer<GnssMeasurementData> GnssMeasurement::measurementData() const {
  return getObjectProperty<GnssMeasurementData>(kGnssData);
}

Status GnssMeasurement::setMeasurementData(const gom::SharedPointer<GnssMeasurementData>& data) {
  if (!m_object) {
    return StatusFailed;
  }
  return setRecordProperty(*this, kGnssData, data, "measurementData");
}

struct GnssInjection::Properties
    : PropertyTable<PermanentProperty<HasTimeStamp>, Property<HasGnssMeasurementData, kGnssData>> {
};

gom::SharedPointer<GnssInjection> GnssInjection::create() {
  return WrapperFactory::createWrapper<GnssInjection>(kGnssInjection);
}

gom::SharedPointer<GnssInjection> GnssInjection::create(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return WrapperFactory::wrapObject<GnssInjection>(object, kGnssInjection);
}

gom::SharedPointer<GnssInjection> GnssInjection::create(
    unsigned int timeStamp, const gom::SharedPointer<GnssMeasurementData>& data) {
  gom::SharedPointer<GnssInjection> made = create();
  const bool set = made && made->setTimeStamp(timeStamp) == StatusOk &&
                   made->setGnssMeasurementData(data) == StatusOk;
  return gom::onlyIf(set, std::move(made));
}

gom::SharedPointer<GnssInjection> GnssInjection::create(
    const gom::SharedPointer<GnssMeasurement>& measurement) {
  if (!measurement || !measurement->valueExists(GnssMeasurement::HasTimeStamp)) {
    return {};
  }
  return create(measurement->timeStamp(), measurement->measurementData());
}

gom::SharedPointer<GnssInjection> GnssInjection::create(const PositionEstimate& estimate) {
  return create(GnssMeasurement::create(estimate));
}

void GnssInjection::dump() const { GenericObjectWrapper::dump(); }

bool GnssInjection::valueExists(unsigned int mask) const {
  return Properties::exist(m_object, mask, true);
}

void GnssInjection::unset(unsigned int mask) { Properties::remove(m_object, mask); }

unsigned int GnssInjection::timeStamp() const {
  return propertyOrDefault<unsigned int>(*this, kTimeStamp, "timeStamp");
}

Status GnssInjection::setTimeStamp(unsigned int timeStamp) {
  return setProperty(kTimeStamp, timeStamp, "timeStamp");
}

gom::SharedPointer<GnssMeasurementData> GnssInjection::gnssMeasurementData() const {
  return getObjectProperty<GnssMeasurementData>(kGnssData);
}

Status GnssInjection::setGnssMeasurementData(const gom::SharedPointer<GnssMeasurementData>& data) {
  if (!m_object) {
    return StatusFailed;
  }
  return setRecordProperty(*this, kGnssData, data, "gnssMeasurementData");
}

}  // namespace trelvo::schema
