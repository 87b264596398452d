#include <trelvo/core/Directory.h>

#include <algorithm>

#include <trelvo/core/DirectoryLinux.h>
#include <trelvo/core/File.h>

#include "core/Separator.h"
#include "objects/MakeObject.h"
#include "objects/StartUp.h"

namespace trelvo::core {

// There as long as whatever starts later, and so ends earlier, may ask for them.
__attribute__((init_priority(kStartUpDirectory))) std::string Directory::m_preinstalledFilesPath =
    "/usr/share/qenl";
__attribute__((init_priority(kStartUpDirectory))) std::string Directory::m_defaultStoragePath =
    "/var/lib/qenl";
bool Directory::m_isDefaultStoragePathSecure = false;

namespace {

bool endsInSeparator(const std::string& path) { return !path.empty() && path.back() == kSeparator; }

std::string withoutLastSeparator(const std::string& path) {
  return path.size() > 1 && endsInSeparator(path) ? path.substr(0, path.size() - 1) : path;
}

bool makeMissing(const std::string& path) {
  return Directory::pathExists(path) || Directory::mkDir(path);
}

// With a separator at its end, a link to a directory would be taken for the directory.
bool isDirectoryItself(const std::string& path) {
  const std::size_t last = path.find_last_not_of(kSeparator);
  const std::string bare = path.substr(0, std::max<std::size_t>(last + 1, 1));
  IDirectory::Entry entry;
  return DirectoryLinux::setEntryDetails(bare.c_str(), entry) &&
         entry.type == IDirectory::EntryDirectory;
}

bool isSelfOrParent(const std::string& name) { return name == "." || name == ".."; }

bool removeEntry(const std::string& path, IDirectory::EntryType type) {
  return type == IDirectory::EntryDirectory ? Directory::rmPath(path) : Directory::rmFile(path);
}

bool removeContent(const std::string& path) {
  const gom::SharedPointer<IDirectory> directory = Directory::open(path);
  if (!directory) {
    return false;
  }
  // A directory that cannot be listed is left with its content, and then cannot be removed.
  IDirectory::Entries entries;
  static_cast<void>(directory->getAllEntries(entries));
  return std::all_of(entries.begin(), entries.end(), [&](const IDirectory::Entry& entry) {
    const std::string item = directory->subItemPath(entry.name);
    return isSelfOrParent(entry.name) || removeEntry(item, entry.type);
  });
}

}  // namespace

gom::SharedPointer<IFile> Directory::openFile(const std::string& path, unsigned int bufferSize,
                                              bool readOnly) {
  // "e": programs that the application starts do not inherit the file.
  return openCrtFile(path, readOnly ? "rbe" : "rb+e", bufferSize, readOnly);
}

gom::SharedPointer<IFile> Directory::createFile(const std::string& path, unsigned int bufferSize) {
  return openCrtFile(path, "wb+e", bufferSize, false);
}

gom::SharedPointer<IDirectory> Directory::open(const std::string& path) {
  if (!pathExists(path)) {
    return {};
  }
  return gom::makeObject<DirectoryLinux>(path);
}

std::string Directory::currentDir() { return DirectoryLinux::currentDir(); }

bool Directory::mkPath(const std::string& path) {
  for (std::size_t end = path.find(kSeparator, 1); end != std::string::npos;
       end = path.find(kSeparator, end + 1)) {
    // What fails here fails the last step too.
    static_cast<void>(makeMissing(path.substr(0, end)));
  }
  return makeMissing(path);
}

bool Directory::rmPath(const std::string& path) {
  if (!pathExists(path)) {
    return true;
  }
  return isDirectoryItself(path) && removeContent(path) && rmDir(path);
}

void Directory::appendPath(std::string& base, const std::string& item) {
  base = concat(base, item);
}

std::string Directory::concat(const std::string& a, const std::string& b) {
  std::string path;
  path.reserve(a.size() + 1 + b.size());
  path += a;
  if (!endsInSeparator(a)) {
    path += kSeparator;
  }
  path += b;
  return path;
}

const char* Directory::findFileName(const std::string& path, unsigned int& length) {
  length = 0;
  const std::size_t slash = path.rfind(kSeparator);
  const std::size_t start = slash == std::string::npos ? 0 : slash + 1;
  if (start == path.size() || (start > 1 && path[start - 2] == kSeparator)) {
    return nullptr;
  }
  length = static_cast<unsigned int>(path.size() - start);
  return path.c_str() + start;
}

void Directory::getPreinstalledFilesPath(std::string& out) {
  out = m_preinstalledFilesPath;
  if (out.empty()) {
    out = concat(currentDir(), "preinstalled");
  }
}

void Directory::getDefaultStoragePath(std::string& out, bool& secure) {
  const bool set = !m_defaultStoragePath.empty();
  out = set ? m_defaultStoragePath : currentDir();
  secure = set && m_isDefaultStoragePathSecure;
}

void Directory::setPreinstalledFilesPath(const std::string& path) {
  m_preinstalledFilesPath = withoutLastSeparator(path);
}

void Directory::setDefaultStoragePath(const std::string& path, bool secure) {
  m_defaultStoragePath = withoutLastSeparator(path);
  m_isDefaultStoragePathSecure = secure;
}

}  // namespace trelvo::core
