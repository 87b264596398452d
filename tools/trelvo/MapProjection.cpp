#include "tools/trelvo/MapProjection.h"

#include <trelvo/schema/Utility.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace trelvo::tool {
namespace {

using schema::Utility;

constexpr double kDegreesPerRadian = 57.29577951308232;
constexpr double kNearestPole = 89.9;  // degrees; closer to it no parallel is worth a map
constexpr double kSmallestSide = 5.0;  // metres

struct DegreeLength {
  double east;   // metres
  double north;  // metres
};

DegreeLength degreeLength(double latitude) {
  DegreeLength length = {};
  Utility::degreeInMeters(std::clamp(latitude, -kNearestPole, kNearestPole), length.east,
                          length.north);
  return length;
}

/// A box that grows; longitudes count eastward from the first box's west.
class Frame {
 public:
  explicit Frame(const GeoBox& box) : m_box(box), m_limit(box) {}

  /// Lets the box grow by `metres` on each side, no further, and not beyond the whole earth.
  void allow(double metres) {
    const DegreeLength length = degreeLength(m_box.middleLatitude());
    const double north = metres / length.north;
    const double east = std::min(metres / length.east, (360.0 - (m_box.east - m_box.west)) / 2);
    m_limit = {std::max(-90.0, m_box.south - north), m_box.west - east,
               std::min(90.0, m_box.north + north), m_box.east + east};
  }

  void include(double latitude, double longitude, const MapEllipse& ellipse) {
    const DegreeLength length = degreeLength(latitude);
    const double turn = ellipse.angle / kDegreesPerRadian;
    const double north =
        std::hypot(ellipse.majorAxis * std::cos(turn), ellipse.minorAxis * std::sin(turn)) /
        length.north;
    const double east =
        std::hypot(ellipse.majorAxis * std::sin(turn), ellipse.minorAxis * std::cos(turn)) /
        length.east;
    grow({latitude - north, longitude - east, latitude + north, longitude + east});
  }

  const GeoBox& box() const { return m_box; }

 private:
  void grow(const GeoBox& part) {
    m_box.south = std::max(std::min(m_box.south, part.south), m_limit.south);
    m_box.west = std::max(std::min(m_box.west, part.west), m_limit.west);
    m_box.north = std::min(std::max(m_box.north, part.north), m_limit.north);
    m_box.east = std::min(std::max(m_box.east, part.east), m_limit.east);
  }

  GeoBox m_box;
  GeoBox m_limit;
};

const MapEllipse& ellipseOf(const MapFix& fix) { return fix.error; }
const MapEllipse& ellipseOf(const MapSite& site) { return site.coverage; }

template <class Item>
double medianAxis(const std::vector<Item>& items) {
  std::vector<double> axes;
  for (const Item& item : items) {
    if (ellipseOf(item).exists()) {
      axes.push_back(ellipseOf(item).longerAxis());
    }
  }
  if (axes.empty()) {
    return 0.0;
  }
  const auto middle = axes.begin() + static_cast<std::ptrdiff_t>(axes.size() / 2);
  std::nth_element(axes.begin(), middle, axes.end());
  return *middle;
}

template <class Item>
GeoBox withEllipses(const GeoBox& box, const std::vector<Item>& items) {
  const DegreeLength length = degreeLength(box.middleLatitude());
  const double side =
      std::max((box.north - box.south) * length.north, (box.east - box.west) * length.east);
  Frame frame(box);
  frame.allow(std::max(side / 8, 2 * medianAxis(items)));
  for (const Item& item : items) {
    frame.include(item.latitude, box.eastward(item.longitude), ellipseOf(item));
  }
  return frame.box();
}

GeoBox noSmallerThan(const GeoBox& box, double metres) {
  const DegreeLength length = degreeLength(box.middleLatitude());
  const double north = std::max(0.0, metres / length.north - (box.north - box.south)) / 2;
  const double east = std::max(0.0, metres / length.east - (box.east - box.west)) / 2;
  return {box.south - north, box.west - east, box.north + north, box.east + east};
}

}  // namespace

GeoBox mapFrame(const MapData& data) {
  const GeoBox points = data.extent().box();
  const GeoBox box = data.fixes().empty() ? withEllipses(points, data.sites())
                                          : withEllipses(points, data.fixes());
  return noSmallerThan(box, kSmallestSide);
}

double mapAspect(const GeoBox& box) {
  const DegreeLength length = degreeLength(box.middleLatitude());
  return (box.north - box.south) * length.north / ((box.east - box.west) * length.east);
}

MapProjection::MapProjection(const GeoBox& box, const MapRect& area) : m_area(area) {
  const DegreeLength length = degreeLength(box.middleLatitude());
  m_pixelsPerMetre = std::min(area.width / ((box.east - box.west) * length.east),
                              area.height / ((box.north - box.south) * length.north));
  m_xPerDegree = m_pixelsPerMetre * length.east;
  m_yPerDegree = m_pixelsPerMetre * length.north;
  const double halfHeight = area.height / m_yPerDegree / 2;
  const double halfWidth = area.width / m_xPerDegree / 2;
  const double middle = (box.west + box.east) / 2;
  m_box = {box.middleLatitude() - halfHeight, middle - halfWidth, box.middleLatitude() + halfHeight,
           middle + halfWidth};
}

MapPoint MapProjection::place(double latitude, double longitude) const {
  const double east = longitude - m_box.west;
  const double turned = east - 360.0 * std::floor(east / 360.0);
  return {m_area.left + turned * m_xPerDegree,
          m_area.bottom() - (latitude - m_box.south) * m_yPerDegree};
}

// The image of an ellipse under a stretch of both directions is an ellipse again; its axes are the
// eigenvectors of u u' + v v', with u and v the images of the two semi-axes.
PixelEllipse MapProjection::shape(double latitude, double longitude,
                                  const MapEllipse& ellipse) const {
  constexpr double kUnstretched = 1e-3;
  const DegreeLength length = degreeLength(latitude);
  const double xPerMetre = m_xPerDegree / length.east;
  const double yPerMetre = m_yPerDegree / length.north;
  const MapPoint centre = place(latitude, longitude);
  if (std::abs(xPerMetre / yPerMetre - 1.0) < kUnstretched) {
    return {centre, ellipse.majorAxis * yPerMetre, ellipse.minorAxis * yPerMetre, ellipse.angle};
  }
  const double turn = ellipse.angle / kDegreesPerRadian;
  const MapPoint u = {ellipse.majorAxis * std::sin(turn) * xPerMetre,
                      -ellipse.majorAxis * std::cos(turn) * yPerMetre};
  const MapPoint v = {ellipse.minorAxis * std::cos(turn) * xPerMetre,
                      ellipse.minorAxis * std::sin(turn) * yPerMetre};
  const double xx = u.x * u.x + v.x * v.x;
  const double xy = u.x * u.y + v.x * v.y;
  const double yy = u.y * u.y + v.y * v.y;
  const double mean = (xx + yy) / 2;
  const double radius = std::hypot((xx - yy) / 2, xy);
  const double fromRight = std::atan2(2 * xy, xx - yy) / 2 * kDegreesPerRadian;
  return {centre, std::sqrt(mean + radius), std::sqrt(std::max(0.0, mean - radius)),
          fromRight + 90.0};
}

}  // namespace trelvo::tool
