// What a program may define itself, in place of the library. Nothing in this file calls it, and the
// file takes no part in link-time optimisation, so that every call goes by the exported symbol.

#include <trelvo/DebugCommon.h>

namespace trelvo {

void doWriteLogVa(Debug::LogLevel, bool, const char*, const char*, const char*, va_list) {}

void doWriteLogEll(Debug::LogLevel, bool, const char*, const char*, const char*, ...) {}

void DebugCommon::addLTAXMLFile(const char*, const char*) {}

}  // namespace trelvo
