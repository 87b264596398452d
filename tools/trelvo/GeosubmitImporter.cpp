#include "tools/trelvo/GeosubmitImporter.h"

#include <trelvo/schema/WlanMeasurement.h>

#include <array>
#include <string>
#include <vector>

#include "tools/trelvo/GeosubmitCells.h"
#include "tools/trelvo/GeosubmitItems.h"
#include "tools/trelvo/ImportFix.h"
#include "tools/trelvo/ImportText.h"

namespace trelvo::tool {

namespace {

using nlohmann::json;

constexpr long long kMillisecondsPerSecond = 1000;
constexpr long long kMostMilliseconds = 0xFFFFFFFFLL * kMillisecondsPerSecond;

// The time of what `fields` tells: that of the report, `age` earlier.
std::optional<unsigned int> readTime(GeosubmitFields& fields,
                                     const std::optional<long long>& reportMs) {
  const long long ageMs = fields.integer("age", 0, kMostMilliseconds).value_or(0);
  if (!reportMs) {
    return std::nullopt;
  }
  const auto stamp = timeStampOf((*reportMs - ageMs) / kMillisecondsPerSecond);
  if (!stamp) {
    fields.notes().count(kBadTime);
  }
  return stamp;
}

void noteAltitude(GeosubmitFields& fields) {
  if (fields.number("altitude")) {
    fields.notes().count(GeosubmitImporter::kSeaLevel);
  }
  if (fields.number("altitudeAccuracy")) {
    fields.notes().count(GeosubmitImporter::kLostAltitudeAccuracy);
  }
}

void noteSource(GeosubmitFields& fields) {
  const auto source = fields.text("source");
  if (source && *source != "gps") {
    fields.notes().count("position of source '" + printable(*source, 20) +
                         "', stored as a GNSS measurement");
  }
}

ImportFix readFix(GeosubmitFields& fields, const std::optional<long long>& reportMs) {
  ImportFix fix;
  fix.latitude = fields.number("latitude");
  fix.longitude = fields.number("longitude");
  fix.radius = fields.number("accuracy");
  fix.speed = fields.number("speed");
  fix.course = fields.number("heading");
  fix.timeStamp = readTime(fields, reportMs);
  noteAltitude(fields);
  noteSource(fields);
  return fix;
}

void addFix(const ImportFix& fix, const ImportNotes& notes,
            schema::MeasurementContainer& container) {
  if (const auto measurement = makeGnssMeasurement(fix, notes)) {
    expectStored(container.addGnssMeasurement(measurement->wrappedObject()));
  }
}

void addPosition(GeosubmitFields& item, const std::optional<long long>& reportMs,
                 schema::MeasurementContainer& container) {
  const json* position = item.member("position");
  if (position != nullptr && position->is_object()) {
    GeosubmitFields fields(*position, "position.", item.notes());
    addFix(readFix(fields, reportMs), item.notes(), container);
    fields.nameRest();
  } else if (position != nullptr) {
    item.refuse("position", kWrongType);
  } else if (item.member("latitude") != nullptr || item.member("longitude") != nullptr) {
    addFix(readFix(item, reportMs), item.notes(), container);
  }
}

std::vector<GeosubmitTower> readTowers(GeosubmitFields& item,
                                       const std::optional<long long>& reportMs) {
  std::vector<GeosubmitTower> towers;
  for (const json& element : item.list("cellTowers")) {
    if (!element.is_object()) {
      item.refuse("cellTowers", kWrongType);
      continue;
    }
    GeosubmitFields fields(element, "cellTowers.", item.notes());
    if (auto tower = readTower(fields)) {
      tower->timeStamp = readTime(fields, reportMs);
      towers.push_back(*tower);
      fields.nameRest();
    }
  }
  return towers;
}

gom::SharedPointer<schema::WlanDn> readAddress(GeosubmitFields& fields) {
  const auto text = fields.text("macAddress");
  const auto bytes = text ? macAddress(*text) : std::nullopt;
  if (!bytes) {
    fields.notes().count(GeosubmitImporter::kBadAddress);
    return nullptr;
  }
  auto dn = made(schema::WlanDn::create());
  dn->setBssid(bytes->data(), static_cast<unsigned int>(bytes->size()));
  return dn;
}

gom::SharedPointer<schema::WlanMeasurement> readAccessPoint(
    GeosubmitFields& fields, const std::optional<long long>& reportMs) {
  const auto dn = readAddress(fields);
  if (!dn) {
    return nullptr;
  }
  auto measurement = made(schema::WlanMeasurement::create());
  if (const auto stamp = readTime(fields, reportMs)) {
    expectStored(measurement->setTimeStamp(*stamp));
  }
  expectStored(measurement->setDn(dn));
  if (const auto level = fields.integer("signalStrength", -128, 127)) {
    const auto heard = made(schema::WlanApMeasurement::create());
    heard->setRxLevel(static_cast<signed char>(*level));
    expectStored(measurement->setWlanApMeasurement(heard));
  }
  fields.nameRest();
  return measurement;
}

void addAccessPoints(GeosubmitFields& item, const std::optional<long long>& reportMs,
                     schema::MeasurementContainer& container) {
  for (const json& element : item.list("wifiAccessPoints")) {
    if (!element.is_object()) {
      item.refuse("wifiAccessPoints", kWrongType);
      continue;
    }
    GeosubmitFields fields(element, "wifiAccessPoints.", item.notes());
    if (const auto measurement = readAccessPoint(fields, reportMs)) {
      expectStored(container.addWlanMeasurement(measurement->wrappedObject()));
    }
  }
}

}  // namespace

bool GeosubmitImporter::run() {
  const unsigned long long before = m_target.count();
  GeosubmitItems items(
      m_source, [this](const json& item, unsigned long long line) { addItem(item, line); },
      [this](const char* complaint, unsigned long long line) {
        m_report.count(complaint, {m_source.name(), line});
      });
  bool isWhole = true;
  try {
    items.run();
  } catch (const GeosubmitItems::Damage& damage) {
    m_report.count(kDamaged + (": " + printable(damage.what(), 160)), m_source.place());
    isWhole = false;
  }
  return m_target.count() > before || (isWhole && items.emptyLists() > 0);
}

void GeosubmitImporter::addItem(const json& item, unsigned long long line) {
  const ImportNotes notes{m_report, {m_source.name(), line}};
  if (!item.is_object()) {
    notes.count(kNoObject);
    return;
  }
  GeosubmitFields fields(item, "", notes);
  const auto reportMs = fields.integer("timestamp", 1, kMostMilliseconds);
  if (!reportMs) {
    notes.count(kNoTimestamp);
  }
  const auto container = made(schema::MeasurementContainer::create());
  addPosition(fields, reportMs, *container);
  addTowers(readTowers(fields, reportMs), *container);
  addAccessPoints(fields, reportMs, *container);
  fields.nameRest();
  if (container->isEmpty()) {
    notes.count(kEmptyItem);
  } else {
    m_target.put(*container);
  }
}

std::optional<std::array<unsigned char, 6>> macAddress(std::string_view text) {
  const char separator = text.size() == 17 ? text[2] : '\0';
  const size_t width = separator == ':' || separator == '-' ? 3 : 2;
  std::array<unsigned char, 6> bytes{};
  if (text.size() != 5 * width + 2) {
    return std::nullopt;
  }
  for (size_t i = 0; i < bytes.size(); ++i) {
    const int high = hexDigit(text[i * width]);
    const int low = hexDigit(text[i * width + 1]);
    if (high < 0 || low < 0 || (width == 3 && i > 0 && text[i * width - 1] != separator)) {
      return std::nullopt;
    }
    bytes[i] = static_cast<unsigned char>(high * 16 + low);
  }
  return bytes;
}

}  // namespace trelvo::tool
