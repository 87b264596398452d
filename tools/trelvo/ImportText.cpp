#include "tools/trelvo/ImportText.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace trelvo::tool {

int hexDigit(int byte) {
  if (byte >= '0' && byte <= '9') return byte - '0';
  if (byte >= 'A' && byte <= 'F') return byte - 'A' + 10;
  if (byte >= 'a' && byte <= 'f') return byte - 'a' + 10;
  return -1;
}

std::optional<double> decimal(std::string_view text) {
  double value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value, std::chars_format::fixed);
  const bool whole = error == std::errc() && stop == end && std::isfinite(value);
  return whole ? std::optional<double>(value) : std::nullopt;
}

std::optional<long long> wholeNumber(std::string_view text, int base, long long most) {
  long long value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value, base);
  const bool whole = error == std::errc() && stop == end && text.front() != '-';
  return whole && value <= most ? std::optional<long long>(value) : std::nullopt;
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t";
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

std::string printable(std::string_view text, size_t limit) {
  std::string result(text.substr(0, limit));
  std::replace_if(
      result.begin(), result.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
  return result;
}

}  // namespace trelvo::tool
