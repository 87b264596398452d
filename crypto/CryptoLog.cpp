#include <trelvo/CryptoLog.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>
#include <new>

#include <trelvo/Buffer.h>

#include "core/PrivateFile.h"
#include "crypto/SlogHead.h"
#include "crypto/Wiped.h"

namespace trelvo {

namespace {

constexpr unsigned int kPumpSize = 16384;

/// Brings the head to the system at once, so that a log is readable from its first moment.
bool writeHead(core::IFile& file, const Buffer& head) {
  return file.writeUint16(static_cast<unsigned short>(head.size())) &&
         file.write(head.ReadOnlyBuffer::data(), head.size()) == head.size() && file.flush();
}

ICryptoLog* start(const char* logPath, const char* publicKeyPath) {
  const gom::SharedPointer<ICryptography> cryptography = ICryptography::open();
  WipedBuffer random(slog::kKeySize + slog::kIvSize);
  Buffer head;
  if (!cryptography ||
      cryptography->makeRandomBytes(slog::kKeySize + slog::kIvSize, random) != StatusOk ||
      cryptography->encryptRsaPublic(random, publicKeyPath, head, crypto::PaddingOaep) !=
          StatusOk) {
    return nullptr;
  }
  const gom::SharedPointer<core::IFile> file = core::createPrivateFile(logPath, 0);
  if (!file || !writeHead(*file, head)) {
    return nullptr;
  }
  const gom::SharedPointer<ICryptoFile> cryptoFile =
      ICryptoFile::open(file, random.data(), random.data() + slog::kKeySize);
  if (!cryptoFile) {
    return nullptr;
  }
  std::unique_ptr<CryptoLog> log(new (std::nothrow) CryptoLog(file, cryptography, cryptoFile));
  return log != nullptr && log->started() ? log.release() : nullptr;
}

}  // namespace

ICryptoLog::~ICryptoLog() = default;

ICryptoLog* ICryptoLog::create(const char* logPath, const char* publicKeyPath) {
  if (logPath == nullptr) {
    return nullptr;
  }
  try {
    return start(logPath, publicKeyPath);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

CryptoLog::CryptoLog(const gom::SharedPointer<core::IFile>& file,
                     const gom::SharedPointer<ICryptography>& cryptography,
                     const gom::SharedPointer<ICryptoFile>& cryptoFile)
    : m_file(file),
      m_cryptography(cryptography),
      m_cryptoFile(cryptoFile),
      m_stream(),
      m_started(deflateInit_(&m_stream, Z_DEFAULT_COMPRESSION, ZLIB_VERSION,
                             static_cast<int>(sizeof m_stream)) == Z_OK) {}

CryptoLog::~CryptoLog() {
  if (m_started) {
    write(Z_FINISH);
    deflateEnd(&m_stream);
  }
  m_cryptoFile.clear();  // flushes, so it goes while its file is there
  m_cryptography.clear();
  m_file.clear();
}

void CryptoLog::puts(const char* text) {
  std::size_t left = text != nullptr ? std::strlen(text) : 0;
  while (left != 0) {
    // zlib only reads what its record declares as changeable.
    m_stream.next_in = const_cast<Bytef*>(reinterpret_cast<const Bytef*>(text));
    m_stream.avail_in =
        static_cast<uInt>(std::min<std::size_t>(left, std::numeric_limits<uInt>::max()));
    text += m_stream.avail_in;
    left -= m_stream.avail_in;
    write(Z_NO_FLUSH);
  }
}

bool CryptoLog::flush() {
  m_stream.next_in = nullptr;
  m_stream.avail_in = 0;
  write(Z_SYNC_FLUSH);
  return m_cryptoFile->flush();
}

/// Pumps what there is through zlib into the encrypted file.
void CryptoLog::write(int flushMode) {
  unsigned char output[kPumpSize];  // not zeroed: that would cost a fiftieth of the time
  int result = m_started ? Z_OK : Z_STREAM_ERROR;
  while (result == Z_OK) {
    m_stream.next_out = output;
    m_stream.avail_out = kPumpSize;
    result = deflate(&m_stream, flushMode);
    const unsigned int produced = kPumpSize - m_stream.avail_out;
    if (produced == 0 || m_cryptoFile->write(output, produced) != produced ||
        m_stream.avail_out != 0) {
      return;
    }
  }
}

}  // namespace trelvo
