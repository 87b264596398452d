#include <new>
#include <stdexcept>
#include <string>

#include <trelvo/DebugCommon.h>
#include <trelvo/ICryptoLog.h>
#include <trelvo/core/Directory.h>

#include "debug/DebugLock.h"

namespace trelvo {

namespace {

/// The encrypted log's name by the logging instance; empty without one. Throws std::out_of_range.
std::string internalLogPath() {
  const DebugLock lock;
  return lock && DebugCommon::mPimpl != nullptr ? DebugCommon::mPimpl->makeInternalLogFileName()
                                                : std::string();
}

}  // namespace

ICryptoLog* ICryptoLog::createDebugInternalLog() {
  try {
    const std::string logPath = internalLogPath();
    std::string keyPath;
    core::Directory::getPreinstalledFilesPath(keyPath);
    core::Directory::appendPath(keyPath, "publog.pem");
    return create(logPath.c_str(), keyPath.c_str());
  } catch (const std::bad_alloc&) {
    return nullptr;
  } catch (const std::out_of_range&) {
    return nullptr;  // the default log file's name has no ".log" to replace
  }
}

}  // namespace trelvo
