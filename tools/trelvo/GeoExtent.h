#pragma once

#include <array>

namespace trelvo::tool {

/// A box along meridians and parallels, in degrees. `east` is at least `west` and exceeds 180 where
/// the box crosses the date line.
struct GeoBox {
  double south = 0.0;
  double west = 0.0;
  double north = 0.0;
  double east = 0.0;

  double middleLatitude() const { return (south + north) / 2; }

  /// `longitude` or one full circle more: the one that counts eastward from `west`.
  double eastward(double longitude) const {
    return longitude < west ? longitude + 360.0 : longitude;
  }
};

/// Whether a record's latitude and longitude are a place on the earth: finite, in [-90, 90] and
/// [-180, 180]. Records that were read may hold anything.
bool isPlace(double latitude, double longitude);

/// The smallest box around positions, found in bounded memory; across the date line where that is
/// the shorter way round.
class GeoExtent {
 public:
  /// `latitude` and `longitude` have to be a place: see isPlace().
  void add(double latitude, double longitude);

  bool isEmpty() const { return m_south > m_north; }

  /// The box, of zeros when nothing was added. `west` is in [-180, 180).
  GeoBox box() const;

 private:
  static constexpr int kSlices = 360;  // one degree of longitude each

  struct Slice {
    double west = 360.0;
    double east = -360.0;
  };

  std::array<Slice, kSlices> m_slices;
  double m_south = 90.0;
  double m_north = -90.0 - 1.0;
};

}  // namespace trelvo::tool
