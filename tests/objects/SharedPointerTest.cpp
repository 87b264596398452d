#include <gtest/gtest.h>
#include <trelvo/gom/ObjectHandle.h>
#include <trelvo/gom/SharedPointer.h>

#include <type_traits>
#include <utility>

#include "Counted.h"

namespace trelvo::gom {
namespace {

using test::Counted;
using test::CountedMore;
using Handle = SharedPointer<Counted>;

static_assert(sizeof(ObjectHandle<Counted>) == sizeof(Counted*));
static_assert(sizeof(Handle) == sizeof(Counted*));
static_assert(std::is_base_of_v<ObjectHandle<Counted>, Handle>);
static_assert(!std::is_convertible_v<Handle, bool>, "bool only where it is asked for");
static_assert(std::is_constructible_v<bool, Handle>);
static_assert(!std::is_convertible_v<Handle, SharedPointer<CountedMore>>, "never downwards");

template <template <class> class AnyHandle>
constexpr bool kConverts = std::is_convertible_v<Counted*, AnyHandle<Counted>>&&
    std::is_convertible_v<CountedMore*, AnyHandle<Counted>>&&
        std::is_convertible_v<std::nullptr_t, AnyHandle<Counted>>&&
            std::is_convertible_v<AnyHandle<CountedMore>, AnyHandle<Counted>>;
static_assert(kConverts<ObjectHandle>);
static_assert(kConverts<SharedPointer>);

TEST(SharedPointer, IsEmptyByDefault) {
  const Handle handle;
  EXPECT_EQ(handle.get(), nullptr);
  EXPECT_FALSE(handle);
  EXPECT_EQ(handle.operator->(), nullptr);
}

TEST(SharedPointer, OfAPlainPointerAdoptsIt) {
  auto* const object = new Counted;
  const Handle handle = object;
  EXPECT_EQ(object->referenceCount(), 1);
  EXPECT_EQ(handle.get(), object);
  EXPECT_EQ(&*handle, object);
  EXPECT_EQ(handle.operator->(), object);
  EXPECT_TRUE(handle);
}

TEST(SharedPointer, OfNullIsEmpty) {
  const Handle handle(static_cast<Counted*>(nullptr));
  const Handle literal = nullptr;
  const Handle copy(handle);
  EXPECT_EQ(copy, nullptr);
  EXPECT_EQ(literal, nullptr);
}

TEST(SharedPointer, CopiesShare) {
  const Handle handle(new Counted);
  const Handle copy(handle);
  EXPECT_EQ(copy.get(), handle.get());
  EXPECT_EQ(handle->referenceCount(), 2);
}

TEST(SharedPointer, OfADerivedClassConverts) {
  const SharedPointer<CountedMore> derived(new CountedMore);
  const Handle base = derived;
  Handle assigned;
  assigned = derived;
  EXPECT_EQ(base.get(), derived.get());
  EXPECT_EQ(derived->referenceCount(), 3);
}

TEST(SharedPointer, OfAPlainObjectHandleShares) {
  const ObjectHandle<Counted> base(new Counted);
  const Handle handle = base;
  EXPECT_EQ(base->referenceCount(), 2);
}

TEST(SharedPointer, AssignmentReleasesTheOldTarget) {
  bool died = false;
  Handle handle(new Counted(&died));
  const Handle other(new Counted);
  handle = other;
  EXPECT_TRUE(died);
  EXPECT_EQ(handle, other);
  EXPECT_EQ(other->referenceCount(), 2);
}

TEST(SharedPointer, AssignmentToItselfLeavesCountAndTarget) {
  Handle handle(new Counted);
  Counted* const object = handle.get();
  const Handle& same = handle;
  handle = same;
  EXPECT_EQ(handle.get(), object);
  EXPECT_EQ(object->referenceCount(), 1);
  Handle& alsoSame = handle;
  handle = std::move(alsoSame);
  EXPECT_EQ(handle.get(), object);
  EXPECT_EQ(object->referenceCount(), 1);
}

TEST(SharedPointer, AssignmentBetweenHandlesOfOneObjectLeavesTheCount) {
  Handle handle(new Counted);
  const Handle other(handle);
  handle = other;
  EXPECT_EQ(handle->referenceCount(), 2);
  handle = handle.get();
  EXPECT_EQ(handle->referenceCount(), 2);
}

TEST(SharedPointer, AssignmentOfNullClears) {
  bool died = false;
  Handle handle(new Counted(&died));
  handle = nullptr;
  EXPECT_TRUE(died);
  EXPECT_FALSE(handle);
}

TEST(SharedPointer, TakesAHandleThatLivesInsideTheOldTarget) {
  bool firstDied = false;
  bool secondDied = false;
  Handle handle(new Counted(&firstDied));
  handle->next = new Counted(&secondDied);
  Counted* const second = handle->next.get();
  handle = handle->next;
  EXPECT_TRUE(firstDied);
  EXPECT_FALSE(secondDied);
  EXPECT_EQ(handle.get(), second);
  EXPECT_EQ(second->referenceCount(), 1);

  handle->next = new Counted(&firstDied);
  handle = std::move(handle->next);
  EXPECT_TRUE(secondDied);
  EXPECT_EQ(handle->referenceCount(), 1);
}

TEST(SharedPointer, MovingLeavesTheSourceEmpty) {
  Handle handle(new Counted);
  const Handle moved(std::move(handle));
  EXPECT_EQ(handle, nullptr);  // NOLINT(bugprone-use-after-move): what moving leaves is promised
  EXPECT_EQ(moved->referenceCount(), 1);

  Handle source(moved);
  Handle target(new Counted);
  target = std::move(source);
  EXPECT_EQ(source, nullptr);  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(target, moved);
  EXPECT_EQ(moved->referenceCount(), 2);
}

TEST(SharedPointer, ClearReleases) {
  bool died = false;
  Handle handle(new Counted(&died));
  handle.clear();
  EXPECT_TRUE(died);
  EXPECT_EQ(handle, nullptr);
}

TEST(SharedPointer, ClearOnAnEmptyHandleDoesNothing) {
  Handle handle;
  handle.clear();
  EXPECT_EQ(handle, nullptr);
}

TEST(SharedPointer, ResetTakesTheNewTarget) {
  bool died = false;
  Handle handle(new Counted(&died));
  auto* const object = new Counted;
  handle.reset(object);
  EXPECT_TRUE(died);
  EXPECT_EQ(handle.get(), object);
  EXPECT_EQ(object->referenceCount(), 1);
  handle.reset(nullptr);
  EXPECT_EQ(handle, nullptr);
}

TEST(SharedPointer, ResetToTheHeldTargetLeavesItAlive) {
  bool died = false;
  Handle handle(new Counted(&died));
  handle.reset(handle.get());
  EXPECT_FALSE(died);
  EXPECT_EQ(handle->referenceCount(), 1);
}

TEST(SharedPointer, AHandleInsideItsOwnTargetCanBeTheLastToGo) {
  bool died = false;
  auto* const object = new Counted(&died);
  object->next = object;
  object->next.clear();
  EXPECT_TRUE(died);
}

TEST(SharedPointer, ComparesByPointer) {
  const Handle a(new Counted);
  const Handle b(new Counted);
  const Handle alsoA(a);
  const Handle empty;
  const SharedPointer<CountedMore> derived(new CountedMore);
  const Handle base(derived);
  EXPECT_TRUE(a == alsoA);
  EXPECT_FALSE(a != alsoA);
  EXPECT_TRUE(a != b);
  EXPECT_FALSE(a == b);
  EXPECT_TRUE(base == derived);
  EXPECT_FALSE(base != derived);
  EXPECT_TRUE(empty == nullptr);
  EXPECT_TRUE(nullptr == empty);
  EXPECT_TRUE(a != nullptr);
  EXPECT_TRUE(nullptr != a);
  EXPECT_FALSE(empty != nullptr);
  EXPECT_FALSE(nullptr == a);
}

TEST(ObjectHandle, SharesAndReleasesLikeASharedPointer) {
  bool died = false;
  {
    const ObjectHandle<Counted> handle(new Counted(&died));
    ObjectHandle<Counted> other;
    EXPECT_FALSE(other);
    other = handle;
    EXPECT_EQ(handle->referenceCount(), 2);
    EXPECT_EQ(other, handle);
  }
  EXPECT_TRUE(died);
}

}  // namespace
}  // namespace trelvo::gom
