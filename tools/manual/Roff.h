#pragma once

#include <string>

namespace trelvo::manual {

/// `text` so that roff sets it as it stands, hyphens as they are typed, also at the start of a
/// line.
std::string escaped(const std::string& text);

/// One word, or several, in bold or italic type.
std::string bold(const std::string& text);
std::string italic(const std::string& text);

}  // namespace trelvo::manual
