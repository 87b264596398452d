#include <gtest/gtest.h>

#include <trelvo/schema/CdmaCellDn.h>
#include <trelvo/schema/EUtraCellDn.h>
#include <trelvo/schema/GeranCellDn.h>
#include <trelvo/schema/UtraCellDn.h>

#include "tests/schema/CellularRecord.h"
#include "tests/support/Bytes.h"
#include "tests/support/LimitedStream.h"

namespace trelvo::schema {
namespace {

using test::bytes;
using test::readFrom;
using test::written;

INSTANTIATE_TEST_SUITE_P(
    CellDn, EveryCellularField,
    testing::Values(
        recordField<&GeranCellDn::setMcc, &GeranCellDn::mcc>("GeranMcc", 0x1, 244, "01 01 f4 00"),
        recordField<&GeranCellDn::setMnc, &GeranCellDn::mnc>("GeranMnc", 0x2, 91, "01 02 5b 00"),
        recordField<&GeranCellDn::setLac, &GeranCellDn::lac>("GeranLac", 0x4, 0x1234,
                                                             "01 04 34 12"),
        recordField<&GeranCellDn::setCid, &GeranCellDn::cid>("GeranCid", 0x8, 0xA1B2,
                                                             "01 08 b2 a1"),
        recordField<&UtraCellDn::setMcc, &UtraCellDn::mcc>("UtraMcc", 0x1, 262, "01 01 06 01"),
        recordField<&UtraCellDn::setMnc, &UtraCellDn::mnc>("UtraMnc", 0x2, 2, "01 02 02 00"),
        recordField<&UtraCellDn::setUcid, &UtraCellDn::ucid>("UtraUcid", 0x4, 0x01234567,
                                                             "01 04 67 45 23 01"),
        recordField<&EUtraCellDn::setMcc, &EUtraCellDn::mcc>("EUtraMcc", 0x1, 310, "01 01 36 01"),
        recordField<&EUtraCellDn::setMnc, &EUtraCellDn::mnc>("EUtraMnc", 0x2, 410, "01 02 9a 01"),
        recordField<&EUtraCellDn::setUcid, &EUtraCellDn::ucid>("EUtraUcid", 0x4, 0x0ABCDE7F,
                                                               "01 04 7f de bc 0a"),
        recordField<&CdmaCellDn::setSid, &CdmaCellDn::sid>("CdmaSid", 0x1, 0x1122, "01 01 22 11"),
        recordField<&CdmaCellDn::setNid, &CdmaCellDn::nid>("CdmaNid", 0x2, 0x3344, "01 02 44 33"),
        recordField<&CdmaCellDn::setBsid, &CdmaCellDn::bsid>("CdmaBsid", 0x4, 0x5566,
                                                             "01 04 66 55")),
    ByName());

TEST(GeranCellDn, AllFieldsWriteTheseBytes) {
  EXPECT_EQ(written(GeranCellDn(244, 91, 0x1234, 0xA1B2)), bytes("01 0f f4 00 5b 00 34 12 b2 a1"));
}

TEST(UtraCellDn, AllFieldsWriteTheseBytes) {
  EXPECT_EQ(written(UtraCellDn(262, 2, 0x01234567)), bytes("01 07 06 01 02 00 67 45 23 01"));
}

TEST(EUtraCellDn, AllFieldsWriteTheseBytes) {
  EXPECT_EQ(written(EUtraCellDn(310, 410, 0x0ABCDE7F)), bytes("01 07 36 01 9a 01 7f de bc 0a"));
}

TEST(CdmaCellDn, AllFieldsWriteTheseBytes) {
  EXPECT_EQ(written(CdmaCellDn(0x1122, 0x3344, 0x5566)), bytes("01 07 22 11 44 33 66 55"));
}

TEST(GeranCellDn, OnlyLacTakesFourBytes) {
  GeranCellDn dn;
  dn.setLac(0x1234);
  EXPECT_EQ(written(dn), bytes("01 04 34 12"));
}

TEST(GeranCellDn, ConstructorAndFactorySetAllFields) {
  const auto dn = GeranCellDn::create(244, 91, 0x1234, 0xA1B2);
  EXPECT_EQ(dn->values(), 0x0FU);
  EXPECT_EQ(dn->mcc(), 244);
  EXPECT_EQ(dn->mnc(), 91);
  EXPECT_EQ(dn->lac(), 0x1234);
  EXPECT_EQ(dn->cid(), 0xA1B2);
  EXPECT_TRUE(*dn == GeranCellDn(244, 91, 0x1234, 0xA1B2));
  EXPECT_FALSE(*dn != GeranCellDn(244, 91, 0x1234, 0xA1B2));
}

TEST(UtraCellDn, ConstructorAndFactorySetAllFields) {
  const auto dn = UtraCellDn::create(262, 2, 0x01234567);
  EXPECT_EQ(dn->values(), 0x07U);
  EXPECT_EQ(dn->mcc(), 262);
  EXPECT_EQ(dn->mnc(), 2);
  EXPECT_EQ(dn->ucid(), 0x01234567U);
  EXPECT_TRUE(*dn == UtraCellDn(262, 2, 0x01234567));
  EXPECT_TRUE(*dn != UtraCellDn(262, 2, 0x01234568));
}

TEST(EUtraCellDn, ConstructorAndFactorySetAllFields) {
  const auto dn = EUtraCellDn::create(310, 410, 0x0ABCDE7F);
  EXPECT_EQ(dn->values(), 0x07U);
  EXPECT_EQ(dn->mcc(), 310);
  EXPECT_EQ(dn->mnc(), 410);
  EXPECT_EQ(dn->ucid(), 0x0ABCDE7FU);
  EXPECT_TRUE(*dn == EUtraCellDn(310, 410, 0x0ABCDE7F));
  EXPECT_TRUE(*dn != EUtraCellDn(310, 411, 0x0ABCDE7F));
}

TEST(CdmaCellDn, ConstructorAndFactorySetAllFields) {
  const auto dn = CdmaCellDn::create(0x1122, 0x3344, 0x5566);
  EXPECT_EQ(dn->values(), 0x07U);
  EXPECT_EQ(dn->sid(), 0x1122);
  EXPECT_EQ(dn->nid(), 0x3344);
  EXPECT_EQ(dn->bsid(), 0x5566);
  EXPECT_TRUE(*dn == CdmaCellDn(0x1122, 0x3344, 0x5566));
  EXPECT_TRUE(*dn != CdmaCellDn(0x1122, 0x3345, 0x5566));
}

TEST(GeranCellDn, WithAndWithoutLacAreUnequalAlthoughTheRestIsEqual) {
  GeranCellDn without;
  without.setMcc(244);
  without.setMnc(91);
  GeranCellDn with = without;
  with.setLac(0);
  EXPECT_FALSE(without == with);
}

TEST(GeranCellDn, NumbersBehindClearBitsDoNotCount) {
  GeranCellDn a(244, 91, 1, 2);
  GeranCellDn b(244, 91, 1, 3);
  EXPECT_FALSE(a == b);
  a.unset(GeranCellDn::HasCid);
  b.unset(GeranCellDn::HasCid);
  EXPECT_TRUE(a == b);
}

TEST(GeranCellDn, CopiesAndClonesAreIndependentOfTheSource) {
  const auto source = GeranCellDn::create(244, 91, 1, 2);
  const auto copy = GeranCellDn::create(source);
  const gom::SharedPointer<GeranCellDn> clone(source->clone());
  GeranCellDn assigned;
  assigned = *source;
  source->setMcc(1);
  EXPECT_EQ(copy->mcc(), 244);
  EXPECT_EQ(clone->mcc(), 244);
  EXPECT_EQ(assigned.mcc(), 244);
  EXPECT_TRUE(*copy == *clone);
  EXPECT_TRUE(*copy == assigned);
}

TEST(GeranCellDn, ReadReplacesThePresenceAndKeepsTheOtherNumbers) {
  GeranCellDn dn(1, 2, 3, 4);
  ASSERT_TRUE(readFrom(dn, bytes("01 02 5b 00")));
  EXPECT_EQ(dn.values(), 0x2U);
  EXPECT_EQ(dn.mnc(), 91);
  EXPECT_EQ(dn.cid(), 4);
}

TEST(GeranCellDn, RefusesVersion2WithAllBitsCleared) {
  GeranCellDn dn(1, 2, 3, 4);
  EXPECT_FALSE(readFrom(dn, bytes("02 0f f4 00 5b 00 34 12 b2 a1")));
  EXPECT_EQ(dn.values(), 0U);
  EXPECT_EQ(dn.mcc(), 1);
}

TEST(GeranCellDn, RefusesMask0x10WithAllBitsCleared) {
  GeranCellDn dn(1, 2, 3, 4);
  EXPECT_FALSE(readFrom(dn, bytes("01 10 f4 00 5b 00 34 12 b2 a1")));
  EXPECT_EQ(dn.values(), 0U);
}

TEST(GeranCellDn, AcceptsMask0x0FWithAnyFieldValues) {
  GeranCellDn dn;
  EXPECT_TRUE(readFrom(dn, bytes("01 0f ff ff 00 00 ff ff 00 00")));
  EXPECT_TRUE(dn == GeranCellDn(0xFFFF, 0, 0xFFFF, 0));
}

TEST(GeranCellDn, FailedReadKeepsWhatWasReadSoFar) {
  GeranCellDn dn;
  EXPECT_FALSE(readFrom(dn, bytes("01 0f f4 00 5b 00 34")));
  EXPECT_EQ(dn.values(), 0x0FU);
  EXPECT_EQ(dn.mcc(), 244);
  EXPECT_EQ(dn.mnc(), 91);
}

TEST(GeranCellDn, WriteFailsWhenTheStreamTakesTooFewBytesOrIsBad) {
  const GeranCellDn dn(244, 91, 1, 2);
  for (unsigned int room = 0; room < 10; ++room) {
    test::LimitedStream full(room);
    EXPECT_FALSE(dn.write(full)) << room;
  }
  test::LimitedStream enough(10);
  EXPECT_TRUE(dn.write(enough));
  test::LimitedStream bad;
  bad.turnBad();
  EXPECT_FALSE(dn.write(bad));
}

TEST(GeranCellDn, ReadFailsAtTheEndOfABadStream) {
  test::LimitedStream bad(bytes("01 01 f4 00"));
  bad.turnBad();
  GeranCellDn dn;
  EXPECT_FALSE(dn.read(bad));
  EXPECT_EQ(dn.mcc(), 244);
}

TEST(UtraCellDn, MergesRncAndCellAndSplitsThemAgain) {
  EXPECT_EQ(UtraCellDn::mergeUcid(0x123, 0x4567), 0x1234567U);
  unsigned short rncId = 0;
  unsigned short cid = 0;
  UtraCellDn::splitUcid(0x1234567, rncId, cid);
  EXPECT_EQ(rncId, 0x123);
  EXPECT_EQ(cid, 0x4567);
}

TEST(UtraCellDn, MergingMasksNothingAndSplittingShortensTheRnc) {
  EXPECT_EQ(UtraCellDn::mergeUcid(0xF123, 1), 0xF1230001U);
  unsigned short rncId = 0;
  unsigned short cid = 0;
  UtraCellDn::splitUcid(UtraCellDn::mergeUcid(0xF123, 1), rncId, cid);
  EXPECT_EQ(rncId, 0x123);
  EXPECT_EQ(cid, 1);
}

TEST(UtraCellDn, PartsOfTheUcidDoNotAskForItsBit) {
  UtraCellDn dn;
  EXPECT_EQ(dn.rncId(), 0);
  EXPECT_EQ(dn.cid(), 0);
  dn.setUcid(0xF1234567);
  EXPECT_EQ(dn.ucid(), 0xF1234567U);
  EXPECT_EQ(dn.rncId(), 0x123);
  EXPECT_EQ(dn.cid(), 0x4567);
  dn.unset(4);
  EXPECT_EQ(dn.rncId(), 0x123);
  EXPECT_EQ(dn.cid(), 0x4567);
}

TEST(EUtraCellDn, MergesENodeBAndLocalCellAndSplitsThemAgain) {
  EXPECT_EQ(EUtraCellDn::mergeUcid(0xABCDE, 0x7F), 0xABCDE7FU);
  unsigned int eNodeBId = 0;
  unsigned char lcid = 0;
  EUtraCellDn::splitUcid(0xABCDE7F, eNodeBId, lcid);
  EXPECT_EQ(eNodeBId, 0xABCDEU);
  EXPECT_EQ(lcid, 0x7F);
}

TEST(EUtraCellDn, MergingMasksNothingAndSplittingShortensTheENodeB) {
  EXPECT_EQ(EUtraCellDn::mergeUcid(0xFABCDE, 0x7F), 0xFABCDE7FU);
  EXPECT_EQ(EUtraCellDn::mergeUcid(0xFFFFFFFF, 0), 0xFFFFFF00U);
  unsigned int eNodeBId = 0;
  unsigned char lcid = 0;
  EUtraCellDn::splitUcid(0xFABCDE7F, eNodeBId, lcid);
  EXPECT_EQ(eNodeBId, 0xABCDEU);
  EXPECT_EQ(lcid, 0x7F);
}

TEST(EUtraCellDn, PartsOfTheUcidDoNotAskForItsBit) {
  EUtraCellDn dn;
  EXPECT_EQ(dn.eNodeBId(), 0U);
  EXPECT_EQ(dn.lcid(), 0);
  dn.setUcid(0xFABCDE7F);
  EXPECT_EQ(dn.ucid(), 0xFABCDE7FU);
  dn.unset(4);
  EXPECT_EQ(dn.eNodeBId(), 0xABCDEU);
  EXPECT_EQ(dn.lcid(), 0x7F);
}

}  // namespace
}  // namespace trelvo::schema
