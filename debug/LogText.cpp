#include "debug/LogText.h"

#include <cstdio>
#include <cstring>
#include <string>

namespace trelvo {
namespace {

// What may stand between "%" and the letter of a conversion.
constexpr const char* kAheadOfConversion = "#0- +'I*$.123456789hlLqjzt";

std::string withDoubledPercents(const char* text) {
  std::string result;
  for (; *text != '\0'; ++text) result.append(*text == '%' ? 2 : 1, *text);
  return result;
}

// A conversion that lost its end would have the reader of the format run past what it was given.
void dropUnfinishedConversion(char* format) {
  char* percent = std::strchr(format, '%');
  while (percent != nullptr) {
    char* const letter = percent + 1 + std::strspn(percent + 1, kAheadOfConversion);
    if (*letter == '\0') {
      *percent = '\0';
      return;
    }
    percent = std::strchr(letter + 1, '%');
  }
}

}  // namespace

PlatformFormat::PlatformFormat(const char* prefix, const char* format) {
  const std::string literal = withDoubledPercents(prefix);
  const int length = std::snprintf(m_text, sizeof m_text, "%s %s", literal.c_str(), format);
  if (length >= static_cast<int>(sizeof m_text)) dropUnfinishedConversion(m_text);
}

}  // namespace trelvo
