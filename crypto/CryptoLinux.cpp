#include <trelvo/CryptoLinux.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <limits>
#include <memory>
#include <new>

#include <openssl/rand.h>

#include <trelvo/DecryptorLin.h>
#include <trelvo/EncryptorLin.h>

#include "crypto/EvpContext.h"
#include "crypto/Wiped.h"

namespace trelvo {

namespace {

constexpr crypto::Cryptor kAes128Cbc = {1, 128, 1, 0, 1};
constexpr unsigned int kBlockSize = 16;
constexpr unsigned long kMostInABuffer = std::numeric_limits<unsigned int>::max() - kBlockSize;

/// Bytes of a caller, with a length of the caller's.
struct Bytes {
  const unsigned char* data;
  unsigned long length;

  bool missing() const noexcept { return data == nullptr || length == 0; }

  /// As a view, whose 32 bits do not make a wrong length right.
  ReadOnlyBuffer view() const noexcept {
    return {data, static_cast<unsigned int>(
                      std::min<unsigned long>(length, std::numeric_limits<unsigned int>::max()))};
  }
};

/// A key or IV with room for any cipher's: what the caller has not given is zero.
template <std::size_t size>
class Padded : public WipedArray<size> {
 public:
  explicit Padded(const Bytes& bytes) noexcept {
    std::memcpy(this->data(), bytes.data, std::min<std::size_t>(bytes.length, size));
  }
};

struct CipherRun {
  const EVP_CIPHER* cipher;
  Bytes input, key, iv;
  int encrypting;
  unsigned int spareBlocks;

  bool begin(EVP_CIPHER_CTX* context) const noexcept {
    const Padded<EVP_MAX_KEY_LENGTH> paddedKey(key);
    const Padded<EVP_MAX_IV_LENGTH> paddedIv(iv);
    return cipher != nullptr && context != nullptr &&
           EVP_CipherInit_ex(context, cipher, nullptr, paddedKey.data(), paddedIv.data(),
                             encrypting) == 1;
  }

  /// Of the output block; 0 for more than there can be.
  std::size_t room() const noexcept {
    const auto spare = spareBlocks * static_cast<std::size_t>(EVP_CIPHER_get_block_size(cipher));
    return input.length <= std::numeric_limits<std::size_t>::max() - spare ? input.length + spare
                                                                           : 0;
  }

  bool run(EVP_CIPHER_CTX* context, unsigned char* output, std::size_t& produced) const noexcept {
    int last = 0;
    if (!passThroughCipher(context, output, produced, input.data, input.length) ||
        EVP_CipherFinal_ex(context, output + produced, &last) != 1) {
      return false;
    }
    produced += static_cast<std::size_t>(last);
    return true;
  }
};

Status runCipher(const CipherRun& cipher, unsigned char*& result, unsigned long& resultLength) {
  if (cipher.input.missing() || cipher.key.missing() || cipher.iv.missing()) {
    return StatusInvalidParameter;
  }
  result = nullptr;
  const ErrorQueueGuard errors;
  const CipherContext context(EVP_CIPHER_CTX_new());
  if (!cipher.begin(context.get())) {
    return StatusOutOfMemory;
  }
  const std::size_t room = cipher.room();
  WipedBlock output(room);
  if (room == 0 || !output) {
    return StatusOutOfMemory;
  }
  std::size_t produced = 0;
  if (!cipher.run(context.get(), output.data(), produced)) {
    return StatusFailed;
  }
  result = output.release();
  resultLength = produced;
  return StatusOk;
}

template <class T>
crypto::ICryptor* createCryptor(const crypto::Cryptor& cryptor) {
  auto created = std::make_unique<T>();
  return created->initialize(cryptor) == StatusOk ? created.release() : nullptr;
}

/// Passes all of `input` through `cryptor`, which has its own idea of right sizes.
Status decryptAll(crypto::ICryptor& cryptor, const crypto::CryptoParams& params,
                  const ReadOnlyBuffer& input, Buffer& output) {
  Status status = cryptor.start(params);
  if (status == StatusOk) {
    status = cryptor.add_chunk(input, output);
  }
  return status == StatusOk ? cryptor.finish(output) : status;
}

}  // namespace

CryptoLinux::CryptoLinux() noexcept : m_static(gCryptoStatic.acquireRef()) {}

CryptoLinux::~CryptoLinux() {
  if (m_static != nullptr) {
    gCryptoStatic.releaseRef();
  }
}

bool CryptoLinux::init() const noexcept { return m_static != nullptr && m_static->initialised(); }

Status CryptoLinux::md5Hash(const unsigned char* data, unsigned long length,
                            unsigned char* digest) {
  if (data == nullptr || length == 0 || digest == nullptr) {
    return StatusInvalidParameter;
  }
  const ErrorQueueGuard errors;
  return EVP_Digest(data, length, digest, nullptr, EVP_md5(), nullptr) == 1 ? StatusOk
                                                                            : StatusFailed;
}

Status CryptoLinux::encryptAes(const unsigned char* data, unsigned long length,
                               const unsigned char* key, unsigned long keyLength,
                               const unsigned char* iv, unsigned long ivLength,
                               unsigned char*& result, unsigned long& resultLength) {
  return encrypt(aes128Cbc(), data, length, key, keyLength, iv, ivLength, result, resultLength);
}

Status CryptoLinux::encrypt(const EVP_CIPHER* cipher, const unsigned char* data,
                            unsigned long length, const unsigned char* key, unsigned long keyLength,
                            const unsigned char* iv, unsigned long ivLength, unsigned char*& result,
                            unsigned long& resultLength) {
  return runCipher({cipher, {data, length}, {key, keyLength}, {iv, ivLength}, 1, 2}, result,
                   resultLength);
}

Status CryptoLinux::decrypt(const EVP_CIPHER* cipher, const unsigned char* data,
                            unsigned long length, const unsigned char* key, unsigned long keyLength,
                            const unsigned char* iv, unsigned long ivLength, unsigned char*& result,
                            unsigned long& resultLength) {
  return runCipher({cipher, {data, length}, {key, keyLength}, {iv, ivLength}, 0, 1}, result,
                   resultLength);
}

Status CryptoLinux::decryptAes(const unsigned char* data, unsigned long length,
                               const unsigned char* key, unsigned long keyLength,
                               const unsigned char* iv, unsigned long ivLength,
                               unsigned char*& result, unsigned long& resultLength) try {
  const Bytes input = {data, length};
  const crypto::CryptoParams params = {Bytes{key, keyLength}.view(), Bytes{iv, ivLength}.view()};
  const gom::SharedPointer<crypto::ICryptor> cryptor(create_decryptor(kAes128Cbc));
  if (!cryptor) {
    return StatusFailed;
  }
  if (length > kMostInABuffer) {
    return StatusOutOfMemory;
  }
  WipedBuffer plain(input.missing() ? 0 : input.view().size() + kBlockSize);
  const Status status = decryptAll(*cryptor, params, input.view(), plain);
  if (status != StatusOk) {
    return status;
  }
  resultLength = plain.size();
  result = resultLength != 0 ? plain.release() : nullptr;
  return StatusOk;
} catch (const std::bad_alloc&) {
  return StatusOutOfMemory;
}

crypto::ICryptor* CryptoLinux::create_decryptor(const crypto::Cryptor& cryptor) {
  return createCryptor<DecryptorLin>(cryptor);
}

crypto::ICryptor* CryptoLinux::create_encryptor(const crypto::Cryptor& cryptor) {
  return createCryptor<EncryptorLin>(cryptor);
}

bool CryptoLinux::freeMemory(unsigned char* memory) { return freeMemoryStatic(memory); }

// NOLINTNEXTLINE(readability-non-const-parameter): it is deleted
bool CryptoLinux::freeMemoryStatic(unsigned char* memory) noexcept {
  delete[] memory;
  return true;
}

Status CryptoLinux::makeRandomBytes(unsigned int count, Buffer& output) {
  if (count > static_cast<unsigned int>(INT_MAX)) {
    return StatusFailed;
  }
  const WipedBlock bytes(count);
  if (!bytes) {
    throw std::bad_alloc();
  }
  const ErrorQueueGuard errors;
  std::memset(bytes.data(), 0, count);
  if (RAND_bytes(bytes.data(), static_cast<int>(count)) == 0) {
    return StatusFailed;
  }
  output.append(bytes.data(), count);
  return StatusOk;
}

}  // namespace trelvo
