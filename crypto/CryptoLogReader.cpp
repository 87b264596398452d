#include <new>

#include <zlib.h>

#include <trelvo/Buffer.h>
#include <trelvo/ICryptoFile.h>
#include <trelvo/ICryptoLog.h>
#include <trelvo/ICryptography.h>
#include <trelvo/core/Directory.h>

#include "crypto/SlogHead.h"
#include "crypto/Wiped.h"

namespace trelvo {

namespace {

constexpr unsigned int kInputSize = 0x20000;
constexpr unsigned int kOutputSize = 0x40000;

/// Room for decrypted bytes, wiped at the end. Throws std::bad_alloc.
class Room : public WipedBuffer {
 public:
  explicit Room(unsigned int size) { fill(0, size); }
};

/// Decompresses into a file.
class Inflater {
 public:
  explicit Inflater(core::IFile& target)
      : m_target(target),
        m_output(kOutputSize),
        m_stream(),
        m_started(inflateInit_(&m_stream, ZLIB_VERSION, static_cast<int>(sizeof m_stream)) ==
                  Z_OK) {}
  ~Inflater() {
    if (m_started) {
      inflateEnd(&m_stream);
    }
  }
  Inflater(const Inflater&) = delete;
  Inflater& operator=(const Inflater&) = delete;

  bool started() const noexcept { return m_started; }

  /// Takes `size` more bytes. What comes out ahead of damage in them is written all the same.
  Status take(unsigned char* input, unsigned int size) {
    m_stream.next_in = input;
    m_stream.avail_in = size;
    do {
      m_stream.next_out = m_output.data();
      m_stream.avail_out = kOutputSize;
      const int result = inflate(&m_stream, Z_NO_FLUSH);
      const unsigned int produced = kOutputSize - m_stream.avail_out;
      if (m_target.write(m_output.data(), produced) != produced) {
        return StatusFileError;
      }
      if (isDamage(result)) {
        return StatusFailed;
      }
    } while (m_stream.avail_out == 0);
    return StatusOk;
  }

 private:
  static bool isDamage(int result) {
    return result == Z_NEED_DICT || result == Z_STREAM_ERROR || result == Z_DATA_ERROR ||
           result == Z_MEM_ERROR;
  }

  core::IFile& m_target;
  Room m_output;
  z_stream m_stream;
  bool m_started;
};

/// Fills `head` with the RSA ciphertext, and leaves `file` behind it.
Status readHead(core::IFile& file, Buffer& head) {
  unsigned short size = 0;
  if (!file.readUint16(size)) {
    return StatusFileError;
  }
  head.fill(0, size);
  return file.read(head.data(), size) == size ? StatusOk : StatusFileError;
}

/// Counts the bytes of `file` that lie ahead, 0 when that cannot be told.
/// @return false when the file does not stand where it stood any more.
bool countAhead(core::IFile& file, unsigned int& count) {
  const unsigned int place = file.offset();
  unsigned int size = 0;
  count = file.getSize(size) && size > place ? size - place : 0;
  return file.offset() == place;
}

/// Decompresses all of `body`. The end may come anywhere, since the writer may have died, but not
/// ahead of the `size` bytes that are there: a block that does not decipher looks like the end.
Status inflateAll(ICryptoFile& body, unsigned int size, Inflater& inflater) {
  Room input(kInputSize);
  unsigned long long taken = 0;
  while (true) {
    const unsigned int got = body.read(input.data(), kInputSize);
    taken += got;
    if (got < kInputSize && (!body.eof() || taken < size)) {
      return StatusFileError;
    }
    const Status status = got != 0 ? inflater.take(input.data(), got) : StatusOk;
    if (status != StatusOk || got == 0) {
      return status;
    }
  }
}

Status writeText(ICryptoFile& body, unsigned int size, const char* outputPath) {
  const gom::SharedPointer<core::IFile> output = core::Directory::createFile(outputPath, 0);
  if (!output) {
    return StatusFileError;
  }
  Inflater inflater(*output);
  if (!inflater.started()) {
    return StatusInternal;
  }
  const Status status = inflateAll(body, size, inflater);
  if (status != StatusOk && status != StatusFailed) {
    return status;
  }
  return output->flush() || status != StatusOk ? status : StatusFileError;
}

Status decryptFile(const char* inputPath, const char* outputPath, const char* privateKeyPath,
                   const gom::SharedPointer<Secret>& passphrase) {
  const gom::SharedPointer<core::IFile> file = core::Directory::openFile(inputPath, 0, false);
  Buffer head;
  if (!file || readHead(*file, head) != StatusOk) {
    return StatusFileError;
  }
  const gom::SharedPointer<ICryptography> cryptography = ICryptography::open();
  if (!cryptography) {
    return StatusInternal;
  }
  constexpr unsigned int kNeeded = slog::kKeySize + slog::kIvSize;
  WipedBuffer key(kNeeded);
  if (cryptography->decryptRsaPrivate(head, privateKeyPath, passphrase, key, crypto::PaddingOaep) !=
          StatusOk ||
      key.size() < kNeeded) {
    return StatusKeyFailure;
  }
  unsigned int size = 0;
  if (!countAhead(*file, size)) {
    return StatusFileError;
  }
  const gom::SharedPointer<ICryptoFile> body =
      ICryptoFile::open(file, key.data(), key.data() + slog::kKeySize);
  return body ? writeText(*body, size, outputPath) : StatusFileError;
}

}  // namespace

Status ICryptoLog::decrypt(const char* inputPath, const char* outputPath,
                           const char* privateKeyPath,
                           const gom::SharedPointer<Secret>& passphrase) {
  if (inputPath == nullptr || outputPath == nullptr) {
    return StatusFileError;
  }
  try {
    return decryptFile(inputPath, outputPath, privateKeyPath, passphrase);
  } catch (const std::bad_alloc&) {
    return StatusOutOfMemory;
  }
}

}  // namespace trelvo
