#pragma once

#include <trelvo/Buffer.h>
#include <trelvo/Export.h>
#include <trelvo/ReadOnlyBuffer.h>
#include <trelvo/Secret.h>
#include <trelvo/Status.h>
#include <trelvo/crypto/Cryptor.h>
#include <trelvo/crypto/ICryptor.h>
#include <trelvo/crypto/PaddingType.h>
#include <trelvo/gom/ReferenceCountable.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo {

/// The library's one door to OpenSSL: AES-128, RSA with keys in PEM files, MD5, random bytes.
///
/// None of it authenticates: whoever can change encrypted bytes changes the plain text, and MD5
/// proves nothing against intent. What OpenSSL has to say about a failure is dropped; its error
/// queue is as it was before the call.
///
/// Threads: an object serves one at a time; several threads may each use their own.
class TRELVO_EXPORT ICryptography : public gom::ReferenceCountable {
 public:
  ~ICryptography() override;

  /// Makes a CryptoLinux.
  /// @return a plain pointer with reference count 0, for the caller to adopt into a
  ///         gom::SharedPointer; null when it cannot be set up.
  [[nodiscard]] static ICryptography* open();

  /// The MD5 digest of `length` bytes, 16 bytes into `digest`.
  /// @return StatusOk; StatusInvalidParameter for a null pointer or a `length` of 0: the empty
  ///         string has no digest here; StatusFailed when OpenSSL refuses, as in FIPS mode.
  virtual Status md5Hash(const unsigned char* data, unsigned long length,
                         unsigned char* digest) = 0;

  /// Decrypts AES-128-CBC with PKCS#7 padding.
  ///
  /// Key and IV must be 16 bytes each, unlike those of encryptAes().
  /// @return StatusOk with `result` the plain text, to be given back by freeMemory(), null where it
  ///         is empty; StatusInvalidParameter when something is missing or of a wrong size;
  ///         StatusOutOfMemory, also when `length` is more than a Buffer holds; StatusFailed for
  ///         damaged bytes or a wrong key, where the padding shows it. `result` and `resultLength`
  ///         are set only on StatusOk.
  virtual Status decryptAes(const unsigned char* data, unsigned long length,
                            const unsigned char* key, unsigned long keyLength,
                            const unsigned char* iv, unsigned long ivLength, unsigned char*& result,
                            unsigned long& resultLength) = 0;

  /// Encrypts with AES-128-CBC and PKCS#7 padding: 1 to 16 bytes more come out than go in.
  ///
  /// The sizes of key and IV are not tested. The first 16 bytes count; a shorter one is filled up
  /// with zero bytes.
  /// @return StatusOk with `result` the encrypted bytes, to be given back by freeMemory();
  ///         StatusInvalidParameter, with nothing changed, for a null pointer or a length of 0
  ///         among data, key and IV; StatusOutOfMemory; StatusFailed when OpenSSL refuses. On the
  ///         latter two `result` is null.
  virtual Status encryptAes(const unsigned char* data, unsigned long length,
                            const unsigned char* key, unsigned long keyLength,
                            const unsigned char* iv, unsigned long ivLength, unsigned char*& result,
                            unsigned long& resultLength) = 0;

  /// Decrypts one RSA block, all of `input`, and appends the plain text to `output`.
  ///
  /// `keyFile` is a PEM file with an "RSA PRIVATE KEY" (PKCS#1) or a "PRIVATE KEY" (PKCS#8), plain
  /// or protected by `passphrase`. Without a pass phrase a protected key is an error: nobody is
  /// asked at the terminal.
  /// @return StatusOk; StatusInvalidParameter when `input` is empty or `keyFile` null;
  ///         StatusFileError when the file cannot be opened or has no such key, or the pass phrase
  ///         is missing or wrong; StatusOutOfMemory; StatusFailed when the block does not decrypt.
  virtual Status decryptRsaPrivate(const ReadOnlyBuffer& input, const char* keyFile,
                                   const gom::SharedPointer<Secret>& passphrase, Buffer& output,
                                   crypto::PaddingType padding) = 0;

  /// Encrypts all of `input` as one RSA block, as long as the modulus, and appends it to `output`.
  ///
  /// `keyFile` is a PEM file with an RSA "PUBLIC KEY".
  /// @return StatusOk; StatusInvalidParameter when `input` is empty or `keyFile` null;
  ///         StatusFileError when the file cannot be opened or has no such key; StatusOutOfMemory;
  ///         StatusFailed when `input` does not fit modulus and padding: see crypto::PaddingType.
  virtual Status encryptRsaPublic(const ReadOnlyBuffer& input, const char* keyFile, Buffer& output,
                                  crypto::PaddingType padding) = 0;

  /// A cryptor that decrypts; see crypto::Cryptor for what is accepted.
  /// @return a plain pointer with reference count 0, for the caller to adopt; null for anything
  ///         else, and in this base class. Throws std::bad_alloc.
  [[nodiscard]] virtual crypto::ICryptor* create_decryptor(const crypto::Cryptor& cryptor);

  /// The same for one that encrypts.
  [[nodiscard]] virtual crypto::ICryptor* create_encryptor(const crypto::Cryptor& cryptor);

  /// Takes back what encryptAes() or decryptAes() gave; null is fine. The bytes are not wiped, as
  /// their number is not known here: overwrite secrets first.
  /// @return always true.
  virtual bool freeMemory(unsigned char* memory) = 0;

  /// Appends `count` random bytes, fit for keys, to `output`.
  /// @return StatusOk; StatusFailed when OpenSSL has none, and for more than 2^31 - 1; this base
  ///         class gives StatusNotSupported. Throws std::bad_alloc.
  virtual Status makeRandomBytes(unsigned int count, Buffer& output);
};

}  // namespace trelvo
