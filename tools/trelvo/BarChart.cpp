#include "tools/trelvo/BarChart.h"

#include <sys/ioctl.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>

namespace trelvo::tool {
namespace {

constexpr std::size_t kNarrowest = 40;
constexpr std::size_t kWidest = 160;

// The first that is set counts, as in setlocale().
bool isUtf8Locale() {
  for (const char* const name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    const char* const value = std::getenv(name);
    if (value != nullptr && *value != '\0') {
      std::string text = value;
      std::transform(text.begin(), text.end(), text.begin(), [](char c) {
        return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
      });
      return text.find("utf-8") != std::string::npos || text.find("utf8") != std::string::npos;
    }
  }
  return false;
}

}  // namespace

BarStyle barStyleFor(const CommandContext& context) {
  BarStyle style;
  if (!context.outputIsTerminal) {
    return style;
  }
  winsize size = {};
  if (::ioctl(context.outputDescriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
    style.columns = std::clamp<std::size_t>(size.ws_col, kNarrowest, kWidest);
  }
  style.unicode = isUtf8Locale();
  return style;
}

std::string bar(unsigned long long count, unsigned long long most, std::size_t columns,
                bool unicode) {
  if (count == 0 || most == 0) {
    return "";
  }
  constexpr const char* kEighths[] = {"",       "\u258F", "\u258E", "\u258D",
                                      "\u258C", "\u258B", "\u258A", "\u2589"};
  const std::size_t parts = unicode ? 8 : 1;
  const double share = static_cast<double>(count) / static_cast<double>(most);
  const auto length = std::max<std::size_t>(
      1, static_cast<std::size_t>(std::lround(share * static_cast<double>(columns * parts))));
  std::string text;
  for (std::size_t i = 0; i < length / parts; ++i) {
    text += unicode ? "\u2588" : "#";
  }
  return unicode ? text + kEighths[length % parts] : text;
}

}  // namespace trelvo::tool
