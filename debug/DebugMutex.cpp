#include <trelvo/DebugMutex.h>

#include <atomic>

#include "objects/StartUp.h"

namespace trelvo {
namespace {

// Outlives the object: it is there before the first constructor and has no destructor.
std::atomic<bool> gUsable{false};

}  // namespace

DebugMutex::DebugMutex() noexcept : m_mutex() {
  gUsable = pthread_mutex_init(&m_mutex, nullptr) == 0;
}

DebugMutex::~DebugMutex() {
  if (gUsable.exchange(false)) pthread_mutex_destroy(&m_mutex);
}

bool DebugMutex::lock() noexcept { return gUsable && pthread_mutex_lock(&m_mutex) == 0; }

void DebugMutex::unlock() noexcept { pthread_mutex_unlock(&m_mutex); }

__attribute__((init_priority(kStartUpLogging))) DebugMutex gDebugMutex;

}  // namespace trelvo
