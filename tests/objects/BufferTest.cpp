#include <gtest/gtest.h>
#include <trelvo/Buffer.h>

#include <cstring>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

#include "tests/support/AllocationFailure.h"
#include "tests/support/Bytes.h"

namespace trelvo {
namespace {

using test::allocationsOf;
using test::Bytes;
using test::bytes;

static_assert(std::is_base_of_v<ReadOnlyBuffer, Buffer>);
static_assert(!std::is_constructible_v<Buffer, const Buffer&>, "copying transfers");

Bytes contentOf(const Buffer& buffer) {
  return buffer.size() == 0 ? Bytes() : Bytes(buffer.data(), buffer.data() + buffer.size());
}

/// A block of `content` from array new.
unsigned char* block(const Bytes& content) {
  auto* const result = new unsigned char[content.size()];
  std::memcpy(result, content.data(), content.size());
  return result;
}

void append(Buffer& buffer, const Bytes& content) {
  buffer.append(content.data(), static_cast<unsigned int>(content.size()));
}

/// The bytes that makeRoom() asks for when an empty buffer needs `needed`.
unsigned long long roomFor(unsigned int needed) {
  return allocationsOf([needed] { Buffer().makeRoom(needed); }).bytes;
}

TEST(Buffer, IsEmptyByDefault) {
  Buffer buffer;
  EXPECT_EQ(buffer.data(), nullptr);
  EXPECT_EQ(std::as_const(buffer).data(), nullptr);
  EXPECT_EQ(buffer.size(), 0U);
  EXPECT_EQ(buffer.readPosition(), 0U);
  EXPECT_EQ(buffer.writePosition(), 0U);
}

TEST(Buffer, GrowsInStepsOf512Bytes) {
  EXPECT_EQ(roomFor(0), 0U);
  EXPECT_EQ(roomFor(1), 512U);
  EXPECT_EQ(roomFor(511), 512U);
  EXPECT_EQ(roomFor(512), 1024U) << "strictly above what is needed";
  EXPECT_EQ(roomFor(513), 1024U);
  EXPECT_EQ(roomFor(1023), 1024U);
  EXPECT_EQ(roomFor(1024), 1536U);
  EXPECT_EQ(roomFor(100000), 100352U) << "never geometrically";
}

TEST(Buffer, OfACapacityHasRoomButNoView) {
  Buffer buffer(512);
  EXPECT_EQ(buffer.size(), 0U);
  EXPECT_EQ(buffer.writePosition(), 0U);
  EXPECT_NE(buffer.data(), nullptr);
  EXPECT_EQ(std::as_const(buffer).data(), nullptr) << "until the first write";
  append(buffer, bytes("01"));
  EXPECT_EQ(std::as_const(buffer).data(), buffer.data());
}

TEST(Buffer, Of512Holds1024) {
  EXPECT_EQ(allocationsOf([] { Buffer(512).makeRoom(1024); }).calls, 1U);
  EXPECT_EQ(allocationsOf([] { Buffer(512).makeRoom(1025); }).calls, 2U);
  EXPECT_EQ(allocationsOf([] { Buffer buffer(0U); }).calls, 0U);
}

TEST(Buffer, MakeRoomWithinTheCapacityDoesNothing) {
  Buffer buffer(1);
  const unsigned char* const before = buffer.data();
  buffer.makeRoom(512);
  EXPECT_EQ(buffer.data(), before);
}

TEST(Buffer, MakeRoomKeepsContentAndPositions) {
  Buffer buffer;
  append(buffer, bytes("01 02 03"));
  ASSERT_EQ(buffer.setWritePosition(1), StatusOk);
  ASSERT_EQ(buffer.setReadPosition(2), StatusOk);
  buffer.makeRoom(5000);
  EXPECT_EQ(buffer.writePosition(), 1U);
  EXPECT_EQ(buffer.readPosition(), 2U);
  EXPECT_EQ(buffer.size(), 3U);
  EXPECT_EQ(Bytes(buffer.data(), buffer.data() + 3), bytes("01 02 03"));
}

TEST(Buffer, GrowthCarriesBytesThatWereNeverAppended) {
  Buffer buffer(1);
  std::memset(buffer.data(), 0x77, 512);
  buffer.makeRoom(2000);
  EXPECT_EQ(buffer.data()[0], 0x77);
  EXPECT_EQ(buffer.data()[511], 0x77);
}

TEST(Buffer, OfABlockTakesItAsContentAndAppendsOverItsStart) {
  Buffer buffer(block(bytes("0A 0B 0C 0D")), 4);
  EXPECT_EQ(contentOf(buffer), bytes("0A 0B 0C 0D"));
  EXPECT_EQ(buffer.writePosition(), 0U);
  EXPECT_EQ(buffer.readPosition(), 0U);
  append(buffer, bytes("F1 F2"));
  EXPECT_EQ(contentOf(buffer), bytes("F1 F2 0C 0D"));
  EXPECT_EQ(buffer.writePosition(), 2U);
}

TEST(Buffer, OfAProxyAppendsBehindItsEnd) {
  Buffer buffer(auto_array_proxy<unsigned char>{block(bytes("0A 0B 0C 0D")), 4});
  EXPECT_EQ(buffer.writePosition(), 4U);
  append(buffer, bytes("F1 F2"));
  EXPECT_EQ(contentOf(buffer), bytes("0A 0B 0C 0D F1 F2"));
}

TEST(Buffer, AssigningAProxyAppendsBehindItsEnd) {
  Buffer buffer;
  append(buffer, bytes("01 02 03 04 05 06 07"));
  ASSERT_EQ(buffer.setReadPosition(5), StatusOk);
  buffer = auto_array_proxy<unsigned char>{block(bytes("0A 0B 0C 0D")), 4};
  EXPECT_EQ(contentOf(buffer), bytes("0A 0B 0C 0D"));
  EXPECT_EQ(buffer.readPosition(), 0U);
  append(buffer, bytes("F1 F2"));
  EXPECT_EQ(contentOf(buffer), bytes("0A 0B 0C 0D F1 F2"));
}

TEST(Buffer, OfAnArrayTakesItAsSpareRoom) {
  auto_array<unsigned char> array(block(bytes("0A 0B 0C 0D")), 4);
  const unsigned char* const spare = array.get();
  Buffer buffer(array);
  EXPECT_EQ(array.get(), nullptr);
  EXPECT_EQ(array.size(), 0U);
  EXPECT_EQ(buffer.size(), 0U);
  EXPECT_EQ(buffer.writePosition(), 0U);
  EXPECT_EQ(buffer.data(), spare);
  append(buffer, bytes("01 02 03 04"));
  EXPECT_EQ(buffer.data(), spare) << "the room was used";
  EXPECT_EQ(contentOf(buffer), bytes("01 02 03 04"));
  append(buffer, bytes("05"));
  EXPECT_EQ(contentOf(buffer), bytes("01 02 03 04 05"));
}

TEST(Buffer, CopyingTransfersEverything) {
  Buffer source;
  append(source, bytes("01 02 03 04"));
  ASSERT_EQ(source.setWritePosition(2), StatusOk);
  ASSERT_EQ(source.setReadPosition(3), StatusOk);
  const unsigned char* const content = source.data();
  Buffer target(source);
  EXPECT_EQ(target.data(), content) << "no bytes are copied";
  EXPECT_EQ(contentOf(target), bytes("01 02 03 04"));
  EXPECT_EQ(target.writePosition(), 2U);
  EXPECT_EQ(target.readPosition(), 3U);
  EXPECT_EQ(source.data(), nullptr);
  EXPECT_EQ(source.size(), 0U);
  EXPECT_EQ(source.writePosition(), 0U);
  EXPECT_EQ(source.readPosition(), 0U);
}

TEST(Buffer, AssigningTransfersAndDeletesTheOldBlock) {
  EXPECT_EQ(allocationsOf([] {
              Buffer source;
              append(source, bytes("01 02 03 04"));
              ASSERT_EQ(source.setWritePosition(1), StatusOk);
              ASSERT_EQ(source.setReadPosition(3), StatusOk);
              Buffer target;
              append(target, bytes("FF FF"));
              target = source;
              EXPECT_EQ(contentOf(target), bytes("01 02 03 04"));
              EXPECT_EQ(target.writePosition(), 1U);
              EXPECT_EQ(target.readPosition(), 3U);
              EXPECT_EQ(source.data(), nullptr);
              EXPECT_EQ(source.size(), 0U);
            }).leaked,
            0);
}

TEST(Buffer, TransferCarriesTheCapacity) {
  EXPECT_EQ(allocationsOf([] {
              Buffer source(2000);
              Buffer target(source);
              target.makeRoom(2048);
            }).calls,
            1U);
}

TEST(Buffer, AssigningToItselfDoesNothing) {
  Buffer buffer;
  append(buffer, bytes("01 02 03"));
  ASSERT_EQ(buffer.setReadPosition(1), StatusOk);
  Buffer& same = buffer;
  buffer = same;
  EXPECT_EQ(contentOf(buffer), bytes("01 02 03"));
  EXPECT_EQ(buffer.readPosition(), 1U);
  EXPECT_EQ(buffer.writePosition(), 3U);
}

TEST(Buffer, HandsItsBlockOutAsAProxy) {
  Buffer buffer;
  append(buffer, bytes("01 02 03"));
  const unsigned char* const content = buffer.data();
  const auto_array_proxy<unsigned char> proxy = buffer;
  EXPECT_EQ(proxy.pointer, content);
  EXPECT_EQ(proxy.size, 3U);
  EXPECT_EQ(buffer.data(), nullptr);
  EXPECT_EQ(buffer.size(), 3U) << "view and positions still speak of the block that left";
  EXPECT_EQ(std::as_const(buffer).data(), content);
  EXPECT_EQ(buffer.writePosition(), 3U);
  const auto_array<unsigned char> owner(proxy);
  buffer.reset();
  EXPECT_EQ(buffer.size(), 0U);
}

TEST(Buffer, PassesThroughAProxyToAnotherBuffer) {
  Buffer source;
  append(source, bytes("01 02 03"));
  Buffer target;
  target = static_cast<auto_array_proxy<unsigned char>>(source);
  append(target, bytes("04"));
  EXPECT_EQ(contentOf(target), bytes("01 02 03 04"));
}

TEST(Buffer, ReleaseHandsTheBlockToTheCaller) {
  Buffer buffer;
  append(buffer, bytes("01 02 03"));
  const std::unique_ptr<unsigned char[]> released(buffer.release());
  EXPECT_EQ(Bytes(released.get(), released.get() + 3), bytes("01 02 03"));
  EXPECT_EQ(buffer.data(), nullptr);
  EXPECT_EQ(std::as_const(buffer).data(), nullptr);
  EXPECT_EQ(buffer.size(), 0U);
  EXPECT_EQ(buffer.writePosition(), 0U);
  append(buffer, bytes("09"));
  EXPECT_EQ(contentOf(buffer), bytes("09")) << "it can be used on";
}

TEST(Buffer, ReleaseOfAnEmptyBufferGivesNull) {
  Buffer buffer;
  EXPECT_EQ(buffer.release(), nullptr);
}

TEST(Buffer, ResetDeletesTheBlock) {
  Buffer buffer;
  append(buffer, bytes("01 02 03"));
  buffer.reset();
  EXPECT_EQ(buffer.data(), nullptr);
  EXPECT_EQ(std::as_const(buffer).data(), nullptr);
  EXPECT_EQ(buffer.size(), 0U);
  EXPECT_EQ(buffer.writePosition(), 0U);
  EXPECT_EQ(buffer.readPosition(), 0U);
}

TEST(Buffer, AttachBaseViewsTheWrittenBytes) {
  Buffer buffer;
  append(buffer, bytes("01 02 03"));
  buffer.attach(nullptr, 0);
  EXPECT_EQ(buffer.size(), 0U);
  buffer.attachBase();
  EXPECT_EQ(contentOf(buffer), bytes("01 02 03"));
  ASSERT_EQ(buffer.setReadPosition(2), StatusOk);
  buffer.attachBase();
  EXPECT_EQ(buffer.readPosition(), 0U);
}

TEST(Buffer, AppendsAndRewindsTheReadPosition) {
  Buffer buffer;
  append(buffer, bytes("01 02 03"));
  ASSERT_EQ(buffer.setReadPosition(2), StatusOk);
  append(buffer, bytes("04"));
  EXPECT_EQ(contentOf(buffer), bytes("01 02 03 04"));
  EXPECT_EQ(buffer.readPosition(), 0U);
  EXPECT_EQ(buffer.writePosition(), 4U);
}

TEST(Buffer, AppendInTheMiddleKeepsWhatIsBehind) {
  Buffer buffer;
  append(buffer, bytes("01 02 03 04 05"));
  ASSERT_EQ(buffer.setWritePosition(1), StatusOk);
  append(buffer, bytes("F2 F3"));
  EXPECT_EQ(contentOf(buffer), bytes("01 F2 F3 04 05"));
  EXPECT_EQ(buffer.writePosition(), 3U);
  append(buffer, bytes("F4 F5 F6"));
  EXPECT_EQ(contentOf(buffer), bytes("01 F2 F3 F4 F5 F6"));
}

TEST(Buffer, AppendOf0BytesOnAnEmptyBufferAllocatesNothing) {
  EXPECT_EQ(allocationsOf([] {
              Buffer buffer;
              buffer.append(nullptr, 0);
              EXPECT_EQ(buffer.data(), nullptr);
              EXPECT_EQ(std::as_const(buffer).data(), nullptr);
            }).calls,
            0U);
}

TEST(Buffer, AppendOf0BytesRewindsTheReadPosition) {
  Buffer buffer;
  append(buffer, bytes("01 02 03"));
  ASSERT_EQ(buffer.setReadPosition(2), StatusOk);
  buffer.append(nullptr, 0);
  EXPECT_EQ(buffer.readPosition(), 0U);
  EXPECT_EQ(contentOf(buffer), bytes("01 02 03"));
}

TEST(Buffer, AppendGrowsOverManySteps) {
  Buffer buffer;
  Bytes expected;
  for (unsigned int i = 0; i < 2000; ++i) {
    const Bytes part(i % 7, static_cast<unsigned char>(i));
    append(buffer, part);
    expected.insert(expected.end(), part.begin(), part.end());
  }
  EXPECT_EQ(contentOf(buffer), expected);
}

TEST(Buffer, FillAppendsOneByteManyTimes) {
  Buffer buffer;
  append(buffer, bytes("01 02 03 04"));
  ASSERT_EQ(buffer.setReadPosition(2), StatusOk);
  ASSERT_EQ(buffer.setWritePosition(1), StatusOk);
  buffer.fill(0xAB, 2);
  EXPECT_EQ(contentOf(buffer), bytes("01 AB AB 04"));
  EXPECT_EQ(buffer.readPosition(), 0U);
  EXPECT_EQ(buffer.writePosition(), 3U);
  buffer.fill(0, 600);
  EXPECT_EQ(buffer.size(), 603U);
  EXPECT_EQ(contentOf(buffer)[602], 0U);
}

TEST(Buffer, FilledWithNothingStaysAsItIsAndIsReadFromItsStart) {
  Buffer buffer;
  buffer.fill(0xAB, 0);
  EXPECT_EQ(buffer.size(), 0U);
  append(buffer, bytes("01 02"));
  ASSERT_EQ(buffer.setReadPosition(1), StatusOk);
  buffer.fill(0xAB, 0);
  EXPECT_EQ(contentOf(buffer), bytes("01 02"));
  EXPECT_EQ(buffer.writePosition(), 2U);
  EXPECT_EQ(buffer.readPosition(), 0U);
}

TEST(Buffer, RefusesTheWritePositionAtItsEnd) {
  Buffer buffer;
  EXPECT_EQ(buffer.setWritePosition(0), StatusInvalidParameter);
  append(buffer, bytes("01 02 03"));
  EXPECT_EQ(buffer.setWritePosition(3), StatusInvalidParameter);
  EXPECT_EQ(buffer.setWritePosition(~0U), StatusInvalidParameter);
  EXPECT_EQ(buffer.writePosition(), 3U);
  EXPECT_EQ(buffer.setWritePosition(2), StatusOk);
  EXPECT_EQ(buffer.setWritePosition(0), StatusOk);
  EXPECT_EQ(buffer.writePosition(), 0U);
}

TEST(Buffer, NeedsThatCannotBeRoundedUpThrowBadAlloc) {
  Buffer buffer;
  append(buffer, bytes("01 02 03"));
  ASSERT_EQ(buffer.setReadPosition(1), StatusOk);
  const unsigned char* const before = buffer.data();
  EXPECT_THROW(buffer.makeRoom(0xFFFFFE00), std::bad_alloc);
  EXPECT_THROW(buffer.makeRoom(0xFFFFFFFF), std::bad_alloc);
  EXPECT_THROW(buffer.append(before, 0xFFFFFFFF), std::bad_alloc) << "the end wraps";
  EXPECT_THROW(buffer.append(before, 0xFFFFFFFC), std::bad_alloc) << "the end is the last number";
  EXPECT_THROW(buffer.fill(0, 0xFFFFFFFF), std::bad_alloc);
  EXPECT_THROW(Buffer(0xFFFFFE00U), std::bad_alloc);
  EXPECT_EQ(buffer.data(), before);
  EXPECT_EQ(contentOf(buffer), bytes("01 02 03"));
  EXPECT_EQ(buffer.readPosition(), 1U);
  EXPECT_EQ(buffer.writePosition(), 3U);
}

TEST(Buffer, StaysAsItIsWhenMemoryRunsOut) {
  const auto unchanged = [](Buffer& buffer, const auto& step) {
    try {
      step();
    } catch (const std::bad_alloc&) {
      EXPECT_EQ(buffer.size(), 3U);
      EXPECT_EQ(buffer.writePosition(), 3U);
      EXPECT_EQ(buffer.readPosition(), 1U);
      EXPECT_EQ(buffer.data()[2], 3U);
    }
  };
  const unsigned char content[700] = {1, 2, 3};
  EXPECT_EQ(test::everyAllocationFails([&] {
              Buffer buffer;
              {
                const test::AllocationsSucceed succeed;
                buffer.append(content, 3);
              }
              ASSERT_EQ(buffer.setReadPosition(1), StatusOk);
              unchanged(buffer, [&] { buffer.append(content, 700); });
            }),
            1U);
  EXPECT_EQ(test::everyAllocationFails([&] {
              Buffer buffer;
              {
                const test::AllocationsSucceed succeed;
                buffer.append(content, 3);
              }
              ASSERT_EQ(buffer.setReadPosition(1), StatusOk);
              unchanged(buffer, [&] { buffer.fill(9, 700); });
            }),
            1U);
}

}  // namespace
}  // namespace trelvo
