// Calls of OpenSSL that fail, one after the other: what a healthy system never shows.

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <openssl/evp.h>
#include <openssl/rand.h>

#include <cstdlib>
#include <functional>
#include <string>

#include <trelvo/ICryptoFile.h>
#include <trelvo/ICryptoLog.h>
#include <trelvo/ICryptographyUtility.h>
#include <trelvo/core/Directory.h>

#include "tests/crypto/CryptoSupport.h"

namespace trelvo::test {
namespace {

/// Which call is to fail, counted from 0; -1 for none.
int gFailing = -1;
int gCalls = 0;

/// How deep libcrypto is inside of calls of its own, which pass.
int gDepth = 0;

bool failsNow() { return gDepth == 0 && gCalls++ == gFailing; }

/// Calls libcrypto's own function.
template <class Function, class... Arguments>
auto pass(Function function, Arguments... arguments) {
  ++gDepth;
  const auto result = function(arguments...);
  --gDepth;
  return result;
}

template <class Function>
Function next(const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}  // namespace
}  // namespace trelvo::test

#define TRELVO_IN_PLACE extern "C" __attribute__((visibility("default")))

// These take the place of libcrypto's for the whole process.

TRELVO_IN_PLACE EVP_CIPHER_CTX* EVP_CIPHER_CTX_new() {
  static const auto kNext = trelvo::test::next<EVP_CIPHER_CTX* (*)()>("EVP_CIPHER_CTX_new");
  return trelvo::test::failsNow() ? nullptr : trelvo::test::pass(kNext);
}

TRELVO_IN_PLACE int EVP_EncryptInit_ex2(EVP_CIPHER_CTX* context, const EVP_CIPHER* cipher,
                                        const unsigned char* key, const unsigned char* iv,
                                        const OSSL_PARAM* parameters) {
  static const auto kNext =
      trelvo::test::next<decltype(&EVP_EncryptInit_ex2)>("EVP_EncryptInit_ex2");
  return trelvo::test::failsNow() ? 0
                                  : trelvo::test::pass(kNext, context, cipher, key, iv, parameters);
}

TRELVO_IN_PLACE int EVP_CipherInit(EVP_CIPHER_CTX* context, const EVP_CIPHER* cipher,
                                   const unsigned char* key, const unsigned char* iv,
                                   int encrypts) {
  static const auto kNext = trelvo::test::next<decltype(&EVP_CipherInit)>("EVP_CipherInit");
  return trelvo::test::failsNow() ? 0
                                  : trelvo::test::pass(kNext, context, cipher, key, iv, encrypts);
}

TRELVO_IN_PLACE int EVP_CipherInit_ex(EVP_CIPHER_CTX* context, const EVP_CIPHER* cipher,
                                      ENGINE* engine, const unsigned char* key,
                                      const unsigned char* iv, int encrypts) {
  static const auto kNext = trelvo::test::next<decltype(&EVP_CipherInit_ex)>("EVP_CipherInit_ex");
  return trelvo::test::failsNow()
             ? 0
             : trelvo::test::pass(kNext, context, cipher, engine, key, iv, encrypts);
}

TRELVO_IN_PLACE int EVP_CipherUpdate(EVP_CIPHER_CTX* context, unsigned char* output, int* produced,
                                     const unsigned char* input, int size) {
  static const auto kNext = trelvo::test::next<decltype(&EVP_CipherUpdate)>("EVP_CipherUpdate");
  return trelvo::test::failsNow()
             ? 0
             : trelvo::test::pass(kNext, context, output, produced, input, size);
}

TRELVO_IN_PLACE int EVP_CipherFinal_ex(EVP_CIPHER_CTX* context, unsigned char* output,
                                       int* produced) {
  static const auto kNext = trelvo::test::next<decltype(&EVP_CipherFinal_ex)>("EVP_CipherFinal_ex");
  return trelvo::test::failsNow() ? 0 : trelvo::test::pass(kNext, context, output, produced);
}

TRELVO_IN_PLACE int EVP_Digest(const void* data, std::size_t size, unsigned char* digest,
                               unsigned int* digestSize, const EVP_MD* type, ENGINE* engine) {
  static const auto kNext = trelvo::test::next<decltype(&EVP_Digest)>("EVP_Digest");
  return trelvo::test::failsNow()
             ? 0
             : trelvo::test::pass(kNext, data, size, digest, digestSize, type, engine);
}

TRELVO_IN_PLACE int RAND_bytes(unsigned char* bytes, int count) {
  static const auto kNext = trelvo::test::next<decltype(&RAND_bytes)>("RAND_bytes");
  return trelvo::test::failsNow() ? 0 : trelvo::test::pass(kNext, bytes, count);
}

namespace trelvo::test {
namespace {

using core::Directory;
using Sealed = gom::SharedPointer<ICryptoFile>;

/// Runs `run` with its first call of OpenSSL failing, then with its second, and so on until none
/// does. `run` says whether all went well. @return how many calls there were to fail.
int withEachCallFailing(const std::function<bool()>& run) {
  for (int failing = 0;; ++failing) {
    SCOPED_TRACE(failing);
    gCalls = 0;
    gFailing = failing;
    const bool well = run();
    gFailing = -1;
    if (gCalls <= failing) {
      EXPECT_TRUE(well);
      return failing;
    }
    EXPECT_TRUE(run()) << "the next time";
  }
}

TEST(OpenSslFailure, EncryptsAndDecryptsAllOrNothing) {
  const Cryptography cryptography = opened();
  const Bytes key = aesKey();
  const Bytes iv = cbcIv();
  const Bytes plain = nistPlain();
  const int calls = withEachCallFailing([&] {
    unsigned char* sealed = nullptr;
    unsigned char* back = nullptr;
    unsigned long sealedSize = 0;
    unsigned long size = 0;
    const bool well =
        cryptography->encryptAes(plain.data(), plain.size(), key.data(), key.size(), iv.data(),
                                 iv.size(), sealed, sealedSize) == StatusOk &&
        cryptography->decryptAes(sealed, sealedSize, key.data(), key.size(), iv.data(), iv.size(),
                                 back, size) == StatusOk;
    EXPECT_EQ(well, back != nullptr && Bytes(back, back + size) == plain);
    cryptography->freeMemory(sealed);
    cryptography->freeMemory(back);
    return well;
  });
  EXPECT_GT(calls, 4);
}

// Into an empty buffer, and behind what fills its block.
TEST(OpenSslFailure, ACryptorAppendsAllOrNothing) {
  const Cryptography cryptography = opened();
  const Bytes key = aesKey();
  const Bytes counter(16, 0xF0);
  const Bytes plain = nistPlain();
  for (const unsigned int size : {0U, 1024U}) {
    const Bytes before(size, 0x77);
    const int calls = withEachCallFailing([&] {
      gom::SharedPointer<crypto::ICryptor> cryptor;
      try {
        cryptor =
            gom::SharedPointer<crypto::ICryptor>(cryptography->create_encryptor({1, 128, 2, 0, 1}));
      } catch (const std::bad_alloc&) {
        return false;
      }
      Buffer output;
      output.fill(0x77, size);
      const bool well = cryptor->start({view(key), view(counter)}) == StatusOk &&
                        cryptor->add_chunk(view(plain), output) == StatusOk;
      EXPECT_EQ(output.size(), well ? size + plain.size() : size);
      EXPECT_EQ(head(contentOf(output), size), before);
      return well;
    });
    EXPECT_EQ(calls, 3) << "the context, the start, the block";
  }
}

TEST(OpenSslFailure, MakesAllRandomBytesOrNone) {
  const Cryptography cryptography = opened();
  const int calls = withEachCallFailing([&] {
    Buffer bytes;
    const Status status = cryptography->makeRandomBytes(20, bytes);
    EXPECT_EQ(bytes.size(), status == StatusOk ? 20U : 0U);
    EXPECT_TRUE(status == StatusOk || status == StatusFailed);
    return status == StatusOk;
  });
  EXPECT_GT(calls, 0);
}

TEST(OpenSslFailure, SealsAndOpensAllBytesOrSaysThatItDoesNot) {
  const TemporaryFolder folder;
  const std::string path = folder.file("sealed");
  Bytes key = aesKey();
  Bytes iv = cbcIv();
  const Bytes plain(3000, 'p');
  const int calls = withEachCallFailing([&] {
    {
      const Sealed file(ICryptoFile::open(Directory::createFile(path, 0), key.data(), iv.data()));
      if (!file || file->write(plain.data(), 700) != 700 || !file->seekFromStart(700) ||
          file->write(plain.data() + 700, 2300) != 2300 || !file->flush()) {
        return false;
      }
    }
    const Sealed file(ICryptoFile::open(Directory::openFile(path, 0, true), key.data(), iv.data()));
    Bytes back(plain.size());
    if (!file || file->read(back.data(), 10) != 10 || !file->seekFromStart(10) ||
        file->read(back.data() + 10, 2990) != 2990) {
      return false;
    }
    EXPECT_EQ(back, plain) << "what is read is right";
    return back == plain;
  });
  EXPECT_GT(calls, 8);
}

TEST(OpenSslFailure, OpensAStoreWithItsOwnKeyOrNotAtAll) {
  const TemporaryFolder folder;
  std::string before;
  bool secure = false;
  Directory::getDefaultStoragePath(before, secure);
  Directory::setDefaultStoragePath(folder.path(), true);
  setenv("ORVE_UNIQUE_DEVICE_ID", "a device", 1);
  Bytes first;
  const int calls = withEachCallFailing([&] {
    Status status = StatusOk;
    bool generated = false;
    const gom::SharedPointer<ICryptographyUtility> store(
        ICryptographyUtility::open("store", status, generated));
    EXPECT_EQ(static_cast<bool>(store), status == StatusOk);
    unsigned char* key = nullptr;
    unsigned char* iv = nullptr;
    if (!store || !store->getKeyAndIv(key, iv)) {
      return false;
    }
    const Bytes now(key, key + 16);
    EXPECT_TRUE(first.empty() || first == now) << "the seed stays";
    first = now;
    return true;
  });
  unsetenv("ORVE_UNIQUE_DEVICE_ID");
  Directory::setDefaultStoragePath(before, secure);
  EXPECT_GT(calls, 1);
}

TEST(OpenSslFailure, KeepsALogThatDecryptsOrNone) {
  const TemporaryFolder folder;
  const std::string log = folder.file("log.slog");
  const std::string text = folder.file("log.txt");
  const std::string golden = std::string(TRELVO_TEST_DATA) + "/crypto/golden/";
  const int calls = withEachCallFailing([&] {
    {
      const gom::SharedPointer<ICryptoLog> made(
          ICryptoLog::create(log.c_str(), (golden + "public.pem").c_str()));
      if (!made) {
        return false;
      }
      made->puts("a line\n");
      if (!made->flush()) {
        return false;
      }
    }
    if (ICryptoLog::decrypt(log.c_str(), text.c_str(), (golden + "private.pem").c_str(), {}) !=
        StatusOk) {
      return false;
    }
    EXPECT_EQ(readFile(text), textBytes("a line\n"));
    return true;
  });
  EXPECT_GT(calls, 8);
}

}  // namespace
}  // namespace trelvo::test
