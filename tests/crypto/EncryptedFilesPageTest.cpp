// Holds the examples of docs/encrypted-files.md against the library.

#include <gtest/gtest.h>

#include "tests/crypto/MemoryDisk.h"
#include "tests/crypto/Slog.h"
#include "tests/house/WireFormatPage.h"

namespace trelvo::test {
namespace {

std::vector<Bytes> dumps() {
  std::vector<Bytes> found = hexDumps(sourceFile("docs/encrypted-files.md"));
  EXPECT_EQ(found.size(), 3U);
  found.resize(3);
  return found;
}

/// What a block file stores of `plain`.
Bytes stored(const Bytes& plain) {
  MemoryDisk disk;
  EXPECT_TRUE(writeBytes(*openPlain(disk.open(true)), plain));
  return disk.content;
}

TEST(EncryptedFilesPage, ItsBlocksAreWhatTheLibraryStores) {
  EXPECT_EQ(slice(stored(Bytes(544, 'a')), 496, 528), dumps()[0]);
}

TEST(EncryptedFilesPage, ItsLogBodyIsWhatTheLibraryStoresOfItsStream) {
  EXPECT_EQ(stored(dumps()[1]), dumps()[2]);
}

TEST(EncryptedFilesPage, ItsLogDecryptsToItsLines) {
  const TempDirectory directory;
  const Bytes golden = bytesOfFile(goldenFile("complete.slog"));  // has the same key and IV
  putFile(directory / "a.slog", joined({head(golden, 258), dumps()[2]}));
  EXPECT_EQ(textOf(directory / "a.slog"), "cell 41394\ncell 41395\n");
}

}  // namespace
}  // namespace trelvo::test
