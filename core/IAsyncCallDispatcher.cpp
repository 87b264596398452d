#include <trelvo/core/IAsyncCallDispatcher.h>

#include "core/DispatchFrame.h"

namespace trelvo::core {

IAsyncCallDispatcher::~IAsyncCallDispatcher() = default;

void IAsyncCallDispatcher::decrement() {
  if (referenceCount() != 1 || !DispatchFrame::adopt(*this)) {
    ReferenceCountable::decrement();
  }
}

}  // namespace trelvo::core
