#include "tools/trelvo/JsonFields.h"

#include <algorithm>
#include <cmath>

#include "tools/trelvo/ImportText.h"

namespace trelvo::tool {

using nlohmann::json;

const json* JsonFields::member(const char* key) {
  m_asked.emplace_back(key);
  const auto found = m_object.find(key);
  return found == m_object.end() || found->is_null() ? nullptr : &*found;
}

std::optional<double> JsonFields::number(const char* key) {
  const json* value = member(key);
  if (value == nullptr) {
    return std::nullopt;
  }
  if (!value->is_number()) {
    refuse(key, kWrongType);
    return std::nullopt;
  }
  return value->get<double>();
}

std::optional<long long> JsonFields::integer(const char* key, long long least, long long most) {
  const std::optional<double> value = number(key);
  if (!value) {
    return std::nullopt;
  }
  // All ranges asked for lie within the 53 bits of whole numbers that a double holds.
  const bool fits = *value >= static_cast<double>(least) && *value <= static_cast<double>(most);
  if (!fits || *value != std::floor(*value)) {
    refuse(key, kDoesNotFit);
    return std::nullopt;
  }
  return static_cast<long long>(*value);
}

std::optional<std::string> JsonFields::text(const char* key) {
  const json* value = member(key);
  if (value == nullptr) {
    return std::nullopt;
  }
  if (!value->is_string()) {
    refuse(key, kWrongType);
    return std::nullopt;
  }
  return value->get<std::string>();
}

const json::array_t& JsonFields::list(const char* key) {
  static const json::array_t kNone;
  const json* value = member(key);
  if (value == nullptr) {
    return kNone;
  }
  if (!value->is_array()) {
    refuse(key, kWrongType);
    return kNone;
  }
  return value->get_ref<const json::array_t&>();
}

void JsonFields::nameRest() const {
  for (const auto& [key, value] : m_object.items()) {
    const bool asked = std::find(m_asked.begin(), m_asked.end(), key) != m_asked.end();
    if (!asked && !value.is_null()) {
      m_notes.report.notStored(std::string(m_path) + printable(key));
    }
  }
}

void JsonFields::refuse(const char* key, const char* complaint) const {
  m_notes.count(std::string(m_path) + key + " " + complaint);
}

}  // namespace trelvo::tool
