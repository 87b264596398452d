#include "tests/soak/Calls.h"

#include <array>
#include <chrono>
#include <deque>
#include <memory>
#include <thread>

#include <trelvo/core/IAsyncCallReceiver.h>
#include <trelvo/core/ISemaphore.h>
#include <trelvo/core/ITimer.h>
#include <trelvo/core/ITimerObserver.h>
#include <trelvo/core/MainLoop.h>

namespace soak {

namespace {

using trelvo::StatusOk;
using trelvo::core::AsyncCallDispatcher;
using trelvo::core::IAsyncCallDispatcher;
using trelvo::core::ISemaphore;
using trelvo::core::IThread;
using trelvo::core::ITimer;
using trelvo::core::MainLoop;
using trelvo::gom::SharedPointer;

// All that post to one loop together stay below the 256 calls that callers may count on.
constexpr unsigned int kPosters = 2;
constexpr unsigned int kWaitingPerPoster = 80;
constexpr unsigned int kRemovedPerRound = 40;
constexpr unsigned int kTimers = 8;

void pause() { std::this_thread::sleep_for(std::chrono::microseconds(200)); }

/// A timer that its observer stops and starts, in turn as a periodic one and one that fires once.
class BusyTimer : public trelvo::core::ITimerObserver {
 public:
  BusyTimer() : m_timer(ITimer::create(this)), m_thread(IThread::currentThreadId()) {
    check(static_cast<bool>(m_timer), "a timer is made");
    restart();
  }

  void handleTimerEvent(ITimer* timer) override {
    check(timer == m_timer.get(), "a timer names itself");
    check(IThread::currentThreadId() == m_thread, "a timer fires on its own thread");
    ++gFigures.timersFired;
    if (++m_events % 3 == 0) {
      check(timer->stop() == StatusOk && !timer->isActive(), "a timer stops");
      restart();
    } else if (!timer->isActive()) {
      restart();
    }
  }

 private:
  void restart() {
    const bool periodic = m_events % 2 == 0;
    check((periodic ? m_timer->start(1, 0) : m_timer->start(1LL, 0ULL, 0)) == StatusOk,
          "a timer starts");
  }

  SharedPointer<ITimer> m_timer;
  int m_thread;
  unsigned int m_events = 0;
};

/// The loop's thread: starts the loop again whenever somebody stops it.
class LoopWorker : public Worker {
 public:
  explicit LoopWorker(AsyncCallDispatcher::MainLoopType type)
      : m_type(type), m_up(ISemaphore::create(0, 1)) {}

  /// Returns when there is a dispatcher to post to.
  void startAndWait() {
    start();
    check(m_up->wait(), "a loop's thread comes up");
  }
  void stopLoop() {
    if (m_loop->isRunning()) {
      m_loop->stop();
    }
  }
  /// Ends the thread, whichever stop a start of the loop does not see.
  void endLoop() {
    stop();
    while (!m_over) {
      stopLoop();
      pause();
    }
    join();
  }

  IAsyncCallDispatcher& dispatcher() { return *m_dispatcher; }

 protected:
  void begin() override {
    m_loop = MainLoop::create(m_type);
    check(static_cast<bool>(m_loop), "a main loop is made");
    m_dispatcher = m_loop->dispatcher().get();
    for (unsigned int i = 0; i < kTimers; ++i) {
      m_timers.emplace_back();
    }
    m_up->signal(1, nullptr);
  }
  void round() override {
    check(m_loop->start({}) == StatusOk, "a main loop starts");
    ++gFigures.loopsStarted;
  }
  void end() override {
    m_timers.clear();
    m_over = true;
  }

 private:
  AsyncCallDispatcher::MainLoopType m_type;
  SharedPointer<ISemaphore> m_up;
  SharedPointer<MainLoop> m_loop;
  IAsyncCallDispatcher* m_dispatcher = nullptr;
  std::deque<BusyTimer> m_timers;
  std::atomic<bool> m_over{false};
};

/// Posts numbered calls, a bounded number of which wait at a time.
class Poster : public Worker {
 public:
  explicit Poster(LoopWorker& loop) : m_loop(loop) {
    for (auto& call : m_calls) {
      call.poster = this;
    }
  }

 protected:
  void round() override {
    if (m_posted - m_ran == kWaitingPerPoster) {
      return pause();
    }
    Call& call = m_calls[m_posted % kWaitingPerPoster];
    call.number = m_posted++;
    check(m_loop.dispatcher().queueAsyncCall(&Poster::run, &call), "a call is posted");
    ++gFigures.callsPosted;
  }
  void end() override {
    while (m_ran != m_posted) {
      pause();
    }
  }

 private:
  struct Call {
    Poster* poster;
    unsigned int number;
  };

  static void run(void* data) {
    const Call& call = *static_cast<Call*>(data);
    check(call.number == call.poster->m_ran, "calls run once each and in order");
    ++gFigures.callsRun;
    ++call.poster->m_ran;
  }

  LoopWorker& m_loop;
  std::array<Call, kWaitingPerPoster> m_calls = {};
  unsigned int m_posted = 0;
  std::atomic<unsigned int> m_ran{0};
};

/// Removes calls while the loop is busy running them.
class Remover : public Worker, public trelvo::core::IAsyncCallReceiver {
 public:
  explicit Remover(LoopWorker& loop) : m_loop(loop), m_behind(ISemaphore::create(0, 1)) {}

  void handleAsyncCall(void* /*data*/) override {
    check(!m_gone, "no call runs after it was removed");
    ++m_ran;
  }

 protected:
  void round() override {
    m_gone = false;
    m_ran = 0;
    for (unsigned int i = 0; i < kRemovedPerRound; ++i) {
      check(m_loop.dispatcher().queueAsyncCall(this, nullptr), "a call is posted");
    }
    m_loop.dispatcher().removeAllAsyncCall(this);
    waitForOneBehind();
    m_gone = true;
    check(m_ran <= kRemovedPerRound, "no call runs twice");
    gFigures.callsPosted += kRemovedPerRound;
    gFigures.callsRun += m_ran;
    gFigures.callsRemoved += kRemovedPerRound - m_ran;
  }

 private:
  // A call may be running while it is removed; what is posted now runs behind it.
  void waitForOneBehind() {
    const auto signal = [](void* semaphore) {
      static_cast<ISemaphore*>(semaphore)->signal(1, nullptr);
    };
    check(m_loop.dispatcher().queueAsyncCall(+signal, m_behind.get()), "a call is posted");
    check(m_behind->wait(), "the call behind runs");
    ++gFigures.callsPosted;
    ++gFigures.callsRun;
  }

  LoopWorker& m_loop;
  SharedPointer<ISemaphore> m_behind;
  std::atomic<bool> m_gone{false};
  std::atomic<unsigned int> m_ran{0};
};

/// Stops the loop every few milliseconds, and wakes it for nothing.
class Stopper : public Worker {
 public:
  explicit Stopper(LoopWorker& loop) : m_loop(loop) {}

 protected:
  void round() override {
    m_loop.stopLoop();
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
    m_loop.dispatcher().interruptSleep();
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }

 private:
  LoopWorker& m_loop;
};

class CallsCrew : public Crew {
 public:
  explicit CallsCrew(AsyncCallDispatcher::MainLoopType type)
      : m_loop(type), m_remover(m_loop), m_stopper(m_loop) {
    for (unsigned int i = 0; i < kPosters; ++i) {
      m_posters.emplace_back(m_loop);
    }
  }

  void start() override {
    m_loop.startAndWait();
    forEachOther([](Worker& worker) { worker.start(); });
  }
  void stop() override {
    forEachOther([](Worker& worker) { worker.stop(); });
  }
  // The loop goes on until all that was posted has run.
  void join() override {
    forEachOther([](Worker& worker) { worker.join(); });
    m_loop.endLoop();
  }

 private:
  template <class Action>
  void forEachOther(Action action) {
    for (auto& poster : m_posters) {
      action(poster);
    }
    action(m_remover);
    action(m_stopper);
  }

  LoopWorker m_loop;
  std::deque<Poster> m_posters;
  Remover m_remover;
  Stopper m_stopper;
};

}  // namespace

std::unique_ptr<Crew> makeCallsCrew(AsyncCallDispatcher::MainLoopType type) {
  return std::make_unique<CallsCrew>(type);
}

}  // namespace soak
