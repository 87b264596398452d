#include <gtest/gtest.h>
#include <trelvo/Midpoint.h>
#include <trelvo/ShapeMatrix.h>
#include <trelvo/StateEstimate.h>
#include <trelvo/StateEstimateCovariance.h>
#include <trelvo/schema/Utility.h>

#include <cmath>
#include <type_traits>

#include "tests/geometry/Matrices.h"
#include "tests/geometry/Ulps.h"

namespace trelvo {
namespace {

using test::elements;
using test::Elements2;
using test::kInfinity;
using test::kNaN;

static_assert(!std::is_polymorphic_v<Midpoint>);
static_assert(!std::is_polymorphic_v<StateEstimate>);
static_assert(sizeof(Midpoint) == 2 * sizeof(double));
static_assert(std::has_virtual_destructor_v<StateEstimateCovariance>);
static_assert(std::is_base_of_v<ShapeMatrix, StateEstimateCovariance>);
static_assert(sizeof(StateEstimateCovariance) == sizeof(Symmetric2by2Matrix));

void expectState(const StateEstimate& s, double e0, double e1, double e2, double e3) {
  EXPECT_EQ(s[0], e0);
  EXPECT_EQ(s[1], e1);
  EXPECT_EQ(s[2], e2);
  EXPECT_EQ(s[3], e3);
}

TEST(StateEstimate, StartsWithZeros) { expectState(StateEstimate(), 0.0, 0.0, 0.0, 0.0); }

TEST(StateEstimate, TakesFourElementsInOrder) {
  expectState(StateEstimate(1.0, 2.0, 3.0, 4.0), 1.0, 2.0, 3.0, 4.0);
}

TEST(StateEstimate, ClearMakesZeros) {
  StateEstimate s(1.0, kNaN, kInfinity, 4.0);
  s.clear();
  expectState(s, 0.0, 0.0, 0.0, 0.0);
}

TEST(StateEstimate, IndexFromFourUpGivesElementZero) {
  StateEstimate s;
  s[4] = 1.0;
  expectState(s, 1.0, 0.0, 0.0, 0.0);
  const StateEstimate& constant = s;
  for (unsigned int index : {4u, 5u, 256u, 0xFFFFFFFFu}) EXPECT_EQ(&constant[index], &constant[0]);
}

TEST(StateEstimate, AddsElementByElement) {
  StateEstimate s(1.0, 2.0, 3.0, 4.0);
  EXPECT_EQ(&(s += StateEstimate(10.0, 20.0, 30.0, kInfinity)), &s);
  expectState(s, 11.0, 22.0, 33.0, kInfinity);
}

TEST(StateEstimate, AddingItselfDoublesEveryElement) {
  StateEstimate s(1.0, 2.0, 3.0, 4.0);
  s += s;
  expectState(s, 2.0, 4.0, 6.0, 8.0);
}

TEST(StateEstimate, CopiesAndAssignsItsElements) {
  const StateEstimate s(1.0, 2.0, 3.0, 4.0);
  const StateEstimate copy(s);
  StateEstimate assigned;
  EXPECT_EQ(&(assigned = s), &assigned);
  const StateEstimate& same = assigned;
  assigned = same;
  expectState(copy, 1.0, 2.0, 3.0, 4.0);
  expectState(assigned, 1.0, 2.0, 3.0, 4.0);
}

TEST(Midpoint, StartsAtZero) {
  EXPECT_EQ(Midpoint().latitude(), 0.0);
  EXPECT_EQ(Midpoint().longitude(), 0.0);
}

TEST(Midpoint, StoresWhatItIsGivenUnchecked) {
  Midpoint p(200.0, -1000.0);
  EXPECT_EQ(p.latitude(), 200.0);
  EXPECT_EQ(p.longitude(), -1000.0);
  p.setLatitude(kNaN);
  p.setLongitude(kInfinity);
  EXPECT_TRUE(std::isnan(p.latitude()));
  EXPECT_EQ(p.longitude(), kInfinity);
}

TEST(Midpoint, DistanceToItselfIsExactlyZero) {
  EXPECT_EQ(Midpoint(10.0, 20.0).distance(Midpoint(10.0, 20.0)), 0.0);
}

TEST(Midpoint, DistanceIsTheGreatCircle) {
  const Midpoint greenwich(51.4778, -0.0015), newYork(40.7128, -74.006);
  double metres = 0.0;
  ASSERT_TRUE(schema::Utility::distance(51.4778, -0.0015, 40.7128, -74.006, metres));
  EXPECT_EQ(greenwich.distance(newYork), metres);
  EXPECT_NEAR(metres, 5.57e6, 1e4);
}

TEST(Midpoint, DistanceOverTheDateLineAndBetweenPoles) {
  EXPECT_NEAR(Midpoint(0.0, 179.5).distance(Midpoint(0.0, -179.5)), 111195.0, 1.0);
  EXPECT_EQ(Midpoint(90.0, 0.0).distance(Midpoint(-90.0, 50.0)), 3.141592653589793 * 6371010.0);
}

TEST(Midpoint, DistanceOfNaNOrInfinityIsNaN) {
  for (double odd : {kNaN, kInfinity, -kInfinity}) {
    EXPECT_TRUE(std::isnan(Midpoint(odd, 0.0).distance(Midpoint(1.0, 2.0))));
    EXPECT_TRUE(std::isnan(Midpoint(1.0, 2.0).distance(Midpoint(0.0, odd))));
  }
}

TEST(Midpoint, DumpDoesNothing) {
  const Midpoint p(1.0, 2.0);
  p.dump();
  EXPECT_EQ(p.latitude(), 1.0);
}

TEST(StateEstimateCovariance, StartsWithZerosOrTakesThreeElements) {
  EXPECT_EQ(elements(StateEstimateCovariance()), (Elements2{0.0, 0.0, 0.0}));
  EXPECT_EQ(elements(StateEstimateCovariance(1.0, 2.0, 3.0)), (Elements2{1.0, 2.0, 3.0}));
}

TEST(StateEstimateCovariance, TakesOverAnyShape) {
  StateEstimateCovariance covariance;
  const ShapeMatrix shape(1.0, 2.0, 3.0);
  EXPECT_EQ(&(covariance = shape), &covariance);
  EXPECT_EQ(elements(covariance), (Elements2{1.0, 2.0, 3.0}));
  const ShapeMatrix& same = covariance;
  covariance = same;
  EXPECT_EQ(elements(covariance), (Elements2{1.0, 2.0, 3.0}));
}

TEST(StateEstimateCovariance, IsAShapeWithAllItsOperations) {
  StateEstimateCovariance covariance;
  EXPECT_TRUE(covariance.ellConvert(45.0, 100.0, 100.0, 0.0));
  EXPECT_GT(covariance[2], covariance[0]);
}

}  // namespace
}  // namespace trelvo
