#include <trelvo/Secret.h>

#include <cstring>
#include <new>

#include "crypto/Wiped.h"

namespace trelvo {

gom::SharedPointer<Secret> Secret::create(const char* text) {
  if (text == nullptr) {
    return {};
  }
  const std::size_t size = std::strlen(text) + 1;
  WipedBlock copy(size);
  if (!copy) {
    return {};
  }
  std::memcpy(copy.data(), text, size);
  gom::SharedPointer<Secret> secret(new (std::nothrow) Secret());
  if (secret) {
    secret->m_text = reinterpret_cast<char*>(copy.release());
  }
  return secret;
}

Secret::~Secret() {
  if (m_text != nullptr) {
    OPENSSL_cleanse(m_text, std::strlen(m_text));
    delete[] reinterpret_cast<unsigned char*>(m_text);
  }
}

}  // namespace trelvo
