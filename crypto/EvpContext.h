#pragma once

#include <cstddef>
#include <memory>

#include <openssl/bio.h>
#include <openssl/decoder.h>
#include <openssl/err.h>
#include <openssl/evp.h>

#include <trelvo/Buffer.h>
#include <trelvo/Status.h>

namespace trelvo {

/// Gives an OpenSSL object back by the function that OpenSSL has for it.
template <auto free>
struct EvpDelete {
  template <class T>
  void operator()(T* object) const noexcept {
    free(object);
  }
};

/// Owners of OpenSSL's objects; null where one could not be made.
using CipherContext = std::unique_ptr<EVP_CIPHER_CTX, EvpDelete<EVP_CIPHER_CTX_free>>;
using Key = std::unique_ptr<EVP_PKEY, EvpDelete<EVP_PKEY_free>>;
using KeyContext = std::unique_ptr<EVP_PKEY_CTX, EvpDelete<EVP_PKEY_CTX_free>>;
using DecoderContext = std::unique_ptr<OSSL_DECODER_CTX, EvpDelete<OSSL_DECODER_CTX_free>>;
using Bio = std::unique_ptr<BIO, EvpDelete<BIO_free>>;

/// The ciphers, looked up in OpenSSL's providers once for the process: EVP_aes_128_ctr() itself is
/// looked up again by each context that starts with it. Never null, from any thread.
const EVP_CIPHER* aes128Cbc() noexcept;
const EVP_CIPHER* aes128Ctr() noexcept;

/// Passes `length` bytes through `context`, any number of them where OpenSSL takes an int.
/// `output` has room for what comes out: `length` and a block.
/// @return whether OpenSSL took them all; `produced` then says how many bytes came out.
bool passThroughCipher(EVP_CIPHER_CTX* context, unsigned char* output, std::size_t& produced,
                       const unsigned char* input, std::size_t length) noexcept;

/// Appends what came out of OpenSSL. @return StatusOk, or StatusOutOfMemory with `output` as it
/// was.
Status appendOutput(Buffer& output, const unsigned char* bytes, unsigned int count) noexcept;

/// Leaves this thread's error queue as it found it: what happens while it lives is forgotten.
class ErrorQueueGuard {
 public:
  ErrorQueueGuard() noexcept { ERR_set_mark(); }
  ~ErrorQueueGuard() { ERR_pop_to_mark(); }
  ErrorQueueGuard(const ErrorQueueGuard&) = delete;
  ErrorQueueGuard& operator=(const ErrorQueueGuard&) = delete;
};

}  // namespace trelvo
