#include <trelvo/ICryptography.h>
#include <trelvo/ICryptographyUtility.h>
#include <trelvo/crypto/ICryptor.h>

// Here the tables of virtual functions of the interfaces have their place.

namespace trelvo {

ICryptography::~ICryptography() = default;
ICryptographyUtility::~ICryptographyUtility() = default;

}  // namespace trelvo

namespace trelvo::crypto {

ICryptor::~ICryptor() = default;

}  // namespace trelvo::crypto
