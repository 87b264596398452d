#include "tools/trelvo/ImportFix.h"

#include <limits>

#include "tests/tools/ImportSupport.h"

namespace trelvo::tool {
namespace {

using schema::PositionEstimate;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

class ImportFixTest : public ::testing::Test {
 protected:
  ImportFixTest() {
    fix.latitude = 1.0;
    fix.longitude = 2.0;
    fix.timeStamp = 5;
  }

  gom::SharedPointer<PositionEstimate> stored() {
    const auto measurement = makeGnssMeasurement(fix, {report, {"input", 1}});
    EXPECT_TRUE(measurement);
    const auto position = measurement ? measurement->toPosition() : nullptr;
    EXPECT_TRUE(position);
    return position ? position : PositionEstimate::create();
  }

  ImportFix fix;
  ImportReport report;
};

TEST_F(ImportFixTest, WithOnlyAPositionHoldsNothingElse) {
  const auto position = stored();
  EXPECT_EQ(position->values(), PositionEstimate::HasTimeStamp | PositionEstimate::HasLatitude |
                                    PositionEstimate::HasLongitude |
                                    PositionEstimate::HasTechnology);
  EXPECT_TRUE(report.isEmpty());
}

TEST_F(ImportFixTest, NeedsBothCoordinatesInRange) {
  const std::optional<double> none;
  for (const auto& [latitude, longitude] :
       {std::pair(none, std::optional(2.0)), std::pair(std::optional(1.0), none),
        std::pair(std::optional(90.1), std::optional(2.0)),
        std::pair(std::optional(1.0), std::optional(360.1)),
        std::pair(std::optional(kNan), std::optional(2.0)),
        std::pair(std::optional(1.0), std::optional(kInfinity))}) {
    fix.latitude = latitude;
    fix.longitude = longitude;
    EXPECT_FALSE(makeGnssMeasurement(fix, {report, {"input", 1}}));
  }
  EXPECT_EQ(report.countOf(kNoPosition), 6u);
}

TEST_F(ImportFixTest, LongitudesOfAnotherTurnAreWrapped) {
  for (const auto& [given, expected] :
       {std::pair(180.0, -180.0), std::pair(190.0, -170.0), std::pair(359.0, -1.0),
        std::pair(-190.0, 170.0), std::pair(-360.0, 0.0), std::pair(360.0, 0.0)}) {
    fix.longitude = given;
    EXPECT_NEAR(stored()->longitude(), expected, 1e-7) << given;
  }
}

TEST_F(ImportFixTest, CourseIsWrapped) {
  for (const auto& [given, expected] :
       {std::pair(180.0, -180.0), std::pair(360.0, 0.0), std::pair(-180.0, -180.0),
        std::pair(-181.0, 179.0), std::pair(-1e-300, -1e-300)}) {
    fix.course = given;
    EXPECT_EQ(stored()->course(), expected) << given;
  }
}

TEST_F(ImportFixTest, AnOrientationIsALine) {
  for (const auto& [given, expected] :
       {std::pair(0.0, 0.0), std::pair(180.0, 0.0), std::pair(270.0, 90.0), std::pair(-1.0, 179.0),
        std::pair(-1e-300, 0.0), std::pair(179.99999999, 0.0), std::pair(179.9999, 179.9999)}) {
    fix.orientation = given;
    EXPECT_NEAR(stored()->angle(), expected, 2e-5) << given;
  }
}

// The nearest orientations to the half circle, where rounding to single precision could reach it.
TEST_F(ImportFixTest, EveryOrientationNearTheHalfCircleReadsBack) {
  for (int i = 0; i < 2000; ++i) {
    fix.orientation = 180.0 - i * 1e-8;
    EXPECT_LT(stored()->angle(), 180.0) << i;
  }
}

TEST_F(ImportFixTest, AxesAreRoundedToMetresFrom1Up) {
  for (const auto& [given, expected] :
       {std::pair(0.0, 1.0), std::pair(0.99, 1.0), std::pair(1.0, 1.0), std::pair(1.49, 1.0),
        std::pair(1.5, 2.0), std::pair(8.7, 9.0), std::pair(4294967295.0, 4294967295.0)}) {
    fix.majorAxis = given;
    fix.minorAxis = given;
    EXPECT_EQ(stored()->majorAxis(), expected) << given;
    EXPECT_EQ(stored()->minorAxis(), expected) << given;
  }
  EXPECT_EQ(report.countOf(kSmallAxis), 8u);
}

TEST_F(ImportFixTest, AxesOutOfRangeAreLeftOut) {
  for (const double given : {-0.1, 4294967295.6, kInfinity, kNan}) {
    fix.majorAxis = given;
    EXPECT_FALSE(stored()->valueExists(PositionEstimate::HasMajorAxis)) << given;
  }
  EXPECT_EQ(report.countOf(kBadAxis), 4u);
}

TEST_F(ImportFixTest, WhatSinglePrecisionCannotHoldInRangeIsLeftOut) {
  for (const double given : {0.0, -1.0, 1e-60, 4294967295.0, 1e300, kInfinity, kNan}) {
    fix.radius = given;
    fix.altitudeUncertainty = given;
    const auto position = stored();
    EXPECT_FALSE(position->valueExists(PositionEstimate::HasHorizontalCepUncertainty)) << given;
    EXPECT_FALSE(position->valueExists(PositionEstimate::HasAltitudeUncertainty)) << given;
  }
  EXPECT_EQ(report.countOf(kBadRadius), 7u);
  EXPECT_EQ(report.countOf(kBadAltitudeUncertainty), 7u);
}

TEST_F(ImportFixTest, RadiusAndHeightReadBackInSinglePrecision) {
  fix.radius = 12.5;
  fix.altitude = -44.3;
  fix.altitudeUncertainty = 65535.0;
  const auto position = stored();
  EXPECT_EQ(position->horizontalCepUncertainty(), 12.5);
  EXPECT_EQ(position->altitude(), static_cast<double>(-44.3f));
  EXPECT_EQ(position->altitudeUncertainty(), 65535.0);
  EXPECT_TRUE(report.isEmpty());
}

TEST_F(ImportFixTest, AltitudeKeepsToItsRange) {
  for (const auto& [given, kept] : {std::pair(16383.5, true), std::pair(-16383.5, true),
                                    std::pair(16383.6, false), std::pair(kNan, false)}) {
    fix.altitude = given;
    EXPECT_EQ(stored()->valueExists(PositionEstimate::HasAltitude), kept) << given;
  }
  EXPECT_EQ(report.countOf(kBadAltitude), 2u);
}

TEST_F(ImportFixTest, SpeedMayBe0ButNotBelow) {
  fix.speed = 0.0;
  EXPECT_TRUE(stored()->valueExists(PositionEstimate::HasSpeed));
  fix.speed = -0.1;
  EXPECT_FALSE(stored()->valueExists(PositionEstimate::HasSpeed));
  EXPECT_EQ(report.countOf(kBadSpeed), 1u);
}

TEST_F(ImportFixTest, WithoutATimeStampIsStoredAllTheSame) {
  fix.timeStamp.reset();
  const auto measurement = makeGnssMeasurement(fix, {report, {"input", 1}});
  ASSERT_TRUE(measurement);
  EXPECT_FALSE(measurement->valueExists(0x2));
  EXPECT_NEAR(measurement->toPosition()->latitude(), 1.0, 5e-8);
}

TEST(ImportTimeStamp, IsOf32BitsAndNot0) {
  EXPECT_EQ(timeStampOf(1), 1u);
  EXPECT_EQ(timeStampOf(0xFFFFFFFFLL), 0xFFFFFFFFu);
  EXPECT_FALSE(timeStampOf(0));
  EXPECT_FALSE(timeStampOf(-1));
  EXPECT_FALSE(timeStampOf(0x100000000LL));
}

}  // namespace
}  // namespace trelvo::tool
