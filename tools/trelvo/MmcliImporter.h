#pragma once

#include <trelvo/schema/MeasurementContainer.h>

#include <nlohmann/json.hpp>

#include "tools/trelvo/ImportClock.h"
#include "tools/trelvo/ImportReport.h"
#include "tools/trelvo/ImportSource.h"
#include "tools/trelvo/ImportTarget.h"

namespace trelvo::tool {

/// Makes measurement containers of what ModemManager's `mmcli -m MODEM --get-cell-info -J` and
/// `mmcli -m MODEM --location-get -J` print: one for each JSON document.
///
/// Cell information is a list of texts such as "cell type: lte, serving: yes, operator id: 26201,
/// ci: 1234507, ...", see MmcliCells.h. Of a location,
///
/// | printed  | stored                                                                          |
/// |----------|---------------------------------------------------------------------------------|
/// | `3gpp`   | the identity of a serving cell: of E-UTRA with a tracking area code, else of    |
/// |          | UTRA FDD with a cell identity above 65535, else of GERAN                        |
/// | `gps`    | latitude and longitude as a GNSS measurement; the altitude counts from sea level|
///
/// `mmcli` writes "--" for what it does not know. The documents have no clock (`utc` is a time of
/// day): their time is that of the command line.
///
/// Memory: one document of at most JsonItems::kMaxItemBytes. Threads: one at a time.
class MmcliImporter {
 public:
  static constexpr const char* kNoModem = "document that is not about a modem";
  static constexpr const char* kEmptyDocument = "document without cells and without a location";

  MmcliImporter(ImportSource& source, ImportReport& report, ImportTarget& target,
                const ImportClock& clock)
      : m_source(source), m_report(report), m_target(target), m_clock(clock) {}

  /// Reads to the end, or to the first damage, which is counted.
  /// @return whether a container was stored.
  bool run();

 private:
  void add(const nlohmann::json& document, unsigned long long line);

  ImportSource& m_source;
  ImportReport& m_report;
  ImportTarget& m_target;
  ImportClock m_clock;
};

}  // namespace trelvo::tool
