#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

#include "tools/trelvo/SignalledRemoval.h"
#include "tools/trelvo/UniqueFd.h"

namespace trelvo::tool {

// Modes of new files, less the umask.
constexpr mode_t kModeShared = 0666;
constexpr mode_t kModePrivate = 0600;  ///< for its owner only

/// The name under which an output file grows. Unless commit() gives it its final name, it is
/// removed, also when Ctrl-C, SIGTERM or SIGHUP ends the program.
///
/// The temporary file lies beside the final one. What is there and is no regular file (a device, a
/// pipe) is written in place. A symbolic link stays, and the file behind it is replaced. A file
/// that is replaced hands on its mode.
class OutputFile {
 public:
  /// Creates the temporary file, with `mode` when there is no file to replace. Throws Failure.
  explicit OutputFile(const std::string& path, mode_t mode = kModeShared);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();

  /// The open descriptor; it stays the file's.
  int descriptor() const { return m_descriptor.get(); }

  /// Where the bytes are until commit().
  const std::string& currentPath() const { return m_current; }

  /// Waits until the bytes are on the disk and gives the file its final name. Throws Failure.
  void commit();

 private:
  std::string m_final;
  std::string m_current;
  UniqueFd m_descriptor;
  std::optional<SignalledRemoval> m_removal;  // of m_current
};

}  // namespace trelvo::tool
