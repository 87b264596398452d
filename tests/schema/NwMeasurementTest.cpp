#include <gtest/gtest.h>

#include <trelvo/gom/GenericObject.h>
#include <trelvo/schema/CdmaNwMeasurement.h>
#include <trelvo/schema/EUtraNwMeasurement.h>
#include <trelvo/schema/GeranNwMeasurement.h>
#include <trelvo/schema/UtraFddNwMeasurement.h>
#include <trelvo/schema/UtraTddNwMeasurement.h>

#include "tests/schema/CellularRecord.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/Bytes.h"

namespace trelvo::schema {
namespace {

using gom::SharedPointer;
using test::Bytes;
using test::bytes;
using test::readFrom;
using test::written;

INSTANTIATE_TEST_SUITE_P(
    GeranNwMeasurement, EveryCellularField,
    testing::Values(
        recordField<&GeranNwMeasurement::setLac, &GeranNwMeasurement::lac>("Lac", 0x2, 0x1234,
                                                                           "01 02 34 12"),
        recordField<&GeranNwMeasurement::setCid, &GeranNwMeasurement::cid>("Cid", 0x4, 0xA1B2,
                                                                           "01 04 b2 a1"),
        recordField<&GeranNwMeasurement::setRxLevel, &GeranNwMeasurement::rxLevel>("RxLevel", 0x8,
                                                                                   47, "01 08 2f")),
    ByName());

INSTANTIATE_TEST_SUITE_P(
    UtraFddNwMeasurement, EveryCellularField,
    testing::Values(
        recordField<&UtraFddNwMeasurement::setUcid, &UtraFddNwMeasurement::ucid>(
            "Ucid", 0x08, 0x01234567, "01 08 67 45 23 01"),
        recordField<&UtraFddNwMeasurement::setUarfcnUl, &UtraFddNwMeasurement::uarfcnUl>(
            "UarfcnUl", 0x02, 9612, "01 02 8c 25"),
        recordField<&UtraFddNwMeasurement::setUtraCarrierRssi,
                    &UtraFddNwMeasurement::utraCarrierRssi>("UtraCarrierRssi", 0x04, 76,
                                                            "01 04 4c"),
        recordField<&UtraFddNwMeasurement::setEcNo, &UtraFddNwMeasurement::ecNo>("EcNo", 0x10, 49,
                                                                                 "01 10 31"),
        recordField<&UtraFddNwMeasurement::setRscp, &UtraFddNwMeasurement::rscp>("Rscp", 0x20, -100,
                                                                                 "01 20 9c"),
        recordField<&UtraFddNwMeasurement::setPathloss, &UtraFddNwMeasurement::pathloss>(
            "Pathloss", 0x40, 158, "01 40 9e")),
    ByName());

INSTANTIATE_TEST_SUITE_P(
    UtraTddNwMeasurement, EveryCellularField,
    testing::Values(
        recordField<&UtraTddNwMeasurement::setUcid, &UtraTddNwMeasurement::ucid>(
            "Ucid", 0x04, 0x01234567, "01 04 67 45 23 01"),
        recordField<&UtraTddNwMeasurement::setUtraCarrierRssi,
                    &UtraTddNwMeasurement::utraCarrierRssi>("UtraCarrierRssi", 0x02, 76,
                                                            "01 02 4c"),
        recordField<&UtraTddNwMeasurement::setRscp, &UtraTddNwMeasurement::rscp>("Rscp", 0x08, -100,
                                                                                 "01 08 9c"),
        recordField<&UtraTddNwMeasurement::setPathloss, &UtraTddNwMeasurement::pathloss>(
            "Pathloss", 0x10, 158, "01 10 9e")),
    ByName());

INSTANTIATE_TEST_SUITE_P(
    EUtraNwMeasurement, EveryCellularField,
    testing::Values(
        recordField<&EUtraNwMeasurement::setUcid, &EUtraNwMeasurement::ucid>("Ucid", 0x10,
                                                                             0x0ABCDE7F,
                                                                             "01 10 7f de bc 0a"),
        recordField<&EUtraNwMeasurement::setTac, &EUtraNwMeasurement::tac>("Tac", 0x02, 0x1234,
                                                                           "01 02 34 12"),
        recordField<&EUtraNwMeasurement::setRsrp, &EUtraNwMeasurement::rsrp>("Rsrp", 0x04, 97,
                                                                             "01 04 61"),
        recordField<&EUtraNwMeasurement::setRsrq, &EUtraNwMeasurement::rsrq>("Rsrq", 0x08, 34,
                                                                             "01 08 22")),
    ByName());

TEST(GeranNwMeasurement, AllFieldsWriteTheseBytes) {
  GeranNwMeasurement cell(GeranFrequencyInfo::create(43, 1023));
  cell.setLac(0x1234);
  cell.setCid(0xA1B2);
  cell.setRxLevel(47);
  const Bytes wire = bytes("01 0f  01 03 2b ff 03  34 12  b2 a1  2f");
  EXPECT_EQ(written(cell), wire);
  GeranNwMeasurement back;
  ASSERT_TRUE(readFrom(back, wire));
  EXPECT_TRUE(back == cell);
}

TEST(UtraFddNwMeasurement, AllFieldsWriteTheseBytesInWireOrder) {
  UtraFddNwMeasurement cell(UtraFddFrequencyInfo::create(10562, 511));
  cell.setUarfcnUl(9612);
  cell.setUtraCarrierRssi(76);
  cell.setUcid(0x01234567);
  cell.setEcNo(49);
  cell.setRscp(-100);
  cell.setPathloss(158);
  const Bytes wire = bytes("01 7f  01 03 42 29 ff 01  67 45 23 01  8c 25  4c 31 9c 9e");
  EXPECT_EQ(written(cell), wire);
  UtraFddNwMeasurement back;
  ASSERT_TRUE(readFrom(back, wire));
  EXPECT_TRUE(back == cell);
  EXPECT_EQ(back.rscp(), -100);
}

TEST(UtraTddNwMeasurement, AllFieldsWriteTheseBytesInWireOrder) {
  UtraTddNwMeasurement cell(UtraTddFrequencyInfo::create(9500, 127));
  cell.setUtraCarrierRssi(76);
  cell.setUcid(0x01234567);
  cell.setRscp(-100);
  cell.setPathloss(158);
  const Bytes wire = bytes("01 1f  01 03 1c 25 7f  67 45 23 01  4c 9c 9e");
  EXPECT_EQ(written(cell), wire);
  UtraTddNwMeasurement back;
  ASSERT_TRUE(readFrom(back, wire));
  EXPECT_TRUE(back == cell);
  EXPECT_EQ(back.rscp(), -100);
}

TEST(EUtraNwMeasurement, AllFieldsWriteTheseBytesInWireOrder) {
  EUtraNwMeasurement cell(EUtraFrequencyInfo::create(6300, 503));
  cell.setTac(0x1234);
  cell.setRsrp(97);
  cell.setRsrq(34);
  cell.setUcid(0x0ABCDE7F);
  const Bytes wire = bytes("01 1f  01 03 9c 18 f7 01  7f de bc 0a  34 12  61 22");
  EXPECT_EQ(written(cell), wire);
  EUtraNwMeasurement back;
  ASSERT_TRUE(readFrom(back, wire));
  EXPECT_TRUE(back == cell);
}

TEST(CdmaNwMeasurement, FrequencyInfoWritesTheseBytes) {
  const CdmaNwMeasurement cell(CdmaFrequencyInfo::create());
  const Bytes wire = bytes("01 01  01 00");
  EXPECT_EQ(written(cell), wire);
  CdmaNwMeasurement back;
  ASSERT_TRUE(readFrom(back, wire));
  EXPECT_TRUE(back == cell);
}

// What a technology's class nests, in two records that differ where the technology allows it.
template <class MeasurementClass, class Info>
struct NwTechnology {
  using Measurement = MeasurementClass;
  using FrequencyInfo = Info;
  static SharedPointer<Info> info() {
    SharedPointer<Info> made = Info::create();
    made->extension()->setInt32Property(1, 5);
    return made;
  }
};

template <class T>
class EveryNwMeasurement : public testing::Test {
 protected:
  SharedPointer<typename T::Measurement> cell = T::Measurement::create();
  SharedPointer<typename T::FrequencyInfo> info = T::info();
};
using NwTechnologies = testing::Types<NwTechnology<GeranNwMeasurement, GeranFrequencyInfo>,
                                      NwTechnology<UtraFddNwMeasurement, UtraFddFrequencyInfo>,
                                      NwTechnology<UtraTddNwMeasurement, UtraTddFrequencyInfo>,
                                      NwTechnology<EUtraNwMeasurement, EUtraFrequencyInfo>,
                                      NwTechnology<CdmaNwMeasurement, CdmaFrequencyInfo>>;
TYPED_TEST_SUITE(EveryNwMeasurement, NwTechnologies, ByTechnology<>);

TYPED_TEST(EveryNwMeasurement, SharesTheFrequencyInfoItIsGiven) {
  EXPECT_EQ(this->cell->setFrequencyInfo(this->info), StatusOk);
  EXPECT_EQ(this->cell->frequencyInfo(), this->info);
  EXPECT_EQ(this->cell->values(), 0x1U);
  EXPECT_FALSE(this->cell->isEmpty());
}

TYPED_TEST(EveryNwMeasurement, RefusesAnEmptyFrequencyInfoAndKeepsTheOld) {
  EXPECT_EQ(this->cell->setFrequencyInfo(nullptr), StatusWrongState);
  EXPECT_EQ(this->cell->values(), 0U);
  this->cell->setFrequencyInfo(this->info);
  EXPECT_EQ(this->cell->setFrequencyInfo(nullptr), StatusWrongState);
  EXPECT_EQ(this->cell->frequencyInfo(), this->info);
}

TYPED_TEST(EveryNwMeasurement, IsMadeWithAFrequencyInfo) {
  using Measurement = typename TypeParam::Measurement;
  using FrequencyInfo = typename TypeParam::FrequencyInfo;
  const auto made = Measurement::create(this->info);
  EXPECT_EQ(made->frequencyInfo(), this->info);
  EXPECT_EQ(made->values(), 0x1U);
  const auto without = Measurement::create(SharedPointer<FrequencyInfo>());
  ASSERT_TRUE(without);
  EXPECT_TRUE(without->isEmpty());
}

TYPED_TEST(EveryNwMeasurement, UnsetLetsGoOfTheFrequencyInfo) {
  this->cell->setFrequencyInfo(this->info);
  this->cell->unset(~0x1U);
  EXPECT_EQ(this->info->referenceCount(), 2);
  this->cell->unset(0x1);
  EXPECT_EQ(this->cell->values(), 0U);
  EXPECT_FALSE(this->cell->frequencyInfo());
  EXPECT_EQ(this->info->referenceCount(), 1);
}

TYPED_TEST(EveryNwMeasurement, CopiesAndAssignmentsShareTheFrequencyInfo) {
  using Measurement = typename TypeParam::Measurement;
  this->cell->setFrequencyInfo(this->info);
  const auto copy = Measurement::create(this->cell);
  Measurement assigned;
  assigned = *this->cell;
  EXPECT_EQ(copy->frequencyInfo(), this->info);
  EXPECT_EQ(assigned.frequencyInfo(), this->info);
  EXPECT_TRUE(*copy == assigned);
}

TYPED_TEST(EveryNwMeasurement, CloneHasAFrequencyInfoOfItsOwn) {
  using Measurement = typename TypeParam::Measurement;
  this->cell->setFrequencyInfo(this->info);
  const SharedPointer<Measurement> clone(this->cell->clone());
  EXPECT_NE(clone->frequencyInfo(), this->info);
  EXPECT_TRUE(*clone->frequencyInfo() == *this->info);
  EXPECT_TRUE(*clone == *this->cell);
}

TYPED_TEST(EveryNwMeasurement, CloneFailsWithoutLeaksWhenMemoryRunsOut) {
  using Measurement = typename TypeParam::Measurement;
  this->cell->setFrequencyInfo(this->info);
  test::everyAllocationFails([this] {
    try {
      const SharedPointer<Measurement> clone(this->cell->clone());
      EXPECT_TRUE(!clone || *clone == *this->cell);
    } catch (const std::bad_alloc&) {
    }
  });
}

TYPED_TEST(EveryNwMeasurement, ComparesTheFrequencyInfos) {
  using Measurement = typename TypeParam::Measurement;
  using FrequencyInfo = typename TypeParam::FrequencyInfo;
  this->cell->setFrequencyInfo(this->info);
  EXPECT_TRUE(*this->cell == Measurement(TypeParam::info()));
  EXPECT_TRUE(*this->cell != Measurement(FrequencyInfo::create()));
  EXPECT_TRUE(*this->cell != Measurement());
  EXPECT_TRUE(Measurement() != *this->cell);
}

TYPED_TEST(EveryNwMeasurement, ReadMakesANewFrequencyInfo) {
  this->cell->setFrequencyInfo(this->info);
  ASSERT_TRUE(readFrom(*this->cell, bytes("01 01  01 00")));
  EXPECT_EQ(this->cell->values(), 0x1U);
  EXPECT_NE(this->cell->frequencyInfo(), this->info);
  EXPECT_TRUE(this->info->isExtended());
  EXPECT_EQ(this->info->referenceCount(), 1);
}

TYPED_TEST(EveryNwMeasurement, FailedReadOfTheFrequencyInfoStoresNone) {
  for (const Bytes& broken : {bytes("01 01"), bytes("01 01 02 00"), bytes("01 01 01 ff")}) {
    this->cell->setFrequencyInfo(this->info);
    EXPECT_FALSE(readFrom(*this->cell, broken));
    EXPECT_EQ(this->cell->values(), 0x1U);
    EXPECT_FALSE(this->cell->frequencyInfo());
    // The bit has no object behind it: it stands in the mask and nothing follows.
    EXPECT_EQ(written(*this->cell), bytes("01 01"));
  }
}

// Counts its dumps, and has a wire form of its own.
class SpyInfo : public GeranFrequencyInfo {
 public:
  void dump() const override { ++dumps; }
  bool write(IStream& stream) const override { return stream.writeUint8(0x77) && stream.good(); }
  mutable int dumps = 0;
};

TEST(GeranNwMeasurement, DumpReachesTheFrequencyInfoWhileItsBitIsSet) {
  const SharedPointer<SpyInfo> spy(new SpyInfo);
  GeranNwMeasurement cell(spy);
  cell.dump();
  EXPECT_EQ(spy->dumps, 1);
  cell.unset(GeranNwMeasurement::HasFrequencyInfo);
  cell.dump();
  EXPECT_EQ(spy->dumps, 1);
}

TEST(GeranNwMeasurement, DerivedFrequencyInfoIsWrittenByItsOwnWrite) {
  GeranNwMeasurement cell{SharedPointer<GeranFrequencyInfo>(new SpyInfo)};
  cell.setRxLevel(5);
  EXPECT_EQ(written(cell), bytes("01 09 77 05"));
}

}  // namespace
}  // namespace trelvo::schema
