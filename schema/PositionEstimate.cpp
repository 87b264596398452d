#include <trelvo/schema/PositionEstimate.h>

#include <utility>

#include "objects/FieldTable.h"
#include "objects/MakeObject.h"
#include "objects/Saturate.h"
#include "schema/ClassIds.h"
#include "schema/Motion.h"

namespace trelvo::schema {

struct PositionEstimate::Fields
    : gom::FieldTable<
          gom::Mask32,  // wire order
          gom::Field<HasTimeStamp, &PositionEstimate::m_timeStamp>,
          gom::Field<HasLatitude, &PositionEstimate::m_latitude>,
          gom::Field<HasLongitude, &PositionEstimate::m_longitude>,
          gom::Field<HasHorizontalCepUncertainty, &PositionEstimate::m_horizontalCepUncertainty>,
          gom::Field<HasMajorAxis, &PositionEstimate::m_majorAxis>,
          gom::Field<HasMinorAxis, &PositionEstimate::m_minorAxis>,
          gom::Field<HasAngle, &PositionEstimate::m_angle>,
          gom::Field<HasAltitude, &PositionEstimate::m_altitude>,
          gom::Field<HasAltitudeUncertainty, &PositionEstimate::m_altitudeUncertainty>,
          gom::Field<HasSpeed, &PositionEstimate::m_speed>,
          gom::Field<HasSpeedUncertainty, &PositionEstimate::m_speedUncertainty>,
          gom::Field<HasCourse, &PositionEstimate::m_course>,
          gom::Field<HasCourseUncertainty, &PositionEstimate::m_courseUncertainty>,
          gom::Field<HasFloorId, &PositionEstimate::m_floorId>,
          gom::MemoryOnly<HasBuildingId, &PositionEstimate::m_buildingId>,
          gom::Field<HasTechnology, &PositionEstimate::m_technology>,
          gom::Field<HasSource, &PositionEstimate::m_source>,
          gom::Field<HasMeasurementId, &PositionEstimate::m_measurementId>> {};

namespace {

// The ends of the ranges are the largest values of the whole-number views.
constexpr double kLongestDistance = 4294967295.0;
constexpr double kLargestAltitudeUncertainty = 65535.0;
constexpr double kHighestAltitude = 16383.5;
constexpr int kHighestFloor = 1024;

bool isDistance(double value) { return value > 0.0 && value <= kLongestDistance; }

}  // namespace

PositionEstimate::PositionEstimate() : ObjectBase(kPositionEstimate) {}

gom::SharedPointer<PositionEstimate> PositionEstimate::create() {
  return gom::makeObject<PositionEstimate>();
}

gom::SharedPointer<PositionEstimate> PositionEstimate::create(
    const gom::SharedPointer<PositionEstimate>& other) {
  return gom::copyObject(other);
}

gom::SharedPointer<PositionEstimate> PositionEstimate::create(double latitude, double longitude,
                                                              unsigned int timeStamp) {
  gom::SharedPointer<PositionEstimate> made = create();
  const bool set = made && made->setLatitude(latitude) == StatusOk &&
                   made->setLongitude(longitude) == StatusOk &&
                   made->setTimeStamp(timeStamp) == StatusOk;
  return gom::onlyIf(set, std::move(made));
}

gom::SharedPointer<PositionEstimate> PositionEstimate::create(double latitude, double longitude,
                                                              double cep, unsigned int timeStamp) {
  const gom::SharedPointer<PositionEstimate> made = create(latitude, longitude, timeStamp);
  return made ? gom::unlessFailed(made->setHorizontalCepUncertainty(cep), made) : made;
}

gom::SharedPointer<PositionEstimate> PositionEstimate::create(double latitude, double longitude,
                                                              double majorAxis, double minorAxis,
                                                              double angle,
                                                              unsigned int timeStamp) {
  gom::SharedPointer<PositionEstimate> made = create(latitude, longitude, timeStamp);
  const bool set = made && made->setMajorAxis(majorAxis) == StatusOk &&
                   made->setMinorAxis(minorAxis) == StatusOk && made->setAngle(angle) == StatusOk;
  return gom::onlyIf(set, std::move(made));
}

void PositionEstimate::dump() const {}
void PositionEstimate::dumpShort(const char* /*prefix*/, const char* /*suffix*/,
                                 bool /*full*/) const {}
PositionEstimate* PositionEstimate::clone() const { return gom::cloneRecord<Fields>(*this); }
bool PositionEstimate::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
bool PositionEstimate::write(IStream& stream) const { return gom::writeRecord(*this, stream); }
bool PositionEstimate::read(IStream& stream) { return gom::readRecord<Fields>(*this, stream); }
bool PositionEstimate::operator==(const PositionEstimate& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

bool PositionEstimate::isNoPos() const { return !valueExists(HasLatitude | HasLongitude); }

Status PositionEstimate::setTimeStamp(unsigned int timeStamp) {
  return timeStamp != 0 ? setField(HasTimeStamp, m_timeStamp, timeStamp) : StatusInvalidParameter;
}

Status PositionEstimate::setLatitude(double latitude) {
  return latitude >= -90.0 && latitude <= 90.0 ? setField(HasLatitude, m_latitude, latitude)
                                               : StatusInvalidParameter;
}

Status PositionEstimate::setLongitude(double longitude) {
  return longitude >= -180.0 && longitude < 180.0 ? setField(HasLongitude, m_longitude, longitude)
                                                  : StatusInvalidParameter;
}

Status PositionEstimate::setHorizontalCepUncertainty(double horizontalCepUncertainty) {
  return isDistance(horizontalCepUncertainty)
             ? setField(HasHorizontalCepUncertainty, m_horizontalCepUncertainty,
                        horizontalCepUncertainty)
             : StatusInvalidParameter;
}

unsigned int PositionEstimate::horizontalAccuracy() {
  return saturate<unsigned int>(m_horizontalCepUncertainty);
}

Status PositionEstimate::setHorizontalAccuracy(unsigned int horizontalAccuracy) {
  return setHorizontalCepUncertainty(horizontalAccuracy);
}

Status PositionEstimate::setMajorAxis(double majorAxis) {
  return isDistance(majorAxis) ? setField(HasMajorAxis, m_majorAxis, majorAxis)
                               : StatusInvalidParameter;
}

Status PositionEstimate::setMinorAxis(double minorAxis) {
  return isDistance(minorAxis) ? setField(HasMinorAxis, m_minorAxis, minorAxis)
                               : StatusInvalidParameter;
}

Status PositionEstimate::setAngle(double angle) {
  return angle >= 0.0 && angle < 180.0 ? setField(HasAngle, m_angle, angle)
                                       : StatusInvalidParameter;
}

Status PositionEstimate::setAltitude(double altitude) {
  return altitude >= -kHighestAltitude && altitude <= kHighestAltitude
             ? setField(HasAltitude, m_altitude, altitude)
             : StatusInvalidParameter;
}

Status PositionEstimate::setAltitudeUncertainty(double altitudeUncertainty) {
  return altitudeUncertainty > 0.0 && altitudeUncertainty <= kLargestAltitudeUncertainty
             ? setField(HasAltitudeUncertainty, m_altitudeUncertainty, altitudeUncertainty)
             : StatusInvalidParameter;
}

unsigned short PositionEstimate::altitudeAccuracy() const noexcept {
  return static_cast<unsigned short>(saturate<unsigned int>(m_altitudeUncertainty));
}

Status PositionEstimate::setAltitudeAccuracy(unsigned short altitudeAccuracy) {
  return setAltitudeUncertainty(altitudeAccuracy);
}

Status PositionEstimate::setSpeed(double speed) {
  return isSpeed(speed) ? setField(HasSpeed, m_speed, speed) : StatusInvalidParameter;
}

Status PositionEstimate::setSpeedUncertainty(double speedUncertainty) {
  return isSpeedUncertainty(speedUncertainty)
             ? setField(HasSpeedUncertainty, m_speedUncertainty, speedUncertainty)
             : StatusInvalidParameter;
}

Status PositionEstimate::setCourse(double course) {
  return isCourse(course) ? setField(HasCourse, m_course, course) : StatusInvalidParameter;
}

Status PositionEstimate::setCourseUncertainty(double courseUncertainty) {
  return isCourseUncertainty(courseUncertainty)
             ? setField(HasCourseUncertainty, m_courseUncertainty, courseUncertainty)
             : StatusInvalidParameter;
}

Status PositionEstimate::setFloorId(int floorId) {
  return floorId >= 1 && floorId <= kHighestFloor ? setField(HasFloorId, m_floorId, floorId)
                                                  : StatusInvalidParameter;
}

Status PositionEstimate::setBuildingId(std::string buildingId) {
  m_buildingId = std::move(buildingId);
  valueSet(HasBuildingId);
  return StatusOk;
}

int PositionEstimate::technology() const noexcept {
  return (values() & HasTechnology) != 0 ? m_technology : 0;
}

Status PositionEstimate::setTechnology(int technology) {
  return setField(HasTechnology, m_technology, technology);
}

PositionEstimate::Source PositionEstimate::source() const noexcept {
  return (values() & HasSource) != 0 ? m_source : SourceUnset;
}

Status PositionEstimate::setSource(Source source) { return setField(HasSource, m_source, source); }

Status PositionEstimate::setMeasurementId(unsigned int measurementId) {
  return setField(HasMeasurementId, m_measurementId, measurementId);
}

}  // namespace trelvo::schema

template struct trelvo::gom::RecordAccess<trelvo::schema::PositionEstimate>;
