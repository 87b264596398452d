#pragma once

#include <string>

namespace trelvo::tool {

/// What the PEM file of a private key says of itself.
struct KeyFile {
  bool isProtected = false;  ///< a pass phrase is wanted
};

/// Looks at the private key in the file `path`. Throws Failure when the file cannot be read or
/// holds none.
KeyFile inspectKeyFile(const std::string& path);

}  // namespace trelvo::tool
