// A log whose file fails.

#include <gtest/gtest.h>
#include <trelvo/CryptoLog.h>

#include <random>
#include <string>

#include "tests/crypto/MemoryFile.h"
#include "tests/crypto/Slog.h"

namespace trelvo::test {
namespace {

constexpr unsigned int kLines = 12;

/// Enough that does not compress to fill more than a block.
std::string line(unsigned int i) {
  std::mt19937 random(i);
  std::string text(700, ' ');
  for (char& c : text) {
    c = static_cast<char>('!' + random() % 90);
  }
  return text + "\n";
}

struct Outcome {
  Bytes flushed;             ///< What the file had at the last flush ahead of the failure.
  bool lastFlush = false;    ///< What the last flush said.
  bool failed = false;       ///< Whether the failure came, at the end of the log if not earlier.
  bool failedEarly = false;  ///< Ahead of the last flush.
};

/// Writes lines to a log over `file`, each flushed, and ends the log.
Outcome writeLog(const gom::SharedPointer<MemoryFile>& file) {
  Outcome outcome;
  {
    CryptoLog log(file, ICryptography::open(), openPlain(file));
    for (unsigned int i = 0; i < kLines; ++i) {
      log.puts(line(i).c_str());
      outcome.lastFlush = log.flush();
      if (!file->failed()) {
        outcome.flushed = file->content;
      }
    }
    outcome.failedEarly = file->failed();
  }
  outcome.failed = file->failed();
  return outcome;
}

/// What a log over a file that works leaves there.
Bytes wholeLog() {
  const gom::SharedPointer<MemoryFile> file = new MemoryFile;
  EXPECT_TRUE(writeLog(file).lastFlush);
  return file->content;
}

/// Has each call of a kind fail. @return how many there are.
template <class Check>
unsigned int failEach(MemoryFile::Call call, bool once, const Check& check) {
  for (unsigned int at = 0;; ++at) {
    SCOPED_TRACE(::testing::Message() << "call " << at);
    const gom::SharedPointer<MemoryFile> file = new MemoryFile;
    file->fail(call, at, once);
    const Outcome outcome = writeLog(file);
    if (!outcome.failed) {
      return at;
    }
    EXPECT_EQ(head(file->content, outcome.flushed.size()), outcome.flushed);
    check(outcome, *file);
  }
}

TEST(CryptoLogFailure, WhatWasFlushedAheadOfAFailureStays) {
  const auto nothingMore = [](const Outcome&, const MemoryFile&) {};
  EXPECT_GE(failEach(MemoryFile::Call::Write, true, nothingMore), 2 * kLines);
  EXPECT_GE(failEach(MemoryFile::Call::Seek, true, nothingMore), kLines);
  EXPECT_GE(failEach(MemoryFile::Call::Flush, true, nothingMore), kLines);
  EXPECT_GE(failEach(MemoryFile::Call::Read, true, nothingMore), kLines);
}

TEST(CryptoLogFailure, AFileThatTakesNothingAnyMoreMakesEachFlushFalse) {
  const auto told = [](const Outcome& outcome, const MemoryFile&) {
    EXPECT_EQ(outcome.lastFlush, !outcome.failedEarly);
  };
  failEach(MemoryFile::Call::Write, false, told);
  failEach(MemoryFile::Call::Flush, false, told);
}

TEST(CryptoLogFailure, AFullFileHoldsTheBeginningOfTheLog) {
  const Bytes whole = wholeLog();
  failEach(MemoryFile::Call::Write, false, [&whole](const Outcome&, const MemoryFile& file) {
    EXPECT_EQ(file.content, head(whole, file.content.size()));
  });
}

}  // namespace
}  // namespace trelvo::test
