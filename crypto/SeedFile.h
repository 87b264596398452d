#pragma once

#include <cstddef>
#include <string>

#include "crypto/Wiped.h"

namespace trelvo {

/// The first word in the file `path`, between white space, into the empty `seed`; of a longer word
/// its first `most` characters. No file and no word leave it empty.
/// @return false when there may be a seed that could not be read this time.
bool readSeed(const std::string& path, std::size_t most, WipedText& seed);

/// Makes the file anew, for the owner's eyes alone, with `seed` in it and nothing else. A failure
/// goes unnoticed, and leaves no part of it.
void writeSeed(const std::string& path, const WipedText& seed);

}  // namespace trelvo
