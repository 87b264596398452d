#pragma once

#include <string>

#include <trelvo/Export.h>
#include <trelvo/ICryptography.h>
#include <trelvo/ICryptographyUtility.h>

namespace trelvo {

/// The key of a data store, wherever it comes from; a derived class tells by generateKey().
///
/// Key and initialisation vector are wiped when the object dies.
class TRELVO_EXPORT CryptoUtilityAdaptationCommon : public ICryptographyUtility {
 public:
  CryptoUtilityAdaptationCommon() = default;
  ~CryptoUtilityAdaptationCommon() override;
  CryptoUtilityAdaptationCommon(const CryptoUtilityAdaptationCommon&) = delete;
  CryptoUtilityAdaptationCommon& operator=(const CryptoUtilityAdaptationCommon&) = delete;

  Status decrypt(const unsigned char* data, unsigned long length, unsigned char*& result,
                 unsigned long& resultLength) override;
  Status encrypt(const unsigned char* data, unsigned long length, unsigned char*& result,
                 unsigned long& resultLength) override;
  /// @return what ICryptography::freeMemory() says; false, with nothing done, before init().
  bool freeMemory(unsigned char* memory) override;
  /// @return always true: the arrays are there, all zero before init().
  bool getKeyAndIv(unsigned char*& key, unsigned char*& iv) override;

  /// Gets the key of the store `name` ready. Call it once.
  ///
  /// `generated` becomes false for the two names with a built-in key, else what generateKey() says.
  /// @return StatusOk; StatusInvalidParameter, with nothing changed, for a null or empty name;
  ///         StatusFailed when cryptography is not available; StatusKeyFailure when generateKey()
  ///         gives false. Throws std::bad_alloc.
  virtual Status init(const char* name, bool& generated);

  /// Makes `length` bytes of key: printable characters from rand(), which is seeded with the time
  /// in seconds. Fit for trying things out only.
  /// @return always true, with `generated` true.
  virtual bool generateKey(unsigned int length, unsigned char* output, bool& generated);

 protected:
  unsigned char m_key[16] = {};  ///< AES-128 key.
  unsigned char m_iv[16] = {};   ///< Initialisation vector, directly behind the key.
  ICryptography* m_cryptography =
      nullptr;         ///< Owned outright, without a reference count; null before init().
  std::string m_name;  ///< The store's name, as given to init() or as generateKey() left it.

 private:
  bool baseInit(const char* name);
  bool makeKeyAndIv(bool& generated);
};

}  // namespace trelvo
