#include "tools/trelvo/MapDetail.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <unordered_set>
#include <utility>

namespace trelvo::tool {
namespace {

constexpr double kGrowth = 1.25;

std::uint64_t squareOf(const MapPoint& point, double spacing) {
  const auto column = static_cast<std::int32_t>(std::floor(point.x / spacing));
  const auto row = static_cast<std::int32_t>(std::floor(point.y / spacing));
  return static_cast<std::uint64_t>(static_cast<std::uint32_t>(column)) << 32 |
         static_cast<std::uint32_t>(row);
}

std::vector<std::size_t> firstOfEachSquare(const std::vector<MapPoint>& points, double spacing) {
  std::unordered_set<std::uint64_t> seen;
  std::vector<std::size_t> first;
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (seen.insert(squareOf(points[i], spacing)).second) {
      first.push_back(i);
    }
  }
  return first;
}

bool endsPiece(const std::vector<TrackPoint>& track, std::size_t i) {
  return track[i].isStart || i + 1 == track.size() || track[i + 1].isStart;
}

std::vector<TrackPoint> withoutNear(const std::vector<TrackPoint>& track, double least) {
  std::vector<TrackPoint> left;
  for (std::size_t i = 0; i < track.size(); ++i) {
    const bool isFar = left.empty() || std::hypot(track[i].place.x - left.back().place.x,
                                                  track[i].place.y - left.back().place.y) >= least;
    if (isFar || endsPiece(track, i)) {
      left.push_back(track[i]);
    }
  }
  return left;
}

std::vector<TrackPoint> withoutSingles(const std::vector<TrackPoint>& track) {
  std::vector<TrackPoint> left;
  for (std::size_t i = 0; i < track.size(); ++i) {
    const bool isLast = i + 1 == track.size() || track[i + 1].isStart;
    if (!track[i].isStart || !isLast) {
      left.push_back(track[i]);
    }
  }
  return left;
}

}  // namespace

std::vector<std::size_t> spreadOut(const std::vector<MapPoint>& points, double spacing,
                                   std::size_t most) {
  std::vector<std::size_t> chosen = firstOfEachSquare(points, spacing);
  while (chosen.size() > most) {
    spacing *= kGrowth;
    chosen = firstOfEachSquare(points, spacing);
  }
  return chosen;
}

std::vector<TrackPoint> simplified(std::vector<TrackPoint> track, std::size_t most) {
  constexpr double kLarge = 100.0;  // pixels; what is left then are the ends of pieces
  double least = 0.5;
  track = withoutNear(withoutSingles(track), least);
  while (track.size() > most && least < kLarge) {
    least *= kGrowth;
    track = withoutNear(track, least);
  }
  return track;
}

std::size_t strideFor(std::size_t count, std::size_t most) {
  return std::max<std::size_t>(1, (count + most - 1) / most);
}

double roundBelow(double value) {
  const double power = std::pow(10.0, std::floor(std::log10(value)));
  const double digit = value / power;
  return power * (digit >= 5.0 ? 5.0 : digit >= 2.0 ? 2.0 : 1.0);
}

bool LabelPlacer::place(const MapPoint& point, double width, double height, MapRect& label) {
  constexpr double kAway = 7.0;
  const MapRect places[] = {{point.x + kAway, point.y - height / 2, width, height},
                            {point.x - kAway - width, point.y - height / 2, width, height},
                            {point.x - width / 2, point.y - kAway - height, width, height},
                            {point.x - width / 2, point.y + kAway, width, height}};
  const auto* const found = std::find_if(std::begin(places), std::end(places),
                                         [this](const MapRect& rect) { return isFree(rect); });
  if (found == std::end(places)) {
    return false;
  }
  label = *found;
  m_taken.push_back(label);
  return true;
}

bool LabelPlacer::isFree(const MapRect& rect) const {
  const auto overlaps = [&rect](const MapRect& other) {
    return rect.left < other.right() && other.left < rect.right() && rect.top < other.bottom() &&
           other.top < rect.bottom();
  };
  return m_area.contains({rect.left, rect.top}) && m_area.contains({rect.right(), rect.bottom()}) &&
         std::none_of(m_taken.begin(), m_taken.end(), overlaps);
}

}  // namespace trelvo::tool
