#include <gtest/gtest.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/schema/ObjectBaseFactory.h>

#include <new>
#include <type_traits>

#include "Records.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/WireChecks.h"

namespace trelvo::gom {
namespace {

using test::AllocationsSucceed;
using test::Bytes;
using test::bytes;
using test::everyAllocationFails;
using test::PairRecord;
using test::readFrom;
using test::SilentRecord;
using test::written;

static_assert(std::is_abstract_v<ObjectBase>);
static_assert(std::is_base_of_v<ReferenceCountable, ObjectBase>);
static_assert(std::is_base_of_v<IValuable, ObjectBase>);
static_assert(std::is_base_of_v<ISerializable, ObjectBase>);

/// A record whose extension holds one property, a nested object of key 9.
SharedPointer<PairRecord> extended() {
  SharedPointer<PairRecord> record = PairRecord::create(1, 2);
  EXPECT_EQ(record->extension()->setGenericObjectProperty(5, GenericObject::create(9)), StatusOk);
  return record;
}

SharedPointer<GenericObject> nestedIn(const GenericObject* extension) {
  SharedPointer<GenericObject> nested;
  EXPECT_EQ(extension->getGenericObjectProperty(5, nested), StatusOk);
  return nested;
}

TEST(ObjectBase, StartsWithItsClassIdAndNoValues) {
  const PairRecord record;
  EXPECT_EQ(record.key(), PairRecord::kClassId);
  EXPECT_EQ(record.values(), 0U);
  EXPECT_FALSE(record.isExtended());
  EXPECT_EQ(record.extensionReference(), nullptr);
  EXPECT_TRUE(record.isEmpty());
  EXPECT_EQ(record.referenceCount(), 0);
}

TEST(ObjectBase, ValueExistsWantsAllBitsOfTheMask) {
  PairRecord record;
  record.valueSet(0x1);
  EXPECT_TRUE(record.valueExists(0x1));
  EXPECT_FALSE(record.valueExists(0x2));
  EXPECT_FALSE(record.valueExists(0x3)) << "all of them, not any";
  record.valueSet(0x2);
  EXPECT_TRUE(record.valueExists(0x3));
  EXPECT_FALSE(record.valueExists(0x80000003));
}

TEST(ObjectBase, ValueExistsOf0IsFalseWithAllBitsSet) {
  PairRecord record;
  record.valueSet(~0U);
  EXPECT_FALSE(record.valueExists(0));
  EXPECT_TRUE(record.valueExists(~0U));
}

TEST(ObjectBase, UnsetClearsTheBitsOfTheMask) {
  PairRecord record;
  record.valueSet(0xF0F);
  record.unset(0x30A);
  EXPECT_EQ(record.values(), 0xC05U);
  record.unset(0);
  EXPECT_EQ(record.values(), 0xC05U);
  record.unset(~0U);
  EXPECT_EQ(record.values(), 0U);
}

TEST(ObjectBase, UnsetLeavesTheStoredField) {
  const SharedPointer<PairRecord> record = PairRecord::create(7, 8);
  record->unset(PairRecord::HasAll);
  EXPECT_EQ(record->small(), 7U);
  EXPECT_EQ(record->large(), 8U);
}

TEST(ObjectBase, ValueSetAndValueUnsetTouchTheirBitsAlone) {
  PairRecord record;
  record.valueSet(0x5);
  record.valueSet(0x8);
  EXPECT_EQ(record.values(), 0xDU);
  record.valueUnset(0x4);
  EXPECT_EQ(record.values(), 0x9U);
}

TEST(ObjectBase, SettersStoreAndSetTheirBit) {
  PairRecord record;
  EXPECT_EQ(record.setLarge(9), StatusOk);
  EXPECT_EQ(record.large(), 9U);
  EXPECT_EQ(record.values(), 0x4U);
  EXPECT_FALSE(record.isEmpty());
}

TEST(ObjectBase, SettersOfNestedObjectsRefuseAnEmptyHandle) {
  SilentRecord record;
  EXPECT_EQ(record.setNested({}), StatusWrongState);
  EXPECT_EQ(record.values(), 0U);
  const SharedPointer<PairRecord> nested = PairRecord::create();
  EXPECT_EQ(record.setNested(nested), StatusOk);
  EXPECT_EQ(record.setNested({}), StatusWrongState);
  EXPECT_EQ(record.nested(), nested) << "and change nothing";
  EXPECT_EQ(record.values(), 0x1U);
}

TEST(ObjectBase, GettersOfNestedObjectsGoByTheirBit) {
  SilentRecord record;
  EXPECT_EQ(record.setNested(PairRecord::create()), StatusOk);
  record.unset(SilentRecord::HasNested);
  EXPECT_EQ(record.nested(), nullptr);
  EXPECT_NE(record.stored(), nullptr);
}

TEST(ObjectBase, WithoutAWireFormThrowsOnWriteAndRead) {
  SilentRecord record;
  BufferStream stream;
  test::fill(stream, bytes("01 00"));
  try {
    static_cast<void>(record.write(stream));
    ADD_FAILURE();
  } catch (Status status) {
    EXPECT_EQ(status, StatusInternal);
  }
  try {
    static_cast<void>(record.read(stream));
    ADD_FAILURE();
  } catch (Status status) {
    EXPECT_EQ(status, StatusInternal);
  }
  EXPECT_EQ(test::contentOf(stream), bytes("01 00"));
  EXPECT_EQ(stream.offset(), 0U);
}

TEST(ObjectBase, DumpHasNoEffect) {
  const SharedPointer<PairRecord> record = extended();
  const Bytes before = written(*record);
  record->dump();
  EXPECT_EQ(written(*record), before);
}

// --- masks on the wire ---

TEST(ObjectBase, WriteValueMask8WritesTheLowByteAlone) {
  PairRecord record;
  record.valueSet(0xABCDE5);
  for (const unsigned int allBits : {0U, 0x5U, ~0U}) {
    BufferStream stream;
    EXPECT_TRUE(record.writeValueMask8(stream, allBits));
    EXPECT_EQ(test::contentOf(stream), bytes("E5"));
  }
  test::LimitedStream full(0U);
  EXPECT_FALSE(record.writeValueMask8(full, 0xFF));
}

TEST(ObjectBase, ReadValueMask8ComparesNumbersNotBits) {
  for (const unsigned int mask : {0U, 1U, 2U, 3U, 4U, 5U}) {
    PairRecord record;
    BufferStream stream;
    EXPECT_TRUE(stream.writeUint8(static_cast<unsigned char>(mask)));
    EXPECT_TRUE(record.readValueMask8(stream, 5));
    EXPECT_EQ(record.values(), mask);
  }
}

TEST(ObjectBase, ReadValueMask8RefusesAMaskAboveTheLimitAndKeepsTheOldOne) {
  PairRecord record;
  record.valueSet(0x700);
  BufferStream stream;
  test::fill(stream, bytes("06"));
  EXPECT_FALSE(record.readValueMask8(stream, 5));
  EXPECT_EQ(record.values(), 0x700U);
  EXPECT_FALSE(record.readValueMask8(stream, 5)) << "no byte left";
  EXPECT_EQ(record.values(), 0x700U);
}

TEST(ObjectBase, ReadValueMask8ReplacesTheWholeMask) {
  PairRecord record;
  record.valueSet(0x700);
  BufferStream stream;
  test::fill(stream, bytes("FF"));
  EXPECT_TRUE(record.readValueMask8(stream, ~0U));
  EXPECT_EQ(record.values(), 0xFFU);
}

TEST(ObjectBase, OfAnApplicationTravelsInTheCommonScheme) {
  const SharedPointer<PairRecord> record = PairRecord::create(0x0A, 0x0B0C0D0E);
  test::expectWrites(*record, bytes("01 05 0E 0D 0C 0B 0A"));
  test::expectReads([] { return PairRecord::create(); }, bytes("01 05 0E 0D 0C 0B 0A"),
                    [&](const PairRecord& read) { EXPECT_TRUE(read == *record); });
}

TEST(ObjectBase, Version2FailsAndClearsTheMask) {
  const SharedPointer<schema::GeranCellDn> dn = schema::GeranCellDn::create(1, 2, 3, 4);
  EXPECT_FALSE(readFrom(*dn, bytes("02 0F 01 00 02 00 03 00 04 00")));
  EXPECT_EQ(dn->values(), 0U);
  EXPECT_EQ(dn->mcc(), 1U) << "the fields stay";
}

TEST(ObjectBase, AOneByteMaskAboveTheLimitFailsAndLeavesNoBit) {
  const SharedPointer<schema::GeranCellDn> dn = schema::GeranCellDn::create(1, 2, 3, 4);
  EXPECT_FALSE(readFrom(*dn, bytes("01 10 01 00 02 00 03 00 04 00")));
  EXPECT_EQ(dn->values(), 0U);
}

// --- the extension ---

TEST(ObjectBase, MakesItsExtensionOnFirstUseWithTheClassIdAsKey) {
  PairRecord record;
  GenericObject* const extension = record.extension();
  ASSERT_NE(extension, nullptr);
  EXPECT_EQ(extension->key(), PairRecord::kClassId);
  EXPECT_EQ(extension->propertyCount(), 0U);
  EXPECT_EQ(record.extension(), extension);
  EXPECT_EQ(record.extensionReference(), extension);
  EXPECT_TRUE(record.isExtended());
}

TEST(ObjectBase, DeleteExtensionDropsIt) {
  const SharedPointer<PairRecord> record = extended();
  record->deleteExtension();
  EXPECT_FALSE(record->isExtended());
  EXPECT_EQ(record->extensionReference(), nullptr);
  record->deleteExtension();
  EXPECT_FALSE(record->isExtended());
}

TEST(ObjectBase, IsEmptyLooksIntoTheExtension) {
  PairRecord record;
  ASSERT_NE(record.extension(), nullptr);
  EXPECT_TRUE(record.isEmpty()) << "an extension without properties counts for nothing";
  EXPECT_EQ(record.extension()->setInt8Property(1, 1), StatusOk);
  EXPECT_FALSE(record.isEmpty());
  EXPECT_EQ(record.values(), 0U);
}

TEST(ObjectBase, TheExtensionIsNotOnTheWire) {
  EXPECT_EQ(written(*extended()), written(*PairRecord::create(1, 2)));
}

TEST(ObjectBase, AssignmentSharesTheExtension) {
  const SharedPointer<PairRecord> source = extended();
  PairRecord target;
  target = *source;
  EXPECT_EQ(target.extensionReference(), source->extensionReference());
  EXPECT_EQ(target.values(), source->values());
  const PairRecord copy(*source);
  EXPECT_EQ(copy.extensionReference(), source->extensionReference());
  EXPECT_EQ(copy.values(), source->values());
  EXPECT_EQ(copy.key(), source->key());
  EXPECT_EQ(copy.referenceCount(), 0);
}

TEST(ObjectBase, AssignmentTakesTheClassId) {
  PairRecord target;
  const SilentRecord source;
  static_cast<ObjectBase&>(target) = source;
  EXPECT_EQ(target.key(), source.key());
}

TEST(ObjectBase, AssignmentToItselfDoesNothing) {
  const SharedPointer<PairRecord> record = extended();
  const GenericObject* const extension = record->extensionReference();
  const PairRecord& same = *record;
  *record = same;
  EXPECT_EQ(record->extensionReference(), extension);
  EXPECT_EQ(record->values(), 0x5U);
}

TEST(ObjectBase, AssignmentOfAnUnextendedRecordDropsTheExtension) {
  const SharedPointer<PairRecord> target = extended();
  *target = PairRecord();
  EXPECT_FALSE(target->isExtended());
}

TEST(ObjectBase, CopyGivesAnExtensionOfItsOwnWithSharedValues) {
  const SharedPointer<PairRecord> source = extended();
  PairRecord target;
  EXPECT_EQ(target.copy(*source), StatusOk);
  ASSERT_TRUE(target.isExtended());
  EXPECT_NE(target.extensionReference(), source->extensionReference());
  EXPECT_EQ(nestedIn(target.extensionReference()), nestedIn(source->extensionReference()));
  EXPECT_EQ(target.values(), 0x5U);
}

TEST(ObjectBase, CopyOfAnUnextendedRecordDropsTheExtension) {
  const SharedPointer<PairRecord> target = extended();
  EXPECT_EQ(target->copy(PairRecord()), StatusOk);
  EXPECT_FALSE(target->isExtended());
  EXPECT_EQ(target->values(), 0U);
}

TEST(ObjectBase, CloneFromCopiesTheExtensionDeeply) {
  const SharedPointer<PairRecord> source = extended();
  PairRecord target;
  EXPECT_EQ(target.cloneFrom(*source), StatusOk);
  ASSERT_TRUE(target.isExtended());
  EXPECT_NE(nestedIn(target.extensionReference()), nestedIn(source->extensionReference()));
  EXPECT_EQ(*target.extensionReference(), *source->extensionReference());
  EXPECT_EQ(target.values(), 0x5U);
  EXPECT_EQ(target.key(), PairRecord::kClassId);
  EXPECT_EQ(target.small(), 0U) << "fields are the class's own business";
}

TEST(ObjectBase, CloneFromAnUnextendedRecordDropsTheExtension) {
  const SharedPointer<PairRecord> target = extended();
  EXPECT_EQ(target->cloneFrom(SilentRecord()), StatusOk);
  EXPECT_FALSE(target->isExtended());
  EXPECT_EQ(target->values(), 0U);
  EXPECT_EQ(target->key(), 77U);
}

TEST(ObjectBase, CloneFromOutOfMemoryLeavesNoValuesNoExtensionAndItsKey) {
  bool failed = false;
  everyAllocationFails([&failed] {
    SharedPointer<PairRecord> source;
    SharedPointer<ObjectBase> target;
    {
      const AllocationsSucceed succeed;
      source = extended();
      target = new SilentRecord;
      EXPECT_NE(target->extension(), nullptr);
    }
    const Status status = target->cloneFrom(*source);
    const AllocationsSucceed succeed;
    if (status == StatusOk) {
      EXPECT_TRUE(*target == *source);
      return;
    }
    failed = true;
    EXPECT_EQ(status, StatusOutOfMemory);
    EXPECT_EQ(target->key(), 77U);
    EXPECT_EQ(target->values(), 0U);
    EXPECT_FALSE(target->isExtended());
  });
  EXPECT_TRUE(failed);
}

TEST(ObjectBase, CopyOutOfMemoryGivesStatusOutOfMemory) {
  bool failed = false;
  everyAllocationFails([&failed] {
    SharedPointer<PairRecord> source;
    PairRecord target;
    {
      const AllocationsSucceed succeed;
      source = extended();
    }
    const Status status = target.copy(*source);
    failed = failed || status != StatusOk;
    EXPECT_EQ(status, target.isExtended() ? StatusOk : StatusOutOfMemory);
  });
  EXPECT_TRUE(failed);
}

TEST(ObjectBase, ExtensionIsNullWhenMemoryRunsOut) {
  bool failed = false;
  everyAllocationFails([&failed] {
    PairRecord record;
    failed = record.extension() == nullptr || failed;
  });
  EXPECT_TRUE(failed);
}

// --- equality ---

TEST(ObjectBase, EqualityWantsClassIdAndMask) {
  PairRecord a;
  PairRecord b;
  EXPECT_TRUE(static_cast<ObjectBase&>(a) == b);
  b.valueSet(0x100);
  EXPECT_FALSE(static_cast<ObjectBase&>(a) == b);
  EXPECT_TRUE(static_cast<ObjectBase&>(a) != b);
  const SilentRecord other;
  EXPECT_FALSE(static_cast<ObjectBase&>(a) == other);
}

TEST(ObjectBase, EqualityLooksIntoExtensions) {
  const SharedPointer<PairRecord> a = extended();
  const SharedPointer<PairRecord> b = extended();
  EXPECT_TRUE(*a == *b) << "two extensions compare by content";
  EXPECT_EQ(b->extension()->setInt8Property(6, 1), StatusOk);
  EXPECT_FALSE(*a == *b);
  b->deleteExtension();
  EXPECT_FALSE(*a == *b);
  EXPECT_FALSE(*b == *a);
  a->deleteExtension();
  EXPECT_TRUE(*a == *b);
  ASSERT_NE(a->extension(), nullptr);
  EXPECT_FALSE(*a == *b) << "an empty extension is one too";
}

TEST(ObjectBase, CompareWantsTheSameClass) {
  const SharedPointer<PairRecord> a = PairRecord::create(1, 2);
  EXPECT_TRUE(a->compare(PairRecord::create(1, 2).get()));
  EXPECT_FALSE(a->compare(PairRecord::create(1, 3).get()));
  EXPECT_FALSE(a->compare(nullptr));
  const SilentRecord other;
  EXPECT_FALSE(a->compare(&other));
}

TEST(ObjectBase, ClonesHaveCount0UntilAHandleAdoptsThem) {
  const SharedPointer<PairRecord> source = extended();
  ObjectBase* const clone = source->clone();
  ASSERT_NE(clone, nullptr);
  EXPECT_EQ(clone->referenceCount(), 0);
  const SharedPointer<ObjectBase> handle(clone);
  EXPECT_EQ(clone->referenceCount(), 1);
  EXPECT_TRUE(source->compare(clone));
}

// --- the factory ---

TEST(ObjectBaseFactory, ServesEveryClassIdFrom100To135) {
  for (unsigned int id = 100; id <= 135; ++id) {
    const SharedPointer<ObjectBase> record =
        schema::ObjectBaseFactory::createObject(static_cast<unsigned short>(id));
    ASSERT_NE(record, nullptr) << id;
    EXPECT_EQ(record->key(), id);
    EXPECT_EQ(record->referenceCount(), 1);
  }
}

TEST(ObjectBaseFactory, ThrowsForEveryOtherClassId) {
  for (unsigned int id = 0; id <= 0xFFFF; ++id) {
    if (id == 100) {
      id = 136;
    }
    try {
      static_cast<void>(schema::ObjectBaseFactory::createObject(static_cast<unsigned short>(id)));
      ADD_FAILURE() << id;
    } catch (Status status) {
      EXPECT_EQ(status, StatusInternal);
    }
  }
}

TEST(ObjectBaseFactory, GivesAnEmptyHandleWhenMemoryRunsOut) {
  for (unsigned int id = 100; id <= 135; ++id) {
    SCOPED_TRACE(id);
    bool failed = false;
    EXPECT_GE(everyAllocationFails([&failed, id] {
                const SharedPointer<ObjectBase> record =
                    schema::ObjectBaseFactory::createObject(static_cast<unsigned short>(id));
                failed = !record || failed;
              }),
              1U);
    EXPECT_TRUE(failed);
  }
}

}  // namespace
}  // namespace trelvo::gom
