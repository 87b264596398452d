#pragma once

// Workload f, the same for every loop:
//
//   same_thread   64 posts, then the loop runs them
//   one_poster    a thread posts 200,000 calls, at most 64 of them under way
//   two_posters   the same calls from two threads, at most 64 of each under way
//   latency       single posts to a loop that sleeps: from before the post into the call
//
// A loop states itself as a class:
//
//   void post(Call call, void* data);  from any thread
//   void turn();                       waits, then runs the calls that are there
//
// Benchmarks are called loop/WORKLOAD/LOOP. Only ratios within one run mean anything, and a busy
// processor hides what two threads do to each other.

#include <benchmark/benchmark.h>
#include <sched.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "bench/loop/Percentiles.h"

namespace bench {

using Call = void (*)(void*);

constexpr unsigned int kBatch = 64;
constexpr unsigned int kPosts = 200000;
constexpr unsigned int kUnderWay = 64;
constexpr int kProbes = 500;
constexpr auto kProbeEvery = std::chrono::microseconds(100);

/// The time of one post and its call.
inline void countPosts(benchmark::State& state, unsigned int postsAnIteration) {
  const double posts = static_cast<double>(state.iterations()) * postsAnIteration;
  state.counters["per_post"] =
      benchmark::Counter(posts, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

template <class Loop>
void sameThread(benchmark::State& state) {
  Loop loop;
  unsigned int ran = 0;
  for (auto _ : state) {
    ran = 0;
    for (unsigned int i = 0; i < kBatch; ++i) {
      loop.post([](void* count) { ++*static_cast<unsigned int*>(count); }, &ran);
    }
    while (ran < kBatch) {
      loop.turn();
    }
  }
  countPosts(state, kBatch);
}

/// A thread that posts, never more than kUnderWay calls ahead of the loop.
class Poster {
 public:
  template <class Loop>
  Poster(Loop& loop, unsigned int posts)
      : m_posts(posts), m_thread([this, &loop] { postAllTo(loop); }) {}
  ~Poster() { m_thread.join(); }
  Poster(const Poster&) = delete;
  Poster& operator=(const Poster&) = delete;

  /// Whether all calls ran.
  bool done() const { return ran() == m_posts; }

 private:
  template <class Loop>
  void postAllTo(Loop& loop) {
    for (unsigned int posted = 0; posted < m_posts; ++posted) {
      while (posted - ran() >= kUnderWay) {
        sched_yield();
      }
      loop.post([](void* poster) { static_cast<Poster*>(poster)->count(); }, this);
    }
  }
  void count() { m_ran.store(ran() + 1, std::memory_order_release); }
  unsigned int ran() const { return m_ran.load(std::memory_order_acquire); }

  const unsigned int m_posts;
  std::atomic<unsigned int> m_ran{0};
  std::thread m_thread;
};

template <class Loop>
void posters(benchmark::State& state, unsigned int threads) {
  Loop loop;
  for (auto _ : state) {
    std::vector<std::unique_ptr<Poster>> all;
    for (unsigned int i = 0; i < threads; ++i) {
      all.push_back(std::make_unique<Poster>(loop, kPosts / threads));
    }
    for (const auto& poster : all) {
      while (!poster->done()) {
        loop.turn();
      }
    }
  }
  countPosts(state, kPosts);
}

/// Posts one call at a time, each when the loop has long gone to sleep, and notes when they ran.
class Prober {
 public:
  template <class Loop>
  void run(Loop& loop) {
    m_ran = 0;
    std::thread thread([this, &loop] { probe(loop); });
    while (m_ran.load(std::memory_order_relaxed) < kProbes) {
      loop.turn();
    }
    thread.join();
  }
  Percentiles& latencies() { return m_latencies; }

 private:
  using Clock = std::chrono::steady_clock;

  template <class Loop>
  void probe(Loop& loop) {
    for (int posted = 0; posted < kProbes; ++posted) {
      do {
        std::this_thread::sleep_for(kProbeEvery);
      } while (m_ran.load(std::memory_order_acquire) < posted);
      m_posted = Clock::now();
      loop.post([](void* prober) { static_cast<Prober*>(prober)->note(); }, this);
    }
  }
  void note() {
    m_latencies.add(Clock::now() - m_posted);
    m_ran.fetch_add(1, std::memory_order_release);
  }

  Clock::time_point m_posted;
  std::atomic<int> m_ran{0};
  Percentiles m_latencies;
};

template <class Loop>
void latency(benchmark::State& state) {
  Loop loop;
  Prober prober;
  for (auto _ : state) {
    prober.run(loop);
  }
  prober.latencies().report(state);
}

/// Adds a loop to the workloads between threads.
template <class Loop>
bool registerPosters(const std::string& name) {
  using benchmark::RegisterBenchmark;
  RegisterBenchmark(("loop/one_poster/" + name).c_str(), posters<Loop>, 1)->UseRealTime();
  RegisterBenchmark(("loop/two_posters/" + name).c_str(), posters<Loop>, 2)->UseRealTime();
  RegisterBenchmark(("loop/latency/" + name).c_str(), latency<Loop>)->UseRealTime();
  return true;
}

/// Adds a loop to all workloads.
template <class Loop>
bool registerLoop(const std::string& name) {
  benchmark::RegisterBenchmark(("loop/same_thread/" + name).c_str(), sameThread<Loop>);
  return registerPosters<Loop>(name);
}

}  // namespace bench
