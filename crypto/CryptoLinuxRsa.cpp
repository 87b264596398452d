#include <trelvo/CryptoLinux.h>

#include <openssl/rsa.h>

#include "crypto/EvpContext.h"
#include "crypto/RsaKeyFile.h"
#include "crypto/Wiped.h"

namespace trelvo {

namespace {

/// One direction of RSA, in OpenSSL's two steps.
struct RsaOperation {
  int (*begin)(EVP_PKEY_CTX*);
  int (*run)(EVP_PKEY_CTX*, unsigned char*, std::size_t*, const unsigned char*, std::size_t);
};

constexpr RsaOperation kEncrypt = {EVP_PKEY_encrypt_init, EVP_PKEY_encrypt};
constexpr RsaOperation kDecrypt = {EVP_PKEY_decrypt_init, EVP_PKEY_decrypt};

int paddingOf(crypto::PaddingType padding) noexcept {
  switch (padding) {
    case crypto::PaddingPkcs1:
      return RSA_PKCS1_PADDING;
    case crypto::PaddingOaep:
      return RSA_PKCS1_OAEP_PADDING;
    default:
      return RSA_NO_PADDING;
  }
}

Status runRsa(const RsaOperation& operation, EVP_PKEY* key, const ReadOnlyBuffer& input,
              crypto::PaddingType padding, Buffer& output) noexcept {
  const KeyContext context(EVP_PKEY_CTX_new(key, nullptr));
  const WipedBlock block(static_cast<std::size_t>(EVP_PKEY_get_size(key)));
  if (context == nullptr || !block) {
    return StatusOutOfMemory;
  }
  std::size_t produced = block.size();
  if (operation.begin(context.get()) != 1 ||
      EVP_PKEY_CTX_set_rsa_padding(context.get(), paddingOf(padding)) != 1 ||
      operation.run(context.get(), block.data(), &produced, input.data(), input.size()) != 1) {
    return StatusFailed;
  }
  return appendOutput(output, block.data(), static_cast<unsigned int>(produced));
}

bool missing(const ReadOnlyBuffer& input) noexcept {
  return input.data() == nullptr || input.size() == 0;
}

}  // namespace

Status CryptoLinux::encryptRsaPublic(const ReadOnlyBuffer& input, const char* keyFile,
                                     Buffer& output, crypto::PaddingType padding) {
  if (missing(input) || keyFile == nullptr) {
    return StatusInvalidParameter;
  }
  const ErrorQueueGuard errors;
  const Key key = readRsaPublicKey(keyFile);
  return key != nullptr ? runRsa(kEncrypt, key.get(), input, padding, output) : StatusFileError;
}

Status CryptoLinux::decryptRsaPrivate(const ReadOnlyBuffer& input, const char* keyFile,
                                      const gom::SharedPointer<Secret>& passphrase, Buffer& output,
                                      crypto::PaddingType padding) {
  if (missing(input) || keyFile == nullptr) {
    return StatusInvalidParameter;
  }
  const ErrorQueueGuard errors;
  const Key key = readRsaPrivateKey(keyFile, passphrase ? passphrase->text() : nullptr);
  return key != nullptr ? runRsa(kDecrypt, key.get(), input, padding, output) : StatusFileError;
}

}  // namespace trelvo
