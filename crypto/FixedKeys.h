#pragma once

namespace trelvo {

/// The key and initialisation vector of a store that has them built in.
struct FixedKeySet {
  const char* name;
  unsigned char key[16];
  unsigned char iv[16];
};

/// All there are. Their values come from a file that is named when the library is configured:
/// TRELVO_FIXED_KEYS, see cmake/FixedKeys.cmake.
extern const FixedKeySet kFixedKeySets[2];

}  // namespace trelvo
