#pragma once

#include <pthread.h>

#include <trelvo/Export.h>

namespace trelvo::core {

/// One slot for a pointer in every thread: a static object of this class gives each thread a
/// "singleton" of its own. `T` is a pointer type.
///
/// The slot owns nothing and nobody clears it when a thread ends. The key lives as long as the
/// process: objects of this class are statics.
///
/// Failures: a process has a limited number of keys (1024 on Linux). Without one get() gives null
/// in every thread, and set() false. Threads: each sees its own value only.
template <class T>
class TRELVO_EXPORT Singleton {
 public:
  /// Makes the slot, with `value` in the thread that runs the constructor and null in all others.
  /// `name` tells slots apart in a debugger and must outlive the slot.
  Singleton(T value, const char* name) noexcept : m_name(name) {
    pthread_key_t key = kNoKey;
    if (pthread_key_create(&key, nullptr) == 0) {
      m_key = key;
      set(value);
    }
  }

  /// The calling thread's value, or null.
  T get() const noexcept {
    return m_key == kNoKey ? nullptr : static_cast<T>(pthread_getspecific(m_key));
  }

  /// Stores `value` for the calling thread. @return false, with nothing stored, when there is no
  /// key or no memory for it.
  bool set(T value) noexcept { return m_key != kNoKey && pthread_setspecific(m_key, value) == 0; }

  /// The name given to the constructor.
  const char* name() const noexcept { return m_name; }

 private:
  static constexpr pthread_key_t kNoKey = static_cast<pthread_key_t>(-1);

  pthread_key_t m_key = kNoKey;
  const char* m_name;
};

}  // namespace trelvo::core
