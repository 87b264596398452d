#pragma once

#include <trelvo/Export.h>

namespace trelvo {

/// A sink for a copy of the log, such as an encrypted one.
///
/// Hand it to Debug::setInternalLog(), which makes the logging instance its owner, and give it
/// lines by DebugCommon::writeLogVa(ILog*, ...).
///
/// Threads: the logging engine does not guard it; one at a time.
class TRELVO_EXPORT ILog {
 public:
  virtual ~ILog();

  /// Takes one piece of log text, NUL-terminated and whole as it stands: it brings its own line end
  /// or has none. The text belongs to the caller and is valid during the call only. A failure is
  /// not told here.
  virtual void puts(const char* text) = 0;

  /// Hands what was taken so far on to where it is kept. @return true on success.
  virtual bool flush() = 0;

 protected:
  ILog() = default;
  ILog(const ILog&) = default;
  ILog& operator=(const ILog&) = default;
};

}  // namespace trelvo
