#pragma once

#include <nlohmann/json.hpp>

#include <optional>
#include <string>

namespace trelvo::tool {

/// What a `trelvo geo` command found: names and values in the order in which they are shown. The
/// names carry the unit.
using GeoResult = nlohmann::ordered_json;

/// Great-circle distance in metres on the sphere of schema::Utility::distance().
GeoResult distanceResult(double lat1, double lon1, double lat2, double lon2);

/// Initial bearing in degrees clockwise from north, by schema::Utility::bearing() with the second
/// longitude brought to the side of the date line where the first is.
/// @return nothing where there is no direction to give: from a pole, to the antipode and between
///         points that are too close.
std::optional<GeoResult> bearingResult(double lat1, double lon1, double lat2, double lon2);

/// The covariance of an ellipse in squared degrees, by ShapeMatrix::ellConvert(), and back from it
/// the extent of the ellipse north and east of its centre, in degrees and metres: the square roots
/// of the variances. Axes are semi-axes in metres, the angle degrees clockwise from north.
/// @return nothing at a pole.
std::optional<GeoResult> ellipseResult(double latitude, double majorAxis, double minorAxis,
                                       double angle);

/// Coarsest and finest level of a tile.
constexpr unsigned int kCoarsestTile = 6;
constexpr unsigned int kFinestTile = 23;

/// A WLAN RM tile: identifier, level, south-west corner, size, parent (null at the coarsest level)
/// and its four children from the south-west eastward and northward (none at the finest level).
/// @return nothing when `id` is no identifier of a tile.
std::optional<GeoResult> tileResult(unsigned long long id);

/// The same tile as a GeoJSON feature (RFC 7946): its outline as a polygon, counter-clockwise from
/// the south-west corner, and what tileResult() gives as the properties.
std::optional<GeoResult> tileFeature(unsigned long long id);

/// A result for people: one line a value, what is nested indented.
std::string textOf(const GeoResult& result);

}  // namespace trelvo::tool
