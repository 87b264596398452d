// Operations on paths, and the logging engine, while the file system refuses.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <trelvo/DebugCommon.h>
#include <trelvo/core/Directory.h>

#include <cerrno>
#include <memory>
#include <string>

#include "tests/core/TempDirectory.h"
#include "tests/debug/TestPlatform.h"
#include "tests/support/SystemFaults.h"

namespace trelvo::test {
namespace {

using core::Directory;

class DirectoryFaults : public ::testing::Test {
 protected:
  /// What lies at a path, told without failures.
  static bool exists(const std::string& path) {
    const SystemCallsSucceed checking;
    return Directory::pathExists(path);
  }
  static std::string contentOf(const std::string& path) {
    const SystemCallsSucceed checking;
    return Directory::pathExists(path) ? fileContent(path) : std::string();
  }
  static void put(const std::string& path, const std::string& content) {
    const SystemCallsSucceed preparing;
    writeFile(path, content);
  }

  TempDirectory m_directory = TempDirectory::inMemory();
};

TEST_F(DirectoryFaults, RenamingDoesAllOrNothingAndTellsWhich) {
  const std::string from = m_directory / "from";
  const std::string to = m_directory / "to";
  const FailedCalls failed = everySystemCallFails([&] {
    put(from, "new");
    put(to, "old");
    const bool renamed = Directory::renameFile(from, to);
    EXPECT_EQ(renamed, !systemRun().failed);
    EXPECT_EQ(contentOf(to), renamed ? "new" : "old");
    EXPECT_EQ(exists(from), !renamed);
  });
  EXPECT_EQ(failed.at("rename"), 1U);
}

TEST_F(DirectoryFaults, ACopyIsWholeOrFalseOrWasNotBegun) {
  const std::string from = m_directory / "from";
  const std::string to = m_directory / "to";
  const std::string content(20000, 'x');
  const auto copy = [&] {
    put(from, content);
    {
      const SystemCallsSucceed preparing;
      Directory::rmFile(to);
    }
    errno = 0;
    const bool copied = Directory::copyFile(from, to);
    const std::string found = contentOf(to);
    EXPECT_TRUE(content.compare(0, found.size(), found) == 0);
    return copied && exists(to) && found != content;
  };
  const FailedCalls failed =
      everySystemCallFails([&] { EXPECT_FALSE(copy()) << "true, but not whole"; });
  EXPECT_EQ(failed.at("open"), 2U);
  EXPECT_GE(failed.at("read"), 3U);
  EXPECT_GE(failed.at("write"), 3U);
  // A write that comes up short sets no errno, which the header tells.
  const FailedCalls shorter = everySystemCallComesUpShort([&] { copy(); });
  EXPECT_GE(shorter.at("write"), 3U);
}

TEST_F(DirectoryFaults, PathsAreMadeAndRemovedOrItIsTold) {
  const std::string top = m_directory / "a";
  const FailedCalls failed = everySystemCallFails([&] {
    const bool made = Directory::mkPath(top + "/b/c");
    EXPECT_TRUE(!made || exists(top + "/b/c"));
    put(exists(top + "/b") ? top + "/b/file" : m_directory / "file", "");
    const bool removed = Directory::rmPath(top);
    EXPECT_TRUE(systemRun().failed || (made && removed));
    if (removed && systemRun().kinds.count("lstat") == 0) {
      EXPECT_FALSE(exists(top));  // what cannot be looked at counts as not there
    }
    const SystemCallsSucceed checking;
    Directory::rmPath(top);
    EXPECT_FALSE(exists(top));
  });
  for (const char* const call : {"mkdir", "rmdir", "remove", "lstat", "opendir", "readdir"}) {
    EXPECT_GT(failed.count(call), 0U) << call;
  }
}

TEST_F(DirectoryFaults, AListingIsCompleteOrFails) {
  for (int i = 0; i < 5; ++i) {
    put(m_directory / std::to_string(i), "");
  }
  const FailedCalls failed = everySystemCallFails([&] {
    const gom::SharedPointer<core::IDirectory> handle = Directory::open(m_directory.path());
    if (!handle) {
      EXPECT_TRUE(systemRun().failed);
      return;
    }
    core::IDirectory::Entries entries;
    const Status status = handle->getAllEntries(entries);
    EXPECT_TRUE(status == StatusOk || (status == StatusFailed && systemRun().failed)) << status;
    const bool looked = systemRun().kinds.count("lstat") == 0;  // else it counts as vanished
    EXPECT_TRUE(status != StatusOk || !looked || entries.size() == 7U) << entries.size();
  });
  EXPECT_GE(failed.at("readdir"), 8U);
  EXPECT_GE(failed.at("lstat"), 8U);
}

TEST_F(DirectoryFaults, SmallOperationsAreFalse) {
  const std::string path = m_directory / "file";
  const FailedCalls failed = everySystemCallFails([&] {
    put(path, "");
    EXPECT_TRUE(Directory::setFileModificationTime(path, 1000) || systemRun().failed);
    EXPECT_TRUE(Directory::rmFile(path) || systemRun().failed);
    EXPECT_TRUE(!Directory::currentDir().empty() || systemRun().failed);
  });
  EXPECT_EQ(failed.at("utime"), 1U);
  EXPECT_EQ(failed.at("remove"), 1U);
  EXPECT_EQ(failed.at("getcwd"), 1U);
}

TEST_F(DirectoryFaults, LoggingPassesOverEveryFailureAndTellsOfItsFiles) {
  const std::string config = m_directory / "config";
  put(config, "some 15 some.log\ndefault 15 all.log\n");
  const FailedCalls failed = everySystemCallFails([&] {
    TestPlatform platform;
    const bool read =
        platform.readConfig(config.c_str(), (m_directory.path() + "/").c_str(), nullptr);
    EXPECT_TRUE(read || systemRun().failed);
    if (read) {
      EXPECT_NE(platform.m_components["some"].file, nullptr);
      EXPECT_NE(platform.m_defaultSetting.file, nullptr);
    }
    platform.line(Debug::LogLevelNote, false, "some", "  ", "a line\n");
    platform.line(Debug::LogLevelNote, false, "other", "  ", "a line\n");
  });
  for (const char* const call : {"fopen", "read", "write", "lseek", "fflush"}) {
    EXPECT_GT(failed.count(call), 0U) << call;
  }
}

}  // namespace
}  // namespace trelvo::test
