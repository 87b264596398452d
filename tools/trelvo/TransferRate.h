#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>

namespace trelvo::tool {

/// How fast bytes came during the last few seconds, and when the rest will be there.
class TransferRate {
 public:
  using Time = std::chrono::steady_clock::time_point;

  /// By `now`, `bytes` have come in all.
  void add(Time now, std::uint64_t bytes);

  /// Bytes a second over the last five seconds or so; 0 while there is nothing to tell it by.
  double bytesPerSecond() const;

  /// The rate as text, and with a `total` the time that the rest takes at that rate:
  /// "310 kB/s", "2.5 MB/s  1:10 left", "0 kB/s  stalled".
  std::string text(std::optional<std::uint64_t> total) const;

 private:
  struct Sample {
    Time time{};
    std::uint64_t bytes = 0;
  };

  std::string remainingText(std::uint64_t total) const;

  std::deque<Sample> m_samples;
};

}  // namespace trelvo::tool
