#pragma once

#include "crypto/EvpContext.h"

namespace trelvo {

/// The RSA key in the PEM file `path`: "PUBLIC KEY" alone. Null when the file cannot be opened or
/// holds no such key.
Key readRsaPublicKey(const char* path) noexcept;

/// "RSA PRIVATE KEY" or "PRIVATE KEY", plain or protected; `passphrase` may be null. Null also when
/// the pass phrase is missing or wrong.
Key readRsaPrivateKey(const char* path, const char* passphrase) noexcept;

}  // namespace trelvo
