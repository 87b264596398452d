#include "tests/soak/Files.h"

#include <algorithm>

#include <trelvo/ICryptoFile.h>
#include <trelvo/core/Directory.h>

#include "tests/soak/OneWorkerCrew.h"

namespace soak {

namespace {

using trelvo::ICryptoFile;
using trelvo::core::Directory;
using Sealed = trelvo::gom::SharedPointer<ICryptoFile>;
using File = trelvo::gom::SharedPointer<trelvo::core::IFile>;

constexpr unsigned int kMaxSize = 256 << 10;
constexpr unsigned int kMaxPiece = 5000;
constexpr unsigned int kPatches = 50;

unsigned char* data(std::string& text, std::size_t at = 0) {
  return reinterpret_cast<unsigned char*>(text.data() + at);
}

class FilesWorker : public Worker {
 public:
  FilesWorker(const std::string& directory, unsigned int seed)
      : m_random(seed), m_path(Directory::concat(directory, "sealed" + std::to_string(seed))) {}

 protected:
  void round() override {
    m_key = m_random.bytes(16);
    m_iv = m_random.bytes(16);
    m_plain = m_random.bytes(1 + m_random.below(kMaxSize));
    write();
    change();
    const std::string moved = m_path + ".moved";
    check(Directory::renameFile(m_path, moved), "a file is renamed");
    check(Directory::copyFile(moved, m_path), "a file is copied");
    expectPlain(moved);
    expectPlain(m_path);
    check(Directory::rmFile(moved) && Directory::rmFile(m_path), "files are removed");
    ++gFigures.sealedFiles;
  }

 private:
  Sealed sealed(const File& file) {
    Sealed result(ICryptoFile::open(file, data(m_key), data(m_iv)));
    check(static_cast<bool>(result), "a sealed file opens");
    return result;
  }

  // Calls `action` with the start and the length of each piece of the plain text.
  template <class Action>
  void inPieces(Action action) {
    unsigned int at = 0;
    while (at < m_plain.size()) {
      const auto left = static_cast<unsigned int>(m_plain.size()) - at;
      const unsigned int count = std::min(left, 1 + m_random.below(kMaxPiece));
      action(at, count);
      gFigures.sealedBytes += count;
      at += count;
    }
  }

  void write() {
    const Sealed file = sealed(Directory::createFile(m_path, 0));
    inPieces([&](unsigned int at, unsigned int count) {
      check(file->write(data(m_plain, at), count) == count, "a sealed file takes all bytes");
    });
    check(file->flush(), "a sealed file is flushed");
  }

  void change() {
    const Sealed file = sealed(Directory::openFile(m_path, 0, false));
    const auto size = static_cast<unsigned int>(m_plain.size());
    for (unsigned int i = 0; i < kPatches; ++i) {
      const unsigned int at = m_random.below(size);
      const std::string patch = m_random.bytes(std::min(size - at, 1 + m_random.below(1200)));
      m_plain.replace(at, patch.size(), patch);
      const auto count = static_cast<unsigned int>(patch.size());
      check(file->seekFromStart(at), "a sealed file seeks");
      check(file->write(data(m_plain, at), count) == count, "a sealed file is changed");
      gFigures.sealedBytes += count;
    }
    check(file->flush(), "a sealed file is flushed");
  }

  void expectPlain(const std::string& path) {
    const Sealed file = sealed(Directory::openFile(path, 0, true));
    std::string piece;
    inPieces([&](unsigned int at, unsigned int count) {
      piece.assign(count, '\0');
      check(file->read(data(piece), count) == count, "a sealed file gives all bytes");
      check(m_plain.compare(at, count, piece) == 0, "a sealed file gives what was written");
    });
    unsigned char more = 0;
    check(file->read(&more, 1) == 0, "a sealed file ends where the plain text does");
  }

  Random m_random;
  std::string m_path;
  std::string m_key;
  std::string m_iv;
  std::string m_plain;
};

}  // namespace

std::unique_ptr<Crew> makeFilesCrew(const std::string& directory, unsigned int seed) {
  return crewOf<FilesWorker>(directory, seed);
}

}  // namespace soak
