#pragma once

#include <trelvo/Export.h>
#include <trelvo/ReadOnlyBuffer.h>
#include <trelvo/Status.h>
#include <trelvo/auto_array.h>

namespace trelvo {

/// A byte block that grows by appending; the inherited view covers exactly the bytes written.
///
/// Capacity grows to the next multiple of 512 strictly above what is needed, never geometrically:
/// Buffer(512) holds 1024. When the size is known, reserve once.
///
/// Ownership: the block comes from array new and dies with the Buffer unless release() hands it
/// out. Copying and assigning transfer it and leave the source empty. Failures: std::bad_alloc
/// passes through, with nothing changed. Threads: one at a time.
class TRELVO_EXPORT Buffer : public ReadOnlyBuffer {
 public:
  /// Empty, without a block.
  Buffer() noexcept = default;

  /// Empty, with room for at least `capacity` bytes. data() of the view stays null until the first
  /// write.
  explicit Buffer(unsigned int capacity);

  /// Takes over `block`, `size` bytes of content. The write position is 0, so the next append
  /// overwrites from the first byte.
  Buffer(unsigned char* block, unsigned int size);

  /// Transfers block, content and positions from `other`, which is left empty.
  Buffer(Buffer& other);  // NOLINT(google-explicit-constructor)

  /// Takes over the carried block as content; the next append continues at its end.
  Buffer(auto_array_proxy<unsigned char> proxy);  // NOLINT(google-explicit-constructor)

  /// Takes the block out of `array`, which is left empty, as spare room: the view has size 0.
  explicit Buffer(auto_array<unsigned char>& array);

  ~Buffer() = default;

  /// Deletes the old block and transfers block, content and both positions from `other`, which is
  /// left empty. Assigning a buffer to itself does nothing.
  Buffer& operator=(Buffer& other);  // NOLINT(misc-unconventional-assign-operator)

  /// Deletes the old block and takes over the carried one as content. The write position is its
  /// end, so that the next append continues there.
  Buffer& operator=(auto_array_proxy<unsigned char> proxy);

  /// Hands out block and written size. Size, positions and view of this buffer still speak of the
  /// block that has left: only destroy, reset() or assign it afterwards.
  operator auto_array_proxy<unsigned char>() noexcept;  // NOLINT(google-explicit-constructor)

  using ReadOnlyBuffer::data;
  /// The block, writable, or null.
  unsigned char* data() noexcept { return m_storage.get(); }

  /// Sees to room for `needed` bytes in all. Does not touch content, positions or the view, but a
  /// view made earlier dangles after growth: append() and fill() attach it anew.
  /// Throws std::bad_alloc, also where `needed` is 0xFFFFFE00 or more.
  void makeRoom(unsigned int needed);

  /// Hands the block to the caller, who deletes it by array delete; the buffer is then empty.
  [[nodiscard]] unsigned char* release() noexcept;

  /// Makes the view cover the written bytes, from read position 0.
  void attachBase() noexcept { attach(m_storage.get(), m_used); }

  /// Deletes the block; size and positions become 0.
  void reset() noexcept;

  /// Copies `count` bytes in at the write position and moves it past them. Rewinds the read
  /// position to 0 and invalidates earlier views. `bytes` must not point into this buffer.
  void append(const unsigned char* bytes, unsigned int count);

  /// The same with `count` times `byte`.
  void fill(unsigned char byte, unsigned int count);

  /// Where the next append goes, in bytes from the start.
  unsigned int writePosition() const noexcept { return m_writePosition; }

  /// Moves the write position, counted in bytes from the start.
  /// @return StatusOk, or StatusInvalidParameter when `position` is not below the number of bytes
  ///         written: the end itself is refused, and an empty buffer refuses every position.
  Status setWritePosition(unsigned int position) noexcept;

 private:
  friend class BufferTail;
  friend class WireWriter;

  unsigned char* roomForWriting(unsigned int count);
  void wrote(unsigned int count) noexcept;

  unsigned int m_writePosition = 0;
  auto_array<unsigned char> m_storage;  // the block and its capacity
  unsigned int m_used = 0;              // high-water mark of the written bytes
};

}  // namespace trelvo
