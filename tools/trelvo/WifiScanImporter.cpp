#include "tools/trelvo/WifiScanImporter.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "tools/trelvo/ImportFix.h"
#include "tools/trelvo/ImportText.h"

namespace trelvo::tool {

namespace {

constexpr std::string_view kEntry = "BSS ";
constexpr size_t kAddressLength = 17;
constexpr long long kMillisecondsPerSecond = 1000;

// Fields with a name of their own in the report; everything else is an information element.
constexpr std::string_view kNamed[] = {"SSID", "TSF", "beacon interval", "capability", "freq"};

size_t indentationOf(std::string_view line) {
  return std::min(line.find_first_not_of(" \t"), line.size());
}

// The number ahead of `unit`, with nothing else around it.
std::optional<double> numberBefore(std::string_view unit, std::string_view text) {
  if (text.size() < unit.size() || text.substr(text.size() - unit.size()) != unit) {
    return std::nullopt;
  }
  return decimal(text.substr(0, text.size() - unit.size()));
}

}  // namespace

bool WifiScanImporter::startsEntry(std::string_view line) {
  const std::string_view rest = line.substr(std::min(line.size(), kEntry.size() + kAddressLength));
  return line.substr(0, kEntry.size()) == kEntry &&
         (rest.substr(0, 4) == "(on " || rest.substr(0, 5) == " (on ");
}

bool WifiScanImporter::run() {
  const unsigned long long before = m_target.count();
  for (std::string_view line; m_lines.next(line);) {
    add(line);
  }
  finishEntry();
  finishScan();
  return m_target.count() > before;
}

void WifiScanImporter::add(std::string_view line) {
  if (startsEntry(line)) {
    finishEntry();
    begin(line);
    return;
  }
  const size_t indentation = indentationOf(line);
  if (!m_inEntry || indentation == 0) {
    notes().count(kStrayLine);
    return;
  }
  m_indentation = m_indentation == 0 ? indentation : m_indentation;
  const size_t colon = line.find(':');
  if (indentation == m_indentation && colon != std::string_view::npos && m_entry) {
    addField(line.substr(indentation, colon - indentation), line.substr(colon + 1));
  }
}

void WifiScanImporter::begin(std::string_view line) {
  m_inEntry = true;
  m_entryPlace = m_lines.place();
  m_indentation = 0;
  m_ageMs.reset();
  m_entry.reset();
  m_entryKey = line.substr(kEntry.size(), line.find(')') - kEntry.size());
  if (const auto address = macAddress(line.substr(kEntry.size(), kAddressLength))) {
    m_entry = HeardAccessPoint();
    m_entry->address = *address;
  } else {
    notes().count(kBadAddress);
  }
}

void WifiScanImporter::addField(std::string_view name, std::string_view value) {
  value.remove_prefix(indentationOf(value));
  if (name == "signal") {
    return readSignal(value);
  }
  if (name == "last seen") {
    return readAge(value);
  }
  if (name == "freq" || name == "SSID") {
    m_entryKey.append("\n").append(name).append(value);
  }
  const bool named = std::find(std::begin(kNamed), std::end(kNamed), name) != std::end(kNamed);
  m_report.notStored(named ? "scan " + std::string(name) : "scan information elements");
}

void WifiScanImporter::readSignal(std::string_view value) {
  constexpr double kMostUnits = 100;
  const auto level = numberBefore(" dBm", value);
  const auto units = numberBefore("/100", value);
  const double rounded = std::round(level.value_or(0));
  if (level && rounded >= -128 && rounded <= 127) {
    m_entry->level = static_cast<signed char>(rounded);
  } else if (units && *units >= 0 && *units <= kMostUnits && *units == std::floor(*units)) {
    m_entry->rssi = static_cast<unsigned char>(*units);
  } else {
    notes().count(kBadSignal);
  }
}

void WifiScanImporter::readAge(std::string_view value) {
  constexpr double kMost = 1e15;
  const auto age = numberBefore(" ms ago", value);
  if (age && *age >= 0 && *age <= kMost) {
    m_ageMs = static_cast<long long>(*age);
  } else if (numberBefore("s [boottime]", value)) {
    m_report.notStored("scan last seen [boottime]");
  } else {
    notes().count(kBadAge);
  }
}

void WifiScanImporter::finishEntry() {
  if (!m_entry) {
    return;
  }
  if (m_inScan.size() == kMostInScan || m_inScan.count(m_entryKey) > 0) {
    finishScan();
  }
  if (!m_scan) {
    m_scan = made(schema::MeasurementContainer::create());
  }
  m_inScan.insert(m_entryKey);
  m_entry->timeStamp = timeStamp();
  addAccessPoint(*m_entry, *m_scan);
  m_entry.reset();
}

std::optional<unsigned int> WifiScanImporter::timeStamp() const {
  if (!m_clock.time) {
    entryNotes().count(kNoClock);
    return std::nullopt;
  }
  const long long now = *m_clock.time * kMillisecondsPerSecond;
  const auto stamp = timeStampOf((now - m_ageMs.value_or(0)) / kMillisecondsPerSecond);
  if (!stamp) {
    entryNotes().count(kBadTime);
  }
  return stamp;
}

void WifiScanImporter::finishScan() {
  if (m_scan) {
    m_target.put(*m_scan);
  }
  m_scan = nullptr;
  m_inScan.clear();
}

}  // namespace trelvo::tool
