#pragma once

#include <trelvo/Status.h>

#include "crypto/EvpContext.h"

namespace trelvo::crypto {

/// AES-128 in counter mode with one context for its life. Where the bytes follow those enciphered
/// last, the context's own counter runs on, which is twice as fast as setting it.
///
/// Threads: one at a time.
class CounterCipher {
 public:
  static constexpr unsigned int kKeySize = 16;
  static constexpr unsigned int kCounterSize = 16;

  /// Throws std::bad_alloc.
  CounterCipher();
  ~CounterCipher();
  CounterCipher(const CounterCipher&) = delete;
  CounterCipher& operator=(const CounterCipher&) = delete;

  /// Enciphers, or deciphers, `size` bytes with 16 bytes at `key`, the first 16 of them with the
  /// 16 bytes at `counter`. `output` may be `input`.
  /// @return StatusOk; StatusOutOfMemory when the cipher cannot start; StatusFailed.
  Status apply(const unsigned char* key, const unsigned char* counter, const unsigned char* input,
               unsigned char* output, unsigned int size);

 private:
  bool start(const unsigned char* key, const unsigned char* counter);
  void advance(unsigned int size);

  CipherContext m_context;
  bool m_keyed = false;    // the context has the key in m_key
  bool m_running = false;  // and its counter stands at m_counter
  unsigned char m_key[kKeySize] = {};
  unsigned char m_counter[kCounterSize] = {};
};

}  // namespace trelvo::crypto
