#pragma once

#include <trelvo/EvpCryptorLin.h>
#include <trelvo/Export.h>

namespace trelvo {

/// The cryptor that encrypts. ICryptography::create_encryptor() makes one with its cipher chosen.
class TRELVO_EXPORT EncryptorLin : public EvpCryptorLin {
 public:
  Status start(const crypto::CryptoParams& params) override;
  Status add_chunk(const ReadOnlyBuffer& input, Buffer& output) override;
  Status finish(Buffer& output) override;
};

}  // namespace trelvo
