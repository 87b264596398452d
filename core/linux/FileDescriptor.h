#pragma once

#include <unistd.h>

#include <utility>

namespace trelvo::core {

/// Owns a file descriptor, -1 for none, and closes it.
class FileDescriptor {
 public:
  explicit FileDescriptor(int descriptor) noexcept : m_descriptor(descriptor) {}
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  ~FileDescriptor() {
    if (valid()) {
      ::close(m_descriptor);
    }
  }

  bool valid() const noexcept { return m_descriptor >= 0; }
  int get() const noexcept { return m_descriptor; }
  /// Hands it to the caller, who closes it.
  int release() noexcept { return std::exchange(m_descriptor, -1); }

 private:
  int m_descriptor;
};

}  // namespace trelvo::core
