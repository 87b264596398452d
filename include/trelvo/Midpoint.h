#pragma once

#include <trelvo/Export.h>

namespace trelvo {

/// The centre of an uncertainty ellipse: latitude and longitude in degrees, positive to the north
/// and to the east.
///
/// Values are stored as they come, outside the globe too. A plain value: allocates nothing, throws
/// nothing. Threads: any number may read one; changing it takes one alone.
class TRELVO_EXPORT Midpoint {
 public:
  /// Both 0.0.
  Midpoint() noexcept = default;
  Midpoint(double latitude, double longitude) noexcept
      : m_latitude(latitude), m_longitude(longitude) {}

  /// Degrees. Any value.
  double latitude() const noexcept { return m_latitude; }
  void setLatitude(double latitude) noexcept { m_latitude = latitude; }

  /// Degrees. Any value.
  double longitude() const noexcept { return m_longitude; }
  void setLongitude(double longitude) noexcept { m_longitude = longitude; }

  /// Great-circle distance to `other` in metres, on a sphere; see schema::Utility::distance() for
  /// its rounding, which is coarse below a metre. Exactly 0.0 between equal midpoints.
  double distance(const Midpoint& other) const noexcept;

  /// Has no effect.
  void dump() const noexcept {}

 private:
  double m_latitude = 0.0;
  double m_longitude = 0.0;
};

}  // namespace trelvo
