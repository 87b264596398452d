#include <gtest/gtest.h>
#include <trelvo/BufferStream.h>
#include <trelvo/ISerializable.h>
#include <trelvo/IStream.h>

#include <cstring>
#include <limits>

#include "tests/support/Bytes.h"
#include "tests/support/LimitedStream.h"

namespace trelvo {
namespace {

using test::Bytes;
using test::bytes;
using test::LimitedStream;

/// A value's helpers, its bytes, and what it is before reading.
template <class T>
struct Wire {
  bool (IStream::*write)(T);
  bool (IStream::*read)(T&);
};

template <class T>
Bytes imageOf(const T& value) {
  Bytes image(sizeof value);
  std::memcpy(image.data(), &value, sizeof value);
  return image;
}

template <class T>
void expectTravels(Wire<T> wire, T value, const Bytes& expected) {
  BufferStream memory;
  LimitedStream foreign;
  EXPECT_TRUE((memory.*wire.write)(value));
  EXPECT_TRUE((foreign.*wire.write)(value));
  EXPECT_EQ(test::contentOf(memory), expected);
  EXPECT_EQ(foreign.taken(), expected);

  T fromMemory{};
  T fromForeign{};
  LimitedStream source(expected);
  EXPECT_TRUE((memory.*wire.read)(fromMemory));
  EXPECT_TRUE((source.*wire.read)(fromForeign));
  EXPECT_EQ(imageOf(fromMemory), imageOf(value));
  EXPECT_EQ(imageOf(fromForeign), imageOf(value));
  EXPECT_TRUE(memory.eof());
}

constexpr Wire<unsigned char> kUint8{&IStream::writeUint8, &IStream::readUint8};
constexpr Wire<unsigned short> kUint16{&IStream::writeUint16, &IStream::readUint16};
constexpr Wire<unsigned int> kUint32{&IStream::writeUint32, &IStream::readUint32};
constexpr Wire<unsigned long long> kUint64{&IStream::writeUint64, &IStream::readUint64};
constexpr Wire<float> kFloat{&IStream::writeFloat, &IStream::readFloat};
constexpr Wire<double> kDouble{&IStream::writeDouble, &IStream::readDouble};

TEST(IStream, ValuesTravelLeastSignificantByteFirst) {
  expectTravels<unsigned char>(kUint8, 0x12, bytes("12"));
  expectTravels<unsigned short>(kUint16, 0x1234, bytes("34 12"));
  expectTravels<unsigned int>(kUint32, 0x12345678, bytes("78 56 34 12"));
  expectTravels<unsigned long long>(kUint64, 0x123456789ABCDEF0, bytes("F0 DE BC 9A 78 56 34 12"));
  expectTravels<float>(kFloat, 1.5F, bytes("00 00 C0 3F"));
  expectTravels<double>(kDouble, -2.5, bytes("00 00 00 00 00 00 04 C0"));
}

TEST(IStream, ExtremeValuesTravel) {
  expectTravels<unsigned char>(kUint8, 0xFF, bytes("FF"));
  expectTravels<unsigned short>(kUint16, 0xFFFF, bytes("FF FF"));
  expectTravels<unsigned int>(kUint32, 0xFFFFFFFF, bytes("FF FF FF FF"));
  expectTravels<unsigned long long>(kUint64, ~0ULL, bytes("FF FF FF FF FF FF FF FF"));
  expectTravels<unsigned int>(kUint32, 0, bytes("00 00 00 00"));
  expectTravels<float>(kFloat, std::numeric_limits<float>::infinity(), bytes("00 00 80 7F"));
  expectTravels<double>(kDouble, -0.0, bytes("00 00 00 00 00 00 00 80"));
  expectTravels<double>(kDouble, std::numeric_limits<double>::denorm_min(),
                        bytes("01 00 00 00 00 00 00 00"));
}

TEST(IStream, NotANumberTravelsBitForBit) {
  double number = 0;
  BufferStream stream;
  test::fill(stream, bytes("EF BE AD DE 00 00 F8 7F"));
  ASSERT_TRUE(stream.readDouble(number));
  BufferStream again;
  ASSERT_TRUE(again.writeDouble(number));
  EXPECT_EQ(test::contentOf(again), bytes("EF BE AD DE 00 00 F8 7F"));
}

TEST(IStream, SignedValuesTravelThroughTheUnsignedHelpers) {
  BufferStream stream;
  EXPECT_TRUE(stream.writeUint16(static_cast<unsigned short>(short{-2})));
  EXPECT_EQ(test::contentOf(stream), bytes("FE FF"));
}

TEST(IStream, AShortReadLeavesThePartThatArrived) {
  for (const bool inMemory : {true, false}) {
    BufferStream memory;
    test::fill(memory, bytes("11 22 33"));
    LimitedStream foreign(bytes("11 22 33"));
    IStream& stream = inMemory ? static_cast<IStream&>(memory) : foreign;
    unsigned int number = 0xAABBCCDD;
    EXPECT_FALSE(stream.readUint32(number));
    EXPECT_EQ(number, 0xAA332211U);
    EXPECT_TRUE(stream.eof());
    unsigned long long further = 0x0102030405060708;
    EXPECT_FALSE(stream.readUint64(further));
    EXPECT_EQ(further, 0x0102030405060708U);
  }
}

TEST(IStream, AShortReadOfAFloatingPointNumberLeavesThePartThatArrived) {
  LimitedStream stream(bytes("01 02 03 04 05"));
  double number = -2.5;  // 00 00 00 00 00 00 04 C0
  EXPECT_FALSE(stream.readDouble(number));
  BufferStream whole;
  double expected = 0;
  test::fill(whole, bytes("01 02 03 04 05 00 04 C0"));
  ASSERT_TRUE(whole.readDouble(expected));
  EXPECT_EQ(imageOf(number), imageOf(expected));
}

TEST(IStream, AShortWriteGivesFalse) {
  LimitedStream stream(5U);
  EXPECT_TRUE(stream.writeUint32(1));
  EXPECT_FALSE(stream.writeUint16(0x0302));
  EXPECT_EQ(stream.taken(), bytes("01 00 00 00 02"));
  EXPECT_FALSE(stream.writeUint8(1));
  EXPECT_FALSE(stream.writeUint64(1));
  EXPECT_FALSE(stream.writeFloat(1));
  EXPECT_FALSE(stream.writeDouble(1));
}

/// A stream that says it can do nothing and still does all.
class Modest : public LimitedStream {
 public:
  using LimitedStream::LimitedStream;
  bool good() const override { return false; }
  bool canRead() const override { return false; }
  bool canWrite() const override { return false; }
};

TEST(IStream, HelpersTakeNoNoticeOfCanReadCanWriteAndGood) {
  Modest target;
  EXPECT_TRUE(target.writeUint16(0x0201));
  EXPECT_EQ(target.taken(), bytes("01 02"));
  Modest source(bytes("01 02"));
  unsigned short value = 0;
  EXPECT_TRUE(source.readUint16(value));
  EXPECT_EQ(value, 0x0201);
}

}  // namespace
}  // namespace trelvo
