#include "fuzz/ScratchFile.h"

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace trelvo::fuzz {

ScratchFile::ScratchFile()
    : m_descriptor(::memfd_create("scratch", MFD_CLOEXEC)),
      m_path("/proc/self/fd/" + std::to_string(m_descriptor)) {
  require(m_descriptor >= 0, "the system gives a file in memory");
}

ScratchFile::~ScratchFile() { ::close(m_descriptor); }

void ScratchFile::setContent(const Bytes& content) {
  const auto size = static_cast<ssize_t>(content.size());
  require(::ftruncate(m_descriptor, 0) == 0, "a file in memory can be emptied");
  require(::pwrite(m_descriptor, content.data(), content.size(), 0) == size,
          "a file in memory can be written");
}

Bytes ScratchFile::content() const {
  struct stat details {};
  require(::fstat(m_descriptor, &details) == 0, "a file in memory has a size");
  Bytes content(static_cast<std::size_t>(details.st_size));
  require(::pread(m_descriptor, content.data(), content.size(), 0) == details.st_size,
          "a file in memory can be read");
  return content;
}

}  // namespace trelvo::fuzz
