#pragma once

#include <trelvo/IStream.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace trelvo::tool {

/// A stream over a file as the commands want it: with a position of 64 bits and a reason when
/// something fails.
class FileStream : public IStream {
 public:
  /// Bytes from the start of the file, or on a pipe the bytes read and written so far.
  virtual std::uint64_t position() const = 0;

  /// The size of a regular file, empty for anything else.
  virtual std::optional<std::uint64_t> size() const = 0;

  /// The errno of the first operation that failed, 0 when none has.
  virtual int error() const = 0;

  /// Calls `listener` with the position whenever a block was read from or written to the file.
  virtual void onBlock(std::function<void(std::uint64_t)> listener) = 0;
};

/// Throws for a stream that did not take what was written: ReaderGone when it is a pipe that nobody
/// reads, else Failure. `name` is what the message calls it.
[[noreturn]] void throwWriteFailure(const FileStream& stream, const std::string& name);

/// Throws Failure when reading `stream` met an error.
void checkRead(const FileStream& stream, const std::string& name);

/// Copies what is left of `from` to `to` through a block of fixed size, and flushes. Throws Failure
/// or ReaderGone.
void copyAll(FileStream& from, const std::string& fromName, FileStream& to,
             const std::string& toName);

}  // namespace trelvo::tool
