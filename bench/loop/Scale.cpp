// What many descriptors cost: 10,000 timers that are armed and not due, for each second that the
// loop waits, and one active descriptor among 1,000, for each event. Beside them the bare call of
// poll(2) over as many descriptors, and a bare source of GLib. Benchmarks are called
// scale/WORKLOAD/PEER.

#include <benchmark/benchmark.h>
#include <glib.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/resource.h>
#include <sys/timerfd.h>
#include <trelvo/core/AsyncCallDispatcher.h>
#include <trelvo/core/ITimer.h>
#include <trelvo/core/ITimerObserver.h>
#include <trelvo/core/LinGlibAsyncCallDispatcher.h>
#include <trelvo/core/LinPollAsyncCallDispatcher.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "bench/Must.h"
#include "bench/loop/ThreadType.h"

namespace bench {

namespace {

using trelvo::core::AsyncCallDispatcher;
using trelvo::core::LinGlibAsyncCallDispatcher;
using trelvo::core::LinPollAsyncCallDispatcher;

constexpr std::size_t kIdleTimers = 10000;
constexpr int kHourMs = 3600000;
constexpr int kSecondMs = 1000;
constexpr std::size_t kDescriptors = 1000;
constexpr short kEvents = POLLIN | POLLERR | POLLRDHUP;

class Descriptor {
 public:
  explicit Descriptor(int number) : m_number(number) { must(number >= 0, "a descriptor"); }
  Descriptor(Descriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
  Descriptor& operator=(Descriptor&&) = delete;
  ~Descriptor() {
    if (m_number >= 0) {
      close(m_number);
    }
  }
  int get() const { return m_number; }

 private:
  int m_number;
};

/// @return whether that many descriptors may be open beside the few that always are.
bool allowDescriptors(rlim_t count) {
  rlimit limit = {};
  const rlim_t wanted = count + 100;
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= wanted) {
    return limit.rlim_cur >= wanted;
  }
  limit.rlim_cur = wanted;
  return limit.rlim_max >= wanted && setrlimit(RLIMIT_NOFILE, &limit) == 0;
}

/// The calling thread's dispatcher, of the class that is given; the thread's timers hang on it.
template <class Dispatcher, AsyncCallDispatcher::MainLoopType kType>
struct Own {
  const ThreadType type{kType};
  const trelvo::gom::SharedPointer<Dispatcher> dispatcher{Dispatcher::create()};
};
using OwnPoll = Own<LinPollAsyncCallDispatcher, AsyncCallDispatcher::MainLoopTypeLinPoll>;
using OwnGlib = Own<LinGlibAsyncCallDispatcher, AsyncCallDispatcher::MainLoopTypeLinGlib>;

// -- idle timers ----------------------------------------------------------------------------------

/// How often the thread has gone to sleep so far.
double waits() {
  rusage usage = {};
  must(getrusage(RUSAGE_THREAD, &usage) == 0, "getrusage");
  return static_cast<double>(usage.ru_nvcsw);
}

/// Runs `turn`, which waits for a second and hears of nothing. The time that counts is the
/// processor's; `waits` is how often the thread went to sleep for one turn.
template <class Turn>
void idle(benchmark::State& state, Turn turn) {
  turn(0);  // the first one makes room for its copy
  const double before = waits();
  for (auto _ : state) {
    turn(kSecondMs);
  }
  state.counters["waits"] =
      benchmark::Counter(waits() - before, benchmark::Counter::kAvgIterations);
}

struct NoObserver : trelvo::core::ITimerObserver {
  void handleTimerEvent(trelvo::core::ITimer* /*timer*/) override { must(false, "waiting"); }
};

template <class Owner>
void idleTimers(benchmark::State& state) {
  if (!allowDescriptors(kIdleTimers)) {
    state.SkipWithError("too few descriptors are allowed here");
    return;
  }
  const Owner own;
  NoObserver observer;
  std::vector<trelvo::gom::SharedPointer<trelvo::core::ITimer>> timers;
  for (std::size_t i = 0; i < kIdleTimers; ++i) {
    timers.push_back(trelvo::core::ITimer::create(&observer));
    must(timers.back()->start(kHourMs, 0) == trelvo::StatusOk, "start");
  }
  idle(state, [&](int ms) { must(own.dispatcher->sleep(ms) != 1, "waiting"); });
}

void idleTimersBarePoll(benchmark::State& state) {
  if (!allowDescriptors(kIdleTimers)) {
    state.SkipWithError("too few descriptors are allowed here");
    return;
  }
  const itimerspec inAnHour{{}, {kHourMs / kSecondMs, 0}};
  std::vector<Descriptor> timers;
  std::vector<pollfd> descriptors;
  for (std::size_t i = 0; i < kIdleTimers; ++i) {
    timers.emplace_back(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK));
    must(timerfd_settime(timers.back().get(), 0, &inAnHour, nullptr) == 0, "timerfd_settime");
    descriptors.push_back({timers.back().get(), kEvents, 0});
  }
  idle(state, [&](int ms) { must(poll(descriptors.data(), kIdleTimers, ms) == 0, "poll"); });
}

// -- one active among many ------------------------------------------------------------------------

/// Quiet descriptors, and behind them one that always has something to read.
std::vector<Descriptor> oneActive() {
  std::vector<Descriptor> all;
  for (std::size_t i = 1; i < kDescriptors; ++i) {
    all.emplace_back(eventfd(0, EFD_NONBLOCK));
  }
  all.emplace_back(eventfd(1, EFD_NONBLOCK));
  return all;
}

struct CountingSink : trelvo::core::IPollSink {
  void handlePollEvent(const pollfd& /*ready*/) override { ++events; }
  benchmark::IterationCount events = 0;
};

template <class Owner>
void serveOne(benchmark::State& state) {
  must(allowDescriptors(kDescriptors), "setrlimit");
  const Owner own;
  const std::vector<Descriptor> descriptors = oneActive();
  CountingSink sink;
  for (const Descriptor& descriptor : descriptors) {
    must(own.dispatcher->attachPollSink({descriptor.get(), POLLIN, 0}, &sink), "attachPollSink");
  }
  for (auto _ : state) {
    own.dispatcher->sleep();
  }
  must(sink.events == state.iterations(), "serving");
}

void serveOneBarePoll(benchmark::State& state) {
  must(allowDescriptors(kDescriptors), "setrlimit");
  const std::vector<Descriptor> descriptors = oneActive();
  std::vector<pollfd> polled;
  polled.reserve(descriptors.size());
  for (const Descriptor& descriptor : descriptors) {
    polled.push_back({descriptor.get(), kEvents, 0});
  }
  while (state.KeepRunning()) {
    must(poll(polled.data(), polled.size(), -1) == 1, "poll");
  }
}

/// A source of GLib that waits for all of them, as bare as can be.
class BareSource {
 public:
  explicit BareSource(const std::vector<Descriptor>& descriptors)
      : m_source(g_source_new(&m_functions, sizeof(Source))) {
    reinterpret_cast<Source*>(m_source)->owner = this;
    for (const Descriptor& descriptor : descriptors) {
      m_polled.push_back({descriptor.get(), G_IO_IN | G_IO_ERR | G_IO_HUP, 0});
    }
    for (GPollFD& polled : m_polled) {
      g_source_add_poll(m_source, &polled);
    }
    g_source_attach(m_source, nullptr);
  }
  ~BareSource() {
    g_source_destroy(m_source);
    g_source_unref(m_source);
  }
  BareSource(const BareSource&) = delete;
  BareSource& operator=(const BareSource&) = delete;

 private:
  struct Source {
    GSource base;
    BareSource* owner;
  };

  static gboolean check(GSource* source) {
    const auto& all = reinterpret_cast<Source*>(source)->owner->m_polled;
    return std::any_of(all.begin(), all.end(),
                       [](const GPollFD& each) { return each.revents != 0; })
               ? TRUE
               : FALSE;
  }
  static gboolean dispatch(GSource*, GSourceFunc, gpointer) { return G_SOURCE_CONTINUE; }

  GSourceFuncs m_functions = {nullptr, check, dispatch, nullptr, nullptr, nullptr};
  std::vector<GPollFD> m_polled;
  GSource* m_source;
};

void serveOneBareSource(benchmark::State& state) {
  must(allowDescriptors(kDescriptors), "setrlimit");
  const std::vector<Descriptor> descriptors = oneActive();
  const BareSource source(descriptors);
  while (state.KeepRunning()) {
    while (g_main_context_iteration(nullptr, TRUE) == FALSE) {
    }
  }
}

BENCHMARK(idleTimers<OwnPoll>)->Name("scale/idle_timers/lib:trelvo_poll");
BENCHMARK(idleTimers<OwnGlib>)->Name("scale/idle_timers/lib:trelvo_glib");
BENCHMARK(idleTimersBarePoll)->Name("scale/idle_timers/floor:poll");
BENCHMARK(serveOne<OwnPoll>)->Name("scale/one_of_1000/lib:trelvo_poll");
BENCHMARK(serveOne<OwnGlib>)->Name("scale/one_of_1000/lib:trelvo_glib");
BENCHMARK(serveOneBarePoll)->Name("scale/one_of_1000/floor:poll");
BENCHMARK(serveOneBareSource)->Name("scale/one_of_1000/GLib");

}  // namespace

}  // namespace bench
