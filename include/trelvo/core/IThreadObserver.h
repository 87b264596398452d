#pragma once

#include <trelvo/Export.h>

namespace trelvo::core {

/// What a thread runs: the application's side of core::IThread.
class TRELVO_EXPORT IThreadObserver {
 public:
  virtual ~IThreadObserver();

  /// The body of the thread, called once, on the new thread. An exception that leaves it ends the
  /// process.
  /// @return the thread's result, which becomes the exit value of the pthread.
  virtual int threadMain() = 0;

 protected:
  IThreadObserver() = default;
  IThreadObserver(const IThreadObserver&) = default;
  IThreadObserver& operator=(const IThreadObserver&) = default;
};

}  // namespace trelvo::core
