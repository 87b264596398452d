// The streams of a DebugCommon: how they are named, opened, shared and closed.

#include <algorithm>
#include <cstring>

#include <trelvo/DebugCommon.h>

#include "debug/LogText.h"
#include "debug/StreamIndex.h"

namespace trelvo {
namespace {

constexpr const char* kConsole = "console";

void replaceFirst(std::string& name, const char* mark, const char* text) {
  const std::size_t place = name.find(mark);
  if (place != std::string::npos) name.replace(place, std::strlen(mark), text);
}

void closeStream(std::FILE* file) {
  if (file != stdout) {
    std::fclose(file);
    return;
  }
  // Closing it for good would leave the process with a stream that nobody may touch, and its
  // descriptor to the next file that is opened.
  [[maybe_unused]] const std::FILE* nowhere = std::freopen("/dev/null", "w", stdout);
}

}  // namespace

std::FILE* DebugCommon::addLogFile(const std::string& name) {
  const auto found = std::find_if(m_components.begin(), m_components.end(),
                                  [&](const auto& entry) { return entry.second.fileName == name; });
  return found == m_components.end() ? StreamIndex::open(name) : found->second.file;
}

std::FILE* DebugCommon::StreamIndex::open(const std::string& name) {
  return name == kConsole ? stdout : std::fopen(name.c_str(), "we");
}

std::string DebugCommon::makeLogFileName(const char* path, const char* file) {
  std::string name = orEmpty(file);
  if (name == kConsole) return name;
  if (!isAbsolutePath(name.c_str())) name.insert(0, orEmpty(path));

  char time[kPlatformTextSize] = "";
  formatFileTime(time, false);
  replaceFirst(name, "%t", time);
  char process[kPlatformTextSize] = "";
  getProcessNameOrId(process);
  replaceFirst(name, "%p", process);
  return name;
}

std::string DebugCommon::makeInternalLogFileName() {
  std::string name = m_defaultSetting.fileName;
  return name.replace(name.rfind(".log"), std::strlen(".log"), ".slog");
}

bool DebugCommon::isHeld(const std::FILE* file) const {
  return std::any_of(m_components.begin(), m_components.end(),
                     [=](const auto& entry) { return entry.second.file == file; });
}

void DebugCommon::closeWhenUnused(std::FILE* file) {
  if (!isHeld(file)) closeUnheld(file);
}

// No component has it.
void DebugCommon::closeUnheld(std::FILE* file) {
  const bool isOwn = file == m_defaultSetting.file || file == m_ltaFile;
  if (file != nullptr && file != stdout && !isOwn) closeStream(file);
}

void DebugCommon::closeEverywhere(std::FILE* file) {
  if (file == nullptr) return;
  for (auto& entry : m_components) {
    if (entry.second.file == file) entry.second.file = nullptr;
  }
  if (m_defaultSetting.file == file) m_defaultSetting.file = nullptr;
  if (m_ltaFile == file) m_ltaFile = nullptr;
  closeStream(file);
}

}  // namespace trelvo
