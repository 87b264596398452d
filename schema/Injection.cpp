#include <trelvo/schema/Injection.h>

#include "schema/ListProperty.h"
#include "schema/ObjectKeys.h"
#include "schema/PropertyKeys.h"
#include "schema/WrapperFactory.h"

namespace trelvo::schema {

namespace {

// Bit, key, members.
using GeranList = ListProperty<Injection::HasGeranInjectionCollection, kGeranInjectionCollection,
                               kGeranServingCellInjection>;
using UtraFddList = ListProperty<Injection::HasUtraFddInjectionCollection,
                                 kUtraFddInjectionCollection, kUtraFddServingCellInjection>;
using UtraTddList = ListProperty<Injection::HasUtraTddInjectionCollection,
                                 kUtraTddInjectionCollection, kUtraTddServingCellInjection>;
using EUtraList = ListProperty<Injection::HasEUtraInjectionCollection, kEUtraInjectionCollection,
                               kEUtraServingCellInjection>;
using CdmaList = ListProperty<Injection::HasCdmaInjectionCollection, kCdmaInjectionCollection,
                              kCdmaServingCellInjection>;
using CellularObjectList =
    ListProperty<Injection::HasCellularObjectInjectionCollection,
                 kCellularObjectInjectionCollection, kCellularObjectInjection>;
using WlanList =
    ListProperty<Injection::HasWlanInjectionCollection, kWlanInjectionCollection, kWlanInjection>;
using GnssList =
    ListProperty<Injection::HasGnssInjectionCollection, kGnssInjectionCollection, kGnssInjection>;
using MeasurementId = Property<Injection::HasMeasurementId, kMeasurementId>;

}  // namespace

struct Injection::Properties
    : PropertyTable<GeranList, UtraFddList, UtraTddList, EUtraList, CdmaList, CellularObjectList,
                    WlanList, GnssList, MeasurementId> {};

gom::SharedPointer<Injection> Injection::create() {
  return WrapperFactory::createWrapper<Injection>(kInjection);
}

gom::SharedPointer<Injection> Injection::create(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return WrapperFactory::wrapObject<Injection>(object, kInjection);
}

void Injection::dump() const { GenericObjectWrapper::dump(); }

bool Injection::valueExists(unsigned int mask) const {
  return Properties::exist(m_object, mask, true);
}

void Injection::unset(unsigned int mask) { Properties::remove(m_object, mask); }

Status Injection::addGeranInjection(const gom::SharedPointer<gom::GenericObject>& object) {
  return addInjection(object, GeranList::kObjectKey, GeranList::kKey);
}
gom::SharedPointer<gom::ValueCollection> Injection::geranInjectionCollection() const {
  return injectionCollection(GeranList::kKey);
}
Status Injection::setGeranInjectionCollection(
    const gom::SharedPointer<gom::ValueCollection>& collection) {
  return setProperty(GeranList::kKey, collection, "geranInjectionCollection");
}

Status Injection::addUtraFddInjection(const gom::SharedPointer<gom::GenericObject>& object) {
  return addInjection(object, UtraFddList::kObjectKey, UtraFddList::kKey);
}
gom::SharedPointer<gom::ValueCollection> Injection::utraFddInjectionCollection() const {
  return injectionCollection(UtraFddList::kKey);
}
Status Injection::setUtraFddInjectionCollection(
    const gom::SharedPointer<gom::ValueCollection>& collection) {
  return setProperty(UtraFddList::kKey, collection, "utraFddInjectionCollection");
}

Status Injection::addUtraTddInjection(const gom::SharedPointer<gom::GenericObject>& object) {
  return addInjection(object, UtraTddList::kObjectKey, UtraTddList::kKey);
}
gom::SharedPointer<gom::ValueCollection> Injection::utraTddInjectionCollection() const {
  return injectionCollection(UtraTddList::kKey);
}
Status Injection::setUtraTddInjectionCollection(
    const gom::SharedPointer<gom::ValueCollection>& collection) {
  return setProperty(UtraTddList::kKey, collection, "utraTddInjectionCollection");
}

Status Injection::addEUtraInjection(const gom::SharedPointer<gom::GenericObject>& object) {
  return addInjection(object, EUtraList::kObjectKey, EUtraList::kKey);
}
gom::SharedPointer<gom::ValueCollection> Injection::eutraInjectionCollection() const {
  return injectionCollection(EUtraList::kKey);
}
Status Injection::setEUtraInjectionCollection(
    const gom::SharedPointer<gom::ValueCollection>& collection) {
  return setProperty(EUtraList::kKey, collection, "eutraInjectionCollection");
}

Status Injection::addCdmaInjection(const gom::SharedPointer<gom::GenericObject>& object) {
  return addInjection(object, CdmaList::kObjectKey, CdmaList::kKey);
}
gom::SharedPointer<gom::ValueCollection> Injection::cdmaInjectionCollection() const {
  return injectionCollection(CdmaList::kKey);
}
Status Injection::setCdmaInjectionCollection(
    const gom::SharedPointer<gom::ValueCollection>& collection) {
  return setProperty(CdmaList::kKey, collection, "cdmaInjectionCollection");
}

Status Injection::addCellularObjectInjection(const gom::SharedPointer<gom::GenericObject>& object) {
  return addInjection(object, CellularObjectList::kObjectKey, CellularObjectList::kKey);
}
gom::SharedPointer<gom::ValueCollection> Injection::cellularObjectInjectionCollection() const {
  return injectionCollection(CellularObjectList::kKey);
}
Status Injection::setCellularObjectInjectionCollection(
    const gom::SharedPointer<gom::ValueCollection>& collection) {
  return setProperty(CellularObjectList::kKey, collection, "cellularObjectInjectionCollection");
}

Status Injection::addWlanInjection(const gom::SharedPointer<gom::GenericObject>& object) {
  return addInjection(object, WlanList::kObjectKey, WlanList::kKey);
}
gom::SharedPointer<gom::ValueCollection> Injection::wlanInjectionCollection() const {
  return injectionCollection(WlanList::kKey);
}
Status Injection::setWlanInjectionCollection(
    const gom::SharedPointer<gom::ValueCollection>& collection) {
  return setProperty(WlanList::kKey, collection, "wlanInjectionCollection");
}

Status Injection::addGnssInjection(const gom::SharedPointer<gom::GenericObject>& object) {
  return addInjection(object, GnssList::kObjectKey, GnssList::kKey);
}
gom::SharedPointer<gom::ValueCollection> Injection::gnssInjectionCollection() const {
  return injectionCollection(GnssList::kKey);
}
Status Injection::setGnssInjectionCollection(
    const gom::SharedPointer<gom::ValueCollection>& collection) {
  return setProperty(GnssList::kKey, collection, "gnssInjectionCollection");
}

unsigned int Injection::measurementId() const {
  return propertyOrDefault<unsigned int>(*this, kMeasurementId, "measurementId");
}

Status Injection::setMeasurementId(unsigned int measurementId) {
  return setProperty(kMeasurementId, measurementId, "measurementId");
}

Status Injection::addInjection(const gom::SharedPointer<gom::GenericObject>& object,
                               unsigned short objectKey, unsigned short propertyKey) {
  return addMember(m_object, object, objectKey, propertyKey);
}

gom::SharedPointer<gom::ValueCollection> Injection::injectionCollection(
    unsigned short propertyKey) const {
  return listProperty(*this, propertyKey);
}

}  // namespace trelvo::schema
