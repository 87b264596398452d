#include "tools/trelvo/CellTowerReader.h"

#include <algorithm>

namespace trelvo::tool {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

constexpr std::string_view kNames[] = {
    "radio", "mcc",   "net",     "area",       "cell",    "unit",    "lon",
    "lat",   "range", "samples", "changeable", "created", "updated", "averageSignal"};
static_assert(std::size(kNames) == CellTowerRow::kColumns, "a column without a name");

using Texts = std::array<std::string_view, CellTowerRow::kColumns>;

void dropPrefix(std::string_view& text, std::string_view prefix) {
  if (text.substr(0, prefix.size()) == prefix) {
    text.remove_prefix(prefix.size());
  }
}

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
  dropPrefix(text, kByteOrderMark);
  text.remove_prefix(std::min(text.find_first_not_of("\r\n"), text.size()));
  const std::string_view line = withoutReturn(text.substr(0, text.find('\n')));
  return isHeader(line) || isRow(line);
}

bool CellTowerReader::next(CellTowerRow& row) {
  for (Line line = readLine(); line != Line::End; line = readLine()) {
    if (line == Line::Skipped) {
      continue;
    }
    const std::string_view text = m_text;
    if (m_atStart && text.substr(0, text.find(',')) == kNames[0]) {
      if (!takeHeader()) {
        return refuse(kForeignHeader);
      }
      continue;
    }
    m_atStart = false;
    if (split(text, row.m_texts)) {
      row.m_line = m_line;
      return true;
    }
    refuse(kWrongColumns);
  }
  return false;
}

// Puts the next line into m_text, without its end.
CellTowerReader::Line CellTowerReader::readLine() {
  if (m_source.peek() == ImportSource::kEnd) {
    return Line::End;
  }
  const bool first = m_source.offset() == 0;
  m_line = m_source.line();
  m_text.clear();
  bool fits = true;
  for (int byte = m_source.next(); byte != ImportSource::kEnd && byte != '\n';
       byte = m_source.next()) {
    fits = m_text.size() < kMaxLength;
    if (fits) {
      m_text.push_back(static_cast<char>(byte));
    }
  }
  if (!fits) {
    refuse(kTooLong);
    return Line::Skipped;
  }
  if (!m_text.empty() && m_text.back() == '\r') {
    m_text.pop_back();
  }
  if (first && m_text.compare(0, kByteOrderMark.size(), kByteOrderMark) == 0) {
    m_text.erase(0, kByteOrderMark.size());
  }
  return m_text.empty() ? Line::Skipped : Line::Good;
}

bool CellTowerReader::takeHeader() {
  m_atStart = false;
  m_hasHeader = isHeader(m_text);
  return m_hasHeader;
}

bool CellTowerReader::refuse(const char* kind) {
  m_report.count(kind, {m_source.name(), m_line});
  return false;
}

}  // namespace trelvo::tool
