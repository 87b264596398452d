#include <gtest/gtest.h>

#include <trelvo/schema/CdmaServingCellMeasurement.h>
#include <trelvo/schema/EUtraServingCellMeasurement.h>
#include <trelvo/schema/GeranServingCellMeasurement.h>
#include <trelvo/schema/UtraFddServingCellMeasurement.h>
#include <trelvo/schema/UtraTddServingCellMeasurement.h>

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
    ServingCellMeasurement, EveryCellularField,
    testing::Values(
        recordField<&GeranServingCellMeasurement::setTimingAdvance,
                    &GeranServingCellMeasurement::timingAdvance>("GeranTimingAdvance", 0x02, 63,
                                                                 "01 02 3f"),
        recordField<&GeranServingCellMeasurement::setFrequency,
                    &GeranServingCellMeasurement::frequency>("GeranFrequency", 0x08, 3, "01 08 03"),
        recordField<&UtraFddServingCellMeasurement::setLac, &UtraFddServingCellMeasurement::lac>(
            "UtraFddLac", 0x01, 0x1234, "01 01 34 12"),
        recordField<&UtraTddServingCellMeasurement::setLac, &UtraTddServingCellMeasurement::lac>(
            "UtraTddLac", 0x01, 0x1234, "01 01 34 12"),
        recordField<&UtraTddServingCellMeasurement::setTimingAdvance,
                    &UtraTddServingCellMeasurement::timingAdvance>("UtraTddTimingAdvance", 0x04,
                                                                   0x0102, "01 04 02 01"),
        recordField<&EUtraServingCellMeasurement::setTimingAdvance,
                    &EUtraServingCellMeasurement::timingAdvance>("EUtraTimingAdvance", 0x02, 1282,
                                                                 "01 02 02 05")),
    ByName());

TEST(GeranServingCellMeasurement, AllFieldsWriteTheseBytesInWireOrder) {
  GeranServingCellMeasurement serving;
  serving.setTimingAdvance(63);
  serving.setFrequency(3);
  serving.setRxLevel(47);
  serving.setFrequencyInfo(GeranFrequencyInfo::create(43, 1023));
  const Bytes wire = bytes("01 1a  01 09 01 03 2b ff 03 2f  03  3f");
  EXPECT_EQ(written(serving), wire);
  GeranServingCellMeasurement back;
  ASSERT_TRUE(readFrom(back, wire));
  EXPECT_TRUE(back == serving);
  EXPECT_TRUE(back.valueExists(0x1F));
}

TEST(UtraFddServingCellMeasurement, AllFieldsWriteTheseBytesInWireOrder) {
  UtraFddServingCellMeasurement serving;
  serving.setLac(0x1234);
  serving.setUarfcnUl(9612);
  serving.setFrequencyInfo(UtraFddFrequencyInfo::create(10562, 511));
  const Bytes wire = bytes("01 81  01 03 01 03 42 29 ff 01 8c 25  34 12");
  EXPECT_EQ(written(serving), wire);
  UtraFddServingCellMeasurement back;
  ASSERT_TRUE(readFrom(back, wire));
  EXPECT_TRUE(back == serving);
  EXPECT_TRUE(back.valueExists(0x87));
}

TEST(UtraTddServingCellMeasurement, AllFieldsWriteTheseBytesInWireOrder) {
  UtraTddServingCellMeasurement serving;
  serving.setTimingAdvance(0x0102);
  serving.setLac(0x1234);
  serving.setFrequencyInfo(UtraTddFrequencyInfo::create(9500, 127));
  const Bytes wire = bytes("01 0d  01 01 01 03 1c 25 7f  34 12  02 01");
  EXPECT_EQ(written(serving), wire);
  UtraTddServingCellMeasurement back;
  ASSERT_TRUE(readFrom(back, wire));
  EXPECT_TRUE(back == serving);
  EXPECT_TRUE(back.valueExists(0x0F));
}

TEST(EUtraServingCellMeasurement, AllFieldsWriteTheseBytesInWireOrder) {
  EUtraServingCellMeasurement serving;
  serving.setTimingAdvance(1282);
  serving.setFrequencyInfo(EUtraFrequencyInfo::create(6300, 503));
  const Bytes wire = bytes("01 03  01 01 01 03 9c 18 f7 01  02 05");
  EXPECT_EQ(written(serving), wire);
  EUtraServingCellMeasurement back;
  ASSERT_TRUE(readFrom(back, wire));
  EXPECT_TRUE(back == serving);
  EXPECT_TRUE(back.valueExists(0x07));
}

TEST(CdmaServingCellMeasurement, FrequencyInfoWritesTheseBytes) {
  CdmaServingCellMeasurement serving;
  serving.setFrequencyInfo(CdmaFrequencyInfo::create());
  const Bytes wire = bytes("01 02  01 01  01 00");
  EXPECT_EQ(written(serving), wire);
  CdmaServingCellMeasurement back;
  ASSERT_TRUE(readFrom(back, wire));
  EXPECT_TRUE(back == serving);
  EXPECT_TRUE(back.valueExists(0x03));
}

// A technology's classes and the bits that they have in common.
template <class Serving, class Nw, class Info, unsigned int nwBit, unsigned int infoBit>
struct ServingTechnology {
  using Measurement = Serving;
  using NwMeasurement = Nw;
  using FrequencyInfo = Info;
  static constexpr unsigned int kNwMeasurement = nwBit;
  static constexpr unsigned int kFrequencyInfo = infoBit;
};

template <class T>
class EveryServingCellMeasurement : public testing::Test {
 protected:
  SharedPointer<typename T::Measurement> serving = T::Measurement::create();
  SharedPointer<typename T::NwMeasurement> nw = T::NwMeasurement::create();
  SharedPointer<typename T::FrequencyInfo> info = T::FrequencyInfo::create();
};
using ServingTechnologies =
    testing::Types<ServingTechnology<GeranServingCellMeasurement, GeranNwMeasurement,
                                     GeranFrequencyInfo, 0x10, 0x04>,
                   ServingTechnology<UtraFddServingCellMeasurement, UtraFddNwMeasurement,
                                     UtraFddFrequencyInfo, 0x80, 0x02>,
                   ServingTechnology<UtraTddServingCellMeasurement, UtraTddNwMeasurement,
                                     UtraTddFrequencyInfo, 0x08, 0x02>,
                   ServingTechnology<EUtraServingCellMeasurement, EUtraNwMeasurement,
                                     EUtraFrequencyInfo, 0x01, 0x04>,
                   ServingTechnology<CdmaServingCellMeasurement, CdmaNwMeasurement,
                                     CdmaFrequencyInfo, 0x02, 0x01>>;
TYPED_TEST_SUITE(EveryServingCellMeasurement, ServingTechnologies, ByTechnology<>);

TYPED_TEST(EveryServingCellMeasurement, HasTheseBits) {
  using Measurement = typename TypeParam::Measurement;
  EXPECT_EQ(+Measurement::HasNwMeasurement, TypeParam::kNwMeasurement);
  EXPECT_EQ(+Measurement::HasFrequencyInfo, TypeParam::kFrequencyInfo);
}

TYPED_TEST(EveryServingCellMeasurement, FreshOneHasNoNestedMeasurementAndNoFrequencyInfo) {
  EXPECT_FALSE(this->serving->nwMeasurement());
  EXPECT_FALSE(this->serving->frequencyInfo());
  EXPECT_FALSE(this->serving->valueExists(TypeParam::kFrequencyInfo));
}

TYPED_TEST(EveryServingCellMeasurement, SharesTheNestedMeasurementItIsGiven) {
  EXPECT_EQ(this->serving->setNwMeasurement(this->nw), StatusOk);
  EXPECT_EQ(this->serving->nwMeasurement(), this->nw);
  EXPECT_EQ(this->serving->values(), TypeParam::kNwMeasurement);
  EXPECT_TRUE(this->serving->valueExists(TypeParam::kNwMeasurement));
}

TYPED_TEST(EveryServingCellMeasurement, RefusesAnEmptyNestedMeasurementAndKeepsTheOld) {
  EXPECT_EQ(this->serving->setNwMeasurement(nullptr), StatusWrongState);
  EXPECT_TRUE(this->serving->isEmpty());
  this->serving->setNwMeasurement(this->nw);
  EXPECT_EQ(this->serving->setNwMeasurement(nullptr), StatusWrongState);
  EXPECT_EQ(this->serving->nwMeasurement(), this->nw);
}

TYPED_TEST(EveryServingCellMeasurement, SetFrequencyInfoMakesTheNestedMeasurement) {
  EXPECT_EQ(this->serving->setFrequencyInfo(this->info), StatusOk);
  ASSERT_TRUE(this->serving->nwMeasurement());
  EXPECT_EQ(this->serving->nwMeasurement()->frequencyInfo(), this->info);
  EXPECT_EQ(this->serving->frequencyInfo(), this->info);
  EXPECT_EQ(this->serving->values(), TypeParam::kNwMeasurement);
  EXPECT_TRUE(this->serving->valueExists(TypeParam::kFrequencyInfo));
  EXPECT_TRUE(this->serving->valueExists(TypeParam::kFrequencyInfo | TypeParam::kNwMeasurement));
}

TYPED_TEST(EveryServingCellMeasurement, SetFrequencyInfoUsesTheNestedMeasurementThatIsThere) {
  this->serving->setNwMeasurement(this->nw);
  EXPECT_EQ(this->serving->setFrequencyInfo(this->info), StatusOk);
  EXPECT_EQ(this->serving->nwMeasurement(), this->nw);
  EXPECT_EQ(this->nw->frequencyInfo(), this->info);
}

TYPED_TEST(EveryServingCellMeasurement, RefusedFrequencyInfoLeavesANestedMeasurementBehind) {
  EXPECT_EQ(this->serving->setFrequencyInfo(nullptr), StatusWrongState);
  EXPECT_TRUE(this->serving->nwMeasurement());
  EXPECT_EQ(this->serving->values(), TypeParam::kNwMeasurement);
  EXPECT_FALSE(this->serving->valueExists(TypeParam::kFrequencyInfo));
}

TYPED_TEST(EveryServingCellMeasurement, NoMemoryForTheNestedMeasurementGivesStatusWrongState) {
  unsigned int refusals = 0;
  test::everyAllocationFails([this, &refusals] {
    const Status status = this->serving->setFrequencyInfo(this->info);
    EXPECT_EQ(status, this->serving->nwMeasurement() ? StatusOk : StatusWrongState);
    refusals += status == StatusWrongState ? 1 : 0;
    this->serving->unset(TypeParam::kNwMeasurement);
  });
  EXPECT_GT(refusals, 0U);
}

TYPED_TEST(EveryServingCellMeasurement, UnsetOfAForwardedBitReachesWhoeverSharesTheNestedOne) {
  this->serving->setNwMeasurement(this->nw);
  this->serving->setFrequencyInfo(this->info);
  this->serving->unset(TypeParam::kFrequencyInfo);
  EXPECT_EQ(this->nw->values(), 0U);
  EXPECT_FALSE(this->nw->frequencyInfo());
  EXPECT_EQ(this->serving->nwMeasurement(), this->nw);
  EXPECT_TRUE(this->serving->valueExists(TypeParam::kNwMeasurement));
  EXPECT_FALSE(this->serving->valueExists(TypeParam::kFrequencyInfo));
}

TYPED_TEST(EveryServingCellMeasurement, UnsetOfTheOwnBitLetsGoAndLeavesTheNestedOneAsItIs) {
  this->serving->setNwMeasurement(this->nw);
  this->serving->setFrequencyInfo(this->info);
  this->serving->unset(TypeParam::kNwMeasurement);
  EXPECT_TRUE(this->serving->isEmpty());
  EXPECT_FALSE(this->serving->nwMeasurement());
  EXPECT_EQ(this->nw->frequencyInfo(), this->info);
  EXPECT_EQ(this->nw->referenceCount(), 1);
}

TYPED_TEST(EveryServingCellMeasurement, CopiesAndAssignmentsShareTheNestedMeasurement) {
  using Measurement = typename TypeParam::Measurement;
  this->serving->setNwMeasurement(this->nw);
  const auto copy = Measurement::create(this->serving);
  Measurement assigned;
  assigned = *this->serving;
  EXPECT_EQ(copy->nwMeasurement(), this->nw);
  EXPECT_EQ(assigned.nwMeasurement(), this->nw);
  EXPECT_TRUE(*copy == assigned);
  EXPECT_FALSE(*copy != assigned);
}

TYPED_TEST(EveryServingCellMeasurement, CloneHasANestedMeasurementOfItsOwn) {
  using Measurement = typename TypeParam::Measurement;
  this->serving->setFrequencyInfo(this->info);
  const SharedPointer<Measurement> clone(this->serving->clone());
  EXPECT_NE(clone->nwMeasurement(), this->serving->nwMeasurement());
  EXPECT_NE(clone->frequencyInfo(), this->info);
  EXPECT_TRUE(*clone == *this->serving);
}

TYPED_TEST(EveryServingCellMeasurement, CloneFailsWithoutLeaksWhenMemoryRunsOut) {
  using Measurement = typename TypeParam::Measurement;
  this->serving->setFrequencyInfo(this->info);
  test::everyAllocationFails([this] {
    try {
      const SharedPointer<Measurement> clone(this->serving->clone());
      EXPECT_TRUE(!clone || *clone == *this->serving);
    } catch (const std::bad_alloc&) {
    }
  });
}

TYPED_TEST(EveryServingCellMeasurement, ComparesTheNestedMeasurements) {
  using Measurement = typename TypeParam::Measurement;
  this->serving->setNwMeasurement(this->nw);
  const auto other = Measurement::create();
  EXPECT_TRUE(*other != *this->serving);
  other->setFrequencyInfo(this->info);
  EXPECT_TRUE(*other != *this->serving);
  this->serving->setFrequencyInfo(TypeParam::FrequencyInfo::create());
  EXPECT_TRUE(*other == *this->serving);
}

TYPED_TEST(EveryServingCellMeasurement, ReadStripsTheOldNestedMeasurementAndMakesANewOne) {
  this->serving->setNwMeasurement(this->nw);
  this->serving->setFrequencyInfo(this->info);
  const auto mask = static_cast<unsigned char>(TypeParam::kNwMeasurement);
  ASSERT_TRUE(readFrom(*this->serving, Bytes{1, mask, 1, 0}));
  EXPECT_FALSE(this->nw->frequencyInfo());
  EXPECT_EQ(this->nw->referenceCount(), 1);
  EXPECT_NE(this->serving->nwMeasurement(), this->nw);
  EXPECT_TRUE(this->serving->nwMeasurement()->isEmpty());
}

TYPED_TEST(EveryServingCellMeasurement, FailedReadStripsTheOldNestedMeasurementToo) {
  this->serving->setNwMeasurement(this->nw);
  this->serving->setFrequencyInfo(this->info);
  EXPECT_FALSE(readFrom(*this->serving, bytes("02 00")));
  EXPECT_TRUE(this->serving->isEmpty());
  EXPECT_FALSE(this->nw->frequencyInfo());
}

TYPED_TEST(EveryServingCellMeasurement, ForwardedBitsOfAStreamAreStoredAndBringNoField) {
  const auto mask = static_cast<unsigned char>(TypeParam::kFrequencyInfo);
  ASSERT_TRUE(readFrom(*this->serving, Bytes{1, mask}));
  EXPECT_EQ(this->serving->values(), TypeParam::kFrequencyInfo);
  EXPECT_FALSE(this->serving->isEmpty());
  EXPECT_FALSE(this->serving->valueExists(TypeParam::kFrequencyInfo));
  EXPECT_FALSE(this->serving->frequencyInfo());
  EXPECT_EQ(written(*this->serving), (Bytes{1, mask}));
  this->serving->unset(TypeParam::kFrequencyInfo);
  EXPECT_TRUE(this->serving->isEmpty());
}

TYPED_TEST(EveryServingCellMeasurement, FailedReadOfTheNestedMeasurementStoresNone) {
  const auto mask = static_cast<unsigned char>(TypeParam::kNwMeasurement);
  for (const Bytes& broken : {Bytes{1, mask}, Bytes{1, mask, 2, 0}, Bytes{1, mask, 1, 0xFF},
                              Bytes{1, mask, 1, 1, 2, 0}}) {
    EXPECT_FALSE(readFrom(*this->serving, broken));
    EXPECT_EQ(this->serving->values(), TypeParam::kNwMeasurement);
    EXPECT_FALSE(this->serving->nwMeasurement());
    // The bit has no object behind it: it stands in the mask and nothing follows.
    EXPECT_EQ(written(*this->serving), (Bytes{1, mask}));
  }
}

TEST(GeranServingCellMeasurement, FreshOneIsEmptyAndReadsAsZero) {
  const GeranServingCellMeasurement serving;
  EXPECT_TRUE(serving.isEmpty());
  EXPECT_EQ(serving.rxLevel(), 0);
  EXPECT_FALSE(serving.valueExists(1));
  EXPECT_FALSE(serving.valueExists(0));
}

TEST(GeranServingCellMeasurement, SetRxLevelCreatesTheNestedMeasurement) {
  GeranServingCellMeasurement serving;
  EXPECT_EQ(serving.setRxLevel(5), StatusOk);
  EXPECT_EQ(serving.rxLevel(), 5);
  EXPECT_TRUE(serving.valueExists(0x01));
  EXPECT_TRUE(serving.valueExists(0x10));
  EXPECT_TRUE(serving.valueExists(0x11));
  EXPECT_FALSE(serving.valueExists(0x02));
  EXPECT_FALSE(serving.valueExists(0x03));
  EXPECT_FALSE(serving.valueExists(0x05));
  EXPECT_EQ(serving.values(), 0x10U);
  EXPECT_EQ(written(serving), bytes("01 10  01 08 05"));
}

TEST(GeranServingCellMeasurement, UnsetRxLevelKeepsTheNestedMeasurementAndTheNumber) {
  GeranServingCellMeasurement serving;
  serving.setRxLevel(5);
  serving.unset(1);
  EXPECT_FALSE(serving.valueExists(1));
  EXPECT_TRUE(serving.valueExists(0x10));
  EXPECT_EQ(serving.nwMeasurement()->values(), 0U);
  EXPECT_EQ(serving.rxLevel(), 5);
}

TEST(GeranServingCellMeasurement, ForwardedLevelIsThatOfASharedMeasurement) {
  const auto nw = GeranNwMeasurement::create();
  GeranServingCellMeasurement serving;
  serving.setNwMeasurement(nw);
  nw->setRxLevel(9);
  EXPECT_EQ(serving.rxLevel(), 9);
  EXPECT_TRUE(serving.valueExists(0x01));
  serving.setRxLevel(10);
  EXPECT_EQ(nw->rxLevel(), 10);
}

TEST(UtraFddServingCellMeasurement, UarfcnUlIsForwarded) {
  UtraFddServingCellMeasurement serving;
  EXPECT_EQ(serving.uarfcnUl(), 0);
  EXPECT_FALSE(serving.valueExists(0x04));
  EXPECT_EQ(serving.setUarfcnUl(9612), StatusOk);
  EXPECT_EQ(serving.uarfcnUl(), 9612);
  EXPECT_EQ(serving.values(), 0x80U);
  EXPECT_TRUE(serving.valueExists(0x84));
  EXPECT_FALSE(serving.valueExists(0x06));
  serving.unset(0x04);
  EXPECT_EQ(serving.nwMeasurement()->values(), 0U);
}

TEST(UtraFddServingCellMeasurement, MaskBelowTheLargestMayHoldUnknownBits) {
  UtraFddServingCellMeasurement serving;
  EXPECT_TRUE(readFrom(serving, bytes("01 78")));
  EXPECT_EQ(serving.values(), 0x78U);
  EXPECT_FALSE(readFrom(serving, bytes("01 88")));
}

TEST(GeranServingCellMeasurement, DumpReachesTheNestedMeasurementWhileItsBitIsSet) {
  class Spy : public GeranNwMeasurement {
   public:
    void dump() const override { ++dumps; }
    mutable int dumps = 0;
  };
  const SharedPointer<Spy> spy(new Spy);
  GeranServingCellMeasurement serving;
  serving.setNwMeasurement(spy);
  serving.dump();
  EXPECT_EQ(spy->dumps, 1);
}

}  // namespace
}  // namespace trelvo::schema
