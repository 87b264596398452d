#include "tools/trelvo/GeoResults.h"

#include <trelvo/ShapeMatrix.h>
#include <trelvo/schema/Utility.h>

#include <cmath>
#include <cstdio>

namespace trelvo::tool {

namespace {

using schema::Utility;

struct Tile {
  unsigned long long id = 0;
  unsigned int level = 0;
  double south = 0;
  double west = 0;
  double height = 0;
  double width = 0;
};

std::optional<Tile> readTile(unsigned long long id) {
  Tile tile;
  tile.id = id;
  const bool valid = Utility::parseWlanRmTileId(id, tile.south, tile.west, tile.level) &&
                     Utility::wlanRmTileSizeInDegrees(id, tile.height, tile.width);
  return valid ? std::optional<Tile>(tile) : std::nullopt;
}

GeoResult parentOf(const Tile& tile) {
  return tile.level > kCoarsestTile
             ? GeoResult(Utility::wlanRmTileParentId(tile.id, tile.level - 1))
             : GeoResult(nullptr);
}

// The centre of each quarter tells which tile it is; all these numbers are exact.
GeoResult childrenOf(const Tile& tile) {
  GeoResult children = GeoResult::array();
  for (int quarter = 0; tile.level < kFinestTile && quarter < 4; ++quarter) {
    const double north = quarter < 2 ? 0.25 : 0.75;
    const double east = quarter % 2 == 0 ? 0.25 : 0.75;
    children.push_back(Utility::wlanRmTileId(tile.south + north * tile.height,
                                             tile.west + east * tile.width, tile.level + 1));
  }
  return children;
}

std::string hexadecimal(unsigned long long id) {
  char text[24];
  std::snprintf(text, sizeof text, "0x%llx", id);
  return text;
}

GeoResult resultOf(const Tile& tile) {
  return {{"id", tile.id},
          {"idHex", hexadecimal(tile.id)},
          {"level", tile.level},
          {"corner", {{"latitude", tile.south}, {"longitude", tile.west}}},
          {"sizeDegrees", {{"latitude", tile.height}, {"longitude", tile.width}}},
          {"parent", parentOf(tile)},
          {"children", childrenOf(tile)}};
}

GeoResult point(double latitude, double longitude) {
  return GeoResult::array({longitude, latitude});
}

GeoResult outlineOf(const Tile& tile) {
  const double north = tile.south + tile.height;
  const double east = tile.west + tile.width;
  return GeoResult::array({point(tile.south, tile.west), point(tile.south, east),
                           point(north, east), point(north, tile.west),
                           point(tile.south, tile.west)});
}

std::string textOfValue(const GeoResult& value) {
  if (value.is_string()) {
    return value.get<std::string>();
  }
  if (value.is_null() || (value.is_array() && value.empty())) {
    return "none";
  }
  if (!value.is_array()) {
    return value.dump();
  }
  std::string text;
  for (const GeoResult& element : value) {
    text += (text.empty() ? "" : " ") + textOfValue(element);
  }
  return text;
}

void appendText(std::string& text, const GeoResult& result, const std::string& indent) {
  for (const auto& [name, value] : result.items()) {
    text += indent + name + ":";
    if (value.is_object()) {
      text += "\n";
      appendText(text, value, indent + "  ");
    } else {
      text += " " + textOfValue(value) + "\n";
    }
  }
}

}  // namespace

GeoResult distanceResult(double lat1, double lon1, double lat2, double lon2) {
  double metres = 0.0;
  Utility::distance(lat1, lon1, lat2, lon2, metres);
  return GeoResult::object({{"distanceMetres", metres}});
}

std::optional<GeoResult> bearingResult(double lat1, double lon1, double lat2, double lon2) {
  double degrees = 0.0;
  const double near = Utility::compLonRollOver(lon2, lon1);
  if (!Utility::bearing(lat1, lon1, lat2, near, degrees)) {
    return std::nullopt;
  }
  return GeoResult::object({{"bearingDegrees", degrees}});
}

std::optional<GeoResult> ellipseResult(double latitude, double majorAxis, double minorAxis,
                                       double angle) {
  ShapeMatrix shape;
  double eastScale = 0.0;
  double northScale = 0.0;
  if (!shape.ellConvert(latitude, majorAxis, minorAxis, angle) ||
      !Utility::degreeInMeters(latitude, eastScale, northScale)) {
    return std::nullopt;
  }
  const double north = std::sqrt(shape[0]);
  const double east = std::sqrt(shape[2]);
  return GeoResult{
      {"covarianceSquaredDegrees",
       {{"latitude", shape[0]}, {"latitudeLongitude", shape[1]}, {"longitude", shape[2]}}},
      {"extentDegrees", {{"latitude", north}, {"longitude", east}}},
      {"extentMetres", {{"north", north * northScale}, {"east", east * eastScale}}}};
}

std::optional<GeoResult> tileResult(unsigned long long id) {
  const auto tile = readTile(id);
  return tile ? std::optional<GeoResult>(resultOf(*tile)) : std::nullopt;
}

std::optional<GeoResult> tileFeature(unsigned long long id) {
  const auto tile = readTile(id);
  if (!tile) {
    return std::nullopt;
  }
  return GeoResult{
      {"type", "Feature"},
      {"geometry", {{"type", "Polygon"}, {"coordinates", GeoResult::array({outlineOf(*tile)})}}},
      {"properties", resultOf(*tile)}};
}

std::string textOf(const GeoResult& result) {
  std::string text;
  appendText(text, result, "");
  return text;
}

}  // namespace trelvo::tool
