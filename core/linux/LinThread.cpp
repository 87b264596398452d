#include <trelvo/core/LinThread.h>

#include <sched.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdint>

namespace trelvo::core {

namespace {

constexpr int kBodySkipped = 15;
constexpr unsigned int kPatienceMs = 1000;

bool setSchedule(pthread_t thread, int policy, int priority) {
  sched_param parameter = {};
  parameter.sched_priority = priority;
  return pthread_setschedparam(thread, policy, &parameter) == 0;
}

}  // namespace

LinThread::~LinThread() {
  if (m_joinable.load(std::memory_order_relaxed)) {
    stop();
  }
  m_exitSemaphore.clear();
  m_startSemaphore.clear();
}

void LinThread::stop() {
  m_stop.store(true, std::memory_order_relaxed);
  m_startSemaphore->signal(1, nullptr);
  const int ended = LinThread::tryWait(kPatienceMs);
  if (ended == 0) {
    join();
  }
  // A thread whose end was used up by isRunning() looks like a running one: it is joined here.
  if (ended == 2 && pthread_tryjoin_np(m_thread, nullptr) != 0) {
    pthread_kill(m_thread, SIGKILL);
  }
  m_joinable.store(false, std::memory_order_relaxed);
}

bool LinThread::create(IThreadObserver* observer, bool suspended) {
  m_startSemaphore = ISemaphore::create(0, 1);
  m_exitSemaphore = ISemaphore::create(0, 1);
  if (!m_startSemaphore || !m_exitSemaphore ||
      pthread_create(&m_thread, nullptr, staticMainFunction, this) != 0) {
    return false;
  }
  // The thread is held at the start semaphore, and sees what is written before it is signalled.
  m_stop.store(false, std::memory_order_relaxed);
  m_observer = observer;
  m_joinable.store(true, std::memory_order_relaxed);
  if (!suspended) {
    m_startSemaphore->signal(1, nullptr);
  }
  return true;
}

void* LinThread::staticMainFunction(void* thread) {
  const std::intptr_t result = static_cast<LinThread*>(thread)->threadFunction();
  return reinterpret_cast<void*>(result);  // NOLINT(performance-no-int-to-ptr): an exit value
}

int LinThread::threadFunction() {
  m_threadId.store(currentThreadId(), std::memory_order_relaxed);
  (void)m_startSemaphore->wait();
  const int result = runObserver();
  m_exitSemaphore->signal(1, nullptr);
  return result;
}

int LinThread::runObserver() {
  const bool skipped = m_stop.load(std::memory_order_relaxed) || m_observer == nullptr;
  return skipped ? kBodySkipped : m_observer->threadMain();
}

bool LinThread::wait() {
  const bool ended = m_exitSemaphore && m_exitSemaphore->wait();
  return !ended || join();
}

int LinThread::tryWait(unsigned int timeoutMs) {
  const int result = m_exitSemaphore ? m_exitSemaphore->tryWait(timeoutMs) : 0;
  return result == 1 ? static_cast<int>(join()) : result;
}

bool LinThread::join() {
  if (!m_joinable.load(std::memory_order_relaxed)) {
    return true;
  }
  const int error = pthread_join(m_thread, nullptr);
  m_joinable.store(false, std::memory_order_relaxed);
  return error == 0 || error == ESRCH;
}

bool LinThread::resume() {
  // The semaphore alone would take a second token as soon as the thread has taken the first.
  if (m_resumed.load(std::memory_order_relaxed)) {
    return false;
  }
  const bool resumed = m_startSemaphore && m_startSemaphore->signal(1, nullptr);
  m_resumed.store(resumed, std::memory_order_relaxed);
  return resumed;
}

bool LinThread::isRunning() const { return m_exitSemaphore && m_exitSemaphore->tryWait(0) == 2; }

int LinThread::threadId() const { return m_threadId.load(std::memory_order_relaxed); }

bool LinThread::setThreadPriority(Priority priority) {
  return m_joinable.load(std::memory_order_relaxed) && setThreadPriority(m_thread, priority);
}

bool LinThread::setThreadPriority(unsigned long thread, Priority priority) {
  switch (priority) {
    case PriorityLowest:
    case PriorityLow:
    case PriorityNormal:
      return setSchedule(thread, SCHED_OTHER, 0);
    case PriorityHigh:
      return setSchedule(thread, SCHED_RR, sched_get_priority_min(SCHED_RR));
    case PriorityHighest:
    case PriorityRealTime:
      return setSchedule(thread, SCHED_RR, sched_get_priority_max(SCHED_RR));
  }
  return false;
}

bool IThread::setCurrentThreadPriority(Priority priority) {
  return LinThread::setThreadPriority(pthread_self(), priority);
}

int IThread::currentThreadId() { return gettid(); }

}  // namespace trelvo::core
