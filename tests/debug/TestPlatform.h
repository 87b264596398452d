#pragma once

#include <ctime>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <trelvo/DebugCommon.h>
#include <trelvo/ILog.h>

namespace trelvo::test {

/// A platform for the logging engine, as a program would write one, with a clock that stands still
/// unless it is moved and a platform log in memory. Several threads may log.
class TestPlatform : public DebugCommon {
 public:
  /// 2023-11-14 22:13:20 UTC.
  static constexpr std::time_t kNow = 1700000000;

  /// What the platform's log has: time, component and thread number, then the text.
  struct PlatformLine {
    std::string time;
    std::string component;
    int thread;
    std::string format;
    std::string text;
  };

  /// UTC as "2023-11-14 22:13:20".
  void formatTime(char* text, bool) override;
  /// UTC as "20231114_221320".
  void formatFileTime(char* text, bool) override;
  bool isAbsolutePath(const char* path) override;
  /// Threads count from 1, in the order in which they first log.
  int currentThreadNumber() override;
  void writePlatform(const char* time, const char* component, int thread, const char* format,
                     va_list arguments) override;
  bool lockFile(std::FILE* file) override;
  void unlockFile(std::FILE* file) override;
  bool lockXml(std::FILE* file) override;
  void unlockXml(std::FILE* file) override;

  std::vector<PlatformLine> platformLog() const;

  // The forms that take a va_list, called with arguments.
  [[gnu::format(printf, 6, 7)]] void line(Debug::LogLevel level, bool continued,
                                          const char* component, const char* prefix,
                                          const char* format, ...);
  [[gnu::format(printf, 7, 8)]] void fileLine(std::FILE* file, bool continued, const char* time,
                                              const char* component, const char* prefix,
                                              const char* format, ...);
  [[gnu::format(printf, 7, 8)]] void logLine(ILog* log, bool continued, const char* time,
                                             const char* component, const char* prefix,
                                             const char* format, ...);
  [[gnu::format(printf, 5, 6)]] void platformLine(const char* time, const char* component,
                                                  const char* prefix, const char* format, ...);

  // What the engine keeps.
  using DebugCommon::m_components;
  using DebugCommon::m_defaultSetting;
  using DebugCommon::m_internalLog;
  using DebugCommon::m_internalLogLines;
  using DebugCommon::m_logPath;
  using DebugCommon::m_ltaFile;
  using DebugCommon::m_ltaFileName;
  using DebugCommon::m_platformLogging;
  using DebugCommon::m_referenceCount;

  std::time_t now = kNow;

 private:
  void write(char* text, const char* form) const;

  std::mutex m_fileMutex;
  mutable std::mutex m_mutex;  // over what follows
  std::map<std::thread::id, int> m_threads;
  std::vector<PlatformLine> m_platformLog;
};

/// Keeps what it is given, and what of that had been flushed.
class TestLog : public ILog {
 public:
  struct Record {
    std::vector<std::string> texts;
    std::vector<std::size_t> flushedAfter;  ///< The number of texts at each flush.
    int deaths = 0;
  };

  /// `record` outlives the log.
  explicit TestLog(Record& record) : m_record(record) {}
  ~TestLog() override { ++m_record.deaths; }

  void puts(const char* text) override { m_record.texts.emplace_back(text); }
  bool flush() override {
    m_record.flushedAfter.push_back(m_record.texts.size());
    return true;
  }

 private:
  Record& m_record;
};

/// Makes `platform` the instance while it lives.
class Connected {
 public:
  explicit Connected(DebugCommon& platform) { DebugCommon::mPimpl = &platform; }
  ~Connected() { DebugCommon::mPimpl = nullptr; }
  Connected(const Connected&) = delete;
  Connected& operator=(const Connected&) = delete;
};

/// `text` behind the head of a line that the calling thread logs first and at TestPlatform::kNow.
/// `component` is padded already.
inline std::string logged(const std::string& component, const std::string& text) {
  return "2023-11-14 22:13:20 1 " + component + "    " + text;
}

}  // namespace trelvo::test
