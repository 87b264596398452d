// A program that puts its own functions in the place of the library's, and so joins the facade to
// its instance and opens the LTA log.

#include <gtest/gtest.h>

#include "tests/debug/LogDirectory.h"
#include "tests/debug/TestPlatform.h"

using trelvo::Debug;
using trelvo::test::Connected;
using trelvo::test::LogDirectory;
using trelvo::test::logged;
using trelvo::test::TestPlatform;

namespace {

// Where the LTA log goes in place of the directory that is asked for.
const LogDirectory* ltaDirectory = nullptr;
std::string askedFor;

Debug::LogLevel lastLevel;

}  // namespace

namespace trelvo {

TRELVO_EXPORT void doWriteLogVa(Debug::LogLevel level, bool continued, const char* component,
                                const char* prefix, const char* format, va_list arguments) {
  lastLevel = level;
  if (DebugCommon::mPimpl == nullptr) return;
  DebugCommon::mPimpl->writeLogVa(level, continued, component, prefix, format, arguments);
}

TRELVO_EXPORT void DebugCommon::addLTAXMLFile(const char* directory, const char* pattern) {
  askedFor += std::string(directory) + " " + pattern + "\n";
  if (ltaDirectory == nullptr) return;
  m_ltaFileName = makeLogFileName(ltaDirectory->path().c_str(), pattern);
  m_ltaFile = addLogFile(m_ltaFileName);
}

}  // namespace trelvo

namespace {

constexpr const char* kLtaName = "Trelvo_Lta_20231114_221320.xml";
constexpr const char* kLaterName = "Trelvo_Lta_20231114_221330.xml";

class Seams : public testing::Test {
 protected:
  Seams() : m_connected(platform) {
    platform.m_defaultSetting.levelMask = 17;
    platform.m_defaultSetting.file = platform.addLogFile(directory.file("default.log"));
    ltaDirectory = &directory;
    askedFor.clear();
  }
  ~Seams() override { ltaDirectory = nullptr; }

  LogDirectory directory;
  TestPlatform platform;

 private:
  Connected m_connected;
};

}  // namespace

TEST_F(Seams, TestLogReachesTheInstanceAtLevel16WithAPrefixOfTwoBlanks) {
  Debug::testLog("core", "%s %d", "text", 7);
  EXPECT_EQ(lastLevel, Debug::LogLevelTest);
  Debug::testLog2(true, "core", ", %s %d\n", "more", 8);
  EXPECT_EQ(lastLevel, Debug::LogLevelTest);
  Debug::testLog2(false, "core", "%d\n", 9);
  EXPECT_EQ(directory.content("default.log"),
            logged("core        ", "text 7, more 8\n") + logged("core        ", "9\n"));
}

TEST_F(Seams, TestLogIsOffInTheDefaultMask) {
  platform.m_defaultSetting.levelMask = 15;
  Debug::testLog("core", "text\n");
  EXPECT_EQ(directory.content("default.log"), "");
}

TEST_F(Seams, OtherEntryPointsStaySilent) {
  lastLevel = Debug::LogLevelNote;
  Debug::log("core", "text\n");
  Debug::systemLog("text\n");
  EXPECT_EQ(lastLevel, Debug::LogLevelNote);
  EXPECT_EQ(directory.content("default.log"), "");
}

TEST_F(Seams, LtaLogStartsInItsDirectoryUnderItsName) {
  platform.startLTALogVa();
  EXPECT_EQ(askedFor, "/var/log/kvt/ Trelvo_Lta_%t.xml\n");
  EXPECT_EQ(platform.m_ltaFileName, directory.file(kLtaName));
  EXPECT_EQ(directory.content(kLtaName), "");
}

TEST_F(Seams, CheckOpensTheFirstFile) {
  platform.checkLTAFileHandleVa();
  EXPECT_EQ(directory.content(kLtaName), "<log>\n");
  EXPECT_EQ(directory.content("default.log"),
            logged("default     ", "ltalogging, check lta file, no log file\n"));
}

TEST_F(Seams, CheckOpensANewFileWhenTheOldOneHasVanished) {
  platform.checkLTAFileHandleVa();
  platform.writeXmlEll("<a/>\n");
  platform.checkLTAFileHandleVa();
  EXPECT_EQ(directory.content(kLtaName), "<log>\n<a/>\n");

  std::filesystem::remove(directory.file(kLtaName));
  const std::ptrdiff_t open = trelvo::test::openDescriptors();
  platform.now += 10;
  platform.checkLTAFileHandleVa();
  platform.writeXmlEll("<b/>\n");
  EXPECT_EQ(directory.content(kLaterName), "<log>\n<b/>\n");
  EXPECT_FALSE(directory.has(kLtaName));
  EXPECT_EQ(trelvo::test::openDescriptors(), open);
  EXPECT_EQ(askedFor, "/var/log/kvt/ Trelvo_Lta_%t.xml\n/var/log/kvt/ Trelvo_Lta_%t.xml\n");
}
