#include <gtest/gtest.h>

#include <trelvo/schema/WlanInjection.h>

#include "tests/support/Bytes.h"

namespace trelvo::schema {
namespace {

using gom::GenericObject;
using gom::SharedPointer;
using test::bytes;
using test::written;

SharedPointer<WlanDn> aDn() { return WlanDn::create(0x0011223344556677); }
SharedPointer<Area> anArea() { return Area::create(1, 2, 3, 4, 1.0F); }

SharedPointer<WlanApMeasurement> anApMeasurement() {
  SharedPointer<WlanApMeasurement> made = WlanApMeasurement::create();
  made->setRxLevel(-40);
  return made;
}

SharedPointer<WlanInjection> withEverything() {
  SharedPointer<WlanInjection> made = WlanInjection::create(aDn(), 7, anArea());
  made->setWlanApMeasurement(anApMeasurement());
  return made;
}

TEST(WlanInjection, IsOfKey22AndStartsEmpty) {
  const SharedPointer<WlanInjection> injection = WlanInjection::create();
  ASSERT_TRUE(injection);
  EXPECT_EQ(injection->key(), 22);
  EXPECT_TRUE(injection->isEmpty());
  EXPECT_FALSE(injection->dn());
  EXPECT_FALSE(injection->wlanApMeasurement());
  EXPECT_FALSE(injection->coverage());
  EXPECT_EQ(injection->timeStamp(), 0U);
}

TEST(WlanInjection, PropertiesGoToTheseKeys) {
  const SharedPointer<WlanInjection> injection = withEverything();
  const SharedPointer<GenericObject> object = injection->wrappedObject();
  EXPECT_EQ(object->propertyCount(), 4U);
  SharedPointer<gom::ObjectBase> record;
  EXPECT_EQ(object->getObjectProperty(200, record), StatusOk);
  EXPECT_EQ(record, injection->dn());
  unsigned int timeStamp = 0;
  EXPECT_EQ(object->getUint32Property(205, timeStamp), StatusOk);
  EXPECT_EQ(timeStamp, 7U);
  EXPECT_EQ(object->getObjectProperty(129, record), StatusOk);
  EXPECT_EQ(record, injection->wlanApMeasurement());
  EXPECT_EQ(object->getObjectProperty(204, record), StatusOk);
  EXPECT_EQ(record, injection->coverage());
}

TEST(WlanInjection, EmptyHandlesAreRefused) {
  const SharedPointer<WlanInjection> injection = WlanInjection::create();
  EXPECT_EQ(injection->setDn(SharedPointer<WlanDn>()), StatusWrongState);
  EXPECT_EQ(injection->setWlanApMeasurement(SharedPointer<WlanApMeasurement>()), StatusWrongState);
  EXPECT_EQ(injection->setCoverage(SharedPointer<Area>()), StatusWrongState);
  EXPECT_TRUE(injection->isEmpty());
  EXPECT_FALSE(WlanInjection::create(SharedPointer<WlanDn>(), 7, anArea()));
  EXPECT_FALSE(WlanInjection::create(aDn(), 7, SharedPointer<Area>()));
}

TEST(WlanInjection, RecordsOfAnotherClassReadAsEmpty) {
  const SharedPointer<WlanInjection> injection = WlanInjection::create();
  injection->object().setObjectProperty(200, anArea());
  injection->object().setObjectProperty(129, anArea());
  injection->object().setObjectProperty(204, aDn());
  EXPECT_FALSE(injection->dn());
  EXPECT_FALSE(injection->wlanApMeasurement());
  EXPECT_FALSE(injection->coverage());
}

TEST(WlanInjection, ValueExistsAsksForEachNamedProperty) {
  const SharedPointer<WlanInjection> injection = WlanInjection::create();
  for (const unsigned int bit : {0x1U, 0x2U, 0x4U, 0x8U}) {
    EXPECT_FALSE(injection->valueExists(bit)) << bit;
  }
  injection->setDn(aDn());
  EXPECT_TRUE(injection->valueExists(0x1));
  EXPECT_FALSE(injection->valueExists(0x5));
  injection->setWlanApMeasurement(anApMeasurement());
  EXPECT_TRUE(injection->valueExists(0x5));
  EXPECT_FALSE(injection->valueExists(0x2));
  injection->setTimeStamp(0);
  EXPECT_TRUE(injection->valueExists(0x7));
  EXPECT_FALSE(injection->valueExists(0x8));
  injection->setCoverage(anArea());
  EXPECT_TRUE(injection->valueExists(0xF));
}

TEST(WlanInjection, ValueExistsIsTrueForNoBitAndFalseForForeignBits) {
  EXPECT_TRUE(WlanInjection::create()->valueExists(0));
  EXPECT_TRUE(withEverything()->valueExists(0));
  EXPECT_FALSE(withEverything()->valueExists(0x10));
  EXPECT_FALSE(withEverything()->valueExists(0x1F));
}

TEST(WlanInjection, UnsetRemovesTheNamedProperties) {
  for (const unsigned int bit : {0x1U, 0x2U, 0x4U, 0x8U}) {
    const SharedPointer<WlanInjection> injection = withEverything();
    injection->unset(bit);
    EXPECT_FALSE(injection->valueExists(bit));
    EXPECT_TRUE(injection->valueExists(0xF & ~bit));
  }
  const SharedPointer<WlanInjection> injection = withEverything();
  injection->unset(0xFFFFFFF0);
  EXPECT_TRUE(injection->valueExists(0xF));
  injection->unset(0xFFFFFFFF);
  EXPECT_TRUE(injection->isEmpty());
}

TEST(WlanInjection, WithoutAnObjectGettersGiveNothingAndSettersThrow) {
  WlanInjection injection;
  EXPECT_FALSE(injection.dn());
  EXPECT_EQ(injection.timeStamp(), 0U);
  EXPECT_FALSE(injection.valueExists(0x1));
  injection.unset(0xF);
  injection.dump();
  EXPECT_THROW(injection.setDn(aDn()), Status);
  EXPECT_THROW(injection.setTimeStamp(1), Status);
  EXPECT_THROW(injection.setWlanApMeasurement(anApMeasurement()), Status);
  EXPECT_THROW(injection.setCoverage(anArea()), Status);
}

TEST(WlanInjection, CreateStoresIdentityTimeAndAreaInThisOrder) {
  EXPECT_EQ(written(*WlanInjection::create(aDn(), 0x01020304, anArea())),
            bytes("1600 03000000"
                  "0E00 C800 8000 01 01 08 0011223344556677"
                  "0600 CD00 04030201"
                  "0E00 CC00 6800 01 01 3B00 01000000 02000000 03000000 04000000 0000803F"));
}

TEST(WlanInjection, ReadsBack) {
  const SharedPointer<WlanInjection> back = WlanInjection::create();
  ASSERT_TRUE(test::readFrom(*back, written(*withEverything())));
  EXPECT_EQ(back->object(), withEverything()->object());
  EXPECT_EQ(back->coverage()->majorAxis(), 3U);
}

}  // namespace
}  // namespace trelvo::schema
