#pragma once

#include <cstdio>
#include <string>

#include <trelvo/Export.h>
#include <trelvo/core/IFile.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::core {

/// A binary file over a `FILE*` of the C library, with the buffering and the error and end marks of
/// that stream.
///
/// Reading and writing share one position, and may follow each other without a seek between.
/// Files may grow beyond 4 GiB by reading and writing on, and what needs no position works there as
/// everywhere. Positions have 32 bits: offset() then gives the lower ones, getSize() refuses.
///
/// Writes are buffered, so a full disk may show as late as flush(); a failure when the file is
/// closed is not told to anyone. Flush what must not be lost, and look at the result.
///
/// Ownership: the stream belongs to the object, which closes it.
/// Threads: one at a time.
class TRELVO_EXPORT File : public IFile {
 public:
  /// What a file was opened for.
  enum Flag : unsigned int {
    FlagSeekable = 1,  ///< canSeek()
    FlagReadable = 2,  ///< canRead()
    FlagWritable = 4,  ///< canWrite()
  };

  /// Takes over `stream`; `flags` is a sum of Flag values. A null stream makes a file that is not
  /// good(), is at its end, and moves no bytes.
  File(FILE* stream, unsigned int flags) noexcept;

  /// Closes the stream.
  ~File() override;

  /// Whether no operation of this file has met an error so far. A seek that was refused is none.
  bool good() const override;
  /// Moves to `position`, which may lie behind the end: a write there leaves a gap of zeros.
  /// @return true when it was set.
  bool seekFromStart(unsigned int position) override;
  /// Moves to `distance` bytes before the end. @return true when it was set; false, with nothing
  /// moved, when the file is shorter than that.
  bool seekFromEnd(unsigned int distance) override;
  /// The lower 32 bits of the current position in bytes; all ones when there is none (a pipe).
  unsigned int offset() const override;
  /// Whether a read has met the end. Standing at the end is not enough, and a seek takes it back.
  bool eof() const override;
  /// Gives the size, with what is still buffered. The position stays, and the mark of the end goes.
  /// Where the system gives the size but will not move back, the position is the end.
  /// @return true, or false with `size` untouched when the file cannot be sought or has 4 GiB or
  ///         more.
  bool getSize(unsigned int& size) override;
  /// Whether the file was opened for it; nothing else is tested.
  bool canRead() const override;
  bool canSeek() const override;
  bool canWrite() const override;
  /// Reads up to `count` bytes. @return the bytes read: fewer at the end or on an error, which
  /// eof() and good() tell apart.
  unsigned int read(unsigned char* target, unsigned int count) override;
  /// Writes `count` bytes. @return the bytes that went out or into the buffer: fewer than `count`,
  /// with good() false, when the disk is full or the file was opened for reading only.
  unsigned int write(const unsigned char* source, unsigned int count) override;
  /// Hands buffered bytes to the system. @return true on success.
  bool flush() override;

 private:
  enum class Move { None, Read, Write };

  bool turnToReading();
  bool turnToWriting();
  bool moved(bool done) noexcept;

  FILE* m_stream;
  unsigned int m_flags;
  Move m_last = Move::None;  // since the last seek
};

/// Opens `path` by `fopen` with `mode` and puts a File over it, which can seek and read, and write
/// unless `readOnly`. Files of 2 GiB and more open on 32-bit systems too.
///
/// A `bufferSize` other than 0 makes the stream fully buffered and is handed to `setvbuf` as the
/// size of a buffer that the C library allocates (glibc takes its own size).
/// @return an empty handle when the file cannot be opened, memory runs out or `setvbuf` fails.
[[nodiscard]] TRELVO_EXPORT gom::SharedPointer<IFile> openCrtFile(const std::string& path,
                                                                  const char* mode,
                                                                  unsigned int bufferSize,
                                                                  bool readOnly);

}  // namespace trelvo::core
