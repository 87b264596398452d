#include <gtest/gtest.h>

#include <trelvo/gom/GenericObject.h>
#include <trelvo/schema/CellularObject.h>
#include <trelvo/schema/Technology.h>

#include "tests/support/AllocationFailure.h"

namespace trelvo::schema {
namespace {

using gom::SharedPointer;
using Dn = CellularObjectDn;

// The six fields of a name.
void expectName(const SharedPointer<Dn>& dn, int idType, int nwType, unsigned short layer1,
                unsigned short layer2, int l3IdType, unsigned int layer3) {
  ASSERT_TRUE(dn);
  EXPECT_EQ(dn->idType(), idType);
  EXPECT_EQ(dn->nwType(), nwType);
  EXPECT_EQ(dn->layer1(), layer1);
  EXPECT_EQ(dn->layer2(), layer2);
  EXPECT_EQ(dn->l3IdType(), l3IdType);
  EXPECT_EQ(dn->layer3(), layer3);
}

TEST(CellularObjectDn, EnumeratorsHaveTheseNumbers) {
  EXPECT_EQ(Dn::Layer1, 1);
  EXPECT_EQ(Dn::Layer2, 2);
  EXPECT_EQ(Dn::Layer3, 3);
  EXPECT_EQ(Dn::NwUnknown, 0);
  EXPECT_EQ(Dn::NwGeran, 1);
  EXPECT_EQ(Dn::NwUtraFdd, 2);
  EXPECT_EQ(Dn::NwEUtra, 3);
  EXPECT_EQ(Dn::NwCdma, 4);
  EXPECT_EQ(Dn::NwUtraTdd, 5);
  EXPECT_EQ(Dn::L3None, 0);
  EXPECT_EQ(Dn::L3Lac, 1);
  EXPECT_EQ(Dn::L3RncId, 2);
  EXPECT_EQ(Dn::L3ENodeBId, 3);
  EXPECT_EQ(sizeof(Dn::IdType), 1U);
  EXPECT_EQ(sizeof(Dn::NwType), 1U);
  EXPECT_EQ(sizeof(Dn::L3IdType), 1U);
}

TEST(Technology, BitsHaveTheseNumbers) {
  EXPECT_EQ(TechnologyGnss, 0x0001);
  EXPECT_EQ(TechnologyCellLac, 0x0010);
  EXPECT_EQ(TechnologyCellNetwork, 0x0020);
  EXPECT_EQ(TechnologyCellCountry, 0x0040);
  EXPECT_EQ(TechnologyCellRnc, 0x0800);
  EXPECT_EQ(TechnologyCellENodeB, 0x1000);
}

TEST(CellularObjectDn, DefaultConstructorLeavesAllFieldsZero) {
  expectName(SharedPointer<Dn>(new Dn), 0, 0, 0, 0, 0, 0);
}

TEST(CellularObjectDn, PlainCreateNamesLayerOneZeroOfAnUnknownTechnology) {
  expectName(Dn::create(), 1, 0, 0, 0, 0, 0);
}

TEST(CellularObjectDn, NumberOfLayersFollowsFromTheArguments) {
  expectName(Dn::create(Dn::NwGeran, 244), 1, 1, 244, 0, 0, 0);
  expectName(Dn::create(Dn::NwCdma, 0xFFFF, 0xFFFE), 2, 4, 0xFFFF, 0xFFFE, 0, 0);
  expectName(Dn::create(Dn::NwEUtra, 244, 91, Dn::L3ENodeBId, 0xFFFFFFFF), 3, 3, 244, 91, 3,
             0xFFFFFFFF);
}

TEST(CellularObjectDn, ComesFromAGeranCell) {
  const auto cell = GeranCellDn::create(244, 91, 0x1234, 7);
  expectName(Dn::create(cell, Dn::Layer1), 1, 1, 244, 0, 0, 0);
  expectName(Dn::create(cell, Dn::Layer2), 2, 1, 244, 91, 0, 0);
  expectName(Dn::create(cell, Dn::Layer3), 3, 1, 244, 91, 1, 0x1234);
}

TEST(CellularObjectDn, ComesFromAUtraCellWithTheCallersTechnology) {
  const auto cell = UtraCellDn::create(244, 91, 0xF1234567);
  expectName(Dn::create(Dn::NwUtraFdd, cell, Dn::Layer1), 1, 2, 244, 0, 0, 0);
  expectName(Dn::create(Dn::NwUtraTdd, cell, Dn::Layer2), 2, 5, 244, 91, 0, 0);
  expectName(Dn::create(Dn::NwUtraFdd, cell, Dn::Layer3), 3, 2, 244, 91, 2, 0x123);
  expectName(Dn::create(static_cast<Dn::NwType>(77), cell, Dn::Layer3), 3, 77, 244, 91, 2, 0x123);
}

TEST(CellularObjectDn, ComesFromAnEUtraCell) {
  const auto cell = EUtraCellDn::create(244, 91, 0xFABCDE7F);
  expectName(Dn::create(cell, Dn::Layer1), 1, 3, 244, 0, 0, 0);
  expectName(Dn::create(cell, Dn::Layer2), 2, 3, 244, 91, 0, 0);
  expectName(Dn::create(cell, Dn::Layer3), 3, 3, 244, 91, 3, 0xABCDE);
}

TEST(CellularObjectDn, ComesFromACdmaCellInTwoLayersAtMost) {
  const auto cell = CdmaCellDn::create(11, 22, 33);
  expectName(Dn::create(cell, Dn::Layer1), 1, 4, 11, 0, 0, 0);
  expectName(Dn::create(cell, Dn::Layer2), 2, 4, 11, 22, 0, 0);
  EXPECT_FALSE(Dn::create(cell, Dn::Layer3));
}

TEST(CellularObjectDn, OtherNumbersOfLayersGiveAnEmptyHandle) {
  for (const int number : {0, 4, 255}) {
    const auto idType = static_cast<Dn::IdType>(number);
    EXPECT_FALSE(Dn::create(GeranCellDn::create(244, 91, 1, 2), idType)) << number;
    EXPECT_FALSE(Dn::create(Dn::NwUtraFdd, UtraCellDn::create(244, 91, 1), idType)) << number;
    EXPECT_FALSE(Dn::create(EUtraCellDn::create(244, 91, 1), idType)) << number;
    EXPECT_FALSE(Dn::create(CdmaCellDn::create(1, 2, 3), idType)) << number;
  }
}

TEST(CellularObjectDn, NoCellGivesAnEmptyHandle) {
  EXPECT_FALSE(Dn::create(SharedPointer<GeranCellDn>(), Dn::Layer1));
  EXPECT_FALSE(Dn::create(Dn::NwUtraFdd, SharedPointer<UtraCellDn>(), Dn::Layer1));
  EXPECT_FALSE(Dn::create(SharedPointer<EUtraCellDn>(), Dn::Layer1));
  EXPECT_FALSE(Dn::create(SharedPointer<CdmaCellDn>(), Dn::Layer1));
}

TEST(CellularObjectDn, TakesLayersWhateverTheBitsOfTheCell) {
  const auto cell = GeranCellDn::create(244, 91, 0x1234, 7);
  cell->unset(~0U);
  expectName(Dn::create(cell, Dn::Layer3), 3, 1, 244, 91, 1, 0x1234);
  expectName(Dn::create(GeranCellDn::create(), Dn::Layer3), 3, 1, 0, 0, 1, 0);
}

TEST(CellularObjectDn, IsEmptyAndHasNoBitsEvenWhenFullyNamed) {
  const Dn dn(Dn::NwGeran, 244, 91, Dn::L3Lac, 1);
  EXPECT_TRUE(dn.isEmpty());
  EXPECT_EQ(dn.values(), 0U);
  EXPECT_FALSE(dn.valueExists(1));
  EXPECT_FALSE(dn.valueExists(~0U));
}

TEST(CellularObjectDn, ComparesLayersAsFarAsTheyCount) {
  const Dn one(Dn::NwGeran, 244);
  EXPECT_TRUE(one == Dn(Dn::NwGeran, 244));
  EXPECT_TRUE(one != Dn(Dn::NwGeran, 245));
  EXPECT_TRUE(one != Dn(Dn::NwEUtra, 244));
  EXPECT_TRUE(one != Dn(Dn::NwGeran, 244, 0));
  const Dn two(Dn::NwGeran, 244, 91);
  EXPECT_TRUE(two == Dn(Dn::NwGeran, 244, 91));
  EXPECT_TRUE(two != Dn(Dn::NwGeran, 244, 92));
  EXPECT_TRUE(two != Dn(Dn::NwGeran, 244, 91, Dn::L3None, 0));
  const Dn three(Dn::NwGeran, 244, 91, Dn::L3Lac, 1);
  EXPECT_TRUE(three == Dn(Dn::NwGeran, 244, 91, Dn::L3Lac, 1));
  EXPECT_TRUE(three != Dn(Dn::NwGeran, 244, 91, Dn::L3Lac, 2));
  EXPECT_TRUE(three != Dn(Dn::NwGeran, 244, 91, Dn::L3RncId, 1));
  EXPECT_TRUE(three != Dn(Dn::NwGeran, 244, 92, Dn::L3Lac, 1));
}

TEST(CellularObjectDn, DefaultConstructedDiffersFromPlainCreate) {
  EXPECT_TRUE(Dn() == Dn());
  EXPECT_TRUE(Dn() != *Dn::create());
}

TEST(CellularObjectDn, CopiesAssignmentsAndClonesAreEqual) {
  const auto source = Dn::create(Dn::NwGeran, 244, 91, Dn::L3Lac, 1);
  const SharedPointer<Dn> clone(source->clone());
  Dn assigned;
  assigned = *source;
  expectName(Dn::create(source), 3, 1, 244, 91, 1, 1);
  expectName(clone, 3, 1, 244, 91, 1, 1);
  EXPECT_TRUE(assigned == *source);
}

class ACellularObject : public testing::Test {
 protected:
  SharedPointer<Dn> dn = Dn::create(Dn::NwGeran, 244, 91);
  SharedPointer<Area> area = Area::create(1, 2, 3, 4, 5.0F);
  SharedPointer<CellularObject> object = CellularObject::create(dn);
};

TEST_F(ACellularObject, IsMadeWithAName) {
  EXPECT_EQ(object->dn(), dn);
  EXPECT_EQ(object->values(), 0x1U);
  EXPECT_FALSE(object->coverage());
  EXPECT_TRUE(CellularObject::create(SharedPointer<Dn>())->isEmpty());
}

TEST_F(ACellularObject, SharesWhatItIsGiven) {
  const auto other = Dn::create();
  EXPECT_EQ(object->setDn(other), StatusOk);
  EXPECT_EQ(object->setCoverage(area), StatusOk);
  EXPECT_EQ(object->dn(), other);
  EXPECT_EQ(object->coverage(), area);
  EXPECT_EQ(object->values(), 0x3U);
}

TEST_F(ACellularObject, RefusesEmptyHandlesAndKeepsTheOld) {
  EXPECT_EQ(object->setDn(nullptr), StatusWrongState);
  EXPECT_EQ(object->setCoverage(nullptr), StatusWrongState);
  EXPECT_EQ(object->dn(), dn);
  EXPECT_EQ(object->values(), 0x1U);
}

TEST_F(ACellularObject, UnsetLetsGoOfWhatItNames) {
  object->setCoverage(area);
  object->unset(0x2);
  EXPECT_EQ(object->values(), 0x1U);
  EXPECT_FALSE(object->coverage());
  EXPECT_EQ(area->referenceCount(), 1);
  object->unset(0x1);
  EXPECT_TRUE(object->isEmpty());
  EXPECT_EQ(dn->referenceCount(), 1);
}

TEST_F(ACellularObject, ComparesNameAndCoverage) {
  CellularObject other(Dn::create(Dn::NwGeran, 244, 91));
  EXPECT_TRUE(*object == other);
  other.setCoverage(area);
  EXPECT_TRUE(*object != other);
  object->setCoverage(Area::create(1, 2, 3, 4, 5.0F));
  EXPECT_TRUE(*object == other);
  object->setCoverage(Area::create(0, 2, 3, 4, 5.0F));
  EXPECT_TRUE(*object != other);
  object->setCoverage(area);
  object->setDn(Dn::create(Dn::NwGeran, 244, 92));
  EXPECT_TRUE(*object != other);
}

TEST_F(ACellularObject, CopiesAndAssignmentsShareAndClonesDoNot) {
  object->setCoverage(area);
  const auto copy = CellularObject::create(object);
  CellularObject assigned;
  assigned = *object;
  const SharedPointer<CellularObject> clone(object->clone());
  EXPECT_EQ(copy->dn(), dn);
  EXPECT_EQ(copy->coverage(), area);
  EXPECT_EQ(assigned.dn(), dn);
  EXPECT_EQ(assigned.coverage(), area);
  EXPECT_NE(clone->dn(), dn);
  EXPECT_NE(clone->coverage(), area);
  EXPECT_TRUE(*clone == *copy);
}

TEST_F(ACellularObject, CloneFailsWithoutLeaksWhenMemoryRunsOut) {
  object->setCoverage(area);
  dn->extension()->setInt32Property(1, 5);
  test::everyAllocationFails([this] {
    try {
      const SharedPointer<CellularObject> clone(object->clone());
      EXPECT_TRUE(!clone || *clone == *object);
    } catch (const std::bad_alloc&) {
    }
  });
}

}  // namespace
}  // namespace trelvo::schema
