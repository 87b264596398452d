#include <gtest/gtest.h>

#include <trelvo/BufferStream.h>
#include <trelvo/schema/CdmaCellMeasurement.h>
#include <trelvo/schema/EUtraCellMeasurement.h>
#include <trelvo/schema/GeranCellMeasurement.h>
#include <trelvo/schema/UtraFddCellMeasurement.h>
#include <trelvo/schema/UtraTddCellMeasurement.h>

#include "tests/schema/CellularRecord.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/Bytes.h"

namespace trelvo::schema {
namespace {

using gom::GenericObject;
using gom::ObjectBase;
using gom::SharedPointer;
using gom::ValueCollection;
using test::bytes;
using test::written;

template <class MeasurementClass, class DnClass, class Serving, class Nw, unsigned short key,
          unsigned short neighborId>
struct MeasurementTechnology {
  using Measurement = MeasurementClass;
  using Dn = DnClass;
  using ServingMeasurement = Serving;
  using NwMeasurement = Nw;
  static constexpr unsigned short kObjectKey = key;
  static constexpr unsigned short kNeighborClassId = neighborId;
};
using Geran = MeasurementTechnology<GeranCellMeasurement, GeranCellDn, GeranServingCellMeasurement,
                                    GeranNwMeasurement, 2, 110>;
using UtraFdd = MeasurementTechnology<UtraFddCellMeasurement, UtraCellDn,
                                      UtraFddServingCellMeasurement, UtraFddNwMeasurement, 3, 112>;
using UtraTdd = MeasurementTechnology<UtraTddCellMeasurement, UtraCellDn,
                                      UtraTddServingCellMeasurement, UtraTddNwMeasurement, 4, 135>;
using EUtra = MeasurementTechnology<EUtraCellMeasurement, EUtraCellDn, EUtraServingCellMeasurement,
                                    EUtraNwMeasurement, 14, 119>;
using Cdma = MeasurementTechnology<CdmaCellMeasurement, CdmaCellDn, CdmaServingCellMeasurement,
                                   CdmaNwMeasurement, 17, 127>;

template <class T>
class EveryCellMeasurement : public testing::Test {
 protected:
  SharedPointer<typename T::Measurement> measurement = T::Measurement::create();
  SharedPointer<typename T::Dn> dn = T::Dn::create();
  SharedPointer<typename T::ServingMeasurement> serving = T::ServingMeasurement::create();
  SharedPointer<typename T::NwMeasurement> neighbor = T::NwMeasurement::create();
};
using MeasurementTechnologies = testing::Types<Geran, UtraFdd, UtraTdd, EUtra, Cdma>;
TYPED_TEST_SUITE(EveryCellMeasurement, MeasurementTechnologies, ByTechnology<>);

TYPED_TEST(EveryCellMeasurement, StartsEmptyUnderItsObjectKey) {
  EXPECT_EQ(this->measurement->key(), TypeParam::kObjectKey);
  EXPECT_TRUE(this->measurement->isEmpty());
  EXPECT_EQ(this->measurement->timeStamp(), 0U);
  EXPECT_FALSE(this->measurement->dn());
  EXPECT_FALSE(this->measurement->servingCellMeasurement());
  EXPECT_FALSE(this->measurement->nwMeasurementCollection());
}

TYPED_TEST(EveryCellMeasurement, MaskOfZeroDoesNotExist) {
  EXPECT_FALSE(this->measurement->valueExists(0));
}

TYPED_TEST(EveryCellMeasurement, KeepsEachPropertyUnderItsKeyAndBit) {
  EXPECT_EQ(this->measurement->setDn(this->dn), StatusOk);
  EXPECT_TRUE(this->measurement->valueExists(0x01));
  EXPECT_FALSE(this->measurement->valueExists(0x03));
  EXPECT_EQ(this->measurement->setTimeStamp(0xFFFFFFFF), StatusOk);
  EXPECT_TRUE(this->measurement->valueExists(0x03));
  EXPECT_EQ(this->measurement->setServingCellMeasurement(this->serving), StatusOk);
  EXPECT_TRUE(this->measurement->valueExists(0x07));
  EXPECT_EQ(this->measurement->addNwMeasurement(this->neighbor), StatusOk);
  EXPECT_TRUE(this->measurement->valueExists(0x0F));
  EXPECT_FALSE(this->measurement->isEmpty());
  for (const int key : {200, 205, 202, 303}) {
    EXPECT_TRUE(this->measurement->object().propertyExists(static_cast<unsigned short>(key)))
        << key;
  }
  EXPECT_EQ(this->measurement->object().propertyCount(), 4U);
  EXPECT_EQ(this->measurement->dn(), this->dn);
  EXPECT_EQ(this->measurement->timeStamp(), 0xFFFFFFFFU);
  EXPECT_EQ(this->measurement->servingCellMeasurement(), this->serving);
}

TYPED_TEST(EveryCellMeasurement, BitsOutsideTheTableDoNotExist) {
  this->measurement->setTimeStamp(1);
  EXPECT_FALSE(this->measurement->valueExists(0x22));
  EXPECT_FALSE(this->measurement->valueExists(0x80000002));
}

TYPED_TEST(EveryCellMeasurement, UnsetRemovesThePropertiesItNames) {
  this->measurement->setDn(this->dn);
  this->measurement->setTimeStamp(7);
  this->measurement->setServingCellMeasurement(this->serving);
  this->measurement->addNwMeasurement(this->neighbor);
  this->measurement->unset(0x05);
  EXPECT_FALSE(this->measurement->dn());
  EXPECT_FALSE(this->measurement->servingCellMeasurement());
  EXPECT_TRUE(this->measurement->valueExists(0x0A));
  this->measurement->unset(0x02);
  EXPECT_EQ(this->measurement->timeStamp(), 0U);
  this->measurement->unset(0xFFFFFFE8);
  EXPECT_TRUE(this->measurement->isEmpty());
  this->measurement->unset(0xFFFFFFFF);
  EXPECT_TRUE(this->measurement->isEmpty());
}

TYPED_TEST(EveryCellMeasurement, RefusesEmptyHandlesAndKeepsTheOld) {
  EXPECT_EQ(this->measurement->setDn(nullptr), StatusWrongState);
  EXPECT_EQ(this->measurement->setServingCellMeasurement(nullptr), StatusWrongState);
  EXPECT_EQ(this->measurement->setNwMeasurementCollection(nullptr), StatusWrongState);
  EXPECT_EQ(this->measurement->addNwMeasurement(nullptr), StatusWrongState);
  EXPECT_TRUE(this->measurement->isEmpty());
  this->measurement->setDn(this->dn);
  EXPECT_EQ(this->measurement->setDn(nullptr), StatusWrongState);
  EXPECT_EQ(this->measurement->dn(), this->dn);
}

TYPED_TEST(EveryCellMeasurement, SettersReplace) {
  this->measurement->setDn(this->dn);
  this->measurement->setTimeStamp(1);
  this->measurement->setServingCellMeasurement(this->serving);
  const auto otherDn = TypeParam::Dn::create();
  const auto otherServing = TypeParam::ServingMeasurement::create();
  this->measurement->setDn(otherDn);
  this->measurement->setTimeStamp(2);
  this->measurement->setServingCellMeasurement(otherServing);
  EXPECT_EQ(this->measurement->dn(), otherDn);
  EXPECT_EQ(this->measurement->timeStamp(), 2U);
  EXPECT_EQ(this->measurement->servingCellMeasurement(), otherServing);
  EXPECT_EQ(this->measurement->object().propertyCount(), 3U);
}

TYPED_TEST(EveryCellMeasurement, PropertiesOfAnotherClassOrTypeReadAsAbsent) {
  GenericObject& object = this->measurement->object();
  object.setObjectProperty(200, this->serving);
  object.setObjectProperty(202, this->dn);
  object.setInt32Property(205, 5);
  object.setUint32Property(303, 5);
  EXPECT_FALSE(this->measurement->dn());
  EXPECT_FALSE(this->measurement->servingCellMeasurement());
  EXPECT_EQ(this->measurement->timeStamp(), 0U);
  EXPECT_FALSE(this->measurement->nwMeasurementCollection());
  EXPECT_TRUE(this->measurement->valueExists(0x0F));
  EXPECT_EQ(this->measurement->setTimeStamp(6), StatusWrongState);
  EXPECT_EQ(this->measurement->addNwMeasurement(this->neighbor), StatusWrongState);
}

TYPED_TEST(EveryCellMeasurement, NeighborsAreSharedRecordsOfKeyZeroInOrder) {
  const auto second = TypeParam::NwMeasurement::create();
  this->measurement->addNwMeasurement(this->neighbor);
  this->measurement->addNwMeasurement(second);
  const auto list = this->measurement->nwMeasurementCollection();
  ASSERT_TRUE(list);
  ASSERT_EQ(list->count(), 2U);
  const ObjectBase* const expected[] = {this->neighbor.get(), second.get()};
  for (unsigned int i = 0; i < 2; ++i) {
    SharedPointer<ObjectBase> record;
    EXPECT_EQ(list->items[i]->key(), 0);
    ASSERT_EQ(list->items[i]->getObjectValue(record), StatusOk);
    EXPECT_EQ(record.get(), expected[i]);
  }
}

TYPED_TEST(EveryCellMeasurement, NeighborsHaveThisClassId) {
  EXPECT_EQ(this->neighbor->key(), TypeParam::kNeighborClassId);
  EXPECT_EQ(this->measurement->CellMeasurement::addNwMeasurement(this->neighbor,
                                                                 TypeParam::kNeighborClassId),
            StatusOk);
}

TYPED_TEST(EveryCellMeasurement, NeighborOfAnotherClassIdIsRefused) {
  EXPECT_EQ(this->measurement->addNwMeasurement(this->dn, TypeParam::kNeighborClassId),
            StatusWrongState);
  EXPECT_EQ(
      this->measurement->addNwMeasurement(SharedPointer<ObjectBase>(), TypeParam::kNeighborClassId),
      StatusWrongState);
  EXPECT_TRUE(this->measurement->isEmpty());
}

TYPED_TEST(EveryCellMeasurement, WholeListIsReplacedUnseen) {
  const auto list = ValueCollection::create();
  this->measurement->addNwMeasurement(this->neighbor);
  EXPECT_EQ(this->measurement->setNwMeasurementCollection(list), StatusOk);
  EXPECT_EQ(this->measurement->nwMeasurementCollection(), list);
  EXPECT_TRUE(this->measurement->valueExists(0x08));
  this->measurement->addNwMeasurement(this->neighbor);
  EXPECT_EQ(list->count(), 1U);
}

TYPED_TEST(EveryCellMeasurement, IsMadeWithTimeStampAheadOfIdentity) {
  using Measurement = typename TypeParam::Measurement;
  const auto made = Measurement::create(this->dn, 7U);
  ASSERT_TRUE(made);
  EXPECT_EQ(made->dn(), this->dn);
  EXPECT_EQ(made->timeStamp(), 7U);
  unsigned short key = 0;
  EXPECT_TRUE(made->object().getFirstKey(key));
  EXPECT_EQ(key, 205);
  EXPECT_TRUE(made->object().getNextKey(key));
  EXPECT_EQ(key, 200);
  EXPECT_FALSE(made->object().getNextKey(key));
}

TYPED_TEST(EveryCellMeasurement, IsNotMadeWithoutAnIdentity) {
  EXPECT_FALSE(TypeParam::Measurement::create(SharedPointer<typename TypeParam::Dn>(), 7U));
}

TYPED_TEST(EveryCellMeasurement, FactoriesGiveAnEmptyHandleWhenMemoryRunsOut) {
  using Measurement = typename TypeParam::Measurement;
  test::everyAllocationFails([this] {
    const auto made = Measurement::create(this->dn, 7U);
    EXPECT_TRUE(!made || made->valueExists(0x03));
  });
}

TYPED_TEST(EveryCellMeasurement, AddingANeighborAddsAllOrNothingWhenMemoryRunsOut) {
  using Measurement = typename TypeParam::Measurement;
  test::everyAllocationFails([this] {
    const auto made = Measurement::create();
    if (made) {
      const Status status = made->addNwMeasurement(this->neighbor);
      EXPECT_EQ(status, made->valueExists(0x08) ? StatusOk : StatusOutOfMemory);
    }
  });
}

TYPED_TEST(EveryCellMeasurement, CloneIsADeepCopyOfTheObject) {
  this->measurement->setDn(this->dn);
  const auto clone = this->measurement->clone();
  EXPECT_TRUE(*clone == this->measurement->object());
  const auto over = TypeParam::Measurement::create(clone);
  ASSERT_TRUE(over);
  EXPECT_NE(over->dn(), this->dn);
}

TYPED_TEST(EveryCellMeasurement, DefaultMadeOneReadsAsEmptyAndItsSettersThrow) {
  typename TypeParam::Measurement none;
  EXPECT_TRUE(none.isEmpty());
  EXPECT_EQ(none.timeStamp(), 0U);
  EXPECT_FALSE(none.dn());
  EXPECT_FALSE(none.servingCellMeasurement());
  EXPECT_FALSE(none.nwMeasurementCollection());
  EXPECT_FALSE(none.valueExists(0x01));
  none.unset(0x0F);
  EXPECT_EQ(none.addNwMeasurement(this->neighbor), StatusWrongState);
  EXPECT_THROW(none.setTimeStamp(1), Status);
  EXPECT_THROW(none.setDn(this->dn), Status);
}

TYPED_TEST(EveryCellMeasurement, SurvivesTheStream) {
  this->measurement->setDn(this->dn);
  this->measurement->setTimeStamp(7);
  this->measurement->setServingCellMeasurement(this->serving);
  this->measurement->addNwMeasurement(this->neighbor);
  BufferStream stream;
  ASSERT_TRUE(this->measurement->write(stream));
  const auto back = TypeParam::Measurement::create(GenericObject::create(stream));
  ASSERT_TRUE(back);
  EXPECT_TRUE(back->object() == this->measurement->object());
  EXPECT_TRUE(*back->dn() == *this->dn);
  EXPECT_TRUE(*back->servingCellMeasurement() == *this->serving);
}

TEST(GeranCellMeasurement, WritesTheseBytes) {
  const auto measurement = GeranCellMeasurement::create(GeranCellDn::create(244, 91, 1, 2), 7U);
  const auto serving = GeranServingCellMeasurement::create();
  serving->setRxLevel(5);
  measurement->setServingCellMeasurement(serving);
  const auto neighbor = GeranNwMeasurement::create();
  neighbor->setRxLevel(9);
  measurement->addNwMeasurement(neighbor);
  EXPECT_EQ(written(*measurement), bytes("02 00  04 00 00 00"
                                         "06 00 cd 00  07 00 00 00"
                                         "0e 00 c8 00  64 00  01 0f f4 00 5b 00 01 00 02 00"
                                         "0e 00 ca 00  6d 00  01 10 01 08 05"
                                         "0f 00 2f 01  01 00 00 00  0e 00 00 00  6e 00  01 08 09"));
}

TEST(GeranCellMeasurement, HasNoUnreliableStateEvenIfThePropertyIsStored) {
  const auto measurement = GeranCellMeasurement::create();
  measurement->object().setUint32Property(207, 1);
  EXPECT_FALSE(measurement->valueExists(0x10));
  measurement->setTimeStamp(1);
  EXPECT_FALSE(measurement->valueExists(0x12));
  measurement->unset(0x10);
  EXPECT_TRUE(measurement->object().propertyExists(207));
}

TEST(UtraFddCellMeasurement, UnreliableStateWritesTheseBytes) {
  const auto measurement = UtraFddCellMeasurement::create();
  measurement->setUnreliableStateTimeStamp(0x01020304);
  EXPECT_EQ(written(*measurement), bytes("03 00  01 00 00 00  06 00 cf 00  04 03 02 01"));
}

TEST(UtraTddCellMeasurement, RefusesAnFddNeighborThroughTheBaseOverload) {
  const auto measurement = UtraTddCellMeasurement::create();
  const auto fdd = UtraFddNwMeasurement::create();
  EXPECT_EQ(measurement->addNwMeasurement(fdd, 135), StatusWrongState);
  EXPECT_FALSE(measurement->valueExists(0x08));
}

template <class T>
class EveryUtraCellMeasurement : public EveryCellMeasurement<T> {};
using UtraTechnologies = testing::Types<UtraFdd, UtraTdd>;
TYPED_TEST_SUITE(EveryUtraCellMeasurement, UtraTechnologies, ByTechnology<1>);

TYPED_TEST(EveryUtraCellMeasurement, KeepsTheUnreliableStateUnderKey207AndBit0x10) {
  EXPECT_EQ(this->measurement->unreliableStateTimeStamp(), 0U);
  EXPECT_FALSE(this->measurement->valueExists(0x10));
  EXPECT_EQ(this->measurement->setUnreliableStateTimeStamp(0xFFFFFFFF), StatusOk);
  EXPECT_EQ(this->measurement->unreliableStateTimeStamp(), 0xFFFFFFFFU);
  EXPECT_TRUE(this->measurement->valueExists(0x10));
  EXPECT_FALSE(this->measurement->valueExists(0x12));
  this->measurement->setTimeStamp(1);
  EXPECT_TRUE(this->measurement->valueExists(0x12));
  EXPECT_FALSE(this->measurement->valueExists(0x32));
  unsigned int stored = 0;
  EXPECT_EQ(this->measurement->object().getUint32Property(207, stored), StatusOk);
  EXPECT_EQ(stored, 0xFFFFFFFFU);
}

TYPED_TEST(EveryUtraCellMeasurement, UnsetRemovesTheUnreliableStateAndTheRest) {
  this->measurement->setUnreliableStateTimeStamp(1);
  this->measurement->setTimeStamp(2);
  this->measurement->setDn(this->dn);
  this->measurement->unset(0x11);
  EXPECT_EQ(this->measurement->unreliableStateTimeStamp(), 0U);
  EXPECT_FALSE(this->measurement->dn());
  EXPECT_EQ(this->measurement->timeStamp(), 2U);
}

TYPED_TEST(EveryUtraCellMeasurement, UnreliableStateOfADefaultMadeOneReadsAsZero) {
  const typename TypeParam::Measurement none;
  EXPECT_EQ(none.unreliableStateTimeStamp(), 0U);
}

}  // namespace
}  // namespace trelvo::schema
