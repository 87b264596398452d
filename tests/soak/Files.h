#pragma once

#include <memory>
#include <string>

#include "tests/soak/Soak.h"

namespace soak {

/// Writes sealed files piece by piece, changes them at many places, moves and copies them, and
/// reads them back: they hold what a plain text that went through the same holds.
std::unique_ptr<Crew> makeFilesCrew(const std::string& directory, unsigned int seed);

}  // namespace soak
