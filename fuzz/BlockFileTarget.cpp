// The encrypted file beside a plain model of it: results, bytes, positions and fields after every
// operation. The first byte picks the kinds of file, the others the operations.

#include <trelvo/CryptoFileLin.h>

#include "fuzz/Input.h"
#include "tests/crypto/BlockFile.h"
#include "tests/crypto/BlockFileModel.h"
#include "tests/crypto/MemoryDisk.h"
#include "tests/crypto/MemoryFile.h"

namespace trelvo::fuzz {

namespace {

using test::BlockFileModel;
using test::MemoryDisk;
using test::MemoryFile;
using FileHandle = gom::SharedPointer<core::IFile>;
using CryptoHandle = gom::SharedPointer<CryptoFileLin>;

constexpr unsigned int kMostBytes = 100000;
constexpr unsigned int kMostOperations = 64;
constexpr unsigned int kMostAtOnce = 4096;

/// Enough for any write, wherever in its first half that begins.
const Bytes& pattern() {
  static const Bytes bytes = [] {
    Bytes made;
    unsigned int number = 1;
    while (made.size() < 2ULL * kMostAtOnce) {
      number = number * 1664525 + 1013904223;
      made.push_back(static_cast<unsigned char>(number >> 24U));
    }
    return made;
  }();
  return bytes;
}

/// What the first byte says.
struct Kinds {
  explicit Kinds(unsigned int byte)
      : derived((byte & 1U) != 0),
        onDisk((byte & 2U) != 0),
        buffered((byte & 4U) != 0),
        endByPosition(!onDisk && (byte & 8U) != 0),
        base((byte & 16U) != 0 ? 130 : 0),
        content(base + (byte >> 5U) * 400, 0x5A) {}

  bool derived;
  bool onDisk;
  bool buffered;
  bool endByPosition;
  unsigned int base;
  Bytes content;
};

/// A block file and the model of it.
class Pair {
 public:
  explicit Pair(const Kinds& kinds)
      : m_disk(kinds.content),
        m_memory(new MemoryFile(kinds.content, kinds.endByPosition ? MemoryFile::End::ByPosition
                                                                   : MemoryFile::End::MetByRead)),
        m_onDisk(kinds.onDisk),
        m_file(kinds.onDisk ? m_disk.open(kinds.buffered) : FileHandle(m_memory.get())),
        m_model(kinds.content, kinds.base, kinds.endByPosition) {
    require(m_file->seekFromStart(kinds.base), "a file in memory can be sought");
    m_crypto = kinds.derived ? CryptoHandle(test::openDerived(m_file)) : test::openPlain(m_file);
  }

  void step(Input& input) {
    switch (input.byte() % 8) {
      case 0:
        return seekFromStart(input.word());
      case 1:
        return seekFromEnd(input.word());
      case 2:
        return require(m_crypto->flush() == m_model.flush(), "flush() is as the model's");
      case 3:
        return getSize();
      case 4:
      case 5:
        return read(input.word() % kMostAtOnce);
      default:
        return write(input.word() % kMostAtOnce);
    }
  }

  void compareStates() {
    require(test::stateOf(*m_crypto) == m_model.state, "the fields are the model's");
    require(m_crypto->offset() == m_model.offset(), "offset() is the model's");
    require(m_crypto->eof() == m_model.eof(), "eof() is the model's");
    require(m_crypto->canRead() == m_model.canRead(), "canRead() is the model's");
  }

  void compareFiles() {
    require(m_file->flush(), "a file in memory can be flushed");
    require((m_onDisk ? m_disk.content : m_memory->content) == m_model.disk,
            "the bytes below are the model's");
  }

 private:
  void seekFromStart(unsigned int place) {
    place %= kMostBytes;
    require(m_crypto->seekFromStart(place) == m_model.seekFromStart(place),
            "seekFromStart() is as the model's");
  }

  void seekFromEnd(unsigned int distance) {
    require(m_crypto->seekFromEnd(distance) == m_model.seekFromEnd(distance),
            "seekFromEnd() is as the model's");
  }

  void getSize() {
    unsigned int size = 0;
    unsigned int expected = 0;
    require(m_crypto->getSize(size) == m_model.getSize(expected) && size == expected,
            "getSize() is as the model's");
  }

  void read(unsigned int count) {
    require(test::readBytes(*m_crypto, count) == m_model.read(count), "read() is as the model's");
  }

  void write(unsigned int count) {
    const Bytes& all = pattern();
    m_written = (m_written + 251) % kMostAtOnce;
    const Bytes source = test::slice(all, m_written, m_written + count);
    require(m_crypto->write(source.data(), count) == m_model.write(source),
            "write() is as the model's");
  }

  MemoryDisk m_disk;
  gom::SharedPointer<MemoryFile> m_memory;
  bool m_onDisk;
  FileHandle m_file;
  CryptoHandle m_crypto;
  BlockFileModel m_model;
  unsigned int m_written = 0;  ///< Where in the pattern the last write began.
};

}  // namespace

void run(const Bytes& bytes) {
  Input input(bytes);
  Pair pair{Kinds(input.byte())};
  for (unsigned int i = 0; i < kMostOperations && !input.atEnd(); ++i) {
    pair.step(input);
    pair.compareStates();
  }
  pair.compareFiles();
}

}  // namespace trelvo::fuzz
