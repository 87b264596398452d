#include <trelvo/schema/ObjectBaseFactory.h>

#include <iterator>
#include <new>
#include <typeinfo>

#include <trelvo/schema/Area.h>
#include <trelvo/schema/CdmaCell.h>
#include <trelvo/schema/CdmaCellDn.h>
#include <trelvo/schema/CdmaFrequencyInfo.h>
#include <trelvo/schema/CdmaNeighborCell.h>
#include <trelvo/schema/CdmaNwMeasurement.h>
#include <trelvo/schema/CdmaServingCellMeasurement.h>
#include <trelvo/schema/CellularObject.h>
#include <trelvo/schema/CellularObjectDn.h>
#include <trelvo/schema/EUtraCell.h>
#include <trelvo/schema/EUtraCellDn.h>
#include <trelvo/schema/EUtraFrequencyInfo.h>
#include <trelvo/schema/EUtraNeighborCell.h>
#include <trelvo/schema/EUtraNwMeasurement.h>
#include <trelvo/schema/EUtraServingCellMeasurement.h>
#include <trelvo/schema/GeranCell.h>
#include <trelvo/schema/GeranCellDn.h>
#include <trelvo/schema/GeranFrequencyInfo.h>
#include <trelvo/schema/GeranNeighborCell.h>
#include <trelvo/schema/GeranNwMeasurement.h>
#include <trelvo/schema/GeranServingCellMeasurement.h>
#include <trelvo/schema/GnssMeasurementData.h>
#include <trelvo/schema/PositionEstimate.h>
#include <trelvo/schema/UtraCellDn.h>
#include <trelvo/schema/UtraFddCell.h>
#include <trelvo/schema/UtraFddFrequencyInfo.h>
#include <trelvo/schema/UtraFddNeighborCell.h>
#include <trelvo/schema/UtraFddNwMeasurement.h>
#include <trelvo/schema/UtraFddServingCellMeasurement.h>
#include <trelvo/schema/UtraTddCell.h>
#include <trelvo/schema/UtraTddFrequencyInfo.h>
#include <trelvo/schema/UtraTddNeighborCell.h>
#include <trelvo/schema/UtraTddNwMeasurement.h>
#include <trelvo/schema/UtraTddServingCellMeasurement.h>
#include <trelvo/schema/WlanApMeasurement.h>
#include <trelvo/schema/WlanDn.h>

#include "objects/RecordCodec.h"
#include "schema/ClassIds.h"
#include "schema/Records.h"

namespace trelvo::schema {

namespace {

using gom::ObjectBase;
using gom::RecordAccess;
using gom::RecordCodec;

/// How a class id is served.
struct Entry {
  ClassId classId;
  RecordCodec codec;
};

// What Record::create() does, without a second handle on the way.
template <class Record>
gom::SharedPointer<ObjectBase> create() {
  return new (std::nothrow) Record;
}

template <class Record>
constexpr Entry wireForm(ClassId classId) {
  return {classId,
          {&typeid(Record), create<Record>,
           [](const ObjectBase& record, WireWriter& writer) {
             return RecordAccess<Record>::write(static_cast<const Record&>(record), writer);
           },
           [](const ObjectBase& record, unsigned long long& total) {
             return RecordAccess<Record>::addSize(static_cast<const Record&>(record), total);
           },
           [](ObjectBase& record, WireReader& reader) {
             return RecordAccess<Record>::read(static_cast<Record&>(record), reader);
           }}};
}

// A class that lives in memory only: it can be made, and that is all.
template <class Record>
constexpr Entry memoryOnly(ClassId classId) {
  return {classId, {&typeid(Record), create<Record>, nullptr, nullptr, nullptr}};
}

constexpr Entry kEntries[] = {
    // in the order of the class ids, without a gap
    wireForm<GeranCellDn>(kGeranCellDn),
    wireForm<UtraCellDn>(kUtraCellDn),
    wireForm<GeranFrequencyInfo>(kGeranFrequencyInfo),
    wireForm<UtraFddFrequencyInfo>(kUtraFddFrequencyInfo),
    wireForm<Area>(kArea),
    memoryOnly<GeranCell>(kGeranCell),
    memoryOnly<GeranNeighborCell>(kGeranNeighborCell),
    memoryOnly<UtraFddCell>(kUtraFddCell),
    memoryOnly<UtraFddNeighborCell>(kUtraFddNeighborCell),
    wireForm<GeranServingCellMeasurement>(kGeranServingCellMeasurement),
    wireForm<GeranNwMeasurement>(kGeranNwMeasurement),
    wireForm<UtraFddServingCellMeasurement>(kUtraFddServingCellMeasurement),
    wireForm<UtraFddNwMeasurement>(kUtraFddNwMeasurement),
    wireForm<PositionEstimate>(kPositionEstimate),
    memoryOnly<CellularObjectDn>(kCellularObjectDn),
    memoryOnly<CellularObject>(kCellularObject),
    memoryOnly<EUtraCell>(kEUtraCell),
    memoryOnly<EUtraNeighborCell>(kEUtraNeighborCell),
    wireForm<EUtraServingCellMeasurement>(kEUtraServingCellMeasurement),
    wireForm<EUtraNwMeasurement>(kEUtraNwMeasurement),
    wireForm<EUtraFrequencyInfo>(kEUtraFrequencyInfo),
    wireForm<EUtraCellDn>(kEUtraCellDn),
    wireForm<CdmaCellDn>(kCdmaCellDn),
    wireForm<CdmaFrequencyInfo>(kCdmaFrequencyInfo),
    memoryOnly<CdmaCell>(kCdmaCell),
    memoryOnly<CdmaNeighborCell>(kCdmaNeighborCell),
    wireForm<CdmaServingCellMeasurement>(kCdmaServingCellMeasurement),
    wireForm<CdmaNwMeasurement>(kCdmaNwMeasurement),
    wireForm<WlanDn>(kWlanDn),
    wireForm<WlanApMeasurement>(kWlanApMeasurement),
    wireForm<GnssMeasurementData>(kGnssMeasurementData),
    wireForm<UtraTddFrequencyInfo>(kUtraTddFrequencyInfo),
    memoryOnly<UtraTddCell>(kUtraTddCell),
    memoryOnly<UtraTddNeighborCell>(kUtraTddNeighborCell),
    wireForm<UtraTddServingCellMeasurement>(kUtraTddServingCellMeasurement),
    wireForm<UtraTddNwMeasurement>(kUtraTddNwMeasurement),
};

constexpr unsigned short kFirst = kEntries[0].classId;

constexpr bool inOrder() {
  unsigned short next = kFirst;
  for (const Entry& entry : kEntries) {
    if (entry.classId != next++) {
      return false;
    }
  }
  return true;
}
static_assert(inOrder());

const RecordCodec* find(unsigned short classId) noexcept {
  const unsigned int index = static_cast<unsigned int>(classId) - kFirst;
  return index < std::size(kEntries) ? &kEntries[index].codec : nullptr;
}

}  // namespace

gom::SharedPointer<ObjectBase> ObjectBaseFactory::createObject(unsigned short classId) {
  const RecordCodec* const codec = find(classId);
  if (codec == nullptr) {
    throw StatusInternal;
  }
  return codec->create();
}

}  // namespace trelvo::schema

namespace trelvo::gom {

const RecordCodec* findRecordCodec(unsigned short classId) noexcept {
  const RecordCodec* const codec = schema::find(classId);
  return codec != nullptr && codec->write != nullptr ? codec : nullptr;
}

}  // namespace trelvo::gom
