#pragma once

#include <functional>
#include <thread>
#include <vector>

#include "tools/trelvo/Event.h"
#include "tools/trelvo/Interrupt.h"

namespace trelvo::tool {

/// Looks after a transfer on a thread of its own, from construction to destruction: cancels it when
/// the program is asked to end, and tells a few times a second that time has passed.
class TransferWatch {
 public:
  /// Calls `cancel` once, at an interrupt, and `tick` from time to time unless it is empty; both on
  /// the watch's thread. `tick` gets the descriptors that it should not wait beyond.
  using Cancel = std::function<void()>;
  using Tick = std::function<void(const std::vector<int>&)>;
  TransferWatch(const Interrupt& interrupt, Cancel cancel, Tick tick);
  ~TransferWatch();
  TransferWatch(const TransferWatch&) = delete;
  TransferWatch& operator=(const TransferWatch&) = delete;

 private:
  void run();

  const Interrupt& m_interrupt;
  Cancel m_cancel;
  Tick m_tick;
  Event m_over;
  std::thread m_thread;
};

}  // namespace trelvo::tool
