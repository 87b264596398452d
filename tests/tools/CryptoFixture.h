#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/tools/ToolFixture.h"

namespace trelvo::tool {

constexpr const char* kPassPhrase = "open sesame";

/// A folder of its own for each test, with a place for the keys' seeds, on a device with a name.
class CryptoFixture : public ::testing::Test {
 protected:
  CryptoFixture() {
    char name[] = "/tmp/trelvo-sealed-XXXXXX";
    m_folder = ::mkdtemp(name);
    std::filesystem::create_directory(m_folder / "keys");
    setDevice("device 1");
  }
  ~CryptoFixture() override { std::filesystem::remove_all(m_folder); }

  static void setDevice(const char* identity) { ::setenv("ORVE_UNIQUE_DEVICE_ID", identity, 1); }
  static void clearDevice() { ::unsetenv("ORVE_UNIQUE_DEVICE_ID"); }

  std::string path(const std::string& name) const { return m_folder / name; }
  std::string keys() const { return path("keys"); }

  std::string file(const std::string& name, const Bytes& content) const {
    std::ofstream stream(path(name), std::ios::binary);
    stream.write(reinterpret_cast<const char*>(content.data()),
                 static_cast<std::streamsize>(content.size()));
    return path(name);
  }
  std::string file(const std::string& name, const std::string& text) const {
    return file(name, Bytes(text.begin(), text.end()));
  }

  static Bytes bytesOf(const std::string& name) {
    std::ifstream stream(name, std::ios::binary);
    EXPECT_TRUE(stream.good()) << name;
    return Bytes(std::istreambuf_iterator<char>(stream), {});
  }
  static std::string textOf(const std::string& name) {
    const Bytes bytes = bytesOf(name);
    return {bytes.begin(), bytes.end()};
  }

  static mode_t modeOf(const std::string& name) {
    struct stat details {};
    EXPECT_EQ(::stat(name.c_str(), &details), 0) << name;
    return details.st_mode & 07777;
  }

  static bool exists(const std::string& name) { return std::filesystem::exists(name); }
  static std::size_t filesIn(const std::string& folder) {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder),
                                                  std::filesystem::directory_iterator()));
  }

  /// A key of tests/crypto/data.
  static std::string key(const std::string& name) {
    return std::string(TRELVO_TEST_DATA) + "/crypto/data/" + name;
  }

  /// Runs a shell command in a session of its own, which has no terminal, with the program as
  /// $TRELVO and the folder as current directory; gives its exit status and what it printed.
  Outcome shell(const std::string& command) const {
    const std::string script = file(
        "script", "TRELVO='" TRELVO_PROGRAM "'\ncd '" + m_folder.string() + "'\n" + command + "\n");
    std::FILE* pipe = ::popen(("setsid -w sh " + script).c_str(), "r");
    std::string out;
    for (int byte = std::fgetc(pipe); byte != EOF; byte = std::fgetc(pipe)) {
      out.push_back(static_cast<char>(byte));
    }
    const int status = ::pclose(pipe);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, out, ""};
  }

  std::filesystem::path m_folder;
};

/// `size` bytes that do not repeat soon.
inline Bytes bytesFor(std::size_t size) {
  Bytes bytes(size);
  unsigned int state = 12345;
  for (unsigned char& byte : bytes) {
    state = state * 1103515245U + 12345U;
    byte = static_cast<unsigned char>(state >> 16);
  }
  return bytes;
}

}  // namespace trelvo::tool
