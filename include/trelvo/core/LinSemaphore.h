#pragma once

#include <pthread.h>

#include <ctime>

#include <trelvo/Export.h>
#include <trelvo/core/ISemaphore.h>

namespace trelvo::core {

/// The semaphore over a pthread mutex and condition. core::ISemaphore::create() makes one ready for
/// use; without a successful create() every operation fails at once.
///
/// Times run on CLOCK_MONOTONIC, which setting the system's time does not touch.
class TRELVO_EXPORT LinSemaphore : public ISemaphore {
 public:
  LinSemaphore() noexcept = default;
  ~LinSemaphore() override;
  LinSemaphore(const LinSemaphore&) = delete;
  LinSemaphore& operator=(const LinSemaphore&) = delete;

  /// Sets up an empty semaphore for at most `max` tokens, once.
  /// @return false when `max` is 0, when `initial` is not 0 (the tokens would have to be signalled
  ///         before the maximum is known), and when the system fails. The object then stays
  ///         unusable.
  [[nodiscard]] bool create(unsigned int initial, unsigned int max);

  [[nodiscard]] bool wait() override;

  /// Only 0 and whole seconds are reliable as `timeoutMs`: the milliseconds beyond seconds are
  /// added to the clock's nanoseconds without a carry, so that when both reach a second together
  /// the system refuses the deadline and, without a token there, the result is 0.
  [[nodiscard]] int tryWait(unsigned int timeoutMs) override;

  bool signal(unsigned int count, unsigned int* previous) override;

  bool zero() override;

 private:
  bool createHandles();
  void destroyHandles();
  int doWait(bool timed, unsigned int timeoutMs);
  int takeToken(bool timed, const timespec& deadline);

  pthread_mutex_t m_mutex = PTHREAD_MUTEX_INITIALIZER;
  pthread_cond_t m_cond = PTHREAD_COND_INITIALIZER;
  pthread_condattr_t m_condAttr = {};
  unsigned int m_count = 0;
  unsigned int m_max = 0;
};

}  // namespace trelvo::core
