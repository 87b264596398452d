#include <trelvo/schema/Utility.h>

#include <cmath>

#include "geometry/GeodesyInline.h"
#include "objects/Saturate.h"

namespace trelvo::schema {
namespace {

using geometry::kPi;

constexpr double kCodesPerRange = 0x1p31;
constexpr double kRangesPerCode = 0x1p-31;

constexpr float kSinglePi = 3.1415927f;
constexpr double kSinglePiInDegrees = 180.00000500895632;

// Saturation settles both ends: the upper one, where the quotient is 2^31, and all beyond.
int fixedPointCode(double degrees, double range) noexcept {
  return saturate<int>(std::floor(degrees / range * kCodesPerRange));
}

}  // namespace

int Utility::latitude(double degrees) noexcept { return fixedPointCode(degrees, 90.0); }

int Utility::longitude(double degrees) noexcept { return fixedPointCode(degrees, 180.0); }

double Utility::wgs84Latitude(int code) noexcept {
  return static_cast<double>(code) * 90.0 * kRangesPerCode;
}

double Utility::wgs84Longitude(int code) noexcept {
  return static_cast<double>(code) * 180.0 * kRangesPerCode;
}

double Utility::toDegrees(float radians) noexcept {
  if (radians > kSinglePi) return kSinglePiInDegrees;
  if (!(radians >= 0.0f)) return 0.0;
  return static_cast<double>(radians) / kPi * 180.0;
}

double Utility::toRadians(double degrees) noexcept {
  if (degrees > 180.0) return kPi;
  if (!(degrees >= 0.0)) return 0.0;
  return degrees / 180.0 * kPi;
}

double Utility::compLonRollOver(double longitude, double reference) noexcept {
  return geometry::besideReference(longitude, reference);
}

double Utility::deCompLonRollOver(double longitude) noexcept {
  if (longitude >= 180.0) return longitude - 360.0;
  if (longitude < -180.0) return longitude + 360.0;
  return longitude;
}

bool Utility::isPositionInsideArea(double originLatitude, double originLongitude,
                                   double latitudeSize, double longitudeSize, double latitude,
                                   double longitude) noexcept {
  return originLatitude <= latitude && latitude < originLatitude + latitudeSize &&
         originLongitude <= longitude && longitude < originLongitude + longitudeSize;
}

}  // namespace trelvo::schema
