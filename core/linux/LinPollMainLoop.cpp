#include <trelvo/core/LinPollMainLoop.h>

#include "core/linux/MakeLoop.h"

namespace trelvo::core {

LinPollMainLoop::~LinPollMainLoop() = default;

LinPollMainLoop* LinPollMainLoop::create(
    const gom::SharedPointer<IAsyncCallDispatcher>& dispatcher) {
  return makeLoop<LinPollMainLoop>(dispatcher);
}

}  // namespace trelvo::core
