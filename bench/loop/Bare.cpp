// The least there is to do: a message through a pair of sockets for each call, and a timer of the
// kernel, with nothing around them.

#include <poll.h>
#include <sys/socket.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <cstdint>

#include "bench/Must.h"
#include "bench/loop/PostBench.h"
#include "bench/loop/TimerBench.h"

namespace bench {

namespace {

/// The message is the call itself, so that nothing is kept for it and nothing is locked.
class SocketPing {
 public:
  SocketPing() { must(socketpair(AF_UNIX, SOCK_SEQPACKET, 0, m_ends) == 0, "socketpair"); }
  ~SocketPing() {
    close(m_ends[0]);
    close(m_ends[1]);
  }
  SocketPing(const SocketPing&) = delete;
  SocketPing& operator=(const SocketPing&) = delete;

  void post(Call call, void* data) {
    const Message message{call, data};
    must(send(m_ends[1], &message, sizeof message, MSG_DONTWAIT | MSG_EOR) == sizeof message,
         "send");
  }
  void turn() {
    pollfd descriptor{m_ends[0], POLLIN, 0};
    must(poll(&descriptor, 1, -1) == 1, "poll");
    Message message = {};
    while (recv(m_ends[0], &message, sizeof message, MSG_DONTWAIT) == sizeof message) {
      message.call(message.data);
    }
  }

 private:
  struct Message {
    Call call;
    void* data;
  };

  int m_ends[2] = {-1, -1};
};

/// Knows its one timer.
class TimerPoll {
 public:
  void attach(int descriptor, Call call, void* data) {
    m_descriptor = {descriptor, POLLIN, 0};
    m_call = call;
    m_data = data;
  }
  void turn() {
    must(poll(&m_descriptor, 1, -1) == 1, "poll");
    std::uint64_t expirations = 0;
    must(read(m_descriptor.fd, &expirations, sizeof expirations) == sizeof expirations, "read");
    m_call(m_data);
  }

 private:
  pollfd m_descriptor = {};
  Call m_call = nullptr;
  void* m_data = nullptr;
};

class BareTimer {
 public:
  BareTimer(TimerPoll& loop, Call call, void* data)
      : m_descriptor(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK)) {
    must(m_descriptor >= 0, "timerfd_create");
    loop.attach(m_descriptor, call, data);
  }
  ~BareTimer() { close(m_descriptor); }
  BareTimer(const BareTimer&) = delete;
  BareTimer& operator=(const BareTimer&) = delete;

  void arm(int ms) { set({{}, {ms / 1000, ms % 1000 * 1000000L}}); }
  void disarm() { set({}); }

 private:
  void set(const itimerspec& times) {
    must(timerfd_settime(m_descriptor, 0, &times, nullptr) == 0, "timerfd_settime");
  }

  int m_descriptor;
};

const bool kRegistered = registerLoop<SocketPing>("floor:socket_ping") &&
                         registerTimer<TimerPoll, BareTimer>("floor:timerfd");

}  // namespace

}  // namespace bench
