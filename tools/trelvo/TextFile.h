#pragma once

#include <functional>
#include <ostream>
#include <string>

namespace trelvo::tool {

/// Writes a file through an OutputFile: `write` gets a stream into it, and afterwards the file gets
/// its name. Throws Failure when it cannot be written, ReaderGone when it is a pipe that nobody
/// reads any more, and what `write` throws; then nothing has the name.
void writeTextFile(const std::string& path, const std::function<void(std::ostream&)>& write);

}  // namespace trelvo::tool
