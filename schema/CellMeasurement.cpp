// The cell measurements of the five radio technologies.

#include <trelvo/schema/CdmaCellMeasurement.h>
#include <trelvo/schema/CellMeasurement.h>
#include <trelvo/schema/EUtraCellMeasurement.h>
#include <trelvo/schema/GeranCellMeasurement.h>
#include <trelvo/schema/InternalUtility.h>
#include <trelvo/schema/UtraFddCellMeasurement.h>
#include <trelvo/schema/UtraTddCellMeasurement.h>

#include <utility>

#include "objects/PropertyTable.h"
#include "schema/ClassIds.h"
#include "schema/ObjectKeys.h"
#include "schema/PropertyKeys.h"
#include "schema/WrapperFactory.h"

namespace trelvo::schema {

namespace {

/// The properties that have a bit: those common to all technologies, and what one of them has more.
template <class... More>
using Properties = PropertyTable<
    Property<CellMeasurement::HasDn, kDn>, Property<CellMeasurement::HasTimeStamp, kTimeStamp>,
    Property<CellMeasurement::HasServingCellMeasurement, kServingCellMeasurement>,
    Property<CellMeasurement::HasNwMeasurementCollection, kNwMeasurementCollection>, More...>;

using CommonProperties = Properties<>;
using UtraProperties =
    Properties<Property<CellMeasurement::HasUnreliableStateTimeStamp, kUnreliableStateTimeStamp>>;

/// A property; 0 or an empty handle when it is absent, of another type, or there is no object.
template <class T>
T propertyOf(const CellMeasurement& measurement, unsigned short key, const char* name) {
  return measurement.wrappedObject() ? propertyOrDefault<T>(measurement, key, name) : T();
}

/// `measurement` with these properties; an empty handle when it is one, or one of them is refused.
template <class T, class Dn>
gom::SharedPointer<T> filled(gom::SharedPointer<T> measurement, const gom::SharedPointer<Dn>& dn,
                             unsigned int timeStamp) {
  const bool complete = measurement && measurement->setTimeStamp(timeStamp) == StatusOk &&
                        measurement->setDn(dn) == StatusOk;
  return gom::onlyIf(complete, std::move(measurement));
}

}  // namespace

bool CellMeasurement::valueExists(unsigned int mask) const {
  return CommonProperties::exist(m_object, mask, false);
}

void CellMeasurement::unset(unsigned int mask) { CommonProperties::remove(m_object, mask); }

unsigned int CellMeasurement::timeStamp() const {
  return propertyOf<unsigned int>(*this, kTimeStamp, "timeStamp");
}

Status CellMeasurement::setTimeStamp(unsigned int timeStamp) {
  return setProperty(kTimeStamp, timeStamp, "timeStamp");
}

gom::SharedPointer<gom::ValueCollection> CellMeasurement::nwMeasurementCollection() const {
  return propertyOf<gom::SharedPointer<gom::ValueCollection>>(*this, kNwMeasurementCollection,
                                                              "nwMeasurementCollection");
}

Status CellMeasurement::setNwMeasurementCollection(
    const gom::SharedPointer<gom::ValueCollection>& collection) {
  return setProperty(kNwMeasurementCollection, collection, "nwMeasurementCollection");
}

Status CellMeasurement::addNwMeasurement(const gom::SharedPointer<gom::ObjectBase>& member,
                                         unsigned short classId) {
  if (!member || member->key() != classId) {
    return StatusWrongState;
  }
  return InternalUtility::addObjectBaseToCollection(m_object, kNwMeasurementCollection, member);
}

// GERAN

gom::SharedPointer<GeranCellMeasurement> GeranCellMeasurement::create() {
  return WrapperFactory::createWrapper<GeranCellMeasurement>(kGeranCellMeasurement);
}
gom::SharedPointer<GeranCellMeasurement> GeranCellMeasurement::create(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return WrapperFactory::wrapObject<GeranCellMeasurement>(object, kGeranCellMeasurement);
}
gom::SharedPointer<GeranCellMeasurement> GeranCellMeasurement::create(
    const gom::SharedPointer<GeranCellDn>& dn, unsigned int timeStamp) {
  return filled(create(), dn, timeStamp);
}

gom::SharedPointer<GeranCellDn> GeranCellMeasurement::dn() const {
  return getObjectProperty<GeranCellDn>(kDn);
}
Status GeranCellMeasurement::setDn(const gom::SharedPointer<GeranCellDn>& dn) {
  return setRecordProperty(*this, kDn, dn, "dn");
}

gom::SharedPointer<GeranServingCellMeasurement> GeranCellMeasurement::servingCellMeasurement()
    const {
  return getObjectProperty<GeranServingCellMeasurement>(kServingCellMeasurement);
}
Status GeranCellMeasurement::setServingCellMeasurement(
    const gom::SharedPointer<GeranServingCellMeasurement>& measurement) {
  return setRecordProperty(*this, kServingCellMeasurement, measurement, "servingCellMeasurement");
}

Status GeranCellMeasurement::addNwMeasurement(
    const gom::SharedPointer<GeranNwMeasurement>& neighbor) {
  return CellMeasurement::addNwMeasurement(neighbor, kGeranNwMeasurement);
}

// UTRA FDD

gom::SharedPointer<UtraFddCellMeasurement> UtraFddCellMeasurement::create() {
  return WrapperFactory::createWrapper<UtraFddCellMeasurement>(kUtraFddCellMeasurement);
}
gom::SharedPointer<UtraFddCellMeasurement> UtraFddCellMeasurement::create(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return WrapperFactory::wrapObject<UtraFddCellMeasurement>(object, kUtraFddCellMeasurement);
}
gom::SharedPointer<UtraFddCellMeasurement> UtraFddCellMeasurement::create(
    const gom::SharedPointer<UtraCellDn>& dn, unsigned int timeStamp) {
  return filled(create(), dn, timeStamp);
}

bool UtraFddCellMeasurement::valueExists(unsigned int mask) const {
  return UtraProperties::exist(m_object, mask, false);
}
void UtraFddCellMeasurement::unset(unsigned int mask) { UtraProperties::remove(m_object, mask); }

gom::SharedPointer<UtraCellDn> UtraFddCellMeasurement::dn() const {
  return getObjectProperty<UtraCellDn>(kDn);
}
Status UtraFddCellMeasurement::setDn(const gom::SharedPointer<UtraCellDn>& dn) {
  return setRecordProperty(*this, kDn, dn, "dn");
}

gom::SharedPointer<UtraFddServingCellMeasurement> UtraFddCellMeasurement::servingCellMeasurement()
    const {
  return getObjectProperty<UtraFddServingCellMeasurement>(kServingCellMeasurement);
}
Status UtraFddCellMeasurement::setServingCellMeasurement(
    const gom::SharedPointer<UtraFddServingCellMeasurement>& measurement) {
  return setRecordProperty(*this, kServingCellMeasurement, measurement, "servingCellMeasurement");
}

unsigned int UtraFddCellMeasurement::unreliableStateTimeStamp() const {
  return propertyOf<unsigned int>(*this, kUnreliableStateTimeStamp, "unreliableStateTimeStamp");
}
Status UtraFddCellMeasurement::setUnreliableStateTimeStamp(unsigned int timeStamp) {
  return setProperty(kUnreliableStateTimeStamp, timeStamp, "unreliableStateTimeStamp");
}

Status UtraFddCellMeasurement::addNwMeasurement(
    const gom::SharedPointer<UtraFddNwMeasurement>& neighbor) {
  return CellMeasurement::addNwMeasurement(neighbor, kUtraFddNwMeasurement);
}

// UTRA TDD

gom::SharedPointer<UtraTddCellMeasurement> UtraTddCellMeasurement::create() {
  return WrapperFactory::createWrapper<UtraTddCellMeasurement>(kUtraTddCellMeasurement);
}
gom::SharedPointer<UtraTddCellMeasurement> UtraTddCellMeasurement::create(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return WrapperFactory::wrapObject<UtraTddCellMeasurement>(object, kUtraTddCellMeasurement);
}
gom::SharedPointer<UtraTddCellMeasurement> UtraTddCellMeasurement::create(
    const gom::SharedPointer<UtraCellDn>& dn, unsigned int timeStamp) {
  return filled(create(), dn, timeStamp);
}

bool UtraTddCellMeasurement::valueExists(unsigned int mask) const {
  return UtraProperties::exist(m_object, mask, false);
}
void UtraTddCellMeasurement::unset(unsigned int mask) { UtraProperties::remove(m_object, mask); }

gom::SharedPointer<UtraCellDn> UtraTddCellMeasurement::dn() const {
  return getObjectProperty<UtraCellDn>(kDn);
}
Status UtraTddCellMeasurement::setDn(const gom::SharedPointer<UtraCellDn>& dn) {
  return setRecordProperty(*this, kDn, dn, "dn");
}

gom::SharedPointer<UtraTddServingCellMeasurement> UtraTddCellMeasurement::servingCellMeasurement()
    const {
  return getObjectProperty<UtraTddServingCellMeasurement>(kServingCellMeasurement);
}
Status UtraTddCellMeasurement::setServingCellMeasurement(
    const gom::SharedPointer<UtraTddServingCellMeasurement>& measurement) {
  return setRecordProperty(*this, kServingCellMeasurement, measurement, "servingCellMeasurement");
}

unsigned int UtraTddCellMeasurement::unreliableStateTimeStamp() const {
  return propertyOf<unsigned int>(*this, kUnreliableStateTimeStamp, "unreliableStateTimeStamp");
}
Status UtraTddCellMeasurement::setUnreliableStateTimeStamp(unsigned int timeStamp) {
  return setProperty(kUnreliableStateTimeStamp, timeStamp, "unreliableStateTimeStamp");
}

Status UtraTddCellMeasurement::addNwMeasurement(
    const gom::SharedPointer<UtraTddNwMeasurement>& neighbor) {
  return CellMeasurement::addNwMeasurement(neighbor, kUtraTddNwMeasurement);
}

// E-UTRA

gom::SharedPointer<EUtraCellMeasurement> EUtraCellMeasurement::create() {
  return WrapperFactory::createWrapper<EUtraCellMeasurement>(kEUtraCellMeasurement);
}
gom::SharedPointer<EUtraCellMeasurement> EUtraCellMeasurement::create(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return WrapperFactory::wrapObject<EUtraCellMeasurement>(object, kEUtraCellMeasurement);
}
gom::SharedPointer<EUtraCellMeasurement> EUtraCellMeasurement::create(
    const gom::SharedPointer<EUtraCellDn>& dn, unsigned int timeStamp) {
  return filled(create(), dn, timeStamp);
}

gom::SharedPointer<EUtraCellDn> EUtraCellMeasurement::dn() const {
  return getObjectProperty<EUtraCellDn>(kDn);
}
Status EUtraCellMeasurement::setDn(const gom::SharedPointer<EUtraCellDn>& dn) {
  return setRecordProperty(*this, kDn, dn, "dn");
}

gom::SharedPointer<EUtraServingCellMeasurement> EUtraCellMeasurement::servingCellMeasurement()
    const {
  return getObjectProperty<EUtraServingCellMeasurement>(kServingCellMeasurement);
}
Status EUtraCellMeasurement::setServingCellMeasurement(
    const gom::SharedPointer<EUtraServingCellMeasurement>& measurement) {
  return setRecordProperty(*this, kServingCellMeasurement, measurement, "servingCellMeasurement");
}

Status EUtraCellMeasurement::addNwMeasurement(
    const gom::SharedPointer<EUtraNwMeasurement>& neighbor) {
  return CellMeasurement::addNwMeasurement(neighbor, kEUtraNwMeasurement);
}

// CDMA

gom::SharedPointer<CdmaCellMeasurement> CdmaCellMeasurement::create() {
  return WrapperFactory::createWrapper<CdmaCellMeasurement>(kCdmaCellMeasurement);
}
gom::SharedPointer<CdmaCellMeasurement> CdmaCellMeasurement::create(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return WrapperFactory::wrapObject<CdmaCellMeasurement>(object, kCdmaCellMeasurement);
}
gom::SharedPointer<CdmaCellMeasurement> CdmaCellMeasurement::create(
    const gom::SharedPointer<CdmaCellDn>& dn, unsigned int timeStamp) {
  return filled(create(), dn, timeStamp);
}

gom::SharedPointer<CdmaCellDn> CdmaCellMeasurement::dn() const {
  return getObjectProperty<CdmaCellDn>(kDn);
}
Status CdmaCellMeasurement::setDn(const gom::SharedPointer<CdmaCellDn>& dn) {
  return setRecordProperty(*this, kDn, dn, "dn");
}

gom::SharedPointer<CdmaServingCellMeasurement> CdmaCellMeasurement::servingCellMeasurement() const {
  return getObjectProperty<CdmaServingCellMeasurement>(kServingCellMeasurement);
}
Status CdmaCellMeasurement::setServingCellMeasurement(
    const gom::SharedPointer<CdmaServingCellMeasurement>& measurement) {
  return setRecordProperty(*this, kServingCellMeasurement, measurement, "servingCellMeasurement");
}

Status CdmaCellMeasurement::addNwMeasurement(
    const gom::SharedPointer<CdmaNwMeasurement>& neighbor) {
  return CellMeasurement::addNwMeasurement(neighbor, kCdmaNwMeasurement);
}

}  // namespace trelvo::schema
