#pragma once

// Timers, the same for every peer:
//
//   arm_disarm      a timer that exists is started and stopped
//   create_destroy  a timer comes and goes without being started
//   lateness        one of 2 ms: from when it should have fired into the call
//
// A peer states itself as two classes, the loop and the timer on it:
//
//   void Loop::turn();                       waits, then runs what is due
//   Timer(Loop& loop, Call call, void* data)
//   void arm(int ms);                        once
//   void disarm();
//
// Benchmarks are called timer/WORKLOAD/PEER.

#include <benchmark/benchmark.h>

#include <chrono>
#include <string>

#include "bench/loop/Percentiles.h"
#include "bench/loop/PostBench.h"

namespace bench {

constexpr int kHourMs = 3600000;
constexpr int kShortMs = 2;
constexpr int kShots = 50;

template <class Loop, class Timer>
void armAndDisarm(benchmark::State& state) {
  Loop loop;
  Timer timer(
      loop, [](void*) {}, nullptr);
  for (auto _ : state) {
    timer.arm(kHourMs);
    timer.disarm();
  }
}

template <class Loop, class Timer>
void createAndDestroy(benchmark::State& state) {
  Loop loop;
  for (auto _ : state) {
    const Timer timer(
        loop, [](void*) {}, nullptr);
  }
}

/// Notes how late each shot of a timer comes.
class Shots {
 public:
  template <class Loop, class Timer>
  void shoot(Loop& loop, Timer& timer) {
    m_fired = false;
    m_due = Clock::now() + std::chrono::milliseconds(kShortMs);
    timer.arm(kShortMs);
    while (!m_fired) {
      loop.turn();
    }
  }
  static void fired(void* shots) { static_cast<Shots*>(shots)->note(); }
  Percentiles& lateness() { return m_lateness; }

 private:
  using Clock = std::chrono::steady_clock;

  void note() {
    m_lateness.add(Clock::now() - m_due);
    m_fired = true;
  }

  Clock::time_point m_due;
  bool m_fired = false;
  Percentiles m_lateness;
};

template <class Loop, class Timer>
void lateness(benchmark::State& state) {
  Loop loop;
  Shots shots;
  Timer timer(loop, Shots::fired, &shots);
  for (auto _ : state) {
    for (int i = 0; i < kShots; ++i) {
      shots.shoot(loop, timer);
    }
  }
  shots.lateness().report(state);
}

/// Adds a peer to the workloads of timers that exist.
template <class Loop, class Timer>
bool registerArming(const std::string& name) {
  using benchmark::RegisterBenchmark;
  RegisterBenchmark(("timer/arm_disarm/" + name).c_str(), armAndDisarm<Loop, Timer>);
  RegisterBenchmark(("timer/lateness/" + name).c_str(), lateness<Loop, Timer>)->UseRealTime();
  return true;
}

/// Adds a peer to all workloads.
template <class Loop, class Timer>
bool registerTimer(const std::string& name) {
  benchmark::RegisterBenchmark(("timer/create_destroy/" + name).c_str(),
                               createAndDestroy<Loop, Timer>);
  return registerArming<Loop, Timer>(name);
}

}  // namespace bench
