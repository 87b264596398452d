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

/// Brings fields from one form into the other, up to the first that the other refuses.
template <class From, class To>
class Carrier {
 public:
  Carrier(const From& from, To& to) : m_from(from), m_to(to) {}

  /// When `from` has the field, its converted value goes through the setter of `to`.
  template <class Value, class Convert, class Set>
  Carrier& field(unsigned int bit, Value (From::*get)() const, Convert convert,
                 Status (To::*set)(Set)) {
    m_good =
        m_good && (!m_from.valueExists(bit) || (m_to.*set)(convert((m_from.*get)())) == StatusOk);
    return *this;
  }
  bool good() const { return m_good; }

 private:
  const From& m_from;
  To& m_to;
  bool m_good = true;
};

double asItIs(double value) { return value; }
float toSingle(double value) { return static_cast<float>(value); }
unsigned int toWhole(double value) { return saturate<unsigned int>(value); }
float toSingleRadians(double degrees) { return toSingle(Utility::toRadians(degrees)); }

bool carryPosition(const PositionEstimate& from, Coverage& to) {
  using P = PositionEstimate;
  using C = Coverage;
  return Carrier<P, C>(from, to)
      .field(P::HasLatitude, &P::latitude, Utility::latitude, &C::setLatitude)
      .field(P::HasLongitude, &P::longitude, Utility::longitude, &C::setLongitude)
      .field(P::HasMajorAxis, &P::majorAxis, toWhole, &C::setMajorAxis)
      .field(P::HasMinorAxis, &P::minorAxis, toWhole, &C::setMinorAxis)
      .field(P::HasAngle, &P::angle, toSingleRadians, &C::setAngle)
      .field(P::HasAltitude, &P::altitude, toSingle, &C::setAltitude)
      .field(P::HasAltitudeUncertainty, &P::altitudeUncertainty, toSingle,
             &C::setAltitudeUncertainty)
      .field(P::HasHorizontalCepUncertainty, &P::horizontalCepUncertainty, toSingle,
             &C::setHorizontalCepUncertainty)
      .good();
}

bool carryPosition(const Coverage& from, PositionEstimate& to) {
  using C = Coverage;
  using P = PositionEstimate;
  return Carrier<C, P>(from, to)
      .field(C::HasLatitude, &C::latitude, Utility::wgs84Latitude, &P::setLatitude)
      .field(C::HasLongitude, &C::longitude, Utility::wgs84Longitude, &P::setLongitude)
      .field(C::HasMajorAxis, &C::majorAxis, asItIs, &P::setMajorAxis)
      .field(C::HasMinorAxis, &C::minorAxis, asItIs, &P::setMinorAxis)
      .field(C::HasAngle, &C::angle, Utility::toDegrees, &P::setAngle)
      .field(C::HasAltitude, &C::altitude, asItIs, &P::setAltitude)
      .field(C::HasAltitudeUncertainty, &C::altitudeUncertainty, asItIs, &P::setAltitudeUncertainty)
      .field(C::HasHorizontalCepUncertainty, &C::horizontalCepUncertainty, asItIs,
             &P::setHorizontalCepUncertainty)
      .good();
}

// Either way: both classes have the same bits and names for the motion.
template <class From, class To>
bool carryMotion(const From& from, To& to) {
  return Carrier<From, To>(from, to)
      .field(From::HasSpeed, &From::speed, asItIs, &To::setSpeed)
      .field(From::HasSpeedUncertainty, &From::speedUncertainty, asItIs, &To::setSpeedUncertainty)
      .field(From::HasCourse, &From::course, asItIs, &To::setCourse)
      .field(From::HasCourseUncertainty, &From::courseUncertainty, asItIs,
             &To::setCourseUncertainty)
      .good();
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
