// The entries in the cells' lists of neighbours, for the five radio technologies.

#include <trelvo/schema/CdmaNeighborCell.h>
#include <trelvo/schema/EUtraNeighborCell.h>
#include <trelvo/schema/GeranNeighborCell.h>
#include <trelvo/schema/UtraFddNeighborCell.h>
#include <trelvo/schema/UtraTddNeighborCell.h>

#include "objects/FieldTable.h"
#include "objects/MakeObject.h"
#include "schema/ClassIds.h"

namespace trelvo::schema {

// GERAN

struct GeranNeighborCell::Fields
    : gom::FieldTable<gom::NoWireForm,
                      gom::Field<HasFrequencyInfo, &GeranNeighborCell::m_frequencyInfo>,
                      gom::Field<HasCoverage, &GeranNeighborCell::m_coverage>,
                      gom::NotCompared<HasLac, &GeranNeighborCell::m_lac>,
                      gom::NotCompared<HasCid, &GeranNeighborCell::m_cid>> {};

GeranNeighborCell::GeranNeighborCell() : ObjectBase(kGeranNeighborCell) {}

GeranNeighborCell::GeranNeighborCell(const gom::SharedPointer<GeranFrequencyInfo>& frequencyInfo)
    : GeranNeighborCell() {
  setFrequencyInfo(frequencyInfo);
}

gom::SharedPointer<GeranNeighborCell> GeranNeighborCell::create() {
  return gom::makeObject<GeranNeighborCell>();
}
gom::SharedPointer<GeranNeighborCell> GeranNeighborCell::create(
    const gom::SharedPointer<GeranFrequencyInfo>& frequencyInfo) {
  return gom::makeObject<GeranNeighborCell>(frequencyInfo);
}
gom::SharedPointer<GeranNeighborCell> GeranNeighborCell::create(
    const gom::SharedPointer<GeranNeighborCell>& other) {
  return gom::copyObject(other);
}

void GeranNeighborCell::dump() const { gom::dumpNested<Fields>(*this); }
GeranNeighborCell* GeranNeighborCell::clone() const { return gom::cloneRecord<Fields>(*this); }
bool GeranNeighborCell::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
void GeranNeighborCell::unset(unsigned int mask) {
  gom::releaseHandles<Fields>(*this, mask);
  ObjectBase::unset(mask);
}
bool GeranNeighborCell::operator==(const GeranNeighborCell& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

gom::SharedPointer<GeranFrequencyInfo> GeranNeighborCell::frequencyInfo() const {
  return fieldIfSet(HasFrequencyInfo, m_frequencyInfo);
}
Status GeranNeighborCell::setFrequencyInfo(
    const gom::SharedPointer<GeranFrequencyInfo>& frequencyInfo) {
  return setField(HasFrequencyInfo, m_frequencyInfo, frequencyInfo);
}
gom::SharedPointer<Area> GeranNeighborCell::coverage() const {
  return fieldIfSet(HasCoverage, m_coverage);
}
Status GeranNeighborCell::setCoverage(const gom::SharedPointer<Area>& coverage) {
  return setField(HasCoverage, m_coverage, coverage);
}
Status GeranNeighborCell::setLac(unsigned short lac) { return setField(HasLac, m_lac, lac); }
Status GeranNeighborCell::setCid(unsigned short cid) { return setField(HasCid, m_cid, cid); }

// UTRA FDD

struct UtraFddNeighborCell::Fields
    : gom::FieldTable<gom::NoWireForm,
                      gom::Field<HasFrequencyInfo, &UtraFddNeighborCell::m_frequencyInfo>,
                      gom::Field<HasCoverage, &UtraFddNeighborCell::m_coverage>> {};

UtraFddNeighborCell::UtraFddNeighborCell() : ObjectBase(kUtraFddNeighborCell) {}

UtraFddNeighborCell::UtraFddNeighborCell(
    const gom::SharedPointer<UtraFddFrequencyInfo>& frequencyInfo)
    : UtraFddNeighborCell() {
  setFrequencyInfo(frequencyInfo);
}

gom::SharedPointer<UtraFddNeighborCell> UtraFddNeighborCell::create() {
  return gom::makeObject<UtraFddNeighborCell>();
}
gom::SharedPointer<UtraFddNeighborCell> UtraFddNeighborCell::create(
    const gom::SharedPointer<UtraFddFrequencyInfo>& frequencyInfo) {
  return gom::makeObject<UtraFddNeighborCell>(frequencyInfo);
}
gom::SharedPointer<UtraFddNeighborCell> UtraFddNeighborCell::create(
    const gom::SharedPointer<UtraFddNeighborCell>& other) {
  return gom::copyObject(other);
}

void UtraFddNeighborCell::dump() const { gom::dumpNested<Fields>(*this); }
UtraFddNeighborCell* UtraFddNeighborCell::clone() const { return gom::cloneRecord<Fields>(*this); }
bool UtraFddNeighborCell::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
void UtraFddNeighborCell::unset(unsigned int mask) {
  gom::releaseHandles<Fields>(*this, mask);
  ObjectBase::unset(mask);
}
bool UtraFddNeighborCell::operator==(const UtraFddNeighborCell& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

gom::SharedPointer<UtraFddFrequencyInfo> UtraFddNeighborCell::frequencyInfo() const {
  return fieldIfSet(HasFrequencyInfo, m_frequencyInfo);
}
Status UtraFddNeighborCell::setFrequencyInfo(
    const gom::SharedPointer<UtraFddFrequencyInfo>& frequencyInfo) {
  return setField(HasFrequencyInfo, m_frequencyInfo, frequencyInfo);
}
gom::SharedPointer<Area> UtraFddNeighborCell::coverage() const {
  return fieldIfSet(HasCoverage, m_coverage);
}
Status UtraFddNeighborCell::setCoverage(const gom::SharedPointer<Area>& coverage) {
  return setField(HasCoverage, m_coverage, coverage);
}

// UTRA TDD

struct UtraTddNeighborCell::Fields
    : gom::FieldTable<gom::NoWireForm,
                      gom::Field<HasFrequencyInfo, &UtraTddNeighborCell::m_frequencyInfo>,
                      gom::Field<HasCoverage, &UtraTddNeighborCell::m_coverage>> {};

UtraTddNeighborCell::UtraTddNeighborCell() : ObjectBase(kUtraTddNeighborCell) {}

UtraTddNeighborCell::UtraTddNeighborCell(
    const gom::SharedPointer<UtraTddFrequencyInfo>& frequencyInfo)
    : UtraTddNeighborCell() {
  setFrequencyInfo(frequencyInfo);
}

gom::SharedPointer<UtraTddNeighborCell> UtraTddNeighborCell::create() {
  return gom::makeObject<UtraTddNeighborCell>();
}
gom::SharedPointer<UtraTddNeighborCell> UtraTddNeighborCell::create(
    const gom::SharedPointer<UtraTddFrequencyInfo>& frequencyInfo) {
  return gom::makeObject<UtraTddNeighborCell>(frequencyInfo);
}
gom::SharedPointer<UtraTddNeighborCell> UtraTddNeighborCell::create(
    const gom::SharedPointer<UtraTddNeighborCell>& other) {
  return gom::copyObject(other);
}

void UtraTddNeighborCell::dump() const { gom::dumpNested<Fields>(*this); }
UtraTddNeighborCell* UtraTddNeighborCell::clone() const { return gom::cloneRecord<Fields>(*this); }
bool UtraTddNeighborCell::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
void UtraTddNeighborCell::unset(unsigned int mask) {
  gom::releaseHandles<Fields>(*this, mask);
  ObjectBase::unset(mask);
}
bool UtraTddNeighborCell::operator==(const UtraTddNeighborCell& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

gom::SharedPointer<UtraTddFrequencyInfo> UtraTddNeighborCell::frequencyInfo() const {
  return fieldIfSet(HasFrequencyInfo, m_frequencyInfo);
}
Status UtraTddNeighborCell::setFrequencyInfo(
    const gom::SharedPointer<UtraTddFrequencyInfo>& frequencyInfo) {
  return setField(HasFrequencyInfo, m_frequencyInfo, frequencyInfo);
}
gom::SharedPointer<Area> UtraTddNeighborCell::coverage() const {
  return fieldIfSet(HasCoverage, m_coverage);
}
Status UtraTddNeighborCell::setCoverage(const gom::SharedPointer<Area>& coverage) {
  return setField(HasCoverage, m_coverage, coverage);
}

// E-UTRA

struct EUtraNeighborCell::Fields
    : gom::FieldTable<gom::NoWireForm,
                      gom::Field<HasFrequencyInfo, &EUtraNeighborCell::m_frequencyInfo>,
                      gom::Field<HasCoverage, &EUtraNeighborCell::m_coverage>> {};

EUtraNeighborCell::EUtraNeighborCell() : ObjectBase(kEUtraNeighborCell) {}

EUtraNeighborCell::EUtraNeighborCell(const gom::SharedPointer<EUtraFrequencyInfo>& frequencyInfo)
    : EUtraNeighborCell() {
  setFrequencyInfo(frequencyInfo);
}

gom::SharedPointer<EUtraNeighborCell> EUtraNeighborCell::create() {
  return gom::makeObject<EUtraNeighborCell>();
}
gom::SharedPointer<EUtraNeighborCell> EUtraNeighborCell::create(
    const gom::SharedPointer<EUtraFrequencyInfo>& frequencyInfo) {
  return gom::makeObject<EUtraNeighborCell>(frequencyInfo);
}
gom::SharedPointer<EUtraNeighborCell> EUtraNeighborCell::create(
    const gom::SharedPointer<EUtraNeighborCell>& other) {
  return gom::copyObject(other);
}

void EUtraNeighborCell::dump() const { gom::dumpNested<Fields>(*this); }
EUtraNeighborCell* EUtraNeighborCell::clone() const { return gom::cloneRecord<Fields>(*this); }
bool EUtraNeighborCell::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
void EUtraNeighborCell::unset(unsigned int mask) {
  gom::releaseHandles<Fields>(*this, mask);
  ObjectBase::unset(mask);
}
bool EUtraNeighborCell::operator==(const EUtraNeighborCell& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

gom::SharedPointer<EUtraFrequencyInfo> EUtraNeighborCell::frequencyInfo() const {
  return fieldIfSet(HasFrequencyInfo, m_frequencyInfo);
}
Status EUtraNeighborCell::setFrequencyInfo(
    const gom::SharedPointer<EUtraFrequencyInfo>& frequencyInfo) {
  return setField(HasFrequencyInfo, m_frequencyInfo, frequencyInfo);
}
gom::SharedPointer<Area> EUtraNeighborCell::coverage() const {
  return fieldIfSet(HasCoverage, m_coverage);
}
Status EUtraNeighborCell::setCoverage(const gom::SharedPointer<Area>& coverage) {
  return setField(HasCoverage, m_coverage, coverage);
}

// CDMA

struct CdmaNeighborCell::Fields
    : gom::FieldTable<gom::NoWireForm,
                      gom::Field<HasFrequencyInfo, &CdmaNeighborCell::m_frequencyInfo>,
                      gom::Field<HasCoverage, &CdmaNeighborCell::m_coverage>> {};

CdmaNeighborCell::CdmaNeighborCell() : ObjectBase(kCdmaNeighborCell) {}

CdmaNeighborCell::CdmaNeighborCell(const gom::SharedPointer<CdmaFrequencyInfo>& frequencyInfo)
    : CdmaNeighborCell() {
  setFrequencyInfo(frequencyInfo);
}

gom::SharedPointer<CdmaNeighborCell> CdmaNeighborCell::create() {
  return gom::makeObject<CdmaNeighborCell>();
}
gom::SharedPointer<CdmaNeighborCell> CdmaNeighborCell::create(
    const gom::SharedPointer<CdmaFrequencyInfo>& frequencyInfo) {
  return gom::makeObject<CdmaNeighborCell>(frequencyInfo);
}
gom::SharedPointer<CdmaNeighborCell> CdmaNeighborCell::create(
    const gom::SharedPointer<CdmaNeighborCell>& other) {
  return gom::copyObject(other);
}

void CdmaNeighborCell::dump() const { gom::dumpNested<Fields>(*this); }
CdmaNeighborCell* CdmaNeighborCell::clone() const { return gom::cloneRecord<Fields>(*this); }
bool CdmaNeighborCell::compare(const gom::ObjectBase* other) const {
  return gom::compareRecords(*this, other);
}
void CdmaNeighborCell::unset(unsigned int mask) {
  gom::releaseHandles<Fields>(*this, mask);
  ObjectBase::unset(mask);
}
bool CdmaNeighborCell::operator==(const CdmaNeighborCell& other) const {
  return gom::equalRecords<Fields>(*this, other);
}

gom::SharedPointer<CdmaFrequencyInfo> CdmaNeighborCell::frequencyInfo() const {
  return fieldIfSet(HasFrequencyInfo, m_frequencyInfo);
}
Status CdmaNeighborCell::setFrequencyInfo(
    const gom::SharedPointer<CdmaFrequencyInfo>& frequencyInfo) {
  return setField(HasFrequencyInfo, m_frequencyInfo, frequencyInfo);
}
gom::SharedPointer<Area> CdmaNeighborCell::coverage() const {
  return fieldIfSet(HasCoverage, m_coverage);
}
Status CdmaNeighborCell::setCoverage(const gom::SharedPointer<Area>& coverage) {
  return setField(HasCoverage, m_coverage, coverage);
}

}  // namespace trelvo::schema
