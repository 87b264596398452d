#pragma once

#include <trelvo/Buffer.h>
#include <trelvo/Export.h>
#include <trelvo/IStream.h>

namespace trelvo {

/// A stream in memory, over a Buffer of its own.
///
/// Reading and writing have positions of their own; the seeks and offset() speak of the read
/// position alone. Each write puts the read position back to 0, so what was written can be read
/// at once without a seek. Writes append at the buffer's write position.
///
/// A stream that nothing was written to is not good(). Writing throws std::bad_alloc when memory
/// runs out. Threads: one at a time.
class TRELVO_EXPORT BufferStream : public IStream {
 public:
  /// An empty stream.
  BufferStream();
  ~BufferStream() override;

  BufferStream(const BufferStream&) = delete;
  BufferStream& operator=(const BufferStream&) = delete;

  /// The bytes written so far, and their positions.
  Buffer& buffer() noexcept { return m_buffer; }
  const Buffer& buffer() const noexcept { return m_buffer; }

  /// Whether there are bytes in view.
  bool good() const override;
  /// Moves the read position; false for the end and behind it.
  bool seekFromStart(unsigned int position) override;
  /// Moves the read position to size minus `distance`; false for 0 and for more than the size.
  bool seekFromEnd(unsigned int distance) override;
  /// The read position.
  unsigned int offset() const override;
  /// Whether the read position is at the end.
  bool eof() const override;
  /// The bytes written; always true.
  bool getSize(unsigned int& size) override;
  bool canRead() const override;   ///< Always true.
  bool canSeek() const override;   ///< Always true.
  bool canWrite() const override;  ///< Always true.
  unsigned int read(unsigned char* target, unsigned int count) override;
  /// Appends at the buffer's write position. @return `count`.
  unsigned int write(const unsigned char* source, unsigned int count) override;
  bool flush() override;  ///< Always true.

 private:
  Buffer m_buffer;
};

}  // namespace trelvo
