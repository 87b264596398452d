#include "tools/trelvo/ImportFix.h"

#include <trelvo/schema/GnssMeasurementData.h>
#include <trelvo/schema/PositionEstimate.h>
#include <trelvo/schema/Utility.h>

#include <cmath>
#include <limits>

#include "tools/trelvo/ImportTarget.h"

namespace trelvo::tool {

namespace {

using schema::PositionEstimate;

// An angle written on another turn of the circle, brought to [from, from + period). What is more
// than a full turn away is no angle that anyone measured, and stays out of range.
double wrapped(double angle, double from, double period) {
  if (angle < -360.0 || angle > 360.0) {
    return angle;
  }
  const double turned = angle - period * std::floor((angle - from) / period);
  return turned < from + period ? turned : from;
}

// The field holds radians in single precision; an orientation that this rounds up to the half
// circle is the line at 0.
double storableOrientation(double angle) {
  const double folded = wrapped(angle, 0.0, 180.0);
  const auto stored = static_cast<float>(schema::Utility::toRadians(folded));
  return schema::Utility::toDegrees(stored) < 180.0 ? folded : 0.0;
}

// The value as its field in single precision will hold it, so that the range is asked of what is
// stored: a radius of 1e-60 m would be stored as 0 and make the position unreadable.
std::optional<double> single(const std::optional<double>& value) {
  const bool fits = value && std::abs(*value) <= std::numeric_limits<float>::max();
  return fits ? std::optional<double>(static_cast<float>(*value)) : value;
}

class EstimateBuilder {
 public:
  explicit EstimateBuilder(const ImportNotes& notes) : m_notes(notes) {}

  void set(Status (PositionEstimate::*setter)(double), const std::optional<double>& value,
           const char* complaint) {
    if (value && (m_estimate.*setter)(*value) != StatusOk) {
      m_notes.count(complaint);
    }
  }

  void setAxis(Status (PositionEstimate::*setter)(double), std::optional<double> metres) {
    if (metres && *metres >= 0.0 && *metres < 1.0) {
      m_notes.count(kSmallAxis);
      metres = 1.0;
    }
    set(setter, metres ? std::optional<double>(std::round(*metres)) : metres, kBadAxis);
  }

  PositionEstimate& estimate() { return m_estimate; }

 private:
  const ImportNotes& m_notes;
  PositionEstimate m_estimate;
};

bool setPosition(PositionEstimate& estimate, const ImportFix& fix) {
  return fix.latitude && fix.longitude && estimate.setLatitude(*fix.latitude) == StatusOk &&
         estimate.setLongitude(wrapped(*fix.longitude, -180.0, 360.0)) == StatusOk;
}

void setError(EstimateBuilder& builder, const ImportFix& fix) {
  builder.set(&PositionEstimate::setHorizontalCepUncertainty, single(fix.radius), kBadRadius);
  builder.setAxis(&PositionEstimate::setMajorAxis, fix.majorAxis);
  builder.setAxis(&PositionEstimate::setMinorAxis, fix.minorAxis);
  if (fix.orientation) {
    builder.set(&PositionEstimate::setAngle, storableOrientation(*fix.orientation),
                kBadOrientation);
  }
}

void setHeight(EstimateBuilder& builder, const ImportFix& fix) {
  builder.set(&PositionEstimate::setAltitude, single(fix.altitude), kBadAltitude);
  builder.set(&PositionEstimate::setAltitudeUncertainty, single(fix.altitudeUncertainty),
              kBadAltitudeUncertainty);
}

void setMotion(EstimateBuilder& builder, const ImportFix& fix) {
  builder.set(&PositionEstimate::setSpeed, fix.speed, kBadSpeed);
  if (fix.course) {
    builder.set(&PositionEstimate::setCourse, wrapped(*fix.course, -180.0, 360.0), kBadCourse);
  }
}

gom::SharedPointer<schema::GnssMeasurement> withoutTime(const PositionEstimate& estimate) {
  auto measurement = made(schema::GnssMeasurement::create());
  expectStored(
      measurement->setMeasurementData(made(schema::GnssMeasurementData::create(estimate))));
  return measurement;
}

}  // namespace

gom::SharedPointer<schema::GnssMeasurement> makeGnssMeasurement(const ImportFix& fix,
                                                                const ImportNotes& notes) {
  EstimateBuilder builder(notes);
  PositionEstimate& estimate = builder.estimate();
  if (!setPosition(estimate, fix)) {
    notes.count(kNoPosition);
    return nullptr;
  }
  setError(builder, fix);
  setHeight(builder, fix);
  setMotion(builder, fix);
  const bool timed = fix.timeStamp && estimate.setTimeStamp(*fix.timeStamp) == StatusOk;
  return made(timed ? schema::GnssMeasurement::create(estimate) : withoutTime(estimate));
}

std::optional<unsigned int> timeStampOf(long long unixSeconds) {
  const bool fits = unixSeconds > 0 && unixSeconds <= std::numeric_limits<unsigned int>::max();
  return fits ? std::optional<unsigned int>(static_cast<unsigned int>(unixSeconds)) : std::nullopt;
}

}  // namespace trelvo::tool
