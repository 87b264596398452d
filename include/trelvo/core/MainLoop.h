#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/core/AsyncCallDispatcher.h>
#include <trelvo/core/IAsyncCallDispatcher.h>
#include <trelvo/core/ISemaphore.h>
#include <trelvo/gom/ReferenceCountable.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::core {

class MainLoopCommon;

/// A main loop: keeps one thread in its dispatcher, where it runs posted calls and timers, until
/// somebody stops it. The library starts none by itself.
///
///     const auto loop = MainLoop::create(AsyncCallDispatcher::MainLoopTypeLinPoll);
///     loop->start(nullptr);  // returns after loop->stop(), which any thread may call
///
/// Loops made on one thread share its dispatcher: a callback may start another one. In a poll loop
/// posted calls go on in it; in a GLib loop they wait for the outer one, so that another thread, or
/// something else in the context, has to stop it.
///
/// Threads: create() and start() belong to one thread; stop(), isRunning() and dispatcher() may be
/// called on any. The loop must outlive its start().
class TRELVO_EXPORT MainLoop : public gom::ReferenceCountable {
 public:
  ~MainLoop() override;
  MainLoop(const MainLoop&) = delete;
  MainLoop& operator=(const MainLoop&) = delete;

  /// A loop for the calling thread.
  ///
  /// @param type the kind, which becomes the thread's for good. MainLoopTypeNone takes what the
  ///             thread has, else GLib, and is how to get a further loop.
  /// @return an empty handle when there is no such kind or the loop cannot be made. The thread
  ///         keeps the type all the same.
  /// Throws StatusWrongState when a type is given and the thread has one, even the same.
  [[nodiscard]] static gom::SharedPointer<MainLoop> create(AsyncCallDispatcher::MainLoopType type);

  /// Runs the loop until stop(). A stop whose wake-up was lost is seen within a second.
  /// @param started gets one token when the loop is up; may be empty.
  /// @return StatusOk when the loop was stopped; StatusWrongState, at once, when it was running.
  Status start(const gom::SharedPointer<ISemaphore>& started);

  /// Ends the loop. It may be started again. A start() that has not got as far as its semaphore
  /// does not see it.
  void stop();

  /// Whether the loop is between start() and stop().
  bool isRunning() const;

  /// The calling thread's type, which is the loop's on the loop's own thread.
  AsyncCallDispatcher::MainLoopType mainLoopType() const;

  /// The dispatcher that the loop sleeps in: post to it to run something on the loop's thread.
  gom::SharedPointer<IAsyncCallDispatcher> dispatcher() const;

 private:
  MainLoop() = default;
  bool initialize(AsyncCallDispatcher::MainLoopType type);

  MainLoopCommon* m_impl = nullptr;  // owned
};

}  // namespace trelvo::core
