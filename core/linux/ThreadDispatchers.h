#pragma once

#include <memory>
#include <new>

#include <trelvo/Status.h>
#include <trelvo/core/AsyncCallDispatcherCommon.h>
#include <trelvo/core/Singleton.h>

namespace trelvo::core {

using DispatcherSlot = Singleton<AsyncCallDispatcherCommon*>;

/// Each thread's dispatcher of either kind.
extern DispatcherSlot gLinPollAsyncCallDispatcher;
extern DispatcherSlot gLinGlibAsyncCallDispatcher;

/// Counts `dispatcher` among the living, as the calling thread's, and stores it in its slot.
/// @return false, with nothing changed, when that fails.
bool enterSlot(DispatcherSlot& slot, AsyncCallDispatcherCommon* dispatcher);

/// Counts `dispatcher` among the living no more, and empties the calling thread's slot.
void leaveSlot(DispatcherSlot& slot, AsyncCallDispatcherCommon* dispatcher) noexcept;

/// What stands in the calling thread's slot; null when that died on another thread meanwhile, even
/// when a dispatcher of another thread now lives in its place.
AsyncCallDispatcherCommon* livingIn(const DispatcherSlot& slot) noexcept;

/// A new dispatcher, ready for use; null when memory or descriptors run out.
template <class Dispatcher>
std::unique_ptr<Dispatcher> makeDispatcher() {
  try {
    auto dispatcher = std::make_unique<Dispatcher>();
    return dispatcher->init() ? std::move(dispatcher) : nullptr;
  } catch (const std::bad_alloc&) {
    return nullptr;
  } catch (Status) {
    return nullptr;
  }
}

/// The dispatcher in the calling thread's slot, made when there is none; null when it cannot be.
template <class Dispatcher>
Dispatcher* dispatcherIn(DispatcherSlot& slot) {
  if (AsyncCallDispatcherCommon* const present = livingIn(slot)) {
    return static_cast<Dispatcher*>(present);
  }
  auto dispatcher = makeDispatcher<Dispatcher>();
  return dispatcher && enterSlot(slot, dispatcher.get()) ? dispatcher.release() : nullptr;
}

}  // namespace trelvo::core
