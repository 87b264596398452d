#include <gtest/gtest.h>

#include <cstring>
#include <iterator>

#include <trelvo/gom/GenericObject.h>
#include <trelvo/schema/Area.h>
#include <trelvo/schema/WlanDn.h>

#include "schema/BssidText.h"
#include "tests/support/Bytes.h"
#include "tests/support/LimitedStream.h"

namespace trelvo::schema {
namespace {

using gom::SharedPointer;
using test::bytes;
using test::readFrom;
using test::written;

constexpr unsigned char kMac[] = {0x00, 0x11, 0x22, 0x33, 0x44, 0x55};
constexpr unsigned char kLong[] = {0x00, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77};

WlanDn withMac() {
  WlanDn dn;
  dn.setBssid(kMac, 6);
  return dn;
}

test::Bytes stored(const WlanDn& dn) {
  unsigned int length = 99;
  const unsigned char* const begin = dn.getBssid(length);
  return begin == nullptr ? test::Bytes() : test::Bytes(begin, begin + length);
}

TEST(WlanDn, IsOfClass128AndStartsWithoutABssid) {
  const WlanDn dn;
  EXPECT_EQ(dn.key(), 128);
  EXPECT_TRUE(dn.isEmpty());
  EXPECT_EQ(dn.bssid(), 0U);
  unsigned int length = 99;
  EXPECT_EQ(dn.getBssid(length), nullptr);
  EXPECT_EQ(length, 0U);
}

TEST(WlanDn, TakesANumberAsEightBytesMostSignificantFirst) {
  const WlanDn dn(0x0011223344556677);
  EXPECT_EQ(dn.values(), 1U);
  EXPECT_EQ(dn.bssid(), 0x0011223344556677U);
  EXPECT_EQ(stored(dn), bytes("00 11 22 33 44 55 66 77"));
  EXPECT_EQ(*WlanDn::create(0x0011223344556677), dn);
  WlanDn set;
  EXPECT_EQ(set.setBssid(0x0011223344556677ULL), StatusOk);
  EXPECT_EQ(set, dn);
}

TEST(WlanDn, TakesSixOrEightBytes) {
  WlanDn dn;
  EXPECT_EQ(dn.setBssid(kLong, 8), StatusOk);
  EXPECT_EQ(stored(dn), bytes("00 11 22 33 44 55 66 77"));
  EXPECT_EQ(dn.setBssid(kMac, 6), StatusOk);
  EXPECT_EQ(stored(dn), bytes("00 11 22 33 44 55"));
  EXPECT_EQ(dn.values(), 1U);
}

TEST(WlanDn, RefusesEveryOtherLengthAndChangesNothing) {
  for (const unsigned int length : {0U, 1U, 5U, 7U, 9U, 0xFFFFFFFFU}) {
    WlanDn dn = withMac();
    EXPECT_EQ(dn.setBssid(kLong, length), StatusInvalidParameter) << length;
    EXPECT_EQ(dn, withMac());
    WlanDn blank;
    EXPECT_EQ(blank.setBssid(kLong, length), StatusInvalidParameter) << length;
    EXPECT_TRUE(blank.isEmpty());
  }
}

TEST(WlanDn, RefusesNullBytes) {
  WlanDn dn = withMac();
  EXPECT_EQ(dn.setBssid(nullptr, 6), StatusInvalidParameter);
  EXPECT_EQ(dn, withMac());
}

TEST(WlanDn, TakesItsOwnBytes) {
  WlanDn dn(0x0011223344556677);
  unsigned int length = 0;
  EXPECT_EQ(dn.setBssid(dn.getBssid(length) + 1, 6), StatusOk);
  EXPECT_EQ(stored(dn), bytes("11 22 33 44 55 66"));
}

TEST(WlanDn, SixBytesReadAsANumberWithTwoBytesOfFFInTheMiddle) {
  EXPECT_EQ(withMac().bssid(), 0x001122FFFF334455U);
  WlanDn highest;
  const unsigned char ones[] = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
  highest.setBssid(ones, 6);
  EXPECT_EQ(highest.bssid(), 0xFFFFFFFFFFFFFFFFU);
}

TEST(WlanDn, TheSameAddressInSixAndInEightBytesDiffers) {
  const WlanDn expanded(withMac().bssid());
  EXPECT_EQ(expanded.bssid(), withMac().bssid());
  EXPECT_NE(expanded, withMac());
  EXPECT_NE(withMac(), expanded);
}

TEST(WlanDn, EqualityLooksAtBitsBytesAndExtension) {
  EXPECT_EQ(WlanDn(), WlanDn());
  EXPECT_EQ(withMac(), withMac());
  EXPECT_NE(withMac(), WlanDn());
  EXPECT_NE(WlanDn(), withMac());
  EXPECT_NE(WlanDn(1), WlanDn(2));
  WlanDn extended = withMac();
  ASSERT_NE(extended.extension(), nullptr);
  EXPECT_NE(extended, withMac());
}

TEST(WlanDn, BytesBehindTheLengthDoNotCount) {
  WlanDn dn(0x8899AABBCCDDEEFF);
  dn.setBssid(kMac, 6);
  EXPECT_EQ(dn, withMac());
}

TEST(WlanDn, ClearedRecordsAreEqualWhateverTheyHeld) {
  WlanDn dn = withMac();
  dn.unset(1);
  EXPECT_EQ(dn, WlanDn());
}

TEST(WlanDn, UnsetOfExactly1EmptiesTheBssid) {
  WlanDn dn = withMac();
  dn.unset(1);
  EXPECT_TRUE(dn.isEmpty());
  EXPECT_EQ(dn.bssid(), 0U);
  unsigned int length = 99;
  EXPECT_EQ(dn.getBssid(length), nullptr);
  EXPECT_EQ(length, 0U);
  EXPECT_EQ(written(dn), bytes("01 00"));
}

TEST(WlanDn, UnsetOfMoreBitsClearsTheBitToo) {
  WlanDn dn = withMac();
  dn.unset(2);
  EXPECT_EQ(dn, withMac());
  dn.unset(3);
  EXPECT_TRUE(dn.isEmpty());
  EXPECT_EQ(dn.bssid(), 0U);
}

TEST(WlanDn, WithoutABssidWritesTwoBytes) { EXPECT_EQ(written(WlanDn()), bytes("01 00")); }

TEST(WlanDn, WritesALengthByteAndThatManyBytes) {
  EXPECT_EQ(written(WlanDn(0x0011223344556677)), bytes("01 01 08 00 11 22 33 44 55 66 77"));
  EXPECT_EQ(written(withMac()), bytes("01 01 06 00 11 22 33 44 55"));
}

TEST(WlanDn, ReadsBothLengthsBack) {
  WlanDn dn(1);
  ASSERT_TRUE(readFrom(dn, bytes("01 01 06 00 11 22 33 44 55")));
  EXPECT_EQ(dn, withMac());
  ASSERT_TRUE(readFrom(dn, bytes("01 01 08 00 11 22 33 44 55 66 77")));
  EXPECT_EQ(dn, WlanDn(0x0011223344556677));
  ASSERT_TRUE(readFrom(dn, bytes("01 00")));
  EXPECT_EQ(dn, WlanDn());
}

TEST(WlanDn, ReadsTheSameFromAForeignStream) {
  test::LimitedStream stream(bytes("01 01 06 00 11 22 33 44 55 99"));
  WlanDn dn;
  ASSERT_TRUE(dn.read(stream));
  EXPECT_EQ(dn, withMac());
  EXPECT_EQ(stream.offset(), 9U);
}

TEST(WlanDn, RefusesVersion2AndEndsEmpty) {
  WlanDn dn = withMac();
  EXPECT_FALSE(readFrom(dn, bytes("02 00")));
  EXPECT_TRUE(dn.isEmpty());
  EXPECT_EQ(dn.bssid(), 0U);
}

TEST(WlanDn, RefusesAMaskAbove1) {
  WlanDn dn = withMac();
  EXPECT_FALSE(readFrom(dn, bytes("01 02 06 00 11 22 33 44 55")));
  EXPECT_TRUE(dn.isEmpty());
}

TEST(WlanDn, RefusesALengthOtherThan6And8) {
  for (const char* const wire : {"01 01 00", "01 01 05 0011223344", "01 01 07 00112233445566",
                                 "01 01 09 001122334455667788", "01 01 FF 001122334455667788"}) {
    WlanDn dn = withMac();
    EXPECT_FALSE(readFrom(dn, bytes(wire))) << wire;
    EXPECT_EQ(dn.bssid(), 0U) << wire;
  }
}

TEST(WlanDn, CopiesCarryBytesLengthAndBase) {
  const SharedPointer<WlanDn> source(new WlanDn(withMac()));
  const SharedPointer<WlanDn> copy = WlanDn::create(source);
  ASSERT_TRUE(copy);
  EXPECT_EQ(*copy, *source);
  copy->setBssid(5ULL);
  EXPECT_EQ(*source, withMac());

  WlanDn assigned(7);
  assigned = *source;
  EXPECT_EQ(assigned, withMac());
  EXPECT_FALSE(WlanDn::create(SharedPointer<WlanDn>()));
  EXPECT_TRUE(WlanDn::create()->isEmpty());
}

TEST(WlanDn, CloneCopiesBytesAndExtension) {
  WlanDn source = withMac();
  source.extension()->setUint32Property(1, 2);
  const SharedPointer<WlanDn> clone(source.clone());
  ASSERT_TRUE(clone);
  EXPECT_EQ(*clone, source);
  EXPECT_EQ(stored(*clone), stored(source));
  EXPECT_NE(clone->extensionReference(), source.extensionReference());
}

TEST(WlanDn, DumpsHaveNoEffect) {
  const WlanDn dn = withMac();
  dn.dump();
  dn.dumpShort();
  EXPECT_EQ(dn, withMac());
  const WlanDn blank;
  blank.dump();
  EXPECT_EQ(blank, WlanDn());
}

TEST(BssidText, HasColonsBetweenTheBytes) {
  EXPECT_STREQ(bssidText(kMac, 6).data(), "00:11:22:33:44:55");
  EXPECT_STREQ(bssidText(kLong, 8).data(), "00:11:22:33:44:55:66:77");
  const unsigned char high[] = {0xAB, 0xCD, 0xEF, 0x00, 0x0F, 0xF0};
  EXPECT_STREQ(bssidText(high, 6).data(), "AB:CD:EF:00:0F:F0");
  EXPECT_STREQ(bssidText(kMac, 0).data(), "");
}

}  // namespace
}  // namespace trelvo::schema
