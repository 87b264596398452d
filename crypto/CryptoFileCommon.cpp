#include <trelvo/CryptoFileCommon.h>

#include <algorithm>
#include <cstring>
#include <new>

#include <openssl/crypto.h>

#include <trelvo/CryptoFileLin.h>
#include <trelvo/ICryptographyUtility.h>

namespace trelvo {

namespace {

constexpr unsigned int kInBlock = CryptoFileCommon::kBlockSize - 1;  // the bits of a place in it

}  // namespace

ICryptoFile::~ICryptoFile() = default;

ICryptoFile* ICryptoFile::open(gom::SharedPointer<core::IFile> file,
                               ICryptographyUtility& utility) {
  unsigned char* key = nullptr;
  unsigned char* iv = nullptr;
  return utility.getKeyAndIv(key, iv) ? open(file, key, iv) : nullptr;
}

ICryptoFile* ICryptoFile::open(gom::SharedPointer<core::IFile> file, unsigned char* key,
                               unsigned char* iv) {
  if (!file || key == nullptr || iv == nullptr) {
    return nullptr;
  }
  try {
    return new (std::nothrow) CryptoFileLin(file, key, iv);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

CryptoFileCommon::CryptoFileCommon(const gom::SharedPointer<core::IFile>& file,
                                   const unsigned char* key, const unsigned char* iv)
    : m_file(file), m_baseOffset(file->offset()) {
  std::memcpy(m_key, key, sizeof m_key);
  std::memcpy(m_iv, iv, sizeof m_iv);
}

CryptoFileCommon::~CryptoFileCommon() {
  OPENSSL_cleanse(m_buffer, sizeof m_buffer);
  OPENSSL_cleanse(m_key, sizeof m_key);
  OPENSSL_cleanse(m_iv, sizeof m_iv);
}

bool CryptoFileCommon::good() const { return m_file->good(); }

bool CryptoFileCommon::eof() const { return m_file->eof(); }

bool CryptoFileCommon::canSeek() const { return m_file->canSeek(); }

bool CryptoFileCommon::canRead() const { return m_mode != ModeWriting && m_file->canRead(); }

bool CryptoFileCommon::canWrite() const { return m_mode != ModeReading && m_file->canWrite(); }

bool CryptoFileCommon::getSize(unsigned int& size) {
  flush();
  return m_file->getSize(size);
}

unsigned int CryptoFileCommon::offset() const {
  const unsigned int place = myOffset() + m_pendingOffset;
  switch (m_mode) {
    case ModeReading:
      return place + m_position - m_validBytes;
    case ModeWriting:
      return place + m_position;
    default:
      return place;
  }
}

unsigned int CryptoFileCommon::myOffset() const { return m_file->offset() - m_baseOffset; }

unsigned int CryptoFileCommon::trueOffset(unsigned int logical) const {
  return m_baseOffset + logical;
}

bool CryptoFileCommon::seekFromStart(unsigned int position) {
  if (preSeek() != StatusOk || !canReach(trueOffset(position)) ||
      !m_file->seekFromStart(trueOffset(position & ~kInBlock))) {
    return false;
  }
  m_pendingOffset = position & kInBlock;
  return true;
}

/// Moves to a place to prove that it can be reached; a core::File reaches it together with the
/// start of its block.
bool CryptoFileCommon::canReach(unsigned int place) {
  return forRuns() != nullptr || m_file->seekFromStart(place);
}

bool CryptoFileCommon::seekFromEnd(unsigned int distance) {
  if (preSeek() != StatusOk || !m_file->seekFromEnd(0)) {
    return false;
  }
  const unsigned int size = offset();  // counts a pending place in a block: see the header
  if (distance > size) {
    return false;
  }
  const unsigned int position = size - distance;
  const bool moved = m_file->seekFromStart(trueOffset(position & ~kInBlock));
  m_pendingOffset = position & kInBlock;
  return moved;
}

Status CryptoFileCommon::preSeek() {
  const Status status = m_dirty ? writeBlock() : StatusOk;
  if (status == StatusOk) {
    resetBuffer();
    m_mode = ModeIdle;
    m_endKnown = false;
  }
  return status;
}

bool CryptoFileCommon::flush() {
  if (!m_dirty) {
    return m_file->flush();
  }
  const unsigned int place = m_file->offset();
  if (writeBlock() != StatusOk) {
    return false;
  }
  const bool flushed = m_file->flush();
  return m_file->seekFromStart(place) && flushed;
}

unsigned int CryptoFileCommon::read(unsigned char* target, unsigned int count) {
  unsigned int delivered = 0;
  while (delivered < count) {
    const unsigned int chunk = takeFromBuffer(target + delivered, count - delivered);
    delivered += chunk;
    if (chunk == 0 && !loadMore(target, count, delivered)) {
      break;
    }
  }
  return delivered;
}

unsigned int CryptoFileCommon::takeFromBuffer(unsigned char* target, unsigned int count) {
  const unsigned int left = m_position < m_validBytes ? m_validBytes - m_position : 0;
  const unsigned int chunk = std::min(count, left);
  std::copy_n(m_buffer + m_position, chunk, target);
  m_position += chunk;
  return chunk;
}

/// Goes on behind the block in the buffer. @return whether there may be more to read.
bool CryptoFileCommon::loadMore(unsigned char* target, unsigned int count,
                                unsigned int& delivered) {
  if (m_file->eof() || !readRun(target, count, delivered)) {
    return false;
  }
  if (delivered == count) {
    return true;
  }
  // A file that has nothing to give but is not at its end will not have more in the next round.
  return loadBlock(false) == StatusOk && m_validBytes != 0;
}

unsigned int CryptoFileCommon::write(const unsigned char* source, unsigned int count) {
  if (m_mode == ModeIdle) {
    if (loadBlock(true) != StatusOk) {
      return 0;
    }
    m_mode = ModeWriting;
  }
  unsigned int taken = 0;
  while (taken < count) {
    const unsigned int chunk = putIntoBuffer(source + taken, count - taken);
    taken += chunk;
    if (chunk == 0 && !nextBlock(source, count, taken)) {
      break;
    }
  }
  return taken;
}

unsigned int CryptoFileCommon::putIntoBuffer(const unsigned char* source, unsigned int count) {
  const unsigned int chunk = std::min(count, kBlockSize - m_position);
  if (chunk != 0) {
    std::copy_n(source, chunk, m_buffer + m_position);
    m_position += chunk;
    m_validBytes = std::max(m_validBytes, m_position);
    m_dirty = true;
  }
  return chunk;
}

/// Goes on behind the full block in the buffer. @return whether writing can go on.
bool CryptoFileCommon::nextBlock(const unsigned char* source, unsigned int count,
                                 unsigned int& taken) {
  if (m_dirty && writeBlock() != StatusOk) {
    return false;
  }
  return writeRun(source, count, taken) && loadBlock(true) == StatusOk;
}

void CryptoFileCommon::resetBuffer() {
  m_validBytes = 0;
  m_position = 0;
  m_dirty = false;
  std::fill_n(m_buffer, kBlockSize, static_cast<unsigned char>(0));
}

Status CryptoFileCommon::readBlock() {
  const unsigned int blockIndex = myOffset() / kBlockSize;
  unsigned char stored[kBlockSize];
  const unsigned int size = m_file->read(stored, kBlockSize);
  resetBuffer();
  return size == 0 ? StatusOk : decryptBlock(blockIndex, stored, size);
}

Status CryptoFileCommon::loadBlock(bool seekBack) {
  resetBuffer();
  if (m_file->eof()) {
    return StatusOk;
  }
  const unsigned int place = m_file->offset();
  const bool behindTheEnd = seekBack && m_endKnown && place >= m_end;
  const Status status = behindTheEnd ? StatusOk : readBlock();
  if (status != StatusOk) {
    return status;
  }
  m_position = m_pendingOffset;
  m_pendingOffset = 0;
  if (behindTheEnd) {
    return StatusOk;
  }
  noteEnd(place);
  return !seekBack || m_file->seekFromStart(place) ? StatusOk : StatusFileError;
}

Status CryptoFileCommon::writeBlock() {
  const unsigned int place = m_file->offset();
  unsigned char stored[kBlockSize];
  unsigned int size = 0;
  const Status status = encryptBlock((place - m_baseOffset) / kBlockSize, stored, size);
  if (status != StatusOk) {
    return status;
  }
  if (m_file->write(stored, size) != size) {
    m_endKnown = false;
    return StatusFileError;
  }
  noteWritten(place, size);
  return StatusOk;
}

}  // namespace trelvo
