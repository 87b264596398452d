#include "tools/trelvo/UniqueFd.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace trelvo::tool {
namespace {

UniqueFd openRetrying(const char* path, int flags) {
  int descriptor = -1;
  do {
    descriptor = ::open(path, flags | O_CLOEXEC, 0666);
  } while (descriptor < 0 && errno == EINTR);
  return UniqueFd(descriptor);
}

}  // namespace

UniqueFd::~UniqueFd() { close(); }

int UniqueFd::close() {
  const int descriptor = release();
  // Linux frees the descriptor even when close is interrupted: trying again could hit another's.
  if (descriptor < 0 || ::close(descriptor) == 0 || errno == EINTR) {
    return 0;
  }
  return errno;
}

UniqueFd openForReading(const char* path) { return openRetrying(path, O_RDONLY); }

UniqueFd openForWriting(const char* path) {
  return openRetrying(path, O_WRONLY | O_CREAT | O_TRUNC);
}

}  // namespace trelvo::tool
