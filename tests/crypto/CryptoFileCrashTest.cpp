// Encrypted files that were cut off at every byte, and writers killed at random moments: every byte
// that is there reads as one that was written to its place.

#include <gtest/gtest.h>
#include <trelvo/core/Directory.h>

#include <algorithm>
#include <random>
#include <string>

#include "tests/core/TempDirectory.h"
#include "tests/crypto/BlockFile.h"
#include "tests/crypto/KilledWriter.h"
#include "tests/crypto/MemoryDisk.h"

namespace trelvo::test {
namespace {

using CryptoFile = gom::SharedPointer<ICryptoFile>;

CryptoFile over(const gom::SharedPointer<core::IFile>& file) {
  auto key = testKey();
  auto iv = testIv();
  return ICryptoFile::open(file, key.data(), iv.data());
}

// Three blocks and a part.
TEST(CryptoFileCrash, CutOffAnywhereItReadsAsTheBeginning) {
  constexpr unsigned int kSize = 1600;
  const Bytes whole = enciphered(plainBytes(kSize));
  for (unsigned int size = 0; size <= kSize; ++size) {
    MemoryDisk disk(head(whole, size));
    const CryptoFile crypto = over(disk.open(true));
    ASSERT_TRUE(crypto);
    unsigned int told = 0;
    ASSERT_TRUE(crypto->getSize(told));
    ASSERT_EQ(told, size);
    ASSERT_EQ(readBytes(*crypto, kSize), plainBytes(size));
    ASSERT_TRUE(crypto->eof());
    ASSERT_TRUE(crypto->good());
  }
}

TEST(CryptoFileCrash, CutOffAnywhereItCanBeWrittenToItsEndAgain) {
  constexpr unsigned int kSize = 1600;
  const Bytes whole = enciphered(plainBytes(kSize));
  for (unsigned int size = 0; size <= kSize; ++size) {
    MemoryDisk disk(head(whole, size));
    {
      const CryptoFile crypto = over(disk.open(true));
      ASSERT_TRUE(crypto->seekFromStart(size));
      ASSERT_TRUE(writeBytes(*crypto, slice(plainBytes(kSize), size, kSize)));
      ASSERT_TRUE(crypto->flush());
    }
    ASSERT_EQ(disk.content, whole) << size;
  }
}

/// What stands at `place` after `version` rewrites of the whole file.
unsigned char byteOf(unsigned int version, std::size_t place) {
  return static_cast<unsigned char>(version * 89 + place * 7 + place / 256);
}

Bytes bytesOf(unsigned int version, std::size_t first, std::size_t last) {
  Bytes result(last - first);
  for (std::size_t i = first; i < last; ++i) {
    result[i - first] = byteOf(version, i);
  }
  return result;
}

/// Appends pieces of random size, a flush now and then, and reports the size that was flushed.
void append(const std::string& path, unsigned int seed, const KilledWriter::Report& report) {
  std::mt19937 random(seed);
  const CryptoFile crypto = over(core::Directory::createFile(path, 0));
  unsigned int size = 0;
  while (size < 50000000) {
    const auto count = static_cast<unsigned int>(1 + random() % 3000);
    if (!writeBytes(*crypto, bytesOf(0, size, size + count))) {
      return;
    }
    size += count;
    if (random() % 4 == 0 && !(crypto->flush() && report(size))) {
      return;
    }
  }
}

TEST(CryptoFileKill, AnAppendedFileIsABeginningWithAllThatWasFlushed) {
  const TempDirectory directory = TempDirectory::inMemory();
  const std::string path = directory / "file";
  std::mt19937 random(2);
  for (unsigned int round = 0; round < killRounds() && !HasFailure(); ++round) {
    SCOPED_TRACE(::testing::Message() << "round " << round);
    const unsigned int flushed = KilledWriter::run(
        [&](const KilledWriter::Report& report) { append(path, round, report); }, random);
    const CryptoFile crypto = over(core::Directory::openFile(path, 0, true));
    ASSERT_TRUE(crypto);
    unsigned int size = 0;
    ASSERT_TRUE(crypto->getSize(size));
    EXPECT_GE(size, flushed);
    EXPECT_TRUE(readBytes(*crypto, size) == bytesOf(0, 0, size));
  }
}

constexpr unsigned int kRewritten = 20000;

/// Rewrites a file from its start, again and again, and reports how often it is done and flushed.
void rewrite(const std::string& path, unsigned int seed, const KilledWriter::Report& report) {
  std::mt19937 random(seed);
  const CryptoFile crypto = over(core::Directory::createFile(path, 0));
  for (unsigned int version = 0; version < 100000; ++version) {
    bool well = crypto->seekFromStart(0);
    for (unsigned int place = 0; well && place < kRewritten;) {
      const unsigned int end =
          std::min(kRewritten, static_cast<unsigned int>(place + 1 + random() % 2000));
      well = writeBytes(*crypto, bytesOf(version, place, end));
      place = end;
    }
    if (!well || !crypto->flush() || !report(version)) {
      return;
    }
  }
}

TEST(CryptoFileKill, EveryByteOfARewrittenFileIsTheFlushedOneOrTheNext) {
  const TempDirectory directory = TempDirectory::inMemory();
  const std::string path = directory / "file";
  std::mt19937 random(3);
  for (unsigned int round = 0; round < killRounds() && !HasFailure(); ++round) {
    SCOPED_TRACE(::testing::Message() << "round " << round);
    const unsigned int flushed = KilledWriter::run(
        [&](const KilledWriter::Report& report) { rewrite(path, round, report); }, random);
    const CryptoFile crypto = over(core::Directory::openFile(path, 0, true));
    ASSERT_TRUE(crypto);
    const Bytes content = readBytes(*crypto, kRewritten + 1);
    ASSERT_EQ(content.size(), kRewritten);
    for (std::size_t i = 0; i < kRewritten; ++i) {
      ASSERT_TRUE(content[i] == byteOf(flushed, i) || content[i] == byteOf(flushed + 1, i))
          << "byte " << i;
    }
  }
}

}  // namespace
}  // namespace trelvo::test
