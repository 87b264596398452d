#include <gtest/gtest.h>
#include <trelvo/Buffer.h>
#include <trelvo/ReadOnlyBuffer.h>

#include <type_traits>

#include "tests/support/Bytes.h"

namespace trelvo {
namespace {

using test::Bytes;
using test::bytes;

constexpr unsigned char kFive[] = {0x10, 0x11, 0x12, 0x13, 0x14};

static_assert(!std::is_polymorphic_v<ReadOnlyBuffer>);

Bytes contentOf(const ReadOnlyBuffer& view) {
  return Bytes(view.data(), view.data() + view.size());
}

TEST(ReadOnlyBuffer, IsEmptyByDefault) {
  const ReadOnlyBuffer view;
  EXPECT_EQ(view.data(), nullptr);
  EXPECT_EQ(view.size(), 0U);
  EXPECT_EQ(view.readPosition(), 0U);
  EXPECT_EQ(view.leftForReading(), 0U);
}

TEST(ReadOnlyBuffer, ViewsTheGivenBytes) {
  const ReadOnlyBuffer view(kFive, 5);
  EXPECT_EQ(view.data(), kFive);
  EXPECT_EQ(view.size(), 5U);
  EXPECT_EQ(view.readPosition(), 0U);
  EXPECT_EQ(view.leftForReading(), 5U);
}

TEST(ReadOnlyBuffer, AttachStartsFromPosition0) {
  ReadOnlyBuffer view(kFive, 5);
  ASSERT_EQ(view.setReadPosition(3), StatusOk);
  view.attach(kFive + 1, 4);
  EXPECT_EQ(view.data(), kFive + 1);
  EXPECT_EQ(view.size(), 4U);
  EXPECT_EQ(view.readPosition(), 0U);
}

TEST(ReadOnlyBuffer, CopiesAreFurtherViewsWithTheSamePosition) {
  ReadOnlyBuffer view(kFive, 5);
  ASSERT_EQ(view.setReadPosition(2), StatusOk);
  ReadOnlyBuffer copy(view);
  ReadOnlyBuffer assigned;
  assigned = view;
  for (const ReadOnlyBuffer& each : {copy, assigned}) {
    EXPECT_EQ(each.data(), kFive);
    EXPECT_EQ(each.size(), 5U);
    EXPECT_EQ(each.readPosition(), 2U);
  }
  unsigned char byte = 0;
  EXPECT_EQ(copy.read(&byte, 1, false), 1U);
  EXPECT_EQ(view.readPosition(), 2U) << "each has a position of its own";
}

TEST(ReadOnlyBuffer, ReadsOnFromItsPosition) {
  ReadOnlyBuffer view(kFive, 5);
  unsigned char target[2] = {};
  EXPECT_EQ(view.read(target, 2, false), 2U);
  EXPECT_EQ(Bytes(target, target + 2), bytes("10 11"));
  EXPECT_EQ(view.read(target, 2, false), 2U);
  EXPECT_EQ(Bytes(target, target + 2), bytes("12 13"));
  EXPECT_EQ(view.leftForReading(), 1U);
}

TEST(ReadOnlyBuffer, ReadsNoMoreThanIsLeft) {
  ReadOnlyBuffer view(kFive, 5);
  unsigned char target[9] = {0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE};
  EXPECT_EQ(view.read(target, 9, false), 5U);
  EXPECT_EQ(Bytes(target, target + 9), bytes("10 11 12 13 14 EE EE EE EE"));
  EXPECT_EQ(view.readPosition(), 5U);
  EXPECT_EQ(view.read(target, ~0U, false), 0U);
}

TEST(ReadOnlyBuffer, ReadsFromTheStartWhenAsked) {
  ReadOnlyBuffer view(kFive, 5);
  unsigned char target[3] = {};
  EXPECT_EQ(view.read(target, 3, false), 3U);
  EXPECT_EQ(view.read(target, 3, true), 3U);
  EXPECT_EQ(Bytes(target, target + 3), bytes("10 11 12"));
  EXPECT_EQ(view.readPosition(), 3U);
}

TEST(ReadOnlyBuffer, ReadingNothingFromTheStartGoesBackToo) {
  ReadOnlyBuffer view(kFive, 5);
  ASSERT_EQ(view.setReadPosition(4), StatusOk);
  EXPECT_EQ(view.read(nullptr, 0, true), 0U);
  EXPECT_EQ(view.readPosition(), 0U);
}

TEST(ReadOnlyBuffer, WithNothingToCopyTouchesNothing) {
  ReadOnlyBuffer empty;
  EXPECT_EQ(empty.read(nullptr, 100, false), 0U);
  ReadOnlyBuffer view(kFive, 5);
  EXPECT_EQ(view.read(nullptr, 0, false), 0U);
  EXPECT_EQ(view.readPosition(), 0U);
}

TEST(ReadOnlyBuffer, SetsThePositionToEveryByte) {
  ReadOnlyBuffer view(kFive, 5);
  for (const unsigned int position : {4U, 0U, 2U}) {
    EXPECT_EQ(view.setReadPosition(position), StatusOk);
    EXPECT_EQ(view.readPosition(), position);
    EXPECT_EQ(view.leftForReading(), 5 - position);
  }
}

TEST(ReadOnlyBuffer, RefusesThePositionOnePastTheEnd) {
  ReadOnlyBuffer view(kFive, 5);
  ASSERT_EQ(view.setReadPosition(3), StatusOk);
  EXPECT_EQ(view.setReadPosition(5), StatusInvalidParameter);
  EXPECT_EQ(view.setReadPosition(~0U), StatusInvalidParameter);
  EXPECT_EQ(view.readPosition(), 3U);
}

TEST(ReadOnlyBuffer, RefusesEveryPositionWhenEmpty) {
  ReadOnlyBuffer view;
  EXPECT_EQ(view.setReadPosition(0), StatusInvalidParameter);
  EXPECT_EQ(view.setReadPosition(1), StatusInvalidParameter);
}

TEST(ReadOnlyBuffer, CloneCopiesAllBytesWhereverThePositionStands) {
  ReadOnlyBuffer view(kFive, 5);
  ASSERT_EQ(view.setReadPosition(3), StatusOk);
  const Buffer copy = view.clone();
  EXPECT_EQ(contentOf(copy), bytes("10 11 12 13 14"));
  EXPECT_NE(static_cast<const ReadOnlyBuffer&>(copy).data(), kFive);
  EXPECT_EQ(copy.readPosition(), 0U);
  EXPECT_EQ(view.readPosition(), 3U);
}

TEST(ReadOnlyBuffer, CloneOfNothingIsEmpty) {
  Buffer copy = ReadOnlyBuffer().clone();
  EXPECT_EQ(copy.size(), 0U);
}

TEST(ReadOnlyBuffer, ExtractCopiesAHalfOpenRange) {
  const ReadOnlyBuffer view(kFive, 5);
  EXPECT_EQ(contentOf(view.extract(1, 4)), bytes("11 12 13"));
  EXPECT_EQ(contentOf(view.extract(0, 5)), bytes("10 11 12 13 14"));
  EXPECT_EQ(contentOf(view.extract(4, 5)), bytes("14"));
  EXPECT_EQ(view.extract(2, 2).size(), 0U);
}

TEST(ReadOnlyBuffer, ExtractLeavesOutWhatIsNotThere) {
  const ReadOnlyBuffer view(kFive, 5);
  EXPECT_EQ(contentOf(view.extract(3, 100)), bytes("13 14"));
  EXPECT_EQ(view.extract(5, 6).size(), 0U);
  EXPECT_EQ(view.extract(~0U - 1, ~0U).size(), 0U);
  EXPECT_EQ(view.extract(4, 2).size(), 0U);
  EXPECT_EQ(ReadOnlyBuffer().extract(0, ~0U).size(), 0U);
}

}  // namespace
}  // namespace trelvo
