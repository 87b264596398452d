#include <trelvo/core/LinGlibMainLoop.h>

#include "core/linux/MakeLoop.h"

namespace trelvo::core {

LinGlibMainLoop::~LinGlibMainLoop() {
  if (m_loop != nullptr) {
    g_main_loop_unref(m_loop);
  }
}

LinGlibMainLoop* LinGlibMainLoop::create(
    const gom::SharedPointer<IAsyncCallDispatcher>& dispatcher) {
  return makeLoop<LinGlibMainLoop>(dispatcher);
}

bool LinGlibMainLoop::initialize(const gom::SharedPointer<IAsyncCallDispatcher>& dispatcher) {
  static_cast<void>(MainLoopCommon::initialize(dispatcher));  // always true
  m_loop = g_main_loop_new(g_main_context_default(), FALSE);
  return m_loop != nullptr;
}

Status LinGlibMainLoop::start() {
  if (m_loop == nullptr) {
    return StatusWrongState;
  }
  setRunning(true);
  g_main_loop_run(m_loop);
  return StatusOk;
}

// The last call is for the inherited start(): without it, a turn of the context that begins between
// the first two would not end before its time.
void LinGlibMainLoop::stop() {
  if (m_loop != nullptr) {
    g_main_loop_quit(m_loop);
  }
  setRunning(false);
  g_main_context_wakeup(nullptr);
}

}  // namespace trelvo::core
