#pragma once

#include <cstdio>
#include <cstdlib>

namespace bench {

/// Ends the process where the system or a peer refuses: no time would mean anything.
inline void must(bool done, const char* what) {
  if (!done) {
    std::fprintf(stderr, "%s failed\n", what);
    std::exit(EXIT_FAILURE);
  }
}

}  // namespace bench
