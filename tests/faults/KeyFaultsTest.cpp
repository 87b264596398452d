// Key files, encrypted logs and seed files on a disk that refuses.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <trelvo/ICryptography.h>
#include <trelvo/ICryptographyUtility.h>
#include <trelvo/Secret.h>
#include <trelvo/core/Directory.h>

#include <cstdlib>
#include <string>

#include "tests/crypto/CryptoSupport.h"
#include "tests/crypto/Slog.h"
#include "tests/support/SystemFaults.h"

namespace trelvo::test {
namespace {

constexpr unsigned int kLines = 4;

/// Enough that does not compress to fill blocks and the stream's buffer.
std::string line(unsigned int i) {
  std::string text;
  unsigned int state = i + 1;
  for (unsigned int k = 0; k < 3000; ++k) {
    state = state * 1664525 + 1013904223;
    text += static_cast<char>('!' + (state >> 24) % 90);
  }
  return text + "\n";
}

/// Writes lines to a new log, each flushed. @return what was flushed ahead of any failure.
std::string writeLog(const std::string& path) {
  std::string flushed;
  const gom::SharedPointer<ICryptoLog> log = ICryptoLog::create(path.c_str(), publicKey().c_str());
  EXPECT_TRUE(log || systemRun().failed);
  for (unsigned int i = 0; log && i < kLines; ++i) {
    log->puts(line(i).c_str());
    const bool done = log->flush();
    EXPECT_TRUE(done || systemRun().failed);
    if (!systemRun().failed) {
      flushed += line(i);
    }
  }
  return flushed;
}

std::string allLines() {
  std::string text;
  for (unsigned int i = 0; i < kLines; ++i) {
    text += line(i);
  }
  return text;
}

TEST(KeyFaults, WhatALogFlushedIsThereWhateverFailsBehindIt) {
  const TempDirectory directory = TempDirectory::inMemory();
  const std::string path = directory / "a.slog";
  const FailedCalls failed = everySystemCallFails([&] {
    {
      const SystemCallsSucceed preparing;
      core::Directory::rmFile(path);
    }
    const std::string flushed = writeLog(path);
    const SystemCallsSucceed checking;
    if (flushed.empty()) {
      EXPECT_TRUE(systemRun().failed);
      return;
    }
    // Bytes that a passing failure lost damage what stands behind them.
    const Status status = decryptLog(path, directory / "text");
    EXPECT_TRUE(status == StatusOk || (status == StatusFailed && systemRun().failed)) << status;
    const std::string text = fileContent(directory / "text");
    EXPECT_TRUE(text.compare(0, flushed.size(), flushed) == 0);
    EXPECT_TRUE(systemRun().failed || text == allLines());
  });
  for (const char* const call :
       {"fopen", "open", "fdopen", "read", "write", "fflush", "lseek", "deflateInit"}) {
    EXPECT_GT(failed.count(call), 0U) << call;
  }
}

TEST(KeyFaults, ALogIsWholeWhateverComesUpShort) {
  const TempDirectory directory = TempDirectory::inMemory();
  const std::string path = directory / "a.slog";
  everySystemCallComesUpShort([&] {
    writeLog(path);
    EXPECT_EQ(decryptLog(path, directory / "text"), StatusOk);
    const SystemCallsSucceed checking;
    EXPECT_TRUE(fileContent(directory / "text") == allLines());
  });
}

TEST(KeyFaults, DecryptingALogTellsOfEveryFailure) {
  const TempDirectory directory = TempDirectory::inMemory();
  const std::string path = directory / "a.slog";
  writeLog(path);
  const FailedCalls failed = everySystemCallFails([&] {
    const Status status = decryptLog(path, directory / "text");
    const SystemCallsSucceed checking;
    if (status == StatusOk) {
      EXPECT_TRUE(fileContent(directory / "text") == allLines());
      return;
    }
    EXPECT_TRUE(systemRun().failed);
    EXPECT_TRUE(status == StatusFileError || status == StatusKeyFailure ||
                (status == StatusInternal && systemRun().kinds.count("inflateInit") != 0))
        << status;
    const std::string text =
        core::Directory::pathExists(directory / "text") ? fileContent(directory / "text") : "";
    EXPECT_TRUE(allLines().compare(0, text.size(), text) == 0);
    core::Directory::rmFile(directory / "text");
  });
  for (const char* const call : {"fopen", "read", "write", "fflush", "inflateInit"}) {
    EXPECT_GT(failed.count(call), 0U) << call;
  }
}

TEST(KeyFaults, AKeyFileIsReadWholeOrNotAtAll) {
  const Cryptography cryptography = opened();
  const Bytes message = textBytes("a message");
  const FailedCalls failed = everySystemCallFails([&] {
    Buffer secret;
    Status status = cryptography->encryptRsaPublic(view(message), publicKey().c_str(), secret,
                                                   crypto::PaddingOaep);
    EXPECT_TRUE(status == StatusOk || (status == StatusFileError && systemRun().failed)) << status;
    EXPECT_EQ(secret.size(), status == StatusOk ? 256U : 0U);
    if (status == StatusOk) {
      Buffer text;
      const ReadOnlyBuffer& block = secret;
      status = cryptography->decryptRsaPrivate(block, privateKey().c_str(), {}, text,
                                               crypto::PaddingOaep);
      EXPECT_TRUE(status == StatusOk || (status == StatusFileError && systemRun().failed))
          << status;
      EXPECT_EQ(contentOf(text), status == StatusOk ? message : Bytes());
    }
  });
  EXPECT_EQ(failed.at("fopen"), 2U);
  EXPECT_GE(failed.at("read"), 2U);
  const FailedCalls shorter = everySystemCallComesUpShort([&] {
    Buffer secret;
    EXPECT_EQ(cryptography->encryptRsaPublic(view(message), publicKey().c_str(), secret,
                                             crypto::PaddingOaep),
              StatusOk);
    Buffer text;
    const ReadOnlyBuffer& block = secret;
    EXPECT_EQ(
        cryptography->decryptRsaPrivate(block, privateKey().c_str(), {}, text, crypto::PaddingOaep),
        StatusOk);
    EXPECT_EQ(contentOf(text), message);
  });
  EXPECT_GE(shorter.at("read"), 2U);
}

/// A store in a directory of its own.
class StoreFaults : public ::testing::Test {
 protected:
  static constexpr unsigned char kSeed[] = {'1', '7', '0', '0', '0', '0', '0', '0', '0', '0'};

  StoreFaults() {
    core::Directory::setDefaultStoragePath(m_directory.path(), false);
    setenv("ORVE_UNIQUE_DEVICE_ID", "device-1", 1);
  }

  /// @return the key and the IV, or nothing.
  Bytes openStore() {
    const gom::SharedPointer<ICryptographyUtility> store(
        ICryptographyUtility::open("store", m_status, m_generated));
    unsigned char* key = nullptr;
    unsigned char* iv = nullptr;
    if (!store || !store->getKeyAndIv(key, iv)) {
      return {};
    }
    Bytes both(key, key + 16);
    both.insert(both.end(), iv, iv + 16);
    return both;
  }

  std::string seedFile() const {
    for (const auto& entry : std::filesystem::directory_iterator(m_directory.path())) {
      return entry.path().string();
    }
    return {};
  }

  TempDirectory m_directory = TempDirectory::inMemory();
  Status m_status = StatusFailed;
  bool m_generated = false;
};

TEST_F(StoreFaults, ASeedThatCannotBeReadIsKeptAndMakesNoOtherKey) {
  openStore();
  const std::string path = seedFile();
  putFile(path, Bytes(std::begin(kSeed), std::end(kSeed)));
  const Bytes key = openStore();
  ASSERT_EQ(key.size(), 32U);
  const FailedCalls failed = everySystemCallFails([&] {
    const Bytes found = openStore();
    const SystemCallsSucceed checking;
    EXPECT_TRUE(found == key || (found.empty() && systemRun().failed));
    EXPECT_EQ(m_status, found.empty() ? StatusKeyFailure : StatusOk);
    EXPECT_FALSE(m_generated);
    EXPECT_EQ(bytesOfFile(path), Bytes(std::begin(kSeed), std::end(kSeed)));
  });
  EXPECT_EQ(failed.at("fopen"), 1U);
  EXPECT_GE(failed.at("read"), 1U);
  const FailedCalls shorter = everySystemCallComesUpShort([&] {
    EXPECT_EQ(openStore(), key);
    EXPECT_EQ(m_status, StatusOk);
    EXPECT_FALSE(m_generated);
  });
  EXPECT_GE(shorter.at("read"), 1U);
}

TEST_F(StoreFaults, ASeedIsWrittenWholeOrNotAtAll) {
  openStore();
  const std::string path = seedFile();
  const auto check = [&] {
    {
      const SystemCallsSucceed preparing;
      core::Directory::rmFile(path);
    }
    const Bytes key = openStore();
    const SystemCallsSucceed checking;
    if (key.empty()) {
      EXPECT_TRUE(systemRun().failed);
      return;
    }
    EXPECT_TRUE(m_generated);
    const Bytes seed = core::Directory::pathExists(path) ? bytesOfFile(path) : Bytes();
    EXPECT_TRUE(seed.size() == 10U || (seed.empty() && systemRun().failed)) << seed.size();
    if (!seed.empty()) {
      EXPECT_EQ(openStore(), key);
      EXPECT_FALSE(m_generated);
    }
  };
  const FailedCalls failed = everySystemCallFails(check);
  for (const char* const call : {"open", "fdopen", "write"}) {
    EXPECT_GT(failed.count(call), 0U) << call;
  }
  everySystemCallComesUpShort(check);
}

}  // namespace
}  // namespace trelvo::test
