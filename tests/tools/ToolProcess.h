#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <string>
#include <vector>

#include "tests/tools/ToolFixture.h"
#include "tools/trelvo/UniqueFd.h"

extern char** environ;  // NOLINT: POSIX has programs declare it

namespace trelvo::tool {

/// The program as a process of its own, which signals can be sent to.
class ToolProcess {
 public:
  explicit ToolProcess(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), TRELVO_PROGRAM);
    int out[2] = {};
    int err[2] = {};
    EXPECT_EQ(::pipe2(out, O_CLOEXEC), 0);
    EXPECT_EQ(::pipe2(err, O_CLOEXEC), 0);
    m_out = UniqueFd(out[0]);
    m_err = UniqueFd(err[0]);
    const UniqueFd theirOut(out[1]);
    const UniqueFd theirErr(err[1]);
    spawn(arguments, theirOut.get(), theirErr.get());
  }
  ~ToolProcess() {
    if (m_process > 0) {
      ::kill(m_process, SIGKILL);
      ::waitpid(m_process, nullptr, 0);
    }
  }
  ToolProcess(const ToolProcess&) = delete;
  ToolProcess& operator=(const ToolProcess&) = delete;

  /// Waits for the next line of standard output; empty when it has ended.
  std::string line() const {
    std::string text;
    char c = 0;
    while (::read(m_out.get(), &c, 1) == 1 && c != '\n') {
      text += c;
    }
    return text;
  }

  /// Waits until there is something to read on standard output, or it has ended.
  void waitForOutput() const {
    pollfd waited = {m_out.get(), POLLIN, 0};
    while (::poll(&waited, 1, -1) < 0) {
    }
  }

  void closeOutput() { m_out.close(); }

  void signal(int number) const { ::kill(m_process, number); }

  /// Waits for the end. The status is -1 when a signal ended it.
  Outcome finish() {
    Outcome outcome = {-1, rest(m_out), rest(m_err)};
    int status = 0;
    ::waitpid(m_process, &status, 0);
    m_process = -1;
    outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return outcome;
  }

 private:
  void spawn(const std::vector<std::string>& arguments, int out, int err) {
    std::vector<char*> argv;
    for (const std::string& argument : arguments) {
      argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, out, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, err, STDERR_FILENO);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    // A test that runs in the background of a shell inherits ignored signals.
    sigset_t signals;
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes, &signals);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
    EXPECT_EQ(
        ::posix_spawn(&m_process, TRELVO_PROGRAM, &actions, &attributes, argv.data(), environ), 0);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
  }

  static std::string rest(const UniqueFd& file) {
    std::string text;
    char block[4096];
    for (ssize_t got = 1; got > 0;) {
      got = file ? ::read(file.get(), block, sizeof block) : 0;
      text.append(block, got > 0 ? static_cast<std::size_t>(got) : 0);
    }
    return text;
  }

  UniqueFd m_out;
  UniqueFd m_err;
  pid_t m_process = -1;
};

}  // namespace trelvo::tool
