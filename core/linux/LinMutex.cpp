#include <trelvo/core/LinMutex.h>

#include <cerrno>
#include <ctime>

#include "core/linux/Deadline.h"

namespace trelvo::core {

LinMutex::~LinMutex() {
  if (!m_created) {
    return;
  }
  pthread_mutexattr_destroy(&m_attr);
  pthread_mutex_destroy(&m_mutex);
}

bool LinMutex::create(bool /*reserved*/) {
  if (pthread_mutexattr_init(&m_attr) != 0) {
    return false;
  }
  m_created = pthread_mutexattr_settype(&m_attr, PTHREAD_MUTEX_RECURSIVE) == 0 &&
              pthread_mutex_init(&m_mutex, &m_attr) == 0;
  if (!m_created) {
    pthread_mutexattr_destroy(&m_attr);
  }
  return m_created;
}

bool LinMutex::lock() { return pthread_mutex_lock(&m_mutex) == 0; }

int LinMutex::tryLock(unsigned int timeoutMs) {
  if (pthread_mutex_trylock(&m_mutex) == 0) {
    return 1;
  }
  timespec deadline = {};
  if (timeoutMs == 0 || clock_gettime(CLOCK_REALTIME, &deadline) != 0) {
    return 0;
  }
  addWithoutCarry(deadline, timeoutMs);
  const int error = pthread_mutex_timedlock(&m_mutex, &deadline);
  return error == 0 ? 1 : error == ETIMEDOUT ? 2 : 0;
}

int LinMutex::unlock() { return pthread_mutex_unlock(&m_mutex); }

}  // namespace trelvo::core
