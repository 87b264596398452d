#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

#include <trelvo/Buffer.h>
#include <trelvo/ICryptography.h>

#include "tests/support/Bytes.h"

namespace trelvo::test {

using Cryptography = gom::SharedPointer<ICryptography>;

inline Cryptography opened() { return Cryptography(ICryptography::open()); }

/// Key, IV and text of NIST SP 800-38A.
inline Bytes aesKey() { return bytes("2b7e151628aed2a6abf7158809cf4f3c"); }
inline Bytes cbcIv() { return bytes("000102030405060708090a0b0c0d0e0f"); }
inline Bytes nistPlain() {
  return bytes(
      "6bc1bee22e409f96e93d7e117393172a ae2d8a571e03ac9c9eb76fac45af8e51"
      "30c81c46a35ce411e5fbc1191a0a52ef f69f2445df4f9b17ad2b417be66c3710");
}

inline ReadOnlyBuffer view(const Bytes& content) {
  return {content.data(), static_cast<unsigned int>(content.size())};
}

inline Bytes contentOf(const Buffer& buffer) {
  const unsigned char* const data = static_cast<const ReadOnlyBuffer&>(buffer).data();
  return buffer.size() == 0 ? Bytes() : Bytes(data, data + buffer.size());
}

/// A file of tests/crypto/data.
inline std::string dataFile(const std::string& name) {
  return std::string(TRELVO_TEST_DATA) + "/crypto/data/" + name;
}

/// A folder of its own that goes when the test ends.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string pattern =
        (std::filesystem::temp_directory_path() / "trelvo-crypto-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
      throw std::runtime_error("no temporary folder");
    }
    m_path = pattern;
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string path() const { return m_path.string(); }
  std::string file(const std::string& name) const { return (m_path / name).string(); }
  bool empty() const { return std::filesystem::is_empty(m_path); }

 private:
  std::filesystem::path m_path;
};

inline void writeFile(const std::string& path, const Bytes& content) {
  std::ofstream stream(path, std::ios::binary);
  stream.write(reinterpret_cast<const char*>(content.data()),
               static_cast<std::streamsize>(content.size()));
  EXPECT_TRUE(stream.good()) << path;
}

inline Bytes readFile(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  EXPECT_TRUE(stream.good()) << path;
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

inline Bytes textBytes(const std::string& text) { return {text.begin(), text.end()}; }

}  // namespace trelvo::test
