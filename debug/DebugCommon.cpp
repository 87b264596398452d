#include <trelvo/DebugCommon.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

#include <trelvo/DebugMutex.h>
#include <trelvo/ILog.h>
#include <trelvo/core/CrtVariants.h>

#include "debug/LogText.h"

namespace trelvo {
namespace {

constexpr unsigned int kLinesBetweenFlushes = 10;

void writeAtEnd(std::FILE* file, const char* format, va_list arguments) {
  va_list copy;
  va_copy(copy, arguments);
  std::fseek(file, 0, SEEK_END);
  std::vfprintf(file, orEmpty(format), copy);
  std::fflush(file);
  va_end(copy);
}

}  // namespace

const char* DebugCommon::DebugDefaultComponent = "default";
DebugCommon* DebugCommon::mPimpl = nullptr;
int DebugCommon::mCallCount = 0;

DebugCommon::DebugCommon() = default;

DebugCommon::~DebugCommon() {
  // Once a stream, of which there are only as many as a process may open.
  for (const auto& entry : m_components) closeEverywhere(entry.second.file);
  closeEverywhere(m_defaultSetting.file);
  closeEverywhere(m_ltaFile);
  delete m_internalLog;
}

void DebugCommon::getProcessNameOrId(char* text) const { std::memcpy(text, "unk", sizeof "unk"); }

bool DebugCommon::lockFile(std::FILE*) { return true; }
void DebugCommon::unlockFile(std::FILE*) {}
bool DebugCommon::lockXml(std::FILE*) { return true; }
void DebugCommon::unlockXml(std::FILE*) {}

bool DebugCommon::lock() { return gDebugMutex.lock(); }
void DebugCommon::unlock() { gDebugMutex.unlock(); }

void DebugCommon::addRef() {
  ++m_referenceCount;
  writeLogEll(Debug::LogLevelNote, false, DebugDefaultComponent,
              "DebugCommon::addRef: counter %d\n", m_referenceCount);
}

void DebugCommon::removeRef() {
  writeLogEll(Debug::LogLevelNote, false, DebugDefaultComponent,
              "DebugCommon::removeRef: counter %d\n", m_referenceCount);
  // Nothing of this object may be touched behind the delete.
  if (--m_referenceCount == 0) delete std::exchange(mPimpl, nullptr);
}

const char* DebugCommon::logPath() const { return m_logPath.empty() ? "./" : m_logPath.c_str(); }

const DebugCommon::ComponentSetting& DebugCommon::getComponentLogSettings(
    const char* component) const {
  if (component == nullptr) return m_defaultSetting;
  const auto found = std::find_if(m_components.begin(), m_components.end(), [=](const auto& entry) {
    return std::strcmp(entry.first.c_str(), component) == 0;
  });
  return found == m_components.end() ? m_defaultSetting : found->second;
}

void DebugCommon::setInternalLog(ILog* log) {
  if (m_internalLog == nullptr) {
    m_internalLog = log;
    return;
  }
  writeLogEll(Debug::LogLevelConfiguration, false, DebugDefaultComponent,
              "DEBUG: internal log already set\n");
}

void DebugCommon::writeLogVa(Debug::LogLevel level, bool continued, const char* component,
                             const char* prefix, const char* format, va_list arguments) {
  char time[kPlatformTextSize] = "";
  formatTime(time, false);
  const ComponentSetting& setting = getComponentLogSettings(component);
  if ((level & setting.levelMask) == 0) return;
  writeLogVa(setting.file, continued, time, component, prefix, format, arguments);
  writePlatSpecificVa(time, component, prefix, format, arguments);
}

void DebugCommon::writeLogEll(Debug::LogLevel level, bool continued, const char* component,
                              const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  writeLogVa(level, continued, component, "  ", format, arguments);
  va_end(arguments);
}

void DebugCommon::writeLogVa(std::FILE* file, bool continued, const char* time,
                             const char* component, const char* prefix, const char* format,
                             va_list arguments) {
  if (file == nullptr || !lockFile(file)) return;
  const auto unlock = [this](std::FILE* locked) { unlockFile(locked); };
  const std::unique_ptr<std::FILE, decltype(unlock)> turn(file, unlock);

  std::fseek(file, 0, SEEK_END);
  if (!continued) {
    std::fprintf(file, kLineHead, orEmpty(time), currentThreadNumber(), orEmpty(component),
                 orEmpty(prefix));
  }
  writeAtEnd(file, format, arguments);
}

void DebugCommon::writeLogVa(ILog* log, bool continued, const char* time, const char* component,
                             const char* prefix, const char* format, va_list arguments) {
  if (log == nullptr) return;
  char text[256] = "";
  int head = 0;
  if (!continued) {
    head = core::CrtVariants::sprintf(text, sizeof text, kLineHead, orEmpty(time),
                                      currentThreadNumber(), orEmpty(component), orEmpty(prefix));
  }
  const auto used = static_cast<std::size_t>(std::clamp(head, 0, int{sizeof text} - 1));
  va_list copy;
  va_copy(copy, arguments);
  if (std::vsnprintf(text + used, sizeof text - used, orEmpty(format), copy) < 0) text[used] = '\0';
  va_end(copy);

  log->puts(text);
  if (m_internalLogLines++ % kLinesBetweenFlushes == 0) log->flush();
}

void DebugCommon::writePlatSpecificVa(const char* time, const char* component, const char* prefix,
                                      const char* format, va_list arguments) {
  if (!m_platformLogging) return;
  const PlatformFormat platformFormat(orEmpty(prefix), orEmpty(format));
  va_list copy;
  va_copy(copy, arguments);
  writePlatform(orEmpty(time), orEmpty(component), currentThreadNumber(), platformFormat.text(),
                copy);
  va_end(copy);
}

void DebugCommon::writeXmlVa(const char* format, va_list arguments) {
  if (m_ltaFile == nullptr || !lockXml(m_ltaFile)) return;
  writeAtEnd(m_ltaFile, format, arguments);
  unlockXml(m_ltaFile);
}

}  // namespace trelvo
