#include <trelvo/DebugCommon.h>

#include <gtest/gtest.h>

#include "tests/debug/Logging.h"
#include "tests/support/VirtualSlot.h"

using trelvo::Debug;
using trelvo::DebugCommon;
using trelvo::test::Connected;
using trelvo::test::LogDirectory;
using trelvo::test::logged;
using trelvo::test::Logging;
using trelvo::test::slot;
using trelvo::test::TestLog;
using trelvo::test::TestPlatform;

namespace {

constexpr const char* kTime = "2023-11-14 22:13:20";

/// Writes down which of its operations are called.
class Watched : public TestPlatform {
 public:
  void formatTime(char* text, bool flag) override {
    calls += flag ? "time! " : "time ";
    TestPlatform::formatTime(text, flag);
  }
  int currentThreadNumber() override {
    calls += "thread ";
    return TestPlatform::currentThreadNumber();
  }
  void writePlatform(const char*, const char*, int, const char*, va_list) override {
    calls += "platform ";
  }
  bool lockFile(std::FILE*) override {
    calls += "lock ";
    return !refuse;
  }
  void unlockFile(std::FILE*) override { calls += "unlock "; }

  std::string calls;
  bool refuse = false;
};

/// Sets `watched` when it dies.
class Dying : public TestPlatform {
 public:
  explicit Dying(bool& watched) : m_dead(watched) {}
  ~Dying() override { m_dead = true; }

 private:
  bool& m_dead;
};

}  // namespace

TEST(DebugCommon, VirtualOperationsStandInThisOrder) {
  EXPECT_EQ(slot(&DebugCommon::formatTime), 2U);
  EXPECT_EQ(slot(&DebugCommon::formatFileTime), 3U);
  EXPECT_EQ(slot(&DebugCommon::isAbsolutePath), 4U);
  EXPECT_EQ(slot(&DebugCommon::currentThreadNumber), 5U);
  EXPECT_EQ(slot(&DebugCommon::writePlatform), 6U);
  EXPECT_EQ(slot(&DebugCommon::getProcessNameOrId), 7U);
  EXPECT_EQ(slot(&DebugCommon::lockFile), 8U);
  EXPECT_EQ(slot(&DebugCommon::unlockFile), 9U);
  EXPECT_EQ(slot(&DebugCommon::lockXml), 10U);
  EXPECT_EQ(slot(&DebugCommon::unlockXml), 11U);
  EXPECT_EQ(slot(&trelvo::ILog::puts), 2U);
  EXPECT_EQ(slot(&trelvo::ILog::flush), 3U);
}

TEST(DebugCommon, StartsWithoutComponentsMaskOrFiles) {
  const TestPlatform platform;
  EXPECT_TRUE(platform.m_components.empty());
  EXPECT_EQ(platform.m_defaultSetting.levelMask, 0U);
  EXPECT_EQ(platform.m_defaultSetting.file, nullptr);
  EXPECT_EQ(platform.m_defaultSetting.fileName, "");
  EXPECT_EQ(platform.m_ltaFile, nullptr);
  EXPECT_EQ(platform.m_ltaFileName, "");
  EXPECT_EQ(platform.m_internalLog, nullptr);
  EXPECT_EQ(platform.m_internalLogLines, 0U);
  EXPECT_EQ(platform.m_logPath, "");
  EXPECT_TRUE(platform.m_platformLogging);
  EXPECT_EQ(platform.m_referenceCount, 0);
  EXPECT_EQ(DebugCommon::mPimpl, nullptr);
}

TEST(DebugCommon, BaseOperationsDoNothingAndAllowEverything) {
  TestPlatform platform;
  char text[64] = "";
  platform.getProcessNameOrId(text);
  EXPECT_STREQ(text, "unk");
  EXPECT_TRUE(platform.DebugCommon::lockFile(nullptr));
  platform.DebugCommon::unlockFile(nullptr);
  EXPECT_TRUE(platform.DebugCommon::lockXml(nullptr));
  platform.DebugCommon::unlockXml(nullptr);
}

TEST(DebugCommon, LogPathIsTheCurrentDirectoryWhenEmpty) {
  TestPlatform platform;
  EXPECT_STREQ(platform.logPath(), "./");
  platform.m_logPath = "/tmp/";
  EXPECT_STREQ(platform.logPath(), "/tmp/");
}

TEST(DebugCommon, LineHasTimeThreadPaddedComponentAndPrefix) {
  Logging logging;
  logging.platform.line(Debug::LogLevelNote, false, "core", "><", "%s %d\n", "text", 7);
  EXPECT_EQ(logging.content(), "2023-11-14 22:13:20 1 core         >< text 7\n");
}

TEST(DebugCommon, EllipsisFormHasAPrefixOfTwoBlanks) {
  Logging logging;
  logging.platform.writeLogEll(Debug::LogLevelNote, false, "core", "%s %d\n", "text", 7);
  EXPECT_EQ(logging.content(), "2023-11-14 22:13:20 1 core            text 7\n");
}

TEST(DebugCommon, ComponentOf12CharactersFillsItsColumnAndLongerOnesAreNotCut) {
  Logging logging;
  logging.platform.writeLogEll(Debug::LogLevelNote, false, "twelve chars", "a\n");
  logging.platform.writeLogEll(Debug::LogLevelNote, false, "thirteen char", "b\n");
  EXPECT_EQ(logging.content(),
            "2023-11-14 22:13:20 1 twelve chars    a\n"
            "2023-11-14 22:13:20 1 thirteen char    b\n");
}

TEST(DebugCommon, ContinuedTextGoesOnInTheSameLine) {
  Logging logging;
  logging.platform.writeLogEll(Debug::LogLevelNote, false, "core", "one");
  logging.platform.writeLogEll(Debug::LogLevelNote, true, "core", ", two");
  logging.platform.writeLogEll(Debug::LogLevelNote, true, "core", ", three\n");
  EXPECT_EQ(logging.content(), logged("core        ", "one, two, three\n"));
}

TEST(DebugCommon, NoLineEndIsAdded) {
  Logging logging;
  logging.platform.writeLogEll(Debug::LogLevelNote, false, "core", "text");
  EXPECT_EQ(logging.content(), logged("core        ", "text"));
}

TEST(DebugCommon, UnknownComponentLogsAsDefaultUnderItsOwnName) {
  Logging logging;
  logging.platform.m_components["core"].levelMask = 0;
  logging.platform.writeLogEll(Debug::LogLevelNote, false, "nobody", "text\n");
  EXPECT_EQ(logging.content(), logged("nobody      ", "text\n"));
  EXPECT_EQ(&logging.platform.getComponentLogSettings("nobody"),
            &logging.platform.m_defaultSetting);
}

TEST(DebugCommon, KnownComponentHasItsOwnSetting) {
  TestPlatform platform;
  const DebugCommon::ComponentSetting& core = platform.m_components["core"];
  EXPECT_EQ(&platform.getComponentLogSettings("core"), &core);
  EXPECT_EQ(&platform.getComponentLogSettings("cor"), &platform.m_defaultSetting);
  EXPECT_EQ(&platform.getComponentLogSettings("core "), &platform.m_defaultSetting);
  EXPECT_EQ(&platform.getComponentLogSettings("Core"), &platform.m_defaultSetting);
}

TEST(DebugCommon, NullTextsCountAsEmpty) {
  Logging logging;
  EXPECT_EQ(&logging.platform.getComponentLogSettings(nullptr), &logging.platform.m_defaultSetting);
  const char* none = nullptr;
  va_list unused{};
  logging.platform.writeLogVa(Debug::LogLevelNote, false, none, none, none, unused);
  logging.platform.writeLogVa(logging.file(), false, none, none, none, none, unused);
  TestLog::Record record;
  TestLog log(record);
  logging.platform.writeLogVa(&log, false, none, none, none, none, unused);
  const std::string blanks(15, ' ');
  EXPECT_EQ(logging.content(), "2023-11-14 22:13:20 1" + blanks + " 1" + blanks);
  EXPECT_EQ(record.texts, std::vector<std::string>({" 1" + blanks}));
}

TEST(DebugCommon, ALineIsWrittenWhenItsLevelMeetsTheMask) {
  Logging logging;
  logging.platform.m_defaultSetting.levelMask = 15;
  for (const unsigned int level : {1U, 2U, 4U, 8U, 16U, 32U, 33U, 0U, 0x80000000U, 0x80000008U}) {
    logging.platform.writeLogEll(static_cast<Debug::LogLevel>(level), true, "core", "%u ", level);
  }
  EXPECT_EQ(logging.content(), "1 2 4 8 33 2147483656 ");
  EXPECT_EQ(logging.platform.platformLog().size(), 6U);
}

TEST(DebugCommon, MaskedComponentDoesNotFallBackOnDefault) {
  Logging logging;
  logging.platform.m_components["core"].levelMask = 0;
  logging.platform.writeLogEll(static_cast<Debug::LogLevel>(~0U), false, "core", "text\n");
  EXPECT_EQ(logging.content(), "");
  EXPECT_TRUE(logging.platform.platformLog().empty());
}

TEST(DebugCommon, OperationsAreCalledInThisOrder) {
  const LogDirectory directory;
  Watched platform;
  platform.m_defaultSetting.levelMask = 1;
  platform.m_defaultSetting.file = platform.addLogFile(directory.file("a.log"));

  platform.writeLogEll(Debug::LogLevelNote, false, "core", "text\n");
  EXPECT_EQ(platform.calls, "time lock thread unlock thread platform ");
  platform.calls.clear();
  platform.writeLogEll(Debug::LogLevelNote, true, "core", "text\n");
  EXPECT_EQ(platform.calls, "time lock unlock thread platform ");
  platform.calls.clear();
  platform.writeLogEll(Debug::LogLevelTest, false, "core", "text\n");
  EXPECT_EQ(platform.calls, "time ");
}

TEST(DebugCommon, RefusedFileLockDropsTheTextAndIsNotUnlocked) {
  const LogDirectory directory;
  Watched platform;
  platform.refuse = true;
  platform.m_defaultSetting.levelMask = 1;
  platform.m_defaultSetting.file = platform.addLogFile(directory.file("a.log"));
  platform.writeLogEll(Debug::LogLevelNote, false, "core", "text\n");
  EXPECT_EQ(platform.calls, "time lock thread platform ");
  EXPECT_EQ(directory.content("a.log"), "");
}

TEST(DebugCommon, NullFileGetsNothingAndIsNotLocked) {
  Watched platform;
  platform.m_defaultSetting.levelMask = 1;
  platform.writeLogEll(Debug::LogLevelNote, false, "core", "text\n");
  EXPECT_EQ(platform.calls, "time thread platform ");
}

TEST(DebugCommon, FileFormWritesWhateverTheMasksSay) {
  Logging logging;
  logging.platform.m_defaultSetting.levelMask = 0;
  logging.platform.fileLine(logging.file(), false, "noon", "core", "p", "%d\n", 1);
  logging.platform.fileLine(logging.file(), true, "noon", "core", "p", "%d\n", 2);
  logging.platform.fileLine(nullptr, true, "noon", "core", "p", "%d\n", 3);
  EXPECT_EQ(logging.content(), "noon 1 core         p 1\n2\n");
  EXPECT_TRUE(logging.platform.platformLog().empty());
}

TEST(DebugCommon, WritesAtTheEndWhereverTheStreamStands) {
  Logging logging;
  logging.platform.fileLine(logging.file(), true, "", "", "", "0123456789");
  std::rewind(logging.file());
  logging.platform.fileLine(logging.file(), false, "t", "c", "p", "a\n");
  std::rewind(logging.file());
  logging.platform.fileLine(logging.file(), true, "", "", "", "b\n");
  EXPECT_EQ(logging.content(), "0123456789t 1 c            p a\nb\n");
}

TEST(DebugCommon, FullDiskIsPassedOver) {
  TestPlatform platform;
  platform.m_defaultSetting.levelMask = 1;
  platform.m_defaultSetting.file = platform.addLogFile("/dev/full");
  ASSERT_NE(platform.m_defaultSetting.file, nullptr);
  platform.writeLogEll(Debug::LogLevelNote, false, "core", "text %d\n", 1);
  platform.writeLogEll(Debug::LogLevelNote, false, "core", "text %d\n", 2);
  EXPECT_NE(std::ferror(platform.m_defaultSetting.file), 0);
  ASSERT_EQ(platform.platformLog().size(), 2U);
  EXPECT_EQ(platform.platformLog()[1].text, "   text 2\n");
}

TEST(DebugCommon, FileAndPlatformLogBothGetTheArguments) {
  Logging logging;
  logging.platform.line(Debug::LogLevelNote, false, "core", "  ", "%d %s %.1f\n", 7, "x", 2.5);
  EXPECT_EQ(logging.content(), logged("core        ", "7 x 2.5\n"));
  ASSERT_EQ(logging.platform.platformLog().size(), 1U);
  const TestPlatform::PlatformLine line = logging.platform.platformLog()[0];
  EXPECT_EQ(line.time, kTime);
  EXPECT_EQ(line.component, "core");
  EXPECT_EQ(line.thread, 1);
  EXPECT_EQ(line.format, "   %d %s %.1f\n");
  EXPECT_EQ(line.text, "   7 x 2.5\n");
}

namespace {

void allForms(TestPlatform& platform, std::FILE* file, trelvo::ILog* log, const char* format, ...)
    __attribute__((format(printf, 4, 5)));
void allForms(TestPlatform& platform, std::FILE* file, trelvo::ILog* log, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  platform.writeLogVa(Debug::LogLevelNote, false, "core", "", format, arguments);
  platform.writeLogVa(file, true, "", "", "", format, arguments);
  platform.writeLogVa(log, true, "", "", "", format, arguments);
  platform.writePlatSpecificVa("", "", "", format, arguments);
  va_end(arguments);
}

}  // namespace

TEST(DebugCommon, CallersArgumentsServeSeveralForms) {
  Logging logging;
  TestLog::Record record;
  TestLog log(record);
  allForms(logging.platform, logging.file(), &log, "%d %s\n", 7, "x");
  EXPECT_EQ(logging.content(), "2023-11-14 22:13:20 1 core          7 x\n7 x\n");
  EXPECT_EQ(record.texts, std::vector<std::string>({"7 x\n"}));
  ASSERT_EQ(logging.platform.platformLog().size(), 2U);
  EXPECT_EQ(logging.platform.platformLog()[1].text, " 7 x\n");
}

TEST(DebugCommon, PlatformLogCanBeSwitchedOff) {
  Logging logging;
  logging.platform.m_platformLogging = false;
  logging.platform.writeLogEll(Debug::LogLevelNote, false, "core", "text\n");
  logging.platform.platformLine(kTime, "core", "p", "text\n");
  EXPECT_TRUE(logging.platform.platformLog().empty());
  EXPECT_EQ(logging.content(), logged("core        ", "text\n"));
}

namespace {

std::string platformFormat(const std::string& prefix, const std::string& format) {
  Watched watched;
  TestPlatform platform;
  va_list unused{};
  // Conversions of these formats take no argument, so that any list will do.
  platform.writePlatSpecificVa("", "", prefix.c_str(), format.c_str(), unused);
  return platform.platformLog().at(0).format;
}

}  // namespace

TEST(DebugCommon, PlatformFormatIsPrefixBlankAndFormat) {
  EXPECT_EQ(platformFormat("><", "text\n"), ">< text\n");
  EXPECT_EQ(platformFormat("", ""), " ");
}

TEST(DebugCommon, PlatformFormatIsCutAt127Bytes) {
  EXPECT_EQ(platformFormat("p", std::string(125, 'x')), "p " + std::string(125, 'x'));
  EXPECT_EQ(platformFormat("p", std::string(126, 'x')), "p " + std::string(125, 'x'));
  EXPECT_EQ(platformFormat("p", std::string(5000, 'x')), "p " + std::string(125, 'x'));
  EXPECT_EQ(platformFormat(std::string(5000, 'p'), "x"), std::string(127, 'p'));
}

TEST(DebugCommon, PlatformFormatEndsAheadOfAConversionThatIsCut) {
  const std::string text(120, 'x');
  EXPECT_EQ(platformFormat("", text + "abcd%%\n"), " " + text + "abcd%%");
  EXPECT_EQ(platformFormat("", text + "abcde%%\n"), " " + text + "abcde");
  EXPECT_EQ(platformFormat("", text + "ab%-5.3ld\n"), " " + text + "ab");
  EXPECT_EQ(platformFormat("", "%%" + text + "a%hhd\n"), " %%" + text + "a");
  EXPECT_EQ(platformFormat("", text + "%%%%%%%%%%"), " " + text + "%%%%%%");
}

TEST(DebugCommon, PercentInThePrefixIsNoConversion) {
  Logging logging;
  logging.platform.line(Debug::LogLevelNote, false, "core", "100%s%", "%d\n", 7);
  EXPECT_EQ(logging.content(), "2023-11-14 22:13:20 1 core         100%s% 7\n");
  EXPECT_EQ(logging.platform.platformLog().at(0).format, "100%%s%% %d\n");
  EXPECT_EQ(logging.platform.platformLog().at(0).text, "100%s% 7\n");
}

TEST(DebugCommon, ReferencesAreCountedAndNoted) {
  Logging logging;
  logging.platform.addRef();
  logging.platform.addRef();
  EXPECT_EQ(logging.platform.m_referenceCount, 2);
  logging.platform.removeRef();
  EXPECT_EQ(logging.platform.m_referenceCount, 1);
  EXPECT_EQ(logging.content(), logged("default     ", "DebugCommon::addRef: counter 1\n") +
                                   logged("default     ", "DebugCommon::addRef: counter 2\n") +
                                   logged("default     ", "DebugCommon::removeRef: counter 2\n"));
}

TEST(DebugCommon, ReferencesAreNotedAtLevel1) {
  Logging logging;
  logging.platform.m_defaultSetting.levelMask = ~1U;
  logging.platform.addRef();
  logging.platform.addRef();
  logging.platform.removeRef();
  EXPECT_EQ(logging.content(), "");
}

TEST(DebugCommon, LastRemoveRefDeletesTheInstance) {
  const LogDirectory directory;
  bool dead = false;
  auto* const platform = new Dying(dead);
  DebugCommon::mPimpl = platform;
  platform->m_defaultSetting.levelMask = 1;
  platform->m_defaultSetting.file = platform->addLogFile(directory.file("a.log"));
  platform->addRef();
  platform->addRef();
  platform->removeRef();
  EXPECT_FALSE(dead);
  EXPECT_EQ(DebugCommon::mPimpl, platform);
  platform->removeRef();
  EXPECT_TRUE(dead);
  EXPECT_EQ(DebugCommon::mPimpl, nullptr);
  EXPECT_EQ(directory.content("a.log"),
            logged("default     ", "DebugCommon::addRef: counter 1\n") +
                logged("default     ", "DebugCommon::addRef: counter 2\n") +
                logged("default     ", "DebugCommon::removeRef: counter 2\n") +
                logged("default     ", "DebugCommon::removeRef: counter 1\n"));
}

TEST(DebugCommon, RemoveRefBelow0DeletesNothing) {
  TestPlatform platform;
  const Connected connected(platform);
  platform.removeRef();
  EXPECT_EQ(platform.m_referenceCount, -1);
  EXPECT_EQ(DebugCommon::mPimpl, &platform);
}

TEST(DebugCommon, LastRemoveRefWithoutAnInstanceDeletesNothing) {
  TestPlatform platform;
  platform.addRef();
  platform.removeRef();
  EXPECT_EQ(platform.m_referenceCount, 0);
}
