#pragma once

#include <vector>

#include "tools/trelvo/Feature.h"

namespace trelvo::tool {

/// A corner of an outline, degrees.
struct OutlinePoint {
  double longitude;  ///< [-180, 180]
  double latitude;   ///< [-90, 90]
};

/// A closed ring: the last point is the first again. Its points run counterclockwise.
using OutlineRing = std::vector<OutlinePoint>;

/// Points on an ellipse; the ring closes with one more.
constexpr unsigned int kOutlinePoints = 64;

/// The outline of an ellipse on the globe: one ring, or two that meet at the antimeridian when it
/// is crossed there.
///
/// The points lie on the sphere of schema::Utility::distance() at the ellipse's distances and
/// directions from `centre`, the first in the direction of its major axis. Empty when the ellipse
/// holds a pole or reaches a quarter of the way round the earth: no polygon of longitudes and
/// latitudes shows that.
std::vector<OutlineRing> ellipseOutline(const FeaturePosition& centre,
                                        const FeatureEllipse& ellipse);

}  // namespace trelvo::tool
