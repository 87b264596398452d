#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "tools/trelvo/ImportReport.h"
#include "tools/trelvo/ImportSource.h"

namespace trelvo::tool {

/// The lines of an input, without their ends ("\n" or "\r\n") and without a byte order mark ahead
/// of the first. Empty lines are skipped; a line that is too long is counted and skipped.
///
/// Memory: one line of at most `mostCharacters`. Threads: one at a time.
class ImportLines {
 public:
  static constexpr size_t kMaxLength = 1024;

  static constexpr const char* kTooLong = "line that does not end";

  ImportLines(ImportSource& source, ImportReport& report, size_t mostCharacters = kMaxLength)
      : m_source(source), m_report(report), m_most(mostCharacters) {}

  /// Gives the next line, valid until the next call. @return false at the end of the input.
  bool next(std::string_view& line);

  /// Where the last line stands.
  ImportPlace place() const { return {m_source.name(), m_line}; }

 private:
  bool readLine();

  ImportSource& m_source;
  ImportReport& m_report;
  size_t m_most;
  std::string m_text;
  unsigned long long m_line = 0;
};

/// `text` without a byte order mark ahead of it.
std::string_view withoutByteOrderMark(std::string_view text);

}  // namespace trelvo::tool
