#include <gtest/gtest.h>
#include <trelvo/schema/Utility.h>

#include <cmath>
#include <limits>
#include <type_traits>

#include "Ulps.h"

namespace trelvo::schema {
namespace {

#include "tests/reference/geodesy_reference.inc"

using test::kInfinity;
using test::kNaN;
using test::sameOutcome;
using test::ulpsBetween;

constexpr int kMinCode = std::numeric_limits<int>::min();  // 0x80000000
constexpr int kMaxCode = 0x7FFFFFFF;
constexpr double kPi = 3.141592653589793;
constexpr float kSinglePi = 3.1415927f;
constexpr double kSinglePiInDegrees = 180.00000500895632;

// The three steps written out: clamp, floor, and the step down from 2^31.
int codeByTheSteps(double v, double range) {
  if (v < -range) return kMinCode;
  if (v > range) return kMaxCode;
  if (std::isnan(v)) return 0;
  const double f = std::floor(v / range * 2147483648.0);
  return static_cast<int>(f < 2147483648.0 ? f : f - 1.0);
}

static_assert(!std::is_default_constructible_v<Utility>, "functions only, no objects");

TEST(Utility, LatitudeCodeSpansTheRange) {
  EXPECT_EQ(Utility::latitude(90.0), 0x7FFFFFFF);
  EXPECT_EQ(Utility::latitude(-90.0), kMinCode);
  EXPECT_EQ(Utility::latitude(91.0), 0x7FFFFFFF);
  EXPECT_EQ(Utility::latitude(-91.0), kMinCode);
  EXPECT_EQ(Utility::latitude(0.0), 0);
  EXPECT_EQ(Utility::latitude(-0.0), 0);
  EXPECT_EQ(Utility::latitude(45.0), 0x40000000);
}

TEST(Utility, LongitudeCodeSpansTheRange) {
  EXPECT_EQ(Utility::longitude(180.0), 0x7FFFFFFF);
  EXPECT_EQ(Utility::longitude(-180.0), kMinCode);
  EXPECT_EQ(Utility::longitude(181.0), 0x7FFFFFFF);
  EXPECT_EQ(Utility::longitude(-181.0), kMinCode);
  EXPECT_EQ(Utility::longitude(0.0), 0);
  EXPECT_EQ(Utility::longitude(90.0), 0x40000000);
}

TEST(Utility, CodeOfNaNIsZero) {
  EXPECT_EQ(Utility::latitude(kNaN), 0);
  EXPECT_EQ(Utility::longitude(kNaN), 0);
}

TEST(Utility, CodeOfInfinityIsTheEndOfTheRange) {
  EXPECT_EQ(Utility::latitude(kInfinity), kMaxCode);
  EXPECT_EQ(Utility::latitude(-kInfinity), kMinCode);
  EXPECT_EQ(Utility::longitude(kInfinity), kMaxCode);
  EXPECT_EQ(Utility::longitude(-kInfinity), kMinCode);
}

TEST(Utility, CodeChangesOnlyBeyondTheLastStep) {
  EXPECT_EQ(Utility::latitude(std::nextafter(90.0, 0.0)), kMaxCode);
  EXPECT_EQ(Utility::latitude(std::nextafter(90.0, 91.0)), kMaxCode);
  EXPECT_EQ(Utility::latitude(std::nextafter(-90.0, 0.0)), kMinCode);
  EXPECT_EQ(Utility::latitude(std::nextafter(-90.0, -91.0)), kMinCode);
  EXPECT_EQ(Utility::latitude(-90.0 + 90.0 / 2147483648.0), kMinCode + 1);
}

TEST(Utility, CodeFloorsTowardTheSouthWest) {
  EXPECT_EQ(Utility::latitude(-1e-12), -1);
  EXPECT_EQ(Utility::latitude(1e-12), 0);
  EXPECT_EQ(Utility::longitude(-1e-12), -1);
  EXPECT_EQ(Utility::longitude(1e-12), 0);
}

TEST(Utility, CodesMatchExactFractions) {
  for (const CodeRow& row : kCodeRows) {
    EXPECT_EQ(Utility::latitude(row.degrees), row.latitude) << row.degrees;
    EXPECT_EQ(Utility::longitude(row.degrees), row.longitude) << row.degrees;
  }
}

TEST(Utility, CodesFollowTheWrittenOutSteps) {
  test::Uniform uniform(20);
  for (int i = 0; i < 200000; ++i) {
    const double lat = uniform(-91.0, 91.0);
    const double lon = uniform(-182.0, 182.0);
    ASSERT_EQ(Utility::latitude(lat), codeByTheSteps(lat, 90.0)) << lat;
    ASSERT_EQ(Utility::longitude(lon), codeByTheSteps(lon, 180.0)) << lon;
  }
}

TEST(Utility, DegreesOfACodeAreExact) {
  EXPECT_EQ(Utility::wgs84Latitude(0x40000000), 45.0);
  EXPECT_EQ(Utility::wgs84Longitude(0x40000000), 90.0);
  EXPECT_EQ(Utility::wgs84Latitude(kMinCode), -90.0);
  EXPECT_EQ(Utility::wgs84Longitude(kMinCode), -180.0);
  EXPECT_EQ(Utility::wgs84Latitude(kMaxCode), 89.9999999580904841423034667968750);
  EXPECT_EQ(Utility::wgs84Longitude(kMaxCode), 179.999999916180968284606933593750);
  EXPECT_EQ(Utility::wgs84Latitude(0), 0.0);
  EXPECT_EQ(Utility::wgs84Longitude(-1), -8.3819031715393066406250e-08);
}

TEST(Utility, RoundTripOfACodeLosesAtMostOneStep) {
  test::Uniform uniform(21);
  for (int i = 0; i < 200000; ++i) {
    const int code = static_cast<int>(static_cast<unsigned int>(uniform.bits() >> 32));
    const long long latLoss =
        code - static_cast<long long>(Utility::latitude(Utility::wgs84Latitude(code)));
    const long long lonLoss =
        code - static_cast<long long>(Utility::longitude(Utility::wgs84Longitude(code)));
    ASSERT_TRUE(latLoss == 0 || latLoss == 1) << code;
    ASSERT_TRUE(lonLoss == 0 || lonLoss == 1) << code;
  }
}

TEST(Utility, ToDegreesMatchesHighPrecision) {
  for (const AngleRow& row : kAngleRows) {
    const auto radians = static_cast<float>(row.singleRadians);
    EXPECT_LE(ulpsBetween(Utility::toDegrees(radians), row.singleDegrees), 2.0) << radians;
  }
  EXPECT_EQ(Utility::toDegrees(1.0f), 57.29577951308232);
  EXPECT_EQ(Utility::toDegrees(0.0f), 0.0);
}

TEST(Utility, ToDegreesAbovePiIsTheSinglePrecisionPi) {
  EXPECT_EQ(Utility::toDegrees(4.0f), 180.00000500895632);
  EXPECT_EQ(Utility::toDegrees(std::nextafter(kSinglePi, 4.0f)), kSinglePiInDegrees);
  EXPECT_EQ(Utility::toDegrees(kSinglePi), kSinglePiInDegrees);
  EXPECT_LT(Utility::toDegrees(std::nextafter(kSinglePi, 0.0f)), 180.0);
  EXPECT_EQ(Utility::toDegrees(90.5f), kSinglePiInDegrees);
  EXPECT_EQ(Utility::toDegrees(std::numeric_limits<float>::infinity()), kSinglePiInDegrees);
}

TEST(Utility, ToDegreesBelowZeroOrOfNaNIsZero) {
  EXPECT_EQ(Utility::toDegrees(-1.0f), 0.0);
  EXPECT_EQ(Utility::toDegrees(-1e-30f), 0.0);
  EXPECT_EQ(Utility::toDegrees(-std::numeric_limits<float>::infinity()), 0.0);
  EXPECT_EQ(Utility::toDegrees(std::numeric_limits<float>::quiet_NaN()), 0.0);
}

TEST(Utility, ToRadiansMatchesHighPrecision) {
  for (const AngleRow& row : kAngleRows) {
    EXPECT_LE(ulpsBetween(Utility::toRadians(row.degrees), row.radians), 2.0) << row.degrees;
  }
  EXPECT_EQ(Utility::toRadians(180.0), kPi);
  EXPECT_EQ(Utility::toRadians(90.0), kPi / 2);
  EXPECT_EQ(Utility::toRadians(0.0), 0.0);
}

TEST(Utility, ToRadiansDoesNotWrap) {
  EXPECT_EQ(Utility::toRadians(200.0), 3.141592653589793);
  EXPECT_EQ(Utility::toRadians(kInfinity), kPi);
  EXPECT_EQ(Utility::toRadians(-1.0), 0.0);
  EXPECT_EQ(Utility::toRadians(-1e-300), 0.0);
  EXPECT_EQ(Utility::toRadians(-kInfinity), 0.0);
  EXPECT_EQ(Utility::toRadians(kNaN), 0.0);
}

TEST(Utility, RollOverBringsLongitudesToTheSideOfTheReference) {
  EXPECT_EQ(Utility::compLonRollOver(-179.0, 179.0), 181.0);
  EXPECT_EQ(Utility::compLonRollOver(179.0, -179.0), -181.0);
  EXPECT_EQ(Utility::compLonRollOver(10.0, 20.0), 10.0);
  EXPECT_EQ(Utility::compLonRollOver(-170.0, 170.5), 190.0);
}

TEST(Utility, RollOverLeavesAHalfCircleAlone) {
  EXPECT_EQ(Utility::compLonRollOver(-90.0, 90.0), -90.0);
  EXPECT_EQ(Utility::compLonRollOver(90.0, -90.0), 90.0);
  EXPECT_EQ(Utility::compLonRollOver(-90.25, 90.0), 269.75);
  EXPECT_EQ(Utility::compLonRollOver(90.25, -90.0), -269.75);
}

TEST(Utility, RollOverOfNaNOrInfinity) {
  EXPECT_TRUE(std::isnan(Utility::compLonRollOver(kNaN, 0.0)));
  EXPECT_EQ(Utility::compLonRollOver(10.0, kNaN), 10.0);
  EXPECT_EQ(Utility::compLonRollOver(kInfinity, 0.0), kInfinity);
  EXPECT_EQ(Utility::compLonRollOver(10.0, kInfinity), 370.0);
  EXPECT_EQ(Utility::compLonRollOver(10.0, -kInfinity), -350.0);
  EXPECT_EQ(Utility::compLonRollOver(kInfinity, kInfinity), kInfinity);
}

TEST(Utility, RollOverIsUndoneIntoTheHalfOpenRange) {
  EXPECT_EQ(Utility::deCompLonRollOver(181.0), -179.0);
  EXPECT_EQ(Utility::deCompLonRollOver(180.0), -180.0);
  EXPECT_EQ(Utility::deCompLonRollOver(-180.0), -180.0);
  EXPECT_EQ(Utility::deCompLonRollOver(-180.5), 179.5);
  EXPECT_EQ(Utility::deCompLonRollOver(179.5), 179.5);
  EXPECT_EQ(Utility::deCompLonRollOver(0.0), 0.0);
  EXPECT_EQ(Utility::deCompLonRollOver(kInfinity), kInfinity);
  EXPECT_EQ(Utility::deCompLonRollOver(-kInfinity), -kInfinity);
  EXPECT_TRUE(std::isnan(Utility::deCompLonRollOver(kNaN)));
}

TEST(Utility, ClampsSinesAndCosines) {
  EXPECT_EQ(Utility::normalizedSinOrCosValue(1.0000000000000002), 1.0);
  EXPECT_EQ(Utility::normalizedSinOrCosValue(-1.0000000000000002), -1.0);
  EXPECT_EQ(Utility::normalizedSinOrCosValue(1.0), 1.0);
  EXPECT_EQ(Utility::normalizedSinOrCosValue(-1.0), -1.0);
  EXPECT_EQ(Utility::normalizedSinOrCosValue(0.25), 0.25);
  EXPECT_TRUE(sameOutcome(Utility::normalizedSinOrCosValue(-0.0), -0.0));
  EXPECT_EQ(Utility::normalizedSinOrCosValue(kInfinity), 1.0);
  EXPECT_EQ(Utility::normalizedSinOrCosValue(-kInfinity), -1.0);
  EXPECT_TRUE(std::isnan(Utility::normalizedSinOrCosValue(kNaN)));
}

}  // namespace
}  // namespace trelvo::schema
