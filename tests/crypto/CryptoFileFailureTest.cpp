// Every call to the file below failing in turn, and room or content that ends at every place.

#include <gtest/gtest.h>

#include <functional>

#include "tests/crypto/BlockFile.h"
#include "tests/crypto/BlockFileModel.h"
#include "tests/crypto/MemoryDisk.h"
#include "tests/crypto/MemoryFile.h"

namespace trelvo::test {
namespace {

constexpr unsigned int kSize = 2000;

/// Writes, flushes, moves and reads. @return whether every call reported success.
bool exercise(ICryptoFile& crypto) {
  bool done = crypto.seekFromStart(300);
  done = writeBytes(crypto, slice(plainBytes(kSize), 300, 1800)) && done;
  done = crypto.flush() && done;
  done = writeBytes(crypto, slice(plainBytes(kSize), 1800, 1900)) && done;
  done = crypto.seekFromStart(0) && done;
  done = readBytes(crypto, kSize) == plainBytes(kSize) && done;
  done = crypto.seekFromStart(512) && done;
  done = crypto.seekFromEnd(100) && done;
  done = readBytes(crypto, 100) == slice(plainBytes(kSize), 1900, kSize) && done;
  done = crypto.seekFromStart(kSize) && done;
  done = writeBytes(crypto, bytes("61")) && done;
  return crypto.flush() && done;
}

/// Fails call after call of one kind. @return how many the exercise makes.
unsigned int failEach(MemoryFile::Call call, bool once,
                      const std::function<void(bool done, const MemoryFile& file)>& check) {
  for (unsigned int at = 0;; ++at) {
    SCOPED_TRACE(::testing::Message() << "call " << at);
    const gom::SharedPointer<MemoryFile> file = new MemoryFile(enciphered(plainBytes(kSize)));
    const gom::SharedPointer<ICryptoFile> crypto = openPlain(file);
    file->fail(call, at, once);
    const bool done = exercise(*crypto);
    if (!file->failed()) {
      EXPECT_TRUE(done);
      return at;
    }
    check(done, *file);
  }
}

/// No failure goes by unnoticed, and none touches bytes that were not written.
void expectTold(MemoryFile::Call call, unsigned int least) {
  for (const bool once : {true, false}) {
    EXPECT_GE(failEach(call, once, [](bool done, const MemoryFile&) { EXPECT_FALSE(done); }),
              least);
  }
}

TEST(CryptoFileFailure, EveryFailedWriteIsTold) { expectTold(MemoryFile::Call::Write, 5); }

TEST(CryptoFileFailure, EveryFailedSeekIsTold) { expectTold(MemoryFile::Call::Seek, 10); }

TEST(CryptoFileFailure, EveryFailedFlushIsTold) { expectTold(MemoryFile::Call::Flush, 2); }

TEST(CryptoFileFailure, AFailedReadComesUpShortAndKeepsTheFileItsLength) {
  for (const bool once : {true, false}) {
    failEach(MemoryFile::Call::Read, once, [](bool, const MemoryFile& file) {
      EXPECT_GE(file.content.size(), kSize);
      EXPECT_LE(file.content.size(), kSize + 1);
    });
  }
}

using Open =
    std::function<gom::SharedPointer<CryptoFileLin>(const gom::SharedPointer<core::IFile>&)>;

/// Rewrites and appends until the disk is full behind `room` bytes; holds all against the model.
void fillDisk(std::size_t room) {
  SCOPED_TRACE(::testing::Message() << "room for " << room);
  MemoryDisk disk(enciphered(plainBytes(kSize)));
  BlockFileModel model(disk.content, 0, false, static_cast<unsigned int>(room));
  const gom::SharedPointer<CryptoFileLin> crypto = openPlain(disk.open(false));
  disk.room = room;
  ASSERT_EQ(crypto->seekFromStart(100), model.seekFromStart(100));
  const Bytes source = plainBytes(140000);
  ASSERT_EQ(crypto->write(source.data(), 140000), model.write(source));
  EXPECT_EQ(stateOf(*crypto), model.state);
  EXPECT_EQ(crypto->offset(), model.offset());
  EXPECT_EQ(disk.content, model.disk);
  // One more attempt, and the way out.
  ASSERT_EQ(crypto->write(source.data(), 600), model.write(head(source, 600)));
  EXPECT_EQ(crypto->seekFromStart(0), model.seekFromStart(0));
  EXPECT_EQ(stateOf(*crypto), model.state);
}

TEST(CryptoFileFailure, AFullDiskEndsARunWhereItEndsBlockByBlock) {
  for (const int room : {0,     1,     511,   512,    513,    1024,   1100,   16383, 16384, 16385,
                         16895, 16896, 16897, 20000,  33000,  65535,  65536,  65947, 65948, 65949,
                         66459, 66460, 66461, 131072, 139000, 139424, 139425, 150000}) {
    fillDisk(static_cast<std::size_t>(room));
  }
}

/// What reading gives when the disk fails behind `given` bytes.
std::pair<Bytes, BlockState> readDamaged(const Open& open, std::size_t given) {
  MemoryDisk disk(enciphered(plainBytes(kSize)));
  const gom::SharedPointer<CryptoFileLin> crypto = open(disk.open(false));
  disk.given = given;
  Bytes result = readBytes(*crypto, 3000);
  return {result, stateOf(*crypto)};
}

TEST(CryptoFileFailure, AReadErrorEndsARunWhereItEndsBlockByBlock) {
  for (std::size_t given = 0; given <= kSize; given += given % 512 < 2 ? 1 : 15) {
    SCOPED_TRACE(::testing::Message() << "behind " << given);
    const auto runs = readDamaged(openPlain, given);
    const auto blocks = readDamaged(openDerived, given);
    EXPECT_EQ(runs.first, blocks.first);
    EXPECT_EQ(runs.first, plainBytes(static_cast<unsigned int>(given)));
    EXPECT_EQ(runs.second, blocks.second);
  }
}

}  // namespace
}  // namespace trelvo::test
