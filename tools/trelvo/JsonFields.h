#pragma once

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/trelvo/ImportReport.h"

namespace trelvo::tool {

/// The members of one JSON object of a report, read by name and type.
///
/// A member that is absent or null reads as nothing. One of another type, or outside the range
/// asked for, reads as nothing too and is counted as "PATH.KEY ..., left out". Which members were
/// asked for is remembered, so that nameRest() can name the others.
///
/// The object and the notes must outlive it. Threads: one at a time.
class JsonFields {
 public:
  /// `path` stands ahead of the names in messages, "cellTowers." for instance.
  JsonFields(const nlohmann::json& object, std::string_view path, const ImportNotes& notes)
      : m_object(object), m_path(path), m_notes(notes) {}

  std::optional<double> number(const char* key);

  /// A whole number from `least` to `most`; "5.0" is one.
  std::optional<long long> integer(const char* key, long long least, long long most);

  std::optional<std::string> text(const char* key);

  /// The member of any type, null when it is absent or null.
  const nlohmann::json* member(const char* key);

  /// The elements of an array member; nothing when it is absent, and, counted, when it is no array.
  const nlohmann::json::array_t& list(const char* key);

  /// Names the members not asked for so far, in the report, as not stored.
  void nameRest() const;

  /// Counts the member `key` as "PATH.KEY `complaint`".
  void refuse(const char* key, const char* complaint) const;

  const ImportNotes& notes() const { return m_notes; }

 private:
  const nlohmann::json& m_object;
  std::string_view m_path;
  const ImportNotes& m_notes;
  std::vector<std::string_view> m_asked;
};

constexpr const char* kDoesNotFit = "out of range, left out";
constexpr const char* kWrongType = "of the wrong type, left out";

}  // namespace trelvo::tool
