// libuv: its asynchronous handle with a locked queue, since it tells of many sends at once, and its
// timers.

#include <uv.h>

#include <mutex>
#include <utility>
#include <vector>

#include "bench/Must.h"
#include "bench/loop/PostBench.h"
#include "bench/loop/TimerBench.h"

namespace bench {

namespace {

class UvLoop {
 public:
  UvLoop() {
    must(uv_loop_init(&m_loop) == 0, "uv_loop_init");
    must(uv_async_init(&m_loop, &m_async, runPosted) == 0, "uv_async_init");
    m_async.data = this;
  }
  ~UvLoop() {
    uv_close(reinterpret_cast<uv_handle_t*>(&m_async), nullptr);
    uv_run(&m_loop, UV_RUN_DEFAULT);
    must(uv_loop_close(&m_loop) == 0, "uv_loop_close");
  }
  UvLoop(const UvLoop&) = delete;
  UvLoop& operator=(const UvLoop&) = delete;

  void post(Call call, void* data) {
    {
      const std::lock_guard<std::mutex> lock(m_mutex);
      m_posted.emplace_back(call, data);
    }
    uv_async_send(&m_async);
  }
  void turn() { uv_run(&m_loop, UV_RUN_ONCE); }
  uv_loop_t* get() { return &m_loop; }

 private:
  using Calls = std::vector<std::pair<Call, void*>>;

  static void runPosted(uv_async_t* async) { static_cast<UvLoop*>(async->data)->run(); }
  void run() {
    {
      const std::lock_guard<std::mutex> lock(m_mutex);
      m_running.swap(m_posted);
    }
    for (const auto& [call, data] : m_running) {
      call(data);
    }
    m_running.clear();
  }

  uv_loop_t m_loop = {};
  uv_async_t m_async = {};
  std::mutex m_mutex;
  Calls m_posted;   // under m_mutex
  Calls m_running;  // keeps its room
};

class UvTimer {
 public:
  UvTimer(UvLoop& loop, Call call, void* data) : m_loop(loop), m_call(call), m_data(data) {
    must(uv_timer_init(loop.get(), &m_timer) == 0, "uv_timer_init");
    m_timer.data = this;
  }
  // A handle is the loop's until the loop has said that it is closed.
  ~UvTimer() {
    uv_close(reinterpret_cast<uv_handle_t*>(&m_timer), nullptr);
    uv_run(m_loop.get(), UV_RUN_NOWAIT);
  }
  UvTimer(const UvTimer&) = delete;
  UvTimer& operator=(const UvTimer&) = delete;

  // The loop reckons from when its turn began.
  void arm(int ms) {
    uv_update_time(m_loop.get());
    must(uv_timer_start(&m_timer, fire, static_cast<std::uint64_t>(ms), 0) == 0, "uv_timer_start");
  }
  void disarm() { must(uv_timer_stop(&m_timer) == 0, "uv_timer_stop"); }

 private:
  static void fire(uv_timer_t* timer) {
    const auto& self = *static_cast<const UvTimer*>(timer->data);
    self.m_call(self.m_data);
  }

  UvLoop& m_loop;
  uv_timer_t m_timer = {};
  Call m_call;
  void* m_data;
};

const bool kRegistered = registerLoop<UvLoop>("uv") && registerTimer<UvLoop, UvTimer>("uv");

}  // namespace

}  // namespace bench
