#pragma once

#include <poll.h>

#include <vector>

#include <trelvo/Export.h>
#include <trelvo/core/LinAsyncCallDispatcher.h>

namespace trelvo::core {

/// The dispatcher that waits in poll(2) itself.
///
/// Descriptors are served in the order in which they were attached. One attached by a callback is
/// waited for from the next sleep on.
class TRELVO_EXPORT LinPollAsyncCallDispatcher : public LinAsyncCallDispatcher {
 public:
  LinPollAsyncCallDispatcher() = default;
  /// Empties the slot of the thread that it runs on.
  ~LinPollAsyncCallDispatcher() override;
  LinPollAsyncCallDispatcher(const LinPollAsyncCallDispatcher&) = delete;
  LinPollAsyncCallDispatcher& operator=(const LinPollAsyncCallDispatcher&) = delete;

  /// The calling thread's dispatcher, made on the first call; its count is not touched, so that a
  /// fresh one has none. @return null when memory or descriptors run out.
  static LinPollAsyncCallDispatcher* create();

  /// Makes the wake-up channel; create() does that. @return false when the system refuses one.
  bool init();

  bool sleep() override;

  /// @return 1 when a sink ran to its end, 2 when the time ran out, 0 when none did: a wait
  ///         that a signal interrupted, a sink that threw, a descriptor that reports an error.
  int sleep(int timeoutMs) override;

 protected:
  bool doAttachPollSink(const pollfd& descriptor) override;
  void doDetachPollSink(const pollfd& descriptor) override;

 private:
  class Snapshot;

  int serve(std::vector<pollfd>& descriptors, int ready);

  std::vector<pollfd> m_pollFds;  // under m_pollMutex
  std::vector<pollfd> m_room;     // kept for the copy that the next sleep works on
};

}  // namespace trelvo::core
