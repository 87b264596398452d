#pragma once

#include <memory>
#include <string>

#include "tests/soak/Soak.h"

namespace soak {

/// Keeps encrypted logs and decrypts them, and has two threads log through an engine into one file
/// at once. Every line is there, once and in order.
std::unique_ptr<Crew> makeLogsCrew(const std::string& directory, unsigned int seed);

}  // namespace soak
