#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <string>

#include <trelvo/schema/CellularObjectDn.h>
#include <trelvo/schema/MeasurementContainer.h>

#include "tests/support/Bytes.h"

namespace trelvo::schema {
namespace {

using gom::GenericObject;
using gom::SharedPointer;
using gom::ValueCollection;
using test::bytes;
using test::written;

using Container = MeasurementContainer;
using Collection = SharedPointer<ValueCollection>;
using Object = SharedPointer<GenericObject>;

/// One row of the table of lists.
struct Row {
  const char* name;
  unsigned int bit;
  unsigned short key;
  unsigned short memberKey;
  Status (Container::*add)(const Object&);
  Status (Container::*set)(const Collection&);
  Collection (Container::*get)() const;
  Object (*item)(const Container&, unsigned int index);  // the typed getter's object
};

std::ostream& operator<<(std::ostream& out, const Row& row) { return out << row.name; }
std::string nameOf(const testing::TestParamInfo<Row>& row) { return row.param.name; }

template <auto getter>
Object itemOf(const Container& container, unsigned int index) {
  const auto wrapper = (container.*getter)(index);
  return wrapper ? wrapper->wrappedObject() : Object();
}

using C = Container;
const Row kRows[] = {
    {"Geran", 0x01, 300, 2, &C::addGeranMeasurement, &C::setGeranMeasurementCollection,
     &C::geranMeasurementCollection, itemOf<&C::geranMeasurement>},
    {"UtraFdd", 0x02, 301, 3, &C::addUtraFddMeasurement, &C::setUtraFddMeasurementCollection,
     &C::utraFddMeasurementCollection, itemOf<&C::utraFddMeasurement>},
    {"UtraTdd", 0x40, 302, 4, &C::addUtraTddMeasurement, &C::setUtraTddMeasurementCollection,
     &C::utraTddMeasurementCollection, itemOf<&C::utraTddMeasurement>},
    {"EUtra", 0x04, 310, 14, &C::addEUtraMeasurement, &C::setEUtraMeasurementCollection,
     &C::eutraMeasurementCollection, itemOf<&C::eutraMeasurement>},
    {"Cdma", 0x08, 312, 17, &C::addCdmaMeasurement, &C::setCdmaMeasurementCollection,
     &C::cdmaMeasurementCollection, itemOf<&C::cdmaMeasurement>},
    {"Wlan", 0x10, 314, 20, &C::addWlanMeasurement, &C::setWlanMeasurementCollection,
     &C::wlanMeasurementCollection, itemOf<&C::wlanMeasurement>},
    {"Gnss", 0x20, 315, 21, &C::addGnssMeasurement, &C::setGnssMeasurementCollection,
     &C::gnssMeasurementCollection, itemOf<&C::gnssMeasurement>},
};

class MeasurementContainerList : public testing::TestWithParam<Row> {
 public:
  Object member() const { return GenericObject::create(GetParam().memberKey); }
  Status add(const Object& object) { return (*container.*GetParam().add)(object); }
  Object item(unsigned int index) const { return GetParam().item(*container, index); }

  SharedPointer<Container> container = Container::create();
};
INSTANTIATE_TEST_SUITE_P(Rows, MeasurementContainerList, testing::ValuesIn(kRows), nameOf);

TEST_P(MeasurementContainerList, TheFirstMemberMakesTheListAtItsKey) {
  EXPECT_FALSE(container->valueExists(GetParam().bit));
  EXPECT_EQ(add(member()), StatusOk);
  EXPECT_TRUE(container->valueExists(GetParam().bit));
  EXPECT_EQ(container->object().propertyCount(), 1U);
  Collection stored;
  EXPECT_EQ(container->object().getCollectionProperty(GetParam().key, stored), StatusOk);
  EXPECT_EQ((*container.*GetParam().get)(), stored);
  EXPECT_EQ(container->measurementCollection(GetParam().key), stored);
}

TEST_P(MeasurementContainerList, MembersStandInTheOrderOfAddingAndAreShared) {
  const Object first = member();
  const Object second = member();
  add(first);
  add(second);
  add(first);
  EXPECT_EQ(item(0), first);
  EXPECT_EQ(item(1), second);
  EXPECT_EQ(item(2), first);
  EXPECT_FALSE(item(3));
  EXPECT_FALSE(item(0xFFFFFFFF));
}

TEST_P(MeasurementContainerList, RefusesMembersOfEveryOtherKeyAndMakesNoList) {
  for (unsigned short key = 0; key <= 23; ++key) {
    if (key != GetParam().memberKey) {
      EXPECT_EQ(add(GenericObject::create(key)), StatusWrongState) << key;
    }
  }
  EXPECT_EQ(add(Object()), StatusWrongState);
  EXPECT_TRUE(container->isEmpty());
}

TEST_P(MeasurementContainerList, AddingAndSettingRefuseAPropertyOfAnotherType) {
  container->object().setInt32Property(GetParam().key, 1);
  EXPECT_EQ(add(member()), StatusWrongState);
  EXPECT_EQ((*container.*GetParam().set)(ValueCollection::create()), StatusWrongState);
  EXPECT_FALSE((*container.*GetParam().get)());
  EXPECT_FALSE(item(0));
  EXPECT_TRUE(container->valueExists(GetParam().bit));
}

TEST_P(MeasurementContainerList, SettingReplacesTheWholeListWithoutALookInside) {
  add(member());
  const Collection foreign = ValueCollection::create();
  gom::Variant* const number = gom::Variant::create();
  number->setUint32Value(5);
  foreign->add(number);
  gom::Variant* const other = gom::Variant::create();
  other->setGenericObjectValue(GenericObject::create(99));
  foreign->add(other);
  EXPECT_EQ((*container.*GetParam().set)(foreign), StatusOk);
  EXPECT_EQ((*container.*GetParam().get)(), foreign);
  EXPECT_FALSE(item(0));
  EXPECT_FALSE(item(1));
  EXPECT_EQ((*container.*GetParam().set)(Collection()), StatusWrongState);
  EXPECT_EQ((*container.*GetParam().get)(), foreign);
}

TEST_P(MeasurementContainerList, UnsetRemovesAllMembersAtOnce) {
  add(member());
  add(member());
  container->unset(GetParam().bit);
  EXPECT_TRUE(container->isEmpty());
  EXPECT_FALSE(item(0));
  container->unset(GetParam().bit);
  EXPECT_EQ(add(member()), StatusOk);
}

TEST_P(MeasurementContainerList, TheBitStandsForThisPropertyAlone) {
  for (const Row& row : kRows) {
    if (row.bit != GetParam().bit) {
      (*container.*row.add)(GenericObject::create(row.memberKey));
    }
  }
  container->setMeasurementId(1);
  EXPECT_FALSE(container->valueExists(GetParam().bit));
  EXPECT_TRUE(container->valueExists(0xFF & ~GetParam().bit));
  EXPECT_FALSE(container->valueExists(0xFF));
  add(member());
  EXPECT_TRUE(container->valueExists(0xFF));
  container->unset(0xFF & ~GetParam().bit);
  EXPECT_TRUE(container->valueExists(GetParam().bit));
  EXPECT_EQ(container->object().propertyCount(), 1U);
}

SharedPointer<GeranCellMeasurement> aGeranMeasurement() {
  return GeranCellMeasurement::create(GeranCellDn::create(0x0102, 0x0304, 0x0506, 0x0708),
                                      0x11121314);
}

TEST(MeasurementContainer, IsOfKey1AndStartsEmpty) {
  const SharedPointer<Container> container = Container::create();
  ASSERT_TRUE(container);
  EXPECT_EQ(container->key(), 1);
  EXPECT_TRUE(container->isEmpty());
  EXPECT_EQ(container->measurementId(), 0U);
  EXPECT_TRUE(container->valueExists(0));
  EXPECT_FALSE(container->valueExists(0x80));
  EXPECT_FALSE(container->geranMeasurement(0));
  EXPECT_EQ(written(*container), bytes("0100 00000000"));
}

TEST(MeasurementContainer, MeasurementIdIsUnsigned32AtKey317) {
  const SharedPointer<Container> container = Container::create();
  EXPECT_EQ(container->setMeasurementId(0xFFFFFFFF), StatusOk);
  EXPECT_EQ(container->measurementId(), 0xFFFFFFFFU);
  unsigned int stored = 0;
  EXPECT_EQ(container->object().getUint32Property(317, stored), StatusOk);
  EXPECT_EQ(stored, 0xFFFFFFFFU);
  EXPECT_TRUE(container->valueExists(0x80));
  container->unset(0x80);
  EXPECT_EQ(container->measurementId(), 0U);
  EXPECT_TRUE(container->isEmpty());
}

TEST(MeasurementContainer, AMeasurementIdOfAnotherTypeReadsAs0) {
  const SharedPointer<Container> container = Container::create();
  container->object().setInt32Property(317, 5);
  EXPECT_EQ(container->measurementId(), 0U);
  EXPECT_EQ(container->setMeasurementId(5), StatusWrongState);
}

TEST(MeasurementContainer, ValueExistsIsFalseForForeignBits) {
  const SharedPointer<Container> container = Container::create();
  container->setMeasurementId(1);
  EXPECT_TRUE(container->valueExists(0x80));
  EXPECT_FALSE(container->valueExists(0x100));
  EXPECT_FALSE(container->valueExists(0x180));
}

TEST(MeasurementContainer, UnsetIgnoresForeignBits) {
  const SharedPointer<Container> container = Container::create();
  container->setMeasurementId(1);
  container->unset(0xFFFFFF00);
  EXPECT_EQ(container->measurementId(), 1U);
}

TEST(MeasurementContainer, ItemsAreNewWrappersOfTheStoredMember) {
  const SharedPointer<Container> container = Container::create();
  container->addGeranMeasurement(aGeranMeasurement()->wrappedObject());
  const SharedPointer<GeranCellMeasurement> one = container->geranMeasurement(0);
  const SharedPointer<GeranCellMeasurement> other = container->geranMeasurement(0);
  ASSERT_TRUE(one);
  EXPECT_NE(one, other);
  one->setTimeStamp(99);
  EXPECT_EQ(other->timeStamp(), 99U);
  EXPECT_EQ(container->geranMeasurement(0)->timeStamp(), 99U);
}

TEST(MeasurementContainer, AddMeasurementChecksTheGivenKey) {
  const SharedPointer<Container> container = Container::create();
  EXPECT_EQ(container->addMeasurement(GenericObject::create(40), 41, 500), StatusWrongState);
  EXPECT_EQ(container->addMeasurement(Object(), 40, 500), StatusWrongState);
  EXPECT_TRUE(container->isEmpty());
  EXPECT_EQ(container->addMeasurement(GenericObject::create(40), 40, 500), StatusOk);
  EXPECT_EQ(container->measurementCollection(500)->count(), 1U);
  EXPECT_FALSE(container->measurementCollection(501));
  const Collection list = ValueCollection::create();
  EXPECT_EQ(container->setMeasurementCollection(list, 500), StatusOk);
  EXPECT_EQ(container->measurementCollection(500), list);
}

TEST(MeasurementContainer, CollectionItemGivesTheGenericObjectOfAnElement) {
  const Collection list = ValueCollection::create();
  EXPECT_FALSE(Container::collectionItem(Collection(), 0));
  EXPECT_FALSE(Container::collectionItem(list, 0));
  const Object object = GenericObject::create(1);
  gom::Variant* const first = gom::Variant::create();
  first->setGenericObjectValue(object);
  list->add(first);
  list->add(nullptr);
  gom::Variant* const third = gom::Variant::create();
  third->setUint32Value(1);
  list->add(third);
  EXPECT_EQ(Container::collectionItem(list, 0), object);
  EXPECT_FALSE(Container::collectionItem(list, 1));
  EXPECT_FALSE(Container::collectionItem(list, 2));
  EXPECT_FALSE(Container::collectionItem(list, 3));
  EXPECT_FALSE(Container::collectionItem(list, 0xFFFFFFFF));
}

TEST(MeasurementContainer, ASmallContainerWritesTheseBytes) {
  const SharedPointer<Container> container = Container::create();
  ASSERT_EQ(container->addGeranMeasurement(aGeranMeasurement()->wrappedObject()), StatusOk);
  const test::Bytes wire = bytes(
      "0100"                // the container's object key
      "01000000"            // property count
      "0F00 2C01"           // a list, at 300
      "01000000"            // element count
      "0D00 0000"           // a generic object, under the key 0
      "0200"                // the cell measurement's object key
      "02000000"            // property count
      "0600 CD00 14131211"  // unsigned 32, at 205: the time stamp
      "0E00 C800"           // a record, at 200
      "6400"                // its class id
      "01 0F"               // version, mask
      "0201 0403 0605 0807");
  EXPECT_EQ(written(*container), wire);
}

TEST(MeasurementContainer, ReadsBackThroughAGenericObject) {
  const SharedPointer<Container> source = Container::create();
  source->addGeranMeasurement(aGeranMeasurement()->wrappedObject());
  source->addWlanMeasurement(
      WlanMeasurement::create(WlanDn::create(0x0011223344556677), 8)->wrappedObject());
  source->setMeasurementId(77);
  BufferStream stream;
  ASSERT_TRUE(source->write(stream));
  const SharedPointer<Container> back = Container::create(GenericObject::create(stream));
  ASSERT_TRUE(back);
  EXPECT_TRUE(stream.eof());
  EXPECT_EQ(back->object(), source->object());
  EXPECT_EQ(back->geranMeasurement(0)->dn()->cid(), 0x0708);
  EXPECT_EQ(back->wlanMeasurement(0)->dn()->bssid(), 0x0011223344556677U);
  EXPECT_EQ(back->measurementId(), 77U);
}

TEST(MeasurementContainer, CloneIsADeepCopy) {
  const SharedPointer<Container> source = Container::create();
  source->addGeranMeasurement(aGeranMeasurement()->wrappedObject());
  const SharedPointer<Container> copy = Container::create(source->clone());
  ASSERT_TRUE(copy);
  copy->geranMeasurement(0)->setTimeStamp(1);
  EXPECT_EQ(source->geranMeasurement(0)->timeStamp(), 0x11121314U);
}

TEST(MeasurementContainer, AMemberWithARecordWithoutWireFormMakesWriteThrow) {
  const SharedPointer<Container> container = Container::create();
  const Object member = GenericObject::create(2);
  member->setObjectProperty(200, CellularObjectDn::create());
  container->addGeranMeasurement(member);
  BufferStream stream;
  EXPECT_THROW(static_cast<void>(container->write(stream)), Status);
}

TEST(MeasurementContainer, WithoutAnObjectGettersGiveNothing) {
  Container container;
  EXPECT_TRUE(container.isEmpty());
  EXPECT_TRUE(container.valueExists(0));
  EXPECT_FALSE(container.valueExists(1));
  EXPECT_FALSE(container.geranMeasurementCollection());
  EXPECT_FALSE(container.geranMeasurement(0));
  EXPECT_EQ(container.measurementId(), 0U);
  container.unset(0xFF);
  container.dump();
  EXPECT_EQ(container.addGeranMeasurement(GenericObject::create(2)), StatusWrongState);
  EXPECT_THROW(container.setMeasurementId(1), Status);
  EXPECT_THROW(container.setGeranMeasurementCollection(ValueCollection::create()), Status);
}

}  // namespace
}  // namespace trelvo::schema
