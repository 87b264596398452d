#pragma once

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <functional>
#include <iterator>
#include <thread>
#include <utility>
#include <vector>

#include <trelvo/core/IAsyncCallReceiver.h>
#include <trelvo/core/IPollSink.h>

namespace trelvo::test {

/// Runs `body` on a thread of its own and waits for it: dispatchers and main-loop types belong to
/// threads.
template <class Body>
void onFreshThread(Body&& body) {
  std::thread(std::forward<Body>(body)).join();
}

/// How many descriptors this process has open.
inline std::ptrdiff_t openDescriptors() {
  namespace fs = std::filesystem;
  return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
}

inline std::chrono::steady_clock::time_point inMs(int ms) {
  return std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
}

/// A posted call that counts: hand it out as function, with the int to raise as data.
inline void countUp(void* counter) { ++*static_cast<int*>(counter); }

/// A posted call that runs what its data points to.
inline void run(void* function) { (*static_cast<std::function<void()>*>(function))(); }

/// Keeps the data of each call that it receives.
class Receiver : public core::IAsyncCallReceiver {
 public:
  void handleAsyncCall(void* data) override { received.push_back(data); }
  std::vector<void*> received;
};

/// Runs a function on each event.
class Sink : public core::IPollSink {
 public:
  explicit Sink(std::function<void(const pollfd&)> body) : m_body(std::move(body)) {}
  void handlePollEvent(const pollfd& ready) override { m_body(ready); }

 private:
  std::function<void(const pollfd&)> m_body;
};

/// Two connected ends of a byte stream.
class Channel {
 public:
  Channel() {
    if (socketpair(AF_UNIX, SOCK_STREAM, 0, m_fds) != 0) {
      std::abort();
    }
  }
  ~Channel() {
    closeWriter();
    close(m_fds[0]);
  }
  Channel(const Channel&) = delete;
  Channel& operator=(const Channel&) = delete;

  int reader() const { return m_fds[0]; }
  /// What a dispatcher is given to attach.
  pollfd descriptor() const { return {m_fds[0], POLLIN, 0}; }
  /// Makes the reader readable.
  void ring() const {
    if (write(m_fds[1], "x", 1) != 1) {
      std::abort();
    }
  }
  /// Takes one byte. @return whether there was one.
  bool answer() const {
    char byte = 0;
    return recv(m_fds[0], &byte, 1, MSG_DONTWAIT) == 1;
  }
  void closeWriter() {
    if (m_fds[1] >= 0) {
      close(std::exchange(m_fds[1], -1));
    }
  }

 private:
  int m_fds[2] = {-1, -1};
};

}  // namespace trelvo::test
