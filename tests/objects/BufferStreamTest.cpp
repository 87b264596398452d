#include <gtest/gtest.h>
#include <trelvo/BufferStream.h>

#include <type_traits>

#include "tests/support/AllocationFailure.h"
#include "tests/support/Bytes.h"

namespace trelvo {
namespace {

using test::Bytes;
using test::bytes;
using test::fill;

static_assert(std::is_base_of_v<IStream, BufferStream>);
static_assert(!std::is_copy_constructible_v<BufferStream>);

unsigned char next(BufferStream& stream) {
  unsigned char byte = 0;
  EXPECT_EQ(stream.read(&byte, 1), 1U);
  return byte;
}

TEST(BufferStream, IsNotGoodWhenNew) {
  BufferStream stream;
  unsigned char byte = 0x55;
  unsigned int size = 7;
  EXPECT_FALSE(stream.good());
  EXPECT_TRUE(stream.eof());
  EXPECT_EQ(stream.read(&byte, 1), 0U);
  EXPECT_EQ(byte, 0x55);
  EXPECT_EQ(stream.offset(), 0U);
  EXPECT_TRUE(stream.getSize(size));
  EXPECT_EQ(size, 0U);
  EXPECT_FALSE(stream.seekFromStart(0));
  EXPECT_FALSE(stream.seekFromEnd(0));
  EXPECT_FALSE(stream.seekFromEnd(1));
}

TEST(BufferStream, StaysNotGoodAfterWritesOf0Bytes) {
  BufferStream stream;
  EXPECT_EQ(stream.write(nullptr, 0), 0U);
  EXPECT_FALSE(stream.good());
  EXPECT_EQ(test::allocationsOf([] {
              BufferStream untouched;
              untouched.write(nullptr, 0);
            }).calls,
            0U);
}

TEST(BufferStream, CanReadSeekWriteAndFlush) {
  BufferStream stream;
  EXPECT_TRUE(stream.canRead());
  EXPECT_TRUE(stream.canSeek());
  EXPECT_TRUE(stream.canWrite());
  EXPECT_TRUE(stream.flush());
}

TEST(BufferStream, ReadsBackWithoutASeek) {
  BufferStream stream;
  fill(stream, bytes("0A 0B 0C"));
  EXPECT_TRUE(stream.good());
  EXPECT_FALSE(stream.eof());
  unsigned char target[4] = {0xEE, 0xEE, 0xEE, 0xEE};
  EXPECT_EQ(stream.read(target, 4), 3U);
  EXPECT_EQ(Bytes(target, target + 4), bytes("0A 0B 0C EE"));
  EXPECT_TRUE(stream.eof());
  EXPECT_TRUE(stream.good()) << "the end is no failure";
  EXPECT_EQ(stream.offset(), 3U);
}

TEST(BufferStream, EachWriteRewindsTheReadCursor) {
  BufferStream stream;
  fill(stream, bytes("0A 0B"));
  EXPECT_EQ(next(stream), 0x0A);
  fill(stream, bytes("0C"));
  EXPECT_EQ(stream.offset(), 0U);
  EXPECT_EQ(next(stream), 0x0A);
  EXPECT_EQ(next(stream), 0x0B);
  EXPECT_EQ(next(stream), 0x0C);
  stream.write(nullptr, 0);
  EXPECT_EQ(stream.offset(), 0U) << "a write of nothing too";
}

TEST(BufferStream, ReadingDoesNotMoveTheWriteCursor) {
  BufferStream stream;
  fill(stream, bytes("0A 0B"));
  EXPECT_EQ(next(stream), 0x0A);
  EXPECT_TRUE(stream.seekFromStart(1));
  EXPECT_EQ(stream.buffer().writePosition(), 2U);
  fill(stream, bytes("0C"));
  EXPECT_EQ(test::contentOf(stream), bytes("0A 0B 0C"));
}

TEST(BufferStream, WritesWhereItsBufferStands) {
  BufferStream stream;
  fill(stream, bytes("01 02 03 04"));
  ASSERT_EQ(stream.buffer().setWritePosition(1), StatusOk);
  fill(stream, bytes("F2"));
  EXPECT_EQ(test::contentOf(stream), bytes("01 F2 03 04"));
}

TEST(BufferStream, SeeksFromTheStart) {
  BufferStream stream;
  fill(stream, bytes("0A 0B 0C"));
  EXPECT_TRUE(stream.seekFromStart(2));
  EXPECT_EQ(stream.offset(), 2U);
  EXPECT_EQ(next(stream), 0x0C);
  EXPECT_TRUE(stream.seekFromStart(0));
  EXPECT_EQ(next(stream), 0x0A);
  EXPECT_FALSE(stream.seekFromStart(3)) << "although eof() would hold there";
  EXPECT_FALSE(stream.seekFromStart(~0U));
  EXPECT_EQ(stream.offset(), 1U) << "a refused seek moves nothing";
}

TEST(BufferStream, SeeksFromTheEnd) {
  BufferStream stream;
  fill(stream, bytes("0A 0B 0C"));
  EXPECT_TRUE(stream.seekFromEnd(1));
  EXPECT_EQ(next(stream), 0x0C);
  EXPECT_TRUE(stream.seekFromEnd(3)) << "the first byte";
  EXPECT_EQ(stream.offset(), 0U);
  EXPECT_TRUE(stream.seekFromEnd(2));
  EXPECT_FALSE(stream.seekFromEnd(0));
  EXPECT_FALSE(stream.seekFromEnd(4));
  EXPECT_FALSE(stream.seekFromEnd(~0U));
  EXPECT_EQ(stream.offset(), 1U);
}

TEST(BufferStream, TellsTheSizeOfWhatWasWritten) {
  BufferStream stream;
  fill(stream, Bytes(700, 0x11));
  unsigned int size = 0;
  EXPECT_EQ(next(stream), 0x11);
  EXPECT_TRUE(stream.getSize(size));
  EXPECT_EQ(size, 700U);
}

TEST(BufferStream, GivesItsBuffer) {
  BufferStream stream;
  fill(stream, bytes("0A 0B"));
  const BufferStream& constant = stream;
  EXPECT_EQ(&constant.buffer(), &stream.buffer());
  static_assert(std::is_same_v<decltype(constant.buffer()), const Buffer&>);
  static_assert(std::is_same_v<decltype(stream.buffer()), Buffer&>);
}

}  // namespace
}  // namespace trelvo
