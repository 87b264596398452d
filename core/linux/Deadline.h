#pragma once

#include <ctime>

namespace trelvo::core {

/// Moves `time` on by `ms` milliseconds, without a carry from the nanoseconds into the seconds.
inline void addWithoutCarry(timespec& time, unsigned int ms) noexcept {
  time.tv_sec += static_cast<time_t>(ms / 1000);
  time.tv_nsec += static_cast<long>(ms % 1000) * 1000000;
}

}  // namespace trelvo::core
