// The cells of the radio technologies.

#include <trelvo/schema/CdmaCell.h>
#include <trelvo/schema/EUtraCell.h>
#include <trelvo/schema/GeranCell.h>
#include <trelvo/schema/UtraFddCell.h>
#include <trelvo/schema/UtraTddCell.h>

#include "objects/FieldTable.h"
#include "objects/MakeObject.h"
#include "schema/ClassIds.h"

namespace trelvo::schema {

/// What the cells of all radio technologies do with their lists of neighbours. Each class declares
/// it a friend.
struct CellFamily {
  /// Ends a copy: gives `cell` a list of its own, with the same neighbours in it.
  template <class Cell>
  static void separateNeighbors(Cell& cell) {
    if (!cell.currentNeighbors()) {
      return;
    }
    cell.m_neighbors = Cell::Neighbors::create(*cell.m_neighbors);
    if (!cell.m_neighbors) {
      cell.valueUnset(Cell::HasNeighbors);
    }
  }

  /// The list, made when there is none; null when memory runs out.
  template <class Cell>
  static typename Cell::Neighbors* neighbors(Cell& cell) {
    if (!cell.m_neighbors) {
      cell.m_neighbors = Cell::Neighbors::create();
    }
    if (cell.m_neighbors) {
      cell.valueSet(Cell::HasNeighbors);
    }
    return cell.m_neighbors.get();
  }
};

// GERAN

struct GeranCell::Fields : gom::FieldTable<gom::NoWireForm, gom::Field<HasDn, &GeranCell::m_dn>,
                                           gom::Field<HasCoverage, &GeranCell::m_coverage>,
                                           gom::Field<HasNeighbors, &GeranCell::m_neighbors>> {};

GeranCell::GeranCell() : ObjectBase(kGeranCell) {}

GeranCell::GeranCell(const gom::SharedPointer<GeranCellDn>& dn) : GeranCell() { setDn(dn); }

GeranCell::GeranCell(const GeranCell& other)
    : ObjectBase(other),
      m_dn(other.m_dn),
      m_coverage(other.m_coverage),
      m_neighbors(other.m_neighbors) {
  CellFamily::separateNeighbors(*this);
}

gom::SharedPointer<GeranCell> GeranCell::create() { return gom::makeObject<GeranCell>(); }
gom::SharedPointer<GeranCell> GeranCell::create(const gom::SharedPointer<GeranCellDn>& dn) {
  return gom::makeObject<GeranCell>(dn);
}
gom::SharedPointer<GeranCell> GeranCell::create(const gom::SharedPointer<GeranCell>& other) {
  return gom::copyObject(other);
}

void GeranCell::dump() const { gom::dumpNested<Fields>(*this); }
GeranCell* GeranCell::clone() const { return gom::cloneRecord<Fields>(*this); }
bool GeranCell::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
void GeranCell::unset(unsigned int mask) {
  gom::releaseHandles<Fields>(*this, mask);
  ObjectBase::unset(mask);
}
bool GeranCell::operator==(const GeranCell& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

gom::SharedPointer<GeranCellDn> GeranCell::dn() const { return fieldIfSet(HasDn, m_dn); }
Status GeranCell::setDn(const gom::SharedPointer<GeranCellDn>& dn) {
  return setField(HasDn, m_dn, dn);
}
gom::SharedPointer<Area> GeranCell::coverage() const { return fieldIfSet(HasCoverage, m_coverage); }
Status GeranCell::setCoverage(const gom::SharedPointer<Area>& coverage) {
  return setField(HasCoverage, m_coverage, coverage);
}

GeranCell::Neighbors* GeranCell::neighbors() { return CellFamily::neighbors(*this); }
GeranCell::Neighbors* GeranCell::currentNeighbors() const {
  return fieldIfSet(HasNeighbors, m_neighbors).get();
}

// UTRA FDD

struct UtraFddCell::Fields : gom::FieldTable<gom::NoWireForm, gom::Field<HasDn, &UtraFddCell::m_dn>,
                                             gom::Field<HasCoverage, &UtraFddCell::m_coverage>,
                                             gom::Field<HasNeighbors, &UtraFddCell::m_neighbors>> {
};

UtraFddCell::UtraFddCell() : ObjectBase(kUtraFddCell) {}

UtraFddCell::UtraFddCell(const gom::SharedPointer<UtraCellDn>& dn) : UtraFddCell() { setDn(dn); }

UtraFddCell::UtraFddCell(const UtraFddCell& other)
    : ObjectBase(other),
      m_dn(other.m_dn),
      m_coverage(other.m_coverage),
      m_neighbors(other.m_neighbors) {
  CellFamily::separateNeighbors(*this);
}

gom::SharedPointer<UtraFddCell> UtraFddCell::create() { return gom::makeObject<UtraFddCell>(); }
gom::SharedPointer<UtraFddCell> UtraFddCell::create(const gom::SharedPointer<UtraCellDn>& dn) {
  return gom::makeObject<UtraFddCell>(dn);
}
gom::SharedPointer<UtraFddCell> UtraFddCell::create(const gom::SharedPointer<UtraFddCell>& other) {
  return gom::copyObject(other);
}

void UtraFddCell::dump() const { gom::dumpNested<Fields>(*this); }
UtraFddCell* UtraFddCell::clone() const { return gom::cloneRecord<Fields>(*this); }
bool UtraFddCell::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
void UtraFddCell::unset(unsigned int mask) {
  gom::releaseHandles<Fields>(*this, mask);
  ObjectBase::unset(mask);
}
bool UtraFddCell::operator==(const UtraFddCell& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

gom::SharedPointer<UtraCellDn> UtraFddCell::dn() const { return fieldIfSet(HasDn, m_dn); }
Status UtraFddCell::setDn(const gom::SharedPointer<UtraCellDn>& dn) {
  return setField(HasDn, m_dn, dn);
}
gom::SharedPointer<Area> UtraFddCell::coverage() const {
  return fieldIfSet(HasCoverage, m_coverage);
}
Status UtraFddCell::setCoverage(const gom::SharedPointer<Area>& coverage) {
  return setField(HasCoverage, m_coverage, coverage);
}

UtraFddCell::Neighbors* UtraFddCell::neighbors() { return CellFamily::neighbors(*this); }
UtraFddCell::Neighbors* UtraFddCell::currentNeighbors() const {
  return fieldIfSet(HasNeighbors, m_neighbors).get();
}

// UTRA TDD

struct UtraTddCell::Fields : gom::FieldTable<gom::NoWireForm, gom::Field<HasDn, &UtraTddCell::m_dn>,
                                             gom::Field<HasCoverage, &UtraTddCell::m_coverage>,
                                             gom::Field<HasNeighbors, &UtraTddCell::m_neighbors>> {
};

UtraTddCell::UtraTddCell() : ObjectBase(kUtraTddCell) {}

UtraTddCell::UtraTddCell(const gom::SharedPointer<UtraCellDn>& dn) : UtraTddCell() { setDn(dn); }

UtraTddCell::UtraTddCell(const UtraTddCell& other)
    : ObjectBase(other),
      m_dn(other.m_dn),
      m_coverage(other.m_coverage),
      m_neighbors(other.m_neighbors) {
  CellFamily::separateNeighbors(*this);
}

gom::SharedPointer<UtraTddCell> UtraTddCell::create() { return gom::makeObject<UtraTddCell>(); }
gom::SharedPointer<UtraTddCell> UtraTddCell::create(const gom::SharedPointer<UtraCellDn>& dn) {
  return gom::makeObject<UtraTddCell>(dn);
}
gom::SharedPointer<UtraTddCell> UtraTddCell::create(const gom::SharedPointer<UtraTddCell>& other) {
  return gom::copyObject(other);
}

void UtraTddCell::dump() const { gom::dumpNested<Fields>(*this); }
UtraTddCell* UtraTddCell::clone() const { return gom::cloneRecord<Fields>(*this); }
bool UtraTddCell::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
void UtraTddCell::unset(unsigned int mask) {
  gom::releaseHandles<Fields>(*this, mask);
  ObjectBase::unset(mask);
}
bool UtraTddCell::operator==(const UtraTddCell& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

gom::SharedPointer<UtraCellDn> UtraTddCell::dn() const { return fieldIfSet(HasDn, m_dn); }
Status UtraTddCell::setDn(const gom::SharedPointer<UtraCellDn>& dn) {
  return setField(HasDn, m_dn, dn);
}
gom::SharedPointer<Area> UtraTddCell::coverage() const {
  return fieldIfSet(HasCoverage, m_coverage);
}
Status UtraTddCell::setCoverage(const gom::SharedPointer<Area>& coverage) {
  return setField(HasCoverage, m_coverage, coverage);
}

UtraTddCell::Neighbors* UtraTddCell::neighbors() { return CellFamily::neighbors(*this); }
UtraTddCell::Neighbors* UtraTddCell::currentNeighbors() const {
  return fieldIfSet(HasNeighbors, m_neighbors).get();
}

// E-UTRA

struct EUtraCell::Fields : gom::FieldTable<gom::NoWireForm, gom::Field<HasDn, &EUtraCell::m_dn>,
                                           gom::Field<HasCoverage, &EUtraCell::m_coverage>,
                                           gom::Field<HasNeighbors, &EUtraCell::m_neighbors>> {};

EUtraCell::EUtraCell() : ObjectBase(kEUtraCell) {}

EUtraCell::EUtraCell(const gom::SharedPointer<EUtraCellDn>& dn) : EUtraCell() { setDn(dn); }

EUtraCell::EUtraCell(const EUtraCell& other)
    : ObjectBase(other),
      m_dn(other.m_dn),
      m_coverage(other.m_coverage),
      m_neighbors(other.m_neighbors) {
  CellFamily::separateNeighbors(*this);
}

gom::SharedPointer<EUtraCell> EUtraCell::create() { return gom::makeObject<EUtraCell>(); }
gom::SharedPointer<EUtraCell> EUtraCell::create(const gom::SharedPointer<EUtraCellDn>& dn) {
  return gom::makeObject<EUtraCell>(dn);
}
gom::SharedPointer<EUtraCell> EUtraCell::create(const gom::SharedPointer<EUtraCell>& other) {
  return gom::copyObject(other);
}

void EUtraCell::dump() const { gom::dumpNested<Fields>(*this); }
EUtraCell* EUtraCell::clone() const { return gom::cloneRecord<Fields>(*this); }
bool EUtraCell::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
void EUtraCell::unset(unsigned int mask) {
  gom::releaseHandles<Fields>(*this, mask);
  ObjectBase::unset(mask);
}
bool EUtraCell::operator==(const EUtraCell& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

gom::SharedPointer<EUtraCellDn> EUtraCell::dn() const { return fieldIfSet(HasDn, m_dn); }
Status EUtraCell::setDn(const gom::SharedPointer<EUtraCellDn>& dn) {
  return setField(HasDn, m_dn, dn);
}
gom::SharedPointer<Area> EUtraCell::coverage() const { return fieldIfSet(HasCoverage, m_coverage); }
Status EUtraCell::setCoverage(const gom::SharedPointer<Area>& coverage) {
  return setField(HasCoverage, m_coverage, coverage);
}

EUtraCell::Neighbors* EUtraCell::neighbors() { return CellFamily::neighbors(*this); }
EUtraCell::Neighbors* EUtraCell::currentNeighbors() const {
  return fieldIfSet(HasNeighbors, m_neighbors).get();
}

// CDMA

struct CdmaCell::Fields : gom::FieldTable<gom::NoWireForm, gom::Field<HasDn, &CdmaCell::m_dn>,
                                          gom::Field<HasCoverage, &CdmaCell::m_coverage>,
                                          gom::Field<HasNeighbors, &CdmaCell::m_neighbors>> {};

CdmaCell::CdmaCell() : ObjectBase(kCdmaCell) {}

CdmaCell::CdmaCell(const gom::SharedPointer<CdmaCellDn>& dn) : CdmaCell() { setDn(dn); }

CdmaCell::CdmaCell(const CdmaCell& other)
    : ObjectBase(other),
      m_dn(other.m_dn),
      m_coverage(other.m_coverage),
      m_neighbors(other.m_neighbors) {
  CellFamily::separateNeighbors(*this);
}

gom::SharedPointer<CdmaCell> CdmaCell::create() { return gom::makeObject<CdmaCell>(); }
gom::SharedPointer<CdmaCell> CdmaCell::create(const gom::SharedPointer<CdmaCellDn>& dn) {
  return gom::makeObject<CdmaCell>(dn);
}
gom::SharedPointer<CdmaCell> CdmaCell::create(const gom::SharedPointer<CdmaCell>& other) {
  return gom::copyObject(other);
}

void CdmaCell::dump() const { gom::dumpNested<Fields>(*this); }
CdmaCell* CdmaCell::clone() const { return gom::cloneRecord<Fields>(*this); }
bool CdmaCell::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
void CdmaCell::unset(unsigned int mask) {
  gom::releaseHandles<Fields>(*this, mask);
  ObjectBase::unset(mask);
}
bool CdmaCell::operator==(const CdmaCell& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

gom::SharedPointer<CdmaCellDn> CdmaCell::dn() const { return fieldIfSet(HasDn, m_dn); }
Status CdmaCell::setDn(const gom::SharedPointer<CdmaCellDn>& dn) {
  return setField(HasDn, m_dn, dn);
}
gom::SharedPointer<Area> CdmaCell::coverage() const { return fieldIfSet(HasCoverage, m_coverage); }
Status CdmaCell::setCoverage(const gom::SharedPointer<Area>& coverage) {
  return setField(HasCoverage, m_coverage, coverage);
}

CdmaCell::Neighbors* CdmaCell::neighbors() { return CellFamily::neighbors(*this); }
CdmaCell::Neighbors* CdmaCell::currentNeighbors() const {
  return fieldIfSet(HasNeighbors, m_neighbors).get();
}

}  // namespace trelvo::schema
