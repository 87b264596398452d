#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/ReferenceCountable.h>

namespace trelvo {

/// Gives a named data store its AES-128 key and initialisation vector, and encrypts with them.
///
/// "sltdb" and "lssdb" have keys that are built into the library, the same in every copy of it. Any
/// other name gets a key that is made on this device, from a seed file in the default storage
/// directory and the device's identity in the environment variable ORVE_UNIQUE_DEVICE_ID. Whoever
/// can read both makes the same key; docs/security.md tells what that protects and what not.
///
/// The name is not part of the key: two stores first opened in the same second have the same one.
/// Where both keep block files, that gives away the difference of their contents.
///
/// Two processes that open a new store at the same moment may both write a seed: the second wins,
/// and what the first encrypts is lost.
///
/// Threads: one at a time.
class TRELVO_EXPORT ICryptographyUtility : public gom::ReferenceCountable {
 public:
  ~ICryptographyUtility() override;

  /// Opens the store `name`, NUL-terminated, which makes its key where there is none.
  ///
  /// `generated` becomes true when a new key was made: data under an older one is gone.
  /// `status` becomes StatusOk, or tells why the result is null: StatusInvalidParameter for a null
  /// or empty name, StatusFailed when cryptography is not available or memory runs out,
  /// StatusKeyFailure when no key could be made, as without a device identity (the seed file is
  /// there all the same), or while the seed file cannot be read for want of descriptors, memory or
  /// a working disk (it is then left alone).
  /// @return a plain pointer with reference count 0, for the caller to adopt into a
  ///         gom::SharedPointer, or null.
  [[nodiscard]] static ICryptographyUtility* open(const char* name, Status& status,
                                                  bool& generated);

  /// Has no effect: a seed file is never deleted by this library.
  static void clear(const char* name);

  /// Decrypts AES-128-CBC with the store's key: see ICryptography::decryptAes().
  /// @return also StatusWrongState when there is no key.
  virtual Status decrypt(const unsigned char* data, unsigned long length, unsigned char*& result,
                         unsigned long& resultLength) = 0;

  /// Encrypts with AES-128-CBC and the store's key: see ICryptography::encryptAes(). The same bytes
  /// always give the same result, since the initialisation vector belongs to the store.
  /// @return also StatusWrongState when there is no key.
  virtual Status encrypt(const unsigned char* data, unsigned long length, unsigned char*& result,
                         unsigned long& resultLength) = 0;

  /// Takes back what encrypt() or decrypt() gave: see ICryptography::freeMemory().
  virtual bool freeMemory(unsigned char* memory) = 0;

  /// Points `key` and `iv` at 16 bytes each that belong to this object and die with it.
  /// @return whether there are such.
  virtual bool getKeyAndIv(unsigned char*& key, unsigned char*& iv) = 0;
};

}  // namespace trelvo
