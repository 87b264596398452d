#include "tools/trelvo/GeosubmitImporter.h"

#include <string>
#include <vector>

#include "tools/trelvo/GeosubmitCells.h"
#include "tools/trelvo/HeardAccessPoint.h"
#include "tools/trelvo/ImportFix.h"
#include "tools/trelvo/ImportText.h"
#include "tools/trelvo/JsonItems.h"

namespace trelvo::tool {

namespace {

using nlohmann::json;

constexpr long long kMillisecondsPerSecond = 1000;
constexpr long long kMostMilliseconds = 0xFFFFFFFFLL * kMillisecondsPerSecond;

// The time of what `fields` tells: that of the report, `age` earlier.
std::optional<unsigned int> readTime(JsonFields& fields, const std::optional<long long>& reportMs) {
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

void noteAltitude(JsonFields& fields) {
  if (fields.number("altitude")) {
    fields.notes().count(kSeaLevel);
  }
  if (fields.number("altitudeAccuracy")) {
    fields.notes().count(GeosubmitImporter::kLostAltitudeAccuracy);
  }
}

void noteSource(JsonFields& fields) {
  const auto source = fields.text("source");
  if (source && *source != "gps") {
    fields.notes().count("position of source '" + printable(*source, 20) +
                         "', stored as a GNSS measurement");
  }
}

ImportFix readFix(JsonFields& fields, const std::optional<long long>& reportMs) {
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

void addPosition(JsonFields& item, const std::optional<long long>& reportMs,
                 schema::MeasurementContainer& container) {
  const json* position = item.member("position");
  if (position != nullptr && position->is_object()) {
    JsonFields fields(*position, "position.", item.notes());
    addFix(readFix(fields, reportMs), item.notes(), container);
    fields.nameRest();
  } else if (position != nullptr) {
    item.refuse("position", kWrongType);
  } else if (item.member("latitude") != nullptr || item.member("longitude") != nullptr) {
    addFix(readFix(item, reportMs), item.notes(), container);
  }
}

std::vector<HeardCell> readTowers(JsonFields& item, const std::optional<long long>& reportMs) {
  const json::array_t& list = item.list("cellTowers");
  const auto standard = list.empty() ? std::nullopt : item.text("radioType");
  std::vector<HeardCell> towers;
  for (const json& element : list) {
    if (!element.is_object()) {
      item.refuse("cellTowers", kWrongType);
      continue;
    }
    JsonFields fields(element, "cellTowers.", item.notes());
    if (auto tower = readTower(fields, standard)) {
      tower->timeStamp = readTime(fields, reportMs);
      towers.push_back(*tower);
      fields.nameRest();
    }
  }
  return towers;
}

std::optional<HeardAccessPoint> readAccessPoint(JsonFields& fields,
                                                const std::optional<long long>& reportMs) {
  const auto text = fields.text("macAddress");
  const auto address = text ? macAddress(*text) : std::nullopt;
  if (!address) {
    fields.notes().count(kBadAddress);
    return std::nullopt;
  }
  HeardAccessPoint heard;
  heard.address = *address;
  heard.timeStamp = readTime(fields, reportMs);
  if (const auto level = fields.integer("signalStrength", -128, 127)) {
    heard.level = static_cast<signed char>(*level);
  }
  fields.nameRest();
  return heard;
}

void addAccessPoints(JsonFields& item, const std::optional<long long>& reportMs,
                     schema::MeasurementContainer& container) {
  for (const json& element : item.list("wifiAccessPoints")) {
    if (!element.is_object()) {
      item.refuse("wifiAccessPoints", kWrongType);
      continue;
    }
    JsonFields fields(element, "wifiAccessPoints.", item.notes());
    if (const auto heard = readAccessPoint(fields, reportMs)) {
      addAccessPoint(*heard, container);
    }
  }
}

void addObservations(JsonFields& item, const std::optional<long long>& reportMs,
                     schema::MeasurementContainer& container) {
  addHeardCells(readTowers(item, reportMs), container);
  addAccessPoints(item, reportMs, container);
}

std::optional<long long> milliseconds(const std::optional<unsigned int>& seconds) {
  return seconds ? std::optional<long long>(*seconds * kMillisecondsPerSecond) : std::nullopt;
}

}  // namespace

bool GeosubmitImporter::run() {
  const unsigned long long before = m_target.count();
  const bool isRequest = m_form == Form::Requests;
  JsonItems items(
      m_source, isRequest ? JsonItems::Form::WholeDocuments : JsonItems::Form::ElementsOfItems,
      [this](const json& item, unsigned long long line) { addItem(item, line); },
      [this](const char* complaint, unsigned long long line) {
        m_report.count(complaint, {m_source.name(), line});
      });
  const bool isWhole = items.runToDamage(m_report);
  return m_target.count() > before || (isWhole && items.emptyLists() > 0);
}

void GeosubmitImporter::addItem(const json& item, unsigned long long line) {
  const ImportNotes notes{m_report, {m_source.name(), line}};
  if (!item.is_object()) {
    notes.count(kNoObject);
    return;
  }
  JsonFields fields(item, "", notes);
  const auto container = made(schema::MeasurementContainer::create());
  m_form == Form::Requests ? addRequest(fields, *container) : addReport(fields, *container);
  fields.nameRest();
  if (container->isEmpty()) {
    notes.count(kEmptyItem);
  } else {
    m_target.put(*container);
  }
}

void GeosubmitImporter::addReport(JsonFields& fields, schema::MeasurementContainer& container) {
  const auto reportMs = fields.integer("timestamp", 1, kMostMilliseconds);
  if (!reportMs) {
    fields.notes().count(kNoTimestamp);
  }
  addPosition(fields, reportMs, container);
  addObservations(fields, reportMs, container);
}

void GeosubmitImporter::addRequest(JsonFields& fields, schema::MeasurementContainer& container) {
  addObservations(fields, milliseconds(m_clock.time), container);
  if (!m_clock.time && !container.isEmpty()) {
    fields.notes().count(kNoClock);
  }
}

}  // namespace trelvo::tool
