#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "tools/trelvo/FileStream.h"
#include "tools/trelvo/RawContainers.h"

namespace trelvo::tool {

/// When the containers of a replay are due, counted from its start.
///
/// From one stamp to the next later one it waits their difference, at most the longest gap, divided
/// by the speed. A container without a stamp, and one whose stamp lies before the last, is due at
/// once.
class ReplayPace {
 public:
  using Time = std::chrono::duration<double>;

  /// A speed of 0 waits for nothing. The longest gap is in seconds of the stamps.
  explicit ReplayPace(double speed, std::optional<double> longestGap = std::nullopt)
      : m_speed(speed), m_longestGap(longestGap) {}

  /// When the next container is due, which has this stamp.
  Time due(const std::optional<unsigned int>& timeStamp);

 private:
  double m_speed;
  std::optional<double> m_longestGap;
  std::optional<unsigned int> m_last;
  Time m_due{0.0};
};

/// The time of a replay.
class ReplayClock {
 public:
  virtual ~ReplayClock() = default;

  /// Waits until `due` after the start, and not at all when that is past. @return false when the
  /// program was asked to end.
  virtual bool waitUntil(ReplayPace::Time due) = 0;

  /// Whether the program was asked to end while a container was written.
  virtual bool isEnded() = 0;
};

/// Hands the containers of `input` to `output`, which messages call `name`, when they are due, each
/// flushed; ends behind a whole container. Throws Failure or ReaderGone.
void replay(RawContainers& input, ReplayPace pace, ReplayClock& clock, FileStream& output,
            const std::string& name);

}  // namespace trelvo::tool
