#pragma once

#include <csignal>

namespace trelvo::tool {

/// While it lives, a signal that ends the program (Ctrl-C, SIGTERM, SIGHUP) removes a file first.
///
/// A signal that somebody takes otherwise, or that the program was started to ignore, is left
/// alone. They end in the reverse of the order in which they were made; the latest one's file is
/// removed.
class SignalledRemoval {
 public:
  /// `path` has to stay as long as this object. Null: nothing is removed.
  explicit SignalledRemoval(const char* path);
  ~SignalledRemoval();
  SignalledRemoval(const SignalledRemoval&) = delete;
  SignalledRemoval& operator=(const SignalledRemoval&) = delete;

 private:
  static constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

  const char* m_outer;
  struct sigaction m_before[3] = {};
};

}  // namespace trelvo::tool
