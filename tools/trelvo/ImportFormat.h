#pragma once

#include <trelvo/IStream.h>

#include <string>
#include <string_view>

#include "tools/trelvo/ImportClock.h"
#include "tools/trelvo/ImportReport.h"
#include "tools/trelvo/ImportTarget.h"

namespace trelvo::tool {

/// The formats that an import reads.
enum class ImportFormat {
  Auto,       ///< whichever of the others the content shows
  Geosubmit,  ///< crowd-sourced reports, JSON
  Nmea,       ///< receiver logs, NMEA 0183
  Cells,      ///< lists of cell towers, CSV as OpenCellID exchanges it
  Geolocate,  ///< requests for a position, JSON
  Iw,         ///< WLAN scans as `iw dev INTERFACE scan` prints them
  Mmcli,      ///< cells and locations as ModemManager's `mmcli -J` prints them
  Qeng,       ///< dialogues with a modem that answers AT+QENG
};

/// The format of a file that starts with `start`, the first of these that holds:
///
/// 1. Cells: the first line is one of such a list, see CellTowerReader::looksLikeCellTowers().
/// 2. Nmea, Iw, Qeng: a line starts with a sentence, with an entry of a scan, or with AT+QENG or an
///    answer to it; the first such line decides.
/// 3. Geosubmit, Geolocate, Mmcli: the first character is a brace. Members of the document decide:
///    "modem" is Mmcli; without "items" the lists and options of a request are Geolocate.
/// 4. Nmea: there is a sentence anywhere.
///
/// Auto when none does.
ImportFormat formatOf(std::string_view start);

/// What importStream() counts when it cannot tell the format.
constexpr const char* kUnknownFormat =
    "input of none of the formats that trelvo import --help lists";

/// Imports one input, `name` in messages, to the end. An input whose format cannot be told is
/// counted.
/// @return whether anything in it could be read. Throws what `target` throws.
bool importStream(IStream& stream, const std::string& name, ImportFormat format,
                  const ImportClock& clock, ImportReport& report, ImportTarget& target);

}  // namespace trelvo::tool
