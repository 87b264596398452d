#pragma once

#include <cstdint>
#include <iosfwd>
#include <map>
#include <string>
#include <string_view>

namespace trelvo::tool {

/// What the input holds and a format has no place for: once a kind, with the count.
///
/// Memory stays bounded whatever the input says: beyond a fixed number of kinds they share one.
class ExportLosses {
 public:
  /// Counts one more of `kind` in the `container`-th object of the file.
  void add(std::string_view kind, std::uint64_t container);

  /// How often `kind` was counted; 0 when never.
  std::uint64_t countOf(std::string_view kind) const;

  /// One line a kind: "trelvo: not carried by gpx: altitude (3 x, first in object 1)".
  void print(std::ostream& out, std::string_view format) const;

 private:
  struct Entry {
    std::uint64_t count = 0;
    std::uint64_t first = 0;
  };

  std::map<std::string, Entry, std::less<>> m_kinds;
};

}  // namespace trelvo::tool
