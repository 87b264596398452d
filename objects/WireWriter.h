#pragma once

#include <trelvo/BufferStream.h>
#include <trelvo/IStream.h>

namespace trelvo {

/// Writes the pieces of a wire form to a stream.
///
/// Into a BufferStream it writes straight into the buffer's block, and the stream's positions are
/// brought up to date when it ends. For any other stream it gathers a piece (a property, a record)
/// and hands it over in one call. The bytes and their order are the same.
///
/// Its growth is one step: what the block has no room for is gathered, and small forms end there.
/// When that is full too it asks the size hint for the bytes of the whole and makes room once.
class WireWriter {
 public:
  /// The most that one reserve() may ask for.
  static constexpr unsigned int kMaxRoom = 256;
  /// Forms up to this size need no hint.
  static constexpr unsigned int kGathered = 2048;

  explicit WireWriter(IStream& stream);
  /// Keeps what was put before an exception.
  ~WireWriter();
  WireWriter(const WireWriter&) = delete;
  WireWriter& operator=(const WireWriter&) = delete;

  /// What the outermost object takes on the wire in bytes, 0 when it cannot be told; never throws.
  using SizeHint = unsigned long long (*)(const void* object);
  void setSizeHint(const void* object, SizeHint hint) noexcept {
    m_hintObject = object;
    m_hint = hint;
  }

  /// Where `count` bytes may be put; say by advance() how far they went. Throws std::bad_alloc.
  unsigned char* reserve(unsigned int count) {
    if (static_cast<unsigned long>(m_end - m_next) < count) {
      findRoom(count);
    }
    return m_next;
  }
  void advance(unsigned char* end) noexcept { m_next = end; }

  /// Writes bytes of any number. @return false when the stream did not take them.
  bool bytes(const unsigned char* source, unsigned int count);

  /// Ends a piece. @return false when the stream has failed.
  bool endPiece() { return m_buffer != nullptr || flushToStream(); }

  /// Lets `write` write to the stream itself, behind everything so far. @return its result.
  template <class Write>
  bool handOver(Write write) {
    return release() && write(m_stream) && resume();
  }

  /// Brings everything to the stream. @return whether all went well and the stream is good().
  bool finish();

 private:
  void findRoom(unsigned int count);
  bool aimAtBlock(unsigned int count) noexcept;
  void aimAtScratch() noexcept;
  void commit();
  bool flushToStream();
  bool release();
  bool resume() noexcept;
  void growByHint();

  IStream& m_stream;
  Buffer* m_buffer;  // null when the stream is not exactly a BufferStream
  unsigned int m_origin = 0;
  bool m_failed = false;
  const void* m_hintObject = nullptr;
  SizeHint m_hint = nullptr;
  unsigned char* m_start = nullptr;  // pending bytes: from here to m_next
  unsigned char* m_next = nullptr;
  unsigned char* m_end = nullptr;
  unsigned char m_scratch[kGathered];
};

}  // namespace trelvo
