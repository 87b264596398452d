// What all records of the cellular schema promise alike.

#include "tests/schema/CellularRecord.h"

#include <trelvo/gom/GenericObject.h>
#include <trelvo/schema/CdmaCell.h>
#include <trelvo/schema/CdmaServingCellMeasurement.h>
#include <trelvo/schema/CellularObject.h>
#include <trelvo/schema/EUtraCell.h>
#include <trelvo/schema/EUtraServingCellMeasurement.h>
#include <trelvo/schema/GeranCell.h>
#include <trelvo/schema/GeranServingCellMeasurement.h>
#include <trelvo/schema/UtraFddCell.h>
#include <trelvo/schema/UtraFddServingCellMeasurement.h>
#include <trelvo/schema/UtraTddCell.h>
#include <trelvo/schema/UtraTddServingCellMeasurement.h>

#include "tests/support/Bytes.h"

namespace trelvo::schema {
namespace {

using gom::ObjectBase;
using gom::SharedPointer;
using test::Bytes;
using test::bytes;
using test::readFrom;
using test::written;

INSTANTIATE_TEST_SUITE_P(
    WithWireForm, EveryCellularRecord,
    testing::Values(
        recordClass<GeranCellDn>("GeranCellDn", 100, 0x0F),
        recordClass<UtraCellDn>("UtraCellDn", 101, 0x07),
        recordClass<EUtraCellDn>("EUtraCellDn", 121, 0x07),
        recordClass<CdmaCellDn>("CdmaCellDn", 122, 0x07),
        recordClass<GeranFrequencyInfo>("GeranFrequencyInfo", 102, 0x03),
        recordClass<UtraFddFrequencyInfo>("UtraFddFrequencyInfo", 103, 0x03),
        recordClass<UtraTddFrequencyInfo>("UtraTddFrequencyInfo", 131, 0x03),
        recordClass<EUtraFrequencyInfo>("EUtraFrequencyInfo", 120, 0x03),
        recordClass<CdmaFrequencyInfo>("CdmaFrequencyInfo", 123, 0x00),
        recordClass<GeranNwMeasurement>("GeranNwMeasurement", 110, 0x0F),
        recordClass<UtraFddNwMeasurement>("UtraFddNwMeasurement", 112, 0x7F),
        recordClass<UtraTddNwMeasurement>("UtraTddNwMeasurement", 135, 0x1F),
        recordClass<EUtraNwMeasurement>("EUtraNwMeasurement", 119, 0x1F),
        recordClass<CdmaNwMeasurement>("CdmaNwMeasurement", 127, 0x01),
        recordClass<GeranServingCellMeasurement>("GeranServingCellMeasurement", 109, 0x1F),
        recordClass<UtraFddServingCellMeasurement>("UtraFddServingCellMeasurement", 111, 0x87),
        recordClass<UtraTddServingCellMeasurement>("UtraTddServingCellMeasurement", 134, 0x0F),
        recordClass<EUtraServingCellMeasurement>("EUtraServingCellMeasurement", 118, 0x07),
        recordClass<CdmaServingCellMeasurement>("CdmaServingCellMeasurement", 126, 0x03)),
    ByName());

INSTANTIATE_TEST_SUITE_P(
    InMemoryOnly, EveryCellularRecord,
    testing::Values(recordClass<GeranCell>("GeranCell", 105),
                    recordClass<UtraFddCell>("UtraFddCell", 107),
                    recordClass<UtraTddCell>("UtraTddCell", 132),
                    recordClass<EUtraCell>("EUtraCell", 116),
                    recordClass<CdmaCell>("CdmaCell", 124),
                    recordClass<GeranNeighborCell>("GeranNeighborCell", 106),
                    recordClass<UtraFddNeighborCell>("UtraFddNeighborCell", 108),
                    recordClass<UtraTddNeighborCell>("UtraTddNeighborCell", 133),
                    recordClass<EUtraNeighborCell>("EUtraNeighborCell", 117),
                    recordClass<CdmaNeighborCell>("CdmaNeighborCell", 125),
                    recordClass<CellularObjectDn>("CellularObjectDn", 114),
                    recordClass<CellularObject>("CellularObject", 115)),
    ByName());

TEST_P(EveryCellularRecord, HasItsClassId) { EXPECT_EQ(record->key(), GetParam().classId); }

TEST_P(EveryCellularRecord, StartsEmpty) {
  EXPECT_TRUE(record->isEmpty());
  EXPECT_EQ(record->values(), 0U);
  EXPECT_FALSE(record->isExtended());
  for (unsigned int bit = 1; bit != 0; bit <<= 1) {
    EXPECT_FALSE(record->valueExists(bit)) << bit;
  }
}

TEST_P(EveryCellularRecord, HasNoBitsInAMaskOfZero) { EXPECT_FALSE(record->valueExists(0)); }

TEST_P(EveryCellularRecord, FactoryGivesTheOnlyReference) {
  EXPECT_EQ(record->referenceCount(), 1);
}

TEST_P(EveryCellularRecord, CopyOfAnEmptyHandleIsEmpty) {
  EXPECT_FALSE(GetParam().createCopy(nullptr));
}

TEST_P(EveryCellularRecord, DumpLeavesItAlone) {
  const SharedPointer<ObjectBase> same = GetParam().create();
  record->dump();
  EXPECT_TRUE(record->compare(same.get()));
}

TEST_P(EveryCellularRecord, ComparesOnlyWithItsOwnClass) {
  const SharedPointer<ObjectBase> same = GetParam().create();
  const SharedPointer<ObjectBase> other = GetParam().classId == 100
                                              ? SharedPointer<ObjectBase>(UtraCellDn::create())
                                              : SharedPointer<ObjectBase>(GeranCellDn::create());
  EXPECT_TRUE(record->compare(same.get()));
  EXPECT_TRUE(record->compare(record.get()));
  EXPECT_FALSE(record->compare(other.get()));
  EXPECT_FALSE(record->compare(nullptr));
}

TEST_P(EveryCellularRecord, ExtensionTakesPartInEquality) {
  const SharedPointer<ObjectBase> same = GetParam().create();
  record->extension()->setInt32Property(1, 5);
  EXPECT_FALSE(record->compare(same.get()));
  same->extension()->setInt32Property(1, 5);
  EXPECT_TRUE(record->compare(same.get()));
  same->extension()->setInt32Property(1, 6);
  EXPECT_FALSE(record->compare(same.get()));
}

TEST_P(EveryCellularRecord, ExtensionWithAPropertyMakesItNonEmpty) {
  record->extension();
  EXPECT_TRUE(record->isEmpty());
  record->extension()->setInt32Property(1, 5);
  EXPECT_FALSE(record->isEmpty());
}

TEST_P(EveryCellularRecord, CopySharesTheExtension) {
  record->extension()->setInt32Property(1, 5);
  const SharedPointer<ObjectBase> copy = GetParam().createCopy(record.get());
  EXPECT_NE(copy, record);
  EXPECT_EQ(copy->key(), GetParam().classId);
  EXPECT_EQ(copy->extensionReference(), record->extensionReference());
  EXPECT_TRUE(copy->compare(record.get()));
}

TEST_P(EveryCellularRecord, AssignmentSharesTheExtension) {
  record->extension()->setInt32Property(1, 5);
  const SharedPointer<ObjectBase> target = GetParam().create();
  GetParam().assign(*target, *record);
  EXPECT_EQ(target->extensionReference(), record->extensionReference());
  EXPECT_TRUE(target->compare(record.get()));
}

TEST_P(EveryCellularRecord, AssignmentToItselfChangesNothing) {
  record->extension()->setInt32Property(1, 5);
  const SharedPointer<ObjectBase> copy = GetParam().createCopy(record.get());
  GetParam().assign(*record, *record);
  EXPECT_TRUE(record->compare(copy.get()));
  EXPECT_EQ(record->referenceCount(), 1);
}

TEST_P(EveryCellularRecord, CloneIsNewUncountedAndHasAnExtensionOfItsOwn) {
  record->extension()->setInt32Property(1, 5);
  ObjectBase* const plain = record->clone();
  ASSERT_NE(plain, nullptr);
  EXPECT_EQ(plain->referenceCount(), 0);
  const SharedPointer<ObjectBase> clone(plain);
  EXPECT_TRUE(clone->compare(record.get()));
  EXPECT_NE(clone->extensionReference(), record->extensionReference());
}

TEST_P(EveryCellularRecord, WithoutFieldsIsVersionAndMaskOnTheWire) {
  if (GetParam().largestMask >= 0) {
    EXPECT_EQ(written(*record), bytes("01 00"));
    const SharedPointer<ObjectBase> back = GetParam().create();
    EXPECT_TRUE(readFrom(*back, bytes("01 00")));
    EXPECT_TRUE(back->isEmpty());
    EXPECT_TRUE(back->compare(record.get()));
    return;
  }
  BufferStream stream;
  EXPECT_THROW((void)record->write(stream), Status);
  EXPECT_EQ(stream.buffer().size(), 0U);
  test::fill(stream, bytes("01 00"));
  try {
    (void)record->read(stream);
    ADD_FAILURE() << "a record without a wire form was read";
  } catch (Status status) {
    EXPECT_EQ(status, StatusInternal);
  }
}

TEST_P(EveryCellularRecord, RefusesOtherVersionsAndMasksAboveItsLargest) {
  if (GetParam().largestMask < 0) {
    return;
  }
  const auto above = static_cast<unsigned char>(GetParam().largestMask + 1);
  for (const Bytes& refused :
       {Bytes{0, 0}, Bytes{2, 0}, Bytes{1, above}, Bytes{1, 0xFF}, Bytes{1}, Bytes{}}) {
    EXPECT_FALSE(readFrom(*record, refused));
    EXPECT_EQ(record->values(), 0U);
  }
}

TEST_P(EveryCellularField, ReadsAsZeroBeforeItIsSet) {
  EXPECT_EQ(GetParam().get(*GetParam().create()), 0);
}

TEST_P(EveryCellularField, AcceptsEveryValueOfItsTypeAndSetsItsBit) {
  for (const long long value : {GetParam().value, GetParam().lowest, GetParam().highest, 0LL}) {
    const SharedPointer<ObjectBase> record = with(value);
    EXPECT_EQ(GetParam().get(*record), value);
    EXPECT_EQ(record->values(), GetParam().bit);
    EXPECT_TRUE(record->valueExists(GetParam().bit));
    EXPECT_FALSE(record->isEmpty());
  }
}

TEST_P(EveryCellularField, KeepsItsNumberWhenItsBitIsCleared) {
  const SharedPointer<ObjectBase> record = with(GetParam().value);
  record->unset(GetParam().bit);
  EXPECT_FALSE(record->valueExists(GetParam().bit));
  EXPECT_TRUE(record->isEmpty());
  EXPECT_EQ(GetParam().get(*record), GetParam().value);
}

TEST_P(EveryCellularField, StaysWhenOtherBitsAreCleared) {
  const SharedPointer<ObjectBase> record = with(GetParam().value);
  record->unset(~GetParam().bit);
  EXPECT_EQ(record->values(), GetParam().bit);
}

TEST_P(EveryCellularField, AloneHasTheseBytes) {
  EXPECT_EQ(written(*with(GetParam().value)), bytes(GetParam().wire));
}

TEST_P(EveryCellularField, IsReadFromTheseBytes) {
  const SharedPointer<ObjectBase> back = GetParam().create();
  ASSERT_TRUE(readFrom(*back, bytes(GetParam().wire)));
  EXPECT_EQ(back->values(), GetParam().bit);
  EXPECT_EQ(GetParam().get(*back), GetParam().value);
}

TEST_P(EveryCellularField, EndsOfItsTypeSurviveTheStream) {
  for (const long long value : {GetParam().lowest, GetParam().highest}) {
    const SharedPointer<ObjectBase> back = GetParam().create();
    ASSERT_TRUE(readFrom(*back, written(*with(value))));
    EXPECT_EQ(GetParam().get(*back), value);
  }
}

TEST_P(EveryCellularField, ShortReadLeavesTheMask) {
  const Bytes whole = bytes(GetParam().wire);
  const SharedPointer<ObjectBase> back = GetParam().create();
  EXPECT_FALSE(readFrom(*back, test::head(whole, whole.size() - 1)));
  EXPECT_EQ(back->values(), GetParam().bit);
}

TEST_P(EveryCellularField, IsComparedWhenBothHaveIt) {
  const SharedPointer<ObjectBase> record = with(GetParam().value);
  EXPECT_TRUE(record->compare(with(GetParam().value).get()));
  EXPECT_FALSE(record->compare(with(0).get()));
}

TEST_P(EveryCellularField, MakesADifferenceWhenOnlyOneHasIt) {
  const SharedPointer<ObjectBase> without = GetParam().create();
  EXPECT_FALSE(with(0)->compare(without.get()));
  EXPECT_FALSE(without->compare(with(0).get()));
}

TEST_P(EveryCellularField, IsNotComparedWhenNeitherHasIt) {
  const SharedPointer<ObjectBase> stored = with(GetParam().value);
  stored->unset(GetParam().bit);
  EXPECT_TRUE(stored->compare(GetParam().create().get()));
}

TEST_P(EveryCellularField, IsCloned) {
  const SharedPointer<ObjectBase> record = with(GetParam().value);
  const SharedPointer<ObjectBase> clone(record->clone());
  EXPECT_EQ(GetParam().get(*clone), GetParam().value);
  EXPECT_EQ(clone->values(), GetParam().bit);
}

}  // namespace
}  // namespace trelvo::schema
