#include <trelvo/core/AsyncCallDispatcherCommon.h>

#include <cstddef>
#include <iterator>
#include <utility>

#include <trelvo/Status.h>

#include "core/SpinningLock.h"

namespace trelvo::core {

namespace {

// More calls than wait at a time in ordinary use; the channel holds some 280.
constexpr std::size_t kSpares = 64;

void call(const AsyncCallDispatcherCommon::Delegate& delegate) {
  if (delegate.function != nullptr) {
    delegate.function(delegate.data);
  } else if (delegate.receiver != nullptr) {
    delegate.receiver->handleAsyncCall(delegate.data);
  } else {
    throw StatusFailed;
  }
}

}  // namespace

AsyncCallDispatcherCommon::AsyncCallDispatcherCommon() : AsyncCallDispatcherCommon(0) {}

AsyncCallDispatcherCommon::AsyncCallDispatcherCommon(unsigned int first)
    : m_nextId(first),
      m_postingSpins(SpinningLock::kFullCredit),
      m_runningSpins(SpinningLock::kFullCredit) {
  init();
}

void AsyncCallDispatcherCommon::init() {
  m_spares.reserve(kSpares);
  const SpinningLock lock(m_delegates, m_postingSpins);
  if (lock) {
    m_delegates.m_value.try_emplace(++m_nextId);
  }
}

AsyncCallDispatcherCommon::~AsyncCallDispatcherCommon() {
  const SpinningLock lock(m_delegates, m_postingSpins);
  if (lock) {
    m_delegates.m_value.clear();
  }
}

bool AsyncCallDispatcherCommon::queueAsyncCall(void (*function)(void*), void* data) {
  return doQueueAsyncCall({nullptr, function, data});
}

bool AsyncCallDispatcherCommon::queueAsyncCall(IAsyncCallReceiver* receiver, void* data) {
  return doQueueAsyncCall({receiver, nullptr, data});
}

void AsyncCallDispatcherCommon::removeAllAsyncCall(void (*function)(void*)) {
  removeDelegate({nullptr, function, nullptr});
}

void AsyncCallDispatcherCommon::removeAllAsyncCall(IAsyncCallReceiver* receiver) {
  if (receiver != nullptr) {
    removeDelegate({receiver, nullptr, nullptr});
  }
}

void AsyncCallDispatcherCommon::interruptSleep() {
  queueAsyncCall(static_cast<IAsyncCallReceiver*>(this), nullptr);
}

void AsyncCallDispatcherCommon::handleAsyncCall(void* /*data*/) {}

bool AsyncCallDispatcherCommon::doQueueAsyncCall(const Delegate& delegate) {
  try {
    addDelegate(delegate);
    return true;
  } catch (...) {
    return false;
  }
}

bool AsyncCallDispatcherCommon::addDelegate(const Delegate& delegate) {
  const SpinningLock lock(m_delegates, m_postingSpins);
  if (!lock) {
    return false;
  }
  Delegates& delegates = m_delegates.m_value;
  // All memory is had before the number goes: afterwards nothing can fail.
  Delegates::node_type next = nextSlot();
  const auto hint = delegates.empty() ? delegates.end() : std::prev(delegates.end());
  delegates.try_emplace(hint, m_nextId)->second = delegate;
  doScheduleDelegate(m_nextId);

  next.key() = ++m_nextId;
  const auto last = delegates.insert(delegates.end(), std::move(next));
  last->second = {};
  return true;
}

AsyncCallDispatcherCommon::Delegates::node_type AsyncCallDispatcherCommon::nextSlot() {
  if (m_spares.empty()) {
    Delegates one;
    one.try_emplace(0);
    return one.extract(one.begin());
  }
  Delegates::node_type node = std::move(m_spares.back());
  m_spares.pop_back();
  return node;
}

// Takes an entry out and keeps its node for a later call. @return what follows it.
AsyncCallDispatcherCommon::Delegates::iterator AsyncCallDispatcherCommon::recycle(
    Delegates::iterator position) {
  Delegates& delegates = m_delegates.m_value;
  if (m_spares.size() == m_spares.capacity()) {
    return delegates.erase(position);
  }
  const auto following = std::next(position);
  m_spares.push_back(delegates.extract(position));
  return following;
}

void AsyncCallDispatcherCommon::removeDelegate(const Delegate& delegate) {
  const SpinningLock lock(m_delegates, m_postingSpins);
  if (!lock) {
    return;
  }
  Delegates& delegates = m_delegates.m_value;
  for (auto position = delegates.begin(); position != delegates.end();) {
    const Delegate& waiting = position->second;
    const bool matches =
        waiting.receiver == delegate.receiver && waiting.function == delegate.function;
    position = matches ? recycle(position) : std::next(position);
  }
}

void AsyncCallDispatcherCommon::removeDelegate(unsigned int id) {
  Delegate ignored;
  takeDelegate(id, ignored);
}

bool AsyncCallDispatcherCommon::findDelegate(unsigned int id, Delegate& delegate) {
  return copyDelegate(id, delegate, false);
}

// findDelegate() and removeDelegate() in one, under one lock.
bool AsyncCallDispatcherCommon::takeDelegate(unsigned int id, Delegate& delegate) {
  return copyDelegate(id, delegate, true);
}

bool AsyncCallDispatcherCommon::copyDelegate(unsigned int id, Delegate& delegate, bool andRemove) {
  const SpinningLock lock(m_delegates, m_runningSpins);
  if (!lock) {
    return false;
  }
  const auto found = m_delegates.m_value.find(id);
  if (found == m_delegates.m_value.end()) {
    return false;
  }
  delegate = found->second;
  if (andRemove) {
    recycle(found);
  }
  return true;
}

void AsyncCallDispatcherCommon::invokeDelegate(unsigned int id) {
  Delegate delegate;
  if (!takeDelegate(id, delegate)) {
    return;
  }
  try {
    call(delegate);
  } catch (...) {  // NOLINT(bugprone-empty-catch): nothing crosses the dispatcher
  }
}

}  // namespace trelvo::core
