#pragma once

#include <trelvo/Export.h>
#include <trelvo/gom/ReferenceCountable.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::core {

/// A counting semaphore: signal() adds tokens up to a maximum, waiting takes one.
///
/// Threads: any number may wait and signal at once. The reference count is a plain integer: make
/// and drop handles on one thread at a time, and not while another thread waits.
class TRELVO_EXPORT ISemaphore : public gom::ReferenceCountable {
 public:
  ~ISemaphore() override;

  /// Waits until there is a token and takes it. @return true when it was taken, false on failure.
  [[nodiscard]] virtual bool wait() = 0;

  /// Waits for a token for at most `timeoutMs` milliseconds; with 0 it polls.
  /// @return 0 on failure, 1 when a token was taken, 2 when the time ran out.
  [[nodiscard]] virtual int tryWait(unsigned int timeoutMs) = 0;

  /// Adds `count` tokens and wakes who waits for them.
  ///
  /// @param previous where the number of tokens before the call goes, also when the call then fails
  ///                 for being too many; may be null.
  /// @return false, with nothing added, when there would be more tokens than the maximum, and when
  ///         the system fails.
  virtual bool signal(unsigned int count, unsigned int* previous) = 0;

  /// Takes all tokens away, after a thread that was already woken had the chance to take its own.
  /// @return false on failure, with the tokens left.
  virtual bool zero() = 0;

  /// A new semaphore without tokens that holds at most `max`.
  ///
  /// @param initial must be 0: a semaphore starts empty. Signal what it begins with.
  /// @param max     1 or more.
  /// @return an empty handle when an argument is refused, and when memory or the system fails.
  [[nodiscard]] static gom::SharedPointer<ISemaphore> create(unsigned int initial,
                                                             unsigned int max);
};

}  // namespace trelvo::core
