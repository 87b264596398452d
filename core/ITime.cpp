#include <trelvo/core/ITime.h>

#include <memory>
#include <new>
#include <utility>

#include <trelvo/Status.h>
#include <trelvo/core/LinTimeProvider.h>

#include "objects/StartUp.h"

namespace trelvo::core {

__attribute__((init_priority(kStartUpTimeProvider))) Lockable<ITimeProvider*> gTimeProvider;

namespace {

void lockSlot(Lock<ITimeProvider*>& lock) {
  if (!gTimeProvider.lock()) {
    throw StatusFailed;
  }
  lock.m_lockable = &gTimeProvider;
}

template <class T>
T ask(T (ITimeProvider::*question)()) {
  Lock<ITimeProvider*> lock;
  ITime::getTimeProvider(lock);
  return (lock.m_lockable->m_value->*question)();
}

}  // namespace

void ITime::setTimeProvider(ITimeProvider* provider) {
  Lock<ITimeProvider*> lock;
  lockSlot(lock);
  // The old one leaves the slot first, so that its destructor may still ask for the time.
  const std::unique_ptr<ITimeProvider> old(std::exchange(gTimeProvider.m_value, provider));
}

void ITime::getTimeProvider(Lock<ITimeProvider*>& lock) {
  lockSlot(lock);
  if (gTimeProvider.m_value == nullptr) {
    gTimeProvider.m_value = createDefaultProvider();
  }
  if (gTimeProvider.m_value == nullptr) {
    throw StatusOutOfMemory;
  }
}

ITimeProvider* ITime::createDefaultProvider() { return new (std::nothrow) LinTimeProvider; }

time_t ITime::utcTime() { return ask(&ITimeProvider::utcTime); }

long long ITime::gpsTime() { return ask(&ITimeProvider::gpsTime); }

long long ITime::timeSinceBoot() { return ask(&ITimeProvider::timeSinceBoot); }

}  // namespace trelvo::core
