#include <gtest/gtest.h>

#include <trelvo/BufferStream.h>
#include <trelvo/schema/CdmaNeighborCellInjection.h>
#include <trelvo/schema/CdmaServingCellInjection.h>
#include <trelvo/schema/CellularObjectInjection.h>
#include <trelvo/schema/EUtraNeighborCellInjection.h>
#include <trelvo/schema/EUtraServingCellInjection.h>
#include <trelvo/schema/GeranNeighborCellInjection.h>
#include <trelvo/schema/GeranServingCellInjection.h>
#include <trelvo/schema/Injection.h>
#include <trelvo/schema/UtraFddNeighborCellInjection.h>
#include <trelvo/schema/UtraFddServingCellInjection.h>
#include <trelvo/schema/UtraTddNeighborCellInjection.h>
#include <trelvo/schema/UtraTddServingCellInjection.h>

#include "tests/schema/CellularRecord.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/Bytes.h"

namespace trelvo::schema {
namespace {

using gom::GenericObject;
using gom::SharedPointer;
using test::bytes;
using test::written;

// What a technology's two classes are made of.
template <class Serving, class Neighbor, class DnClass, class ServingMeasurement, class Info,
          class NwMeasurement, unsigned short servingKey, unsigned short neighborKey>
struct Technology {
  using ServingInjection = Serving;
  using NeighborInjection = Neighbor;
  using Dn = DnClass;
  using Measurement = ServingMeasurement;
  using FrequencyInfo = Info;
  using NeighborMeasurement = NwMeasurement;
  static constexpr unsigned short kServingKey = servingKey;
  static constexpr unsigned short kNeighborKey = neighborKey;
};

using Technologies = testing::Types<
    Technology<GeranServingCellInjection, GeranNeighborCellInjection, GeranCellDn,
               GeranServingCellMeasurement, GeranFrequencyInfo, GeranNwMeasurement, 6, 9>,
    Technology<UtraFddServingCellInjection, UtraFddNeighborCellInjection, UtraCellDn,
               UtraFddServingCellMeasurement, UtraFddFrequencyInfo, UtraFddNwMeasurement, 7, 10>,
    Technology<UtraTddServingCellInjection, UtraTddNeighborCellInjection, UtraCellDn,
               UtraTddServingCellMeasurement, UtraTddFrequencyInfo, UtraTddNwMeasurement, 8, 11>,
    Technology<EUtraServingCellInjection, EUtraNeighborCellInjection, EUtraCellDn,
               EUtraServingCellMeasurement, EUtraFrequencyInfo, EUtraNwMeasurement, 15, 16>,
    Technology<CdmaServingCellInjection, CdmaNeighborCellInjection, CdmaCellDn,
               CdmaServingCellMeasurement, CdmaFrequencyInfo, CdmaNwMeasurement, 18, 19>>;

template <class T>
class EveryServingCellInjection : public testing::Test {
 protected:
  SharedPointer<typename T::ServingInjection> injection = T::ServingInjection::create();
};
TYPED_TEST_SUITE(EveryServingCellInjection, Technologies, ByTechnology<>);

TYPED_TEST(EveryServingCellInjection, IsEmptyWhenFresh) {
  EXPECT_EQ(this->injection->wrappedObject()->key(), TypeParam::kServingKey);
  EXPECT_EQ(this->injection->wrappedObject()->propertyCount(), 0U);
  EXPECT_TRUE(this->injection->valueExists(0));
  EXPECT_FALSE(this->injection->valueExists(0x01));
  EXPECT_FALSE(this->injection->valueExists(0x80));
  EXPECT_EQ(this->injection->timeStamp(), 0U);
  EXPECT_EQ(this->injection->source(), SourceUnset);
  EXPECT_FALSE(this->injection->dn());
  EXPECT_FALSE(this->injection->servingCellMeasurement());
  EXPECT_FALSE(this->injection->coverage());
  EXPECT_FALSE(this->injection->neighborCellInjectionCollection());
  EXPECT_EQ(this->injection->referenceCount(), 1);
}

TYPED_TEST(EveryServingCellInjection, KeepsEachPropertyUnderItsKeyAndBit) {
  const auto dn = TypeParam::Dn::create();
  const auto measurement = TypeParam::Measurement::create();
  const auto area = Area::create();
  const auto list = gom::ValueCollection::create();
  EXPECT_EQ(this->injection->setDn(dn), StatusOk);
  EXPECT_EQ(this->injection->setTimeStamp(77), StatusOk);
  EXPECT_EQ(this->injection->setServingCellMeasurement(measurement), StatusOk);
  EXPECT_EQ(this->injection->setSource(static_cast<Source>(3)), StatusOk);
  EXPECT_EQ(this->injection->setCoverage(area), StatusOk);
  EXPECT_EQ(this->injection->setNeighborCellInjectionCollection(list), StatusOk);

  EXPECT_EQ(this->injection->dn(), dn);
  EXPECT_EQ(this->injection->timeStamp(), 77U);
  EXPECT_EQ(this->injection->servingCellMeasurement(), measurement);
  EXPECT_EQ(this->injection->source(), static_cast<Source>(3));
  EXPECT_EQ(this->injection->coverage(), area);
  EXPECT_EQ(this->injection->neighborCellInjectionCollection(), list);

  const SharedPointer<GenericObject> object = this->injection->wrappedObject();
  const std::pair<unsigned int, unsigned short> rows[] = {{0x01, 200}, {0x02, 205}, {0x04, 202},
                                                          {0x08, 208}, {0x10, 204}, {0x20, 307}};
  EXPECT_TRUE(this->injection->valueExists(0x3F));
  for (const auto& [bit, key] : rows) {
    EXPECT_TRUE(object->propertyExists(key)) << key;
    this->injection->unset(bit);
    EXPECT_FALSE(object->propertyExists(key)) << key;
    EXPECT_FALSE(this->injection->valueExists(bit)) << key;
  }
  EXPECT_EQ(object->propertyCount(), 0U);
}

TYPED_TEST(EveryServingCellInjection, ServesTheBitOfTheUnreliableTimeStamp) {
  EXPECT_FALSE(this->injection->valueExists(0x40));
  ASSERT_EQ(this->injection->wrappedObject()->setUint32Property(207, 9), StatusOk);
  EXPECT_TRUE(this->injection->valueExists(0x40));
  this->injection->unset(0x40);
  EXPECT_FALSE(this->injection->valueExists(0x40));
}

TYPED_TEST(EveryServingCellInjection, IgnoresUnknownBitsWhenUnsetting) {
  ASSERT_EQ(this->injection->setTimeStamp(1), StatusOk);
  this->injection->unset(0xFFFFFF80);
  EXPECT_EQ(this->injection->timeStamp(), 1U);
}

TYPED_TEST(EveryServingCellInjection, IsMadeFromACellAndATime) {
  const auto made = TypeParam::ServingInjection::create(TypeParam::Dn::create(), 7);
  ASSERT_TRUE(made);
  EXPECT_TRUE(made->valueExists(3));
  EXPECT_FALSE(made->valueExists(4));
  EXPECT_EQ(made->timeStamp(), 7U);
  EXPECT_EQ(made->wrappedObject()->key(), TypeParam::kServingKey);
}

TYPED_TEST(EveryServingCellInjection, IsNotMadeFromAnEmptyCell) {
  EXPECT_FALSE(TypeParam::ServingInjection::create(SharedPointer<typename TypeParam::Dn>(), 7));
}

TYPED_TEST(EveryServingCellInjection, RefusesEmptyHandles) {
  EXPECT_EQ(this->injection->setDn({}), StatusWrongState);
  EXPECT_EQ(this->injection->setServingCellMeasurement({}), StatusWrongState);
  EXPECT_EQ(this->injection->setCoverage({}), StatusWrongState);
  EXPECT_EQ(this->injection->setNeighborCellInjectionCollection({}), StatusWrongState);
  EXPECT_EQ(this->injection->addNeighborCellInjection({}), StatusWrongState);
  EXPECT_EQ(this->injection->wrappedObject()->propertyCount(), 0U);
}

TYPED_TEST(EveryServingCellInjection, WrapsOnlyObjectsOfItsKey) {
  using Serving = typename TypeParam::ServingInjection;
  EXPECT_FALSE(Serving::create(SharedPointer<GenericObject>()));
  EXPECT_FALSE(Serving::create(GenericObject::create(TypeParam::kNeighborKey)));
  const auto view = Serving::create(this->injection->wrappedObject());
  ASSERT_TRUE(view);
  EXPECT_EQ(view->setTimeStamp(5), StatusOk);
  EXPECT_EQ(this->injection->timeStamp(), 5U);
}

TYPED_TEST(EveryServingCellInjection, GivesNoCellWhenAnotherRecordStandsThere) {
  ASSERT_EQ(this->injection->wrappedObject()->setObjectProperty(200, Area::create()), StatusOk);
  EXPECT_FALSE(this->injection->dn());
  EXPECT_TRUE(this->injection->valueExists(0x01));
}

TYPED_TEST(EveryServingCellInjection, TakesNeighborsOfItsOwnTechnologyOnly) {
  for (const unsigned short key : std::initializer_list<unsigned short>{9, 10, 11, 16, 19}) {
    const bool own = key == TypeParam::kNeighborKey;
    const auto fresh = TypeParam::ServingInjection::create();
    EXPECT_EQ(fresh->addNeighborCellInjection(GenericObject::create(key)),
              own ? StatusOk : StatusWrongState);
    EXPECT_EQ(fresh->valueExists(0x20), own) << key;
  }
}

TYPED_TEST(EveryServingCellInjection, AppendsNeighborsInOrder) {
  const auto first = TypeParam::NeighborInjection::create();
  const auto second = TypeParam::NeighborInjection::create();
  ASSERT_EQ(this->injection->addNeighborCellInjection(first->wrappedObject()), StatusOk);
  ASSERT_EQ(this->injection->addNeighborCellInjection(second->wrappedObject()), StatusOk);
  const auto list = this->injection->neighborCellInjectionCollection();
  ASSERT_EQ(list->count(), 2U);
  SharedPointer<GenericObject> object;
  EXPECT_EQ(list->items[1]->getGenericObjectValue(object), StatusOk);
  EXPECT_EQ(object, second->wrappedObject());
  EXPECT_EQ(list->items[1]->key(), 0);
}

TYPED_TEST(EveryServingCellInjection, ShowsTheOthersObjectAfterAssignment) {
  const auto other = TypeParam::ServingInjection::create();
  *this->injection = *other;
  EXPECT_EQ(this->injection->wrappedObject(), other->wrappedObject());
  ASSERT_EQ(other->setTimeStamp(11), StatusOk);
  EXPECT_EQ(this->injection->timeStamp(), 11U);
  const auto& same = *this->injection;
  *this->injection = same;
  EXPECT_EQ(this->injection->timeStamp(), 11U);
}

TYPED_TEST(EveryServingCellInjection, SharesTheObjectWithItsCopy) {
  const typename TypeParam::ServingInjection copy(*this->injection);
  EXPECT_EQ(copy.referenceCount(), 0);
  EXPECT_EQ(copy.wrappedObject(), this->injection->wrappedObject());
  ASSERT_EQ(this->injection->setTimeStamp(12), StatusOk);
  EXPECT_EQ(copy.timeStamp(), 12U);
}

TYPED_TEST(EveryServingCellInjection, ChangesNothingWhenDumped) {
  ASSERT_EQ(this->injection->setTimeStamp(12), StatusOk);
  const test::Bytes before = written(*this->injection->wrappedObject());
  this->injection->dump();
  EXPECT_EQ(written(*this->injection->wrappedObject()), before);
}

TYPED_TEST(EveryServingCellInjection, IsSafeToUseAfterAnAssignmentRanOutOfMemory) {
  test::everyAllocationFails([] {
    SharedPointer<typename TypeParam::ServingInjection> other;
    SharedPointer<typename TypeParam::ServingInjection> target;
    {
      const test::AllocationsSucceed preparing;
      other = TypeParam::ServingInjection::create(TypeParam::Dn::create(), 3);
      target = TypeParam::ServingInjection::create();
    }
    *target = *other;
    const test::AllocationsSucceed checking;
    EXPECT_EQ(other->timeStamp(), 3U);
    if (target->wrappedObject()) {
      EXPECT_EQ(target->wrappedObject(), other->wrappedObject());
      return;
    }
    EXPECT_EQ(target->timeStamp(), 0U);
    EXPECT_FALSE(target->dn());
    EXPECT_FALSE(target->neighborCellInjectionCollection());
    EXPECT_EQ(target->setTimeStamp(1), StatusFailed);
    EXPECT_EQ(target->setDn(TypeParam::Dn::create()), StatusFailed);
    EXPECT_EQ(target->setNeighborCellInjectionCollection(gom::ValueCollection::create()),
              StatusFailed);
    EXPECT_EQ(target->addNeighborCellInjection(GenericObject::create(TypeParam::kNeighborKey)),
              StatusFailed);
    EXPECT_FALSE(target->valueExists(0x02));
    target->unset(0x7F);
    target->dump();
  });
}

TEST(UtraServingCellInjection, HasAnUnreliableStateTimeStamp) {
  const auto fdd = UtraFddServingCellInjection::create();
  const auto tdd = UtraTddServingCellInjection::create();
  EXPECT_EQ(fdd->unreliableStateTimeStamp(), 0U);
  EXPECT_EQ(fdd->setUnreliableStateTimeStamp(21), StatusOk);
  EXPECT_EQ(tdd->setUnreliableStateTimeStamp(22), StatusOk);
  EXPECT_EQ(fdd->unreliableStateTimeStamp(), 21U);
  EXPECT_EQ(tdd->unreliableStateTimeStamp(), 22U);
  EXPECT_TRUE(fdd->wrappedObject()->propertyExists(207));
  EXPECT_TRUE(tdd->valueExists(0x40));
}

TEST(GeranServingCellInjection, IsWrittenAsItsObject) {
  const auto injection =
      GeranServingCellInjection::create(GeranCellDn::create(262, 7, 0x1234, 0xA1B2), 0x6553F164);
  EXPECT_EQ(written(*injection->wrappedObject()),
            bytes("06 00 02 00 00 00"
                  "0e 00 c8 00 64 00 01 0f 06 01 07 00 34 12 b2 a1"
                  "06 00 cd 00 64 f1 53 65"));
}

template <class T>
class EveryNeighborCellInjection : public testing::Test {
 protected:
  SharedPointer<typename T::NeighborInjection> injection = T::NeighborInjection::create();
};
TYPED_TEST_SUITE(EveryNeighborCellInjection, Technologies, ByTechnology<>);

TYPED_TEST(EveryNeighborCellInjection, IsEmptyWhenFresh) {
  EXPECT_EQ(this->injection->wrappedObject()->key(), TypeParam::kNeighborKey);
  EXPECT_TRUE(this->injection->valueExists(0));
  EXPECT_FALSE(this->injection->valueExists(0x8));
  EXPECT_FALSE(this->injection->frequencyInfo());
  EXPECT_FALSE(this->injection->neighborCellMeasurement());
  EXPECT_FALSE(this->injection->coverage());
}

TYPED_TEST(EveryNeighborCellInjection, KeepsEachPropertyUnderItsKeyAndBit) {
  const auto info = TypeParam::FrequencyInfo::create();
  const auto measurement = TypeParam::NeighborMeasurement::create();
  const auto area = Area::create();
  EXPECT_EQ(this->injection->setFrequencyInfo(info), StatusOk);
  EXPECT_EQ(this->injection->setNeighborCellMeasurement(measurement), StatusOk);
  EXPECT_EQ(this->injection->setCoverage(area), StatusOk);
  EXPECT_EQ(this->injection->frequencyInfo(), info);
  EXPECT_EQ(this->injection->neighborCellMeasurement(), measurement);
  EXPECT_EQ(this->injection->coverage(), area);

  const SharedPointer<GenericObject> object = this->injection->wrappedObject();
  const std::pair<unsigned int, unsigned short> rows[] = {{0x1, 201}, {0x2, 203}, {0x4, 204}};
  EXPECT_TRUE(this->injection->valueExists(0x7));
  for (const auto& [bit, key] : rows) {
    EXPECT_TRUE(object->propertyExists(key)) << key;
    this->injection->unset(bit);
    EXPECT_FALSE(object->propertyExists(key)) << key;
    EXPECT_FALSE(this->injection->valueExists(bit)) << key;
  }
}

TYPED_TEST(EveryNeighborCellInjection, RefusesEmptyHandles) {
  EXPECT_EQ(this->injection->setFrequencyInfo({}), StatusWrongState);
  EXPECT_EQ(this->injection->setNeighborCellMeasurement({}), StatusWrongState);
  EXPECT_EQ(this->injection->setCoverage({}), StatusWrongState);
  EXPECT_FALSE(
      TypeParam::NeighborInjection::create(SharedPointer<typename TypeParam::FrequencyInfo>()));
}

TYPED_TEST(EveryNeighborCellInjection, IsMadeFromAFrequencyInfoOrAnObjectOfItsKey) {
  using Neighbor = typename TypeParam::NeighborInjection;
  const auto info = TypeParam::FrequencyInfo::create();
  const auto made = Neighbor::create(info);
  ASSERT_TRUE(made);
  EXPECT_EQ(made->frequencyInfo(), info);
  EXPECT_FALSE(Neighbor::create(SharedPointer<GenericObject>()));
  EXPECT_FALSE(Neighbor::create(GenericObject::create(TypeParam::kServingKey)));
  const auto view = Neighbor::create(made->wrappedObject());
  ASSERT_TRUE(view);
  EXPECT_EQ(view->frequencyInfo(), info);
}

TYPED_TEST(EveryNeighborCellInjection, ShowsTheOthersObjectAfterAssignment) {
  const auto other = TypeParam::NeighborInjection::create();
  *this->injection = *other;
  EXPECT_EQ(this->injection->wrappedObject(), other->wrappedObject());
}

TYPED_TEST(EveryNeighborCellInjection, KeepsItsObjectWhenAssignedToItself) {
  const SharedPointer<GenericObject> object = this->injection->wrappedObject();
  const typename TypeParam::NeighborInjection& itself = *this->injection;
  *this->injection = itself;
  EXPECT_EQ(this->injection->wrappedObject(), object);
}

TYPED_TEST(EveryNeighborCellInjection, SharesTheObjectWithItsCopy) {
  const typename TypeParam::NeighborInjection copy(*this->injection);
  EXPECT_EQ(copy.wrappedObject(), this->injection->wrappedObject());
  ASSERT_EQ(this->injection->setCoverage(Area::create()), StatusOk);
  EXPECT_TRUE(copy.coverage());
}

TYPED_TEST(EveryNeighborCellInjection, ChangesNothingWhenDumped) {
  ASSERT_EQ(this->injection->setCoverage(Area::create()), StatusOk);
  const test::Bytes before = written(*this->injection->wrappedObject());
  this->injection->dump();
  EXPECT_EQ(written(*this->injection->wrappedObject()), before);
}

TYPED_TEST(EveryNeighborCellInjection, IsSafeToUseAfterAnAssignmentRanOutOfMemory) {
  test::everyAllocationFails([] {
    SharedPointer<typename TypeParam::NeighborInjection> other;
    SharedPointer<typename TypeParam::NeighborInjection> target;
    {
      const test::AllocationsSucceed preparing;
      other = TypeParam::NeighborInjection::create(TypeParam::FrequencyInfo::create());
      target = TypeParam::NeighborInjection::create();
    }
    *target = *other;
    const test::AllocationsSucceed checking;
    EXPECT_TRUE(other->frequencyInfo());
    if (target->wrappedObject()) {
      EXPECT_EQ(target->wrappedObject(), other->wrappedObject());
      return;
    }
    EXPECT_FALSE(target->frequencyInfo());
    EXPECT_EQ(target->setFrequencyInfo(TypeParam::FrequencyInfo::create()), StatusFailed);
    EXPECT_FALSE(target->valueExists(0x1));
    target->unset(0x7);
    target->dump();
  });
}

TEST(CellularObjectInjection, IsMadeWithAllThreePropertiesOrNotAtAll) {
  const auto dn = CellularObjectDn::create(CellularObjectDn::NwGeran, 262);
  const auto area = Area::create(1, 2, 3, 4, 0.5F);
  const auto made = CellularObjectInjection::create(dn, 3, area);
  ASSERT_TRUE(made);
  EXPECT_EQ(made->key(), 12);
  EXPECT_EQ(made->dn(), dn);
  EXPECT_EQ(made->timeStamp(), 3U);
  EXPECT_EQ(made->coverage(), area);
  EXPECT_TRUE(made->valueExists(0x7));
  EXPECT_FALSE(CellularObjectInjection::create(dn, 3, SharedPointer<Area>()));
  EXPECT_FALSE(CellularObjectInjection::create(SharedPointer<CellularObjectDn>(), 3, area));
}

TEST(CellularObjectInjection, AnswersForItsBits) {
  const auto injection = CellularObjectInjection::create();
  EXPECT_TRUE(injection->valueExists(0));
  EXPECT_FALSE(injection->valueExists(0x8));
  ASSERT_EQ(injection->setTimeStamp(9), StatusOk);
  ASSERT_EQ(injection->setCoverage(Area::create()), StatusOk);
  EXPECT_TRUE(injection->valueExists(0x6));
  EXPECT_FALSE(injection->valueExists(0x7));
  injection->unset(0x2);
  EXPECT_FALSE(injection->valueExists(0x2));
  EXPECT_EQ(injection->timeStamp(), 0U);
}

TEST(CellularObjectInjection, HasAWireFormOnlyWithoutAName) {
  const auto injection = CellularObjectInjection::create();
  ASSERT_EQ(injection->setTimeStamp(0x01020304), StatusOk);
  EXPECT_EQ(written(*injection), bytes("0c 00 01 00 00 00 06 00 cd 00 04 03 02 01"));
  ASSERT_EQ(injection->setDn(CellularObjectDn::create()), StatusOk);
  BufferStream stream;
  EXPECT_THROW(static_cast<void>(injection->write(stream)), Status);
}

TEST(CellularObjectInjection, WrapsOnlyObjectsOfItsKeyAndSharesThem) {
  EXPECT_FALSE(CellularObjectInjection::create(SharedPointer<GenericObject>()));
  EXPECT_FALSE(CellularObjectInjection::create(GenericObject::create(13)));
  const auto injection = CellularObjectInjection::create();
  const auto view = CellularObjectInjection::create(injection->wrappedObject());
  ASSERT_TRUE(view);
  ASSERT_EQ(view->setTimeStamp(4), StatusOk);
  EXPECT_EQ(injection->timeStamp(), 4U);
  CellularObjectInjection assigned;
  assigned = *injection;
  EXPECT_EQ(assigned.wrappedObject(), injection->wrappedObject());
}

TEST(Injection, CollectsStatementsOfEveryTechnology) {
  const auto injection = Injection::create();
  EXPECT_EQ(injection->addGeranInjection(GeranServingCellInjection::create()->wrappedObject()),
            StatusOk);
  EXPECT_EQ(injection->addUtraFddInjection(UtraFddServingCellInjection::create()->wrappedObject()),
            StatusOk);
  EXPECT_EQ(injection->addUtraTddInjection(UtraTddServingCellInjection::create()->wrappedObject()),
            StatusOk);
  EXPECT_EQ(injection->addEUtraInjection(EUtraServingCellInjection::create()->wrappedObject()),
            StatusOk);
  EXPECT_EQ(injection->addCdmaInjection(CdmaServingCellInjection::create()->wrappedObject()),
            StatusOk);
  EXPECT_EQ(
      injection->addCellularObjectInjection(CellularObjectInjection::create()->wrappedObject()),
      StatusOk);
  EXPECT_EQ(injection->addGeranInjection(GeranNeighborCellInjection::create()->wrappedObject()),
            StatusWrongState);
}

}  // namespace
}  // namespace trelvo::schema
