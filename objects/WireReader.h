#pragma once

#include <cstring>

#include <trelvo/BufferStream.h>
#include <trelvo/IStream.h>

#include "objects/LittleEndian.h"

namespace trelvo {

/// Reads the pieces of a wire form from a stream, and never takes more than they own.
///
/// From a BufferStream it reads straight out of the bytes in view and moves the stream's read
/// position when it ends; from any other stream it reads value by value.
///
/// It counts how deep objects and lists are nested, for each thread, so that no stream can exhaust
/// the call stack.
class WireReader {
 public:
  /// How many objects and lists may be nested in one another; the outermost counts as one.
  static constexpr unsigned int kMaxNesting = 512;

  explicit WireReader(IStream& stream);
  ~WireReader() { sync(); }
  WireReader(const WireReader&) = delete;
  WireReader& operator=(const WireReader&) = delete;

  /// Reads one value. After a short read the bytes that did arrive stand in `value`. Always inline:
  /// left alone, compilers judge it by its second half, which hardly ever runs.
  template <class T>
  [[gnu::always_inline]] bool get(T& value) {
    if (static_cast<unsigned long>(m_end - m_next) >= sizeof(T)) {
      value = loadWire<T>(m_next);
      m_next += sizeof(T);
      return true;
    }
    return getImage(&value, sizeof(T));
  }

  /// The next `count` bytes where they stand in memory, to be passed over by skip(); null when
  /// there are fewer, or the stream is no BufferStream.
  const unsigned char* peek(unsigned int count) const noexcept {
    return static_cast<unsigned long>(m_end - m_next) >= count ? m_next : nullptr;
  }
  void skip(unsigned int count) noexcept { m_next += count; }

  /// Reads a value of `size` bytes into the memory image at `image`.
  bool getImage(void* image, unsigned int size);

  /// Reads up to `count` bytes. @return the bytes read.
  unsigned int bytes(unsigned char* target, unsigned int count);

  /// How many of `wanted` bytes may be asked for at once without trusting the stream's word: all
  /// that are there, or a bounded number when that is not known.
  unsigned int plausible(unsigned int wanted) const noexcept;

  /// Whether the stream is still good; bytes in memory always are.
  bool good() const { return m_view != nullptr || m_stream.good(); }

  /// Lets `read` read from the stream itself. @return its result.
  template <class Read>
  bool handOver(Read read) {
    const Suspension suspension(*this);
    return read(m_stream);
  }

  /// One level of nesting, for as long as it lives.
  class Level {
   public:
    explicit Level(WireReader& reader) noexcept : m_reader(reader) { ++m_reader.m_depth; }
    ~Level() { --m_reader.m_depth; }
    Level(const Level&) = delete;
    Level& operator=(const Level&) = delete;
    bool tooDeep() const noexcept { return m_reader.m_depth > kMaxNesting; }

   private:
    WireReader& m_reader;
  };

 private:
  // Gives the stream and the thread's nesting count their due while somebody else reads.
  class Suspension {
   public:
    explicit Suspension(WireReader& reader) noexcept;
    ~Suspension();
    Suspension(const Suspension&) = delete;
    Suspension& operator=(const Suspension&) = delete;

   private:
    WireReader& m_reader;
    unsigned int m_outerDepth;
  };

  void aim() noexcept;
  void sync() noexcept;

  IStream& m_stream;
  ReadOnlyBuffer* m_view;  // null when the stream is not exactly a BufferStream
  unsigned int m_depth;
  const unsigned char* m_next = nullptr;
  const unsigned char* m_end = nullptr;
};

}  // namespace trelvo
