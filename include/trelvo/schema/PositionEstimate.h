#pragma once

#include <string>

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::schema {

/// Where the device is: latitude and longitude with, as far as they are known, a circular or
/// elliptical uncertainty, altitude, speed, course, building and floor, and the time and kind of
/// the fix.
///
/// A flat record of class id 113 with a four-byte mask. It holds plain values and computes nothing:
/// an accuracy and an uncertainty are two views of one stored number, and no confidence is scaled.
///
/// Setters give StatusOk, or StatusInvalidParameter for a value out of range, which changes
/// nothing; a NaN is out of every range. Getters give the stored field whether its bit is set or
/// not, 0 when it was never set; technology() and source() alone read as 0 while their bit is
/// clear.
///
/// Equal are records with the same bits and, under each set bit, exactly the same value; a NaN,
/// which only read() can bring in, equals nothing.
///
/// On the wire the fields do not stand in the order of their bits: floorId comes before technology
/// and source. buildingId has a bit there and no text, so after a round trip the bit is set and the
/// text is empty.
///
/// Failures: only clone(), copying, assigning and what passes a building's text throw, and that is
/// std::bad_alloc.
/// Threads: one at a time.
class TRELVO_EXPORT PositionEstimate : public gom::ObjectBase {
 public:
  enum : unsigned int {
    HasTimeStamp = 0x00001,
    HasLatitude = 0x00002,
    HasLongitude = 0x00004,
    HasHorizontalCepUncertainty = 0x00008,
    HasMajorAxis = 0x00010,
    HasMinorAxis = 0x00020,
    HasAngle = 0x00040,
    HasAltitude = 0x00080,
    HasAltitudeUncertainty = 0x00100,
    HasSpeed = 0x00200,
    HasSpeedUncertainty = 0x00400,
    HasCourse = 0x00800,
    HasCourseUncertainty = 0x01000,
    HasTechnology = 0x02000,
    HasSource = 0x04000,
    HasFloorId = 0x08000,
    HasBuildingId = 0x10000,
    HasMeasurementId = 0x20000,
  };

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wshadow"  // schema::Source has a SourceUnset too
  /// What made the fix. The numbers belong to the code that fills them in; they pass through as
  /// 32-bit values, and 0 reads as unset.
  enum Source : unsigned int { SourceUnset = 0 };
#pragma GCC diagnostic pop

  /// No field set.
  PositionEstimate();

  /// A new record with no field set; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<PositionEstimate> create();
  /// A copy of `*other`; an empty handle for an empty one and when memory runs out.
  [[nodiscard]] static gom::SharedPointer<PositionEstimate> create(
      const gom::SharedPointer<PositionEstimate>& other);

  /// A position and its time. Values pass through the setters: one that is out of range, a time
  /// stamp of 0 too, gives an empty handle.
  [[nodiscard]] static gom::SharedPointer<PositionEstimate> create(double latitude,
                                                                   double longitude,
                                                                   unsigned int timeStamp);
  /// The same with a circle: `cep` is the horizontalCepUncertainty.
  [[nodiscard]] static gom::SharedPointer<PositionEstimate> create(double latitude,
                                                                   double longitude, double cep,
                                                                   unsigned int timeStamp);
  /// The same with an ellipse.
  [[nodiscard]] static gom::SharedPointer<PositionEstimate> create(double latitude,
                                                                   double longitude,
                                                                   double majorAxis,
                                                                   double minorAxis, double angle,
                                                                   unsigned int timeStamp);

  void dump() const override;
  /// Has no effect.
  void dumpShort(const char* prefix, const char* suffix, bool full) const;
  [[nodiscard]] PositionEstimate* clone() const override;
  bool compare(const gom::ObjectBase* other) const override;
  [[nodiscard]] bool write(IStream& stream) const override;
  /// Takes values as they come, past the ranges of the setters. The building's text is neither read
  /// nor cleared.
  [[nodiscard]] bool read(IStream& stream) override;

  bool operator==(const PositionEstimate& other) const;
  bool operator!=(const PositionEstimate& other) const { return !(*this == other); }

  /// Whether latitude or longitude is missing. 0.0, 0.0 with both bits set is a position.
  bool isNoPos() const;

  /// The time of the fix, from 1 up. Epoch and unit are the application's.
  unsigned int timeStamp() const noexcept { return m_timeStamp; }
  Status setTimeStamp(unsigned int timeStamp);

  /// Degrees, [-90, 90], positive to the north.
  double latitude() const noexcept { return m_latitude; }
  Status setLatitude(double latitude);

  /// Degrees, [-180, 180), positive to the east.
  double longitude() const noexcept { return m_longitude; }
  Status setLongitude(double longitude);

  /// Metres, (0, 4294967295]: the radius of the circular error.
  double horizontalCepUncertainty() const noexcept { return m_horizontalCepUncertainty; }
  Status setHorizontalCepUncertainty(double horizontalCepUncertainty);

  /// The horizontalCepUncertainty as a whole number of metres, cut off: 12.9 reads as 12.
  unsigned int horizontalAccuracy();
  /// Sets the horizontalCepUncertainty. Metres, from 1 up.
  Status setHorizontalAccuracy(unsigned int horizontalAccuracy);

  /// Metres, (0, 4294967295]: the ellipse's semi-major axis. Not checked against the minor one.
  double majorAxis() const noexcept { return m_majorAxis; }
  Status setMajorAxis(double majorAxis);

  /// Metres, (0, 4294967295]: the ellipse's semi-minor axis.
  double minorAxis() const noexcept { return m_minorAxis; }
  Status setMinorAxis(double minorAxis);

  /// Degrees, [0, 180): the direction of the major axis, clockwise from north.
  double angle() const noexcept { return m_angle; }
  Status setAngle(double angle);

  /// Metres, [-16383.5, 16383.5].
  double altitude() const noexcept { return m_altitude; }
  Status setAltitude(double altitude);

  /// Metres, (0, 65535].
  double altitudeUncertainty() const noexcept { return m_altitudeUncertainty; }
  Status setAltitudeUncertainty(double altitudeUncertainty);

  /// The altitudeUncertainty as a whole number of metres, cut off; the low 16 bits of it.
  unsigned short altitudeAccuracy() const noexcept;
  /// Sets the altitudeUncertainty. Metres, from 1 up.
  Status setAltitudeAccuracy(unsigned short altitudeAccuracy);

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

  /// The floor's number in the building, 1 to 1024.
  int floorId() const noexcept { return m_floorId; }
  Status setFloorId(int floorId);

  /// The building's name, any text. It lives in memory only.
  std::string buildingId() const { return m_buildingId; }
  Status setBuildingId(std::string buildingId);

  /// What the fix was made from: a word of schema::Technology bits, not checked. 0 while unset,
  /// also after unset().
  int technology() const noexcept;
  Status setTechnology(int technology);

  /// What made the fix, any value. SourceUnset while unset, also after unset().
  Source source() const noexcept;
  Status setSource(Source source);

  /// The number of the measurement set that the fix was made from, any value.
  unsigned int measurementId() const noexcept { return m_measurementId; }
  Status setMeasurementId(unsigned int measurementId);

 private:
  template <class Record>
  friend struct gom::RecordAccess;
  struct Fields;

  unsigned int m_timeStamp = 0;
  double m_latitude = 0.0;
  double m_longitude = 0.0;
  double m_horizontalCepUncertainty = 0.0;
  double m_majorAxis = 0.0;
  double m_minorAxis = 0.0;
  double m_angle = 0.0;
  double m_altitude = 0.0;
  double m_altitudeUncertainty = 0.0;
  double m_speed = 0.0;
  double m_speedUncertainty = 0.0;
  double m_course = 0.0;
  double m_courseUncertainty = 0.0;
  int m_floorId = 0;
  std::string m_buildingId;
  int m_technology = 0;
  Source m_source = SourceUnset;
  unsigned int m_measurementId = 0;
};

}  // namespace trelvo::schema
