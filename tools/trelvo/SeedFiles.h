#pragma once

#include <string>

namespace trelvo::tool {

/// Where the seed of the store `name` lies in the storage directory, as
/// CryptoUtilityUbuntu::generateKey() forms it. Throws Failure when there is no cryptography.
std::string seedPath(const std::string& directory, std::string name);

/// The seed in the file `path`; empty when there is none.
std::string readSeed(const std::string& path);

/// Whether another store in the directory of `path` has the same seed.
bool isSeedShared(const std::string& path);

}  // namespace trelvo::tool
