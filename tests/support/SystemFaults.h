#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>

namespace trelvo::test {

// A test program that compiles SystemFaults.cpp stands between the library and the system: calls
// such as open, poll or recv come to it first, whoever makes them, the library or one that it uses,
// and it decides, thread by thread, how they go. zlib's starting calls, which may find no memory,
// count with them. Streams of the C library that are opened in a run
// move their bytes by its read and write, so that real streams meet the failures.
//
// Each run gets a thread of its own, so that a server on another thread is left alone.

/// How often each kind of call failed, by name: "open", "poll", "recv".
using FailedCalls = std::map<std::string, unsigned int>;

/// Calls `run` again and again: first as it is, then, for each kind of call that it makes, with the
/// first call of that kind failing, with the second, and so on, until it gets through without
/// reaching the one that fails. It does all this three times: with that one call failing; with all
/// of its kind from that one on; and with all calls from that one on. No run may leave a descriptor
/// open or let an exception out; `run` itself checks that the outcome is the promised one.
///
/// `run` starts from nothing and keeps nothing: what it makes dies in it.
/// @return what failed in the first of the three.
FailedCalls everySystemCallFails(const std::function<void()>& run);

/// The same for calls that move bytes: each moves half of what it was asked to, a single byte
/// excepted. First one of them, then all from that one on.
FailedCalls everySystemCallComesUpShort(const std::function<void()>& run);

/// What happened in this thread's run so far.
struct SystemRun {
  bool failed = false;          ///< Whether a call has gone wrong.
  std::set<std::string> kinds;  ///< Of which kinds those were.
};
SystemRun systemRun();

/// While it lives, system calls of this thread neither fail nor count, for what a run has to
/// prepare or to check.
class SystemCallsSucceed {
 public:
  SystemCallsSucceed() noexcept;
  ~SystemCallsSucceed();
  SystemCallsSucceed(const SystemCallsSucceed&) = delete;
  SystemCallsSucceed& operator=(const SystemCallsSucceed&) = delete;

 private:
  bool m_outer;
};

}  // namespace trelvo::test
