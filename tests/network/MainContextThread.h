#pragma once

#include <atomic>
#include <thread>

#include <glib.h>

namespace trelvo::test {

/// Runs GLib's default main context on a thread of its own while it lives.
class MainContextThread {
 public:
  MainContextThread()
      : m_thread([this] {
          while (!m_done) g_main_context_iteration(nullptr, TRUE);
        }) {}
  ~MainContextThread() {
    m_done = true;
    g_main_context_wakeup(nullptr);
    m_thread.join();
  }
  MainContextThread(const MainContextThread&) = delete;
  MainContextThread& operator=(const MainContextThread&) = delete;

 private:
  std::atomic<bool> m_done{false};
  std::thread m_thread;
};

/// Changes a platform between connections on a thread of its own while it lives.
template <class Step>
class ServiceThread {
 public:
  explicit ServiceThread(Step step)
      : m_thread([this, step] {
          for (unsigned int i = 0; !m_done; ++i) step(i);
        }) {}
  ~ServiceThread() {
    m_done = true;
    m_thread.join();
  }
  ServiceThread(const ServiceThread&) = delete;
  ServiceThread& operator=(const ServiceThread&) = delete;

 private:
  std::atomic<bool> m_done{false};
  std::thread m_thread;
};

}  // namespace trelvo::test
