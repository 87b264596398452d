#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <vector>

namespace bench {

/// Gathers times and reports the middle one and the one that 99 of 100 keep to, in nanoseconds.
class Percentiles {
 public:
  void add(std::chrono::nanoseconds time) { m_times.push_back(static_cast<double>(time.count())); }

  void report(benchmark::State& state) {
    std::sort(m_times.begin(), m_times.end());
    state.counters["p50"] = m_times.at(m_times.size() / 2);
    state.counters["p99"] = m_times.at(m_times.size() * 99 / 100);
  }

 private:
  std::vector<double> m_times;
};

}  // namespace bench
