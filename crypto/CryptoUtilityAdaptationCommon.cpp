#include <trelvo/CryptoUtilityAdaptationCommon.h>

#include <cstdlib>
#include <cstring>
#include <ctime>

#include "crypto/FixedKeys.h"
#include "crypto/Wiped.h"

namespace trelvo {

CryptoUtilityAdaptationCommon::~CryptoUtilityAdaptationCommon() {
  delete m_cryptography;
  OPENSSL_cleanse(m_key, sizeof m_key);
  OPENSSL_cleanse(m_iv, sizeof m_iv);
}

Status CryptoUtilityAdaptationCommon::init(const char* name, bool& generated) {
  if (name == nullptr || *name == '\0') {
    return StatusInvalidParameter;
  }
  m_name = name;
  delete m_cryptography;
  m_cryptography = ICryptography::open();
  if (m_cryptography == nullptr) {
    return StatusFailed;
  }
  if (baseInit(name)) {
    generated = false;
    return StatusOk;
  }
  return makeKeyAndIv(generated) ? StatusOk : StatusKeyFailure;
}

bool CryptoUtilityAdaptationCommon::baseInit(const char* name) {
  for (const FixedKeySet& fixed : kFixedKeySets) {
    if (std::strcmp(name, fixed.name) == 0) {
      std::memcpy(m_key, fixed.key, sizeof m_key);
      std::memcpy(m_iv, fixed.iv, sizeof m_iv);
      return true;
    }
  }
  return false;
}

bool CryptoUtilityAdaptationCommon::makeKeyAndIv(bool& generated) {
  WipedArray<sizeof m_key + sizeof m_iv> both;
  if (!generateKey(static_cast<unsigned int>(both.size()), both.data(), generated)) {
    return false;
  }
  std::memcpy(m_key, both.data(), sizeof m_key);
  std::memcpy(m_iv, both.data() + sizeof m_key, sizeof m_iv);
  return true;
}

bool CryptoUtilityAdaptationCommon::generateKey(unsigned int length, unsigned char* output,
                                                bool& generated) {
  constexpr int kPrintable = 94;
  std::srand(static_cast<unsigned int>(std::time(nullptr)));
  for (unsigned int i = 0; i < length; ++i) {
    output[i] = static_cast<unsigned char>(std::rand() % kPrintable + ' ');
  }
  generated = true;
  return true;
}

bool CryptoUtilityAdaptationCommon::getKeyAndIv(unsigned char*& key, unsigned char*& iv) {
  key = m_key;
  iv = m_iv;
  return true;
}

Status CryptoUtilityAdaptationCommon::encrypt(const unsigned char* data, unsigned long length,
                                              unsigned char*& result, unsigned long& resultLength) {
  unsigned char* key = nullptr;
  unsigned char* iv = nullptr;
  if (m_cryptography == nullptr || !getKeyAndIv(key, iv)) {
    return StatusWrongState;
  }
  return m_cryptography->encryptAes(data, length, key, sizeof m_key, iv, sizeof m_iv, result,
                                    resultLength);
}

Status CryptoUtilityAdaptationCommon::decrypt(const unsigned char* data, unsigned long length,
                                              unsigned char*& result, unsigned long& resultLength) {
  unsigned char* key = nullptr;
  unsigned char* iv = nullptr;
  if (m_cryptography == nullptr || !getKeyAndIv(key, iv)) {
    return StatusWrongState;
  }
  return m_cryptography->decryptAes(data, length, key, sizeof m_key, iv, sizeof m_iv, result,
                                    resultLength);
}

bool CryptoUtilityAdaptationCommon::freeMemory(unsigned char* memory) {
  return m_cryptography != nullptr && m_cryptography->freeMemory(memory);
}

}  // namespace trelvo
