#pragma once

#include <csignal>

#include "tools/trelvo/UniqueFd.h"

namespace trelvo::tool {

/// Turns what asks the program to end (Ctrl-C, SIGTERM, SIGHUP) into a descriptor that becomes
/// readable, for as long as it lives. A signal that the program was started to ignore stays
/// ignored.
///
/// The signals are blocked in the calling thread and in those that it starts from then on: make it
/// before there are other threads, and end them first.
class Interrupt {
 public:
  /// Throws std::system_error when the system has no descriptor left.
  Interrupt();
  /// Those signals that came meanwhile have done their work.
  ~Interrupt();
  Interrupt(const Interrupt&) = delete;
  Interrupt& operator=(const Interrupt&) = delete;

  /// Readable once the program was asked to end.
  int descriptor() const { return m_descriptor.get(); }

 private:
  sigset_t m_before = {};
  UniqueFd m_descriptor;
};

}  // namespace trelvo::tool
