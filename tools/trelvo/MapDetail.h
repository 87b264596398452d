#pragma once

#include <cstddef>
#include <vector>

#include "tools/trelvo/MapProjection.h"

namespace trelvo::tool {

/// Of `points` the first in each square of a grid, in their order: squares of `spacing` pixels, or
/// as much larger ones as it takes to have `most` at most. @return indices into `points`.
std::vector<std::size_t> spreadOut(const std::vector<MapPoint>& points, double spacing,
                                   std::size_t most);

/// One corner of a line.
struct TrackPoint {
  MapPoint place;
  bool isStart;  ///< no line leads here
};

/// A line that looks the same with fewer corners: those within half a pixel of the corner before
/// are left out, or within as much more as it takes to have `most` at most. The ends of each piece
/// stay; a piece of one corner only is none.
std::vector<TrackPoint> simplified(std::vector<TrackPoint> track, std::size_t most);

/// Which of `count` things to draw: all, or evenly every n-th so that there are `most` at most.
/// @return n.
std::size_t strideFor(std::size_t count, std::size_t most);

/// The largest of 1, 2 and 5 times a power of ten that is not above `value`.
double roundBelow(double value);

/// Places labels of `height` pixels beside points, each where it covers no other and stays inside.
class LabelPlacer {
 public:
  explicit LabelPlacer(const MapRect& area) : m_area(area) {}

  /// Keeps labels away from there.
  void occupy(const MapRect& rect) { m_taken.push_back(rect); }

  /// Finds room for a label of that size right of `point`, left of it, above or below.
  /// @return false when there is none; otherwise `label` is taken.
  bool place(const MapPoint& point, double width, double height, MapRect& label);

  /// Whether `rect` covers no other and stays inside.
  bool isFree(const MapRect& rect) const;

 private:
  MapRect m_area;
  std::vector<MapRect> m_taken;
};

}  // namespace trelvo::tool
