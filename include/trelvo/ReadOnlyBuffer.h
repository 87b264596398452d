#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>

namespace trelvo {

class Buffer;

/// A view of bytes that somebody else owns, with a read position.
///
/// Copies are further views of the same bytes with the same position; no bytes are copied. A view
/// must not outlive its bytes.
///
/// Threads: one at a time.
class TRELVO_EXPORT ReadOnlyBuffer {
 public:
  /// A view of nothing.
  ReadOnlyBuffer() noexcept = default;

  /// A view of `size` bytes at `bytes`.
  ReadOnlyBuffer(const unsigned char* bytes, unsigned int size) noexcept { attach(bytes, size); }

  /// Views other bytes, from read position 0.
  void attach(const unsigned char* bytes, unsigned int size) noexcept {
    m_readPosition = 0;
    m_data = bytes;
    m_size = size;
  }

  /// The first byte, or null.
  const unsigned char* data() const noexcept { return m_data; }
  /// The bytes in view.
  unsigned int size() const noexcept { return m_size; }
  /// Where the next read starts, in bytes from the start.
  unsigned int readPosition() const noexcept { return m_readPosition; }
  /// The bytes behind the read position.
  unsigned int leftForReading() const noexcept { return m_size - m_readPosition; }

  /// Copies the smaller of `count` and leftForReading() bytes to `target` and moves past them.
  /// With `fromStart` it goes back to position 0 first. With nothing to copy, `target` is not
  /// touched.
  /// @return the bytes copied.
  unsigned int read(unsigned char* target, unsigned int count, bool fromStart);

  /// Moves the read position, counted in bytes from the start.
  /// @return StatusOk, or StatusInvalidParameter with nothing changed when `position` is not below
  ///         size(): the end itself is refused, and an empty view refuses every position.
  Status setReadPosition(unsigned int position) noexcept;

  /// A new Buffer with a copy of all bytes in view, wherever the read position stands. The copy's
  /// own read position is 0. Throws std::bad_alloc.
  [[nodiscard]] Buffer clone() const;

  /// A new Buffer with a copy of the bytes from `first` up to but not including `last`. What lies
  /// behind the end of the view is left out. Throws std::bad_alloc.
  [[nodiscard]] Buffer extract(unsigned int first, unsigned int last) const;

 private:
  friend class Buffer;
  friend class WireReader;

  unsigned int m_readPosition = 0;
  const unsigned char* m_data = nullptr;
  unsigned int m_size = 0;
};

}  // namespace trelvo
