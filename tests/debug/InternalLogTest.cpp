// The copy of the log that goes to an ILog.

#include <gtest/gtest.h>

#include <cwchar>

#include "tests/debug/Logging.h"

using trelvo::Debug;
using trelvo::test::logged;
using trelvo::test::Logging;
using trelvo::test::TestLog;
using trelvo::test::TestPlatform;

TEST(InternalLog, IsNotFedByTheMainEntry) {
  TestLog::Record record;
  Logging logging;
  logging.platform.setInternalLog(new TestLog(record));
  logging.platform.writeLogEll(Debug::LogLevelNote, false, "core", "text\n");
  EXPECT_TRUE(record.texts.empty());
  EXPECT_EQ(logging.platform.m_internalLogLines, 0U);
}

TEST(InternalLog, FormHasTheSameLine) {
  TestPlatform platform;
  TestLog::Record record;
  TestLog log(record);
  platform.logLine(&log, false, "noon", "core", "><", "%s %d\n", "text", 7);
  platform.logLine(&log, true, "noon", "core", "><", "%s %d\n", "more", 8);
  platform.logLine(nullptr, false, "noon", "core", "><", "%s %d\n", "none", 9);
  EXPECT_EQ(record.texts,
            std::vector<std::string>({"noon 1 core         >< text 7\n", "more 8\n"}));
  EXPECT_EQ(platform.m_internalLogLines, 2U);
}

TEST(InternalLog, FormEndsBehindTheHeadWhereTheTextCannotBeExpressed) {
  TestPlatform platform;
  TestLog::Record record;
  TestLog log(record);
  const wint_t notAscii = 0x3B1;  // in the locale that programs start with
  platform.logLine(&log, false, "noon", "core", "><", "%lc\n", notAscii);
  platform.logLine(&log, true, "noon", "core", "><", "%lc\n", notAscii);
  EXPECT_EQ(record.texts, std::vector<std::string>({"noon 1 core         >< ", ""}));
}

TEST(InternalLog, FormCutsAt255Bytes) {
  TestPlatform platform;
  TestLog::Record record;
  TestLog log(record);
  const std::string text(255, 'x');
  platform.logLine(&log, true, "", "", "", "%s", text.c_str());
  platform.logLine(&log, true, "", "", "", "%sy", text.c_str());
  platform.logLine(&log, false, "t", "c", "p", "%s", text.c_str());
  const std::string head = "t 1 c            p ";
  EXPECT_EQ(record.texts, std::vector<std::string>({text, text, head + text.substr(head.size())}));
}

TEST(InternalLog, FormCutsAHeadThatIsTooLong) {
  TestPlatform platform;
  TestLog::Record record;
  TestLog log(record);
  const std::string component(300, 'c');
  platform.logLine(&log, false, "t", component.c_str(), "p", "text\n");
  EXPECT_EQ(record.texts, std::vector<std::string>({"t 1 " + std::string(251, 'c')}));
}

TEST(InternalLog, FormFlushesTheFirstLineAndEveryTenthAfterIt) {
  TestPlatform platform;
  TestLog::Record record;
  TestLog log(record);
  for (int line = 1; line <= 31; ++line) platform.logLine(&log, true, "", "", "", "%d\n", line);
  EXPECT_EQ(record.texts.size(), 31U);
  EXPECT_EQ(record.texts.back(), "31\n");
  EXPECT_EQ(record.flushedAfter, std::vector<std::size_t>({1, 11, 21, 31}));
  EXPECT_EQ(platform.m_internalLogLines, 31U);
}

TEST(InternalLog, SecondLogStaysTheCallers) {
  TestLog::Record first, second;
  TestLog later(second);
  {
    Logging logging;
    auto* const log = new TestLog(first);
    logging.platform.setInternalLog(log);
    EXPECT_EQ(logging.content(), "");
    logging.platform.setInternalLog(&later);
    EXPECT_EQ(logging.platform.m_internalLog, log);
    logging.platform.setInternalLog(log);
    EXPECT_EQ(logging.platform.m_internalLog, log);
    const std::string note = logged("default     ", "DEBUG: internal log already set\n");
    EXPECT_EQ(logging.content(), note + note);
    EXPECT_EQ(first.deaths, 0);
  }
  EXPECT_EQ(first.deaths, 1);
  EXPECT_EQ(second.deaths, 0);
}

TEST(InternalLog, SecondLogIsNotedAtLevel33) {
  for (const unsigned int mask : {1U, 32U, 33U, ~33U}) {
    TestLog::Record first, second;
    TestLog later(second);
    Logging logging;
    logging.platform.m_defaultSetting.levelMask = mask;
    logging.platform.setInternalLog(new TestLog(first));
    logging.platform.setInternalLog(&later);
    EXPECT_EQ(logging.content().empty(), mask == ~33U) << mask;
  }
}
