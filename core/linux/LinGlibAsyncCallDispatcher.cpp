#include <trelvo/core/LinGlibAsyncCallDispatcher.h>

#include <algorithm>
#include <iterator>
#include <mutex>
#include <optional>

#include "core/DispatchFrame.h"
#include "core/linux/ThreadDispatchers.h"

namespace trelvo::core {

namespace {

constexpr gushort kEvents = G_IO_IN | G_IO_ERR | G_IO_HUP;

// Guards the dispatcher that each source speaks of. It is taken before m_pollMutex.
std::mutex gSources;

bool isLive(const GPollFD& node) { return node.events != 0; }

bool isReadable(const GPollFD& node) { return isLive(node) && node.revents == G_IO_IN; }

/// Ends a turn of the default main context in time, in the place of a dispatcher's own source that
/// has left it. It is never dispatched, so that the turn counts as idle.
class Timekeeper {
 public:
  explicit Timekeeper(int timeoutMs) : m_source(g_source_new(&kFuncs, sizeof(Clock))) {
    reinterpret_cast<Clock*>(m_source)->timeoutMs = timeoutMs;
    g_source_attach(m_source, nullptr);
  }
  ~Timekeeper() {
    g_source_destroy(m_source);
    g_source_unref(m_source);
  }
  Timekeeper(const Timekeeper&) = delete;
  Timekeeper& operator=(const Timekeeper&) = delete;

 private:
  struct Clock {
    GSource base;
    gint timeoutMs;
  };

  static gboolean prepare(GSource* source, gint* timeout) {
    *timeout = reinterpret_cast<Clock*>(source)->timeoutMs;
    return FALSE;
  }

  static GSourceFuncs kFuncs;

  GSource* m_source;
};

GSourceFuncs Timekeeper::kFuncs = {prepare, nullptr, nullptr, nullptr, nullptr, nullptr};

}  // namespace

/// What GLib allocates for a source of ours. The callbacks stand in it once more, since GLib may
/// look at them when the dispatcher has gone.
struct LinGlibAsyncCallDispatcher::Source {
  GSource base;
  unsigned int sourceId;
  LinGlibAsyncCallDispatcher* dispatcher;
  GSourceFuncs funcs;

  static Source* of(GSource* source) { return reinterpret_cast<Source*>(source); }
};

LinGlibAsyncCallDispatcher::~LinGlibAsyncCallDispatcher() {
  leaveContext();
  leaveSlot(gLinGlibAsyncCallDispatcher, this);
}

LinGlibAsyncCallDispatcher* LinGlibAsyncCallDispatcher::create() {
  return dispatcherIn<LinGlibAsyncCallDispatcher>(gLinGlibAsyncCallDispatcher);
}

bool LinGlibAsyncCallDispatcher::init() {
  if (!baseInit()) {
    return false;
  }
  m_sourceFuncs = {prepareStatic, checkStatic, dispatchStatic, finalizeStatic, nullptr, nullptr};
  joinContext(g_source_new(&m_sourceFuncs, sizeof(Source)));
  return attachPollSink({m_readFd, POLLIN, 0}, this);
}

void LinGlibAsyncCallDispatcher::joinContext(GSource* source) {
  Source* const extended = Source::of(source);
  extended->funcs = m_sourceFuncs;
  g_source_set_funcs(source, &extended->funcs);
  // Else GLib takes each descriptor out of the context for each dispatch, one after another.
  g_source_set_can_recurse(source, TRUE);
  const guint id = g_source_attach(source, nullptr);
  const std::lock_guard<std::mutex> lock(gSources);
  m_source = source;
  extended->sourceId = id;
  extended->dispatcher = this;
}

void LinGlibAsyncCallDispatcher::leaveContext() {
  if (m_source == nullptr) {
    return;
  }
  {
    const std::lock_guard<std::mutex> lock(gSources);
    Source::of(m_source)->dispatcher = nullptr;
  }
  {
    std::unique_lock<std::mutex> lock(m_pollMutex);
    m_dispatched.wait(lock, [this] { return !m_dispatching; });
  }
  g_source_destroy(m_source);
  g_source_unref(m_source);
  m_source = nullptr;
}

// GLib drops a source whose dispatch gave FALSE, and then refuses to hear of its descriptors.
bool LinGlibAsyncCallDispatcher::inContext() const {
  return m_source != nullptr && g_source_is_destroyed(m_source) == FALSE;
}

bool LinGlibAsyncCallDispatcher::isPolled() const { return inContext() && !m_withdrawn; }

bool LinGlibAsyncCallDispatcher::sleep() { return sleep(-1) == 1; }

int LinGlibAsyncCallDispatcher::sleep(int timeoutMs) {
  const DispatchFrame frame(*this);
  std::optional<Timekeeper> timekeeper;
  if (!inContext()) {
    timekeeper.emplace(timeoutMs);
  }
  m_sleepTimeout.store(timeoutMs, std::memory_order_relaxed);
  const gboolean dispatched = g_main_context_iteration(nullptr, TRUE);
  m_sleepTimeout.store(-1, std::memory_order_relaxed);
  return dispatched == FALSE ? 0 : 1;
}

gboolean LinGlibAsyncCallDispatcher::prepareStatic(GSource* source, gint* timeout) {
  const std::lock_guard<std::mutex> lock(gSources);
  LinGlibAsyncCallDispatcher* const dispatcher = Source::of(source)->dispatcher;
  if (dispatcher != nullptr) {
    dispatcher->withdrawWhileDispatching();
    *timeout = dispatcher->m_sleepTimeout.load(std::memory_order_relaxed);
  }
  return FALSE;
}

gboolean LinGlibAsyncCallDispatcher::checkStatic(GSource* source) {
  const std::lock_guard<std::mutex> lock(gSources);
  LinGlibAsyncCallDispatcher* const dispatcher = Source::of(source)->dispatcher;
  return dispatcher != nullptr && dispatcher->readable() ? TRUE : FALSE;
}

gboolean LinGlibAsyncCallDispatcher::dispatchStatic(GSource* source, GSourceFunc /*callback*/,
                                                    gpointer /*data*/) {
  LinGlibAsyncCallDispatcher* const dispatcher = beginDispatch(source);
  if (dispatcher == nullptr) {
    return FALSE;
  }
  const DispatchFrame frame(*dispatcher);
  const bool served = dispatcher->dispatch();
  dispatcher->endDispatch();
  return served ? TRUE : FALSE;
}

void LinGlibAsyncCallDispatcher::finalizeStatic(GSource* /*source*/) {}

// A turn inside a callback must not wait for descriptors that it is not going to serve.
void LinGlibAsyncCallDispatcher::withdrawWhileDispatching() {
  const std::lock_guard<std::mutex> lock(m_pollMutex);
  if (!m_dispatching || m_withdrawn) {
    return;
  }
  // The last that was added is the first that GLib finds.
  for (auto node = m_pollers.rbegin(); node != m_pollers.rend(); ++node) {
    if (isLive(*node)) {
      g_source_remove_poll(m_source, &*node);
    }
  }
  m_withdrawn = true;
}

bool LinGlibAsyncCallDispatcher::readable() {
  const std::lock_guard<std::mutex> lock(m_pollMutex);
  return !m_dispatching && std::any_of(m_pollers.begin(), m_pollers.end(), isReadable);
}

// From here to endDispatch() nodes stay where they are, and the dispatcher does not go.
LinGlibAsyncCallDispatcher* LinGlibAsyncCallDispatcher::beginDispatch(GSource* source) {
  const std::lock_guard<std::mutex> lock(gSources);
  LinGlibAsyncCallDispatcher* const dispatcher = Source::of(source)->dispatcher;
  if (dispatcher != nullptr) {
    const std::lock_guard<std::mutex> polling(dispatcher->m_pollMutex);
    dispatcher->m_dispatching = true;
  }
  return dispatcher;
}

// Each descriptor is asked again before it is served: an earlier callback, of whatever source, may
// have drained or closed it.
bool LinGlibAsyncCallDispatcher::dispatch() {
  bool served = false;
  pollfd descriptor = {};
  for (auto position = firstPoller(); nextReadable(position, descriptor);) {
    if (poll(&descriptor, 1, 0) > 0) {
      served = invokeCallback(descriptor) || served;
    }
  }
  return served;
}

std::list<GPollFD>::iterator LinGlibAsyncCallDispatcher::firstPoller() {
  const std::lock_guard<std::mutex> lock(m_pollMutex);
  return m_pollers.begin();
}

// Goes on to the next readable node, tells of it and steps behind it. @return false at the end.
bool LinGlibAsyncCallDispatcher::nextReadable(std::list<GPollFD>::iterator& position,
                                              pollfd& descriptor) {
  const std::lock_guard<std::mutex> lock(m_pollMutex);
  const auto found = std::find_if(position, m_pollers.end(), isReadable);
  if (found == m_pollers.end()) {
    return false;
  }
  descriptor = {found->fd, static_cast<short>(found->events), POLLIN};
  position = std::next(found);
  return true;
}

void LinGlibAsyncCallDispatcher::endDispatch() {
  const std::lock_guard<std::mutex> lock(m_pollMutex);
  removeDetachedPollers();
  if (m_withdrawn) {
    for (GPollFD& node : m_pollers) {
      g_source_add_poll(m_source, &node);
    }
    m_withdrawn = false;
  }
  m_dispatching = false;
  m_dispatched.notify_all();
}

void LinGlibAsyncCallDispatcher::removeDetachedPollers() {
  m_pollers.remove_if([](const GPollFD& node) { return !isLive(node); });
}

bool LinGlibAsyncCallDispatcher::doAttachPollSink(const pollfd& descriptor) {
  const std::lock_guard<std::mutex> lock(m_pollMutex);
  m_pollers.push_back({descriptor.fd, kEvents, 0});
  if (isPolled()) {
    g_source_add_poll(m_source, &m_pollers.back());
  }
  return true;
}

// While the list is being walked the node stays in it, marked as dead: its descriptor turns
// negative so that the same one can be attached again at once.
void LinGlibAsyncCallDispatcher::doDetachPollSink(const pollfd& descriptor) {
  const std::lock_guard<std::mutex> lock(m_pollMutex);
  const auto node = std::find_if(
      m_pollers.begin(), m_pollers.end(),
      [&descriptor](const GPollFD& each) { return isLive(each) && each.fd == descriptor.fd; });
  if (node == m_pollers.end()) {
    return;
  }
  if (isPolled()) {
    g_source_remove_poll(m_source, &*node);
  }
  node->events = 0;
  node->fd = node->fd > 0 ? -node->fd : node->fd;
  if (!m_dispatching) {
    m_pollers.erase(node);
  }
}

}  // namespace trelvo::core
