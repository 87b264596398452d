#pragma once

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>

namespace trelvo::test {

/// A directory of its own for one test, gone with it.
class LogDirectory {
 public:
  LogDirectory() {
    std::string name = testing::TempDir() + "trelvo_log_XXXXXX";
    if (mkdtemp(name.data()) == nullptr) {
      throw std::system_error(errno, std::generic_category(), name);
    }
    m_path = name + "/";
  }
  ~LogDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  LogDirectory(const LogDirectory&) = delete;
  LogDirectory& operator=(const LogDirectory&) = delete;

  /// With the closing separator.
  const std::string& path() const { return m_path; }
  std::string file(const std::string& name) const { return m_path + name; }

  /// Makes the file `name` with `content`. @return its full name.
  std::string put(const std::string& name, const std::string& content) const {
    std::ofstream stream(file(name), std::ios::binary);
    stream << content;
    stream.flush();
    EXPECT_TRUE(stream.good()) << file(name);
    return file(name);
  }

  /// All of the file `name`; a text that no file has when it is not there.
  std::string content(const std::string& name) const {
    std::ifstream stream(file(name), std::ios::binary);
    if (!stream) return "no file " + name;
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  bool has(const std::string& name) const { return std::filesystem::exists(file(name)); }

 private:
  std::string m_path;
};

/// How many descriptors the process has open.
inline std::ptrdiff_t openDescriptors() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                       std::filesystem::directory_iterator());
}

}  // namespace trelvo::test
