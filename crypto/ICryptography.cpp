#include <trelvo/ICryptography.h>

#include <memory>
#include <new>

#include <trelvo/CryptoLinux.h>

namespace trelvo {

ICryptography* ICryptography::open() {
  std::unique_ptr<CryptoLinux> cryptography(new (std::nothrow) CryptoLinux());
  return cryptography != nullptr && cryptography->init() ? cryptography.release() : nullptr;
}

crypto::ICryptor* ICryptography::create_decryptor(const crypto::Cryptor& /*cryptor*/) {
  return nullptr;
}

crypto::ICryptor* ICryptography::create_encryptor(const crypto::Cryptor& /*cryptor*/) {
  return nullptr;
}

Status ICryptography::makeRandomBytes(unsigned int /*count*/, Buffer& /*output*/) {
  return StatusNotSupported;
}

}  // namespace trelvo
