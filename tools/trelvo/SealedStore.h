#pragma once

#include <trelvo/ICryptographyUtility.h>
#include <trelvo/gom/SharedPointer.h>
#include <CLI/CLI.hpp>

#include <string>

namespace trelvo::tool {

/// Whose key seals a file: the store's name, and the directory where its seed lies. An empty
/// directory stands for the library's default.
struct StoreOptions {
  std::string name;
  std::string directory;
};

using Store = gom::SharedPointer<ICryptographyUtility>;

/// Adds `--storage DIR`.
CLI::Option* addStorageOption(CLI::App& command, StoreOptions& options);

/// Adds `--sealed NAME` and `--storage DIR`. `purpose` is what the help says of the former.
void addSealedOptions(CLI::App& command, StoreOptions& options,
                      const std::string& purpose =
                          "FILE is sealed with the key of the store NAME: see trelvo unseal");

/// Refuses an empty text on the command line.
std::string checkNotEmpty(const std::string& text);

/// Opens a store for sealing, with a new key where there is none yet. Throws Failure when there is
/// no key, or none that can be made again tomorrow.
Store openStoreForSealing(const StoreOptions& options);

/// Opens a store for reading what was sealed. Throws Failure when there is no key; none is made.
Store openStoreForUnsealing(const StoreOptions& options);

}  // namespace trelvo::tool
