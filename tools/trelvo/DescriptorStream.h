#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "tools/trelvo/FileStream.h"
#include "tools/trelvo/UniqueFd.h"

namespace trelvo::tool {

/// A byte stream over a POSIX file descriptor: a file, a pipe, a socket or a terminal.
///
/// Reading and writing are buffered in blocks of 64 KiB. Nothing needs a seek: on a pipe the stream
/// runs forward only. There is one position for reading and writing, as in the file itself; the
/// stream expects to be alone on its descriptor. What was written reaches the descriptor by
/// flush(), by the destructor, or when a block is full; only flush() tells whether it arrived.
///
/// The position is kept in 64 bits: see position(). offset() and getSize() have 32 bits.
///
/// Failures: a failed system call makes the stream not good() for good, and error() tells its
/// errno; reads and writes then give short counts. The end of the input is not a failure.
/// Interrupted calls are repeated. A write to a pipe that nobody reads gives EPIPE, provided that
/// SIGPIPE is ignored. Threads: one at a time.
class DescriptorStream : public FileStream {
 public:
  /// Reads and writes `descriptor` and closes it when it dies.
  explicit DescriptorStream(UniqueFd descriptor);

  /// Reads and writes `descriptor`, which stays its owner's.
  explicit DescriptorStream(int descriptor);

  DescriptorStream(const DescriptorStream&) = delete;
  DescriptorStream& operator=(const DescriptorStream&) = delete;

  /// Writes out what is buffered, as far as that works.
  ~DescriptorStream() override;

  /// The descriptor is open and no system call has failed.
  bool good() const override;

  /// Moves to `position`, also past the end. @return false on a pipe or after a failed flush.
  bool seekFromStart(unsigned int position) override;

  /// Moves to `distance` bytes ahead of the end. @return false on a pipe, or when `distance` is
  /// larger than the size.
  bool seekFromEnd(unsigned int distance) override;

  /// position(), or 0xFFFFFFFF when it does not fit.
  unsigned int offset() const override;

  /// Looks one byte ahead, which on a pipe waits for it: true when there is none, also after a
  /// failure. A descriptor that cannot be read is always at its end.
  bool eof() const override;

  /// The size of a regular file. @return false for anything else and from 4 GiB on, `size`
  /// unchanged.
  bool getSize(unsigned int& size) override;

  bool canRead() const override { return m_canRead; }
  bool canSeek() const override { return m_canSeek; }
  bool canWrite() const override { return m_canWrite; }

  /// Reads until `count` bytes are there or the input ends. @return the number of bytes read.
  unsigned int read(unsigned char* target, unsigned int count) override;

  /// Reads what is there, up to `count` bytes, and waits for the first of them only. @return the
  /// number of bytes read, 0 at the end of the input.
  unsigned int readSome(unsigned char* target, unsigned int count);

  /// Takes over `count` bytes. @return `count`, or fewer when the descriptor refused earlier bytes
  /// or these.
  unsigned int write(const unsigned char* source, unsigned int count) override;

  /// Writes out what is buffered. @return whether the stream is good() afterwards.
  bool flush() override;

  std::uint64_t position() const override { return m_position; }

  /// Moves to `position`, as seekFromStart() does.
  bool seekTo(std::uint64_t position);

  std::optional<std::uint64_t> size() const override;
  int error() const override { return m_error; }

  void onBlock(std::function<void(std::uint64_t)> listener) override {
    m_listener = std::move(listener);
  }

 private:
  bool fill() const;
  unsigned int readBuffered(unsigned char* target, unsigned int count);
  bool writeOut();
  bool prepareReading() const;
  bool prepareWriting();
  void dropReadAhead();
  void fail(int error) const;

  UniqueFd m_owned;
  int m_descriptor;
  bool m_canRead = false;
  bool m_canSeek = false;
  bool m_canWrite = false;
  std::uint64_t m_position = 0;
  std::function<void(std::uint64_t)> m_listener;
  std::vector<unsigned char> m_pending;        // written, not yet out
  mutable std::vector<unsigned char> m_ahead;  // read, not yet taken
  mutable std::size_t m_taken = 0;             // bytes of m_ahead already taken
  mutable bool m_ended = false;
  mutable int m_error = 0;
};

}  // namespace trelvo::tool
