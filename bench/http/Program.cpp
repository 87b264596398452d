// The curl program, from its start to its end.

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "bench/Must.h"
#include "bench/http/DownloadBench.h"

namespace bench {

namespace {

struct CurlProgram {
  static constexpr Served kServed = Served::Plain;

  static void download(const Source& source, const std::string& path) {
    const std::string url = source.url();
    const char* const arguments[] = {BENCH_CURL, "-q",         "--silent",  "--noproxy", "*",
                                     "--output", path.c_str(), url.c_str(), nullptr};
    pid_t process = -1;
    int result = -1;
    must(posix_spawn(&process, BENCH_CURL, nullptr, nullptr, const_cast<char* const*>(arguments),
                     environ) == 0 &&
             waitpid(process, &result, 0) == process && WIFEXITED(result) &&
             WEXITSTATUS(result) == 0,
         "curl");
  }
};

const bool kRegistered = registerDownload<CurlProgram>("plain", "curl");

}  // namespace

}  // namespace bench
