#include "tests/crypto/BlockFileModel.h"

#include <algorithm>
#include <utility>

namespace trelvo::test {

BlockFileModel::BlockFileModel(Bytes bytes, unsigned int base, bool endByPosition,
                               unsigned int room)
    : disk(std::move(bytes)), m_place(base), m_endByPosition(endByPosition), m_room(room) {
  state.baseOffset = base;
  const auto key = testKey();
  const auto iv = testIv();
  state.key.assign(key.begin(), key.end());
  state.iv.assign(iv.begin(), iv.end());
}

// The file below.

bool BlockFileModel::eof() const { return m_endByPosition ? m_place >= disk.size() : m_endMet; }

void BlockFileModel::fileSeek(unsigned int place) {
  m_place = place;
  m_endMet = false;
}

Bytes BlockFileModel::fileRead(unsigned int count) {
  const std::size_t first = std::min<std::size_t>(m_place, disk.size());
  const std::size_t last = std::min<std::size_t>(first + count, disk.size());
  m_endMet = m_endMet || last - first < count;
  m_place += static_cast<unsigned int>(last - first);
  return slice(disk, first, last);
}

unsigned int BlockFileModel::fileWrite(const Bytes& bytes) {
  const auto taken = std::min(static_cast<unsigned int>(bytes.size()), m_room);
  m_room -= m_room == kUnlimited ? 0 : taken;
  disk.resize(std::max<std::size_t>(disk.size(), taken == 0 ? 0 : m_place + taken));
  if (taken != 0) {
    std::copy_n(bytes.begin(), taken, disk.begin() + static_cast<std::ptrdiff_t>(m_place));
  }
  m_place += taken;
  return taken;
}

// One block.

void BlockFileModel::resetBuffer() {
  state.validBytes = 0;
  state.position = 0;
  state.dirty = false;
  state.buffer.assign(512, 0);
}

void BlockFileModel::setCounter(unsigned int blockIndex) {
  const unsigned int value = (blockIndex << 9) >> 4;
  state.iv[12] = static_cast<unsigned char>(value >> 24);
  state.iv[13] = static_cast<unsigned char>(value >> 16);
  state.iv[14] = static_cast<unsigned char>(value >> 8);
  state.iv[15] = static_cast<unsigned char>(value);
}

void BlockFileModel::loadBlock(bool seekBack) {
  resetBuffer();
  if (eof()) {
    return;
  }
  const unsigned int place = m_place;
  const unsigned int blockIndex = myOffset() >> 9;
  const Bytes stored = fileRead(512);
  if (!stored.empty()) {
    setCounter(blockIndex);
    const Bytes& stream = keyStream(blockIndex);
    for (std::size_t i = 0; i < stored.size(); ++i) {
      state.buffer[i] = stored[i] ^ stream[i];
    }
    state.validBytes = static_cast<unsigned int>(stored.size());
  }
  state.position = state.pendingOffset;
  state.pendingOffset = 0;
  if (seekBack) {
    fileSeek(place);
  }
}

bool BlockFileModel::writeBlock() {
  const unsigned int blockIndex = myOffset() >> 9;
  setCounter(blockIndex);
  const Bytes& stream = keyStream(blockIndex);
  Bytes stored(state.validBytes);
  for (std::size_t i = 0; i < stored.size(); ++i) {
    stored[i] = state.buffer[i] ^ stream[i];
  }
  return fileWrite(stored) == stored.size();
}

bool BlockFileModel::preSeek() {
  if (state.dirty && !writeBlock()) {
    return false;
  }
  resetBuffer();
  state.mode = 0;
  return true;
}

// The stream.

bool BlockFileModel::seekFromStart(unsigned int logical) {
  if (!preSeek()) {
    return false;
  }
  fileSeek(state.baseOffset + logical);
  fileSeek(state.baseOffset + (logical & ~0x1FFU));
  state.pendingOffset = logical & 0x1FF;
  return true;
}

bool BlockFileModel::seekFromEnd(unsigned int distance) {
  if (!preSeek()) {
    return false;
  }
  fileSeek(static_cast<unsigned int>(disk.size()));
  const unsigned int size = offset();
  if (distance > size) {
    return false;
  }
  fileSeek(state.baseOffset + ((size - distance) & ~0x1FFU));
  state.pendingOffset = (size - distance) & 0x1FF;
  return true;
}

unsigned int BlockFileModel::offset() const {
  if (state.mode == 1) {
    return myOffset() + state.pendingOffset + state.position - state.validBytes;
  }
  if (state.mode == 2) {
    return myOffset() + state.position + state.pendingOffset;
  }
  return myOffset() + state.pendingOffset;
}

bool BlockFileModel::flush() {
  if (!state.dirty) {
    return true;
  }
  const unsigned int place = m_place;
  if (!writeBlock()) {
    return false;
  }
  fileSeek(place);
  return true;
}

bool BlockFileModel::getSize(unsigned int& size) {
  flush();
  size = static_cast<unsigned int>(disk.size());
  m_endMet = false;
  return true;
}

Bytes BlockFileModel::read(unsigned int count) {
  Bytes result;
  while (result.size() < count) {
    if (state.position < state.validBytes) {
      const auto wanted = count - static_cast<unsigned int>(result.size());
      const unsigned int given = std::min(state.validBytes - state.position, wanted);
      const auto first = state.buffer.begin() + static_cast<std::ptrdiff_t>(state.position);
      result.insert(result.end(), first, first + static_cast<std::ptrdiff_t>(given));
      state.position += given;
    } else if (eof()) {
      break;
    } else {
      loadBlock(false);
    }
  }
  return result;
}

unsigned int BlockFileModel::write(const Bytes& source) {
  if (state.mode == 0) {
    loadBlock(true);
    state.mode = 2;
  }
  unsigned int taken = 0;
  while (taken < source.size()) {
    if (state.position < 512) {
      const auto left = static_cast<unsigned int>(source.size()) - taken;
      const unsigned int moved = std::min(512 - state.position, left);
      std::copy_n(source.begin() + static_cast<std::ptrdiff_t>(taken), moved,
                  state.buffer.begin() + static_cast<std::ptrdiff_t>(state.position));
      state.position += moved;
      taken += moved;
      state.dirty = true;
      state.validBytes = std::max(state.validBytes, state.position);
    } else {
      if (state.dirty && !writeBlock()) {
        break;
      }
      loadBlock(true);
    }
  }
  return taken;
}

}  // namespace trelvo::test
