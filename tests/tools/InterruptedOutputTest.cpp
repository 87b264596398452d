#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>
#include <string>
#include <thread>
#include <vector>

#include "tests/tools/CryptoFixture.h"
#include "tests/tools/MapSupport.h"
#include "tests/tools/ToolProcess.h"
#include "tools/trelvo/OutputFile.h"

namespace trelvo::tool {
namespace {

/// The program, stopped by a signal while it waits for the rest of its input.
class InterruptedOutput : public CryptoFixture {
 protected:
  InterruptedOutput() { EXPECT_EQ(::mkfifo(path("in").c_str(), 0600), 0); }

  // More than a pipe holds: when it is written, the program has begun to read.
  void interrupt(std::vector<std::string> arguments, const Bytes& input, int number) const {
    arguments.insert(arguments.end(), {"-o", path("out")});
    ToolProcess program(arguments);
    const UniqueFd pipe(::open(path("in").c_str(), O_WRONLY | O_CLOEXEC));
    ASSERT_EQ(::write(pipe.get(), input.data(), input.size()), static_cast<ssize_t>(input.size()));
    waitForTemporary();
    program.signal(number);
    EXPECT_EQ(program.finish().status, -1) << "not ended by the signal";
  }

  void waitForTemporary() const {
    for (bool found = false; !found; std::this_thread::yield()) {
      for (const auto& entry : std::filesystem::directory_iterator(m_folder)) {
        found = found || entry.path().filename().string().find("out.part-") == 0;
      }
    }
  }

  void expectNothingBut(const std::vector<std::string>& names) const {
    EXPECT_EQ(filesIn(m_folder), names.size());
    for (const std::string& name : names) {
      EXPECT_TRUE(exists(path(name))) << name;
    }
  }
};

Bytes manyContainers() {
  return track(4000, [](unsigned int i) { return circleAt(52.5 + 1e-5 * i, 13.4, 8.0F); });
}

Bytes manySentences() {
  std::string text;
  while (text.size() < 250000) {
    text += "$GPGGA,1*00\n";
  }
  return Bytes(text.begin(), text.end());
}

TEST_F(InterruptedOutput, OfAnImportLeavesNothing) {
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    interrupt({"import", "--format", "nmea", path("in")}, manySentences(), number);
    expectNothingBut({"in", "keys"});
  }
}

TEST_F(InterruptedOutput, OfAnExportLeavesTheOldFile) {
  file("out", "old");
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    interrupt({"export", "--format", "ndjson", path("in")}, manyContainers(), number);
    expectNothingBut({"in", "keys", "out"});
    EXPECT_EQ(textOf(path("out")), "old");
  }
}

TEST(SignalledRemoval, LeavesSignalsAsTheyWere) {
  std::signal(SIGINT, SIG_DFL);  // ignored in what a shell runs in the background
  struct sigaction action {};
  {
    const OutputFile file("/tmp/trelvo-removal-" + std::to_string(::getpid()));
    ASSERT_EQ(::sigaction(SIGINT, nullptr, &action), 0);
    EXPECT_NE(action.sa_handler, SIG_DFL);
  }
  ASSERT_EQ(::sigaction(SIGINT, nullptr, &action), 0);
  EXPECT_EQ(action.sa_handler, SIG_DFL);
}

TEST(SignalledRemoval, LeavesAloneWhatIsIgnored) {
  std::signal(SIGHUP, SIG_IGN);
  const OutputFile file("/tmp/trelvo-removal-" + std::to_string(::getpid()));
  struct sigaction action {};
  ASSERT_EQ(::sigaction(SIGHUP, nullptr, &action), 0);
  EXPECT_EQ(action.sa_handler, SIG_IGN);
  std::signal(SIGHUP, SIG_DFL);
}

}  // namespace
}  // namespace trelvo::tool
