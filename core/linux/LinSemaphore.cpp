#include <trelvo/core/LinSemaphore.h>

#include <cerrno>
#include <ctime>

#include "core/linux/Deadline.h"

namespace trelvo::core {

namespace {

/// The monotonic clock's time, or, when it cannot be read, one that is long past.
timespec nowOrLongPast(unsigned int plusMs) {
  timespec time = {};
  if (clock_gettime(CLOCK_MONOTONIC, &time) != 0) {
    return {};
  }
  addWithoutCarry(time, plusMs);
  return time;
}

}  // namespace

LinSemaphore::~LinSemaphore() {
  if (m_max != 0) {
    destroyHandles();
  }
}

bool LinSemaphore::create(unsigned int initial, unsigned int max) {
  if (max == 0 || !createHandles()) {
    return false;
  }
  // While the maximum is 0 every signal fails, and with it every creation with initial tokens.
  if (initial != 0 && !signal(initial, nullptr)) {
    destroyHandles();
    return false;
  }
  m_max = max;
  return true;
}

bool LinSemaphore::createHandles() {
  if (pthread_condattr_init(&m_condAttr) != 0 ||
      pthread_condattr_setclock(&m_condAttr, CLOCK_MONOTONIC) != 0 ||
      pthread_cond_init(&m_cond, &m_condAttr) != 0) {
    return false;
  }
  if (pthread_mutex_init(&m_mutex, nullptr) != 0) {
    pthread_cond_destroy(&m_cond);
    return false;
  }
  return true;
}

void LinSemaphore::destroyHandles() {
  pthread_mutex_destroy(&m_mutex);
  pthread_cond_destroy(&m_cond);
}

bool LinSemaphore::wait() { return doWait(false, 0) == 1; }

int LinSemaphore::tryWait(unsigned int timeoutMs) { return doWait(true, timeoutMs); }

int LinSemaphore::doWait(bool timed, unsigned int timeoutMs) {
  if (m_max == 0) {
    return 0;
  }
  int error = pthread_mutex_lock(&m_mutex);
  if (error == 0) {
    error = takeToken(timed, timed ? nowOrLongPast(timeoutMs) : timespec{});
    pthread_mutex_unlock(&m_mutex);
  }
  return error == 0 ? 1 : error == ETIMEDOUT ? 2 : 0;
}

/// Runs with the mutex held. Gives 0 or the error that ended the wait.
int LinSemaphore::takeToken(bool timed, const timespec& deadline) {
  while (m_count == 0) {
    const int error = timed ? pthread_cond_timedwait(&m_cond, &m_mutex, &deadline)
                            : pthread_cond_wait(&m_cond, &m_mutex);
    if (error != 0) {
      return error;
    }
  }
  --m_count;
  return 0;
}

bool LinSemaphore::signal(unsigned int count, unsigned int* previous) {
  if (m_max == 0 || pthread_mutex_lock(&m_mutex) != 0) {
    return false;
  }
  if (previous != nullptr) {
    *previous = m_count;
  }
  const bool added = count <= m_max - m_count && pthread_cond_broadcast(&m_cond) == 0;
  if (added) {
    m_count += count;
  }
  pthread_mutex_unlock(&m_mutex);
  return added;
}

bool LinSemaphore::zero() {
  if (m_max == 0 || pthread_mutex_lock(&m_mutex) != 0) {
    return false;
  }
  // A deadline of now gives the mutex up for a moment: a thread already woken takes its token.
  const timespec now = nowOrLongPast(0);
  const int error = pthread_cond_timedwait(&m_cond, &m_mutex, &now);
  const bool emptied = error == 0 || error == ETIMEDOUT;
  if (emptied) {
    m_count = 0;
  }
  pthread_mutex_unlock(&m_mutex);
  return emptied;
}

}  // namespace trelvo::core
