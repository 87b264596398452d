#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "tools/trelvo/HeardCell.h"

namespace trelvo::tool {

/// What a column of an answer to AT+QENG holds. `Other` is named as not stored, `End` stands behind
/// the last column that matters.
enum class QengColumn {
  End,
  Other,
  Mcc,
  Mnc,
  Area,    ///< hexadecimal
  CellId,  ///< hexadecimal
  Code,
  Channel,
  Level,
  Quality,
};

/// The columns behind the name of the radio network, for one kind of line.
struct QengLayout {
  std::string_view kind;             ///< the first field, "neighbourcell" for instance
  CellRadio radio;                   ///< the network that the line names
  std::optional<CellRadio> whileOn;  ///< the serving cell's network; any when empty
  std::array<QengColumn, 18> columns;

  /// How many columns there must be.
  size_t size() const;
};

/// The layout of a line, null when there is none.
const QengLayout* qengLayout(std::string_view kind, CellRadio radio,
                             const std::optional<CellRadio>& servingRadio);

/// The network that a line calls "GSM", "WCDMA" or "LTE".
std::optional<CellRadio> qengRadio(std::string_view name);

}  // namespace trelvo::tool
