#include <trelvo/CryptoUtilityUbuntu.h>

#include <charconv>
#include <cstdlib>
#include <ctime>
#include <limits>

#include <trelvo/core/Directory.h>

#include "crypto/SeedFile.h"
#include "crypto/Wiped.h"

namespace trelvo {

namespace {

constexpr std::size_t kShortestName = 16;
constexpr std::size_t kDigestSize = 16;
using Digest = WipedArray<kDigestSize>;

bool digestOf(ICryptography& cryptography, const char* text, std::size_t length, Digest& digest) {
  return cryptography.md5Hash(reinterpret_cast<const unsigned char*>(text), length,
                              digest.data()) == StatusOk;
}

std::string seedPath(const Digest& nameDigest) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string path;
  bool secure = false;
  core::Directory::getDefaultStoragePath(path, secure);
  path += '/';
  for (const unsigned char byte : nameDigest) {
    path += kDigits[byte >> 4U];
    path += kDigits[byte & 0x0FU];
  }
  return path;
}

/// Which place of the seed and of the device's digest byte `i` of the key looks at.
constexpr std::size_t place(std::size_t i) noexcept { return 6 + 3 * i; }

void makeSeed(WipedText& seed) {
  char digits[std::numeric_limits<std::time_t>::digits10 + 3];
  auto* const end = std::to_chars(std::begin(digits), std::end(digits), std::time(nullptr)).ptr;
  seed.assign(digits, end);
  OPENSSL_cleanse(digits, sizeof digits);
}

void derive(const WipedText& seed, const Digest& device, unsigned int length,
            unsigned char* output) {
  for (std::size_t i = 0; i < length; ++i) {
    const std::size_t k = place(i);
    const std::size_t mixed = static_cast<unsigned char>(seed[k % seed.size()]) ^ k;
    output[i] = static_cast<unsigned char>(mixed + i * device[k % kDigestSize]);
  }
}

}  // namespace

bool CryptoUtilityUbuntu::generateKey(unsigned int length, unsigned char* output, bool& generated) {
  generated = false;
  if (m_cryptography == nullptr || m_name.empty()) {
    return false;
  }
  if (m_name.size() < kShortestName) {
    m_name.resize(kShortestName, ' ');
  }
  Digest nameDigest;
  if (!digestOf(*m_cryptography, m_name.data(), m_name.size(), nameDigest)) {
    return false;
  }
  const std::string path = seedPath(nameDigest);
  WipedText seed;
  // No byte of the key looks at what lies behind.
  if (!readSeed(path, place(length), seed)) {
    return false;
  }
  if (seed.empty()) {
    makeSeed(seed);
    writeSeed(path, seed);
    generated = true;
  }
  // NOLINTNEXTLINE(concurrency-mt-unsafe): the environment is set up before there are threads
  const char* const device = std::getenv("ORVE_UNIQUE_DEVICE_ID");
  Digest deviceDigest;
  if (device == nullptr || *device == '\0' ||
      !digestOf(*m_cryptography, device, std::char_traits<char>::length(device), deviceDigest)) {
    return false;
  }
  derive(seed, deviceDigest, length, output);
  return true;
}

}  // namespace trelvo
