#include "tests/debug/TestPlatform.h"

#include <utility>

namespace trelvo::test {
namespace {

std::string formatted(const char* format, va_list arguments) {
  char text[1024] = "";
  std::vsnprintf(text, sizeof text, format, arguments);
  return text;
}

}  // namespace

void TestPlatform::write(char* text, const char* form) const {
  std::tm utc{};
  gmtime_r(&now, &utc);
  std::strftime(text, 64, form, &utc);
}

void TestPlatform::formatTime(char* text, bool) { write(text, "%Y-%m-%d %H:%M:%S"); }

void TestPlatform::formatFileTime(char* text, bool) { write(text, "%Y%m%d_%H%M%S"); }

bool TestPlatform::isAbsolutePath(const char* path) { return path[0] == '/'; }

int TestPlatform::currentThreadNumber() {
  const std::lock_guard<std::mutex> guard(m_mutex);
  const int next = static_cast<int>(m_threads.size()) + 1;
  return m_threads.emplace(std::this_thread::get_id(), next).first->second;
}

void TestPlatform::writePlatform(const char* time, const char* component, int thread,
                                 const char* format, va_list arguments) {
  PlatformLine line{time, component, thread, format, formatted(format, arguments)};
  const std::lock_guard<std::mutex> guard(m_mutex);
  m_platformLog.push_back(std::move(line));
}

bool TestPlatform::lockFile(std::FILE*) {
  m_fileMutex.lock();
  return true;
}

void TestPlatform::unlockFile(std::FILE*) { m_fileMutex.unlock(); }

bool TestPlatform::lockXml(std::FILE* file) { return lockFile(file); }

void TestPlatform::unlockXml(std::FILE* file) { unlockFile(file); }

std::vector<TestPlatform::PlatformLine> TestPlatform::platformLog() const {
  const std::lock_guard<std::mutex> guard(m_mutex);
  return m_platformLog;
}

void TestPlatform::line(Debug::LogLevel level, bool continued, const char* component,
                        const char* prefix, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  writeLogVa(level, continued, component, prefix, format, arguments);
  va_end(arguments);
}

void TestPlatform::fileLine(std::FILE* file, bool continued, const char* time,
                            const char* component, const char* prefix, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  writeLogVa(file, continued, time, component, prefix, format, arguments);
  va_end(arguments);
}

void TestPlatform::logLine(ILog* log, bool continued, const char* time, const char* component,
                           const char* prefix, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  writeLogVa(log, continued, time, component, prefix, format, arguments);
  va_end(arguments);
}

void TestPlatform::platformLine(const char* time, const char* component, const char* prefix,
                                const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  writePlatSpecificVa(time, component, prefix, format, arguments);
  va_end(arguments);
}

}  // namespace trelvo::test
