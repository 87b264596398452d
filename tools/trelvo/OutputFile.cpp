#include "tools/trelvo/OutputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "tools/trelvo/Failure.h"

namespace trelvo::tool {

namespace {

constexpr mode_t kPermissions = 0777;

std::string resolved(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr),
                                                         &std::free);
  return real ? real.get() : path;
}

/// What lies at the final path.
struct Present {
  bool exists;
  bool isRegular;
  mode_t mode;
};

Present presentAt(const std::string& path) {
  struct stat status {};
  const bool exists = ::stat(path.c_str(), &status) == 0;
  return {exists, exists && S_ISREG(status.st_mode), status.st_mode & kPermissions};
}

UniqueFd openOutput(const std::string& path, bool isNew, mode_t mode) {
  const int flags = isNew ? O_CREAT | O_EXCL : 0;
  return UniqueFd(::open(path.c_str(), O_WRONLY | O_CLOEXEC | flags, mode));
}

}  // namespace

OutputFile::OutputFile(const std::string& path, mode_t mode) : m_final(resolved(path)) {
  const Present present = presentAt(m_final);
  const bool isNew = !present.exists || present.isRegular;
  m_current = isNew ? m_final + ".part-" + std::to_string(::getpid()) : m_final;
  m_removal.emplace(isNew ? m_current.c_str() : nullptr);
  m_descriptor = openOutput(m_current, isNew, mode);
  if (!m_descriptor || (present.isRegular && ::fchmod(descriptor(), present.mode) != 0)) {
    const int error = errno;
    if (m_descriptor && isNew) {
      ::unlink(m_current.c_str());
    }
    throw Failure(path + ": " + std::strerror(error));
  }
}

OutputFile::~OutputFile() {
  if (m_current != m_final) {
    ::unlink(m_current.c_str());
  }
}

void OutputFile::commit() {
  if (m_current == m_final) {
    return;
  }
  const bool done = ::fsync(m_descriptor.get()) == 0 && m_descriptor.close() == 0 &&
                    std::rename(m_current.c_str(), m_final.c_str()) == 0;
  if (!done) {
    throw Failure(m_final + ": " + std::strerror(errno));
  }
  m_removal.reset();
  m_current = m_final;
}

}  // namespace trelvo::tool
