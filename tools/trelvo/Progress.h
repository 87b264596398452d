#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <ostream>

#include "tools/trelvo/TransferRate.h"

namespace trelvo::tool {

/// A line on a terminal that tells how far a long input has come, redrawn a few times a second:
///
///     [##########..............]  42 %  126.1 MB of 300.0 MB
///     126.1 MB                                                 when the total is unknown
///     [##########..............]  42 %  126.1 MB of 300.0 MB  2.5 MB/s  1:10 left
///                                                              with the rate
///
/// Nothing is shown for input that is done within half a second, nor where there is no terminal.
/// Destruction wipes the line.
/// Threads: one at a time.
class Progress {
 public:
  using Clock = std::function<std::chrono::steady_clock::time_point()>;

  /// Draws on `terminal` when `shown`. `total` is the input's size in bytes, where it is known.
  Progress(std::ostream& terminal, bool shown, std::optional<std::uint64_t> total,
           Clock clock = std::chrono::steady_clock::now);

  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

  /// Shows the rate too, and with a total the time that the rest takes.
  void showRate() { m_rateShown = true; }

  /// The total has become known.
  void setTotal(std::uint64_t total) { m_total = total; }

  /// Whether update() would draw the line now.
  bool isDue() const { return m_shown && m_clock() >= m_next; }

  /// `bytes` of the input have been read.
  void update(std::uint64_t bytes);

  /// Wipes the line, so that a message can be printed; the next update() draws it again.
  void clear();

 private:
  void draw(std::uint64_t bytes);

  std::ostream& m_terminal;
  bool m_shown;
  bool m_drawn = false;
  bool m_rateShown = false;
  std::optional<std::uint64_t> m_total;
  Clock m_clock;
  std::chrono::steady_clock::time_point m_next;
  TransferRate m_rate;
};

}  // namespace trelvo::tool
