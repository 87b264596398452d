#pragma once

#include <pthread.h>

#include <atomic>

#include <trelvo/Export.h>
#include <trelvo/core/ISemaphore.h>
#include <trelvo/core/IThread.h>

namespace trelvo::core {

/// The thread over pthreads. core::IThread::create() makes one that runs.
///
/// A new thread waits for its start semaphore, runs the body and signals its exit semaphore, which
/// holds one token. The pthread's exit value is the observer's result, or 15 when the body was
/// skipped because the object died before the thread was let go.
class TRELVO_EXPORT LinThread : public IThread {
 public:
  /// Without a thread: wait() gives true, tryWait() 0, and all else false or 0.
  LinThread() noexcept = default;
  /// Stops, waits and, at worst, kills: see core::IThread. When the thread's end was used up by
  /// isRunning(), this takes a full second.
  ~LinThread() override;
  LinThread(const LinThread&) = delete;
  LinThread& operator=(const LinThread&) = delete;

  /// Starts the thread, once. The arguments are those of core::IThread::create().
  /// @return false when memory or the system fails; there is no thread then.
  [[nodiscard]] bool create(IThreadObserver* observer, bool suspended);

  bool wait() override;
  [[nodiscard]] int tryWait(unsigned int timeoutMs) override;
  bool resume() override;
  bool isRunning() const override;
  int threadId() const override;
  bool setThreadPriority(Priority priority) override;

  /// Joins the pthread, waiting for its end however long that takes; wait() and tryWait() do so by
  /// themselves.
  /// @return true when it was joined, now or before, or is not there; false when the system
  ///         refuses.
  bool join();

  /// The same as the virtual function for any pthread. `thread` must not have been joined.
  static bool setThreadPriority(unsigned long thread, Priority priority);

 private:
  static void* staticMainFunction(void* thread);
  int threadFunction();
  int runObserver();
  void stop();

  IThreadObserver* m_observer = nullptr;
  pthread_t m_thread = {};
  std::atomic<bool> m_joinable{false};
  std::atomic<int> m_threadId{0};
  std::atomic<bool> m_stop{true};
  gom::SharedPointer<ISemaphore> m_startSemaphore;
  gom::SharedPointer<ISemaphore> m_exitSemaphore;
  std::atomic<bool> m_resumed{false};  // a resume() has succeeded
};

}  // namespace trelvo::core
