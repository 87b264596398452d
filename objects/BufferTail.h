#pragma once

#include <functional>

#include <trelvo/Buffer.h>

namespace trelvo {

/// The room behind a buffer's bytes, for those who make bytes right there instead of appending
/// them.
class BufferTail {
 public:
  /// Sees to room for `count` bytes that are made of those at `source`. There is none where the
  /// buffer would have to leave its bytes behind in an outgrown block, where the write position is
  /// not their end, and where `source` lies in its block. Throws std::bad_alloc.
  BufferTail(Buffer& buffer, unsigned int count, const unsigned char* source) : m_buffer(buffer) {
    const bool fits = buffer.m_storage.size() - buffer.m_writePosition >= count;
    if (buffer.m_writePosition == buffer.m_used && (fits || buffer.m_used == 0) && !holds(source)) {
      m_room = buffer.roomForWriting(count);
    }
  }
  BufferTail(const BufferTail&) = delete;
  BufferTail& operator=(const BufferTail&) = delete;

  /// Where the bytes go, or null.
  unsigned char* room() const noexcept { return m_room; }

  /// Makes the first `count` of them the buffer's.
  void wrote(unsigned int count) noexcept { m_buffer.wrote(count); }

 private:
  bool holds(const unsigned char* byte) const noexcept {
    const unsigned char* const first = m_buffer.m_storage.get();
    const std::less<> before;
    return !before(byte, first) && before(byte, first + m_buffer.m_storage.size());
  }

  Buffer& m_buffer;
  unsigned char* m_room = nullptr;
};

}  // namespace trelvo
