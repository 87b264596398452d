#pragma once

namespace trelvo::crypto {

/// How a message is filled up to the size of an RSA modulus. Every other value counts as
/// PaddingNone.
enum PaddingType : int {
  PaddingNone = 1,   ///< None: the message has to be exactly as long as the modulus.
  PaddingPkcs1 = 2,  ///< PKCS#1 v1.5 (RFC 8017, 7.2). Takes up to modulus - 11 bytes.
  PaddingOaep = 3,   ///< OAEP with SHA-1 (RFC 8017, 7.1). Takes up to modulus - 42 bytes.
};

}  // namespace trelvo::crypto
