#pragma once

#include <trelvo/CryptoLinuxStatic.h>
#include <trelvo/Export.h>
#include <trelvo/ICryptography.h>

struct evp_cipher_st;  // OpenSSL's EVP_CIPHER

namespace trelvo {

/// Cryptography by OpenSSL 3. Objects come and go freely; each counts as a user of gCryptoStatic.
///
/// Use ICryptography::open(), which tests init().
class TRELVO_EXPORT CryptoLinux : public ICryptography {
 public:
  CryptoLinux() noexcept;
  ~CryptoLinux() override;
  CryptoLinux(const CryptoLinux&) = delete;
  CryptoLinux& operator=(const CryptoLinux&) = delete;

  /// Whether the process-wide set-up stands and this object may be used.
  bool init() const noexcept;

  Status md5Hash(const unsigned char* data, unsigned long length, unsigned char* digest) override;
  Status decryptAes(const unsigned char* data, unsigned long length, const unsigned char* key,
                    unsigned long keyLength, const unsigned char* iv, unsigned long ivLength,
                    unsigned char*& result, unsigned long& resultLength) override;
  Status encryptAes(const unsigned char* data, unsigned long length, const unsigned char* key,
                    unsigned long keyLength, const unsigned char* iv, unsigned long ivLength,
                    unsigned char*& result, unsigned long& resultLength) override;
  Status decryptRsaPrivate(const ReadOnlyBuffer& input, const char* keyFile,
                           const gom::SharedPointer<Secret>& passphrase, Buffer& output,
                           crypto::PaddingType padding) override;
  Status encryptRsaPublic(const ReadOnlyBuffer& input, const char* keyFile, Buffer& output,
                          crypto::PaddingType padding) override;
  [[nodiscard]] crypto::ICryptor* create_decryptor(const crypto::Cryptor& cryptor) override;
  [[nodiscard]] crypto::ICryptor* create_encryptor(const crypto::Cryptor& cryptor) override;
  bool freeMemory(unsigned char* memory) override;
  Status makeRandomBytes(unsigned int count, Buffer& output) override;

  /// Encrypts with any of OpenSSL's symmetric ciphers that takes a key and an IV, such as
  /// EVP_aes_128_ctr(), in one go. For what goes in and out see ICryptography::encryptAes(); a null
  /// or unusable `cipher` gives StatusOutOfMemory. May be called without an object.
  static Status encrypt(const evp_cipher_st* cipher, const unsigned char* data,
                        unsigned long length, const unsigned char* key, unsigned long keyLength,
                        const unsigned char* iv, unsigned long ivLength, unsigned char*& result,
                        unsigned long& resultLength);

  /// The reverse, and in everything else the same: key and IV that are too short are filled up with
  /// zero bytes here too. A wrong padding gives StatusFailed.
  static Status decrypt(const evp_cipher_st* cipher, const unsigned char* data,
                        unsigned long length, const unsigned char* key, unsigned long keyLength,
                        const unsigned char* iv, unsigned long ivLength, unsigned char*& result,
                        unsigned long& resultLength);

  /// What freeMemory() does, without an object.
  static bool freeMemoryStatic(unsigned char* memory) noexcept;

 private:
  CryptoLinuxStatic* m_static;
};

}  // namespace trelvo
