#pragma once

#include "tools/trelvo/GeoExtent.h"
#include "tools/trelvo/MapData.h"

namespace trelvo::tool {

/// A place in the picture, in pixels from its upper left corner.
struct MapPoint {
  double x;
  double y;
};

/// A rectangle of the picture, in pixels.
struct MapRect {
  double left;
  double top;
  double width;
  double height;

  double right() const { return left + width; }
  double bottom() const { return top + height; }
  bool contains(const MapPoint& point, double margin = 0.0) const {
    return point.x >= left - margin && point.x <= right() + margin && point.y >= top - margin &&
           point.y <= bottom() + margin;
  }
};

/// An ellipse of the picture: semi-axes in pixels, the angle of `major` in degrees clockwise from
/// up.
struct PixelEllipse {
  MapPoint centre;
  double major;
  double minor;
  double angle;
};

/// What of the earth a map shows: the positions with their uncertainties and the centres of the
/// sites, or, where there are no positions, the sites with what they cover. An ellipse out of all
/// proportion is cut at the picture's edge rather than shown whole: around the points as much is
/// shown as an eighth of their box, or twice the median ellipse, whichever is more.
///
/// `data` must not be empty.
GeoBox mapFrame(const MapData& data);

/// A map onto a plane: equirectangular about the middle latitude of the box, by the metres per
/// degree of schema::Utility::degreeInMeters() there. Distances are true at that latitude; away
/// from it eastward ones grow with its cosine over their own.
class MapProjection {
 public:
  /// Puts `box` into the middle of `area`, as large as both directions allow.
  MapProjection(const GeoBox& box, const MapRect& area);

  /// What the area shows, at least the box; the latitudes may leave [-90, 90].
  const GeoBox& box() const { return m_box; }
  const MapRect& area() const { return m_area; }

  /// The pixels of one metre at the middle latitude.
  double pixelsPerMetre() const { return m_pixelsPerMetre; }

  /// Pixels of one degree.
  double pixelsPerLatitude() const { return m_yPerDegree; }
  double pixelsPerLongitude() const { return m_xPerDegree; }

  /// Where a position is; one that is not on the map lies outside its area.
  MapPoint place(double latitude, double longitude) const;

  /// How an ellipse around a position looks, stretched as the map is at that latitude.
  PixelEllipse shape(double latitude, double longitude, const MapEllipse& ellipse) const;

 private:
  MapRect m_area;
  GeoBox m_box;
  double m_pixelsPerMetre;
  double m_xPerDegree;
  double m_yPerDegree;
};

/// The height over width that a map of `box` has.
double mapAspect(const GeoBox& box);

}  // namespace trelvo::tool
