#include "tools/trelvo/MmcliImporter.h"

#include <string>
#include <vector>

#include "tools/trelvo/ImportFix.h"
#include "tools/trelvo/ImportText.h"
#include "tools/trelvo/JsonFields.h"
#include "tools/trelvo/JsonItems.h"
#include "tools/trelvo/MmcliCells.h"

namespace trelvo::tool {

namespace {

using nlohmann::json;

// What one document tells.
struct Told {
  std::vector<HeardCell> cells;
  std::optional<ImportFix> fix;
};

// Hands the object member `key` to `read`, and names what that leaves over.
template <class Read>
void readObject(JsonFields& fields, const char* key, const char* path, Read read) {
  const json* member = fields.member(key);
  if (member == nullptr) {
    return;
  }
  if (!member->is_object()) {
    fields.refuse(key, kWrongType);
    return;
  }
  JsonFields inner(*member, path, fields.notes());
  read(inner);
  inner.nameRest();
}

void readCells(JsonFields& generic, Told& told) {
  for (const json& element : generic.list("cell-info")) {
    if (!element.is_string()) {
      generic.refuse("cell-info", kWrongType);
    } else if (auto cell = readMmcliCell(element.get_ref<const std::string&>(), generic.notes())) {
      told.cells.push_back(*cell);
    }
  }
}

// "--" stands for unknown.
std::optional<double> number(JsonFields& fields, const char* key) {
  const auto text = fields.text(key);
  if (!text || *text == "--") {
    return std::nullopt;
  }
  const auto value = decimal(*text);
  if (!value) {
    fields.refuse(key, kDoesNotFit);
  }
  return value;
}

void nameUnlessUnknown(JsonFields& fields, const char* key, const char* name) {
  const json* const member = fields.member(key);
  if (member != nullptr && *member != "--" && !(member->is_array() && member->empty())) {
    fields.notes().report.notStored(name);
  }
}

void readGps(JsonFields& gps, Told& told) {
  ImportFix fix;
  fix.latitude = number(gps, "latitude");
  fix.longitude = number(gps, "longitude");
  if (number(gps, "altitude")) {
    gps.notes().count(kSeaLevel);
  }
  nameUnlessUnknown(gps, "utc", "modem.location.gps.utc");
  nameUnlessUnknown(gps, "nmea", "modem.location.gps.nmea");
  if (fix.latitude || fix.longitude) {
    told.fix = fix;
  }
}

void readBaseStation(JsonFields& station) {
  nameUnlessUnknown(station, "latitude", "modem.location.cdma-bs.latitude");
  nameUnlessUnknown(station, "longitude", "modem.location.cdma-bs.longitude");
}

void readLocation(JsonFields& location, Told& told) {
  readObject(location, "3gpp", "modem.location.3gpp.", [&](JsonFields& cell) {
    if (const auto serving = readMmcliServingCell(cell)) {
      told.cells.push_back(*serving);
    }
  });
  readObject(location, "gps", "modem.location.gps.", [&](JsonFields& gps) { readGps(gps, told); });
  readObject(location, "cdma-bs", "modem.location.cdma-bs.", readBaseStation);
}

Told readModem(JsonFields& modem) {
  Told told;
  readObject(modem, "generic", "modem.generic.",
             [&](JsonFields& generic) { readCells(generic, told); });
  readObject(modem, "location", "modem.location.",
             [&](JsonFields& location) { readLocation(location, told); });
  return told;
}

void store(Told& told, const std::optional<unsigned int>& time, const ImportNotes& notes,
           schema::MeasurementContainer& container) {
  for (HeardCell& cell : told.cells) {
    cell.timeStamp = time;
  }
  addHeardCells(told.cells, container);
  if (!told.fix) {
    return;
  }
  told.fix->timeStamp = time;
  if (const auto measurement = makeGnssMeasurement(*told.fix, notes)) {
    expectStored(container.addGnssMeasurement(measurement->wrappedObject()));
  }
}

}  // namespace

bool MmcliImporter::run() {
  const unsigned long long before = m_target.count();
  JsonItems documents(
      m_source, JsonItems::Form::WholeDocuments,
      [this](const json& document, unsigned long long line) { add(document, line); },
      [this](const char* complaint, unsigned long long line) {
        m_report.count(complaint, {m_source.name(), line});
      });
  documents.runToDamage(m_report);
  return m_target.count() > before;
}

void MmcliImporter::add(const json& document, unsigned long long line) {
  const ImportNotes notes{m_report, {m_source.name(), line}};
  if (!document.is_object() || document.count("modem") == 0 || !document.at("modem").is_object()) {
    notes.count(kNoModem);
    return;
  }
  JsonFields modem(document.at("modem"), "modem.", notes);
  Told told = readModem(modem);
  modem.nameRest();
  const auto container = made(schema::MeasurementContainer::create());
  store(told, m_clock.time, notes, *container);
  if (container->isEmpty()) {
    notes.count(kEmptyDocument);
    return;
  }
  if (!m_clock.time) {
    notes.count(kNoClock);
  }
  m_target.put(*container);
}

}  // namespace trelvo::tool
