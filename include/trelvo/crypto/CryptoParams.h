#pragma once

#include <trelvo/Export.h>
#include <trelvo/ReadOnlyBuffer.h>

namespace trelvo::crypto {

/// Key and initialisation vector for ICryptor::start(). Both are views: the bytes stay the caller's
/// and are read only during start(), all of them, wherever the read positions stand.
struct TRELVO_EXPORT CryptoParams {
  ReadOnlyBuffer key;  ///< 16 bytes for AES-128.
  ReadOnlyBuffer iv;   ///< 16 bytes.
};

}  // namespace trelvo::crypto
