#pragma once

#include <optional>

#include "tools/trelvo/CellTowerReader.h"
#include "tools/trelvo/ImportReport.h"

namespace trelvo::tool {

/// The columns of one row as numbers.
///
/// An empty column reads as nothing. One that is no number, or lies outside the range asked for,
/// reads as nothing too and is counted as "cell tower COLUMN ..., left out".
///
/// The row must outlive it. Threads: one at a time.
class CellTowerFields {
 public:
  CellTowerFields(const CellTowerRow& row, const ImportNotes& notes) : m_row(row), m_notes(notes) {}

  /// A finite number from `least` to `most`.
  std::optional<double> number(CellTowerColumn column, double least, double most) const;

  /// A whole number from `least` to `most`.
  std::optional<long long> integer(CellTowerColumn column, long long least, long long most) const;

  /// The same of a column in which -1 stands for unknown.
  std::optional<long long> code(CellTowerColumn column, long long least, long long most) const;

  std::string_view text(CellTowerColumn column) const { return m_row.text(column); }

  /// Counts the column as "cell tower COLUMN `complaint`".
  void refuse(CellTowerColumn column, const char* complaint) const;

  /// Names the column in the report as not stored for towers of `radio`, unless it is empty.
  void notStored(CellTowerColumn column, const char* radio = nullptr) const;

  const ImportNotes& notes() const { return m_notes; }

 private:
  const CellTowerRow& m_row;
  ImportNotes m_notes;
};

}  // namespace trelvo::tool
