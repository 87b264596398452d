#pragma once

#include <trelvo/Export.h>
#include <trelvo/core/IThreadObserver.h>
#include <trelvo/gom/ReferenceCountable.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::core {

/// A thread of the application. The library starts none of its own.
///
///     struct Scanner : core::IThreadObserver {
///       int threadMain() override { return scanOnce() ? 0 : 1; }
///     };
///     Scanner scanner;
///     const auto thread = core::IThread::create(&scanner, false);
///     if (thread && thread->wait()) { ... }  // it has ended
///
/// The end of a thread is told once. Whichever of wait(), tryWait() and isRunning() learns of it
/// first uses it up: from then on isRunning() gives true, tryWait() 2, and wait() never returns. So
/// wait, or ask isRunning() until it gives false, but not both.
///
/// Ownership: dropping the last handle ends the thread's object and, with it, waits up to one
/// second for the thread. One that is suspended, or has not come to its body yet, ends without it.
/// **A thread that has not ended by then takes the process with it, by signal 9**: see to its end
/// first. A thread cannot drop the last handle to itself.
///
/// Threads: wait() and tryWait() on one other thread at a time; threadId() on any.
class TRELVO_EXPORT IThread : public gom::ReferenceCountable {
 public:
  /// How eagerly the system runs a thread. What is above normal asks for round-robin real-time
  /// scheduling, for which a process needs the privilege (CAP_SYS_NICE or RLIMIT_RTPRIO).
  enum Priority : int {
    PriorityLowest = 1,    ///< As PriorityNormal.
    PriorityLow = 2,       ///< As PriorityNormal.
    PriorityNormal = 3,    ///< SCHED_OTHER.
    PriorityHigh = 4,      ///< SCHED_RR at its lowest priority.
    PriorityHighest = 5,   ///< SCHED_RR at its highest priority.
    PriorityRealTime = 6,  ///< As PriorityHighest.
  };

  ~IThread() override;

  /// Waits for the thread's end.
  /// @return true when it has ended, and also when waiting as such failed; false when it has ended
  ///         but the system could not join it.
  virtual bool wait() = 0;

  /// Waits for the thread's end for at most `timeoutMs` milliseconds; with 0 it asks. Use 0 or
  /// whole seconds, for the reason given at core::LinSemaphore::tryWait().
  /// @return 0 on failure, 1 when the thread has ended, 2 when the time ran out.
  [[nodiscard]] virtual int tryWait(unsigned int timeoutMs) = 0;

  /// Lets a suspended thread run. @return true for the first call, false for every further one.
  virtual bool resume() = 0;

  /// Whether the thread has yet to end; a suspended one has. The first false uses the thread's end
  /// up (see above): every later call gives true.
  virtual bool isRunning() const = 0;

  /// The kernel's id of the thread, as of currentThreadId(); 0 until its first lines have run.
  virtual int threadId() const = 0;

  /// @return false, with nothing changed, for a value outside of 1 to 6, for a thread already
  ///         joined, and when the system refuses.
  virtual bool setThreadPriority(Priority priority) = 0;

  /// A new thread that runs `observer->threadMain()`, at once or, when `suspended`, after resume().
  ///
  /// `observer` is not owned and must live until the thread has ended. A null one makes a thread
  /// without a body.
  /// @return an empty handle when memory or the system fails.
  [[nodiscard]] static gom::SharedPointer<IThread> create(IThreadObserver* observer,
                                                          bool suspended);

  /// The same for the calling thread.
  static bool setCurrentThreadPriority(Priority priority);

  /// The kernel's id of the calling thread (`gettid`, not a `pthread_t`).
  static int currentThreadId();

  /// Returns at once, whatever the argument. To wait, use a semaphore's tryWait() or a dispatcher.
  static void sleep(int /*ms*/) {}
};

}  // namespace trelvo::core
