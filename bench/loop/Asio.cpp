// Boost.Asio: posted handlers and steady timers.

#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <chrono>

#include "bench/loop/PostBench.h"
#include "bench/loop/TimerBench.h"

namespace bench {

namespace {

class AsioLoop {
 public:
  void post(Call call, void* data) {
    boost::asio::post(m_context, [call, data] { call(data); });
  }
  void turn() {
    m_context.run_one();
    m_context.poll();
  }
  boost::asio::io_context& context() { return m_context; }

 private:
  boost::asio::io_context m_context;
  boost::asio::executor_work_guard<boost::asio::io_context::executor_type> m_work{
      m_context.get_executor()};
};

class AsioTimer {
 public:
  AsioTimer(AsioLoop& loop, Call call, void* data)
      : m_context(loop.context()), m_timer(m_context), m_call(call), m_data(data) {}

  void arm(int ms) {
    m_timer.expires_after(std::chrono::milliseconds(ms));
    m_timer.async_wait([this](const boost::system::error_code& error) {
      if (!error) {
        m_call(m_data);
      }
    });
  }
  // The handler hears of it in the next turn.
  void disarm() {
    m_timer.cancel();
    m_context.poll();
  }

 private:
  boost::asio::io_context& m_context;
  boost::asio::steady_timer m_timer;
  Call m_call;
  void* m_data;
};

const bool kRegistered =
    registerLoop<AsioLoop>("asio") && registerTimer<AsioLoop, AsioTimer>("asio");

}  // namespace

}  // namespace bench
