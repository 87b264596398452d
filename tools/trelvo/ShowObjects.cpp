#include "tools/trelvo/ShowObjects.h"

#include <algorithm>
#include <iterator>

#include "tools/trelvo/ShowRecords.h"

namespace trelvo::tool {

/// One property of a generic object: which type it has, what it is called and measured in, and what
/// decodes it.
struct PropertyInfo {
  unsigned short key;
  WireTag tag;
  const char* name;
  const char* unit;
  ShowValue (*decode)(unsigned int bits);  // null: as it stands
};

struct ObjectInfo {
  unsigned short key;
  const char* name;
  const PropertyInfo* begin;
  const PropertyInfo* end;
};

namespace {

constexpr PropertyInfo kContainer[] = {
    {300, TagCollection, "geranMeasurementCollection", "", nullptr},
    {301, TagCollection, "utraFddMeasurementCollection", "", nullptr},
    {302, TagCollection, "utraTddMeasurementCollection", "", nullptr},
    {310, TagCollection, "eutraMeasurementCollection", "", nullptr},
    {312, TagCollection, "cdmaMeasurementCollection", "", nullptr},
    {314, TagCollection, "wlanMeasurementCollection", "", nullptr},
    {315, TagCollection, "gnssMeasurementCollection", "", nullptr},
    {317, TagUint32, "measurementId", "", nullptr},
};

constexpr PropertyInfo kInjection[] = {
    {304, TagCollection, "geranInjectionCollection", "", nullptr},
    {305, TagCollection, "utraFddInjectionCollection", "", nullptr},
    {306, TagCollection, "utraTddInjectionCollection", "", nullptr},
    {308, TagCollection, "cellularObjectInjectionCollection", "", nullptr},
    {309, TagCollection, "gnssInjectionCollection", "", nullptr},
    {311, TagCollection, "eutraInjectionCollection", "", nullptr},
    {313, TagCollection, "cdmaInjectionCollection", "", nullptr},
    {316, TagCollection, "wlanInjectionCollection", "", nullptr},
    {317, TagUint32, "measurementId", "", nullptr},
};

constexpr PropertyInfo kCellMeasurement[] = {
    {200, TagRecord, "dn", "", nullptr},
    {202, TagRecord, "servingCellMeasurement", "", nullptr},
    {205, TagUint32, "timeStamp", "s", timeValue},
    {207, TagUint32, "unreliableStateTimeStamp", "s", timeValue},
    {303, TagCollection, "nwMeasurementCollection", "", nullptr},
};

constexpr PropertyInfo kServingCellInjection[] = {
    {200, TagRecord, "dn", "", nullptr},
    {202, TagRecord, "servingCellMeasurement", "", nullptr},
    {204, TagRecord, "coverage", "", nullptr},
    {205, TagUint32, "timeStamp", "s", timeValue},
    {207, TagUint32, "unreliableStateTimeStamp", "s", timeValue},
    {208, TagUint32, "source", "", nullptr},
    {307, TagCollection, "neighborCellInjectionCollection", "", nullptr},
};

constexpr PropertyInfo kNeighborCellInjection[] = {
    {201, TagRecord, "frequencyInfo", "", nullptr},
    {203, TagRecord, "neighborCellMeasurement", "", nullptr},
    {204, TagRecord, "coverage", "", nullptr},
};

constexpr PropertyInfo kCellularObjectInjection[] = {
    {200, TagRecord, "dn", "", nullptr},
    {204, TagRecord, "coverage", "", nullptr},
    {205, TagUint32, "timeStamp", "s", timeValue},
};

constexpr PropertyInfo kWlanMeasurement[] = {
    {129, TagRecord, "wlanApMeasurement", "", nullptr},
    {200, TagRecord, "dn", "", nullptr},
    {205, TagUint32, "timeStamp", "s", timeValue},
    {206, TagInt64, "elapsedRealtimeTimeStamp", "", nullptr},
};

constexpr PropertyInfo kWlanInjection[] = {
    {129, TagRecord, "wlanApMeasurement", "", nullptr},
    {200, TagRecord, "dn", "", nullptr},
    {204, TagRecord, "coverage", "", nullptr},
    {205, TagUint32, "timeStamp", "s", timeValue},
};

constexpr PropertyInfo kGnssMeasurement[] = {
    {130, TagRecord, "measurementData", "", nullptr},
    {205, TagUint32, "timeStamp", "s", timeValue},
};

constexpr PropertyInfo kGnssInjection[] = {
    {130, TagRecord, "gnssMeasurementData", "", nullptr},
    {205, TagUint32, "timeStamp", "s", timeValue},
};

template <std::size_t N>
constexpr ObjectInfo row(unsigned short key, const char* name,
                         const PropertyInfo (&properties)[N]) {
  return {key, name, properties, properties + N};
}

constexpr ObjectInfo kObjects[] = {
    row(1, "MeasurementContainer", kContainer),
    row(2, "GeranCellMeasurement", kCellMeasurement),
    row(3, "UtraFddCellMeasurement", kCellMeasurement),
    row(4, "UtraTddCellMeasurement", kCellMeasurement),
    row(5, "Injection", kInjection),
    row(6, "GeranServingCellInjection", kServingCellInjection),
    row(7, "UtraFddServingCellInjection", kServingCellInjection),
    row(8, "UtraTddServingCellInjection", kServingCellInjection),
    row(9, "GeranNeighborCellInjection", kNeighborCellInjection),
    row(10, "UtraFddNeighborCellInjection", kNeighborCellInjection),
    row(11, "UtraTddNeighborCellInjection", kNeighborCellInjection),
    row(12, "CellularObjectInjection", kCellularObjectInjection),
    row(13, "GnssInjection", kGnssInjection),
    row(14, "EUtraCellMeasurement", kCellMeasurement),
    row(15, "EUtraServingCellInjection", kServingCellInjection),
    row(16, "EUtraNeighborCellInjection", kNeighborCellInjection),
    row(17, "CdmaCellMeasurement", kCellMeasurement),
    row(18, "CdmaServingCellInjection", kServingCellInjection),
    row(19, "CdmaNeighborCellInjection", kNeighborCellInjection),
    row(20, "WlanMeasurement", kWlanMeasurement),
    row(21, "GnssMeasurement", kGnssMeasurement),
    row(22, "WlanInjection", kWlanInjection),
};

const ObjectInfo* objectInfo(unsigned short key) {
  const auto* found = std::find_if(std::begin(kObjects), std::end(kObjects),
                                   [key](const ObjectInfo& info) { return info.key == key; });
  return found == std::end(kObjects) ? nullptr : found;
}

const PropertyInfo* propertyInfo(const ObjectInfo* object, unsigned short key) {
  if (object == nullptr) {
    return nullptr;
  }
  const auto* found = std::find_if(object->begin, object->end,
                                   [key](const PropertyInfo& info) { return info.key == key; });
  return found == object->end ? nullptr : found;
}

std::string typeText(unsigned short tag) {
  return tag <= TagCollection ? wireTagName(tag) : "tag " + std::to_string(tag);
}

ShowValue knownValue(const PropertyInfo& info, std::uint64_t bits) {
  ShowValue value = info.decode != nullptr ? info.decode(static_cast<unsigned int>(bits))
                                           : ShowValue{scalarToken(info.tag, bits), "", {}, ""};
  value.unit = info.unit;
  return value;
}

ShowValue foreignValue(unsigned short tag, std::uint64_t bits) {
  const std::string type = typeText(tag);
  return {scalarToken(tag, bits), "", {{"type", {type, Token::Word}}}, type};
}

}  // namespace

const char* objectClassName(unsigned short objectKey) {
  const ObjectInfo* info = objectInfo(objectKey);
  return info != nullptr ? info->name : nullptr;
}

void ShowObjects::beginObject(const WireItem& item, unsigned short objectKey, unsigned int) {
  const bool outermost = m_levels.empty();
  bool wrapped = false;
  const std::string name = outermost ? "" : openItem(item, wrapped);
  const ObjectInfo* info = objectInfo(objectKey);
  m_writer.beginObject(name, info != nullptr ? info->name : "GenericObject");
  if (outermost) {
    m_writer.value("offset", {numberToken(item.offset), "", {}, ""});
  }
  if (info == nullptr) {
    m_writer.value("key", {numberToken(objectKey), "", {}, ""});
  }
  m_levels.push_back({info, false, wrapped, {}});
}

void ShowObjects::endObject() { closeLevel(); }

void ShowObjects::beginCollection(const WireItem& item, unsigned int count) {
  bool wrapped = false;
  m_writer.beginList(openItem(item, wrapped), count);
  m_levels.push_back({nullptr, true, wrapped, {}});
}

void ShowObjects::endCollection() { closeLevel(); }

void ShowObjects::scalar(const WireItem& item, std::uint64_t bits) {
  bool wrapped = false;
  const PropertyInfo* info = propertyInfo(m_levels.back().info, item.key);
  const bool known = info != nullptr && info->tag == item.tag;
  m_writer.value(openItem(item, wrapped),
                 known ? knownValue(*info, bits) : foreignValue(item.tag, bits));
  closeItem(wrapped);
}

void ShowObjects::string(const WireItem& item, const std::string& bytes) {
  bool wrapped = false;
  m_writer.value(openItem(item, wrapped), textValue(bytes));
  closeItem(wrapped);
}

void ShowObjects::record(const WireItem& item, const gom::ObjectBase& record) {
  bool wrapped = false;
  showRecord(m_writer, openItem(item, wrapped), record);
  closeItem(wrapped);
}

void ShowObjects::brokenOff() {
  while (!m_levels.empty()) {
    closeLevel();
  }
}

// Gives the name under which the item is to be written. Elements have no name, and no key either
// but in foreign streams: those are wrapped, so that the key is seen.
std::string ShowObjects::openItem(const WireItem& item, bool& wrapped) {
  if (!m_levels.back().list) {
    return propertyName(item.key);
  }
  wrapped = item.key != 0;
  if (wrapped) {
    m_writer.beginObject("", "Element");
    m_writer.value("key", {numberToken(item.key), "", {}, ""});
  }
  return "value";
}

void ShowObjects::closeItem(bool wrapped) {
  if (wrapped) {
    m_writer.endObject();
  }
}

void ShowObjects::closeLevel() {
  const bool list = m_levels.back().list;
  const bool wrapped = m_levels.back().wrapped;
  m_levels.pop_back();
  list ? m_writer.endList() : m_writer.endObject();
  closeItem(wrapped);
}

std::string ShowObjects::propertyName(unsigned short key) {
  Level& level = m_levels.back();
  const PropertyInfo* info = propertyInfo(level.info, key);
  const std::string name = info != nullptr ? info->name : "property " + std::to_string(key);
  const unsigned int occurrence = ++level.seen[key];
  return occurrence == 1 ? name : name + "#" + std::to_string(occurrence);
}

}  // namespace trelvo::tool
