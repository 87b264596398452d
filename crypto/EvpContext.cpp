#include "crypto/EvpContext.h"

#include <algorithm>
#include <new>

namespace trelvo {

namespace {

constexpr std::size_t kMostAtOnce = std::size_t{1} << 30;  // whole blocks, and an int holds it

/// Kept for good: whoever still encrypts while the process ends finds it there. Where the look-up
/// fails, OpenSSL's own name for the cipher serves, which is looked up at each use.
const EVP_CIPHER* fetch(const char* name, const EVP_CIPHER* otherwise) noexcept {
  const ErrorQueueGuard errors;
  const EVP_CIPHER* const fetched = EVP_CIPHER_fetch(nullptr, name, nullptr);
  return fetched != nullptr ? fetched : otherwise;
}

}  // namespace

const EVP_CIPHER* aes128Cbc() noexcept {
  static const EVP_CIPHER* const cipher = fetch("AES-128-CBC", EVP_aes_128_cbc());
  return cipher;
}

const EVP_CIPHER* aes128Ctr() noexcept {
  static const EVP_CIPHER* const cipher = fetch("AES-128-CTR", EVP_aes_128_ctr());
  return cipher;
}

bool passThroughCipher(EVP_CIPHER_CTX* context, unsigned char* output, std::size_t& produced,
                       const unsigned char* input, std::size_t length) noexcept {
  produced = 0;
  while (length != 0) {
    const std::size_t taken = std::min(length, kMostAtOnce);
    int count = 0;
    if (EVP_CipherUpdate(context, output + produced, &count, input, static_cast<int>(taken)) != 1) {
      return false;
    }
    produced += static_cast<std::size_t>(count);
    input += taken;
    length -= taken;
  }
  return true;
}

Status appendOutput(Buffer& output, const unsigned char* bytes, unsigned int count) noexcept {
  try {
    output.append(bytes, count);
  } catch (const std::bad_alloc&) {
    return StatusOutOfMemory;
  }
  return StatusOk;
}

}  // namespace trelvo
