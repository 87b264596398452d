#include <trelvo/schema/GnssMeasurementData.h>

#include <utility>

#include <trelvo/schema/Technology.h>
#include <trelvo/schema/Utility.h>

#include "objects/FieldTable.h"
#include "objects/MakeObject.h"
#include "objects/Saturate.h"
#include "schema/ClassIds.h"
#include "schema/Motion.h"
#include "schema/Records.h"

namespace trelvo::schema {

struct GnssMeasurementData::Fields
    : gom::FieldTable<gom::Mask32,  // wire order
                      gom::Embedded<&GnssMeasurementData::m_coverage>,
                      gom::Field<HasSpeed, &GnssMeasurementData::m_speed>,
                      gom::Field<HasSpeedUncertainty, &GnssMeasurementData::m_speedUncertainty>,
                      gom::Field<HasCourse, &GnssMeasurementData::m_course>,
                      gom::Field<HasCourseUncertainty, &GnssMeasurementData::m_courseUncertainty>> {
};

namespace {

// One field from one form into the other: when `from` has it, its converted value goes through the
// setter of `to`. True for a field that is not there.
template <class From, class To, class Value, class Convert, class Set>
bool carry(const From& from, unsigned int bit, Value (From::*get)() const, Convert convert, To& to,
           Status (To::*set)(Set)) {
  return !from.valueExists(bit) || (to.*set)(convert((from.*get)())) == StatusOk;
}

double asItIs(double value) { return value; }
float toSingle(double value) { return static_cast<float>(value); }
unsigned int toWhole(double value) { return saturate<unsigned int>(value); }
float toSingleRadians(double degrees) { return toSingle(Utility::toRadians(degrees)); }

bool carryPosition(const PositionEstimate& from, Coverage& to) {
  using P = PositionEstimate;
  using C = Coverage;
  return carry(from, P::HasLatitude, &P::latitude, Utility::latitude, to, &C::setLatitude) &&
         carry(from, P::HasLongitude, &P::longitude, Utility::longitude, to, &C::setLongitude) &&
         carry(from, P::HasMajorAxis, &P::majorAxis, toWhole, to, &C::setMajorAxis) &&
         carry(from, P::HasMinorAxis, &P::minorAxis, toWhole, to, &C::setMinorAxis) &&
         carry(from, P::HasAngle, &P::angle, toSingleRadians, to, &C::setAngle) &&
         carry(from, P::HasAltitude, &P::altitude, toSingle, to, &C::setAltitude) &&
         carry(from, P::HasAltitudeUncertainty, &P::altitudeUncertainty, toSingle, to,
               &C::setAltitudeUncertainty) &&
         carry(from, P::HasHorizontalCepUncertainty, &P::horizontalCepUncertainty, toSingle, to,
               &C::setHorizontalCepUncertainty);
}

bool carryPosition(const Coverage& from, PositionEstimate& to) {
  using C = Coverage;
  using P = PositionEstimate;
  return carry(from, C::HasLatitude, &C::latitude, Utility::wgs84Latitude, to, &P::setLatitude) &&
         carry(from, C::HasLongitude, &C::longitude, Utility::wgs84Longitude, to,
               &P::setLongitude) &&
         carry(from, C::HasMajorAxis, &C::majorAxis, asItIs, to, &P::setMajorAxis) &&
         carry(from, C::HasMinorAxis, &C::minorAxis, asItIs, to, &P::setMinorAxis) &&
         carry(from, C::HasAngle, &C::angle, Utility::toDegrees, to, &P::setAngle) &&
         carry(from, C::HasAltitude, &C::altitude, asItIs, to, &P::setAltitude) &&
         carry(from, C::HasAltitudeUncertainty, &C::altitudeUncertainty, asItIs, to,
               &P::setAltitudeUncertainty) &&
         carry(from, C::HasHorizontalCepUncertainty, &C::horizontalCepUncertainty, asItIs, to,
               &P::setHorizontalCepUncertainty);
}

// Either way: both classes have the same bits and names for the motion.
template <class From, class To>
bool carryMotion(const From& from, To& to) {
  return carry(from, From::HasSpeed, &From::speed, asItIs, to, &To::setSpeed) &&
         carry(from, From::HasSpeedUncertainty, &From::speedUncertainty, asItIs, to,
               &To::setSpeedUncertainty) &&
         carry(from, From::HasCourse, &From::course, asItIs, to, &To::setCourse) &&
         carry(from, From::HasCourseUncertainty, &From::courseUncertainty, asItIs, to,
               &To::setCourseUncertainty);
}

}  // namespace

GnssMeasurementData::GnssMeasurementData() : ObjectBase(kGnssMeasurementData) {}
GnssMeasurementData::GnssMeasurementData(const Coverage& coverage)
    : ObjectBase(kGnssMeasurementData), m_coverage(coverage) {}

gom::SharedPointer<GnssMeasurementData> GnssMeasurementData::create() {
  return gom::makeObject<GnssMeasurementData>();
}

gom::SharedPointer<GnssMeasurementData> GnssMeasurementData::create(const Coverage& coverage) {
  return gom::makeObject<GnssMeasurementData>(coverage);
}

gom::SharedPointer<GnssMeasurementData> GnssMeasurementData::create(const Coverage& coverage,
                                                                    double speed,
                                                                    double speedUncertainty,
                                                                    double course,
                                                                    double finalCourse) {
  gom::SharedPointer<GnssMeasurementData> made = create(coverage);
  // The last number is a course too, not its uncertainty: callers rely on it.
  const bool set = made && made->setSpeed(speed) == StatusOk &&
                   made->setSpeedUncertainty(speedUncertainty) == StatusOk &&
                   made->setCourse(course) == StatusOk && made->setCourse(finalCourse) == StatusOk;
  return gom::onlyIf(set, std::move(made));
}

gom::SharedPointer<GnssMeasurementData> GnssMeasurementData::create(
    const gom::SharedPointer<GnssMeasurementData>& other) {
  return gom::copyObject(other);
}

gom::SharedPointer<GnssMeasurementData> GnssMeasurementData::create(
    const PositionEstimate& estimate) {
  Coverage coverage;
  if (!carryPosition(estimate, coverage)) {
    return {};
  }
  gom::SharedPointer<GnssMeasurementData> made = create(coverage);
  const bool set = made && carryMotion(estimate, *made);
  return gom::onlyIf(set, std::move(made));
}

void GnssMeasurementData::dump() const {}
GnssMeasurementData* GnssMeasurementData::clone() const { return gom::cloneRecord<Fields>(*this); }
bool GnssMeasurementData::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
bool GnssMeasurementData::write(IStream& stream) const { return gom::writeRecord(*this, stream); }
bool GnssMeasurementData::read(IStream& stream) { return gom::readRecord<Fields>(*this, stream); }
bool GnssMeasurementData::operator==(const GnssMeasurementData& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

gom::SharedPointer<PositionEstimate> GnssMeasurementData::toPosition() const {
  const gom::SharedPointer<PositionEstimate> estimate = PositionEstimate::create();
  const bool carried =
      estimate && carryPosition(m_coverage, *estimate) && carryMotion(*this, *estimate);
  return carried ? gom::unlessFailed(estimate->setTechnology(TechnologyGnss), estimate)
                 : gom::SharedPointer<PositionEstimate>();
}

Status GnssMeasurementData::setCoverage(const Coverage& coverage) {
  m_coverage = coverage;
  return StatusOk;
}

Status GnssMeasurementData::setSpeed(double speed) {
  return isSpeed(speed) ? setField(HasSpeed, m_speed, speed) : StatusInvalidParameter;
}

Status GnssMeasurementData::setSpeedUncertainty(double speedUncertainty) {
  return isSpeedUncertainty(speedUncertainty)
             ? setField(HasSpeedUncertainty, m_speedUncertainty, speedUncertainty)
             : StatusInvalidParameter;
}

Status GnssMeasurementData::setCourse(double course) {
  return isCourse(course) ? setField(HasCourse, m_course, course) : StatusInvalidParameter;
}

Status GnssMeasurementData::setCourseUncertainty(double courseUncertainty) {
  return isCourseUncertainty(courseUncertainty)
             ? setField(HasCourseUncertainty, m_courseUncertainty, courseUncertainty)
             : StatusInvalidParameter;
}

}  // namespace trelvo::schema

template struct trelvo::gom::RecordAccess<trelvo::schema::GnssMeasurementData>;
