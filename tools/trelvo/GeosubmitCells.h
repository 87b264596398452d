#pragma once

#include <optional>
#include <string>

#include "tools/trelvo/HeardCell.h"
#include "tools/trelvo/JsonFields.h"

namespace trelvo::tool {

/// Reads one element of "cellTowers". A tower without a "radioType" is of the type `standard`. The
/// scrambling code stands in "primaryScramblingCode", in older reports and in requests in "psc".
/// The level is that of "signalStrength"; where that is missing, "asu" gives it, as phones count:
/// GSM 2 * asu - 113 dBm (0 to 31), WCDMA asu - 116 dBm (-5 to 91), LTE asu - 140 dBm (0 to 97). A
/// level that isHeardLevel() refuses is none.
/// @return nothing, counted, when the radio type is missing or unknown.
std::optional<HeardCell> readTower(JsonFields& fields, const std::optional<std::string>& standard);

constexpr const char* kNoRadioType = "cell tower without a radioType";

}  // namespace trelvo::tool
