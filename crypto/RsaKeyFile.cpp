#include "crypto/RsaKeyFile.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include <openssl/pem.h>

#include "crypto/SecretFile.h"

namespace trelvo {

namespace {

/// The forms of a key, by the name in the PEM file's first line and by OpenSSL's name for what is
/// inside.
struct KeyForm {
  std::string_view pemName;
  const char* structure;
  int selection;
};

constexpr KeyForm kKeyForms[] = {
    {PEM_STRING_PUBLIC, "SubjectPublicKeyInfo", EVP_PKEY_PUBLIC_KEY},
    {PEM_STRING_RSA, "type-specific", EVP_PKEY_KEYPAIR},
    {PEM_STRING_PKCS8INF, "PrivateKeyInfo", EVP_PKEY_KEYPAIR},
    {PEM_STRING_PKCS8, "EncryptedPrivateKeyInfo", EVP_PKEY_KEYPAIR},
};

const KeyForm* formNamed(std::string_view pemName) noexcept {
  const auto* const form =
      std::find_if(std::begin(kKeyForms), std::end(kKeyForms),
                   [pemName](const KeyForm& candidate) { return candidate.pemName == pemName; });
  return form != std::end(kKeyForms) ? form : nullptr;
}

// Without a callback OpenSSL would ask at the terminal.
int givePassPhrase(char* buffer, int size, int /*writing*/, void* text) noexcept {
  if (text == nullptr) {
    return -1;
  }
  const auto* const passphrase = static_cast<const char*>(text);
  const std::size_t length = std::min(std::strlen(passphrase), static_cast<std::size_t>(size));
  std::copy_n(passphrase, length, buffer);
  return static_cast<int>(length);
}

/// One block of a PEM file: its name and, decoded from base 64, its content.
class PemBlock {
 public:
  PemBlock() noexcept = default;
  ~PemBlock() {
    OPENSSL_secure_free(m_name);
    OPENSSL_secure_clear_free(m_der, static_cast<std::size_t>(m_length));
  }
  PemBlock(const PemBlock&) = delete;
  PemBlock& operator=(const PemBlock&) = delete;

  /// Takes the first block of a kind. The reader is the one that wipes what it works with.
  bool read(std::FILE* stream, const char* kind, const char* passphrase) noexcept {
    const Bio source(BIO_new_fp(stream, BIO_NOCLOSE));
    return source != nullptr &&
           PEM_bytes_read_bio_secmem(&m_der, &m_length, &m_name, kind, source.get(), givePassPhrase,
                                     const_cast<char*>(passphrase)) == 1;
  }

  const char* name() const noexcept { return m_name; }
  const unsigned char* der() const noexcept { return m_der; }
  std::size_t length() const noexcept { return static_cast<std::size_t>(m_length); }

 private:
  char* m_name = nullptr;
  unsigned char* m_der = nullptr;
  long m_length = 0;
};

Key decode(const PemBlock& block, const KeyForm& form, const char* passphrase) noexcept {
  EVP_PKEY* key = nullptr;
  const DecoderContext decoder(OSSL_DECODER_CTX_new_for_pkey(&key, "DER", form.structure, "RSA",
                                                             form.selection, nullptr, nullptr));
  if (decoder == nullptr) {
    return nullptr;
  }
  if (passphrase != nullptr) {
    OSSL_DECODER_CTX_set_passphrase(
        decoder.get(), reinterpret_cast<const unsigned char*>(passphrase), std::strlen(passphrase));
  }
  const unsigned char* next = block.der();
  std::size_t left = block.length();
  const bool decoded = OSSL_DECODER_from_data(decoder.get(), &next, &left) == 1;
  Key owned(key);
  return decoded ? std::move(owned) : nullptr;
}

Key readKey(const char* path, const char* kind, const char* passphrase) noexcept {
  const SecretFile file(path);
  PemBlock block;
  if (file.stream() == nullptr || !block.read(file.stream(), kind, passphrase)) {
    return nullptr;
  }
  const KeyForm* const form = formNamed(block.name());
  return form != nullptr ? decode(block, *form, passphrase) : nullptr;
}

}  // namespace

Key readRsaPublicKey(const char* path) noexcept {
  return readKey(path, PEM_STRING_PUBLIC, nullptr);
}

Key readRsaPrivateKey(const char* path, const char* passphrase) noexcept {
  return readKey(path, PEM_STRING_EVP_PKEY, passphrase);
}

}  // namespace trelvo
