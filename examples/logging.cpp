// A platform for the logging engine, as an application on Linux writes one, and a replay of old
// observations that logs through it: to files, to the console, and to an encrypted copy of the log.
//
//   Platform       the five operations that the engine asks for, and a mutex for the files
//   doWriteLogVa   joins Debug::testLog() to the platform
//
// The copy can be read by whoever has the private key, and by nobody on the device:
//
//   openssl genrsa -traditional -out private.pem 2048
//   mkdir device && openssl rsa -in private.pem -pubout -out device/publog.pem
//   logging device
//
// leaves device/replay_20231114.slog. Where the private key is, this shows it:
//
//   trelvo log decrypt --key private.pem device/replay_20231114.slog -

#include <syslog.h>

#include <cstdio>
#include <ctime>
#include <fstream>
#include <iostream>
#include <map>
#include <mutex>
#include <string>
#include <thread>

#include <trelvo/trelvo.h>

using trelvo::Debug;
using trelvo::DebugCommon;
using trelvo::ICryptoLog;

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
    const std::lock_guard<std::mutex> guard(m_copyMutex);  // nobody guards it but we
    writeLogVa(m_internalLog, false, time, component, "  ", format, arguments);
    va_end(arguments);
  }

 private:
  void write(char* text, const char* form) const {
    std::tm utc{};
    gmtime_r(&m_time, &utc);
    std::strftime(text, 64, form, &utc);
  }

  std::time_t m_time = 0;
  std::mutex m_fileMutex;
  std::mutex m_copyMutex;
  std::mutex m_threadsMutex;
  std::map<std::thread::id, int> m_threads;
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

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "Usage: logging DIRECTORY     with the file publog.pem in it\n");
    return 2;
  }
  const std::string directory = std::string(argv[1]) + "/";
  const std::string config = directory + "logging.conf";
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
  if (!platform->readConfig(config.c_str(), directory.c_str(), nullptr)) return 1;

  // The copy goes beside the default file, for the holder of the key among the delivered files.
  trelvo::core::Directory::setPreinstalledFilesPath(directory);
  ICryptoLog* const copy = ICryptoLog::createDebugInternalLog();
  if (copy == nullptr) {
    std::fprintf(stderr, "no encrypted log: is there a public key in %spublog.pem?\n",
                 directory.c_str());
    return 1;
  }
  Debug::setInternalLog(copy);  // the platform's from here on

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

  print(directory, "replay_20231114.log");
  print(directory, "replay_20231114_tests.log");
  std::printf("--- logs are in the %s directory\n",
              Debug::logPath() == directory ? "given" : "wrong");

  // The last one: the platform is gone, the copy is complete, and standard output is closed.
  platform->removeRef();
}
