#include <trelvo/schema/Utility.h>

#include <cmath>
#include <cstdint>

#include "geometry/GeodesyInline.h"
#include "objects/Saturate.h"

namespace trelvo::schema {
namespace {

using geometry::LocalScale;
using geometry::SinCos;
using geometry::sinCos;

constexpr double kMeanSphereRadius = 6371010.0;  // metres
constexpr double kRadiansPerDegree = 0.017453292519943295;

inline double clampToUnit(double value) noexcept {
  if (value > 1.0) return 1.0;
  if (value < -1.0) return -1.0;
  return value;
}

inline double cosCentralAngle(const SinCos& first, const SinCos& second,
                              double lonDifference) noexcept {
  return clampToUnit(first.cos * second.cos * std::cos(lonDifference * kRadiansPerDegree) +
                     first.sin * second.sin);
}

inline double cosBetween(double lat1, double lon1, double lat2, double lon2) noexcept {
  return cosCentralAngle(sinCos(lat1 * kRadiansPerDegree), sinCos(lat2 * kRadiansPerDegree),
                         lon2 - lon1);
}

inline bool samePoint(double lat1, double lon1, double lat2, double lon2) noexcept {
  return lat1 == lat2 && lon1 == lon2;
}

inline bool isUnit(double value) noexcept { return value == 1.0 || value == -1.0; }

// Whole degrees decide: a difference of 180.9 counts as 180, which is not past the half circle.
inline bool pastHalfCircle(double lon1, double lon2) noexcept {
  const auto wholeDegrees = saturate<std::int32_t>(lon1 - lon2);
  return wholeDegrees > 180 || wholeDegrees < -180;
}

}  // namespace

bool Utility::meterInDegrees(double latitude, double& lonDegreesPerMeter,
                             double& latDegreesPerMeter) noexcept {
  LocalScale scale;
  const bool known = geometry::localScale(latitude, scale);
  lonDegreesPerMeter = scale.lonDegreesPerMeter;
  latDegreesPerMeter = scale.latDegreesPerMeter;
  return known;
}

bool Utility::degreeInMeters(double latitude, double& lonMetersPerDegree,
                             double& latMetersPerDegree) noexcept {
  if (!meterInDegrees(latitude, lonMetersPerDegree, latMetersPerDegree)) return false;
  lonMetersPerDegree = 1.0 / lonMetersPerDegree;
  latMetersPerDegree = 1.0 / latMetersPerDegree;
  return true;
}

double Utility::normalizedSinOrCosValue(double value) noexcept { return clampToUnit(value); }

double Utility::cosAlpha(double lat1, double lon1, double lat2, double lon2) noexcept {
  return cosBetween(lat1, lon1, lat2, lon2);
}

bool Utility::distance(double lat1, double lon1, double lat2, double lon2,
                       double& metres) noexcept {
  metres = 0.0;
  if (!samePoint(lat1, lon1, lat2, lon2)) {
    metres = std::acos(cosBetween(lat1, lon1, lat2, lon2)) * kMeanSphereRadius;
  }
  return true;
}

bool Utility::bearing(double lat1, double lon1, double lat2, double lon2,
                      double& degrees) noexcept {
  if (samePoint(lat1, lon1, lat2, lon2)) {
    degrees = 0.0;
    return true;
  }
  // The antipode, tested in this one direction only; the other comes out as a cosine of -1.
  if (-lat2 == lat1 && lon2 + 180.0 == lon1) return false;

  const SinCos first = sinCos(lat1 * kRadiansPerDegree);
  const SinCos second = sinCos(lat2 * kRadiansPerDegree);
  const double k = cosCentralAngle(first, second, lon2 - lon1);
  if (isUnit(k) || lat1 == 90.0 || lat1 == -90.0 || isUnit(first.sin)) return false;

  const double cosine = (second.sin - k * first.sin) / (first.cos * std::sin(std::acos(k)));
  const double b = std::acos(clampToUnit(cosine)) / kRadiansPerDegree;
  const bool onMeridian = b == 0.0 || b == 180.0;
  const bool eastward = (lon1 > lon2) == pastHalfCircle(lon1, lon2);
  // Taken from an array: east or west is a coin toss, and a branch would guess wrong half the time.
  const double outcomes[] = {360.0 - b, b};
  degrees = outcomes[onMeridian || eastward];
  return true;
}

}  // namespace trelvo::schema
