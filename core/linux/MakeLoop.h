#pragma once

#include <memory>
#include <new>

#include <trelvo/Status.h>
#include <trelvo/core/IAsyncCallDispatcher.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::core {

/// A new loop of that class over the dispatcher, which the caller deletes; null when it cannot be
/// made or initialised.
template <class Loop>
Loop* makeLoop(const gom::SharedPointer<IAsyncCallDispatcher>& dispatcher) {
  try {
    auto loop = std::make_unique<Loop>();
    return loop->initialize(dispatcher) ? loop.release() : nullptr;
  } catch (const std::bad_alloc&) {
    return nullptr;
  } catch (Status) {
    return nullptr;
  }
}

}  // namespace trelvo::core
