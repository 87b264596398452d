#include <trelvo/CryptoFileLin.h>

#include "crypto/CounterCipher.h"

namespace trelvo {

CryptoFileLin::CryptoFileLin(const gom::SharedPointer<core::IFile>& file, const unsigned char* key,
                             const unsigned char* iv)
    : CryptoFileCommon(file, key, iv), m_cipher(std::make_unique<crypto::CounterCipher>()) {}

CryptoFileLin::~CryptoFileLin() { CryptoFileLin::flush(); }

Status CryptoFileLin::encryptBlock(unsigned int blockIndex, unsigned char* output,
                                   unsigned int& outputSize) {
  const Status status = encipher(blockIndex, m_buffer, output, m_validBytes);
  if (status == StatusOk) {
    outputSize = m_validBytes;
  }
  return status;
}

Status CryptoFileLin::decryptBlock(unsigned int blockIndex, const unsigned char* input,
                                   unsigned int inputSize) {
  const Status status = encipher(blockIndex, input, m_buffer, inputSize);
  if (status == StatusOk) {
    m_validBytes = inputSize;
  }
  return status;
}

Status CryptoFileLin::encipher(unsigned int blockIndex, const unsigned char* input,
                               unsigned char* output, unsigned int size) {
  setCounter(blockIndex);
  if (input == nullptr || output == nullptr || size == 0 || size > kBlockSize) {
    return StatusInvalidParameter;
  }
  return m_cipher->apply(m_key, m_iv, input, output, size);
}

Status CryptoFileLin::encipherRun(unsigned int blockIndex, const unsigned char* input,
                                  unsigned char* output, unsigned int size) {
  setCounter(blockIndex);
  const Status status = m_cipher->apply(m_key, m_iv, input, output, size);
  if (status == StatusOk) {
    setCounter(blockIndex + (size - 1) / kBlockSize);
  }
  return status;
}

void CryptoFileLin::setCounter(unsigned int blockIndex) {
  const unsigned int counter = (blockIndex << 9) >> 4;
  for (unsigned int i = 0; i < 4; ++i) {
    m_iv[15 - i] = static_cast<unsigned char>(counter >> (8 * i));
  }
}

}  // namespace trelvo
