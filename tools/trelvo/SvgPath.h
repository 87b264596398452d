#pragma once

#include <string>

#include "tools/trelvo/MapProjection.h"

namespace trelvo::tool {

/// A number of pixels in tenths: "12.3", "-4", "0".
std::string svgNumber(double pixels);

/// A path's data, in tenths of pixels, each step relative to the point before.
class SvgPath {
 public:
  void moveTo(const MapPoint& point);
  void lineTo(const MapPoint& point);

  /// Draws the line back to where the last moveTo() led, and goes on from there.
  void close();

  /// A line of no length: a dot when lines have round ends.
  void dot(const MapPoint& point);

  /// An outline of its own: two arcs of radii minor and major, turned by the ellipse's angle.
  void ellipse(const PixelEllipse& ellipse);

  bool isEmpty() const { return m_data.empty(); }
  const std::string& data() const { return m_data; }

 private:
  void step(char command, const MapPoint& point);

  std::string m_data;
  long m_x = 0;  // tenths
  long m_y = 0;
  long m_startX = 0;
  long m_startY = 0;
};

}  // namespace trelvo::tool
