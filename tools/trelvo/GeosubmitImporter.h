#pragma once

#include <trelvo/schema/MeasurementContainer.h>

#include <nlohmann/json.hpp>

#include "tools/trelvo/ImportClock.h"
#include "tools/trelvo/ImportReport.h"
#include "tools/trelvo/ImportSource.h"
#include "tools/trelvo/ImportTarget.h"
#include "tools/trelvo/JsonFields.h"

namespace trelvo::tool {

/// Makes measurement containers of crowd-sourced reports and of requests for a position: one
/// container for each report, the geosubmit JSON of versions 1 and 2, or for each geolocate
/// request.
///
/// | In the report | In the container |
/// |---|---|
/// | `position`; of version 1 its members, flat | a GNSS measurement, whatever its `source` |
/// | `accuracy` | the radius of the circle of error, as given |
/// | `heading` | the course, wrapped to [-180, 180) |
/// | `cellTowers` gsm, wcdma, lte | GERAN, UTRA FDD and E-UTRA cell measurements |
/// | `signalStrength` of a tower | the reporting code of its radio network, see RadioLevels.h |
/// | `wifiAccessPoints` | WLAN measurements with the address in 6 bytes |
/// | `signalStrength` of an access point | `rxLevel`, in dBm |
/// | `timestamp` minus `age` | the time stamps, whole Unix seconds |
///
/// A `source` other than "gps" is counted. `altitude` counts from sea level and no geoid separation
/// comes with it, so it is left out, and with it `altitudeAccuracy`. `frequency`, `channel`, `ssid`
/// and `signalToNoiseRatio` of access points stay out because the record's fields of like names
/// have no defined meaning. Without a `timestamp` the measurements have no time stamps.
///
/// A request has `cellTowers` and `wifiAccessPoints` alone, and no clock: its time is that of the
/// command line. The rest of it is about the asking and is named as not stored. In both, a
/// `radioType` beside the list stands for towers without one.
///
/// Memory: one item. Threads: one at a time.
class GeosubmitImporter {
 public:
  /// What the input holds.
  enum class Form { Reports, Requests };

  static constexpr const char* kNoObject = "item that is no object";
  static constexpr const char* kEmptyItem = "item without observations";
  static constexpr const char* kNoTimestamp = "item without a timestamp";
  static constexpr const char* kLostAltitudeAccuracy =
      "altitudeAccuracy of an altitude that is left out, left out";

  /// `clock` serves requests alone.
  GeosubmitImporter(ImportSource& source, ImportReport& report, ImportTarget& target,
                    Form form = Form::Reports, const ImportClock& clock = {})
      : m_source(source), m_report(report), m_target(target), m_form(form), m_clock(clock) {}

  /// Reads to the end, or to the first damage, which is counted.
  /// @return whether an item was stored, or the input is sound and its lists of items are empty.
  bool run();

 private:
  void addItem(const nlohmann::json& item, unsigned long long line);
  void addReport(JsonFields& fields, schema::MeasurementContainer& container);
  void addRequest(JsonFields& fields, schema::MeasurementContainer& container);

  ImportSource& m_source;
  ImportReport& m_report;
  ImportTarget& m_target;
  Form m_form;
  ImportClock m_clock;
};

}  // namespace trelvo::tool
