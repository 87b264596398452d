#include "crypto/SeedFile.h"

#include <cstdio>
#include <cstring>

#include "core/PrivateFile.h"
#include "crypto/SecretFile.h"

namespace trelvo {

namespace {

bool isWhiteSpace(int character) noexcept {
  return character > 0 && std::strchr(" \t\n\v\f\r", character) != nullptr;
}

}  // namespace

void readSeed(const std::string& path, std::size_t most, WipedText& seed) {
  seed.reserve(most);
  const SecretFile file(path.c_str());
  if (file.stream() == nullptr) {
    return;
  }
  int character = std::fgetc(file.stream());
  while (isWhiteSpace(character)) {
    character = std::fgetc(file.stream());
  }
  while (character != EOF && !isWhiteSpace(character) && seed.size() < most) {
    seed.push_back(static_cast<char>(character));
    character = std::fgetc(file.stream());
  }
}

void writeSeed(const std::string& path, const WipedText& seed) {
  const auto file = core::createPrivateFile(path, 0);
  if (file) {
    file->write(reinterpret_cast<const unsigned char*>(seed.data()),
                static_cast<unsigned int>(seed.size()));
  }
}

}  // namespace trelvo
