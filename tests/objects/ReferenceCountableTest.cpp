#include <gtest/gtest.h>
#include <trelvo/gom/ReferenceCountable.h>

#include <cstdint>
#include <memory>
#include <new>
#include <type_traits>

#include "Counted.h"
#include "tests/support/AllocationFailure.h"

namespace trelvo::gom {
namespace {

using test::Counted;

TEST(ReferenceCountable, IsFreshWithCount0) {
  const Counted object;
  EXPECT_EQ(object.referenceCount(), 0);
  static_assert(std::is_same_v<decltype(object.referenceCount()), int>);
}

TEST(ReferenceCountable, HasTheTableAndTheCountAlone) {
  struct Twin {
    virtual ~Twin() = default;
    int count = 0;
  };
  static_assert(sizeof(ReferenceCountable) == sizeof(Twin));
  static_assert(std::has_virtual_destructor_v<ReferenceCountable>);
  SUCCEED();
}

TEST(ReferenceCountable, DiesWithItsLastHandle) {
  bool died = false;
  auto* const object = new Counted(&died);
  EXPECT_EQ(object->referenceCount(), 0);
  SharedPointer<Counted> handle(object);
  EXPECT_EQ(object->referenceCount(), 1);
  {
    const SharedPointer<Counted> other(handle);
    EXPECT_EQ(object->referenceCount(), 2);
  }
  EXPECT_EQ(object->referenceCount(), 1);
  EXPECT_FALSE(died);
  handle.clear();
  EXPECT_TRUE(died);
}

TEST(ReferenceCountable, DecrementTo0CallsTheVirtualDestructor) {
  bool died = false;
  ReferenceCountable* const object = new test::CountedMore(&died);
  object->increment();
  object->increment();
  object->decrement();
  EXPECT_FALSE(died);
  EXPECT_EQ(object->referenceCount(), 1);
  object->decrement();
  EXPECT_TRUE(died);
}

TEST(ReferenceCountable, DecrementDoesNotTestForACountOf0) {
  Counted object;
  object.decrement();
  EXPECT_EQ(object.referenceCount(), -1);
}

TEST(ReferenceCountable, CopiesNeverTakeTheCount) {
  const SharedPointer<Counted> handle(new Counted);
  const SharedPointer<Counted> second(handle);
  const Counted copy(*handle);
  EXPECT_EQ(copy.referenceCount(), 0);
  EXPECT_EQ(handle->referenceCount(), 2);
}

TEST(ReferenceCountable, AssignmentLeavesBothCounts) {
  const SharedPointer<Counted> from(new Counted);
  const SharedPointer<Counted> alsoFrom(from);
  const SharedPointer<Counted> to(new Counted);
  *to = *from;
  EXPECT_EQ(to->referenceCount(), 1);
  EXPECT_EQ(from->referenceCount(), 2);
}

TEST(ReferenceCountable, LivesOnTheStackAndInGivenPlaceToo) {
  alignas(Counted) unsigned char place[sizeof(Counted)];
  bool died = false;
  auto* const object = new (place) Counted(&died);
  EXPECT_EQ(static_cast<void*>(object), static_cast<void*>(place));
  object->~Counted();
  EXPECT_TRUE(died);
}

class alignas(128) Aligned : public ReferenceCountable {};

TEST(ReferenceCountable, OverAlignedClassesGetTheirAlignment) {
  for (int i = 0; i < 8; ++i) {
    const SharedPointer<Aligned> thrower(new Aligned);
    const SharedPointer<Aligned> nothrower(new (std::nothrow) Aligned);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(thrower.get()) % alignof(Aligned), 0U);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(nothrower.get()) % alignof(Aligned), 0U);
  }
}

// By the form of delete that compilers leave alone where there is one without a size.
TEST(ReferenceCountable, TakesAnOverAlignedBlockBackWithItsSizeToo) {
  constexpr std::align_val_t kAlignment{alignof(Aligned)};
  const test::Allocations counted = test::allocationsOf([] {
    void* const block = Aligned::operator new(sizeof(Aligned), kAlignment);
    Aligned::operator delete(block, sizeof(Aligned), kAlignment);
  });
  EXPECT_EQ(counted.calls, 1U);
  EXPECT_EQ(counted.leaked, 0);
}

class Refusing : public ReferenceCountable {
 public:
  Refusing() { throw 7; }
};

TEST(ReferenceCountable, AConstructorThatThrowsGivesTheMemoryBack) {
  EXPECT_THROW(SharedPointer<Refusing>(new Refusing), int);
  EXPECT_THROW(SharedPointer<Refusing>(new (std::nothrow) Refusing), int);
}

TEST(ReferenceCountable, AConstructorThatThrowsLeavesAGivenPlaceToItsOwner) {
  alignas(Refusing) unsigned char place[sizeof(Refusing)];
  EXPECT_THROW(new (place) Refusing, int);
}

class alignas(128) RefusingAligned : public Refusing {};

TEST(ReferenceCountable, SoDoesThatOfAnOverAlignedClass) {
  EXPECT_THROW(SharedPointer<RefusingAligned>(new RefusingAligned), int);
  EXPECT_THROW(SharedPointer<RefusingAligned>(new (std::nothrow) RefusingAligned), int);
}

}  // namespace
}  // namespace trelvo::gom
