#pragma once

#include <poll.h>

#include <map>
#include <mutex>

#include <trelvo/Export.h>
#include <trelvo/core/AsyncCallDispatcherCommon.h>
#include <trelvo/core/IPollSink.h>

namespace trelvo::core {

/// A dispatcher that waits for file descriptors; what both Linux forms share.
///
/// The wake-up channel is a pair of connected sockets that carries a call's number as a message of
/// four bytes. Its reading end is a descriptor like any other, with the dispatcher itself as sink.
///
/// A descriptor is served when it is readable and nothing else: neither an error nor a hang-up may
/// be reported with it, not even when there are bytes left. A sink that wants to hear of the
/// end of a stream reads until then whenever it is called.
///
/// Threads: attaching and detaching belong to the thread that sleeps. A descriptor 0 is taken for
/// none, everywhere.
class TRELVO_EXPORT LinAsyncCallDispatcher : public AsyncCallDispatcherCommon, public IPollSink {
 public:
  LinAsyncCallDispatcher() = default;
  ~LinAsyncCallDispatcher() override;
  LinAsyncCallDispatcher(const LinAsyncCallDispatcher&) = delete;
  LinAsyncCallDispatcher& operator=(const LinAsyncCallDispatcher&) = delete;

  bool doScheduleDelegate(unsigned int id) override;

  /// Calls `sink` from the next sleep on whenever `descriptor.fd` is readable; its `events` are not
  /// looked at. Neither is owned: detach before closing the one or deleting the other.
  /// @return false, with nothing changed, when the sink is null, the descriptor 0 or attached
  ///         already, and when memory runs out.
  virtual bool attachPollSink(const pollfd& descriptor, IPollSink* sink);

  /// Forgets the sink of `descriptor.fd`, at once, also while events are being served. An unknown
  /// descriptor is harmless.
  virtual void detachPollSink(const pollfd& descriptor);

  /// Runs all posted calls, also those that they post meanwhile: a call that always posts itself
  /// again never lets the sleep end.
  void handlePollEvent(const pollfd& ready) override;

 protected:
  /// Adds `descriptor.fd` to those that sleep() waits for. @return false when that failed.
  virtual bool doAttachPollSink(const pollfd& descriptor) = 0;
  /// Takes it out again; unknown ones are harmless.
  virtual void doDetachPollSink(const pollfd& descriptor) = 0;

  /// Makes the wake-up channel. @return false when the system refuses one.
  bool baseInit();

  /// Runs posted calls until the channel is empty. @return what the last read gave: -1 mostly.
  int invokeApc();

  /// Calls the sink of `ready.fd`. @return false when there is none, or when it threw.
  bool invokeCallback(const pollfd& ready);

  int m_readFd = 0;   ///< The end that is polled, 0 when there is none.
  int m_writeFd = 0;  ///< The end that posting writes to, 0 when there is none.

 private:
  bool rememberSink(int fd, IPollSink* sink);
  void forgetSink(int fd);
  IPollSink* sinkOf(int fd);

  std::map<int, IPollSink*> m_pollSinks;  // under m_pollMutex

 protected:
  /// Guards the sinks and the derived class's list of descriptors: the default main context of GLib
  /// may be run by another thread than the one that attaches. Never held over a call out.
  std::mutex m_pollMutex;

 private:
  IPollSink* m_readSink = nullptr;  // the sink of m_readFd, found without a search
};

}  // namespace trelvo::core
