#include <gtest/gtest.h>
#include <trelvo/gom/CharacterData.h>

#include <memory>
#include <string>
#include <type_traits>

#include "tests/support/AllocationFailure.h"
#include "tests/support/WireChecks.h"

namespace trelvo::gom {
namespace {

using test::allocationsOf;
using test::Bytes;
using test::bytes;
using test::everyAllocationFails;
using test::readFrom;
using test::written;

static_assert(std::is_base_of_v<ReferenceCountable, CharacterData>);
static_assert(std::is_base_of_v<ISerializable, CharacterData>);
static_assert(!std::is_copy_constructible_v<CharacterData>);

SharedPointer<CharacterData> text(const std::string& content) {
  return CharacterData::create(content.data(), static_cast<unsigned int>(content.size()));
}

SharedPointer<CharacterData> blank() { return new CharacterData; }

SharedPointer<CharacterData> fromWire(const Bytes& content) {
  BufferStream stream;
  test::fill(stream, content);
  return CharacterData::create(stream);
}

TEST(CharacterData, HasNoTextByDefault) {
  const CharacterData data;
  EXPECT_EQ(data.data(), nullptr);
  EXPECT_EQ(data.length(), 0U);
}

TEST(CharacterData, CopiesItsBytesAndEndsThemWithNul) {
  std::string source = "abc";
  const SharedPointer<CharacterData> data = text(source);
  source[0] = 'x';
  ASSERT_NE(data, nullptr);
  EXPECT_EQ(data->length(), 3U);
  EXPECT_STREQ(data->data(), "abc");
  EXPECT_EQ(data->referenceCount(), 1);
}

TEST(CharacterData, MayHoldZeroBytes) {
  const SharedPointer<CharacterData> data = CharacterData::create("a\0b", 3);
  EXPECT_EQ(data->length(), 3U);
  EXPECT_EQ(std::string(data->data(), 4), std::string("a\0b\0", 4));
  EXPECT_EQ(written(*data), bytes("03 00 00 00 61 00 62"));
}

TEST(CharacterData, OfLength0HasAnEmptyText) {
  for (const char* const source : {"", static_cast<const char*>(nullptr)}) {
    const SharedPointer<CharacterData> data = CharacterData::create(source, 0);
    ASSERT_NE(data, nullptr);
    ASSERT_NE(data->data(), nullptr);
    EXPECT_EQ(data->length(), 0U);
    EXPECT_EQ(data->data()[0], '\0');
  }
}

TEST(CharacterData, OfNoBytesButALengthIsRefused) {
  EXPECT_EQ(CharacterData::create(nullptr, 1), nullptr);
}

TEST(CharacterData, OfTheHighestLengthIsRefused) {
  const Bytes nothing;
  EXPECT_EQ(CharacterData::create("", ~0U), nullptr) << "length + 1 does not fit 32 bits";
}

TEST(CharacterData, EqualityGoesByLengthAndBytes) {
  EXPECT_TRUE(*text("abc") == *text("abc"));
  EXPECT_FALSE(*text("abc") == *text("abd"));
  EXPECT_FALSE(*text("abc") == *text("ab"));
  EXPECT_TRUE(*text("abc") != *text("ab"));
  EXPECT_FALSE(*CharacterData::create("a\0b", 3) == *CharacterData::create("a\0c", 3));
}

TEST(CharacterData, NoTextEqualsOnlyNoText) {
  EXPECT_TRUE(*blank() == *blank());
  EXPECT_FALSE(*blank() == *text(""));
  EXPECT_FALSE(*text("") == *blank());
  EXPECT_TRUE(*text("") == *text(""));
}

TEST(CharacterData, WritesLengthAndBytesWithoutTerminator) {
  test::expectWrites(*text("abc"), bytes("03 00 00 00 61 62 63"));
  test::expectWrites(*text(""), bytes("00 00 00 00"));
  test::expectWrites(*blank(), bytes("00 00 00 00"));
}

TEST(CharacterData, WritesLongTexts) {
  for (const unsigned int length : {251U, 252U, 256U, 257U, 512U, 5000U}) {
    const SharedPointer<CharacterData> data = text(std::string(length, 'x'));
    BufferStream expected;
    EXPECT_TRUE(expected.writeUint32(length));
    expected.buffer().fill('x', length);
    EXPECT_EQ(written(*data), test::contentOf(expected));
    EXPECT_EQ(test::writtenToForeign(*data), test::contentOf(expected));
  }
}

TEST(CharacterData, ReadsWhatWasWritten) {
  test::expectReads(blank, bytes("03 00 00 00 61 00 63"), [](const CharacterData& data) {
    EXPECT_EQ(data.length(), 3U);
    EXPECT_EQ(std::string(data.data(), 4), std::string("a\0c\0", 4));
  });
  const SharedPointer<CharacterData> created = fromWire(bytes("02 00 00 00 68 69"));
  ASSERT_NE(created, nullptr);
  EXPECT_STREQ(created->data(), "hi");
}

TEST(CharacterData, ReadsLongTexts) {
  for (const unsigned int length : {4095U, 4096U, 4097U, 8192U, 8193U, 100000U}) {
    std::string content(length, 'x');
    content[length / 2] = 'y';
    const SharedPointer<CharacterData> data = text(content);
    test::expectReads(blank, written(*data),
                      [&](const CharacterData& read) { EXPECT_TRUE(read == *data); });
  }
}

TEST(CharacterData, OfLength0OnTheWireHasNoText) {
  test::expectReads(blank, bytes("00 00 00 00"), [](const CharacterData& data) {
    EXPECT_EQ(data.data(), nullptr);
    EXPECT_EQ(data.length(), 0U);
  });
}

TEST(CharacterData, TheTwoEmptyTextsWriteTheSameBytesAndAreNotEqual) {
  const SharedPointer<CharacterData> made = text("");
  const SharedPointer<CharacterData> read = fromWire(written(*made));
  ASSERT_NE(read, nullptr);
  EXPECT_FALSE(*made == *read);
  EXPECT_EQ(written(*made), written(*read));
}

TEST(CharacterData, CloneIsACopy) {
  const SharedPointer<CharacterData> data = text("abc");
  const SharedPointer<CharacterData> clone = data->clone();
  ASSERT_NE(clone, nullptr);
  EXPECT_TRUE(*clone == *data);
  EXPECT_NE(clone->data(), data->data());
  EXPECT_EQ(clone->referenceCount(), 1);
}

TEST(CharacterData, CloneOfNoTextHasAnEmptyText) {
  const SharedPointer<CharacterData> clone = blank()->clone();
  ASSERT_NE(clone, nullptr);
  EXPECT_NE(clone->data(), nullptr);
  EXPECT_EQ(clone->length(), 0U);
}

TEST(CharacterData, ReadReplacesTheOldText) {
  const SharedPointer<CharacterData> data = text("a longer text");
  EXPECT_TRUE(readFrom(*data, bytes("01 00 00 00 7A")));
  EXPECT_STREQ(data->data(), "z");
  EXPECT_TRUE(readFrom(*data, bytes("00 00 00 00")));
  EXPECT_EQ(data->data(), nullptr);
}

TEST(CharacterData, AFailedReadLeavesLength0) {
  test::expectCutOffFails([] { return text("old"); }, bytes("05 00 00 00 61 62 63 64 65"),
                          [](const CharacterData& data) { EXPECT_EQ(data.length(), 0U); });
  const SharedPointer<CharacterData> data = text("old");
  EXPECT_FALSE(readFrom(*data, bytes("03 00")));
  EXPECT_EQ(data->data(), nullptr) << "the old text went before the length was read";
}

TEST(CharacterData, CreateFromAStreamThatEndsGivesAnEmptyHandle) {
  EXPECT_EQ(fromWire(bytes("")), nullptr);
  EXPECT_EQ(fromWire(bytes("02 00 00")), nullptr);
  EXPECT_EQ(fromWire(bytes("02 00 00 00 61")), nullptr);
}

TEST(CharacterData, HugeLengthOnAShortStreamFailsInBoundedMemory) {
  for (const char* const length : {"FF FF FF FF", "FE FF FF FF", "00 00 00 80", "00 00 10 00"}) {
    const Bytes content = test::joined({bytes(length), Bytes(10000, 0x41)});
    for (const bool inMemory : {true, false}) {
      bool result = true;
      BufferStream memory;
      test::fill(memory, content);
      test::LimitedStream foreign(content);
      IStream& stream = inMemory ? static_cast<IStream&>(memory) : foreign;
      const test::Allocations allocations = allocationsOf([&] {
        CharacterData data;
        result = data.read(stream);
        EXPECT_EQ(data.length(), 0U);
      });
      EXPECT_FALSE(result);
      EXPECT_LE(allocations.bytes, 4 * content.size());
      EXPECT_EQ(allocations.leaked, 0);
    }
  }
}

TEST(CharacterData, FailsCleanlyWhenMemoryRunsOut) {
  const std::string content(9000, 'x');
  const Bytes wire = written(*text(content));
  EXPECT_EQ(everyAllocationFails([&] {
              const SharedPointer<CharacterData> data = text(content);
              EXPECT_TRUE(!data || data->length() == 9000);
            }),
            2U);
  everyAllocationFails([&] {
    SharedPointer<CharacterData> source;
    {
      const test::AllocationsSucceed succeed;
      source = text(content);
    }
    const SharedPointer<CharacterData> clone = source->clone();
    EXPECT_TRUE(!clone || *clone == *source);
  });
  bool failed = false;
  for (const bool inMemory : {true, false}) {
    everyAllocationFails([&] {
      BufferStream memory;
      std::unique_ptr<test::LimitedStream> foreign;
      {
        const test::AllocationsSucceed succeed;
        test::fill(memory, wire);
        foreign = std::make_unique<test::LimitedStream>(wire);
      }
      const SharedPointer<CharacterData> data =
          CharacterData::create(inMemory ? static_cast<IStream&>(memory) : *foreign);
      failed = failed || !data;
      EXPECT_TRUE(!data || data->length() == 9000);
    });
  }
  EXPECT_TRUE(failed);
}

/// A text that writes itself in its own way.
class LoudText : public CharacterData {
 public:
  [[nodiscard]] bool write(IStream& stream) const override { return stream.writeUint8('!'); }
};

TEST(CharacterData, IsWrittenByItsVirtualFunction) {
  const SharedPointer<CharacterData> data(new LoudText);
  EXPECT_EQ(written(*data), bytes("21"));
}

}  // namespace
}  // namespace trelvo::gom
