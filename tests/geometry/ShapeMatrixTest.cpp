#include <gtest/gtest.h>
#include <trelvo/Midpoint.h>
#include <trelvo/ShapeMatrix.h>
#include <trelvo/StateEstimate.h>
#include <trelvo/schema/Utility.h>

#include <cmath>
#include <type_traits>

#include "tests/geometry/Matrices.h"
#include "tests/geometry/Ulps.h"

namespace trelvo {
namespace {

#include "tests/reference/ellipse_reference.inc"

using schema::Utility;
using test::elements;
using test::Elements2;
using test::kInfinity;
using test::kNaN;
using test::sameElements;
using test::ulpsBetween;

constexpr double kPi = 3.141592653589793;
constexpr Elements2 kBefore = {1.0, 2.0, 3.0};

static_assert(std::has_virtual_destructor_v<ShapeMatrix>);
static_assert(sizeof(ShapeMatrix) == sizeof(Symmetric2by2Matrix));
static_assert(std::is_convertible_v<Symmetric2by2Matrix, ShapeMatrix>);

ShapeMatrix shapeOf(const double (&e)[3]) { return {e[0], e[1], e[2]}; }

ShapeMatrix converted(double latitude, double major, double minor, double angle) {
  ShapeMatrix shape(kBefore[0], kBefore[1], kBefore[2]);
  EXPECT_TRUE(shape.ellConvert(latitude, major, minor, angle));
  return shape;
}

TEST(ShapeMatrix, StartsWithZerosOrTakesThreeElements) {
  EXPECT_EQ(elements(ShapeMatrix()), (Elements2{0.0, 0.0, 0.0}));
  EXPECT_EQ(elements(ShapeMatrix(1.0, 2.0, 3.0)), kBefore);
}

TEST(ShapeMatrix, TakesTheElementsOfAPlainMatrix) {
  const ShapeMatrix sum = ShapeMatrix(1.0, 1.0, 1.0) + Symmetric2by2Matrix(0.0, 1.0, 2.0);
  EXPECT_EQ(elements(sum), kBefore);
  ShapeMatrix assigned;
  EXPECT_EQ(&(assigned = sum), &assigned);
  const ShapeMatrix& same = assigned;
  assigned = same;
  assigned.dump();
  EXPECT_EQ(elements(assigned), kBefore);
}

TEST(ShapeMatrix, EllipseMatchesHighPrecision) {
  for (const EllipseRow& row : kEllipseRows) {
    const ShapeMatrix shape = converted(row.latitude, row.major, row.minor, row.angle);
    for (unsigned int i = 0; i < 3; ++i) {
      EXPECT_LE(ulpsBetween(shape[i], row.shape[i]), row.ulps[i])
          << row.latitude << ' ' << row.major << ' ' << row.minor << ' ' << row.angle << ": " << i;
    }
  }
}

TEST(ShapeMatrix, EllipseIsComputedInTheOrderWritten) {
  test::Uniform uniform(60);
  for (int i = 0; i < 100000; ++i) {
    const double latitude = uniform(-90.0, 90.0), angle = uniform(-720.0, 720.0);
    const double a = uniform(0.0, 1e5), b = uniform(0.0, 1e5);
    double lon = 0.0, lat = 0.0;
    ASSERT_TRUE(Utility::meterInDegrees(latitude, lon, lat));
    const double t = angle * kPi / 180.0;
    const double s = std::sin(t), c = std::cos(t);
    ASSERT_TRUE(sameElements(converted(latitude, a, b, angle),
                             {(lat * lat) * ((b * b) * (s * s) + (a * a) * (c * c)),
                              (lat * lon) * ((((a * a) - (b * b)) * s) * c),
                              (lon * lon) * ((b * b) * (c * c) + (a * a) * (s * s))}));
  }
}

TEST(ShapeMatrix, EqualAxesGiveNoCovarianceAtAnyAngle) {
  for (int tenths = -7200; tenths <= 7200; ++tenths) {
    EXPECT_EQ(converted(48.5, 123.4, 123.4, tenths * 0.1)[1], 0.0) << tenths;
  }
}

TEST(ShapeMatrix, EllipseAlongTheMeridianAtTheEquator) {
  const double a = 300.0, b = 70.0;
  double lon = 0.0, lat = 0.0;
  ASSERT_TRUE(Utility::meterInDegrees(0.0, lon, lat));
  const ShapeMatrix shape = converted(0.0, a, b, 0.0);
  EXPECT_LE(ulpsBetween(shape[0], (lat * a) * (lat * a)), 3.0);
  EXPECT_EQ(shape[1], 0.0);
  EXPECT_LE(ulpsBetween(shape[2], (lon * b) * (lon * b)), 3.0);
}

TEST(ShapeMatrix, TheMajorAxisLiesAtTheAngleFromNorthTowardEast) {
  EXPECT_GT(converted(0.0, 100.0, 10.0, 0.0)[0], converted(0.0, 100.0, 10.0, 90.0)[0]);
  EXPECT_GT(converted(0.0, 100.0, 10.0, 45.0)[1], 0.0) << "north-east: both grow together";
  EXPECT_LT(converted(0.0, 100.0, 10.0, 135.0)[1], 0.0);
  EXPECT_LT(converted(0.0, 100.0, 10.0, -45.0)[1], 0.0);
}

TEST(ShapeMatrix, AxesSwapWithAQuarterTurnAndSignsDoNotMatter) {
  for (const EllipseRow& row : kEllipseRows) {
    const ShapeMatrix shape = converted(row.latitude, row.major, row.minor, row.angle);
    const ShapeMatrix swapped = converted(row.latitude, row.minor, row.major, row.angle - 90.0);
    for (unsigned int i = 0; i < 3; ++i) {
      EXPECT_LE(ulpsBetween(swapped[i], row.shape[i]), 4.0 * row.ulps[i] + 16.0);
    }
    EXPECT_TRUE(
        sameElements(converted(row.latitude, -row.major, -row.minor, row.angle), elements(shape)));
  }
}

TEST(ShapeMatrix, EllipseAtThePolesIsRefusedAndChangesNothing) {
  for (double pole : {90.0, -90.0}) {
    ShapeMatrix shape(1.0, 2.0, 3.0);
    EXPECT_FALSE(shape.ellConvert(pole, 100.0, 50.0, 30.0));
    EXPECT_EQ(elements(shape), kBefore);
    EXPECT_TRUE(shape.ellConvert(std::nextafter(pole, 0.0), 100.0, 50.0, 30.0));
    EXPECT_GT(shape[2], 1e20);
  }
}

TEST(ShapeMatrix, EllipseReplacesWhatWasThere) {
  ShapeMatrix shape(kNaN, kNaN, kNaN);
  ASSERT_TRUE(shape.ellConvert(10.0, 20.0, 30.0, 40.0));
  EXPECT_TRUE(sameElements(shape, elements(converted(10.0, 20.0, 30.0, 40.0))));
}

TEST(ShapeMatrix, EllipseMayBeMadeFromItsOwnElements) {
  ShapeMatrix shape(48.0, 100.0, 50.0);
  ASSERT_TRUE(shape.ellConvert(shape[0], shape[1], shape[2], shape[0]));
  EXPECT_TRUE(sameElements(shape, elements(converted(48.0, 100.0, 50.0, 48.0))));
}

TEST(ShapeMatrix, EllipseOfNaNOrInfinity) {
  for (double odd : {kNaN, kInfinity, -kInfinity}) {
    EXPECT_TRUE(sameElements(converted(odd, 1.0, 2.0, 3.0), {kNaN, kNaN, kNaN}));
    EXPECT_TRUE(sameElements(converted(10.0, 1.0, 2.0, odd), {kNaN, kNaN, kNaN}));
  }
  EXPECT_TRUE(sameElements(converted(10.0, kNaN, 2.0, 3.0), {kNaN, kNaN, kNaN}));
  EXPECT_TRUE(sameElements(converted(10.0, 1.0, kNaN, 3.0), {kNaN, kNaN, kNaN}));
  EXPECT_TRUE(
      sameElements(converted(10.0, kInfinity, 2.0, 3.0), {kInfinity, kInfinity, kInfinity}));
  EXPECT_TRUE(
      sameElements(converted(10.0, 1.0, -kInfinity, 3.0), {kInfinity, -kInfinity, kInfinity}));
  EXPECT_TRUE(sameElements(converted(10.0, 1.0, kInfinity, 0.0), {kNaN, kNaN, kInfinity}));
}

TEST(ShapeMatrix, ProcessNoiseMatchesHighPrecision) {
  for (const NoiseRow& row : kNoiseRows) {
    ShapeMatrix shape(0.0, 2.0, 0.0);
    double accumulated = 1.0;
    ASSERT_TRUE(
        shape.increaseUncertainty(row.latitude, row.step, row.noise, row.scale, 3.0, accumulated));
    EXPECT_LE(ulpsBetween(shape[0], row.lat), row.latUlps);
    EXPECT_EQ(shape[1], 2.0);
    EXPECT_LE(ulpsBetween(shape[2], row.lon), row.lonUlps);
    EXPECT_EQ(accumulated, 1.0 + row.step * 3.0);
  }
}

TEST(ShapeMatrix, ProcessNoiseIsComputedInTheOrderWritten) {
  test::Uniform uniform(61);
  for (int i = 0; i < 10000; ++i) {
    const double latitude = uniform(-89.0, 89.0), t = uniform(0.0, 100.0);
    const double noise = uniform(0.0, 10.0), scale = uniform(0.1, 20.0);
    const Elements2 e = test::randomCovariance(uniform, -4.0, -2.0, 0.9);
    ShapeMatrix shape(e[0], e[1], e[2]);
    double accumulated = 5.0;
    ASSERT_TRUE(shape.increaseUncertainty(latitude, t, noise, scale, 0.1, accumulated));
    const double x =
        (0.3333333333333333 - 1.0 / scale + 1.0 / (scale * scale)) * (t * t * t) * noise;
    const ShapeMatrix more = converted(latitude, std::sqrt(x), std::sqrt(x), 0.0);
    ASSERT_TRUE(sameElements(shape, {e[0] + more[0], e[1] + more[1], e[2] + more[2]}));
    ASSERT_EQ(accumulated, 5.0 + t * 0.1);
  }
}

TEST(ShapeMatrix, ProcessNoiseOfScale1AndInfinityIsAThirdAndOf2AQuarterOfIt) {
  double accumulated = 0.0;
  ShapeMatrix one, two, infinite;
  ASSERT_TRUE(one.increaseUncertainty(0.0, 10.0, 1.0, 1.0, 0.0, accumulated));
  ASSERT_TRUE(two.increaseUncertainty(0.0, 10.0, 1.0, 2.0, 0.0, accumulated));
  ASSERT_TRUE(infinite.increaseUncertainty(0.0, 10.0, 1.0, kInfinity, 0.0, accumulated));
  EXPECT_LE(ulpsBetween(infinite[0], one[0]), 8.0);
  EXPECT_LE(ulpsBetween(two[0] * 4.0, one[0]), 8.0);
  double lon = 0.0, lat = 0.0;
  ASSERT_TRUE(Utility::meterInDegrees(0.0, lon, lat));
  EXPECT_LE(ulpsBetween(one[0], lat * lat * 1000.0 / 3.0), 8.0);
}

TEST(ShapeMatrix, ProcessNoiseAtThePolesChangesNothingButAccumulates) {
  for (double pole : {90.0, -90.0}) {
    ShapeMatrix shape(1.0, 2.0, 3.0);
    double accumulated = 5.0;
    EXPECT_FALSE(shape.increaseUncertainty(pole, 2.0, 1.0, 4.0, 3.0, accumulated));
    EXPECT_EQ(elements(shape), kBefore);
    EXPECT_EQ(accumulated, 11.0);
  }
}

TEST(ShapeMatrix, ProcessNoiseThatIsNegativeOrNotANumberMakesNaN) {
  const double cases[][3] = {{-1.0, 1.0, 4.0}, {1.0, -1.0, 4.0}, {1.0, 1.0, 0.0},
                             {kNaN, 1.0, 4.0}, {1.0, kNaN, 4.0}, {1.0, 1.0, kNaN}};
  for (const auto& [step, noise, scale] : cases) {
    ShapeMatrix shape(1.0, 2.0, 3.0);
    double accumulated = 0.0;
    EXPECT_TRUE(shape.increaseUncertainty(10.0, step, noise, scale, 1.0, accumulated));
    EXPECT_TRUE(sameElements(shape, {kNaN, kNaN, kNaN}));
    EXPECT_TRUE(test::sameOutcome(accumulated, step));
  }
  // An infinite circle: infinite on its axes, nothing defined between them.
  ShapeMatrix shape(1.0, 2.0, 3.0);
  double accumulated = 0.0;
  EXPECT_TRUE(shape.increaseUncertainty(10.0, 1.0, kInfinity, 4.0, kNaN, accumulated));
  EXPECT_TRUE(sameElements(shape, {kNaN, kNaN, kNaN}));
  EXPECT_TRUE(std::isnan(accumulated));
  EXPECT_TRUE(shape.increaseUncertainty(kNaN, 1.0, 1.0, 4.0, kInfinity, accumulated));
}

TEST(ShapeMatrix, ConstantRateMatchesHighPrecision) {
  for (const GrowthRow& row : kGrowthRows) {
    ShapeMatrix shape = shapeOf(row.before);
    ASSERT_TRUE(shape.increaseUncertaintyAtConstRate(row.latitude, row.step, row.rateVariance));
    EXPECT_LE(ulpsBetween(shape[0], row.lat), row.latUlps);
    EXPECT_EQ(shape[1], row.before[1]);
    EXPECT_LE(ulpsBetween(shape[2], row.lon), row.lonUlps);
  }
}

TEST(ShapeMatrix, ConstantRateIsComputedInTheOrderWritten) {
  test::Uniform uniform(62);
  for (int i = 0; i < 10000; ++i) {
    const double latitude = uniform(-89.0, 89.0), t = uniform(0.0, 100.0), r = uniform(0.0, 10.0);
    const Elements2 e = test::randomCovariance(uniform, -4.0, -2.0, 0.9);
    ShapeMatrix shape(e[0], e[1], e[2]);
    ASSERT_TRUE(shape.increaseUncertaintyAtConstRate(latitude, t, r));
    double lon = 0.0, lat = 0.0;
    ASSERT_TRUE(Utility::degreeInMeters(latitude, lon, lat));
    const double sLat = std::sqrt(lat * (lat * e[0])), sLon = std::sqrt(lon * (lon * e[2]));
    const double p = (t * t) * r + ((2.0 * sLat) * t) * std::sqrt(r);
    const double q = (t * t) * r + ((2.0 * sLon) * t) * std::sqrt(r);
    const ShapeMatrix more = converted(latitude, std::sqrt(p), std::sqrt(q), 0.0);
    ASSERT_TRUE(sameElements(shape, {e[0] + more[0], e[1] + more[1], e[2] + more[2]}));
  }
}

TEST(ShapeMatrix, ConstantRateOfZeroChangesNothing) {
  ShapeMatrix shape(1.0, 2.0, 3.0);
  EXPECT_TRUE(shape.increaseUncertaintyAtConstRate(48.0, 10.0, 0.0));
  EXPECT_EQ(elements(shape), kBefore);
}

TEST(ShapeMatrix, ConstantRateAtThePolesIsRefusedAndChangesNothing) {
  for (double pole : {90.0, -90.0}) {
    ShapeMatrix shape(1.0, 2.0, 3.0);
    EXPECT_FALSE(shape.increaseUncertaintyAtConstRate(pole, 10.0, 1.0));
    EXPECT_EQ(elements(shape), kBefore);
  }
}

TEST(ShapeMatrix, ConstantRateOfNegativesOrNaNMakesNaN) {
  const double cases[][3] = {{10.0, 1.0, -1.0},      {10.0, kNaN, 1.0},      {10.0, 1.0, kNaN},
                             {10.0, kInfinity, 1.0}, {10.0, 1.0, kInfinity}, {kNaN, 1.0, 1.0}};
  for (const auto& [latitude, step, variance] : cases) {
    ShapeMatrix shape(1.0, 2.0, 3.0);
    EXPECT_TRUE(shape.increaseUncertaintyAtConstRate(latitude, step, variance));
    EXPECT_TRUE(std::isnan(shape[0])) << latitude << ' ' << step << ' ' << variance;
    EXPECT_TRUE(std::isnan(shape[2]));
  }
  ShapeMatrix negative(-1.0, 2.0, 3.0);
  EXPECT_TRUE(negative.increaseUncertaintyAtConstRate(10.0, 1.0, 1.0));
  EXPECT_TRUE(std::isnan(negative[0]));
}

TEST(ShapeMatrix, OutlierWeightMatchesHighPrecision) {
  int unchanged = 0;
  for (const WeightRow& row : kWeightRows) {
    const StateEstimate state(row.state[0], row.state[1], row.state[2], row.state[3]);
    ShapeMatrix shape = shapeOf(row.before);
    ASSERT_TRUE(shape.reweightMeasurement(Midpoint(row.lat, row.lon), state, row.step,
                                          row.lowerGate, row.upperGate));
    const double diagonal[] = {row.after[0], std::sqrt(row.after[0] * row.after[2]), row.after[2]};
    for (unsigned int i = 0; i < 3; ++i) {
      EXPECT_NEAR(shape[i], row.after[i], row.ulps * 0x1p-52 * diagonal[i])
          << row.lat << ' ' << row.lon << ": " << i;
    }
    unchanged += row.after[0] == row.before[0] ? 1 : 0;
  }
  EXPECT_LT(unchanged, 12) << "the table should weigh something";
}

// One unit circle around the origin; the distance of (x, 0) is x.
struct Outlier {
  double squared(double x) const { return Utility::squaredDistance(x, 0.0, 0.0, 0.0, shape); }
  bool reweight(double x, double lower, double upper) {
    return shape.reweightMeasurement(Midpoint(x, 0.0), StateEstimate(), 0.0, lower, upper);
  }

  ShapeMatrix shape{1.0, 0.0, 1.0};
};

TEST(ShapeMatrix, MeasurementUpToTheLowerGateIsNotWeighed) {
  for (double x : {0.0, 1.0, 2.0}) {
    Outlier outlier;
    EXPECT_TRUE(outlier.reweight(x, 2.0, 4.0));
    EXPECT_EQ(elements(outlier.shape), (Elements2{1.0, 0.0, 1.0})) << x;
  }
  Outlier outlier;
  EXPECT_TRUE(outlier.reweight(std::nextafter(2.0, 3.0), 2.0, 4.0));
  EXPECT_GT(outlier.shape[0], 1.0);
}

TEST(ShapeMatrix, MeasurementBetweenTheGatesCountsByTheGateTimesItsDistance) {
  Outlier outlier;
  EXPECT_TRUE(outlier.reweight(3.0, 2.0, 4.0));
  EXPECT_EQ(outlier.shape[0], 1.0 + (3.0 / 2.0 - 1.0) / 9.0 * 9.0);
  EXPECT_NEAR(outlier.squared(3.0), 2.0 * 3.0, 1e-14);
}

TEST(ShapeMatrix, MeasurementAtTheUpperGateUsesTheInnerFormula) {
  // Gates and distance in whole numbers that tell the formulas apart by rounding.
  const double lower = 3.0, upper = 7.0;
  const double inner = (7.0 / lower - 1.0) / 49.0;
  const double outer = 1.0 / (lower * upper) - 1.0 / 49.0;
  ASSERT_NE(1.0 + inner * 49.0, 1.0 + outer * 49.0);
  Outlier outlier;
  EXPECT_TRUE(outlier.reweight(7.0, lower, upper));
  EXPECT_EQ(outlier.shape[0], 1.0 + inner * 49.0);
}

TEST(ShapeMatrix, MeasurementBeyondTheUpperGateCountsByBothGates) {
  for (double x : {5.0, 100.0, 1e6}) {
    Outlier outlier;
    EXPECT_TRUE(outlier.reweight(x, 2.0, 4.0));
    EXPECT_EQ(outlier.shape[0], 1.0 + (1.0 / 8.0 - 1.0 / (x * x)) * (x * x));
    EXPECT_NEAR(outlier.squared(x), 8.0, 1e-12);
  }
}

TEST(ShapeMatrix, OutlierWeightAddsTheRateTimesTheStep) {
  const StateEstimate moving(0.0, 0.0, 2.0, 0.0);
  ShapeMatrix away(1.0, 0.0, 1.0), toward(1.0, 0.0, 1.0);
  // 1 + 2 is past the gate; 1 - 2 would not be.
  EXPECT_TRUE(away.reweightMeasurement(Midpoint(1.0, 0.0), moving, 1.0, 2.0, 10.0));
  EXPECT_EQ(away[0], 1.0 + (3.0 / 2.0 - 1.0) / 9.0 * 9.0);
  EXPECT_TRUE(toward.reweightMeasurement(Midpoint(1.0, 0.0), moving, -1.0, 2.0, 10.0));
  EXPECT_EQ(toward[0], 1.0);

  const StateEstimate eastward(0.0, 0.0, 0.0, 2.0);
  ShapeMatrix east(1.0, 0.0, 1.0);
  EXPECT_TRUE(east.reweightMeasurement(Midpoint(0.0, 1.0), eastward, 1.0, 2.0, 10.0));
  EXPECT_EQ(elements(east), (Elements2{1.0, 0.0, away[0]}));
}

TEST(ShapeMatrix, OutlierWeightLooksOverTheDateLine) {
  const StateEstimate state(0.0, 179.0, 0.0, 0.0);
  ShapeMatrix over(1.0, 0.0, 1.0), direct(1.0, 0.0, 1.0);
  EXPECT_TRUE(over.reweightMeasurement(Midpoint(0.0, -178.0), state, 0.0, 2.0, 10.0));
  EXPECT_TRUE(direct.reweightMeasurement(Midpoint(0.0, 3.0), StateEstimate(), 0.0, 2.0, 10.0));
  EXPECT_TRUE(sameElements(over, elements(direct)));
}

TEST(ShapeMatrix, OutlierWeightOfASlantingDifferenceFillsTheCovariance) {
  ShapeMatrix shape(1.0, 0.0, 1.0);
  EXPECT_TRUE(shape.reweightMeasurement(Midpoint(3.0, -4.0), StateEstimate(), 0.0, 2.0, 4.0));
  const double w = 1.0 / 8.0 - 1.0 / 25.0;
  EXPECT_EQ(elements(shape), (Elements2{1.0 + w * 9.0, w * 3.0 * -4.0, 1.0 + w * 16.0}));
}

TEST(ShapeMatrix, OutlierWeightIsComputedInTheOrderWritten) {
  test::Uniform uniform(63);
  for (int n = 0; n < 10000; ++n) {
    const Elements2 e = test::randomCovariance(uniform, -2.0, 0.0, 0.9);
    const Midpoint measurement(uniform(-80.0, 80.0), uniform(-170.0, 170.0));
    const StateEstimate state(measurement.latitude() + uniform(-2.0, 2.0),
                              measurement.longitude() + uniform(-2.0, 2.0), uniform(-0.1, 0.1),
                              uniform(-0.1, 0.1));
    const double t = uniform(-5.0, 5.0), lower = uniform(0.1, 3.0), upper = uniform(3.0, 9.0);
    ShapeMatrix shape(e[0], e[1], e[2]);
    ASSERT_TRUE(shape.reweightMeasurement(measurement, state, t, lower, upper));

    Symmetric2by2Matrix i;
    ASSERT_TRUE(i.invmat({e[0], e[1], e[2]}));
    const double x = (measurement.latitude() - state[0]) + t * state[2];
    const double y = (measurement.longitude() - state[1]) + t * state[3];
    const double d2 = (x * x) * i[0] + 2.0 * i[1] * x * y + (y * y) * i[2];
    double w = (std::sqrt(d2) / lower - 1.0) / d2;
    if (d2 > upper * upper) w = 1.0 / (lower * upper) - 1.0 / d2;
    if (!(d2 > lower * lower)) w = 0.0;
    ASSERT_TRUE(sameElements(shape, {e[0] + w * (x * x), e[1] + w * x * y, e[2] + w * (y * y)}));
  }
}

TEST(ShapeMatrix, SingularMeasurementCannotBeWeighed) {
  ShapeMatrix shape(1.0, 1.0, 1.0);
  EXPECT_FALSE(shape.reweightMeasurement(Midpoint(50.0, 0.0), StateEstimate(), 0.0, 1.0, 2.0));
  EXPECT_EQ(elements(shape), (Elements2{1.0, 1.0, 1.0}));
}

TEST(ShapeMatrix, MeasurementThatIsNotANumberIsNotWeighed) {
  const StateEstimate state;
  for (const Midpoint& odd : {Midpoint(kNaN, 0.0), Midpoint(0.0, kNaN)}) {
    ShapeMatrix shape(1.0, 0.0, 1.0);
    EXPECT_TRUE(shape.reweightMeasurement(odd, state, 1.0, 1.0, 2.0));
    EXPECT_EQ(elements(shape), (Elements2{1.0, 0.0, 1.0}));
  }
  ShapeMatrix shape(1.0, 0.0, 1.0);
  EXPECT_TRUE(shape.reweightMeasurement(Midpoint(9.0, 9.0), state, kNaN, 1.0, 2.0));
  EXPECT_TRUE(shape.reweightMeasurement(Midpoint(9.0, 9.0), state, 1.0, kNaN, 2.0));
  EXPECT_EQ(elements(shape), (Elements2{1.0, 0.0, 1.0}));
  // Infinitely far: the weight is the gates', and infinite times zero is not a number.
  EXPECT_TRUE(shape.reweightMeasurement(Midpoint(1e200, 0.0), state, 0.0, 1.0, 2.0));
  EXPECT_EQ(shape[0], kInfinity);
}

TEST(ShapeMatrix, WeighingACovarianceThatIsNotANumberChangesNothing) {
  ShapeMatrix shape(kNaN, 0.0, 1.0);
  EXPECT_TRUE(shape.reweightMeasurement(Midpoint(9.0, 9.0), StateEstimate(), 0.0, 1.0, 2.0));
  EXPECT_TRUE(sameElements(shape, {kNaN, 0.0, 1.0}));
}

}  // namespace
}  // namespace trelvo
