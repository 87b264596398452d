#include <trelvo/schema/Utility.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "tools/trelvo/GeoResults.h"
#include "tools/trelvo/MapSheet.h"

namespace trelvo::tool {
namespace {

using schema::Utility;

constexpr double kLetter = 6.2;  // pixels, the width of a letter of small text on average
constexpr double kSmallText = 12.0;

// -90 to 90, -180 to 180, to as many decimals as `step` needs.
std::string degreesText(double degrees, double step, const char* letters) {
  const int decimals = std::max(0, static_cast<int>(-std::floor(std::log10(step) + 1e-9)));
  char text[64];
  std::snprintf(text, sizeof text, "%.*f\u00B0", decimals, std::abs(degrees));
  const bool isZero = std::abs(degrees) < step / 2;
  return text + (isZero ? std::string() : " " + std::string(1, letters[degrees < 0 ? 1 : 0]));
}

double wrapped(double longitude) {
  return longitude - 360.0 * std::floor((longitude + 180.0) / 360.0);
}

double yOf(const MapSheet& sheet, double latitude) {
  return sheet.projection.place(latitude, sheet.projection.box().west).y;
}

// Unlike place() it goes on beyond a full circle.
double xOf(const MapSheet& sheet, double longitude) {
  return sheet.projection.area().left +
         (longitude - sheet.projection.box().west) * sheet.projection.pixelsPerLongitude();
}

/// Calls `draw` with each multiple of `step` from `first` to `last`.
template <class Draw>
void forMultiples(double step, double first, double last, Draw draw) {
  const auto end = static_cast<long long>(std::floor(last / step));
  for (auto i = static_cast<long long>(std::ceil(first / step)); i <= end; ++i) {
    draw(static_cast<double>(i) * step);
  }
}

double stepFor(double pixelsPerDegree, double pixels) {
  const double least = pixels / pixelsPerDegree;
  const double below = roundBelow(least);
  const double digit = std::round(below / std::pow(10.0, std::floor(std::log10(below) + 1e-9)));
  return below >= least ? below : below * (digit == 2.0 ? 2.5 : 2.0);
}

void drawParallels(MapSheet& sheet, SvgPath& lines) {
  const MapRect& area = sheet.projection.area();
  const GeoBox& box = sheet.projection.box();
  const double step = stepFor(sheet.projection.pixelsPerLatitude(), 70);
  forMultiples(step, std::max(-90.0, box.south), std::min(90.0, box.north), [&](double latitude) {
    const double y = yOf(sheet, latitude);
    lines.moveTo({area.left, y});
    lines.lineTo({area.right(), y});
    sheet.margin << "<text class=\"s\" text-anchor=\"end\" x=\"" << svgNumber(area.left - 5)
                 << "\" y=\"" << svgNumber(y + 4) << "\">" << degreesText(latitude, step, "NS")
                 << "</text>\n";
  });
}

void drawMeridians(MapSheet& sheet, SvgPath& lines) {
  const MapRect& area = sheet.projection.area();
  const GeoBox& box = sheet.projection.box();
  const double step = stepFor(sheet.projection.pixelsPerLongitude(), 110);
  forMultiples(step, box.west, box.east, [&](double longitude) {
    const double x = xOf(sheet, longitude);
    lines.moveTo({x, area.top});
    lines.lineTo({x, area.bottom()});
    sheet.margin << "<text class=\"s\" text-anchor=\"middle\" x=\"" << svgNumber(x) << "\" y=\""
                 << svgNumber(area.bottom() + 16) << "\">"
                 << degreesText(wrapped(longitude), step, "EW") << "</text>\n";
  });
}

struct TileGrid {
  unsigned int level;
  double height;  // degrees
  double width;   // degrees
};

TileGrid gridOf(unsigned int level) {
  TileGrid grid = {level, 0.0, 0.0};
  Utility::wlanRmTileSizeInDegrees(Utility::wlanRmTileId(0.0, 0.0, level), grid.height, grid.width);
  return grid;
}

double narrowerSide(const MapSheet& sheet, const TileGrid& grid) {
  return std::min(grid.height * sheet.projection.pixelsPerLatitude(),
                  grid.width * sheet.projection.pixelsPerLongitude());
}

// The identifiers, where a tile has room for one.
void labelTiles(MapSheet& sheet, const TileGrid& grid) {
  constexpr double kAway = 4.0;
  const GeoBox& box = sheet.projection.box();
  forMultiples(grid.height, box.south - grid.height, box.north, [&](double south) {
    forMultiples(grid.width, box.west - grid.width, box.east, [&](double west) {
      const double inside = south + grid.height / 2;
      if (std::abs(inside) > 90.0) {
        return;
      }
      const std::string id =
          std::to_string(Utility::wlanRmTileId(inside, wrapped(west + grid.width / 2), grid.level));
      const double width = static_cast<double>(id.size()) * kLetter;
      const MapPoint corner = {
          std::max(xOf(sheet, west), sheet.projection.area().left) + kAway,
          std::min(yOf(sheet, south), sheet.projection.area().bottom()) - kAway};
      const bool hasRoom = corner.x + width + kAway < xOf(sheet, west + grid.width) &&
                           corner.y - kSmallText > yOf(sheet, south + grid.height);
      const MapRect room = {corner.x, corner.y - kSmallText, width, kSmallText};
      if (hasRoom && sheet.labels.isFree(room)) {
        sheet.labels.occupy(room);
        sheet.layers << "<text class=\"t\" x=\"" << svgNumber(corner.x) << "\" y=\""
                     << svgNumber(corner.y) << "\">" << id << "</text>\n";
      }
    });
  });
}

void drawGrid(MapSheet& sheet, const TileGrid& grid) {
  const MapRect& area = sheet.projection.area();
  const GeoBox& box = sheet.projection.box();
  SvgPath lines;
  forMultiples(grid.height, std::max(-90.0, box.south), std::min(90.0, box.north),
               [&](double latitude) {
                 lines.moveTo({area.left, yOf(sheet, latitude)});
                 lines.lineTo({area.right(), yOf(sheet, latitude)});
               });
  forMultiples(grid.width, box.west, box.east, [&](double longitude) {
    lines.moveTo({xOf(sheet, longitude), area.top});
    lines.lineTo({xOf(sheet, longitude), area.bottom()});
  });
  if (!lines.isEmpty()) {
    sheet.layers << "<path id=\"tiles\" class=\"tile\" d=\"" << lines.data() << "\"/>\n";
  }
}

std::string tileSizeText(const MapSheet& sheet, const TileGrid& grid) {
  double east = 0.0;
  double north = 0.0;
  const GeoBox& box = sheet.projection.box();
  Utility::degreeInMeters(std::clamp(box.middleLatitude(), -89.9, 89.9), east, north);
  char text[64];
  const double width = grid.width * east;
  const int decimals = width < 100.0 ? 1 : 0;
  std::snprintf(text, sizeof text, "%.*f m \u00D7 %.*f m", decimals, width, decimals,
                grid.height * north);
  return text;
}

}  // namespace

void drawGraticule(MapSheet& sheet) {
  SvgPath lines;
  drawParallels(sheet, lines);
  drawMeridians(sheet, lines);
  sheet.layers << "<path class=\"grat\" d=\"" << lines.data() << "\"/>\n";
}

void drawTiles(MapSheet& sheet, unsigned int level) {
  constexpr double kNarrowest = 24.0;  // pixels
  TileGrid grid = gridOf(level);
  while (grid.level > kCoarsestTile && narrowerSide(sheet, grid) < kNarrowest) {
    grid = gridOf(grid.level - 1);
  }
  if (grid.level != level) {
    sheet.remarks.push_back("tiles of level " + std::to_string(level) +
                            " are too small to draw here; level " + std::to_string(grid.level) +
                            " drawn");
  }
  drawGrid(sheet, grid);
  labelTiles(sheet, grid);
  sheet.legend.push_back({"<path class=\"tile\" d=\"M-12 6V-6H12V6z\"/>",
                          "WLAN RM tiles of level " + std::to_string(grid.level) + ", " +
                              tileSizeText(sheet, grid) + " (east \u00D7 north)"});
}

}  // namespace trelvo::tool
