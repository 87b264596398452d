#pragma once

#include <string>

namespace bench {

/// The path of a file of that name in this process's own directory, which goes when it ends. The
/// directory lies in memory where the machine has such a place (/dev/shm), so that no disk decides,
/// or where TMPDIR says; the results state it under "files".
std::string temporaryFile(const std::string& name);

}  // namespace bench
