#pragma once

#include <string>

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/core/IDirectory.h>
#include <trelvo/core/IFile.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::core {

/// A directory of the Linux file system, known by its path alone.
///
/// Threads: one at a time.
class TRELVO_EXPORT DirectoryLinux : public IDirectory {
 public:
  /// A handle on `path`, which is not looked at before the first question.
  explicit DirectoryLinux(const std::string& path);
  ~DirectoryLinux() override;

  std::string path() const override;
  bool subItemExists(const std::string& name, EntryType type) const override;
  std::string subItemPath(const std::string& name) const override;
  [[nodiscard]] gom::SharedPointer<IDirectory> openSubDir(const std::string& name) const override;
  Status getAllEntries(Entries& entries) const override;
  Status getEntriesStartWith(const std::string& prefix, Entries& entries) const override;
  bool getEntry(const std::string& name, Entry& entry) const override;
  [[nodiscard]] gom::SharedPointer<IFile> openFile(const Entry& entry) const override;

  /// The absolute path of the process's current directory; empty when it cannot be told.
  static std::string currentDir();

  /// Stores type, size and time of what lies at `path`, a link itself and not what it points to;
  /// name and handle of `entry` stay. @return false, with `entry` unchanged, when there is nothing.
  static bool setEntryDetails(const char* path, Entry& entry);

  /// What getEntriesStartWith() does.
  Status loadEntries(Entries& entries, const std::string& prefix) const;

 private:
  std::string m_path;
};

}  // namespace trelvo::core
