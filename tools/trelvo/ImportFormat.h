#pragma once

#include <trelvo/IStream.h>

#include <optional>
#include <string>
#include <string_view>

#include "tools/trelvo/ImportReport.h"
#include "tools/trelvo/ImportTarget.h"
#include "tools/trelvo/NmeaFields.h"

namespace trelvo::tool {

/// The formats that an import reads.
enum class ImportFormat {
  Auto,       ///< whichever of the others the content shows
  Geosubmit,  ///< crowd-sourced reports, JSON
  Nmea,       ///< receiver logs, NMEA 0183
  Cells,      ///< lists of cell towers, CSV as OpenCellID exchanges it
};

/// The format of a file that starts with `start`: Cells when its first line is one of such a list
/// (see CellTowerReader::looksLikeCellTowers()), else Nmea when a line starts with a sentence, else
/// Geosubmit when the first character is a brace, else Nmea when there is a sentence anywhere. Auto
/// when it is none of these.
ImportFormat formatOf(std::string_view start);

/// What importStream() counts when it cannot tell the format.
constexpr const char* kUnknownFormat =
    "input that is neither geosubmit JSON nor an NMEA log nor a list of cell towers";

/// Imports one input, `name` in messages, to the end. An input whose format cannot be told is
/// counted.
/// @return whether anything in it could be read. Throws what `target` throws.
bool importStream(IStream& stream, const std::string& name, ImportFormat format,
                  const std::optional<NmeaDate>& date, ImportReport& report, ImportTarget& target);

}  // namespace trelvo::tool
