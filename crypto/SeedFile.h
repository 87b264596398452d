#pragma once

#include <cstddef>
#include <string>

#include "crypto/Wiped.h"

namespace trelvo {

/// The first word in the file `path`, between white space, into the empty `seed`; of a longer word
/// its first `most` characters. No file and no word leave it empty.
void readSeed(const std::string& path, std::size_t most, WipedText& seed);

/// Makes the file anew, for the owner's eyes alone, with `seed` in it and nothing else. A failure
/// goes unnoticed.
void writeSeed(const std::string& path, const WipedText& seed);

}  // namespace trelvo
