#pragma once

#include <cstdarg>

#include <trelvo/Export.h>

namespace trelvo {

class ILog;

/// The facade through which code logs.
///
/// In this library, which is the product's, the entry points are there and do nothing: code that
/// logs through them compiles, links and stays silent. What logs is the engine, DebugCommon, which
/// a platform derives from and connects by DebugCommon::mPimpl; logPath() and setInternalLog()
/// speak to that instance. testLog() alone goes on, to doWriteLogVa().
///
/// A `component` is the name by which the configuration file switches levels on and picks a file.
/// A `format` is printf's and brings its own line end. `continued` tells that the text goes on
/// behind the previous one, in the same line.
///
/// Threads: any. What is marked so is done under DebugCommon::lock(), which is not recursive: do
/// not call it while holding that lock.
class TRELVO_EXPORT Debug {
 public:
  /// Bits that are tested against a component's mask: a line is written when one of them is set
  /// there. Any other bits may be passed as well, by static_cast.
  enum LogLevel : unsigned int {
    LogLevelNote = 1,            ///< The engine's own notes.
    LogLevelTest = 16,           ///< testLog(); not in the default mask, which is 15.
    LogLevelConfiguration = 33,  ///< 1 and 32: the engine's reports of its configuration.
  };

  /// "WPQENL", the component of code that has none of its own.
  static const char* defaultComponentName;

  Debug() = delete;

  /// These do nothing.
  [[gnu::format(printf, 2, 3)]] static void log(const char* component, const char* format, ...);
  [[gnu::format(printf, 2, 3)]] static void customerLog(const char* component, const char* format,
                                                        ...);
  [[gnu::format(printf, 3, 4)]] static void log2(bool continued, const char* component,
                                                 const char* format, ...);
  [[gnu::format(printf, 2, 0)]] static void logva(const char* component, const char* format,
                                                  va_list arguments);
  [[gnu::format(printf, 2, 5)]] static void dump(const char* component, const char* format,
                                                 const unsigned char* bytes, unsigned long count,
                                                 ...);
  [[gnu::format(printf, 3, 6)]] static void dump2(bool continued, const char* component,
                                                  const char* format, const unsigned char* bytes,
                                                  unsigned long count, ...);
  [[gnu::format(printf, 2, 3)]] static void perf(const char* component, const char* format, ...);
  [[gnu::format(printf, 3, 4)]] static void perf2(bool continued, const char* component,
                                                  const char* format, ...);
  [[gnu::format(printf, 1, 2)]] static void systemLog(const char* format, ...);

  /// Hands the line to doWriteLogVa() with LogLevelTest and a prefix of two blanks.
  [[gnu::format(printf, 2, 3)]] static void testLog(const char* component, const char* format, ...);
  [[gnu::format(printf, 3, 4)]] static void testLog2(bool continued, const char* component,
                                                     const char* format, ...);

  /// @return always false: there is nothing to start.
  static bool init();
  /// Does nothing.
  static void release();

  /// Under the lock: the directory that log files are put into, with its closing separator.
  /// @return null without an instance, or when the lock fails. The text belongs to the instance: it
  ///         is valid until the instance reads another configuration or dies.
  static const char* logPath();

  /// Under the lock: makes `log` the instance's sink for a copy of the log; see
  /// DebugCommon::setInternalLog(), also for who owns `log` then. Without an instance, or when the
  /// lock fails, nothing happens, and `log` stays the caller's.
  static void setInternalLog(ILog* log);

  /// Fault injection: the `count`-th following call of shouldFailThisCall() answers true, and no
  /// other does. With a `count` of 0 or below none does. Under the lock; does nothing when the lock
  /// fails. The counter is one for the whole process.
  static void setFailAtSpecificCall(int count);

  /// Under the lock: how many calls of shouldFailThisCall() are left up to the one that answers
  /// true; 0 or below once that is past. @return -1 when the lock fails.
  static int getFailAtSpecificCallValue();

  /// Counts this call, under the lock. @return true when it is the one to behave as if it had
  /// failed; also when the lock fails.
  static bool shouldFailThisCall();
};

/// The components that the layers of this library go by.
extern TRELVO_EXPORT const char* gCoreDebugComponentName;    ///< "core"
extern TRELVO_EXPORT const char* gCryptoDebugComponentName;  ///< "crypto"
extern TRELVO_EXPORT const char* gNetworkComponentName;      ///< "network"
extern TRELVO_EXPORT const char* gDatatypesComponentName;    ///< "datatypes"

/// The seam between facade and engine. In this library they do nothing. A program that wants
/// Debug::testLog() in its log defines them itself, in this namespace and exported, handing the
/// line to DebugCommon::writeLogVa() of its instance: the program's definition then takes the place
/// of the library's. `prefix` stands between the component and the text.
[[gnu::format(printf, 5, 0)]] TRELVO_EXPORT void doWriteLogVa(Debug::LogLevel level, bool continued,
                                                              const char* component,
                                                              const char* prefix,
                                                              const char* format,
                                                              va_list arguments);
[[gnu::format(printf, 5, 6)]] TRELVO_EXPORT void doWriteLogEll(Debug::LogLevel level,
                                                               bool continued,
                                                               const char* component,
                                                               const char* prefix,
                                                               const char* format, ...);

}  // namespace trelvo
