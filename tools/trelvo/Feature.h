#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/trelvo/ShowValue.h"

namespace trelvo::tool {

/// A position in degrees, within the globe's ranges, and its height where one is known.
struct FeaturePosition {
  double latitude = 0.0;           ///< [-90, 90]
  double longitude = 0.0;          ///< [-180, 180]
  std::optional<double> altitude;  ///< metres above the WGS84 ellipsoid
};

/// The semi-axes of an ellipse in metres, both above 0, and the direction of the first, degrees
/// clockwise from north. A circle has two equal ones.
struct FeatureEllipse {
  double major = 0.0;
  double minor = 0.0;
  double angle = 0.0;
  bool isCircle = false;  ///< it stands for the circle of the position, not for its ellipse
};

/// One field under the name that a column or a property gets.
struct FeatureField {
  std::string name;
  Token value;
  bool isDerived = false;  ///< what another field decodes to
};

/// What one thing in a container becomes in other formats: a measurement, a neighbour of a serving
/// cell, a known cell or access point, a position.
struct Feature {
  std::string kind;             ///< the class, "GnssMeasurement"
  std::uint64_t container = 0;  ///< which object of the file it is in, from 1
  unsigned int element = 0;     ///< which feature of its container it is, from 1
  unsigned int parent = 0;      ///< the feature that it hangs from, 0 for none
  std::vector<FeatureField> fields;

  std::optional<unsigned int> timeStamp;  ///< Unix seconds
  std::optional<FeaturePosition> position;
  std::optional<FeatureEllipse> ellipse;  ///< only where there is a position

  /// The value of a field, null when there is none.
  const Token* find(std::string_view name) const;

  /// The number in a field; nothing when there is no such field or no such number in it.
  std::optional<double> number(std::string_view name) const;
};

/// Fills in time stamp, position and ellipse by the fields.
///
/// The position is `latitude` and `longitude`, or that of the access point; one that is no number
/// or lies outside the globe is none. The ellipse needs both axes above 0 and, unless they are
/// equal, an angle. Where there is none, `horizontalCepUncertainty` gives a circle.
void locate(Feature& feature);

}  // namespace trelvo::tool
