#pragma once

#include <fcntl.h>
#include <unistd.h>

namespace trelvo::core {

/// Descriptor 0 stands for none here, but a process that has closed its standard input gets it for
/// its next descriptor. @return `fd`, or in place of 0 another one for the same, which programs do
/// not inherit; -1 on failure.
inline int awayFromZero(int fd) {
  if (fd != 0) {
    return fd;
  }
  const int other = fcntl(fd, F_DUPFD_CLOEXEC, 1);
  close(fd);
  return other;
}

}  // namespace trelvo::core
