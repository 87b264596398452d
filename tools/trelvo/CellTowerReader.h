#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "tools/trelvo/ImportLines.h"
#include "tools/trelvo/ImportReport.h"
#include "tools/trelvo/ImportSource.h"

namespace trelvo::tool {

/// The columns of a list of cell towers, in their order.
enum class CellTowerColumn : size_t {
  Radio,          ///< GSM, UMTS, LTE, CDMA, ...
  Mcc,            ///< mobile country code
  Net,            ///< mobile network code; of CDMA the SID
  Area,           ///< LAC; of LTE the TAC, of CDMA the NID
  Cell,           ///< cell identity; of CDMA the BID
  Unit,           ///< scrambling code of UMTS, physical cell identity of LTE
  Longitude,      ///< degrees
  Latitude,       ///< degrees
  Range,          ///< metres
  Samples,        ///< measurements behind the row
  Changeable,     ///< 1 when the position was computed from measurements
  Created,        ///< Unix seconds
  Updated,        ///< Unix seconds
  AverageSignal,  ///< dBm
  Count
};

/// The name of a column, as the header line writes it.
std::string_view nameOf(CellTowerColumn column);

/// One row of a list: the texts of its columns, of which none was looked into.
class CellTowerRow {
 public:
  static constexpr size_t kColumns = static_cast<size_t>(CellTowerColumn::Count);

  std::string_view text(CellTowerColumn column) const {
    return m_texts[static_cast<size_t>(column)];
  }

  /// The line of the input, from 1.
  unsigned long long line() const { return m_line; }

 private:
  friend class CellTowerReader;

  std::array<std::string_view, kColumns> m_texts;
  unsigned long long m_line = 0;
};

/// Reads a list of cell towers in the form that OpenCellID and the Mozilla Location Service
/// exchange: comma-separated lines of fourteen columns without quotes. A header line may lead.
///
/// Empty lines are skipped. A line of another number of columns is counted and skipped. A header
/// with other columns ends the reading: nobody can tell what its rows mean.
///
/// Memory: one line, see ImportLines. Threads: one at a time.
class CellTowerReader {
 public:
  static constexpr const char* kWrongColumns = "line that does not have fourteen columns";
  static constexpr const char* kForeignHeader = "header with other columns, list not read";

  CellTowerReader(ImportSource& source, ImportReport& report)
      : m_report(report), m_lines(source, report) {}

  /// Gives the next row, with texts that are valid until the next call.
  /// @return false at the end of the input, and behind a header with other columns.
  bool next(CellTowerRow& row);

  /// Whether the list starts with a header of the right columns.
  bool hasHeader() const { return m_hasHeader; }

  /// Whether `text` starts like such a list: with the header, or with a row of fourteen columns
  /// whose first is a word and whose second is a number.
  static bool looksLikeCellTowers(std::string_view text);

 private:
  bool takeHeader(std::string_view line);
  bool refuse(const char* kind);

  ImportReport& m_report;
  ImportLines m_lines;
  bool m_atStart = true;
  bool m_hasHeader = false;
};

}  // namespace trelvo::tool
