#pragma once

#include <trelvo/core/IThread.h>
#include <trelvo/core/IThreadObserver.h>

#include <atomic>
#include <future>

namespace trelvo::test {

/// Counts its calls and ends at once.
struct CountingObserver : core::IThreadObserver {
  int threadMain() override {
    ++calls;
    threadId = core::IThread::currentThreadId();
    return result;
  }

  std::atomic<int> calls{0};
  std::atomic<int> threadId{0};
  int result = 0;
};

/// Stays in its body until it is released.
class HeldObserver : public core::IThreadObserver {
 public:
  int threadMain() override {
    m_entered.set_value();
    m_released.get_future().wait();
    m_left = true;
    return 0;
  }

  void waitUntilEntered() { m_entered.get_future().wait(); }
  void release() { m_released.set_value(); }
  bool hasLeft() const { return m_left; }

 private:
  std::promise<void> m_entered;
  std::promise<void> m_released;
  std::atomic<bool> m_left{false};
};

}  // namespace trelvo::test
