// The means by which the other tests here have system calls fail.

#include "tests/support/SystemFaults.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/core/TempDirectory.h"

namespace trelvo::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Pair;

TEST(SystemFaults, EachCallFailsOnceThenWithItsKindThenWithAllBehindIt) {
  std::vector<std::string> outcomes;
  const FailedCalls failed = everySystemCallFails([&outcomes] {
    std::string outcome;
    for (int i = 0; i < 2; ++i) {
      outcome += ::poll(nullptr, 0, 0) == 0 ? 'p' : '.';
      outcome += ::fflush(nullptr) == 0 ? 'f' : '.';
    }
    outcomes.push_back(outcome);
  });
  EXPECT_THAT(outcomes,
              ElementsAre("pfpf", "p...", "pfp.", "pfpf", "....", "pf..", "pfpf",    // all behind
                          "pfpf", "p.p.", "pfp.", "pfpf", ".f.f", "pf.f", "pfpf",    // its kind
                          "pfpf", "p.pf", "pfp.", "pfpf", ".fpf", "pf.f", "pfpf"));  // once
  EXPECT_THAT(failed, ElementsAre(Pair("fflush", 2), Pair("poll", 2)));
}

TEST(SystemFaults, AStreamMeetsTheFailuresOfItsDescriptor) {
  const TempDirectory directory;
  const std::string path = directory / "file";
  writeFile(path, "content");
  const FailedCalls failed = everySystemCallFails([&path] {
    std::FILE* const stream = std::fopen(path.c_str(), "rb");
    if (stream == nullptr) {
      EXPECT_EQ(systemRun().kinds.count("fopen"), 1U);
      EXPECT_EQ(errno, EMFILE);
      return;
    }
    char text[8] = "";
    const bool whole = std::fread(text, 1, 7, stream) == 7;
    EXPECT_EQ(whole, !systemRun().failed);
    EXPECT_EQ(std::ferror(stream) == 0, whole);
    std::fclose(stream);
  });
  EXPECT_THAT(failed, ElementsAre(Pair("fopen", 1), Pair("read", 1)));
}

TEST(SystemFaults, AShortReadMovesHalf) {
  std::vector<ssize_t> counts;
  const FailedCalls shorter = everySystemCallComesUpShort([&counts] {
    const int zero = ::open("/dev/zero", O_RDONLY | O_CLOEXEC);
    char bytes[9];
    counts.push_back(::read(zero, bytes, sizeof bytes));
    ::close(zero);
  });
  EXPECT_THAT(counts, ElementsAre(9, 4, 9, 9, 4, 9));
  EXPECT_THAT(shorter, ElementsAre(Pair("read", 1)));
}

TEST(SystemFaults, WhatIsPausedNeitherFailsNorCounts) {
  const FailedCalls failed = everySystemCallFails([] {
    const SystemCallsSucceed succeed;
    EXPECT_EQ(::poll(nullptr, 0, 0), 0);
  });
  EXPECT_THAT(failed, IsEmpty());
}

TEST(SystemFaults, ADescriptorThatIsLeftIsNoticed) {
  std::vector<int> left;
  ::testing::TestPartResultArray found;
  {
    const ::testing::ScopedFakeTestPartResultReporter reporter(
        ::testing::ScopedFakeTestPartResultReporter::INTERCEPT_ALL_THREADS, &found);
    everySystemCallFails([&left] {
      const int descriptor = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
      if (descriptor >= 0) {
        left.push_back(descriptor);
      }
    });
  }
  std::for_each(left.begin(), left.end(), ::close);
  ASSERT_GT(found.size(), 0);
  EXPECT_THAT(found.GetTestPartResult(0).message(), HasSubstr("descriptors are left"));
}

}  // namespace
}  // namespace trelvo::test
