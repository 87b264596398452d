#pragma once

#include <pthread.h>

#include <trelvo/Export.h>
#include <trelvo/SingletonPointer.h>

namespace trelvo {

/// The process-wide set-up of OpenSSL: the first CryptoLinux makes it, the last takes it down.
///
/// OpenSSL 3 sets itself up, locks by itself and knows its threads. So there are no locks to hand
/// to it and nothing to register or to clean up; what is left is the life cycle.
class TRELVO_EXPORT CryptoLinuxStatic {
 public:
  CryptoLinuxStatic() noexcept = default;
  ~CryptoLinuxStatic() = default;
  CryptoLinuxStatic(const CryptoLinuxStatic&) = delete;
  CryptoLinuxStatic& operator=(const CryptoLinuxStatic&) = delete;

  /// The locks that OpenSSL wants to be given: null, it wants none.
  const pthread_mutex_t* locks() const noexcept { return m_locks; }
  /// How many they are: 0.
  unsigned int lockCount() const noexcept { return m_lockCount; }
  /// Whether cryptography may be used.
  bool initialised() const noexcept { return m_initialised; }

 private:
  pthread_mutex_t* m_locks = nullptr;
  unsigned int m_lockCount = 0;
  bool m_initialised = true;
};

/// Counts the CryptoLinux objects and holds what they share; null while there are none.
TRELVO_EXPORT extern SingletonPointer<CryptoLinuxStatic> gCryptoStatic;

}  // namespace trelvo
