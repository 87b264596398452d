#pragma once

#include <trelvo/schema/MeasurementContainer.h>

#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "tools/trelvo/HeardAccessPoint.h"
#include "tools/trelvo/ImportClock.h"
#include "tools/trelvo/ImportLines.h"
#include "tools/trelvo/ImportReport.h"
#include "tools/trelvo/ImportSource.h"
#include "tools/trelvo/ImportTarget.h"

namespace trelvo::tool {

/// Makes measurement containers of what `iw dev INTERFACE scan` prints: one for each scan, with a
/// WLAN measurement for each "BSS" in it.
///
/// | printed                    | stored                                          |
/// |----------------------------|-------------------------------------------------|
/// | the address behind "BSS"   | dn.bssid in 6 bytes                             |
/// | signal: -57.50 dBm         | rxLevel, rounded to whole dBm, halves to -58    |
/// | signal: 60/100             | rssi, a scale of the driver's own               |
/// | last seen: 429 ms ago      | timeStamp: that much before ImportClock::time   |
///
/// Everything else is named as not stored: the SSID, whose field holds 16 bits without a defined
/// meaning, so that its escapes (\x00) need no reading, "freq", and "last seen" by the clock that
/// counts from the start of the machine. Lines count as fields at the indentation of the first one
/// of their BSS; what stands deeper belongs to an information element.
///
/// A scan names no end. The system keeps one entry for an interface, address, frequency and SSID
/// together, so a repetition of all four starts the next scan; so do kMostInScan access points.
///
/// Memory: one scan of at most kMostInScan access points. Threads: one at a time.
class WifiScanImporter {
 public:
  static constexpr size_t kMostInScan = 1000;
  static constexpr size_t kMaxLineLength = 4096;

  static constexpr const char* kStrayLine = "line outside the entries of a scan";
  static constexpr const char* kBadSignal =
      "signal of an access point that cannot be read, left out";
  static constexpr const char* kBadAge =
      "'last seen' of an access point that cannot be read, left out";

  WifiScanImporter(ImportSource& source, ImportReport& report, ImportTarget& target,
                   const ImportClock& clock)
      : m_lines(source, report, kMaxLineLength),
        m_report(report),
        m_target(target),
        m_clock(clock) {}

  /// Reads to the end. @return whether an access point was stored.
  bool run();

  /// Whether `line` starts an entry: "BSS 01:23:45:67:89:ab(on wlan0)".
  static bool startsEntry(std::string_view line);

 private:
  void add(std::string_view line);
  void begin(std::string_view line);
  void addField(std::string_view name, std::string_view value);
  void readSignal(std::string_view value);
  void readAge(std::string_view value);
  void finishEntry();
  std::optional<unsigned int> timeStamp() const;
  void finishScan();
  ImportNotes notes() const { return {m_report, m_lines.place()}; }
  ImportNotes entryNotes() const { return {m_report, m_entryPlace}; }

  ImportLines m_lines;
  ImportReport& m_report;
  ImportTarget& m_target;
  ImportClock m_clock;

  gom::SharedPointer<schema::MeasurementContainer> m_scan;
  std::set<std::string> m_inScan;

  bool m_inEntry = false;
  ImportPlace m_entryPlace{};
  std::optional<HeardAccessPoint> m_entry;  // nothing inside an entry without an address
  std::string m_entryKey;
  size_t m_indentation = 0;  // 0 until the entry's first line
  std::optional<long long> m_ageMs;
};

}  // namespace trelvo::tool
