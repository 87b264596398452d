#pragma once

/// What writer and reader of an encrypted log have to agree on, besides zlib.
namespace trelvo::slog {

// The RSA ciphertext at the head holds a key and an IV, one behind the other.
constexpr unsigned int kKeySize = 16;
constexpr unsigned int kIvSize = 16;

}  // namespace trelvo::slog
