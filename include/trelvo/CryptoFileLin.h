#pragma once

#include <memory>

#include <trelvo/CryptoFileCommon.h>
#include <trelvo/Export.h>

namespace trelvo {

namespace crypto {
class CounterCipher;
}

/// The encrypted file with OpenSSL's AES-128 in counter mode.
///
/// Block `n` is enciphered with the key and the IV whose last four bytes are replaced by n * 32,
/// big-endian and cut to 28 bits: the number of cipher blocks ahead of it. So the file is one
/// stream of counter mode over an IV that ends in four zero bytes, up to 4 GiB, where the counter
/// starts again from 0.
///
/// One cipher context serves the object for its life.
///
/// Threads: one at a time.
class TRELVO_EXPORT CryptoFileLin : public CryptoFileCommon {
 public:
  /// Stands over `file`, which must not be empty, from its present position on, with copies of 16
  /// bytes at `key` and 16 at `iv`. Throws std::bad_alloc. ICryptoFile::open() does neither.
  CryptoFileLin(const gom::SharedPointer<core::IFile>& file, const unsigned char* key,
                const unsigned char* iv);

  /// Flushes. A failure is not told to anyone: flush first where that matters.
  ~CryptoFileLin() override;

  /// See CryptoFileCommon. @return StatusInvalidParameter when the block is empty, StatusFailed
  ///         when OpenSSL refuses.
  Status encryptBlock(unsigned int blockIndex, unsigned char* output,
                      unsigned int& outputSize) override;
  /// See CryptoFileCommon. @return StatusInvalidParameter for null, 0 bytes or more than 512,
  ///         StatusFailed when OpenSSL refuses.
  Status decryptBlock(unsigned int blockIndex, const unsigned char* input,
                      unsigned int inputSize) override;

 private:
  friend class CryptoFileCommon;

  Status encipher(unsigned int blockIndex, const unsigned char* input, unsigned char* output,
                  unsigned int size);
  Status encipherRun(unsigned int blockIndex, const unsigned char* input, unsigned char* output,
                     unsigned int size);
  void setCounter(unsigned int blockIndex);
  bool hasRoomForRuns();

  std::unique_ptr<crypto::CounterCipher> m_cipher;
  std::unique_ptr<unsigned char[]> m_roomForRuns;  // null until a run is written
};

}  // namespace trelvo
