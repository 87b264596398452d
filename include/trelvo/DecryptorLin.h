#pragma once

#include <trelvo/EvpCryptorLin.h>
#include <trelvo/Export.h>

namespace trelvo {

/// The cryptor that decrypts. ICryptography::create_decryptor() makes one with its cipher chosen.
class TRELVO_EXPORT DecryptorLin : public EvpCryptorLin {
 public:
  Status start(const crypto::CryptoParams& params) override;
  Status add_chunk(const ReadOnlyBuffer& input, Buffer& output) override;
  Status finish(Buffer& output) override;
};

}  // namespace trelvo
