#pragma once

#include <optional>
#include <string_view>

#include "tools/trelvo/HeardCell.h"
#include "tools/trelvo/JsonFields.h"

namespace trelvo::tool {

/// Reads one cell as `mmcli --get-cell-info` prints it: "NAME: VALUE" pairs with commas between
/// them.
///
/// | printed                            | GSM            | UMTS         | LTE       |
/// |------------------------------------|----------------|--------------|-----------|
/// | operator id, MCC and MNC           | mcc, mnc       | mcc, mnc     | mcc, mnc  |
/// | lac or tac, hexadecimal            | lac            | lac          | tac       |
/// | ci, hexadecimal                    | cid            | ucid         | ucid      |
/// | base station id, physical ci, psc  | bsic           | pcpich       | pci       |
/// | arfcn, uarfcn, earfcn              | arfcn          | uarfcnDl     | earfcn    |
/// | rx level, rscp, rsrp               | rxLevel        | rscp         | rsrp      |
/// | ecio, rsrq                         |                | ecNo         | rsrq      |
/// | timing advance                     | timingAdvance  |              |           |
/// | path loss                          |                | pathloss     |           |
///
/// "base station id" and "physical ci" are hexadecimal. "rx level" is the reporting code already.
/// The timing advance of LTE comes without a unit; it is named as not stored, as is everything
/// else.
/// @return nothing, counted, when the cell is of another type.
std::optional<HeardCell> readMmcliCell(std::string_view text, const ImportNotes& notes);

/// Reads the member "3gpp" of a location: the cell that the modem is registered with.
/// @return nothing when it is none.
std::optional<HeardCell> readMmcliServingCell(JsonFields& location);

}  // namespace trelvo::tool
