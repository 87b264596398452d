#include <trelvo/CryptoLinux.h>

#include <gtest/gtest.h>

#include <openssl/err.h>
#include <openssl/evp.h>

#include <climits>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "tests/crypto/CryptoSupport.h"
#include "tests/support/Bytes.h"

namespace {

using namespace trelvo;
using trelvo::test::aesKey;
using trelvo::test::Bytes;
using trelvo::test::bytes;
using trelvo::test::cbcIv;
using trelvo::test::Cryptography;
using trelvo::test::head;
using trelvo::test::joined;
using trelvo::test::nistPlain;
using trelvo::test::opened;

std::string md5(const Cryptography& cryptography, std::string_view text) {
  unsigned char digest[16] = {};
  EXPECT_EQ(cryptography->md5Hash(reinterpret_cast<const unsigned char*>(text.data()), text.size(),
                                  digest),
            StatusOk);
  std::string hex;
  for (const unsigned char byte : digest) {
    constexpr char kDigits[] = "0123456789abcdef";
    hex += kDigits[byte >> 4U];
    hex += kDigits[byte & 15U];
  }
  return hex;
}

/// A result of encryptAes() and its like, given back when it goes.
struct Result {
  Status status = StatusOk;
  unsigned char* data = nullptr;
  unsigned long length = 0;

  Result() = default;
  ~Result() { EXPECT_TRUE(CryptoLinux::freeMemoryStatic(data)); }
  Result(const Result&) = delete;
  Result& operator=(const Result&) = delete;

  Bytes content() const { return {data, data + length}; }
};

/// A copy with nothing behind its last byte, so that the sanitizer sees a step too far.
std::unique_ptr<unsigned char[]> exactly(const Bytes& content) {
  std::unique_ptr<unsigned char[]> copy(new unsigned char[content.size()]);
  std::memcpy(copy.get(), content.data(), content.size());
  return copy;
}

void encryptAes(const Cryptography& cryptography, const Bytes& data, const Bytes& key,
                const Bytes& iv, Result& result) {
  const auto exactKey = exactly(key);
  const auto exactIv = exactly(iv);
  result.status = cryptography->encryptAes(data.data(), data.size(), exactKey.get(), key.size(),
                                           exactIv.get(), iv.size(), result.data, result.length);
}

void decryptAes(const Cryptography& cryptography, const Bytes& data, const Bytes& key,
                const Bytes& iv, Result& result) {
  const auto exactKey = exactly(key);
  const auto exactIv = exactly(iv);
  result.status = cryptography->decryptAes(data.data(), data.size(), exactKey.get(), key.size(),
                                           exactIv.get(), iv.size(), result.data, result.length);
}

/// NIST SP 800-38A, F.2.1, and the block of padding behind it.
Bytes nistCbc() {
  return bytes(
      "7649abac8119b246cee98e9b12e9197d 5086cb9b507219ee95db113a917678b2"
      "73bed6b8e3c1743b7116e69e22229516 3ff1caa1681fac09120eca307586e1a7"
      "8cb82807230e1321d3fae00d18cc2012");
}

}  // namespace

TEST(ICryptography, OpensAsAPlainPointerThatNobodyHolds) {
  ICryptography* const cryptography = ICryptography::open();
  ASSERT_NE(cryptography, nullptr);
  EXPECT_EQ(cryptography->referenceCount(), 0);
  EXPECT_NE(dynamic_cast<CryptoLinux*>(cryptography), nullptr);
  const Cryptography holder(cryptography);
  EXPECT_EQ(cryptography->referenceCount(), 1);
}

TEST(ICryptography, HasNoCryptorsAndNoRandomBytesInTheBase) {
  class Bare : public CryptoLinux {
   public:
    Status randomOfBase(Buffer& output) { return ICryptography::makeRandomBytes(1, output); }
    crypto::ICryptor* decryptorOfBase() { return ICryptography::create_decryptor({}); }
    crypto::ICryptor* encryptorOfBase() { return ICryptography::create_encryptor({}); }
  };
  Bare bare;
  Buffer output;
  EXPECT_EQ(bare.randomOfBase(output), StatusNotSupported);
  EXPECT_EQ(output.size(), 0U);
  EXPECT_EQ(bare.decryptorOfBase(), nullptr);
  EXPECT_EQ(bare.encryptorOfBase(), nullptr);
}

TEST(CryptoLinuxStatic, LivesFromTheFirstUserToTheLast) {
  ASSERT_EQ(gCryptoStatic.m_value, nullptr);
  Cryptography first = opened();
  const CryptoLinuxStatic* const made = gCryptoStatic.m_value;
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(gCryptoStatic.m_refCount, 1);
  Cryptography second = opened();
  EXPECT_EQ(gCryptoStatic.m_value, made);
  EXPECT_EQ(gCryptoStatic.m_refCount, 2);
  first.clear();
  EXPECT_EQ(gCryptoStatic.m_value, made);
  EXPECT_EQ(gCryptoStatic.m_refCount, 1);
  EXPECT_EQ(md5(second, "abc"), "900150983cd24fb0d6963f7d28e17f72");
  second.clear();
  EXPECT_EQ(gCryptoStatic.m_value, nullptr);
  EXPECT_EQ(gCryptoStatic.m_refCount, 0);
}

TEST(CryptoLinuxStatic, ComesBackAfterItsEnd) {
  opened().clear();
  ASSERT_EQ(gCryptoStatic.m_value, nullptr);
  EXPECT_EQ(md5(opened(), "a"), "0cc175b9c0f1b6a831c399e269772661");
  EXPECT_EQ(gCryptoStatic.m_value, nullptr);
}

TEST(CryptoLinuxStatic, HasNoLocksForALibraryThatHasItsOwn) {
  const CryptoLinuxStatic state;
  EXPECT_EQ(state.locks(), nullptr);
  EXPECT_EQ(state.lockCount(), 0U);
  EXPECT_TRUE(state.initialised());
}

TEST(CryptoLinux, IsReadyOnceTheSetUpStands) { EXPECT_TRUE(CryptoLinux().init()); }

TEST(CryptoLinux, Md5GivesTheDigestsOfRfc1321) {
  const Cryptography cryptography = opened();
  EXPECT_EQ(md5(cryptography, "a"), "0cc175b9c0f1b6a831c399e269772661");
  EXPECT_EQ(md5(cryptography, "abc"), "900150983cd24fb0d6963f7d28e17f72");
  EXPECT_EQ(md5(cryptography, "message digest"), "f96b697d7cb7938d525a2f31aaf161d0");
  EXPECT_EQ(md5(cryptography, "abcdefghijklmnopqrstuvwxyz"), "c3fcd3d76192e4007dfb496cca67e13b");
  EXPECT_EQ(md5(cryptography, "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"),
            "d174ab98d277d9f5a5611c2c9f419d9f");
  EXPECT_EQ(md5(cryptography,
                "12345678901234567890123456789012345678901234567890123456789012345678901234567890"),
            "57edf4a22be3c955ac49da2e2107b67a");
}

TEST(CryptoLinux, Md5RefusesWhatIsMissingTheEmptyTextToo) {
  const Cryptography cryptography = opened();
  const unsigned char text[] = {'a'};
  unsigned char digest[16] = {0x5A};
  EXPECT_EQ(cryptography->md5Hash(nullptr, 1, digest), StatusInvalidParameter);
  EXPECT_EQ(cryptography->md5Hash(text, 0, digest), StatusInvalidParameter);
  EXPECT_EQ(cryptography->md5Hash(text, 1, nullptr), StatusInvalidParameter);
  EXPECT_EQ(digest[0], 0x5A);
}

TEST(CryptoLinux, EncryptsTheCbcVectorOfNist) {
  Result result;
  encryptAes(opened(), nistPlain(), aesKey(), cbcIv(), result);
  EXPECT_EQ(result.status, StatusOk);
  EXPECT_EQ(result.content(), nistCbc());
}

TEST(CryptoLinux, DecryptsTheCbcVectorOfNist) {
  Result result;
  decryptAes(opened(), nistCbc(), aesKey(), cbcIv(), result);
  EXPECT_EQ(result.status, StatusOk);
  EXPECT_EQ(result.content(), nistPlain());
}

/// Has no decryptors.
class WithoutDecryptors : public CryptoLinux {
 public:
  crypto::ICryptor* create_decryptor(const crypto::Cryptor& /*cryptor*/) override {
    return nullptr;
  }
};

TEST(CryptoLinux, DecryptsByItsDecryptorOnly) {
  WithoutDecryptors cryptography;
  const Bytes key = aesKey();
  const Bytes block(16, 1);
  unsigned char* result = nullptr;
  unsigned long length = 77;
  EXPECT_EQ(
      cryptography.decryptAes(block.data(), 16, key.data(), 16, key.data(), 16, result, length),
      StatusFailed);
  EXPECT_EQ(result, nullptr);
  EXPECT_EQ(length, 77U);
}

TEST(CryptoLinux, PadsAPartOfABlockToAWholeOne) {
  Result result;
  encryptAes(opened(), bytes("6b"), aesKey(), cbcIv(), result);
  EXPECT_EQ(result.content(), bytes("2a7a633fad54e2146edcef80c59eebc6"));
  Result plain;
  decryptAes(opened(), result.content(), aesKey(), cbcIv(), plain);
  EXPECT_EQ(plain.content(), bytes("6b"));
}

TEST(CryptoLinux, EveryLengthComesBack) {
  const Cryptography cryptography = opened();
  for (std::size_t length = 1; length <= nistPlain().size(); ++length) {
    Result secret;
    encryptAes(cryptography, head(nistPlain(), length), aesKey(), cbcIv(), secret);
    ASSERT_EQ(secret.status, StatusOk);
    EXPECT_EQ(secret.length, length / 16 * 16 + 16);
    Result plain;
    decryptAes(cryptography, secret.content(), aesKey(), cbcIv(), plain);
    ASSERT_EQ(plain.status, StatusOk);
    EXPECT_EQ(plain.content(), head(nistPlain(), length));
  }
}

TEST(CryptoLinux, DecryptingNothingButPaddingGivesNullAndLengthZero) {
  Result result;
  result.length = 7;
  decryptAes(opened(), bytes("c84af0b613435d5d9182801a9bd9320b"), aesKey(), cbcIv(), result);
  EXPECT_EQ(result.status, StatusOk);
  EXPECT_EQ(result.data, nullptr);
  EXPECT_EQ(result.length, 0U);
}

TEST(CryptoLinux, EncryptFillsAShortKeyAndIvWithZeroBytes) {
  Result result;
  encryptAes(opened(), head(nistPlain(), 16), bytes("2b7e151628aed2a6abf7"), bytes("0001020304"),
             result);
  EXPECT_EQ(result.status, StatusOk);
  EXPECT_EQ(result.content(),
            bytes("ae2855a1f6597ec9083d427001af61bf86d0741ce8bc51bb041f98673d318c1b"));
}

TEST(CryptoLinux, EncryptTakesTheFirstBytesOfALongKeyAndIv) {
  const Cryptography cryptography = opened();
  Result result;
  encryptAes(cryptography, nistPlain(), joined({aesKey(), Bytes(100, 0xEE)}),
             joined({cbcIv(), Bytes(100, 0xEE)}), result);
  EXPECT_EQ(result.status, StatusOk);
  EXPECT_EQ(result.content(), nistCbc());
}

TEST(CryptoLinux, DecryptRefusesKeysAndIvsOfAnotherSize) {
  const Cryptography cryptography = opened();
  for (const std::size_t size : {1U, 10U, 15U, 17U, 32U}) {
    Result shortKey;
    decryptAes(cryptography, nistCbc(), Bytes(size, 1), cbcIv(), shortKey);
    EXPECT_EQ(shortKey.status, StatusInvalidParameter);
    Result shortIv;
    decryptAes(cryptography, nistCbc(), aesKey(), Bytes(size, 1), shortIv);
    EXPECT_EQ(shortIv.status, StatusInvalidParameter);
    EXPECT_EQ(shortIv.data, nullptr);
  }
}

TEST(CryptoLinux, EncryptRefusesWhatIsMissingAndTouchesNothing) {
  const Cryptography cryptography = opened();
  const Bytes data = nistPlain();
  const Bytes key = aesKey();
  const Bytes iv = cbcIv();
  unsigned char other = 0;
  unsigned char* result = &other;
  unsigned long length = 5;
  const auto encrypt = [&](const unsigned char* d, unsigned long dn, const unsigned char* k,
                           unsigned long kn, const unsigned char* v, unsigned long vn) {
    return cryptography->encryptAes(d, dn, k, kn, v, vn, result, length);
  };
  EXPECT_EQ(encrypt(nullptr, 64, key.data(), 16, iv.data(), 16), StatusInvalidParameter);
  EXPECT_EQ(encrypt(data.data(), 0, key.data(), 16, iv.data(), 16), StatusInvalidParameter);
  EXPECT_EQ(encrypt(data.data(), 64, nullptr, 16, iv.data(), 16), StatusInvalidParameter);
  EXPECT_EQ(encrypt(data.data(), 64, key.data(), 0, iv.data(), 16), StatusInvalidParameter);
  EXPECT_EQ(encrypt(data.data(), 64, key.data(), 16, nullptr, 16), StatusInvalidParameter);
  EXPECT_EQ(encrypt(data.data(), 64, key.data(), 16, iv.data(), 0), StatusInvalidParameter);
  EXPECT_EQ(result, &other);
  EXPECT_EQ(length, 5U);
}

TEST(CryptoLinux, DecryptRefusesWhatIsMissingAndTouchesNothing) {
  const Cryptography cryptography = opened();
  const Bytes data = nistCbc();
  const Bytes key = aesKey();
  const Bytes iv = cbcIv();
  unsigned char other = 0;
  unsigned char* result = &other;
  unsigned long length = 5;
  const auto decrypt = [&](const unsigned char* d, unsigned long dn, const unsigned char* k,
                           unsigned long kn, const unsigned char* v, unsigned long vn) {
    return cryptography->decryptAes(d, dn, k, kn, v, vn, result, length);
  };
  EXPECT_EQ(decrypt(nullptr, 80, key.data(), 16, iv.data(), 16), StatusInvalidParameter);
  EXPECT_EQ(decrypt(data.data(), 0, key.data(), 16, iv.data(), 16), StatusInvalidParameter);
  EXPECT_EQ(decrypt(data.data(), 80, nullptr, 16, iv.data(), 16), StatusInvalidParameter);
  EXPECT_EQ(decrypt(data.data(), 80, key.data(), 0, iv.data(), 16), StatusInvalidParameter);
  EXPECT_EQ(decrypt(data.data(), 80, key.data(), 16, nullptr, 16), StatusInvalidParameter);
  EXPECT_EQ(decrypt(data.data(), 80, key.data(), 16, iv.data(), 0), StatusInvalidParameter);
  EXPECT_EQ(result, &other);
  EXPECT_EQ(length, 5U);
}

#if ULONG_MAX > 0xFFFFFFFFUL
TEST(CryptoLinux, LengthsThatOnlyFitIn64BitsAreNotCutTo32) {
  const Cryptography cryptography = opened();
  const Bytes data = nistCbc();
  const Bytes key = aesKey();
  const Bytes iv = cbcIv();
  unsigned char* result = nullptr;
  unsigned long length = 0;
  constexpr unsigned long k4GiB = 1UL << 32U;
  EXPECT_EQ(cryptography->decryptAes(data.data(), data.size(), key.data(), k4GiB + 16, iv.data(),
                                     16, result, length),
            StatusInvalidParameter);
  EXPECT_EQ(cryptography->decryptAes(data.data(), data.size(), key.data(), 16, iv.data(),
                                     k4GiB + 16, result, length),
            StatusInvalidParameter);
  EXPECT_EQ(cryptography->decryptAes(data.data(), k4GiB + 16, key.data(), 16, iv.data(), 16, result,
                                     length),
            StatusOutOfMemory);
  EXPECT_EQ(cryptography->encryptAes(data.data(), ULONG_MAX, key.data(), 16, iv.data(), 16, result,
                                     length),
            StatusOutOfMemory);
  EXPECT_EQ(result, nullptr);
}
#endif

TEST(CryptoLinux, DecryptTellsDamageThatThePaddingShows) {
  const Cryptography cryptography = opened();
  Bytes damaged = nistCbc();
  damaged[63] ^= 0x01;  // turns the last byte of the padding from 16 into 17
  Result result;
  decryptAes(cryptography, damaged, aesKey(), cbcIv(), result);
  EXPECT_EQ(result.status, StatusFailed);
  EXPECT_EQ(result.data, nullptr);

  Result cut;
  decryptAes(cryptography, head(nistCbc(), 79), aesKey(), cbcIv(), cut);
  EXPECT_EQ(cut.status, StatusFailed);
}

TEST(CryptoLinux, DamageElsewhereGoesUnnoticed) {
  Bytes damaged = nistCbc();
  damaged[0] ^= 0x01;
  Result result;
  decryptAes(opened(), damaged, aesKey(), cbcIv(), result);
  EXPECT_EQ(result.status, StatusOk);
  EXPECT_NE(result.content(), nistPlain());
}

TEST(CryptoLinux, AnyCipherServesTheStaticOperations) {
  const Bytes key = aesKey();
  const Bytes counter = bytes("f0f1f2f3f4f5f6f7f8f9fafbfcfdfeff");
  const Bytes plain = nistPlain();
  // NIST SP 800-38A, F.5.1
  const Bytes secret = bytes(
      "874d6191b620e3261bef6864990db6ce 9806f66b7970fdff8617187bb9fffdff"
      "5ae4df3edbd5d35e5b4f09020db03eab 1e031dda2fbe03d1792170a0f3009cee");
  Result encrypted;
  EXPECT_EQ(CryptoLinux::encrypt(EVP_aes_128_ctr(), plain.data(), plain.size(), key.data(), 16,
                                 counter.data(), 16, encrypted.data, encrypted.length),
            StatusOk);
  EXPECT_EQ(encrypted.content(), secret);
  Result decrypted;
  EXPECT_EQ(CryptoLinux::decrypt(EVP_aes_128_ctr(), secret.data(), secret.size(), key.data(), 16,
                                 counter.data(), 16, decrypted.data, decrypted.length),
            StatusOk);
  EXPECT_EQ(decrypted.content(), plain);
}

TEST(CryptoLinux, TheStaticOperationsPadKeysBothWays) {
  const Bytes plain = nistPlain();
  const auto key = exactly(bytes("2b7e15"));
  const auto iv = exactly(bytes("00"));
  Result encrypted;
  EXPECT_EQ(CryptoLinux::encrypt(EVP_aes_256_cbc(), plain.data(), plain.size(), key.get(), 3,
                                 iv.get(), 1, encrypted.data, encrypted.length),
            StatusOk);
  Result decrypted;
  EXPECT_EQ(CryptoLinux::decrypt(EVP_aes_256_cbc(), encrypted.data, encrypted.length, key.get(), 3,
                                 iv.get(), 1, decrypted.data, decrypted.length),
            StatusOk);
  EXPECT_EQ(decrypted.content(), plain);
}

TEST(CryptoLinux, TheStaticOperationsRefuseWhatIsMissing) {
  const Bytes some = aesKey();
  unsigned char* result = nullptr;
  unsigned long length = 0;
  for (auto* const run : {&CryptoLinux::encrypt, &CryptoLinux::decrypt}) {
    EXPECT_EQ(run(EVP_aes_128_ctr(), nullptr, 16, some.data(), 16, some.data(), 16, result, length),
              StatusInvalidParameter);
    EXPECT_EQ(
        run(EVP_aes_128_ctr(), some.data(), 0, some.data(), 16, some.data(), 16, result, length),
        StatusInvalidParameter);
    EXPECT_EQ(
        run(EVP_aes_128_ctr(), some.data(), 16, some.data(), 0, some.data(), 16, result, length),
        StatusInvalidParameter);
    EXPECT_EQ(
        run(EVP_aes_128_ctr(), some.data(), 16, some.data(), 16, some.data(), 0, result, length),
        StatusInvalidParameter);
  }
}

TEST(CryptoLinux, AnUnusableCipherCountsAsOutOfMemoryAndGivesNull) {
  const Bytes some = aesKey();
  for (auto* const run : {&CryptoLinux::encrypt, &CryptoLinux::decrypt}) {
    unsigned char other = 0;
    unsigned char* result = &other;
    unsigned long length = 5;
    EXPECT_EQ(run(nullptr, some.data(), 16, some.data(), 16, some.data(), 16, result, length),
              StatusOutOfMemory);
    EXPECT_EQ(result, nullptr);
    EXPECT_EQ(length, 5U);
  }
}

TEST(CryptoLinux, StaticDecryptTellsAWrongPadding) {
  const Bytes some = nistPlain();
  unsigned char other = 0;
  unsigned char* result = &other;
  unsigned long length = 0;
  EXPECT_EQ(CryptoLinux::decrypt(EVP_aes_128_cbc(), some.data(), 15, some.data(), 16, some.data(),
                                 16, result, length),
            StatusFailed);
  EXPECT_EQ(result, nullptr);
}

TEST(CryptoLinux, FailuresLeaveTheErrorQueueAsItWas) {
  const Cryptography cryptography = opened();
  ERR_clear_error();
  Result alone;
  decryptAes(cryptography, head(nistCbc(), 79), aesKey(), cbcIv(), alone);
  ASSERT_EQ(alone.status, StatusFailed);
  EXPECT_EQ(ERR_peek_error(), 0UL);

  ERR_raise(ERR_LIB_USER, 77);
  Result behind;
  decryptAes(cryptography, head(nistCbc(), 79), aesKey(), cbcIv(), behind);
  EXPECT_EQ(ERR_GET_REASON(ERR_get_error()), 77);
  EXPECT_EQ(ERR_get_error(), 0UL);
}

TEST(CryptoLinux, FreeMemoryIsAlwaysTrue) {
  const Cryptography cryptography = opened();
  EXPECT_TRUE(cryptography->freeMemory(nullptr));
  EXPECT_TRUE(cryptography->freeMemory(new unsigned char[4]));
  EXPECT_TRUE(CryptoLinux::freeMemoryStatic(nullptr));
}

TEST(CryptoLinux, RandomBytesAreAppendedAndDiffer) {
  const Cryptography cryptography = opened();
  Buffer output;
  const unsigned char before[] = {1, 2, 3};
  output.append(before, 3);
  EXPECT_EQ(cryptography->makeRandomBytes(32, output), StatusOk);
  ASSERT_EQ(output.size(), 35U);
  EXPECT_EQ(Bytes(output.data(), output.data() + 3), bytes("010203"));
  EXPECT_EQ(cryptography->makeRandomBytes(32, output), StatusOk);
  ASSERT_EQ(output.size(), 67U);
  EXPECT_NE(std::memcmp(output.data() + 3, output.data() + 35, 32), 0);
  EXPECT_NE(Bytes(output.data() + 3, output.data() + 35), Bytes(32, 0));
}

TEST(CryptoLinux, NoRandomBytesAreNoFailure) {
  Buffer output;
  EXPECT_EQ(opened()->makeRandomBytes(0, output), StatusOk);
  EXPECT_EQ(output.size(), 0U);
}

TEST(CryptoLinux, MoreRandomBytesThanOpenSslCountsAreRefused) {
  Buffer output;
  EXPECT_EQ(opened()->makeRandomBytes(0x80000000U, output), StatusFailed);
  EXPECT_EQ(opened()->makeRandomBytes(0xFFFFFFFFU, output), StatusFailed);
  EXPECT_EQ(output.size(), 0U);
}

TEST(CryptoLinux, ThreadsUseTheirOwnObjectsAtTheSameTime) {
  std::vector<std::thread> threads;
  for (unsigned char thread = 0; thread < 4; ++thread) {
    threads.emplace_back([thread] {
      for (unsigned int round = 0; round < 50; ++round) {
        const Cryptography cryptography = opened();
        const Bytes key(16, thread);
        Result secret;
        encryptAes(cryptography, nistPlain(), key, cbcIv(), secret);
        Result plain;
        decryptAes(cryptography, secret.content(), key, cbcIv(), plain);
        EXPECT_EQ(plain.content(), nistPlain());
        Buffer random;
        EXPECT_EQ(cryptography->makeRandomBytes(16, random), StatusOk);
        EXPECT_EQ(md5(cryptography, "abc"), "900150983cd24fb0d6963f7d28e17f72");
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(gCryptoStatic.m_value, nullptr);
  EXPECT_EQ(gCryptoStatic.m_refCount, 0);
}
