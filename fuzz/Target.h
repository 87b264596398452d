#pragma once

#include <cstddef>

#include "tests/support/Bytes.h"

namespace trelvo::fuzz {

using test::Bytes;

/// What the source of a target defines: takes one input and comes back, whatever the input is.
void run(const Bytes& bytes);

/// Ends the program, saying `what` does not hold, unless `holds`.
void require(bool holds, const char* what);

}  // namespace trelvo::fuzz
