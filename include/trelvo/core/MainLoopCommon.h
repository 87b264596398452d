#pragma once

#include <atomic>

#include <trelvo/Export.h>
#include <trelvo/Lockable.h>
#include <trelvo/Status.h>
#include <trelvo/core/AsyncCallDispatcher.h>
#include <trelvo/core/IAsyncCallDispatcher.h>
#include <trelvo/core/ISemaphore.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::core {

/// What all main loops share: sleep in the dispatcher until somebody stops the loop.
///
/// Applications use MainLoop. Threads: start() belongs to the thread of the dispatcher; stop(),
/// isRunning() and dispatcher() may be called on any. The loop must outlive its start().
class TRELVO_EXPORT MainLoopCommon {
 public:
  MainLoopCommon();
  virtual ~MainLoopCommon();
  MainLoopCommon(const MainLoopCommon&) = delete;
  MainLoopCommon& operator=(const MainLoopCommon&) = delete;

  /// The dispatcher that the loop sleeps in.
  virtual gom::SharedPointer<IAsyncCallDispatcher> dispatcher() const;

  /// Runs the loop until stop(). A stop whose wake-up was lost is seen within a second.
  /// @param started gets one token when the loop is up; may be empty.
  /// @return StatusOk when the loop was stopped; StatusWrongState, at once, when it was running or
  ///         has no dispatcher.
  virtual Status start(const gom::SharedPointer<ISemaphore>& started);

  /// Ends the loop, or, when it is not running, wakes its dispatcher up. A start() that has not got
  /// as far as its semaphore does not see it.
  virtual void stop();

  /// Whether the loop is between start() and stop().
  virtual bool isRunning() const;

  /// Takes a reference to the dispatcher, once and before all else. @return true.
  bool initialize(const gom::SharedPointer<IAsyncCallDispatcher>& dispatcher);

  /// A new loop of that kind over the dispatcher, which the caller deletes; null when there is no
  /// such kind or the loop cannot be made.
  [[nodiscard]] static MainLoopCommon* createMainLoop(
      AsyncCallDispatcher::MainLoopType type,
      const gom::SharedPointer<IAsyncCallDispatcher>& dispatcher);

 protected:
  /// Stores what isRunning() gives.
  void setRunning(bool running) noexcept;

 private:
  gom::SharedPointer<IAsyncCallDispatcher> m_dispatcher;
  std::atomic<bool> m_running{false};
  Lockable<MainLoopCommon*> m_self;  // this, until the destructor has begun
};

}  // namespace trelvo::core
