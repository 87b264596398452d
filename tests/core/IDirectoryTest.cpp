#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include <trelvo/core/Directory.h>
#include <trelvo/core/DirectoryLinux.h>

#include "tests/core/TempDirectory.h"

namespace trelvo::core {
namespace {

using test::TempDirectory;
using test::writeFile;

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

Names names(const IDirectory::Entries& entries) {
  Names result;
  for (const IDirectory::Entry& entry : entries) {
    result.push_back(entry.name);
  }
  return result;
}

IDirectory::Entry named(const std::string& name) {
  IDirectory::Entry entry;
  entry.name = name;
  return entry;
}

IDirectory::Entries entriesNamed(const Names& all) {
  IDirectory::Entries entries;
  for (const std::string& name : all) {
    entries.insert(named(name));
  }
  return entries;
}

TEST(Entry, IsNothingAtFirst) {
  const IDirectory::Entry entry;
  EXPECT_EQ(entry.type, 0);
  EXPECT_EQ(entry.name, "");
  EXPECT_EQ(entry.size, 0U);
  EXPECT_EQ(entry.modified, 0);
  EXPECT_FALSE(entry.handle);
}

TEST(Entry, TypesHaveTheseNumbers) {
  EXPECT_EQ(IDirectory::EntryOther, 0);
  EXPECT_EQ(IDirectory::EntryDirectory, 1);
  EXPECT_EQ(IDirectory::EntryFile, 2);
  EXPECT_EQ(sizeof(IDirectory::EntryType), 4U);
  EXPECT_EQ(sizeof(IDirectory::Entry::size), 4U);
}

TEST(Entry, AscendingComparesBytesAndThenLengths) {
  const IDirectory::Entry::Ascending below;
  const std::string nul("a\0", 2);
  const Names ascending = {"", "A", "a", nul, "a b", "aa", "ab", "b", "\x7F", "\x80", "\xFF"};
  for (std::size_t i = 0; i < ascending.size(); ++i) {
    for (std::size_t j = 0; j < ascending.size(); ++j) {
      EXPECT_EQ(below(named(ascending[i]), named(ascending[j])), i < j) << i << " " << j;
    }
  }
}

TEST(Entry, EqualNamesAreOneInASet) {
  IDirectory::Entries entries;
  IDirectory::Entry entry = named("a");
  EXPECT_TRUE(entries.insert(entry).second);
  entry.size = 5;
  entry.type = IDirectory::EntryFile;
  EXPECT_FALSE(entries.insert(entry).second);
}

TEST(FindEntriesStartWith, CopiesTheRunOfMatchingNames) {
  const IDirectory::Entries all = entriesNamed({"a", "ab", "abc", "ac", "b", "B", "\xC3\xA4"});
  const auto found = [&](const std::string& prefix) {
    IDirectory::Entries result = entriesNamed({"old"});
    IDirectory::findEntriesStartWith(all, prefix, result);
    return names(result);
  };
  EXPECT_EQ(found("ab"), Names({"ab", "abc"}));
  EXPECT_EQ(found("a"), Names({"a", "ab", "abc", "ac"}));
  EXPECT_EQ(found("ac"), Names({"ac"}));
  EXPECT_EQ(found("\xC3"), Names({"\xC3\xA4"}));
  EXPECT_EQ(found(""), names(all));
  EXPECT_EQ(found("aa"), Names());
  EXPECT_EQ(found("abcd"), Names());
  EXPECT_EQ(found("\xFF"), Names());
}

TEST(FindEntriesStartWith, CopiesWholeEntriesAndMayNarrowItsSource) {
  IDirectory::Entries all = entriesNamed({"a", "c"});
  IDirectory::Entry entry = named("b");
  entry.size = 5;
  all.insert(entry);
  IDirectory::findEntriesStartWith(all, "b", all);
  ASSERT_EQ(names(all), Names({"b"}));
  EXPECT_EQ(all.begin()->size, 5U);
  IDirectory::findEntriesStartWith(all, all.begin()->name, all);
  EXPECT_EQ(names(all), Names({"b"}));
}

// A directory with entries of each kind.
class Listed : public ::testing::Test {
 protected:
  void SetUp() override {
    writeFile(m_directory / "a", "12345");
    writeFile(m_directory / "ab", "");
    writeFile(m_directory / "abc", "");
    fs::create_directory(m_directory / "sub");
    fs::create_symlink("nowhere", m_directory / "dangling");
    fs::create_symlink("a", m_directory / "link");
    fs::create_directory_symlink("sub", m_directory / "subLink");
    ASSERT_EQ(::mkfifo((m_directory / "pipe").c_str(), 0600), 0);
    m_handle = Directory::open(m_directory.path());
    ASSERT_TRUE(m_handle);
  }

  TempDirectory m_directory;
  gom::SharedPointer<IDirectory> m_handle;
};

TEST_F(Listed, AllEntriesContainTheDirectoryAndItsParent) {
  IDirectory::Entries entries = entriesNamed({"old"});
  EXPECT_EQ(m_handle->getAllEntries(entries), StatusOk);
  EXPECT_EQ(names(entries),
            Names({".", "..", "a", "ab", "abc", "dangling", "link", "pipe", "sub", "subLink"}));
}

TEST_F(Listed, EntriesHaveTypeSizeAndTime) {
  ASSERT_TRUE(Directory::setFileModificationTime(m_directory / "a", 1234567890));
  IDirectory::Entries entries;
  EXPECT_EQ(m_handle->getAllEntries(entries), StatusOk);
  std::string types;
  for (const IDirectory::Entry& entry : entries) {
    types += static_cast<char>('0' + entry.type);
    EXPECT_FALSE(entry.handle);
  }
  EXPECT_EQ(types, "1122200010");
  const auto file = entries.find(named("a"));
  ASSERT_NE(file, entries.end());
  EXPECT_EQ(file->size, 5U);
  EXPECT_EQ(file->modified, 1234567890);
}

TEST_F(Listed, EntriesWithAPrefixAreThoseThatBeginWithAllOfIt) {
  const auto found = [&](const std::string& prefix) {
    IDirectory::Entries result = entriesNamed({"old"});
    EXPECT_EQ(m_handle->getEntriesStartWith(prefix, result), StatusOk);
    return names(result);
  };
  EXPECT_EQ(found("ab"), Names({"ab", "abc"}));
  EXPECT_EQ(found("abc"), Names({"abc"}));
  EXPECT_EQ(found("abcd"), Names());
  EXPECT_EQ(found("A"), Names());
  EXPECT_EQ(found("."), Names({".", ".."}));
  EXPECT_EQ(found("sub"), Names({"sub", "subLink"}));
  EXPECT_EQ(found("").size(), 10U);
}

TEST_F(Listed, ThePrefixMayBeTheNameOfAnOldEntry) {
  IDirectory::Entries entries = entriesNamed({"ab"});
  EXPECT_EQ(m_handle->getEntriesStartWith(entries.begin()->name, entries), StatusOk);
  EXPECT_EQ(names(entries), Names({"ab", "abc"}));
}

TEST_F(Listed, WhatIsNoDirectoryCannotBeListed) {
  for (const char* const name : {"a", "dangling", "missing", "link", "pipe"}) {
    IDirectory::Entries entries = entriesNamed({"old"});
    EXPECT_EQ(DirectoryLinux(m_directory / name).getAllEntries(entries), StatusFailed) << name;
    EXPECT_TRUE(entries.empty()) << name;
  }
}

TEST_F(Listed, ALinkToADirectoryIsListedAsThatDirectory) {
  writeFile(m_directory / "sub/inner", "");
  IDirectory::Entries entries;
  EXPECT_EQ(DirectoryLinux(m_directory / "subLink").getAllEntries(entries), StatusOk);
  EXPECT_EQ(names(entries), Names({".", "..", "inner"}));
}

TEST_F(Listed, AnEmptyPathIsAnInvalidParameter) {
  IDirectory::Entries entries = entriesNamed({"old"});
  EXPECT_EQ(DirectoryLinux("").getAllEntries(entries), StatusInvalidParameter);
  EXPECT_TRUE(entries.empty());
  EXPECT_EQ(DirectoryLinux("").getEntriesStartWith("a", entries), StatusInvalidParameter);
  EXPECT_EQ(DirectoryLinux("").loadEntries(entries, "a"), StatusInvalidParameter);
}

TEST_F(Listed, SubItemsExistWhateverTheirType) {
  for (const auto type :
       {IDirectory::EntryOther, IDirectory::EntryDirectory, IDirectory::EntryFile}) {
    EXPECT_TRUE(m_handle->subItemExists("a", type));
    EXPECT_TRUE(m_handle->subItemExists("sub", type));
    EXPECT_TRUE(m_handle->subItemExists("dangling", type));
    EXPECT_FALSE(m_handle->subItemExists("missing", type));
  }
}

TEST_F(Listed, SubItemPathJoinsWhetherItExistsOrNot) {
  EXPECT_EQ(m_handle->subItemPath("missing"), m_directory / "missing");
  EXPECT_EQ(DirectoryLinux("/").subItemPath("a"), "/a");
  EXPECT_EQ(DirectoryLinux("").subItemPath("a"), "/a");
}

TEST_F(Listed, OpenSubDirGivesWhatOpenGives) {
  const gom::SharedPointer<IDirectory> sub = m_handle->openSubDir("sub");
  ASSERT_TRUE(sub);
  EXPECT_EQ(sub->path(), m_directory / "sub");
  EXPECT_TRUE(m_handle->openSubDir("a"));
  EXPECT_FALSE(m_handle->openSubDir("missing"));
}

TEST_F(Listed, GetEntryFillsInTheName) {
  IDirectory::Entry entry;
  EXPECT_TRUE(m_handle->getEntry("a", entry));
  EXPECT_EQ(entry.name, "a");
  EXPECT_EQ(entry.type, IDirectory::EntryFile);
  EXPECT_EQ(entry.size, 5U);
  EXPECT_TRUE(m_handle->getEntry("sub", entry));
  EXPECT_EQ(entry.name, "sub");
  EXPECT_EQ(entry.type, IDirectory::EntryDirectory);
  EXPECT_TRUE(m_handle->getEntry("dangling", entry));
  EXPECT_EQ(entry.type, IDirectory::EntryOther);
  EXPECT_EQ(entry.size, 7U);  // the link's own text
}

TEST_F(Listed, GetEntryOfNothingLeavesTheEntry) {
  IDirectory::Entry entry;
  ASSERT_TRUE(m_handle->getEntry("a", entry));
  EXPECT_FALSE(m_handle->getEntry("missing", entry));
  EXPECT_EQ(entry.name, "a");
  EXPECT_EQ(entry.type, IDirectory::EntryFile);
  EXPECT_EQ(entry.size, 5U);
}

TEST_F(Listed, GetEntryWithPathTakesTheLastName) {
  IDirectory::Entry entry;
  EXPECT_TRUE(IDirectory::getEntryWithPath(m_directory / "a", entry));
  EXPECT_EQ(entry.name, "a");
  EXPECT_EQ(entry.size, 5U);
  EXPECT_TRUE(IDirectory::getEntryWithPath(m_directory / "sub/", entry));
  EXPECT_EQ(entry.name, "");
  EXPECT_EQ(entry.type, IDirectory::EntryDirectory);
  EXPECT_TRUE(IDirectory::getEntryWithPath(".", entry));
  EXPECT_EQ(entry.name, ".");
}

TEST_F(Listed, GetEntryWithPathOfNothingLeavesTheEntry) {
  IDirectory::Entry entry = named("old");
  EXPECT_FALSE(IDirectory::getEntryWithPath(m_directory / "missing", entry));
  EXPECT_FALSE(IDirectory::getEntryWithPath("", entry));
  EXPECT_EQ(entry.name, "old");
}

TEST_F(Listed, SetEntryDetailsLeavesNameAndHandle) {
  IDirectory::Entry entry = named("mine");
  entry.handle = m_handle;
  EXPECT_TRUE(DirectoryLinux::setEntryDetails((m_directory / "a").c_str(), entry));
  EXPECT_EQ(entry.name, "mine");
  EXPECT_EQ(entry.handle, m_handle);
  EXPECT_EQ(entry.size, 5U);
}

TEST_F(Listed, OpenFileReadsAndWritesTheEntrysFile) {
  const gom::SharedPointer<IFile> file = m_handle->openFile(named("a"));
  ASSERT_TRUE(file);
  EXPECT_TRUE(file->canWrite());
  EXPECT_TRUE(file->writeUint8('X'));
  EXPECT_TRUE(file->flush());
  EXPECT_EQ(test::fileContent(m_directory / "a"), "X2345");
  EXPECT_FALSE(m_handle->openFile(named("missing")));
  EXPECT_FALSE(m_handle->openFile(named("sub")));
}

TEST_F(Listed, SizesAreCutTo32Bits) {
  ASSERT_EQ(::truncate((m_directory / "a").c_str(), (off_t{1} << 32) + 7), 0);
  IDirectory::Entry entry;
  EXPECT_TRUE(m_handle->getEntry("a", entry));
  EXPECT_EQ(entry.size, 7U);
}

TEST(DirectoryLinux, NamesAreBytesOfAnyKind) {
  const TempDirectory directory;
  const Names odd = {" ", "-rf",      "\n",       "\x01", "a\\b",
                     "*", "\xC3\xA4", "\xFF\xFE", "...",  std::string(255, 'n')};
  for (const std::string& name : odd) {
    const gom::SharedPointer<IFile> file = Directory::createFile(directory / name, 0);
    ASSERT_TRUE(file) << name;
    EXPECT_TRUE(file->writeUint8(1));
  }
  const gom::SharedPointer<IDirectory> handle = Directory::open(directory.path());
  ASSERT_TRUE(handle);
  IDirectory::Entries entries;
  EXPECT_EQ(handle->getAllEntries(entries), StatusOk);
  EXPECT_EQ(entries.size(), odd.size() + 2);
  for (const std::string& name : odd) {
    const auto entry = entries.find(named(name));
    ASSERT_NE(entry, entries.end()) << name;
    EXPECT_EQ(entry->size, 1U) << name;
    EXPECT_TRUE(handle->openFile(*entry)) << name;
  }
  EXPECT_FALSE(Directory::createFile(directory / std::string(256, 'n'), 0));
  EXPECT_TRUE(Directory::rmPath(directory.path()));
}

TEST(DirectoryLinux, AHundredThousandEntriesAreListedAndRemoved) {
  constexpr unsigned int kCount = 100000;
  const TempDirectory directory = TempDirectory::inMemory();
  const std::string path = directory / "many";
  ASSERT_TRUE(Directory::mkDir(path));
  for (unsigned int i = 0; i < kCount; ++i) {
    // Links need no file of their own, so making them is quick.
    ASSERT_EQ(::symlink("x", (path + "/" + std::to_string(i)).c_str()), 0);
  }
  const DirectoryLinux many(path);
  IDirectory::Entries entries;
  EXPECT_EQ(many.getAllEntries(entries), StatusOk);
  EXPECT_EQ(entries.size(), kCount + 2);
  EXPECT_EQ(many.getEntriesStartWith("9999", entries), StatusOk);
  EXPECT_EQ(entries.size(), 11U);  // 9999 and 99990 to 99999
  EXPECT_TRUE(Directory::rmPath(path));
  EXPECT_FALSE(Directory::pathExists(path));
}

}  // namespace
}  // namespace trelvo::core
