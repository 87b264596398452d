// A store of files in a directory: a new file replaces the old one in one step, the newest are
// kept, and what is left of a writer that died is found and removed.
//
//   Directory     operations on paths: make, rename, remove, open
//   IDirectory    a directory's entries, in the order of their names
//   IFile         an open file, closed with its last handle; any IStream user takes it
//
//   files DIRECTORY       makes DIRECTORY/drives, and removes it in the end

#include <cstdio>
#include <string>

#include <trelvo/trelvo.h>

using trelvo::core::Directory;
using trelvo::core::IDirectory;

namespace {

constexpr unsigned int kKept = 3;
constexpr const char* kUnfinished = "unfinished.";

// Under a name of its own until it is complete: readers see the whole file or none.
bool store(const std::string& directory, const std::string& name, unsigned int drive) {
  const std::string unfinished = Directory::concat(directory, kUnfinished + name);
  const auto file = Directory::createFile(unfinished, 0);
  // Any IStream has these: least significant byte first, on every processor.
  if (!file || !file->writeUint32(drive) || !file->flush()) return false;
  return Directory::renameFile(unfinished, Directory::concat(directory, name));
}

bool removeAll(const std::string& directory, const IDirectory::Entries& entries,
               std::size_t count) {
  for (const IDirectory::Entry& entry : entries) {
    if (count == 0) break;
    if (!Directory::rmFile(Directory::concat(directory, entry.name))) return false;
    std::printf("removed %s\n", entry.name.c_str());
    --count;
  }
  return true;
}

// Removes what a writer left behind and all but the newest, which have the last names.
bool tidy(const std::string& path) {
  const auto directory = Directory::open(path);
  IDirectory::Entries unfinished, drives;
  if (!directory || directory->getEntriesStartWith(kUnfinished, unfinished) != trelvo::StatusOk ||
      directory->getEntriesStartWith("drive.", drives) != trelvo::StatusOk) {
    return false;
  }
  const std::size_t old = drives.size() > kKept ? drives.size() - kKept : 0;
  return removeAll(path, unfinished, unfinished.size()) && removeAll(path, drives, old);
}

bool show(const std::string& path) {
  const auto directory = Directory::open(path);
  IDirectory::Entries entries;
  if (!directory || directory->getEntriesStartWith("drive.", entries) != trelvo::StatusOk) {
    return false;
  }
  for (const IDirectory::Entry& entry : entries) {
    const auto file = directory->openFile(entry);
    unsigned int drive = 0;
    if (!file || !file->readUint32(drive)) return false;
    std::printf("%s: %u bytes, drive %u\n", entry.name.c_str(), entry.size, drive);
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "Usage: files DIRECTORY\n");
    return 2;
  }
  const std::string drives = Directory::concat(argv[1], "drives");
  if (!Directory::mkPath(drives)) return 1;
  for (unsigned int drive = 1; drive <= 5; ++drive) {
    if (!store(drives, "drive." + std::to_string(1000 + drive), drive)) return 1;
  }
  // A writer that died before it was done.
  if (!Directory::createFile(Directory::concat(drives, "unfinished.drive.1006"), 0)) return 1;

  if (!tidy(drives) || !show(drives) || !Directory::rmPath(drives)) return 1;
  std::puts(Directory::pathExists(drives) ? "still there" : "all gone");
}
