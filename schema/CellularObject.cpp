// Areas of cells, and their names.

#include <trelvo/schema/CellularObject.h>
#include <trelvo/schema/CellularObjectDn.h>

#include <memory>

#include "objects/FieldTable.h"
#include "objects/MakeObject.h"
#include "schema/ClassIds.h"

namespace trelvo::schema {

// CellularObjectDn has no table of fields: it has no presence bits, and how many layers count
// follows from its first field.

namespace {

/// The name of `idType` layers that a cell's own numbers give; an empty handle for an `idType` that
/// names no number of layers.
gom::SharedPointer<CellularObjectDn> nameOf(CellularObjectDn::IdType idType,
                                            CellularObjectDn::NwType nwType, unsigned short layer1,
                                            unsigned short layer2,
                                            CellularObjectDn::L3IdType l3IdType,
                                            unsigned int layer3) {
  switch (idType) {
    case CellularObjectDn::Layer1:
      return CellularObjectDn::create(nwType, layer1);
    case CellularObjectDn::Layer2:
      return CellularObjectDn::create(nwType, layer1, layer2);
    case CellularObjectDn::Layer3:
      return CellularObjectDn::create(nwType, layer1, layer2, l3IdType, layer3);
  }
  return {};
}

}  // namespace

CellularObjectDn::CellularObjectDn() : ObjectBase(kCellularObjectDn) {}

CellularObjectDn::CellularObjectDn(NwType nwType, unsigned short layer1)
    : ObjectBase(kCellularObjectDn), m_idType(Layer1), m_nwType(nwType), m_layer1(layer1) {}

CellularObjectDn::CellularObjectDn(NwType nwType, unsigned short layer1, unsigned short layer2)
    : ObjectBase(kCellularObjectDn),
      m_idType(Layer2),
      m_nwType(nwType),
      m_layer1(layer1),
      m_layer2(layer2) {}

CellularObjectDn::CellularObjectDn(NwType nwType, unsigned short layer1, unsigned short layer2,
                                   L3IdType l3IdType, unsigned int layer3)
    : ObjectBase(kCellularObjectDn),
      m_idType(Layer3),
      m_nwType(nwType),
      m_layer1(layer1),
      m_layer2(layer2),
      m_l3IdType(l3IdType),
      m_layer3(layer3) {}

gom::SharedPointer<CellularObjectDn> CellularObjectDn::create() { return create(NwUnknown, 0); }

gom::SharedPointer<CellularObjectDn> CellularObjectDn::create(NwType nwType,
                                                              unsigned short layer1) {
  return gom::makeObject<CellularObjectDn>(nwType, layer1);
}

gom::SharedPointer<CellularObjectDn> CellularObjectDn::create(NwType nwType, unsigned short layer1,
                                                              unsigned short layer2) {
  return gom::makeObject<CellularObjectDn>(nwType, layer1, layer2);
}

gom::SharedPointer<CellularObjectDn> CellularObjectDn::create(NwType nwType, unsigned short layer1,
                                                              unsigned short layer2,
                                                              L3IdType l3IdType,
                                                              unsigned int layer3) {
  return gom::makeObject<CellularObjectDn>(nwType, layer1, layer2, l3IdType, layer3);
}

gom::SharedPointer<CellularObjectDn> CellularObjectDn::create(
    const gom::SharedPointer<CellularObjectDn>& other) {
  return gom::copyObject(other);
}

gom::SharedPointer<CellularObjectDn> CellularObjectDn::create(
    const gom::SharedPointer<GeranCellDn>& cell, IdType idType) {
  if (!cell) {
    return {};
  }
  return nameOf(idType, NwGeran, cell->mcc(), cell->mnc(), L3Lac, cell->lac());
}

gom::SharedPointer<CellularObjectDn> CellularObjectDn::create(
    NwType nwType, const gom::SharedPointer<UtraCellDn>& cell, IdType idType) {
  if (!cell) {
    return {};
  }
  return nameOf(idType, nwType, cell->mcc(), cell->mnc(), L3RncId, cell->rncId());
}

gom::SharedPointer<CellularObjectDn> CellularObjectDn::create(
    const gom::SharedPointer<EUtraCellDn>& cell, IdType idType) {
  if (!cell) {
    return {};
  }
  return nameOf(idType, NwEUtra, cell->mcc(), cell->mnc(), L3ENodeBId, cell->eNodeBId());
}

gom::SharedPointer<CellularObjectDn> CellularObjectDn::create(
    const gom::SharedPointer<CdmaCellDn>& cell, IdType idType) {
  if (!cell || idType == Layer3) {
    return {};
  }
  return nameOf(idType, NwCdma, cell->sid(), cell->nid(), L3None, 0);
}

void CellularObjectDn::dump() const {}

CellularObjectDn* CellularObjectDn::clone() const {
  auto copy = std::make_unique<CellularObjectDn>(*this);
  return copy->cloneFrom(*this) == StatusOk ? copy.release() : nullptr;
}

bool CellularObjectDn::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}

bool CellularObjectDn::operator==(const CellularObjectDn& other) const {
  if (m_idType != other.m_idType || m_nwType != other.m_nwType || m_layer1 != other.m_layer1) {
    return false;
  }
  if (m_idType >= Layer2 && m_layer2 != other.m_layer2) {
    return false;
  }
  if (m_idType >= Layer3 && (m_l3IdType != other.m_l3IdType || m_layer3 != other.m_layer3)) {
    return false;
  }
  return ObjectBase::operator==(other);
}

struct CellularObject::Fields
    : gom::FieldTable<gom::NoWireForm, gom::Field<HasDn, &CellularObject::m_dn>,
                      gom::Field<HasCoverage, &CellularObject::m_coverage>> {};

CellularObject::CellularObject() : ObjectBase(kCellularObject) {}

CellularObject::CellularObject(const gom::SharedPointer<CellularObjectDn>& dn) : CellularObject() {
  setDn(dn);
}

gom::SharedPointer<CellularObject> CellularObject::create() {
  return gom::makeObject<CellularObject>();
}
gom::SharedPointer<CellularObject> CellularObject::create(
    const gom::SharedPointer<CellularObjectDn>& dn) {
  return gom::makeObject<CellularObject>(dn);
}
gom::SharedPointer<CellularObject> CellularObject::create(
    const gom::SharedPointer<CellularObject>& other) {
  return gom::copyObject(other);
}

void CellularObject::dump() const { gom::dumpNested<Fields>(*this); }
CellularObject* CellularObject::clone() const { return gom::cloneRecord<Fields>(*this); }
bool CellularObject::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
void CellularObject::unset(unsigned int mask) {
  gom::releaseHandles<Fields>(*this, mask);
  ObjectBase::unset(mask);
}
bool CellularObject::operator==(const CellularObject& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

gom::SharedPointer<CellularObjectDn> CellularObject::dn() const { return fieldIfSet(HasDn, m_dn); }
Status CellularObject::setDn(const gom::SharedPointer<CellularObjectDn>& dn) {
  return setField(HasDn, m_dn, dn);
}
gom::SharedPointer<Area> CellularObject::coverage() const {
  return fieldIfSet(HasCoverage, m_coverage);
}
Status CellularObject::setCoverage(const gom::SharedPointer<Area>& coverage) {
  return setField(HasCoverage, m_coverage, coverage);
}

}  // namespace trelvo::schema
