#include "core/SpinningLock.h"

#include <algorithm>

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#endif

namespace trelvo::core {

namespace {

constexpr int kTries = 25;         // each after a few pauses
constexpr int kPausesBetween = 4;  // so that the holder keeps the cache line meanwhile
constexpr int kCostOfFailure = 4;
constexpr int kProbeEvery = 16;  // contentions without a spin before one is tried again

void pauseProcessor() {
#if defined(__x86_64__) || defined(__i386__)
  _mm_pause();
#elif defined(__aarch64__) || (defined(__ARM_ARCH) && __ARM_ARCH >= 7)
  __asm__ volatile("yield");
#else
  std::atomic_signal_fence(std::memory_order_seq_cst);
#endif
}

bool spinFor(ILockable& lock) {
  for (int i = 0; i < kTries; ++i) {
    for (int pause = 0; pause < kPausesBetween; ++pause) {
      pauseProcessor();
    }
    if (lock.tryLock(0) == 1) {
      return true;
    }
  }
  return false;
}

// Credit below zero counts the contentions since the last spin. Threads that change it at once may
// lose a step, which does not matter.
bool worthSpinning(std::atomic<int>& credit) {
  const int now = credit.load(std::memory_order_relaxed);
  if (now > 0) {
    return true;
  }
  credit.store(now > -kProbeEvery ? now - 1 : 1, std::memory_order_relaxed);
  return false;
}

void settle(std::atomic<int>& credit, bool paidOff) {
  const int now = credit.load(std::memory_order_relaxed);
  const int next =
      paidOff ? std::min(now + 1, SpinningLock::kFullCredit) : std::max(now - kCostOfFailure, 0);
  credit.store(next, std::memory_order_relaxed);
}

bool acquire(ILockable& lock, std::atomic<int>& credit) {
  if (lock.tryLock(0) == 1) {
    return true;
  }
  if (worthSpinning(credit)) {
    const bool held = spinFor(lock);
    settle(credit, held);
    if (held) {
      return true;
    }
  }
  return lock.lock();
}

}  // namespace

SpinningLock::SpinningLock(ILockable& lock, std::atomic<int>& credit)
    : m_lock(lock), m_held(acquire(lock, credit)) {}

}  // namespace trelvo::core
