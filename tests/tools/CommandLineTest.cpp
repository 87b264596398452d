#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <regex>
#include <string>
#include <vector>

#include "tests/tools/ToolFixture.h"

namespace trelvo::tool {
namespace {

const Bytes kContainer = {0x01, 0x00, 0x01, 0x00, 0x00, 0x00, 0x06,
                          0x00, 0x3d, 0x01, 0x2a, 0x00, 0x00, 0x00};  // measurementId 42

/// Runs a shell command with the program as $TRELVO; gives its exit status and what it printed.
Outcome shell(const std::string& command) {
  const std::string line = "TRELVO='" TRELVO_PROGRAM "'; " + command;
  std::FILE* pipe = ::popen(line.c_str(), "r");
  std::string out;
  for (int byte = std::fgetc(pipe); byte != EOF; byte = std::fgetc(pipe)) {
    out.push_back(static_cast<char>(byte));
  }
  const int status = ::pclose(pipe);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, out, ""};
}

class NamedFile {
 public:
  explicit NamedFile(const Bytes& content) {
    const UniqueFd file(::mkstemp(m_name));
    EXPECT_EQ(::write(file.get(), content.data(), content.size()),
              static_cast<ssize_t>(content.size()));
  }
  ~NamedFile() { ::unlink(m_name); }
  NamedFile(const NamedFile&) = delete;
  NamedFile& operator=(const NamedFile&) = delete;
  std::string name() const { return m_name; }

 private:
  char m_name[32] = "/tmp/trelvo-test-XXXXXX";
};

TEST(CommandLine, WrongUsageGives2AndAMessage) {
  const std::vector<std::vector<std::string>> lines = {
      {},
      {"weigh"},
      {"--no-such-option"},
      {"show"},
      {"show", "--no-such-option", "-"},
      {"show", "one", "two"},
      {"show", "--json", "--ndjson", "-"},
      {"show", "--json", "--raw", "-"},
      {"show", "--ndjson", "--raw", "-"},
      {"import"},
      {"import", "--no-such-option"},
  };
  for (const std::vector<std::string>& line : lines) {
    const Outcome outcome = runTool(line, kContainer);
    EXPECT_EQ(outcome.status, kExitUsage) << ::testing::PrintToString(line);
    EXPECT_EQ(outcome.out, "") << ::testing::PrintToString(line);
    EXPECT_EQ(outcome.err.rfind("trelvo: ", 0), 0u) << outcome.err;
  }
}

TEST(CommandLine, HelpListsTheCommands) {
  const Outcome outcome = runTool({"--help"});
  EXPECT_EQ(outcome.status, kExitGood);
  for (const char* command : {"import", "show", "geo", "seal", "unseal", "log"}) {
    EXPECT_NE(outcome.out.find(std::string("\n  ") + command + " "), std::string::npos) << command;
  }
  EXPECT_EQ(outcome.err, "");
}

TEST(CommandLine, EachCommandsHelpHasAnExample) {
  for (const char* command : {"import", "show", "geo", "seal", "unseal", "log"}) {
    const Outcome outcome = runTool({command, "--help"});
    EXPECT_EQ(outcome.status, kExitGood);
    EXPECT_NE(outcome.out.find(std::string("  trelvo ") + command + " "), std::string::npos)
        << outcome.out;
    EXPECT_EQ(outcome.err, "");
  }
}

TEST(CommandLine, VersionIsOneLine) {
  const Outcome outcome = runTool({"--version"});
  EXPECT_EQ(outcome.status, kExitGood);
  EXPECT_EQ(outcome.out, "trelvo 1.0.0\n");
}

TEST(CommandLine, ShowsANamedFile) {
  const NamedFile file(kContainer);
  const Outcome outcome = runTool({"show", file.name()});
  EXPECT_EQ(outcome.status, kExitGood);
  EXPECT_EQ(outcome.out,
            "MeasurementContainer\n"
            "  offset: 0\n"
            "  measurementId: 42\n");
  EXPECT_EQ(outcome.err, "");
}

TEST(CommandLine, AFileThatDoesNotOpenGives1AndTheReason) {
  const Outcome outcome = runTool({"show", "/nonexistent/file"});
  EXPECT_EQ(outcome.status, kExitFailed);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "trelvo: /nonexistent/file: No such file or directory\n");
}

TEST(CommandLine, ADirectoryGives1AndTheReason) {
  const Outcome outcome = runTool({"show", "--json", "/tmp"});
  EXPECT_EQ(outcome.status, kExitFailed);
  EXPECT_EQ(outcome.out, "[]\n");
  EXPECT_EQ(outcome.err, "trelvo: /tmp: Is a directory\n");
}

TEST(CommandLine, AnUnreadableStandardInputGives1AndTheReason) {
  std::ostringstream out;
  std::ostringstream err;
  CommandContext context{out, err};
  context.inputDescriptor = -1;
  const char* argv[] = {"trelvo", "show", "-"};
  EXPECT_EQ(runTrelvo(3, argv, context), kExitFailed);
  EXPECT_EQ(err.str(), "trelvo: standard input: Bad file descriptor\n");
}

TEST(CommandLine, TheProgramReadsAPipe) {
  const NamedFile file(kContainer);
  const Outcome outcome = shell("cat " + file.name() + " | $TRELVO show --ndjson -");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out,
            "{\"class\":\"MeasurementContainer\",\"offset\":0,\"measurementId\":42}\n");
}

TEST(CommandLine, AReaderThatLeavesEarlyEndsTheProgramQuietly) {
  Bytes many;
  for (int i = 0; i < 50000; ++i) {
    many.insert(many.end(), kContainer.begin(), kContainer.end());
  }
  const NamedFile file(many);
  for (const char* mode : {"", "--json ", "--ndjson ", "--raw "}) {
    const NamedFile status(Bytes{});
    const Outcome messages = shell("{ $TRELVO show " + std::string(mode) + file.name() + " 2>" +
                                   status.name() + "; echo $? >>" + status.name() +
                                   "; } | head -c 100 >/dev/null; cat " + status.name());
    EXPECT_EQ(messages.out, "0\n") << mode;
  }
}

TEST(CommandLine, AFullOutputDeviceGives1AndTheReason) {
  const NamedFile file(kContainer);
  const Outcome outcome = shell("$TRELVO show " + file.name() + " 2>&1 >/dev/full");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, "trelvo: standard output: No space left on device\n");
}

TEST(CommandLine, AClosedOutputGives1AndTheReason) {
  const NamedFile file(kContainer);
  const Outcome outcome = shell("$TRELVO show " + file.name() + " 2>&1 >&-");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, "trelvo: standard output: Bad file descriptor\n");
}

// As long as nothing is coloured, NO_COLOR has nothing to switch off.
TEST(CommandLine, ATerminalGetsNoColours) {
  const NamedFile file(kContainer);
  const std::regex colour("\x1b\\[[0-9;]*m");
  EXPECT_TRUE(std::regex_search("a\x1b[1;31mb", colour));
  for (const char* variable : {"", "NO_COLOR=1 "}) {
    for (const std::string& words : {"show " + file.name(), "stats " + file.name(),
                                     std::string("show /nonexistent"), std::string("--help")}) {
      const Outcome seen = shell("export TRELVO; " + std::string(variable) +
                                 "TERM=xterm script -qc '\"$TRELVO\" " + words + "' /dev/null");
      EXPECT_NE(seen.out, "") << words;
      EXPECT_FALSE(std::regex_search(seen.out, colour)) << words << seen.out;
    }
  }
}

TEST(CommandLine, TheProgramGives2ForWrongUsage) {
  EXPECT_EQ(shell("$TRELVO show 2>/dev/null").status, 2);
}

}  // namespace
}  // namespace trelvo::tool
