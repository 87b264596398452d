#include <gtest/gtest.h>
#include <pthread.h>
#include <trelvo/core/Singleton.h>

#include <future>
#include <type_traits>
#include <vector>

namespace trelvo::core {
namespace {

// Never destroyed: the key of a slot lives as long as the process.
static_assert(std::is_trivially_destructible_v<Singleton<int*>>);

TEST(Singleton, HoldsItsValueInTheThreadThatMadeItOnly) {
  int number = 5;
  const Singleton<int*> slot(&number, "Test::gNumber");
  EXPECT_EQ(slot.get(), &number);
  EXPECT_EQ(std::async(std::launch::async, [&] { return slot.get(); }).get(), nullptr);
  EXPECT_STREQ(slot.name(), "Test::gNumber");
}

TEST(Singleton, GivesEachThreadItsOwn) {
  int mine = 0;
  Singleton<int*> slot(nullptr, "Test::gMine");
  EXPECT_EQ(slot.get(), nullptr);
  ASSERT_TRUE(slot.set(&mine));
  std::vector<std::future<void>> threads;
  threads.reserve(4);
  for (int i = 0; i < 4; ++i) {
    threads.push_back(std::async(std::launch::async, [&] {
      int theirs = 0;
      EXPECT_EQ(slot.get(), nullptr);
      EXPECT_TRUE(slot.set(&theirs));
      EXPECT_EQ(slot.get(), &theirs);
      EXPECT_TRUE(slot.set(nullptr));
      EXPECT_EQ(slot.get(), nullptr);
    }));
  }
  for (auto& thread : threads) {
    thread.get();
  }
  EXPECT_EQ(slot.get(), &mine);
}

TEST(Singleton, SlotsDoNotMeetEachOther) {
  int number = 0;
  const Singleton<int*> one(&number, "Test::gOne");
  const Singleton<int*> other(nullptr, "Test::gOne");
  EXPECT_EQ(one.get(), &number);
  EXPECT_EQ(other.get(), nullptr);
}

TEST(Singleton, StaysEmptyWhenTheProcessHasNoKeyLeft) {
  std::vector<pthread_key_t> keys;
  for (pthread_key_t key = 0; pthread_key_create(&key, nullptr) == 0;) {
    keys.push_back(key);
  }
  int number = 0;
  Singleton<int*> slot(&number, "Test::gTooMany");
  for (const pthread_key_t key : keys) {
    pthread_key_delete(key);
  }
  ASSERT_FALSE(keys.empty());
  EXPECT_EQ(slot.get(), nullptr);
  EXPECT_FALSE(slot.set(&number));
  EXPECT_EQ(slot.get(), nullptr);
  EXPECT_STREQ(slot.name(), "Test::gTooMany");
}

}  // namespace
}  // namespace trelvo::core
