#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <utility>

#include <trelvo/core/Directory.h>
#include <trelvo/core/DirectoryLinux.h>

#include "tests/core/FileLimit.h"
#include "tests/core/TempDirectory.h"

namespace trelvo::core {
namespace {

using test::fileContent;
using test::TempDirectory;
using test::writeFile;

namespace fs = std::filesystem;

// The two places, as they are got.
struct Places {
  Places() {
    Directory::getPreinstalledFilesPath(preinstalled);
    Directory::getDefaultStoragePath(storage, secure);
  }
  std::string preinstalled;
  std::string storage;
  bool secure = true;
};

// Taken while the test program starts: the library's own places are there by then.
const Places kAtStart;

// Makes `path` the current directory while it lives.
class CurrentDirectory {
 public:
  explicit CurrentDirectory(const std::string& path) : m_before(fs::current_path()) {
    fs::current_path(path);
  }
  ~CurrentDirectory() { fs::current_path(m_before); }
  CurrentDirectory(const CurrentDirectory&) = delete;
  CurrentDirectory& operator=(const CurrentDirectory&) = delete;

 private:
  fs::path m_before;
};

class DirectoryPlaces : public ::testing::Test {
 protected:
  void TearDown() override {
    Directory::setPreinstalledFilesPath(kAtStart.preinstalled);
    Directory::setDefaultStoragePath(kAtStart.storage, kAtStart.secure);
  }
};

TEST(Directory, KnowsItsPlacesFromTheStart) {
  EXPECT_EQ(kAtStart.preinstalled, "/usr/share/qenl");
  EXPECT_EQ(kAtStart.storage, "/var/lib/qenl");
  EXPECT_FALSE(kAtStart.secure);
}

TEST_F(DirectoryPlaces, AreStoredWithoutTheirLastSlash) {
  const std::pair<const char*, const char*> stored[] = {
      {"/data", "/data"}, {"/data/", "/data"}, {"/data//", "/data/"}, {"/", "/"},
      {"//", "/"},        {"a", "a"},          {"a/", "a"},           {"relative/b", "relative/b"}};
  for (const auto& [given, kept] : stored) {
    Directory::setDefaultStoragePath(given, true);
    Directory::setPreinstalledFilesPath(given);
    const Places places;
    EXPECT_EQ(places.storage, kept);
    EXPECT_EQ(places.preinstalled, kept);
    EXPECT_TRUE(places.secure);
  }
}

TEST_F(DirectoryPlaces, AreIndependentOfEachOther) {
  Directory::setPreinstalledFilesPath("/one");
  EXPECT_EQ(Places().storage, "/var/lib/qenl");
  Directory::setDefaultStoragePath("/two", false);
  EXPECT_EQ(Places().preinstalled, "/one");
  EXPECT_EQ(Places().storage, "/two");
  EXPECT_FALSE(Places().secure);
}

TEST_F(DirectoryPlaces, AreInTheCurrentDirectoryWhenSetEmpty) {
  const TempDirectory directory;
  const CurrentDirectory current(directory.path());
  Directory::setDefaultStoragePath("", true);
  Directory::setPreinstalledFilesPath("");
  const Places places;
  EXPECT_EQ(places.storage, directory.path());
  EXPECT_FALSE(places.secure);
  EXPECT_EQ(places.preinstalled, directory / "preinstalled");
  Directory::setDefaultStoragePath("", false);
  EXPECT_EQ(Places().storage, directory.path());
  EXPECT_FALSE(Places().secure);
}

TEST(Directory, CurrentDirIsAbsolute) {
  const TempDirectory directory;
  const CurrentDirectory current(directory.path());
  EXPECT_EQ(Directory::currentDir(), directory.path());
  EXPECT_EQ(DirectoryLinux::currentDir(), directory.path());
}

TEST(Directory, CurrentDirIsEmptyWhenItWasRemoved) {
  const TempDirectory directory;
  ASSERT_TRUE(Directory::mkDir(directory / "gone"));
  const CurrentDirectory current(directory / "gone");
  ASSERT_TRUE(Directory::rmDir(directory / "gone"));
  EXPECT_EQ(Directory::currentDir(), "");
}

TEST(Directory, AppendPathPutsOneSlashBetween) {
  const char* const rows[][3] = {{"a", "b", "a/b"}, {"a/", "b", "a/b"},   {"", "b", "/b"},
                                 {"/", "b", "/b"},  {"a//", "b", "a//b"}, {"a", "", "a/"},
                                 {"a/", "", "a/"},  {"", "", "/"},        {"a", "/b", "a//b"}};
  for (const auto& [base, item, expected] : rows) {
    std::string path = base;
    Directory::appendPath(path, item);
    EXPECT_EQ(path, expected);
    EXPECT_EQ(Directory::concat(base, item), expected);
  }
}

TEST(Directory, AppendPathTakesItsOwnBase) {
  std::string path = "a";
  Directory::appendPath(path, path);
  EXPECT_EQ(path, "a/a");
}

TEST(Directory, FindFileNamePointsIntoThePath) {
  const std::pair<std::string, std::string> rows[] = {
      {"name", "name"}, {"a/name", "name"}, {"/name", "name"}, {"a/b/c.d", "c.d"},
      {"/a//b/c", "c"}, {"a/n", "n"},       {"a/..", ".."},    {"./ ", " "}};
  for (const auto& [path, name] : rows) {
    unsigned int length = 77;
    const char* const found = Directory::findFileName(path, length);
    EXPECT_EQ(length, name.size()) << path;
    EXPECT_EQ(found, path.c_str() + path.size() - name.size()) << path;
  }
}

TEST(Directory, FindFileNameIsNullWhereThereIsNone) {
  for (const std::string path : {"", "/", "a/", "a/b/", "//", "a//b", "//b", "a/b//c"}) {
    unsigned int length = 77;
    EXPECT_EQ(Directory::findFileName(path, length), nullptr) << path;
    EXPECT_EQ(length, 0U) << path;
  }
}

// A directory with a file, a directory, and links to both and to nothing.
class InDirectory : public ::testing::Test {
 protected:
  void SetUp() override {
    writeFile(m_file, "content");
    fs::create_directory(m_sub);
    writeFile(m_sub + "/inner", "inside");
    fs::create_symlink("file", m_fileLink);
    fs::create_symlink("sub", m_subLink);
    fs::create_symlink("nowhere", m_dangling);
  }

  TempDirectory m_directory;
  std::string m_file = m_directory / "file";
  std::string m_sub = m_directory / "sub";
  std::string m_fileLink = m_directory / "fileLink";
  std::string m_subLink = m_directory / "subLink";
  std::string m_dangling = m_directory / "dangling";
  std::string m_missing = m_directory / "missing";
};

TEST_F(InDirectory, PathExistsForFilesDirectoriesAndLinks) {
  for (const std::string& path : {m_file, m_sub, m_fileLink, m_subLink, m_dangling}) {
    EXPECT_TRUE(Directory::pathExists(path)) << path;
  }
  EXPECT_FALSE(Directory::pathExists(m_missing));
  EXPECT_FALSE(Directory::pathExists(""));
  EXPECT_FALSE(Directory::pathExists(m_file + "/below"));
}

TEST_F(InDirectory, OpenGivesAHandleOnWhateverExists) {
  for (const std::string& path : {m_sub, m_subLink, m_file, m_dangling}) {
    const gom::SharedPointer<IDirectory> handle = Directory::open(path);
    ASSERT_TRUE(handle) << path;
    EXPECT_EQ(handle->path(), path);
    EXPECT_EQ(handle->referenceCount(), 1);
  }
  EXPECT_FALSE(Directory::open(m_missing));
  EXPECT_FALSE(Directory::open(""));
}

TEST_F(InDirectory, OpenFileGivesAnEmptyHandleForAMissingFile) {
  EXPECT_FALSE(Directory::openFile(m_missing, 0, false));
  EXPECT_FALSE(Directory::openFile(m_missing, 0, true));
  EXPECT_FALSE(Directory::openFile(m_dangling, 0, false));
  EXPECT_FALSE(Directory::pathExists(m_missing));
}

TEST_F(InDirectory, OpenFileFollowsLinksAndKeepsTheContent) {
  EXPECT_TRUE(Directory::openFile(m_fileLink, 0, false));
  EXPECT_EQ(fileContent(m_file), "content");
}

TEST_F(InDirectory, CreateFileEmptiesWhatIsThere) {
  const gom::SharedPointer<IFile> file = Directory::createFile(m_file, 0);
  ASSERT_TRUE(file);
  EXPECT_EQ(fs::file_size(m_file), 0U);
  EXPECT_TRUE(file->canRead() && file->canWrite() && file->canSeek());
  EXPECT_TRUE(file->writeUint8('x'));
  EXPECT_TRUE(file->seekFromStart(0));
  unsigned char byte = 0;
  EXPECT_TRUE(file->readUint8(byte));
  EXPECT_EQ(byte, 'x');
}

TEST_F(InDirectory, CreateFileMakesWhatIsMissing) {
  EXPECT_TRUE(Directory::createFile(m_missing, 4096));
  EXPECT_EQ(fileContent(m_missing), "");
  EXPECT_FALSE(Directory::createFile(m_sub, 0));
  EXPECT_FALSE(Directory::createFile(m_directory / "no/such", 0));
}

TEST_F(InDirectory, MkDirIsTrueForWhateverLiesThereAlready) {
  EXPECT_TRUE(Directory::mkDir(m_missing));
  EXPECT_TRUE(fs::is_directory(m_missing));
  EXPECT_TRUE(Directory::mkDir(m_missing));
  EXPECT_TRUE(Directory::mkDir(m_file));
  EXPECT_TRUE(Directory::mkDir(m_dangling));
  EXPECT_EQ(fileContent(m_file), "content");
  EXPECT_FALSE(Directory::mkDir(m_directory / "no/such"));
  EXPECT_FALSE(Directory::mkDir(m_file + "/below"));
  EXPECT_FALSE(Directory::mkDir(""));
}

TEST_F(InDirectory, WhatIsMadeIsForEveryoneWhomTheUmaskLeaves) {
  const auto modeOf = [](const std::string& path) {
    struct stat details {};
    EXPECT_EQ(::stat(path.c_str(), &details), 0) << path;
    return details.st_mode & 07777;
  };
  for (const mode_t mask : {mode_t{0}, mode_t{027}}) {
    const std::string name = m_directory / std::to_string(mask);
    const mode_t before = ::umask(mask);
    EXPECT_TRUE(Directory::mkPath(name + "/below"));
    EXPECT_TRUE(Directory::createFile(name + "/made", 0));
    EXPECT_TRUE(Directory::copyFile(m_file, name + "/copied"));
    ::umask(before);
    EXPECT_EQ(modeOf(name), 0777 & ~mask);
    EXPECT_EQ(modeOf(name + "/below"), 0777 & ~mask);
    EXPECT_EQ(modeOf(name + "/made"), 0666 & ~mask);
    EXPECT_EQ(modeOf(name + "/copied"), 0666 & ~mask);
  }
}

TEST_F(InDirectory, RmFileRemovesFilesLinksAndEmptyDirectories) {
  EXPECT_TRUE(Directory::rmFile(m_subLink));
  EXPECT_TRUE(Directory::rmFile(m_dangling));
  EXPECT_FALSE(Directory::rmFile(m_sub));
  EXPECT_EQ(fileContent(m_sub + "/inner"), "inside");
  EXPECT_TRUE(Directory::rmFile(m_sub + "/inner"));
  EXPECT_TRUE(Directory::rmFile(m_sub));
  EXPECT_FALSE(Directory::rmFile(m_missing));
  EXPECT_FALSE(fs::exists(m_sub));
}

TEST_F(InDirectory, RmDirRemovesEmptyDirectoriesOnly) {
  EXPECT_FALSE(Directory::rmDir(m_sub));
  EXPECT_FALSE(Directory::rmDir(m_file));
  EXPECT_FALSE(Directory::rmDir(m_subLink));
  EXPECT_FALSE(Directory::rmDir(m_missing));
  fs::remove(m_sub + "/inner");
  EXPECT_TRUE(Directory::rmDir(m_sub));
  EXPECT_FALSE(fs::exists(m_sub));
}

TEST_F(InDirectory, RenameFileReplacesItsTarget) {
  EXPECT_TRUE(Directory::renameFile(m_file, m_sub + "/inner"));
  EXPECT_EQ(fileContent(m_sub + "/inner"), "content");
  EXPECT_FALSE(fs::exists(m_file));
  EXPECT_FALSE(Directory::renameFile(m_missing, m_file));
  EXPECT_FALSE(Directory::renameFile(m_sub + "/inner", m_sub));
}

TEST_F(InDirectory, SetFileModificationTimeSetsBothTimes) {
  EXPECT_TRUE(Directory::setFileModificationTime(m_fileLink, 1234567890));
  struct stat details {};
  ASSERT_EQ(::stat(m_file.c_str(), &details), 0);
  EXPECT_EQ(details.st_mtime, 1234567890);
  EXPECT_EQ(details.st_atime, 1234567890);
  EXPECT_TRUE(Directory::setFileModificationTime(m_file, -1));
  ASSERT_EQ(::stat(m_file.c_str(), &details), 0);
  EXPECT_EQ(details.st_mtime, -1);
}

TEST_F(InDirectory, SetFileModificationTimeToZeroMeansNow) {
  ASSERT_TRUE(Directory::setFileModificationTime(m_file, 1000));
  EXPECT_TRUE(Directory::setFileModificationTime(m_file, 0));
  struct stat details {};
  ASSERT_EQ(::stat(m_file.c_str(), &details), 0);
  EXPECT_NEAR(static_cast<double>(details.st_mtime), static_cast<double>(::time(nullptr)), 600);
  EXPECT_FALSE(Directory::setFileModificationTime(m_missing, 0));
  EXPECT_FALSE(Directory::setFileModificationTime(m_missing, 1000));
}

TEST_F(InDirectory, CopyFileCopiesAnySize) {
  for (const std::size_t size : {0U, 1U, 8191U, 8192U, 8193U, 100000U}) {
    std::string content(size, '\0');
    for (std::size_t i = 0; i < size; ++i) {
      content[i] = static_cast<char>(i * 7 + i / 8192);
    }
    writeFile(m_file, content);
    EXPECT_TRUE(Directory::copyFile(m_file, m_missing));
    EXPECT_EQ(fileContent(m_missing), content) << size;
  }
}

TEST_F(InDirectory, CopyFileFromNothingCountsAsDone) {
  EXPECT_TRUE(Directory::copyFile(m_missing, m_directory / "copy"));
  EXPECT_FALSE(fs::exists(m_directory / "copy"));
  EXPECT_TRUE(Directory::copyFile(m_missing, m_file));
  EXPECT_EQ(fileContent(m_file), "content");
}

TEST_F(InDirectory, CopyFileToWhereNoFileCanBeMadeCountsAsDone) {
  EXPECT_TRUE(Directory::copyFile(m_file, m_directory / "no/such"));
  EXPECT_TRUE(Directory::copyFile(m_file, m_sub));
  EXPECT_EQ(fileContent(m_file), "content");
}

TEST_F(InDirectory, CopyFileOntoItselfEmptiesIt) {
  EXPECT_TRUE(Directory::copyFile(m_file, m_fileLink));
  EXPECT_EQ(fileContent(m_file), "");
}

TEST_F(InDirectory, CopyFileIsFalseAfterAReadError) {
  EXPECT_FALSE(Directory::copyFile(m_sub, m_missing));
  EXPECT_EQ(fileContent(m_missing), "");
}

TEST_F(InDirectory, CopyFileToAFullDiskIsFalse) {
  EXPECT_FALSE(Directory::copyFile(m_file, "/dev/full"));
}

TEST_F(InDirectory, CopyFileThatComesUpShortFollowsTheErrnoFromBefore) {
  writeFile(m_file, std::string(5000, 'x'));
  EXPECT_TRUE(test::withFileLimit(3000, [&] {
    errno = 0;
    return Directory::copyFile(m_file, m_missing);
  }));
  EXPECT_EQ(fileContent(m_missing), std::string(3000, 'x'));
  EXPECT_FALSE(test::withFileLimit(3000, [&] {
    errno = EAGAIN;
    return Directory::copyFile(m_file, m_missing);
  }));
  EXPECT_EQ(fileContent(m_missing), std::string(3000, 'x'));
}

TEST_F(InDirectory, CopyFileThatCannotWriteIsFalse) {
  EXPECT_FALSE(test::withFileLimit(0, [&] {
    errno = 0;
    return Directory::copyFile(m_file, m_missing);
  }));
}

TEST_F(InDirectory, CopyFileLeavesNoDescriptorOpen) {
  const auto open = [] {
    return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
  };
  const auto before = open();
  EXPECT_TRUE(Directory::copyFile(m_file, m_directory / "copy"));
  EXPECT_FALSE(Directory::copyFile(m_file, "/dev/full"));
  EXPECT_TRUE(Directory::copyFile(m_file, m_sub));
  EXPECT_EQ(open(), before);
}

TEST_F(InDirectory, FilesAreNotInheritedByPrograms) {
  const auto kept = [] {
    return std::system("test \"$(ls -l /proc/self/fd | grep -c trelvo-)\" = 0");
  };
  const auto made = Directory::createFile(m_missing, 0);
  const auto opened = Directory::openFile(m_file, 0, false);
  const auto reading = Directory::openFile(m_file, 0, true);
  ASSERT_TRUE(made && opened && reading);
  EXPECT_EQ(kept(), 0);
}

TEST_F(InDirectory, MkPathMakesAllLevels) {
  EXPECT_TRUE(Directory::mkPath(m_missing + "/b/c"));
  EXPECT_TRUE(fs::is_directory(m_missing + "/b/c"));
  EXPECT_TRUE(Directory::mkPath(m_missing + "/b/c"));
}

TEST_F(InDirectory, MkPathWithASlashAtItsEndMakesAllLevels) {
  EXPECT_TRUE(Directory::mkPath(m_missing + "/b/"));
  EXPECT_TRUE(fs::is_directory(m_missing + "/b"));
  EXPECT_TRUE(Directory::mkPath(m_missing + "//x//y//"));
  EXPECT_TRUE(fs::is_directory(m_missing + "/x/y"));
}

TEST_F(InDirectory, MkPathWorksOnRelativePaths) {
  const CurrentDirectory current(m_directory.path());
  EXPECT_TRUE(Directory::mkPath("one"));
  EXPECT_TRUE(Directory::mkPath("two/three/"));
  EXPECT_TRUE(fs::is_directory(m_directory / "one"));
  EXPECT_TRUE(fs::is_directory(m_directory / "two/three"));
}

TEST_F(InDirectory, MkPathCountsOnlyItsLastStep) {
  EXPECT_TRUE(Directory::mkPath(m_file));
  EXPECT_TRUE(Directory::mkPath(m_dangling));
  EXPECT_TRUE(Directory::mkPath(m_file + "/"));  // mkdir says that it exists
  EXPECT_TRUE(Directory::mkPath("/"));
  EXPECT_FALSE(Directory::mkPath(m_file + "/below"));
  EXPECT_FALSE(Directory::mkPath(m_dangling + "/below"));
  EXPECT_FALSE(Directory::mkPath(""));
  EXPECT_EQ(fileContent(m_file), "content");
}

TEST_F(InDirectory, MkPathGoesThroughLinksToDirectories) {
  EXPECT_TRUE(Directory::mkPath(m_subLink + "/x/y"));
  EXPECT_TRUE(fs::is_directory(m_sub + "/x/y"));
}

TEST_F(InDirectory, RmPathRemovesADirectoryWithAllThatIsInIt) {
  ASSERT_TRUE(Directory::mkPath(m_sub + "/a/b/c"));
  writeFile(m_sub + "/a/.hidden", "");
  fs::create_symlink(m_file, m_sub + "/a/link");
  fs::create_directory_symlink("a", m_sub + "/linkInside");
  EXPECT_TRUE(Directory::rmPath(m_sub + "/"));
  EXPECT_FALSE(Directory::pathExists(m_sub));
  EXPECT_EQ(fileContent(m_file), "content");
}

TEST_F(InDirectory, RmPathRemovesALinkInsideAndNotWhatItPointsTo) {
  const std::string outer = m_directory / "outer";
  fs::create_directory(outer);
  fs::create_directory_symlink(m_sub, outer + "/link");
  EXPECT_TRUE(Directory::rmPath(outer));
  EXPECT_FALSE(Directory::pathExists(outer));
  EXPECT_EQ(fileContent(m_sub + "/inner"), "inside");
}

TEST_F(InDirectory, RmPathOfALinkToADirectoryIsFalseAndTouchesNothing) {
  for (const char* const slashes : {"", "/", "//"}) {
    EXPECT_FALSE(Directory::rmPath(m_subLink + slashes));
    EXPECT_TRUE(fs::is_symlink(m_subLink));
    EXPECT_EQ(fileContent(m_sub + "/inner"), "inside");
  }
}

TEST_F(InDirectory, RmPathRemovesNoFileAndNoLink) {
  for (const std::string& path : {m_file, m_fileLink, m_dangling}) {
    EXPECT_FALSE(Directory::rmPath(path)) << path;
    EXPECT_TRUE(Directory::pathExists(path)) << path;
  }
}

TEST_F(InDirectory, RmPathOfNothingIsDone) {
  EXPECT_TRUE(Directory::rmPath(m_missing));
  EXPECT_TRUE(Directory::rmPath(""));
  EXPECT_TRUE(Directory::rmPath(m_missing + "/below"));
}

TEST_F(InDirectory, RmPathOfADotEmptiesTheDirectoryAndIsFalse) {
  EXPECT_FALSE(Directory::rmPath(m_sub + "/."));
  EXPECT_TRUE(fs::is_empty(m_sub));
}

TEST_F(InDirectory, RmPathGoesDownHundredsOfLevels) {
  std::string path = m_directory / "deep";
  while (path.size() < 500) {
    path += "/d";
  }
  ASSERT_TRUE(Directory::mkPath(path));
  EXPECT_TRUE(Directory::rmPath(m_directory / "deep"));
  EXPECT_FALSE(Directory::pathExists(m_directory / "deep"));
}

TEST_F(InDirectory, RmPathStopsAtTheFirstFailureInTheOrderOfNames) {
  // "sub/b" cannot be removed: what is in it has paths that the system refuses.
  writeFile(m_sub + "/a", "");
  writeFile(m_sub + "/c", "");
  const std::string level(250, 'b');
  std::string half = level;
  while (half.size() < 2100) {
    Directory::appendPath(half, level);
  }
  ASSERT_TRUE(Directory::mkDir(m_sub + "/b"));
  {
    const CurrentDirectory current(m_sub + "/b");
    ASSERT_TRUE(Directory::mkPath(half));
    fs::current_path(half);
    ASSERT_TRUE(Directory::mkPath(half + "/d"));
  }
  EXPECT_FALSE(Directory::rmPath(m_sub));
  EXPECT_FALSE(Directory::pathExists(m_sub + "/a"));
  EXPECT_TRUE(Directory::pathExists(m_sub + "/b"));
  EXPECT_TRUE(Directory::pathExists(m_sub + "/c"));
  EXPECT_TRUE(Directory::pathExists(m_sub + "/inner"));
}

}  // namespace
}  // namespace trelvo::core
