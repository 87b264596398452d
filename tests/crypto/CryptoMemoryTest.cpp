#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <new>
#include <string>

#include <trelvo/CryptoLinux.h>
#include <trelvo/ICryptographyUtility.h>
#include <trelvo/core/Directory.h>

#include "tests/crypto/CryptoSupport.h"
#include "tests/reference/crypto_reference.inc"
#include "tests/support/AllocationFailure.h"
#include "tests/support/Bytes.h"

// Every operation with each of its allocations failing.

namespace {

using namespace trelvo;
using trelvo::test::AllocationsSucceed;
using trelvo::test::Bytes;
using trelvo::test::bytes;
using trelvo::test::contentOf;
using trelvo::test::Cryptography;
using trelvo::test::dataFile;
using trelvo::test::everyAllocationFails;
using trelvo::test::nistPlain;
using trelvo::test::opened;
using trelvo::test::TemporaryFolder;
using trelvo::test::view;

const Bytes kKey = test::aesKey();
const Bytes kPlain = nistPlain();

/// StatusOk with `expected` in `output`, or StatusOutOfMemory with nothing in it.
void expectAllOrNothing(Status status, const Buffer& output, const Bytes& expected) {
  const AllocationsSucceed succeed;
  if (status == StatusOk) {
    EXPECT_EQ(contentOf(output), expected);
  } else {
    EXPECT_EQ(status, StatusOutOfMemory);
    EXPECT_EQ(output.size(), 0U);
  }
}

}  // namespace

TEST(CryptoMemory, OpenGivesNullAndCountsNobody) {
  EXPECT_EQ(everyAllocationFails([] {
              const Cryptography cryptography(ICryptography::open());
              EXPECT_EQ(cryptography ? 1 : 0, gCryptoStatic.m_refCount);
            }),
            2U);
  EXPECT_EQ(gCryptoStatic.m_value, nullptr);
}

TEST(CryptoMemory, ASecretIsAllThereOrEmpty) {
  EXPECT_EQ(everyAllocationFails([] {
              const auto secret = Secret::create("open sesame");
              if (secret) {
                EXPECT_STREQ(secret->text(), "open sesame");
              }
            }),
            2U);
}

TEST(CryptoMemory, EncryptAesTellsThatMemoryRanOut) {
  const Cryptography cryptography = opened();
  EXPECT_EQ(everyAllocationFails([&] {
              unsigned char* result = nullptr;
              unsigned long length = 0;
              const Status status = cryptography->encryptAes(
                  kPlain.data(), kPlain.size(), kKey.data(), 16, kKey.data(), 16, result, length);
              EXPECT_EQ(status, result != nullptr ? StatusOk : StatusOutOfMemory);
              cryptography->freeMemory(result);
            }),
            1U);
}

TEST(CryptoMemory, DecryptAesTellsThatMemoryRanOut) {
  const Cryptography cryptography = opened();
  unsigned char* secret = nullptr;
  unsigned long secretLength = 0;
  ASSERT_EQ(cryptography->encryptAes(kPlain.data(), kPlain.size(), kKey.data(), 16, kKey.data(), 16,
                                     secret, secretLength),
            StatusOk);
  EXPECT_EQ(everyAllocationFails([&] {
              unsigned char* result = nullptr;
              unsigned long length = 0;
              const Status status = cryptography->decryptAes(secret, secretLength, kKey.data(), 16,
                                                             kKey.data(), 16, result, length);
              EXPECT_EQ(status, result != nullptr ? StatusOk : StatusOutOfMemory);
              EXPECT_EQ(length, result != nullptr ? kPlain.size() : 0);
              cryptography->freeMemory(result);
            }),
            3U);  // the cryptor, room for the result, the last piece
  cryptography->freeMemory(secret);
}

TEST(CryptoMemory, ACryptorIsMadeOrThrows) {
  const Cryptography cryptography = opened();
  EXPECT_EQ(everyAllocationFails([&] {
              try {
                const gom::SharedPointer<crypto::ICryptor> cryptor(
                    cryptography->create_encryptor({1, 128, 1, 0, 1}));
                EXPECT_TRUE(cryptor);
              } catch (const std::bad_alloc&) {
                return;
              }
            }),
            1U);
}

TEST(CryptoMemory, ACryptorAppendsAllOrNothing) {
  const gom::SharedPointer<crypto::ICryptor> cryptor(opened()->create_encryptor({1, 128, 2, 0, 1}));
  const Bytes counter = bytes("f0f1f2f3f4f5f6f7f8f9fafbfcfdfeff");
  const Bytes block = test::head(kPlain, 16);
  const Bytes secret = bytes("874d6191b620e3261bef6864990db6ce");  // NIST SP 800-38A, F.5.1
  const Bytes nothing;
  EXPECT_EQ(everyAllocationFails([&] {
              ASSERT_EQ(cryptor->start({view(kKey), view(counter)}), StatusOk);
              Buffer output;
              expectAllOrNothing(cryptor->add_chunk(view(block), output), output, secret);
              Buffer last;
              expectAllOrNothing(cryptor->finish(last), last, nothing);
            }),
            2U);
}

// The output's block is full, so that what comes out takes another way there.
TEST(CryptoMemory, ACryptorAppendsAllOrNothingToAFullBlockToo) {
  const gom::SharedPointer<crypto::ICryptor> cryptor(opened()->create_encryptor({1, 128, 2, 0, 1}));
  const Bytes counter = bytes("f0f1f2f3f4f5f6f7f8f9fafbfcfdfeff");
  const Bytes block = test::head(kPlain, 16);
  const Bytes secret = bytes("874d6191b620e3261bef6864990db6ce");  // NIST SP 800-38A, F.5.1
  const Bytes before(1024, 0x77);
  Bytes both = before;
  both.insert(both.end(), secret.begin(), secret.end());
  EXPECT_EQ(everyAllocationFails([&] {
              std::unique_ptr<Buffer> output;
              {
                const AllocationsSucceed preparing;
                output = std::make_unique<Buffer>(512U);
                output->fill(0x77, 1024);
                ASSERT_EQ(cryptor->start({view(kKey), view(counter)}), StatusOk);
              }
              const Status status = cryptor->add_chunk(view(block), *output);
              const AllocationsSucceed checking;
              EXPECT_TRUE(status == StatusOk || status == StatusOutOfMemory) << status;
              EXPECT_EQ(contentOf(*output), status == StatusOk ? both : before);
              output.reset();
            }),
            2U);
}

TEST(CryptoMemory, RsaTellsThatMemoryRanOut) {
  const Cryptography cryptography = opened();
  const std::string privateKey = dataFile("private_pkcs8.pem");
  const std::string publicKey = dataFile("public.pem");
  const Bytes block = bytes(kRsaOaep);
  const Bytes message = bytes(kRsaMessage);
  const Bytes plainBlock = bytes(kRsaPlainBlock);
  const Bytes bareBlock = bytes(kRsaBareBlock);
  EXPECT_EQ(everyAllocationFails([&] {
              Buffer output;
              const Status status = cryptography->decryptRsaPrivate(
                  view(block), privateKey.c_str(), nullptr, output, crypto::PaddingOaep);
              expectAllOrNothing(status, output, message);
            }),
            2U);
  EXPECT_EQ(everyAllocationFails([&] {
              Buffer output;
              const Status status = cryptography->encryptRsaPublic(
                  view(plainBlock), publicKey.c_str(), output, crypto::PaddingNone);
              expectAllOrNothing(status, output, bareBlock);
            }),
            2U);
}

TEST(CryptoMemory, RandomBytesComeOrThrow) {
  const Cryptography cryptography = opened();
  EXPECT_EQ(everyAllocationFails([&] {
              Buffer output;
              try {
                EXPECT_EQ(cryptography->makeRandomBytes(32, output), StatusOk);
                EXPECT_EQ(output.size(), 32U);
              } catch (const std::bad_alloc&) {
                EXPECT_EQ(output.size(), 0U);
              }
            }),
            2U);
}

TEST(CryptoMemory, AStoreOpensOrFailsWithStatus1) {
  const TemporaryFolder folder;
  core::Directory::setDefaultStoragePath(folder.path(), false);
  setenv("ORVE_UNIQUE_DEVICE_ID", "device-1", 1);
  EXPECT_GE(everyAllocationFails([] {
              Status status = StatusOk;
              bool generated = false;
              const gom::SharedPointer<ICryptographyUtility> utility(
                  ICryptographyUtility::open("a store with a long name", status, generated));
              EXPECT_EQ(status, utility ? StatusOk : StatusFailed);
            }),
            5U);
  EXPECT_EQ(gCryptoStatic.m_value, nullptr);
}
