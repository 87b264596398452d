// Threads that post, remove, stop loops and run timers all at once, for about five seconds, or for
// as many as TRELVO_SOAK_SECONDS says. Nothing may be lost within the room of the wake-up channel,
// each poster's calls run in its order, and nothing runs after it was removed.

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <deque>
#include <thread>
#include <vector>

#include <trelvo/core/AsyncCallDispatcher.h>
#include <trelvo/core/ISemaphore.h>
#include <trelvo/core/ITimer.h>
#include <trelvo/core/MainLoop.h>

#include "tests/core/Dispatch.h"

namespace trelvo::core {

namespace {

// Over all that post to one loop this stays below the 256 calls that callers may count on: three
// posters, the remover with its marker, and a stop's wake-up.
constexpr unsigned int kWaitingPerPoster = 50;
constexpr unsigned int kRemovedPerRound = 40;
constexpr int kPosters = 3;
constexpr int kTimersPerLoop = 8;

std::chrono::seconds duration() {
  const char* const wanted = std::getenv("TRELVO_SOAK_SECONDS");
  const long seconds = wanted != nullptr ? std::strtol(wanted, nullptr, 10) : 5;
  return std::chrono::seconds(seconds > 0 ? seconds : 5);
}

/// A timer that its observer starts and stops, in turn as a periodic one and one that fires once.
class BusyTimer : public ITimerObserver {
 public:
  BusyTimer() : m_timer(ITimer::create(this)) {
    EXPECT_TRUE(m_timer);
    restart();
  }

  void handleTimerEvent(ITimer* timer) override {
    EXPECT_EQ(timer, m_timer.get());
    if (++m_events % 3 == 0) {
      EXPECT_EQ(timer->stop(), StatusOk);
      restart();
    } else if (!timer->isActive()) {
      restart();
    }
  }

  int events() const { return m_events; }

 private:
  void restart() {
    const bool periodic = m_events % 2 == 0;
    EXPECT_EQ(periodic ? m_timer->start(1, 0) : m_timer->start(1LL, 0ULL, 0), StatusOk);
  }

  gom::SharedPointer<ITimer> m_timer;
  int m_events = 0;
};

/// A thread with a main loop that is started again whenever somebody stops it.
class LoopThread {
 public:
  explicit LoopThread(AsyncCallDispatcher::MainLoopType type)
      : m_up(ISemaphore::create(0, 1)), m_thread([this, type] { runLoop(type); }) {
    EXPECT_TRUE(m_up->wait());
  }

  /// Stops the loop and waits until it runs again. For one thread.
  void restart() {
    const int before = m_starts.load();
    while (!m_loop->isRunning()) std::this_thread::yield();
    m_loop->stop();
    while (m_starts.load() == before) std::this_thread::yield();
  }

  /// Stops the loop for good and ends the thread.
  void end() {
    m_ending = true;
    while (!m_ended) {
      if (m_loop->isRunning()) m_loop->stop();
      std::this_thread::yield();
    }
    m_thread.join();
  }

  IAsyncCallDispatcher& dispatcher() { return *m_dispatcher; }
  int starts() const { return m_starts.load(); }
  int timerEvents() const { return m_timerEvents; }

 private:
  void runLoop(AsyncCallDispatcher::MainLoopType type) {
    m_loop = MainLoop::create(type);
    m_dispatcher = m_loop->dispatcher().get();
    std::deque<BusyTimer> timers(kTimersPerLoop);
    m_up->signal(1, nullptr);
    while (!m_ending) {
      ++m_starts;
      EXPECT_EQ(m_loop->start(nullptr), StatusOk);
    }
    for (const auto& timer : timers) m_timerEvents += timer.events();
    m_ended = true;
  }

  gom::SharedPointer<ISemaphore> m_up;
  gom::SharedPointer<MainLoop> m_loop;
  IAsyncCallDispatcher* m_dispatcher = nullptr;
  std::atomic<int> m_starts{0};
  std::atomic<bool> m_ending{false};
  std::atomic<bool> m_ended{false};
  int m_timerEvents = 0;
  std::thread m_thread;
};

/// What one poster sends to one loop: numbered calls, a bounded number of which wait at a time.
class Stream {
 public:
  explicit Stream(IAsyncCallDispatcher& dispatcher) : m_dispatcher(dispatcher) {
    for (auto& call : m_calls) call.stream = this;
  }

  /// Posts the next call, if there is room. @return whether it did.
  bool post() {
    if (m_posted - m_ran.load() >= kWaitingPerPoster) return false;
    Call& call = m_calls[m_posted % m_calls.size()];
    call.number = m_posted++;
    EXPECT_TRUE(m_dispatcher.queueAsyncCall(&Stream::run, &call));
    return true;
  }

  void waitUntilAllRan() const {
    while (m_ran.load() != m_posted) std::this_thread::yield();
  }

  unsigned int posted() const { return m_posted; }

 private:
  struct Call {
    Stream* stream;
    unsigned int number;
  };

  static void run(void* data) {
    const Call& call = *static_cast<Call*>(data);
    const unsigned int expected = call.stream->m_ran.load();
    EXPECT_EQ(call.number, expected) << "out of order";
    call.stream->m_ran = expected + 1;
  }

  IAsyncCallDispatcher& m_dispatcher;
  std::array<Call, kWaitingPerPoster> m_calls = {};
  unsigned int m_posted = 0;
  std::atomic<unsigned int> m_ran{0};
};

/// Calls that are removed while the loop is busy running them.
class Removed : public IAsyncCallReceiver {
 public:
  void handleAsyncCall(void* /*data*/) override {
    EXPECT_FALSE(m_gone.load()) << "ran after it was removed";
    ++m_ran;
  }

  void postAndRemove(IAsyncCallDispatcher& dispatcher) {
    for (unsigned int i = 0; i < kRemovedPerRound; ++i) {
      EXPECT_TRUE(dispatcher.queueAsyncCall(this, nullptr));
    }
    dispatcher.removeAllAsyncCall(this);
    // One may be running still; what is posted now runs behind it.
    std::atomic<bool> behind{false};
    dispatcher.queueAsyncCall([](void* flag) { *static_cast<std::atomic<bool>*>(flag) = true; },
                              &behind);
    while (!behind) std::this_thread::yield();
    m_gone = true;
    EXPECT_LE(m_ran.load(), kRemovedPerRound);
  }

 private:
  std::atomic<bool> m_gone{false};
  std::atomic<unsigned int> m_ran{0};
};

using Loops = std::array<LoopThread, 2>;

/// Posts to all loops until the time is up. @return how many calls.
unsigned long long postUntil(std::chrono::steady_clock::time_point end, Loops& loops) {
  std::deque<Stream> streams;
  for (auto& loop : loops) streams.emplace_back(loop.dispatcher());
  while (std::chrono::steady_clock::now() < end) {
    bool any = false;
    for (auto& stream : streams) any = stream.post() || any;
    if (!any) std::this_thread::yield();
  }
  unsigned long long posted = 0;
  for (const auto& stream : streams) {
    stream.waitUntilAllRan();
    posted += stream.posted();
  }
  return posted;
}

}  // namespace

TEST(Soak, NothingIsLostOrReorderedWhileEverythingHappensAtOnce) {
  const auto end = std::chrono::steady_clock::now() + duration();
  const auto goingOn = [end] { return std::chrono::steady_clock::now() < end; };
  Loops loops{LoopThread(AsyncCallDispatcher::MainLoopTypeLinPoll),
              LoopThread(AsyncCallDispatcher::MainLoopTypeLinGlib)};

  std::atomic<unsigned long long> posted{0};
  std::vector<std::thread> threads;
  threads.reserve(kPosters + 2);
  for (int i = 0; i < kPosters; ++i) {
    threads.emplace_back([&] { posted += postUntil(end, loops); });
  }
  threads.emplace_back([&] {
    while (goingOn()) {
      for (auto& loop : loops) {
        Removed removed;
        removed.postAndRemove(loop.dispatcher());
      }
    }
  });
  threads.emplace_back([&] {
    while (goingOn()) {
      for (auto& loop : loops) loop.restart();
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  });
  for (auto& thread : threads) thread.join();

  EXPECT_GT(posted.load(), 1000u);
  for (auto& loop : loops) {
    loop.end();
    EXPECT_GT(loop.starts(), 10);
    EXPECT_GT(loop.timerEvents(), 100);
  }
}

}  // namespace trelvo::core
