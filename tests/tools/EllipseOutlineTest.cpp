#include "tools/trelvo/EllipseOutline.h"

#include <gtest/gtest.h>
#include <trelvo/schema/Utility.h>

#include <algorithm>
#include <cmath>

namespace trelvo::tool {
namespace {

constexpr FeaturePosition kBerlin = {52.5, 13.4, std::nullopt};

double distance(const FeaturePosition& centre, const OutlinePoint& point) {
  double metres = 0.0;
  schema::Utility::distance(centre.latitude, centre.longitude, point.latitude, point.longitude,
                            metres);
  return metres;
}

double bearing(const FeaturePosition& centre, const OutlinePoint& point) {
  double degrees = 0.0;
  schema::Utility::bearing(centre.latitude, centre.longitude, point.latitude, point.longitude,
                           degrees);
  return degrees;
}

// Twice the area in square degrees, above 0 for a ring that runs counterclockwise.
double area(const OutlineRing& ring) {
  double sum = 0.0;
  for (std::size_t i = 1; i < ring.size(); ++i) {
    sum += ring[i - 1].longitude * ring[i].latitude - ring[i].longitude * ring[i - 1].latitude;
  }
  return sum;
}

void expectClosedAndCounterclockwise(const OutlineRing& ring) {
  ASSERT_GE(ring.size(), 4u);
  EXPECT_EQ(ring.front().longitude, ring.back().longitude);
  EXPECT_EQ(ring.front().latitude, ring.back().latitude);
  EXPECT_GT(area(ring), 0.0);
}

TEST(EllipseOutline, ACircleHas64PointsAtItsRadiusAndOneMoreThatCloses) {
  const auto rings = ellipseOutline(kBerlin, {1000.0, 1000.0, 0.0, true});
  ASSERT_EQ(rings.size(), 1u);
  EXPECT_EQ(rings[0].size(), 65u);
  expectClosedAndCounterclockwise(rings[0]);
  for (const OutlinePoint& point : rings[0]) {
    EXPECT_NEAR(distance(kBerlin, point), 1000.0, 0.001);
  }
}

TEST(EllipseOutline, TheFirstPointLiesAtTheMajorAxisAndTheSeventeenthAcross) {
  const auto rings = ellipseOutline(kBerlin, {5000.0, 2000.0, 30.0, false});
  ASSERT_EQ(rings.size(), 1u);
  EXPECT_NEAR(distance(kBerlin, rings[0][0]), 5000.0, 0.001);
  EXPECT_NEAR(bearing(kBerlin, rings[0][0]), 30.0, 0.01);
  EXPECT_NEAR(distance(kBerlin, rings[0][16]), 2000.0, 0.001);
  EXPECT_NEAR(bearing(kBerlin, rings[0][16]), 300.0, 0.01);
  EXPECT_NEAR(distance(kBerlin, rings[0][32]), 5000.0, 0.001);
  EXPECT_NEAR(bearing(kBerlin, rings[0][32]), 210.0, 0.01);
  expectClosedAndCounterclockwise(rings[0]);
}

TEST(EllipseOutline, IsCutAtTheAntimeridianInTwo) {
  for (const double longitude : {179.99, -179.99, -180.0}) {
    const FeaturePosition centre = {10.0, longitude, std::nullopt};
    const auto rings = ellipseOutline(centre, {5000.0, 5000.0, 0.0, true});
    ASSERT_EQ(rings.size(), 2u) << longitude;
    for (const OutlineRing& ring : rings) {
      expectClosedAndCounterclockwise(ring);
      const auto [west, east] = std::minmax_element(
          ring.begin(), ring.end(),
          [](const OutlinePoint& a, const OutlinePoint& b) { return a.longitude < b.longitude; });
      EXPECT_LT(east->longitude - west->longitude, 0.1);
      EXPECT_TRUE(east->longitude == 180.0 || west->longitude == -180.0);
    }
    EXPECT_NE(rings[0][0].longitude > 0, rings[1][0].longitude > 0);
  }
}

TEST(EllipseOutline, TheHalvesTogetherHaveTheAreaOfTheWhole) {
  const auto whole = ellipseOutline({10.0, 0.0, std::nullopt}, {9000.0, 4000.0, 20.0, false});
  const auto halves = ellipseOutline({10.0, 180.0, std::nullopt}, {9000.0, 4000.0, 20.0, false});
  ASSERT_EQ(halves.size(), 2u);
  EXPECT_NEAR(area(halves[0]) + area(halves[1]), area(whole[0]), 1e-9);
}

TEST(EllipseOutline, OneThatHoldsAPoleOrAQuarterOfTheWayRoundCannotBeDrawn) {
  EXPECT_TRUE(ellipseOutline({89.99, 0.0, std::nullopt}, {2000.0, 2000.0, 0.0, true}).empty());
  EXPECT_TRUE(ellipseOutline({-90.0, 0.0, std::nullopt}, {1.0, 1.0, 0.0, true}).empty());
  EXPECT_TRUE(ellipseOutline({0.0, 0.0, std::nullopt}, {4294967295.0, 10.0, 0.0, false}).empty());
  EXPECT_EQ(ellipseOutline({89.99, 0.0, std::nullopt}, {1000.0, 1000.0, 0.0, true}).size(), 1u);
}

// One that lies across the meridian reaches the pole only along its minor axis.
TEST(EllipseOutline, TheReachToThePoleIsThatAlongTheMeridian) {
  EXPECT_EQ(ellipseOutline({89.9, 0.0, std::nullopt}, {20000.0, 5000.0, 90.0, false}).size(), 1u);
  EXPECT_TRUE(ellipseOutline({89.9, 0.0, std::nullopt}, {20000.0, 5000.0, 0.0, false}).empty());
}

}  // namespace
}  // namespace trelvo::tool
