#pragma once

#include <cstdio>
#include <limits>

#include <trelvo/core/File.h>
#include <trelvo/gom/SharedPointer.h>

#include "tests/support/Bytes.h"

namespace trelvo::test {

/// What a stream of the C library stands over, in memory, so that a core::File does without the
/// system. It must outlive its files.
class MemoryDisk {
 public:
  static constexpr std::size_t kUnlimited = std::numeric_limits<std::size_t>::max();

  explicit MemoryDisk(Bytes bytes = {}) : content(std::move(bytes)) {}
  MemoryDisk(const MemoryDisk&) = delete;
  MemoryDisk& operator=(const MemoryDisk&) = delete;

  /// A core::File over it, with the C library's buffer or without one.
  gom::SharedPointer<core::IFile> open(bool buffered);

  Bytes content;
  std::size_t room = kUnlimited;   ///< So many bytes more can be written.
  std::size_t given = kUnlimited;  ///< So many bytes more can be read; then reading fails.
  unsigned int reads = 0;          ///< Calls that reached it.
  unsigned int writes = 0;
};

}  // namespace trelvo::test
