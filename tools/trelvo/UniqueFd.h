#pragma once

#include <utility>

namespace trelvo::tool {

/// Owns one POSIX file descriptor and closes it when it dies; -1 stands for none.
class UniqueFd {
 public:
  UniqueFd() = default;

  /// Takes over `descriptor`.
  explicit UniqueFd(int descriptor) : m_descriptor(descriptor) {}

  UniqueFd(UniqueFd&& other) noexcept : m_descriptor(other.release()) {}
  UniqueFd& operator=(UniqueFd&& other) noexcept {
    std::swap(m_descriptor, other.m_descriptor);
    return *this;
  }
  UniqueFd(const UniqueFd&) = delete;
  UniqueFd& operator=(const UniqueFd&) = delete;
  ~UniqueFd();

  int get() const { return m_descriptor; }
  explicit operator bool() const { return m_descriptor >= 0; }

  /// Hands the descriptor to the caller, who closes it.
  int release() { return std::exchange(m_descriptor, -1); }

  /// Closes now. @return 0, or the errno of close(2), which may be the first to tell that written
  /// bytes did not reach a network file system.
  int close();

 private:
  int m_descriptor = -1;
};

/// Opens `path` for reading. Empty on failure; errno then tells why.
UniqueFd openForReading(const char* path);

/// Creates or empties `path` (mode 0666 under the umask) and opens it for writing. Empty on
/// failure; errno then tells why.
UniqueFd openForWriting(const char* path);

}  // namespace trelvo::tool
