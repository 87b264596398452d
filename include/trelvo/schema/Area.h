#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/Coverage.h>

namespace trelvo::schema {

/// An area given by an ellipse: the counted, polymorphic form of one Coverage. This is what the
/// coverage of a cell or of an access point is stored as.
///
/// A flat record of class id 104. Presence lies in the Coverage alone; the record's own mask is
/// always 0. The circular uncertainty of the Coverage is hidden: it comes in through
/// Area(const Coverage&) only, can neither be asked for nor cleared by its bit, and is compared,
/// copied, written and read with the rest.
///
/// On the wire: one version byte of 1, then the form of the Coverage, which starts with another.
///
/// Threads: one at a time.
class TRELVO_EXPORT Area : public gom::ObjectBase {
 public:
  /// The bits are those of the Coverage.
  enum : unsigned int {
    HasLatitude = Coverage::HasLatitude,
    HasLongitude = Coverage::HasLongitude,
    HasAltitude = Coverage::HasAltitude,
    HasMajorAxis = Coverage::HasMajorAxis,
    HasMinorAxis = Coverage::HasMinorAxis,
    HasAngle = Coverage::HasAngle,
    HasAltitudeUncertainty = Coverage::HasAltitudeUncertainty,
  };

  /// No field set.
  Area();
  /// Over a copy of `coverage`.
  explicit Area(const Coverage& coverage);
  /// A position with an ellipse; units as in Coverage.
  Area(int latitude, int longitude, unsigned int majorAxis, unsigned int minorAxis, float angle);

  /// A new record; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<Area> create();
  [[nodiscard]] static gom::SharedPointer<Area> create(const Coverage& coverage);
  [[nodiscard]] static gom::SharedPointer<Area> create(int latitude, int longitude,
                                                       unsigned int majorAxis,
                                                       unsigned int minorAxis, float angle);
  /// A copy of `*other`; an empty handle for an empty one.
  [[nodiscard]] static gom::SharedPointer<Area> create(const gom::SharedPointer<Area>& other);

  void dump() const override;
  [[nodiscard]] Area* clone() const override;
  bool compare(const gom::ObjectBase* other) const override;

  /// Whether all bits of `mask` but the hidden 0x80 are set in the Coverage: false for 0x80 alone,
  /// and 0x81 asks for 0x01 only.
  bool valueExists(unsigned int mask) const override;
  /// Whether no bit of the Coverage is set, the hidden one included.
  bool isEmpty() const override;
  /// Clears the bits of `mask` but the hidden 0x80, and keeps the fields.
  void unset(unsigned int mask) override;

  [[nodiscard]] bool write(IStream& stream) const override;
  /// Clears all bits of the Coverage first, the hidden one included.
  [[nodiscard]] bool read(IStream& stream) override;

  /// Whether the Coverages are equal in their own sense, and the records' class ids and extensions.
  bool operator==(const Area& other) const;
  bool operator!=(const Area& other) const { return !(*this == other); }

  /// The Coverage; it belongs to this record.
  const Coverage& coverage() const noexcept { return m_coverage; }

  /// Fixed-point code of the latitude; see Utility::latitude(). Unset reads as 0.
  int latitude() const noexcept { return m_coverage.latitude(); }
  Status setLatitude(int latitude);

  /// Fixed-point code of the longitude; see Utility::longitude(). Unset reads as 0.
  int longitude() const noexcept { return m_coverage.longitude(); }
  Status setLongitude(int longitude);

  /// Metres. Any value; unset reads as 0.
  float altitude() const noexcept { return m_coverage.altitude(); }
  Status setAltitude(float altitude);

  /// Metres, the ellipse's semi-major axis. Unset reads as 0.
  unsigned int majorAxis() const noexcept { return m_coverage.majorAxis(); }
  Status setMajorAxis(unsigned int majorAxis);

  /// Metres, the ellipse's semi-minor axis. Unset reads as 0.
  unsigned int minorAxis() const noexcept { return m_coverage.minorAxis(); }
  Status setMinorAxis(unsigned int minorAxis);

  /// Radians, the direction of the major axis, clockwise from north. Any value; unset reads as 0.
  float angle() const noexcept { return m_coverage.angle(); }
  Status setAngle(float angle);

  /// Metres. Any value; unset reads as 0.
  float altitudeUncertainty() const noexcept { return m_coverage.altitudeUncertainty(); }
  Status setAltitudeUncertainty(float altitudeUncertainty);

 private:
  template <class Record>
  friend struct gom::RecordAccess;

  Coverage m_coverage;
};

}  // namespace trelvo::schema
