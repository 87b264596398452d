#pragma once

#include <optional>
#include <string>

#include "tools/trelvo/NmeaFields.h"

namespace trelvo::tool {

/// A day "YYYY-MM-DD"; nothing for other texts and for days that do not exist.
std::optional<NmeaDate> dayOf(const std::string& text);

/// A moment in Unix seconds: "YYYY-MM-DDTHH:MM:SSZ", a number of seconds, or "now". Nothing for
/// other texts, for 0 and for what 32 bits do not hold.
std::optional<unsigned int> momentOf(const std::string& text);

}  // namespace trelvo::tool
