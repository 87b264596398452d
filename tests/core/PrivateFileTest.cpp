#include "core/PrivateFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "tests/core/TempDirectory.h"

namespace trelvo::core {
namespace {

using test::fileContent;
using test::TempDirectory;
using test::writeFile;

mode_t modeOf(const std::string& path) {
  struct stat details {};
  EXPECT_EQ(::stat(path.c_str(), &details), 0) << path;
  return details.st_mode & 07777;
}

// Sets the process's umask while it lives.
class Umask {
 public:
  explicit Umask(mode_t mask) : m_before(::umask(mask)) {}
  ~Umask() { ::umask(m_before); }
  Umask(const Umask&) = delete;
  Umask& operator=(const Umask&) = delete;

 private:
  mode_t m_before;
};

TEST(PrivateFile, IsForItsOwnerOnlyWhateverTheUmask) {
  for (const mode_t mask : {0000U, 0022U, 0077U}) {
    const TempDirectory directory;
    const Umask umask(mask);
    EXPECT_TRUE(createPrivateFile(directory / "secret", 0));
    EXPECT_EQ(modeOf(directory / "secret"), 0600U) << mask;
    EXPECT_EQ(::umask(mask), mask);
  }
}

TEST(PrivateFile, CanBeWrittenReadAndSought) {
  const TempDirectory directory;
  const gom::SharedPointer<IFile> file = createPrivateFile(directory / "secret", 4096);
  ASSERT_TRUE(file);
  EXPECT_EQ(file->referenceCount(), 1);
  EXPECT_TRUE(file->canRead() && file->canWrite() && file->canSeek());
  EXPECT_TRUE(file->writeUint32(0x64636261));
  EXPECT_TRUE(file->seekFromStart(2));
  unsigned char byte = 0;
  EXPECT_TRUE(file->readUint8(byte));
  EXPECT_EQ(byte, 'c');
  EXPECT_TRUE(file->flush());
  EXPECT_EQ(fileContent(directory / "secret"), "abcd");
}

TEST(PrivateFile, EmptiesAnExistingFileAndKeepsItsMode) {
  const TempDirectory directory;
  writeFile(directory / "old", "content");
  ASSERT_EQ(::chmod((directory / "old").c_str(), 0644), 0);
  EXPECT_TRUE(createPrivateFile(directory / "old", 0));
  EXPECT_EQ(fileContent(directory / "old"), "");
  EXPECT_EQ(modeOf(directory / "old"), 0644U);
}

TEST(PrivateFile, GivesAnEmptyHandleWhereNoFileCanBeMade) {
  const TempDirectory directory;
  EXPECT_FALSE(createPrivateFile(directory / "no/such", 0));
  EXPECT_FALSE(createPrivateFile(directory.path(), 0));
  EXPECT_FALSE(createPrivateFile("", 0));
}

}  // namespace
}  // namespace trelvo::core
