// The descriptors of dispatchers, loops and timers: what happens when the process has none left,
// and who else gets to see them.

#include <dlfcn.h>
#include <fcntl.h>
#include <glib.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <limits>

#include <trelvo/core/AsyncCallDispatcher.h>
#include <trelvo/core/ITimer.h>
#include <trelvo/core/LinGlibAsyncCallDispatcher.h>
#include <trelvo/core/LinPollAsyncCallDispatcher.h>
#include <trelvo/core/MainLoop.h>

#include "tests/core/Dispatch.h"

namespace {

constexpr int kEndless = std::numeric_limits<int>::max();

// How many more descriptors the functions below give out. A limit of the process would not do: it
// starves the sanitizers too.
std::atomic<int> gRoom{kEndless};

bool take(int count) {
  if (gRoom == kEndless) {
    return true;
  }
  if (gRoom < count) {
    errno = EMFILE;
    return false;
  }
  gRoom -= count;
  return true;
}

template <class Function>
Function* nextOf(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

// In the place of the C library's.
extern "C" {

__attribute__((visibility("default"))) int socketpair(int domain, int type, int protocol,
                                                      int fds[2]) noexcept {
  return take(2) ? nextOf<int(int, int, int, int*)>("socketpair")(domain, type, protocol, fds) : -1;
}

__attribute__((visibility("default"))) int timerfd_create(int clock, int flags) noexcept {
  return take(1) ? nextOf<int(int, int)>("timerfd_create")(clock, flags) : -1;
}

}  // extern "C"

namespace trelvo::core {

namespace {

using test::countUp;
using test::onFreshThread;
using test::openDescriptors;

using Dispatchers = AsyncCallDispatcher;
constexpr auto kNone = Dispatchers::MainLoopTypeNone;
constexpr auto kKinds = {Dispatchers::MainLoopTypeLinPoll, Dispatchers::MainLoopTypeLinGlib};

/// While it lives, there are `room` more descriptors and no further one.
class Room {
 public:
  explicit Room(int room) { gRoom = room; }
  ~Room() { gRoom = kEndless; }
  Room(const Room&) = delete;
  Room& operator=(const Room&) = delete;
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
      for (const int room : {0, 1}) {
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
      for (const int room : {0, 1, 2}) {
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
