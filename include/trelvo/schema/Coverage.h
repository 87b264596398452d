#pragma once

#include <trelvo/Export.h>
#include <trelvo/ISerializable.h>
#include <trelvo/Status.h>
#include <trelvo/gom/IValuable.h>
#include <trelvo/gom/ObjectBase.h>

namespace trelvo::schema {

/// The compact form of a position with its uncertainty: fixed-point coordinates, an ellipse with
/// whole-number axes, and single-precision angle, altitude and circular uncertainty.
///
/// A plain value, held by value inside other objects and copied like a number. It has a presence
/// mask of its own, of which 8 bits are used. Setters set their bit; getters give the stored field
/// whether its bit is set or not, and unset() keeps the field. A field never set reads as 0.
///
/// On the wire: one version byte of 1, the mask in two bytes, and the set fields in the order
/// latitude, longitude, majorAxis, minorAxis, angle, altitude, altitudeUncertainty,
/// horizontalCepUncertainty, 4 bytes each.
///
/// Threads: one at a time.
class TRELVO_EXPORT Coverage : public ISerializable, public gom::IValuable {
 public:
  enum : unsigned int {
    HasLatitude = 0x01,
    HasLongitude = 0x02,
    HasAltitude = 0x04,
    HasMajorAxis = 0x08,
    HasMinorAxis = 0x10,
    HasAngle = 0x20,
    HasAltitudeUncertainty = 0x40,
    HasHorizontalCepUncertainty = 0x80,
  };

  /// No field set.
  Coverage() = default;
  /// All fields set but the circular uncertainty.
  Coverage(int latitude, int longitude, unsigned int majorAxis, unsigned int minorAxis, float angle,
           float altitude, float altitudeUncertainty);
  /// A position with an ellipse.
  Coverage(int latitude, int longitude, unsigned int majorAxis, unsigned int minorAxis,
           float angle);
  /// A position with a circle. `horizontalCepUncertainty` is taken as it is, without the check of
  /// its setter.
  Coverage(int latitude, int longitude, float horizontalCepUncertainty);

  [[nodiscard]] bool write(IStream& stream) const override;

  /// Clears the mask first. A version other than 1 and a mask of 256 or more give false with the
  /// mask clear; a field that is missing gives false with the mask and the fields read so far.
  /// Values are taken as they come.
  [[nodiscard]] bool read(IStream& stream) override;

  /// Whether all bits of `mask` are set. False for a mask of 0.
  bool valueExists(unsigned int mask) const override;
  /// Whether no bit is set.
  bool isEmpty() const override;
  /// Clears the bits of `mask` and keeps the fields.
  void unset(unsigned int mask) override;
  /// Has no effect.
  virtual void dump() const;

  /// Sets bits of the mask, whatever their fields hold.
  void valueSet(unsigned int mask) noexcept { m_mask |= mask; }

  /// Whether masks, coordinates and axes are equal, and angle, altitude, altitude uncertainty and
  /// circular uncertainty differ by less than 1.0 each: 1.0 and 1.9 are equal, 1.0 and 2.0 are not,
  /// and a NaN equals everything. Fields are compared whether their bit is set or not. This is no
  /// equivalence: 1.0 equals 1.9 and 1.9 equals 2.8, but 1.0 does not equal 2.8.
  bool operator==(const Coverage& other) const;
  bool operator!=(const Coverage& other) const { return !(*this == other); }

  /// Fixed-point code of the latitude; see Utility::latitude().
  int latitude() const noexcept { return m_latitude; }
  Status setLatitude(int latitude);

  /// Fixed-point code of the longitude; see Utility::longitude().
  int longitude() const noexcept { return m_longitude; }
  Status setLongitude(int longitude);

  /// Metres, the ellipse's semi-major axis. Not checked against the minor one.
  unsigned int majorAxis() const noexcept { return m_majorAxis; }
  Status setMajorAxis(unsigned int majorAxis);

  /// Metres, the ellipse's semi-minor axis.
  unsigned int minorAxis() const noexcept { return m_minorAxis; }
  Status setMinorAxis(unsigned int minorAxis);

  /// Radians, the direction of the major axis, clockwise from north. Any value.
  float angle() const noexcept { return m_angle; }
  Status setAngle(float angle);

  /// Metres. Any value.
  float altitude() const noexcept { return m_altitude; }
  Status setAltitude(float altitude);

  /// Metres. Any value.
  float altitudeUncertainty() const noexcept { return m_altitudeUncertainty; }
  Status setAltitudeUncertainty(float altitudeUncertainty);

  /// Metres, the radius of the circular error; from 0 up. Anything else, a NaN too, gives
  /// StatusInvalidParameter and changes nothing.
  float horizontalCepUncertainty() const noexcept { return m_horizontalCepUncertainty; }
  Status setHorizontalCepUncertainty(float horizontalCepUncertainty);

 private:
  template <class Record>
  friend struct gom::RecordAccess;
  struct Fields;

  unsigned int m_mask = 0;
  int m_latitude = 0;
  int m_longitude = 0;
  unsigned int m_majorAxis = 0;
  unsigned int m_minorAxis = 0;
  float m_angle = 0;
  float m_altitude = 0;
  float m_altitudeUncertainty = 0;
  float m_horizontalCepUncertainty = 0;
};

}  // namespace trelvo::schema
