#include <trelvo/schema/CellularObjectInjection.h>

#include <utility>

#include "objects/PropertyTable.h"
#include "schema/ObjectKeys.h"
#include "schema/PropertyKeys.h"
#include "schema/WrapperFactory.h"

namespace trelvo::schema {

struct CellularObjectInjection::Properties
    : PropertyTable<Property<HasDn, kDn>, Property<HasTimeStamp, kTimeStamp>,
                    Property<HasCoverage, kCoverage>> {};

CellularObjectInjection::CellularObjectInjection() = default;
CellularObjectInjection::CellularObjectInjection(const CellularObjectInjection& other) = default;
CellularObjectInjection& CellularObjectInjection::operator=(const CellularObjectInjection& other) =
    default;

gom::SharedPointer<CellularObjectInjection> CellularObjectInjection::create() {
  return WrapperFactory::createWrapper<CellularObjectInjection>(kCellularObjectInjection);
}

gom::SharedPointer<CellularObjectInjection> CellularObjectInjection::create(
    const gom::SharedPointer<CellularObjectDn>& dn, unsigned int timeStamp,
    const gom::SharedPointer<Area>& coverage) {
  gom::SharedPointer<CellularObjectInjection> injection = create();
  const bool complete = injection && injection->setDn(dn) == StatusOk &&
                        injection->setTimeStamp(timeStamp) == StatusOk &&
                        injection->setCoverage(coverage) == StatusOk;
  return gom::onlyIf(complete, std::move(injection));
}

gom::SharedPointer<CellularObjectInjection> CellularObjectInjection::create(
    const gom::SharedPointer<gom::GenericObject>& object) {
  return WrapperFactory::wrapObject<CellularObjectInjection>(object, kCellularObjectInjection);
}

void CellularObjectInjection::dump() const { GenericObjectWrapper::dump(); }

bool CellularObjectInjection::valueExists(unsigned int mask) const {
  return Properties::exist(m_object, mask, true);
}

void CellularObjectInjection::unset(unsigned int mask) { Properties::remove(m_object, mask); }

gom::SharedPointer<CellularObjectDn> CellularObjectInjection::dn() const {
  return getObjectProperty<CellularObjectDn>(kDn);
}

Status CellularObjectInjection::setDn(const gom::SharedPointer<CellularObjectDn>& dn) {
  return setRecordProperty(*this, kDn, dn, "dn");
}

unsigned int CellularObjectInjection::timeStamp() const {
  return propertyOrDefault<unsigned int>(*this, kTimeStamp, "timeStamp");
}

Status CellularObjectInjection::setTimeStamp(unsigned int timeStamp) {
  return setProperty(kTimeStamp, timeStamp, "timeStamp");
}

gom::SharedPointer<Area> CellularObjectInjection::coverage() const {
  return getObjectProperty<Area>(kCoverage);
}

Status CellularObjectInjection::setCoverage(const gom::SharedPointer<Area>& coverage) {
  return setRecordProperty(*this, kCoverage, coverage, "coverage");
}

}  // namespace trelvo::schema
