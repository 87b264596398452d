#include <trelvo/CryptoLinuxStatic.h>

#include "objects/StartUp.h"

namespace trelvo {

// Its mutex is the one thing that can fail to be made; then the library cannot be loaded.
// NOLINTNEXTLINE(cert-err58-cpp)
__attribute__((init_priority(kStartUpCrypto))) SingletonPointer<CryptoLinuxStatic> gCryptoStatic;

}  // namespace trelvo
