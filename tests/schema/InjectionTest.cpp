#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include <trelvo/schema/CellularObjectInjection.h>
#include <trelvo/schema/Injection.h>
#include <trelvo/schema/WlanInjection.h>

#include "tests/support/Bytes.h"

namespace trelvo::schema {
namespace {

using gom::GenericObject;
using gom::SharedPointer;
using gom::ValueCollection;
using test::bytes;
using test::written;

using Collection = SharedPointer<ValueCollection>;
using Object = SharedPointer<GenericObject>;

/// One row of the table of lists.
struct Row {
  const char* name;
  unsigned int bit;
  unsigned short key;
  unsigned short memberKey;
  Status (Injection::*add)(const Object&);
  Status (Injection::*set)(const Collection&);
  Collection (Injection::*get)() const;
};

std::ostream& operator<<(std::ostream& out, const Row& row) { return out << row.name; }
std::string nameOf(const testing::TestParamInfo<Row>& row) { return row.param.name; }

using I = Injection;
const Row kRows[] = {
    {"Geran", 0x001, 304, 6, &I::addGeranInjection, &I::setGeranInjectionCollection,
     &I::geranInjectionCollection},
    {"UtraFdd", 0x002, 305, 7, &I::addUtraFddInjection, &I::setUtraFddInjectionCollection,
     &I::utraFddInjectionCollection},
    {"UtraTdd", 0x040, 306, 8, &I::addUtraTddInjection, &I::setUtraTddInjectionCollection,
     &I::utraTddInjectionCollection},
    {"EUtra", 0x010, 311, 15, &I::addEUtraInjection, &I::setEUtraInjectionCollection,
     &I::eutraInjectionCollection},
    {"Cdma", 0x020, 313, 18, &I::addCdmaInjection, &I::setCdmaInjectionCollection,
     &I::cdmaInjectionCollection},
    {"CellularObject", 0x004, 308, 12, &I::addCellularObjectInjection,
     &I::setCellularObjectInjectionCollection, &I::cellularObjectInjectionCollection},
    {"Wlan", 0x080, 316, 22, &I::addWlanInjection, &I::setWlanInjectionCollection,
     &I::wlanInjectionCollection},
    {"Gnss", 0x008, 309, 13, &I::addGnssInjection, &I::setGnssInjectionCollection,
     &I::gnssInjectionCollection},
};

class InjectionList : public testing::TestWithParam<Row> {
 public:
  Object member() const { return GenericObject::create(GetParam().memberKey); }
  Status add(const Object& object) { return (*injection.*GetParam().add)(object); }
  Status set(const Collection& list) { return (*injection.*GetParam().set)(list); }
  Collection list() const { return (*injection.*GetParam().get)(); }

  SharedPointer<Injection> injection = Injection::create();
};
INSTANTIATE_TEST_SUITE_P(Rows, InjectionList, testing::ValuesIn(kRows), nameOf);

TEST_P(InjectionList, TheFirstMemberMakesTheListAtItsKey) {
  EXPECT_FALSE(injection->valueExists(GetParam().bit));
  EXPECT_FALSE(list());
  EXPECT_EQ(add(member()), StatusOk);
  EXPECT_TRUE(injection->valueExists(GetParam().bit));
  EXPECT_EQ(injection->object().propertyCount(), 1U);
  Collection stored;
  EXPECT_EQ(injection->object().getCollectionProperty(GetParam().key, stored), StatusOk);
  EXPECT_EQ(list(), stored);
  EXPECT_EQ(injection->injectionCollection(GetParam().key), stored);
}

TEST_P(InjectionList, MembersStandInTheOrderOfAddingAndAreShared) {
  const Object first = member();
  const Object second = member();
  add(first);
  add(second);
  ASSERT_EQ(list()->count(), 2U);
  Object stored;
  EXPECT_EQ(list()->items[0]->getGenericObjectValue(stored), StatusOk);
  EXPECT_EQ(stored, first);
  EXPECT_EQ(list()->items[1]->getGenericObjectValue(stored), StatusOk);
  EXPECT_EQ(stored, second);
  EXPECT_EQ(list()->items[0]->key(), 0);
}

TEST_P(InjectionList, RefusesMembersOfEveryOtherKeyAndMakesNoList) {
  for (unsigned short key = 0; key <= 23; ++key) {
    if (key != GetParam().memberKey) {
      EXPECT_EQ(add(GenericObject::create(key)), StatusWrongState) << key;
    }
  }
  EXPECT_EQ(add(Object()), StatusWrongState);
  EXPECT_TRUE(injection->isEmpty());
}

TEST_P(InjectionList, AddingAndSettingRefuseAPropertyOfAnotherType) {
  injection->object().setInt32Property(GetParam().key, 1);
  EXPECT_EQ(add(member()), StatusWrongState);
  EXPECT_EQ(set(ValueCollection::create()), StatusWrongState);
  EXPECT_FALSE(list());
}

TEST_P(InjectionList, SettingReplacesTheWholeList) {
  add(member());
  const Collection other = ValueCollection::create();
  EXPECT_EQ(set(other), StatusOk);
  EXPECT_EQ(list(), other);
  EXPECT_EQ(set(Collection()), StatusWrongState);
  EXPECT_EQ(list(), other);
}

TEST_P(InjectionList, TheBitStandsForThisPropertyAlone) {
  for (const Row& row : kRows) {
    if (row.bit != GetParam().bit) {
      (*injection.*row.add)(GenericObject::create(row.memberKey));
    }
  }
  injection->setMeasurementId(1);
  EXPECT_FALSE(injection->valueExists(GetParam().bit));
  EXPECT_TRUE(injection->valueExists(0x1FF & ~GetParam().bit));
  add(member());
  EXPECT_TRUE(injection->valueExists(0x1FF));
  injection->unset(GetParam().bit);
  EXPECT_FALSE(list());
  EXPECT_EQ(injection->object().propertyCount(), 8U);
}

TEST(Injection, IsOfKey5AndStartsEmpty) {
  const SharedPointer<Injection> injection = Injection::create();
  ASSERT_TRUE(injection);
  EXPECT_EQ(injection->key(), 5);
  EXPECT_TRUE(injection->isEmpty());
  EXPECT_EQ(injection->measurementId(), 0U);
  EXPECT_TRUE(injection->valueExists(0));
  EXPECT_EQ(written(*injection), bytes("0500 00000000"));
}

TEST(Injection, MeasurementIdStandsUnderBit0x100) {
  const SharedPointer<Injection> injection = Injection::create();
  EXPECT_FALSE(injection->valueExists(0x100));
  EXPECT_EQ(injection->setMeasurementId(0xFFFFFFFF), StatusOk);
  EXPECT_EQ(injection->measurementId(), 0xFFFFFFFFU);
  EXPECT_TRUE(injection->valueExists(0x100));
  EXPECT_EQ(written(*injection), bytes("0500 01000000 0600 3D01 FFFFFFFF"));
  injection->unset(0xFFFFFEFF);
  EXPECT_EQ(injection->measurementId(), 0xFFFFFFFFU);
  injection->unset(0x100);
  EXPECT_TRUE(injection->isEmpty());
}

TEST(Injection, ValueExistsIsFalseForForeignBits) {
  const SharedPointer<Injection> injection = Injection::create();
  injection->setMeasurementId(1);
  EXPECT_FALSE(injection->valueExists(0x200));
  EXPECT_FALSE(injection->valueExists(0x300));
}

TEST(Injection, AddInjectionChecksTheGivenKey) {
  const SharedPointer<Injection> injection = Injection::create();
  EXPECT_EQ(injection->addInjection(GenericObject::create(40), 41, 500), StatusWrongState);
  EXPECT_EQ(injection->addInjection(Object(), 40, 500), StatusWrongState);
  EXPECT_TRUE(injection->isEmpty());
  EXPECT_EQ(injection->addInjection(GenericObject::create(40), 40, 500), StatusOk);
  EXPECT_EQ(injection->injectionCollection(500)->count(), 1U);
  EXPECT_FALSE(injection->injectionCollection(501));
}

TEST(Injection, WritesTheseBytesAndReadsBack) {
  const SharedPointer<WlanInjection> access = WlanInjection::create();
  access->setTimeStamp(9);
  const SharedPointer<Injection> injection = Injection::create();
  injection->addWlanInjection(access->wrappedObject());
  const test::Bytes wire = bytes(
      "0500 01000000"
      "0F00 3C01 01000000"
      "0D00 0000 1600 01000000 0600 CD00 09000000");
  EXPECT_EQ(written(*injection), wire);
  const SharedPointer<Injection> back = Injection::create();
  ASSERT_TRUE(test::readFrom(*back, wire));
  EXPECT_EQ(back->object(), injection->object());
}

TEST(Injection, ANamedCellularAreaMakesWriteThrow) {
  const SharedPointer<CellularObjectInjection> area = CellularObjectInjection::create();
  const SharedPointer<Injection> injection = Injection::create();
  injection->addCellularObjectInjection(area->wrappedObject());
  BufferStream stream;
  EXPECT_TRUE(injection->write(stream));
  area->setDn(CellularObjectDn::create());
  EXPECT_THROW(static_cast<void>(injection->write(stream)), Status);
}

TEST(Injection, WithoutAnObjectGettersGiveNothing) {
  Injection injection;
  EXPECT_TRUE(injection.isEmpty());
  EXPECT_TRUE(injection.valueExists(0));
  EXPECT_FALSE(injection.valueExists(1));
  EXPECT_FALSE(injection.geranInjectionCollection());
  EXPECT_EQ(injection.measurementId(), 0U);
  injection.unset(0x1FF);
  injection.dump();
  EXPECT_EQ(injection.addGeranInjection(GenericObject::create(6)), StatusWrongState);
  EXPECT_THROW(injection.setMeasurementId(1), Status);
  EXPECT_THROW(injection.setGeranInjectionCollection(ValueCollection::create()), Status);
}

}  // namespace
}  // namespace trelvo::schema
