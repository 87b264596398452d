// Block files of all kinds against one that is told block by block: results, bytes, positions and
// fields after every call.

#include <gtest/gtest.h>
#include <trelvo/core/Directory.h>

#include <functional>
#include <random>
#include <string>

#include "tests/core/TempDirectory.h"
#include "tests/crypto/BlockFile.h"
#include "tests/crypto/BlockFileModel.h"
#include "tests/crypto/MemoryDisk.h"
#include "tests/crypto/MemoryFile.h"

namespace trelvo::test {
namespace {

constexpr unsigned int kOperations = 50000;
constexpr unsigned int kBase = 130;
constexpr unsigned int kMostBytes = 200000;

/// A block file, the file below it and how to look into that.
struct Subject {
  gom::SharedPointer<core::IFile> file;
  gom::SharedPointer<CryptoFileLin> crypto;
  std::function<Bytes()> content;
};

class Comparison {
 public:
  Comparison(Subject subject, BlockFileModel model, unsigned int seed)
      : m_subject(std::move(subject)), m_model(std::move(model)), m_random(seed) {}

  void run(unsigned int operations) {
    for (unsigned int i = 0; i < operations && !::testing::Test::HasFailure(); ++i) {
      SCOPED_TRACE(::testing::Message() << "operation " << i);
      step();
      compareStates();
      if (i % 64 == 0) {
        compareFiles();
      }
    }
    compareFiles();
  }

 private:
  unsigned int below(unsigned int end) {
    return std::uniform_int_distribution<unsigned int>(0, end - 1)(m_random);
  }

  /// Often about a block, sometimes many, now and then none.
  unsigned int someSize() {
    switch (below(8)) {
      case 0:
        return below(4);
      case 1:
        return 512 * below(5);
      case 2:
        return 512 * below(100) + below(2) * below(512);
      case 3:
        return 512 * (1 + below(40)) + below(3) - 1;
      default:
        return below(1500);
    }
  }

  void step() {
    if (m_model.disk.size() > kMostBytes) {
      return seekFromStart(below(kMostBytes / 2));
    }
    switch (below(16)) {
      case 0:
      case 1:
        return seekFromStart(below(2) * 512 * below(100) + below(3) * below(700));
      case 2:
        return seekFromEnd(below(2) * someSize());
      case 3:
      case 4:
        m_what = "flush";
        ASSERT_EQ(m_subject.crypto->flush(), m_model.flush());
        return;
      case 5:
        return getSize();
      case 6:
      case 7:
      case 8:
      case 9:
      case 10:
        return read(someSize());
      default:
        return write(someSize());
    }
  }

  void seekFromStart(unsigned int position) {
    m_what = "seekFromStart " + std::to_string(position);
    ASSERT_EQ(m_subject.crypto->seekFromStart(position), m_model.seekFromStart(position));
  }

  void seekFromEnd(unsigned int distance) {
    m_what = "seekFromEnd " + std::to_string(distance);
    ASSERT_EQ(m_subject.crypto->seekFromEnd(distance), m_model.seekFromEnd(distance));
  }

  void getSize() {
    m_what = "getSize";
    unsigned int size = 0;
    unsigned int expected = 0;
    ASSERT_EQ(m_subject.crypto->getSize(size), m_model.getSize(expected));
    ASSERT_EQ(size, expected);
  }

  void read(unsigned int count) {
    m_what = "read " + std::to_string(count);
    ASSERT_EQ(readBytes(*m_subject.crypto, count), m_model.read(count)) << m_what;
  }

  void write(unsigned int count) {
    m_what = "write " + std::to_string(count);
    Bytes source(count);
    for (unsigned char& byte : source) {
      byte = static_cast<unsigned char>(m_random());
    }
    ASSERT_EQ(m_subject.crypto->write(source.data(), count), m_model.write(source)) << m_what;
  }

  void compareStates() {
    ASSERT_EQ(stateOf(*m_subject.crypto), m_model.state) << m_what;
    ASSERT_EQ(m_subject.crypto->offset(), m_model.offset()) << m_what;
    ASSERT_EQ(m_subject.crypto->eof(), m_model.eof()) << m_what;
    ASSERT_EQ(m_subject.crypto->canRead(), m_model.canRead()) << m_what;
  }

  void compareFiles() {
    ASSERT_TRUE(m_subject.file->flush());
    ASSERT_TRUE(m_subject.content() == m_model.disk) << m_what;
  }

  Subject m_subject;
  BlockFileModel m_model;
  std::mt19937 m_random;
  std::string m_what;
};

const Bytes kStart(kBase + 3000, 0x5A);

using Open = gom::SharedPointer<CryptoFileLin> (*)(const gom::SharedPointer<core::IFile>&);

gom::SharedPointer<CryptoFileLin> openAsDerived(const gom::SharedPointer<core::IFile>& file) {
  return openDerived(file);
}

void compareOverDisk(Open open, unsigned int seed) {
  MemoryDisk disk(kStart);
  const gom::SharedPointer<core::IFile> file = disk.open(true);
  ASSERT_TRUE(file->seekFromStart(kBase));
  Comparison({file, open(file), [&disk] { return disk.content; }},
             BlockFileModel(kStart, kBase, false), seed)
      .run(kOperations);
}

void compareOverMemory(MemoryFile::End end, unsigned int seed) {
  const gom::SharedPointer<MemoryFile> file = new MemoryFile(kStart, end);
  ASSERT_TRUE(file->seekFromStart(kBase));
  Comparison({file, openPlain(file), [&file] { return file->content; }},
             BlockFileModel(kStart, kBase, end == MemoryFile::End::ByPosition), seed)
      .run(kOperations);
}

TEST(CryptoFileDifferential, RunsEndAsBlockByBlock) { compareOverDisk(openPlain, 1); }

TEST(CryptoFileDifferential, ADerivedClassGoesBlockByBlock) { compareOverDisk(openAsDerived, 2); }

TEST(CryptoFileDifferential, AFileOfAnotherClassGoesBlockByBlock) {
  compareOverMemory(MemoryFile::End::MetByRead, 3);
}

TEST(CryptoFileDifferential, AFileThatIsAtItsEndByPositionGoesBlockByBlock) {
  compareOverMemory(MemoryFile::End::ByPosition, 4);
}

TEST(CryptoFileDifferential, RunsOverAFileOfTheSystemEndAsBlockByBlock) {
  const TempDirectory directory;
  const std::string path = directory / "blocks";
  putFile(path, kStart);
  const gom::SharedPointer<core::IFile> file = core::Directory::openFile(path, 0, false);
  ASSERT_TRUE(file->seekFromStart(kBase));
  Comparison({file, openPlain(file), [path] { return bytesOfFile(path); }},
             BlockFileModel(kStart, kBase, false), 5)
      .run(1000);
}

}  // namespace
}  // namespace trelvo::test
