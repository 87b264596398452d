// The descriptors of dispatchers, loops and timers: what happens when the process has none left,
// and who else gets to see them.

#include <fcntl.h>
#include <glib.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <vector>

#include <trelvo/core/AsyncCallDispatcher.h>
#include <trelvo/core/ITimer.h>
#include <trelvo/core/LinGlibAsyncCallDispatcher.h>
#include <trelvo/core/LinPollAsyncCallDispatcher.h>
#include <trelvo/core/MainLoop.h>

#include "tests/core/Dispatch.h"

namespace trelvo::core {

namespace {

using test::countUp;
using test::onFreshThread;
using test::openDescriptors;

using Dispatchers = AsyncCallDispatcher;
constexpr auto kNone = Dispatchers::MainLoopTypeNone;
constexpr auto kKinds = {Dispatchers::MainLoopTypeLinPoll, Dispatchers::MainLoopTypeLinGlib};

/// While it lives, the process can open `room` more descriptors and no further one.
class Room {
 public:
  explicit Room(std::size_t room) {
    getrlimit(RLIMIT_NOFILE, &m_before);
    std::vector<int> taken(room + 1);
    for (int& each : taken) each = dup(STDERR_FILENO);
    rlimit limit = m_before;
    limit.rlim_cur = static_cast<rlim_t>(*std::max_element(taken.begin(), taken.end()));
    for (const int each : taken) close(each);
    setrlimit(RLIMIT_NOFILE, &limit);
  }
  ~Room() { setrlimit(RLIMIT_NOFILE, &m_before); }
  Room(const Room&) = delete;
  Room& operator=(const Room&) = delete;

 private:
  rlimit m_before = {};
};

struct Quiet : ITimerObserver {
  void handleTimerEvent(ITimer* /*timer*/) override {}
};

/// Before the first dispatcher, the default context of GLib has descriptors of its own to open.
class Descriptors : public ::testing::Test {
 protected:
  Descriptors() { g_main_context_default(); }
};

gom::SharedPointer<IAsyncCallDispatcher> openKind(Dispatchers::MainLoopType type) {
  Dispatchers::setCurrentMainLoopType(type);
  return Dispatchers::openDispatcher(type);
}

}  // namespace

TEST_F(Descriptors, DispatcherTakesTwoOrNone) {
  for (const auto type : kKinds) {
    onFreshThread([type] {
      const auto before = openDescriptors();
      for (const std::size_t room : {0U, 1U}) {
        const Room left(room);
        EXPECT_FALSE(openKind(type)) << room;
      }
      EXPECT_EQ(openDescriptors(), before);
      const Room left(2);
      const auto dispatcher = openKind(type);
      ASSERT_TRUE(dispatcher);
      int calls = 0;
      EXPECT_TRUE(dispatcher->queueAsyncCall(countUp, &calls));
      EXPECT_EQ(dispatcher->sleep(-1), 1);
      EXPECT_EQ(calls, 1);
    });
  }
}

TEST_F(Descriptors, CreateIsNullWithoutThem) {
  onFreshThread([] {
    const Room left(0);
    EXPECT_EQ(LinPollAsyncCallDispatcher::create(), nullptr);
    EXPECT_EQ(LinGlibAsyncCallDispatcher::create(), nullptr);
  });
}

TEST_F(Descriptors, LoopThatCannotBeMadeHasChosenTheTypeAllTheSame) {
  for (const auto type : kKinds) {
    onFreshThread([type] {
      {
        const Room left(1);
        EXPECT_FALSE(MainLoop::create(type));
      }
      EXPECT_EQ(Dispatchers::currentMainLoopType(), type);
      EXPECT_TRUE(MainLoop::create(kNone)) << "the next attempt";
    });
  }
}

TEST_F(Descriptors, TimerTakesOneMoreThanItsDispatcherOrNone) {
  for (const auto type : kKinds) {
    onFreshThread([type] {
      Quiet observer;
      const auto before = openDescriptors();
      Dispatchers::setCurrentMainLoopType(type);
      for (const std::size_t room : {0U, 1U, 2U}) {
        const Room left(room);
        EXPECT_FALSE(ITimer::create(&observer)) << room;
      }
      EXPECT_EQ(openDescriptors(), before);
      const Room left(3);
      const auto timer = ITimer::create(&observer);
      ASSERT_TRUE(timer);
      EXPECT_EQ(timer->start(1000, 0), StatusOk);
      EXPECT_FALSE(ITimer::create(&observer)) << "there is no room for another one";
      EXPECT_EQ(Dispatchers::openDispatcher(kNone)->referenceCount(), 2) << "it holds nothing";
    });
  }
}

TEST_F(Descriptors, ProgramsDoNotInheritThem) {
  for (const auto type : kKinds) {
    onFreshThread([type] {
      Quiet observer;
      const int first = dup(STDERR_FILENO);
      close(first);
      const auto dispatcher = openKind(type);
      const auto timer = ITimer::create(&observer);
      const auto isInherited = [](int fd) {
        const int flags = fcntl(fd, F_GETFD);
        return flags >= 0 && (flags & FD_CLOEXEC) == 0;
      };
      for (int fd = first; fd < first + 3; ++fd) EXPECT_FALSE(isInherited(fd)) << fd;
    });
  }
}

}  // namespace trelvo::core
