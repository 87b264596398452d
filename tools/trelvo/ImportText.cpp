#include "tools/trelvo/ImportText.h"

#include <algorithm>

namespace trelvo::tool {

int hexDigit(int byte) {
  if (byte >= '0' && byte <= '9') return byte - '0';
  if (byte >= 'A' && byte <= 'F') return byte - 'A' + 10;
  if (byte >= 'a' && byte <= 'f') return byte - 'a' + 10;
  return -1;
}

std::string printable(std::string_view text, size_t limit) {
  std::string result(text.substr(0, limit));
  std::replace_if(
      result.begin(), result.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
  return result;
}

}  // namespace trelvo::tool
