#pragma once

#include <trelvo/core/IAsyncCallDispatcher.h>

namespace trelvo::core {

/// Stands on the stack of a thread that is inside a dispatcher, as the first thing there. A last
/// reference that is given up on that thread meanwhile goes to the frame, so that the dispatcher
/// lives until the frame goes.
class DispatchFrame {
 public:
  explicit DispatchFrame(IAsyncCallDispatcher& dispatcher) noexcept;
  ~DispatchFrame();
  DispatchFrame(const DispatchFrame&) = delete;
  DispatchFrame& operator=(const DispatchFrame&) = delete;

  /// Hands a reference to the innermost frame of that dispatcher on this thread.
  /// @return false when there is none.
  static bool adopt(const IAsyncCallDispatcher& dispatcher) noexcept;

 private:
  IAsyncCallDispatcher& m_dispatcher;
  DispatchFrame* const m_outer;
  bool m_adopted = false;
};

}  // namespace trelvo::core
