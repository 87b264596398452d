// Runs of whole blocks: what a call covers entirely is neither loaded before it is overwritten nor
// copied through the block buffer, and goes through cipher and file in one piece. Everything that
// can be seen afterwards (bytes, results, positions, fields) is as block by block would leave it.
//
// It relies on how core::File behaves (its mark of the end stays until a seek, a short read means
// the end or an error, nobody else moves it), so it serves that class and CryptoFileLin alone.

#include <algorithm>
#include <new>

#include <trelvo/CryptoFileCommon.h>
#include <trelvo/CryptoFileLin.h>
#include <trelvo/core/File.h>

#include "objects/ExactType.h"

namespace trelvo {

namespace {

constexpr unsigned int kMostBlocks = 128;   // 64 KiB at once, which the cache still holds
constexpr unsigned int kBlocks = 1U << 23;  // until the counter starts again

}  // namespace

/// This object, when whole runs may be taken; else null.
CryptoFileLin* CryptoFileCommon::forRuns() noexcept {
  return isExactly<CryptoFileLin>(*this) && isExactly<core::File>(*m_file)
             ? static_cast<CryptoFileLin*>(this)
             : nullptr;
}

bool CryptoFileCommon::readRun(unsigned char* target, unsigned int count, unsigned int& delivered) {
  CryptoFileLin* const self = m_pendingOffset == 0 ? forRuns() : nullptr;
  while (self != nullptr && count - delivered >= kBlockSize) {
    const unsigned int place = m_file->offset();
    if (!isPlace(place)) {
      return false;
    }
    const unsigned int blockIndex = (place - m_baseOffset) / kBlockSize;
    const unsigned int size = kBlockSize * std::min({(count - delivered) / kBlockSize, kMostBlocks,
                                                     kBlocks - blockIndex});
    unsigned char* const piece = target + delivered;
    const unsigned int got = m_file->read(piece, size);
    if (got != 0 && self->encipherRun(blockIndex, piece, piece, got) != StatusOk) {
      resetBuffer();
      return false;
    }
    delivered += got;
    keepLastBlock(piece, got, got == size);
    if (got != size) {
      return false;
    }
  }
  return true;
}

/// Leaves in the buffer what loading block by block would: the last block, or nothing where an
/// attempt to load one more found the end.
void CryptoFileCommon::keepLastBlock(const unsigned char* piece, unsigned int got, bool complete) {
  resetBuffer();
  const unsigned int tail = got % kBlockSize;
  const unsigned int kept = tail == 0 && complete ? kBlockSize : tail;
  std::copy_n(piece + (got - kept), kept, m_buffer);
  m_validBytes = m_position = kept;
}

bool CryptoFileCommon::writeRun(const unsigned char* source, unsigned int count,
                                unsigned int& taken) {
  CryptoFileLin* const self = m_pendingOffset == 0 ? forRuns() : nullptr;
  // The last block of a call, whole or not, stays in the buffer.
  while (self != nullptr && count - taken > kBlockSize && self->hasRoomForRuns()) {
    const unsigned int place = m_file->offset();
    if (!isPlace(place)) {
      return false;
    }
    if (place < kBlockSize) {
      break;  // Positions have started again behind 4 GiB: loadBlock() goes where they point.
    }
    const unsigned int blockIndex = (place - m_baseOffset) / kBlockSize;
    const unsigned int size =
        kBlockSize * std::min({(count - taken - 1) / kBlockSize, kMostBlocks, kBlocks - blockIndex,
                               (~0U - place) / kBlockSize + 1});
    if (!writePiece(*self, blockIndex, source + taken, size, taken)) {
      return false;
    }
    noteWritten(place, size);
  }
  return true;
}

/// Makes room for a run of enciphered blocks, once. Without it blocks are written one by one.
bool CryptoFileLin::hasRoomForRuns() {
  if (m_roomForRuns == nullptr) {
    m_roomForRuns.reset(new (std::nothrow) unsigned char[std::size_t{kMostBlocks} * kBlockSize]);
  }
  return m_roomForRuns != nullptr;
}

bool CryptoFileCommon::writePiece(CryptoFileLin& self, unsigned int blockIndex,
                                  const unsigned char* source, unsigned int size,
                                  unsigned int& taken) {
  unsigned char* const stored = self.m_roomForRuns.get();
  const Status status = self.encipherRun(blockIndex, source, stored, size);
  const unsigned int written = status == StatusOk ? m_file->write(stored, size) : 0;
  if (written == size) {
    taken += size;
    return true;
  }
  // The block that failed stays in the buffer and counts as taken.
  const unsigned int failed = written / kBlockSize;
  std::copy_n(source + std::size_t{failed} * kBlockSize, kBlockSize, m_buffer);
  m_validBytes = m_position = kBlockSize;
  m_dirty = true;
  m_endKnown = false;
  m_strayedFrom = trueOffset((blockIndex + failed) * kBlockSize);
  self.setCounter(blockIndex + failed);
  taken += (failed + 1) * kBlockSize;
  return false;
}

/// After a load that began at `place`: whether that showed where the file ends.
void CryptoFileCommon::noteEnd(unsigned int place) {
  m_end = place + m_validBytes;
  m_endKnown = m_validBytes < kBlockSize && m_end >= place && m_file->eof() && forRuns() != nullptr;
}

void CryptoFileCommon::noteWritten(unsigned int place, unsigned int size) {
  m_endKnown = m_endKnown && place + size > place;
  m_end = std::max(m_end, place + size);
}

}  // namespace trelvo
