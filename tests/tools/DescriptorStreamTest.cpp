#include "tools/trelvo/DescriptorStream.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <numeric>
#include <string>
#include <thread>
#include <vector>

#include "tools/trelvo/DescriptorBuffer.h"

namespace trelvo::tool {
namespace {

using Bytes = std::vector<unsigned char>;

Bytes numbered(std::size_t count) {
  Bytes bytes(count);
  for (std::size_t i = 0; i < count; ++i) {
    bytes[i] = static_cast<unsigned char>(i * 31 + i / 256);
  }
  return bytes;
}

/// A file without a name, open for both directions.
UniqueFd temporaryFile(const Bytes& content = {}) {
  char name[] = "/tmp/trelvo-test-XXXXXX";
  UniqueFd file(::mkstemp(name));
  ::unlink(name);
  EXPECT_EQ(::write(file.get(), content.data(), content.size()),
            static_cast<ssize_t>(content.size()));
  ::lseek(file.get(), 0, SEEK_SET);
  return file;
}

struct Pipe {
  UniqueFd readEnd;
  UniqueFd writeEnd;

  Pipe() {
    int ends[2] = {-1, -1};
    EXPECT_EQ(::pipe(ends), 0);
    readEnd = UniqueFd(ends[0]);
    writeEnd = UniqueFd(ends[1]);
  }
};

Bytes readAll(DescriptorStream& stream, unsigned int step) {
  Bytes all;
  Bytes part(step);
  for (;;) {
    const unsigned int got = stream.read(part.data(), step);
    all.insert(all.end(), part.begin(), part.begin() + got);
    if (got < step) {
      return all;
    }
  }
}

TEST(DescriptorStream, ReadSomeWaitsForTheFirstByteOnly) {
  Pipe pipe;
  DescriptorStream stream(pipe.readEnd.get());
  Bytes part(10);
  ASSERT_EQ(::write(pipe.writeEnd.get(), "abc", 3), 3);
  EXPECT_EQ(stream.readSome(part.data(), 2), 2U);
  EXPECT_EQ(stream.readSome(part.data(), 10), 1U);
  EXPECT_EQ(part[0], 'c');
  pipe.writeEnd.close();
  EXPECT_EQ(stream.readSome(part.data(), 10), 0U);
  EXPECT_EQ(stream.position(), 3U);
}

TEST(DescriptorStream, ReadsAFileInPiecesOfAnySize) {
  const Bytes content = numbered(200000);
  for (const unsigned int step : {1u, 7u, 4096u, 65536u, 65537u, 199999u, 300000u}) {
    DescriptorStream stream(temporaryFile(content));
    EXPECT_EQ(readAll(stream, step), content) << step;
    EXPECT_TRUE(stream.eof());
    EXPECT_TRUE(stream.good());
    EXPECT_EQ(stream.position(), content.size());
  }
}

TEST(DescriptorStream, WritesAFileInPiecesOfAnySize) {
  const Bytes content = numbered(200000);
  for (const std::size_t step : {1u, 7u, 4096u, 65536u, 65537u, 200000u}) {
    UniqueFd file = temporaryFile();
    {
      DescriptorStream stream(file.get());
      for (std::size_t i = 0; i < content.size(); i += step) {
        const auto count = static_cast<unsigned int>(std::min(step, content.size() - i));
        ASSERT_EQ(stream.write(content.data() + i, count), count);
      }
      EXPECT_EQ(stream.offset(), content.size());
    }
    ::lseek(file.get(), 0, SEEK_SET);
    DescriptorStream back(file.get());
    EXPECT_EQ(readAll(back, 1000), content) << step;
  }
}

TEST(DescriptorStream, KnowsWhatItsDescriptorCanDo) {
  DescriptorStream file(temporaryFile());
  EXPECT_TRUE(file.canRead());
  EXPECT_TRUE(file.canWrite());
  EXPECT_TRUE(file.canSeek());
  Pipe pipe;
  DescriptorStream in(pipe.readEnd.get());
  DescriptorStream out(pipe.writeEnd.get());
  EXPECT_TRUE(in.canRead());
  EXPECT_FALSE(in.canWrite());
  EXPECT_FALSE(in.canSeek());
  EXPECT_FALSE(out.canRead());
  EXPECT_TRUE(out.canWrite());
  EXPECT_FALSE(out.canSeek());
}

TEST(DescriptorStream, RefusesTheDirectionItsDescriptorLacks) {
  Pipe pipe;
  DescriptorStream in(pipe.readEnd.get());
  DescriptorStream out(pipe.writeEnd.get());
  unsigned char byte = 1;
  EXPECT_EQ(in.write(&byte, 1), 0u);
  EXPECT_EQ(out.read(&byte, 1), 0u);
  EXPECT_TRUE(out.eof());
  EXPECT_TRUE(in.good());
  EXPECT_TRUE(out.good());
}

TEST(DescriptorStream, AClosedDescriptorIsNotGood) {
  DescriptorStream stream(-1);
  unsigned char byte = 1;
  EXPECT_FALSE(stream.good());
  EXPECT_EQ(stream.error(), EBADF);
  EXPECT_EQ(stream.read(&byte, 1), 0u);
  EXPECT_EQ(stream.write(&byte, 1), 0u);
  EXPECT_TRUE(stream.eof());
  EXPECT_FALSE(stream.flush());
}

TEST(DescriptorStream, PipesThatDeliverByteByByteGiveFullReads) {
  const Bytes content = numbered(5000);
  Pipe pipe;
  std::thread writer([&] {
    for (const unsigned char byte : content) {
      ASSERT_EQ(::write(pipe.writeEnd.get(), &byte, 1), 1);
    }
    pipe.writeEnd = UniqueFd();
  });
  DescriptorStream stream(pipe.readEnd.get());
  Bytes got(5000);
  EXPECT_EQ(stream.read(got.data(), 5000), 5000u);
  writer.join();
  EXPECT_EQ(got, content);
  EXPECT_TRUE(stream.eof());
  EXPECT_EQ(stream.offset(), 5000u);
}

TEST(DescriptorStream, EofOnAPipeLooksAheadAndLosesNothing) {
  Pipe pipe;
  ASSERT_EQ(::write(pipe.writeEnd.get(), "ab", 2), 2);
  pipe.writeEnd = UniqueFd();
  DescriptorStream stream(pipe.readEnd.get());
  EXPECT_FALSE(stream.eof());
  EXPECT_EQ(stream.position(), 0u);
  unsigned char bytes[3] = {};
  EXPECT_EQ(stream.read(bytes, 3), 2u);
  EXPECT_EQ(bytes[1], 'b');
  EXPECT_TRUE(stream.eof());
}

TEST(DescriptorStream, SeeksFromBothEnds) {
  DescriptorStream stream(temporaryFile({10, 11, 12, 13, 14}));
  unsigned char byte = 0;
  EXPECT_TRUE(stream.seekFromStart(3));
  EXPECT_EQ(stream.offset(), 3u);
  EXPECT_TRUE(stream.readUint8(byte));
  EXPECT_EQ(byte, 13);
  EXPECT_TRUE(stream.seekFromEnd(5));
  EXPECT_TRUE(stream.readUint8(byte));
  EXPECT_EQ(byte, 10);
  EXPECT_TRUE(stream.seekFromEnd(0));
  EXPECT_TRUE(stream.eof());
  EXPECT_FALSE(stream.seekFromEnd(6));
  EXPECT_TRUE(stream.seekFromStart(0));
  EXPECT_FALSE(stream.eof());
}

TEST(DescriptorStream, PipesDoNotSeek) {
  Pipe pipe;
  DescriptorStream stream(pipe.readEnd.get());
  EXPECT_FALSE(stream.seekFromStart(0));
  EXPECT_FALSE(stream.seekFromEnd(0));
  EXPECT_TRUE(stream.good());
}

TEST(DescriptorStream, ReadingAndWritingShareThePosition) {
  UniqueFd file = temporaryFile({1, 2, 3, 4, 5, 6});
  DescriptorStream stream(file.get());
  unsigned char byte = 0;
  EXPECT_TRUE(stream.readUint8(byte));
  EXPECT_TRUE(stream.writeUint16(0x2221));
  EXPECT_TRUE(stream.readUint8(byte));
  EXPECT_EQ(byte, 4);
  EXPECT_EQ(stream.offset(), 4u);
  EXPECT_TRUE(stream.seekFromStart(0));
  EXPECT_EQ(readAll(stream, 16), (Bytes{1, 0x21, 0x22, 4, 5, 6}));
}

TEST(DescriptorStream, BothDirectionsOfASocketRunSideBySide) {
  int ends[2] = {-1, -1};
  ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
  DescriptorStream one{UniqueFd(ends[0])};
  DescriptorStream other{UniqueFd(ends[1])};
  unsigned int value = 0;
  EXPECT_TRUE(one.writeUint32(7));
  EXPECT_TRUE(one.writeUint32(8));
  EXPECT_TRUE(one.flush());
  EXPECT_TRUE(other.readUint32(value));
  EXPECT_TRUE(other.writeUint32(value + 100));
  EXPECT_TRUE(other.readUint32(value));
  EXPECT_EQ(value, 8u);
  EXPECT_TRUE(other.flush());
  EXPECT_TRUE(one.readUint32(value));
  EXPECT_EQ(value, 107u);
}

TEST(DescriptorStream, GetSizeCountsWhatWasWritten) {
  DescriptorStream stream(temporaryFile({1, 2, 3}));
  unsigned int size = 99;
  EXPECT_TRUE(stream.getSize(size));
  EXPECT_EQ(size, 3u);
  EXPECT_TRUE(stream.seekFromEnd(0));
  EXPECT_TRUE(stream.writeUint32(1));
  EXPECT_TRUE(stream.getSize(size));
  EXPECT_EQ(size, 7u);
}

TEST(DescriptorStream, GetSizeOfAPipeIsRefused) {
  Pipe pipe;
  DescriptorStream stream(pipe.readEnd.get());
  unsigned int size = 99;
  EXPECT_FALSE(stream.getSize(size));
  EXPECT_EQ(size, 99u);
  EXPECT_EQ(stream.size(), std::nullopt);
}

TEST(DescriptorStream, PositionsGoBeyond4GiB) {
  constexpr std::uint64_t kFar = (std::uint64_t{1} << 32) + 10;
  DescriptorStream stream(temporaryFile());
  ASSERT_TRUE(stream.seekTo(kFar));
  ASSERT_TRUE(stream.writeUint16(0x0201));
  ASSERT_TRUE(stream.flush());
  EXPECT_EQ(stream.position(), kFar + 2);
  EXPECT_EQ(stream.offset(), 0xFFFFFFFFu);
  EXPECT_EQ(stream.size(), kFar + 2);
  unsigned int size = 99;
  EXPECT_FALSE(stream.getSize(size));
  EXPECT_EQ(size, 99u);
  unsigned char byte = 0;
  ASSERT_TRUE(stream.seekTo(kFar + 1));
  EXPECT_TRUE(stream.readUint8(byte));
  EXPECT_EQ(byte, 2);
  EXPECT_TRUE(stream.eof());
}

TEST(DescriptorStream, BeginsWhereTheDescriptorStands) {
  UniqueFd file = temporaryFile({5, 6, 7});
  ::lseek(file.get(), 2, SEEK_SET);
  DescriptorStream stream(file.get());
  EXPECT_EQ(stream.position(), 2u);
  EXPECT_EQ(readAll(stream, 4), (Bytes{7}));
}

TEST(DescriptorStream, ABrokenPipeGivesShortCounts) {
  ::signal(SIGPIPE, SIG_IGN);
  Pipe pipe;
  pipe.readEnd = UniqueFd();
  DescriptorStream stream(pipe.writeEnd.get());
  EXPECT_TRUE(stream.writeUint32(1));
  EXPECT_FALSE(stream.flush());
  EXPECT_EQ(stream.error(), EPIPE);
  EXPECT_FALSE(stream.good());
  EXPECT_FALSE(stream.writeUint32(2));
  EXPECT_EQ(stream.position(), 0u);
}

TEST(DescriptorStream, AFullDeviceGivesShortCounts) {
  DescriptorStream stream(openForWriting("/dev/full"));
  const Bytes content = numbered(100000);
  EXPECT_LT(stream.write(content.data(), 100000), 100000u);
  EXPECT_EQ(stream.error(), ENOSPC);
  EXPECT_FALSE(stream.flush());
}

TEST(DescriptorStream, ADirectoryOpensButDoesNotRead) {
  DescriptorStream stream(openForReading("/tmp"));
  unsigned char byte = 0;
  EXPECT_TRUE(stream.good());
  EXPECT_EQ(stream.read(&byte, 1), 0u);
  EXPECT_EQ(stream.error(), EISDIR);
  EXPECT_TRUE(stream.eof());
}

TEST(DescriptorStream, WaitsForADescriptorInNonBlockingMode) {
  const Bytes content = numbered(300000);
  Pipe pipe;
  ASSERT_EQ(::fcntl(pipe.readEnd.get(), F_SETFL, O_NONBLOCK), 0);
  ASSERT_EQ(::fcntl(pipe.writeEnd.get(), F_SETFL, O_NONBLOCK), 0);
  std::thread writer([&] {
    DescriptorStream stream(std::move(pipe.writeEnd));
    EXPECT_EQ(stream.write(content.data(), 300000), 300000u);
  });
  DescriptorStream stream(pipe.readEnd.get());
  const Bytes got = readAll(stream, 300001);
  writer.join();
  EXPECT_EQ(got, content);
  EXPECT_TRUE(stream.good());
}

TEST(DescriptorStream, TellsTheListenerHowFarItHasCome) {
  DescriptorStream stream(temporaryFile(numbered(150000)));
  std::vector<std::uint64_t> positions;
  stream.onBlock([&](std::uint64_t position) { positions.push_back(position); });
  readAll(stream, 150001);
  EXPECT_EQ(positions, (std::vector<std::uint64_t>{65536, 131072, 150000, 150000}));
}

TEST(DescriptorStream, ABorrowedDescriptorStaysOpenAndAnOwnedOneIsClosed) {
  UniqueFd file = temporaryFile();
  const int owned = ::dup(file.get());
  { DescriptorStream borrowing(file.get()); }
  { DescriptorStream owning{UniqueFd(owned)}; }
  EXPECT_NE(::fcntl(file.get(), F_GETFD), -1);
  EXPECT_EQ(::fcntl(owned, F_GETFD), -1);
}

TEST(UniqueFd, MovesAndReleasesItsDescriptor) {
  UniqueFd first = temporaryFile();
  const int number = first.get();
  UniqueFd second = std::move(first);
  EXPECT_FALSE(first);
  EXPECT_EQ(second.get(), number);
  EXPECT_EQ(second.close(), 0);
  EXPECT_FALSE(second);
  EXPECT_EQ(second.close(), 0);
  EXPECT_EQ(::fcntl(number, F_GETFD), -1);
}

TEST(UniqueFd, OpeningWhatDoesNotExistGivesNone) {
  EXPECT_FALSE(openForReading("/nonexistent/file"));
  EXPECT_EQ(errno, ENOENT);
  EXPECT_FALSE(openForWriting("/nonexistent/file"));
}

TEST(DescriptorBuffer, CarriesAStreamOfText) {
  UniqueFd file = temporaryFile();
  DescriptorBuffer buffer(file.get());
  std::ostream out(&buffer);
  out << "one " << 2 << std::string(70000, 'x') << '\n' << std::flush;
  EXPECT_TRUE(out.good());
  ::lseek(file.get(), 0, SEEK_SET);
  DescriptorStream back(file.get());
  EXPECT_EQ(readAll(back, 100000).size(), 70006u);
  EXPECT_EQ(buffer.error(), 0);
}

TEST(DescriptorBuffer, TellsWhyWritingFailed) {
  UniqueFd file = openForWriting("/dev/full");
  DescriptorBuffer buffer(file.get());
  std::ostream out(&buffer);
  out << 'x' << std::flush;
  EXPECT_FALSE(out.good());
  EXPECT_EQ(buffer.error(), ENOSPC);
}

}  // namespace
}  // namespace trelvo::tool
