#pragma once

#include <glib.h>
#include <poll.h>

#include <atomic>
#include <condition_variable>
#include <list>

#include <trelvo/Export.h>
#include <trelvo/core/LinAsyncCallDispatcher.h>

namespace trelvo::core {

/// The dispatcher that lives in GLib's default main context, beside everything else in there.
///
/// Whatever runs that context serves it: sleep(), a GMainLoop, the toolkit of a graphical program.
/// All dispatchers of this kind share the one default context, so the callbacks of each run on the
/// thread that runs the context, whichever thread made it. Use the poll form on further threads.
///
/// A dispatcher is not entered twice: a sleep, or a further main loop, inside a callback runs what
/// else is in the context, but none of this dispatcher's calls, descriptors and timers.
///
/// Where none of the sinks that were to be served together ran to its end, as they threw, found
/// their descriptors drained by others or could not be polled again, GLib takes the dispatcher out
/// of the context: none of its calls and descriptors are served any more. Its sleeps still keep
/// their time, and its main loop can be stopped.
class TRELVO_EXPORT LinGlibAsyncCallDispatcher : public LinAsyncCallDispatcher {
 public:
  LinGlibAsyncCallDispatcher() = default;
  /// Leaves the context and empties the slot of the thread that it runs on. Waits for callbacks
  /// that another thread runs.
  ~LinGlibAsyncCallDispatcher() override;
  LinGlibAsyncCallDispatcher(const LinGlibAsyncCallDispatcher&) = delete;
  LinGlibAsyncCallDispatcher& operator=(const LinGlibAsyncCallDispatcher&) = delete;

  /// The calling thread's dispatcher, made on the first call; its count is not touched, so that a
  /// fresh one has none. @return null when memory or descriptors run out.
  static LinGlibAsyncCallDispatcher* create();

  /// Makes the wake-up channel and joins the context; create() does that. @return false on failure.
  bool init();

  bool sleep() override;

  /// Runs one turn of the default main context, and with it what others have put there.
  /// @return 1 when anything in the context was dispatched; 0 when the time ran out, and when GLib
  ///         was woken for reasons of its own, which may be long before.
  int sleep(int timeoutMs) override;

 protected:
  bool doAttachPollSink(const pollfd& descriptor) override;
  void doDetachPollSink(const pollfd& descriptor) override;

 private:
  struct Source;

  static gboolean prepareStatic(GSource* source, gint* timeout);
  static gboolean checkStatic(GSource* source);
  static gboolean dispatchStatic(GSource* source, GSourceFunc callback, gpointer data);
  static void finalizeStatic(GSource* source);

  void joinContext(GSource* source);
  void leaveContext();
  bool inContext() const;
  bool isPolled() const;
  void withdrawWhileDispatching();
  bool readable();
  static LinGlibAsyncCallDispatcher* beginDispatch(GSource* source);
  bool dispatch();
  void endDispatch();
  std::list<GPollFD>::iterator firstPoller();
  bool nextReadable(std::list<GPollFD>::iterator& position, pollfd& descriptor);
  void removeDetachedPollers();

  GSourceFuncs m_sourceFuncs = {};
  GSource* m_source = nullptr;
  std::list<GPollFD> m_pollers;         // under m_pollMutex; GLib knows the nodes by address
  std::atomic<int> m_sleepTimeout{-1};  // milliseconds; read by whoever runs the context
  bool m_dispatching = false;           // under m_pollMutex
  bool m_withdrawn = false;  // under m_pollMutex: the context polls none of the descriptors
  std::condition_variable m_dispatched;
};

}  // namespace trelvo::core
