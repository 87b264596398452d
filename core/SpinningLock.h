#pragma once

#include <atomic>

#include <trelvo/core/ILockable.h>

namespace trelvo::core {

/// Holds a lock for a scope, and spins for it before it waits as long as that has paid off lately.
///
/// A post wakes the running thread while it holds the lock that this thread then wants. On two
/// processors each would put the other to sleep for every single call; a short spin avoids that. On
/// one processor, or when calls come singly, a spin is lost time: the thread that holds the lock
/// does not run. `credit` tells the cases apart; each side of a lock has its own, which starts at
/// kFullCredit.
class SpinningLock {
 public:
  static constexpr int kFullCredit = 8;

  SpinningLock(ILockable& lock, std::atomic<int>& credit);
  ~SpinningLock() {
    if (m_held) {
      m_lock.unlock();
    }
  }
  SpinningLock(const SpinningLock&) = delete;
  SpinningLock& operator=(const SpinningLock&) = delete;

  /// Whether the lock is held: it can fail.
  explicit operator bool() const noexcept { return m_held; }

 private:
  ILockable& m_lock;
  bool m_held;
};

}  // namespace trelvo::core
