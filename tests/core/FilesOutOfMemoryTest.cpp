#include <gtest/gtest.h>

#include <clocale>
#include <new>
#include <optional>
#include <string>

#include <trelvo/core/Directory.h>
#include <trelvo/core/DirectoryLinux.h>
#include <trelvo/core/Unicode.h>

#include "core/PrivateFile.h"
#include "tests/core/TempDirectory.h"
#include "tests/support/AllocationFailure.h"

namespace trelvo::core {
namespace {

using test::everyAllocationFails;
using test::TempDirectory;
using test::writeFile;

// Whether `make` gave a handle, or an empty one because memory ran out: it never throws.
template <class Make>
void expectHandleOrNone(Make make) {
  bool made = false;
  EXPECT_GT(everyAllocationFails([&] { made = static_cast<bool>(make()); }), 0U);
  EXPECT_TRUE(made);  // the last run is the one that gets through
}

TEST(FilesOutOfMemory, OpeningGivesAnEmptyHandle) {
  const TempDirectory directory;
  const std::string path = directory / "file";
  writeFile(path, "content");
  expectHandleOrNone([&] { return Directory::openFile(path, 0, true); });
  expectHandleOrNone([&] { return Directory::createFile(path, 4096); });
  expectHandleOrNone([&] { return createPrivateFile(path, 0); });
  expectHandleOrNone([&] { return Directory::open(directory.path()); });
}

TEST(FilesOutOfMemory, ListingIsOutOfMemory) {
  const TempDirectory directory;
  for (int i = 0; i < 20; ++i) {
    writeFile(directory / (std::string(40, 'n') + std::to_string(i)), "");
  }
  const DirectoryLinux handle(directory.path());
  Status last = StatusFailed;
  EXPECT_GT(everyAllocationFails([&] {
              IDirectory::Entries entries;
              last = handle.getEntriesStartWith("n", entries);
              EXPECT_EQ(last, entries.size() == 20 ? StatusOk : StatusOutOfMemory);
            }),
            40U);
  EXPECT_EQ(last, StatusOk);
}

TEST(FilesOutOfMemory, ConversionIsFalseAndLeavesTheResult) {
  ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
  const std::string text(100, 'x');
  EXPECT_GT(everyAllocationFails([&] {
              std::wstring wide = L"old";
              const bool converted = Unicode::convertFromUtf8ToUnicode(text, wide);
              EXPECT_EQ(wide.size(), converted ? 100U : 3U);
            }),
            0U);
  const std::wstring wideText(100, L'x');
  EXPECT_GT(everyAllocationFails([&] {
              std::string bytes = "old";
              const bool converted = Unicode::convertFromUnicodeToUtf8(wideText, bytes);
              EXPECT_EQ(bytes.size(), converted ? 100U : 3U);
            }),
            0U);
}

}  // namespace
}  // namespace trelvo::core
