#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <vector>

#include "tests/tools/ContainerBytes.h"
#include "tests/tools/CryptoFixture.h"
#include "tests/tools/ToolProcess.h"
#include "tools/trelvo/ContainerInput.h"
#include "tools/trelvo/Failure.h"
#include "tools/trelvo/Replay.h"

namespace trelvo::tool {
namespace {

constexpr unsigned int kStart = 1700000000;

Bytes at(unsigned int seconds) { return bytesAt(52.5, 13.4, kStart + seconds); }

/// Waits for nothing, and writes down what it should have waited for.
class FakeClock : public ReplayClock {
 public:
  explicit FakeClock(const UniqueFd& output) : m_output(output) {}

  bool waitUntil(ReplayPace::Time due) override {
    dues.push_back(due.count());
    sizes.push_back(::lseek(m_output.get(), 0, SEEK_CUR));
    return dues.size() != askedBefore;
  }
  bool isEnded() override { return dues.size() == askedAfter; }

  std::vector<double> dues;
  std::vector<off_t> sizes;     ///< of the output at each wait
  std::size_t askedBefore = 0;  ///< the wait for this container, from 1, is interrupted
  std::size_t askedAfter = 0;   ///< the program is asked to end while this one is written

 private:
  const UniqueFd& m_output;
};

/// What a replay did.
struct Replayed {
  std::vector<double> dues;
  std::vector<off_t> sizes;
  Bytes output;
};

Bytes contentOf(const UniqueFd& file) {
  Bytes bytes(static_cast<std::size_t>(::lseek(file.get(), 0, SEEK_END)));
  EXPECT_EQ(::pread(file.get(), bytes.data(), bytes.size(), 0), static_cast<ssize_t>(bytes.size()));
  return bytes;
}

Replayed replayed(const Bytes& input, ReplayPace pace, std::size_t askedBefore = 0,
                  std::size_t askedAfter = 0) {
  const UniqueFd file = fileOf(input);
  const UniqueFd target = fileOf({});
  std::ostringstream text;
  CommandContext context{text, text};
  context.inputDescriptor = file.get();
  ContainerInput container("-", {}, context);
  RawContainers containers(container);
  FakeClock clock(target);
  clock.askedBefore = askedBefore;
  clock.askedAfter = askedAfter;
  {
    DescriptorStream output(target.get());
    replay(containers, pace, clock, output, "output");
  }
  return {clock.dues, clock.sizes, contentOf(target)};
}

using Dues = std::vector<double>;

TEST(Replay, WaitsAsLongAsTheStampsLieApart) {
  const Bytes input = joined({at(0), at(1), at(1), at(6)});
  const Replayed result = replayed(input, ReplayPace(1.0));
  EXPECT_EQ(result.dues, (Dues{0, 1, 1, 6}));
  EXPECT_EQ(result.output, input);
}

TEST(Replay, DividesTheWaitByTheSpeed) {
  EXPECT_EQ(replayed(joined({at(0), at(1), at(6)}), ReplayPace(4.0)).dues, (Dues{0, 0.25, 1.5}));
  EXPECT_EQ(replayed(joined({at(0), at(1), at(6)}), ReplayPace(0.5)).dues, (Dues{0, 2, 12}));
}

TEST(Replay, SpeedZeroWaitsForNothing) {
  EXPECT_EQ(replayed(joined({at(0), at(1), at(600)}), ReplayPace(0.0)).dues, (Dues{0, 0, 0}));
}

TEST(Replay, GapsCountNoMoreThanTheLongestGap) {
  EXPECT_EQ(replayed(joined({at(0), at(3), at(1003), at(1005)}), ReplayPace(2.0, 10.0)).dues,
            (Dues{0, 1.5, 6.5, 7.5}));
  EXPECT_EQ(replayed(joined({at(0), at(3)}), ReplayPace(1.0, 0.0)).dues, (Dues{0, 0}));
}

TEST(Replay, StampsGoingBackwardsWaitForNothingAndAreCountedFrom) {
  EXPECT_EQ(replayed(joined({at(100), at(50), at(52)}), ReplayPace(1.0)).dues, (Dues{0, 0, 2}));
}

TEST(Replay, AContainerWithoutAStampComesAtOnce) {
  const Bytes unstamped = Wire().object(1, 1).value(6, 317).u32(9);
  EXPECT_EQ(replayed(joined({unstamped, at(0), unstamped, at(4)}), ReplayPace(1.0)).dues,
            (Dues{0, 0, 0, 4}));
}

TEST(Replay, TheLatestStampOfAContainerCounts) {
  const auto mixed = containerAt(52.5, 13.4, kStart + 3);
  addAccessPoint(*mixed, 1, kStart + 8);
  addAccessPoint(*mixed, 2, kStart + 5);
  EXPECT_EQ(replayed(joined({at(0), bytesOfObject(*mixed)}), ReplayPace(1.0)).dues, (Dues{0, 8}));
}

TEST(Replay, EachContainerIsFlushedBeforeTheWaitForTheNext) {
  const auto size = static_cast<off_t>(at(0).size());
  EXPECT_EQ(replayed(joined({at(0), at(1), at(2)}), ReplayPace(1.0)).sizes,
            (std::vector<off_t>{0, size, 2 * size}));
}

TEST(Replay, AnInterruptedWaitEndsBehindWholeContainers) {
  EXPECT_EQ(replayed(joined({at(0), at(1), at(2)}), ReplayPace(1.0), 3).output,
            joined({at(0), at(1)}));
}

TEST(Replay, AnInterruptWhileWritingEndsBehindThatContainer) {
  EXPECT_EQ(replayed(joined({at(0), at(1), at(2)}), ReplayPace(1.0), 0, 1).output, at(0));
}

TEST(Replay, UnknownTagsAndForeignObjectsKeepTheirBytes) {
  const Bytes foreign = joined({Wire().object(77, 3).value(99, 5).value(11, 6).u8(7),
                                Wire().value(12, 7).u32(2).text("\xff\x01")});
  const Bytes input = joined({foreign, at(0), foreign});
  EXPECT_EQ(replayed(input, ReplayPace(1.0)).output, input);
}

class ReplayCommand : public CryptoFixture {};

TEST_F(ReplayCommand, SpeedMaxAndZeroGiveTheFileAtOnce) {
  const Bytes input = joined({at(0), at(86400), at(0)});
  file("a.trelvo", input);
  for (const char* speed : {"max", "0"}) {
    EXPECT_EQ(shell(std::string("\"$TRELVO\" replay a.trelvo --speed ") + speed + " > b").status,
              0);
    EXPECT_EQ(bytesOf(path("b")), input) << speed;
  }
}

TEST_F(ReplayCommand, ReadsSealedFiles) {
  const Bytes input = joined({at(0), at(1)});
  file("a.trelvo", input);
  EXPECT_EQ(shell("\"$TRELVO\" seal --storage keys s a.trelvo a.sealed").status, 0);
  EXPECT_EQ(shell("\"$TRELVO\" replay a.sealed --sealed s --storage keys --speed max > b").status,
            0);
  EXPECT_EQ(bytesOf(path("b")), input);
}

TEST_F(ReplayCommand, CtrlCEndsTheWaitBehindAWholeContainer) {
  const std::string name = file("a.trelvo", joined({at(0), at(86400)}));
  for (const int number : {SIGINT, SIGTERM}) {
    ToolProcess process({"replay", name});
    process.waitForOutput();
    process.signal(number);
    const Outcome outcome = process.finish();
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(Bytes(outcome.out.begin(), outcome.out.end()), at(0));
  }
}

TEST_F(ReplayCommand, AReaderThatGoesIsNoFailure) {
  file("a.trelvo", joined({at(0), at(0), at(0)}));
  EXPECT_EQ(
      shell("{ \"$TRELVO\" replay a.trelvo; echo $? > status; } 2> errors | true; cat errors").out,
      "");
  EXPECT_EQ(textOf(path("status")), "0\n");
}

TEST_F(ReplayCommand, DamageIsToldBehindTheContainersAheadOfIt) {
  Bytes input = joined({at(0), at(0)});
  input.pop_back();
  const std::string name = file("a.trelvo", input);
  EXPECT_EQ(shell("\"$TRELVO\" replay a.trelvo 2> errors > b").status, 1);
  EXPECT_EQ(bytesOf(path("b")), at(0));
  EXPECT_EQ(textOf(path("errors")),
            "trelvo: a.trelvo: stops at byte " + std::to_string(input.size()) +
                ": the input ends inside GnssMeasurementData (class 130)\n");
}

TEST_F(ReplayCommand, RefusesWhatMakesNoSense) {
  const std::string name = file("a.trelvo", at(0));
  for (const char* speed : {"-1", "fast", "", "1x", "inf", "nan"}) {
    EXPECT_EQ(runTool({"replay", name, "--speed", speed}).status, kExitUsage) << speed;
  }
  EXPECT_EQ(runTool({"replay", name, "--longest-gap", "-3"}).status, kExitUsage);
  EXPECT_EQ(runTool({"replay"}).status, kExitUsage);
  const Outcome missing = runTool({"replay", path("none")});
  EXPECT_EQ(missing.status, kExitFailed);
  EXPECT_EQ(missing.err, "trelvo: " + path("none") + ": No such file or directory\n");
}

}  // namespace
}  // namespace trelvo::tool
