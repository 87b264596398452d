#include <gtest/gtest.h>

#include <openssl/crypto.h>

#include <cstdlib>
#include <functional>
#include <string>

#include <trelvo/CryptoLinux.h>

#include "tests/crypto/CryptoSupport.h"
#include "tests/reference/crypto_reference.inc"
#include "tests/support/Bytes.h"

// Every operation with each of OpenSSL's own allocations failing.

namespace {

using namespace trelvo;
using trelvo::test::Bytes;
using trelvo::test::bytes;
using trelvo::test::contentOf;
using trelvo::test::Cryptography;
using trelvo::test::dataFile;
using trelvo::test::nistPlain;
using trelvo::test::opened;
using trelvo::test::view;

unsigned long gCalls = 0;
unsigned long gFailAt = 0;

bool mayAllocate() noexcept { return ++gCalls != gFailAt; }

void* allocate(std::size_t size, const char* /*file*/, int /*line*/) {
  return mayAllocate() ? std::malloc(size) : nullptr;
}

void* reallocate(void* block, std::size_t size, const char* /*file*/, int /*line*/) {
  return mayAllocate() ? std::realloc(block, size) : nullptr;
}

void release(void* block, const char* /*file*/, int /*line*/) { std::free(block); }

/// Before anything else asks OpenSSL for memory; later it takes no other allocator.
const bool kInstalled = CRYPTO_set_mem_functions(allocate, reallocate, release) == 1;

/// Calls `run` with each allocation failing in turn, until one gets through. The first call, in
/// which nothing fails, lets OpenSSL look up what it then keeps.
unsigned long everyAllocationOfOpenSslFails(const std::function<void()>& run) {
  EXPECT_TRUE(kInstalled);
  run();
  for (unsigned long failAt = 1;; ++failAt) {
    gCalls = 0;
    gFailAt = failAt;
    run();
    gFailAt = 0;
    if (gCalls < failAt || ::testing::Test::HasFailure()) {
      return gCalls;
    }
  }
}

void expectAllOrNothing(Status status, const Buffer& output, const Bytes& expected) {
  if (status == StatusOk) {
    EXPECT_EQ(contentOf(output), expected);
  } else {
    EXPECT_TRUE(status == StatusFailed || status == StatusFileError || status == StatusOutOfMemory)
        << status;
    EXPECT_EQ(output.size(), 0U);
  }
}

void decryptWithEachAllocationFailing(const char* keyFile) {
  const Cryptography cryptography = opened();
  const Bytes block = bytes(kRsaOaep);
  const Bytes expected = bytes(kRsaMessage);
  const auto passphrase = Secret::create("open sesame");
  const std::string key = dataFile(keyFile);
  EXPECT_GT(everyAllocationOfOpenSslFails([&] {
              Buffer output;
              expectAllOrNothing(
                  cryptography->decryptRsaPrivate(view(block), key.c_str(), passphrase, output,
                                                  crypto::PaddingOaep),
                  output, expected);
            }),
            0U);
}

}  // namespace

TEST(OpenSslMemory, Md5FailsCleanly) {
  const Cryptography cryptography = opened();
  EXPECT_GT(everyAllocationOfOpenSslFails([&] {
              const unsigned char text[] = {'a', 'b', 'c'};
              unsigned char digest[16] = {};
              const Status status = cryptography->md5Hash(text, 3, digest);
              EXPECT_TRUE(status == StatusOk || status == StatusFailed);
              if (status == StatusOk) {
                EXPECT_EQ(Bytes(digest, digest + 16), bytes("900150983cd24fb0d6963f7d28e17f72"));
              }
            }),
            0U);
}

TEST(OpenSslMemory, AesFailsCleanly) {
  const Cryptography cryptography = opened();
  const Bytes plain = nistPlain();
  const Bytes key = test::aesKey();
  EXPECT_GT(everyAllocationOfOpenSslFails([&] {
              unsigned char* secret = nullptr;
              unsigned long secretLength = 0;
              if (cryptography->encryptAes(plain.data(), plain.size(), key.data(), 16, key.data(),
                                           16, secret, secretLength) != StatusOk) {
                EXPECT_EQ(secret, nullptr);
                return;
              }
              unsigned char* back = nullptr;
              unsigned long backLength = 0;
              if (cryptography->decryptAes(secret, secretLength, key.data(), 16, key.data(), 16,
                                           back, backLength) == StatusOk) {
                EXPECT_EQ(Bytes(back, back + backLength), plain);
              }
              cryptography->freeMemory(secret);
              cryptography->freeMemory(back);
            }),
            0U);
}

TEST(OpenSslMemory, RsaEncryptionFailsCleanly) {
  const Cryptography cryptography = opened();
  const Bytes block = bytes(kRsaPlainBlock);
  const Bytes expected = bytes(kRsaBareBlock);
  const std::string key = dataFile("public.pem");
  EXPECT_GT(everyAllocationOfOpenSslFails([&] {
              Buffer output;
              expectAllOrNothing(cryptography->encryptRsaPublic(view(block), key.c_str(), output,
                                                                crypto::PaddingNone),
                                 output, expected);
            }),
            0U);
}

TEST(OpenSslMemory, RsaDecryptionFailsCleanly) {
  decryptWithEachAllocationFailing("private_pkcs8.pem");
}

TEST(OpenSslMemory, RsaDecryptionWithAProtectedKeyFailsCleanly) {
  decryptWithEachAllocationFailing("private_pkcs1_protected.pem");
}
