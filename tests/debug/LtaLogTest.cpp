// The XML log as the library has it, where no platform opens it.

#include <gtest/gtest.h>

#include "tests/debug/LogDirectory.h"
#include "tests/debug/TestPlatform.h"

using trelvo::Debug;
using trelvo::test::LogDirectory;
using trelvo::test::logged;
using trelvo::test::openDescriptors;
using trelvo::test::TestPlatform;

namespace {

const std::string kNoFile = logged("default     ", "ltalogging, check lta file, no log file\n");

class Lta : public TestPlatform {
 public:
  explicit Lta(const LogDirectory& directory) {
    m_ltaFileName = directory.file("lta.xml");
    m_ltaFile = addLogFile(m_ltaFileName);
    m_defaultSetting.levelMask = 1;
    m_defaultSetting.file = addLogFile(directory.file("default.log"));
  }

  bool lockXml(std::FILE* file) override {
    EXPECT_EQ(file, m_ltaFile);
    calls += "lock ";
    return !refuse;
  }
  void unlockXml(std::FILE* file) override {
    EXPECT_EQ(file, m_ltaFile);
    calls += "unlock ";
  }
  bool lockFile(std::FILE*) override { return true; }
  void unlockFile(std::FILE*) override {}

  std::string calls;
  bool refuse = false;
};

}  // namespace

TEST(LtaLog, OpeningDoesNothingInTheLibrary) {
  TestPlatform platform;
  platform.addLTAXMLFile("/tmp/", "lta.xml");
  platform.startLTALogVa();
  EXPECT_EQ(platform.m_ltaFile, nullptr);
  EXPECT_EQ(platform.m_ltaFileName, "");
}

TEST(LtaLog, TextsAreWrittenAsTheyAre) {
  const LogDirectory directory;
  Lta platform(directory);
  platform.writeXmlEll("<log>\n");
  platform.writeXmlEll("<fix lat=\"%.2f\">%s</fix>\n", 52.5, "a & b");
  EXPECT_EQ(directory.content("lta.xml"), "<log>\n<fix lat=\"52.50\">a & b</fix>\n");
  EXPECT_EQ(platform.calls, "lock unlock lock unlock ");
  EXPECT_EQ(directory.content("default.log"), "");
}

TEST(LtaLog, TextsGoToTheEndWhereverTheStreamStands) {
  const LogDirectory directory;
  Lta platform(directory);
  platform.writeXmlEll("one\n");
  std::rewind(platform.m_ltaFile);
  platform.writeXmlEll("two\n");
  EXPECT_EQ(directory.content("lta.xml"), "one\ntwo\n");
}

TEST(LtaLog, WithoutAFileNothingHappens) {
  const LogDirectory directory;
  Lta platform(directory);
  platform.closeLTAFileHandleVa();
  platform.writeXmlEll("<log>\n");
  EXPECT_EQ(platform.calls, "");
  EXPECT_EQ(directory.content("lta.xml"), "");
}

TEST(LtaLog, RefusedLockDropsTheTextAndIsNotUnlocked) {
  const LogDirectory directory;
  Lta platform(directory);
  platform.refuse = true;
  platform.writeXmlEll("<log>\n");
  EXPECT_EQ(platform.calls, "lock ");
  EXPECT_EQ(directory.content("lta.xml"), "");
}

TEST(LtaLog, FullDiskIsPassedOver) {
  TestPlatform platform;
  platform.m_ltaFile = platform.addLogFile("/dev/full");
  platform.writeXmlEll("<log>\n");
  EXPECT_NE(std::ferror(platform.m_ltaFile), 0);
}

TEST(LtaLog, ClosingClosesOnce) {
  const LogDirectory directory;
  const std::ptrdiff_t before = openDescriptors();
  Lta platform(directory);
  EXPECT_EQ(openDescriptors(), before + 2);
  platform.closeLTAFileHandleVa();
  EXPECT_EQ(platform.m_ltaFile, nullptr);
  EXPECT_EQ(openDescriptors(), before + 1);
  platform.closeLTAFileHandleVa();
  EXPECT_EQ(openDescriptors(), before + 1);
}

TEST(LtaLog, ClosingLeavesAStreamThatAComponentUses) {
  const LogDirectory directory;
  Lta platform(directory);
  platform.closeLTAFileHandleVa();
  platform.m_ltaFile = platform.m_defaultSetting.file;
  platform.closeLTAFileHandleVa();
  platform.writeLogEll(Debug::LogLevelNote, false, "core", "text\n");
  EXPECT_EQ(directory.content("default.log"), logged("core        ", "text\n"));
}

TEST(LtaLog, CheckLeavesAFileThatIsThere) {
  const LogDirectory directory;
  Lta platform(directory);
  std::FILE* const file = platform.m_ltaFile;
  platform.checkLTAFileHandleVa();
  EXPECT_EQ(platform.m_ltaFile, file);
  EXPECT_EQ(directory.content("lta.xml"), "");
  EXPECT_EQ(directory.content("default.log"), "");
}

TEST(LtaLog, CheckNotesAndClosesAFileThatHasVanished) {
  const LogDirectory directory;
  Lta platform(directory);
  std::filesystem::remove(directory.file("lta.xml"));
  platform.checkLTAFileHandleVa();
  EXPECT_EQ(platform.m_ltaFile, nullptr);
  EXPECT_EQ(platform.calls, "");
  EXPECT_EQ(directory.content("default.log"), kNoFile);
}

TEST(LtaLog, CheckTakesAnEmptyNameForAVanishedFile) {
  const LogDirectory directory;
  Lta platform(directory);
  platform.m_ltaFileName.clear();
  platform.checkLTAFileHandleVa();
  EXPECT_EQ(platform.m_ltaFile, nullptr);
  EXPECT_EQ(directory.content("default.log"), kNoFile);
}

TEST(LtaLog, VanishedFileIsNotedAtLevel1) {
  const LogDirectory directory;
  Lta platform(directory);
  platform.m_defaultSetting.levelMask = ~1U;
  platform.m_ltaFileName.clear();
  platform.checkLTAFileHandleVa();
  EXPECT_EQ(directory.content("default.log"), "");
}
