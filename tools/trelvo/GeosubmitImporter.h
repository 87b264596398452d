#pragma once

#include <nlohmann/json.hpp>

#include <array>
#include <optional>
#include <string_view>

#include "tools/trelvo/GeosubmitFields.h"
#include "tools/trelvo/ImportReport.h"
#include "tools/trelvo/ImportSource.h"
#include "tools/trelvo/ImportTarget.h"

namespace trelvo::tool {

/// Makes measurement containers of crowd-sourced reports, the geosubmit JSON of version 2: one
/// container for each item.
///
/// | In the report | In the container |
/// |---|---|
/// | `position` | a GNSS measurement, whatever its `source`; others than "gps" are counted |
/// | `accuracy` | the radius of the circle of error, as given |
/// | `heading` | the course, wrapped to [-180, 180) |
/// | `cellTowers` gsm, wcdma, lte | GERAN, UTRA FDD and E-UTRA cell measurements |
/// | `signalStrength` of a tower | the reporting code of its radio network, see RadioLevels.h |
/// | `wifiAccessPoints` | WLAN measurements with the address in 6 bytes |
/// | `signalStrength` of an access point | `rxLevel`, in dBm |
/// | `timestamp` minus `age` | the time stamps, whole Unix seconds |
///
/// `altitude` counts from sea level and no geoid separation comes with it, so it is left out, and
/// with it `altitudeAccuracy`. `frequency`, `channel`, `ssid` and `signalToNoiseRatio` of access
/// points stay out because the record's fields of like names have no defined meaning. The flat
/// position of version 1 is read as well. Without a `timestamp` the measurements have no time
/// stamps.
///
/// Memory: one item. Threads: one at a time.
class GeosubmitImporter {
 public:
  static constexpr const char* kDamaged = "damaged JSON, the rest of the file is not read";
  static constexpr const char* kNoObject = "item that is no object";
  static constexpr const char* kEmptyItem = "item without observations";
  static constexpr const char* kNoTimestamp = "item without a timestamp";
  static constexpr const char* kSeaLevel =
      "altitude above sea level without geoid separation, left out";
  static constexpr const char* kLostAltitudeAccuracy =
      "altitudeAccuracy of an altitude that is left out, left out";
  static constexpr const char* kBadAddress = "access point without a usable macAddress";

  GeosubmitImporter(ImportSource& source, ImportReport& report, ImportTarget& target)
      : m_source(source), m_report(report), m_target(target) {}

  /// Reads to the end, or to the first damage, which is counted.
  /// @return whether an item was stored, or the input is sound and its lists of items are empty.
  bool run();

 private:
  void addItem(const nlohmann::json& item, unsigned long long line);

  ImportSource& m_source;
  ImportReport& m_report;
  ImportTarget& m_target;
};

/// The six bytes of "01:23:45:67:89:ab", with colons, hyphens or nothing between the pairs; empty
/// when it is anything else.
std::optional<std::array<unsigned char, 6>> macAddress(std::string_view text);

}  // namespace trelvo::tool
