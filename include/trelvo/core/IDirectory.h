#pragma once

#include <ctime>
#include <set>
#include <string>

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/core/IFile.h>
#include <trelvo/gom/ReferenceCountable.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::core {

/// A handle on a directory: a path under which entries are listed and opened.
///
/// Directory::open() makes it. It holds no resource of the system, and what it answers is what it
/// finds at the time of the call. Entries are never followed: a symbolic link is an EntryOther.
/// Names are bytes, in no particular encoding. Where a string or a set cannot be made,
/// std::bad_alloc passes through, unless a Status says so.
/// Threads: one at a time.
class TRELVO_EXPORT IDirectory : public gom::ReferenceCountable {
 public:
  /// What an entry is.
  enum EntryType : int {
    EntryOther = 0,      ///< Neither of the two: a symbolic link, a device, a pipe.
    EntryDirectory = 1,  ///< A directory.
    EntryFile = 2,       ///< A regular file.
  };

  /// One entry of a directory, as it was when it was read.
  struct Entry {
    /// Orders by name, byte by byte, a shorter name before a longer one that begins with it. A set
    /// so ordered holds one entry of each name.
    struct Ascending {
      /// Whether `a` stands before `b`.
      bool operator()(const Entry& a, const Entry& b) const noexcept { return a.name < b.name; }
    };

    EntryType type = EntryOther;  ///< What it is; a link is not followed.
    std::string name;             ///< Within its directory, without path.
    unsigned int size = 0;        ///< Bytes; the lower 32 bits of the size of a larger file.
    std::time_t modified = 0;     ///< Last change of the content, in seconds since the Unix epoch.
    /// For the application's use: the library leaves it empty.
    gom::SharedPointer<gom::ReferenceCountable> handle;
  };

  /// Entries in the order of their names.
  using Entries = std::set<Entry, Entry::Ascending>;

  ~IDirectory() override;

  IDirectory(const IDirectory&) = delete;
  IDirectory& operator=(const IDirectory&) = delete;

  /// The path that the handle was opened with.
  virtual std::string path() const = 0;

  /// Whether there is something of that name, of whatever type: `type` is not looked at.
  virtual bool subItemExists(const std::string& name, EntryType type) const = 0;

  /// The path of `name` in this directory, whether it exists or not.
  virtual std::string subItemPath(const std::string& name) const = 0;

  /// A handle on the directory of that name; empty when there is nothing of that name.
  [[nodiscard]] virtual gom::SharedPointer<IDirectory> openSubDir(
      const std::string& name) const = 0;

  /// Replaces the content of `entries` by all entries, "." and ".." among them. Entries that vanish
  /// meanwhile are left out.
  /// @return StatusOk; StatusInvalidParameter when the path is empty; StatusFailed when it cannot
  ///         be read as a directory; StatusOutOfMemory. After a failure `entries` holds what was
  ///         read until then.
  virtual Status getAllEntries(Entries& entries) const = 0;

  /// The same with those entries whose names begin with `prefix`; an empty one means all.
  virtual Status getEntriesStartWith(const std::string& prefix, Entries& entries) const = 0;

  /// Looks up one entry. @return false, with `entry` unchanged, when there is none of that name.
  virtual bool getEntry(const std::string& name, Entry& entry) const = 0;

  /// Opens the entry's file for reading and writing, as Directory::openFile() does. Only the name
  /// in `entry` counts. @return an empty handle when it cannot be opened.
  [[nodiscard]] virtual gom::SharedPointer<IFile> openFile(const Entry& entry) const = 0;

  /// Looks up what lies at `path`; the entry's name is what follows the last "/", so a path that
  /// ends in one gives an empty name. @return false, with `entry` unchanged, when there is nothing.
  static bool getEntryWithPath(const std::string& path, Entry& entry);

  /// Fills `found` with those entries of `all` whose names begin with `prefix`, in the time that it
  /// takes to find the first and to copy. What `found` held before goes; it may be `all` itself.
  static void findEntriesStartWith(const Entries& all, const std::string& prefix, Entries& found);

 protected:
  IDirectory() = default;
};

}  // namespace trelvo::core
