#pragma once

#include <functional>
#include <random>

namespace trelvo::test {

/// How often a writer is killed: 20 times, or what the environment variable TRELVO_SOAK_ROUNDS
/// says.
unsigned int killRounds();

/// A process that writes until it is killed at a random moment.
class KilledWriter {
 public:
  /// Tells the parent what is safe by now. @return false when nobody listens any more.
  using Report = std::function<bool(unsigned int)>;

  /// Runs `write` in a process of its own, which does nothing else, and kills it some reports
  /// later. @return the last report; there is at least one.
  static unsigned int run(const std::function<void(const Report&)>& write, std::mt19937& random);
};

}  // namespace trelvo::test
