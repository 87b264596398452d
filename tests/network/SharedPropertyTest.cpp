#include "network/ubuntu/SharedProperty.h"

#include <atomic>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace trelvo::network {
namespace {

TEST(SharedProperty, StartsWithZero) { EXPECT_EQ(SharedProperty<int>().get(), 0); }

TEST(SharedProperty, SlotsHearOnlyOfChangesAndCanReadTheNewValue) {
  SharedProperty<int> property;
  std::vector<int> heard;
  std::vector<int> read;
  property.changed().connect([&](int value) {
    heard.push_back(value);
    read.push_back(property.get());
  });
  for (const int value : {0, 7, 7, 5, 7}) property.set(value);
  EXPECT_THAT(heard, testing::ElementsAre(7, 5, 7));
  EXPECT_EQ(read, heard);
}

TEST(SharedProperty, AValueOnceShownStaysWhatItIs) {
  SharedProperty<int> property;
  property.set(1);
  const int& shown = property.get();
  property.set(2);
  EXPECT_EQ(shown, 1);
  EXPECT_EQ(property.get(), 2);
}

TEST(SharedProperty, CanBeReadOnAnyThreadWhileItIsSet) {
  SharedProperty<int> property;
  std::atomic<bool> done{false};
  std::vector<std::thread> readers;
  std::atomic<int> wrong{0};
  for (int i = 0; i < 2; ++i) {
    readers.emplace_back([&] {
      while (!done) wrong += property.get() > 9 ? 1 : 0;
    });
  }
  for (int i = 0; i < 20000; ++i) property.set(i % 10);
  done = true;
  for (std::thread& reader : readers) reader.join();
  EXPECT_EQ(wrong, 0);
}

}  // namespace
}  // namespace trelvo::network
