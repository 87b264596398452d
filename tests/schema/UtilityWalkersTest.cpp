#include <gtest/gtest.h>

#include <vector>

#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/gom/ValueCollection.h>
#include <trelvo/gom/Variant.h>
#include <trelvo/schema/Area.h>
#include <trelvo/schema/CellularObjectDn.h>
#include <trelvo/schema/GeranCellDn.h>
#include <trelvo/schema/GeranServingCellInjection.h>
#include <trelvo/schema/Injection.h>
#include <trelvo/schema/Utility.h>
#include <trelvo/schema/WlanApMeasurement.h>
#include <trelvo/schema/WlanDn.h>
#include <trelvo/schema/WlanInjection.h>
#include <trelvo/schema/WlanMeasurement.h>

namespace trelvo::schema {
namespace {

using gom::GenericObject;
using gom::SharedPointer;
using gom::ValueCollection;
using gom::Variant;

// -- technology -----------------------------------------------------------------------------------

TEST(Utility, TechnologyOfACountryOrANetworkIsThatOfItsLayers) {
  EXPECT_EQ(Utility::cellularObjectTechonology({CellularObjectDn::NwGeran, 262}), 64);
  EXPECT_EQ(Utility::cellularObjectTechonology({CellularObjectDn::NwEUtra, 262, 1}), 32);
}

TEST(Utility, TechnologyOfThreeLayersIsThatOfTheThird) {
  const auto technology = [](CellularObjectDn::L3IdType type) {
    return Utility::cellularObjectTechonology({CellularObjectDn::NwUtraFdd, 262, 1, type, 5});
  };
  EXPECT_EQ(technology(CellularObjectDn::L3Lac), 16);
  EXPECT_EQ(technology(CellularObjectDn::L3RncId), 2048);
  EXPECT_EQ(technology(CellularObjectDn::L3ENodeBId), 4096);
  EXPECT_EQ(technology(CellularObjectDn::L3None), 0);
  EXPECT_EQ(technology(static_cast<CellularObjectDn::L3IdType>(4)), 0);
}

TEST(Utility, TechnologyOfANameWithoutLayersIsZero) {
  EXPECT_EQ(Utility::cellularObjectTechonology(CellularObjectDn()), 0);
}

// -- time stamps ----------------------------------------------------------------------------------

constexpr unsigned short kList = 304;
constexpr unsigned short kTimeStamp = 205;

SharedPointer<GenericObject> stamped(unsigned int timeStamp) {
  auto object = GenericObject::create(6);
  EXPECT_EQ(object->setUint32Property(kTimeStamp, timeStamp), StatusOk);
  return object;
}

Variant* holding(const SharedPointer<GenericObject>& object) {
  Variant* value = Variant::create();
  EXPECT_EQ(value->setGenericObjectValue(object), StatusOk);
  return value;
}

SharedPointer<ValueCollection> listOf(const std::vector<Variant*>& values) {
  auto list = ValueCollection::create();
  for (Variant* value : values) EXPECT_EQ(list->add(value), StatusOk);
  return list;
}

SharedPointer<GenericObject> withList(const std::vector<Variant*>& values,
                                      unsigned short key = kList) {
  auto object = GenericObject::create(5);
  EXPECT_EQ(object->setCollectionProperty(key, listOf(values)), StatusOk);
  return object;
}

TEST(Utility, RecentTimeStampOfAnEmptyHandleIsNotFound) {
  unsigned int timeStamp = 7;
  EXPECT_EQ(Utility::getRecentTimeStamp(nullptr, kList, timeStamp), StatusNotFound);
  EXPECT_EQ(timeStamp, 7u);
}

TEST(Utility, RecentTimeStampWithoutAListIsNotFound) {
  const auto object = GenericObject::create(5);
  unsigned int timeStamp = 7;
  EXPECT_EQ(Utility::getRecentTimeStamp(object, kList, timeStamp), StatusNotFound);
  EXPECT_EQ(object->setUint32Property(kList, 99), StatusOk);
  EXPECT_EQ(Utility::getRecentTimeStamp(object, kList, timeStamp), StatusNotFound);
  EXPECT_EQ(Utility::getRecentTimeStamp(withList({}), kList, timeStamp), StatusNotFound);
  EXPECT_EQ(timeStamp, 7u);
}

TEST(Utility, RecentTimeStampIsTheLargestOfTheList) {
  const auto object = withList({holding(stamped(20)), holding(stamped(50)), holding(stamped(30))});
  unsigned int timeStamp = 0;
  EXPECT_EQ(Utility::getRecentTimeStamp(object, kList, timeStamp), StatusOk);
  EXPECT_EQ(timeStamp, 50u);
}

TEST(Utility, RecentTimeStampIsNeverLowered) {
  const auto object = withList({holding(stamped(20))});
  unsigned int timeStamp = 21;
  EXPECT_EQ(Utility::getRecentTimeStamp(object, kList, timeStamp), StatusOk);
  EXPECT_EQ(timeStamp, 21u);
  timeStamp = 0xFFFFFFFF;
  EXPECT_EQ(Utility::getRecentTimeStamp(object, kList, timeStamp), StatusOk);
  EXPECT_EQ(timeStamp, 0xFFFFFFFFu);
}

TEST(Utility, RecentTimeStampIsUnsigned) {
  const auto object = withList({holding(stamped(0x80000000)), holding(stamped(1))});
  unsigned int timeStamp = 5;
  EXPECT_EQ(Utility::getRecentTimeStamp(object, kList, timeStamp), StatusOk);
  EXPECT_EQ(timeStamp, 0x80000000u);
}

TEST(Utility, RecentTimeStampOfZeroIsFound) {
  unsigned int timeStamp = 0;
  EXPECT_EQ(Utility::getRecentTimeStamp(withList({holding(stamped(0))}), kList, timeStamp),
            StatusOk);
  EXPECT_EQ(timeStamp, 0u);
}

TEST(Utility, RecentTimeStampPassesOverWhatHasNone) {
  Variant* number = Variant::create();
  EXPECT_EQ(number->setUint32Value(1000), StatusOk);
  auto wrongType = GenericObject::create(6);
  EXPECT_EQ(wrongType->setUint64Property(kTimeStamp, 2000), StatusOk);
  const std::vector<Variant*> odd = {nullptr, Variant::create(), number,
                                     holding(GenericObject::create(6)), holding(wrongType)};
  auto object = withList(odd);
  unsigned int timeStamp = 7;
  EXPECT_EQ(Utility::getRecentTimeStamp(object, kList, timeStamp), StatusNotFound);
  EXPECT_EQ(timeStamp, 7u);

  SharedPointer<ValueCollection> list;
  ASSERT_EQ(object->getCollectionProperty(kList, list), StatusOk);
  EXPECT_EQ(list->add(holding(stamped(8))), StatusOk);
  EXPECT_EQ(Utility::getRecentTimeStamp(object, kList, timeStamp), StatusOk);
  EXPECT_EQ(timeStamp, 8u);
}

TEST(Utility, InjectionTimeStampLooksIntoEachOfTheEightLists) {
  constexpr unsigned short kLists[] = {304, 305, 306, 311, 313, 308, 316, 309};
  for (unsigned short key : kLists) {
    EXPECT_EQ(Utility::injectionTimeStamp(withList({holding(stamped(77))}, key)), 77u) << key;
  }
}

TEST(Utility, InjectionTimeStampLooksIntoNoOtherList) {
  constexpr unsigned short kOthers[] = {300, 301, 302, 303, 307, 310, 312, 314, 315, 317};
  for (unsigned short key : kOthers) {
    EXPECT_EQ(Utility::injectionTimeStamp(withList({holding(stamped(77))}, key)), 0u) << key;
  }
}

TEST(Utility, InjectionTimeStampIsTheLargestOfAllLists) {
  auto injection = Injection::create();
  const auto cell = GeranServingCellInjection::create(GeranCellDn::create(262, 1, 2, 3), 500);
  const auto access =
      WlanInjection::create(WlanDn::create(0x001122334455), 600, Area::create(1, 2, 3, 4, 0.5f));
  EXPECT_EQ(injection->addGeranInjection(cell->wrappedObject()), StatusOk);
  EXPECT_EQ(injection->setMeasurementId(900), StatusOk);
  EXPECT_EQ(Utility::injectionTimeStamp(injection->wrappedObject()), 500u);
  EXPECT_EQ(injection->addWlanInjection(access->wrappedObject()), StatusOk);
  EXPECT_EQ(Utility::injectionTimeStamp(injection->wrappedObject()), 600u);
}

TEST(Utility, InjectionTimeStampWithoutAnyIsZero) {
  EXPECT_EQ(Utility::injectionTimeStamp(nullptr), 0u);
  EXPECT_EQ(Utility::injectionTimeStamp(Injection::create()->wrappedObject()), 0u);
  EXPECT_EQ(Utility::injectionTimeStamp(withList({holding(GenericObject::create(6))})), 0u);
}

// -- WLAN -----------------------------------------------------------------------------------------

constexpr int kNoLevel = 1000;
constexpr unsigned short kApMeasurement = 129;

// A value that holds a WLAN measurement of this level, and a name to tell it by.
Variant* wlan(int level, unsigned long long bssid = 0) {
  const auto heard = WlanApMeasurement::create();
  if (level != kNoLevel) heard->setRxLevel(static_cast<signed char>(level));
  const auto measurement = WlanMeasurement::create(WlanDn::create(bssid), 1);
  EXPECT_EQ(measurement->setWlanApMeasurement(heard), StatusOk);
  return holding(measurement->wrappedObject());
}

Variant* wlanWithoutApMeasurement() { return holding(WlanMeasurement::create()->wrappedObject()); }

Variant* wlanWithAnotherRecord() {
  const auto object = WlanMeasurement::create()->wrappedObject();
  const SharedPointer<gom::ObjectBase> cell = GeranCellDn::create(1, 2, 3, 4);
  EXPECT_EQ(object->setObjectProperty(kApMeasurement, cell), StatusOk);
  return holding(object);
}

Variant* number() {
  Variant* value = Variant::create();
  EXPECT_EQ(value->setInt8Value(-50), StatusOk);
  return value;
}

std::vector<int> levels(const SharedPointer<ValueCollection>& list) {
  std::vector<int> result;
  for (const Variant* value : list->items) {
    SharedPointer<GenericObject> object;
    EXPECT_EQ(value->getGenericObjectValue(object), StatusOk);
    const auto heard = WlanMeasurement::create(object)->wlanApMeasurement();
    const bool known = heard && heard->valueExists(WlanApMeasurement::HasRxLevel);
    result.push_back(known ? heard->rxLevel() : kNoLevel);
  }
  return result;
}

TEST(Utility, SortWlansComparesWhatWasHeardInThisOrder) {
  // Each group comes before the next; within a group nothing comes before anything.
  const auto list = listOf({
      nullptr, Variant::create(), number(), holding(GenericObject::create(22)),  // no measurement
      wlanWithoutApMeasurement(), wlanWithAnotherRecord(),  // no AP measurement
      wlan(kNoLevel), wlan(kNoLevel),                       // no level
      wlan(-128), wlan(-128),                               //
      wlan(-1), wlan(-1),                                   //
      wlan(0), wlan(0),                                     //
      wlan(127), wlan(127),                                 //
  });
  const int groups[] = {0, 0, 0, 0, 1, 1, 2, 2, 3, 3, 4, 4, 5, 5, 6, 6};
  ASSERT_EQ(list->count(), std::size(groups));
  for (unsigned int a = 0; a < list->count(); ++a) {
    for (unsigned int b = 0; b < list->count(); ++b) {
      EXPECT_EQ(Utility::sortWlans(list->items[a], list->items[b]), groups[a] < groups[b])
          << a << ' ' << b;
    }
  }
}

TEST(Utility, SortWlansIgnoresALevelWhoseBitIsClear) {
  const auto heard = WlanApMeasurement::create();
  heard->setRxLevel(100);
  heard->unset(WlanApMeasurement::HasRxLevel);
  const auto measurement = WlanMeasurement::create();
  ASSERT_EQ(measurement->setWlanApMeasurement(heard), StatusOk);
  const auto list = listOf({holding(measurement->wrappedObject()), wlan(-128)});
  EXPECT_TRUE(Utility::sortWlans(list->items[0], list->items[1]));
  EXPECT_FALSE(Utility::sortWlans(list->items[1], list->items[0]));
}

TEST(Utility, TrimOfAnEmptyHandleIsTrue) {
  EXPECT_TRUE(Utility::trimWlanCollection(0, nullptr));
  EXPECT_TRUE(Utility::trimWlanCollection(5, nullptr));
}

TEST(Utility, TrimToTheSizeOrMoreDoesNotEvenSort) {
  const auto list = listOf({wlan(-40), wlan(-90), wlan(-60)});
  EXPECT_TRUE(Utility::trimWlanCollection(3, list));
  EXPECT_TRUE(Utility::trimWlanCollection(4, list));
  EXPECT_TRUE(Utility::trimWlanCollection(0xFFFFFFFF, list));
  EXPECT_EQ(levels(list), (std::vector<int>{-40, -90, -60}));
}

TEST(Utility, TrimKeepsTheStrongestInAscendingOrder) {
  const auto list = listOf({wlan(-40), wlan(-90), wlan(kNoLevel), wlan(10), wlan(-60)});
  EXPECT_TRUE(Utility::trimWlanCollection(3, list));
  EXPECT_EQ(levels(list), (std::vector<int>{-60, -40, 10}));
}

TEST(Utility, TrimDropsWhatHasNoLevelFirst) {
  const auto list = listOf(
      {wlan(-128), wlan(kNoLevel), nullptr, number(), wlanWithoutApMeasurement(), wlan(-127)});
  EXPECT_TRUE(Utility::trimWlanCollection(3, list));
  EXPECT_EQ(levels(list), (std::vector<int>{kNoLevel, -128, -127}));
}

TEST(Utility, TrimToZeroEmptiesTheList) {
  const auto list = listOf({wlan(-40), nullptr, wlan(-90)});
  EXPECT_TRUE(Utility::trimWlanCollection(0, list));
  EXPECT_EQ(list->count(), 0u);
  EXPECT_TRUE(Utility::trimWlanCollection(0, list));
}

TEST(Utility, TrimOfManyKeepsTheStrongest) {
  const auto list = ValueCollection::create();
  for (int i = 0; i < 1000; ++i) {
    EXPECT_EQ(list->add(wlan((i * 7919) % 256 - 128)), StatusOk);
  }
  EXPECT_TRUE(Utility::trimWlanCollection(8, list));
  EXPECT_EQ(levels(list), (std::vector<int>{125, 126, 126, 126, 126, 127, 127, 127}));
}

TEST(Utility, TrimDeletesWhatItCutsAndKeepsTheObjectsOfOthers) {
  const auto object = WlanMeasurement::create()->wrappedObject();
  const auto list = listOf({holding(object), wlan(-50)});
  EXPECT_EQ(object->referenceCount(), 2);
  EXPECT_TRUE(Utility::trimWlanCollection(1, list));
  EXPECT_EQ(object->referenceCount(), 1);
  EXPECT_EQ(levels(list), (std::vector<int>{-50}));
}

}  // namespace
}  // namespace trelvo::schema
