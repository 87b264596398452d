#include "tools/trelvo/CellTowerReader.h"

#include <algorithm>

namespace trelvo::tool {

namespace {

constexpr std::string_view kNames[] = {
    "radio", "mcc",   "net",     "area",       "cell",    "unit",    "lon",
    "lat",   "range", "samples", "changeable", "created", "updated", "averageSignal"};
static_assert(std::size(kNames) == CellTowerRow::kColumns, "a column without a name");

using Texts = std::array<std::string_view, CellTowerRow::kColumns>;

std::string_view withoutReturn(std::string_view line) {
  return !line.empty() && line.back() == '\r' ? line.substr(0, line.size() - 1) : line;
}

bool split(std::string_view line, Texts& texts) {
  const auto commas = std::count(line.begin(), line.end(), ',');
  if (static_cast<size_t>(commas) + 1 != texts.size()) {
    return false;
  }
  for (std::string_view& text : texts) {
    const size_t end = std::min(line.find(','), line.size());
    text = line.substr(0, end);
    line.remove_prefix(std::min(end + 1, line.size()));
  }
  return true;
}

bool isHeader(std::string_view line) {
  Texts texts;
  return split(line, texts) && std::equal(texts.begin(), texts.end(), std::begin(kNames));
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool isLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

bool isRow(std::string_view line) {
  Texts texts;
  return split(line, texts) && !texts[0].empty() && isLetter(texts[0].front()) &&
         !texts[1].empty() && std::all_of(texts[1].begin(), texts[1].end(), isDigit);
}

}  // namespace

std::string_view nameOf(CellTowerColumn column) { return kNames[static_cast<size_t>(column)]; }

bool CellTowerReader::looksLikeCellTowers(std::string_view text) {
  text = withoutByteOrderMark(text);
  text.remove_prefix(std::min(text.find_first_not_of("\r\n"), text.size()));
  const std::string_view line = withoutReturn(text.substr(0, text.find('\n')));
  return isHeader(line) || isRow(line);
}

bool CellTowerReader::next(CellTowerRow& row) {
  for (std::string_view text; m_lines.next(text);) {
    if (m_atStart && text.substr(0, text.find(',')) == kNames[0]) {
      if (!takeHeader(text)) {
        return refuse(kForeignHeader);
      }
      continue;
    }
    m_atStart = false;
    if (split(text, row.m_texts)) {
      row.m_line = m_lines.place().line;
      return true;
    }
    refuse(kWrongColumns);
  }
  return false;
}

bool CellTowerReader::takeHeader(std::string_view line) {
  m_atStart = false;
  m_hasHeader = isHeader(line);
  return m_hasHeader;
}

bool CellTowerReader::refuse(const char* kind) {
  m_report.count(kind, m_lines.place());
  return false;
}

}  // namespace trelvo::tool
