#pragma once

#include <pthread.h>

#include <trelvo/Export.h>
#include <trelvo/core/IMutex.h>

namespace trelvo::core {

/// The recursive mutex over pthreads. core::IMutex::create() makes one ready for use.
///
/// Destroying a mutex that a thread holds is an error of the program.
class TRELVO_EXPORT LinMutex : public IMutex {
 public:
  /// Not usable before create() has returned true.
  LinMutex() noexcept = default;
  ~LinMutex() override;
  LinMutex(const LinMutex&) = delete;
  LinMutex& operator=(const LinMutex&) = delete;

  /// Sets up the mutex, once. The argument has no effect.
  /// @return false when the system refuses; the object can then only be destroyed.
  [[nodiscard]] bool create(bool reserved);

  [[nodiscard]] bool lock() override;

  /// A free mutex is taken without a look at the clock, whatever `timeoutMs`.
  ///
  /// The deadline is read from CLOCK_REALTIME: setting the system's time moves it. Only whole
  /// seconds are reliable as `timeoutMs`: the milliseconds beyond them are added to the clock's
  /// nanoseconds without a carry, so that when both reach a second together the system refuses the
  /// deadline.
  /// @return 1 when locked; 2 when the time ran out; 0 when the system fails, when it refuses the
  ///         deadline as said above, and, for a held mutex, when `timeoutMs` is 0.
  [[nodiscard]] int tryLock(unsigned int timeoutMs) override;

  /// @return what pthread_mutex_unlock gives: 0, or EPERM for a thread that does not hold it.
  int unlock() override;

 private:
  pthread_mutex_t m_mutex = PTHREAD_RECURSIVE_MUTEX_INITIALIZER_NP;
  pthread_mutexattr_t m_attr = {};
  bool m_created = false;
  [[maybe_unused]] bool m_held = false;  // kept for the object's layout
};

}  // namespace trelvo::core
