// Downloads: what they are set up with, and how their bytes go.

#include <curl/curl.h>
#include <libdeflate.h>

#include <algorithm>
#include <cstring>
#include <new>

#include <trelvo/ICryptoFile.h>
#include <trelvo/ICryptography.h>
#include <trelvo/ICryptographyUtility.h>
#include <trelvo/IStream.h>
#include <trelvo/core/Directory.h>
#include <trelvo/core/IFile.h>
#include <trelvo/crypto/CryptoParams.h>
#include <trelvo/crypto/Cryptor.h>
#include <trelvo/crypto/ICryptor.h>
#include <trelvo/network/HTTPRequest.h>

#include "crypto/Wiped.h"

namespace trelvo::network {

namespace {

/// A cryptor that deciphers AES with 128 bits in CBC mode, or an empty handle.
gom::SharedPointer<crypto::ICryptor> makeDecryptor() {
  const gom::SharedPointer<ICryptography> cryptography = ICryptography::open();
  if (!cryptography) {
    return {};
  }
  crypto::Cryptor kind;
  kind.algorithm = 1;
  kind.keyBits = 128;
  kind.mode = 1;
  kind.reserved0 = 0;
  kind.reserved1 = 1;
  return cryptography->create_decryptor(kind);
}

void copy(Buffer& target, const unsigned char* bytes, unsigned int length) {
  target.reset();
  if (bytes != nullptr && length != 0) {
    target.append(bytes, length);
  }
}

unsigned int reflected(unsigned int value) {
  unsigned int result = 0;
  for (int bit = 0; bit < 32; ++bit) {
    result = result << 1 | (value >> bit & 1);
  }
  return result;
}

// libdeflate's routine is twenty times as fast as the byte-wise table of boost's; both end in the
// same register, which boost takes unreflected and without the final complement.
void process(boost::crc_32_type& crc, const unsigned char* data, unsigned int length) {
  crc.reset(reflected(~libdeflate_crc32(crc.checksum(), data, length)));
}

}  // namespace

/// The local side of a download while it runs. However the download ends, no block gets there any
/// more.
class HTTPRequest::Output {
 public:
  explicit Output(HTTPRequest& request) : m_request(request) {}
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;
  ~Output() { m_request.m_outStream = nullptr; }

  Status open(const std::string& localFile) {
    m_file = core::Directory::createFile(localFile, 0);
    if (!m_file) {
      return StatusFailed;
    }
    switch (m_request.m_encryptionCipher) {
      case CipherNone:
        m_request.m_outStream = m_file.get();
        return StatusOk;
      case CipherAes:
        return encipher();
      default:
        return StatusInternal;
    }
  }

 private:
  Status encipher() {
    if (!m_request.m_cryptographyUtility) {
      return StatusWrongState;
    }
    m_blocks = ICryptoFile::open(m_file, *m_request.m_cryptographyUtility);
    m_request.m_outStream = m_blocks.get();
    return m_blocks ? StatusOk : StatusFailed;
  }

  HTTPRequest& m_request;
  gom::SharedPointer<core::IFile> m_file;
  gom::SharedPointer<ICryptoFile> m_blocks;
};

Status HTTPRequest::setDataDecryption(CipherType type, const unsigned char* key,
                                      unsigned int keyLength, const unsigned char* iv,
                                      unsigned int ivLength) try {
  if (type != m_decryptionCipher) {
    m_decryptionCipher = type;
    m_decryptor.clear();
    if (type == CipherAes) {
      if (keyLength != ivLength) {
        return StatusWrongState;
      }
      m_decryptor = makeDecryptor();
      if (!m_decryptor) {
        return StatusFailed;
      }
    }
  }
  if (type != CipherNone) {
    copy(m_decryptionKey, key, keyLength);
    copy(m_decryptionIv, iv, ivLength);
  }
  return StatusOk;
} catch (const std::bad_alloc&) {
  return StatusOutOfMemory;
}

Status HTTPRequest::setDataEncryption(CipherType type, const unsigned char* key,
                                      unsigned int keyLength, const unsigned char* iv,
                                      unsigned int ivLength) try {
  const auto* const name = reinterpret_cast<const char*>(key);
  if (type != m_encryptionCipher) {
    m_encryptionCipher = type;
    m_cryptographyUtility.clear();
    if (type == CipherAes) {
      if (iv != nullptr) {
        return StatusNotSupported;
      }
      Status status = StatusFailed;
      bool generated = false;
      m_cryptographyUtility = ICryptographyUtility::open(name, status, generated);
      if (status != StatusOk) {
        return status;
      }
    }
  }
  if (type != CipherNone) {
    // A name ends at its NUL, whatever `keyLength` says.
    const bool isName = type == CipherAes && name != nullptr;
    copy(m_encryptionKey, key,
         isName ? static_cast<unsigned int>(strnlen(name, keyLength)) : keyLength);
    copy(m_encryptionIv, iv, ivLength);
  }
  return StatusOk;
} catch (const std::bad_alloc&) {
  return StatusOutOfMemory;
}

Status HTTPRequest::setDataChecksum(unsigned int crc, unsigned int start, unsigned int end) {
  m_expectedCrc = crc;
  m_crcStart = start;
  m_crcEnd = end;
  return StatusOk;
}

Status HTTPRequest::download(const std::string& path, const std::string& localFile,
                             unsigned long long& bytes) try {
  m_bytesReceived = 0;
  m_contentLengthKnown = false;
  commonContextSetup(path);
  Output output(*this);
  Status status = output.open(localFile);
  if (status == StatusOk) {
    status = startDecryption();
  }
  if (status != StatusOk) {
    return status;
  }
  startChecksum();
  return transfer(bytes);
} catch (const std::bad_alloc&) {
  return StatusOutOfMemory;
}

Status HTTPRequest::startDecryption() {
  if (m_decryptionCipher != CipherAes) {
    return StatusOk;
  }
  if (!m_decryptor) {
    return StatusWrongState;
  }
  crypto::CryptoParams params;
  params.key.attach(m_decryptionKey.data(), m_decryptionKey.size());
  params.iv.attach(m_decryptionIv.data(), m_decryptionIv.size());
  return m_decryptor->start(params);
}

void HTTPRequest::startChecksum() {
  if (m_expectedCrc == 0) {
    delete m_crc;
    m_crc = nullptr;
    return;
  }
  if (m_crc == nullptr) {
    m_crc = new boost::crc_32_type;
  }
  m_crcPosition = 0;
  m_crc->reset();
}

Status HTTPRequest::transfer(unsigned long long& bytes) {
  Status status = startMonitorUsedConnection();
  if (status == StatusOk) {
    status = doDownload();
  }
  if (m_decryptor) {
    status = finishDecryption();
  }
  if (status == StatusOk) {
    status = checkBody(bytes);
  }
  const Status stopped = stopMonitorUsedConnection();
  return stopped != StatusOk ? stopped : status;
}

Status HTTPRequest::doDownload() {
  const int result = perform();
  int code = 0;
  if ((result != CURLE_OK && result != CURLE_PARTIAL_FILE) || getStatusCode(code) != StatusOk) {
    return lastErrorToStatus();
  }
  if (result == CURLE_PARTIAL_FILE) {
    // A body that ended early leaves it to checkBody() to tell, where that can see it.
    return code == 200 && lengthDiffers() ? StatusOk : StatusFailed;
  }
  switch (code) {
    case 200:
      return StatusOk;
    case 404:
      return StatusNotFound;
    default:
      return StatusFailed;
  }
}

Status HTTPRequest::finishDecryption() {
  WipedBuffer last;
  const Status status = m_decryptor->finish(last);
  store(last.data(), last.size());
  return status;
}

bool HTTPRequest::lengthDiffers() const {
  return m_contentLengthKnown && m_contentLength != m_bytesReceived;
}

Status HTTPRequest::checkBody(unsigned long long& bytes) const {
  bytes = m_bytesReceived;
  const bool crcDiffers = m_crc != nullptr && m_crc->checksum() != m_expectedCrc;
  return crcDiffers || lengthDiffers() ? StatusChecksumMismatch : StatusOk;
}

// Nothing here throws: the decryptor gives a status.
bool HTTPRequest::takeBlock(const unsigned char* data, unsigned int length) {
  if (!m_decryptor) {
    store(data, length);
    return true;
  }
  WipedBuffer plain;
  if (m_decryptor->add_chunk(ReadOnlyBuffer(data, length), plain) != StatusOk) {
    return false;
  }
  store(plain.data(), plain.size());
  return true;
}

void HTTPRequest::store(const unsigned char* data, unsigned int length) {
  // The cipher may hold a partial block back.
  if (length == 0) {
    return;
  }
  addBufferToCrc32CheckSum(data, length, m_crc, m_crcStart, m_crcEnd, &m_crcPosition);
  m_outStream->write(data, length);
  m_outStream->flush();
}

void HTTPRequest::addBufferToCrc32CheckSum(const unsigned char* data, unsigned int length,
                                           boost::crc_32_type* crc, unsigned int start,
                                           unsigned int end, unsigned int* position) {
  using Wide = unsigned long long;
  const Wide reached = Wide{*position} + length;
  if (crc == nullptr || reached < start || (*position != 0 && *position >= end)) {
    return;
  }
  const Wide head = *position < start ? start : 0;
  const Wide tail = reached > end ? reached - end : 0;
  if (head + tail >= length) {
    return;
  }
  const auto counted = static_cast<unsigned int>(length - head - tail);
  process(*crc, data + head, counted);
  *position += counted;
}

}  // namespace trelvo::network
