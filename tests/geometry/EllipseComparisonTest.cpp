#include <gtest/gtest.h>
#include <trelvo/Midpoint.h>
#include <trelvo/ShapeMatrix.h>
#include <trelvo/schema/Utility.h>

#include <cmath>

#include "tests/geometry/Matrices.h"
#include "tests/geometry/Ulps.h"

namespace trelvo::schema {
namespace {

#include "tests/reference/ellipse_reference.inc"

using test::kInfinity;
using test::kNaN;
using test::ulpsBetween;

const ShapeMatrix kUnit(1.0, 0.0, 1.0);
const ShapeMatrix kSingular(1.0, 1.0, 1.0);

ShapeMatrix shapeOf(const double (&e)[3]) { return {e[0], e[1], e[2]}; }

// Two random ellipses a few degrees apart, away from the date line.
struct Pair {
  explicit Pair(test::Uniform& uniform)
      : p1(uniform(-80.0, 80.0), uniform(-170.0, 170.0)),
        p2(p1.latitude() + uniform(-3.0, 3.0), p1.longitude() + uniform(-3.0, 3.0)),
        s1(test::matrixOf<ShapeMatrix>(test::randomCovariance(uniform, -2.0, 0.0, 0.9))),
        s2(test::matrixOf<ShapeMatrix>(test::randomCovariance(uniform, -2.0, 0.0, 0.9))) {}

  Midpoint p1, p2;
  ShapeMatrix s1, s2;
};

TEST(Utility, DistancesOfEllipsesMatchHighPrecision) {
  for (const DistanceRow& row : kDistanceRows) {
    const ShapeMatrix s1 = shapeOf(row.s1), s2 = shapeOf(row.s2);
    const Midpoint p1(row.lat1, row.lon1);
    const Midpoint p2(row.lat2, Utility::compLonRollOver(row.lon2, row.lon1));
    EXPECT_LE(ulpsBetween(Utility::squaredDistance(row.lat1, row.lon1, row.lat2, row.lon2, s1),
                          row.squared),
              row.squaredUlps);
    EXPECT_LE(ulpsBetween(Utility::mDistance(p1, s1, p2, s2), row.mahalanobis),
              row.mahalanobisUlps);
    EXPECT_NEAR(Utility::bDistance(p1, s1, p2, s2), row.bhattacharyya,
                row.bhattacharyyaUnits * 0x1p-52);
  }
}

TEST(Utility, DistancesOfEllipsesAreComputedInTheOrderWritten) {
  test::Uniform uniform(70);
  for (int n = 0; n < 10000; ++n) {
    const auto [p1, p2, s1, s2] = Pair(uniform);
    const double x = p1.latitude() - p2.latitude(), y = p1.longitude() - p2.longitude();
    ShapeMatrix i;
    ASSERT_TRUE(i.invmat(s1));
    ASSERT_EQ(
        Utility::squaredDistance(p1.latitude(), p1.longitude(), p2.latitude(), p2.longitude(), s1),
        (x * x) * i[0] + 2.0 * x * y * i[1] + (y * y) * i[2]);

    ASSERT_TRUE(i.invmat(s1 + s2));
    ASSERT_EQ(Utility::mDistance(p1, s1, p2, s2),
              (x * i[0] + y * i[1]) * x + (x * i[1] + y * i[2]) * y);

    const ShapeMatrix mean = (s1 + s2) / 2.0;
    ASSERT_TRUE(i.invmat(mean));
    const double a = x * 0.125, b = y * 0.125;
    const double q = (a * i[0] + b * i[1]) * x + (a * i[1] + b * i[2]) * y;
    const double r = mean.det() / std::sqrt(s1.det() * s2.det());
    ASSERT_EQ(Utility::bDistance(p1, s1, p2, s2), q + 0.5 * std::log(r));
  }
}

TEST(Utility, SquaredDistanceOfEqualPointsIsZero) {
  EXPECT_EQ(Utility::squaredDistance(10.0, 20.0, 10.0, 20.0, ShapeMatrix(2.0, 1.0, 3.0)), 0.0);
}

TEST(Utility, SquaredDistanceUnderASingularShapeIsZero) {
  EXPECT_EQ(Utility::squaredDistance(10.0, 20.0, -30.0, 40.0, kSingular), 0.0);
  EXPECT_EQ(Utility::squaredDistance(10.0, 20.0, -30.0, 40.0, ShapeMatrix()), 0.0);
  EXPECT_EQ(Utility::squaredDistance(10.0, 20.0, -30.0, 40.0, ShapeMatrix(1e-10, 0.0, 1e-10)), 0.0)
      << "a circle of about a metre";
}

TEST(Utility, SquaredDistanceLooksOverTheDateLineAndMDistanceDoesNot) {
  EXPECT_EQ(Utility::squaredDistance(0.0, 179.0, 0.0, -179.0, kUnit), 4.0);
  EXPECT_EQ(Utility::squaredDistance(0.0, -179.0, 0.0, 179.0, kUnit), 4.0);
  const ShapeMatrix half(0.5, 0.0, 0.5);
  EXPECT_EQ(Utility::mDistance({0.0, 179.0}, half, {0.0, -179.0}, half), 358.0 * 358.0);
  EXPECT_EQ(Utility::bDistance({0.0, 179.0}, kUnit, {0.0, -179.0}, kUnit), 358.0 * 358.0 / 8.0);
}

TEST(Utility, SquaredDistanceCountsDeviationsOfEachAxis) {
  EXPECT_EQ(Utility::squaredDistance(3.0, 0.0, 0.0, 0.0, ShapeMatrix(4.0, 0.0, 1.0)), 2.25);
  EXPECT_EQ(Utility::squaredDistance(0.0, 3.0, 0.0, 0.0, ShapeMatrix(4.0, 0.0, 1.0)), 9.0);
}

TEST(Utility, MDistanceOfEqualShapesIsHalfTheSquaredDistance) {
  test::Uniform uniform(71);
  for (int n = 0; n < 1000; ++n) {
    const Pair pair(uniform);
    const double squared = Utility::squaredDistance(
        pair.p1.latitude(), pair.p1.longitude(), pair.p2.latitude(), pair.p2.longitude(), pair.s1);
    EXPECT_NEAR(Utility::mDistance(pair.p1, pair.s1, pair.p2, pair.s1) / squared, 0.5, 1e-13);
  }
}

TEST(Utility, MDistanceUnderASingularSumIsZero) {
  EXPECT_EQ(Utility::mDistance({0.0, 0.0}, kSingular, {5.0, 5.0}, kSingular), 0.0);
  EXPECT_EQ(Utility::mDistance({0.0, 0.0}, ShapeMatrix(), {5.0, 5.0}, ShapeMatrix()), 0.0);
  EXPECT_EQ(Utility::mDistance({0.0, 0.0}, kUnit, {5.0, 5.0}, ShapeMatrix(-1.0, 0.0, -1.0)), 0.0);
  // Two singular shapes that cross have a sum that is not.
  EXPECT_EQ(Utility::mDistance({0.0, 0.0}, ShapeMatrix(1.0, 0.0, 0.0), {3.0, 4.0},
                               ShapeMatrix(0.0, 0.0, 1.0)),
            25.0);
}

TEST(Utility, BDistanceOfAnEllipseToItselfIsZero) {
  test::Uniform uniform(72);
  for (int n = 0; n < 1000; ++n) {
    const Pair pair(uniform);
    EXPECT_EQ(Utility::bDistance(pair.p1, pair.s1, pair.p1, pair.s1), 0.0);
  }
}

TEST(Utility, DistancesOfEllipsesAreSymmetric) {
  test::Uniform uniform(73);
  for (int n = 0; n < 1000; ++n) {
    const auto [p1, p2, s1, s2] = Pair(uniform);
    EXPECT_EQ(Utility::mDistance(p1, s1, p2, s2), Utility::mDistance(p2, s2, p1, s1));
    EXPECT_EQ(Utility::bDistance(p1, s1, p2, s2), Utility::bDistance(p2, s2, p1, s1));
    EXPECT_EQ(Utility::intersect(p1, s1, p2, s2), Utility::intersect(p2, s2, p1, s1));
    EXPECT_GT(Utility::bDistance(p1, s1, p2, s2), 0.0);
  }
}

TEST(Utility, BDistanceGuardsNoSingularShape) {
  const Midpoint p(1.0, 2.0);
  EXPECT_EQ(Utility::bDistance(p, kUnit, p, kSingular), kInfinity) << "one flat ellipse";
  EXPECT_TRUE(std::isnan(Utility::bDistance(p, kSingular, p, kSingular))) << "0 / 0";
  EXPECT_TRUE(std::isnan(Utility::bDistance(p, kUnit, p, ShapeMatrix(1.0, 2.0, 1.0))))
      << "the square root of a negative";
  const ShapeMatrix negative(-1.0, 0.0, -1.0);
  EXPECT_EQ(Utility::bDistance(p, kUnit, p, negative), -kInfinity) << "the logarithm of 0";
}

TEST(Utility, BDistanceWithASumTooSmallToInvertLeavesTheLogarithm) {
  const ShapeMatrix small(1e-10, 0.0, 1e-10), smaller(0.5e-10, 0.0, 0.5e-10);
  EXPECT_NEAR(Utility::bDistance({0.0, 0.0}, small, {5.0, 5.0}, smaller),
              0.5 * std::log(0.75 * 0.75 / 0.5), 1e-15);
}

TEST(Utility, IntersectMatchesHighPrecision) {
  for (const BoxRow& row : kBoxRows) {
    EXPECT_EQ(Utility::intersect(Midpoint(row.lat1, row.lon1), shapeOf(row.s1),
                                 Midpoint(row.lat2, row.lon2), shapeOf(row.s2)),
              row.overlap)
        << row.lat1 << ' ' << row.lon1 << ' ' << row.lat2 << ' ' << row.lon2;
  }
}

TEST(Utility, IntersectOfAnEllipseWithItselfIsTrue) {
  test::Uniform uniform(74);
  for (int n = 0; n < 1000; ++n) {
    const Pair pair(uniform);
    EXPECT_TRUE(Utility::intersect(pair.p1, pair.s1, pair.p1, pair.s1));
  }
}

TEST(Utility, BoxesThatShareOnlyAnEdgeDoNotIntersect) {
  for (const Midpoint& touching : {Midpoint(2.0, 0.0), Midpoint(-2.0, 0.0), Midpoint(0.0, 2.0),
                                   Midpoint(0.0, -2.0), Midpoint(2.0, 2.0)}) {
    EXPECT_FALSE(Utility::intersect({0.0, 0.0}, kUnit, touching, kUnit));
    const Midpoint nearer(touching.latitude() * 0.999999, touching.longitude() * 0.999999);
    EXPECT_TRUE(Utility::intersect({0.0, 0.0}, kUnit, nearer, kUnit));
  }
}

TEST(Utility, ABoxThatRoundsToALineMeetsNothing) {
  for (const ShapeMatrix& line : {ShapeMatrix(1e-40, 0.0, 1e40), ShapeMatrix(1e40, 0.0, 1e-40)}) {
    EXPECT_FALSE(Utility::intersect({0.0, 0.0}, kUnit, {0.5, 0.5}, line));
    EXPECT_FALSE(Utility::intersect({0.5, 0.5}, line, {0.0, 0.0}, kUnit));
  }
  const ShapeMatrix thin(1e-20, 0.0, 1e20);
  EXPECT_TRUE(Utility::intersect({0.0, 0.0}, kUnit, {0.5, 0.5}, thin));
}

TEST(Utility, BoxesMustOverlapBothWays) {
  EXPECT_FALSE(Utility::intersect({0.0, 0.0}, kUnit, {0.0, 3.0}, kUnit));
  EXPECT_FALSE(Utility::intersect({0.0, 0.0}, kUnit, {3.0, 0.0}, kUnit));
  EXPECT_TRUE(Utility::intersect({0.0, 0.0}, kUnit, {1.5, -1.5}, kUnit));
  EXPECT_TRUE(Utility::intersect({0.0, 0.0}, ShapeMatrix(100.0, 0.0, 100.0), {3.0, 3.0}, kUnit))
      << "one inside the other";
  EXPECT_TRUE(Utility::intersect({0.0, 0.0}, ShapeMatrix(100.0, 0.0, 1.0), {0.0, 0.0},
                                 ShapeMatrix(1.0, 0.0, 100.0)))
      << "a cross without a corner in the other";
}

TEST(Utility, SlantingEllipsesApartCanHaveBoxesThatOverlap) {
  const ShapeMatrix slanting(1.0, 0.999, 1.0);
  EXPECT_GT(Utility::squaredDistance(0.5, -0.5, 0.0, 0.0, slanting), 100.0);
  EXPECT_TRUE(Utility::intersect({0.0, 0.0}, slanting, {0.5, -0.5}, slanting));
}

TEST(Utility, BoxesAreThoseOfTheInverse) {
  test::Uniform uniform(75);
  for (int n = 0; n < 10000; ++n) {
    const auto [p1, p2, s1, s2] = Pair(uniform);
    ShapeMatrix i1, i2;
    ASSERT_TRUE(i1.invmat(s1));
    ASSERT_TRUE(i2.invmat(s2));
    const double d1 = i1[0] * i1[2] - i1[1] * i1[1], d2 = i2[0] * i2[2] - i2[1] * i2[1];
    const double lon1 = std::sqrt(i1[0] / d1), lat1 = std::sqrt(i1[2] / d1);
    const double lon2 = std::sqrt(i2[0] / d2), lat2 = std::sqrt(i2[2] / d2);
    const double south = std::fmax(p1.latitude() - lat1, p2.latitude() - lat2);
    const double north = std::fmin(p1.latitude() + lat1, p2.latitude() + lat2);
    const double west = std::fmax(p1.longitude() - lon1, p2.longitude() - lon2);
    const double east = std::fmin(p1.longitude() + lon1, p2.longitude() + lon2);
    ASSERT_EQ(Utility::intersect(p1, s1, p2, s2), north > south && east > west);
  }
}

TEST(Utility, SingularShapesDoNotIntersect) {
  const Midpoint p(10.0, 20.0);
  EXPECT_FALSE(Utility::intersect(p, kUnit, p, kSingular));
  EXPECT_FALSE(Utility::intersect(p, kSingular, p, kUnit));
  EXPECT_FALSE(Utility::intersect(p, kUnit, p, ShapeMatrix()));
}

TEST(Utility, EllipsesOnBothSidesOfTheDateLineIntersect) {
  EXPECT_TRUE(Utility::intersect({0.0, 179.5}, kUnit, {0.0, -179.5}, kUnit));
  EXPECT_TRUE(Utility::intersect({0.0, -179.5}, kUnit, {0.0, 179.5}, kUnit));
  EXPECT_FALSE(Utility::intersect({0.0, 178.5}, kUnit, {0.0, -178.5}, kUnit));
}

TEST(Utility, ComparisonsOfNaNOrInfinity) {
  const Midpoint p(1.0, 2.0), q(3.0, 4.0);
  for (double odd : {kNaN, kInfinity, -kInfinity}) {
    for (const Midpoint& centre : {Midpoint(odd, 2.0), Midpoint(1.0, odd)}) {
      const double squared =
          Utility::squaredDistance(centre.latitude(), centre.longitude(), 3.0, 4.0, kUnit);
      EXPECT_FALSE(std::isfinite(squared));
      EXPECT_FALSE(std::isfinite(Utility::mDistance(centre, kUnit, q, kUnit)));
      EXPECT_FALSE(std::isfinite(Utility::bDistance(p, kUnit, centre, kUnit)));
      EXPECT_FALSE(Utility::intersect(centre, kUnit, q, kUnit));
      EXPECT_FALSE(Utility::intersect(q, kUnit, centre, kUnit));
    }
    for (const ShapeMatrix& shape :
         {ShapeMatrix(odd, 0.0, 1.0), ShapeMatrix(1.0, odd, 1.0), ShapeMatrix(1.0, 0.0, odd)}) {
      EXPECT_TRUE(std::isnan(Utility::squaredDistance(1.0, 2.0, 3.0, 4.0, shape)));
      EXPECT_TRUE(std::isnan(Utility::mDistance(p, shape, q, kUnit)));
      EXPECT_TRUE(std::isnan(Utility::bDistance(p, kUnit, q, shape)));
      EXPECT_FALSE(Utility::intersect(p, shape, p, kUnit));
      EXPECT_FALSE(Utility::intersect(p, kUnit, p, shape));
    }
  }
}

TEST(Utility, NegativeShapesNeitherIntersectNorGivePositiveDistances) {
  const ShapeMatrix negative(-1.0, 0.0, -1.0);
  EXPECT_EQ(Utility::squaredDistance(3.0, 0.0, 0.0, 0.0, negative), -9.0);
  EXPECT_FALSE(Utility::intersect({0.0, 0.0}, negative, {0.0, 0.0}, kUnit));
}

}  // namespace
}  // namespace trelvo::schema
