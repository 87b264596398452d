#include <gtest/gtest.h>

#include <trelvo/schema/CdmaFrequencyInfo.h>
#include <trelvo/schema/EUtraFrequencyInfo.h>
#include <trelvo/schema/GeranFrequencyInfo.h>
#include <trelvo/schema/UtraFddFrequencyInfo.h>
#include <trelvo/schema/UtraTddFrequencyInfo.h>

#include "tests/schema/CellularRecord.h"
#include "tests/support/Bytes.h"

namespace trelvo::schema {
namespace {

using test::bytes;
using test::readFrom;
using test::written;

INSTANTIATE_TEST_SUITE_P(
    FrequencyInfo, EveryCellularField,
    testing::Values(
        recordField<&GeranFrequencyInfo::setBsic, &GeranFrequencyInfo::bsic>("GeranBsic", 0x1, 43,
                                                                             "01 01 2b"),
        recordField<&GeranFrequencyInfo::setArfcn, &GeranFrequencyInfo::arfcn>("GeranArfcn", 0x2,
                                                                               1023, "01 02 ff 03"),
        recordField<&UtraFddFrequencyInfo::setUarfcnDl, &UtraFddFrequencyInfo::uarfcnDl>(
            "UtraFddUarfcnDl", 0x1, 10562, "01 01 42 29"),
        recordField<&UtraFddFrequencyInfo::setPcpich, &UtraFddFrequencyInfo::pcpich>(
            "UtraFddPcpich", 0x2, 511, "01 02 ff 01"),
        recordField<&UtraTddFrequencyInfo::setUarfcn, &UtraTddFrequencyInfo::uarfcn>(
            "UtraTddUarfcn", 0x1, 9500, "01 01 1c 25"),
        recordField<&UtraTddFrequencyInfo::setCellParam, &UtraTddFrequencyInfo::cellParam>(
            "UtraTddCellParam", 0x2, 127, "01 02 7f"),
        recordField<&EUtraFrequencyInfo::setEarfcn, &EUtraFrequencyInfo::earfcn>("EUtraEarfcn", 0x1,
                                                                                 6300,
                                                                                 "01 01 9c 18"),
        recordField<&EUtraFrequencyInfo::setPci, &EUtraFrequencyInfo::pci>("EUtraPci", 0x2, 503,
                                                                           "01 02 f7 01")),
    ByName());

TEST(GeranFrequencyInfo, BothFieldsWriteTheseBytes) {
  const auto info = GeranFrequencyInfo::create(43, 1023);
  EXPECT_EQ(info->values(), 0x3U);
  EXPECT_EQ(info->bsic(), 43);
  EXPECT_EQ(info->arfcn(), 1023);
  EXPECT_EQ(written(*info), bytes("01 03 2b ff 03"));
}

TEST(UtraFddFrequencyInfo, BothFieldsWriteTheseBytes) {
  const auto info = UtraFddFrequencyInfo::create(10562, 511);
  EXPECT_EQ(info->values(), 0x3U);
  EXPECT_EQ(info->uarfcnDl(), 10562);
  EXPECT_EQ(info->pcpich(), 511);
  EXPECT_EQ(written(*info), bytes("01 03 42 29 ff 01"));
}

TEST(UtraTddFrequencyInfo, BothFieldsWriteTheseBytes) {
  const auto info = UtraTddFrequencyInfo::create(9500, 127);
  EXPECT_EQ(info->values(), 0x3U);
  EXPECT_EQ(info->uarfcn(), 9500);
  EXPECT_EQ(info->cellParam(), 127);
  EXPECT_EQ(written(*info), bytes("01 03 1c 25 7f"));
}

TEST(EUtraFrequencyInfo, BothFieldsWriteTheseBytes) {
  const auto info = EUtraFrequencyInfo::create(6300, 503);
  EXPECT_EQ(info->values(), 0x3U);
  EXPECT_EQ(info->earfcn(), 6300);
  EXPECT_EQ(info->pci(), 503);
  EXPECT_EQ(written(*info), bytes("01 03 9c 18 f7 01"));
}

template <class T>
class FrequencyInfoOfTwoFields : public testing::Test {};
using InfosOfTwoFields = testing::Types<GeranFrequencyInfo, UtraFddFrequencyInfo,
                                        UtraTddFrequencyInfo, EUtraFrequencyInfo>;
TYPED_TEST_SUITE(FrequencyInfoOfTwoFields, InfosOfTwoFields, ByTechnology<>);

TYPED_TEST(FrequencyInfoOfTwoFields, RoundTripGivesAnEqualRecord) {
  const TypeParam info(7, 9);
  TypeParam back;
  ASSERT_TRUE(readFrom(back, written(info)));
  EXPECT_TRUE(back == info);
  EXPECT_FALSE(back != info);
}

TYPED_TEST(FrequencyInfoOfTwoFields, ComparesBothFields) {
  EXPECT_FALSE(TypeParam(7, 9) == TypeParam(8, 9));
  EXPECT_FALSE(TypeParam(7, 9) == TypeParam(7, 8));
}

TYPED_TEST(FrequencyInfoOfTwoFields, CopiesAndClonesAreIndependentOfTheSource) {
  const auto source = TypeParam::create(7, 9);
  const auto copy = TypeParam::create(source);
  const gom::SharedPointer<TypeParam> clone(source->clone());
  source->unset(0x1);
  EXPECT_TRUE(*copy == TypeParam(7, 9));
  EXPECT_TRUE(*clone == TypeParam(7, 9));
}

TEST(CdmaFrequencyInfo, IsAlwaysTwoBytesOnTheWire) {
  EXPECT_EQ(written(CdmaFrequencyInfo()), bytes("01 00"));
}

TEST(CdmaFrequencyInfo, RefusesAMaskOf1) {
  CdmaFrequencyInfo info;
  EXPECT_FALSE(readFrom(info, bytes("01 01")));
  EXPECT_TRUE(info.isEmpty());
}

TEST(CdmaFrequencyInfo, IsEmptyAfterAGoodRead) {
  CdmaFrequencyInfo info;
  EXPECT_TRUE(readFrom(info, bytes("01 00")));
  EXPECT_TRUE(info.isEmpty());
}

TEST(CdmaFrequencyInfo, EveryTwoAreEqual) {
  EXPECT_TRUE(CdmaFrequencyInfo() == *CdmaFrequencyInfo::create());
  EXPECT_FALSE(CdmaFrequencyInfo() != CdmaFrequencyInfo());
}

}  // namespace
}  // namespace trelvo::schema
