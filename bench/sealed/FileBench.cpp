#include "bench/sealed/FileBench.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "bench/TemporaryFiles.h"
#include "bench/sealed/Counter.h"

namespace bench {

namespace {

constexpr std::size_t kRewrites = 20000;

Bytes noise(std::size_t size, unsigned int seed) {
  std::mt19937 engine(seed);
  Bytes bytes(size);
  std::generate(bytes.begin(), bytes.end(),
                [&engine] { return static_cast<unsigned char>(engine() >> 24); });
  return bytes;
}

Places makePlaces() {
  std::mt19937 engine(7);
  Places places(kRewrites);
  for (std::size_t& place : places) {
    place =
        engine() % (kFileSize / kSmallCall) * kSmallCall + engine() % (kSmallCall - kPatchSize + 1);
  }
  return places;
}

Bytes rewritten() {
  Bytes bytes = content();
  for (const std::size_t place : places()) {
    std::copy_n(patch(), kPatchSize, bytes.begin() + static_cast<std::ptrdiff_t>(place));
  }
  return bytes;
}

Bytes bytesOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  Bytes bytes(std::filesystem::file_size(path));
  file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  return bytes;
}

}  // namespace

const Bytes& content() {
  static const Bytes kContent = noise(kFileSize, 1);
  return kContent;
}

const Bytes& rewrittenContent() {
  static const Bytes kRewritten = rewritten();
  return kRewritten;
}

const Places& places() {
  static const Places kPlaces = makePlaces();
  return kPlaces;
}

const unsigned char* patch() {
  static const Bytes kPatch = noise(kPatchSize, 2);
  return kPatch.data();
}

bool holds(const std::string& path, const Bytes& plain, Stored form) {
  if (form == Stored::Own) {
    return true;
  }
  Bytes stored = bytesOf(path);
  if (form == Stored::Enciphered) {
    KeptContext().apply(0, stored.data(), stored.data(), stored.size());
  }
  return stored == plain;
}

void removeFile(const std::string& path) { std::remove(path.c_str()); }

std::string pathOf(const std::string& peer) {
  std::string name = peer;
  std::replace(name.begin(), name.end(), ':', '_');
  return temporaryFile(name);
}

}  // namespace bench
