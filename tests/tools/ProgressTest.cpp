#include "tools/trelvo/Progress.h"

#include <gtest/gtest.h>

#include <chrono>
#include <sstream>
#include <string>

namespace trelvo::tool {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr const char* kWipe = "\r\033[K";

/// A progress line over a clock that is moved by hand.
class ProgressTest : public ::testing::Test {
 protected:
  Progress make(bool shown, std::optional<std::uint64_t> total) {
    return Progress(terminal, shown, total, [this] { return now; });
  }

  std::ostringstream terminal;
  steady_clock::time_point now{};
};

TEST_F(ProgressTest, ShortInputShowsNothing) {
  {
    Progress progress = make(true, 1000);
    now += milliseconds(499);
    progress.update(500);
  }
  EXPECT_EQ(terminal.str(), "");
}

TEST_F(ProgressTest, LongInputShowsABarAndWipesIt) {
  {
    Progress progress = make(true, 4000000);
    now += milliseconds(500);
    progress.update(1000000);
  }
  EXPECT_EQ(terminal.str(),
            std::string(kWipe) + "[######..................]  25 %  1.0 MB of 4.0 MB" + kWipe);
}

TEST_F(ProgressTest, UnknownTotalShowsBytesAlone) {
  Progress progress = make(true, std::nullopt);
  now += milliseconds(500);
  progress.update(2500000);
  EXPECT_EQ(terminal.str(), std::string(kWipe) + "2.5 MB");
}

TEST_F(ProgressTest, AnEmptyTotalShowsBytesAlone) {
  Progress progress = make(true, 0);
  now += milliseconds(500);
  progress.update(100000);
  EXPECT_EQ(terminal.str(), std::string(kWipe) + "0.1 MB");
}

TEST_F(ProgressTest, MoreBytesThanTheTotalFillTheBar) {
  Progress progress = make(true, 1000000);
  now += milliseconds(500);
  progress.update(2000000);
  EXPECT_EQ(terminal.str(),
            std::string(kWipe) + "[########################] 100 %  2.0 MB of 1.0 MB");
}

TEST_F(ProgressTest, RedrawsFiveTimesASecond) {
  Progress progress = make(true, std::nullopt);
  now += milliseconds(500);
  progress.update(1000000);
  now += milliseconds(199);
  progress.update(2000000);
  now += milliseconds(1);
  progress.update(3000000);
  EXPECT_EQ(terminal.str(), std::string(kWipe) + "1.0 MB" + kWipe + "3.0 MB");
}

TEST_F(ProgressTest, NothingIsShownWithoutATerminal) {
  Progress progress = make(false, 1000);
  now += milliseconds(5000);
  progress.update(500);
  EXPECT_EQ(terminal.str(), "");
}

}  // namespace
}  // namespace trelvo::tool
