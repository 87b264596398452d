#include "tools/trelvo/CipherKey.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>

#include "tools/trelvo/DescriptorStream.h"
#include "tools/trelvo/Failure.h"

namespace trelvo::tool {
namespace {

constexpr std::size_t kLongestFile = 2 * kCipherBytes + 2;  // digits, and a line's end

// One byte more than a good file can have, so that a longer one shows.
std::string startOf(const std::string& path) {
  UniqueFd file = openForReading(path.c_str());
  if (!file) {
    throw Failure(path + ": " + std::strerror(errno));
  }
  DescriptorStream stream(std::move(file));
  unsigned char block[kLongestFile + 1];
  const unsigned int got = stream.read(block, sizeof block);
  if (stream.error() != 0) {
    throw Failure(path + ": " + std::strerror(stream.error()));
  }
  return {reinterpret_cast<const char*>(block), got};
}

bool isHexDigit(char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; }

bool isHex(const std::string& content) {
  constexpr std::size_t kDigits = std::size_t{2} * kCipherBytes;
  const std::string end = content.substr(std::min(kDigits, content.size()));
  return content.size() >= kDigits && (end.empty() || end == "\n" || end == "\r\n") &&
         std::all_of(content.begin(), content.begin() + kDigits, isHexDigit);
}

CipherBytes fromHex(const std::string& digits) {
  CipherBytes key;
  for (std::size_t i = 0; i < key.size(); ++i) {
    key[i] = static_cast<unsigned char>(std::stoul(digits.substr(2 * i, 2), nullptr, 16));
  }
  return key;
}

}  // namespace

CipherBytes readCipherBytes(const std::string& path) {
  const std::string content = startOf(path);
  if (isHex(content)) {
    return fromHex(content);
  }
  if (content.size() != kCipherBytes) {
    throw Failure(path + ": is no key; it has to hold 16 bytes, or 32 hexadecimal digits");
  }
  CipherBytes key;
  std::copy(content.begin(), content.end(), key.begin());
  return key;
}

}  // namespace trelvo::tool
