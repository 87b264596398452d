#include <trelvo/ICryptographyUtility.h>

#include <memory>

#include <trelvo/CryptoUtilityUbuntu.h>

namespace trelvo {

ICryptographyUtility* ICryptographyUtility::open(const char* name, Status& status,
                                                 bool& generated) {
  try {
    auto utility = std::make_unique<CryptoUtilityUbuntu>();
    status = utility->init(name, generated);
    return status == StatusOk ? utility.release() : nullptr;
  } catch (...) {
    status = StatusFailed;
    return nullptr;
  }
}

void ICryptographyUtility::clear(const char* /*name*/) {}

}  // namespace trelvo
