#include <trelvo/core/AsyncCallDispatcher.h>

#include <gtest/gtest.h>

#include <trelvo/Status.h>
#include <trelvo/core/LinGlibAsyncCallDispatcher.h>
#include <trelvo/core/LinPollAsyncCallDispatcher.h>

#include "tests/core/Dispatch.h"

namespace trelvo::core {

namespace {

using Dispatchers = AsyncCallDispatcher;
using test::onFreshThread;

constexpr auto kNone = Dispatchers::MainLoopTypeNone;
constexpr auto kPoll = Dispatchers::MainLoopTypeLinPoll;
constexpr auto kGlib = Dispatchers::MainLoopTypeLinGlib;

Status setting(Dispatchers::MainLoopType type) {
  try {
    Dispatchers::setMainLoopType(type);
    return StatusOk;
  } catch (Status status) {
    return status;
  }
}

}  // namespace

TEST(AsyncCallDispatcher, TypesHaveTheirNumbers) {
  EXPECT_EQ(static_cast<int>(kNone), 0);
  EXPECT_EQ(static_cast<int>(kPoll), 3);
  EXPECT_EQ(static_cast<int>(kGlib), 4);
  EXPECT_EQ(sizeof(kNone), 4u);
}

TEST(AsyncCallDispatcher, FreshThreadHasNoType) {
  onFreshThread([] {
    Dispatchers::setMainLoopType(kPoll);
    onFreshThread([] { EXPECT_EQ(Dispatchers::currentMainLoopType(), kNone); });
    EXPECT_EQ(Dispatchers::currentMainLoopType(), kPoll);
  });
}

TEST(AsyncCallDispatcher, TypeCanBeChosenOnce) {
  onFreshThread([] {
    EXPECT_EQ(setting(kPoll), StatusOk);
    EXPECT_EQ(setting(kGlib), StatusWrongState);
    EXPECT_EQ(setting(kPoll), StatusWrongState) << "even the same";
    EXPECT_EQ(Dispatchers::currentMainLoopType(), kPoll);
    EXPECT_EQ(setting(kNone), StatusOk);
    EXPECT_EQ(Dispatchers::currentMainLoopType(), kNone);
    EXPECT_EQ(setting(kNone), StatusOk);
    EXPECT_EQ(setting(kGlib), StatusOk);
  });
}

TEST(AsyncCallDispatcher, TypeCanBeSetWithoutChecks) {
  onFreshThread([] {
    Dispatchers::setCurrentMainLoopType(kPoll);
    Dispatchers::setCurrentMainLoopType(kGlib);
    EXPECT_EQ(Dispatchers::currentMainLoopType(), kGlib);
    Dispatchers::setCurrentMainLoopType(static_cast<Dispatchers::MainLoopType>(2));
    EXPECT_EQ(static_cast<int>(Dispatchers::currentMainLoopType()), 2);
  });
}

TEST(AsyncCallDispatcher, OpeningWithoutATypeChoosesGlib) {
  onFreshThread([] {
    const auto dispatcher = Dispatchers::openDispatcher(kNone);
    EXPECT_NE(dynamic_cast<LinGlibAsyncCallDispatcher*>(dispatcher.get()), nullptr);
    EXPECT_EQ(Dispatchers::currentMainLoopType(), kGlib);
    EXPECT_EQ(dispatcher, Dispatchers::openDispatcher(kGlib));
  });
}

TEST(AsyncCallDispatcher, OpeningAnotherTypeThanTheThreadsGivesNothing) {
  onFreshThread([] {
    EXPECT_FALSE(Dispatchers::openDispatcher(kPoll));
    EXPECT_FALSE(Dispatchers::openDispatcher(kGlib));
    EXPECT_EQ(Dispatchers::currentMainLoopType(), kNone) << "opening chooses no explicit type";
    Dispatchers::setMainLoopType(kPoll);
    EXPECT_FALSE(Dispatchers::openDispatcher(kGlib));
  });
}

TEST(AsyncCallDispatcher, OpeningTheThreadsTypeGivesThatKind) {
  onFreshThread([] {
    Dispatchers::setMainLoopType(kPoll);
    const auto dispatcher = Dispatchers::openDispatcher(kNone);
    EXPECT_NE(dynamic_cast<LinPollAsyncCallDispatcher*>(dispatcher.get()), nullptr);
    EXPECT_EQ(dispatcher, Dispatchers::openDispatcher(kPoll));
    EXPECT_EQ(dispatcher->referenceCount(), 1);
  });
}

TEST(AsyncCallDispatcher, ReservedAndUnknownTypesGiveNothing) {
  onFreshThread([] {
    for (const int number : {1, 2, 5, -1}) {
      const auto type = static_cast<Dispatchers::MainLoopType>(number);
      Dispatchers::setCurrentMainLoopType(type);
      EXPECT_FALSE(Dispatchers::openDispatcher(type)) << number;
      EXPECT_FALSE(Dispatchers::openDispatcher(kNone)) << number;
    }
  });
}

TEST(AsyncCallDispatcher, ThreadMayHaveOneDispatcherOfEachKind) {
  onFreshThread([] {
    const auto polling = Dispatchers::openLinPollAsyncDispatcher();
    const auto glib = Dispatchers::openLinGlibAsyncDispatcher();
    ASSERT_TRUE(polling);
    ASSERT_TRUE(glib);
    EXPECT_NE(polling, glib);
    EXPECT_EQ(polling, Dispatchers::openLinPollAsyncDispatcher());
    EXPECT_EQ(glib, Dispatchers::openLinGlibAsyncDispatcher());
    EXPECT_EQ(Dispatchers::currentMainLoopType(), kNone);
  });
}

}  // namespace trelvo::core
