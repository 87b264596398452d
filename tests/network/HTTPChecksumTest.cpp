// The rule by which blocks of a body enter the checksum.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <trelvo/network/HTTPRequest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace trelvo::network {
namespace {

using Blocks = std::vector<std::string>;

/// A range, fed block by block.
struct Range {
  unsigned int start;
  unsigned int end;
  unsigned int position = 0;
  boost::crc_32_type crc = boost::crc_32_type();

  void feed(const std::string& block) {
    // Of exactly its size, so that a sanitizer sees a read behind it.
    const std::vector<unsigned char> exact(block.begin(), block.end());
    HTTPRequest::addBufferToCrc32CheckSum(exact.data(), static_cast<unsigned int>(exact.size()),
                                          &crc, start, end, &position);
  }
};

/// Feeds `blocks` and expects that `counted` are the bytes that enter, in this order.
void expectCounted(unsigned int start, unsigned int end, const Blocks& blocks,
                   const std::string& counted) {
  Range range{start, end};
  for (const std::string& block : blocks) {
    range.feed(block);
  }
  boost::crc_32_type expected;
  expected.process_bytes(counted.data(), counted.size());
  EXPECT_EQ(range.crc.checksum(), expected.checksum());
  EXPECT_EQ(range.crc.get_interim_remainder(), expected.get_interim_remainder());
  EXPECT_EQ(range.position, counted.size()) << "counted bytes, not an offset";
}

TEST(HTTPChecksum, IsTheStandardCrc32) {
  Range range{0, 9};
  range.feed("123456789");
  EXPECT_EQ(range.crc.checksum(), 0xCBF43926U);
}

TEST(HTTPChecksum, FromTheStartIsAPlainRange) {
  expectCounted(0, 100, {"abc", "defg", "h"}, "abcdefgh");
  expectCounted(0, 8, {"abc", "defg", "h"}, "abcdefgh");
  expectCounted(0, 7, {"abc", "defg", "h"}, "abcdefg");
  expectCounted(0, 5, {"abc", "defg", "h"}, "abcde");
  expectCounted(0, 3, {"abc", "defg", "h"}, "abc");
  expectCounted(0, 1, {"abc", "defg", "h"}, "a");
  expectCounted(0, 0, {"abc", "defg", "h"}, "");
}

TEST(HTTPChecksum, ShortFirstBlocksAreSkippedWhole) {
  expectCounted(4, 100, {"abc", "defghi"}, "hi");
  expectCounted(4, 100, {"a", "b", "c", "d", "efghij"}, "ij");
}

TEST(HTTPChecksum, ABlockThatJustReachesTheStartAddsNothing) {
  expectCounted(4, 100, {"abcd", "efghij"}, "ij");
}

TEST(HTTPChecksum, TheHeadIsTakenOffAnewUntilEnoughWasCounted) {
  // 1 counted: below 4, so the next block loses four too; with 4 counted it stops.
  expectCounted(4, 100, {"abcde", "fghijkl", "mnop"}, "ejklmnop");
  // Blocks that do not reach the start together with what was counted are skipped.
  expectCounted(4, 100, {"abcde", "fg", "hij", "klmnop"}, "eop");
}

TEST(HTTPChecksum, TheEndIsHeldAgainstTheCountedBytes) {
  expectCounted(4, 7, {"abcdefghij"}, "efg");
  expectCounted(4, 7, {"abc", "defghij"}, "hij");
  expectCounted(4, 7, {"abcdefghij", "klmnopqr"}, "efg");
  expectCounted(4, 7, {"abcdefghijk", "lmnopqrst"}, "efg");
  expectCounted(2, 6, {"abcd", "efgh", "ijkl"}, "cdefgh");
}

TEST(HTTPChecksum, WhereHeadAndTailMeetOrCrossNothingIsCounted) {
  expectCounted(4, 4, {"abcdefgh"}, "");
  expectCounted(4, 2, {"abcdefgh"}, "");
  expectCounted(8, 3, {"abcdefgh", "ijklmnopqrst"}, "");
  expectCounted(4, 0, {"abcdefgh"}, "");
  expectCounted(0xFFFFFFFF, 0, {"abcdefgh"}, "");
  expectCounted(0xFFFFFFFF, 0xFFFFFFFF, {"abcdefgh"}, "");
}

TEST(HTTPChecksum, SumsBeyond32BitsAreNotCutOff) {
  const std::string block = "abcdefgh";
  Range range{0, 0xFFFFFFFF, 0xFFFFFFFC};
  range.feed(block);
  EXPECT_EQ(range.position, 0xFFFFFFFFU);
  boost::crc_32_type expected;
  expected.process_bytes(block.data(), 3);
  EXPECT_EQ(range.crc.checksum(), expected.checksum());
  range.feed(block);
  EXPECT_EQ(range.position, 0xFFFFFFFFU) << "the end is reached";
}

TEST(HTTPChecksum, WithoutASumDoesNothing) {
  const unsigned char byte = 0;
  unsigned int position = 7;
  HTTPRequest::addBufferToCrc32CheckSum(&byte, 1, nullptr, 0, 100, &position);
  EXPECT_EQ(position, 7U);
}

TEST(HTTPChecksum, AnEmptyBlockDoesNothing) { expectCounted(0, 100, {"", "abc", ""}, "abc"); }

/// The rule in its plainest form, byte by byte.
void model(Range& range, const std::string& block) {
  const auto length = static_cast<long long>(block.size());
  const long long p = range.position;
  if (p + length < range.start || (p != 0 && p >= range.end)) {
    return;
  }
  const long long head = p < range.start ? range.start : 0;
  const long long tail = std::max(0LL, p + length - range.end);
  for (long long i = head; i < length - tail; ++i) {
    range.crc.process_byte(static_cast<unsigned char>(block[static_cast<std::size_t>(i)]));
    ++range.position;
  }
}

TEST(HTTPChecksum, AgreesWithTheByteWiseRuleOnRandomBlocks) {
  std::mt19937 random(20260401);
  const auto upTo = [&](unsigned int most) {
    return static_cast<unsigned int>(random() % (most + 1));
  };
  for (int round = 0; round < 2000; ++round) {
    const unsigned int most = round % 2 == 0 ? 40 : 3000;
    Range range{upTo(1) * upTo(most), upTo(4 * most)};
    Range expected = range;
    for (int i = 0; i < 8; ++i) {
      std::string block(upTo(most), '\0');
      std::generate(block.begin(), block.end(), [&] { return static_cast<char>(random()); });
      range.feed(block);
      model(expected, block);
      ASSERT_EQ(range.position, expected.position) << "round " << round << ", block " << i;
      ASSERT_EQ(range.crc.get_interim_remainder(), expected.crc.get_interim_remainder());
    }
  }
}

}  // namespace
}  // namespace trelvo::network
