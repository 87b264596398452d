#pragma once

// AES-128 in counter mode over blocks of 512 bytes by OpenSSL alone, in the three ways to keep a
// context. All give the bytes of one call over the whole.

#include <openssl/evp.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "bench/Must.h"

namespace bench {

constexpr std::size_t kBlockSize = 512;

using Key = std::array<unsigned char, 16>;
constexpr Key kKey = {0x2b, 0x7e, 0x15, 0x16, 0x28, 0xae, 0xd2, 0xa6,
                      0xab, 0xf7, 0x15, 0x88, 0x09, 0xcf, 0x4f, 0x3c};
constexpr Key kIv = {0xf0, 0xf1, 0xf2, 0xf3, 0xf4, 0xf5, 0xf6, 0xf7, 0xf8, 0xf9, 0xfa, 0xfb};

struct FreeCipher {
  void operator()(EVP_CIPHER_CTX* context) const { EVP_CIPHER_CTX_free(context); }
  void operator()(EVP_CIPHER* cipher) const { EVP_CIPHER_free(cipher); }
};
using Context = std::unique_ptr<EVP_CIPHER_CTX, FreeCipher>;

/// The counter at cipher block `index`, of 16 bytes.
inline Key counterAt(std::size_t index) {
  Key counter = kIv;
  for (std::size_t i = 0; i < 4; ++i) {
    counter[15 - i] = static_cast<unsigned char>(index >> (8 * i));
  }
  return counter;
}

inline void update(EVP_CIPHER_CTX* context, const unsigned char* from, unsigned char* to,
                   std::size_t size) {
  int written = 0;
  must(EVP_EncryptUpdate(context, to, &written, from, static_cast<int>(size)) == 1 &&
           static_cast<std::size_t>(written) == size,
       "EVP_EncryptUpdate");
}

/// A new context for every call.
class FreshContext {
 public:
  void apply(std::size_t block, const unsigned char* from, unsigned char* to, std::size_t size) {
    const Context context(EVP_CIPHER_CTX_new());
    must(EVP_EncryptInit_ex(context.get(), EVP_aes_128_ctr(), nullptr, kKey.data(),
                            counterAt(block * (kBlockSize / 16)).data()) == 1,
         "EVP_EncryptInit_ex");
    update(context.get(), from, to, size);
  }
};

/// One context, a new counter for every call.
class KeptContext {
 public:
  KeptContext()
      : m_cipher(EVP_CIPHER_fetch(nullptr, "AES-128-CTR", nullptr)),
        m_context(EVP_CIPHER_CTX_new()) {
    must(
        EVP_EncryptInit_ex2(m_context.get(), m_cipher.get(), kKey.data(), kIv.data(), nullptr) == 1,
        "EVP_EncryptInit_ex2");
  }

  void apply(std::size_t block, const unsigned char* from, unsigned char* to, std::size_t size) {
    start(block * (kBlockSize / 16));
    update(m_context.get(), from, to, size);
  }

  /// The same for bytes that start at cipher block `index`.
  void applyAt(std::size_t index, const unsigned char* from, unsigned char* to, std::size_t size) {
    start(index);
    update(m_context.get(), from, to, size);
  }

 protected:
  void start(std::size_t index) {
    must(EVP_EncryptInit_ex2(m_context.get(), nullptr, nullptr, counterAt(index).data(), nullptr) ==
             1,
         "EVP_EncryptInit_ex2");
  }
  EVP_CIPHER_CTX* context() { return m_context.get(); }

 private:
  std::unique_ptr<EVP_CIPHER, FreeCipher> m_cipher;
  Context m_context;
};

/// One context whose counter runs on where the bytes follow those of the last call.
class RunningContext : KeptContext {
 public:
  void apply(std::size_t block, const unsigned char* from, unsigned char* to, std::size_t size) {
    if (block != m_next) {
      start(block * (kBlockSize / 16));
    }
    update(context(), from, to, size);
    m_next = size % kBlockSize == 0 ? block + size / kBlockSize : kNowhere;
  }

 private:
  static constexpr std::size_t kNowhere = SIZE_MAX;
  std::size_t m_next = kNowhere;
};

}  // namespace bench
