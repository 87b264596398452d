#include <fcntl.h>
#include <gtest/gtest.h>
#include <trelvo/CryptoFileLin.h>
#include <trelvo/ICryptographyUtility.h>
#include <trelvo/core/Directory.h>
#include <unistd.h>

#include <algorithm>
#include <new>
#include <thread>

#include "tests/core/TempDirectory.h"
#include "tests/crypto/BlockFile.h"
#include "tests/crypto/MemoryDisk.h"
#include "tests/crypto/MemoryFile.h"

namespace trelvo::test {
namespace {

const std::string kGolden = TRELVO_TEST_DATA "/crypto/golden/";

gom::SharedPointer<MemoryFile> memoryFile(Bytes content = {}) {
  return new MemoryFile(std::move(content));
}

/// A file of `size` plain bytes, stored.
gom::SharedPointer<MemoryFile> storedFile(unsigned int size) {
  return memoryFile(enciphered(plainBytes(size)));
}

TEST(CryptoFile, Writing1000BytesStoresTheGoldenBytes) {
  const auto file = memoryFile();
  EXPECT_TRUE(writeBytes(*openPlain(file), plainBytes(1000)));
  EXPECT_EQ(file->content.size(), 1000U);
  EXPECT_EQ(file->content, bytesOfFile(kGolden + "block_file_1000.bin"));
}

TEST(CryptoFile, RunsStoreAndReadTheGoldenBytesBehind130Others) {
  const Bytes golden = bytesOfFile(kGolden + "block_file_5000_at_130.bin");
  MemoryDisk disk(Bytes(130, '#'));
  {
    const gom::SharedPointer<core::IFile> file = disk.open(true);
    ASSERT_TRUE(file->seekFromEnd(0));
    EXPECT_TRUE(writeBytes(*openPlain(file), plainBytes(5000)));
  }
  EXPECT_EQ(disk.content, golden);

  const gom::SharedPointer<core::IFile> file = disk.open(true);
  ASSERT_TRUE(file->seekFromStart(130));
  EXPECT_EQ(readBytes(*openPlain(file), 6000), plainBytes(5000));
}

TEST(CryptoFile, LogicalOffset0IsWhereTheFileStood) {
  const auto file = memoryFile(bytesOfFile(kGolden + "block_file_5000_at_130.bin"));
  ASSERT_TRUE(file->seekFromStart(130));
  const auto crypto = openPlain(file);
  EXPECT_EQ(crypto->offset(), 0U);
  ASSERT_TRUE(crypto->seekFromStart(0));
  EXPECT_EQ(file->position, 130U);
  ASSERT_TRUE(crypto->seekFromStart(700));
  EXPECT_EQ(readBytes(*crypto, 100), slice(plainBytes(5000), 700, 800));
}

TEST(CryptoFile, GetSizeCountsWhatStandsAhead) {
  const auto file = memoryFile(Bytes(130, '#'));
  ASSERT_TRUE(file->seekFromEnd(0));
  const auto crypto = openPlain(file);
  ASSERT_TRUE(writeBytes(*crypto, plainBytes(1000)));
  unsigned int size = 0;
  EXPECT_TRUE(crypto->getSize(size));
  EXPECT_EQ(size, 1130U);
}

TEST(CryptoFile, GetSizeGoesOnAfterAFailedFlush) {
  const auto file = memoryFile(Bytes(130, '#'));
  const auto crypto = openPlain(file);
  ASSERT_TRUE(writeBytes(*crypto, plainBytes(10)));
  file->fail(MemoryFile::Call::Write, 0, true);
  unsigned int size = 0;
  EXPECT_TRUE(crypto->getSize(size));
  EXPECT_EQ(size, 130U);
}

TEST(CryptoFile, EqualBlocksAreStoredDifferently) {
  const auto file = memoryFile();
  ASSERT_TRUE(writeBytes(*openPlain(file), Bytes(1024, 'a')));
  EXPECT_NE(slice(file->content, 0, 512), slice(file->content, 512, 1024));
}

TEST(CryptoFile, TheSameTextAtTheSamePlaceIsStoredTheSame) {
  const auto file = storedFile(1000);
  const Bytes before = file->content;
  const auto crypto = openPlain(file);
  ASSERT_TRUE(crypto->seekFromStart(512));
  ASSERT_TRUE(writeBytes(*crypto, slice(plainBytes(1000), 512, 1000)));
  ASSERT_TRUE(crypto->flush());
  EXPECT_EQ(file->content, before);
}

TEST(CryptoFile, WritingAcrossTwoBlocksKeepsTheirOtherBytes) {
  const auto file = storedFile(1000);
  {
    const auto crypto = openPlain(file);
    ASSERT_TRUE(crypto->seekFromStart(500));
    ASSERT_TRUE(writeBytes(*crypto, bytes("30 31 32 33 34 35 36 37 38 39")));
  }
  Bytes expected = plainBytes(1000);
  std::copy_n("0123456789", 10, expected.begin() + 500);
  EXPECT_EQ(file->content, enciphered(expected));
}

TEST(CryptoFile, CannotReadFromAWriteToTheNextSeekButReadsAllTheSame) {
  const auto crypto = openPlain(storedFile(1000));
  EXPECT_TRUE(crypto->canRead());
  ASSERT_TRUE(writeBytes(*crypto, bytes("61 62 63")));
  EXPECT_FALSE(crypto->canRead());
  EXPECT_TRUE(crypto->canWrite());
  EXPECT_EQ(readBytes(*crypto, 100), slice(plainBytes(1000), 3, 103));
  EXPECT_FALSE(crypto->canRead());
  ASSERT_TRUE(crypto->seekFromStart(0));
  EXPECT_TRUE(crypto->canRead());
}

TEST(CryptoFile, ReadingPastTheBlockBeingWrittenDropsItsChanges) {
  const auto file = storedFile(1000);
  const Bytes before = file->content;
  {
    const auto crypto = openPlain(file);
    ASSERT_TRUE(writeBytes(*crypto, bytes("61 62 63")));
    EXPECT_EQ(readBytes(*crypto, 600),
              joined({slice(plainBytes(1000), 3, 512), slice(plainBytes(1000), 0, 91)}));
  }
  EXPECT_EQ(file->content, before);
}

TEST(CryptoFile, WritingNothingLoadsTheBlockAndBeginsWriting) {
  const auto crypto = openPlain(storedFile(1000));
  EXPECT_EQ(crypto->write(nullptr, 0), 0U);
  const BlockState state = stateOf(*crypto);
  EXPECT_EQ(state.mode, 2U);
  EXPECT_EQ(state.validBytes, 512U);
  EXPECT_EQ(state.buffer, plainBytes(512));
  EXPECT_FALSE(state.dirty);
  EXPECT_FALSE(crypto->canRead());
}

TEST(CryptoFile, TwoFlushesWriteTheBlockTwiceWithTheSameBytes) {
  const auto file = memoryFile();
  const auto crypto = openPlain(file);
  ASSERT_TRUE(writeBytes(*crypto, plainBytes(100)));
  EXPECT_EQ(file->writes, 0U);
  EXPECT_TRUE(crypto->flush());
  EXPECT_EQ(file->writes, 1U);
  EXPECT_EQ(file->content, enciphered(plainBytes(100)));
  EXPECT_TRUE(crypto->flush());
  EXPECT_EQ(file->writes, 2U);
  EXPECT_EQ(file->content, enciphered(plainBytes(100)));
  EXPECT_TRUE(stateOf(*crypto).dirty);
  ASSERT_TRUE(writeBytes(*crypto, slice(plainBytes(200), 100, 200)));
  EXPECT_TRUE(crypto->seekFromStart(0));
  EXPECT_EQ(file->content, enciphered(plainBytes(200)));
}

TEST(CryptoFile, FlushWithoutChangesOnlyFlushesTheFile) {
  const auto file = storedFile(1000);
  const auto crypto = openPlain(file);
  readBytes(*crypto, 10);
  EXPECT_TRUE(crypto->flush());
  EXPECT_EQ(file->writes, 0U);
  file->fail(MemoryFile::Call::Flush, 0, true);
  EXPECT_FALSE(crypto->flush());
}

TEST(CryptoFile, OffsetIsThePlaceAfterASeekAndWhileWritingAndTheBlocksEndWhileReading) {
  const auto crypto = openPlain(storedFile(1300));
  ASSERT_TRUE(crypto->seekFromStart(600));
  EXPECT_EQ(crypto->offset(), 600U);
  readBytes(*crypto, 10);
  EXPECT_EQ(crypto->offset(), 1024U);
  ASSERT_TRUE(crypto->seekFromStart(600));
  ASSERT_TRUE(writeBytes(*crypto, plainBytes(10)));
  EXPECT_EQ(crypto->offset(), 610U);
  ASSERT_TRUE(crypto->flush());
  EXPECT_EQ(crypto->offset(), 610U);
}

TEST(CryptoFile, Mode1IsRespectedWhereASubclassSetsIt) {
  struct Reading : CryptoFileLin {
    using CryptoFileLin::CryptoFileLin;
    void enter() { m_mode = ModeReading; }
  };
  const gom::SharedPointer<Reading> crypto =
      new Reading(storedFile(1300), testKey().data(), testIv().data());
  readBytes(*crypto, 600);
  crypto->enter();
  EXPECT_EQ(crypto->offset(), 600U);
  EXPECT_FALSE(crypto->canWrite());
  EXPECT_TRUE(crypto->canRead());
}

TEST(CryptoFile, SeekFromEndGoesBack) {
  const auto crypto = openPlain(storedFile(1300));
  ASSERT_TRUE(crypto->seekFromEnd(100));
  EXPECT_EQ(crypto->offset(), 1200U);
  EXPECT_EQ(readBytes(*crypto, 200), slice(plainBytes(1300), 1200, 1300));
  ASSERT_TRUE(crypto->seekFromEnd(1300));
  EXPECT_EQ(crypto->offset(), 0U);
  EXPECT_FALSE(crypto->seekFromEnd(1301));
}

TEST(CryptoFile, SeekFromEndCountsAPlaceThatAnEarlierSeekLeft) {
  const auto crypto = openPlain(storedFile(1300));
  ASSERT_TRUE(crypto->seekFromStart(700));  // 188 bytes into its block
  ASSERT_TRUE(crypto->seekFromEnd(100));
  EXPECT_EQ(crypto->offset(), 1388U);
  ASSERT_TRUE(crypto->seekFromStart(700));
  EXPECT_TRUE(crypto->seekFromEnd(1488));
  EXPECT_EQ(crypto->offset(), 0U);
  ASSERT_TRUE(crypto->seekFromStart(700));
  EXPECT_FALSE(crypto->seekFromEnd(1489));
}

TEST(CryptoFile, WritingAfterReadingToTheEndGoesOnThereWithTheBlocksFirstKeyStream) {
  const auto file = storedFile(1000);
  {
    const auto crypto = openPlain(file);
    EXPECT_EQ(readBytes(*crypto, 2000).size(), 1000U);
    ASSERT_TRUE(writeBytes(*crypto, bytes("00 00 00")));
  }
  EXPECT_EQ(file->content, joined({enciphered(plainBytes(1000)), slice(keyStream(1), 0, 3)}));
}

TEST(CryptoFile, APlaceBehindTheEndOfItsBlockHasNothingToRead) {
  const auto crypto = openPlain(storedFile(100));
  ASSERT_TRUE(crypto->seekFromStart(300));
  EXPECT_TRUE(readBytes(*crypto, 10).empty());
  EXPECT_EQ(stateOf(*crypto).validBytes, 100U);
  EXPECT_EQ(stateOf(*crypto).position, 300U);
}

TEST(CryptoFile, WritingBehindTheEndOfItsBlockFillsItUpWithZeros) {
  const auto file = storedFile(100);
  {
    const auto crypto = openPlain(file);
    ASSERT_TRUE(crypto->seekFromStart(300));
    ASSERT_TRUE(writeBytes(*crypto, bytes("61")));
  }
  EXPECT_EQ(file->content, enciphered(joined({plainBytes(100), Bytes(200, 0), bytes("61")})));
}

TEST(CryptoFile, AFileThatGivesNothingAndIsNotAtItsEndEndsTheRead) {
  const auto file = storedFile(1300);
  const auto crypto = openPlain(file);
  file->fail(MemoryFile::Call::Read, 1, false);
  EXPECT_EQ(readBytes(*crypto, 1300), plainBytes(512));
  EXPECT_FALSE(crypto->eof());
}

TEST(CryptoFile, ForwardsWhatTheFileSays) {
  const auto file = storedFile(10);
  const auto crypto = openPlain(file);
  EXPECT_TRUE(crypto->good() && crypto->canSeek() && crypto->canRead() && crypto->canWrite());
  EXPECT_FALSE(crypto->eof());
  readBytes(*crypto, 11);
  EXPECT_TRUE(crypto->eof());
  file->isGood = file->seekable = file->readable = file->writable = false;
  EXPECT_FALSE(crypto->good() || crypto->canSeek() || crypto->canRead() || crypto->canWrite());
}

TEST(CryptoFile, TheEndOfTheObjectWritesTheLastBlockAtItsTrueLength) {
  const auto file = memoryFile();
  {
    const auto crypto = openPlain(file);
    ASSERT_TRUE(writeBytes(*crypto, plainBytes(700)));
    EXPECT_EQ(file->content.size(), 512U);
  }
  EXPECT_EQ(file->content, enciphered(plainBytes(700)));
}

TEST(CryptoFile, AWrongKeyReadsAsNoise) {
  std::array<unsigned char, 16> key = testKey();
  key[0] ^= 1;
  const gom::SharedPointer<ICryptoFile> crypto =
      ICryptoFile::open(storedFile(100), key.data(), testIv().data());
  const Bytes noise = readBytes(*crypto, 100);
  EXPECT_EQ(noise.size(), 100U);
  EXPECT_NE(noise, plainBytes(100));
}

TEST(CryptoFile, OnlyTheFirst12BytesOfTheIvCount) {
  std::array<unsigned char, 16> iv = testIv();
  std::fill_n(iv.begin() + 12, 4, static_cast<unsigned char>(0x77));
  const gom::SharedPointer<ICryptoFile> crypto =
      ICryptoFile::open(storedFile(1000), testKey().data(), iv.data());
  EXPECT_EQ(readBytes(*crypto, 1000), plainBytes(1000));
}

TEST(CryptoFile, TheTailOfTheIvIsTheCounterOfTheBlockSeenLast) {
  const auto crypto = openPlain(storedFile(2000));
  EXPECT_EQ(slice(stateOf(*crypto).iv, 12, 16), bytes("fc fd fe ff"));
  ASSERT_TRUE(crypto->seekFromStart(1030));
  readBytes(*crypto, 1);
  EXPECT_EQ(slice(stateOf(*crypto).iv, 12, 16), bytes("00 00 00 40"));
  EXPECT_EQ(slice(stateOf(*crypto).iv, 0, 12), bytes("f0 f1 f2 f3 f4 f5 f6 f7 f8 f9 fa fb"));
}

TEST(CryptoFile, BlocksThatAreEmptyOrMissingAreRefused) {
  const auto crypto = openDerived(memoryFile());
  unsigned char out[512];
  unsigned int size = 7;
  EXPECT_EQ(crypto->encryptBlock(3, out, size), StatusInvalidParameter);
  EXPECT_EQ(size, 7U);
  EXPECT_EQ(slice(stateOf(*crypto).iv, 12, 16), bytes("00 00 00 60"));
  EXPECT_EQ(crypto->decryptBlock(0, nullptr, 5), StatusInvalidParameter);
  EXPECT_EQ(crypto->decryptBlock(0, out, 0), StatusInvalidParameter);
  EXPECT_EQ(crypto->decryptBlock(0, out, 513), StatusInvalidParameter);
}

TEST(CryptoFile, TheCounterStartsAgainWhereTheOffsetWraps) {
  const auto crypto = openDerived(memoryFile());
  const Bytes zeros(512);
  ASSERT_EQ(crypto->decryptBlock((1U << 23) - 1, zeros.data(), 512), StatusOk);
  EXPECT_EQ(slice(stateOf(*crypto).iv, 12, 16), bytes("0f ff ff e0"));
  EXPECT_EQ(stateOf(*crypto).buffer, keyStream((1U << 23) - 1));
  ASSERT_EQ(crypto->decryptBlock(1U << 23, zeros.data(), 512), StatusOk);
  EXPECT_EQ(slice(stateOf(*crypto).iv, 12, 16), bytes("00 00 00 00"));
  EXPECT_EQ(stateOf(*crypto).buffer, keyStream(0));
}

TEST(CryptoFile, EveryBlockOfADerivedClassGoesThroughItsVirtualFunctions) {
  MemoryDisk disk;
  const auto crypto = openDerived(disk.open(true));
  ASSERT_TRUE(writeBytes(*crypto, plainBytes(5120)));
  ASSERT_TRUE(crypto->seekFromStart(0));
  EXPECT_EQ(crypto->encrypted, 10U);
  EXPECT_EQ(readBytes(*crypto, 5120), plainBytes(5120));
  EXPECT_EQ(crypto->decrypted, 10U);
}

TEST(CryptoFile, AFailureOfTheCipherEndsTheOperation) {
  const auto crypto = openDerived(storedFile(1300));
  crypto->answer = StatusFailed;
  EXPECT_TRUE(readBytes(*crypto, 10).empty());
  ASSERT_TRUE(crypto->seekFromStart(0));
  EXPECT_FALSE(writeBytes(*crypto, plainBytes(10)));
  crypto->answer = StatusOk;
  ASSERT_TRUE(crypto->seekFromStart(0));
  ASSERT_TRUE(writeBytes(*crypto, plainBytes(10)));
  crypto->answer = StatusFailed;
  EXPECT_FALSE(crypto->flush());
  EXPECT_FALSE(crypto->seekFromStart(0));
  EXPECT_EQ(crypto->write(plainBytes(600).data(), 600), 502U);
}

TEST(CryptoFile, ALargeWriteReachesTheFileInFewPieces) {
  MemoryDisk disk;
  const auto crypto = openPlain(disk.open(false));
  ASSERT_TRUE(writeBytes(*crypto, plainBytes(65536)));
  ASSERT_TRUE(crypto->flush());
  EXPECT_LE(disk.writes, 6U);
  EXPECT_EQ(disk.content, enciphered(plainBytes(65536)));
}

TEST(CryptoFile, AppendingLoadsNothing) {
  MemoryDisk disk;
  const auto crypto = openPlain(disk.open(false));
  ASSERT_TRUE(writeBytes(*crypto, plainBytes(10)));
  disk.reads = 0;
  for (unsigned int i = 0; i < 100; ++i) {
    ASSERT_TRUE(writeBytes(*crypto, plainBytes(500)));
  }
  EXPECT_EQ(disk.reads, 0U);
}

TEST(CryptoFile, ASeekForgetsWhereTheFileEnded) {
  MemoryDisk disk;
  const auto crypto = openPlain(disk.open(false));
  ASSERT_TRUE(writeBytes(*crypto, plainBytes(10)));
  ASSERT_TRUE(crypto->flush());
  disk.content = enciphered(plainBytes(1000));  // somebody else's doing
  ASSERT_TRUE(crypto->seekFromStart(600));
  ASSERT_TRUE(writeBytes(*crypto, bytes("61")));
  EXPECT_EQ(readBytes(*crypto, 10), slice(plainBytes(1000), 601, 611));
}

/// Writes and reads around 4 GiB of a file with a hole; gives what is stored there and at the
/// start.
Bytes aroundTheWrap(const std::string& path, bool derived) {
  constexpr unsigned int kAhead = 2048;
  {
    const gom::SharedPointer<core::IFile> file = core::Directory::createFile(path, 0);
    const gom::SharedPointer<CryptoFileLin> crypto =
        derived ? gom::SharedPointer<CryptoFileLin>(openDerived(file)) : openPlain(file);
    EXPECT_TRUE(crypto->seekFromStart(0U - kAhead));
    EXPECT_TRUE(writeBytes(*crypto, plainBytes(8192)));
    EXPECT_TRUE(crypto->seekFromStart(0U - kAhead));
    EXPECT_EQ(readBytes(*crypto, kAhead), plainBytes(kAhead));
  }
  Bytes stored(16384);
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  EXPECT_EQ(::pread(descriptor, stored.data(), 8192, 0), 8192);
  const ssize_t behind = ::pread(descriptor, stored.data() + 8192, 8192, (off_t{1} << 32) - kAhead);
  EXPECT_GE(behind, ssize_t{kAhead});
  stored.resize(8192 + static_cast<std::size_t>(std::max<ssize_t>(behind, 0)));
  ::close(descriptor);
  return stored;
}

TEST(CryptoFile, RunsPass4GiBAsBlockByBlock) {
  const TempDirectory directory;
  EXPECT_EQ(aroundTheWrap(directory / "runs", false), aroundTheWrap(directory / "blocks", true));
}

bool contains(const unsigned char* storage, std::size_t size, const Bytes& wanted) {
  return std::search(storage, storage + size, wanted.begin(), wanted.end()) != storage + size;
}

TEST(CryptoFile, KeyIvAndPlainBytesAreWipedWhenItDies) {
  alignas(CryptoFileLin) static unsigned char storage[sizeof(CryptoFileLin)];
  const gom::SharedPointer<core::IFile> file = storedFile(1000);
  auto* const crypto = new (storage) CryptoFileLin(file, testKey().data(), testIv().data());
  const auto key = testKey();
  const Bytes keyBytes(key.begin(), key.end());
  const Bytes ivBytes = bytes("f0 f1 f2 f3 f4 f5 f6 f7 f8 f9 fa fb");
  readBytes(*crypto, 1);
  EXPECT_TRUE(contains(storage, sizeof storage, keyBytes));
  EXPECT_TRUE(contains(storage, sizeof storage, ivBytes));
  EXPECT_TRUE(contains(storage, sizeof storage, plainBytes(16)));
  crypto->~CryptoFileLin();
  EXPECT_FALSE(contains(storage, sizeof storage, keyBytes));
  EXPECT_FALSE(contains(storage, sizeof storage, ivBytes));
  EXPECT_FALSE(contains(storage, sizeof storage, plainBytes(16)));
}

/// A utility with the test key, or with none.
class FixedUtility : public ICryptographyUtility {
 public:
  explicit FixedUtility(bool hasKey) : m_hasKey(hasKey) {}
  Status decrypt(const unsigned char*, unsigned long, unsigned char*&, unsigned long&) override {
    return StatusNotSupported;
  }
  Status encrypt(const unsigned char*, unsigned long, unsigned char*&, unsigned long&) override {
    return StatusNotSupported;
  }
  bool freeMemory(unsigned char*) override { return true; }
  bool getKeyAndIv(unsigned char*& key, unsigned char*& iv) override {
    key = m_key.data();
    iv = m_iv.data();
    return m_hasKey;
  }

 private:
  bool m_hasKey;
  std::array<unsigned char, 16> m_key = testKey();
  std::array<unsigned char, 16> m_iv = testIv();
};

TEST(CryptoFile, OpenCopiesKeyAndIvOfTheUtility) {
  gom::SharedPointer<ICryptoFile> crypto;
  {
    FixedUtility utility(true);
    ICryptoFile* const opened = ICryptoFile::open(storedFile(1000), utility);
    ASSERT_NE(opened, nullptr);
    EXPECT_EQ(opened->referenceCount(), 0);
    crypto.reset(opened);
  }
  EXPECT_EQ(readBytes(*crypto, 1000), plainBytes(1000));
}

TEST(CryptoFile, OpenGivesNullWithoutFileOrKey) {
  FixedUtility utility(true);
  FixedUtility refusing(false);
  EXPECT_EQ(ICryptoFile::open(memoryFile(), refusing), nullptr);
  EXPECT_EQ(ICryptoFile::open({}, utility), nullptr);
  EXPECT_EQ(ICryptoFile::open(memoryFile(), nullptr, testIv().data()), nullptr);
  EXPECT_EQ(ICryptoFile::open(memoryFile(), testKey().data(), nullptr), nullptr);
}

TEST(CryptoFile, ThreadsHaveTheirOwn) {
  std::vector<std::thread> threads;
  for (unsigned int i = 0; i < 4; ++i) {
    threads.emplace_back([] {
      MemoryDisk disk;
      for (unsigned int round = 0; round < 20; ++round) {
        const auto crypto = openPlain(disk.open(true));
        EXPECT_TRUE(writeBytes(*crypto, plainBytes(20000)));
        EXPECT_TRUE(crypto->seekFromStart(0));
        EXPECT_EQ(readBytes(*crypto, 20000), plainBytes(20000));
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
}

}  // namespace
}  // namespace trelvo::test
