#include "tools/trelvo/MainLoopThread.h"

#include <trelvo/core/AsyncCallDispatcher.h>

#include <new>

namespace trelvo::tool {

MainLoopThread::MainLoopThread() : m_up(core::ISemaphore::create(0, 1)) {
  if (!m_up) {
    throw std::bad_alloc();
  }
  m_thread = std::thread(&MainLoopThread::run, this);
  const bool isUp = m_up->wait();
  if (!isUp || !m_loop) {
    m_thread.join();
    throw std::bad_alloc();
  }
}

MainLoopThread::~MainLoopThread() {
  m_loop->stop();
  m_thread.join();
}

void MainLoopThread::run() {
  m_loop = core::MainLoop::create(core::AsyncCallDispatcher::MainLoopTypeLinGlib);
  if (m_loop) {
    m_loop->start(m_up);
  } else {
    m_up->signal(1, nullptr);
  }
}

}  // namespace trelvo::tool
