#pragma once

#include <trelvo/CryptoUtilityAdaptationCommon.h>
#include <trelvo/Export.h>

namespace trelvo {

/// Keys that belong to the device: made from a seed file and the device's identity.
class TRELVO_EXPORT CryptoUtilityUbuntu : public CryptoUtilityAdaptationCommon {
 public:
  /// Makes the same bytes each time, as long as seed file and device identity are the same:
  ///
  ///     output[i] = (seed[k % seedLength] ^ k) + i * deviceDigest[k & 15]     with k = 6 + 3 * i
  ///
  /// in the low 8 bits. The seed is the first word in the file
  /// `<default storage path>/<MD5 of the store's name, in lower-case hexadecimal digits>`, the name
  /// first filled up with blanks to 16 characters; that stays so in `m_name`. Without such a word
  /// the present time, in seconds since 1970 as decimal digits, is written there and is the seed;
  /// `generated` is then true. That the file cannot be written goes unnoticed: the next run makes
  /// another key. `deviceDigest` is the MD5 of ORVE_UNIQUE_DEVICE_ID.
  /// @return whether a key was made: not before init(), and not when ORVE_UNIQUE_DEVICE_ID is unset
  ///         or empty, which is looked at only after the seed was seen to. Throws std::bad_alloc.
  bool generateKey(unsigned int length, unsigned char* output, bool& generated) override;
};

}  // namespace trelvo
