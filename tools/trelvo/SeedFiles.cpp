#include "tools/trelvo/SeedFiles.h"

#include <trelvo/ICryptography.h>
#include <trelvo/Status.h>
#include <trelvo/core/Directory.h>
#include <trelvo/gom/SharedPointer.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iomanip>

#include "tools/trelvo/Failure.h"

namespace trelvo::tool {

namespace {

constexpr std::size_t kDigestSize = 16;

bool isSeedName(const std::string& name) {
  return name.size() == 2 * kDigestSize &&
         name.find_first_not_of("0123456789abcdef") == std::string::npos;
}

}  // namespace

std::string seedPath(const std::string& directory, std::string name) {
  constexpr std::size_t kShortest = 16;
  constexpr char kDigits[] = "0123456789abcdef";
  name.resize(std::max(name.size(), kShortest), ' ');
  const gom::SharedPointer<ICryptography> cryptography = ICryptography::open();
  unsigned char digest[kDigestSize] = {};
  if (!cryptography || cryptography->md5Hash(reinterpret_cast<const unsigned char*>(name.data()),
                                             name.size(), digest) != StatusOk) {
    throw Failure("cryptography is not available");
  }
  std::string digits;
  for (const unsigned char byte : digest) {
    digits += {kDigits[byte >> 4U], kDigits[byte & 15U]};
  }
  return core::Directory::concat(directory, digits);
}

std::string readSeed(const std::string& path) {
  constexpr int kLongest = 256;
  std::ifstream file(path);
  std::string seed;
  file >> std::setw(kLongest) >> seed;
  return seed;
}

bool isSeedShared(const std::string& path) {
  namespace fs = std::filesystem;
  const std::string seed = readSeed(path);
  std::error_code error;
  const fs::directory_iterator files(fs::path(path).parent_path(), error);
  return std::any_of(begin(files), end(files), [&](const fs::directory_entry& entry) {
    return entry.path() != path && isSeedName(entry.path().filename()) &&
           readSeed(entry.path()) == seed;
  });
}

}  // namespace trelvo::tool
