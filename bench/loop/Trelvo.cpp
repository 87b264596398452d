// This library's two dispatchers, and its timers on either.

#include <trelvo/core/AsyncCallDispatcher.h>
#include <trelvo/core/ITimer.h>
#include <trelvo/core/ITimerObserver.h>

#include "bench/Must.h"
#include "bench/loop/PostBench.h"
#include "bench/loop/ThreadType.h"
#include "bench/loop/TimerBench.h"

namespace bench {

namespace {

using trelvo::core::AsyncCallDispatcher;

/// The calling thread's dispatcher, of that kind; timers that it makes meanwhile hang on it.
template <AsyncCallDispatcher::MainLoopType kType>
class TrelvoLoop {
 public:
  TrelvoLoop() { must(static_cast<bool>(m_dispatcher), "openDispatcher"); }

  void post(Call call, void* data) { must(m_dispatcher->queueAsyncCall(call, data), "post"); }
  void turn() { m_dispatcher->sleep(); }

 private:
  const ThreadType m_type{kType};
  const trelvo::gom::SharedPointer<trelvo::core::IAsyncCallDispatcher> m_dispatcher =
      AsyncCallDispatcher::openDispatcher(kType);
};

class TrelvoTimer : trelvo::core::ITimerObserver {
 public:
  template <class Loop>
  TrelvoTimer(Loop& /*of this thread*/, Call call, void* data)
      : m_call(call), m_data(data), m_timer(trelvo::core::ITimer::create(this)) {
    must(static_cast<bool>(m_timer), "ITimer::create");
  }

  void arm(int ms) { must(m_timer->start(ms, 0ULL, 0U) == trelvo::StatusOk, "start"); }
  void disarm() { must(m_timer->stop() == trelvo::StatusOk, "stop"); }

 private:
  void handleTimerEvent(trelvo::core::ITimer* /*timer*/) override { m_call(m_data); }

  Call m_call;
  void* m_data;
  trelvo::gom::SharedPointer<trelvo::core::ITimer> m_timer;
};

using PollLoop = TrelvoLoop<AsyncCallDispatcher::MainLoopTypeLinPoll>;
using GlibLoop = TrelvoLoop<AsyncCallDispatcher::MainLoopTypeLinGlib>;

const bool kRegistered = registerLoop<PollLoop>("lib:trelvo_poll") &&
                         registerLoop<GlibLoop>("lib:trelvo_glib") &&
                         registerTimer<PollLoop, TrelvoTimer>("lib:trelvo_poll") &&
                         registerTimer<GlibLoop, TrelvoTimer>("lib:trelvo_glib");

}  // namespace

}  // namespace bench
