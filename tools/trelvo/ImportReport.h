#pragma once

#include <iosfwd>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "tools/trelvo/ImportSource.h"

namespace trelvo::tool {

/// What an import met that a user should know: how often each kind of trouble occurred, with the
/// first few places, and which fields of the input the schema has no place for.
///
/// Memory stays bounded whatever the input says: kinds and field names that carry words of the
/// input are shortened, their control characters replaced, and beyond a fixed number they share one
/// entry.
class ImportReport {
 public:
  /// Places remembered for each kind.
  static constexpr size_t kPlaces = 3;

  /// Counts one more of `kind`, a phrase such as "sentence with a wrong checksum".
  void count(std::string_view kind, const ImportPlace& place);

  /// Notes that `field` of the input is not stored. Repetitions are free.
  void notStored(std::string_view field);

  /// How often `kind` was counted; 0 when never.
  unsigned long long countOf(std::string_view kind) const;

  /// Whether `field` was named by notStored().
  bool isNotStored(std::string_view field) const { return m_notStored.count(field) > 0; }

  /// Whether there is anything to print.
  bool isEmpty() const { return m_kinds.empty() && m_notStored.empty(); }

  /// One line a kind: count, phrase, places; then one line that lists the fields not stored.
  void print(std::ostream& out) const;

 private:
  struct Entry {
    unsigned long long count = 0;
    std::vector<std::string> places;
  };

  std::map<std::string, Entry, std::less<>> m_kinds;
  std::set<std::string, std::less<>> m_notStored;
};

/// A report together with the place that is being read.
struct ImportNotes {
  ImportReport& report;
  ImportPlace place;

  void count(std::string_view kind) const { report.count(kind, place); }
};

}  // namespace trelvo::tool
