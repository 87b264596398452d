#pragma once

#include <trelvo/Export.h>

namespace trelvo::crypto {

/// What a cryptor is to do. AES-128 in CBC or CTR mode is all there is:
///
///     const crypto::Cryptor aes128Cbc = {1, 128, 1, 0, 1};
struct TRELVO_EXPORT Cryptor {
  unsigned int algorithm = 1;  ///< 1 is AES, the only value accepted.
  unsigned int keyBits = 128;  ///< 128 is the only value accepted.
  unsigned int mode = 1;       ///< 1 is CBC with PKCS#7 padding, 2 is CTR.
  unsigned int reserved0 = 0;  ///< Not read. Callers set 0.
  unsigned int reserved1 = 1;  ///< Not read. Callers set 1.
};

}  // namespace trelvo::crypto
