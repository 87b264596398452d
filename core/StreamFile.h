#pragma once

#include <cstdio>
#include <memory>
#include <new>

#include <trelvo/core/File.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::core {

struct CloseStream {
  void operator()(FILE* stream) const noexcept { static_cast<void>(std::fclose(stream)); }
};

/// A stream of the C library that is closed with its owner.
using Stream = std::unique_ptr<FILE, CloseStream>;

/// A File over `stream` with what openCrtFile() promises of it; empty for no stream.
inline gom::SharedPointer<IFile> fileOver(Stream stream, unsigned int bufferSize, bool readOnly) {
  if (stream == nullptr) {
    return {};
  }
  const unsigned int write = readOnly ? 0U : File::FlagWritable;
  gom::SharedPointer<IFile> file(
      new (std::nothrow) File(stream.get(), File::FlagSeekable | File::FlagReadable | write));
  if (!file) {
    return {};
  }
  FILE* const owned = stream.release();
  if (bufferSize != 0 && std::setvbuf(owned, nullptr, _IOFBF, bufferSize) != 0) {
    return {};
  }
  return file;
}

}  // namespace trelvo::core
