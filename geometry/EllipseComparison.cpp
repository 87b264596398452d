#include <trelvo/schema/Utility.h>

#include <cmath>

#include <trelvo/Midpoint.h>
#include <trelvo/ShapeMatrix.h>

#include "geometry/GeodesyInline.h"
#include "geometry/Packed2by2.h"

namespace trelvo::schema {
namespace {

using geometry::packed;
using geometry::Packed2by2;

// All zeros for a singular matrix, so that distances under it come out as 0.0.
inline Packed2by2 inverseOrZero(const Packed2by2& m) noexcept {
  Packed2by2 inverse;
  geometry::invert(m, inverse);
  return inverse;
}

inline double product(double left0, double left1, const Packed2by2& m, double right0,
                      double right1) noexcept {
  return (left0 * m.e0 + left1 * m.e1) * right0 + (left0 * m.e1 + left1 * m.e2) * right1;
}

struct Edges {
  double low;
  double high;
};

// The lower of two tops above the higher of two bottoms: said this way, a NaN gives false.
inline bool overlap(const Edges& a, const Edges& b) noexcept {
  return a.high > a.low && a.high > b.low && b.high > a.low && b.high > b.low;
}

inline Edges around(double centre, double half) noexcept { return {centre - half, centre + half}; }

// Standard deviations, reached through the inverse of the covariance.
struct HalfExtents {
  explicit HalfExtents(const Packed2by2& inverse) noexcept {
    const double det = geometry::determinant(inverse);
    lon = std::sqrt(inverse.e0 / det);
    lat = std::sqrt(inverse.e2 / det);
  }

  double lat;
  double lon;
};

}  // namespace

double Utility::squaredDistance(double lat1, double lon1, double lat2, double lon2,
                                const ShapeMatrix& shape) noexcept {
  const Packed2by2 inverse = inverseOrZero(packed(shape));
  const double dLat = lat1 - lat2;
  const double dLon = lon1 - geometry::besideReference(lon2, lon1);
  return dLat * dLat * inverse.e0 + 2.0 * dLat * dLon * inverse.e1 + dLon * dLon * inverse.e2;
}

double Utility::mDistance(const Midpoint& p1, const ShapeMatrix& s1, const Midpoint& p2,
                          const ShapeMatrix& s2) noexcept {
  const Packed2by2 inverse = inverseOrZero(geometry::sum(packed(s1), packed(s2)));
  const double dLat = p1.latitude() - p2.latitude();
  const double dLon = p1.longitude() - p2.longitude();
  return product(dLat, dLon, inverse, dLat, dLon);
}

double Utility::bDistance(const Midpoint& p1, const ShapeMatrix& s1, const Midpoint& p2,
                          const ShapeMatrix& s2) noexcept {
  const Packed2by2 total = geometry::sum(packed(s1), packed(s2));
  const Packed2by2 mean{total.e0 / 2.0, total.e1 / 2.0, total.e2 / 2.0};
  const Packed2by2 inverse = inverseOrZero(mean);
  const double dLat = p1.latitude() - p2.latitude();
  const double dLon = p1.longitude() - p2.longitude();
  const double q = product(dLat * 0.125, dLon * 0.125, inverse, dLat, dLon);
  const double det1 = geometry::determinant(packed(s1));
  const double det2 = geometry::determinant(packed(s2));
  const double r = geometry::determinant(mean) / std::sqrt(det1 * det2);
  return q + 0.5 * std::log(r);
}

bool Utility::intersect(const Midpoint& p1, const ShapeMatrix& s1, const Midpoint& p2,
                        const ShapeMatrix& s2) noexcept {
  Packed2by2 inverse1, inverse2;
  if (!geometry::invert(packed(s1), inverse1) || !geometry::invert(packed(s2), inverse2)) {
    return false;
  }
  const double lon2 = geometry::besideReference(p2.longitude(), p1.longitude());
  const HalfExtents half1(inverse1), half2(inverse2);
  return overlap(around(p1.latitude(), half1.lat), around(p2.latitude(), half2.lat)) &&
         overlap(around(p1.longitude(), half1.lon), around(lon2, half2.lon));
}

}  // namespace trelvo::schema
