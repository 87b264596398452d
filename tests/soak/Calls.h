#pragma once

#include <memory>

#include <trelvo/core/AsyncCallDispatcher.h>

#include "tests/soak/Soak.h"

namespace soak {

/// A main loop with timers on it, and threads that post calls to it, remove calls from it, and stop
/// it again and again. Every poster's calls run once each and in order, none runs after it was
/// removed, timers fire on their loop's thread.
std::unique_ptr<Crew> makeCallsCrew(trelvo::core::AsyncCallDispatcher::MainLoopType type);

}  // namespace soak
