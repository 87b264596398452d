#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <ostream>
#include <string>
#include <vector>

#include <trelvo/gom/GenericObject.h>
#include <trelvo/schema/GnssMeasurementData.h>
#include <trelvo/schema/Technology.h>
#include <trelvo/schema/WlanDn.h>

#include "tests/support/Bytes.h"
#include "tests/support/LimitedStream.h"

namespace trelvo::schema {
namespace {

using gom::SharedPointer;
using test::bytes;
using test::readFrom;
using test::written;

using Data = GnssMeasurementData;
using Estimate = PositionEstimate;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kTiny = std::numeric_limits<double>::denorm_min();
constexpr double kLatitudeStep = 90.0 / 2147483648.0;
constexpr double kLongitudeStep = 180.0 / 2147483648.0;

/// A field with a range: what is still accepted, what is not, and the record in which only it is
/// set, to the middle one of the accepted values.
struct Range {
  const char* name;
  unsigned int bit;
  Status (Data::*set)(double);
  double (Data::*get)() const;
  std::vector<double> accepted;
  std::vector<double> refused;
  const char* wire;
};

std::ostream& operator<<(std::ostream& out, const Range& range) { return out << range.name; }
std::string nameOf(const testing::TestParamInfo<Range>& range) { return range.param.name; }

const Range kRanges[] = {
    {"Speed",
     0x0200,
     &Data::setSpeed,
     &Data::speed,
     {0.0, 27.75, kInfinity},
     {-kTiny, -kInfinity, kNan},
     "01 00020000 01 0000 0000000000C03B40"},
    {"SpeedUncertainty",
     0x0400,
     &Data::setSpeedUncertainty,
     &Data::speedUncertainty,
     {kTiny, 0.125, kInfinity},
     {0.0, -1.0, kNan},
     "01 00040000 01 0000 000000000000C03F"},
    {"Course",
     0x0800,
     &Data::setCourse,
     &Data::course,
     {-180.0, 123.5, std::nextafter(180.0, 0.0)},
     {std::nextafter(-180.0, -200.0), 180.0, kInfinity, kNan},
     "01 00080000 01 0000 0000000000E05E40"},
    {"CourseUncertainty",
     0x1000,
     &Data::setCourseUncertainty,
     &Data::courseUncertainty,
     {kTiny, 2.5, std::nextafter(180.0, 0.0)},
     {0.0, -1.0, 180.0, kNan},
     "01 00100000 01 0000 0000000000000440"},
};

Coverage aCoverage() { return {1, 2, 3, 4, 1.0F}; }

Data withEverything() {
  Data data(aCoverage());
  for (const Range& range : kRanges) {
    (data.*range.set)(range.accepted[1]);
  }
  return data;
}

class GnssMeasurementDataRange : public testing::TestWithParam<Range> {};
INSTANTIATE_TEST_SUITE_P(Rows, GnssMeasurementDataRange, testing::ValuesIn(kRanges), nameOf);

TEST_P(GnssMeasurementDataRange, AcceptsBothEnds) {
  for (const double value : GetParam().accepted) {
    Data data;
    EXPECT_EQ((data.*GetParam().set)(value), StatusOk) << value;
    EXPECT_EQ((data.*GetParam().get)(), value);
    EXPECT_EQ(data.values(), GetParam().bit);
  }
}

TEST_P(GnssMeasurementDataRange, RefusesWhatLiesOutsideAndKeepsFieldAndBit) {
  for (const double value : GetParam().refused) {
    Data blank;
    EXPECT_EQ((blank.*GetParam().set)(value), StatusInvalidParameter) << value;
    EXPECT_EQ(blank, Data());
    Data used = withEverything();
    EXPECT_EQ((used.*GetParam().set)(value), StatusInvalidParameter) << value;
    EXPECT_EQ(used, withEverything());
  }
}

TEST_P(GnssMeasurementDataRange, AloneWritesTheseBytesAndReadsBack) {
  Data data;
  (data.*GetParam().set)(GetParam().accepted[1]);
  EXPECT_EQ(written(data), bytes(GetParam().wire));
  Data back;
  ASSERT_TRUE(readFrom(back, bytes(GetParam().wire)));
  EXPECT_EQ(back, data);
  EXPECT_EQ((back.*GetParam().get)(), GetParam().accepted[1]);
}

TEST_P(GnssMeasurementDataRange, DecidesEqualityOnlyWhileSet) {
  Data other = withEverything();
  (other.*GetParam().set)(GetParam().accepted[0]);
  EXPECT_NE(other, withEverything());
  Data same = withEverything();
  other.unset(GetParam().bit);
  same.unset(GetParam().bit);
  EXPECT_EQ(other, same);
  EXPECT_EQ((other.*GetParam().get)(), GetParam().accepted[0]);
}

TEST(GnssMeasurementData, IsOfClass130AndStartsEmpty) {
  const Data data;
  EXPECT_EQ(data.key(), 130);
  EXPECT_TRUE(data.isEmpty());
  EXPECT_TRUE(data.coverage().isEmpty());
  EXPECT_EQ(data.speed(), 0.0);
  EXPECT_EQ(data.speedUncertainty(), 0.0);
  EXPECT_EQ(data.course(), 0.0);
  EXPECT_EQ(data.courseUncertainty(), 0.0);
  EXPECT_TRUE(Data::create()->isEmpty());
}

TEST(GnssMeasurementData, WithACoverageAloneItCountsAsEmpty) {
  const SharedPointer<Data> data = Data::create(aCoverage());
  EXPECT_TRUE(data->isEmpty());
  EXPECT_EQ(data->coverage(), aCoverage());
}

TEST(GnssMeasurementData, SetCoverageTakesOverACopy) {
  Data data;
  Coverage coverage = aCoverage();
  EXPECT_EQ(data.setCoverage(coverage), StatusOk);
  coverage.setLatitude(99);
  EXPECT_EQ(data.coverage(), aCoverage());
  EXPECT_EQ(data.values(), 0U);
}

TEST(GnssMeasurementData, CreateWithFiveArgumentsOverwritesTheCourse) {
  const SharedPointer<Data> data = Data::create(aCoverage(), 1.0, 2.0, 10.0, 20.0);
  ASSERT_TRUE(data);
  EXPECT_EQ(data->coverage(), aCoverage());
  EXPECT_EQ(data->speed(), 1.0);
  EXPECT_EQ(data->speedUncertainty(), 2.0);
  EXPECT_EQ(data->course(), 20.0);
  EXPECT_FALSE(data->valueExists(0x1000));
  EXPECT_EQ(data->values(), 0x0E00U);
}

TEST(GnssMeasurementData, CreateWithFiveArgumentsWantsTwoCourses) {
  EXPECT_FALSE(Data::create(aCoverage(), 1.0, 2.0, 10.0, 200.0));
  EXPECT_FALSE(Data::create(aCoverage(), 1.0, 2.0, 200.0, 20.0));
  EXPECT_TRUE(Data::create(aCoverage(), 1.0, 2.0, 10.0, -180.0));
  EXPECT_FALSE(Data::create(aCoverage(), -1.0, 2.0, 10.0, 20.0));
  EXPECT_FALSE(Data::create(aCoverage(), 1.0, 0.0, 10.0, 20.0));
}

TEST(GnssMeasurementData, TheCoverageIsAlwaysOnTheWire) {
  EXPECT_EQ(written(Data()), bytes("01 00000000 01 0000"));
  EXPECT_EQ(written(withEverything()),
            bytes("01 001E0000"
                  "01 3B00 01000000 02000000 03000000 04000000 0000803F"
                  "0000000000C03B40 000000000000C03F 0000000000E05E40 0000000000000440"));
}

TEST(GnssMeasurementData, ReadReplacesTheCoverage) {
  Data data = withEverything();
  ASSERT_TRUE(readFrom(data, bytes("01 00000000 01 0100 09000000")));
  EXPECT_EQ(data.values(), 0U);
  EXPECT_TRUE(data.coverage().valueExists(Coverage::HasLatitude));
  EXPECT_FALSE(data.coverage().valueExists(Coverage::HasLongitude));
  EXPECT_EQ(data.coverage().latitude(), 9);
}

TEST(GnssMeasurementData, ReadsBackEqual) {
  Data data;
  ASSERT_TRUE(readFrom(data, written(withEverything())));
  EXPECT_EQ(data, withEverything());
}

TEST(GnssMeasurementData, RefusesVersion2HereAndInTheCoverage) {
  Data data = withEverything();
  EXPECT_FALSE(readFrom(data, bytes("02 00000000 01 0000")));
  EXPECT_EQ(data.values(), 0U);
  data = withEverything();
  EXPECT_FALSE(readFrom(data, bytes("01 00000000 02 0000")));
  EXPECT_TRUE(data.coverage().isEmpty());
  EXPECT_FALSE(readFrom(data, bytes("01 00000000 01 0001")));
}

TEST(GnssMeasurementData, BitsWithoutAFieldStayInTheMask) {
  Data data;
  ASSERT_TRUE(readFrom(data, bytes("01 FF010080 01 0000")));
  EXPECT_EQ(data.values(), 0x800001FFU);
}

TEST(GnssMeasurementData, ReadTakesWhatTheSettersRefuse) {
  Data data;
  ASSERT_TRUE(readFrom(data, bytes("01 00020000 01 0000 000000000000F0BF")));
  EXPECT_EQ(data.speed(), -1.0);
}

TEST(GnssMeasurementData, EqualityIsTheCoveragesOwnAndExactForNumbers) {
  EXPECT_EQ(Data(Coverage(0, 0, 1, 1, 0.5F)), Data(Coverage(0, 0, 1, 1, 0.9F)));
  EXPECT_NE(Data(Coverage(0, 0, 1, 1, 0.5F)), Data(Coverage(1, 0, 1, 1, 0.5F)));
  EXPECT_NE(withEverything(), Data(aCoverage()));
  Data extended;
  ASSERT_NE(extended.extension(), nullptr);
  EXPECT_NE(extended, Data());
}

TEST(GnssMeasurementData, CopiesAndClonesAreEqualAndIndependent) {
  const SharedPointer<Data> source(new Data(withEverything()));
  source->extension()->setUint32Property(1, 2);
  const SharedPointer<Data> copy = Data::create(source);
  const SharedPointer<Data> clone = source->clone();
  ASSERT_TRUE(copy);
  ASSERT_TRUE(clone);
  EXPECT_EQ(*copy, *source);
  EXPECT_EQ(*clone, *source);
  EXPECT_NE(clone->extensionReference(), source->extensionReference());
  copy->setSpeed(1.0);
  clone->setCoverage(Coverage());
  EXPECT_EQ(source->speed(), 27.75);
  EXPECT_EQ(source->coverage(), aCoverage());
  Data assigned;
  assigned = *source;
  EXPECT_EQ(assigned, *source);
  EXPECT_FALSE(Data::create(SharedPointer<Data>()));
}

Estimate wholeEstimate() {
  Estimate estimate;
  estimate.setTimeStamp(17);
  estimate.setLatitude(52.5);
  estimate.setLongitude(-13.25);
  estimate.setHorizontalCepUncertainty(12.5);
  estimate.setMajorAxis(40.9);
  estimate.setMinorAxis(20.1);
  estimate.setAngle(45.0);
  estimate.setAltitude(34.5);
  estimate.setAltitudeUncertainty(3.5);
  estimate.setSpeed(13.1);
  estimate.setSpeedUncertainty(0.3);
  estimate.setCourse(-90.7);
  estimate.setCourseUncertainty(4.7);
  estimate.setFloorId(3);
  estimate.setBuildingId("Tower 7");
  estimate.setTechnology(TechnologyCellLac);
  estimate.setSource(static_cast<Estimate::Source>(2));
  estimate.setMeasurementId(5);
  return estimate;
}

TEST(GnssMeasurementData, TakesAnEstimateInTheCompactForm) {
  const SharedPointer<Data> data = Data::create(wholeEstimate());
  ASSERT_TRUE(data);
  const Coverage& coverage = data->coverage();
  EXPECT_TRUE(coverage.valueExists(0xFF));
  EXPECT_EQ(coverage.latitude(), 1252698794);   // floor(52.5 / 90 * 2^31)
  EXPECT_EQ(coverage.longitude(), -158078658);  // floor(-13.25 / 180 * 2^31)
  EXPECT_EQ(coverage.majorAxis(), 40U);
  EXPECT_EQ(coverage.minorAxis(), 20U);
  EXPECT_EQ(coverage.angle(), 0.785398163397448310F);
  EXPECT_EQ(coverage.altitude(), 34.5F);
  EXPECT_EQ(coverage.altitudeUncertainty(), 3.5F);
  EXPECT_EQ(coverage.horizontalCepUncertainty(), 12.5F);
  EXPECT_EQ(data->values(), 0x1E00U);
  EXPECT_EQ(data->speed(), 13.1);
  EXPECT_EQ(data->speedUncertainty(), 0.3);
  EXPECT_EQ(data->course(), -90.7);
  EXPECT_EQ(data->courseUncertainty(), 4.7);
}

TEST(GnssMeasurementData, TakesOnlyWhatTheEstimateHas) {
  EXPECT_EQ(*Data::create(Estimate()), Data());
  struct {
    unsigned int bit;
    unsigned int coverageBit;
    unsigned int ownBit;
  } const fields[] = {
      {Estimate::HasLatitude, 0x01, 0},
      {Estimate::HasLongitude, 0x02, 0},
      {Estimate::HasMajorAxis, 0x08, 0},
      {Estimate::HasMinorAxis, 0x10, 0},
      {Estimate::HasAngle, 0x20, 0},
      {Estimate::HasAltitude, 0x04, 0},
      {Estimate::HasAltitudeUncertainty, 0x40, 0},
      {Estimate::HasHorizontalCepUncertainty, 0x80, 0},
      {Estimate::HasSpeed, 0, 0x0200},
      {Estimate::HasSpeedUncertainty, 0, 0x0400},
      {Estimate::HasCourse, 0, 0x0800},
      {Estimate::HasCourseUncertainty, 0, 0x1000},
      {Estimate::HasTimeStamp | Estimate::HasFloorId | Estimate::HasBuildingId |
           Estimate::HasTechnology | Estimate::HasSource | Estimate::HasMeasurementId,
       0, 0},
  };
  for (const auto& field : fields) {
    Estimate estimate = wholeEstimate();
    estimate.unset(~field.bit);
    const SharedPointer<Data> data = Data::create(estimate);
    ASSERT_TRUE(data);
    EXPECT_EQ(data->values(), field.ownBit);
    Coverage coverage = data->coverage();
    coverage.unset(field.coverageBit);
    EXPECT_TRUE(coverage.isEmpty()) << field.bit;
    EXPECT_EQ(data->coverage().isEmpty(), field.coverageBit == 0) << field.bit;
  }
}

TEST(GnssMeasurementData, AxesBelowOneMetreBecomeZero) {
  Estimate estimate;
  estimate.setMajorAxis(0.9);
  estimate.setMinorAxis(4294967295.0);
  const SharedPointer<Data> data = Data::create(estimate);
  ASSERT_TRUE(data);
  EXPECT_EQ(data->coverage().majorAxis(), 0U);
  EXPECT_EQ(data->coverage().minorAxis(), 0xFFFFFFFFU);
  EXPECT_FALSE(data->toPosition());
}

TEST(GnssMeasurementData, EstimatesReadFromAStreamMayBeRefused) {
  Estimate badCircle;
  ASSERT_TRUE(readFrom(badCircle, bytes("01 08000000 000000000000F0BF")));
  EXPECT_FALSE(Data::create(badCircle));
  Estimate nanCircle;
  ASSERT_TRUE(readFrom(nanCircle, bytes("01 08000000 000000000000F87F")));
  EXPECT_FALSE(Data::create(nanCircle));
  Estimate badSpeed;
  ASSERT_TRUE(readFrom(badSpeed, bytes("01 00020000 000000000000F0BF")));
  EXPECT_FALSE(Data::create(badSpeed));
  Estimate badCourse;
  ASSERT_TRUE(readFrom(badCourse, bytes("01 00080000 0000000000806640")));
  EXPECT_FALSE(Data::create(badCourse));
}

TEST(GnssMeasurementData, StrangeEstimatesHaveADefinedForm) {
  // A latitude of NaN, a major axis of -1.0 and a minor one of 4294967296.0.
  Estimate estimate;
  ASSERT_TRUE(
      readFrom(estimate, bytes("01 32000000 000000000000F87F 000000000000F0BF 000000000000F041")));
  const SharedPointer<Data> data = Data::create(estimate);
  ASSERT_TRUE(data);
  EXPECT_EQ(data->coverage().latitude(), 0);
  EXPECT_EQ(data->coverage().majorAxis(), 0U);
  EXPECT_EQ(data->coverage().minorAxis(), 0xFFFFFFFFU);
}

TEST(GnssMeasurementData, GoesBackToAnEstimate) {
  const SharedPointer<Estimate> estimate = Data::create(wholeEstimate())->toPosition();
  ASSERT_TRUE(estimate);
  EXPECT_EQ(estimate->values(), 0x03FFEU);
  EXPECT_NEAR(estimate->latitude(), 52.5, kLatitudeStep);
  EXPECT_NEAR(estimate->longitude(), -13.25, kLongitudeStep);
  EXPECT_EQ(estimate->horizontalCepUncertainty(), 12.5);
  EXPECT_EQ(estimate->majorAxis(), 40.0);
  EXPECT_EQ(estimate->minorAxis(), 20.0);
  EXPECT_NEAR(estimate->angle(), 45.0, 3e-6);
  EXPECT_EQ(estimate->altitude(), 34.5);
  EXPECT_EQ(estimate->altitudeUncertainty(), 3.5);
  EXPECT_EQ(estimate->speed(), 13.1);
  EXPECT_EQ(estimate->speedUncertainty(), 0.3);
  EXPECT_EQ(estimate->course(), -90.7);
  EXPECT_EQ(estimate->courseUncertainty(), 4.7);
  EXPECT_EQ(estimate->technology(), TechnologyGnss);
}

TEST(GnssMeasurementData, EmptyDataGiveAnEstimateOfATechnologyAlone) {
  const SharedPointer<Estimate> estimate = Data().toPosition();
  ASSERT_TRUE(estimate);
  EXPECT_EQ(estimate->values(), Estimate::HasTechnology);
  EXPECT_EQ(estimate->technology(), 1);
}

TEST(GnssMeasurementData, ALatitudeAloneComesBackAlone) {
  Estimate source;
  source.setLatitude(-33.333);
  const SharedPointer<Estimate> estimate = Data::create(source)->toPosition();
  ASSERT_TRUE(estimate);
  EXPECT_EQ(estimate->values(), Estimate::HasLatitude | Estimate::HasTechnology);
  EXPECT_NEAR(estimate->latitude(), -33.333, kLatitudeStep);
  EXPECT_EQ(estimate->technology(), TechnologyGnss);
}

TEST(GnssMeasurementData, TheHighestLatitudeCodeReadsJustBelow90) {
  Coverage coverage;
  coverage.setLatitude(0x7FFFFFFF);
  const SharedPointer<Estimate> estimate = Data(coverage).toPosition();
  ASSERT_TRUE(estimate);
  EXPECT_EQ(estimate->latitude(), 90.0 - kLatitudeStep);
}

TEST(GnssMeasurementData, WhatAnEstimateRefusesHasNoPosition) {
  const auto refused = [](Status (*set)(Coverage&)) {
    Coverage coverage;
    EXPECT_EQ(set(coverage), StatusOk);
    return !Data(coverage).toPosition();
  };
  EXPECT_TRUE(refused([](Coverage& c) { return c.setMajorAxis(0); }));
  EXPECT_TRUE(refused([](Coverage& c) { return c.setMinorAxis(0); }));
  EXPECT_TRUE(refused([](Coverage& c) { return c.setAngle(3.1415927F); }));
  EXPECT_TRUE(refused([](Coverage& c) { return c.setAngle(100.0F); }));
  EXPECT_TRUE(refused([](Coverage& c) { return c.setAltitude(16384.0F); }));
  EXPECT_TRUE(refused([](Coverage& c) { return c.setAltitudeUncertainty(0.0F); }));
  EXPECT_TRUE(refused([](Coverage& c) { return c.setHorizontalCepUncertainty(0.0F); }));
  EXPECT_FALSE(refused([](Coverage& c) { return c.setAngle(3.1415925F); }));
  EXPECT_FALSE(refused([](Coverage& c) { return c.setAngle(-1.0F); }));
}

TEST(GnssMeasurementData, MotionThatAnEstimateRefusesHasNoPosition) {
  Data data;
  ASSERT_TRUE(readFrom(data, bytes("01 00020000 01 0000 000000000000F0BF")));
  EXPECT_FALSE(data.toPosition());
}

}  // namespace
}  // namespace trelvo::schema
