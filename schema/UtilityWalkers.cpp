#include <trelvo/schema/Utility.h>

#include <algorithm>
#include <cstddef>
#include <limits>

#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/gom/ValueCollection.h>
#include <trelvo/gom/Variant.h>
#include <trelvo/schema/CellularObjectDn.h>
#include <trelvo/schema/Technology.h>
#include <trelvo/schema/WlanApMeasurement.h>

#include "schema/ObjectKeys.h"
#include "schema/PropertyKeys.h"

namespace trelvo::schema {
namespace {

using gom::GenericObject;
using gom::SharedPointer;
using gom::ValueCollection;
using gom::Variant;

int layer3Technology(CellularObjectDn::L3IdType type) noexcept {
  switch (type) {
    case CellularObjectDn::L3Lac:
      return TechnologyCellLac;
    case CellularObjectDn::L3RncId:
      return TechnologyCellRnc;
    case CellularObjectDn::L3ENodeBId:
      return TechnologyCellENodeB;
    default:
      return 0;
  }
}

// Empty for a null, and for a value of another type.
SharedPointer<GenericObject> objectIn(const Variant* value) noexcept {
  SharedPointer<GenericObject> object;
  if (value != nullptr) value->getGenericObjectValue(object);
  return object;
}

bool timeStampIn(const Variant* value, unsigned int& timeStamp) noexcept {
  const SharedPointer<GenericObject> object = objectIn(value);
  return object && object->getUint32Property(kTimeStamp, timeStamp) == StatusOk;
}

// Ranks of what has no level; a level ranks as itself.
constexpr int kNoLevel = std::numeric_limits<signed char>::min() - 1;
constexpr int kNoApMeasurement = kNoLevel - 1;
constexpr int kNoMeasurement = kNoApMeasurement - 1;

// Looks into the generic object itself: a wrapper for each comparison would need memory, and a sort
// whose predicate changes its mind when there is none runs off its range.
int wlanRank(const Variant* value) noexcept {
  const SharedPointer<GenericObject> measurement = objectIn(value);
  if (!measurement || measurement->key() != kWlanMeasurement) return kNoMeasurement;
  SharedPointer<gom::ObjectBase> record;
  measurement->getObjectProperty(kApMeasurement, record);
  const auto* const heard = dynamic_cast<const WlanApMeasurement*>(record.get());
  if (heard == nullptr) return kNoApMeasurement;
  return heard->valueExists(WlanApMeasurement::HasRxLevel) ? heard->rxLevel() : kNoLevel;
}

}  // namespace

int Utility::cellularObjectTechonology(const CellularObjectDn& cell) noexcept {
  switch (cell.idType()) {
    case CellularObjectDn::Layer1:
      return TechnologyCellCountry;
    case CellularObjectDn::Layer2:
      return TechnologyCellNetwork;
    case CellularObjectDn::Layer3:
      return layer3Technology(cell.l3IdType());
    default:
      return 0;
  }
}

Status Utility::getRecentTimeStamp(const SharedPointer<GenericObject>& object, unsigned short key,
                                   unsigned int& timeStamp) noexcept {
  SharedPointer<ValueCollection> collection;
  if (object) object->getCollectionProperty(key, collection);
  if (!collection) return StatusNotFound;

  Status status = StatusNotFound;
  for (const Variant* value : collection->items) {
    unsigned int found = 0;
    if (!timeStampIn(value, found)) continue;
    timeStamp = std::max(timeStamp, found);
    status = StatusOk;
  }
  return status;
}

unsigned int Utility::injectionTimeStamp(const SharedPointer<GenericObject>& injection) noexcept {
  constexpr unsigned short kCollections[] = {
      kGeranInjectionCollection, kUtraFddInjectionCollection, kUtraTddInjectionCollection,
      kEUtraInjectionCollection, kCdmaInjectionCollection,    kCellularObjectInjectionCollection,
      kWlanInjectionCollection,  kGnssInjectionCollection};
  unsigned int latest = 0;
  for (const unsigned short key : kCollections) getRecentTimeStamp(injection, key, latest);
  return latest;
}

bool Utility::sortWlans(Variant* a, Variant* b) noexcept { return wlanRank(a) < wlanRank(b); }

bool Utility::trimWlanCollection(unsigned int limit,
                                 SharedPointer<ValueCollection> collection) noexcept {
  if (!collection || collection->items.size() <= limit) return true;
  auto& items = collection->items;
  std::sort(items.begin(), items.end(), sortWlans);
  const auto kept = items.end() - static_cast<std::ptrdiff_t>(limit);
  std::for_each(items.begin(), kept, [](Variant* value) { delete value; });
  items.erase(items.begin(), kept);
  return true;
}

}  // namespace trelvo::schema
