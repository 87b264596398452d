#include "tests/core/SystemCalls.h"

#include <pthread.h>

#include <optional>
#include <utility>

namespace trelvo::test {
namespace {

struct Answer {
  int result;
  std::function<void()> meanwhile;
};

thread_local std::optional<Answer> gAnswers[kSystemCalls];
thread_local std::optional<timespec> gStandingTime;
thread_local SystemLog gLog = {};

int indexOf(SystemCall call) { return static_cast<int>(call); }

bool isAnswered(SystemCall call) { return gAnswers[indexOf(call)].has_value(); }

/// The answer to `call`, or what `real` gives.
template <class... Parameters, class... Arguments>
int answer(SystemCall call, int (*real)(Parameters...), Arguments... arguments) {
  ++gLog.calls[indexOf(call)];
  const std::optional<Answer>& given = gAnswers[indexOf(call)];
  if (!given) {
    return real(arguments...);
  }
  given->meanwhile();
  return given->result;
}

int readClock(timespec* time, int (*real)(clockid_t, timespec*), clockid_t clock) {
  gLog.clock = clock;
  if (gStandingTime) {
    *time = *gStandingTime;
    return 0;
  }
  return real(clock, time);
}

}  // namespace

Answered::Answered(SystemCall call, int result, std::function<void()> meanwhile) : m_call(call) {
  gAnswers[indexOf(call)] = Answer{result, std::move(meanwhile)};
}
Answered::~Answered() { gAnswers[indexOf(m_call)].reset(); }

StandingClock::StandingClock(time_t seconds, long nanoseconds) noexcept {
  set(seconds, nanoseconds);
}
StandingClock::~StandingClock() { gStandingTime.reset(); }
void StandingClock::set(time_t seconds, long nanoseconds) noexcept {
  gStandingTime = timespec{seconds, nanoseconds};
}

SystemLog& systemLog() noexcept { return gLog; }
int callsOf(SystemCall call) noexcept { return gLog.calls[indexOf(call)]; }

}  // namespace trelvo::test

using trelvo::test::answer;
using trelvo::test::SystemCall;
using trelvo::test::systemLog;

// The linker's names for what it wraps, and the parameters of the system's own declarations.
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" {

int __real_clock_gettime(clockid_t clock, timespec* time);
int __wrap_clock_gettime(clockid_t clock, timespec* time) {
  const auto read = [](clockid_t id, timespec* target) {
    return trelvo::test::readClock(target, __real_clock_gettime, id);
  };
  return answer(SystemCall::ClockGettime, +read, clock, time);
}

int __real_pthread_cond_broadcast(pthread_cond_t* cond);
int __wrap_pthread_cond_broadcast(pthread_cond_t* cond) {
  return answer(SystemCall::CondBroadcast, __real_pthread_cond_broadcast, cond);
}

int __real_pthread_cond_destroy(pthread_cond_t* cond);
int __wrap_pthread_cond_destroy(pthread_cond_t* cond) {
  return answer(SystemCall::CondDestroy, __real_pthread_cond_destroy, cond);
}

int __real_pthread_cond_init(pthread_cond_t* cond, const pthread_condattr_t* attr);
int __wrap_pthread_cond_init(pthread_cond_t* cond, const pthread_condattr_t* attr) {
  return answer(SystemCall::CondInit, __real_pthread_cond_init, cond, attr);
}

int __real_pthread_cond_timedwait(pthread_cond_t* cond, pthread_mutex_t* mutex,
                                  const timespec* deadline);
int __wrap_pthread_cond_timedwait(pthread_cond_t* cond, pthread_mutex_t* mutex,
                                  const timespec* deadline) {
  systemLog().deadline = *deadline;
  return answer(SystemCall::CondTimedwait, __real_pthread_cond_timedwait, cond, mutex, deadline);
}

int __real_pthread_cond_wait(pthread_cond_t* cond, pthread_mutex_t* mutex);
int __wrap_pthread_cond_wait(pthread_cond_t* cond, pthread_mutex_t* mutex) {
  return answer(SystemCall::CondWait, __real_pthread_cond_wait, cond, mutex);
}

int __real_pthread_condattr_init(pthread_condattr_t* attr);
int __wrap_pthread_condattr_init(pthread_condattr_t* attr) {
  return answer(SystemCall::CondattrInit, __real_pthread_condattr_init, attr);
}

int __real_pthread_condattr_setclock(pthread_condattr_t* attr, clockid_t clock);
int __wrap_pthread_condattr_setclock(pthread_condattr_t* attr, clockid_t clock) {
  return answer(SystemCall::CondattrSetclock, __real_pthread_condattr_setclock, attr, clock);
}

int __real_pthread_create(pthread_t* thread, const pthread_attr_t* attr, void* (*run)(void*),
                          void* argument);
int __wrap_pthread_create(pthread_t* thread, const pthread_attr_t* attr, void* (*run)(void*),
                          void* argument) {
  return answer(SystemCall::Create, __real_pthread_create, thread, attr, run, argument);
}

int __real_pthread_join(pthread_t thread, void** value);
int __wrap_pthread_join(pthread_t thread, void** value) {
  void* exitValue = nullptr;
  const int error = __real_pthread_join(thread, &exitValue);
  systemLog().exitValue = reinterpret_cast<std::intptr_t>(exitValue);
  if (value != nullptr) {
    *value = exitValue;
  }
  const auto joined = [](int result) { return result; };
  return answer(SystemCall::Join, +joined, error);
}

int __real_pthread_key_create(pthread_key_t* key, void (*destroy)(void*));
int __wrap_pthread_key_create(pthread_key_t* key, void (*destroy)(void*)) {
  return answer(SystemCall::KeyCreate, __real_pthread_key_create, key, destroy);
}

int __real_pthread_kill(pthread_t thread, int signal);
int __wrap_pthread_kill(pthread_t thread, int signal) {
  const bool spared = trelvo::test::isAnswered(SystemCall::Kill);
  const int result = answer(SystemCall::Kill, __real_pthread_kill, thread, signal);
  if (spared) {
    __real_pthread_join(thread, nullptr);
  }
  return result;
}

int __real_pthread_mutex_destroy(pthread_mutex_t* mutex);
int __wrap_pthread_mutex_destroy(pthread_mutex_t* mutex) {
  return answer(SystemCall::MutexDestroy, __real_pthread_mutex_destroy, mutex);
}

int __real_pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t* attr);
int __wrap_pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t* attr) {
  return answer(SystemCall::MutexInit, __real_pthread_mutex_init, mutex, attr);
}

int __real_pthread_mutex_lock(pthread_mutex_t* mutex);
int __wrap_pthread_mutex_lock(pthread_mutex_t* mutex) {
  return answer(SystemCall::MutexLock, __real_pthread_mutex_lock, mutex);
}

int __real_pthread_mutex_timedlock(pthread_mutex_t* mutex, const timespec* deadline);
int __wrap_pthread_mutex_timedlock(pthread_mutex_t* mutex, const timespec* deadline) {
  systemLog().deadline = *deadline;
  return answer(SystemCall::MutexTimedlock, __real_pthread_mutex_timedlock, mutex, deadline);
}

int __real_pthread_mutex_trylock(pthread_mutex_t* mutex);
int __wrap_pthread_mutex_trylock(pthread_mutex_t* mutex) {
  return answer(SystemCall::MutexTrylock, __real_pthread_mutex_trylock, mutex);
}

int __real_pthread_mutexattr_destroy(pthread_mutexattr_t* attr);
int __wrap_pthread_mutexattr_destroy(pthread_mutexattr_t* attr) {
  return answer(SystemCall::MutexattrDestroy, __real_pthread_mutexattr_destroy, attr);
}

int __real_pthread_mutexattr_init(pthread_mutexattr_t* attr);
int __wrap_pthread_mutexattr_init(pthread_mutexattr_t* attr) {
  return answer(SystemCall::MutexattrInit, __real_pthread_mutexattr_init, attr);
}

int __real_pthread_mutexattr_settype(pthread_mutexattr_t* attr, int type);
int __wrap_pthread_mutexattr_settype(pthread_mutexattr_t* attr, int type) {
  return answer(SystemCall::MutexattrSettype, __real_pthread_mutexattr_settype, attr, type);
}

int __real_pthread_setschedparam(pthread_t thread, int policy, const sched_param* parameter);
int __wrap_pthread_setschedparam(pthread_t thread, int policy, const sched_param* parameter) {
  systemLog().policy = policy;
  systemLog().priority = parameter->sched_priority;
  return answer(SystemCall::Setschedparam, __real_pthread_setschedparam, thread, policy, parameter);
}

int __real_pthread_setspecific(pthread_key_t key, const void* value);
int __wrap_pthread_setspecific(pthread_key_t key, const void* value) {
  return answer(SystemCall::Setspecific, __real_pthread_setspecific, key, value);
}

int __real_pthread_tryjoin_np(pthread_t thread, void** value);
int __wrap_pthread_tryjoin_np(pthread_t thread, void** value) {
  return answer(SystemCall::TryJoin, __real_pthread_tryjoin_np, thread, value);
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
