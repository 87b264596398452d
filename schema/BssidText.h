#pragma once

#include <algorithm>
#include <array>
#include <cstdio>

namespace trelvo::schema {

/// Room for "00:11:22:33:44:55:66:77", its end, and one more.
using BssidText = std::array<char, 25>;

/// The bytes of a BSSID in hexadecimal with colons between them; at most 8 bytes.
inline BssidText bssidText(const unsigned char* bytes, unsigned int length) {
  BssidText text{};
  unsigned int end = 0;
  for (unsigned int i = 0; i < std::min(length, 8U); ++i) {
    const char* const separator = i + 1 < length ? ":" : "";
    const int written =
        std::snprintf(&text[end], text.size() - end, "%02X%s", unsigned{bytes[i]}, separator);
    end += static_cast<unsigned int>(written);
  }
  return text;
}

}  // namespace trelvo::schema
