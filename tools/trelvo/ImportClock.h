#pragma once

#include <optional>

#include "tools/trelvo/NmeaFields.h"

namespace trelvo::tool {

/// What the command line says about time, for inputs that leave it open.
struct ImportClock {
  std::optional<NmeaDate> date;      ///< the day of fixes whose log names none
  std::optional<unsigned int> time;  ///< Unix seconds at which inputs without a clock were printed
};

/// What importers of formats without a clock count when ImportClock::time is missing.
constexpr const char* kNoClock =
    "observation without a time, stored without a time stamp; --time gives one";

}  // namespace trelvo::tool
