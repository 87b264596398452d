#include <trelvo/EvpCryptorLin.h>

#include <limits>
#include <new>

#include "crypto/EvpContext.h"
#include "crypto/Wiped.h"
#include "objects/BufferTail.h"

namespace trelvo {

namespace {

/// Null for what there is not.
const EVP_CIPHER* chosenCipher(const crypto::Cryptor& cryptor) noexcept {
  constexpr unsigned int kAes = 1;
  constexpr unsigned int kCbc = 1;
  constexpr unsigned int kCtr = 2;
  if (cryptor.algorithm != kAes || cryptor.keyBits != 128) {
    return nullptr;
  }
  switch (cryptor.mode) {
    case kCbc:
      return aes128Cbc();
    case kCtr:
      return aes128Ctr();
    default:
      return nullptr;
  }
}

bool hasSize(const ReadOnlyBuffer& bytes, int size) noexcept {
  return bytes.data() != nullptr && bytes.size() == static_cast<unsigned int>(size);
}

/// Passes the bytes into the room of a buffer, which is `room` bytes long.
Status passInto(BufferTail& tail, unsigned int room, EVP_CIPHER_CTX* context,
                const unsigned char* input, std::size_t length) noexcept {
  const ErrorQueueGuard errors;
  std::size_t produced = 0;
  if (!passThroughCipher(context, tail.room(), produced, input, length)) {
    OPENSSL_cleanse(tail.room(), room);
    return StatusFailed;
  }
  tail.wrote(static_cast<unsigned int>(produced));
  return StatusOk;
}

/// The same into a block of that length, and appends what came out.
Status passByCopy(Buffer& output, unsigned int room, EVP_CIPHER_CTX* context,
                  const unsigned char* input, std::size_t length) noexcept {
  const WipedBlock bytes(room);
  if (!bytes) {
    return StatusOutOfMemory;
  }
  const ErrorQueueGuard errors;
  std::size_t produced = 0;
  if (!passThroughCipher(context, bytes.data(), produced, input, length)) {
    return StatusFailed;
  }
  return appendOutput(output, bytes.data(), static_cast<unsigned int>(produced));
}

}  // namespace

EvpCryptorLin::EvpCryptorLin() : m_context(EVP_CIPHER_CTX_new()) {
  if (m_context == nullptr) {
    throw std::bad_alloc();
  }
}

EvpCryptorLin::~EvpCryptorLin() { EVP_CIPHER_CTX_free(m_context); }

Status EvpCryptorLin::initialize(const crypto::Cryptor& cryptor) {
  const EVP_CIPHER* const cipher = chosenCipher(cryptor);
  if (cipher == nullptr) {
    return StatusNotSupported;
  }
  m_cipher = cipher;
  return StatusOk;
}

Status EvpCryptorLin::start(const crypto::CryptoParams& params) {
  if (m_cipher == nullptr) {
    return StatusWrongState;
  }
  return hasSize(params.key, EVP_CIPHER_get_key_length(m_cipher)) &&
                 hasSize(params.iv, EVP_CIPHER_get_iv_length(m_cipher))
             ? StatusOk
             : StatusInvalidParameter;
}

Status EvpCryptorLin::startAs(Direction direction, const crypto::CryptoParams& params) {
  const Status status = EvpCryptorLin::start(params);
  if (status != StatusOk) {
    return status;
  }
  const ErrorQueueGuard errors;
  return EVP_CipherInit(m_context, m_cipher, params.key.data(), params.iv.data(), direction) == 1
             ? StatusOk
             : StatusFailed;
}

Status EvpCryptorLin::passThrough(const ReadOnlyBuffer& input, Buffer& output) try {
  const std::size_t left = input.leftForReading();
  if (input.data() == nullptr || left == 0) {
    return StatusInvalidParameter;
  }
  if (m_cipher == nullptr) {
    return StatusWrongState;
  }
  const auto spare = static_cast<std::size_t>(EVP_CIPHER_get_block_size(m_cipher));
  if (left > std::numeric_limits<unsigned int>::max() - spare) {
    return StatusOutOfMemory;
  }
  const auto room = static_cast<unsigned int>(left + spare);
  const unsigned char* const bytes = input.data() + input.readPosition();
  BufferTail tail(output, room, bytes);
  return tail.room() != nullptr ? passInto(tail, room, m_context, bytes, left)
                                : passByCopy(output, room, m_context, bytes, left);
} catch (const std::bad_alloc&) {
  return StatusOutOfMemory;
}

Status EvpCryptorLin::passLast(Buffer& output) {
  if (m_cipher == nullptr) {
    return StatusWrongState;
  }
  const WipedBlock bytes(static_cast<std::size_t>(EVP_CIPHER_get_block_size(m_cipher)));
  if (!bytes) {
    return StatusOutOfMemory;
  }
  const ErrorQueueGuard errors;
  int produced = 0;
  if (EVP_CipherFinal_ex(m_context, bytes.data(), &produced) != 1) {
    return StatusFailed;
  }
  return appendOutput(output, bytes.data(), static_cast<unsigned int>(produced));
}

}  // namespace trelvo
