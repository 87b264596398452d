#include <trelvo/core/LinTimer.h>

#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <limits>

#include <trelvo/core/AsyncCallDispatcher.h>

#include "core/linux/Descriptor.h"
#include "core/linux/TimerRegistration.h"
#include "objects/MakeObject.h"

namespace trelvo::core {

namespace {

constexpr std::uint64_t kMostCallsInOneGo = 256;

timespec timespecOf(unsigned long long ms) {
  constexpr auto kLast = static_cast<unsigned long long>(std::numeric_limits<time_t>::max());
  timespec result = {};
  result.tv_sec = static_cast<time_t>(std::min(ms / 1000, kLast));
  result.tv_nsec = static_cast<long>(ms % 1000) * 1000000;
  return result;
}

}  // namespace

gom::SharedPointer<ITimer> ITimer::create(ITimerObserver* observer) {
  if (observer == nullptr) {
    return {};
  }
  const auto timer = gom::makeObject<LinTimer>(observer);
  return timer && timer->init() ? timer : gom::SharedPointer<LinTimer>();
}

LinTimer::LinTimer(ITimerObserver* observer) noexcept : m_observer(observer) {}

// Closing the descriptor disarms it, so that only the provider has to be told.
LinTimer::~LinTimer() {
  try {
    unregisterTimer(this);
  } catch (...) {  // NOLINT(bugprone-empty-catch): without a provider there is nobody to tell
  }
  if (m_timerFd == 0) {
    return;
  }
  m_linDispatcher->detachPollSink({m_timerFd, POLLIN, 0});
  close(m_timerFd);
  m_timerFd = 0;
}

bool LinTimer::init() {
  m_dispatcher = AsyncCallDispatcher::openDispatcher(AsyncCallDispatcher::MainLoopTypeNone);
  m_linDispatcher = dynamic_cast<LinAsyncCallDispatcher*>(m_dispatcher.get());
  if (m_linDispatcher == nullptr) {
    return false;
  }
  // A read must not wait: another thread that runs the default main context of GLib may find the
  // timer expired just before its own thread arms it anew.
  m_timerFd =
      std::max(awayFromZero(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)), 0);
  return m_timerFd != 0 && m_linDispatcher->attachPollSink({m_timerFd, POLLIN, 0}, this);
}

Status LinTimer::start(int intervalMs, int reserved) {
  return start(intervalMs, static_cast<unsigned long long>(intervalMs),
               static_cast<unsigned int>(reserved));
}

Status LinTimer::start(long long delayMs, unsigned long long periodMs, unsigned int /*reserved*/) {
  if (delayMs == 0) {
    return StatusInvalidParameter;
  }
  if (m_timerFd == 0) {
    return StatusWrongState;
  }
  const auto delay = static_cast<unsigned long long>(delayMs);
  if (delayMs < 0 || !startTimer({timespecOf(periodMs), timespecOf(delay)})) {
    return StatusFailed;
  }
  m_delay = delayMs;
  m_period = periodMs;
  m_active = true;
  registerTimer(this);
  return StatusOk;
}

Status LinTimer::stop() {
  if (m_timerFd == 0) {
    return StatusWrongState;
  }
  return stopTimer() ? StatusOk : StatusFailed;
}

bool LinTimer::startTimer(const itimerspec& spec) const {
  itimerspec old = {};
  return timerfd_settime(m_timerFd, 0, &spec, &old) == 0;
}

bool LinTimer::stopTimer() {
  unregisterTimer(this);
  m_active = false;
  m_delay = 0;
  m_period = 0;
  return startTimer({});
}

long long LinTimer::delay() const { return m_delay; }
unsigned long long LinTimer::period() const { return m_period; }
ITimerObserver* LinTimer::observer() const { return m_observer; }
bool LinTimer::isActive() const { return m_active; }

void LinTimer::handlePollEvent(const pollfd& ready) {
  if (ready.fd != m_timerFd || m_observer == nullptr) {
    throw StatusInternal;
  }
  std::uint64_t expirations = 0;
  if (read(m_timerFd, &expirations, sizeof(expirations)) != ssize_t{sizeof(expirations)}) {
    return;
  }
  // The observer may drop the last handle.
  const gom::SharedPointer<LinTimer> kept(referenceCount() > 0 ? this : nullptr);
  if (m_period == 0) {
    stopTimer();
  }
  notify(std::min(expirations, kMostCallsInOneGo));
}

void LinTimer::notify(unsigned long long expirations) {
  for (; expirations > 0; --expirations) {
    m_observer->handleTimerEvent(this);
  }
}

}  // namespace trelvo::core
