#include "bench/http/DownloadBench.h"

#include <sys/resource.h>
#include <zlib.h>

#include <fstream>
#include <vector>

#include "bench/Must.h"

namespace bench {

namespace {

double seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

double processorTimeOf(int who) {
  rusage used = {};
  must(getrusage(who, &used) == 0, "getrusage");
  return seconds(used.ru_utime) + seconds(used.ru_stime);
}

}  // namespace

double processorTime() { return processorTimeOf(RUSAGE_SELF) + processorTimeOf(RUSAGE_CHILDREN); }

bool holdsBody(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::vector<char> piece(1 << 20);
  std::size_t size = 0;
  uLong crc = 0;
  while (file.read(piece.data(), static_cast<std::streamsize>(piece.size())), file.gcount() > 0) {
    const auto count = static_cast<std::size_t>(file.gcount());
    crc = crc32_z(crc, reinterpret_cast<const unsigned char*>(piece.data()), count);
    size += count;
  }
  return size == kBodySize && crc == bodyChecksum();
}

}  // namespace bench
