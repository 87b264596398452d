#include "tools/trelvo/XmlText.h"

#include <glib.h>

#include <cstddef>

namespace trelvo::tool {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD

bool isXml(gunichar c) {
  const bool isControl = (c < 0x20 && c != '\t' && c != '\n') || (c >= 0x7F && c < 0xA0);
  return !isControl && c != 0xFFFE && c != 0xFFFF;
}

// `bytes` are those of `c`.
std::string_view escaped(gunichar c, std::string_view bytes) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\r':
      return "&#13;";  // a reader makes line feeds of those that are not escaped
    default:
      return isXml(c) ? bytes : kReplacement;
  }
}

}  // namespace

std::string xmlText(std::string_view text) {
  std::string all;
  while (!text.empty()) {
    const gunichar c = g_utf8_get_char_validated(text.data(), static_cast<gssize>(text.size()));
    const bool isUtf8 = g_unichar_validate(c) != FALSE;
    const std::size_t length = isUtf8 ? static_cast<std::size_t>(g_unichar_to_utf8(c, nullptr)) : 1;
    all += isUtf8 ? escaped(c, text.substr(0, length)) : kReplacement;
    text.remove_prefix(length);
  }
  return all;
}

}  // namespace trelvo::tool
