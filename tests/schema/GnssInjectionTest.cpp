#include <gtest/gtest.h>

#include <trelvo/schema/GnssInjection.h>
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

TEST(GnssInjection, IsOfKey13AndStartsEmpty) {
  const SharedPointer<GnssInjection> injection = GnssInjection::create();
  ASSERT_TRUE(injection);
  EXPECT_EQ(injection->key(), 13);
  EXPECT_TRUE(injection->isEmpty());
  EXPECT_EQ(injection->timeStamp(), 0U);
  EXPECT_FALSE(injection->gnssMeasurementData());
}

TEST(GnssInjection, PropertiesGoToTheseKeysAndAreShared) {
  const SharedPointer<GnssMeasurementData> data = someData();
  const SharedPointer<GnssInjection> injection = GnssInjection::create(7, data);
  ASSERT_TRUE(injection);
  EXPECT_EQ(injection->gnssMeasurementData(), data);
  EXPECT_EQ(injection->timeStamp(), 7U);
  unsigned int timeStamp = 0;
  EXPECT_EQ(injection->object().getUint32Property(205, timeStamp), StatusOk);
  EXPECT_EQ(timeStamp, 7U);
  SharedPointer<gom::ObjectBase> record;
  EXPECT_EQ(injection->object().getObjectProperty(130, record), StatusOk);
  EXPECT_EQ(record, data);
}

TEST(GnssInjection, EmptyDataAreRefused) {
  const SharedPointer<GnssInjection> injection = GnssInjection::create();
  EXPECT_EQ(injection->setGnssMeasurementData(SharedPointer<GnssMeasurementData>()),
            StatusWrongState);
  EXPECT_TRUE(injection->isEmpty());
  EXPECT_FALSE(GnssInjection::create(7U, SharedPointer<GnssMeasurementData>()));
}

TEST(GnssInjection, ARecordOfAnotherClassReadsAsEmpty) {
  const SharedPointer<GnssInjection> injection = GnssInjection::create();
  injection->object().setObjectProperty(130, WlanDn::create());
  EXPECT_FALSE(injection->gnssMeasurementData());
}

TEST(GnssInjection, IsMadeFromAMeasurementWhoseDataItShares) {
  const SharedPointer<GnssMeasurement> measurement = GnssMeasurement::create(7, someData());
  const SharedPointer<GnssInjection> injection = GnssInjection::create(measurement);
  ASSERT_TRUE(injection);
  EXPECT_EQ(injection->timeStamp(), 7U);
  EXPECT_EQ(injection->gnssMeasurementData(), measurement->measurementData());
  EXPECT_NE(injection->wrappedObject(), measurement->wrappedObject());
}

TEST(GnssInjection, AMeasurementWithoutTimeOrDataGivesNone) {
  EXPECT_FALSE(GnssInjection::create(SharedPointer<GnssMeasurement>()));
  const SharedPointer<GnssMeasurement> timeless = GnssMeasurement::create();
  timeless->setMeasurementData(someData());
  EXPECT_FALSE(GnssInjection::create(timeless));
  const SharedPointer<GnssMeasurement> blank = GnssMeasurement::create();
  blank->setTimeStamp(7);
  EXPECT_FALSE(GnssInjection::create(blank));
}

TEST(GnssInjection, IsMadeFromAnEstimateWithATime) {
  PositionEstimate estimate;
  estimate.setLatitude(52.5);
  EXPECT_FALSE(GnssInjection::create(estimate));
  estimate.setTimeStamp(9);
  const SharedPointer<GnssInjection> injection = GnssInjection::create(estimate);
  ASSERT_TRUE(injection);
  EXPECT_EQ(injection->timeStamp(), 9U);
  EXPECT_EQ(injection->gnssMeasurementData()->coverage().latitude(), 1252698794);
}

TEST(GnssInjection, TheTimeStampCountsAsPermanent) {
  const SharedPointer<GnssInjection> injection = GnssInjection::create();
  EXPECT_TRUE(injection->valueExists(0x2));
  EXPECT_TRUE(injection->valueExists(0));
  EXPECT_FALSE(injection->valueExists(0x4));
  EXPECT_FALSE(injection->valueExists(0x6));
  injection->setGnssMeasurementData(someData());
  EXPECT_TRUE(injection->valueExists(0x4));
  EXPECT_TRUE(injection->valueExists(0x6));
  const GnssInjection withoutObject;
  EXPECT_TRUE(withoutObject.valueExists(0x2));
  EXPECT_FALSE(withoutObject.valueExists(0x4));
}

TEST(GnssInjection, ValueExistsIsFalseForForeignBits) {
  const SharedPointer<GnssInjection> injection = GnssInjection::create(7, someData());
  EXPECT_FALSE(injection->valueExists(0x1));
  EXPECT_FALSE(injection->valueExists(0x7));
  EXPECT_FALSE(injection->valueExists(0x8));
}

TEST(GnssInjection, UnsetRemovesTheDataButNotTheTime) {
  const SharedPointer<GnssInjection> injection = GnssInjection::create(7, someData());
  injection->unset(0x2);
  EXPECT_EQ(injection->timeStamp(), 7U);
  injection->unset(0xFFFFFFFF);
  EXPECT_EQ(injection->timeStamp(), 7U);
  EXPECT_FALSE(injection->gnssMeasurementData());
  EXPECT_EQ(injection->object().propertyCount(), 1U);
}

TEST(GnssInjection, WithoutAnObjectGettersGiveNothing) {
  GnssInjection injection;
  EXPECT_EQ(injection.timeStamp(), 0U);
  EXPECT_FALSE(injection.gnssMeasurementData());
  injection.dump();
  injection.unset(0x6);
  EXPECT_EQ(injection.setGnssMeasurementData(someData()), StatusFailed);
  EXPECT_THROW(injection.setTimeStamp(1), Status);
}

TEST(GnssInjection, WritesTheseBytesAndReadsBack) {
  const test::Bytes wire = bytes(
      "0D00 02000000"
      "0600 CD00 07000000"
      "0E00 8200 8200 01 00000000 01 8300 01000000 02000000 00004040");
  EXPECT_EQ(written(*GnssInjection::create(7, someData())), wire);
  const SharedPointer<GnssInjection> back = GnssInjection::create();
  ASSERT_TRUE(test::readFrom(*back, wire));
  EXPECT_EQ(*back->gnssMeasurementData(), *someData());
  EXPECT_EQ(back->timeStamp(), 7U);
}

}  // namespace
}  // namespace trelvo::schema
