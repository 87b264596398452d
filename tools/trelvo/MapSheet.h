#pragma once

#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "tools/trelvo/MapDetail.h"
#include "tools/trelvo/MapProjection.h"
#include "tools/trelvo/SvgPath.h"

namespace trelvo::tool {

/// One line of a legend.
struct LegendEntry {
  std::string symbol;  ///< SVG around the origin, at most 24 pixels wide and 14 high
  std::string text;
};

/// What of a map has been drawn so far: layer upon layer, each with its line in the legend.
struct MapSheet {
  explicit MapSheet(const MapProjection& map) : projection(map), labels(map.area()) {}

  MapProjection projection;
  std::ostringstream layers;  ///< inside the frame, cut at its edge
  std::ostringstream margin;  ///< around it
  std::vector<LegendEntry> legend;
  std::vector<std::string> remarks;  ///< what the picture leaves out, for the terminal
  LabelPlacer labels;
};

/// A count as people write it: "12,345".
std::string countText(unsigned long long count);

/// "3 of 12" where not all are drawn, else "12".
std::string drawnText(unsigned long long drawn, unsigned long long all);

/// Metres as a scale or a size is told: "5 m", "2000 m", "50 km".
std::string metresText(double metres);

// The layers, from the lowest.

/// Meridians and parallels, with their degrees on the margin.
void drawGraticule(MapSheet& sheet);

/// The WLAN RM tiles of a level, 6 to 23, or of the finest level below whose tiles can be told
/// apart.
void drawTiles(MapSheet& sheet, unsigned int level);

/// What cells and access points cover, and where they are.
void drawSites(MapSheet& sheet, const MapData& data);

/// The uncertainties of the positions, the line through them, and they themselves.
void drawFixes(MapSheet& sheet, const MapData& data);

/// North arrow and scale bar.
void drawScale(MapSheet& sheet);

}  // namespace trelvo::tool
