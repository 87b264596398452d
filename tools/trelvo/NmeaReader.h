#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/trelvo/ImportReport.h"
#include "tools/trelvo/ImportSource.h"

namespace trelvo::tool {

/// One NMEA 0183 sentence whose checksum was right.
struct NmeaSentence {
  std::string text;                      ///< between '$' and '*'
  std::vector<std::string_view> fields;  ///< views into `text`; the first is the address
  unsigned long long line = 0;           ///< where it starts

  /// The three letters of a sentence that any talker may send ("GGA"), or the whole address of a
  /// proprietary one ("PGRME" gives "RME", "PMTK001" itself).
  std::string_view type() const;

  /// The field at `index`, counted from the address at 0; empty when there are fewer.
  std::string_view field(size_t index) const;
};

/// Finds the sentences in a receiver's log.
///
/// Logs are as receivers and serial lines leave them: sentences start anywhere, run together, break
/// off, and garbage lies between them. The reader looks for '$', takes what follows up to the two
/// digits behind '*', and hands out what has the right checksum. A '$', a line end or a byte that
/// is no printable character before that breaks the sentence off, and the search goes on from
/// there, so that one damaged sentence never costs the next. Everything else is counted in the
/// report.
///
/// A line that starts with '#' is a comment. "# Delay-Cookie: X" among them, which test logs carry,
/// says that the character X was put in afterwards to mark pauses: from there on it is dropped.
///
/// Memory: one sentence of at most kMaxLength characters. Threads: one at a time.
class NmeaReader {
 public:
  /// Longer sentences are given up. The standard allows 82 characters; proprietary ones exceed it.
  static constexpr size_t kMaxLength = 1024;

  static constexpr const char* kWrongChecksum = "sentence with a wrong checksum";
  static constexpr const char* kBrokenOff = "sentence broken off or without a checksum";
  static constexpr const char* kTooLong = "sentence that does not end";
  static constexpr const char* kStrayText = "text outside a sentence";

  NmeaReader(ImportSource& source, ImportReport& report) : m_source(source), m_report(report) {}

  /// Gives the next good sentence. @return false at the end of the input.
  bool next(NmeaSentence& sentence);

  /// Whether `text` holds the start of a sentence: '$', five capital letters or digits, a comma.
  static bool looksLikeNmea(std::string_view text);

 private:
  int peek();
  int take();
  bool findStart();
  void skipComment();
  bool readBody(NmeaSentence& sentence);
  std::optional<int> readChecksum();
  bool refuse(const char* kind, unsigned long long line);

  ImportSource& m_source;
  ImportReport& m_report;
  int m_dropped = ImportSource::kEnd;  // the delay cookie
  unsigned long long m_strayLine = 0;
  bool m_lineStart = true;
};

}  // namespace trelvo::tool
