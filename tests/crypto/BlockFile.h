#pragma once

#include <array>
#include <ostream>
#include <string>

#include <trelvo/CryptoFileCommon.h>
#include <trelvo/CryptoFileLin.h>
#include <trelvo/core/IFile.h>
#include <trelvo/gom/SharedPointer.h>

#include "tests/support/Bytes.h"

namespace trelvo::test {

/// The key and the IV of the golden files: 00 01 .. 0f and f0 f1 .. ff.
std::array<unsigned char, 16> testKey();
std::array<unsigned char, 16> testIv();

/// The plain bytes of the golden block files.
Bytes plainBytes(unsigned int size);

/// AES-128 in counter mode over a file that begins at block 0, by one call of OpenSSL.
Bytes enciphered(const Bytes& bytes);

/// 512 bytes of key stream for one block; the counter of the cipher is set for each.
const Bytes& keyStream(unsigned int blockIndex);

/// What a block file keeps between calls.
struct BlockState {
  unsigned int baseOffset = 0;
  unsigned int mode = 0;
  unsigned int pendingOffset = 0;
  Bytes buffer = Bytes(512);
  unsigned int validBytes = 0;
  unsigned int position = 0;
  bool dirty = false;
  Bytes key;
  Bytes iv;

  bool operator==(const BlockState& other) const;
};
std::ostream& operator<<(std::ostream& out, const BlockState& state);

/// Reads the protected fields of any block file, CryptoFileLin itself among them.
BlockState stateOf(const CryptoFileCommon& file);

/// A block file of a class of its own, so that each block takes the way through the virtual
/// functions.
class DerivedFile : public CryptoFileLin {
 public:
  using CryptoFileLin::CryptoFileLin;
  Status encryptBlock(unsigned int blockIndex, unsigned char* output,
                      unsigned int& outputSize) override;
  Status decryptBlock(unsigned int blockIndex, const unsigned char* input,
                      unsigned int inputSize) override;

  unsigned int encrypted = 0;  ///< Calls.
  unsigned int decrypted = 0;
  Status answer = StatusOk;  ///< What either gives without doing anything, unless StatusOk.
};

/// Over `file`, with testKey() and testIv().
gom::SharedPointer<CryptoFileLin> openPlain(const gom::SharedPointer<core::IFile>& file);
gom::SharedPointer<DerivedFile> openDerived(const gom::SharedPointer<core::IFile>& file);

/// The content of a file, by other means than the library's.
Bytes bytesOfFile(const std::string& path);
void putFile(const std::string& path, const Bytes& content);

/// Up to `count` bytes from `stream`.
Bytes readBytes(IStream& stream, unsigned int count);
/// Whether `stream` took all of `content`.
[[nodiscard]] bool writeBytes(IStream& stream, const Bytes& content);

/// `content` from `first` up to but not including `last`.
Bytes slice(const Bytes& content, std::size_t first, std::size_t last);

}  // namespace trelvo::test
