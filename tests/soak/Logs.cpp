#include "tests/soak/Logs.h"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <fstream>
#include <mutex>
#include <sstream>

#include <trelvo/DebugCommon.h>
#include <trelvo/ICryptoLog.h>
#include <trelvo/core/Directory.h>

#include "tests/soak/OneWorkerCrew.h"

namespace soak {

namespace {

using trelvo::Debug;
using trelvo::DebugCommon;
using trelvo::ICryptoLog;
using trelvo::core::Directory;
using trelvo::core::IThread;
using Log = trelvo::gom::SharedPointer<ICryptoLog>;

constexpr unsigned int kMaxEncryptedLines = 1000;
constexpr unsigned int kEngineLines = 300;
constexpr std::array<const char*, 2> kComponents = {"radio", "network"};

std::string keyFile(const char* name) {
  return std::string(TRELVO_TEST_DATA) + "/crypto/golden/" + name;
}

void expectRemoved(const std::string& path) { check(Directory::rmFile(path), "a log is removed"); }

/// The platform's part of the engine: a clock that stands still, and one lock over the files.
class Platform : public DebugCommon {
 public:
  void formatTime(char* text, bool) override { std::snprintf(text, 64, "now"); }
  void formatFileTime(char* text, bool) override { std::snprintf(text, 64, "now"); }
  bool isAbsolutePath(const char* path) override { return path[0] == '/'; }
  int currentThreadNumber() override { return IThread::currentThreadId(); }
  void writePlatform(const char*, const char*, int, const char*, va_list) override {}
  bool lockFile(std::FILE*) override {
    m_mutex.lock();
    return true;
  }
  void unlockFile(std::FILE*) override { m_mutex.unlock(); }

 private:
  std::mutex m_mutex;
};

/// A thread that logs numbered lines of one component.
class Logger : public trelvo::core::IThreadObserver {
 public:
  Logger(Platform& platform, const char* component)
      : m_platform(platform), m_component(component), m_thread(IThread::create(this, true)) {
    check(m_thread && m_thread->resume(), "a thread starts suspended and is resumed");
  }
  void join() { check(m_thread->wait(), "a thread ends"); }

  int threadMain() override {
    for (unsigned int i = 0; i < kEngineLines; ++i) {
      m_platform.writeLogEll(Debug::LogLevelNote, false, m_component, "%s %u\n", m_component, i);
    }
    return 0;
  }

 private:
  Platform& m_platform;
  const char* m_component;
  trelvo::gom::SharedPointer<IThread> m_thread;
};

class LogsWorker : public Worker {
 public:
  LogsWorker(const std::string& directory, unsigned int seed)
      : m_random(seed),
        m_directory(directory + '/'),
        m_name("log" + std::to_string(seed)),
        m_public(keyFile("public.pem")),
        m_private(keyFile("private.pem")) {}

 protected:
  void round() override {
    keepEncryptedLog();
    logThroughEngine();
  }

 private:
  std::string path(const char* ending) const { return m_directory + m_name + ending; }

  void keepEncryptedLog() {
    const std::string sealed = path(".slog");
    const std::string opened = path(".txt");
    const std::string text = writeEncryptedLog(sealed);
    check(ICryptoLog::decrypt(sealed.c_str(), opened.c_str(), m_private.c_str(), {}) ==
              trelvo::StatusOk,
          "an encrypted log decrypts");
    check(contentOf(opened) == text, "an encrypted log gives what was written");
    expectRemoved(sealed);
    expectRemoved(opened);
    ++gFigures.encryptedLogs;
    gFigures.logBytes += text.size();
  }

  // @return what was written.
  std::string writeEncryptedLog(const std::string& sealed) {
    const Log log(ICryptoLog::create(sealed.c_str(), m_public.c_str()));
    check(static_cast<bool>(log), "an encrypted log starts");
    std::string text;
    const unsigned int lines = 1 + m_random.below(kMaxEncryptedLines);
    for (unsigned int i = 0; i < lines; ++i) {
      const std::string line = lineOf(i);
      log->puts(line.c_str());
      check(i % 10 != 9 || log->flush(), "an encrypted log is flushed");
      text += line;
    }
    gFigures.encryptedLines += lines;
    return text;
  }

  std::string lineOf(unsigned int number) {
    return "line " + std::to_string(number) + ", cell " +
           std::to_string(m_random.below(1U << 28U)) + std::string(m_random.below(60), '.') + '\n';
  }

  void logThroughEngine() {
    const std::string config = path(".conf");
    std::ofstream(config) << "no_platform_logging\n"
                          << kComponents[0] << " 15 " << m_name << ".log\n"
                          << kComponents[1] << " 15 " << m_name << ".log\n";
    {
      Platform platform;
      check(platform.readConfig(config.c_str(), m_directory.c_str(), (m_name + ".def").c_str()),
            "the engine is configured");
      std::array<Logger, 2> loggers{Logger(platform, kComponents[0]),
                                    Logger(platform, kComponents[1])};
      for (auto& logger : loggers) {
        logger.join();
      }
    }
    expectAllLines(contentOf(path(".log")));
    for (const char* const ending : {".conf", ".log", ".def"}) {
      expectRemoved(path(ending));
    }
  }

  static void expectAllLines(const std::string& text) {
    std::array<unsigned int, 2> next = {};
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
      const std::size_t at = line.find(kComponents[0]) == std::string::npos ? 1 : 0;
      const std::string expected = std::string(kComponents[at]) + ' ' + std::to_string(next[at]++);
      check(line.size() > expected.size() &&
                line.compare(line.size() - expected.size(), expected.size(), expected) == 0,
            "the engine's lines are whole and in order");
    }
    check(next[0] == kEngineLines && next[1] == kEngineLines, "the engine loses no line");
    gFigures.engineLines += next[0] + next[1];
    gFigures.logBytes += text.size();
  }

  Random m_random;
  std::string m_directory;
  std::string m_name;
  std::string m_public;
  std::string m_private;
};

}  // namespace

std::unique_ptr<Crew> makeLogsCrew(const std::string& directory, unsigned int seed) {
  return crewOf<LogsWorker>(directory, seed);
}

}  // namespace soak
