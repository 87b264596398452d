#include "tests/support/SystemFaults.h"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/timerfd.h>
#include <sys/types.h>
#include <unistd.h>
#include <utime.h>
#include <zlib.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <exception>
#include <memory>
#include <optional>
#include <thread>
#include <utility>

namespace trelvo::test {

namespace {

enum class Kind {
  Connect,
  DeflateInit,
  Fcntl,
  Fdopen,
  Flush,
  Fopen,
  Getcwd,
  InflateInit,
  Lstat,
  Mkdir,
  Open,
  Opendir,
  Poll,
  Read,
  Readdir,
  Recv,
  Remove,
  Rename,
  Rmdir,
  Seek,
  Send,
  Setvbuf,
  Socket,
  Socketpair,
  TimerfdCreate,
  TimerfdSettime,
  Utime,
  Write,
  Count
};

struct Description {
  const char* name;
  int error;   ///< What errno becomes when it fails.
  bool bytes;  ///< Whether it may come up short.
};

constexpr Description kKinds[] = {
    {"connect", ECONNREFUSED, false},
    {"deflateInit", ENOMEM, false},
    {"fcntl", EMFILE, false},
    {"fdopen", ENOMEM, false},
    {"fflush", EIO, false},
    {"fopen", EMFILE, false},
    {"getcwd", ENOENT, false},
    {"inflateInit", ENOMEM, false},
    {"lstat", EIO, false},
    {"mkdir", ENOSPC, false},
    {"open", EMFILE, false},
    {"opendir", EMFILE, false},
    {"poll", ENOMEM, false},
    {"read", EIO, true},
    {"readdir", EIO, false},
    {"recv", ECONNRESET, true},
    {"remove", EIO, false},
    {"rename", EIO, false},
    {"rmdir", EIO, false},
    {"lseek", EIO, false},
    {"send", EPIPE, true},
    {"setvbuf", ENOMEM, false},
    {"socket", EMFILE, false},
    {"socketpair", EMFILE, false},
    {"timerfd_create", EMFILE, false},
    {"timerfd_settime", EINVAL, false},
    {"utime", EIO, false},
    {"write", ENOSPC, true},
};
constexpr auto kKindCount = static_cast<std::size_t>(Kind::Count);
static_assert(std::size(kKinds) == kKindCount);

constexpr const Description& describe(Kind kind) { return kKinds[static_cast<std::size_t>(kind)]; }

enum class Reach { Once, ItsKindFromThenOn, AllFromThenOn };
enum class Manner { Fails, ComesUpShort };

/// Which call of a run goes wrong, and what came of it.
struct Plan {
  bool armed = false;
  bool paused = false;
  Manner manner = Manner::Fails;
  Reach reach = Reach::Once;
  Kind kind = Kind::Count;
  unsigned int at = 0;                  ///< Among those of its kind, counted from 1.
  bool reached = false;                 ///< Whether that call has come.
  unsigned int calls[kKindCount] = {};  ///< Those that could go wrong, so far.
  bool wrong[kKindCount] = {};          ///< Kinds of which a call did.
  long open = 0;                        ///< Descriptors opened less those closed, armed or not.
};

thread_local Plan gPlan;

bool counts(Kind kind) {
  return gPlan.armed && !gPlan.paused && (gPlan.manner == Manner::Fails || describe(kind).bytes);
}

bool isMeant(Kind kind) {
  const unsigned int number = ++gPlan.calls[static_cast<std::size_t>(kind)];
  if (kind == gPlan.kind && number == gPlan.at) {
    gPlan.reached = true;
    return true;
  }
  switch (gPlan.reach) {
    case Reach::ItsKindFromThenOn:
      return gPlan.reached && kind == gPlan.kind;
    case Reach::AllFromThenOn:
      return gPlan.reached;
    default:
      return false;
  }
}

/// Counts a call. @return whether it is one that goes wrong.
bool goesWrong(Kind kind) {
  const bool wrong = counts(kind) && isMeant(kind);
  gPlan.wrong[static_cast<std::size_t>(kind)] |= wrong;
  return wrong;
}

bool fails(Kind kind) {
  if (!goesWrong(kind)) {
    return false;
  }
  errno = describe(kind).error;
  return true;
}

/// For a call that moves bytes: how many to ask for; none when it fails.
std::optional<std::size_t> bytesFor(Kind kind, std::size_t count) {
  if (!goesWrong(kind)) {
    return count;
  }
  if (gPlan.manner == Manner::ComesUpShort) {
    return std::max<std::size_t>(count / 2, std::min<std::size_t>(count, 1));
  }
  errno = describe(kind).error;
  return std::nullopt;
}

int opened(int descriptor) {
  gPlan.open += descriptor >= 0 ? 1 : 0;
  return descriptor;
}

template <class Function>
Function* nextOf(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

// --- streams of the C library, with their bytes moved by the functions below ---

struct Stream {
  int descriptor;
};

int descriptorOf(void* cookie) { return static_cast<Stream*>(cookie)->descriptor; }

ssize_t readStream(void* cookie, char* target, std::size_t count) {
  return ::read(descriptorOf(cookie), target, count);
}

// Goes on after a short write, as the C library does below its own streams.
ssize_t writeStream(void* cookie, const char* source, std::size_t count) {
  std::size_t done = 0;
  while (done < count) {
    const ssize_t written = ::write(descriptorOf(cookie), source + done, count - done);
    if (written <= 0) {
      break;
    }
    done += static_cast<std::size_t>(written);
  }
  return static_cast<ssize_t>(done);
}

int seekStream(void* cookie, off64_t* place, int origin) {
  if (fails(Kind::Seek)) {
    return -1;
  }
  *place = ::lseek(descriptorOf(cookie), *place, origin);
  return *place < 0 ? -1 : 0;
}

int closeStream(void* cookie) {
  const std::unique_ptr<Stream> stream(static_cast<Stream*>(cookie));
  return ::close(stream->descriptor);
}

FILE* streamOver(int descriptor, const char* mode) {
  return ::fopencookie(new Stream{descriptor}, mode,
                       {readStream, writeStream, seekStream, closeStream});
}

int flagsOf(const char* mode) {
  const bool both = std::strchr(mode, '+') != nullptr;
  const int access = both ? O_RDWR : *mode == 'r' ? O_RDONLY : O_WRONLY;
  const int make = *mode == 'r' ? 0 : O_CREAT | (*mode == 'w' ? O_TRUNC : O_APPEND);
  return access | make | O_CLOEXEC;
}

FILE* openStream(const char* path, const char* mode) {
  constexpr mode_t kEveryone = 0666;
  const SystemCallsSucceed openingIsOneCall;
  const int descriptor = ::open(path, flagsOf(mode), kEveryone);
  return descriptor < 0 ? nullptr : streamOver(descriptor, mode);
}

// --- runs ---

void runAndReport(const std::function<void()>& run) {
  try {
    run();
  } catch (const std::exception& exception) {
    const SystemCallsSucceed succeed;
    ADD_FAILURE() << "an exception got out: " << exception.what();
  } catch (...) {
    const SystemCallsSucceed succeed;
    ADD_FAILURE() << "an exception got out";
  }
}

Plan carriedOut(const std::function<void()>& run, const Plan& plan) {
  Plan result;
  std::thread([&] {
    gPlan = plan;
    gPlan.armed = true;
    runAndReport(run);
    result = gPlan;
    gPlan = {};
  }).join();
  EXPECT_EQ(result.open, 0) << "descriptors are left";
  return result;
}

const char* nameOf(Reach reach) {
  return reach == Reach::Once                ? "once"
         : reach == Reach::ItsKindFromThenOn ? "and all of its kind behind it"
                                             : "and all behind it";
}

int failuresSoFar() {
  return ::testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count();
}

/// Has the calls of one kind go wrong, one after the other. @return how many did.
unsigned int sweep(const std::function<void()>& run, Plan plan) {
  constexpr unsigned int kTooMany = 10000;
  const char* const name = describe(plan.kind).name;
  const int failuresBefore = failuresSoFar();
  for (plan.at = 1; plan.at < kTooMany; ++plan.at) {
    SCOPED_TRACE(::testing::Message() << name << " " << plan.at << ", " << nameOf(plan.reach));
    const bool reached = carriedOut(run, plan).reached;
    if (failuresSoFar() != failuresBefore) {
      ADD_FAILURE() << "with " << name << " going wrong";
      return plan.at;
    }
    if (!reached) {
      return plan.at - 1;
    }
  }
  ADD_FAILURE() << "there is no end of calls";
  return kTooMany;
}

/// Counted kind by kind, as calls of some kinds, poll above all, are more or fewer from run to run.
FailedCalls oneAfterTheOther(const std::function<void()>& run, Manner manner, Reach reach) {
  Plan plan;
  plan.manner = manner;
  plan.reach = reach;
  const Plan clean = carriedOut(run, plan);
  FailedCalls failed;
  for (std::size_t i = 0; i < kKindCount; ++i) {
    plan.kind = static_cast<Kind>(i);
    const unsigned int count = clean.calls[i] != 0 ? sweep(run, plan) : 0;
    if (count != 0) {
      failed[kKinds[i].name] = count;
    }
  }
  return failed;
}

}  // namespace

FailedCalls everySystemCallFails(const std::function<void()>& run) {
  oneAfterTheOther(run, Manner::Fails, Reach::AllFromThenOn);
  oneAfterTheOther(run, Manner::Fails, Reach::ItsKindFromThenOn);
  return oneAfterTheOther(run, Manner::Fails, Reach::Once);
}

FailedCalls everySystemCallComesUpShort(const std::function<void()>& run) {
  oneAfterTheOther(run, Manner::ComesUpShort, Reach::AllFromThenOn);
  return oneAfterTheOther(run, Manner::ComesUpShort, Reach::Once);
}

SystemRun systemRun() {
  SystemRun run;
  for (std::size_t i = 0; i < kKindCount; ++i) {
    if (gPlan.wrong[i]) {
      run.failed = true;
      run.kinds.insert(kKinds[i].name);
    }
  }
  return run;
}

SystemCallsSucceed::SystemCallsSucceed() noexcept : m_outer(gPlan.paused) { gPlan.paused = true; }
SystemCallsSucceed::~SystemCallsSucceed() { gPlan.paused = m_outer; }

}  // namespace trelvo::test

using trelvo::test::bytesFor;
using trelvo::test::counts;
using trelvo::test::fails;
using trelvo::test::gPlan;
using trelvo::test::Kind;
using trelvo::test::nextOf;
using trelvo::test::opened;

#define TRELVO_FRONT extern "C" __attribute__((visibility("default")))

// In the place of the C library's. Names that end in 64 are those that the compiler calls with
// offsets of 64 bits on every processor.

TRELVO_FRONT int open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  static auto* const next = nextOf<int(const char*, int, ...)>("open64");
  return fails(Kind::Open) ? -1 : opened(next(path, flags, mode));
}

TRELVO_FRONT int close(int descriptor) {
  static auto* const next = nextOf<int(int)>("close");
  const int result = next(descriptor);
  gPlan.open -= result == 0 ? 1 : 0;
  return result;
}

TRELVO_FRONT int fcntl(int descriptor, int command, ...) {
  va_list arguments;
  va_start(arguments, command);
  void* const argument = va_arg(arguments, void*);
  va_end(arguments);
  static auto* const next = nextOf<int(int, int, ...)>("fcntl64");
  if (command != F_DUPFD_CLOEXEC) {
    return next(descriptor, command, argument);
  }
  return fails(Kind::Fcntl) ? -1 : opened(next(descriptor, command, argument));
}

TRELVO_FRONT ssize_t read(int descriptor, void* target, std::size_t count) {
  static auto* const next = nextOf<ssize_t(int, void*, std::size_t)>("read");
  const auto asked = bytesFor(Kind::Read, count);
  return asked ? next(descriptor, target, *asked) : -1;
}

TRELVO_FRONT ssize_t write(int descriptor, const void* source, std::size_t count) {
  static auto* const next = nextOf<ssize_t(int, const void*, std::size_t)>("write");
  const auto asked = bytesFor(Kind::Write, count);
  return asked ? next(descriptor, source, *asked) : -1;
}

TRELVO_FRONT ssize_t recv(int descriptor, void* target, std::size_t count, int flags) {
  static auto* const next = nextOf<ssize_t(int, void*, std::size_t, int)>("recv");
  const auto asked = bytesFor(Kind::Recv, count);
  return asked ? next(descriptor, target, *asked, flags) : -1;
}

TRELVO_FRONT ssize_t send(int descriptor, const void* source, std::size_t count, int flags) {
  static auto* const next = nextOf<ssize_t(int, const void*, std::size_t, int)>("send");
  const auto asked = bytesFor(Kind::Send, count);
  return asked ? next(descriptor, source, *asked, flags) : -1;
}

TRELVO_FRONT int poll(pollfd* descriptors, nfds_t count, int timeout) {
  static auto* const next = nextOf<int(pollfd*, nfds_t, int)>("poll");
  return fails(Kind::Poll) ? -1 : next(descriptors, count, timeout);
}

TRELVO_FRONT int socket(int domain, int type, int protocol) noexcept {
  static auto* const next = nextOf<int(int, int, int)>("socket");
  return fails(Kind::Socket) ? -1 : opened(next(domain, type, protocol));
}

TRELVO_FRONT int socketpair(int domain, int type, int protocol, int ends[2]) noexcept {
  static auto* const next = nextOf<int(int, int, int, int*)>("socketpair");
  const int result = fails(Kind::Socketpair) ? -1 : next(domain, type, protocol, ends);
  gPlan.open += result == 0 ? 2 : 0;
  return result;
}

TRELVO_FRONT int connect(int descriptor, const sockaddr* address, socklen_t size) {
  static auto* const next = nextOf<int(int, const sockaddr*, socklen_t)>("connect");
  return fails(Kind::Connect) ? -1 : next(descriptor, address, size);
}

TRELVO_FRONT int timerfd_create(int clock, int flags) noexcept {
  static auto* const next = nextOf<int(int, int)>("timerfd_create");
  return fails(Kind::TimerfdCreate) ? -1 : opened(next(clock, flags));
}

TRELVO_FRONT int timerfd_settime(int descriptor, int flags, const itimerspec* value,
                                 itimerspec* old) noexcept {
  static auto* const next =
      nextOf<int(int, int, const itimerspec*, itimerspec*)>("timerfd_settime");
  return fails(Kind::TimerfdSettime) ? -1 : next(descriptor, flags, value, old);
}

TRELVO_FRONT FILE* fopen(const char* path, const char* mode) {
  static auto* const next = nextOf<FILE*(const char*, const char*)>("fopen64");
  if (!counts(Kind::Read)) {
    return next(path, mode);
  }
  return fails(Kind::Fopen) ? nullptr : trelvo::test::openStream(path, mode);
}

TRELVO_FRONT FILE* fdopen(int descriptor, const char* mode) noexcept {
  static auto* const next = nextOf<FILE*(int, const char*)>("fdopen");
  if (!counts(Kind::Read)) {
    return next(descriptor, mode);
  }
  return fails(Kind::Fdopen) ? nullptr : trelvo::test::streamOver(descriptor, mode);
}

TRELVO_FRONT int setvbuf(FILE* stream, char* buffer, int mode, std::size_t size) noexcept {
  static auto* const next = nextOf<int(FILE*, char*, int, std::size_t)>("setvbuf");
  return fails(Kind::Setvbuf) ? EOF : next(stream, buffer, mode, size);
}

TRELVO_FRONT int fflush(FILE* stream) {
  static auto* const next = nextOf<int(FILE*)>("fflush");
  return fails(Kind::Flush) ? EOF : next(stream);
}

TRELVO_FRONT int rename(const char* from, const char* to) noexcept {
  static auto* const next = nextOf<int(const char*, const char*)>("rename");
  return fails(Kind::Rename) ? -1 : next(from, to);
}

TRELVO_FRONT int remove(const char* path) noexcept {
  static auto* const next = nextOf<int(const char*)>("remove");
  return fails(Kind::Remove) ? -1 : next(path);
}

TRELVO_FRONT int mkdir(const char* path, mode_t mode) noexcept {
  static auto* const next = nextOf<int(const char*, mode_t)>("mkdir");
  return fails(Kind::Mkdir) ? -1 : next(path, mode);
}

TRELVO_FRONT int rmdir(const char* path) noexcept {
  static auto* const next = nextOf<int(const char*)>("rmdir");
  return fails(Kind::Rmdir) ? -1 : next(path);
}

TRELVO_FRONT int lstat(const char* path, struct stat* details) noexcept {
  static auto* const next = nextOf<int(const char*, struct stat*)>("lstat64");
  return fails(Kind::Lstat) ? -1 : next(path, details);
}

TRELVO_FRONT int utime(const char* path, const utimbuf* times) noexcept {
  static auto* const next = nextOf<int(const char*, const utimbuf*)>("utime");
  return fails(Kind::Utime) ? -1 : next(path, times);
}

TRELVO_FRONT char* get_current_dir_name() noexcept {
  static auto* const next = nextOf<char*()>("get_current_dir_name");
  return fails(Kind::Getcwd) ? nullptr : next();
}

TRELVO_FRONT DIR* opendir(const char* path) {
  static auto* const next = nextOf<DIR*(const char*)>("opendir");
  DIR* const result = fails(Kind::Opendir) ? nullptr : next(path);
  gPlan.open += result != nullptr ? 1 : 0;
  return result;
}

TRELVO_FRONT dirent* readdir(DIR* directory) {
  static auto* const next = nextOf<dirent*(DIR*)>("readdir64");
  return fails(Kind::Readdir) ? nullptr : next(directory);
}

TRELVO_FRONT int closedir(DIR* directory) {
  static auto* const next = nextOf<int(DIR*)>("closedir");
  gPlan.open -= 1;
  return next(directory);
}

// zlib asks malloc itself for its memory.

TRELVO_FRONT int deflateInit_(z_streamp stream, int level, const char* version, int size) {
  static auto* const next = nextOf<int(z_streamp, int, const char*, int)>("deflateInit_");
  return fails(Kind::DeflateInit) ? Z_MEM_ERROR : next(stream, level, version, size);
}

TRELVO_FRONT int inflateInit_(z_streamp stream, const char* version, int size) {
  static auto* const next = nextOf<int(z_streamp, const char*, int)>("inflateInit_");
  return fails(Kind::InflateInit) ? Z_MEM_ERROR : next(stream, version, size);
}

#undef TRELVO_FRONT
