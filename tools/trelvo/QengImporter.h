#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/trelvo/HeardCell.h"
#include "tools/trelvo/ImportClock.h"
#include "tools/trelvo/ImportLines.h"
#include "tools/trelvo/ImportReport.h"
#include "tools/trelvo/ImportSource.h"
#include "tools/trelvo/ImportTarget.h"
#include "tools/trelvo/QengLayout.h"

namespace trelvo::tool {

/// Makes measurement containers of dialogues with a modem that answers AT+QENG="servingcell" and
/// AT+QENG="neighbourcell", as Quectel's do: each serving cell starts a container, and the
/// neighbours that follow it join it.
///
/// Which columns a neighbour has depends on the serving cell's network; see QengLayout.cpp. Cell
/// identity and area code are hexadecimal, everything else is decimal, and "-" stands for unknown.
/// The level is RSRP of LTE, RSCP of WCDMA and the received level of GSM, all in dBm, the quality
/// RSRQ or Ec/No in dB; both become reporting codes, see RadioLevels.h. The other columns are named
/// as not stored.
///
/// An answer may start in the line behind "+QENG:", and an LTE serving cell may stand in a line of
/// its own, as it does beside a 5G cell. Lines of 5G cells are counted. The dialogue has no clock:
/// its time is that of the command line.
///
/// Memory: one container of at most kMostCells cells. Threads: one at a time.
class QengImporter {
 public:
  static constexpr size_t kMostCells = 256;

  static constexpr const char* kStrayLine = "line outside an answer to AT+QENG";
  static constexpr const char* kNoCell = "serving cell: none, the modem is searching";
  static constexpr const char* kUnknownLayout = "answer to AT+QENG with unknown columns, left out";

  QengImporter(ImportSource& source, ImportReport& report, ImportTarget& target,
               const ImportClock& clock)
      : m_lines(source, report), m_report(report), m_target(target), m_clock(clock) {}

  /// Reads to the end. @return whether a container was stored.
  bool run();

  /// Whether `line` is the question or starts with an answer to it.
  static bool looksLikeQeng(std::string_view line);

 private:
  using Fields = std::vector<std::string_view>;

  void add(std::string_view line);
  void addAnswer(std::string_view answer);
  void addServing(const Fields& fields);
  void addCell(std::string_view kind, const Fields& fields, size_t radioAt);
  HeardCell readCell(const QengLayout& layout, const Fields& fields, size_t from);
  void finish();
  ImportNotes notes() const { return {m_report, m_lines.place()}; }

  ImportLines m_lines;
  ImportReport& m_report;
  ImportTarget& m_target;
  ImportClock m_clock;
  bool m_answerFollows = false;
  std::optional<CellRadio> m_servingRadio;
  std::vector<HeardCell> m_cells;
};

}  // namespace trelvo::tool
