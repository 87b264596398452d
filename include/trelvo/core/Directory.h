#pragma once

#include <string>

#include <trelvo/Export.h>
#include <trelvo/core/IDirectory.h>
#include <trelvo/core/IFile.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::core {

/// The way to the file system: operations on paths and files, and the two places that the library
/// keeps its own files in.
///
/// Paths are bytes with "/" between names, handed to the system as they are. A relative path starts
/// from the process's current directory. Every operation is done when it returns.
///
/// Failures: false or an empty handle, with no more particular reason; nothing is logged. Where a
/// path cannot be put together, std::bad_alloc passes through.
///
/// Threads: operations may run at once on different paths. The two places are set at start-up,
/// before there are other threads: they have no lock.
class TRELVO_EXPORT Directory {
 public:
  Directory() = delete;

  /// Opens the file at `path` for reading, and for writing too unless `readOnly`; the position is
  /// its start. For `bufferSize` see openCrtFile(); 0 leaves it to the C library.
  /// @return an empty handle when there is no such file, or no permission.
  [[nodiscard]] static gom::SharedPointer<IFile> openFile(const std::string& path,
                                                          unsigned int bufferSize, bool readOnly);

  /// Makes the file at `path`, or empties the one that is there, and opens it for writing and
  /// reading. A new file may be read and written by everyone whom the umask leaves.
  [[nodiscard]] static gom::SharedPointer<IFile> createFile(const std::string& path,
                                                            unsigned int bufferSize);

  /// Whether something lies at `path`: a file, a directory, or a symbolic link, even one that
  /// points nowhere.
  static bool pathExists(const std::string& path);

  /// A handle on the directory at `path`; empty when nothing lies there or memory runs out. That it
  /// is a directory is not tested.
  [[nodiscard]] static gom::SharedPointer<IDirectory> open(const std::string& path);

  /// The absolute path of the process's current directory; empty when it cannot be told.
  static std::string currentDir();

  /// Makes one directory, mode 0777 less the umask.
  /// @return true also when something lies at `path` already, a directory or not.
  static bool mkDir(const std::string& path);

  /// Removes a file, a link or an empty directory. @return true when it was removed.
  static bool rmFile(const std::string& path);

  /// Removes an empty directory. @return true when it was removed.
  static bool rmDir(const std::string& path);

  /// Gives `from` the path `to` in one step; a file that lay there is gone. Both must lie on one
  /// file system.
  static bool renameFile(const std::string& from, const std::string& to);

  /// Copies the content of `from` to `to`, which is made, or emptied first. Needs no heap.
  ///
  /// Copying from nothing counts as done: when `from` cannot be opened, or `to` cannot be made, the
  /// result is true, and pathExists() tells the difference. After a read that failed or a write
  /// that came up short the result is false, `to` being left incomplete; it is true even then
  /// where that set no `errno` and `errno` was 0 before.
  static bool copyFile(const std::string& from, const std::string& to);

  /// Sets the times of last access and change to `t`, seconds since the Unix epoch, or to the
  /// present time when `t` is 0.
  static bool setFileModificationTime(const std::string& path, long t);

  /// Makes the directory `path` and all that are missing above it. "/" at the end does no harm.
  /// @return whether something lies at `path` in the end.
  static bool mkPath(const std::string& path);

  /// Removes the directory `path` with all that is in it, in the order of names. Links are removed,
  /// never followed.
  ///
  /// @return true when it was removed or nothing lies there. False after the first failure, with
  ///         the rest left; also for a file and for a link, which stay, with what it points to.
  static bool rmPath(const std::string& path);

  /// Appends `item` to `base` with one "/" between. An empty `base` becomes "/" and `item`.
  static void appendPath(std::string& base, const std::string& item);

  /// What appendPath() gives, as a new string.
  static std::string concat(const std::string& a, const std::string& b);

  /// Finds the last name of `path`.
  /// @return where it starts within `path`'s characters, and its length. Null and 0 when there is
  ///         none: an empty path, one that ends in "/", one whose last two "/" follow each other.
  static const char* findFileName(const std::string& path, unsigned int& length);

  /// Gives the directory of the files that were installed with the library: "/usr/share/qenl" until
  /// another is set; "preinstalled" in the current directory when an empty one was set.
  static void getPreinstalledFilesPath(std::string& out);

  /// Gives the directory that the library writes to, and what was said of its being secure:
  /// "/var/lib/qenl" and false until another is set; the current directory and false when an empty
  /// one was set.
  static void getDefaultStoragePath(std::string& out, bool& secure);

  /// Sets the directory of the preinstalled files. One "/" at the end is cut off, except from "/".
  static void setPreinstalledFilesPath(const std::string& path);

  /// Sets the directory to write to, cut in the same way. `secure` is the application's word that
  /// nobody else can read there; it is kept, and nothing is tested.
  static void setDefaultStoragePath(const std::string& path, bool secure);

 private:
  static std::string m_preinstalledFilesPath;
  static std::string m_defaultStoragePath;
  static bool m_isDefaultStoragePathSecure;
};

}  // namespace trelvo::core
