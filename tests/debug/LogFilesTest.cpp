// How log files are named, opened, shared and closed.

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <stdexcept>

#include "tests/debug/LogDirectory.h"
#include "tests/debug/TestPlatform.h"

using trelvo::Debug;
using trelvo::DebugCommon;
using trelvo::test::LogDirectory;
using trelvo::test::logged;
using trelvo::test::openDescriptors;
using trelvo::test::TestPlatform;

namespace {

class NamedProcess : public TestPlatform {
 public:
  void getProcessNameOrId(char* text) const override {
    std::memcpy(text, "engine", sizeof "engine");
  }
};

/// Puts a pipe in the place of standard output while it lives.
class PipedOutput {
 public:
  PipedOutput() {
    std::fflush(stdout);
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) throw std::runtime_error("no pipe");
    m_readEnd = ends[0];
    m_saved = dup(STDOUT_FILENO);
    dup2(ends[1], STDOUT_FILENO);
    ::close(ends[1]);
  }
  ~PipedOutput() {
    std::fflush(stdout);
    dup2(m_saved, STDOUT_FILENO);
    ::close(m_saved);
    ::close(m_readEnd);
  }
  PipedOutput(const PipedOutput&) = delete;
  PipedOutput& operator=(const PipedOutput&) = delete;

  /// Ends it.
  void close() const { dup2(m_saved, STDOUT_FILENO); }

  /// All that was printed, up to the end: that comes only when nobody can print any more.
  std::string untilEnd() const {
    std::string text;
    char byte = 0;
    while (read(m_readEnd, &byte, 1) == 1) text += byte;
    return text;
  }

 private:
  int m_readEnd = -1;
  int m_saved = -1;
};

std::string internalName(const std::string& fileName) {
  TestPlatform platform;
  platform.m_defaultSetting.fileName = fileName;
  return platform.makeInternalLogFileName();
}

}  // namespace

TEST(LogFiles, ConsoleHasNoPath) {
  TestPlatform platform;
  EXPECT_EQ(platform.makeLogFileName("/tmp/", "console"), "console");
}

TEST(LogFiles, RelativeNamesGetThePathAsItIs) {
  TestPlatform platform;
  EXPECT_EQ(platform.makeLogFileName("/tmp/", "a.log"), "/tmp/a.log");
  EXPECT_EQ(platform.makeLogFileName("/tmp", "a.log"), "/tmpa.log");
  EXPECT_EQ(platform.makeLogFileName("/tmp/", "console.log"), "/tmp/console.log");
  EXPECT_EQ(platform.makeLogFileName("", "a.log"), "a.log");
}

TEST(LogFiles, AbsoluteNamesGetNoPath) {
  TestPlatform platform;
  EXPECT_EQ(platform.makeLogFileName("/tmp/", "/var/a.log"), "/var/a.log");
}

TEST(LogFiles, FirstTimeMarkAloneIsReplaced) {
  TestPlatform platform;
  EXPECT_EQ(platform.makeLogFileName("/tmp/", "a%t%t.log"), "/tmp/a20231114_221320%t.log");
  EXPECT_EQ(platform.makeLogFileName("/%t/", "a%t.log"), "/20231114_221320/a%t.log");
}

TEST(LogFiles, FirstProcessMarkAloneIsReplaced) {
  TestPlatform platform;
  EXPECT_EQ(platform.makeLogFileName("/tmp/", "a%p%p.log"), "/tmp/aunk%p.log");
  NamedProcess named;
  EXPECT_EQ(named.makeLogFileName("/tmp/", "%p_%t.log"), "/tmp/engine_20231114_221320.log");
}

TEST(LogFiles, OtherMarksStay) {
  TestPlatform platform;
  EXPECT_EQ(platform.makeLogFileName("/tmp/", "%T%P%%s%.log"), "/tmp/%T%P%%s%.log");
}

TEST(LogFiles, NullTextsCountAsEmptyInNames) {
  TestPlatform platform;
  EXPECT_EQ(platform.makeLogFileName(nullptr, "a.log"), "a.log");
  EXPECT_EQ(platform.makeLogFileName("/tmp/", nullptr), "/tmp/");
}

TEST(LogFiles, InternalLogIsNamedAfterTheDefaultFile) {
  EXPECT_EQ(internalName("/tmp/trelvo.log"), "/tmp/trelvo.slog");
  EXPECT_EQ(internalName("x.log.log"), "x.log.slog");
  EXPECT_EQ(internalName("/a.log/b"), "/a.slog/b");
}

TEST(LogFiles, InternalLogHasNoNameWithoutAnEndingToReplace) {
  EXPECT_THROW(internalName("console"), std::out_of_range);
  EXPECT_THROW(internalName("x.LOG"), std::out_of_range);
  EXPECT_THROW(internalName(""), std::out_of_range);
}

TEST(LogFiles, ConsoleIsStandardOutput) {
  TestPlatform platform;
  EXPECT_EQ(platform.addLogFile("console"), stdout);
}

TEST(LogFiles, OpeningEmptiesTheFile) {
  const LogDirectory directory;
  directory.put("a.log", "from an earlier start\n");
  TestPlatform platform;
  platform.m_defaultSetting.file = platform.addLogFile(directory.file("a.log"));
  ASSERT_NE(platform.m_defaultSetting.file, nullptr);
  EXPECT_EQ(directory.content("a.log"), "");
}

TEST(LogFiles, UnopenableFilesAreNull) {
  const LogDirectory directory;
  directory.put("file", "");
  TestPlatform platform;
  EXPECT_EQ(platform.addLogFile(directory.file("missing/a.log")), nullptr);
  EXPECT_EQ(platform.addLogFile(directory.file("file/a.log")), nullptr);
  EXPECT_EQ(platform.addLogFile(directory.path()), nullptr);
  EXPECT_EQ(platform.addLogFile("/proc/a.log"), nullptr);
  EXPECT_EQ(platform.addLogFile(""), nullptr);
}

TEST(LogFiles, ComponentsWithOneFileNameShareItsStream) {
  const LogDirectory directory;
  TestPlatform platform;
  DebugCommon::ComponentSetting& core = platform.m_components["core"];
  core.fileName = directory.file("a.log");
  core.file = platform.addLogFile(core.fileName);
  EXPECT_EQ(platform.addLogFile(core.fileName), core.file);
}

TEST(LogFiles, DefaultFileIsNotLookedAt) {
  const LogDirectory directory;
  TestPlatform platform;
  platform.m_defaultSetting.fileName = directory.file("a.log");
  platform.m_defaultSetting.file = platform.addLogFile(platform.m_defaultSetting.fileName);
  DebugCommon::ComponentSetting& core = platform.m_components["core"];
  core.file = platform.addLogFile(platform.m_defaultSetting.fileName);
  ASSERT_NE(core.file, nullptr);
  EXPECT_NE(core.file, platform.m_defaultSetting.file);
}

TEST(LogFiles, AllStreamsAreClosedOnceAtTheEnd) {
  const LogDirectory directory;
  const std::ptrdiff_t before = openDescriptors();
  {
    TestPlatform platform;
    std::FILE* const shared = platform.addLogFile(directory.file("shared.log"));
    platform.m_components["a"].file = shared;
    platform.m_components["b"].file = shared;
    platform.m_components["c"].file = platform.addLogFile(directory.file("c.log"));
    platform.m_components["d"].levelMask = 1;
    platform.m_defaultSetting.file = shared;
    platform.m_ltaFile = shared;
    EXPECT_EQ(openDescriptors(), before + 2);
  }
  EXPECT_EQ(openDescriptors(), before);
}

TEST(LogFiles, DefaultAndLtaFileAreClosedAtTheEnd) {
  const LogDirectory directory;
  const std::ptrdiff_t before = openDescriptors();
  {
    TestPlatform platform;
    platform.m_defaultSetting.file = platform.addLogFile(directory.file("a.log"));
    platform.m_ltaFile = platform.addLogFile(directory.file("b.log"));
    EXPECT_EQ(openDescriptors(), before + 2);
  }
  EXPECT_EQ(openDescriptors(), before);
}

TEST(StandardOutput, GetsTheLinesAndEndsWithTheInstance) {
  const PipedOutput output;
  {
    TestPlatform platform;
    platform.m_defaultSetting = {1, stdout, "console"};
    platform.m_components["core"] = {1, stdout, "console"};
    platform.writeLogEll(Debug::LogLevelNote, false, "core", "one\n");
    platform.writeLogEll(Debug::LogLevelNote, false, "other", "two\n");
  }
  std::printf("lost\n");
  EXPECT_EQ(output.untilEnd(), logged("core        ", "one\n") + logged("other       ", "two\n"));
}

TEST(StandardOutput, StaysAValidStreamAndKeepsItsDescriptor) {
  const PipedOutput output;
  for (int round = 0; round < 3; ++round) {
    TestPlatform platform;
    platform.m_defaultSetting = {1, platform.addLogFile("console"), "console"};
    platform.writeLogEll(Debug::LogLevelNote, false, "core", "text\n");
  }
  EXPECT_EQ(std::printf("lost\n"), 5);
  EXPECT_EQ(std::fflush(stdout), 0);
  EXPECT_EQ(fileno(stdout), STDOUT_FILENO);
  const int next = open("/dev/null", O_WRONLY);
  EXPECT_NE(next, STDOUT_FILENO);
  close(next);
  EXPECT_EQ(output.untilEnd(), logged("core        ", "text\n"));
}

TEST(StandardOutput, StaysOpenWhenItIsNamedAsAFile) {
  const PipedOutput output;
  {
    TestPlatform platform;
    platform.m_defaultSetting = {1, platform.addLogFile("/dev/stdout"), "/dev/stdout"};
    ASSERT_NE(platform.m_defaultSetting.file, nullptr);
    platform.writeLogEll(Debug::LogLevelNote, false, "core", "text\n");
  }
  std::printf("printed\n");
  std::fflush(stdout);
  output.close();
  EXPECT_EQ(output.untilEnd(), logged("core        ", "text\n") + "printed\n");
}

TEST(StandardOutput, StaysOpenWhenNothingLogsToIt) {
  const LogDirectory directory;
  testing::internal::CaptureStdout();
  {
    TestPlatform platform;
    platform.m_defaultSetting.file = platform.addLogFile(directory.file("a.log"));
  }
  std::printf("printed\n");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "printed\n");
}
