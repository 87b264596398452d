#include <trelvo/CryptoFileCommon.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

#include <openssl/crypto.h>

#include <trelvo/CryptoFileLin.h>
#include <trelvo/ICryptographyUtility.h>

namespace trelvo {

namespace {

constexpr unsigned int kInBlock = CryptoFileCommon::kBlockSize - 1;  // the bits of a place in it

/// What a file answers that cannot tell where it stands.
constexpr unsigned int kNowhere = ~0U;

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
    std::unique_ptr<CryptoFileLin> crypto(new (std::nothrow) CryptoFileLin(file, key, iv));
    return crypto != nullptr && crypto->isPlace(0) ? crypto.release() : nullptr;
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

/// Whether `offset`, of the file, is a place that the base can be taken from.
bool CryptoFileCommon::isPlace(unsigned int offset) const noexcept {
  return offset != kNowhere && m_baseOffset != kNowhere;
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
  if (preSeek() != StatusOk || !isPlace(0) || !canReach(trueOffset(position)) ||
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
  const unsigned int end = m_file->offset();
  if (!isPlace(end)) {
    return false;
  }
  // A pending place in a block counts: see the header.
  const unsigned int size = end - m_baseOffset + m_pendingOffset;
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
  if (!returnToBlock()) {
    return false;
  }
  const unsigned int place = m_file->offset();
  if (!isPlace(place) || writeBlock() != StatusOk) {
    return false;
  }
  const bool flushed = m_file->flush();
  const bool returned = m_file->seekFromStart(place);
  m_strayedFrom = returned ? kNowhere : place;
  return returned && flushed;
}

/// Goes back to where the block in the buffer belongs, when a failure has left the file elsewhere.
bool CryptoFileCommon::returnToBlock() {
  if (m_strayedFrom != kNowhere && !m_file->seekFromStart(m_strayedFrom)) {
    return false;
  }
  m_strayedFrom = kNowhere;
  return true;
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

/// Whether the file stands inside of a block since reading it failed. What follows there would be
/// deciphered as the start of one.
bool CryptoFileCommon::failedInBlock() const {
  return !m_file->good() && myOffset() % kBlockSize != 0;
}

/// Goes on behind the block in the buffer. @return whether there may be more to read.
bool CryptoFileCommon::loadMore(unsigned char* target, unsigned int count,
                                unsigned int& delivered) {
  if (m_file->eof() || failedInBlock() || !readRun(target, count, delivered)) {
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
  m_strayedFrom = kNowhere;
  std::fill_n(m_buffer, kBlockSize, static_cast<unsigned char>(0));
}

Status CryptoFileCommon::readBlock() {
  const unsigned int place = m_file->offset();
  if (!isPlace(place)) {
    return StatusFileError;
  }
  unsigned char stored[kBlockSize];
  const unsigned int size = m_file->read(stored, kBlockSize);
  resetBuffer();
  const unsigned int blockIndex = (place - m_baseOffset) / kBlockSize;
  return size == 0 ? StatusOk : decryptBlock(blockIndex, stored, size);
}

Status CryptoFileCommon::loadBlock(bool seekBack) {
  resetBuffer();
  if (m_file->eof()) {
    return StatusOk;
  }
  const unsigned int place = m_file->offset();
  if (!isPlace(place)) {
    return StatusFileError;
  }
  const bool behindTheEnd = seekBack && m_endKnown && place >= m_end;
  const Status status = behindTheEnd ? StatusOk : readBlock();
  if (status != StatusOk) {
    return status;
  }
  if (seekBack && !behindTheEnd && lacksBytes()) {
    static_cast<void>(m_file->seekFromStart(place));
    return StatusFileError;
  }
  m_position = m_pendingOffset;
  m_pendingOffset = 0;
  if (behindTheEnd) {
    return StatusOk;
  }
  noteEnd(place);
  if (seekBack && !m_file->seekFromStart(place)) {
    m_strayedFrom = place;
    return StatusFileError;
  }
  return StatusOk;
}

/// Whether the block in the buffer came up short for another reason than the file's end. Written
/// back it would lose the bytes that did not come.
bool CryptoFileCommon::lacksBytes() const {
  return m_validBytes < kBlockSize && !m_file->eof() && !m_file->good();
}

Status CryptoFileCommon::writeBlock() {
  if (!returnToBlock()) {
    return StatusFileError;
  }
  const unsigned int place = m_file->offset();
  if (!isPlace(place)) {
    return StatusFileError;
  }
  unsigned char stored[kBlockSize];
  unsigned int size = 0;
  const Status status = encryptBlock((place - m_baseOffset) / kBlockSize, stored, size);
  if (status != StatusOk) {
    return status;
  }
  if (m_file->write(stored, size) != size) {
    m_endKnown = false;
    m_strayedFrom = place;
    return StatusFileError;
  }
  noteWritten(place, size);
  return StatusOk;
}

}  // namespace trelvo
