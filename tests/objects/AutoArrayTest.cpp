#include <gtest/gtest.h>
#include <trelvo/auto_array.h>

#include <type_traits>
#include <utility>

namespace trelvo {
namespace {

using Array = auto_array<unsigned char>;
using Proxy = auto_array_proxy<unsigned char>;

static_assert(!std::is_copy_constructible_v<Array> && !std::is_copy_assignable_v<Array>);
static_assert(std::is_nothrow_move_constructible_v<Array>);
static_assert(std::is_trivially_destructible_v<Proxy>, "a carrier deletes nothing");

/// An element that counts how many of it live.
struct Tracked {
  Tracked() { ++living; }
  Tracked(const Tracked&) = delete;
  Tracked& operator=(const Tracked&) = delete;
  ~Tracked() { --living; }
  static int living;
};
int Tracked::living = 0;

auto_array_proxy<Tracked> handedOver(auto_array<Tracked> array) { return array; }

TEST(AutoArray, IsEmptyByDefault) {
  const Array array;
  EXPECT_EQ(array.get(), nullptr);
  EXPECT_EQ(array.size(), 0U);
}

TEST(AutoArray, DeletesItsBlockWithArrayDelete) {
  {
    const auto_array<Tracked> array(new Tracked[5], 5);
    EXPECT_EQ(Tracked::living, 5);
    EXPECT_EQ(array.size(), 5U);
  }
  EXPECT_EQ(Tracked::living, 0);
}

TEST(AutoArray, MovesAndLeavesTheSourceEmpty) {
  auto_array<Tracked> first(new Tracked[2], 2);
  Tracked* const block = first.get();
  auto_array<Tracked> second(std::move(first));
  EXPECT_EQ(first.get(), nullptr);  // NOLINT(bugprone-use-after-move): promised
  EXPECT_EQ(first.size(), 0U);
  EXPECT_EQ(second.get(), block);

  auto_array<Tracked> third(new Tracked[3], 3);
  EXPECT_EQ(Tracked::living, 5);
  third = std::move(second);
  EXPECT_EQ(Tracked::living, 2) << "the old block went";
  EXPECT_EQ(third.get(), block);
  EXPECT_EQ(third.size(), 2U);
}

TEST(AutoArray, MovingToItselfChangesNothing) {
  auto_array<Tracked> array(new Tracked[2], 2);
  auto_array<Tracked>& same = array;
  array = std::move(same);
  EXPECT_EQ(array.size(), 2U);
  EXPECT_EQ(Tracked::living, 2);
}

TEST(AutoArray, TravelsByValueThroughAProxy) {
  auto_array<Tracked> array(new Tracked[4], 4);
  Tracked* const block = array.get();
  const auto_array_proxy<Tracked> proxy = handedOver(std::move(array));
  EXPECT_EQ(proxy.pointer, block);
  EXPECT_EQ(proxy.size, 4U);
  EXPECT_EQ(Tracked::living, 4) << "the block outlives its owners";
  {
    const auto_array<Tracked> next(proxy);
    EXPECT_EQ(next.get(), block);
    EXPECT_EQ(next.size(), 4U);
  }
  EXPECT_EQ(Tracked::living, 0);
}

TEST(AutoArray, AssigningAProxyDeletesTheOldBlock) {
  auto_array<Tracked> array(new Tracked[4], 4);
  array = auto_array_proxy<Tracked>{new Tracked[1], 1};
  EXPECT_EQ(Tracked::living, 1);
  EXPECT_EQ(array.size(), 1U);
}

TEST(AutoArray, AssigningAProxyOfItsOwnBlockKeepsTheBlock) {
  auto_array<Tracked> array(new Tracked[4], 4);
  array = auto_array_proxy<Tracked>{array.get(), 4};
  EXPECT_EQ(Tracked::living, 4);
}

TEST(AutoArray, ResetDeletesTheBlock) {
  auto_array<Tracked> array(new Tracked[4], 4);
  array.reset();
  EXPECT_EQ(array.get(), nullptr);
  EXPECT_EQ(array.size(), 0U);
  EXPECT_EQ(Tracked::living, 0);
  array.reset();
  EXPECT_EQ(array.get(), nullptr);
}

TEST(AutoArrayProxy, IsEmptyByDefault) {
  const Proxy proxy;
  EXPECT_EQ(proxy.pointer, nullptr);
  EXPECT_EQ(proxy.size, 0U);
}

}  // namespace
}  // namespace trelvo
