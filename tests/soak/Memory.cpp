#include "tests/soak/Memory.h"

#include <malloc.h>
#include <unistd.h>

#include <fstream>

namespace soak {

namespace {

long residentKiB() {
  std::ifstream file("/proc/self/statm");
  long total = 0;
  long resident = 0;
  file >> total >> resident;
  return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

}  // namespace

Memory memoryNow() {
  malloc_trim(0);
  const struct mallinfo2 heap = mallinfo2();
  return {residentKiB(), static_cast<long>((heap.uordblks + heap.hblkhd) / 1024)};
}

bool memoryIsJudged() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  return false;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
  return false;
#endif
#endif
  return true;
}

}  // namespace soak
