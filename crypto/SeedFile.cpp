#include "crypto/SeedFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "core/PrivateFile.h"
#include "crypto/SecretFile.h"

namespace trelvo {

namespace {

bool isWhiteSpace(int character) noexcept {
  return character > 0 && std::strchr(" \t\n\v\f\r", character) != nullptr;
}

/// Whether a file that could not be opened or read for this reason may have a seed all the same.
bool mayPass(int error) noexcept {
  constexpr int kPassing[] = {EINTR, EIO, EMFILE, ENFILE, ENOMEM};
  return std::find(std::begin(kPassing), std::end(kPassing), error) != std::end(kPassing);
}

bool write(core::IFile& file, const WipedText& seed) {
  const auto size = static_cast<unsigned int>(seed.size());
  return file.write(reinterpret_cast<const unsigned char*>(seed.data()), size) == size &&
         file.flush();
}

}  // namespace

bool readSeed(const std::string& path, std::size_t most, WipedText& seed) {
  seed.reserve(most);
  const SecretFile file(path.c_str());
  if (file.stream() == nullptr) {
    return !mayPass(errno);
  }
  int character = std::fgetc(file.stream());
  while (isWhiteSpace(character)) {
    character = std::fgetc(file.stream());
  }
  while (character != EOF && !isWhiteSpace(character) && seed.size() < most) {
    seed.push_back(static_cast<char>(character));
    character = std::fgetc(file.stream());
  }
  return std::ferror(file.stream()) == 0 || !mayPass(errno);
}

void writeSeed(const std::string& path, const WipedText& seed) {
  auto file = core::createPrivateFile(path, 0);
  if (file && !write(*file, seed)) {
    // A part of a seed would be taken for a whole one: empty the file again, now that the rest of
    // the stream has gone wherever it could.
    file.clear();
    file = core::createPrivateFile(path, 0);
  }
}

}  // namespace trelvo
