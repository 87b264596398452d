#include "tools/manual/Roff.h"

namespace trelvo::manual {

std::string escaped(const std::string& text) {
  std::string result;
  for (const char letter : text) {
    const bool beginsLine = result.empty() || result.back() == '\n';
    if (beginsLine && (letter == '.' || letter == '\'')) {
      result += "\\&";
    }
    if (letter == '-') {
      result += "\\-";
    } else if (letter == '\\') {
      result += "\\e";
    } else {
      result += letter;
    }
  }
  return result;
}

std::string bold(const std::string& text) { return "\\fB" + escaped(text) + "\\fR"; }

std::string italic(const std::string& text) { return "\\fI" + escaped(text) + "\\fR"; }

}  // namespace trelvo::manual
