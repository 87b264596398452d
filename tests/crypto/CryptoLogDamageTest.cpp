// Logs cut off and changed at every byte. What has to come out was worked out by
// tests/reference/encrypted_files_reference.py.

#include <gtest/gtest.h>
#include <trelvo/core/Directory.h>
#include <zlib.h>

#include <fstream>
#include <string>

#include "tests/crypto/Slog.h"

namespace trelvo::test {
namespace {

constexpr std::size_t kHeadSize = 2 + 256;

/// A line of damage.txt.
struct Damage {
  std::string kind;
  std::size_t place = 0;
  unsigned int status = 0;
  std::size_t size = 0;
  unsigned long crc = 0;
};

std::istream& operator>>(std::istream& in, Damage& damage) {
  return in >> damage.kind >> damage.place >> std::dec >> damage.status >> damage.size >>
         std::hex >> damage.crc >> std::dec;
}

Bytes damaged(const Bytes& content, const Damage& damage) {
  Bytes result = damage.kind == "cut" ? head(content, damage.place) : content;
  if (damage.kind == "flip") {
    result[damage.place] ^= static_cast<unsigned char>(1U << damage.place % 8);
  }
  return result;
}

/// Checks all lines of one kind. @return how many there were.
unsigned int checkAll(const std::string& kind) {
  const TempDirectory directory;
  const Bytes content = bytesOfFile(goldenFile("complete.slog"));
  std::ifstream lines(goldenFile("damage.txt"));
  unsigned int count = 0;
  for (Damage damage; lines >> damage;) {
    if (damage.kind == kind) {
      SCOPED_TRACE(::testing::Message() << kind << " " << damage.place);
      ++count;
      putFile(directory / "a.slog", damaged(content, damage));
      EXPECT_EQ(decryptLog(directory / "a.slog", directory / "text"), damage.status);
      const Bytes text = bytesOfFile(directory / "text");
      EXPECT_EQ(text.size(), damage.size);
      EXPECT_EQ(::crc32(0, text.data(), static_cast<uInt>(text.size())), damage.crc);
    }
  }
  return count;
}

TEST(CryptoLogDamage, ABodyCutOffAnywhereGivesWhatStandsAhead) { EXPECT_EQ(checkAll("cut"), 298U); }

TEST(CryptoLogDamage, ABodyChangedAnywhereGivesWhatStandsAhead) {
  EXPECT_EQ(checkAll("flip"), 298U);
}

TEST(CryptoLogDamage, AHeadCutOffAnywhereGivesFileError) {
  const TempDirectory directory;
  const Bytes content = bytesOfFile(goldenFile("complete.slog"));
  for (std::size_t size = 0; size < kHeadSize; ++size) {
    putFile(directory / "a.slog", head(content, size));
    EXPECT_EQ(decryptLog(directory / "a.slog", directory / "text"), StatusFileError) << size;
  }
  EXPECT_FALSE(core::Directory::pathExists(directory / "text"));
}

TEST(CryptoLogDamage, AHeadChangedAnywhereGivesNoText) {
  const TempDirectory directory;
  const Bytes content = bytesOfFile(goldenFile("complete.slog"));
  for (std::size_t place = 0; place < kHeadSize; ++place) {
    Bytes changed = content;
    changed[place] ^= static_cast<unsigned char>(1U << place % 8);
    putFile(directory / "a.slog", changed);
    // A change of the length's upper byte makes the head longer than the file.
    EXPECT_EQ(decryptLog(directory / "a.slog", directory / "text"),
              place == 1 ? StatusFileError : StatusKeyFailure)
        << place;
  }
  EXPECT_FALSE(core::Directory::pathExists(directory / "text"));
}

TEST(CryptoLogDamage, AHeadLongerThanTheFileGivesFileError) {
  const TempDirectory directory;
  Bytes changed = bytesOfFile(goldenFile("complete.slog"));
  changed[0] = changed[1] = 0xFF;
  putFile(directory / "a.slog", changed);
  EXPECT_EQ(decryptLog(directory / "a.slog", directory / "text"), StatusFileError);
}

}  // namespace
}  // namespace trelvo::test
