#pragma once

#include <string>
#include <string_view>

namespace trelvo::tool {

/// The value of a hexadecimal digit of either case, -1 for anything else.
int hexDigit(int byte);

/// `text` fit for a terminal: control characters and bytes above 126 become '?', and at most
/// `limit` characters stay.
std::string printable(std::string_view text, size_t limit = 60);

}  // namespace trelvo::tool
