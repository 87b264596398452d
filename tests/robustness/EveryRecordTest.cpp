// The promises that all flat records share, held against each of them.

#include <gtest/gtest.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/schema/Area.h>
#include <trelvo/schema/CdmaCell.h>
#include <trelvo/schema/CdmaCellDn.h>
#include <trelvo/schema/CdmaFrequencyInfo.h>
#include <trelvo/schema/CdmaNeighborCell.h>
#include <trelvo/schema/CdmaNwMeasurement.h>
#include <trelvo/schema/CdmaServingCellMeasurement.h>
#include <trelvo/schema/CellularObject.h>
#include <trelvo/schema/CellularObjectDn.h>
#include <trelvo/schema/EUtraCell.h>
#include <trelvo/schema/EUtraCellDn.h>
#include <trelvo/schema/EUtraFrequencyInfo.h>
#include <trelvo/schema/EUtraNeighborCell.h>
#include <trelvo/schema/EUtraNwMeasurement.h>
#include <trelvo/schema/EUtraServingCellMeasurement.h>
#include <trelvo/schema/GeranCell.h>
#include <trelvo/schema/GeranCellDn.h>
#include <trelvo/schema/GeranFrequencyInfo.h>
#include <trelvo/schema/GeranNeighborCell.h>
#include <trelvo/schema/GeranNwMeasurement.h>
#include <trelvo/schema/GeranServingCellMeasurement.h>
#include <trelvo/schema/GnssMeasurementData.h>
#include <trelvo/schema/ObjectBaseFactory.h>
#include <trelvo/schema/PositionEstimate.h>
#include <trelvo/schema/UtraCellDn.h>
#include <trelvo/schema/UtraFddCell.h>
#include <trelvo/schema/UtraFddFrequencyInfo.h>
#include <trelvo/schema/UtraFddNeighborCell.h>
#include <trelvo/schema/UtraFddNwMeasurement.h>
#include <trelvo/schema/UtraFddServingCellMeasurement.h>
#include <trelvo/schema/UtraTddCell.h>
#include <trelvo/schema/UtraTddFrequencyInfo.h>
#include <trelvo/schema/UtraTddNeighborCell.h>
#include <trelvo/schema/UtraTddNwMeasurement.h>
#include <trelvo/schema/UtraTddServingCellMeasurement.h>
#include <trelvo/schema/Wlan.h>
#include <trelvo/schema/WlanApMeasurement.h>
#include <trelvo/schema/WlanDn.h>

#include <new>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>

#include "tests/support/AllocationFailure.h"
#include "tests/support/WireChecks.h"

namespace trelvo::schema {
namespace {

using gom::ObjectBase;
using gom::SharedPointer;
using test::AllocationsSucceed;
using test::Bytes;
using test::everyAllocationFails;

/// A record class: its id, how wide its mask is on the wire (0 for none, or for one behind other
/// fields), and the largest mask that it reads.
template <class T, unsigned short classId, unsigned int width = 0, unsigned int largest = ~0U>
struct Row {
  using Record = T;
  static constexpr unsigned short kClassId = classId;
  static constexpr unsigned int kMaskWidth = width;
  static constexpr unsigned int kLargestMask = largest;
};

/// Names the cases of a suite.
struct ByClassId {
  template <class R>
  static std::string GetName(int /*index*/) {  // NOLINT(readability-identifier-naming)
    return std::to_string(R::kClassId);
  }
};

using WithMask8 = ::testing::Types<
    Row<GeranCellDn, 100, 1, 0x0F>, Row<UtraCellDn, 101, 1, 0x07>,
    Row<GeranFrequencyInfo, 102, 1, 0x03>, Row<UtraFddFrequencyInfo, 103, 1, 0x03>,
    Row<GeranServingCellMeasurement, 109, 1, 0x1F>, Row<GeranNwMeasurement, 110, 1, 0x0F>,
    Row<UtraFddServingCellMeasurement, 111, 1, 0x87>, Row<UtraFddNwMeasurement, 112, 1, 0x7F>,
    Row<EUtraServingCellMeasurement, 118, 1, 0x07>, Row<EUtraNwMeasurement, 119, 1, 0x1F>,
    Row<EUtraFrequencyInfo, 120, 1, 0x03>, Row<EUtraCellDn, 121, 1, 0x07>,
    Row<CdmaCellDn, 122, 1, 0x07>, Row<CdmaFrequencyInfo, 123, 1, 0x00>,
    Row<CdmaServingCellMeasurement, 126, 1, 0x03>, Row<CdmaNwMeasurement, 127, 1, 0x01>,
    Row<UtraTddFrequencyInfo, 131, 1, 0x03>, Row<UtraTddServingCellMeasurement, 134, 1, 0x0F>,
    Row<UtraTddNwMeasurement, 135, 1, 0x1F>>;
using WithMask32 = ::testing::Types<Row<PositionEstimate, 113, 4>, Row<WlanApMeasurement, 129, 4>,
                                    Row<GnssMeasurementData, 130, 4>>;
using OtherWireForms = ::testing::Types<Row<Area, 104>, Row<WlanDn, 128>>;
using WithoutWireForm =
    ::testing::Types<Row<GeranCell, 105>, Row<GeranNeighborCell, 106>, Row<UtraFddCell, 107>,
                     Row<UtraFddNeighborCell, 108>, Row<CellularObjectDn, 114>,
                     Row<CellularObject, 115>, Row<EUtraCell, 116>, Row<EUtraNeighborCell, 117>,
                     Row<CdmaCell, 124>, Row<CdmaNeighborCell, 125>, Row<UtraTddCell, 132>,
                     Row<UtraTddNeighborCell, 133>, Row<Wlan, 136>>;

template <class... Lists>
struct Joined;
template <class... A>
struct Joined<::testing::Types<A...>> {
  using Types = ::testing::Types<A...>;
};
template <class... A, class... B, class... Lists>
struct Joined<::testing::Types<A...>, ::testing::Types<B...>, Lists...> {
  using Types = typename Joined<::testing::Types<A..., B...>, Lists...>::Types;
};
using WithWireForm = Joined<WithMask8, WithMask32, OtherWireForms>::Types;
using All = Joined<WithWireForm, WithoutWireForm>::Types;

// --- filling any record ---

template <class Record, class Nested, class Owner>
void setNew(Record& record, Status (Owner::*set)(const SharedPointer<Nested>&)) {
  EXPECT_EQ((record.*set)(Nested::create()), StatusOk);
}

#define TRELVO_HAS(function)             \
  template <class T, class = void>       \
  constexpr bool has_##function = false; \
  template <class T>                     \
  constexpr bool has_##function<T, std::void_t<decltype(&T::function)>> = true
// Overloaded setters have no single address, and are left out.
TRELVO_HAS(setDn);
TRELVO_HAS(setCoverage);
TRELVO_HAS(setNwMeasurement);
TRELVO_HAS(setFrequencyInfo);
TRELVO_HAS(setLac);
TRELVO_HAS(setMcc);
#undef TRELVO_HAS

/// Sets what can be set by name, nested objects above all.
template <class T>
void populate(T& record) {
  if constexpr (has_setDn<T>) setNew(record, &T::setDn);
  if constexpr (has_setNwMeasurement<T>) setNew(record, &T::setNwMeasurement);
  if constexpr (has_setFrequencyInfo<T>) setNew(record, &T::setFrequencyInfo);
  if constexpr (std::is_same_v<T, GnssMeasurementData>) {
    EXPECT_EQ(record.setCoverage(Coverage(1, 2, 3, 4, 0.5F)), StatusOk);
  } else if constexpr (has_setCoverage<T>) {
    setNew(record, &T::setCoverage);
  }
  if constexpr (has_setLac<T>) record.setLac(0x1234);
  if constexpr (has_setMcc<T>) record.setMcc(262);
  ASSERT_NE(record.extension(), nullptr);
  EXPECT_EQ(record.extension()->setUint8Property(1, 2), StatusOk);
}

template <class T>
SharedPointer<T> full() {
  const AllocationsSucceed succeed;
  SharedPointer<T> record = T::create();
  populate(*record);
  return record;
}

// --- every record ---

template <class R>
class EveryRecord : public ::testing::Test {};
TYPED_TEST_SUITE(EveryRecord, All, ByClassId);

TYPED_TEST(EveryRecord, IsMadeEmptyWithItsClassId) {
  const auto record = TypeParam::Record::create();
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(record->key(), TypeParam::kClassId);
  EXPECT_EQ(record->referenceCount(), 1);
  EXPECT_TRUE(record->isEmpty());
  EXPECT_FALSE(record->valueExists(0));
  EXPECT_FALSE(record->isExtended());
  record->dump();
  EXPECT_TRUE(record->isEmpty());
}

TYPED_TEST(EveryRecord, IsWhatTheFactoryMakes) {
  using Record = typename TypeParam::Record;
  if (TypeParam::kClassId > 135) {
    EXPECT_THROW(static_cast<void>(ObjectBaseFactory::createObject(TypeParam::kClassId)), Status);
    return;
  }
  const SharedPointer<ObjectBase> record = ObjectBaseFactory::createObject(TypeParam::kClassId);
  ASSERT_NE(record, nullptr);
  const ObjectBase& made = *record;
  EXPECT_EQ(typeid(made), typeid(Record));
}

TYPED_TEST(EveryRecord, EqualsItsCopiesAndClones) {
  using Record = typename TypeParam::Record;
  const SharedPointer<Record> record = full<Record>();
  const SharedPointer<Record> copy = Record::create(record);
  const SharedPointer<Record> clone = record->clone();
  ASSERT_NE(copy, nullptr);
  ASSERT_NE(clone, nullptr);
  static_assert(std::is_same_v<decltype(record->clone()), Record*>);
  const SharedPointer<Record> assigned = Record::create();
  *assigned = *record;
  for (const SharedPointer<Record>& other : {copy, clone, assigned}) {
    EXPECT_TRUE(*record == *other);
    EXPECT_FALSE(*record != *other);
    EXPECT_TRUE(record->compare(other.get()));
  }
}

TYPED_TEST(EveryRecord, DumpHasNoEffect) {
  using Record = typename TypeParam::Record;
  const SharedPointer<Record> record = full<Record>();
  record->dump();
  EXPECT_TRUE(*record == *full<Record>());
}

TYPED_TEST(EveryRecord, CopiesShareAndClonesCopyTheExtension) {
  using Record = typename TypeParam::Record;
  const SharedPointer<Record> record = full<Record>();
  EXPECT_EQ(Record::create(record)->extensionReference(), record->extensionReference());
  const SharedPointer<Record> clone = record->clone();
  ASSERT_TRUE(clone->isExtended());
  EXPECT_NE(clone->extensionReference(), record->extensionReference());
  EXPECT_EQ(clone->extension()->setUint8Property(1, 3), StatusOk);
  EXPECT_FALSE(*clone == *record);
}

TYPED_TEST(EveryRecord, EqualsNoOtherContentNoOtherClassAndNoNull) {
  using Record = typename TypeParam::Record;
  const auto record = Record::create();
  EXPECT_FALSE(record->compare(full<Record>().get()));
  EXPECT_FALSE(full<Record>()->compare(record.get()));
  EXPECT_FALSE(record->compare(nullptr));
  const SharedPointer<ObjectBase> other = std::is_same_v<Record, GeranCellDn>
                                              ? SharedPointer<ObjectBase>(UtraCellDn::create())
                                              : SharedPointer<ObjectBase>(GeranCellDn::create());
  EXPECT_FALSE(record->compare(other.get()));
  EXPECT_FALSE(other->compare(record.get()));
}

TYPED_TEST(EveryRecord, CopyOfAnEmptyHandleIsEmpty) {
  using Record = typename TypeParam::Record;
  EXPECT_EQ(Record::create(SharedPointer<Record>()), nullptr);
}

TYPED_TEST(EveryRecord, FactoriesGiveAnEmptyHandleWhenMemoryRunsOut) {
  using Record = typename TypeParam::Record;
  bool failed = false;
  EXPECT_GE(everyAllocationFails([&failed] { failed = !Record::create() || failed; }), 1U);
  EXPECT_TRUE(failed);
  failed = false;
  everyAllocationFails([&failed] {
    const SharedPointer<Record> source = full<Record>();
    const SharedPointer<Record> copy = Record::create(source);
    EXPECT_TRUE(!copy || *copy == *source);
    failed = !copy || failed;
  });
  EXPECT_TRUE(failed);
}

TYPED_TEST(EveryRecord, CloneGivesNullOrThrowsBadAllocWhenMemoryRunsOut) {
  using Record = typename TypeParam::Record;
  bool failed = false;
  everyAllocationFails([&failed] {
    const SharedPointer<Record> source = full<Record>();
    try {
      const SharedPointer<Record> clone = source->clone();
      EXPECT_TRUE(!clone || *clone == *source);
      failed = !clone || failed;
    } catch (const std::bad_alloc&) {
      failed = true;
    }
  });
  EXPECT_TRUE(failed);
}

// --- records with a wire form ---

template <class R>
class EveryWireRecord : public ::testing::Test {};
TYPED_TEST_SUITE(EveryWireRecord, WithWireForm, ByClassId);

TYPED_TEST(EveryWireRecord, ReadsBackWhatItWrites) {
  using Record = typename TypeParam::Record;
  const SharedPointer<Record> record = full<Record>();
  record->deleteExtension();
  const Bytes wire = test::written(*record);
  EXPECT_EQ(wire.front(), 1U);
  test::expectReads([] { return Record::create(); }, wire,
                    [&](const Record& read) { EXPECT_TRUE(read == *record); });
  test::expectCutOffFails([] { return Record::create(); }, wire, [](const Record&) {});
}

TYPED_TEST(EveryWireRecord, RefusesEveryVersionBut1AndClearsItsPresenceBits) {
  using Record = typename TypeParam::Record;
  Bytes wire = test::written(*full<Record>());
  for (unsigned int version = 0; version <= 0xFF; ++version) {
    if (version == 1) {
      continue;
    }
    wire.front() = static_cast<unsigned char>(version);
    const SharedPointer<Record> record = full<Record>();
    record->deleteExtension();
    EXPECT_FALSE(test::readFrom(*record, wire)) << version;
    EXPECT_TRUE(record->isEmpty()) << version;
    EXPECT_FALSE(test::readFromForeign(*record, wire)) << version;
  }
}

template <class R>
class EveryRecordWithMask8 : public ::testing::Test {};
TYPED_TEST_SUITE(EveryRecordWithMask8, WithMask8, ByClassId);

TYPED_TEST(EveryRecordWithMask8, RefusesMasksAboveTheLargestAndLeavesNoBit) {
  using Record = typename TypeParam::Record;
  for (unsigned int mask = 0; mask <= 0xFF; ++mask) {
    SCOPED_TRACE(mask);
    Bytes wire(200, 0x01);
    wire[1] = static_cast<unsigned char>(mask);
    BufferStream stream;
    test::fill(stream, wire);
    const SharedPointer<Record> record = full<Record>();
    record->deleteExtension();
    if (mask > TypeParam::kLargestMask) {
      EXPECT_FALSE(record->read(stream));
      EXPECT_TRUE(record->isEmpty());
      EXPECT_EQ(stream.offset(), 2U);
    } else {
      static_cast<void>(record->read(stream));  // a nested record may refuse what follows
      EXPECT_EQ(record->values(), mask);
    }
  }
}

template <class R>
class EveryRecordWithMask32 : public ::testing::Test {};
TYPED_TEST_SUITE(EveryRecordWithMask32, WithMask32, ByClassId);

TYPED_TEST(EveryRecordWithMask32, TakesBitsThatItDoesNotKnow) {
  using Record = typename TypeParam::Record;
  const SharedPointer<Record> record = full<Record>();
  // What follows the mask is an empty coverage, for the class that always has one.
  EXPECT_TRUE(test::readFrom(*record, test::bytes("01 00 00 00 80 01 00 00")));
  EXPECT_EQ(record->values(), 0x80000000U);
}

TYPED_TEST(EveryRecordWithMask32, TakesAMaskOfAllOnesAndFailsWhereTheBytesEnd) {
  using Record = typename TypeParam::Record;
  const SharedPointer<Record> record = full<Record>();
  EXPECT_FALSE(test::readFrom(*record, test::bytes("01 FF FF FF FF")));
  EXPECT_EQ(record->values(), ~0U);
}

// --- records without one ---

template <class R>
class EveryRecordWithoutWireForm : public ::testing::Test {};
TYPED_TEST_SUITE(EveryRecordWithoutWireForm, WithoutWireForm, ByClassId);

TYPED_TEST(EveryRecordWithoutWireForm, ThrowsOnWriteAndRead) {
  using Record = typename TypeParam::Record;
  const SharedPointer<Record> record = full<Record>();
  BufferStream stream;
  test::fill(stream, test::bytes("01 00 00 00"));
  const auto statusOf = [](const auto& call) {
    try {
      static_cast<void>(call());
      return StatusOk;
    } catch (Status status) {
      return status;
    }
  };
  EXPECT_EQ(statusOf([&] { return record->write(stream); }), StatusInternal);
  EXPECT_EQ(statusOf([&] { return record->read(stream); }), StatusInternal);
  EXPECT_EQ(test::contentOf(stream), test::bytes("01 00 00 00"));
  EXPECT_EQ(stream.offset(), 0U);
}

}  // namespace
}  // namespace trelvo::schema
