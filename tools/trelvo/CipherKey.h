#pragma once

#include <array>
#include <string>

namespace trelvo::tool {

/// An AES-128 key or its initialisation vector.
constexpr unsigned int kCipherBytes = 16;
using CipherBytes = std::array<unsigned char, kCipherBytes>;

/// Both of them.
struct CipherKey {
  CipherBytes key;
  CipherBytes iv;
};

/// Reads a file of 16 bytes, or of 32 hexadecimal digits with or without a line's end. Throws
/// Failure.
CipherBytes readCipherBytes(const std::string& path);

}  // namespace trelvo::tool
