// The reader of the logging configuration.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <utility>

#include <trelvo/DebugCommon.h>

#include "debug/StreamIndex.h"

namespace trelvo {
namespace {

constexpr int kLineSize = 128;
constexpr unsigned int kDefaultMask = 15;
constexpr const char* kSeparators = " \r\n";

// -1 is every level. What has no place in 32 bits becomes the nearest number that has.
unsigned int levelMask(const char* text) {
  const long long kMin = std::numeric_limits<std::int32_t>::min();
  const long long kMax = std::numeric_limits<std::uint32_t>::max();
  return static_cast<unsigned int>(std::clamp(std::strtoll(text, nullptr, 10), kMin, kMax));
}

}  // namespace

bool DebugCommon::readConfig(const char* configFile, const char* logPath, const char* defaultFile) {
  m_logPath = logPath == nullptr ? "./" : logPath;
  const bool read = readConfigFile(configFile);
  setUpDefault(defaultFile == nullptr ? "trelvo.log" : defaultFile);

  const bool good = read && m_defaultSetting.file != nullptr;
  writeLogEll(Debug::LogLevelConfiguration, false, DebugDefaultComponent,
              good ? "DEBUG: config file ok\n" : "DEBUG: couldn't read config file\n");
  return good;
}

bool DebugCommon::readConfigFile(const char* name) {
  if (name == nullptr) return false;
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(name, "re"), std::fclose);
  if (!file) return false;

  StreamIndex index(m_components);
  bool good = true;
  char line[kLineSize];
  while (std::fgets(line, kLineSize, file.get()) != nullptr) {
    good = readConfigLine(line, index) && good;
  }
  return good && std::ferror(file.get()) == 0;
}

bool DebugCommon::readConfigLine(char* line, StreamIndex& index) {
  char* rest = nullptr;
  const char* const first = strtok_r(line, kSeparators, &rest);
  if (first == nullptr || *first == ';') return true;
  if (std::strcmp(first, "no_platform_logging") == 0) {
    m_platformLogging = false;
    return true;
  }
  const char* const second = strtok_r(nullptr, kSeparators, &rest);
  if (second == nullptr) return true;
  if (std::strcmp(first, "path") == 0) {
    m_logPath = second;
    return true;
  }
  const char* const third = strtok_r(nullptr, kSeparators, &rest);
  return third == nullptr || setComponent(first, levelMask(second), third, index);
}

bool DebugCommon::setComponent(const char* component, unsigned int mask, const char* file,
                               StreamIndex& index) {
  ComponentSetting setting;
  setting.levelMask = mask;
  if (mask != 0) setting.fileName = makeLogFileName(m_logPath.c_str(), file);

  // The entry comes before the stream, which thereby has an owner at once.
  StreamIndex::Entry& entry = *m_components.try_emplace(component).first;
  if (mask != 0) setting.file = index.addLogFile(setting.fileName);
  index.remove(entry);
  std::swap(entry.second, setting);
  if (setting.file != entry.second.file && !index.holds(setting.file)) closeUnheld(setting.file);
  index.add(entry);
  return mask == 0 || entry.second.file != nullptr;
}

void DebugCommon::setUpDefault(const char* file) {
  ComponentSetting setting;
  const auto entry = m_components.find(DebugDefaultComponent);
  if (entry == m_components.end()) {
    setting.levelMask = kDefaultMask;
    setting.fileName = makeLogFileName(m_logPath.c_str(), file);
    setting.file = addLogFile(setting.fileName);
  } else {
    setting = std::move(entry->second);
    m_components.erase(entry);
  }
  std::swap(m_defaultSetting, setting);
  closeWhenUnused(setting.file);
}

}  // namespace trelvo
