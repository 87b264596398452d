// A platform for the logging engine, as an application on Linux writes one, and a replay of old
// observations that logs through it: to a file, to the console, and to a copy of the log.
//
//   Platform       the five operations that the engine asks for, and a mutex for the files
//   TextLog        a sink for the copy; an encrypted log is another ILog and goes in its place
//   doWriteLogVa   joins Debug::testLog() to the platform

#include <syslog.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <mutex>
#include <string>
#include <thread>

#include <trelvo/trelvo.h>

using trelvo::Debug;
using trelvo::DebugCommon;
using trelvo::ILog;

namespace {

constexpr auto kUsual = static_cast<Debug::LogLevel>(1);
constexpr auto kDetailed = static_cast<Debug::LogLevel>(2);

class Platform : public DebugCommon {
 public:
  // Lines carry the time of what is replayed. A live application asks std::time() in formatTime().
  void setTime(std::time_t time) { m_time = time; }

  void formatTime(char* text, bool) override { write(text, "%Y-%m-%d %H:%M:%S"); }
  void formatFileTime(char* text, bool) override { write(text, "%Y%m%d"); }
  bool isAbsolutePath(const char* path) override { return path[0] == '/'; }

  // 1, 2, 3: easier to follow than what the system calls its threads.
  int currentThreadNumber() override {
    const std::lock_guard<std::mutex> guard(m_threadsMutex);
    const int next = static_cast<int>(m_threads.size()) + 1;
    return m_threads.emplace(std::this_thread::get_id(), next).first->second;
  }

  void writePlatform(const char*, const char*, int, const char* format,
                     va_list arguments) override {
    vsyslog(LOG_DEBUG, format, arguments);
  }

  // Several threads log, so their lines take turns.
  bool lockFile(std::FILE*) override {
    m_fileMutex.lock();
    return true;
  }
  void unlockFile(std::FILE*) override { m_fileMutex.unlock(); }

  // What the application logs by: to file and system log as configured, and to the copy.
  [[gnu::format(printf, 4, 5)]] void note(Debug::LogLevel level, const char* component,
                                          const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    writeLogVa(level, false, component, "  ", format, arguments);
    char time[64] = "";
    formatTime(time, false);
    writeLogVa(m_internalLog, false, time, component, "  ", format, arguments);
    va_end(arguments);
  }

  void flushCopy() {
    if (m_internalLog != nullptr) m_internalLog->flush();
  }

 private:
  void write(char* text, const char* form) const {
    std::tm utc{};
    gmtime_r(&m_time, &utc);
    std::strftime(text, 64, form, &utc);
  }

  std::time_t m_time = 0;
  std::mutex m_fileMutex;
  std::mutex m_threadsMutex;
  std::map<std::thread::id, int> m_threads;
};

class TextLog : public ILog {
 public:
  explicit TextLog(const std::string& name) : m_stream(name) {}
  void puts(const char* text) override { m_stream << text; }
  bool flush() override { return m_stream.flush().good(); }

 private:
  std::ofstream m_stream;
};

// A directory for this run, gone with it.
class Scratch {
 public:
  Scratch() {
    std::string name = std::filesystem::temp_directory_path() / "trelvo_logging_XXXXXX";
    if (mkdtemp(name.data()) != nullptr) m_path = name + "/";
  }
  ~Scratch() {
    std::error_code ignored;
    if (!m_path.empty()) std::filesystem::remove_all(m_path, ignored);
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  const std::string& path() const { return m_path; }

 private:
  std::string m_path;
};

void print(const std::string& directory, const char* name) {
  std::printf("--- %s\n", name);
  std::fflush(stdout);
  std::cout << std::ifstream(directory + name).rdbuf() << std::flush;
}

}  // namespace

// In the library this does nothing; a program's own definition takes its place.
TRELVO_EXPORT void trelvo::doWriteLogVa(Debug::LogLevel level, bool continued,
                                        const char* component, const char* prefix,
                                        const char* format, va_list arguments) {
  if (DebugCommon::mPimpl == nullptr) return;
  DebugCommon::mPimpl->writeLogVa(level, continued, component, prefix, format, arguments);
}

int main() {
  const Scratch scratch;
  const std::string config = scratch.path() + "logging.conf";
  std::ofstream(config) << "; component, levels, file\n"
                           "no_platform_logging\n"
                           "default 15 replay_%t.log\n"
                           "network 1  console\n"
                           "core    0  nowhere\n"
                           "tests   16 replay_%t_tests.log\n";

  auto* const platform = new Platform;
  platform->setTime(1700000000);
  DebugCommon::mPimpl = platform;
  platform->addRef();
  if (!platform->readConfig(config.c_str(), scratch.path().c_str(), nullptr)) return 1;
  Debug::setInternalLog(new TextLog(scratch.path() + "copy.log"));

  platform->note(kUsual, "replay", "%d observations of cell %X\n", 2, 0x1234507U);
  platform->note(kUsual, "core", "for the copy alone: core has mask 0\n");
  std::thread([&] {
    platform->setTime(1700000007);
    platform->note(kUsual, "network", "connected\n");
    platform->note(kDetailed, "network", "for the copy alone: network has mask 1\n");
  }).join();
  platform->setTime(1700000031);
  platform->note(kDetailed, "replay", "fix at %.4f, %.4f\n", 52.5163, 13.3777);
  Debug::testLog("tests", "replayed %s", "twice");
  Debug::testLog2(true, "tests", " and %s\n", "compared");

  print(scratch.path(), "replay_20231114.log");
  print(scratch.path(), "replay_20231114_tests.log");
  platform->flushCopy();
  print(scratch.path(), "copy.log");
  std::printf("--- logs are in the %s directory\n",
              Debug::logPath() == scratch.path() ? "scratch" : "wrong");

  platform->removeRef();  // the last one: the platform is gone, and standard output with it
}
