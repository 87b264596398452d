#include <gtest/gtest.h>

#include <malloc.h>
#include <openssl/crypto.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <utility>

#include <trelvo/CryptoLinux.h>
#include <trelvo/ICryptoLog.h>
#include <trelvo/ICryptographyUtility.h>
#include <trelvo/core/Directory.h>

#include "tests/crypto/CryptoSupport.h"
#include "tests/reference/crypto_reference.inc"
#include "tests/support/Bytes.h"

// No block of memory is given back with a secret in it, by the library or by OpenSSL: this program
// looks into every block that is freed.

namespace {

using namespace trelvo;
using trelvo::test::aesKey;
using trelvo::test::Bytes;
using trelvo::test::bytes;
using trelvo::test::dataFile;
using trelvo::test::opened;
using trelvo::test::readFile;
using trelvo::test::TemporaryFolder;
using trelvo::test::textBytes;
using trelvo::test::view;
using trelvo::test::writeFile;

const unsigned char* gNeedle = nullptr;
std::size_t gNeedleSize = 0;
int gFound = 0;

void* allocate(std::size_t size) noexcept {
  void* const block = std::malloc(size);
  if (block != nullptr) {
    std::memset(block, 0, malloc_usable_size(block));
  }
  return block;
}

void release(void* block) noexcept {
  const auto* const first = static_cast<const unsigned char*>(block);
  const auto* const last = first + malloc_usable_size(block);
  if (gNeedle != nullptr && std::search(first, last, gNeedle, gNeedle + gNeedleSize) != last) {
    ++gFound;
  }
  std::free(block);
}

void* allocateForOpenSsl(std::size_t size, const char* /*file*/, int /*line*/) {
  return allocate(size);
}

void* reallocateForOpenSsl(void* block, std::size_t size, const char* /*file*/, int /*line*/) {
  void* const grown = allocate(size);
  if (grown != nullptr && block != nullptr) {
    std::memcpy(grown, block, std::min(size, malloc_usable_size(block)));
    release(block);
  }
  return grown;
}

void releaseForOpenSsl(void* block, const char* /*file*/, int /*line*/) { release(block); }

const bool kInstalled =
    CRYPTO_set_mem_functions(allocateForOpenSsl, reallocateForOpenSsl, releaseForOpenSsl) == 1;

/// While it lives, freed blocks are searched for `needle`.
class Search {
 public:
  explicit Search(Bytes needle) : m_needle(std::move(needle)) {
    EXPECT_TRUE(kInstalled);
    gFound = 0;
    gNeedle = m_needle.data();
    gNeedleSize = m_needle.size();
  }
  ~Search() { gNeedle = nullptr; }
  Search(const Search&) = delete;
  Search& operator=(const Search&) = delete;

  int found() const { return gFound; }

 private:
  Bytes m_needle;
};

}  // namespace

void* operator new(std::size_t size) {
  void* const bytes = allocate(size);
  if (bytes == nullptr) {
    throw std::bad_alloc();
  }
  return bytes;
}
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return allocate(size);
}
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return allocate(size);
}
void operator delete(void* bytes) noexcept { release(bytes); }
void operator delete(void* bytes, std::size_t /*size*/) noexcept { release(bytes); }
void operator delete(void* bytes, const std::nothrow_t& /*tag*/) noexcept { release(bytes); }
void operator delete[](void* bytes) noexcept { release(bytes); }
void operator delete[](void* bytes, std::size_t /*size*/) noexcept { release(bytes); }
void operator delete[](void* bytes, const std::nothrow_t& /*tag*/) noexcept { release(bytes); }

TEST(Wiping, TheSearchFindsWhatIsNotWiped) {
  const Search search(bytes("0102030405060708"));
  delete new std::string(1000, 'x');
  EXPECT_EQ(search.found(), 0);
  delete new Bytes(bytes("FF0102030405060708FF"));
  EXPECT_GE(search.found(), 1);
  const int before = search.found();
  auto* const block = static_cast<unsigned char*>(OPENSSL_malloc(8));
  std::memcpy(block, gNeedle, 8);
  OPENSSL_free(block);
  EXPECT_EQ(search.found(), before + 1);
}

TEST(Wiping, ASecretDiesClean) {
  const Search search(textBytes("open sesame"));
  { const auto secret = Secret::create("open sesame"); }
  EXPECT_EQ(search.found(), 0);
}

TEST(Wiping, KeysAndPlainTextOfAesAreWiped) {
  const auto cryptography = opened();
  const Bytes key = aesKey();
  const Bytes plain = textBytes("a text that nobody else may read, more than a block of it");
  for (const Bytes& needle : {key, plain}) {
    const Search search(needle);
    unsigned char* secret = nullptr;
    unsigned long secretLength = 0;
    ASSERT_EQ(cryptography->encryptAes(plain.data(), plain.size(), key.data(), 16, key.data(), 16,
                                       secret, secretLength),
              StatusOk);
    unsigned char* back = nullptr;
    unsigned long backLength = 0;
    ASSERT_EQ(cryptography->decryptAes(secret, secretLength, key.data(), 16, key.data(), 16, back,
                                       backLength),
              StatusOk);
    OPENSSL_cleanse(back, backLength);  // it is the caller's
    cryptography->freeMemory(back);

    secret[secretLength - 17] ^= 0x01;  // the padding is then wrong
    EXPECT_EQ(cryptography->decryptAes(secret, secretLength, key.data(), 16, key.data(), 16, back,
                                       backLength),
              StatusFailed);
    EXPECT_EQ(search.found(), 0);
    cryptography->freeMemory(secret);
  }
}

TEST(Wiping, ARunningCryptorLeavesNothing) {
  const Bytes key = aesKey();
  const Bytes plain = textBytes("a text that nobody else may read");
  for (const Bytes& needle : {key, plain}) {
    const Search search(needle);
    {
      const gom::SharedPointer<crypto::ICryptor> there(
          opened()->create_encryptor({1, 128, 2, 0, 1}));
      const gom::SharedPointer<crypto::ICryptor> back(
          opened()->create_decryptor({1, 128, 2, 0, 1}));
      ASSERT_EQ(there->start({view(key), view(key)}), StatusOk);
      ASSERT_EQ(back->start({view(key), view(key)}), StatusOk);
      Buffer secret;
      ASSERT_EQ(there->add_chunk(view(plain), secret), StatusOk);
      Buffer again;
      ASSERT_EQ(back->add_chunk(secret, again), StatusOk);
      ASSERT_EQ(std::memcmp(again.data(), plain.data(), plain.size()), 0);
      OPENSSL_cleanse(again.data(), again.size());  // it is the caller's
    }
    EXPECT_EQ(search.found(), 0);
  }
}

TEST(Wiping, PassPhraseAndDecryptedBlockOfRsaAreWiped) {
  const Bytes block = bytes(kRsaOaep);
  const Bytes message = bytes(kRsaMessage);
  for (const char* const key : {"private_pkcs1_protected.pem", "private_pkcs8_protected.pem"}) {
    const std::string path = dataFile(key);
    for (const Bytes& needle : {textBytes("open sesame"), message}) {
      const Search search(needle);
      Buffer output;
      ASSERT_EQ(
          opened()->decryptRsaPrivate(view(block), path.c_str(), Secret::create("open sesame"),
                                      output, crypto::PaddingOaep),
          StatusOk);
      EXPECT_EQ(search.found(), 0) << key;
      OPENSSL_cleanse(output.data(), output.size());  // it is the caller's
    }
  }
}

TEST(Wiping, ALogThatWasReadLeavesNeitherItsKeyNorItsText) {
  const TemporaryFolder folder;
  const std::string golden = std::string(TRELVO_TEST_DATA) + "/crypto/golden/";
  const std::string log = golden + "complete.slog";
  const std::string key = golden + "private.pem";
  const std::string text = folder.file("text");
  const Bytes expected = readFile(golden + "complete.txt");
  for (const Bytes& needle :
       {bytes("000102030405060708090a0b0c0d0e0f"), bytes("f0f1f2f3f4f5f6f7f8f9fafb"),
        Bytes(expected.begin() + 20, expected.begin() + 80)}) {
    const Search search(needle);
    ASSERT_EQ(ICryptoLog::decrypt(log.c_str(), text.c_str(), key.c_str(), {}), StatusOk);
    EXPECT_EQ(search.found(), 0);
  }
  EXPECT_EQ(readFile(text), expected);
}

TEST(Wiping, SeedAndKeyOfAStoreAreWiped) {
  const StoreRow& row = kStoreRows[7];  // with a seed too long for a short string
  const TemporaryFolder folder;
  core::Directory::setDefaultStoragePath(folder.path(), false);
  setenv("ORVE_UNIQUE_DEVICE_ID", row.device, 1);
  writeFile(folder.file(row.seedFile), textBytes(row.seed));
  const Bytes keyAndIv = bytes(row.keyAndIv);
  for (const Bytes& needle :
       {Bytes(keyAndIv.begin(), keyAndIv.begin() + 16),
        Bytes(keyAndIv.begin() + 16, keyAndIv.end()), textBytes("0123456789012345")}) {
    const Search search(needle);
    Status status = StatusFailed;
    bool generated = false;
    gom::SharedPointer<ICryptographyUtility> utility(
        ICryptographyUtility::open(row.name, status, generated));
    ASSERT_EQ(status, StatusOk);
    ASSERT_FALSE(generated);
    utility.clear();
    EXPECT_EQ(search.found(), 0);
  }
}
