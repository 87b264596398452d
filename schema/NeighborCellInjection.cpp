// What is known of neighbour cells, for the five radio technologies. The public classes hand on to
// one template; what they do not hand on stands once in CellInjection.h.

#include <trelvo/schema/CdmaNeighborCellInjection.h>
#include <trelvo/schema/EUtraNeighborCellInjection.h>
#include <trelvo/schema/GeranNeighborCellInjection.h>
#include <trelvo/schema/UtraFddNeighborCellInjection.h>
#include <trelvo/schema/UtraTddNeighborCellInjection.h>

#include "objects/MakeObject.h"
#include "objects/PropertyTable.h"
#include "schema/CellInjection.h"
#include "schema/PropertyKeys.h"

namespace trelvo::schema {

template <class Traits>
struct NeighborCellInjection<Traits>::Properties
    : PropertyTable<Property<0x1, kFrequencyInfo>, Property<0x2, kNeighborMeasurement>,
                    Property<0x4, kCoverage>> {};

template <class Traits>
void NeighborCellInjection<Traits>::dump() const {
  GenericObjectWrapper::dump();
}

template <class Traits>
bool NeighborCellInjection<Traits>::valueExists(unsigned int mask) const {
  return Properties::exist(m_object, mask, true);
}

template <class Traits>
void NeighborCellInjection<Traits>::unset(unsigned int mask) {
  Properties::remove(m_object, mask);
}

template <class Traits>
gom::SharedPointer<typename Traits::FrequencyInfo> NeighborCellInjection<Traits>::frequencyInfo()
    const {
  return this->template getObjectProperty<FrequencyInfo>(kFrequencyInfo);
}

template <class Traits>
gom::SharedPointer<typename Traits::Measurement>
NeighborCellInjection<Traits>::neighborCellMeasurement() const {
  return this->template getObjectProperty<Measurement>(kNeighborMeasurement);
}

template <class Traits>
gom::SharedPointer<Area> NeighborCellInjection<Traits>::coverage() const {
  return this->template getObjectProperty<Area>(kCoverage);
}

// GERAN

template class NeighborCellInjection<GeranNeighborCellInjectionTraits>;

GeranNeighborCellInjectionImpl::~GeranNeighborCellInjectionImpl() = default;

GeranNeighborCellInjection::GeranNeighborCellInjection(
    const gom::SharedPointer<GeranNeighborCellInjectionImpl>& implementation)
    : m_implementation(implementation) {}

GeranNeighborCellInjection::~GeranNeighborCellInjection() = default;

gom::SharedPointer<GeranNeighborCellInjection> GeranNeighborCellInjection::create() {
  return CellInjection::publish<GeranNeighborCellInjection>(
      WrapperFactory::createWrapper<GeranNeighborCellInjectionImpl>(
          GeranNeighborCellInjectionTraits::kObjectKey));
}

gom::SharedPointer<GeranNeighborCellInjection> GeranNeighborCellInjection::create(
    const gom::SharedPointer<GeranFrequencyInfo>& frequencyInfo) {
  const gom::SharedPointer<GeranNeighborCellInjection> made = create();
  return made ? gom::unlessFailed(made->setFrequencyInfo(frequencyInfo), made) : made;
}

gom::SharedPointer<GeranNeighborCellInjection> GeranNeighborCellInjection::create(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return CellInjection::publish<GeranNeighborCellInjection>(
      WrapperFactory::wrapObject<GeranNeighborCellInjectionImpl>(
          object, GeranNeighborCellInjectionTraits::kObjectKey));
}

GeranNeighborCellInjection::GeranNeighborCellInjection(const GeranNeighborCellInjection& other)
    : ReferenceCountable(other) {
  *this = other;
}

GeranNeighborCellInjection& GeranNeighborCellInjection::operator=(
    const GeranNeighborCellInjection& other) {
  if (this != &other) {
    m_implementation =
        CellInjection::share<GeranNeighborCellInjectionTraits>(other.m_implementation);
  }
  return *this;
}

gom::SharedPointer<gom::GenericObject> GeranNeighborCellInjection::wrappedObject() const {
  return CellInjection::object(m_implementation);
}
void GeranNeighborCellInjection::dump() const { CellInjection::target(m_implementation).dump(); }
bool GeranNeighborCellInjection::valueExists(unsigned int mask) const {
  return CellInjection::target(m_implementation).valueExists(mask);
}
void GeranNeighborCellInjection::unset(unsigned int mask) {
  CellInjection::target(m_implementation).unset(mask);
}

gom::SharedPointer<GeranFrequencyInfo> GeranNeighborCellInjection::frequencyInfo() const {
  return CellInjection::target(m_implementation).frequencyInfo();
}
Status GeranNeighborCellInjection::setFrequencyInfo(
    const gom::SharedPointer<GeranFrequencyInfo>& frequencyInfo) {
  return CellInjection::setObject(m_implementation, kFrequencyInfo, frequencyInfo);
}
gom::SharedPointer<GeranNwMeasurement> GeranNeighborCellInjection::neighborCellMeasurement() const {
  return CellInjection::target(m_implementation).neighborCellMeasurement();
}
Status GeranNeighborCellInjection::setNeighborCellMeasurement(
    const gom::SharedPointer<GeranNwMeasurement>& measurement) {
  return CellInjection::setObject(m_implementation, kNeighborMeasurement, measurement);
}
gom::SharedPointer<Area> GeranNeighborCellInjection::coverage() const {
  return CellInjection::target(m_implementation).coverage();
}
Status GeranNeighborCellInjection::setCoverage(const gom::SharedPointer<Area>& coverage) {
  return CellInjection::setObject(m_implementation, kCoverage, coverage);
}

// UTRA FDD

template class NeighborCellInjection<UtraFddNeighborCellInjectionTraits>;

UtraFddNeighborCellInjectionImpl::~UtraFddNeighborCellInjectionImpl() = default;

UtraFddNeighborCellInjection::UtraFddNeighborCellInjection(
    const gom::SharedPointer<UtraFddNeighborCellInjectionImpl>& implementation)
    : m_implementation(implementation) {}

UtraFddNeighborCellInjection::~UtraFddNeighborCellInjection() = default;

gom::SharedPointer<UtraFddNeighborCellInjection> UtraFddNeighborCellInjection::create() {
  return CellInjection::publish<UtraFddNeighborCellInjection>(
      WrapperFactory::createWrapper<UtraFddNeighborCellInjectionImpl>(
          UtraFddNeighborCellInjectionTraits::kObjectKey));
}

gom::SharedPointer<UtraFddNeighborCellInjection> UtraFddNeighborCellInjection::create(
    const gom::SharedPointer<UtraFddFrequencyInfo>& frequencyInfo) {
  const gom::SharedPointer<UtraFddNeighborCellInjection> made = create();
  return made ? gom::unlessFailed(made->setFrequencyInfo(frequencyInfo), made) : made;
}

gom::SharedPointer<UtraFddNeighborCellInjection> UtraFddNeighborCellInjection::create(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return CellInjection::publish<UtraFddNeighborCellInjection>(
      WrapperFactory::wrapObject<UtraFddNeighborCellInjectionImpl>(
          object, UtraFddNeighborCellInjectionTraits::kObjectKey));
}

UtraFddNeighborCellInjection::UtraFddNeighborCellInjection(
    const UtraFddNeighborCellInjection& other)
    : ReferenceCountable(other) {
  *this = other;
}

UtraFddNeighborCellInjection& UtraFddNeighborCellInjection::operator=(
    const UtraFddNeighborCellInjection& other) {
  if (this != &other) {
    m_implementation =
        CellInjection::share<UtraFddNeighborCellInjectionTraits>(other.m_implementation);
  }
  return *this;
}

gom::SharedPointer<gom::GenericObject> UtraFddNeighborCellInjection::wrappedObject() const {
  return CellInjection::object(m_implementation);
}
void UtraFddNeighborCellInjection::dump() const { CellInjection::target(m_implementation).dump(); }
bool UtraFddNeighborCellInjection::valueExists(unsigned int mask) const {
  return CellInjection::target(m_implementation).valueExists(mask);
}
void UtraFddNeighborCellInjection::unset(unsigned int mask) {
  CellInjection::target(m_implementation).unset(mask);
}

gom::SharedPointer<UtraFddFrequencyInfo> UtraFddNeighborCellInjection::frequencyInfo() const {
  return CellInjection::target(m_implementation).frequencyInfo();
}
Status UtraFddNeighborCellInjection::setFrequencyInfo(
    const gom::SharedPointer<UtraFddFrequencyInfo>& frequencyInfo) {
  return CellInjection::setObject(m_implementation, kFrequencyInfo, frequencyInfo);
}
gom::SharedPointer<UtraFddNwMeasurement> UtraFddNeighborCellInjection::neighborCellMeasurement()
    const {
  return CellInjection::target(m_implementation).neighborCellMeasurement();
}
Status UtraFddNeighborCellInjection::setNeighborCellMeasurement(
    const gom::SharedPointer<UtraFddNwMeasurement>& measurement) {
  return CellInjection::setObject(m_implementation, kNeighborMeasurement, measurement);
}
gom::SharedPointer<Area> UtraFddNeighborCellInjection::coverage() const {
  return CellInjection::target(m_implementation).coverage();
}
Status UtraFddNeighborCellInjection::setCoverage(const gom::SharedPointer<Area>& coverage) {
  return CellInjection::setObject(m_implementation, kCoverage, coverage);
}

// UTRA TDD

template class NeighborCellInjection<UtraTddNeighborCellInjectionTraits>;

UtraTddNeighborCellInjectionImpl::~UtraTddNeighborCellInjectionImpl() = default;

UtraTddNeighborCellInjection::UtraTddNeighborCellInjection(
    const gom::SharedPointer<UtraTddNeighborCellInjectionImpl>& implementation)
    : m_implementation(implementation) {}

UtraTddNeighborCellInjection::~UtraTddNeighborCellInjection() = default;

gom::SharedPointer<UtraTddNeighborCellInjection> UtraTddNeighborCellInjection::create() {
  return CellInjection::publish<UtraTddNeighborCellInjection>(
      WrapperFactory::createWrapper<UtraTddNeighborCellInjectionImpl>(
          UtraTddNeighborCellInjectionTraits::kObjectKey));
}

gom::SharedPointer<UtraTddNeighborCellInjection> UtraTddNeighborCellInjection::create(
    const gom::SharedPointer<UtraTddFrequencyInfo>& frequencyInfo) {
  const gom::SharedPointer<UtraTddNeighborCellInjection> made = create();
  return made ? gom::unlessFailed(made->setFrequencyInfo(frequencyInfo), made) : made;
}

gom::SharedPointer<UtraTddNeighborCellInjection> UtraTddNeighborCellInjection::create(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return CellInjection::publish<UtraTddNeighborCellInjection>(
      WrapperFactory::wrapObject<UtraTddNeighborCellInjectionImpl>(
          object, UtraTddNeighborCellInjectionTraits::kObjectKey));
}

UtraTddNeighborCellInjection::UtraTddNeighborCellInjection(
    const UtraTddNeighborCellInjection& other)
    : ReferenceCountable(other) {
  *this = other;
}

UtraTddNeighborCellInjection& UtraTddNeighborCellInjection::operator=(
    const UtraTddNeighborCellInjection& other) {
  if (this != &other) {
    m_implementation =
        CellInjection::share<UtraTddNeighborCellInjectionTraits>(other.m_implementation);
  }
  return *this;
}

gom::SharedPointer<gom::GenericObject> UtraTddNeighborCellInjection::wrappedObject() const {
  return CellInjection::object(m_implementation);
}
void UtraTddNeighborCellInjection::dump() const { CellInjection::target(m_implementation).dump(); }
bool UtraTddNeighborCellInjection::valueExists(unsigned int mask) const {
  return CellInjection::target(m_implementation).valueExists(mask);
}
void UtraTddNeighborCellInjection::unset(unsigned int mask) {
  CellInjection::target(m_implementation).unset(mask);
}

gom::SharedPointer<UtraTddFrequencyInfo> UtraTddNeighborCellInjection::frequencyInfo() const {
  return CellInjection::target(m_implementation).frequencyInfo();
}
Status UtraTddNeighborCellInjection::setFrequencyInfo(
    const gom::SharedPointer<UtraTddFrequencyInfo>& frequencyInfo) {
  return CellInjection::setObject(m_implementation, kFrequencyInfo, frequencyInfo);
}
gom::SharedPointer<UtraTddNwMeasurement> UtraTddNeighborCellInjection::neighborCellMeasurement()
    const {
  return CellInjection::target(m_implementation).neighborCellMeasurement();
}
Status UtraTddNeighborCellInjection::setNeighborCellMeasurement(
    const gom::SharedPointer<UtraTddNwMeasurement>& measurement) {
  return CellInjection::setObject(m_implementation, kNeighborMeasurement, measurement);
}
gom::SharedPointer<Area> UtraTddNeighborCellInjection::coverage() const {
  return CellInjection::target(m_implementation).coverage();
}
Status UtraTddNeighborCellInjection::setCoverage(const gom::SharedPointer<Area>& coverage) {
  return CellInjection::setObject(m_implementation, kCoverage, coverage);
}

// E-UTRA

template class NeighborCellInjection<EUtraNeighborCellInjectionTraits>;

EUtraNeighborCellInjectionImpl::~EUtraNeighborCellInjectionImpl() = default;

EUtraNeighborCellInjection::EUtraNeighborCellInjection(
    const gom::SharedPointer<EUtraNeighborCellInjectionImpl>& implementation)
    : m_implementation(implementation) {}

EUtraNeighborCellInjection::~EUtraNeighborCellInjection() = default;

gom::SharedPointer<EUtraNeighborCellInjection> EUtraNeighborCellInjection::create() {
  return CellInjection::publish<EUtraNeighborCellInjection>(
      WrapperFactory::createWrapper<EUtraNeighborCellInjectionImpl>(
          EUtraNeighborCellInjectionTraits::kObjectKey));
}

gom::SharedPointer<EUtraNeighborCellInjection> EUtraNeighborCellInjection::create(
    const gom::SharedPointer<EUtraFrequencyInfo>& frequencyInfo) {
  const gom::SharedPointer<EUtraNeighborCellInjection> made = create();
  return made ? gom::unlessFailed(made->setFrequencyInfo(frequencyInfo), made) : made;
}

gom::SharedPointer<EUtraNeighborCellInjection> EUtraNeighborCellInjection::create(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return CellInjection::publish<EUtraNeighborCellInjection>(
      WrapperFactory::wrapObject<EUtraNeighborCellInjectionImpl>(
          object, EUtraNeighborCellInjectionTraits::kObjectKey));
}

EUtraNeighborCellInjection::EUtraNeighborCellInjection(const EUtraNeighborCellInjection& other)
    : ReferenceCountable(other) {
  *this = other;
}

EUtraNeighborCellInjection& EUtraNeighborCellInjection::operator=(
    const EUtraNeighborCellInjection& other) {
  if (this != &other) {
    m_implementation =
        CellInjection::share<EUtraNeighborCellInjectionTraits>(other.m_implementation);
  }
  return *this;
}

gom::SharedPointer<gom::GenericObject> EUtraNeighborCellInjection::wrappedObject() const {
  return CellInjection::object(m_implementation);
}
void EUtraNeighborCellInjection::dump() const { CellInjection::target(m_implementation).dump(); }
bool EUtraNeighborCellInjection::valueExists(unsigned int mask) const {
  return CellInjection::target(m_implementation).valueExists(mask);
}
void EUtraNeighborCellInjection::unset(unsigned int mask) {
  CellInjection::target(m_implementation).unset(mask);
}

gom::SharedPointer<EUtraFrequencyInfo> EUtraNeighborCellInjection::frequencyInfo() const {
  return CellInjection::target(m_implementation).frequencyInfo();
}
Status EUtraNeighborCellInjection::setFrequencyInfo(
    const gom::SharedPointer<EUtraFrequencyInfo>& frequencyInfo) {
  return CellInjection::setObject(m_implementation, kFrequencyInfo, frequencyInfo);
}
gom::SharedPointer<EUtraNwMeasurement> EUtraNeighborCellInjection::neighborCellMeasurement() const {
  return CellInjection::target(m_implementation).neighborCellMeasurement();
}
Status EUtraNeighborCellInjection::setNeighborCellMeasurement(
    const gom::SharedPointer<EUtraNwMeasurement>& measurement) {
  return CellInjection::setObject(m_implementation, kNeighborMeasurement, measurement);
}
gom::SharedPointer<Area> EUtraNeighborCellInjection::coverage() const {
  return CellInjection::target(m_implementation).coverage();
}
Status EUtraNeighborCellInjection::setCoverage(const gom::SharedPointer<Area>& coverage) {
  return CellInjection::setObject(m_implementation, kCoverage, coverage);
}

// CDMA

template class NeighborCellInjection<CdmaNeighborCellInjectionTraits>;

CdmaNeighborCellInjectionImpl::~CdmaNeighborCellInjectionImpl() = default;

CdmaNeighborCellInjection::CdmaNeighborCellInjection(
    const gom::SharedPointer<CdmaNeighborCellInjectionImpl>& implementation)
    : m_implementation(implementation) {}

CdmaNeighborCellInjection::~CdmaNeighborCellInjection() = default;

gom::SharedPointer<CdmaNeighborCellInjection> CdmaNeighborCellInjection::create() {
  return CellInjection::publish<CdmaNeighborCellInjection>(
      WrapperFactory::createWrapper<CdmaNeighborCellInjectionImpl>(
          CdmaNeighborCellInjectionTraits::kObjectKey));
}

gom::SharedPointer<CdmaNeighborCellInjection> CdmaNeighborCellInjection::create(
    const gom::SharedPointer<CdmaFrequencyInfo>& frequencyInfo) {
  const gom::SharedPointer<CdmaNeighborCellInjection> made = create();
  return made ? gom::unlessFailed(made->setFrequencyInfo(frequencyInfo), made) : made;
}

gom::SharedPointer<CdmaNeighborCellInjection> CdmaNeighborCellInjection::create(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return CellInjection::publish<CdmaNeighborCellInjection>(
      WrapperFactory::wrapObject<CdmaNeighborCellInjectionImpl>(
          object, CdmaNeighborCellInjectionTraits::kObjectKey));
}

CdmaNeighborCellInjection::CdmaNeighborCellInjection(const CdmaNeighborCellInjection& other)
    : ReferenceCountable(other) {
  *this = other;
}

CdmaNeighborCellInjection& CdmaNeighborCellInjection::operator=(
    const CdmaNeighborCellInjection& other) {
  if (this != &other) {
    m_implementation =
        CellInjection::share<CdmaNeighborCellInjectionTraits>(other.m_implementation);
  }
  return *this;
}

gom::SharedPointer<gom::GenericObject> CdmaNeighborCellInjection::wrappedObject() const {
  return CellInjection::object(m_implementation);
}
void CdmaNeighborCellInjection::dump() const { CellInjection::target(m_implementation).dump(); }
bool CdmaNeighborCellInjection::valueExists(unsigned int mask) const {
  return CellInjection::target(m_implementation).valueExists(mask);
}
void CdmaNeighborCellInjection::unset(unsigned int mask) {
  CellInjection::target(m_implementation).unset(mask);
}

gom::SharedPointer<CdmaFrequencyInfo> CdmaNeighborCellInjection::frequencyInfo() const {
  return CellInjection::target(m_implementation).frequencyInfo();
}
Status CdmaNeighborCellInjection::setFrequencyInfo(
    const gom::SharedPointer<CdmaFrequencyInfo>& frequencyInfo) {
  return CellInjection::setObject(m_implementation, kFrequencyInfo, frequencyInfo);
}
gom::SharedPointer<CdmaNwMeasurement> CdmaNeighborCellInjection::neighborCellMeasurement() const {
  return CellInjection::target(m_implementation).neighborCellMeasurement();
}
Status CdmaNeighborCellInjection::setNeighborCellMeasurement(
    const gom::SharedPointer<CdmaNwMeasurement>& measurement) {
  return CellInjection::setObject(m_implementation, kNeighborMeasurement, measurement);
}
gom::SharedPointer<Area> CdmaNeighborCellInjection::coverage() const {
  return CellInjection::target(m_implementation).coverage();
}
Status CdmaNeighborCellInjection::setCoverage(const gom::SharedPointer<Area>& coverage) {
  return CellInjection::setObject(m_implementation, kCoverage, coverage);
}

}  // namespace trelvo::schema
