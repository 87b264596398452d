// Compiled together with PropertyLists.cpp, with TRELVO_POOL on, whatever the library is built
// with.

#include "objects/PropertyLists.h"

#include <gtest/gtest.h>
#include <trelvo/gom/CharacterData.h>

#include <utility>
#include <vector>

#include "tests/support/AllocationFailure.h"

namespace trelvo::gom {
namespace {

using List = SharedPointer<PropertyLists::List>;
using test::allocationsOf;

List listWithRoomFor(std::size_t properties) {
  List list = PropertyLists::take();
  list->items.reserve(properties);
  return list;
}

TEST(PropertyLists, ServesTheLastListAgainWithItsStorage) {
  allocationsOf([] {
    List list = listWithRoomFor(4);
    list->items.emplace_back(static_cast<unsigned short>(7));
    const PropertyLists::List* const first = list.get();
    const InternalVariant* const storage = list->items.data();
    PropertyLists::giveBack(std::move(list));
    EXPECT_FALSE(list);

    const List next = PropertyLists::take();
    EXPECT_EQ(next.get(), first);
    EXPECT_EQ(next->referenceCount(), 1);
    EXPECT_EQ(next->count(), 0U);
    EXPECT_EQ(next->items.capacity(), 4U);
    EXPECT_EQ(next->items.data(), storage);
  });
}

TEST(PropertyLists, EmptiesAListAsSoonAsItComesBack) {
  allocationsOf([] {
    const SharedPointer<CharacterData> text = CharacterData::create("abc", 3);
    List list = listWithRoomFor(4);
    ASSERT_EQ(list->items.emplace_back(static_cast<unsigned short>(7)).setStringValue(text),
              StatusOk);
    EXPECT_EQ(text->referenceCount(), 2);
    PropertyLists::giveBack(std::move(list));
    EXPECT_EQ(text->referenceCount(), 1);
  });
}

TEST(PropertyLists, LeavesAListThatIsHeldElsewhereAsItIs) {
  allocationsOf([] {
    List list = listWithRoomFor(4);
    list->items.emplace_back(static_cast<unsigned short>(7));
    const List other = list;
    PropertyLists::giveBack(std::move(list));
    EXPECT_EQ(other->count(), 1U);
    EXPECT_EQ(other->referenceCount(), 1);
    EXPECT_NE(PropertyLists::take().get(), other.get());
  });
}

TEST(PropertyLists, KeepsNoLargeList) {
  allocationsOf([] {
    PropertyLists::giveBack(listWithRoomFor(PropertyLists::kMaxProperties));
    EXPECT_EQ(PropertyLists::take()->items.capacity(), PropertyLists::kMaxProperties);
    PropertyLists::giveBack(listWithRoomFor(PropertyLists::kMaxProperties + 1));
    EXPECT_EQ(PropertyLists::take()->items.capacity(), 0U);
  });
}

TEST(PropertyLists, KeepsNoMoreThanItsBound) {
  allocationsOf([] {
    constexpr unsigned int kBeyond = 10;
    std::vector<List> lists;
    for (unsigned int i = 0; i < PropertyLists::kMaxKept + kBeyond; ++i) {
      lists.push_back(listWithRoomFor(1));
    }
    for (List& list : lists) {
      PropertyLists::giveBack(std::move(list));
    }
    unsigned int kept = 0;
    for (List& list : lists) {
      list = PropertyLists::take();
      kept += list->items.capacity() != 0 ? 1 : 0;
    }
    EXPECT_EQ(kept, PropertyLists::kMaxKept);
  });
}

TEST(PropertyLists, TakesAnEmptyHandle) {
  allocationsOf([] {
    PropertyLists::giveBack(List());
    EXPECT_EQ(PropertyLists::take()->count(), 0U);
  });
}

TEST(PropertyLists, GivesAllBackWhenTheThreadEnds) {
  const test::Allocations allocations = allocationsOf([] {
    List first = listWithRoomFor(4);
    List second = listWithRoomFor(4);
    PropertyLists::giveBack(std::move(first));
    PropertyLists::giveBack(std::move(second));
  });
  EXPECT_EQ(allocations.leaked, 0);
}

/// Gives its list back when the thread's storage is destroyed.
struct Late {
  List list;
  ~Late() { PropertyLists::giveBack(std::move(list)); }
};
thread_local Late gLate;

TEST(PropertyLists, AListThatComesBackBehindTheEndGoesAtOnce) {
  const test::Allocations allocations = allocationsOf([] {
    gLate.list = listWithRoomFor(4);  // made before the lists are opened, destroyed behind them
    PropertyLists::giveBack(listWithRoomFor(4));
  });
  EXPECT_EQ(allocations.leaked, 0);
}

TEST(PropertyLists, WithoutMemoryAListIsNotKept) {
  test::everyAllocationFails([] {
    List list;
    {
      const test::AllocationsSucceed succeed;
      list = listWithRoomFor(4);
    }
    PropertyLists::giveBack(std::move(list));
    EXPECT_FALSE(list);
  });
}

}  // namespace
}  // namespace trelvo::gom
