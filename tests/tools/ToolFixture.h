#pragma once

#include <gtest/gtest.h>
#include <sys/types.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <initializer_list>
#include <sstream>
#include <string>
#include <vector>

#include "tools/trelvo/App.h"
#include "tools/trelvo/UniqueFd.h"

namespace trelvo::tool {

using Bytes = std::vector<unsigned char>;

/// What a run of the program gave.
struct Outcome {
  int status;
  std::string out;
  std::string err;
};

/// A file without a name that holds `content`, to be read from its start.
inline UniqueFd fileOf(const Bytes& content) {
  char name[] = "/tmp/trelvo-test-XXXXXX";
  UniqueFd file(::mkstemp(name));
  ::unlink(name);
  EXPECT_EQ(::write(file.get(), content.data(), content.size()),
            static_cast<ssize_t>(content.size()));
  ::lseek(file.get(), 0, SEEK_SET);
  return file;
}

/// Runs `trelvo ARGUMENTS` inside this process with `input` as standard input.
inline Outcome runTool(const std::vector<std::string>& arguments, const Bytes& input = {}) {
  std::vector<const char*> argv = {"trelvo"};
  for (const std::string& argument : arguments) {
    argv.push_back(argument.c_str());
  }
  const UniqueFd file = fileOf(input);
  std::ostringstream out;
  std::ostringstream err;
  CommandContext context{out, err};
  context.inputDescriptor = file.get();
  const int status = runTrelvo(static_cast<int>(argv.size()), argv.data(), context);
  return {status, out.str(), err.str()};
}

/// The bytes of a golden vector.
inline Bytes golden(const std::string& name) {
  std::ifstream file(TRELVO_TEST_DATA "/golden/vectors/" + name + ".hex");
  EXPECT_TRUE(file.good()) << "no golden vector " << name;
  Bytes bytes;
  for (std::string byte; file >> byte;) {
    bytes.push_back(static_cast<unsigned char>(std::stoul(byte, nullptr, 16)));
  }
  return bytes;
}

/// Builds bytes of the wire format by hand.
class Wire {
 public:
  Wire& u8(unsigned int value) { return number(value, 1); }
  Wire& u16(unsigned int value) { return number(value, 2); }
  Wire& u32(unsigned int value) { return number(value, 4); }
  Wire& u64(unsigned long long value) { return number(value, 8); }
  Wire& text(const std::string& value) {
    m_bytes.insert(m_bytes.end(), value.begin(), value.end());
    return *this;
  }
  /// An object's key and property count.
  Wire& object(unsigned int key, unsigned int count) { return u16(key).u32(count); }
  /// A property's or element's tag and key.
  Wire& value(unsigned int tag, unsigned int key) { return u16(tag).u16(key); }

  operator Bytes() const { return m_bytes; }  // NOLINT(google-explicit-constructor)

 private:
  Wire& number(unsigned long long value, unsigned int width) {
    for (unsigned int i = 0; i < width; ++i) {
      m_bytes.push_back(static_cast<unsigned char>(value >> (8 * i)));
    }
    return *this;
  }

  Bytes m_bytes;
};

inline Bytes joined(std::initializer_list<Bytes> parts) {
  Bytes all;
  for (const Bytes& part : parts) {
    all.insert(all.end(), part.begin(), part.end());
  }
  return all;
}

}  // namespace trelvo::tool
