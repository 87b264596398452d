#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/Coverage.h>
#include <trelvo/schema/PositionEstimate.h>

namespace trelvo::schema {

/// A satellite fix: a Coverage with speed, course and their uncertainties.
///
/// A flat record of class id 130 with a four-byte mask. The Coverage has a mask of its own and no
/// bit in the record's: it is always there, always on the wire, right behind the mask, and a record
/// with nothing but a Coverage isEmpty().
///
/// Setters of the four numbers give StatusOk, or StatusInvalidParameter for a value out of range, a
/// NaN too, which changes nothing. Getters give the stored field whether its bit is set or not, 0.0
/// when it was never set. Equal are records with equal Coverages (in the Coverage's own sense), the
/// same bits and, under each set bit, exactly the same number.
///
/// Threads: one at a time.
class TRELVO_EXPORT GnssMeasurementData : public gom::ObjectBase {
 public:
  /// The bits are those of the same fields in PositionEstimate.
  enum : unsigned int {
    HasSpeed = PositionEstimate::HasSpeed,
    HasSpeedUncertainty = PositionEstimate::HasSpeedUncertainty,
    HasCourse = PositionEstimate::HasCourse,
    HasCourseUncertainty = PositionEstimate::HasCourseUncertainty,
  };

  /// An empty Coverage and no field set.
  GnssMeasurementData();
  /// Over a copy of `coverage`.
  explicit GnssMeasurementData(const Coverage& coverage);

  /// A new record; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<GnssMeasurementData> create();
  [[nodiscard]] static gom::SharedPointer<GnssMeasurementData> create(const Coverage& coverage);

  /// With speed, its uncertainty, and the course, twice: `course` has to be a valid course too, and
  /// is then replaced by `finalCourse`. The course's uncertainty stays unset. A value out of range
  /// gives an empty handle.
  [[nodiscard]] static gom::SharedPointer<GnssMeasurementData> create(const Coverage& coverage,
                                                                      double speed,
                                                                      double speedUncertainty,
                                                                      double course,
                                                                      double finalCourse);

  /// A copy of `*other`; an empty handle for an empty one.
  [[nodiscard]] static gom::SharedPointer<GnssMeasurementData> create(
      const gom::SharedPointer<GnssMeasurementData>& other);

  /// The set fields of `estimate` in the compact form: coordinates rounded to the south and west to
  /// fixed-point codes, axes cut off to whole metres, the angle in radians, and angle, altitude and
  /// both uncertainties in single precision. Speed and course go over as they are; time, floor,
  /// building, technology, source and measurement id do not. An empty handle when a value is out of
  /// range, which only an estimate that was read can have, and when memory runs out.
  [[nodiscard]] static gom::SharedPointer<GnssMeasurementData> create(
      const PositionEstimate& estimate);

  void dump() const override;
  [[nodiscard]] GnssMeasurementData* clone() const override;
  bool compare(const gom::ObjectBase* other) const override;
  [[nodiscard]] bool write(IStream& stream) const override;
  /// Takes values as they come, past the ranges of the setters.
  [[nodiscard]] bool read(IStream& stream) override;

  bool operator==(const GnssMeasurementData& other) const;
  bool operator!=(const GnssMeasurementData& other) const { return !(*this == other); }

  /// The way back: a new estimate with what is set here, and always the technology TechnologyGnss.
  /// An empty handle when a value is out of the estimate's range (an axis of 0, an angle of pi or
  /// more, an uncertainty of 0), and when memory runs out.
  [[nodiscard]] gom::SharedPointer<PositionEstimate> toPosition() const;

  /// Position, ellipse, altitude and circle; it belongs to this record.
  const Coverage& coverage() const noexcept { return m_coverage; }
  /// Takes over a copy. @return StatusOk.
  Status setCoverage(const Coverage& coverage);

  /// Metres a second, from 0 up without end.
  double speed() const noexcept { return m_speed; }
  Status setSpeed(double speed);

  /// Metres a second, above 0 without end.
  double speedUncertainty() const noexcept { return m_speedUncertainty; }
  Status setSpeedUncertainty(double speedUncertainty);

  /// Degrees, [-180, 180), clockwise from north.
  double course() const noexcept { return m_course; }
  Status setCourse(double course);

  /// Degrees, (0, 180).
  double courseUncertainty() const noexcept { return m_courseUncertainty; }
  Status setCourseUncertainty(double courseUncertainty);

 private:
  template <class Record>
  friend struct gom::RecordAccess;
  struct Fields;

  Coverage m_coverage;
  double m_speed = 0.0;
  double m_speedUncertainty = 0.0;
  double m_course = 0.0;
  double m_courseUncertainty = 0.0;
};

}  // namespace trelvo::schema
