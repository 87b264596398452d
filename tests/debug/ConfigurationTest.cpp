#include <gtest/gtest.h>

#include "tests/debug/LogDirectory.h"
#include "tests/debug/TestPlatform.h"

using trelvo::Debug;
using trelvo::DebugCommon;
using trelvo::test::LogDirectory;
using trelvo::test::logged;
using trelvo::test::openDescriptors;
using trelvo::test::TestPlatform;

namespace {

const std::string kGood = logged("default     ", "DEBUG: config file ok\n");
const std::string kBad = logged("default     ", "DEBUG: couldn't read config file\n");

/// A platform that reads configurations in a directory of its own.
struct Configured {
  Configured() = default;
  explicit Configured(const std::string& text) { result = read(text); }

  bool read(const std::string& text) {
    const std::string config = directory.put("config", text);
    return platform.readConfig(config.c_str(), directory.path().c_str(), nullptr);
  }

  /// What a line of `component` at `level` adds to the files and the platform's log.
  void log(const char* component, unsigned int level = 1) {
    platform.writeLogEll(static_cast<Debug::LogLevel>(level), false, component, "%u\n", level);
  }

  const DebugCommon::ComponentSetting& setting(const char* component) const {
    return platform.m_components.at(component);
  }

  std::size_t components() const { return platform.m_components.size(); }
  std::string content(const char* name) const { return directory.content(name); }

  LogDirectory directory;
  TestPlatform platform;
  bool result = false;
};

/// The mask that a line with `text` in its place gives.
unsigned int maskOf(const std::string& text) {
  const Configured c("core " + text + " /dev/null\n");
  return c.setting("core").levelMask;
}

}  // namespace

TEST(Configuration, EmptyFileSetsUpDefaultLogging) {
  const Configured c("");
  EXPECT_TRUE(c.result);
  EXPECT_EQ(c.components(), 0U);
  EXPECT_EQ(c.platform.m_defaultSetting.levelMask, 15U);
  EXPECT_EQ(c.platform.m_defaultSetting.fileName, c.directory.file("trelvo.log"));
  EXPECT_NE(c.platform.m_defaultSetting.file, nullptr);
  EXPECT_TRUE(c.platform.m_platformLogging);
  EXPECT_EQ(c.platform.m_logPath, c.directory.path());
  EXPECT_EQ(c.content("trelvo.log"), kGood);
}

TEST(Configuration, MissingFileSetsUpDefaultLoggingAndIsNoted) {
  const LogDirectory directory;
  TestPlatform platform;
  EXPECT_FALSE(platform.readConfig(directory.file("missing").c_str(), directory.path().c_str(),
                                   "other_%t.log"));
  platform.writeLogEll(Debug::LogLevelNote, false, "core", "text\n");
  EXPECT_EQ(directory.content("other_20231114_221320.log"),
            kBad + logged("core        ", "text\n"));
  EXPECT_EQ(platform.m_defaultSetting.levelMask, 15U);
}

TEST(Configuration, NullFileCountsAsMissing) {
  const LogDirectory directory;
  TestPlatform platform;
  EXPECT_FALSE(platform.readConfig(nullptr, directory.path().c_str(), nullptr));
  EXPECT_EQ(directory.content("trelvo.log"), kBad);
}

TEST(Configuration, DirectoryInPlaceOfTheFileCannotBeRead) {
  const LogDirectory directory;
  TestPlatform platform;
  EXPECT_FALSE(platform.readConfig(directory.path().c_str(), directory.path().c_str(), nullptr));
  EXPECT_EQ(directory.content("trelvo.log"), kBad);
}

TEST(Configuration, NullLogPathMeansTheCurrentDirectory) {
  const LogDirectory directory;
  const std::string config = directory.put("config", "default 1 /dev/null\n");
  TestPlatform platform;
  platform.m_logPath = "/elsewhere/";
  EXPECT_TRUE(platform.readConfig(config.c_str(), nullptr, nullptr));
  EXPECT_EQ(platform.m_logPath, "./");
}

TEST(Configuration, OwnLogPathMayBePassedAgain) {
  Configured c("");
  const std::string config = c.directory.file("config");
  EXPECT_TRUE(c.platform.readConfig(config.c_str(), c.platform.logPath(),
                                    c.platform.m_defaultSetting.fileName.c_str()));
  EXPECT_EQ(c.platform.m_logPath, c.directory.path());
  EXPECT_EQ(c.content("trelvo.log"), kGood);
}

TEST(Configuration, ComponentLineHasMaskAndFile) {
  Configured c("core 5 core.log\n");
  EXPECT_TRUE(c.result);
  ASSERT_EQ(c.components(), 1U);
  EXPECT_EQ(c.setting("core").levelMask, 5U);
  EXPECT_EQ(c.setting("core").fileName, c.directory.file("core.log"));
  EXPECT_NE(c.setting("core").file, nullptr);
  for (const unsigned int level : {1U, 2U, 4U, 8U}) c.log("core", level);
  EXPECT_EQ(c.content("core.log"), logged("core        ", "1\n") + logged("core        ", "4\n"));
  EXPECT_EQ(c.content("trelvo.log"), kGood);
}

TEST(Configuration, DefaultLineBecomesTheDefaultSettingAndLeavesTheMap) {
  testing::internal::CaptureStdout();
  {
    Configured c("default 7 console\n");
    EXPECT_TRUE(c.result);
    EXPECT_EQ(c.components(), 0U);
    EXPECT_EQ(c.platform.m_defaultSetting.levelMask, 7U);
    EXPECT_EQ(c.platform.m_defaultSetting.file, stdout);
    EXPECT_EQ(c.platform.m_defaultSetting.fileName, "console");
    EXPECT_FALSE(c.directory.has("trelvo.log"));
    c.log("core", 4);
    c.log("core", 8);
  }
  EXPECT_EQ(testing::internal::GetCapturedStdout(), kGood + logged("core        ", "4\n"));
}

TEST(Configuration, Level16IsOffByDefault) {
  Configured c("");
  c.log("core", 16);
  c.log("core", 8);
  EXPECT_EQ(c.content("trelvo.log"), kGood + logged("core        ", "8\n"));
}

TEST(Configuration, OutcomeIsNotedAtLevel33OnDefault) {
  EXPECT_EQ(Configured("default 32 a.log\n").content("a.log"), kGood);
  EXPECT_EQ(Configured("default 1 a.log\n").content("a.log"), kGood);
  EXPECT_EQ(Configured("default 30 a.log\n").content("a.log"), "");
  EXPECT_EQ(Configured("default 32 a.log\ncore 1 missing/b.log\n").content("a.log"), kBad);
}

TEST(Configuration, Mask0SilencesAComponentThatDefaultWouldLog) {
  Configured c("core 0 core.log\n");
  EXPECT_TRUE(c.result);
  ASSERT_EQ(c.components(), 1U);
  EXPECT_EQ(c.setting("core").levelMask, 0U);
  EXPECT_EQ(c.setting("core").file, nullptr);
  EXPECT_EQ(c.setting("core").fileName, "");
  EXPECT_FALSE(c.directory.has("core.log"));
  c.log("core", ~0U);
  EXPECT_EQ(c.content("trelvo.log"), kGood);
}

TEST(Configuration, DefaultWithMask0HasNoStreamAndFails) {
  const Configured c("default 0 a.log\n");
  EXPECT_FALSE(c.result);
  EXPECT_EQ(c.components(), 0U);
  EXPECT_EQ(c.platform.m_defaultSetting.levelMask, 0U);
  EXPECT_EQ(c.platform.m_defaultSetting.file, nullptr);
  EXPECT_FALSE(c.directory.has("a.log"));
  EXPECT_FALSE(c.directory.has("trelvo.log"));
  EXPECT_TRUE(c.platform.platformLog().empty());
}

TEST(Configuration, ComponentsWithOneFileShareOneStream) {
  Configured c("core 1 a.log\nnetwork 2 a.log\ndefault 15 a.log\n");
  EXPECT_TRUE(c.result);
  EXPECT_EQ(c.setting("core").file, c.setting("network").file);
  EXPECT_EQ(c.setting("core").file, c.platform.m_defaultSetting.file);
  c.log("core", 1);
  c.log("network", 2);
  c.log("other", 4);
  EXPECT_EQ(c.content("a.log"), kGood + logged("core        ", "1\n") +
                                    logged("network     ", "2\n") + logged("other       ", "4\n"));
}

TEST(Configuration, ImplicitDefaultSharesAComponentsFile) {
  Configured c("core 1 trelvo.log\n");
  EXPECT_EQ(c.setting("core").file, c.platform.m_defaultSetting.file);
  c.log("core", 1);
  EXPECT_EQ(c.content("trelvo.log"), kGood + logged("core        ", "1\n"));
}

TEST(Configuration, RepeatedComponentReplacesTheEarlierSetting) {
  const std::ptrdiff_t before = openDescriptors();
  Configured c("core 1 a.log\ncore 2 b.log\n");
  ASSERT_EQ(c.components(), 1U);
  EXPECT_EQ(c.setting("core").levelMask, 2U);
  EXPECT_EQ(c.setting("core").fileName, c.directory.file("b.log"));
  EXPECT_EQ(openDescriptors(), before + 2) << "a.log is closed";
  c.log("core", 2);
  EXPECT_EQ(c.content("a.log"), "");
  EXPECT_EQ(c.content("b.log"), logged("core        ", "2\n"));
}

TEST(Configuration, RepeatedComponentWithTheSameFileKeepsItsStream) {
  Configured c("core 1 a.log\ncore 2 a.log\n");
  EXPECT_EQ(c.setting("core").levelMask, 2U);
  c.log("core", 2);
  EXPECT_EQ(c.content("a.log"), logged("core        ", "2\n"));
}

TEST(Configuration, ReplacedSettingLeavesAStreamThatIsShared) {
  Configured c("core 1 a.log\nnetwork 1 a.log\ncore 0 none\n");
  c.log("network", 1);
  EXPECT_EQ(c.content("a.log"), logged("network     ", "1\n"));
}

TEST(Configuration, ReplacedSettingLeavesStandardOutputOpen) {
  testing::internal::CaptureStdout();
  {
    const Configured c("core 1 console\ncore 1 a.log\n");
    EXPECT_TRUE(c.result);
  }
  std::printf("printed\n");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "printed\n");
}

TEST(Configuration, RepeatedDefaultReplacesTheEarlierOne) {
  const Configured c("default 1 a.log\ndefault 3 b.log\n");
  EXPECT_EQ(c.platform.m_defaultSetting.levelMask, 3U);
  EXPECT_EQ(c.content("a.log"), "");
  EXPECT_EQ(c.content("b.log"), kGood);
}

TEST(Configuration, PathTakesEffectForTheLinesBehindIt) {
  const LogDirectory other;
  const Configured c("core 1 a.log\npath " + other.path() + "\nnetwork 1 b.log\n");
  EXPECT_TRUE(c.result);
  EXPECT_EQ(c.setting("core").fileName, c.directory.file("a.log"));
  EXPECT_EQ(c.setting("network").fileName, other.file("b.log"));
  EXPECT_EQ(c.platform.m_defaultSetting.fileName, other.file("trelvo.log"));
  EXPECT_EQ(c.platform.m_logPath, other.path());
  EXPECT_EQ(other.content("trelvo.log"), kGood);
}

TEST(Configuration, PathBringsItsOwnSeparator) {
  const LogDirectory other;
  const Configured c("path " + other.file("prefix_") + "\ncore 1 a.log\n");
  EXPECT_EQ(c.setting("core").fileName, other.file("prefix_a.log"));
}

TEST(Configuration, PlatformLoggingCanBeSwitchedOff) {
  Configured c("no_platform_logging and the rest is ignored\n");
  EXPECT_TRUE(c.result);
  EXPECT_FALSE(c.platform.m_platformLogging);
  EXPECT_EQ(c.components(), 0U);
  c.log("core", 1);
  EXPECT_TRUE(c.platform.platformLog().empty());
  EXPECT_EQ(c.content("trelvo.log"), kGood + logged("core        ", "1\n"));
}

TEST(Configuration, PlatformLogGetsTheOutcomeToo) {
  const Configured c("");
  ASSERT_EQ(c.platform.platformLog().size(), 1U);
  EXPECT_EQ(c.platform.platformLog()[0].component, "default");
  EXPECT_EQ(c.platform.platformLog()[0].text, "   DEBUG: config file ok\n");
}

TEST(Configuration, CommentsAndEmptyLinesAreSkipped) {
  const Configured c(
      "; core 1 a.log\n;core 1 a.log\n   ; core 1 a.log\n;\n\n   \n \r\n\r\n   ;core 1 a.log");
  EXPECT_TRUE(c.result);
  EXPECT_EQ(c.components(), 0U);
  EXPECT_FALSE(c.directory.has("a.log"));
}

TEST(Configuration, SemicolonInsideALineIsNoComment) {
  const Configured c("core 1 a.log;b ; more\n");
  EXPECT_EQ(c.setting("core").fileName, c.directory.file("a.log;b"));
}

TEST(Configuration, BlanksAndLineEndsSeparateTokensAndTabsDoNot) {
  const Configured c("  core   3   a.log  \r\nnetwork 1\tb.log\ncrypto\t1 2 c.log");
  EXPECT_EQ(c.components(), 2U);
  EXPECT_EQ(c.setting("core").levelMask, 3U);
  EXPECT_EQ(c.setting("core").fileName, c.directory.file("a.log"));
  EXPECT_EQ(c.setting("crypto\t1").levelMask, 2U);
  EXPECT_EQ(c.setting("crypto\t1").fileName, c.directory.file("c.log"));
}

TEST(Configuration, LastLineNeedsNoEnd) {
  const Configured c("core 1 a.log");
  EXPECT_EQ(c.setting("core").fileName, c.directory.file("a.log"));
}

TEST(Configuration, TokensBehindTheThirdAreIgnored) {
  const Configured c("core 1 a.log b.log 7\n");
  EXPECT_EQ(c.components(), 1U);
  EXPECT_EQ(c.setting("core").fileName, c.directory.file("a.log"));
  EXPECT_FALSE(c.directory.has("b.log"));
}

TEST(Configuration, LinesWithMissingTokensAreSkippedWithoutAFailure) {
  const Configured c("core\ncore 1\nnetwork 0\ndefault\npath\npath   \r\n");
  EXPECT_TRUE(c.result);
  EXPECT_EQ(c.components(), 0U);
  EXPECT_EQ(c.platform.m_logPath, c.directory.path());
  EXPECT_EQ(c.content("trelvo.log"), kGood);
}

TEST(Configuration, MasksAreDecimalAndHaveTheirPlaceIn32Bits) {
  EXPECT_EQ(maskOf("1"), 1U);
  EXPECT_EQ(maskOf("33"), 33U);
  EXPECT_EQ(maskOf("010"), 10U);
  EXPECT_EQ(maskOf("0x10"), 0U);
  EXPECT_EQ(maskOf("12abc"), 12U);
  EXPECT_EQ(maskOf("abc"), 0U);
  EXPECT_EQ(maskOf("+7"), 7U);
  EXPECT_EQ(maskOf("-1"), 0xFFFFFFFFU);
  EXPECT_EQ(maskOf("-2"), 0xFFFFFFFEU);
  EXPECT_EQ(maskOf("2147483648"), 0x80000000U);
  EXPECT_EQ(maskOf("4294967295"), 0xFFFFFFFFU);
  EXPECT_EQ(maskOf("4294967296"), 0xFFFFFFFFU);
  EXPECT_EQ(maskOf("99999999999999999999999"), 0xFFFFFFFFU);
  EXPECT_EQ(maskOf("-2147483648"), 0x80000000U);
  EXPECT_EQ(maskOf("-99999999999999999999999"), 0x80000000U);
}

TEST(Configuration, FailedStreamIsKeptAndMakesTheResultFalse) {
  Configured c("core 1 missing/a.log\nnetwork 1 b.log\n");
  EXPECT_FALSE(c.result);
  ASSERT_EQ(c.components(), 2U);
  EXPECT_EQ(c.setting("core").levelMask, 1U);
  EXPECT_EQ(c.setting("core").file, nullptr);
  EXPECT_EQ(c.setting("core").fileName, c.directory.file("missing/a.log"));
  c.log("core", 1);
  c.log("network", 1);
  EXPECT_EQ(c.content("b.log"), logged("network     ", "1\n"));
  EXPECT_EQ(c.content("trelvo.log"), kBad);
  ASSERT_EQ(c.platform.platformLog().size(), 3U);
  EXPECT_EQ(c.platform.platformLog()[1].component, "core");
}

TEST(Configuration, FailedDefaultStreamMakesTheResultFalse) {
  EXPECT_FALSE(Configured("default 15 missing/a.log\n").result);
  EXPECT_FALSE(Configured("path /proc/\n").result);
}

TEST(Configuration, FullDiskIsNoFailure) {
  Configured c("default 15 /dev/full\n");
  EXPECT_TRUE(c.result);
  c.log("core", 1);
  EXPECT_EQ(c.platform.platformLog().size(), 2U);
}

TEST(Configuration, LineOf200CharactersIsReadAsTwo) {
  const std::string comment = ";" + std::string(126, 'x');
  const std::string second = "network 3 b.log" + std::string(58, ' ');
  ASSERT_EQ(comment.size() + second.size(), 200U);
  const Configured c(comment + second + "\ncore 1 a.log\n");
  ASSERT_EQ(c.components(), 2U);
  EXPECT_EQ(c.setting("network").levelMask, 3U);
  EXPECT_EQ(c.setting("network").fileName, c.directory.file("b.log"));
  EXPECT_EQ(c.setting("core").fileName, c.directory.file("a.log"));
}

TEST(Configuration, TokenAcrossThe127thCharacterIsCutInTwo) {
  const std::string start = "core 1 " + std::string(114, ' ') + "abcdef";
  ASSERT_EQ(start.size(), 127U);
  const Configured c(start + "gh 2 c.log\n");
  EXPECT_EQ(c.setting("core").fileName, c.directory.file("abcdef"));
  EXPECT_EQ(c.setting("gh").levelMask, 2U);
}

TEST(Configuration, LineOf127CharactersWithItsEndIsReadWhole) {
  const std::string whole = "core 1 " + std::string(114, ' ') + "abcde";
  ASSERT_EQ(whole.size(), 126U);
  const Configured c(whole + "\nnetwork 1 b.log\n");
  EXPECT_EQ(c.components(), 2U);
  EXPECT_EQ(c.setting("core").fileName, c.directory.file("abcde"));
  EXPECT_EQ(c.setting("network").fileName, c.directory.file("b.log"));
}

TEST(Configuration, ZeroBytesEndALineForItsTokens) {
  const Configured c(std::string("core 1 a.log\0 b\nnetwork\0 1 b.log\n", 33));
  EXPECT_EQ(c.components(), 1U);
  EXPECT_EQ(c.setting("core").fileName, c.directory.file("a.log"));
}

TEST(Configuration, SecondReadingKeepsOtherComponentsAndClosesWhatIsReplaced) {
  const std::ptrdiff_t before = openDescriptors();
  Configured c("core 1 a.log\nnetwork 1 b.log\ndefault 1 d.log\n");
  EXPECT_TRUE(c.read("core 2 c.log\n"));
  EXPECT_EQ(c.components(), 2U);
  EXPECT_EQ(c.setting("core").fileName, c.directory.file("c.log"));
  EXPECT_EQ(c.setting("network").fileName, c.directory.file("b.log"));
  EXPECT_EQ(c.platform.m_defaultSetting.fileName, c.directory.file("trelvo.log"));
  EXPECT_EQ(openDescriptors(), before + 3);
}

TEST(Configuration, FirstComponentWithTheNameOfAFileGivesTheStream) {
  Configured c;
  const std::string name = c.directory.file("a.log");
  auto& components = c.platform.m_components;
  components["m"] = {1, std::fopen(name.c_str(), "a"), name};
  components["k"] = {1, std::fopen(name.c_str(), "a"), name};
  ASSERT_TRUE(c.read("z 1 a.log\nb 1 a.log\nm 1 a.log\ndefault 1 a.log\n"));
  EXPECT_EQ(c.setting("z").file, c.setting("k").file);
  EXPECT_EQ(c.setting("b").file, c.setting("k").file);
  EXPECT_EQ(c.setting("m").file, c.setting("k").file);
  EXPECT_EQ(c.platform.m_defaultSetting.file, c.setting("k").file);
}

TEST(Configuration, FileThatCouldNotBeOpenedForAComponentIsNotTriedForAnother) {
  Configured c;
  c.platform.m_components["core"] = {1, nullptr, c.directory.file("a.log")};
  EXPECT_FALSE(c.read("network 1 a.log\n"));
  EXPECT_EQ(c.setting("network").file, nullptr);
  EXPECT_FALSE(c.directory.has("a.log"));
}

TEST(Configuration, FileThatNoComponentHasAnyMoreIsOpenedAnew) {
  const std::ptrdiff_t before = openDescriptors();
  Configured c("core 1 a.log\ncore 1 b.log\nnetwork 1 a.log\nnetwork 0 none\nother 1 a.log\n");
  EXPECT_TRUE(c.result);
  EXPECT_EQ(openDescriptors(), before + 3);
  c.log("core");
  c.log("other");
  EXPECT_EQ(c.content("a.log"), logged("other       ", "1\n"));
  EXPECT_EQ(c.content("b.log"), logged("core        ", "1\n"));
}

TEST(Configuration, SharedStreamIsClosedWithItsLastComponent) {
  const std::ptrdiff_t before = openDescriptors();
  Configured c("core 1 a.log\nnetwork 1 a.log\ncore 1 b.log\n");
  EXPECT_EQ(openDescriptors(), before + 3);
  EXPECT_TRUE(c.read("network 1 b.log\n"));
  EXPECT_EQ(openDescriptors(), before + 2);
}

TEST(Configuration, StreamOfTheDefaultSettingOutlivesItsComponent) {
  Configured c("core 1 trelvo.log\n");
  c.platform.m_ltaFile = c.platform.addLogFile(c.directory.file("lta.xml"));
  c.platform.m_components["lta"] = {1, c.platform.m_ltaFile, c.directory.file("lta.xml")};
  EXPECT_TRUE(c.read("core 1 b.log\nlta 1 b.log\n"));
  c.platform.writeXmlEll("%s", "<log>\n");
  EXPECT_EQ(c.content("lta.xml"), "<log>\n");
  EXPECT_EQ(c.content("b.log"), "");
}

TEST(Configuration, ManyComponentsLeaveNothingOpenBehind) {
  const std::ptrdiff_t before = openDescriptors();
  {
    std::string text;
    for (int i = 0; i < 40; ++i) {
      text += "c" + std::to_string(i) + " 1 " + std::to_string(i % 10) + ".log\n";
    }
    Configured c(text);
    EXPECT_TRUE(c.result);
    EXPECT_EQ(c.components(), 40U);
    EXPECT_EQ(openDescriptors(), before + 11);
  }
  EXPECT_EQ(openDescriptors(), before);
}
