// Memory that runs out under encrypted files and logs.

#include <gtest/gtest.h>
#include <trelvo/core/Directory.h>

#include "tests/crypto/MemoryDisk.h"
#include "tests/crypto/Slog.h"
#include "tests/support/AllocationFailure.h"

namespace trelvo::test {
namespace {

TEST(CryptoFileMemory, OpenGivesNullAndOnlyTheFirstRunAllocatesAfterIt) {
  MemoryDisk disk(enciphered(plainBytes(20000)));
  const gom::SharedPointer<core::IFile> file = disk.open(false);
  const Bytes source = plainBytes(20000);
  Bytes target(20000);
  const auto key = testKey();
  const auto iv = testIv();
  const unsigned long long calls = everyAllocationFails([&] {
    ASSERT_TRUE(file->seekFromStart(0));
    auto ownKey = key;
    auto ownIv = iv;
    const gom::SharedPointer<ICryptoFile> crypto =
        ICryptoFile::open(file, ownKey.data(), ownIv.data());
    if (crypto) {
      EXPECT_EQ(crypto->read(target.data(), 20000), 20000U);
      EXPECT_TRUE(crypto->seekFromStart(100));
      EXPECT_EQ(crypto->write(source.data(), 19000), 19000U);
      EXPECT_TRUE(crypto->seekFromStart(0));
      EXPECT_EQ(crypto->write(source.data(), 19000), 19000U);
      EXPECT_TRUE(crypto->flush());
    }
  });
  EXPECT_EQ(calls, 3U);  // the object, its cipher, the room for runs
}

TEST(CryptoFileMemory, ALogIsMadeOrNot) {
  const TempDirectory directory;
  const std::string path = directory / "a.slog";
  const std::string key = publicKey();
  bool made = false;
  everyAllocationFails([&] {
    const gom::SharedPointer<ICryptoLog> log = ICryptoLog::create(path.c_str(), key.c_str());
    made = static_cast<bool>(log);
    if (made) {
      log->puts("text");
      EXPECT_TRUE(log->flush());
    }
  });
  EXPECT_TRUE(made);
  EXPECT_EQ(textOf(path), "text");
}

TEST(CryptoFileMemory, DecryptReportsOrSucceeds) {
  const TempDirectory directory;
  const std::string log = goldenFile("complete.slog");
  const std::string text = directory / "text";
  const std::string key = privateKey();
  Status status = StatusOk;
  unsigned int failures = 0;
  everyAllocationFails([&] {
    status = ICryptoLog::decrypt(log.c_str(), text.c_str(), key.c_str(), {});
    failures += status != StatusOk ? 1 : 0;
  });
  EXPECT_EQ(status, StatusOk);
  EXPECT_GT(failures, 5U);
  EXPECT_EQ(bytesOfFile(text), bytesOfFile(goldenFile("complete.txt")));
}

}  // namespace
}  // namespace trelvo::test
