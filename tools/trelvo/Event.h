#pragma once

#include "tools/trelvo/UniqueFd.h"

namespace trelvo::tool {

/// What one thread brings about and another waits for, together with anything else that poll(2)
/// knows: once, and for good.
/// Threads: any.
class Event {
 public:
  /// Throws std::system_error when the system has no descriptor left.
  Event();

  /// Brings it about.
  void set() const;

  /// Readable once set() was called.
  int descriptor() const { return m_descriptor.get(); }

 private:
  UniqueFd m_descriptor;
};

}  // namespace trelvo::tool
