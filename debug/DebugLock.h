#pragma once

#include <trelvo/DebugCommon.h>

namespace trelvo {

/// Holds DebugCommon::lock() while it lives; converts to false when the lock could not be taken.
class DebugLock {
 public:
  DebugLock() : m_held(DebugCommon::lock()) {}
  ~DebugLock() {
    if (m_held) DebugCommon::unlock();
  }
  DebugLock(const DebugLock&) = delete;
  DebugLock& operator=(const DebugLock&) = delete;

  explicit operator bool() const noexcept { return m_held; }

 private:
  const bool m_held;
};

}  // namespace trelvo
