#pragma once

#include <trelvo/Buffer.h>
#include <trelvo/Export.h>
#include <trelvo/ReadOnlyBuffer.h>
#include <trelvo/Status.h>
#include <trelvo/crypto/CryptoParams.h>
#include <trelvo/gom/ReferenceCountable.h>

namespace trelvo::crypto {

/// A cipher that is fed piece by piece: start(), any number of add_chunk(), finish().
///
///     gom::SharedPointer<crypto::ICryptor> cryptor(cryptography->create_encryptor({1, 128, 1}));
///     if (cryptor && cryptor->start({key, iv}) == StatusOk &&
///         cryptor->add_chunk(text, secret) == StatusOk && cryptor->finish(secret) == StatusOk) {
///
/// After finish() or a failure, start() begins anew.
/// Threads: one at a time.
class TRELVO_EXPORT ICryptor : public gom::ReferenceCountable {
 public:
  ~ICryptor() override;

  /// Begins with this key and initialisation vector; what went before is forgotten.
  /// @return StatusOk; StatusWrongState when no cipher was chosen; StatusInvalidParameter when key
  ///         or IV is missing or has not the cipher's size; StatusFailed when OpenSSL refuses.
  virtual Status start(const CryptoParams& params) = 0;

  /// Passes on what lies between the read position of `input` and its end, and appends what comes
  /// out to `output`. The read position stays: the same `input` a second time is passed on again.
  /// In CBC mode up to a block is held back until more comes.
  /// @return StatusOk; StatusInvalidParameter when there is nothing to read; StatusOutOfMemory;
  ///         StatusWrongState when no cipher was chosen; StatusFailed when OpenSSL refuses, as it
  ///         does before start(). `output` is as it was unless the result is StatusOk.
  virtual Status add_chunk(const ReadOnlyBuffer& input, Buffer& output) = 0;

  /// Appends what was held back: the padded last block when encrypting, in CTR mode nothing.
  /// @return as add_chunk(). StatusFailed tells, when decrypting in CBC mode, that the padding is
  ///         wrong: damaged bytes or a wrong key, which CTR mode cannot tell at all.
  virtual Status finish(Buffer& output) = 0;
};

}  // namespace trelvo::crypto
