#pragma once

#include <pthread.h>

#include <trelvo/Export.h>

namespace trelvo {

/// The mutex of the logging instance and of the fault-injection counter.
///
/// There is one, gDebugMutex, and this class is made for it alone: whether it can be locked is kept
/// outside the object, so that an attempt before it is made or after it is destroyed at process
/// exit fails instead of touching a mutex that is not there.
///
/// Code takes it by DebugCommon::lock().
class TRELVO_EXPORT DebugMutex {
 public:
  /// Makes a mutex with default attributes, so not recursive. Where that fails, so does each
  /// lock().
  DebugMutex() noexcept;
  ~DebugMutex();
  DebugMutex(const DebugMutex&) = delete;
  DebugMutex& operator=(const DebugMutex&) = delete;

  /// Waits for the mutex. A thread that holds it already waits for ever. @return true when it is
  /// held, and then unlock() is due; false when there is no mutex.
  bool lock() noexcept;

  /// Gives the mutex back. Only the thread that holds it may call this.
  void unlock() noexcept;

 private:
  pthread_mutex_t m_mutex;
};

/// Made when the library is loaded, behind all else that is made then, and destroyed at process
/// exit.
extern TRELVO_EXPORT DebugMutex gDebugMutex;

}  // namespace trelvo
