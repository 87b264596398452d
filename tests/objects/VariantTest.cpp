#include <gtest/gtest.h>
#include <trelvo/gom/CharacterData.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/ValueCollection.h>
#include <trelvo/gom/Variant.h>
#include <trelvo/schema/GeranCellDn.h>

#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <tuple>
#include <type_traits>

#include "Records.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/WireChecks.h"

namespace trelvo::gom {
namespace {

using schema::GeranCellDn;
using test::AllocationsSucceed;
using test::Bytes;
using test::bytes;
using test::everyAllocationFails;
using test::expectReads;
using test::expectWrites;
using test::PairRecord;
using test::readFrom;
using test::SilentRecord;
using test::written;

static_assert(std::is_base_of_v<ISerializable, Variant>);
static_assert(!std::is_base_of_v<ReferenceCountable, Variant>, "a variant is not counted");

/// Table, key, tag and eight bytes of value, and nothing else.
struct VariantTwin {
  virtual ~VariantTwin() = default;
  unsigned short key = 0;
  unsigned short type = 0;
  unsigned long long value = 0;
};
static_assert(sizeof(Variant) == sizeof(VariantTwin));

SharedPointer<CharacterData> text(const char* content) {
  return CharacterData::create(content, static_cast<unsigned int>(std::strlen(content)));
}

SharedPointer<ValueCollection> listOf(unsigned char value) {
  SharedPointer<ValueCollection> list = ValueCollection::create();
  Variant* const item = Variant::create();
  EXPECT_EQ(item->setUint8Value(value), StatusOk);
  EXPECT_EQ(list->add(item), StatusOk);
  return list;
}

SharedPointer<GenericObject> objectOf(unsigned short key) {
  SharedPointer<GenericObject> object = GenericObject::create(key);
  EXPECT_EQ(object->setUint8Property(1, 2), StatusOk);
  return object;
}

SharedPointer<ObjectBase> recordOf(unsigned char small) { return PairRecord::create(small, 2); }

/// One row of the table of types.
template <class T>
struct Row {
  const char* name;
  unsigned short tag;
  Status (Variant::*set)(T);
  Status (Variant::*get)(T&) const;
  T value;
  T other;
  const char* payload;  // of `value`
};

const auto kScalars = std::make_tuple(
    Row<signed char>{"int8", 1, &Variant::setInt8Value, &Variant::getInt8Value, -2, 3, "FE"},
    Row<unsigned char>{"uint8", 2, &Variant::setUint8Value, &Variant::getUint8Value, 0xFE, 3, "FE"},
    Row<short>{"int16", 3, &Variant::setInt16Value, &Variant::getInt16Value, -2, 3, "FE FF"},
    Row<unsigned short>{"uint16", 4, &Variant::setUint16Value, &Variant::getUint16Value, 0xABCD, 3,
                        "CD AB"},
    Row<int>{"int32", 5, &Variant::setInt32Value, &Variant::getInt32Value,
             std::numeric_limits<int>::min(), 3, "00 00 00 80"},
    Row<unsigned int>{"uint32", 6, &Variant::setUint32Value, &Variant::getUint32Value, 0x12345678U,
                      3, "78 56 34 12"},
    Row<long long>{"int64", 7, &Variant::setInt64Value, &Variant::getInt64Value, -2, 3,
                   "FE FF FF FF FF FF FF FF"},
    Row<unsigned long long>{"uint64", 8, &Variant::setUint64Value, &Variant::getUint64Value,
                            0x123456789ABCDEF0U, 3, "F0 DE BC 9A 78 56 34 12"},
    Row<float>{"float", 9, &Variant::setFloatValue, &Variant::getFloatValue, 1.5F, 3,
               "00 00 C0 3F"},
    Row<double>{"double", 10, &Variant::setDoubleValue, &Variant::getDoubleValue, -2.5, 3,
                "00 00 00 00 00 00 04 C0"},
    Row<bool>{"boolean", 11, &Variant::setBooleanValue, &Variant::getBooleanValue, true, false,
              "01"});

template <class Check>
void forEachScalar(Check check) {
  std::apply(
      [&check](const auto&... rows) {
        (
            [&](const auto& row) {
              SCOPED_TRACE(row.name);
              check(row);
            }(rows),
            ...);
      },
      kScalars);
}

/// A blank variant of every type but the given one, and with a value.
void forEachTypeBut(unsigned short tag, const std::function<void(Variant&)>& check) {
  const auto run = [&](Variant& variant) {
    if (variant.dataType() != tag) {
      SCOPED_TRACE(variant.dataType());
      check(variant);
    }
  };
  forEachScalar([&](const auto& row) {
    Variant variant(9);
    EXPECT_EQ((variant.*row.set)(row.value), StatusOk);
    run(variant);
  });
  Variant string(9), object(9), record(9), list(9);
  EXPECT_EQ(string.setStringValue(text("x")), StatusOk);
  EXPECT_EQ(object.setGenericObjectValue(objectOf(5)), StatusOk);
  EXPECT_EQ(record.setObjectValue(PairRecord::create(1, 2)), StatusOk);
  EXPECT_EQ(list.setCollectionValue(listOf(1)), StatusOk);
  for (Variant* const variant : {&string, &object, &record, &list}) {
    run(*variant);
  }
}

// --- making ---

TEST(Variant, IsBlankByDefault) {
  const Variant variant;
  EXPECT_EQ(variant.key(), 0U);
  EXPECT_EQ(variant.dataType(), Variant::TypeNone);
  expectWrites(variant, bytes("00 00 00 00"));
  const Variant keyed(0x1234);
  EXPECT_EQ(keyed.key(), 0x1234U);
  EXPECT_EQ(keyed.dataType(), Variant::TypeNone);
  expectWrites(keyed, bytes("00 00 34 12"));
}

TEST(Variant, CreateMakesABlankOne) {
  const std::unique_ptr<Variant> variant(Variant::create());
  ASSERT_NE(variant, nullptr);
  EXPECT_TRUE(*variant == Variant());
}

TEST(Variant, CopiesTakeKeyAndValue) {
  forEachScalar([](const auto& row) {
    Variant variant(5);
    EXPECT_EQ((variant.*row.set)(row.value), StatusOk);
    const Variant copy(variant);
    EXPECT_TRUE(copy == variant);
    EXPECT_EQ(copy.key(), 5U);
    const Variant renamed(6, variant);
    EXPECT_EQ(renamed.key(), 6U);
    EXPECT_EQ(renamed.dataType(), row.tag);
    EXPECT_FALSE(renamed == variant) << "keys count";
  });
}

TEST(Variant, CopiesShareTheirTarget) {
  const SharedPointer<GenericObject> object = objectOf(7);
  Variant variant(1);
  EXPECT_EQ(variant.setGenericObjectValue(object), StatusOk);
  EXPECT_EQ(object->referenceCount(), 2);
  {
    const Variant copy(variant);
    const Variant renamed(2, variant);
    Variant assigned;
    assigned = variant;
    EXPECT_EQ(object->referenceCount(), 5);
    EXPECT_EQ(object->setUint8Property(1, 99), StatusOk);
    EXPECT_TRUE(copy == variant) << "a change shows through the copy";
    EXPECT_TRUE(assigned == variant);
  }
  EXPECT_EQ(object->referenceCount(), 2);
}

TEST(Variant, MovingLeavesABlank) {
  const SharedPointer<GenericObject> object = objectOf(7);
  Variant source(3);
  EXPECT_EQ(source.setGenericObjectValue(object), StatusOk);
  Variant moved(std::move(source));
  EXPECT_EQ(source.dataType(), Variant::TypeNone);  // NOLINT(bugprone-use-after-move): promised
  EXPECT_EQ(object->referenceCount(), 2);
  EXPECT_EQ(moved.key(), 3U);
  Variant assigned;
  assigned = std::move(moved);
  EXPECT_EQ(moved.dataType(), Variant::TypeNone);  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(object->referenceCount(), 2);
  EXPECT_EQ(assigned.dataType(), Variant::TypeGenericObject);
}

// --- setters and getters ---

TEST(Variant, ScalarsAreSetReplacedAndGot) {
  forEachScalar([](const auto& row) {
    Variant variant(5);
    EXPECT_EQ((variant.*row.set)(row.other), StatusOk);
    EXPECT_EQ(variant.dataType(), row.tag);
    EXPECT_EQ((variant.*row.set)(row.value), StatusOk) << "the same type replaces";
    auto value = row.other;
    EXPECT_EQ((variant.*row.get)(value), StatusOk);
    EXPECT_EQ(value, row.value);
    EXPECT_EQ(variant.key(), 5U);
  });
}

TEST(Variant, ScalarsNeverConvert) {
  forEachScalar([](const auto& row) {
    forEachTypeBut(row.tag, [&row](Variant& variant) {
      const Bytes before = variant.dataType() == Variant::TypeObject ? Bytes() : written(variant);
      const unsigned short type = variant.dataType();
      EXPECT_EQ((variant.*row.set)(row.value), StatusWrongState);
      auto value = row.other;
      EXPECT_EQ((variant.*row.get)(value), StatusWrongState);
      EXPECT_EQ(value, row.other) << "the argument stays";
      EXPECT_EQ(variant.dataType(), type);
      if (!before.empty()) {
        EXPECT_EQ(written(variant), before);
      }
    });
  });
}

TEST(Variant, GettersRefuseABlank) {
  forEachScalar([](const auto& row) {
    const Variant variant;
    auto value = row.other;
    EXPECT_EQ((variant.*row.get)(value), StatusWrongState);
    EXPECT_EQ(value, row.other);
  });
  const Variant variant;
  SharedPointer<CharacterData> string = text("kept");
  SharedPointer<GenericObject> object;
  SharedPointer<ObjectBase> record;
  SharedPointer<ValueCollection> list;
  EXPECT_EQ(variant.getStringValue(string), StatusWrongState);
  EXPECT_NE(string, nullptr);
  EXPECT_EQ(variant.getGenericObjectValue(object), StatusWrongState);
  EXPECT_EQ(variant.getObjectValue(record), StatusWrongState);
  EXPECT_EQ(variant.getCollectionValue(list), StatusWrongState);
}

template <class T>
struct HandleRow {
  unsigned short tag;
  Status (Variant::*set)(const SharedPointer<T>&);
  Status (Variant::*get)(SharedPointer<T>&) const;
};

template <class T>
void expectHandleType(const HandleRow<T>& row, const SharedPointer<T>& first,
                      const SharedPointer<T>& second) {
  SCOPED_TRACE(row.tag);
  Variant variant(5);
  EXPECT_EQ((variant.*row.set)({}), StatusWrongState) << "no empty handles";
  EXPECT_EQ(variant.dataType(), Variant::TypeNone);
  EXPECT_EQ((variant.*row.set)(first), StatusOk);
  EXPECT_EQ(variant.dataType(), row.tag);
  EXPECT_EQ(first->referenceCount(), 2) << "shared, not copied";
  EXPECT_EQ((variant.*row.set)({}), StatusWrongState);
  EXPECT_EQ(first->referenceCount(), 2);
  SharedPointer<T> got;
  EXPECT_EQ((variant.*row.get)(got), StatusOk);
  EXPECT_EQ(got, first);
  EXPECT_EQ((variant.*row.set)(second), StatusOk);
  EXPECT_EQ(second->referenceCount(), 2);
  EXPECT_EQ(first->referenceCount(), 2) << "the variant let go, `got` did not";
  EXPECT_EQ((variant.*row.set)(second), StatusOk) << "the one it already holds";
  EXPECT_EQ(second->referenceCount(), 2);
  forEachTypeBut(row.tag, [&](Variant& other) {
    EXPECT_EQ((other.*row.set)(first), StatusWrongState);
    EXPECT_EQ((other.*row.get)(got), StatusWrongState);
  });
  EXPECT_EQ(first->referenceCount(), 2);
  EXPECT_EQ(got, first);
  variant = Variant();
  EXPECT_EQ(second->referenceCount(), 1);
}

TEST(Variant, HandlesAreSharedReplacedAndGot) {
  expectHandleType<CharacterData>({12, &Variant::setStringValue, &Variant::getStringValue},
                                  text("a"), text("b"));
  expectHandleType<GenericObject>(
      {13, &Variant::setGenericObjectValue, &Variant::getGenericObjectValue}, objectOf(7),
      objectOf(8));
  expectHandleType<ObjectBase>({14, &Variant::setObjectValue, &Variant::getObjectValue},
                               recordOf(1), recordOf(3));
  expectHandleType<ValueCollection>(
      {15, &Variant::setCollectionValue, &Variant::getCollectionValue}, listOf(1), listOf(2));
}

TEST(Variant, DumpHasNoEffect) {
  Variant variant(5);
  EXPECT_EQ(variant.setUint8Value(1), StatusOk);
  variant.dump();
  expectWrites(variant, bytes("02 00 05 00 01"));
}

// --- assigning and cloning ---

TEST(Variant, AssignmentDropsTheOldValue) {
  const SharedPointer<GenericObject> object = objectOf(7);
  Variant variant(1);
  EXPECT_EQ(variant.setGenericObjectValue(object), StatusOk);
  Variant scalar(2);
  EXPECT_EQ(scalar.setUint16Value(0x0102), StatusOk);
  variant = scalar;
  EXPECT_EQ(object->referenceCount(), 1);
  EXPECT_TRUE(variant == scalar);
  EXPECT_EQ(variant.key(), 2U);
  variant = Variant(9);
  EXPECT_TRUE(variant == Variant(9)) << "the scalar's bytes are gone";
}

TEST(Variant, AssignmentToItselfDoesNothing) {
  const SharedPointer<GenericObject> object = objectOf(7);
  Variant variant(1);
  EXPECT_EQ(variant.setGenericObjectValue(object), StatusOk);
  Variant& same = variant;
  variant = same;
  EXPECT_EQ(object->referenceCount(), 2);
  variant = std::move(same);
  EXPECT_EQ(object->referenceCount(), 2);
  EXPECT_EQ(variant.dataType(), Variant::TypeGenericObject);
}

TEST(Variant, AssignmentFromInsideTheOldTarget) {
  Variant variant;
  {
    const SharedPointer<ValueCollection> list = listOf(0x42);
    EXPECT_EQ(variant.setCollectionValue(list), StatusOk);
    const Variant& inside = *list->items[0];
    const_cast<SharedPointer<ValueCollection>&>(list).clear();
    variant = inside;
  }
  unsigned char value = 0;
  EXPECT_EQ(variant.getUint8Value(value), StatusOk);
  EXPECT_EQ(value, 0x42);
}

TEST(Variant, CloneFromCopiesTheTarget) {
  const SharedPointer<GenericObject> object = objectOf(7);
  Variant source(1);
  EXPECT_EQ(source.setGenericObjectValue(object), StatusOk);
  Variant copy;
  EXPECT_EQ(copy.cloneFrom(source), StatusOk);
  EXPECT_EQ(object->referenceCount(), 2);
  EXPECT_TRUE(copy == source);
  EXPECT_EQ(object->setUint8Property(1, 99), StatusOk);
  EXPECT_FALSE(copy == source) << "a change does not show through the copy";
}

TEST(Variant, ClonesOfEveryTypeAreEqual) {
  forEachTypeBut(0, [](Variant& variant) {
    Variant copy;
    EXPECT_EQ(copy.cloneFrom(variant), StatusOk);
    EXPECT_TRUE(copy == variant);
    const std::unique_ptr<Variant> clone(variant.clone());
    ASSERT_NE(clone, nullptr);
    EXPECT_TRUE(*clone == variant);
    EXPECT_EQ(clone->key(), 9U);
  });
  const std::unique_ptr<Variant> blank(Variant(4).clone());
  EXPECT_TRUE(*blank == Variant(4));
}

TEST(Variant, CloneFromItselfIsOk) {
  const SharedPointer<GenericObject> object = objectOf(7);
  Variant variant(1);
  EXPECT_EQ(variant.setGenericObjectValue(object), StatusOk);
  EXPECT_EQ(variant.cloneFrom(variant), StatusOk);
  EXPECT_EQ(object->referenceCount(), 2);
}

TEST(Variant, CloneFromReleasesAnEarlierTarget) {
  const SharedPointer<GenericObject> object = objectOf(7);
  Variant variant(1);
  EXPECT_EQ(variant.setGenericObjectValue(object), StatusOk);
  Variant scalar(2);
  EXPECT_EQ(scalar.setUint8Value(5), StatusOk);
  EXPECT_EQ(variant.cloneFrom(scalar), StatusOk);
  EXPECT_EQ(object->referenceCount(), 1);
  EXPECT_TRUE(variant == scalar);
}

TEST(Variant, CloneOfARecordThatCannotBeClonedIsOutOfMemory) {
  Variant source(1);
  EXPECT_EQ(source.setObjectValue(SharedPointer<SilentRecord>(new SilentRecord)), StatusOk);
  Variant copy;
  EXPECT_EQ(copy.cloneFrom(source), StatusOutOfMemory);
  SharedPointer<ObjectBase> record = PairRecord::create();
  EXPECT_EQ(copy.getObjectValue(record), StatusOk);
  EXPECT_EQ(record, nullptr) << "the copy holds an empty handle";
  EXPECT_EQ(source.clone(), nullptr);
}

TEST(Variant, FailsCleanlyWhenMemoryRunsOut) {
  everyAllocationFails([] {
    const std::unique_ptr<Variant> variant(Variant::create());
    EXPECT_TRUE(!variant || *variant == Variant());
  });
  bool failed = false;
  everyAllocationFails([&failed] {
    Variant source(1);
    Variant copy;
    {
      const AllocationsSucceed succeed;
      const SharedPointer<GenericObject> object = objectOf(7);
      EXPECT_EQ(object->setStringProperty(2, text("some text")), StatusOk);
      EXPECT_EQ(object->setCollectionProperty(3, listOf(5)), StatusOk);
      EXPECT_EQ(source.setGenericObjectValue(object), StatusOk);
    }
    const Status status = copy.cloneFrom(source);
    const std::unique_ptr<Variant> clone(source.clone());
    failed = failed || status != StatusOk;
    EXPECT_EQ(status, copy == source ? StatusOk : StatusOutOfMemory);
    EXPECT_TRUE(!clone || *clone == source);
  });
  EXPECT_TRUE(failed);
}

// --- equality ---

TEST(Variant, EqualityWantsKeyAndType) {
  Variant a(1);
  Variant b(1);
  EXPECT_TRUE(a == b);
  EXPECT_EQ(a.setUint8Value(0), StatusOk);
  EXPECT_EQ(b.setInt8Value(0), StatusOk);
  EXPECT_FALSE(a == b);
  EXPECT_TRUE(a != b);
  EXPECT_FALSE(Variant(1) == Variant(2));
}

TEST(Variant, ScalarsCompareByTheirEightBytes) {
  Variant zero(1), minusZero(1);
  EXPECT_EQ(zero.setDoubleValue(0.0), StatusOk);
  EXPECT_EQ(minusZero.setDoubleValue(-0.0), StatusOk);
  EXPECT_FALSE(zero == minusZero);
  Variant nan(1), alsoNan(1);
  EXPECT_EQ(nan.setDoubleValue(std::numeric_limits<double>::quiet_NaN()), StatusOk);
  EXPECT_EQ(alsoNan.setDoubleValue(std::numeric_limits<double>::quiet_NaN()), StatusOk);
  EXPECT_TRUE(nan == alsoNan);
}

TEST(Variant, BytesBeyondASmallScalarCount) {
  // A scalar that is read over a wider one leaves the wider one's upper bytes in memory.
  Variant used(1);
  EXPECT_TRUE(readFrom(used, bytes("08 00 01 00 11 22 33 44 55 66 77 88")));
  EXPECT_TRUE(readFrom(used, bytes("02 00 01 00 11")));
  Variant fresh(1);
  EXPECT_EQ(fresh.setUint8Value(0x11), StatusOk);
  EXPECT_FALSE(used == fresh);
  EXPECT_EQ(written(used), written(fresh));
}

TEST(Variant, TargetsCompareByTheirContent) {
  Variant a(1), b(1);
  EXPECT_EQ(a.setStringValue(text("x")), StatusOk);
  EXPECT_EQ(b.setStringValue(text("x")), StatusOk);
  EXPECT_TRUE(a == b);
  EXPECT_EQ(b.setStringValue(text("y")), StatusOk);
  EXPECT_FALSE(a == b);

  Variant object(1), other(1);
  EXPECT_EQ(object.setGenericObjectValue(objectOf(7)), StatusOk);
  EXPECT_EQ(other.setGenericObjectValue(objectOf(7)), StatusOk);
  EXPECT_TRUE(object == other);
  EXPECT_EQ(other.setGenericObjectValue(objectOf(8)), StatusOk);
  EXPECT_FALSE(object == other);

  Variant list(1), otherList(1);
  EXPECT_EQ(list.setCollectionValue(listOf(1)), StatusOk);
  EXPECT_EQ(otherList.setCollectionValue(listOf(1)), StatusOk);
  EXPECT_TRUE(list == otherList);
  EXPECT_EQ(otherList.setCollectionValue(listOf(2)), StatusOk);
  EXPECT_FALSE(list == otherList);

  Variant record(1), otherRecord(1);
  EXPECT_EQ(record.setObjectValue(PairRecord::create(1, 2)), StatusOk);
  EXPECT_EQ(otherRecord.setObjectValue(PairRecord::create(1, 2)), StatusOk);
  EXPECT_TRUE(record == otherRecord);
  EXPECT_EQ(otherRecord.setObjectValue(PairRecord::create(1, 3)), StatusOk);
  EXPECT_FALSE(record == otherRecord);
  EXPECT_EQ(otherRecord.setObjectValue(GeranCellDn::create()), StatusOk);
  EXPECT_FALSE(record == otherRecord) << "another class";
}

// --- the wire ---

TEST(Variant, ScalarsTravelWithTagKeyAndPayload) {
  forEachScalar([](const auto& row) {
    Variant variant(0x0506);
    EXPECT_EQ((variant.*row.set)(row.value), StatusOk);
    BufferStream header;
    EXPECT_TRUE(header.writeUint16(row.tag));
    EXPECT_TRUE(header.writeUint16(0x0506));
    const Bytes expected = test::joined({test::contentOf(header), bytes(row.payload)});
    expectWrites(variant, expected);
    expectReads([] { return std::make_unique<Variant>(); }, expected,
                [&](const Variant& read) { EXPECT_TRUE(read == variant); });
    test::expectCutOffFails([] { return std::make_unique<Variant>(); }, expected,
                            [](const Variant&) {});
  });
}

TEST(Variant, StringsTravel) {
  Variant variant(0x0506);
  EXPECT_EQ(variant.setStringValue(text("hi")), StatusOk);
  const Bytes expected = bytes("0C 00 06 05 02 00 00 00 68 69");
  expectWrites(variant, expected);
  expectReads([] { return std::make_unique<Variant>(); }, expected,
              [&](const Variant& read) { EXPECT_TRUE(read == variant); });
}

TEST(Variant, GenericObjectsTravel) {
  Variant variant(0x0506);
  EXPECT_EQ(variant.setGenericObjectValue(objectOf(7)), StatusOk);
  const Bytes expected = bytes("0D 00 06 05 07 00 01 00 00 00 02 00 01 00 02");
  expectWrites(variant, expected);
  expectReads([] { return std::make_unique<Variant>(); }, expected,
              [&](const Variant& read) { EXPECT_TRUE(read == variant); });
}

TEST(Variant, FlatRecordsTravelBehindTheirClassId) {
  Variant variant(0x0506);
  EXPECT_EQ(variant.setObjectValue(GeranCellDn::create(0x0102, 0x0304, 0x0506, 0x0708)), StatusOk);
  const Bytes expected = bytes("0E 00 06 05 64 00 01 0F 02 01 04 03 06 05 08 07");
  expectWrites(variant, expected);
  expectReads([] { return std::make_unique<Variant>(); }, expected,
              [&](const Variant& read) { EXPECT_TRUE(read == variant); });
}

TEST(Variant, ListsTravel) {
  Variant variant(0x0506);
  EXPECT_EQ(variant.setCollectionValue(listOf(9)), StatusOk);
  const Bytes expected = bytes("0F 00 06 05 01 00 00 00 02 00 00 00 09");
  expectWrites(variant, expected);
  expectReads([] { return std::make_unique<Variant>(); }, expected,
              [&](const Variant& read) { EXPECT_TRUE(read == variant); });
}

TEST(Variant, ABlankReadsBackEqual) {
  expectReads([] { return std::make_unique<Variant>(); }, bytes("00 00 06 05"),
              [](const Variant& read) { EXPECT_TRUE(read == Variant(0x0506)); });
}

TEST(Variant, AnyBooleanByteBut0ReadsAsTrue) {
  for (const char* const wire : {"0B 00 00 00 01", "0B 00 00 00 02", "0B 00 00 00 FF"}) {
    Variant variant;
    EXPECT_TRUE(readFrom(variant, bytes(wire)));
    bool value = false;
    EXPECT_EQ(variant.getBooleanValue(value), StatusOk);
    EXPECT_TRUE(value);
    EXPECT_EQ(written(variant), bytes("0B 00 00 00 01"));
  }
  Variant variant;
  EXPECT_TRUE(readFrom(variant, bytes("0B 00 00 00 00")));
  bool value = true;
  EXPECT_EQ(variant.getBooleanValue(value), StatusOk);
  EXPECT_FALSE(value);
}

TEST(Variant, AFailedScalarReadLeavesTheBytesThatArrived) {
  for (const bool inMemory : {true, false}) {
    Variant variant;
    const Bytes cut = bytes("06 00 01 00 11 22");
    EXPECT_FALSE(inMemory ? readFrom(variant, cut) : test::readFromForeign(variant, cut));
    EXPECT_EQ(variant.dataType(), Variant::TypeUint32);
    unsigned int value = 0;
    EXPECT_EQ(variant.getUint32Value(value), StatusOk);
    EXPECT_EQ(value, 0x2211U);
  }
}

TEST(Variant, ATagAbove15IsHeaderAlone) {
  for (const char* const wire : {"10 00 06 05", "FF FF 06 05", "0C 01 06 05"}) {
    expectReads([] { return std::make_unique<Variant>(); }, bytes(wire),
                [&](const Variant& read) {
                  EXPECT_GT(read.dataType(), Variant::TypeCollection);
                  EXPECT_EQ(read.key(), 0x0506U);
                  EXPECT_EQ(written(read), bytes(wire));
                  const Variant copy(read);
                  EXPECT_TRUE(copy == read);
                  Variant clone;
                  EXPECT_EQ(clone.cloneFrom(read), StatusOk);
                  EXPECT_TRUE(clone == read);
                });
  }
  Variant unknown;
  ASSERT_TRUE(readFrom(unknown, bytes("10 00 00 00")));
  EXPECT_EQ(unknown.setUint8Value(1), StatusWrongState);
  EXPECT_EQ(unknown.setStringValue(text("x")), StatusWrongState);
  unsigned char value = 0;
  EXPECT_EQ(unknown.getUint8Value(value), StatusWrongState);
}

TEST(Variant, TheBytesOfAnUnknownPayloadAreTakenForTheNextElement) {
  BufferStream stream;
  test::fill(stream, bytes("10 00 06 05 02 00 07 00 2A"));
  Variant unknown;
  Variant next;
  EXPECT_TRUE(unknown.read(stream));
  EXPECT_TRUE(next.read(stream));
  unsigned char value = 0;
  EXPECT_EQ(next.getUint8Value(value), StatusOk);
  EXPECT_EQ(value, 42U);
}

TEST(Variant, ReadReplacesAnEarlierTarget) {
  const SharedPointer<GenericObject> object = objectOf(7);
  for (const char* const wire :
       {"02 00 00 00 05", "0D 00 00 00 08 00 00 00 00 00", "00 00 00 00", "10 00 00 00"}) {
    Variant variant;
    EXPECT_EQ(variant.setGenericObjectValue(object), StatusOk);
    EXPECT_TRUE(readFrom(variant, bytes(wire)));
    EXPECT_EQ(object->referenceCount(), 1);
    EXPECT_EQ(written(variant), bytes(wire));
  }
}

TEST(Variant, ReadOverAScalarMakesNoPointerOfItsBytes) {
  for (const char* const wire : {"0C 00 00 00 05 00 00 00 61", "0D 00 00 00 05 00", "0E 00 00 00",
                                 "0F 00 00 00 01 00 00 00", "0C", "0D"}) {
    Variant variant;
    EXPECT_EQ(variant.setUint64Value(~0ULL), StatusOk);
    EXPECT_FALSE(readFrom(variant, bytes(wire)));
    const Variant copy(variant);
    EXPECT_TRUE(copy == variant);
    BufferStream stream;
    EXPECT_EQ(variant.write(stream), variant.dataType() < Variant::TypeString);
  }
}

TEST(Variant, AFailedReadOfAHandleTypeLeavesAnEmptyHandle) {
  for (const char* const wire : {"0C 00 05 00 02 00 00 00 61", "0D 00 05 00 07 00",
                                 "0E 00 05 00 64 00 02", "0F 00 05 00 01 00 00 00"}) {
    Variant variant;
    EXPECT_FALSE(readFrom(variant, bytes(wire)));
    Variant second;
    EXPECT_FALSE(test::readFromForeign(second, bytes(wire)));
    EXPECT_TRUE(variant == second) << "two empty handles of one tag";
    BufferStream stream;
    EXPECT_FALSE(variant.write(stream));
    test::LimitedStream foreign;
    EXPECT_FALSE(variant.write(foreign));
    Variant copy(variant);
    EXPECT_TRUE(copy == variant);
    EXPECT_EQ(copy.cloneFrom(variant), StatusOutOfMemory);
    EXPECT_EQ(variant.clone(), nullptr);
  }
  Variant empty;
  EXPECT_FALSE(readFrom(empty, bytes("0C 00 05 00 02 00")));
  Variant full(5);
  EXPECT_EQ(full.setStringValue(text("x")), StatusOk);
  EXPECT_FALSE(empty == full);
  EXPECT_FALSE(full == empty);
  SharedPointer<CharacterData> got = text("y");
  EXPECT_EQ(empty.getStringValue(got), StatusOk);
  EXPECT_EQ(got, nullptr);
  EXPECT_EQ(empty.setStringValue(text("z")), StatusOk) << "its type is kept, and can be filled";
  EXPECT_EQ(written(empty), bytes("0C 00 05 00 01 00 00 00 7A"));
}

TEST(Variant, WhatPrecedesAFailureIsOnTheStream) {
  Variant empty;
  EXPECT_FALSE(readFrom(empty, bytes("0C 00 05 00")));
  BufferStream memory;
  EXPECT_FALSE(empty.write(memory));
  EXPECT_EQ(test::contentOf(memory), bytes("0C 00 05 00"));
  test::LimitedStream foreign;
  EXPECT_FALSE(empty.write(foreign));
  EXPECT_EQ(foreign.taken(), bytes("0C 00 05 00"));
}

TEST(Variant, WritingInTheMiddleOfABufferKeepsWhatIsBehind) {
  forEachScalar([](const auto& row) {
    Variant variant(0x0506);
    EXPECT_EQ((variant.*row.set)(row.value), StatusOk);
    const Bytes wire = written(variant);
    BufferStream stream;
    test::fill(stream, Bytes(40, 0xEE));
    ASSERT_EQ(stream.buffer().setWritePosition(3), StatusOk);
    EXPECT_TRUE(variant.write(stream));
    EXPECT_EQ(test::contentOf(stream),
              test::joined({Bytes(3, 0xEE), wire, Bytes(40 - 3 - wire.size(), 0xEE)}));
    EXPECT_EQ(stream.buffer().writePosition(), 3 + wire.size());
    EXPECT_EQ(stream.offset(), 0U);
  });
}

TEST(Variant, AClassIdOf0Fails) {
  Variant variant;
  BufferStream stream;
  test::fill(stream, bytes("0E 00 05 00 00 00 01 00"));
  EXPECT_FALSE(variant.read(stream));
  EXPECT_EQ(stream.offset(), 6U);
}

TEST(Variant, AClassIdThatNoFactoryKnowsThrows) {
  for (const char* const wire : {"0E 00 05 00 63 00 01 00", "0E 00 05 00 88 00 01 00",
                                 "0E 00 05 00 FF FF 01 00", "0E 00 05 00 01 00 01 00"}) {
    BufferStream memory;
    test::fill(memory, bytes(wire));
    test::LimitedStream foreign(bytes(wire));
    for (IStream* const stream :
         {static_cast<IStream*>(&memory), static_cast<IStream*>(&foreign)}) {
      Variant variant;
      try {
        static_cast<void>(variant.read(*stream));
        ADD_FAILURE() << "no exception";
      } catch (Status status) {
        EXPECT_EQ(status, StatusInternal);
      }
      EXPECT_EQ(stream->offset(), 6U) << "right behind the class id";
    }
  }
}

TEST(Variant, AClassWithoutAWireFormThrowsWhenItIsRead) {
  const Bytes wire = bytes("0E 00 05 00 69 00 01 00");  // class id 105
  BufferStream memory;
  test::fill(memory, wire);
  test::LimitedStream foreign(wire);
  for (IStream* const stream : {static_cast<IStream*>(&memory), static_cast<IStream*>(&foreign)}) {
    Variant variant;
    EXPECT_THROW(static_cast<void>(variant.read(*stream)), Status);
    EXPECT_EQ(stream->offset(), 6U);
  }
}

TEST(Variant, AClassWithoutAWireFormThrowsWhenItIsWrittenAndLeavesWhatPrecedes) {
  Variant variant(5);
  EXPECT_EQ(variant.setObjectValue(SharedPointer<SilentRecord>(new SilentRecord)), StatusOk);
  BufferStream memory;
  test::fill(memory, bytes("AA"));
  EXPECT_THROW(static_cast<void>(variant.write(memory)), Status);
  EXPECT_EQ(test::contentOf(memory), bytes("AA 0E 00 05 00 4D 00"));
  EXPECT_EQ(memory.buffer().writePosition(), 7U);
  EXPECT_EQ(memory.offset(), 0U);
  test::LimitedStream foreign;
  EXPECT_THROW(static_cast<void>(variant.write(foreign)), Status);
  EXPECT_EQ(foreign.taken(), bytes("0E 00 05 00 4D 00"));
}

TEST(Variant, RecordsOfAnApplicationAreServedByTheirVirtualFunctions) {
  Variant variant(5);
  EXPECT_EQ(variant.setObjectValue(PairRecord::create(1, 2)), StatusOk);
  expectWrites(variant, bytes("0E 00 05 00 E1 10 01 05 02 00 00 00 01"));
  Variant tagged(5);
  EXPECT_EQ(tagged.setObjectValue(SharedPointer<test::TaggedCellDn>(new test::TaggedCellDn)),
            StatusOk);
  expectWrites(tagged, bytes("0E 00 05 00 64 00 AA BB"));
  Variant copy;
  EXPECT_EQ(copy.cloneFrom(tagged), StatusOk);
  EXPECT_TRUE(copy == tagged) << "cloned and compared by its own functions too";
}

TEST(Variant, ReadingFailsCleanlyWhenMemoryRunsOut) {
  const Bytes wire = bytes(
      "0D 00 05 00 07 00 05 00 00 00"
      "02 00 01 00 02"
      "0C 00 02 00 02 00 00 00 68 69"
      "0E 00 03 00 64 00 01 01 02 01"
      "0F 00 04 00 02 00 00 00 00 00 00 00 0C 00 00 00 00 00 00 00"
      "0D 00 06 00 09 00 00 00 00 00");
  for (const bool inMemory : {true, false}) {
    bool failed = false;
    everyAllocationFails([&] {
      BufferStream memory;
      std::unique_ptr<test::LimitedStream> foreign;
      Variant variant;
      {
        const AllocationsSucceed succeed;
        test::fill(memory, wire);
        foreign = std::make_unique<test::LimitedStream>(wire);
      }
      const bool complete = variant.read(inMemory ? static_cast<IStream&>(memory) : *foreign);
      failed = failed || !complete;
      const AllocationsSucceed succeed;
      if (complete) {
        EXPECT_EQ(written(variant), wire);
      } else {
        BufferStream stream;
        EXPECT_FALSE(variant.write(stream));
      }
    });
    EXPECT_TRUE(failed);
  }
}

/// A variant that writes itself in its own way.
class LoudVariant : public Variant {
 public:
  [[nodiscard]] bool write(IStream& stream) const override { return stream.writeUint8('!'); }
};

TEST(Variant, OfAnApplicationIsWrittenByItsVirtualFunctionInAList) {
  const SharedPointer<ValueCollection> list = listOf(9);
  EXPECT_EQ(list->add(new LoudVariant), StatusOk);
  EXPECT_EQ(list->add(Variant::create()), StatusOk);
  expectWrites(*list, bytes("03 00 00 00 02 00 00 00 09 21 00 00 00 00"));
}

class RefusingVariant : public Variant {
 public:
  RefusingVariant() { throw 7; }
};

TEST(Variant, AConstructorThatThrowsGivesTheMemoryBack) {
  EXPECT_THROW(std::make_unique<RefusingVariant>(), int);
  EXPECT_THROW(std::unique_ptr<Variant>(new (std::nothrow) RefusingVariant), int);
}

}  // namespace
}  // namespace trelvo::gom
