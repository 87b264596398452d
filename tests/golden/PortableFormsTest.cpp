// Forms that do not depend on the processor, where processors differ: whether char has a sign, how
// wide long, size_t and time_t are, and which address a number may lie at.

#include <gtest/gtest.h>

#include <climits>
#include <string>

#include <trelvo/gom/CharacterData.h>
#include <trelvo/schema/PositionEstimate.h>
#include <trelvo/schema/WlanDn.h>
#include <trelvo/schema/WlanMeasurement.h>

#include "tests/support/Bytes.h"

namespace trelvo::test {
namespace {

using gom::CharacterData;
using gom::GenericObject;

// Every byte a text may hold, from 00 to FF.
Bytes everyByte() {
  Bytes result;
  for (unsigned int byte = 0; byte <= UCHAR_MAX; ++byte) {
    result.push_back(static_cast<unsigned char>(byte));
  }
  return result;
}

gom::SharedPointer<CharacterData> textOf(const Bytes& content) {
  return CharacterData::create(reinterpret_cast<const char*>(content.data()),
                               static_cast<unsigned int>(content.size()));
}

gom::SharedPointer<GenericObject> objectFrom(const Bytes& content) {
  BufferStream stream;
  fill(stream, content);
  return GenericObject::create(stream);
}

TEST(PortableForms, NumbersLieAtAnyAddress) {
  for (const unsigned int offset : {1U, 3U, 5U, 7U}) {
    const Bytes padding(offset, 0xA5);
    BufferStream stream;
    fill(stream, padding);
    ASSERT_TRUE(stream.writeUint16(0x8182));
    ASSERT_TRUE(stream.writeUint32(0x91929394));
    ASSERT_TRUE(stream.writeUint64(0xA1A2A3A4A5A6A7A8));
    ASSERT_TRUE(stream.writeDouble(-0x1.23456789abcdep+100));
    EXPECT_EQ(contentOf(stream),
              joined({padding, bytes("82 81  94 93 92 91  A8 A7 A6 A5 A4 A3 A2 A1"
                                     "DE BC 9A 78 56 34 32 C6")}));
  }
}

TEST(PortableForms, TextsHoldEveryByte) {
  const Bytes content = everyByte();
  const auto object = GenericObject::create(0xFEDC);
  ASSERT_EQ(object->setStringProperty(0x8001, textOf(content)), StatusOk);
  const Bytes wire = joined({bytes("DC FE 01 00 00 00  0C 00 01 80  00 01 00 00"), content});
  EXPECT_EQ(written(*object), wire);

  const auto read = objectFrom(wire);
  ASSERT_NE(read, nullptr);
  EXPECT_EQ(read->key(), 0xFEDC);
  EXPECT_EQ(*read, *object);
  gom::SharedPointer<CharacterData> text;
  ASSERT_EQ(read->getStringProperty(0x8001, text), StatusOk);
  ASSERT_EQ(text->length(), 256U);
  for (unsigned int i = 0; i < 256; ++i) {
    EXPECT_EQ(static_cast<unsigned char>(text->data()[i]), i);
  }
}

TEST(PortableForms, BytesAbove7FAreNumbersWithoutASign) {
  const unsigned char mac[] = {0x80, 0x9F, 0xAA, 0xC0, 0xFE, 0xFF};
  schema::WlanDn dn;
  ASSERT_EQ(dn.setBssid(mac, 6), StatusOk);
  EXPECT_EQ(written(dn), bytes("01 01 06 80 9F AA C0 FE FF"));
  schema::WlanDn read;
  ASSERT_TRUE(readFrom(read, written(dn)));
  EXPECT_EQ(read, dn);
  EXPECT_EQ(schema::WlanDn(0x8090A0B0C0D0E0F0).bssid(), 0x8090A0B0C0D0E0F0U);
  EXPECT_EQ(written(schema::WlanDn(0x8090A0B0C0D0E0F0)), bytes("01 01 08 80 90 A0 B0 C0 D0 E0 F0"));
}

TEST(PortableForms, SignedBytesHaveASignWhereCharHasNone) {
  const auto object = GenericObject::create(7);
  ASSERT_EQ(object->setInt8Property(1, -128), StatusOk);
  ASSERT_EQ(object->setInt8Property(2, -1), StatusOk);
  EXPECT_EQ(written(*object), bytes("07 00 02 00 00 00  01 00 01 00 80  01 00 02 00 FF"));
  const auto read = objectFrom(written(*object));
  signed char low = 0;
  signed char high = 0;
  EXPECT_EQ(read->getInt8Property(1, low), StatusOk);
  EXPECT_EQ(read->getInt8Property(2, high), StatusOk);
  EXPECT_EQ(low, -128);
  EXPECT_EQ(high, -1);
}

// The first second that 32 bits with a sign do not hold, 2038-01-19T03:14:08Z, and the last that 32
// bits without one do, in 2106.
TEST(PortableForms, TimesBeyond2038FitRecords) {
  for (const unsigned int seconds : {0x80000000U, 0xFFFFFFFEU}) {
    const auto estimate = schema::PositionEstimate::create();
    ASSERT_EQ(estimate->setTimeStamp(seconds), StatusOk);
    schema::PositionEstimate read;
    ASSERT_TRUE(readFrom(read, written(*estimate)));
    EXPECT_EQ(read.timeStamp(), seconds);
    EXPECT_EQ(read, *estimate);
  }
}

TEST(PortableForms, TimesBeyond2038FitGenericObjects) {
  const auto object = GenericObject::create(7);
  constexpr long long kYear2500 = 16725225600;
  ASSERT_EQ(object->setInt64Property(1, kYear2500), StatusOk);
  ASSERT_EQ(object->setUint32Property(2, 0x80000000), StatusOk);
  EXPECT_EQ(written(*object), bytes("07 00 02 00 00 00  07 00 01 00 80 B0 E6 E4 03 00 00 00"
                                    "06 00 02 00 00 00 00 80"));
  const auto read = objectFrom(written(*object));
  long long seconds = 0;
  EXPECT_EQ(read->getInt64Property(1, seconds), StatusOk);
  EXPECT_EQ(seconds, kYear2500);
}

TEST(PortableForms, ElapsedTimesHave64Bits) {
  constexpr long long kNanoseconds = 0x0123456789ABCDEF;
  const auto measurement = schema::WlanMeasurement::create();
  ASSERT_EQ(measurement->setTimeStamp(0x80000000), StatusOk);
  ASSERT_EQ(measurement->setElapsedRealtimeTimeStamp(kNanoseconds), StatusOk);
  EXPECT_EQ(written(*measurement), bytes("14 00 02 00 00 00  06 00 CD 00 00 00 00 80"
                                         "07 00 CE 00 EF CD AB 89 67 45 23 01"));
  const auto read = schema::WlanMeasurement::create();
  ASSERT_TRUE(readFrom(*read, written(*measurement)));
  EXPECT_EQ(read->timeStamp(), 0x80000000U);
  EXPECT_EQ(read->elapsedRealtimeTimeStamp(), kNanoseconds);
}

TEST(PortableForms, LengthsHave32Bits) {
  const Bytes content(0x00012345, 0xEE);
  const auto object = GenericObject::create(7);
  ASSERT_EQ(object->setStringProperty(1, textOf(content)), StatusOk);
  const Bytes wire = joined({bytes("07 00 01 00 00 00  0C 00 01 00  45 23 01 00"), content});
  EXPECT_TRUE(written(*object) == wire);
  const auto read = objectFrom(wire);
  ASSERT_NE(read, nullptr);
  EXPECT_EQ(*read, *object);
}

TEST(PortableForms, CountsHave32Bits) {
  constexpr unsigned int kCount = 0x00010001;
  Bytes wire = bytes("07 00 01 00 00 00  0F 00 01 00  01 00 01 00");
  for (unsigned int i = 0; i < kCount; ++i) {
    wire.insert(wire.end(), {0x02, 0x00, 0x00, 0x00, static_cast<unsigned char>(i)});
  }
  const auto object = objectFrom(wire);
  ASSERT_NE(object, nullptr);
  EXPECT_TRUE(written(*object) == wire);
}

// No sum of a length or a count and of what lies before it wraps around where size_t has 32 bits.
TEST(PortableForms, LengthsAndCountsNear4GiBAreRefused) {
  for (const char* const number : {"FF FF FF 7F", "00 00 00 80", "F0 FF FF FF", "FF FF FF FF"}) {
    const Bytes count = bytes(number);
    const Bytes end = bytes("00 00 00 00");
    EXPECT_EQ(objectFrom(joined({bytes("07 00 01 00 00 00 0C 00 01 00"), count, end})), nullptr);
    EXPECT_EQ(objectFrom(joined({bytes("07 00 01 00 00 00 0F 00 01 00"), count, end})), nullptr);
    EXPECT_EQ(objectFrom(joined({bytes("07 00"), count, end})), nullptr);
  }
}

}  // namespace
}  // namespace trelvo::test
