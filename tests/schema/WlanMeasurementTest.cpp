#include <gtest/gtest.h>

#include <limits>

#include <trelvo/schema/Area.h>
#include <trelvo/schema/WlanMeasurement.h>

#include "tests/support/Bytes.h"

namespace trelvo::schema {
namespace {

using gom::GenericObject;
using gom::SharedPointer;
using test::bytes;
using test::written;

SharedPointer<WlanDn> aDn() { return WlanDn::create(0x0011223344556677); }

SharedPointer<WlanApMeasurement> anApMeasurement() {
  SharedPointer<WlanApMeasurement> made = WlanApMeasurement::create();
  made->setRxLevel(-40);
  return made;
}

SharedPointer<WlanMeasurement> withEverything() {
  SharedPointer<WlanMeasurement> made = WlanMeasurement::create(aDn(), 7);
  made->setElapsedRealtimeTimeStamp(-2);
  made->setWlanApMeasurement(anApMeasurement());
  return made;
}

TEST(WlanMeasurement, IsOfKey20AndStartsEmpty) {
  const SharedPointer<WlanMeasurement> measurement = WlanMeasurement::create();
  ASSERT_TRUE(measurement);
  EXPECT_EQ(measurement->key(), 20);
  EXPECT_TRUE(measurement->isEmpty());
  EXPECT_FALSE(measurement->dn());
  EXPECT_FALSE(measurement->wlanApMeasurement());
  EXPECT_EQ(measurement->timeStamp(), 0U);
  EXPECT_EQ(measurement->elapsedRealtimeTimeStamp(), 0);
}

TEST(WlanMeasurement, PropertiesGoToTheseKeys) {
  const SharedPointer<WlanMeasurement> measurement = withEverything();
  const SharedPointer<GenericObject> object = measurement->wrappedObject();
  EXPECT_EQ(object->propertyCount(), 4U);
  SharedPointer<gom::ObjectBase> record;
  EXPECT_EQ(object->getObjectProperty(200, record), StatusOk);
  EXPECT_EQ(record, measurement->dn());
  unsigned int timeStamp = 0;
  EXPECT_EQ(object->getUint32Property(205, timeStamp), StatusOk);
  EXPECT_EQ(timeStamp, 7U);
  long long elapsed = 0;
  EXPECT_EQ(object->getInt64Property(206, elapsed), StatusOk);
  EXPECT_EQ(elapsed, -2);
  EXPECT_EQ(object->getObjectProperty(129, record), StatusOk);
  EXPECT_EQ(record, measurement->wlanApMeasurement());
}

TEST(WlanMeasurement, ScalarsTakeEveryValue) {
  const SharedPointer<WlanMeasurement> measurement = WlanMeasurement::create();
  for (const unsigned int value : {0U, 0xFFFFFFFFU}) {
    EXPECT_EQ(measurement->setTimeStamp(value), StatusOk);
    EXPECT_EQ(measurement->timeStamp(), value);
  }
  using Limits = std::numeric_limits<long long>;
  for (const long long value : {Limits::min(), 0LL, Limits::max()}) {
    EXPECT_EQ(measurement->setElapsedRealtimeTimeStamp(value), StatusOk);
    EXPECT_EQ(measurement->elapsedRealtimeTimeStamp(), value);
  }
}

TEST(WlanMeasurement, RecordsAreSharedNotCopied) {
  const SharedPointer<WlanDn> dn = aDn();
  const SharedPointer<WlanMeasurement> measurement = WlanMeasurement::create(dn, 7);
  EXPECT_EQ(measurement->dn(), dn);
  dn->setBssid(9ULL);
  EXPECT_EQ(measurement->dn()->bssid(), 9U);
}

TEST(WlanMeasurement, EmptyHandlesAreRefused) {
  const SharedPointer<WlanMeasurement> measurement = WlanMeasurement::create();
  EXPECT_EQ(measurement->setDn(SharedPointer<WlanDn>()), StatusWrongState);
  EXPECT_EQ(measurement->setWlanApMeasurement(SharedPointer<WlanApMeasurement>()),
            StatusWrongState);
  EXPECT_TRUE(measurement->isEmpty());
  EXPECT_FALSE(WlanMeasurement::create(SharedPointer<WlanDn>(), 7));
}

TEST(WlanMeasurement, RecordsOfAnotherClassReadAsEmpty) {
  const SharedPointer<WlanMeasurement> measurement = WlanMeasurement::create();
  measurement->object().setObjectProperty(200, Area::create());
  measurement->object().setObjectProperty(129, aDn());
  EXPECT_FALSE(measurement->dn());
  EXPECT_FALSE(measurement->wlanApMeasurement());
  EXPECT_TRUE(measurement->valueExists(0x9));
}

TEST(WlanMeasurement, PropertiesOfAnotherTypeReadAsNothingAndStay) {
  const SharedPointer<WlanMeasurement> measurement = WlanMeasurement::create();
  measurement->object().setInt32Property(200, 1);
  measurement->object().setInt32Property(205, 1);
  measurement->object().setInt32Property(206, 1);
  EXPECT_FALSE(measurement->dn());
  EXPECT_EQ(measurement->timeStamp(), 0U);
  EXPECT_EQ(measurement->elapsedRealtimeTimeStamp(), 0);
  EXPECT_EQ(measurement->setDn(aDn()), StatusWrongState);
  EXPECT_EQ(measurement->setTimeStamp(7), StatusWrongState);
  EXPECT_EQ(measurement->setElapsedRealtimeTimeStamp(7), StatusWrongState);
}

TEST(WlanMeasurement, ValueExistsAsksForEachNamedProperty) {
  const SharedPointer<WlanMeasurement> measurement = WlanMeasurement::create();
  for (const unsigned int bit : {0x1U, 0x2U, 0x4U, 0x8U}) {
    EXPECT_FALSE(measurement->valueExists(bit)) << bit;
  }
  measurement->setDn(aDn());
  EXPECT_TRUE(measurement->valueExists(0x1));
  measurement->setTimeStamp(1);
  EXPECT_TRUE(measurement->valueExists(0x3));
  EXPECT_FALSE(measurement->valueExists(0x7));
  measurement->setElapsedRealtimeTimeStamp(1);
  EXPECT_TRUE(measurement->valueExists(0x7));
  EXPECT_FALSE(measurement->valueExists(0x8));
  measurement->setWlanApMeasurement(anApMeasurement());
  EXPECT_TRUE(measurement->valueExists(0xF));
}

TEST(WlanMeasurement, ValueExistsIsFalseForNoBitAndForForeignBits) {
  const SharedPointer<WlanMeasurement> measurement = withEverything();
  EXPECT_FALSE(measurement->valueExists(0));
  EXPECT_FALSE(measurement->valueExists(0x10));
  EXPECT_FALSE(measurement->valueExists(0x11));
  EXPECT_FALSE(measurement->valueExists(0x80000000));
}

TEST(WlanMeasurement, UnsetRemovesTheNamedProperties) {
  for (const unsigned int bit : {0x1U, 0x2U, 0x4U, 0x8U}) {
    const SharedPointer<WlanMeasurement> measurement = withEverything();
    measurement->unset(bit);
    EXPECT_FALSE(measurement->valueExists(bit));
    EXPECT_TRUE(measurement->valueExists(0xF & ~bit));
    measurement->unset(bit);
    EXPECT_EQ(measurement->wrappedObject()->propertyCount(), 3U);
  }
  const SharedPointer<WlanMeasurement> measurement = withEverything();
  measurement->unset(0xFFFFFFF0);
  EXPECT_TRUE(measurement->valueExists(0xF));
  measurement->unset(0xFFFFFFFF);
  EXPECT_TRUE(measurement->isEmpty());
}

TEST(WlanMeasurement, WithoutAnObjectGettersGiveNothingAndSettersThrow) {
  WlanMeasurement measurement;
  EXPECT_TRUE(measurement.isEmpty());
  EXPECT_FALSE(measurement.dn());
  EXPECT_FALSE(measurement.wlanApMeasurement());
  EXPECT_EQ(measurement.timeStamp(), 0U);
  EXPECT_EQ(measurement.elapsedRealtimeTimeStamp(), 0);
  EXPECT_FALSE(measurement.valueExists(0x1));
  measurement.unset(0xF);
  EXPECT_EQ(measurement.setWlanApMeasurement(anApMeasurement()), StatusFailed);
  EXPECT_THROW(measurement.setDn(aDn()), Status);
  EXPECT_THROW(measurement.setTimeStamp(1), Status);
  EXPECT_THROW(measurement.setElapsedRealtimeTimeStamp(1), Status);
}

TEST(WlanMeasurement, CreateStoresTheTimeStampFirst) {
  EXPECT_EQ(written(*WlanMeasurement::create(aDn(), 0x01020304)),
            bytes("1400 02000000"
                  "0600 CD00 04030201"
                  "0E00 C800 8000 01 01 08 0011223344556677"));
}

TEST(WlanMeasurement, AllPropertiesWriteTheseBytes) {
  EXPECT_EQ(written(*withEverything()), bytes("1400 04000000"
                                              "0600 CD00 07000000"
                                              "0E00 C800 8000 01 01 08 0011223344556677"
                                              "0700 CE00 FEFFFFFFFFFFFFFF"
                                              "0E00 8100 8100 01 02000000 D8"));
}

TEST(WlanMeasurement, ReadsBack) {
  const SharedPointer<WlanMeasurement> back = WlanMeasurement::create();
  ASSERT_TRUE(test::readFrom(*back, written(*withEverything())));
  EXPECT_EQ(back->object(), withEverything()->object());
  EXPECT_EQ(back->dn()->bssid(), 0x0011223344556677U);
  EXPECT_EQ(back->wlanApMeasurement()->rxLevel(), -40);
}

}  // namespace
}  // namespace trelvo::schema
