// The destructors of the interfaces, so that each has its table in one place.

#include <trelvo/ICryptography.h>
#include <trelvo/ICryptographyUtility.h>
#include <trelvo/crypto/ICryptor.h>

namespace trelvo {

ICryptography::~ICryptography() = default;
ICryptographyUtility::~ICryptographyUtility() = default;

}  // namespace trelvo

namespace trelvo::crypto {

ICryptor::~ICryptor() = default;

}  // namespace trelvo::crypto
