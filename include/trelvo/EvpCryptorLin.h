#pragma once

#include <trelvo/Export.h>
#include <trelvo/crypto/Cryptor.h>
#include <trelvo/crypto/ICryptor.h>

struct evp_cipher_ctx_st;  // OpenSSL's EVP_CIPHER_CTX
struct evp_cipher_st;      // OpenSSL's EVP_CIPHER

namespace trelvo {

/// What the cryptors over OpenSSL share: the choice of the cipher and the running state, in which
/// OpenSSL keeps the key and which it wipes when this object dies.
class TRELVO_EXPORT EvpCryptorLin : public crypto::ICryptor {
 public:
  /// Without a cipher. Throws std::bad_alloc.
  EvpCryptorLin();
  ~EvpCryptorLin() override;
  EvpCryptorLin(const EvpCryptorLin&) = delete;
  EvpCryptorLin& operator=(const EvpCryptorLin&) = delete;

  /// Only tests whether it could begin. @return as ICryptor::start().
  Status start(const crypto::CryptoParams& params) override;

  /// Chooses the cipher; start() comes next.
  /// @return StatusOk, or StatusNotSupported, with nothing changed, for anything but AES-128 in CBC
  ///         or CTR mode.
  virtual Status initialize(const crypto::Cryptor& cryptor);

 protected:
  /// Which way the bytes go.
  enum Direction : int { DirectionDecrypt = 0, DirectionEncrypt = 1 };

  /// ICryptor::start(), add_chunk() and finish() for both directions.
  Status startAs(Direction direction, const crypto::CryptoParams& params);
  Status passThrough(const ReadOnlyBuffer& input, Buffer& output);
  Status passLast(Buffer& output);

  evp_cipher_ctx_st* m_context;             ///< Owned.
  const evp_cipher_st* m_cipher = nullptr;  ///< Not owned; null until initialize().
};

}  // namespace trelvo
