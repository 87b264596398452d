#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include <trelvo/core/Directory.h>
#include <trelvo/core/File.h>

#include "tests/core/FileLimit.h"
#include "tests/core/TempDirectory.h"

namespace trelvo::core {
namespace {

using test::fileContent;
using test::TempDirectory;
using test::writeFile;

using Handle = gom::SharedPointer<IFile>;

unsigned int put(IFile& file, const std::string& text) {
  return file.write(reinterpret_cast<const unsigned char*>(text.data()),
                    static_cast<unsigned int>(text.size()));
}

std::string get(IFile& file, unsigned int count) {
  std::string text(count, '\0');
  text.resize(file.read(reinterpret_cast<unsigned char*>(text.data()), count));
  return text;
}

// A file of twenty letters, open for reading and writing.
class TwentyLetters : public ::testing::Test {
 protected:
  static constexpr const char* kLetters = "abcdefghijklmnopqrst";

  void SetUp() override {
    writeFile(m_path, kLetters);
    m_file = Directory::openFile(m_path, 0, false);
    ASSERT_TRUE(m_file);
  }

  TempDirectory m_directory;
  std::string m_path = m_directory / "letters";
  Handle m_file;
};

/// Loses its place after the first look at it, which all ones tell.
class Lost : public File {
 public:
  explicit Lost(FILE* stream) : File(stream, FlagReadable | FlagSeekable) {}
  unsigned int offset() const override { return m_looked++ == 0 ? File::offset() : ~0U; }

 private:
  mutable int m_looked = 0;
};

TEST_F(TwentyLetters, HaveNoSizeWhereTheEndHasNoPosition) {
  Lost file(std::fopen(m_path.c_str(), "rb"));
  unsigned int size = 77;
  EXPECT_FALSE(file.getSize(size));
  EXPECT_EQ(size, 77U);
  EXPECT_EQ(get(*m_file, 3), "abc");
}

TEST(IFile, IsCountedAndAStream) {
  static_assert(std::is_base_of_v<gom::ReferenceCountable, IFile>);
  static_assert(std::is_base_of_v<IStream, IFile>);
  static_assert(std::is_base_of_v<IFile, File>);
  static_assert(!std::is_copy_constructible_v<File> && !std::is_copy_assignable_v<File>);
  const TempDirectory directory;
  EXPECT_EQ(Directory::createFile(directory / "new", 0)->referenceCount(), 1);
}

TEST_F(TwentyLetters, StartAtTheirStart) {
  EXPECT_TRUE(m_file->good());
  EXPECT_EQ(m_file->offset(), 0U);
  EXPECT_FALSE(m_file->eof());
  EXPECT_EQ(get(*m_file, 3), "abc");
  EXPECT_EQ(m_file->offset(), 3U);
}

TEST_F(TwentyLetters, SeekFromStartCountsBytes) {
  EXPECT_TRUE(m_file->seekFromStart(7));
  EXPECT_EQ(m_file->offset(), 7U);
  EXPECT_EQ(get(*m_file, 1), "h");
}

TEST_F(TwentyLetters, SeekFromEndCountsBackFromTheEnd) {
  EXPECT_TRUE(m_file->seekFromEnd(0));
  EXPECT_EQ(m_file->offset(), 20U);
  EXPECT_TRUE(m_file->seekFromEnd(10));
  EXPECT_EQ(m_file->offset(), 10U);
  EXPECT_EQ(get(*m_file, 2), "kl");
  EXPECT_TRUE(m_file->seekFromEnd(20));
  EXPECT_EQ(m_file->offset(), 0U);
}

TEST_F(TwentyLetters, SeekFromEndRefusesMoreThanThereIs) {
  ASSERT_TRUE(m_file->seekFromStart(5));
  for (const unsigned int distance : {21U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
    EXPECT_FALSE(m_file->seekFromEnd(distance)) << distance;
  }
  EXPECT_EQ(m_file->offset(), 5U);
  EXPECT_TRUE(m_file->good());
}

TEST_F(TwentyLetters, AWriteBehindTheEndLeavesAGapOfZeros) {
  EXPECT_TRUE(m_file->seekFromStart(22));
  EXPECT_EQ(put(*m_file, "!"), 1U);
  EXPECT_TRUE(m_file->flush());
  EXPECT_EQ(fileContent(m_path), std::string(kLetters) + std::string(2, '\0') + "!");
}

TEST_F(TwentyLetters, OnlyAReadThatMetTheEndMarksIt) {
  EXPECT_EQ(get(*m_file, 20), kLetters);
  EXPECT_FALSE(m_file->eof());
  EXPECT_EQ(get(*m_file, 1), "");
  EXPECT_TRUE(m_file->eof());
  EXPECT_TRUE(m_file->good());
  EXPECT_TRUE(m_file->seekFromStart(20));
  EXPECT_FALSE(m_file->eof());
}

TEST_F(TwentyLetters, AReadAcrossTheEndGivesWhatIsThere) {
  EXPECT_TRUE(m_file->seekFromStart(18));
  EXPECT_EQ(get(*m_file, 100), "st");
  EXPECT_TRUE(m_file->eof());
}

TEST_F(TwentyLetters, MovingNoBytesIsNoFailure) {
  EXPECT_EQ(m_file->read(nullptr, 0), 0U);
  EXPECT_EQ(m_file->write(nullptr, 0), 0U);
  EXPECT_TRUE(m_file->good());
  EXPECT_EQ(m_file->offset(), 0U);
}

TEST_F(TwentyLetters, GetSizeKeepsThePosition) {
  unsigned int size = 0;
  EXPECT_TRUE(m_file->seekFromStart(7));
  EXPECT_TRUE(m_file->getSize(size));
  EXPECT_EQ(size, 20U);
  EXPECT_EQ(m_file->offset(), 7U);
  EXPECT_EQ(get(*m_file, 1), "h");
}

TEST_F(TwentyLetters, GetSizeCountsWhatIsStillBuffered) {
  EXPECT_TRUE(m_file->seekFromEnd(0));
  EXPECT_EQ(put(*m_file, "uvwxyz"), 6U);
  unsigned int size = 0;
  EXPECT_TRUE(m_file->getSize(size));
  EXPECT_EQ(size, 26U);
}

TEST_F(TwentyLetters, WritingReplacesWhatIsThereAndFlushHandsItOn) {
  EXPECT_TRUE(m_file->seekFromStart(4));
  EXPECT_EQ(put(*m_file, "EFG"), 3U);
  EXPECT_TRUE(m_file->flush());
  EXPECT_EQ(fileContent(m_path), "abcdEFGhijklmnopqrst");
}

TEST_F(TwentyLetters, TheLastHandleWritesWhatIsBufferedAndCloses) {
  EXPECT_EQ(put(*m_file, "AB"), 2U);
  m_file.clear();
  EXPECT_EQ(fileContent(m_path), "ABcdefghijklmnopqrst");
}

TEST_F(TwentyLetters, OpenedForReadingOnlyTakeNoBytes) {
  const Handle file = Directory::openFile(m_path, 0, true);
  ASSERT_TRUE(file);
  EXPECT_TRUE(file->canSeek());
  EXPECT_TRUE(file->canRead());
  EXPECT_FALSE(file->canWrite());
  EXPECT_EQ(put(*file, "A"), 0U);
  EXPECT_FALSE(file->good());
  EXPECT_EQ(fileContent(m_path), kLetters);
}

TEST_F(TwentyLetters, OpenedForWritingCanDoAll) {
  EXPECT_TRUE(m_file->canSeek());
  EXPECT_TRUE(m_file->canRead());
  EXPECT_TRUE(m_file->canWrite());
}

TEST_F(TwentyLetters, ReadTheSameWithABufferOfAnySize) {
  for (const unsigned int bufferSize : {1U, 512U, 65536U, 0xFFFFFFFFU}) {
    const Handle file = Directory::openFile(m_path, bufferSize, true);
    ASSERT_TRUE(file) << bufferSize;
    EXPECT_EQ(get(*file, 30), kLetters) << bufferSize;
  }
}

TEST_F(TwentyLetters, ServeTheTypedHelpersOfTheStream) {
  EXPECT_TRUE(m_file->writeUint32(0x64636261));
  EXPECT_TRUE(m_file->seekFromStart(0));
  unsigned short value = 0;
  EXPECT_TRUE(m_file->readUint16(value));
  EXPECT_EQ(value, 0x6261);
  EXPECT_TRUE(m_file->seekFromEnd(1));
  EXPECT_FALSE(m_file->readUint16(value));
}

TEST(File, FlagsAreTheThreeBits) {
  static_assert(File::FlagSeekable == 1 && File::FlagReadable == 2 && File::FlagWritable == 4);
  for (unsigned int flags = 0; flags < 8; ++flags) {
    const File file(nullptr, flags);
    EXPECT_EQ(file.canSeek(), (flags & 1U) != 0) << flags;
    EXPECT_EQ(file.canRead(), (flags & 2U) != 0) << flags;
    EXPECT_EQ(file.canWrite(), (flags & 4U) != 0) << flags;
  }
}

TEST(File, WithoutAStreamMovesNothing) {
  File file(nullptr, 7);
  unsigned char byte = 0x5A;
  unsigned int size = 77;
  EXPECT_FALSE(file.good());
  EXPECT_FALSE(file.seekFromStart(0));
  EXPECT_FALSE(file.seekFromEnd(0));
  EXPECT_EQ(file.offset(), 0xFFFFFFFFU);
  EXPECT_TRUE(file.eof());
  EXPECT_FALSE(file.getSize(size));
  EXPECT_EQ(size, 77U);
  EXPECT_EQ(file.read(&byte, 1), 0U);
  EXPECT_EQ(file.write(&byte, 1), 0U);
  EXPECT_FALSE(file.flush());
  EXPECT_EQ(byte, 0x5A);
}

// A file whose positions are told by the test.
class ToldFile : public File {
 public:
  explicit ToldFile(FILE* stream) : File(stream, 7) {}
  MOCK_METHOD(bool, seekFromStart, (unsigned int), (override));
  MOCK_METHOD(bool, seekFromEnd, (unsigned int), (override));
  MOCK_METHOD(unsigned int, offset, (), (const, override));
};

TEST(File, GetSizeAsksTheVirtualOperationsInThisOrder) {
  ToldFile file(std::tmpfile());
  const ::testing::InSequence order;
  EXPECT_CALL(file, offset).WillOnce(::testing::Return(11));
  EXPECT_CALL(file, seekFromEnd(0)).WillOnce(::testing::Return(true));
  EXPECT_CALL(file, offset).WillOnce(::testing::Return(22));
  EXPECT_CALL(file, seekFromStart(11)).WillOnce(::testing::Return(false));
  unsigned int size = 0;
  EXPECT_TRUE(file.getSize(size));
  EXPECT_EQ(size, 22U);
}

TEST(File, GetSizeIsFalseAtOnceWhenTheEndCannotBeReached) {
  ToldFile file(std::tmpfile());
  EXPECT_CALL(file, offset).WillOnce(::testing::Return(11));
  EXPECT_CALL(file, seekFromEnd(0)).WillOnce(::testing::Return(false));
  EXPECT_CALL(file, seekFromStart).Times(0);
  unsigned int size = 77;
  EXPECT_FALSE(file.getSize(size));
  EXPECT_EQ(size, 77U);
}

TEST(File, APipeCannotBeSoughtAndHasNoSize) {
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  File reader(::fdopen(ends[0], "rb"), File::FlagReadable);
  File writer(::fdopen(ends[1], "wb"), File::FlagWritable);
  EXPECT_EQ(put(writer, "through"), 7U);
  EXPECT_TRUE(writer.flush());
  unsigned int size = 77;
  EXPECT_FALSE(reader.getSize(size));
  EXPECT_FALSE(reader.seekFromStart(1));
  EXPECT_FALSE(reader.seekFromEnd(0));
  EXPECT_EQ(reader.offset(), 0xFFFFFFFFU);
  EXPECT_EQ(size, 77U);
  EXPECT_EQ(get(reader, 7), "through");
}

TEST(File, ADirectoryOpenedForReadingIsNotGoodOnceRead) {
  const TempDirectory directory;
  EXPECT_FALSE(Directory::openFile(directory.path(), 0, false));
  const Handle file = Directory::openFile(directory.path(), 0, true);
  ASSERT_TRUE(file);
  EXPECT_EQ(get(*file, 1), "");
  EXPECT_FALSE(file->good());
  EXPECT_FALSE(file->eof());
}

// Does something at random to a file, and the same to a string, and compares.
class FileBesideString {
 public:
  explicit FileBesideString(IFile& file) : m_file(file) {}

  void step() {
    switch (below(5)) {
      case 0:
        return seek();
      case 1:
      case 2:
        return read(length());
      default:
        return write(length());
    }
  }
  const std::string& content() const { return m_content; }
  std::size_t position() const { return m_position; }

 private:
  unsigned int below(unsigned int limit) { return static_cast<unsigned int>(m_random() % limit); }

  // One in three is long: up to more than two of the stream's blocks.
  unsigned int length() { return below(below(3) == 0 ? 9000 : 40); }

  void seek() {
    m_position = m_content.empty() ? 0 : below(static_cast<unsigned int>(m_content.size()));
    EXPECT_TRUE(m_file.seekFromStart(static_cast<unsigned int>(m_position)));
  }
  void read(unsigned int count) {
    const std::string bytes = get(m_file, count);
    EXPECT_EQ(bytes, m_content.substr(m_position, count));
    m_position += bytes.size();
  }
  void write(unsigned int count) {
    const std::string bytes(count, static_cast<char>('a' + below(26)));
    EXPECT_EQ(put(m_file, bytes), count);
    m_content.replace(m_position, count, bytes);
    m_position += count;
  }

  IFile& m_file;
  std::string m_content;
  std::size_t m_position = 0;
  std::mt19937 m_random{4711};
};

TEST(File, ReadsAndWritesFollowEachOtherWithoutASeekBetween) {
  const TempDirectory directory;
  const Handle file = Directory::createFile(directory / "mixed", 0);
  ASSERT_TRUE(file);
  FileBesideString both(*file);
  for (unsigned int step = 0; step < 3000 && !HasFailure(); ++step) {
    SCOPED_TRACE(step);
    both.step();
    EXPECT_EQ(file->offset(), both.position());
  }
  EXPECT_TRUE(file->flush());
  EXPECT_EQ(fileContent(directory / "mixed"), both.content());
}

// A file of 5 GiB that takes up next to nothing: "edge" stands across the 4 GiB mark, "last" at its
// end, and zeros elsewhere.
class FiveGiB : public ::testing::Test {
 protected:
  static constexpr off_t kMark = off_t{1} << 32;
  static constexpr off_t kSize = off_t{5} << 30;

  void SetUp() override {
    const int descriptor = ::open(m_path.c_str(), O_RDWR | O_CREAT, 0600);
    ASSERT_GE(descriptor, 0);
    EXPECT_EQ(::pwrite(descriptor, "edge", 4, kMark - 2), 4);
    EXPECT_EQ(::pwrite(descriptor, "last", 4, kSize - 4), 4);
    ::close(descriptor);
    m_file = Directory::openFile(m_path, 0, false);
    ASSERT_TRUE(m_file);
  }

  std::string contentAt(off_t position, std::size_t count) const {
    std::string text(count, '?');
    const int descriptor = ::open(m_path.c_str(), O_RDONLY);
    EXPECT_EQ(::pread(descriptor, text.data(), count, position), static_cast<ssize_t>(count));
    ::close(descriptor);
    return text;
  }

  TempDirectory m_directory;
  std::string m_path = m_directory / "large";
  Handle m_file;
};

TEST_F(FiveGiB, AreReadAcrossTheMark) {
  EXPECT_TRUE(m_file->seekFromStart(0xFFFFFFFE));
  EXPECT_EQ(m_file->offset(), 0xFFFFFFFEU);
  EXPECT_EQ(get(*m_file, 4), "edge");
  EXPECT_EQ(m_file->offset(), 2U);  // the lower 32 bits
  EXPECT_EQ(get(*m_file, 2), std::string(2, '\0'));
}

TEST_F(FiveGiB, AreWrittenAcrossTheMark) {
  EXPECT_TRUE(m_file->seekFromStart(0xFFFFFFFF));
  EXPECT_EQ(put(*m_file, "DGE!"), 4U);
  EXPECT_TRUE(m_file->flush());
  EXPECT_EQ(contentAt(kMark - 2, 6), std::string("eDGE!") + '\0');
}

TEST_F(FiveGiB, CanBeSoughtFromTheEnd) {
  EXPECT_TRUE(m_file->seekFromEnd(4));
  EXPECT_EQ(get(*m_file, 5), "last");
  EXPECT_TRUE(m_file->eof());
  EXPECT_TRUE(m_file->seekFromEnd((1U << 30) + 2));
  EXPECT_EQ(get(*m_file, 4), "edge");
}

TEST_F(FiveGiB, GrowAtTheirEnd) {
  EXPECT_TRUE(m_file->seekFromEnd(0));
  EXPECT_EQ(put(*m_file, "more"), 4U);
  m_file.clear();
  EXPECT_EQ(contentAt(kSize - 4, 8), "lastmore");
}

TEST_F(FiveGiB, HaveASizeThatGetSizeRefuses) {
  EXPECT_TRUE(m_file->seekFromStart(0xFFFFFFFE));
  unsigned int size = 77;
  EXPECT_FALSE(m_file->getSize(size));
  EXPECT_EQ(size, 77U);
  EXPECT_EQ(get(*m_file, 4), "edge");
  EXPECT_FALSE(m_file->getSize(size));
  EXPECT_EQ(size, 77U);
  EXPECT_TRUE(m_file->good());
  // The position beyond the mark was kept too.
  EXPECT_EQ(put(*m_file, "!"), 1U);
  EXPECT_TRUE(m_file->flush());
  EXPECT_EQ(contentAt(kMark - 2, 5), "edge!");
}

TEST_F(FiveGiB, CutShortUnderAPositionBeyondTheMarkKeepThatPosition) {
  EXPECT_TRUE(m_file->seekFromEnd(0));
  ASSERT_EQ(::truncate(m_path.c_str(), 10), 0);
  unsigned int size = 77;
  EXPECT_FALSE(m_file->getSize(size));
  EXPECT_EQ(size, 77U);
  EXPECT_EQ(put(*m_file, "!"), 1U);
  m_file.clear();
  EXPECT_EQ(contentAt(kSize, 1), "!");
}

TEST(File, TheLargestSizeIsOneBelow4GiB) {
  const TempDirectory directory;
  const std::string path = directory / "large";
  writeFile(path, "");
  const Handle file = Directory::openFile(path, 0, true);
  ASSERT_TRUE(file);
  unsigned int size = 0;
  ASSERT_EQ(::truncate(path.c_str(), 0xFFFFFFFF), 0);
  EXPECT_TRUE(file->getSize(size));
  EXPECT_EQ(size, 0xFFFFFFFFU);
  EXPECT_EQ(file->offset(), 0U);
  ASSERT_EQ(::truncate(path.c_str(), 0x100000000), 0);
  EXPECT_FALSE(file->getSize(size));
}

TEST(File, AFullDiskShowsInLongWrites) {
  const Handle file = Directory::openFile("/dev/full", 0, false);
  ASSERT_TRUE(file);
  EXPECT_LT(put(*file, std::string(1 << 20, 'x')), 1U << 20);
  EXPECT_FALSE(file->good());
}

TEST(File, AFullDiskShowsInFlushAfterAShortWrite) {
  const Handle file = Directory::openFile("/dev/full", 0, false);
  ASSERT_TRUE(file);
  EXPECT_EQ(put(*file, "x"), 1U);
  EXPECT_TRUE(file->good());
  EXPECT_FALSE(file->flush());
  EXPECT_FALSE(file->good());
}

TEST(File, AWriteThatRunsIntoALimitComesUpShort) {
  const TempDirectory directory;
  const std::string path = directory / "limited";
  EXPECT_TRUE(test::withFileLimit(10000, [&] {
    const Handle file = Directory::createFile(path, 0);
    const bool start = put(*file, std::string(5000, 'x')) == 5000 && file->flush();
    return start && put(*file, std::string(100000, 'y')) < 100000 && !file->good();
  }));
  EXPECT_EQ(fileContent(path), std::string(5000, 'x') + std::string(5000, 'y'));
}

TEST(OpenCrtFile, TakesAnyModeOfFopen) {
  const TempDirectory directory;
  writeFile(directory / "log", "one ");
  {
    const Handle file = openCrtFile(directory / "log", "ab", 0, false);
    ASSERT_TRUE(file);
    EXPECT_EQ(put(*file, "two"), 3U);
  }
  EXPECT_EQ(fileContent(directory / "log"), "one two");
}

TEST(OpenCrtFile, SetsTheFlagsByItsLastArgumentAlone) {
  const TempDirectory directory;
  writeFile(directory / "file", "");
  const Handle reading = openCrtFile(directory / "file", "rb+", 0, true);
  ASSERT_TRUE(reading);
  EXPECT_FALSE(reading->canWrite());
  const Handle writing = openCrtFile(directory / "file", "rb", 0, false);
  ASSERT_TRUE(writing);
  EXPECT_TRUE(writing->canWrite());
}

TEST(OpenCrtFile, GivesAnEmptyHandleForWhatFopenRefuses) {
  const TempDirectory directory;
  EXPECT_FALSE(openCrtFile(directory / "missing", "rb", 0, true));
  EXPECT_FALSE(openCrtFile(directory / "missing", "no mode", 0, true));
  EXPECT_FALSE(openCrtFile(directory / "no/such/directory", "wb", 0, false));
  EXPECT_FALSE(openCrtFile("", "wb+", 0, false));
}

TEST(OpenCrtFile, WithABufferSizeBuffersDevicesFullyToo) {
  const Handle file = openCrtFile("/dev/full", "wb", 4096, false);
  ASSERT_TRUE(file);
  EXPECT_EQ(put(*file, "line\n"), 5U);
  EXPECT_TRUE(file->good());
  EXPECT_FALSE(file->flush());
}

}  // namespace
}  // namespace trelvo::core
