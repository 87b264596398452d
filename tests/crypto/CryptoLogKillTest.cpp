// A process that writes a log is killed at a random moment; whatever it had flushed has to come
// out.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <random>
#include <string>
#include <thread>

#include "tests/crypto/Slog.h"

namespace trelvo::test {
namespace {

constexpr unsigned int kRounds = 20;
constexpr unsigned int kLines = 100000;

unsigned int rounds() {
  const char* const wanted = std::getenv("TRELVO_SOAK_ROUNDS");
  return wanted != nullptr
             ? std::max(1U, static_cast<unsigned int>(std::strtoul(wanted, nullptr, 10)))
             : kRounds;
}

unsigned int below(std::mt19937& random, unsigned int end) {
  return static_cast<unsigned int>(random() % end);
}

/// Line `i`: its number, and enough that does not compress to fill blocks quickly.
std::string line(unsigned int i) {
  std::mt19937 random(i);
  std::string text = std::to_string(i);
  for (unsigned int length = below(random, 200); length > 0; --length) {
    text += static_cast<char>('!' + below(random, 90));
  }
  return text + "\n";
}

/// The first `count` lines.
std::string linesUntil(unsigned int count) {
  std::string text;
  for (unsigned int i = 0; i < count; ++i) {
    text += line(i);
  }
  return text;
}

/// Writes lines with a flush now and then, and tells how many are flushed.
[[noreturn]] void writeUntilKilled(const std::string& path, int report, unsigned int seed) {
  std::mt19937 random(seed);
  gom::SharedPointer<ICryptoLog> log = ICryptoLog::create(path.c_str(), publicKey().c_str());
  bool going = static_cast<bool>(log);
  for (unsigned int i = 0; going && i < kLines; ++i) {
    if (i == 0 || below(random, 5) == 0) {
      going = log->flush() && ::write(report, &i, sizeof i) == sizeof i;
    }
    log->puts(line(i).c_str());
  }
  ::_exit(1);  // not reached before the signal
}

/// Reads one report. @return false at the end of the pipe.
bool nextReport(int report, unsigned int& flushed) {
  unsigned int value = 0;
  const bool there = ::read(report, &value, sizeof value) == sizeof value;
  flushed = there ? value : flushed;
  return there;
}

/// Kills a writer after `reports` flushes and `delay`. @return the lines that it said were flushed.
unsigned int killWriter(const std::string& path, unsigned int seed, unsigned int reports,
                        std::chrono::microseconds delay) {
  int ends[2];
  EXPECT_EQ(::pipe(ends), 0);
  const pid_t child = ::fork();
  if (child == 0) {
    ::close(ends[0]);
    writeUntilKilled(path, ends[1], seed);
  }
  ::close(ends[1]);
  unsigned int flushed = 0;
  for (unsigned int i = 0; i < reports; ++i) {
    EXPECT_TRUE(nextReport(ends[0], flushed));
  }
  std::this_thread::sleep_for(delay);
  EXPECT_EQ(::kill(child, SIGKILL), 0);
  while (nextReport(ends[0], flushed)) {
  }
  ::close(ends[0]);
  int status = 0;
  EXPECT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFSIGNALED(status));
  return flushed;
}

TEST(CryptoLogKill, ALogDecryptsToAPrefixWithAllThatWasFlushed) {
  const TempDirectory directory;
  const std::string path = directory / "a.slog";
  std::mt19937 random(1);
  for (unsigned int round = 0; round < rounds() && !HasFailure(); ++round) {
    SCOPED_TRACE(::testing::Message() << "round " << round);
    const unsigned int reports = 1 + below(random, 60);
    const unsigned int flushed =
        killWriter(path, round, reports, std::chrono::microseconds(below(random, 2000)));
    const std::string text = textOf(path);
    const std::string expected = linesUntil(flushed);
    EXPECT_GE(text.size(), expected.size());
    EXPECT_EQ(text.substr(0, expected.size()), expected);
    const std::string all = linesUntil(flushed + 500);
    EXPECT_EQ(text, all.substr(0, text.size()));
  }
}

}  // namespace
}  // namespace trelvo::test
