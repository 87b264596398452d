#pragma once

#include <trelvo/Export.h>

namespace trelvo::core {

/// What a posted call runs, when it is an object and not a function.
class TRELVO_EXPORT IAsyncCallReceiver {
 public:
  virtual ~IAsyncCallReceiver();

  /// Runs on the thread that sleeps in the dispatcher, with the `data` that was posted. What it
  /// throws is dropped.
  virtual void handleAsyncCall(void* data) = 0;

 protected:
  IAsyncCallReceiver() = default;
  IAsyncCallReceiver(const IAsyncCallReceiver&) = default;
  IAsyncCallReceiver& operator=(const IAsyncCallReceiver&) = default;
};

}  // namespace trelvo::core
