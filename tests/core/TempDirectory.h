#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace trelvo::test {

/// A new, empty directory of its own, which goes with all that is in it.
class TempDirectory {
 public:
  TempDirectory() : TempDirectory(::testing::TempDir()) {}
  /// Makes it in `parent`, which ends in "/".
  explicit TempDirectory(const std::string& parent) : m_path(parent + "trelvo-XXXXXX") {
    if (::mkdtemp(m_path.data()) == nullptr) {
      throw std::runtime_error("no temporary directory");
    }
  }
  ~TempDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  TempDirectory(const TempDirectory&) = delete;
  TempDirectory& operator=(const TempDirectory&) = delete;

  /// In memory where the machine has a place for that: for tests that make very many files.
  static TempDirectory inMemory() {
    return TempDirectory(::access("/dev/shm", W_OK) == 0 ? "/dev/shm/" : ::testing::TempDir());
  }

  const std::string& path() const noexcept { return m_path; }

  /// The path of `name` in it.
  std::string operator/(const std::string& name) const { return m_path + "/" + name; }

 private:
  std::string m_path;
};

/// Makes the file `path` hold `content`.
inline void writeFile(const std::string& path, const std::string& content) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << content;
  file.close();
  ASSERT_TRUE(file.good()) << path;
}

/// What the file `path` holds.
inline std::string fileContent(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << path;
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace trelvo::test
