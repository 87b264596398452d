#pragma once

#include <poll.h>

#include <trelvo/Export.h>

namespace trelvo::core {

/// Hears of a file descriptor that has become readable. LinAsyncCallDispatcher::attachPollSink()
/// brings the two together.
class TRELVO_EXPORT IPollSink {
 public:
  virtual ~IPollSink();

  /// Runs on the thread that sleeps in the dispatcher; `ready.fd` can be read without waiting. What
  /// is not read is reported again by the next sleep. What it throws is dropped, and then the sink
  /// counts as not served. It may attach and detach descriptors, its own too.
  virtual void handlePollEvent(const pollfd& ready) = 0;

 protected:
  IPollSink() = default;
  IPollSink(const IPollSink&) = default;
  IPollSink& operator=(const IPollSink&) = default;
};

}  // namespace trelvo::core
