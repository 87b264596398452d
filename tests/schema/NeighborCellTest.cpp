#include <gtest/gtest.h>

#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/ObjectCollection.h>
#include <trelvo/schema/CdmaNeighborCell.h>
#include <trelvo/schema/EUtraNeighborCell.h>
#include <trelvo/schema/GeranNeighborCell.h>
#include <trelvo/schema/UtraFddNeighborCell.h>
#include <trelvo/schema/UtraTddNeighborCell.h>

#include "tests/schema/CellularRecord.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/Bytes.h"

namespace trelvo::schema {
namespace {

using gom::SharedPointer;
using test::bytes;
using test::readFrom;
using test::written;

template <class NeighborClass, class Info>
struct NeighborTechnology {
  using Neighbor = NeighborClass;
  using FrequencyInfo = Info;
};

template <class T>
class EveryNeighborCell : public testing::Test {
 protected:
  void setBoth() {
    cell->setFrequencyInfo(info);
    cell->setCoverage(area);
  }

  SharedPointer<typename T::Neighbor> cell = T::Neighbor::create();
  SharedPointer<typename T::FrequencyInfo> info = T::FrequencyInfo::create();
  SharedPointer<Area> area = Area::create(1, 2, 3, 4, 5.0F);
};
using NeighborTechnologies =
    testing::Types<NeighborTechnology<GeranNeighborCell, GeranFrequencyInfo>,
                   NeighborTechnology<UtraFddNeighborCell, UtraFddFrequencyInfo>,
                   NeighborTechnology<UtraTddNeighborCell, UtraTddFrequencyInfo>,
                   NeighborTechnology<EUtraNeighborCell, EUtraFrequencyInfo>,
                   NeighborTechnology<CdmaNeighborCell, CdmaFrequencyInfo>>;
TYPED_TEST_SUITE(EveryNeighborCell, NeighborTechnologies, ByTechnology<>);

TYPED_TEST(EveryNeighborCell, SharesWhatItIsGiven) {
  EXPECT_EQ(this->cell->setFrequencyInfo(this->info), StatusOk);
  EXPECT_EQ(this->cell->values(), 0x1U);
  EXPECT_EQ(this->cell->setCoverage(this->area), StatusOk);
  EXPECT_EQ(this->cell->values(), 0x3U);
  EXPECT_EQ(this->cell->frequencyInfo(), this->info);
  EXPECT_EQ(this->cell->coverage(), this->area);
}

TYPED_TEST(EveryNeighborCell, RefusesEmptyHandlesAndKeepsTheOld) {
  EXPECT_EQ(this->cell->setFrequencyInfo(nullptr), StatusWrongState);
  EXPECT_EQ(this->cell->setCoverage(nullptr), StatusWrongState);
  EXPECT_EQ(this->cell->values(), 0U);
  this->setBoth();
  EXPECT_EQ(this->cell->setFrequencyInfo(nullptr), StatusWrongState);
  EXPECT_EQ(this->cell->setCoverage(nullptr), StatusWrongState);
  EXPECT_EQ(this->cell->frequencyInfo(), this->info);
  EXPECT_EQ(this->cell->coverage(), this->area);
}

TYPED_TEST(EveryNeighborCell, IsMadeWithAFrequencyInfo) {
  using Neighbor = typename TypeParam::Neighbor;
  using FrequencyInfo = typename TypeParam::FrequencyInfo;
  const auto made = Neighbor::create(this->info);
  EXPECT_EQ(made->frequencyInfo(), this->info);
  EXPECT_EQ(made->values(), 0x1U);
  const auto without = Neighbor::create(SharedPointer<FrequencyInfo>());
  ASSERT_TRUE(without);
  EXPECT_TRUE(without->isEmpty());
}

TYPED_TEST(EveryNeighborCell, UnsetLetsGoOfWhatItNames) {
  this->setBoth();
  this->cell->unset(0x1);
  EXPECT_EQ(this->cell->values(), 0x2U);
  EXPECT_FALSE(this->cell->frequencyInfo());
  EXPECT_EQ(this->info->referenceCount(), 1);
  EXPECT_EQ(this->area->referenceCount(), 2);
  this->cell->unset(0x2);
  EXPECT_TRUE(this->cell->isEmpty());
  EXPECT_FALSE(this->cell->coverage());
  EXPECT_EQ(this->area->referenceCount(), 1);
}

TYPED_TEST(EveryNeighborCell, CopiesAndAssignmentsShare) {
  using Neighbor = typename TypeParam::Neighbor;
  this->setBoth();
  const auto copy = Neighbor::create(this->cell);
  Neighbor assigned;
  assigned = *this->cell;
  for (const Neighbor* shared : {copy.get(), &assigned}) {
    EXPECT_EQ(shared->frequencyInfo(), this->info);
    EXPECT_EQ(shared->coverage(), this->area);
    EXPECT_TRUE(*shared == *this->cell);
  }
}

TYPED_TEST(EveryNeighborCell, CloneHasPartsOfItsOwn) {
  using Neighbor = typename TypeParam::Neighbor;
  this->setBoth();
  const SharedPointer<Neighbor> clone(this->cell->clone());
  EXPECT_NE(clone->frequencyInfo(), this->info);
  EXPECT_NE(clone->coverage(), this->area);
  EXPECT_TRUE(*clone == *this->cell);
}

TYPED_TEST(EveryNeighborCell, CloneFailsWithoutLeaksWhenMemoryRunsOut) {
  using Neighbor = typename TypeParam::Neighbor;
  this->setBoth();
  test::everyAllocationFails([this] {
    try {
      const SharedPointer<Neighbor> clone(this->cell->clone());
      EXPECT_TRUE(!clone || *clone == *this->cell);
    } catch (const std::bad_alloc&) {
    }
  });
}

TYPED_TEST(EveryNeighborCell, ComparesFrequencyInfoAndCoverage) {
  using Neighbor = typename TypeParam::Neighbor;
  using FrequencyInfo = typename TypeParam::FrequencyInfo;
  this->setBoth();
  const auto other = Neighbor::create(FrequencyInfo::create());
  EXPECT_TRUE(*other != *this->cell);
  other->setCoverage(Area::create(1, 2, 3, 4, 5.0F));
  EXPECT_TRUE(*other == *this->cell);
  other->setCoverage(Area::create(1, 2, 3, 5, 5.0F));
  EXPECT_TRUE(*other != *this->cell);
  other->setCoverage(this->area);
  this->info->extension()->setInt32Property(1, 5);
  EXPECT_TRUE(*other != *this->cell);
}

TYPED_TEST(EveryNeighborCell, DumpLeavesItAlone) {
  using Neighbor = typename TypeParam::Neighbor;
  this->setBoth();
  const auto copy = Neighbor::create(this->cell);
  this->cell->dump();
  EXPECT_TRUE(*copy == *this->cell);
}

TYPED_TEST(EveryNeighborCell, EmptyListIsFourBytesOnTheWire) {
  gom::ObjectCollection<typename TypeParam::Neighbor> list;
  EXPECT_EQ(written(list), bytes("00 00 00 00"));
  EXPECT_TRUE(readFrom(list, bytes("00 00 00 00")));
  EXPECT_EQ(list.count(), 0U);
}

TYPED_TEST(EveryNeighborCell, ListWithAnElementThrowsStatusInternal) {
  gom::ObjectCollection<typename TypeParam::Neighbor> list;
  EXPECT_THROW((void)readFrom(list, bytes("01 00 00 00 01 00")), Status);
  list.add(this->cell);
  BufferStream stream;
  try {
    (void)list.write(stream);
    ADD_FAILURE() << "a neighbour was written";
  } catch (Status status) {
    EXPECT_EQ(status, StatusInternal);
  }
}

TEST(GeranNeighborCell, LacAndCidTakeEveryValueAndStartAtZero) {
  GeranNeighborCell cell;
  EXPECT_EQ(cell.lac(), 0);
  EXPECT_EQ(cell.cid(), 0);
  EXPECT_EQ(cell.setLac(0xFFFF), StatusOk);
  EXPECT_EQ(cell.values(), 0x4U);
  EXPECT_EQ(cell.setCid(0xA1B2), StatusOk);
  EXPECT_EQ(cell.values(), 0xCU);
  EXPECT_EQ(cell.lac(), 0xFFFF);
  EXPECT_EQ(cell.cid(), 0xA1B2);
  cell.unset(0xC);
  EXPECT_TRUE(cell.isEmpty());
  EXPECT_EQ(cell.lac(), 0xFFFF);
  EXPECT_EQ(cell.cid(), 0xA1B2);
}

TEST(GeranNeighborCell, CellsThatDifferOnlyInLacOrCidAreEqual) {
  GeranNeighborCell a;
  a.setLac(1);
  a.setCid(2);
  GeranNeighborCell b;
  b.setLac(3);
  b.setCid(4);
  EXPECT_TRUE(a == b);
  EXPECT_TRUE(a.compare(&b));
}

TEST(GeranNeighborCell, BitsOfLacAndCidAreCompared) {
  GeranNeighborCell a;
  a.setCid(2);
  EXPECT_FALSE(a == GeranNeighborCell());
  GeranNeighborCell b;
  b.setLac(2);
  EXPECT_FALSE(a == b);
}

TEST(GeranNeighborCell, LacAndCidAreCopiedAndCloned) {
  GeranNeighborCell source;
  source.setLac(1);
  source.setCid(2);
  const GeranNeighborCell copy(source);
  const SharedPointer<GeranNeighborCell> clone(source.clone());
  EXPECT_EQ(copy.lac(), 1);
  EXPECT_EQ(copy.cid(), 2);
  EXPECT_EQ(clone->lac(), 1);
  EXPECT_EQ(clone->cid(), 2);
  EXPECT_EQ(clone->values(), 0xCU);
}

}  // namespace
}  // namespace trelvo::schema
