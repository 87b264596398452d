#pragma once

#include <trelvo/Export.h>
#include <trelvo/core/IAsyncCallReceiver.h>
#include <trelvo/gom/ReferenceCountable.h>

namespace trelvo::core {

/// The event spine of one thread: other threads post calls to it, and they run on the thread that
/// sleeps in it, in the order in which they were posted.
///
/// AsyncCallDispatcher::openDispatcher() gives the calling thread's own.
///
/// **Posted calls can be lost.** The wake-up channel holds a bounded number of calls that wait to
/// run: 278 on Debian 12 for amd64 with the default net.core.wmem_default of 212,992 bytes. A call
/// posted while it is full is accepted like any other (the result is true), but never runs, not
/// even when there is room again; it takes its few bytes until removeAllAsyncCall() removes it or
/// the dispatcher dies. So a caller that must not lose calls keeps count: it lets at most 256 calls
/// to one dispatcher wait at a time, over all its posters, and posts the next one when an earlier
/// one has run. Interrupts and the stop of a main loop take a place like any call. A stream of work
/// is one posted call that empties a queue of its own.
///
/// Ownership: the dispatcher dies with its last handle, on the thread that drops it, and calls that
/// still wait die with it. Where the last handle goes inside one of its own callbacks, it lives on
/// until that sleep() ends. What is posted is not owned: remove calls to an object before it goes.
///
/// Threads: queueAsyncCall(), removeAllAsyncCall() and interruptSleep() may be called on any thread
/// while somebody holds a handle. All else, making and dropping handles too, belongs to one thread.
class TRELVO_EXPORT IAsyncCallDispatcher : public gom::ReferenceCountable {
 public:
  ~IAsyncCallDispatcher() override;

  /// Posts `function(data)`, to run once. `function` should not be null: such a call does nothing.
  /// @return true, also when the call is lost since the channel is full (see above); false when
  ///         memory ran out, with nothing posted.
  virtual bool queueAsyncCall(void (*function)(void*), void* data) = 0;

  /// Posts `receiver->handleAsyncCall(data)`, with the same result. `receiver` must live until the
  /// call has run or was removed.
  virtual bool queueAsyncCall(IAsyncCallReceiver* receiver, void* data) = 0;

  /// Removes all calls to `function` that have not begun to run, whatever their data. It does not
  /// wait for one that is running.
  virtual void removeAllAsyncCall(void (*function)(void*)) = 0;

  /// The same for all calls to `receiver`. Null removes nothing.
  virtual void removeAllAsyncCall(IAsyncCallReceiver* receiver) = 0;

  /// Waits until something happens, however long that takes, and runs the callbacks of what did.
  /// @return whether sleep(-1) gives 1.
  virtual bool sleep() = 0;

  /// Waits for at most `timeoutMs` milliseconds (0 polls, -1 waits for ever), and runs the
  /// callbacks of all that happened: posted calls and attached descriptors. Callbacks may sleep in
  /// the same dispatcher again.
  /// @return 1 when something ran, else 0; a poll dispatcher gives 2 when the time ran out.
  virtual int sleep(int timeoutMs) = 0;

  /// Ends the sleep that is going on, or else the next one, by posting a call that does nothing.
  virtual void interruptSleep() = 0;

  /// Gives up one reference; called by handles. The last one destroys the dispatcher, at once or,
  /// on a thread that is inside its sleep(), at the end of that.
  void decrement();

 protected:
  IAsyncCallDispatcher() = default;
  IAsyncCallDispatcher(const IAsyncCallDispatcher&) = default;
  IAsyncCallDispatcher& operator=(const IAsyncCallDispatcher&) = default;
};

}  // namespace trelvo::core
