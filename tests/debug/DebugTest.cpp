#include <trelvo/Debug.h>

#include <gtest/gtest.h>

#include <new>
#include <thread>
#include <vector>

#include <trelvo/DebugCommon.h>
#include <trelvo/DebugMutex.h>

#include "tests/debug/LogDirectory.h"
#include "tests/debug/TestPlatform.h"

using trelvo::Debug;
using trelvo::DebugCommon;
using trelvo::DebugMutex;
using trelvo::gDebugMutex;
using trelvo::test::Connected;
using trelvo::test::LogDirectory;
using trelvo::test::TestLog;
using trelvo::test::TestPlatform;

namespace {

/// While it lives there is no mutex, as before start-up and after process exit.
class NoMutex {
 public:
  NoMutex() { gDebugMutex.~DebugMutex(); }
  ~NoMutex() { new (&gDebugMutex) DebugMutex; }
  NoMutex(const NoMutex&) = delete;
  NoMutex& operator=(const NoMutex&) = delete;
};

void logvaOf(const char* component, const char* format, ...) __attribute__((format(printf, 2, 3)));
void logvaOf(const char* component, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  Debug::logva(component, format, arguments);
  va_end(arguments);
}

void doWriteLogVaOf(const char* component, const char* format, ...)
    __attribute__((format(printf, 2, 3)));
void doWriteLogVaOf(const char* component, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  trelvo::doWriteLogVa(Debug::LogLevelNote, false, component, "", format, arguments);
  va_end(arguments);
}

}  // namespace

TEST(Debug, ComponentsHaveTheseNames) {
  EXPECT_STREQ(Debug::defaultComponentName, "WPQENL");
  EXPECT_STREQ(DebugCommon::DebugDefaultComponent, "default");
  EXPECT_STREQ(trelvo::gCoreDebugComponentName, "core");
  EXPECT_STREQ(trelvo::gCryptoDebugComponentName, "crypto");
  EXPECT_STREQ(trelvo::gNetworkComponentName, "network");
  EXPECT_STREQ(trelvo::gDatatypesComponentName, "datatypes");
}

TEST(Debug, LevelsAreTheseBits) {
  EXPECT_EQ(Debug::LogLevelNote, 1U);
  EXPECT_EQ(Debug::LogLevelTest, 16U);
  EXPECT_EQ(Debug::LogLevelConfiguration, 33U);
  EXPECT_EQ(sizeof(Debug::LogLevel), 4U);
}

TEST(Debug, EntryPointsWriteNothingAtAnyLevel) {
  const LogDirectory directory;
  const std::string config = directory.put("config", "default -1 all.log\n");
  TestPlatform platform;
  ASSERT_TRUE(platform.readConfig(config.c_str(), directory.path().c_str(), nullptr));
  const std::string before = directory.content("all.log");
  const std::size_t platformLines = platform.platformLog().size();
  const Connected connected(platform);
  const unsigned char bytes[] = {1, 2, 3};

  Debug::log("core", "%d\n", 1);
  Debug::customerLog("core", "%d\n", 1);
  Debug::log2(true, "core", "%d\n", 1);
  logvaOf("core", "%d\n", 1);
  Debug::dump("core", "%d\n", bytes, sizeof bytes, 1);
  Debug::dump2(true, "core", "%d\n", bytes, sizeof bytes, 1);
  Debug::perf("core", "%d\n", 1);
  Debug::perf2(true, "core", "%d\n", 1);
  Debug::systemLog("%d\n", 1);
  Debug::testLog("core", "%d\n", 1);
  Debug::testLog2(true, "core", "%d\n", 1);
  doWriteLogVaOf("core", "%d\n", 1);
  trelvo::doWriteLogEll(Debug::LogLevelNote, false, "core", "", "%d\n", 1);

  EXPECT_EQ(directory.content("all.log"), before);
  EXPECT_EQ(platform.platformLog().size(), platformLines);
}

TEST(Debug, HasNothingToStartOrRelease) {
  EXPECT_FALSE(Debug::init());
  Debug::release();
  EXPECT_EQ(DebugCommon::mPimpl, nullptr);
}

TEST(Debug, LogPathIsNullWithoutAnInstance) { EXPECT_EQ(Debug::logPath(), nullptr); }

TEST(Debug, LogPathIsTheInstances) {
  TestPlatform platform;
  const Connected connected(platform);
  EXPECT_STREQ(Debug::logPath(), "./");
  platform.m_logPath = "/var/log/kvt/";
  EXPECT_STREQ(Debug::logPath(), "/var/log/kvt/");
  EXPECT_EQ(Debug::logPath(), platform.logPath());
}

TEST(Debug, LogPathIsNullWhenTheLockFails) {
  TestPlatform platform;
  const Connected connected(platform);
  const NoMutex noMutex;
  EXPECT_EQ(Debug::logPath(), nullptr);
}

TEST(Debug, SetInternalLogGivesTheLogToTheInstance) {
  TestLog::Record record;
  {
    TestPlatform platform;
    const Connected connected(platform);
    auto* const log = new TestLog(record);
    Debug::setInternalLog(log);
    EXPECT_EQ(platform.m_internalLog, log);
    EXPECT_EQ(record.deaths, 0);
  }
  EXPECT_EQ(record.deaths, 1);
}

TEST(Debug, SetInternalLogWithoutAnInstanceLeavesTheLogToTheCaller) {
  TestLog::Record record;
  {
    TestLog log(record);
    Debug::setInternalLog(&log);
    EXPECT_EQ(record.deaths, 0);
  }
  EXPECT_EQ(record.deaths, 1);
  EXPECT_TRUE(record.texts.empty());
}

TEST(Debug, SetInternalLogWhenTheLockFailsLeavesTheLogToTheCaller) {
  TestLog::Record record;
  TestLog log(record);
  TestPlatform platform;
  const Connected connected(platform);
  const NoMutex noMutex;
  Debug::setInternalLog(&log);
  EXPECT_EQ(platform.m_internalLog, nullptr);
}

TEST(FaultInjection, CounterIs0AtStart) {
  EXPECT_EQ(DebugCommon::mCallCount, 0);
  EXPECT_EQ(Debug::getFailAtSpecificCallValue(), 0);
}

TEST(FaultInjection, ThirdCallFails) {
  Debug::setFailAtSpecificCall(3);
  EXPECT_FALSE(Debug::shouldFailThisCall());
  EXPECT_EQ(Debug::getFailAtSpecificCallValue(), 2);
  EXPECT_FALSE(Debug::shouldFailThisCall());
  EXPECT_TRUE(Debug::shouldFailThisCall());
  for (int call = 0; call < 100; ++call) EXPECT_FALSE(Debug::shouldFailThisCall());
  EXPECT_EQ(Debug::getFailAtSpecificCallValue(), -100);
}

TEST(FaultInjection, FirstCallFails) {
  Debug::setFailAtSpecificCall(1);
  EXPECT_TRUE(Debug::shouldFailThisCall());
  EXPECT_FALSE(Debug::shouldFailThisCall());
}

TEST(FaultInjection, NoCallFailsFrom0OrBelow) {
  for (const int count : {0, -1}) {
    Debug::setFailAtSpecificCall(count);
    for (int call = 0; call < 100; ++call) EXPECT_FALSE(Debug::shouldFailThisCall());
    EXPECT_EQ(Debug::getFailAtSpecificCallValue(), count - 100);
  }
}

TEST(FaultInjection, CounterWrapsBelowTheSmallestInteger) {
  Debug::setFailAtSpecificCall(-2147483647 - 1);
  EXPECT_FALSE(Debug::shouldFailThisCall());
  EXPECT_EQ(Debug::getFailAtSpecificCallValue(), 2147483647);
}

TEST(FaultInjection, EveryCallFailsWhenTheLockDoes) {
  Debug::setFailAtSpecificCall(5);
  {
    const NoMutex noMutex;
    EXPECT_TRUE(Debug::shouldFailThisCall());
    EXPECT_TRUE(Debug::shouldFailThisCall());
    EXPECT_EQ(Debug::getFailAtSpecificCallValue(), -1);
    Debug::setFailAtSpecificCall(7);
  }
  EXPECT_EQ(Debug::getFailAtSpecificCallValue(), 5);
}

TEST(FaultInjection, OneCallOfManyThreadsFails) {
  constexpr int kThreads = 4;
  constexpr int kCalls = 250;
  Debug::setFailAtSpecificCall(kThreads * kCalls / 2);
  std::vector<int> failures(kThreads, 0);
  std::vector<std::thread> threads;
  for (int& count : failures) {
    threads.emplace_back([&count] {
      for (int call = 0; call < kCalls; ++call) count += Debug::shouldFailThisCall() ? 1 : 0;
    });
  }
  int total = 0;
  for (std::size_t i = 0; i < threads.size(); ++i) {
    threads[i].join();
    total += failures[i];
  }
  EXPECT_EQ(total, 1);
  EXPECT_EQ(Debug::getFailAtSpecificCallValue(), -kThreads * kCalls / 2);
}

TEST(DebugMutex, LocksAfterItIsGivenBack) {
  for (int round = 0; round < 3; ++round) {
    ASSERT_TRUE(DebugCommon::lock());
    DebugCommon::unlock();
  }
}

TEST(DebugMutex, HoldsOffOtherThreads) {
  constexpr int kThreads = 4;
  constexpr int kRounds = 1000;
  int counter = 0;  // plain: the thread sanitizer sees whether it is guarded
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&counter] {
      for (int round = 0; round < kRounds; ++round) {
        if (!DebugCommon::lock()) continue;
        ++counter;
        DebugCommon::unlock();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(counter, kThreads * kRounds);
}

TEST(DebugMutex, CannotBeLockedOnceItIsDestroyed) {
  {
    const NoMutex noMutex;
    EXPECT_FALSE(DebugCommon::lock());
    EXPECT_FALSE(gDebugMutex.lock());
  }
  EXPECT_TRUE(DebugCommon::lock());
  DebugCommon::unlock();
}
