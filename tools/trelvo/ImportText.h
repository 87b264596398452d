#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace trelvo::tool {

/// The value of a hexadecimal digit of either case, -1 for anything else.
int hexDigit(int byte);

/// A decimal number such as "-57.50": finite, nothing ahead of it or behind it.
std::optional<double> decimal(std::string_view text);

/// A whole number without a sign in `base`, 10 or 16, at most `most`. For longer ones and for
/// anything else nothing.
std::optional<long long> wholeNumber(std::string_view text, int base, long long most);

/// `text` without the blanks and tabs around it.
std::string_view trimmed(std::string_view text);

/// `text` fit for a terminal: control characters and bytes above 126 become '?', and at most
/// `limit` characters stay.
std::string printable(std::string_view text, size_t limit = 60);

}  // namespace trelvo::tool
