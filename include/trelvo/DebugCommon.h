#pragma once

#include <cstdarg>
#include <cstdio>
#include <map>
#include <string>

#include <trelvo/Debug.h>
#include <trelvo/Export.h>

namespace trelvo {

class ILog;

/// The logging engine: a level mask and a file for each component, a fixed form of line, a copy in
/// the platform's own log, an optional extra sink, and an XML log named LTA.
///
/// A platform derives from it, supplies the five pure operations, sets mPimpl to an instance made
/// by new, calls addRef() and readConfig(), and logs by writeLogEll(). docs/logging.md takes a
/// reader through these steps and describes the configuration file.
///
/// Logging never reports anything: a null file, a failed write, a full disk are passed over. Only
/// memory that runs out is told, by std::bad_alloc from the operations that keep a text.
///
/// Format texts are printf's. A `va_list` is copied before it is used: the caller may go on to pass
/// it to another operation. A null text counts as an empty one.
///
/// Ownership: the instance owns the streams that it opened and the ILog it was given. Each stream
/// is closed once, however many components share it. For standard output, see the destructor.
///
/// Threads: once configured, any number may log, when the platform overrides lockFile() and
/// unlockFile(); those of the base do nothing. The ILog form guards nothing: one thread at a time.
/// addRef(), removeRef(), readConfig() and setInternalLog() take no lock: call them under lock(),
/// or before threads start and after they end. Overrides must not take lock(): the engine calls
/// them while the facade holds it.
class TRELVO_EXPORT DebugCommon {
 public:
  /// How one component logs.
  struct TRELVO_EXPORT ComponentSetting {
    unsigned int levelMask = 0;  ///< A line is written when its level has a bit in common with it.
    std::FILE* file = nullptr;   ///< Null logs to no file. Others may share it; may be stdout.
    std::string fileName;        ///< Full name of the file, "console" for stdout.
  };

  /// "default", the component whose setting serves all that have none.
  static const char* DebugDefaultComponent;

  /// The instance, or null. Nothing in the library sets it. Guarded by lock().
  static DebugCommon* mPimpl;

  /// The counter of Debug::shouldFailThisCall(), 0 at start. Guarded by lock().
  static int mCallCount;

  /// No components, and a default setting with mask 0 and no file; the platform's log is on.
  DebugCommon();

  /// Closes the components' files, the default file and the LTA file, each stream once, and deletes
  /// the ILog. When standard output is among the files it is closed as well: what was written is
  /// flushed, a reader at its other end sees the end, and what the process prints later is lost. It
  /// is left open on /dev/null, so that stdout stays a valid stream, for printing and for a later
  /// instance, and its descriptor is not handed to the next file that is opened. Logging to the
  /// file "/dev/stdout" in place of "console" leaves it alone.
  virtual ~DebugCommon();

  DebugCommon(const DebugCommon&) = delete;
  DebugCommon& operator=(const DebugCommon&) = delete;

  /// Writes the time stamp of a log line, NUL-terminated, into `text`, which has room for 64 bytes.
  /// The second argument is always false.
  virtual void formatTime(char* text, bool) = 0;

  /// Writes the time text that replaces "%t" in a file name, likewise into 64 bytes.
  /// The second argument is always false.
  virtual void formatFileTime(char* text, bool) = 0;

  /// Whether `path` is complete, so that the log path is not put in front of it.
  virtual bool isAbsolutePath(const char* path) = 0;

  /// The number of the calling thread in a log line.
  virtual int currentThreadNumber() = 0;

  /// Writes one line to the platform's own log. `format` includes the prefix.
  [[gnu::format(printf, 5, 0)]] virtual void writePlatform(const char* time, const char* component,
                                                           int thread, const char* format,
                                                           va_list arguments) = 0;

  /// Writes what replaces "%p" in a file name, NUL-terminated, into `text`, which has room for 64
  /// bytes. The base writes "unk".
  virtual void getProcessNameOrId(char* text) const;

  /// Called ahead of each text that goes to `file`; override it, and unlockFile(), where several
  /// threads log. @return false to have the text dropped, and unlockFile() then is not called. The
  /// base does nothing and gives true.
  virtual bool lockFile(std::FILE* file);
  /// Ends what lockFile() began.
  virtual void unlockFile(std::FILE* file);

  /// The same for the LTA file.
  virtual bool lockXml(std::FILE* file);
  /// Ends what lockXml() began.
  virtual void unlockXml(std::FILE* file);

  /// Takes the lock over mPimpl and mCallCount, a process-wide one that is not recursive.
  /// @return true when it is held, and then unlock() is due.
  static bool lock();
  /// Gives it back.
  static void unlock();

  /// Counts one more user of the instance, and notes the new count in the log of "default".
  void addRef();

  /// Notes the count in the log of "default", then counts one user less. With the last one gone it
  /// deletes the instance that mPimpl holds, and sets mPimpl to null; the caller's pointer to it
  /// dangles then.
  void removeRef();

  /// The directory that log files are put into, with its closing separator; "./" when none is set.
  /// The text is valid until readConfig() or the instance's end.
  const char* logPath() const;

  /// The setting of `component`, or the default setting when it has none or is null. Valid until
  /// readConfig().
  const ComponentSetting& getComponentLogSettings(const char* component) const;

  /// Makes `log` the sink for a copy of the log, and the instance its owner, when there is none
  /// yet. Otherwise notes that in the log of "default" and leaves `log` to the caller.
  void setInternalLog(ILog* log);

  /// Gives the stream to the file `name`: stdout for "console"; the stream of a component whose
  /// file has this very name; otherwise one that is opened for writing, which empties the file. The
  /// default setting's file is not looked at.
  /// @return null when the file cannot be opened. A stream that was opened is the caller's, to be
  ///         put into a setting; the instance closes what its settings hold.
  std::FILE* addLogFile(const std::string& name);

  /// Gives the full name of a log file: "console" as it is; any other `file` with `path`, which
  /// brings its own separator, in front unless isAbsolutePath(). In the result the first "%t" is
  /// replaced by formatFileTime(), then the first "%p" by getProcessNameOrId(); further ones stay.
  std::string makeLogFileName(const char* path, const char* file);

  /// The name of the default file with its last ".log" replaced by ".slog", for an encrypted copy.
  /// Throws std::out_of_range when there is no ".log" in it, as in "console".
  std::string makeInternalLogFileName();

  /// Writes a line to the file of `component`'s setting and to the platform's log, when `level` and
  /// the setting's mask have a bit in common. The ILog gets its copy by its own form, below.
  [[gnu::format(printf, 6, 0)]] void writeLogVa(Debug::LogLevel level, bool continued,
                                                const char* component, const char* prefix,
                                                const char* format, va_list arguments);

  /// The same with a prefix of two blanks.
  [[gnu::format(printf, 5, 6)]] void writeLogEll(Debug::LogLevel level, bool continued,
                                                 const char* component, const char* format, ...);

  /// Writes a line to the end of `file`, whatever the masks say, and flushes it: `time`, the
  /// thread's number, `component` padded to 12 characters but never cut, and `prefix`, each with a
  /// blank behind it; then the text. `continued` leaves out all that is ahead of the text. No line
  /// end is added. A null `file` gets nothing.
  [[gnu::format(printf, 7, 0)]] void writeLogVa(std::FILE* file, bool continued, const char* time,
                                                const char* component, const char* prefix,
                                                const char* format, va_list arguments);

  /// Gives the same line to `log`, cut at 255 bytes, and flushes it at the first line and every
  /// tenth after that. The count of lines is the instance's, whichever log gets them. A null `log`
  /// gets nothing.
  [[gnu::format(printf, 7, 0)]] void writeLogVa(ILog* log, bool continued, const char* time,
                                                const char* component, const char* prefix,
                                                const char* format, va_list arguments);

  /// Hands a line to writePlatform(), unless the configuration switched that off. The format that
  /// arrives there is `prefix`, a blank and `format`, cut at 127 bytes: a conversion that does not
  /// fit whole is left out, and "%" in the prefix is doubled, as it is no conversion.
  [[gnu::format(printf, 5, 0)]] void writePlatSpecificVa(const char* time, const char* component,
                                                         const char* prefix, const char* format,
                                                         va_list arguments);

  /// Reads the configuration file `configFile`, opens the log files, and notes the outcome in the
  /// log of "default". docs/logging.md describes the file.
  ///
  /// `logPath`, with its closing separator, is the directory for what the file names relatively,
  /// until it says otherwise; null means "./". `defaultFile` is where all that has no setting logs,
  /// with mask 15, unless the file has a line for "default"; null means "trelvo.log". That is set
  /// up also when `configFile` is missing.
  ///
  /// Settings from an earlier call stay unless they are replaced. A stream that no setting holds
  /// any more is closed; standard output then stays open.
  ///
  /// @return true when the file was read, every stream that it asks for is open, and the default
  ///         setting has a stream.
  bool readConfig(const char* configFile, const char* logPath, const char* defaultFile);

  /// Opens the LTA file, by addLTAXMLFile() with the directory "/var/log/kvt/" and the name
  /// "Trelvo_Lta_%t.xml".
  void startLTALogVa();

  /// In this library it does nothing. A program that wants the LTA log defines this operation
  /// itself, exported, and its definition then takes the place of the library's: it makes the name
  /// by makeLogFileName(), opens the file, and sets m_ltaFile and m_ltaFileName.
  void addLTAXMLFile(const char* directory, const char* pattern);

  /// When the LTA file is not there, notes that in the log of "default", closes its stream, opens a
  /// new file as startLTALogVa() does, and writes "<log>\n" to it.
  void checkLTAFileHandleVa();

  /// Closes the LTA file when it is open.
  void closeLTAFileHandleVa();

  /// Writes text to the end of the LTA file and flushes it. Without one nothing happens. Nothing is
  /// escaped.
  [[gnu::format(printf, 2, 0)]] void writeXmlVa(const char* format, va_list arguments);
  [[gnu::format(printf, 2, 3)]] void writeXmlEll(const char* format, ...);

 protected:
  std::map<std::string, ComponentSetting> m_components;  ///< One entry a configured component.
  ComponentSetting m_defaultSetting;                     ///< For every component without an entry.
  std::FILE* m_ltaFile = nullptr;                        ///< Owned; null when there is no LTA log.
  ILog* m_internalLog = nullptr;                         ///< Owned.
  unsigned int m_internalLogLines = 0;  ///< How many lines went through the ILog form.
  std::string m_ltaFileName;            ///< Of m_ltaFile.
  std::string m_logPath;                ///< As stored: empty, or with its closing separator.
  bool m_platformLogging = true;        ///< Whether lines go to writePlatform(); starts true.
  int m_referenceCount = 0;             ///< Users, as counted by addRef() and removeRef().

 private:
  class [[gnu::visibility("hidden")]] StreamIndex;

  bool readConfigFile(const char* name);
  bool readConfigLine(char* line, StreamIndex& index);
  bool setComponent(const char* component, unsigned int mask, const char* file, StreamIndex& index);
  void setUpDefault(const char* file);
  bool isHeld(const std::FILE* file) const;
  void closeWhenUnused(std::FILE* file);
  void closeUnheld(std::FILE* file);
  void closeEverywhere(std::FILE* file);
};

}  // namespace trelvo
