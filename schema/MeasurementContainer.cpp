#include <trelvo/schema/MeasurementContainer.h>

#include "schema/ListProperty.h"
#include "schema/ObjectKeys.h"
#include "schema/PropertyKeys.h"
#include "schema/WrapperFactory.h"

namespace trelvo::schema {

namespace {

using Container = MeasurementContainer;

// Bit, key, members.
using GeranList = ListProperty<Container::HasGeranMeasurementCollection,
                               kGeranMeasurementCollection, kGeranCellMeasurement>;
using UtraFddList = ListProperty<Container::HasUtraFddMeasurementCollection,
                                 kUtraFddMeasurementCollection, kUtraFddCellMeasurement>;
using UtraTddList = ListProperty<Container::HasUtraTddMeasurementCollection,
                                 kUtraTddMeasurementCollection, kUtraTddCellMeasurement>;
using EUtraList = ListProperty<Container::HasEUtraMeasurementCollection,
                               kEUtraMeasurementCollection, kEUtraCellMeasurement>;
using CdmaList = ListProperty<Container::HasCdmaMeasurementCollection, kCdmaMeasurementCollection,
                              kCdmaCellMeasurement>;
using WlanList = ListProperty<Container::HasWlanMeasurementCollection, kWlanMeasurementCollection,
                              kWlanMeasurement>;
using GnssList = ListProperty<Container::HasGnssMeasurementCollection, kGnssMeasurementCollection,
                              kGnssMeasurement>;
using MeasurementId = Property<Container::HasMeasurementId, kMeasurementId>;

// A member's own create() refuses what is not of its key.
template <class Member>
gom::SharedPointer<Member> item(const gom::SharedPointer<gom::ValueCollection>& members,
                                unsigned int index) {
  return Member::create(MeasurementContainer::collectionItem(members, index));
}

}  // namespace

struct MeasurementContainer::Properties
    : PropertyTable<GeranList, UtraFddList, UtraTddList, EUtraList, CdmaList, WlanList, GnssList,
                    MeasurementId> {};

gom::SharedPointer<MeasurementContainer> MeasurementContainer::create() {
  return WrapperFactory::createWrapper<MeasurementContainer>(kMeasurementContainer);
}

gom::SharedPointer<MeasurementContainer> MeasurementContainer::create(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return WrapperFactory::wrapObject<MeasurementContainer>(object, kMeasurementContainer);
}

void MeasurementContainer::dump() const { GenericObjectWrapper::dump(); }

bool MeasurementContainer::valueExists(unsigned int mask) const {
  return Properties::exist(m_object, mask, true);
}

void MeasurementContainer::unset(unsigned int mask) { Properties::remove(m_object, mask); }

Status MeasurementContainer::addGeranMeasurement(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return addMeasurement(object, GeranList::kObjectKey, GeranList::kKey);
}
gom::SharedPointer<gom::ValueCollection> MeasurementContainer::geranMeasurementCollection() const {
  return measurementCollection(GeranList::kKey);
}
Status MeasurementContainer::setGeranMeasurementCollection(
    const gom::SharedPointer<gom::ValueCollection>& collection) {
  return setMeasurementCollection(collection, GeranList::kKey);
}
gom::SharedPointer<GeranCellMeasurement> MeasurementContainer::geranMeasurement(
    unsigned int index) const {
  return item<GeranCellMeasurement>(geranMeasurementCollection(), index);
}

Status MeasurementContainer::addUtraFddMeasurement(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return addMeasurement(object, UtraFddList::kObjectKey, UtraFddList::kKey);
}
gom::SharedPointer<gom::ValueCollection> MeasurementContainer::utraFddMeasurementCollection()
    const {
  return measurementCollection(UtraFddList::kKey);
}
Status MeasurementContainer::setUtraFddMeasurementCollection(
    const gom::SharedPointer<gom::ValueCollection>& collection) {
  return setMeasurementCollection(collection, UtraFddList::kKey);
}
gom::SharedPointer<UtraFddCellMeasurement> MeasurementContainer::utraFddMeasurement(
    unsigned int index) const {
  return item<UtraFddCellMeasurement>(utraFddMeasurementCollection(), index);
}

Status MeasurementContainer::addUtraTddMeasurement(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return addMeasurement(object, UtraTddList::kObjectKey, UtraTddList::kKey);
}
gom::SharedPointer<gom::ValueCollection> MeasurementContainer::utraTddMeasurementCollection()
    const {
  return measurementCollection(UtraTddList::kKey);
}
Status MeasurementContainer::setUtraTddMeasurementCollection(
    const gom::SharedPointer<gom::ValueCollection>& collection) {
  return setMeasurementCollection(collection, UtraTddList::kKey);
}
gom::SharedPointer<UtraTddCellMeasurement> MeasurementContainer::utraTddMeasurement(
    unsigned int index) const {
  return item<UtraTddCellMeasurement>(utraTddMeasurementCollection(), index);
}

Status MeasurementContainer::addEUtraMeasurement(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return addMeasurement(object, EUtraList::kObjectKey, EUtraList::kKey);
}
gom::SharedPointer<gom::ValueCollection> MeasurementContainer::eutraMeasurementCollection() const {
  return measurementCollection(EUtraList::kKey);
}
Status MeasurementContainer::setEUtraMeasurementCollection(
    const gom::SharedPointer<gom::ValueCollection>& collection) {
  return setMeasurementCollection(collection, EUtraList::kKey);
}
gom::SharedPointer<EUtraCellMeasurement> MeasurementContainer::eutraMeasurement(
    unsigned int index) const {
  return item<EUtraCellMeasurement>(eutraMeasurementCollection(), index);
}

Status MeasurementContainer::addCdmaMeasurement(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return addMeasurement(object, CdmaList::kObjectKey, CdmaList::kKey);
}
gom::SharedPointer<gom::ValueCollection> MeasurementContainer::cdmaMeasurementCollection() const {
  return measurementCollection(CdmaList::kKey);
}
Status MeasurementContainer::setCdmaMeasurementCollection(
    const gom::SharedPointer<gom::ValueCollection>& collection) {
  return setMeasurementCollection(collection, CdmaList::kKey);
}
gom::SharedPointer<CdmaCellMeasurement> MeasurementContainer::cdmaMeasurement(
    unsigned int index) const {
  return item<CdmaCellMeasurement>(cdmaMeasurementCollection(), index);
}

Status MeasurementContainer::addWlanMeasurement(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return addMeasurement(object, WlanList::kObjectKey, WlanList::kKey);
}
gom::SharedPointer<gom::ValueCollection> MeasurementContainer::wlanMeasurementCollection() const {
  return measurementCollection(WlanList::kKey);
}
Status MeasurementContainer::setWlanMeasurementCollection(
    const gom::SharedPointer<gom::ValueCollection>& collection) {
  return setMeasurementCollection(collection, WlanList::kKey);
}
gom::SharedPointer<WlanMeasurement> MeasurementContainer::wlanMeasurement(
    unsigned int index) const {
  return item<WlanMeasurement>(wlanMeasurementCollection(), index);
}

Status MeasurementContainer::addGnssMeasurement(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return addMeasurement(object, GnssList::kObjectKey, GnssList::kKey);
}
gom::SharedPointer<gom::ValueCollection> MeasurementContainer::gnssMeasurementCollection() const {
  return measurementCollection(GnssList::kKey);
}
Status MeasurementContainer::setGnssMeasurementCollection(
    const gom::SharedPointer<gom::ValueCollection>& collection) {
  return setMeasurementCollection(collection, GnssList::kKey);
}
gom::SharedPointer<GnssMeasurement> MeasurementContainer::gnssMeasurement(
    unsigned int index) const {
  return item<GnssMeasurement>(gnssMeasurementCollection(), index);
}

unsigned int MeasurementContainer::measurementId() const {
  return propertyOrDefault<unsigned int>(*this, kMeasurementId, "measurementId");
}

Status MeasurementContainer::setMeasurementId(unsigned int measurementId) {
  return setProperty(kMeasurementId, measurementId, "measurementId");
}

Status MeasurementContainer::addMeasurement(const gom::SharedPointer<gom::GenericObject>& object,
                                            unsigned short objectKey, unsigned short propertyKey) {
  return addMember(m_object, object, objectKey, propertyKey);
}

gom::SharedPointer<gom::ValueCollection> MeasurementContainer::measurementCollection(
    unsigned short propertyKey) const {
  return listProperty(*this, propertyKey);
}

Status MeasurementContainer::setMeasurementCollection(
    const gom::SharedPointer<gom::ValueCollection>& collection, unsigned short propertyKey) {
  return setProperty(propertyKey, collection, "collection");
}

// By value, as callers know it.  NOLINTNEXTLINE(performance-unnecessary-value-param)
gom::SharedPointer<gom::GenericObject> MeasurementContainer::collectionItem(
    gom::SharedPointer<gom::ValueCollection> collection, unsigned int index) {
  gom::SharedPointer<gom::GenericObject> object;
  if (collection && index < collection->count() && collection->items[index] != nullptr) {
    collection->items[index]->getGenericObjectValue(object);
  }
  return object;
}

}  // namespace trelvo::schema
