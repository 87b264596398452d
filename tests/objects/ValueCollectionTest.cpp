#include <gtest/gtest.h>
#include <trelvo/gom/CharacterData.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/ValueCollection.h>

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
using test::readFrom;
using test::written;
using List = SharedPointer<ValueCollection>;

static_assert(std::is_base_of_v<Collection<Variant*>, ValueCollection>);
static_assert(std::is_base_of_v<ISerializable, ValueCollection>);
static_assert(!std::is_copy_constructible_v<ValueCollection>, "its variants have one owner");

List make() { return ValueCollection::create(); }

/// One variant an element, under its own value as key.
List listOf(std::initializer_list<unsigned char> values) {
  List list = make();
  for (const unsigned char value : values) {
    auto item = std::make_unique<Variant>(value);
    EXPECT_EQ(item->setUint8Value(value), StatusOk);
    EXPECT_EQ(list->add(item.release()), StatusOk);
  }
  return list;
}

/// A variant that tells when it dies.
class Mortal : public Variant {
 public:
  explicit Mortal(unsigned int& deaths) : m_deaths(deaths) {}
  Mortal(const Mortal&) = delete;
  Mortal& operator=(const Mortal&) = delete;
  ~Mortal() override { ++m_deaths; }

 private:
  unsigned int& m_deaths;
};

TEST(ValueCollection, IsMadeEmpty) {
  const List list = make();
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->count(), 0U);
  EXPECT_EQ(list->referenceCount(), 1);
  const ValueCollection onTheStack;
  EXPECT_EQ(onTheStack.count(), 0U);
}

TEST(ValueCollection, DeletesItsVariantsByTheVirtualDestructor) {
  unsigned int deaths = 0;
  {
    const List list = make();
    EXPECT_EQ(list->add(new Mortal(deaths)), StatusOk);
    EXPECT_EQ(list->add(nullptr), StatusOk);
    EXPECT_EQ(list->add(new Mortal(deaths)), StatusOk);
  }
  EXPECT_EQ(deaths, 2U);
}

TEST(ValueCollection, AddTakesThePointerOver) {
  const List list = make();
  Variant* const item = Variant::create();
  EXPECT_EQ(list->add(item), StatusOk);
  EXPECT_EQ(*list->first(), item);
}

TEST(ValueCollection, EqualityGoesByElementsInOrderAndTheirKeys) {
  EXPECT_TRUE(*make() == *make());
  EXPECT_TRUE(*listOf({1, 2}) == *listOf({1, 2}));
  EXPECT_FALSE(*listOf({1, 2}) == *listOf({2, 1}));
  EXPECT_FALSE(*listOf({1, 2}) == *listOf({1}));
  EXPECT_FALSE(*listOf({1}) == *listOf({1, 2}));
  EXPECT_TRUE(*listOf({1}) != *make());
  const List keyed = make();
  auto item = std::make_unique<Variant>(static_cast<unsigned short>(9));
  EXPECT_EQ(item->setUint8Value(1), StatusOk);
  EXPECT_EQ(keyed->add(item.release()), StatusOk);
  EXPECT_FALSE(*keyed == *listOf({1})) << "the same value under another key";
}

TEST(ValueCollection, NullElementsEqualOnlyNull) {
  const List a = make();
  const List b = make();
  EXPECT_EQ(a->add(nullptr), StatusOk);
  EXPECT_EQ(b->add(nullptr), StatusOk);
  EXPECT_TRUE(*a == *b);
  EXPECT_FALSE(*a == *listOf({1}));
  EXPECT_FALSE(*listOf({1}) == *a);
}

TEST(ValueCollection, WithANullElementHasNoWireFormAndNoClone) {
  const List list = listOf({5});
  EXPECT_EQ(list->add(nullptr), StatusOk);
  EXPECT_EQ(list->add(Variant::create()), StatusOk);
  const Bytes before = bytes("03 00 00 00 02 00 05 00 05");
  BufferStream memory;
  EXPECT_FALSE(list->write(memory));
  EXPECT_EQ(test::contentOf(memory), before) << "what precedes the null is on the stream";
  test::LimitedStream foreign;
  EXPECT_FALSE(list->write(foreign));
  EXPECT_EQ(foreign.taken(), before);
  EXPECT_EQ(list->clone(), nullptr);
  list->dump();
}

TEST(ValueCollection, EmptyWritesItsCountAlone) {
  test::expectWrites(*make(), bytes("00 00 00 00"));
  test::expectReads(make, bytes("00 00 00 00"),
                    [](const ValueCollection& list) { EXPECT_EQ(list.count(), 0U); });
}

TEST(ValueCollection, Travels) {
  const List list = listOf({5, 6});
  const Bytes expected = bytes("02 00 00 00 02 00 05 00 05 02 00 06 00 06");
  test::expectWrites(*list, expected);
  test::expectReads(make, expected,
                    [&](const ValueCollection& read) { EXPECT_TRUE(read == *list); });
}

TEST(ValueCollection, ReadAppends) {
  const List list = listOf({1, 2});
  EXPECT_TRUE(readFrom(*list, written(*listOf({3, 4, 5}))));
  EXPECT_TRUE(*list == *listOf({1, 2, 3, 4, 5}));
  EXPECT_TRUE(readFrom(*list, bytes("00 00 00 00")));
  EXPECT_EQ(list->count(), 5U);
}

TEST(ValueCollection, ElementsBeforeAFailureStay) {
  const Bytes whole = written(*listOf({3, 4}));
  for (unsigned int length = 0; length < whole.size(); ++length) {
    const unsigned int read = length < 9 ? 0 : 1;
    for (const bool inMemory : {true, false}) {
      const List list = listOf({1});
      const Bytes cut = test::head(whole, length);
      EXPECT_FALSE(inMemory ? readFrom(*list, cut) : test::readFromForeign(*list, cut));
      EXPECT_EQ(list->count(), 1 + read) << "cut off behind " << length;
    }
  }
}

TEST(ValueCollection, AnElementThatThrowsLeavesTheOnesBefore) {
  const Bytes wire = bytes("02 00 00 00 02 00 03 00 03 0E 00 00 00 63 00");
  const test::Allocations allocations = test::allocationsOf([&] {
    const List list = listOf({1});
    BufferStream stream;
    test::fill(stream, wire);
    EXPECT_THROW(static_cast<void>(list->read(stream)), Status);
    EXPECT_TRUE(*list == *listOf({1, 3}));
    EXPECT_EQ(stream.offset(), wire.size());
  });
  EXPECT_EQ(allocations.leaked, 0);
}

TEST(ValueCollection, CloneCopiesDeeply) {
  const SharedPointer<GenericObject> object = GenericObject::create(7);
  const List list = listOf({5});
  auto item = std::make_unique<Variant>();
  EXPECT_EQ(item->setGenericObjectValue(object), StatusOk);
  EXPECT_EQ(list->add(item.release()), StatusOk);
  const List clone = list->clone();
  ASSERT_NE(clone, nullptr);
  EXPECT_TRUE(*clone == *list);
  EXPECT_EQ(object->referenceCount(), 2);
  EXPECT_EQ(object->setUint8Property(1, 1), StatusOk);
  EXPECT_FALSE(*clone == *list);
}

TEST(ValueCollection, CloneOfAnEmptyListIsOne) {
  const List clone = make()->clone();
  ASSERT_NE(clone, nullptr);
  EXPECT_EQ(clone->count(), 0U);
}

TEST(ValueCollection, CloneOfWhatCannotBeClonedIsEmpty) {
  const List list = listOf({5});
  auto item = std::make_unique<Variant>();
  EXPECT_EQ(item->setObjectValue(test::SilentRecord::create()), StatusOk);
  EXPECT_EQ(list->add(item.release()), StatusOk);
  EXPECT_EQ(list->clone(), nullptr);
}

TEST(ValueCollection, CreateFromAnEmptyListIsANewEmptyList) {
  const List source = make();
  const List list = ValueCollection::create(*source);
  ASSERT_NE(list, nullptr);
  EXPECT_NE(list, source);
  EXPECT_EQ(list->count(), 0U);
}

TEST(ValueCollection, CreateFromAFullListGivesNothingAndTakesItsFirstVariant) {
  unsigned int deaths = 0;
  const List source = make();
  EXPECT_EQ(source->add(new Mortal(deaths)), StatusOk);
  EXPECT_EQ(source->add(new Mortal(deaths)), StatusOk);
  EXPECT_EQ(ValueCollection::create(*source), nullptr);
  EXPECT_EQ(deaths, 1U);
  ASSERT_EQ(source->count(), 2U);
  EXPECT_EQ(source->items[0], nullptr);
  EXPECT_NE(source->items[1], nullptr);
}

TEST(ValueCollection, DumpHasNoEffect) {
  const List list = listOf({1, 2});
  list->dump();
  EXPECT_TRUE(*list == *listOf({1, 2}));
}

TEST(ValueCollection, FailsCleanlyWhenMemoryRunsOut) {
  bool failed = false;
  everyAllocationFails([&failed] {
    List list;
    {
      const AllocationsSucceed succeed;
      list = listOf({1, 2, 3});
    }
    const List clone = list->clone();
    EXPECT_TRUE(!clone || *clone == *list);
    failed = failed || !clone;
  });
  EXPECT_TRUE(failed);
  everyAllocationFails([] {
    const List list = make();
    EXPECT_TRUE(!list || list->count() == 0);
  });
  everyAllocationFails([] {
    List source;
    {
      const AllocationsSucceed succeed;
      source = listOf({1});
    }
    EXPECT_EQ(ValueCollection::create(*source), nullptr);
  });
}

TEST(ValueCollection, AReadThatRunsOutOfMemoryKeepsTheElementsBefore) {
  bool failed = false;
  const Bytes wire = written(*listOf({3, 4, 5}));
  everyAllocationFails([&] {
    BufferStream stream;
    List list;
    {
      const AllocationsSucceed succeed;
      test::fill(stream, wire);
      list = listOf({1});
    }
    const bool complete = list->read(stream);
    EXPECT_TRUE(complete ? list->count() == 4 : list->count() < 4 && list->count() >= 1);
    failed = failed || !complete;
  });
  EXPECT_TRUE(failed);
}

/// A list that writes itself in its own way.
class LoudList : public ValueCollection {
 public:
  [[nodiscard]] bool write(IStream& stream) const override { return stream.writeUint8('!'); }
};

TEST(ValueCollection, OfAnApplicationIsWrittenByItsVirtualFunction) {
  const SharedPointer<GenericObject> object = GenericObject::create(7);
  EXPECT_EQ(object->setCollectionProperty(5, List(new LoudList)), StatusOk);
  EXPECT_EQ(object->setUint8Property(6, 6), StatusOk);
  test::expectWrites(*object, bytes("07 00 02 00 00 00 0F 00 05 00 21 02 00 06 00 06"));
}

}  // namespace
}  // namespace trelvo::gom
