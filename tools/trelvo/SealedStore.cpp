#include "tools/trelvo/SealedStore.h"

#include <trelvo/Status.h>
#include <trelvo/core/Directory.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iterator>
#include <thread>

#include "tools/trelvo/Failure.h"
#include "tools/trelvo/SeedFiles.h"

namespace trelvo::tool {

namespace {

constexpr const char* kIdentity = "ORVE_UNIQUE_DEVICE_ID";

// Stores whose keys are built into the library.
constexpr const char* kBuiltIn[] = {"sltdb", "lssdb"};

bool isBuiltIn(const std::string& name) {
  return std::any_of(std::begin(kBuiltIn), std::end(kBuiltIn),
                     [&name](const char* known) { return name == known; });
}

std::string label(const StoreOptions& options) { return "store " + options.name; }

void checkIdentity(const StoreOptions& options) {
  const char* const identity = std::getenv(kIdentity);
  if (!isBuiltIn(options.name) && (identity == nullptr || *identity == '\0')) {
    throw Failure(label(options) + ": no key without a device identity; set " + kIdentity);
  }
}

/// Sets the library's storage directory. @return where that is.
std::string useDirectory(const StoreOptions& options) {
  if (!options.directory.empty()) {
    core::Directory::setDefaultStoragePath(options.directory, false);
  }
  std::string path;
  bool isSecure = false;
  core::Directory::getDefaultStoragePath(path, isSecure);
  return path;
}

Store openStore(const StoreOptions& options, bool& isNew) {
  Status status = StatusOk;
  Store store = ICryptographyUtility::open(options.name.c_str(), status, isNew);
  if (!store) {
    throw Failure(label(options) + ": no key could be made");
  }
  return store;
}

// A seed is the second of its making and all that tells two stores of a device apart.
void awaitSeedOfItsOwn(const StoreOptions& options, const std::string& directory) {
  const std::string path = seedPath(directory, options.name);
  bool isNew = true;
  while (isNew && isSeedShared(path)) {
    core::Directory::rmFile(path);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    openStore(options, isNew);
  }
}

[[noreturn]] void throwNoKey(const StoreOptions& options, const std::string& directory) {
  throw Failure(label(options) + ": has no key in " + directory +
                "; give the name and the --storage directory that the file was sealed with");
}

}  // namespace

CLI::Option* addStorageOption(CLI::App& command, StoreOptions& options) {
  return command
      .add_option("--storage", options.directory,
                  "Directory of the keys' seeds (default: the library's, /var/lib/qenl)")
      ->type_name("DIR")
      ->check(checkNotEmpty);
}

void addSealedOptions(CLI::App& command, StoreOptions& options, const std::string& purpose) {
  CLI::Option* sealed = command.add_option("--sealed", options.name, purpose)
                            ->type_name("NAME")
                            ->check(checkNotEmpty);
  addStorageOption(command, options)->needs(sealed);
}

std::string checkNotEmpty(const std::string& text) {
  return text.empty() ? "must not be empty" : std::string();
}

Store openStoreForSealing(const StoreOptions& options) {
  checkIdentity(options);
  const std::string directory = useDirectory(options);
  bool isNew = false;
  Store store = openStore(options, isNew);
  if (isNew) {
    awaitSeedOfItsOwn(options, directory);
    // The library does not tell when it could not keep the seed: then the next run has another key.
    store = openStore(options, isNew);
  }
  if (isNew) {
    throw Failure(directory +
                  ": cannot keep a key there; give a directory by --storage that you may write to");
  }
  return store;
}

Store openStoreForUnsealing(const StoreOptions& options) {
  checkIdentity(options);
  const std::string directory = useDirectory(options);
  if (!isBuiltIn(options.name) && readSeed(seedPath(directory, options.name)).empty()) {
    throwNoKey(options, directory);
  }
  bool isNew = false;
  Store store = openStore(options, isNew);
  if (isNew) {
    throwNoKey(options, directory);
  }
  return store;
}

}  // namespace trelvo::tool
