#include "tools/trelvo/EllipseOutline.h"

#include <algorithm>
#include <cmath>

namespace trelvo::tool {
namespace {

constexpr double kPi = 3.141592653589793;
constexpr double kRadians = kPi / 180.0;
constexpr double kSphereRadius = 6371010.0;  // metres
constexpr double kEdge = 180.0;

// The point at `metres` from the centre in the direction `azimuth` (radians), with the longitude
// as it runs on beyond the antimeridian (Snyder, Map Projections, 1987, equations 5-5 and 5-6).
OutlinePoint pointAt(const FeaturePosition& centre, double azimuth, double metres) {
  const double latitude = centre.latitude * kRadians;
  const double arc = metres / kSphereRadius;
  const double sine =
      std::sin(latitude) * std::cos(arc) + std::cos(latitude) * std::sin(arc) * std::cos(azimuth);
  const double turn = std::atan2(
      std::sin(arc) * std::sin(azimuth),
      std::cos(latitude) * std::cos(arc) - std::sin(latitude) * std::sin(arc) * std::cos(azimuth));
  return {centre.longitude + turn / kRadians, std::asin(std::clamp(sine, -1.0, 1.0)) / kRadians};
}

// The distance of the ellipse's edge from its centre in a direction.
double radiusAt(const FeatureEllipse& ellipse, double azimuth) {
  const double turned = azimuth - ellipse.angle * kRadians;
  return 1.0 / std::hypot(std::cos(turned) / ellipse.major, std::sin(turned) / ellipse.minor);
}

bool canBeDrawn(const FeaturePosition& centre, const FeatureEllipse& ellipse) {
  const double quarter = kSphereRadius * kPi / 2;
  const double radius = radiusAt(ellipse, 0.0);  // the same to the north and to the south
  const double toPole = (90.0 - std::abs(centre.latitude)) * kRadians * kSphereRadius;
  return std::max(ellipse.major, ellipse.minor) < quarter && radius < toPole;
}

// Counterclockwise, against the sense in which azimuths count.
OutlineRing wholeRing(const FeaturePosition& centre, const FeatureEllipse& ellipse) {
  OutlineRing ring;
  for (unsigned int i = 0; i < kOutlinePoints; ++i) {
    const double turn = -2 * kPi * i / kOutlinePoints;
    const double along = ellipse.major * std::cos(turn);
    const double across = ellipse.minor * std::sin(turn);
    const double azimuth = std::atan2(across, along) + ellipse.angle * kRadians;
    ring.push_back(pointAt(centre, azimuth, std::hypot(along, across)));
  }
  ring.push_back(ring.front());
  return ring;
}

OutlinePoint atEdge(const OutlinePoint& a, const OutlinePoint& b, double edge) {
  const double part = (edge - a.longitude) / (b.longitude - a.longitude);
  return {edge, a.latitude + part * (b.latitude - a.latitude)};
}

// What of the ring lies on one side of the meridian `edge`, moved by `shift` degrees to the east
// (I. Sutherland and G. Hodgman, Reentrant Polygon Clipping, 1974).
OutlineRing clipped(const OutlineRing& ring, double edge, bool keepsWest, double shift) {
  const auto isInside = [&](const OutlinePoint& p) {
    return keepsWest ? p.longitude <= edge : p.longitude >= edge;
  };
  OutlineRing kept;
  for (std::size_t i = 1; i < ring.size(); ++i) {
    if (isInside(ring[i - 1]) != isInside(ring[i])) {
      kept.push_back(atEdge(ring[i - 1], ring[i], edge));
    }
    if (isInside(ring[i])) {
      kept.push_back(ring[i]);
    }
  }
  for (OutlinePoint& point : kept) {
    point.longitude = std::clamp(point.longitude + shift, -kEdge, kEdge);
  }
  if (!kept.empty()) {
    kept.push_back(kept.front());
  }
  return kept;
}

}  // namespace

std::vector<OutlineRing> ellipseOutline(const FeaturePosition& centre,
                                        const FeatureEllipse& ellipse) {
  if (!canBeDrawn(centre, ellipse)) {
    return {};
  }
  OutlineRing ring = wholeRing(centre, ellipse);
  const auto [west, east] = std::minmax_element(
      ring.begin(), ring.end(),
      [](const OutlinePoint& a, const OutlinePoint& b) { return a.longitude < b.longitude; });
  if (east->longitude > kEdge) {
    return {clipped(ring, kEdge, true, 0.0), clipped(ring, kEdge, false, -2 * kEdge)};
  }
  if (west->longitude < -kEdge) {
    return {clipped(ring, -kEdge, true, 2 * kEdge), clipped(ring, -kEdge, false, 0.0)};
  }
  return {std::move(ring)};
}

}  // namespace trelvo::tool
