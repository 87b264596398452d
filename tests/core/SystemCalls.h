#pragma once

#include <sched.h>

#include <cstdint>
#include <ctime>
#include <functional>

namespace trelvo::test {

// A test program that compiles SystemCalls.cpp and links with `--wrap` for each function below
// decides, thread by thread, what the system answers to the sources compiled into it.

/// The calls that can be answered.
enum class SystemCall {
  ClockGettime,
  CondBroadcast,
  CondDestroy,
  CondInit,
  CondTimedwait,
  CondWait,
  CondattrInit,
  CondattrSetclock,
  Create,
  Join,
  KeyCreate,
  Kill,
  MutexDestroy,
  MutexInit,
  MutexLock,
  MutexTimedlock,
  MutexTrylock,
  MutexattrDestroy,
  MutexattrInit,
  MutexattrSettype,
  Setschedparam,
  Setspecific,
  TryJoin,
};
constexpr int kSystemCalls = static_cast<int>(SystemCall::TryJoin) + 1;

/// While it lives, this thread gets `result` from `call`, which is not made (a pthread is joined
/// all the same, and one that was to be killed is). Each time, `meanwhile` happens before.
class Answered {
 public:
  Answered(
      SystemCall call, int result, std::function<void()> meanwhile = [] {});
  ~Answered();
  Answered(const Answered&) = delete;
  Answered& operator=(const Answered&) = delete;

 private:
  SystemCall m_call;
};

/// While it lives, every clock stands, for this thread, where it is told to.
class StandingClock {
 public:
  StandingClock(time_t seconds, long nanoseconds) noexcept;
  ~StandingClock();
  StandingClock(const StandingClock&) = delete;
  StandingClock& operator=(const StandingClock&) = delete;

  static void set(time_t seconds, long nanoseconds) noexcept;
};

/// What this thread has asked of the system.
struct SystemLog {
  int calls[kSystemCalls];  ///< How often, for each call; answered ones count.
  clockid_t clock;          ///< The last clock read.
  timespec deadline;        ///< The last deadline of a timed call.
  int policy;               ///< The last scheduling policy asked for,
  int priority;             ///< and its priority.
  std::intptr_t exitValue;  ///< Of the last pthread joined.
};

/// This thread's log, empty at first.
SystemLog& systemLog() noexcept;
int callsOf(SystemCall call) noexcept;

}  // namespace trelvo::test
