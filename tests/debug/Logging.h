#pragma once

#include <string>

#include "tests/debug/LogDirectory.h"
#include "tests/debug/TestPlatform.h"

namespace trelvo::test {

/// A platform whose "default" component logs everything to "default.log".
struct Logging {
  Logging() {
    platform.m_defaultSetting.levelMask = ~0U;
    platform.m_defaultSetting.fileName = directory.file("default.log");
    platform.m_defaultSetting.file = platform.addLogFile(platform.m_defaultSetting.fileName);
  }

  std::string content() const { return directory.content("default.log"); }
  std::FILE* file() const { return platform.m_defaultSetting.file; }

  LogDirectory directory;
  TestPlatform platform;
};

}  // namespace trelvo::test
