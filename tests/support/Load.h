#pragma once

#include <cstdlib>

namespace trelvo::test {

/// How much of a load test's `whole` load to carry out: all of it, or as many percent as the
/// environment variable TRELVO_LOAD_PERCENT says. A slow machine, an emulator above all, wants
/// less.
inline int load(int whole) {
  const char* const wanted = std::getenv("TRELVO_LOAD_PERCENT");
  const int percent = wanted != nullptr ? std::atoi(wanted) : 100;
  return percent > 0 && percent < 100 ? static_cast<int>(1LL * whole * percent / 100) : whole;
}

}  // namespace trelvo::test
