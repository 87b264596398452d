#include <gtest/gtest.h>
#include <trelvo/schema/Utility.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "Ulps.h"

namespace trelvo::schema {
namespace {

#include "tests/reference/geodesy_reference.inc"

using test::kInfinity;
using test::kNaN;
using test::sameOutcome;
using test::ulpsBetween;

constexpr double kUntouched = 777.25;
constexpr double kRadiansPerDegree = 0.017453292519943295;
constexpr double kSphereRadius = 6371010.0;
constexpr double kEpsilon = 0x1p-52;
constexpr double kCosineError = 1.1e-15;

double distanceOf(double lat1, double lon1, double lat2, double lon2) {
  double metres = kUntouched;
  EXPECT_TRUE(Utility::distance(lat1, lon1, lat2, lon2, metres));
  return metres;
}

// The bearing, or kUntouched where there is none; a refusal that writes shows as another value.
double bearingOf(double lat1, double lon1, double lat2, double lon2) {
  double degrees = kUntouched;
  const bool defined = Utility::bearing(lat1, lon1, lat2, lon2, degrees);
  EXPECT_EQ(defined, degrees != kUntouched);
  return degrees;
}

double degreesApart(double a, double b) {
  const double difference = std::fabs(a - b);
  return std::min(difference, 360.0 - difference);
}

// What rounding can cost: the arc cosine magnifies the cosine's last bits near 0 and near pi.
double distanceBound(double metres) {
  const double halfCircle = 3.141592653589793 * kSphereRadius;
  return std::max(0.018 / std::min(metres, halfCircle - metres), 1e-8);
}

// The formulas as they are written, one call after the other.
double writtenCosAlpha(double lat1, double lon1, double lat2, double lon2) {
  const double k = std::cos(lat1 * kRadiansPerDegree) * std::cos(lat2 * kRadiansPerDegree) *
                       std::cos((lon2 - lon1) * kRadiansPerDegree) +
                   std::sin(lat1 * kRadiansPerDegree) * std::sin(lat2 * kRadiansPerDegree);
  return Utility::normalizedSinOrCosValue(k);
}

double writtenBearing(double lat1, double lon1, double lat2, double lon2) {
  if (lat1 == lat2 && lon1 == lon2) return 0.0;
  const double k = writtenCosAlpha(lat1, lon1, lat2, lon2);
  if (-lat2 == lat1 && lon2 + 180.0 == lon1) return kUntouched;
  if (k == 1.0 || k == -1.0) return kUntouched;
  const double alpha = std::acos(k);
  const double s1 = std::sin(lat1 * kRadiansPerDegree);
  const double c1 = std::cos(lat1 * kRadiansPerDegree);
  if (lat1 == 90.0 || lat1 == -90.0 || s1 == 1.0 || s1 == -1.0) return kUntouched;
  const double b = std::acos(Utility::normalizedSinOrCosValue(
                       (std::sin(lat2 * kRadiansPerDegree) - k * s1) / (c1 * std::sin(alpha)))) /
                   kRadiansPerDegree;
  if (b == 0.0 || b == 180.0) return b;
  const double d = std::abs(static_cast<int>(lon1 - lon2));
  if (lon1 > lon2) return d > 180.0 ? b : 360.0 - b;
  return d <= 180.0 ? b : 360.0 - b;
}

TEST(Utility, LocalScaleMatchesHighPrecision) {
  for (const ScaleRow& row : kScaleRows) {
    double lon = 0.0;
    double lat = 0.0;
    ASSERT_TRUE(Utility::meterInDegrees(row.latitude, lon, lat));
    const double bound = kEpsilon * (4.0 + 2.0 / std::cos(row.latitude * kRadiansPerDegree));
    EXPECT_LE(std::fabs(lon / row.lon - 1.0), bound) << row.latitude;
    EXPECT_LE(ulpsBetween(lat, row.lat), 3.0) << row.latitude;
  }
}

TEST(Utility, LocalScaleAgreesWithWgs84) {
  for (const ScaleRow& row : kScaleRows) {
    double lon = 0.0;
    double lat = 0.0;
    ASSERT_TRUE(Utility::meterInDegrees(row.latitude, lon, lat));
    const double rounding = kEpsilon * 2.0 / std::cos(row.latitude * kRadiansPerDegree);
    EXPECT_LE(std::fabs(lon / row.wgs84Lon - 1.0), 0.8e-11 + rounding) << row.latitude;
    EXPECT_LE(std::fabs(lat / row.wgs84Lat - 1.0), 1.5e-11) << row.latitude;
  }
}

TEST(Utility, LocalScaleAtTheEquatorIsThatOfTheAxes) {
  double lon = 0.0;
  double lat = 0.0;
  ASSERT_TRUE(Utility::meterInDegrees(0.0, lon, lat));
  EXPECT_EQ(lon, 57.29577951308232 * (1.0 / 6378137.0));
  EXPECT_LE(ulpsBetween(lon, 57.29577951308232 / 6378137.0), 1.0);
  EXPECT_EQ(lat, 57.29577951308232 * 1.578422502929283e-07);
}

TEST(Utility, LocalScaleAtThePolesIsRefusedWithZeros) {
  for (double pole : {90.0, -90.0}) {
    double lon = 1.5;
    double lat = 2.5;
    EXPECT_FALSE(Utility::meterInDegrees(pole, lon, lat));
    EXPECT_EQ(lon, 0.0);
    EXPECT_EQ(lat, 0.0);
    lon = 1.5;
    lat = 2.5;
    EXPECT_FALSE(Utility::degreeInMeters(pole, lon, lat));
    EXPECT_EQ(lon, 0.0);
    EXPECT_EQ(lat, 0.0);
  }
}

TEST(Utility, LocalScaleAHairShortOfThePoleIsVeryLarge) {
  for (double pole : {90.0, -90.0}) {
    double lon = 0.0;
    double lat = 0.0;
    EXPECT_TRUE(Utility::meterInDegrees(std::nextafter(pole, 0.0), lon, lat));
    EXPECT_GT(lon, 1e10);
    EXPECT_NEAR(lat, 8.953034030482566e-06, 1e-20);
    EXPECT_TRUE(Utility::meterInDegrees(std::nextafter(pole, 2 * pole), lon, lat));
    EXPECT_LT(lon, -1e10);
  }
}

TEST(Utility, LocalScaleIsEvenInLatitude) {
  test::Uniform uniform(26);
  for (int i = 0; i < 10000; ++i) {
    const double latitude = uniform(0.0, 90.0);
    double lon[2], lat[2];
    ASSERT_TRUE(Utility::meterInDegrees(latitude, lon[0], lat[0]));
    ASSERT_TRUE(Utility::meterInDegrees(-latitude, lon[1], lat[1]));
    ASSERT_EQ(lon[0], lon[1]);
    ASSERT_EQ(lat[0], lat[1]);
  }
}

TEST(Utility, LocalScaleOfNaNOrInfinityIsNaN) {
  for (double latitude : {kNaN, kInfinity, -kInfinity}) {
    double lon = 0.0;
    double lat = 0.0;
    EXPECT_TRUE(Utility::meterInDegrees(latitude, lon, lat));
    EXPECT_TRUE(std::isnan(lon));
    EXPECT_TRUE(std::isnan(lat));
    EXPECT_TRUE(Utility::degreeInMeters(latitude, lon, lat));
    EXPECT_TRUE(std::isnan(lon));
    EXPECT_TRUE(std::isnan(lat));
  }
}

TEST(Utility, MetresPerDegreeAreTheReciprocals) {
  for (const ScaleRow& row : kScaleRows) {
    double lonDegrees = 0.0, latDegrees = 0.0, lonMetres = 0.0, latMetres = 0.0;
    ASSERT_TRUE(Utility::meterInDegrees(row.latitude, lonDegrees, latDegrees));
    ASSERT_TRUE(Utility::degreeInMeters(row.latitude, lonMetres, latMetres));
    EXPECT_EQ(lonMetres, 1.0 / lonDegrees);
    EXPECT_EQ(latMetres, 1.0 / latDegrees);
    EXPECT_LE(ulpsBetween(latMetres, 1.0 / row.lat), 5.0);
  }
}

TEST(Utility, CosAlphaMatchesHighPrecision) {
  for (const PairRow& row : kPairRows) {
    EXPECT_NEAR(Utility::cosAlpha(row.lat1, row.lon1, row.lat2, row.lon2), row.cosAlpha,
                kCosineError)
        << row.lat1 << ' ' << row.lon1 << ' ' << row.lat2 << ' ' << row.lon2;
  }
}

TEST(Utility, CosAlphaEqualsTheWrittenOutFormula) {
  test::Uniform uniform(27);
  for (int i = 0; i < 100000; ++i) {
    const double lat1 = uniform(-90.0, 90.0), lon1 = uniform(-180.0, 180.0);
    const double lat2 = uniform(-90.0, 90.0), lon2 = uniform(-180.0, 180.0);
    const double k = Utility::cosAlpha(lat1, lon1, lat2, lon2);
    ASSERT_EQ(k, writtenCosAlpha(lat1, lon1, lat2, lon2));
    ASSERT_EQ(distanceOf(lat1, lon1, lat2, lon2), std::acos(k) * kSphereRadius);
  }
}

TEST(Utility, CosAlphaStaysWithinOneForNearbyPointsAndAntipodes) {
  test::Uniform uniform(28);
  for (int i = 0; i < 100000; ++i) {
    const double lat = uniform(-90.0, 90.0), lon = uniform(-180.0, 180.0);
    const double step = uniform(-1e-8, 1e-8);
    ASSERT_LE(Utility::cosAlpha(lat, lon, lat + step, lon), 1.0);
    ASSERT_GE(Utility::cosAlpha(lat, lon, -lat + step, lon + 180.0), -1.0);
  }
}

TEST(Utility, DistanceMatchesTheHaversineForm) {
  for (const PairRow& row : kPairRows) {
    EXPECT_NEAR(distanceOf(row.lat1, row.lon1, row.lat2, row.lon2), row.metres,
                distanceBound(row.metres));
  }
}

TEST(Utility, DistanceIsWithinHalfAPercentOrSoOfTheGeodesic) {
  for (const GeodesicRow& row : kGeodesicRows) {
    const double metres = distanceOf(row.lat1, row.lon1, row.lat2, row.lon2);
    EXPECT_NEAR(metres / row.metres, 1.0, 0.0057) << row.metres;
  }
}

TEST(Utility, DistanceOfAPointToItselfIsExactlyZero) {
  EXPECT_EQ(distanceOf(10.0, 20.0, 10.0, 20.0), 0.0);
  EXPECT_EQ(distanceOf(51.4778, -0.0015, 51.4778, -0.0015), 0.0);
  EXPECT_EQ(distanceOf(kInfinity, 20.0, kInfinity, 20.0), 0.0);
}

TEST(Utility, DistanceNextToZeroMovesInStepsOfTheCosine) {
  // The cosines below 1 are 2^-53 apart.
  const double smallest = std::acos(1.0 - 0x1p-53) * kSphereRadius;
  EXPECT_NEAR(smallest, 0.0949, 0.0001);
  test::Uniform uniform(29);
  for (int i = 0; i < 10000; ++i) {
    const double lat = uniform(-80.0, 80.0), lon = uniform(-180.0, 180.0);
    const double metres = distanceOf(lat, lon, lat + uniform(1e-9, 9e-7), lon);
    ASSERT_TRUE(metres == 0.0 || metres >= smallest) << metres;
  }
}

TEST(Utility, DistanceCrossesTheDateLineTheShortWay) {
  EXPECT_NEAR(distanceOf(0.0, 179.5, 0.0, -179.5), distanceOf(0.0, 0.0, 0.0, 1.0), 1e-6);
  EXPECT_NEAR(distanceOf(60.0, -179.5, 61.0, 179.5), distanceOf(60.0, 0.5, 61.0, -0.5), 1e-6);
}

TEST(Utility, DistanceBetweenPolesAndAntipodesIsHalfTheGreatCircle) {
  const double half = 3.141592653589793 * kSphereRadius;
  EXPECT_EQ(distanceOf(90.0, 0.0, -90.0, 0.0), half);
  EXPECT_EQ(distanceOf(90.0, 10.0, -90.0, -70.0), half);
  EXPECT_EQ(distanceOf(0.0, 0.0, 0.0, 180.0), half);
  EXPECT_EQ(distanceOf(45.0, 10.0, -45.0, -170.0), half);
  EXPECT_EQ(distanceOf(90.0, 0.0, 90.0, 120.0), 0.0);
}

TEST(Utility, DistanceOfNaNOrInfinityIsNaN) {
  const double pair[] = {10.0, 20.0, 30.0, 40.0};
  for (double odd : {kNaN, kInfinity, -kInfinity}) {
    for (int i = 0; i < 4; ++i) {
      double v[4];
      for (int j = 0; j < 4; ++j) v[j] = i == j ? odd : pair[j];
      EXPECT_TRUE(std::isnan(distanceOf(v[0], v[1], v[2], v[3])));
      EXPECT_TRUE(std::isnan(Utility::cosAlpha(v[0], v[1], v[2], v[3])));
      EXPECT_TRUE(std::isnan(bearingOf(v[0], v[1], v[2], v[3])));
    }
  }
}

TEST(Utility, BearingMatchesTheArcTangentForm) {
  for (const PairRow& row : kPairRows) {
    const double degrees = bearingOf(row.lat1, row.lon1, row.lat2, row.lon2);
    EXPECT_LE(degreesApart(degrees, row.bearing), row.bearingBound)
        << row.lat1 << ' ' << row.lon1 << ' ' << row.lat2 << ' ' << row.lon2;
  }
}

TEST(Utility, BearingAlongTheEquator) {
  EXPECT_EQ(bearingOf(0.0, 0.0, 0.0, 90.0), 90.0);
  EXPECT_EQ(bearingOf(0.0, 90.0, 0.0, 0.0), 270.0);
}

TEST(Utility, BearingOfAPointToItselfIsNorth) {
  EXPECT_EQ(bearingOf(10.0, 20.0, 10.0, 20.0), 0.0);
  EXPECT_EQ(bearingOf(90.0, 20.0, 90.0, 20.0), 0.0) << "equal pairs come before the poles";
}

TEST(Utility, BearingToTheAntipodeIsRefused) {
  EXPECT_EQ(bearingOf(45.0, 10.0, -45.0, -170.0), kUntouched);
  EXPECT_EQ(Utility::cosAlpha(-45.0, -170.0, 45.0, 10.0), -1.0);
  EXPECT_EQ(bearingOf(-45.0, -170.0, 45.0, 10.0), kUntouched);
}

TEST(Utility, BearingToTheAntipodeIsKnownByItsCoordinatesInOneDirectionOnly) {
  int known = 0;
  for (int halfDegrees = 1; halfDegrees < 180; ++halfDegrees) {
    const double lat = halfDegrees * 0.5;
    EXPECT_EQ(bearingOf(lat, 10.0, -lat, -170.0), kUntouched) << lat;
    const bool cosineTells = Utility::cosAlpha(-lat, -170.0, lat, 10.0) == -1.0;
    EXPECT_EQ(bearingOf(-lat, -170.0, lat, 10.0) == kUntouched, cosineTells) << lat;
    if (!cosineTells) ++known;
  }
  EXPECT_GT(known, 0) << "no latitude where only the coordinates tell";
}

TEST(Utility, BearingBetweenPointsWhoseCosineRoundsToOneIsRefused) {
  EXPECT_EQ(Utility::cosAlpha(0.0, 20.0, 0.0, 20.0000001), 1.0);
  EXPECT_EQ(bearingOf(0.0, 20.0, 0.0, 20.0000001), kUntouched);
}

TEST(Utility, BearingFromAPoleIsRefused) {
  EXPECT_EQ(bearingOf(90.0, 0.0, 45.0, 10.0), kUntouched);
  EXPECT_EQ(bearingOf(-90.0, 0.0, 45.0, 10.0), kUntouched);
}

TEST(Utility, BearingFromAPlaceWhoseSineRoundsToOneIsRefused) {
  EXPECT_EQ(bearingOf(90.0 - 5e-7, 0.0, 45.0, 10.0), kUntouched);
  EXPECT_EQ(bearingOf(-90.0 + 5e-7, 0.0, 45.0, 10.0), kUntouched);
  EXPECT_NE(bearingOf(90.0 - 1e-6, 0.0, 45.0, 10.0), kUntouched);
}

TEST(Utility, BearingToAPoleIsAlongTheMeridianWhateverTheLongitudes) {
  EXPECT_EQ(bearingOf(0.0, 0.0, 90.0, 0.0), 0.0);
  EXPECT_EQ(bearingOf(0.0, 0.0, -90.0, 0.0), 180.0);
  // From the east, too: exactly north is 0, not 360.
  EXPECT_EQ(bearingOf(0.0, 10.0, 90.0, 0.0), 0.0);
  EXPECT_EQ(bearingOf(0.0, 10.0, -90.0, 0.0), 180.0);
}

TEST(Utility, BearingAlongAMeridianIsOffBy12DegreesDividedByTheMetresAtMost) {
  test::Uniform uniform(31);
  for (int i = 0; i < 100000; ++i) {
    const double lat = uniform(-84.0, 84.0), lon = uniform(-180.0, 180.0);
    const double step = std::pow(10.0, uniform(-5.0, 0.0));
    const double bound = 12.0 / (step * kRadiansPerDegree * kSphereRadius);
    ASSERT_LE(degreesApart(bearingOf(lat, lon, lat + step, lon), 0.0), bound) << lat << ' ' << step;
    ASSERT_NEAR(bearingOf(lat, lon, lat - step, lon), 180.0, bound) << lat << ' ' << step;
  }
}

TEST(Utility, BearingTellsEastFromWest) {
  EXPECT_NEAR(bearingOf(0.0, 10.0, 0.0, 20.0), 90.0, 1e-10);      // eastward
  EXPECT_NEAR(bearingOf(0.0, 20.0, 0.0, 10.0), 270.0, 1e-10);     // westward
  EXPECT_NEAR(bearingOf(0.0, 170.0, 0.0, -170.0), 90.0, 1e-10);   // eastward over the date line
  EXPECT_NEAR(bearingOf(0.0, -170.0, 0.0, 170.0), 270.0, 1e-10);  // westward over it
}

TEST(Utility, BearingIgnoresTheFractionOfTheLongitudeDifference) {
  // 180.9 degrees count as 180, so that the bearing comes out mirrored; 181 count as they are.
  EXPECT_NEAR(bearingOf(0.0, 100.9, 0.0, -80.0), 270.0, 1e-8);
  EXPECT_NEAR(bearingOf(0.0, 101.0, 0.0, -80.0), 90.0, 1e-8);
  EXPECT_NEAR(bearingOf(0.0, -80.0, 0.0, 100.9), 90.0, 1e-8);
  EXPECT_NEAR(bearingOf(0.0, -80.0, 0.0, 101.0), 270.0, 1e-8);
}

TEST(Utility, BearingStandsLongitudesOfAnySize) {
  for (double lon : {1e10, -1e10, 1e300, -1e300}) {
    const double b = bearingOf(0.0, lon, 10.0, 0.0);
    const double mirrored = bearingOf(0.0, -lon, 10.0, 0.0);
    EXPECT_GE(b, 0.0);
    EXPECT_LT(b, 360.0);
    // Far past the half circle from either side: one the mirror image of the other.
    EXPECT_EQ(std::max(b, mirrored), 360.0 - std::min(b, mirrored));
  }
}

TEST(Utility, BearingEqualsTheWrittenOutSteps) {
  test::Uniform uniform(30);
  for (int i = 0; i < 100000; ++i) {
    const double spread = i % 2 == 0 ? 3.0 : i % 3 == 0 ? 1e-6 : 400.0;
    const double lat1 = uniform(-90.0, 90.0), lon1 = uniform(-180.0, 180.0);
    const double lat2 = lat1 + uniform(-spread, spread), lon2 = lon1 + uniform(-spread, spread);
    const double degrees = bearingOf(lat1, lon1, lat2, lon2);
    ASSERT_TRUE(sameOutcome(degrees, writtenBearing(lat1, lon1, lat2, lon2)))
        << lat1 << ' ' << lon1 << ' ' << lat2 << ' ' << lon2;
    ASSERT_TRUE(degrees == kUntouched || (degrees >= 0.0 && degrees < 360.0)) << degrees;
  }
}

}  // namespace
}  // namespace trelvo::schema
