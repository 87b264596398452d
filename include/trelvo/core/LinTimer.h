#pragma once

#include <trelvo/Export.h>
#include <trelvo/core/IPollSink.h>
#include <trelvo/core/ITimer.h>
#include <trelvo/core/LinAsyncCallDispatcher.h>

struct itimerspec;

namespace trelvo::core {

/// A timer of the kernel (timerfd_create(2)), whose descriptor hangs on the dispatcher of the
/// thread that made it.
///
/// A periodic timer whose thread was held up catches up: the observer is called once for each
/// period that went by, in one go, but at most 256 times; what is beyond is lost. stop() in the
/// observer does not cut that short. Where the observer drops the last handle, the timer lives
/// until it is over.
///
/// start() and stop() tell the time provider, which a simulated clock may act on. A provider that
/// cannot be had makes them throw what ITime::getTimeProvider() throws.
///
/// Threads: one, which also runs the dispatcher. With the GLib kind that is the thread that runs
/// the default main context.
class TRELVO_EXPORT LinTimer : public ITimer, public IPollSink {
 public:
  /// Takes the observer; init() must follow.
  explicit LinTimer(ITimerObserver* observer) noexcept;
  /// Stops the timer and leaves the dispatcher, which may end with it.
  ~LinTimer() override;
  LinTimer(const LinTimer&) = delete;
  LinTimer& operator=(const LinTimer&) = delete;

  /// Opens the thread's dispatcher, makes the descriptor and attaches it; create() does that.
  /// @return false when one of them fails: the timer can then not be started.
  bool init();

  Status start(int intervalMs, int reserved) override;

  /// @return StatusWrongState without a descriptor, StatusFailed when the kernel refuses.
  Status stop() override;

  /// @return also StatusWrongState, without a descriptor.
  Status start(long long delayMs, unsigned long long periodMs, unsigned int reserved) override;

  long long delay() const override;
  unsigned long long period() const override;
  /// As given to the constructor.
  ITimerObserver* observer() const override;
  bool isActive() const override;

  /// Reads how often the timer expired and calls the observer as often. Throws StatusInternal for
  /// another descriptor than its own, and without an observer.
  void handlePollEvent(const pollfd& ready) override;

 private:
  bool startTimer(const itimerspec& spec) const;
  bool stopTimer();
  void notify(unsigned long long expirations);

  ITimerObserver* m_observer;
  int m_timerFd = 0;  // 0 for none
  gom::SharedPointer<IAsyncCallDispatcher> m_dispatcher;
  LinAsyncCallDispatcher* m_linDispatcher = nullptr;  // the same object
  long long m_delay = 0;
  unsigned long long m_period = 0;
  bool m_active = false;
};

}  // namespace trelvo::core
