#include <gtest/gtest.h>

#include <string>
#include <utility>

#include <trelvo/gom/GenericObject.h>
#include <trelvo/schema/CdmaCell.h>
#include <trelvo/schema/EUtraCell.h>
#include <trelvo/schema/GeranCell.h>
#include <trelvo/schema/UtraFddCell.h>
#include <trelvo/schema/UtraTddCell.h>

#include "tests/schema/CellularRecord.h"
#include "tests/support/AllocationFailure.h"

namespace trelvo::schema {
namespace {

using gom::SharedPointer;

template <class CellClass, class DnClass, class NeighborClass>
struct CellTechnology {
  using Cell = CellClass;
  using Dn = DnClass;
  using Neighbor = NeighborClass;
};

template <class T>
class EveryCell : public testing::Test {
 protected:
  // A cell with everything, and two neighbours, of which only the second has a coverage.
  EveryCell() {
    second->setCoverage(Area::create(5, 6, 7, 8, 9.0F));
    full->setDn(dn);
    full->setCoverage(area);
    full->neighbors()->add(first);
    full->neighbors()->add(second);
  }

  SharedPointer<typename T::Dn> dn = T::Dn::create();
  SharedPointer<Area> area = Area::create(1, 2, 3, 4, 5.0F);
  SharedPointer<typename T::Neighbor> first = T::Neighbor::create();
  SharedPointer<typename T::Neighbor> second = T::Neighbor::create();
  SharedPointer<typename T::Cell> full = T::Cell::create();
  SharedPointer<typename T::Cell> fresh = T::Cell::create();
};
using CellTechnologies =
    testing::Types<CellTechnology<GeranCell, GeranCellDn, GeranNeighborCell>,
                   CellTechnology<UtraFddCell, UtraCellDn, UtraFddNeighborCell>,
                   CellTechnology<UtraTddCell, UtraCellDn, UtraTddNeighborCell>,
                   CellTechnology<EUtraCell, EUtraCellDn, EUtraNeighborCell>,
                   CellTechnology<CdmaCell, CdmaCellDn, CdmaNeighborCell>>;
TYPED_TEST_SUITE(EveryCell, CellTechnologies, ByTechnology<>);

TYPED_TEST(EveryCell, SharesWhatItIsGiven) {
  EXPECT_EQ(this->fresh->setDn(this->dn), StatusOk);
  EXPECT_EQ(this->fresh->values(), 0x1U);
  EXPECT_EQ(this->fresh->setCoverage(this->area), StatusOk);
  EXPECT_EQ(this->fresh->values(), 0x3U);
  EXPECT_EQ(this->fresh->dn(), this->dn);
  EXPECT_EQ(this->fresh->coverage(), this->area);
}

TYPED_TEST(EveryCell, RefusesEmptyHandlesAndKeepsTheOld) {
  EXPECT_EQ(this->fresh->setDn(nullptr), StatusWrongState);
  EXPECT_EQ(this->fresh->setCoverage(nullptr), StatusWrongState);
  EXPECT_TRUE(this->fresh->isEmpty());
  EXPECT_EQ(this->full->setDn(nullptr), StatusWrongState);
  EXPECT_EQ(this->full->setCoverage(nullptr), StatusWrongState);
  EXPECT_EQ(this->full->dn(), this->dn);
  EXPECT_EQ(this->full->coverage(), this->area);
  EXPECT_EQ(this->full->values(), 0x7U);
}

TYPED_TEST(EveryCell, IsMadeWithAnIdentity) {
  using Cell = typename TypeParam::Cell;
  const auto made = Cell::create(this->dn);
  EXPECT_EQ(made->dn(), this->dn);
  EXPECT_EQ(made->values(), 0x1U);
  const auto without = Cell::create(SharedPointer<typename TypeParam::Dn>());
  ASSERT_TRUE(without);
  EXPECT_TRUE(without->isEmpty());
}

TYPED_TEST(EveryCell, AskingForCurrentNeighborsMakesNoList) {
  EXPECT_EQ(this->fresh->currentNeighbors(), nullptr);
  EXPECT_TRUE(this->fresh->isEmpty());
}

TYPED_TEST(EveryCell, AskingForNeighborsMakesAnEmptyListAndSetsItsBit) {
  ASSERT_NE(this->fresh->neighbors(), nullptr);
  EXPECT_TRUE(this->fresh->valueExists(4));
  EXPECT_FALSE(this->fresh->isEmpty());
  EXPECT_EQ(this->fresh->neighbors()->count(), 0U);
  EXPECT_EQ(this->fresh->neighbors(), this->fresh->currentNeighbors());
  EXPECT_EQ(this->fresh->neighbors()->referenceCount(), 1);
}

TYPED_TEST(EveryCell, NeighborsIsNullAndSetsNoBitWhenMemoryRunsOut) {
  using Cell = typename TypeParam::Cell;
  unsigned int refusals = 0;
  test::everyAllocationFails([&refusals] {
    const auto cell = Cell::create();
    if (cell) {
      const bool made = cell->neighbors() != nullptr;
      EXPECT_EQ(cell->valueExists(4), made);
      refusals += made ? 0 : 1;
    }
  });
  EXPECT_GT(refusals, 0U);
}

TYPED_TEST(EveryCell, UnsetLetsGoOfWhatItNames) {
  this->full->unset(0x1);
  EXPECT_EQ(this->full->values(), 0x6U);
  EXPECT_FALSE(this->full->dn());
  EXPECT_EQ(this->dn->referenceCount(), 1);
  this->full->unset(0x2);
  EXPECT_EQ(this->full->values(), 0x4U);
  EXPECT_FALSE(this->full->coverage());
  EXPECT_EQ(this->area->referenceCount(), 1);
  this->full->unset(0x4);
  EXPECT_TRUE(this->full->isEmpty());
  EXPECT_EQ(this->full->currentNeighbors(), nullptr);
  EXPECT_EQ(this->first->referenceCount(), 1);
}

TYPED_TEST(EveryCell, UnsetOfTheNeighborsDropsThemForGood) {
  this->full->unset(0x4);
  EXPECT_EQ(this->full->neighbors()->count(), 0U);
}

TYPED_TEST(EveryCell, CopySharesTheNeighborsButHasAListOfItsOwn) {
  using Cell = typename TypeParam::Cell;
  const auto copy = Cell::create(this->full);
  EXPECT_EQ(copy->values(), 0x7U);
  EXPECT_EQ(copy->dn(), this->dn);
  EXPECT_EQ(copy->coverage(), this->area);
  ASSERT_EQ(copy->currentNeighbors()->count(), 2U);
  EXPECT_EQ(copy->currentNeighbors()->items[0], this->first);
  EXPECT_EQ(copy->currentNeighbors()->items[1], this->second);
  EXPECT_TRUE(*copy == *this->full);
  copy->neighbors()->add(TypeParam::Neighbor::create());
  EXPECT_EQ(this->full->neighbors()->count(), 2U);
  EXPECT_TRUE(*copy != *this->full);
}

TYPED_TEST(EveryCell, CopyWithoutNeighborsHasNone) {
  using Cell = typename TypeParam::Cell;
  const Cell copy(*this->fresh);
  EXPECT_TRUE(copy.isEmpty());
  EXPECT_EQ(copy.currentNeighbors(), nullptr);
}

TYPED_TEST(EveryCell, CopyWithoutMemoryForItsListHasNoneAndItsBitIsClear) {
  using Cell = typename TypeParam::Cell;
  unsigned int lists = 0;
  unsigned int refusals = 0;
  test::everyAllocationFails([this, &lists, &refusals] {
    const Cell copy(*this->full);
    EXPECT_EQ(copy.dn(), this->dn);
    EXPECT_EQ(copy.valueExists(4), copy.currentNeighbors() != nullptr);
    EXPECT_EQ(copy.values() & 0x3U, 0x3U);
    if (copy.currentNeighbors() != nullptr) {
      ++lists;
      EXPECT_EQ(copy.currentNeighbors()->count(), 2U);
    } else {
      ++refusals;
    }
  });
  EXPECT_GT(lists, 0U);
  EXPECT_GT(refusals, 0U);
}

TYPED_TEST(EveryCell, AssignmentSharesTheListToo) {
  using Cell = typename TypeParam::Cell;
  Cell assigned;
  assigned.neighbors();
  assigned = *this->full;
  EXPECT_EQ(assigned.dn(), this->dn);
  EXPECT_EQ(assigned.coverage(), this->area);
  EXPECT_EQ(assigned.currentNeighbors(), this->full->currentNeighbors());
  assigned.neighbors()->add(TypeParam::Neighbor::create());
  EXPECT_EQ(this->full->neighbors()->count(), 3U);
}

TYPED_TEST(EveryCell, AssignmentToItselfKeepsEverything) {
  auto& self = *this->full;
  *this->full = self;
  EXPECT_EQ(this->full->values(), 0x7U);
  EXPECT_EQ(this->full->currentNeighbors()->count(), 2U);
  EXPECT_EQ(this->dn->referenceCount(), 2);
}

TYPED_TEST(EveryCell, CloneHasPartsAndNeighborsOfItsOwn) {
  using Cell = typename TypeParam::Cell;
  const SharedPointer<Cell> clone(this->full->clone());
  EXPECT_NE(clone->dn(), this->dn);
  EXPECT_NE(clone->coverage(), this->area);
  EXPECT_NE(clone->currentNeighbors(), this->full->currentNeighbors());
  ASSERT_EQ(clone->currentNeighbors()->count(), 2U);
  EXPECT_NE(clone->currentNeighbors()->items[0], this->first);
  EXPECT_NE(clone->currentNeighbors()->items[1]->coverage(), this->second->coverage());
  EXPECT_TRUE(*clone == *this->full);
}

TYPED_TEST(EveryCell, CloneFailsWithoutLeaksWhenMemoryRunsOut) {
  using Cell = typename TypeParam::Cell;
  test::everyAllocationFails([this] {
    try {
      const SharedPointer<Cell> clone(this->full->clone());
      EXPECT_TRUE(!clone || *clone == *this->full);
    } catch (const std::bad_alloc&) {
    }
  });
}

TYPED_TEST(EveryCell, NullNeighborMakesTheCloneFail) {
  this->full->neighbors()->add(nullptr);
  EXPECT_EQ(this->full->clone(), nullptr);
}

TYPED_TEST(EveryCell, ComparesIdentityAndCoverage) {
  using Cell = typename TypeParam::Cell;
  using Dn = typename TypeParam::Dn;
  const Cell cell(this->dn);
  EXPECT_TRUE(cell == Cell(Dn::create()));
  EXPECT_TRUE(cell != Cell());
  Cell covered(this->dn);
  covered.setCoverage(this->area);
  EXPECT_TRUE(covered != cell);
  Cell other(this->dn);
  other.setCoverage(Area::create(1, 2, 3, 5, 5.0F));
  EXPECT_TRUE(covered != other);
  other.setCoverage(Area::create(1, 2, 3, 4, 5.0F));
  EXPECT_TRUE(covered == other);
  const auto different = Dn::create();
  different->extension()->setInt32Property(1, 5);
  EXPECT_TRUE(Cell(different) != cell);
}

TYPED_TEST(EveryCell, ComparesNeighborsPairwiseInOrder) {
  using Cell = typename TypeParam::Cell;
  const SharedPointer<Cell> same(this->full->clone());
  EXPECT_TRUE(*same == *this->full);
  std::swap(same->neighbors()->items[0], same->neighbors()->items[1]);
  EXPECT_TRUE(*same != *this->full);
  std::swap(same->neighbors()->items[0], same->neighbors()->items[1]);
  same->neighbors()->items.pop_back();
  EXPECT_TRUE(*same != *this->full);
}

TYPED_TEST(EveryCell, EmptyListDiffersFromNone) {
  using Cell = typename TypeParam::Cell;
  this->fresh->neighbors();
  EXPECT_TRUE(*this->fresh != Cell());
}

// Notes down the order of dumps.
template <class T>
class Spy : public T {
 public:
  Spy(std::string& log, char mark) : m_log(log), m_mark(mark) {}
  void dump() const override { m_log += m_mark; }

 private:
  std::string& m_log;
  char m_mark;
};

TYPED_TEST(EveryCell, DumpsWhatIsPresentWithTheNeighborsInOrder) {
  using Dn = typename TypeParam::Dn;
  using Neighbor = typename TypeParam::Neighbor;
  std::string log;
  this->fresh->setCoverage(SharedPointer<Area>(new Spy<Area>(log, 'c')));
  this->fresh->setDn(SharedPointer<Dn>(new Spy<Dn>(log, 'd')));
  this->fresh->neighbors()->add(SharedPointer<Neighbor>(new Spy<Neighbor>(log, '1')));
  this->fresh->neighbors()->add(SharedPointer<Neighbor>(new Spy<Neighbor>(log, '2')));
  this->fresh->dump();
  EXPECT_EQ(log, "dc12");
  this->fresh->unset(0x1);
  this->fresh->dump();
  EXPECT_EQ(log, "dc12c12");
}

// Bits cleared behind the class's back leave the objects in place: what follows the pointer and
// what follows the bit come apart.
TYPED_TEST(EveryCell, GettersFollowTheBitAndCloneFollowsThePointer) {
  using Cell = typename TypeParam::Cell;
  this->full->gom::ObjectBase::unset(0x7);
  EXPECT_FALSE(this->full->dn());
  EXPECT_FALSE(this->full->coverage());
  EXPECT_EQ(this->full->currentNeighbors(), nullptr);
  const SharedPointer<Cell> clone(this->full->clone());
  EXPECT_TRUE(clone->isEmpty());
  EXPECT_TRUE(*clone == *this->full);
  EXPECT_TRUE(*clone != Cell());
  EXPECT_EQ(clone->neighbors()->count(), 2U);
}

}  // namespace
}  // namespace trelvo::schema
