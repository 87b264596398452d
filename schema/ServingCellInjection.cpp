// What is known of serving cells, for the five radio technologies. The public classes hand on to
// one template; what they do not hand on stands once in CellInjection.h.

#include <trelvo/schema/CdmaServingCellInjection.h>
#include <trelvo/schema/EUtraServingCellInjection.h>
#include <trelvo/schema/GeranServingCellInjection.h>
#include <trelvo/schema/UtraFddServingCellInjection.h>
#include <trelvo/schema/UtraTddServingCellInjection.h>

#include "objects/MakeObject.h"
#include "objects/PropertyTable.h"
#include "schema/CellInjection.h"
#include "schema/PropertyKeys.h"

namespace trelvo::schema {

template <class Traits>
struct ServingCellInjection<Traits>::Properties
    : PropertyTable<Property<0x01, kDn>, Property<0x02, kTimeStamp>,
                    Property<0x04, kServingCellMeasurement>, Property<0x08, kSource>,
                    Property<0x10, kCoverage>, Property<0x20, kNeighborCellInjectionCollection>,
                    Property<0x40, kUnreliableStateTimeStamp>> {};

template <class Traits>
void ServingCellInjection<Traits>::dump() const {
  GenericObjectWrapper::dump();
}

template <class Traits>
bool ServingCellInjection<Traits>::valueExists(unsigned int mask) const {
  return Properties::exist(m_object, mask, true);
}

template <class Traits>
void ServingCellInjection<Traits>::unset(unsigned int mask) {
  Properties::remove(m_object, mask);
}

template <class Traits>
gom::SharedPointer<typename Traits::Dn> ServingCellInjection<Traits>::dn() const {
  return this->template getObjectProperty<Dn>(kDn);
}

template <class Traits>
gom::SharedPointer<typename Traits::Measurement>
ServingCellInjection<Traits>::servingCellMeasurement() const {
  return this->template getObjectProperty<Measurement>(kServingCellMeasurement);
}

template <class Traits>
gom::SharedPointer<Area> ServingCellInjection<Traits>::coverage() const {
  return this->template getObjectProperty<Area>(kCoverage);
}

template <class Traits>
bool ServingCellInjection<Traits>::baseCreate() {
  return construct(Traits::kObjectKey);
}

template <class Traits>
bool ServingCellInjection<Traits>::baseCreate(const gom::SharedPointer<Dn>& dn,
                                              unsigned int timeStamp) {
  return baseCreate() && m_object->setObjectProperty(kDn, dn) == StatusOk &&
         m_object->setUint32Property(kTimeStamp, timeStamp) == StatusOk;
}

// GERAN

template class ServingCellInjection<GeranServingCellInjectionTraits>;

GeranServingCellInjectionImpl::~GeranServingCellInjectionImpl() = default;

GeranServingCellInjection::GeranServingCellInjection(
    const gom::SharedPointer<GeranServingCellInjectionImpl>& implementation)
    : m_implementation(implementation) {}

GeranServingCellInjection::~GeranServingCellInjection() = default;

gom::SharedPointer<GeranServingCellInjection> GeranServingCellInjection::create() {
  return CellInjection::create<GeranServingCellInjection, GeranServingCellInjectionImpl>();
}

gom::SharedPointer<GeranServingCellInjection> GeranServingCellInjection::create(
    const gom::SharedPointer<GeranCellDn>& dn, unsigned int timeStamp) {
  return CellInjection::create<GeranServingCellInjection, GeranServingCellInjectionImpl>(dn,
                                                                                         timeStamp);
}

gom::SharedPointer<GeranServingCellInjection> GeranServingCellInjection::create(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return CellInjection::publish<GeranServingCellInjection>(
      WrapperFactory::wrapObject<GeranServingCellInjectionImpl>(
          object, GeranServingCellInjectionTraits::kObjectKey));
}

GeranServingCellInjection::GeranServingCellInjection(const GeranServingCellInjection& other)
    : ReferenceCountable(other) {
  *this = other;
}

GeranServingCellInjection& GeranServingCellInjection::operator=(
    const GeranServingCellInjection& other) {
  if (this != &other) {
    m_implementation =
        CellInjection::share<GeranServingCellInjectionTraits>(other.m_implementation);
  }
  return *this;
}

gom::SharedPointer<gom::GenericObject> GeranServingCellInjection::wrappedObject() const {
  return CellInjection::object(m_implementation);
}
void GeranServingCellInjection::dump() const { CellInjection::target(m_implementation).dump(); }
bool GeranServingCellInjection::valueExists(unsigned int mask) const {
  return CellInjection::target(m_implementation).valueExists(mask);
}
void GeranServingCellInjection::unset(unsigned int mask) {
  CellInjection::target(m_implementation).unset(mask);
}

gom::SharedPointer<GeranCellDn> GeranServingCellInjection::dn() const {
  return CellInjection::target(m_implementation).dn();
}
Status GeranServingCellInjection::setDn(const gom::SharedPointer<GeranCellDn>& dn) {
  return CellInjection::setObject(m_implementation, kDn, dn);
}
unsigned int GeranServingCellInjection::timeStamp() const {
  return CellInjection::number(m_implementation, kTimeStamp);
}
Status GeranServingCellInjection::setTimeStamp(unsigned int timeStamp) {
  return CellInjection::setNumber(m_implementation, kTimeStamp, timeStamp);
}
gom::SharedPointer<GeranServingCellMeasurement> GeranServingCellInjection::servingCellMeasurement()
    const {
  return CellInjection::target(m_implementation).servingCellMeasurement();
}
Status GeranServingCellInjection::setServingCellMeasurement(
    const gom::SharedPointer<GeranServingCellMeasurement>& measurement) {
  return CellInjection::setObject(m_implementation, kServingCellMeasurement, measurement);
}
Source GeranServingCellInjection::source() const {
  return static_cast<Source>(CellInjection::number(m_implementation, kSource));
}
Status GeranServingCellInjection::setSource(Source source) {
  return CellInjection::setNumber(m_implementation, kSource, source);
}
gom::SharedPointer<Area> GeranServingCellInjection::coverage() const {
  return CellInjection::target(m_implementation).coverage();
}
Status GeranServingCellInjection::setCoverage(const gom::SharedPointer<Area>& coverage) {
  return CellInjection::setObject(m_implementation, kCoverage, coverage);
}
gom::SharedPointer<gom::ValueCollection>
GeranServingCellInjection::neighborCellInjectionCollection() const {
  return CellInjection::neighbors(m_implementation);
}
Status GeranServingCellInjection::setNeighborCellInjectionCollection(
    const gom::SharedPointer<gom::ValueCollection>& collection) {
  return CellInjection::setNeighbors(m_implementation, collection);
}
Status GeranServingCellInjection::addNeighborCellInjection(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return CellInjection::addNeighbor<GeranServingCellInjectionTraits>(m_implementation, object);
}

// UTRA FDD

template class ServingCellInjection<UtraFddServingCellInjectionTraits>;

UtraFddServingCellInjectionImpl::~UtraFddServingCellInjectionImpl() = default;

UtraFddServingCellInjection::UtraFddServingCellInjection(
    const gom::SharedPointer<UtraFddServingCellInjectionImpl>& implementation)
    : m_implementation(implementation) {}

UtraFddServingCellInjection::~UtraFddServingCellInjection() = default;

gom::SharedPointer<UtraFddServingCellInjection> UtraFddServingCellInjection::create() {
  return CellInjection::create<UtraFddServingCellInjection, UtraFddServingCellInjectionImpl>();
}

gom::SharedPointer<UtraFddServingCellInjection> UtraFddServingCellInjection::create(
    const gom::SharedPointer<UtraCellDn>& dn, unsigned int timeStamp) {
  return CellInjection::create<UtraFddServingCellInjection, UtraFddServingCellInjectionImpl>(
      dn, timeStamp);
}

gom::SharedPointer<UtraFddServingCellInjection> UtraFddServingCellInjection::create(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return CellInjection::publish<UtraFddServingCellInjection>(
      WrapperFactory::wrapObject<UtraFddServingCellInjectionImpl>(
          object, UtraFddServingCellInjectionTraits::kObjectKey));
}

UtraFddServingCellInjection::UtraFddServingCellInjection(const UtraFddServingCellInjection& other)
    : ReferenceCountable(other) {
  *this = other;
}

UtraFddServingCellInjection& UtraFddServingCellInjection::operator=(
    const UtraFddServingCellInjection& other) {
  if (this != &other) {
    m_implementation =
        CellInjection::share<UtraFddServingCellInjectionTraits>(other.m_implementation);
  }
  return *this;
}

gom::SharedPointer<gom::GenericObject> UtraFddServingCellInjection::wrappedObject() const {
  return CellInjection::object(m_implementation);
}
void UtraFddServingCellInjection::dump() const { CellInjection::target(m_implementation).dump(); }
bool UtraFddServingCellInjection::valueExists(unsigned int mask) const {
  return CellInjection::target(m_implementation).valueExists(mask);
}
void UtraFddServingCellInjection::unset(unsigned int mask) {
  CellInjection::target(m_implementation).unset(mask);
}

gom::SharedPointer<UtraCellDn> UtraFddServingCellInjection::dn() const {
  return CellInjection::target(m_implementation).dn();
}
Status UtraFddServingCellInjection::setDn(const gom::SharedPointer<UtraCellDn>& dn) {
  return CellInjection::setObject(m_implementation, kDn, dn);
}
unsigned int UtraFddServingCellInjection::timeStamp() const {
  return CellInjection::number(m_implementation, kTimeStamp);
}
Status UtraFddServingCellInjection::setTimeStamp(unsigned int timeStamp) {
  return CellInjection::setNumber(m_implementation, kTimeStamp, timeStamp);
}
gom::SharedPointer<UtraFddServingCellMeasurement>
UtraFddServingCellInjection::servingCellMeasurement() const {
  return CellInjection::target(m_implementation).servingCellMeasurement();
}
Status UtraFddServingCellInjection::setServingCellMeasurement(
    const gom::SharedPointer<UtraFddServingCellMeasurement>& measurement) {
  return CellInjection::setObject(m_implementation, kServingCellMeasurement, measurement);
}
Source UtraFddServingCellInjection::source() const {
  return static_cast<Source>(CellInjection::number(m_implementation, kSource));
}
Status UtraFddServingCellInjection::setSource(Source source) {
  return CellInjection::setNumber(m_implementation, kSource, source);
}
gom::SharedPointer<Area> UtraFddServingCellInjection::coverage() const {
  return CellInjection::target(m_implementation).coverage();
}
Status UtraFddServingCellInjection::setCoverage(const gom::SharedPointer<Area>& coverage) {
  return CellInjection::setObject(m_implementation, kCoverage, coverage);
}
gom::SharedPointer<gom::ValueCollection>
UtraFddServingCellInjection::neighborCellInjectionCollection() const {
  return CellInjection::neighbors(m_implementation);
}
Status UtraFddServingCellInjection::setNeighborCellInjectionCollection(
    const gom::SharedPointer<gom::ValueCollection>& collection) {
  return CellInjection::setNeighbors(m_implementation, collection);
}
Status UtraFddServingCellInjection::addNeighborCellInjection(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return CellInjection::addNeighbor<UtraFddServingCellInjectionTraits>(m_implementation, object);
}
unsigned int UtraFddServingCellInjection::unreliableStateTimeStamp() const {
  return CellInjection::number(m_implementation, kUnreliableStateTimeStamp);
}
Status UtraFddServingCellInjection::setUnreliableStateTimeStamp(unsigned int timeStamp) {
  return CellInjection::setNumber(m_implementation, kUnreliableStateTimeStamp, timeStamp);
}

// UTRA TDD

template class ServingCellInjection<UtraTddServingCellInjectionTraits>;

UtraTddServingCellInjectionImpl::~UtraTddServingCellInjectionImpl() = default;

UtraTddServingCellInjection::UtraTddServingCellInjection(
    const gom::SharedPointer<UtraTddServingCellInjectionImpl>& implementation)
    : m_implementation(implementation) {}

UtraTddServingCellInjection::~UtraTddServingCellInjection() = default;

gom::SharedPointer<UtraTddServingCellInjection> UtraTddServingCellInjection::create() {
  return CellInjection::create<UtraTddServingCellInjection, UtraTddServingCellInjectionImpl>();
}

gom::SharedPointer<UtraTddServingCellInjection> UtraTddServingCellInjection::create(
    const gom::SharedPointer<UtraCellDn>& dn, unsigned int timeStamp) {
  return CellInjection::create<UtraTddServingCellInjection, UtraTddServingCellInjectionImpl>(
      dn, timeStamp);
}

gom::SharedPointer<UtraTddServingCellInjection> UtraTddServingCellInjection::create(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return CellInjection::publish<UtraTddServingCellInjection>(
      WrapperFactory::wrapObject<UtraTddServingCellInjectionImpl>(
          object, UtraTddServingCellInjectionTraits::kObjectKey));
}

UtraTddServingCellInjection::UtraTddServingCellInjection(const UtraTddServingCellInjection& other)
    : ReferenceCountable(other) {
  *this = other;
}

UtraTddServingCellInjection& UtraTddServingCellInjection::operator=(
    const UtraTddServingCellInjection& other) {
  if (this != &other) {
    m_implementation =
        CellInjection::share<UtraTddServingCellInjectionTraits>(other.m_implementation);
  }
  return *this;
}

gom::SharedPointer<gom::GenericObject> UtraTddServingCellInjection::wrappedObject() const {
  return CellInjection::object(m_implementation);
}
void UtraTddServingCellInjection::dump() const { CellInjection::target(m_implementation).dump(); }
bool UtraTddServingCellInjection::valueExists(unsigned int mask) const {
  return CellInjection::target(m_implementation).valueExists(mask);
}
void UtraTddServingCellInjection::unset(unsigned int mask) {
  CellInjection::target(m_implementation).unset(mask);
}

gom::SharedPointer<UtraCellDn> UtraTddServingCellInjection::dn() const {
  return CellInjection::target(m_implementation).dn();
}
Status UtraTddServingCellInjection::setDn(const gom::SharedPointer<UtraCellDn>& dn) {
  return CellInjection::setObject(m_implementation, kDn, dn);
}
unsigned int UtraTddServingCellInjection::timeStamp() const {
  return CellInjection::number(m_implementation, kTimeStamp);
}
Status UtraTddServingCellInjection::setTimeStamp(unsigned int timeStamp) {
  return CellInjection::setNumber(m_implementation, kTimeStamp, timeStamp);
}
gom::SharedPointer<UtraTddServingCellMeasurement>
UtraTddServingCellInjection::servingCellMeasurement() const {
  return CellInjection::target(m_implementation).servingCellMeasurement();
}
Status UtraTddServingCellInjection::setServingCellMeasurement(
    const gom::SharedPointer<UtraTddServingCellMeasurement>& measurement) {
  return CellInjection::setObject(m_implementation, kServingCellMeasurement, measurement);
}
Source UtraTddServingCellInjection::source() const {
  return static_cast<Source>(CellInjection::number(m_implementation, kSource));
}
Status UtraTddServingCellInjection::setSource(Source source) {
  return CellInjection::setNumber(m_implementation, kSource, source);
}
gom::SharedPointer<Area> UtraTddServingCellInjection::coverage() const {
  return CellInjection::target(m_implementation).coverage();
}
Status UtraTddServingCellInjection::setCoverage(const gom::SharedPointer<Area>& coverage) {
  return CellInjection::setObject(m_implementation, kCoverage, coverage);
}
gom::SharedPointer<gom::ValueCollection>
UtraTddServingCellInjection::neighborCellInjectionCollection() const {
  return CellInjection::neighbors(m_implementation);
}
Status UtraTddServingCellInjection::setNeighborCellInjectionCollection(
    const gom::SharedPointer<gom::ValueCollection>& collection) {
  return CellInjection::setNeighbors(m_implementation, collection);
}
Status UtraTddServingCellInjection::addNeighborCellInjection(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return CellInjection::addNeighbor<UtraTddServingCellInjectionTraits>(m_implementation, object);
}
unsigned int UtraTddServingCellInjection::unreliableStateTimeStamp() const {
  return CellInjection::number(m_implementation, kUnreliableStateTimeStamp);
}
Status UtraTddServingCellInjection::setUnreliableStateTimeStamp(unsigned int timeStamp) {
  return CellInjection::setNumber(m_implementation, kUnreliableStateTimeStamp, timeStamp);
}

// E-UTRA

template class ServingCellInjection<EUtraServingCellInjectionTraits>;

EUtraServingCellInjectionImpl::~EUtraServingCellInjectionImpl() = default;

EUtraServingCellInjection::EUtraServingCellInjection(
    const gom::SharedPointer<EUtraServingCellInjectionImpl>& implementation)
    : m_implementation(implementation) {}

EUtraServingCellInjection::~EUtraServingCellInjection() = default;

gom::SharedPointer<EUtraServingCellInjection> EUtraServingCellInjection::create() {
  return CellInjection::create<EUtraServingCellInjection, EUtraServingCellInjectionImpl>();
}

gom::SharedPointer<EUtraServingCellInjection> EUtraServingCellInjection::create(
    const gom::SharedPointer<EUtraCellDn>& dn, unsigned int timeStamp) {
  return CellInjection::create<EUtraServingCellInjection, EUtraServingCellInjectionImpl>(dn,
                                                                                         timeStamp);
}

gom::SharedPointer<EUtraServingCellInjection> EUtraServingCellInjection::create(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return CellInjection::publish<EUtraServingCellInjection>(
      WrapperFactory::wrapObject<EUtraServingCellInjectionImpl>(
          object, EUtraServingCellInjectionTraits::kObjectKey));
}

EUtraServingCellInjection::EUtraServingCellInjection(const EUtraServingCellInjection& other)
    : ReferenceCountable(other) {
  *this = other;
}

EUtraServingCellInjection& EUtraServingCellInjection::operator=(
    const EUtraServingCellInjection& other) {
  if (this != &other) {
    m_implementation =
        CellInjection::share<EUtraServingCellInjectionTraits>(other.m_implementation);
  }
  return *this;
}

gom::SharedPointer<gom::GenericObject> EUtraServingCellInjection::wrappedObject() const {
  return CellInjection::object(m_implementation);
}
void EUtraServingCellInjection::dump() const { CellInjection::target(m_implementation).dump(); }
bool EUtraServingCellInjection::valueExists(unsigned int mask) const {
  return CellInjection::target(m_implementation).valueExists(mask);
}
void EUtraServingCellInjection::unset(unsigned int mask) {
  CellInjection::target(m_implementation).unset(mask);
}

gom::SharedPointer<EUtraCellDn> EUtraServingCellInjection::dn() const {
  return CellInjection::target(m_implementation).dn();
}
Status EUtraServingCellInjection::setDn(const gom::SharedPointer<EUtraCellDn>& dn) {
  return CellInjection::setObject(m_implementation, kDn, dn);
}
unsigned int EUtraServingCellInjection::timeStamp() const {
  return CellInjection::number(m_implementation, kTimeStamp);
}
Status EUtraServingCellInjection::setTimeStamp(unsigned int timeStamp) {
  return CellInjection::setNumber(m_implementation, kTimeStamp, timeStamp);
}
gom::SharedPointer<EUtraServingCellMeasurement> EUtraServingCellInjection::servingCellMeasurement()
    const {
  return CellInjection::target(m_implementation).servingCellMeasurement();
}
Status EUtraServingCellInjection::setServingCellMeasurement(
    const gom::SharedPointer<EUtraServingCellMeasurement>& measurement) {
  return CellInjection::setObject(m_implementation, kServingCellMeasurement, measurement);
}
Source EUtraServingCellInjection::source() const {
  return static_cast<Source>(CellInjection::number(m_implementation, kSource));
}
Status EUtraServingCellInjection::setSource(Source source) {
  return CellInjection::setNumber(m_implementation, kSource, source);
}
gom::SharedPointer<Area> EUtraServingCellInjection::coverage() const {
  return CellInjection::target(m_implementation).coverage();
}
Status EUtraServingCellInjection::setCoverage(const gom::SharedPointer<Area>& coverage) {
  return CellInjection::setObject(m_implementation, kCoverage, coverage);
}
gom::SharedPointer<gom::ValueCollection>
EUtraServingCellInjection::neighborCellInjectionCollection() const {
  return CellInjection::neighbors(m_implementation);
}
Status EUtraServingCellInjection::setNeighborCellInjectionCollection(
    const gom::SharedPointer<gom::ValueCollection>& collection) {
  return CellInjection::setNeighbors(m_implementation, collection);
}
Status EUtraServingCellInjection::addNeighborCellInjection(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return CellInjection::addNeighbor<EUtraServingCellInjectionTraits>(m_implementation, object);
}

// CDMA

template class ServingCellInjection<CdmaServingCellInjectionTraits>;

CdmaServingCellInjectionImpl::~CdmaServingCellInjectionImpl() = default;

CdmaServingCellInjection::CdmaServingCellInjection(
    const gom::SharedPointer<CdmaServingCellInjectionImpl>& implementation)
    : m_implementation(implementation) {}

CdmaServingCellInjection::~CdmaServingCellInjection() = default;

gom::SharedPointer<CdmaServingCellInjection> CdmaServingCellInjection::create() {
  return CellInjection::create<CdmaServingCellInjection, CdmaServingCellInjectionImpl>();
}

gom::SharedPointer<CdmaServingCellInjection> CdmaServingCellInjection::create(
    const gom::SharedPointer<CdmaCellDn>& dn, unsigned int timeStamp) {
  return CellInjection::create<CdmaServingCellInjection, CdmaServingCellInjectionImpl>(dn,
                                                                                       timeStamp);
}

gom::SharedPointer<CdmaServingCellInjection> CdmaServingCellInjection::create(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return CellInjection::publish<CdmaServingCellInjection>(
      WrapperFactory::wrapObject<CdmaServingCellInjectionImpl>(
          object, CdmaServingCellInjectionTraits::kObjectKey));
}

CdmaServingCellInjection::CdmaServingCellInjection(const CdmaServingCellInjection& other)
    : ReferenceCountable(other) {
  *this = other;
}

CdmaServingCellInjection& CdmaServingCellInjection::operator=(
    const CdmaServingCellInjection& other) {
  if (this != &other) {
    m_implementation = CellInjection::share<CdmaServingCellInjectionTraits>(other.m_implementation);
  }
  return *this;
}

gom::SharedPointer<gom::GenericObject> CdmaServingCellInjection::wrappedObject() const {
  return CellInjection::object(m_implementation);
}
void CdmaServingCellInjection::dump() const { CellInjection::target(m_implementation).dump(); }
bool CdmaServingCellInjection::valueExists(unsigned int mask) const {
  return CellInjection::target(m_implementation).valueExists(mask);
}
void CdmaServingCellInjection::unset(unsigned int mask) {
  CellInjection::target(m_implementation).unset(mask);
}

gom::SharedPointer<CdmaCellDn> CdmaServingCellInjection::dn() const {
  return CellInjection::target(m_implementation).dn();
}
Status CdmaServingCellInjection::setDn(const gom::SharedPointer<CdmaCellDn>& dn) {
  return CellInjection::setObject(m_implementation, kDn, dn);
}
unsigned int CdmaServingCellInjection::timeStamp() const {
  return CellInjection::number(m_implementation, kTimeStamp);
}
Status CdmaServingCellInjection::setTimeStamp(unsigned int timeStamp) {
  return CellInjection::setNumber(m_implementation, kTimeStamp, timeStamp);
}
gom::SharedPointer<CdmaServingCellMeasurement> CdmaServingCellInjection::servingCellMeasurement()
    const {
  return CellInjection::target(m_implementation).servingCellMeasurement();
}
Status CdmaServingCellInjection::setServingCellMeasurement(
    const gom::SharedPointer<CdmaServingCellMeasurement>& measurement) {
  return CellInjection::setObject(m_implementation, kServingCellMeasurement, measurement);
}
Source CdmaServingCellInjection::source() const {
  return static_cast<Source>(CellInjection::number(m_implementation, kSource));
}
Status CdmaServingCellInjection::setSource(Source source) {
  return CellInjection::setNumber(m_implementation, kSource, source);
}
gom::SharedPointer<Area> CdmaServingCellInjection::coverage() const {
  return CellInjection::target(m_implementation).coverage();
}
Status CdmaServingCellInjection::setCoverage(const gom::SharedPointer<Area>& coverage) {
  return CellInjection::setObject(m_implementation, kCoverage, coverage);
}
gom::SharedPointer<gom::ValueCollection> CdmaServingCellInjection::neighborCellInjectionCollection()
    const {
  return CellInjection::neighbors(m_implementation);
}
Status CdmaServingCellInjection::setNeighborCellInjectionCollection(
    const gom::SharedPointer<gom::ValueCollection>& collection) {
  return CellInjection::setNeighbors(m_implementation, collection);
}
Status CdmaServingCellInjection::addNeighborCellInjection(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return CellInjection::addNeighbor<CdmaServingCellInjectionTraits>(m_implementation, object);
}

}  // namespace trelvo::schema
