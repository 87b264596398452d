// The reader of logging configurations: the input is the file. What it names is not opened: a line
// of it could name any file of this machine.

#include <dlfcn.h>
#include <fcntl.h>
#include <trelvo/Export.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "fuzz/MemoryBound.h"
#include "fuzz/ScratchFile.h"
#include "tests/debug/TestPlatform.h"

namespace {

std::string& configurationPath() {
  static std::string path;
  return path;
}

bool gRedirects = false;  // while a target runs; libFuzzer opens files too
unsigned int gOpened = 0;

/// The configuration, or nowhere; a name with a question mark cannot be opened.
std::FILE* openInstead(const char* name, const char* mode) {
  ++gOpened;
  if (name == configurationPath()) {
    return ::fdopen(::open(name, O_RDONLY | O_CLOEXEC), "r");
  }
  const bool opens = std::string(name).find('?') == std::string::npos;
  return opens ? ::fdopen(::open("/dev/null", O_RDWR | O_CLOEXEC), mode) : nullptr;
}

std::FILE* openReally(const char* name, const char* mode) {
  using Open = std::FILE* (*)(const char*, const char*);
  static const auto open = reinterpret_cast<Open>(::dlsym(RTLD_NEXT, "fopen64"));
  return open(name, mode);
}

}  // namespace

// Stands before the C library's, under the name that large files give it.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): the header has reserved ones
extern "C" TRELVO_EXPORT std::FILE* fopen(const char* name, const char* mode) {
  return gRedirects ? openInstead(name, mode) : openReally(name, mode);
}

namespace trelvo::fuzz {

namespace {

constexpr std::size_t kLineSize = 127;

/// Lines as the reader takes them, longer ones in pieces.
std::size_t linesIn(const Bytes& input) {
  std::size_t lines = 0;
  std::size_t length = 0;
  for (const unsigned char byte : input) {
    lines += length == 0 ? 1 : 0;
    length = byte == '\n' || length + 1 == kLineSize ? 0 : length + 1;
  }
  return lines;
}

int nextDescriptor() {
  const int descriptor = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
  ::close(descriptor);
  return descriptor;
}

/// No file of the machine is opened while it lives.
struct Redirection {
  Redirection() { gRedirects = true; }
  ~Redirection() { gRedirects = false; }
  Redirection(const Redirection&) = delete;
  Redirection& operator=(const Redirection&) = delete;
};

/// Nothing may go ahead while the library still calls the C library's fopen().
bool isOnItsOwn(const ScratchFile& empty) {
  test::TestPlatform platform;
  const unsigned int before = gOpened;
  platform.readConfig(empty.path().c_str(), "/nowhere/", nullptr);
  return gOpened == before + 2;
}

void checkSettings(test::TestPlatform& platform, bool good, std::size_t lines) {
  require(platform.m_components.size() <= lines, "a line configures one component at most");
  require(!good || platform.m_defaultSetting.file != nullptr, "a good configuration has a default");
  for (const auto& [name, setting] : platform.m_components) {
    require(!good || setting.levelMask == 0 || setting.file != nullptr,
            "what a good configuration switches on has a file");
    platform.writeLogEll(Debug::LogLevelNote, false, name.c_str(), "%s\n", name.c_str());
  }
}

}  // namespace

void run(const Bytes& bytes) {
  static ScratchFile file;
  const Redirection redirection;
  configurationPath() = file.path();
  static const bool onItsOwn = isOnItsOwn(file);
  require(onItsOwn, "the library opens files by the function here");
  file.setContent(bytes);
  const int before = nextDescriptor();
  {
    test::TestPlatform platform;
    const MemoryBound bound(bytes.size(), 65536);
    for (int round = 0; round < 2; ++round) {
      const bool good = platform.readConfig(file.path().c_str(), "logs/", nullptr);
      checkSettings(platform, good, linesIn(bytes));
    }
  }
  require(nextDescriptor() == before, "no file stays open");
}

}  // namespace trelvo::fuzz
