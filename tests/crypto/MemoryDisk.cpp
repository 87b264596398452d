#include "tests/crypto/MemoryDisk.h"

#include <algorithm>
#include <cerrno>
#include <memory>

namespace trelvo::test {

namespace {

/// What one stream keeps: where it stands.
struct Cookie {
  MemoryDisk& disk;
  std::size_t place = 0;
};

Cookie& cookieOf(void* pointer) { return *static_cast<Cookie*>(pointer); }

ssize_t readDisk(void* pointer, char* target, std::size_t count) {
  Cookie& cookie = cookieOf(pointer);
  MemoryDisk& disk = cookie.disk;
  ++disk.reads;
  const std::size_t there =
      cookie.place < disk.content.size() ? disk.content.size() - cookie.place : 0;
  const std::size_t moved = std::min({count, there, disk.given});
  if (moved == 0 && there != 0) {
    errno = EIO;
    return -1;
  }
  std::copy_n(disk.content.begin() + static_cast<std::ptrdiff_t>(there != 0 ? cookie.place : 0),
              moved, target);
  disk.given -= disk.given == MemoryDisk::kUnlimited ? 0 : moved;
  cookie.place += moved;
  return static_cast<ssize_t>(moved);
}

ssize_t writeDisk(void* pointer, const char* source, std::size_t count) {
  Cookie& cookie = cookieOf(pointer);
  MemoryDisk& disk = cookie.disk;
  ++disk.writes;
  const std::size_t moved = std::min(count, disk.room);
  if (moved == 0) {
    errno = ENOSPC;
    return 0;
  }
  disk.content.resize(std::max(disk.content.size(), cookie.place + moved));
  std::copy_n(source, moved, disk.content.begin() + static_cast<std::ptrdiff_t>(cookie.place));
  disk.room -= disk.room == MemoryDisk::kUnlimited ? 0 : moved;
  cookie.place += moved;
  return static_cast<ssize_t>(moved);
}

int seekDisk(void* pointer, off64_t* place, int origin) {
  Cookie& cookie = cookieOf(pointer);
  off64_t target = *place;
  if (origin == SEEK_CUR) {
    target += static_cast<off64_t>(cookie.place);
  } else if (origin == SEEK_END) {
    target += static_cast<off64_t>(cookie.disk.content.size());
  }
  if (target < 0) {
    errno = EINVAL;
    return -1;
  }
  cookie.place = static_cast<std::size_t>(target);
  *place = target;
  return 0;
}

int closeDisk(void* pointer) {
  const std::unique_ptr<Cookie> cookie(static_cast<Cookie*>(pointer));
  return 0;
}

}  // namespace

gom::SharedPointer<core::IFile> MemoryDisk::open(bool buffered) {
  FILE* const stream =
      ::fopencookie(new Cookie{*this}, "r+", {&readDisk, &writeDisk, &seekDisk, &closeDisk});
  EXPECT_NE(stream, nullptr);
  if (!buffered) {
    EXPECT_EQ(std::setvbuf(stream, nullptr, _IONBF, 0), 0);
  }
  return new core::File(
      stream, core::File::FlagReadable | core::File::FlagWritable | core::File::FlagSeekable);
}

}  // namespace trelvo::test
