#include "tools/trelvo/ImportLines.h"

namespace trelvo::tool {

std::string_view withoutByteOrderMark(std::string_view text) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  return text.substr(0, kMark.size()) == kMark ? text.substr(kMark.size()) : text;
}

bool ImportLines::next(std::string_view& line) {
  while (m_source.peek() != ImportSource::kEnd) {
    const bool first = m_source.offset() == 0;
    m_line = m_source.line();
    if (!readLine()) {
      m_report.count(kTooLong, place());
      continue;
    }
    line = first ? withoutByteOrderMark(m_text) : std::string_view(m_text);
    if (!line.empty() && line.back() == '\r') {
      line.remove_suffix(1);
    }
    if (!line.empty()) {
      return true;
    }
  }
  return false;
}

// Puts the next line into m_text, without its line feed. False when it does not fit.
bool ImportLines::readLine() {
  m_text.clear();
  bool fits = true;
  for (int byte = m_source.next(); byte != ImportSource::kEnd && byte != '\n';
       byte = m_source.next()) {
    fits = m_text.size() < m_most;
    if (fits) {
      m_text.push_back(static_cast<char>(byte));
    }
  }
  return fits;
}

}  // namespace trelvo::tool
