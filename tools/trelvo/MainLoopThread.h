#pragma once

#include <trelvo/core/ISemaphore.h>
#include <trelvo/core/MainLoop.h>
#include <trelvo/gom/SharedPointer.h>

#include <thread>

namespace trelvo::tool {

/// Runs GLib's default main context on a thread of its own, where the library's connectivity events
/// arrive. From construction to destruction.
class MainLoopThread {
 public:
  /// Returns when the loop is up. Throws std::bad_alloc.
  MainLoopThread();
  ~MainLoopThread();
  MainLoopThread(const MainLoopThread&) = delete;
  MainLoopThread& operator=(const MainLoopThread&) = delete;

 private:
  void run();

  gom::SharedPointer<core::ISemaphore> m_up;
  gom::SharedPointer<core::MainLoop> m_loop;  // made by the thread, let go behind it
  std::thread m_thread;
};

}  // namespace trelvo::tool
