#include <trelvo/Debug.h>

#include <trelvo/DebugCommon.h>

#include "debug/DebugLock.h"

namespace trelvo {
namespace {

constexpr const char* kPrefix = "  ";

// The count may run below the smallest integer, and then goes on at the largest.
int oneLess(int count) noexcept { return static_cast<int>(static_cast<unsigned int>(count) - 1U); }

}  // namespace

const char* Debug::defaultComponentName = "WPQENL";
const char* gCoreDebugComponentName = "core";
const char* gCryptoDebugComponentName = "crypto";
const char* gNetworkComponentName = "network";
const char* gDatatypesComponentName = "datatypes";

void Debug::log(const char*, const char*, ...) {}
void Debug::customerLog(const char*, const char*, ...) {}
void Debug::log2(bool, const char*, const char*, ...) {}
void Debug::logva(const char*, const char*, va_list) {}
void Debug::dump(const char*, const char*, const unsigned char*, unsigned long, ...) {}
void Debug::dump2(bool, const char*, const char*, const unsigned char*, unsigned long, ...) {}
void Debug::perf(const char*, const char*, ...) {}
void Debug::perf2(bool, const char*, const char*, ...) {}
void Debug::systemLog(const char*, ...) {}

void Debug::testLog(const char* component, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  doWriteLogVa(LogLevelTest, false, component, kPrefix, format, arguments);
  va_end(arguments);
}

void Debug::testLog2(bool continued, const char* component, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  doWriteLogVa(LogLevelTest, continued, component, kPrefix, format, arguments);
  va_end(arguments);
}

bool Debug::init() { return false; }

void Debug::release() {}

const char* Debug::logPath() {
  const DebugLock lock;
  return lock && DebugCommon::mPimpl != nullptr ? DebugCommon::mPimpl->logPath() : nullptr;
}

void Debug::setInternalLog(ILog* log) {
  const DebugLock lock;
  if (lock && DebugCommon::mPimpl != nullptr) DebugCommon::mPimpl->setInternalLog(log);
}

void Debug::setFailAtSpecificCall(int count) {
  const DebugLock lock;
  if (lock) DebugCommon::mCallCount = count;
}

int Debug::getFailAtSpecificCallValue() {
  const DebugLock lock;
  return lock ? DebugCommon::mCallCount : -1;
}

bool Debug::shouldFailThisCall() {
  const DebugLock lock;
  if (!lock) return true;
  DebugCommon::mCallCount = oneLess(DebugCommon::mCallCount);
  return DebugCommon::mCallCount == 0;
}

}  // namespace trelvo
