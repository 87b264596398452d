#include "tools/trelvo/Feature.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace trelvo::tool {
namespace {

template <class Number>
std::optional<Number> parsed(const Token* token) {
  Number value{};
  if (token == nullptr || token->kind != Token::Number) {
    return std::nullopt;
  }
  const char* const end = token->text.data() + token->text.size();
  const auto result = std::from_chars(token->text.data(), end, value);
  const bool isWhole = result.ec == std::errc() && result.ptr == end;
  return isWhole ? std::optional<Number>(value) : std::nullopt;
}

std::optional<FeaturePosition> positionAt(const Feature& feature, std::string_view latitudeName,
                                          std::string_view longitudeName) {
  const auto latitude = feature.number(latitudeName);
  const auto longitude = feature.number(longitudeName);
  if (!latitude || !longitude || std::abs(*latitude) > 90.0 || std::abs(*longitude) > 180.0) {
    return std::nullopt;
  }
  return FeaturePosition{*latitude, *longitude, feature.number("altitude")};
}

std::optional<FeatureEllipse> ellipseOf(const Feature& feature) {
  const double major = feature.number("majorAxis").value_or(0.0);
  const double minor = feature.number("minorAxis").value_or(0.0);
  const auto degrees = feature.number("angleDegrees");
  const auto angle = degrees ? degrees : feature.number("angle");
  if (major > 0.0 && minor > 0.0 && (angle || major == minor)) {
    return FeatureEllipse{major, minor, angle.value_or(0.0), false};
  }
  const double radius = feature.number("horizontalCepUncertainty").value_or(0.0);
  return radius > 0.0 ? std::optional<FeatureEllipse>({radius, radius, 0.0, true}) : std::nullopt;
}

}  // namespace

const Token* Feature::find(std::string_view name) const {
  const auto found = std::find_if(fields.begin(), fields.end(),
                                  [name](const FeatureField& field) { return field.name == name; });
  return found == fields.end() ? nullptr : &found->value;
}

std::optional<double> Feature::number(std::string_view name) const {
  return parsed<double>(find(name));
}

void locate(Feature& feature) {
  feature.timeStamp = parsed<unsigned int>(feature.find("timeStamp"));
  feature.position = positionAt(feature, "latitude", "longitude");
  if (feature.position) {
    feature.ellipse = ellipseOf(feature);
  } else {
    feature.position = positionAt(feature, "apLatitude", "apLongitude");
  }
}

}  // namespace trelvo::tool
