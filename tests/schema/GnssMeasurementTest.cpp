#include <gtest/gtest.h>

#include <trelvo/schema/GnssMeasurement.h>
#include <trelvo/schema/Technology.h>
#include <trelvo/schema/WlanDn.h>

#include "tests/support/Bytes.h"

namespace trelvo::schema {
namespace {

using gom::SharedPointer;
using test::bytes;
using test::written;

SharedPointer<GnssMeasurementData> someData() {
  return GnssMeasurementData::create(Coverage(1, 2, 3.0F));
}

PositionEstimate anEstimate() {
  PositionEstimate estimate;
  estimate.setLatitude(52.5);
  estimate.setLongitude(13.25);
  return estimate;
}

TEST(GnssMeasurement, IsOfKey21AndStartsEmpty) {
  const SharedPointer<GnssMeasurement> measurement = GnssMeasurement::create();
  ASSERT_TRUE(measurement);
  EXPECT_EQ(measurement->key(), 21);
  EXPECT_TRUE(measurement->isEmpty());
  EXPECT_EQ(measurement->timeStamp(), 0U);
  EXPECT_FALSE(measurement->measurementData());
}

TEST(GnssMeasurement, PropertiesGoToTheseKeysAndAreShared) {
  const SharedPointer<GnssMeasurementData> data = someData();
  const SharedPointer<GnssMeasurement> measurement = GnssMeasurement::create(7, data);
  ASSERT_TRUE(measurement);
  EXPECT_EQ(measurement->measurementData(), data);
  EXPECT_EQ(measurement->timeStamp(), 7U);
  unsigned int timeStamp = 0;
  EXPECT_EQ(measurement->object().getUint32Property(205, timeStamp), StatusOk);
  EXPECT_EQ(timeStamp, 7U);
  SharedPointer<gom::ObjectBase> record;
  EXPECT_EQ(measurement->object().getObjectProperty(130, record), StatusOk);
  EXPECT_EQ(record, data);
  EXPECT_EQ(measurement->object().propertyCount(), 2U);
}

TEST(GnssMeasurement, EmptyDataAreRefused) {
  const SharedPointer<GnssMeasurement> measurement = GnssMeasurement::create();
  EXPECT_EQ(measurement->setMeasurementData(SharedPointer<GnssMeasurementData>()),
            StatusWrongState);
  EXPECT_TRUE(measurement->isEmpty());
  EXPECT_FALSE(GnssMeasurement::create(7U, SharedPointer<GnssMeasurementData>()));
}

TEST(GnssMeasurement, ARecordOfAnotherClassReadsAsEmpty) {
  const SharedPointer<GnssMeasurement> measurement = GnssMeasurement::create();
  measurement->object().setObjectProperty(130, WlanDn::create());
  EXPECT_FALSE(measurement->measurementData());
  EXPECT_TRUE(measurement->valueExists(0x4));
  EXPECT_FALSE(measurement->toPosition());
}

TEST(GnssMeasurement, ValueExistsAsksForEachNamedProperty) {
  const SharedPointer<GnssMeasurement> measurement = GnssMeasurement::create();
  EXPECT_FALSE(measurement->valueExists(0x2));
  EXPECT_FALSE(measurement->valueExists(0x4));
  measurement->setTimeStamp(0);
  EXPECT_TRUE(measurement->valueExists(0x2));
  EXPECT_FALSE(measurement->valueExists(0x6));
  measurement->setMeasurementData(someData());
  EXPECT_TRUE(measurement->valueExists(0x4));
  EXPECT_TRUE(measurement->valueExists(0x6));
}

TEST(GnssMeasurement, ValueExistsIsFalseForNoBitAndForForeignBits) {
  const SharedPointer<GnssMeasurement> measurement = GnssMeasurement::create(7, someData());
  EXPECT_FALSE(measurement->valueExists(0));
  EXPECT_FALSE(measurement->valueExists(0x1));
  EXPECT_FALSE(measurement->valueExists(0x7));
  EXPECT_FALSE(measurement->valueExists(0x8));
}

TEST(GnssMeasurement, UnsetRemovesTheNamedProperties) {
  const SharedPointer<GnssMeasurement> measurement = GnssMeasurement::create(7, someData());
  measurement->unset(0xFFFFFFF9);
  EXPECT_TRUE(measurement->valueExists(0x6));
  measurement->unset(0x2);
  EXPECT_FALSE(measurement->valueExists(0x2));
  EXPECT_TRUE(measurement->valueExists(0x4));
  measurement->unset(0x6);
  EXPECT_TRUE(measurement->isEmpty());
}

TEST(GnssMeasurement, AnEstimateWithoutATimeGivesNone) {
  const PositionEstimate estimate = anEstimate();
  EXPECT_TRUE(GnssMeasurementData::create(estimate));
  EXPECT_FALSE(GnssMeasurement::create(estimate));
}

TEST(GnssMeasurement, TakesAnEstimateAndGivesItBack) {
  PositionEstimate estimate = anEstimate();
  estimate.setTimeStamp(17);
  estimate.setHorizontalCepUncertainty(12.5);
  const SharedPointer<GnssMeasurement> measurement = GnssMeasurement::create(estimate);
  ASSERT_TRUE(measurement);
  EXPECT_EQ(measurement->timeStamp(), 17U);
  const SharedPointer<PositionEstimate> back = measurement->toPosition();
  ASSERT_TRUE(back);
  EXPECT_EQ(back->timeStamp(), 17U);
  EXPECT_NEAR(back->latitude(), 52.5, 5e-8);
  EXPECT_NEAR(back->longitude(), 13.25, 9e-8);
  EXPECT_EQ(back->horizontalCepUncertainty(), 12.5);
  EXPECT_EQ(back->technology(), TechnologyGnss);
  EXPECT_EQ(back->values(), 0x0200FU);
}

TEST(GnssMeasurement, AnEstimateOutOfRangeGivesNone) {
  PositionEstimate estimate;
  ASSERT_TRUE(test::readFrom(estimate, bytes("01 09000000 05000000 000000000000F0BF")));
  EXPECT_FALSE(GnssMeasurement::create(estimate));
}

TEST(GnssMeasurement, HasNoPositionWithoutData) {
  EXPECT_FALSE(GnssMeasurement::create()->toPosition());
}

TEST(GnssMeasurement, WithoutATimeThePositionHasNone) {
  const SharedPointer<GnssMeasurement> measurement = GnssMeasurement::create(7, someData());
  measurement->unset(0x2);
  const SharedPointer<PositionEstimate> position = measurement->toPosition();
  ASSERT_TRUE(position);
  EXPECT_FALSE(position->valueExists(PositionEstimate::HasTimeStamp));
}

TEST(GnssMeasurement, ATimeOfZeroOrBadDataHaveNoPosition) {
  EXPECT_FALSE(GnssMeasurement::create(0, someData())->toPosition());
  const SharedPointer<GnssMeasurementData> bad = GnssMeasurementData::create(Coverage(1, 2, 0.0F));
  EXPECT_FALSE(GnssMeasurement::create(7, bad)->toPosition());
}

TEST(GnssMeasurement, WithoutAnObjectGettersGiveNothing) {
  GnssMeasurement measurement;
  EXPECT_EQ(measurement.timeStamp(), 0U);
  EXPECT_FALSE(measurement.measurementData());
  EXPECT_FALSE(measurement.toPosition());
  EXPECT_FALSE(measurement.valueExists(0x2));
  measurement.unset(0x6);
  EXPECT_EQ(measurement.setMeasurementData(someData()), StatusFailed);
  EXPECT_THROW(measurement.setTimeStamp(1), Status);
}

TEST(GnssMeasurement, WritesTheseBytesAndReadsBack) {
  const test::Bytes wire = bytes(
      "1500 02000000"
      "0600 CD00 07000000"
      "0E00 8200 8200 01 00000000 01 8300 01000000 02000000 00004040");
  EXPECT_EQ(written(*GnssMeasurement::create(7, someData())), wire);
  const SharedPointer<GnssMeasurement> back = GnssMeasurement::create();
  ASSERT_TRUE(test::readFrom(*back, wire));
  EXPECT_EQ(*back->measurementData(), *someData());
}

}  // namespace
}  // namespace trelvo::schema
