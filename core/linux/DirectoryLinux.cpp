#include <trelvo/core/DirectoryLinux.h>

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include <trelvo/core/Directory.h>

#include "core/Separator.h"

namespace trelvo::core {

namespace {

struct CloseListing {
  void operator()(DIR* listing) const noexcept { ::closedir(listing); }
};
using Listing = std::unique_ptr<DIR, CloseListing>;

struct FreeText {
  void operator()(char* text) const noexcept { std::free(text); }
};

bool startsWith(const char* name, const std::string& prefix) {
  return std::strncmp(prefix.c_str(), name, prefix.size()) == 0;
}

// `path` comes with the separator at its end, and serves for the paths of the entries.
void addEntry(std::string& path, const char* name, IDirectory::Entries& entries) {
  const std::size_t length = path.size();
  path += name;
  IDirectory::Entry entry;
  if (DirectoryLinux::setEntryDetails(path.c_str(), entry)) {
    entry.name = name;
    entries.insert(std::move(entry));
  }
  path.resize(length);
}

Status readListing(DIR* listing, std::string path, const std::string& prefix,
                   IDirectory::Entries& entries) {
  for (;;) {
    errno = 0;
    const dirent* const record = ::readdir(listing);
    if (record == nullptr) {
      return errno == 0 ? StatusOk : StatusFailed;
    }
    if (startsWith(record->d_name, prefix)) {
      addEntry(path, record->d_name, entries);
    }
  }
}

IDirectory::EntryType entryType(mode_t mode) {
  if (S_ISDIR(mode)) {
    return IDirectory::EntryDirectory;
  }
  return S_ISREG(mode) ? IDirectory::EntryFile : IDirectory::EntryOther;
}

}  // namespace

DirectoryLinux::DirectoryLinux(const std::string& path) : m_path(path) {}

DirectoryLinux::~DirectoryLinux() = default;

std::string DirectoryLinux::path() const { return m_path; }

bool DirectoryLinux::subItemExists(const std::string& name, EntryType /*type*/) const {
  return Directory::pathExists(subItemPath(name));
}

std::string DirectoryLinux::subItemPath(const std::string& name) const {
  return Directory::concat(m_path, name);
}

gom::SharedPointer<IDirectory> DirectoryLinux::openSubDir(const std::string& name) const {
  return Directory::open(subItemPath(name));
}

Status DirectoryLinux::getAllEntries(Entries& entries) const { return loadEntries(entries, ""); }

Status DirectoryLinux::getEntriesStartWith(const std::string& prefix, Entries& entries) const {
  return loadEntries(entries, prefix);
}

bool DirectoryLinux::getEntry(const std::string& name, Entry& entry) const {
  if (!setEntryDetails(subItemPath(name).c_str(), entry)) {
    return false;
  }
  entry.name = name;
  return true;
}

gom::SharedPointer<IFile> DirectoryLinux::openFile(const Entry& entry) const {
  return Directory::openFile(subItemPath(entry.name), 0, false);
}

std::string DirectoryLinux::currentDir() {
  const std::unique_ptr<char, FreeText> path(::get_current_dir_name());
  return path == nullptr ? std::string() : std::string(path.get());
}

bool DirectoryLinux::setEntryDetails(const char* path, Entry& entry) {
  struct stat details {};
  if (::lstat(path, &details) != 0) {
    return false;
  }
  entry.type = entryType(details.st_mode);
  entry.size = static_cast<unsigned int>(details.st_size);
  entry.modified = details.st_mtime;
  return true;
}

Status DirectoryLinux::loadEntries(Entries& entries, const std::string& prefix) const {
  // The old entries go last: `prefix` may be the name of one.
  const Entries previous = std::exchange(entries, {});
  if (m_path.empty()) {
    return StatusInvalidParameter;
  }
  const Listing listing(::opendir(m_path.c_str()));
  if (listing == nullptr) {
    return StatusFailed;
  }
  try {
    return readListing(listing.get(), m_path + kSeparator, prefix, entries);
  } catch (const std::bad_alloc&) {
    return StatusOutOfMemory;
  }
}

}  // namespace trelvo::core
