#include "fuzz/Target.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace trelvo::fuzz {

void require(bool holds, const char* what) {
  if (!holds) {
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
  }
}

}  // namespace trelvo::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  trelvo::fuzz::run({data, data + size});
  return 0;
}
