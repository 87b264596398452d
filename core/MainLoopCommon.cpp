#include <trelvo/core/MainLoopCommon.h>

#include <trelvo/core/LinGlibMainLoop.h>
#include <trelvo/core/LinPollMainLoop.h>

namespace trelvo::core {

namespace {

// A stop that failed to wake the dispatcher is seen after this long.
constexpr int kLongestSleepMs = 1000;

}  // namespace

MainLoopCommon::MainLoopCommon() {
  if (m_self.lock()) {
    m_self.m_value = this;
    m_self.unlock();
  }
}

MainLoopCommon::~MainLoopCommon() {
  if (m_self.lock()) {
    m_self.m_value = nullptr;
    m_self.unlock();
  }
}

bool MainLoopCommon::initialize(const gom::SharedPointer<IAsyncCallDispatcher>& dispatcher) {
  m_dispatcher = dispatcher;
  return true;
}

MainLoopCommon* MainLoopCommon::createMainLoop(
    AsyncCallDispatcher::MainLoopType type,
    const gom::SharedPointer<IAsyncCallDispatcher>& dispatcher) {
  switch (type) {
    case AsyncCallDispatcher::MainLoopTypeLinPoll:
      return LinPollMainLoop::create(dispatcher);
    case AsyncCallDispatcher::MainLoopTypeLinGlib:
      return LinGlibMainLoop::create(dispatcher);
    default:
      return nullptr;
  }
}

gom::SharedPointer<IAsyncCallDispatcher> MainLoopCommon::dispatcher() const { return m_dispatcher; }

Status MainLoopCommon::start(const gom::SharedPointer<ISemaphore>& started) {
  if (isRunning() || !m_dispatcher) {
    return StatusWrongState;
  }
  setRunning(true);
  if (started) {
    started->signal(1, nullptr);
  }
  while (isRunning()) {
    m_dispatcher->sleep(kLongestSleepMs);
  }
  return StatusOk;
}

void MainLoopCommon::stop() {
  if (!m_self.lock()) {
    return;
  }
  if (m_self.m_value != nullptr) {
    setRunning(false);
    if (m_dispatcher) {
      m_dispatcher->interruptSleep();
    }
  }
  m_self.unlock();
}

bool MainLoopCommon::isRunning() const { return m_running.load(std::memory_order_relaxed); }

void MainLoopCommon::setRunning(bool running) noexcept {
  m_running.store(running, std::memory_order_relaxed);
}

}  // namespace trelvo::core
