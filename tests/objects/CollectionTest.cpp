#include <gtest/gtest.h>
#include <trelvo/gom/Collection.h>
#include <trelvo/gom/InternalVariant.h>
#include <trelvo/gom/Variant.h>

#include <stdexcept>
#include <type_traits>
#include <utility>

#include "Counted.h"
#include "tests/support/AllocationFailure.h"

namespace trelvo::gom {
namespace {

using test::Counted;

static_assert(std::is_base_of_v<ReferenceCountable, Collection<int>>);
static_assert(std::is_same_v<decltype(Collection<int>::items), std::vector<int>>);

Collection<int> numbers(std::initializer_list<int> values) {
  Collection<int> list;
  for (const int value : values) {
    EXPECT_EQ(list.add(value), StatusOk);
  }
  return list;
}

TEST(Collection, IsMadeEmpty) {
  const SharedPointer<Collection<InternalVariant>> list = Collection<InternalVariant>::create();
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->count(), 0U);
  EXPECT_EQ(list->first(), nullptr);
  EXPECT_EQ(list->referenceCount(), 1);
}

TEST(Collection, KeepsTheOrderOfInsertion) {
  const Collection<int> list = numbers({3, 1, 2, 1});
  EXPECT_EQ(list.items, (std::vector<int>{3, 1, 2, 1}));
  EXPECT_EQ(list.count(), 4U);
  EXPECT_EQ(list.first(), list.items.data());
}

TEST(Collection, AddAppendsACopy) {
  Collection<InternalVariant> list;
  InternalVariant value(5);
  EXPECT_EQ(value.setUint8Value(1), StatusOk);
  EXPECT_EQ(list.add(value), StatusOk);
  EXPECT_EQ(value.setUint8Value(2), StatusOk);
  unsigned char kept = 0;
  EXPECT_EQ(list.first()->getUint8Value(kept), StatusOk);
  EXPECT_EQ(kept, 1U);
}

TEST(Collection, AddSharesAHandle) {
  const SharedPointer<Counted> item(new Counted);
  {
    Collection<SharedPointer<Counted>> list;
    EXPECT_EQ(list.add(item), StatusOk);
    EXPECT_EQ(list.add(item), StatusOk);
    EXPECT_EQ(item->referenceCount(), 3);
    SharedPointer<Counted> moved(item);
    EXPECT_EQ(list.add(std::move(moved)), StatusOk);
    EXPECT_EQ(item->referenceCount(), 4);
  }
  EXPECT_EQ(item->referenceCount(), 1);
}

TEST(Collection, OfPlainPointersFreesThePointersAlone) {
  Variant variant(5);
  {
    Collection<Variant*> list;
    EXPECT_EQ(list.add(&variant), StatusOk);
    EXPECT_EQ(*list.first(), &variant);
  }
  EXPECT_EQ(variant.key(), 5U);
}

TEST(Collection, AddOfAnElementOfItsOwnStaysSafeWhileGrowing) {
  Collection<int> list = numbers({41});
  for (int i = 0; i < 100; ++i) {
    EXPECT_EQ(list.add(list.items.front()), StatusOk);
  }
  EXPECT_EQ(list.items, std::vector<int>(101, 41));
}

TEST(Collection, AddOutOfMemoryChangesNothing) {
  unsigned int failures = 0;
  test::everyAllocationFails([&failures] {
    Collection<int> list;
    for (int i = 0; i < 5; ++i) {
      const unsigned int before = list.count();
      const Status status = list.add(i);
      EXPECT_TRUE(status == StatusOk || status == StatusOutOfMemory);
      EXPECT_EQ(list.count(), before + (status == StatusOk ? 1 : 0));
      failures += status != StatusOk ? 1 : 0;
    }
  });
  EXPECT_GT(failures, 0U);
  test::everyAllocationFails([] {
    const auto list = Collection<InternalVariant>::create();
    EXPECT_TRUE(!list || list->count() == 0);
  });
}

/// An element whose copying throws.
struct Refusing {
  Refusing() = default;
  Refusing(const Refusing& /*other*/) { throw std::runtime_error("no copies"); }
  Refusing& operator=(const Refusing&) = delete;
  ~Refusing() = default;
};

TEST(Collection, AnExceptionOfTheElementIsOutOfMemoryToo) {
  Collection<Refusing> list;
  const Refusing item;
  EXPECT_EQ(list.add(item), StatusOutOfMemory);
  EXPECT_EQ(list.add(Refusing()), StatusOutOfMemory);
  EXPECT_EQ(list.count(), 0U);
}

TEST(Collection, WalksFromTheFirstElementToNull) {
  const Collection<int> list = numbers({3, 1, 2});
  std::vector<int> seen;
  for (const int* p = list.first(); p != nullptr; p = list.nextImpl(p)) {
    seen.push_back(*p);
  }
  EXPECT_EQ(seen, (std::vector<int>{3, 1, 2}));
}

TEST(Collection, NextIsByAddressNotByValue) {
  const Collection<int> list = numbers({7, 7, 8});
  EXPECT_EQ(list.nextImpl(&list.items[1]), &list.items[2]);
}

TEST(Collection, NextOfTheLastElementIsNull) {
  const Collection<int> list = numbers({3, 1});
  EXPECT_EQ(list.nextImpl(&list.items[1]), nullptr);
  const Collection<int> one = numbers({3});
  EXPECT_EQ(one.nextImpl(one.first()), nullptr);
}

TEST(Collection, NextOfNullAndOfAStrangerIsNull) {
  const Collection<int> list = numbers({3, 1});
  const Collection<int> other = numbers({3, 1});
  EXPECT_EQ(list.nextImpl(nullptr), nullptr);
  EXPECT_EQ(list.nextImpl(other.first()), nullptr);
  EXPECT_EQ(Collection<int>().nextImpl(nullptr), nullptr);
  EXPECT_EQ(Collection<int>().nextImpl(other.first()), nullptr);
}

}  // namespace
}  // namespace trelvo::gom
