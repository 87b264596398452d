#include <trelvo/core/LinPollAsyncCallDispatcher.h>

#include <algorithm>
#include <new>
#include <utility>

#include "core/DispatchFrame.h"
#include "core/linux/ThreadDispatchers.h"

namespace trelvo::core {

/// The descriptors as they stand when a sleep begins: callbacks may attach and detach while they
/// are walked. It takes the room that is kept for it; a sleep nested in this one finds none left
/// and gets its own.
class LinPollAsyncCallDispatcher::Snapshot {
 public:
  /// Throws std::bad_alloc.
  explicit Snapshot(LinPollAsyncCallDispatcher& owner)
      : m_owner(owner), m_descriptors(std::move(owner.m_room)) {
    const std::lock_guard<std::mutex> lock(owner.m_pollMutex);
    m_descriptors = owner.m_pollFds;
  }
  ~Snapshot() { m_owner.m_room = std::move(m_descriptors); }
  Snapshot(const Snapshot&) = delete;
  Snapshot& operator=(const Snapshot&) = delete;

  std::vector<pollfd>& descriptors() noexcept { return m_descriptors; }

 private:
  LinPollAsyncCallDispatcher& m_owner;
  std::vector<pollfd> m_descriptors;
};

LinPollAsyncCallDispatcher::~LinPollAsyncCallDispatcher() {
  leaveSlot(gLinPollAsyncCallDispatcher, this);
}

LinPollAsyncCallDispatcher* LinPollAsyncCallDispatcher::create() {
  return dispatcherIn<LinPollAsyncCallDispatcher>(gLinPollAsyncCallDispatcher);
}

bool LinPollAsyncCallDispatcher::init() {
  return baseInit() && attachPollSink({m_readFd, POLLIN, 0}, this);
}

bool LinPollAsyncCallDispatcher::sleep() { return sleep(-1) == 1; }

int LinPollAsyncCallDispatcher::sleep(int timeoutMs) {
  const DispatchFrame frame(*this);
  if (m_readFd == 0) {
    return 0;
  }
  try {
    Snapshot snapshot(*this);
    std::vector<pollfd>& descriptors = snapshot.descriptors();
    const int ready = poll(descriptors.data(), descriptors.size(), timeoutMs);
    return ready < 0 ? 0 : ready == 0 ? 2 : serve(descriptors, ready);
  } catch (const std::bad_alloc&) {
    return 0;
  }
}

// Each descriptor is asked again before it is served, since an earlier callback may have drained
// or closed it; the first one's answer is still fresh.
int LinPollAsyncCallDispatcher::serve(std::vector<pollfd>& descriptors, int ready) {
  bool fresh = true;
  bool served = false;
  for (auto entry = descriptors.begin(); ready > 0 && entry != descriptors.end(); ++entry) {
    if (entry->revents == 0) {
      continue;
    }
    --ready;
    if (entry->revents == POLLIN && (fresh || poll(&*entry, 1, 0) > 0)) {
      fresh = false;
      served = invokeCallback(*entry) || served;
    }
  }
  return served ? 1 : 0;
}

bool LinPollAsyncCallDispatcher::doAttachPollSink(const pollfd& descriptor) {
  const std::lock_guard<std::mutex> lock(m_pollMutex);
  m_pollFds.push_back({descriptor.fd, POLLIN | POLLERR | POLLRDHUP, 0});
  return true;
}

void LinPollAsyncCallDispatcher::doDetachPollSink(const pollfd& descriptor) {
  const std::lock_guard<std::mutex> lock(m_pollMutex);
  const auto found =
      std::find_if(m_pollFds.begin(), m_pollFds.end(),
                   [&descriptor](const pollfd& each) { return each.fd == descriptor.fd; });
  if (found != m_pollFds.end()) {
    m_pollFds.erase(found);
  }
}

}  // namespace trelvo::core
