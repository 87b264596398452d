#include "crypto/CounterCipher.h"

#include <cstddef>
#include <cstring>
#include <new>

#include <openssl/crypto.h>

namespace trelvo::crypto {

CounterCipher::CounterCipher() : m_context(EVP_CIPHER_CTX_new()) {
  if (m_context == nullptr) {
    throw std::bad_alloc();
  }
}

CounterCipher::~CounterCipher() {
  OPENSSL_cleanse(m_key, sizeof m_key);
  OPENSSL_cleanse(m_counter, sizeof m_counter);
}

Status CounterCipher::apply(const unsigned char* key, const unsigned char* counter,
                            const unsigned char* input, unsigned char* output, unsigned int size) {
  if (!start(key, counter)) {
    m_keyed = m_running = false;
    return StatusOutOfMemory;
  }
  std::size_t produced = 0;
  m_running = passThroughCipher(m_context.get(), output, produced, input, size);
  if (!m_running) {
    return StatusFailed;
  }
  advance(size);
  return StatusOk;
}

bool CounterCipher::start(const unsigned char* key, const unsigned char* counter) {
  if (!m_keyed || std::memcmp(m_key, key, kKeySize) != 0) {
    const ErrorQueueGuard errors;
    std::memcpy(m_key, key, kKeySize);
    std::memcpy(m_counter, counter, kCounterSize);
    m_keyed = EVP_EncryptInit_ex2(m_context.get(), aes128Ctr(), key, counter, nullptr) == 1;
    return m_keyed;
  }
  if (m_running && std::memcmp(m_counter, counter, kCounterSize) == 0) {
    return true;
  }
  // A counter needs no memory, so there is no failure to forget; a guard would cost as much as
  // enciphering the block.
  std::memcpy(m_counter, counter, kCounterSize);
  return EVP_EncryptInit_ex2(m_context.get(), nullptr, nullptr, counter, nullptr) == 1;
}

/// Follows the context's counter in its last four bytes; where it leaves them, or stops inside a
/// cipher block, the next bytes set it anew.
void CounterCipher::advance(unsigned int size) {
  unsigned long long steps = size / kCounterSize;
  for (unsigned int i = kCounterSize; i > kCounterSize - 4; --i) {
    steps += m_counter[i - 1];
    m_counter[i - 1] = static_cast<unsigned char>(steps);
    steps >>= 8;
  }
  m_running = steps == 0 && size % kCounterSize == 0;
}

}  // namespace trelvo::crypto
