#include "tests/crypto/KilledWriter.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <thread>

namespace trelvo::test {

namespace {

constexpr unsigned int kRounds = 20;
constexpr unsigned int kMostReports = 60;
constexpr unsigned int kLongestDelayUs = 2000;

unsigned int below(std::mt19937& random, unsigned int end) {
  return static_cast<unsigned int>(random() % end);
}

[[noreturn]] void writeUntilKilled(const std::function<void(const KilledWriter::Report&)>& write,
                                   int pipe) {
  write([pipe](unsigned int value) { return ::write(pipe, &value, sizeof value) == sizeof value; });
  ::_exit(1);  // not reached before the signal
}

/// Reads one report. @return false at the end of the pipe.
bool nextReport(int pipe, unsigned int& last) {
  unsigned int value = 0;
  const bool there = ::read(pipe, &value, sizeof value) == sizeof value;
  last = there ? value : last;
  return there;
}

}  // namespace

unsigned int killRounds() {
  const char* const wanted = std::getenv("TRELVO_SOAK_ROUNDS");
  return wanted != nullptr
             ? std::max(1U, static_cast<unsigned int>(std::strtoul(wanted, nullptr, 10)))
             : kRounds;
}

unsigned int KilledWriter::run(const std::function<void(const Report&)>& write,
                               std::mt19937& random) {
  int ends[2];
  EXPECT_EQ(::pipe(ends), 0);
  const pid_t child = ::fork();
  if (child == 0) {
    ::close(ends[0]);
    writeUntilKilled(write, ends[1]);
  }
  ::close(ends[1]);
  unsigned int last = 0;
  for (unsigned int reports = 1 + below(random, kMostReports); reports > 0; --reports) {
    EXPECT_TRUE(nextReport(ends[0], last));
  }
  std::this_thread::sleep_for(std::chrono::microseconds(below(random, kLongestDelayUs)));
  EXPECT_EQ(::kill(child, SIGKILL), 0);
  while (nextReport(ends[0], last)) {
  }
  ::close(ends[0]);
  int status = 0;
  EXPECT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFSIGNALED(status));
  return last;
}

}  // namespace trelvo::test
