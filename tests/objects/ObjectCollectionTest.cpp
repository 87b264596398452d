#include <gtest/gtest.h>
#include <trelvo/gom/ObjectCollection.h>

#include <memory>
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
using Pairs = ObjectCollection<PairRecord>;
using List = SharedPointer<Pairs>;

static_assert(std::is_base_of_v<Collection<SharedPointer<PairRecord>>, Pairs>);
static_assert(std::is_base_of_v<ISerializable, Pairs>);

List make() { return Pairs::create(); }

List listOf(std::initializer_list<unsigned char> values) {
  List list = make();
  for (const unsigned char value : values) {
    EXPECT_EQ(list->add(PairRecord::create(value, value)), StatusOk);
  }
  return list;
}

const Bytes& twoOnTheWire() {
  static const Bytes kBytes = bytes(
      "02 00 00 00"
      "01 05 06 00 00 00 06"
      "01 05 07 00 00 00 07");
  return kBytes;
}

TEST(ObjectCollection, IsMadeEmpty) {
  const List list = make();
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->count(), 0U);
  EXPECT_EQ(list->referenceCount(), 1);
}

TEST(ObjectCollection, CreateFromAnotherSharesTheElements) {
  const List source = listOf({1, 2});
  const List list = Pairs::create(*source);
  ASSERT_NE(list, nullptr);
  ASSERT_EQ(list->count(), 2U);
  EXPECT_EQ(list->items[0], source->items[0]);
  EXPECT_EQ(list->items[1], source->items[1]);
  EXPECT_EQ(source->items[0]->referenceCount(), 2);
}

TEST(ObjectCollection, CloneCopiesTheElements) {
  const List source = listOf({1, 2});
  const List clone = source->clone();
  ASSERT_NE(clone, nullptr);
  ASSERT_EQ(clone->count(), 2U);
  EXPECT_NE(clone->items[0], source->items[0]);
  EXPECT_TRUE(*clone->items[0] == *source->items[0]);
  EXPECT_EQ(clone->items[0]->referenceCount(), 1);
  EXPECT_EQ(source->items[0]->referenceCount(), 1);
}

TEST(ObjectCollection, CloneOfWhatCannotBeClonedIsEmpty) {
  const SharedPointer<ObjectCollection<SilentRecord>> list =
      ObjectCollection<SilentRecord>::create();
  EXPECT_EQ(list->clone()->count(), 0U);
  EXPECT_EQ(list->add(SilentRecord::create()), StatusOk);
  EXPECT_EQ(list->clone(), nullptr);
}

TEST(ObjectCollection, TravelsWithoutClassIds) {
  test::expectWrites(*listOf({6, 7}), twoOnTheWire());
  test::expectReads(make, twoOnTheWire(), [](const Pairs& read) {
    ASSERT_EQ(read.count(), 2U);
    EXPECT_TRUE(*read.items[0] == *PairRecord::create(6, 6));
    EXPECT_TRUE(*read.items[1] == *PairRecord::create(7, 7));
  });
  test::expectWrites(*make(), bytes("00 00 00 00"));
}

TEST(ObjectCollection, ReadAppendsAndKeepsWhatPrecedesAFailure) {
  const List list = listOf({1});
  EXPECT_TRUE(readFrom(*list, twoOnTheWire()));
  EXPECT_EQ(list->count(), 3U);
  for (unsigned int length = 0; length < twoOnTheWire().size(); ++length) {
    const List cut = listOf({1});
    EXPECT_FALSE(readFrom(*cut, test::head(twoOnTheWire(), length)));
    EXPECT_EQ(cut->count(), length < 11 ? 1U : 2U) << length;
  }
}

TEST(ObjectCollection, AHostileCountFailsInBoundedMemory) {
  const Bytes content = test::joined({bytes("FF FF FF FF"), Bytes(7, 0x01)});
  const test::Allocations allocations = test::allocationsOf([&] {
    Pairs list;
    EXPECT_FALSE(readFrom(list, content));
  });
  EXPECT_LE(allocations.bytes, 64 * content.size() + 4096);
  EXPECT_EQ(allocations.leaked, 0);
}

TEST(ObjectCollection, WithANullElementHasNoWireFormAndNoClone) {
  const List list = listOf({6});
  EXPECT_EQ(list->add(SharedPointer<PairRecord>()), StatusOk);
  BufferStream stream;
  EXPECT_FALSE(list->write(stream));
  EXPECT_EQ(list->clone(), nullptr);
}

TEST(ObjectCollection, OfAClassWithoutAWireFormThrowsUnlessEmpty) {
  ObjectCollection<SilentRecord> list;
  test::expectWrites(list, bytes("00 00 00 00"));
  EXPECT_TRUE(readFrom(list, bytes("00 00 00 00")));
  EXPECT_THROW(static_cast<void>(readFrom(list, bytes("01 00 00 00"))), Status);
  EXPECT_EQ(list.count(), 0U);
  EXPECT_EQ(list.add(SilentRecord::create()), StatusOk);
  BufferStream stream;
  try {
    static_cast<void>(list.write(stream));
    ADD_FAILURE() << "no exception";
  } catch (Status status) {
    EXPECT_EQ(status, StatusInternal);
  }
  EXPECT_EQ(test::contentOf(stream), bytes("01 00 00 00"));
}

TEST(ObjectCollection, FailsCleanlyWhenMemoryRunsOut) {
  twoOnTheWire();  // made once, and kept
  bool failed = false;
  everyAllocationFails([&failed] {
    List source;
    BufferStream stream;
    {
      const AllocationsSucceed succeed;
      source = listOf({1, 2, 3});
      test::fill(stream, twoOnTheWire());
    }
    const List list = Pairs::create(*source);
    EXPECT_TRUE(!list || list->count() == 3);
    failed = failed || !list;
    try {
      const List clone = source->clone();
      EXPECT_TRUE(!clone || clone->count() == 3);
    } catch (const std::bad_alloc&) {
      // out of an element's clone()
    }
    const List empty = make();
    const bool complete = empty && empty->read(stream);
    EXPECT_EQ(complete, empty && empty->count() == 2);
  });
  EXPECT_TRUE(failed);
}

}  // namespace
}  // namespace trelvo::gom
