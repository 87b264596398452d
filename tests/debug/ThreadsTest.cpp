// Several threads log through one platform, which locks files by a mutex.

#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <sstream>
#include <thread>

#include "tests/debug/LogDirectory.h"
#include "tests/debug/TestPlatform.h"

using trelvo::Debug;
using trelvo::test::LogDirectory;
using trelvo::test::TestPlatform;

namespace {

constexpr int kThreads = 4;
constexpr int kLines = 200;

template <class Work>
void inThreads(const Work& work) {
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) threads.emplace_back(work, i);
  for (std::thread& thread : threads) thread.join();
}

}  // namespace

TEST(LoggingThreads, LinesOfOneFileStayWholeAndInEachThreadsOrder) {
  const LogDirectory directory;
  const std::string config =
      directory.put("config", "c0 1 all.log\nc1 1 all.log\nc2 1 all.log\nc3 1 all.log\n");
  TestPlatform platform;
  ASSERT_TRUE(platform.readConfig(config.c_str(), directory.path().c_str(), nullptr));

  inThreads([&](int i) {
    const std::string component = "c" + std::to_string(i);
    for (int line = 0; line < kLines; ++line) {
      platform.writeLogEll(Debug::LogLevelNote, false, component.c_str(), "line %d of %s\n", line,
                           component.c_str());
    }
  });

  std::map<std::string, int> next;
  std::map<std::string, int> numbers;
  std::istringstream content(directory.content("all.log"));
  int count = 0;
  for (std::string line; std::getline(content, line); ++count) {
    char component[3] = "";
    int thread = 0;
    ASSERT_EQ(std::sscanf(line.c_str(), "2023-11-14 22:13:20 %d %2s", &thread, component), 2)
        << line;
    const std::string expected = "2023-11-14 22:13:20 " + std::to_string(thread) + " " + component +
                                 std::string(14, ' ') + "line " +
                                 std::to_string(next[component]++) + " of " + component;
    ASSERT_EQ(line, expected);
    ASSERT_EQ(numbers.emplace(component, thread).first->second, thread);
  }
  EXPECT_EQ(count, kThreads * kLines);
  EXPECT_EQ(platform.platformLog().size(), 1U + kThreads * kLines);
}

TEST(LoggingThreads, LtaTextsStayWhole) {
  const LogDirectory directory;
  TestPlatform platform;
  platform.m_ltaFile = platform.addLogFile(directory.file("lta.xml"));
  ASSERT_NE(platform.m_ltaFile, nullptr);

  inThreads([&](int i) {
    for (int text = 0; text < kLines; ++text)
      platform.writeXmlEll("<t i=\"%d\" n=\"%d\"/>\n", i, text);
  });

  std::vector<int> next(kThreads, 0);
  std::istringstream content(directory.content("lta.xml"));
  int count = 0;
  for (std::string line; std::getline(content, line); ++count) {
    int i = -1;
    ASSERT_EQ(std::sscanf(line.c_str(), "<t i=\"%d\"", &i), 1) << line;
    ASSERT_TRUE(i >= 0 && i < kThreads) << line;
    int& n = next[static_cast<std::size_t>(i)];
    ASSERT_EQ(line, "<t i=\"" + std::to_string(i) + "\" n=\"" + std::to_string(n++) + "\"/>");
  }
  EXPECT_EQ(count, kThreads * kLines);
}

TEST(LoggingThreads, InstanceIsAskedUnderItsLock) {
  TestPlatform platform;
  platform.m_logPath = "/tmp/";
  inThreads([&](int i) {
    for (int round = 0; round < kLines; ++round) {
      if (i == 0) {
        ASSERT_TRUE(trelvo::DebugCommon::lock());
        trelvo::DebugCommon::mPimpl = round % 2 == 0 ? &platform : nullptr;
        trelvo::DebugCommon::unlock();
      } else if (const char* path = Debug::logPath(); path != nullptr) {
        ASSERT_STREQ(path, "/tmp/");
      }
    }
  });
  EXPECT_EQ(trelvo::DebugCommon::mPimpl, nullptr);
}
