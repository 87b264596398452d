#include <gtest/gtest.h>
#include <trelvo/core/Singleton.h>

#include <cerrno>

#include "tests/core/SystemCalls.h"

namespace trelvo::core {
namespace {

using test::Answered;
using test::callsOf;
using test::SystemCall;

TEST(SingletonFailure, SetsNoValueWithoutAKey) {
  const Answered noKey(SystemCall::KeyCreate, EAGAIN);
  const int before = callsOf(SystemCall::Setspecific);
  int number = 0;
  const Singleton<int*> slot(&number, "Test::gNone");
  EXPECT_EQ(callsOf(SystemCall::Setspecific), before);
  EXPECT_EQ(slot.get(), nullptr);
}

TEST(SingletonFailure, StaysEmptyWhenTheValueCannotBeStored) {
  int number = 0;
  const Answered noMemory(SystemCall::Setspecific, ENOMEM);
  Singleton<int*> slot(&number, "Test::gNone");
  EXPECT_EQ(slot.get(), nullptr);
  EXPECT_FALSE(slot.set(&number));
}

}  // namespace
}  // namespace trelvo::core
