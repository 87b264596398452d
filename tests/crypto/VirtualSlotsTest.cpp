// The order of the virtual operations, which programs that were built earlier rely on.

#include <gtest/gtest.h>

#include <trelvo/CryptoFileCommon.h>
#include <trelvo/CryptoUtilityUbuntu.h>
#include <trelvo/DecryptorLin.h>
#include <trelvo/EncryptorLin.h>
#include <trelvo/ICryptography.h>

#include "tests/support/VirtualSlot.h"

namespace trelvo::test {
namespace {

TEST(VirtualSlots, OfCryptography) {
  EXPECT_EQ(slot(&ICryptography::md5Hash), 2U);
  EXPECT_EQ(slot(&ICryptography::decryptAes), 3U);
  EXPECT_EQ(slot(&ICryptography::encryptAes), 4U);
  EXPECT_EQ(slot(&ICryptography::decryptRsaPrivate), 5U);
  EXPECT_EQ(slot(&ICryptography::encryptRsaPublic), 6U);
  EXPECT_EQ(slot(&ICryptography::create_decryptor), 7U);
  EXPECT_EQ(slot(&ICryptography::create_encryptor), 8U);
  EXPECT_EQ(slot(&ICryptography::freeMemory), 9U);
  EXPECT_EQ(slot(&ICryptography::makeRandomBytes), 10U);
}

TEST(VirtualSlots, OfCryptors) {
  EXPECT_EQ(slot(&crypto::ICryptor::start), 2U);
  EXPECT_EQ(slot(&crypto::ICryptor::add_chunk), 3U);
  EXPECT_EQ(slot(&crypto::ICryptor::finish), 4U);
  EXPECT_EQ(slot(&EvpCryptorLin::initialize), 5U);
  EXPECT_EQ(slot(&EncryptorLin::start), 2U);
  EXPECT_EQ(slot(&DecryptorLin::finish), 4U);
}

TEST(VirtualSlots, OfKeyProvisioning) {
  EXPECT_EQ(slot(&ICryptographyUtility::decrypt), 2U);
  EXPECT_EQ(slot(&ICryptographyUtility::encrypt), 3U);
  EXPECT_EQ(slot(&ICryptographyUtility::freeMemory), 4U);
  EXPECT_EQ(slot(&ICryptographyUtility::getKeyAndIv), 5U);
  EXPECT_EQ(slot(&CryptoUtilityAdaptationCommon::init), 6U);
  EXPECT_EQ(slot(&CryptoUtilityAdaptationCommon::generateKey), 7U);
  EXPECT_EQ(slot(&CryptoUtilityUbuntu::generateKey), 7U);
}

TEST(VirtualSlots, OfTheBlockFile) {
  EXPECT_EQ(slot(&CryptoFileCommon::good), 2U);
  EXPECT_EQ(slot(&CryptoFileCommon::seekFromStart), 3U);
  EXPECT_EQ(slot(&CryptoFileCommon::seekFromEnd), 4U);
  EXPECT_EQ(slot(&CryptoFileCommon::offset), 5U);
  EXPECT_EQ(slot(&CryptoFileCommon::eof), 6U);
  EXPECT_EQ(slot(&CryptoFileCommon::canRead), 7U);
  EXPECT_EQ(slot(&CryptoFileCommon::canSeek), 8U);
  EXPECT_EQ(slot(&CryptoFileCommon::canWrite), 9U);
  EXPECT_EQ(slot(&CryptoFileCommon::getSize), 10U);
  EXPECT_EQ(slot(&CryptoFileCommon::read), 11U);
  EXPECT_EQ(slot(&CryptoFileCommon::write), 12U);
  EXPECT_EQ(slot(&CryptoFileCommon::flush), 13U);
  EXPECT_EQ(slot(&CryptoFileCommon::encryptBlock), 14U);
  EXPECT_EQ(slot(&CryptoFileCommon::decryptBlock), 15U);
}

}  // namespace
}  // namespace trelvo::test
