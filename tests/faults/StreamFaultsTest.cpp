// Plain files and encrypted ones over a disk that refuses to open, read, write, seek or flush.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <trelvo/core/Directory.h>

#include <filesystem>
#include <functional>
#include <string>

#include "tests/core/TempDirectory.h"
#include "tests/crypto/BlockFile.h"
#include "tests/support/SystemFaults.h"

namespace trelvo::test {
namespace {

constexpr unsigned int kSize = 5000;
constexpr unsigned int kEnd = 5700;

/// The file ahead of a run and, byte by byte different, what the run writes.
unsigned char before(std::size_t place) { return static_cast<unsigned char>(place * 7 + 3); }
unsigned char behind(std::size_t place) { return static_cast<unsigned char>(~before(place)); }

Bytes oldContent() {
  Bytes result(kSize);
  for (std::size_t i = 0; i < kSize; ++i) {
    result[i] = before(i);
  }
  return result;
}

/// Where the run below writes.
bool isRewritten(std::size_t place) {
  return (place >= 300 && place < 2500) || (place >= 4000 && place < 4010) || place >= kSize;
}

/// A stream in use, which notes whether it ever said that something went wrong.
class User {
 public:
  explicit User(IStream& stream) : m_stream(stream) {}

  bool allWentWell() const { return m_well; }

  bool seek(unsigned int place) { return note(m_stream.seekFromStart(place)); }
  bool seekFromEnd(unsigned int distance) { return note(m_stream.seekFromEnd(distance)); }
  bool flush() { return note(m_stream.flush()); }

  /// Takes bytes that follow `place` and checks them: fewer may come, but no others.
  void read(unsigned int place, unsigned int count, bool rewritten) {
    Bytes bytes(count);
    const unsigned int got = m_stream.read(bytes.data(), count);
    note(got == count);
    ASSERT_LE(got, count);
    for (unsigned int i = 0; i < got; ++i) {
      const unsigned char expected =
          rewritten && isRewritten(place + i) ? behind(place + i) : before(place + i);
      const bool known =
          bytes[i] == expected || (systemRun().failed && bytes[i] == before(place + i));
      ASSERT_TRUE(known) << "byte " << place + i << " read as " << int{bytes[i]};
    }
  }

  bool write(unsigned int place, unsigned int count) {
    Bytes bytes(count);
    for (unsigned int i = 0; i < count; ++i) {
      bytes[i] = behind(place + i);
    }
    const unsigned int taken = m_stream.write(bytes.data(), count);
    EXPECT_LE(taken, count);
    return note(taken == count);
  }

  void expectSize(unsigned int expected) {
    unsigned int size = 0;
    if (note(m_stream.getSize(size))) {
      EXPECT_TRUE(size == expected || (systemRun().failed && size >= kSize && size <= kEnd))
          << size;
    }
  }

 private:
  bool note(bool done) {
    m_well = m_well && done;
    return done;
  }

  IStream& m_stream;
  bool m_well = true;
};

/// Reads, rewrites within blocks and across them, looks again, and appends.
bool exercise(IStream& stream) {
  User user(stream);
  user.read(0, 1000, false);
  if (user.seek(300)) {
    user.write(300, 2200);
  }
  user.flush();
  if (user.seek(4000)) {
    user.write(4000, 10);
  }
  if (user.seek(0)) {
    user.read(0, 3000, true);
  }
  if (user.seek(0) && user.seekFromEnd(100)) {
    user.read(kSize - 100, 100, true);
  }
  if (user.seek(kSize) && user.write(kSize, 600)) {
    user.write(kSize + 600, 100);
  }
  user.flush();
  if (user.seek(0)) {
    user.expectSize(kEnd);
  }
  return user.allWentWell();
}

/// What lies in the file when all is over: every byte that was there is old or new. An append that
/// failed may have left a gap.
void expectOldOrNew(const Bytes& content) {
  ASSERT_GE(content.size(), kSize);
  ASSERT_LE(content.size(), kEnd);
  for (std::size_t i = 0; i < kSize; ++i) {
    const bool isNew = isRewritten(i) && content[i] == behind(i);
    ASSERT_TRUE(isNew || content[i] == before(i)) << "byte " << i;
  }
}

void expectAllNew(const Bytes& content) {
  ASSERT_EQ(content.size(), kEnd);
  for (std::size_t i = 0; i < content.size(); ++i) {
    ASSERT_EQ(content[i], isRewritten(i) ? behind(i) : before(i)) << "byte " << i;
  }
}

using Stream = gom::SharedPointer<core::IFile>;

/// A kind of stream over a file, and how its bytes are stored.
struct Subject {
  const char* name;
  /// Runs `use` with the stream over `file`, and drops it.
  std::function<void(const Stream& file, const std::function<void(IStream&)>& use)> over;
  bool encrypted;
};

Subject plain() {
  return {"File", [](const Stream& file, const auto& use) { use(*file); }, false};
}

/// By runs of blocks, and block by block.
Subject encrypted() {
  return {"CryptoFile", [](const Stream& file, const auto& use) { use(*openPlain(file)); }, true};
}
Subject blockByBlock() {
  return {"DerivedCryptoFile", [](const Stream& file, const auto& use) { use(*openDerived(file)); },
          true};
}

class StreamFaults : public ::testing::TestWithParam<Subject> {
 protected:
  static Bytes stored(const Bytes& content) {
    return GetParam().encrypted ? enciphered(content) : content;
  }

  /// Runs the exercise over a fresh file. @return whether no call told of a failure.
  bool run(unsigned int bufferSize) {
    {
      const SystemCallsSucceed preparing;
      putFile(m_path, stored(oldContent()));
    }
    const Stream file = core::Directory::openFile(m_path, bufferSize, false);
    bool well = false;
    if (file) {
      GetParam().over(file, [&well](IStream& stream) { well = exercise(stream); });
    }
    return well;
  }

  Bytes content() {
    const SystemCallsSucceed checking;
    if (std::filesystem::file_size(m_path) > 2 * kEnd) {
      return {};  // rather than bytes far beyond the end
    }
    return stored(bytesOfFile(m_path));  // the cipher is its own inverse
  }

  TempDirectory m_directory = TempDirectory::inMemory();
  std::string m_path = m_directory / "file";
};

TEST_P(StreamFaults, NoFailureIsLostAndNoneTouchesOtherBytes) {
  for (const unsigned int bufferSize : {0U, 16384U}) {
    const FailedCalls failed = everySystemCallFails([this, bufferSize] {
      bool well = run(bufferSize);
      const SystemRun outcome = systemRun();
      const Bytes left = content();
      expectOldOrNew(left);
      if (well) {
        expectAllNew(left);
      }
      EXPECT_TRUE(well || outcome.failed);
    });
    for (const char* const call : {"fopen", "read", "write", "lseek", "fflush"}) {
      EXPECT_GT(failed.count(call), 0U) << call;
    }
    EXPECT_EQ(failed.count("setvbuf"), bufferSize == 0 ? 0U : 1U);
  }
}

TEST_P(StreamFaults, ShortCountsGoUnseen) {
  for (const unsigned int bufferSize : {0U, 16384U}) {
    const FailedCalls shorter = everySystemCallComesUpShort([this, bufferSize] {
      EXPECT_TRUE(run(bufferSize));
      expectAllNew(content());
    });
    EXPECT_GT(shorter.at("read"), 3U);
    EXPECT_GE(shorter.at("write"), 3U);
  }
}

// The C library wants a seek between a read and a write.
TEST(FileFaults, AWriteBehindAReadIsInItsPlaceOrNowhere) {
  const TempDirectory directory = TempDirectory::inMemory();
  const std::string path = directory / "file";
  const FailedCalls failed = everySystemCallFails([&path] {
    {
      const SystemCallsSucceed preparing;
      writeFile(path, "abcdefghij");
    }
    bool well = false;
    {
      const Stream file = core::Directory::openFile(path, 0, false);
      unsigned char text[3] = {};
      well = file && file->read(text, 3) == 3 &&
             file->write(reinterpret_cast<const unsigned char*>("XYZ"), 3) == 3 && file->flush();
    }
    EXPECT_TRUE(well || systemRun().failed);
    const SystemCallsSucceed checking;
    const std::string content = fileContent(path);
    EXPECT_TRUE(content == "abcXYZghij" || (!well && content == "abcdefghij")) << content;
  });
  EXPECT_GE(failed.at("lseek"), 1U);
}

std::string nameOf(const ::testing::TestParamInfo<Subject>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(Each, StreamFaults,
                         ::testing::Values(plain(), encrypted(), blockByBlock()), nameOf);

}  // namespace
}  // namespace trelvo::test
