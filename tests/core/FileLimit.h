#pragma once

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>

namespace trelvo::test {

/// What `run` says in a process of its own that cannot write a file beyond `bytes`: a write up to
/// the limit comes up short, one from the limit on fails with EFBIG. The limit is in force only
/// there.
inline bool withFileLimit(rlim_t bytes, const std::function<bool()>& run) {
  const pid_t child = ::fork();
  if (child == 0) {
    const rlimit limit{bytes, bytes};
    std::signal(SIGXFSZ, SIG_IGN);
    ::_exit(::setrlimit(RLIMIT_FSIZE, &limit) == 0 && run() ? 0 : 1);
  }
  int status = -1;
  EXPECT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status));
  return status == 0;
}

}  // namespace trelvo::test
