#include <trelvo/core/MainLoop.h>

#include <new>

#include <trelvo/core/MainLoopCommon.h>

namespace trelvo::core {

MainLoop::~MainLoop() { delete m_impl; }

gom::SharedPointer<MainLoop> MainLoop::create(AsyncCallDispatcher::MainLoopType type) {
  const gom::SharedPointer<MainLoop> loop(new (std::nothrow) MainLoop);
  return loop && loop->initialize(type) ? loop : gom::SharedPointer<MainLoop>();
}

bool MainLoop::initialize(AsyncCallDispatcher::MainLoopType type) {
  if (type != AsyncCallDispatcher::MainLoopTypeNone ||
      AsyncCallDispatcher::currentMainLoopType() == AsyncCallDispatcher::MainLoopTypeNone) {
    AsyncCallDispatcher::setMainLoopType(type);
  }
  const auto dispatcher = AsyncCallDispatcher::openDispatcher(type);
  if (!dispatcher) {
    return false;
  }
  m_impl = MainLoopCommon::createMainLoop(AsyncCallDispatcher::currentMainLoopType(), dispatcher);
  return m_impl != nullptr;
}

Status MainLoop::start(const gom::SharedPointer<ISemaphore>& started) {
  return m_impl->start(started);
}

void MainLoop::stop() { m_impl->stop(); }

bool MainLoop::isRunning() const { return m_impl->isRunning(); }

AsyncCallDispatcher::MainLoopType MainLoop::mainLoopType() const {
  return AsyncCallDispatcher::currentMainLoopType();
}

gom::SharedPointer<IAsyncCallDispatcher> MainLoop::dispatcher() const {
  return m_impl->dispatcher();
}

}  // namespace trelvo::core
