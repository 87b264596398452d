#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstdlib>
#include <ctime>
#include <fstream>
#include <memory>
#include <string>

#include <trelvo/CryptoLinux.h>
#include <trelvo/CryptoUtilityUbuntu.h>
#include <trelvo/core/Directory.h>

#include "tests/crypto/CryptoSupport.h"
#include "tests/reference/crypto_reference.inc"
#include "tests/support/Bytes.h"

namespace {

using namespace trelvo;
using trelvo::test::Bytes;
using trelvo::test::bytes;
using trelvo::test::nistPlain;
using trelvo::test::readFile;
using trelvo::test::TemporaryFolder;
using trelvo::test::textBytes;
using trelvo::test::writeFile;

using Utility = gom::SharedPointer<ICryptographyUtility>;

constexpr char kDeviceVariable[] = "ORVE_UNIQUE_DEVICE_ID";
constexpr char kSeedFileOfAbc[] = "0512cbeccfdf12b1e5a999e58d05f373";

/// A default storage directory of its own, and a device.
class CryptographyUtility : public ::testing::Test {
 protected:
  CryptographyUtility() {
    core::Directory::getDefaultStoragePath(m_pathBefore, m_secureBefore);
    core::Directory::setDefaultStoragePath(m_folder.path(), false);
    setDevice("device-1");
  }
  ~CryptographyUtility() override {
    core::Directory::setDefaultStoragePath(m_pathBefore, m_secureBefore);
    unsetenv(kDeviceVariable);
  }

  static void setDevice(const char* device) { setenv(kDeviceVariable, device, 1); }

  std::string seedFile() const { return m_folder.file(kSeedFileOfAbc); }

  Utility open(const char* name) {
    m_status = static_cast<Status>(99);
    return {ICryptographyUtility::open(name, m_status, m_generated)};
  }

  /// Key and IV of a store that must open.
  Bytes keyAndIv(const char* name) {
    const Utility utility = open(name);
    EXPECT_EQ(m_status, StatusOk);
    unsigned char* key = nullptr;
    unsigned char* iv = nullptr;
    if (!utility || !utility->getKeyAndIv(key, iv)) {
      ADD_FAILURE() << "no key";
      return {};
    }
    Bytes both(key, key + 16);
    both.insert(both.end(), iv, iv + 16);
    return both;
  }

  TemporaryFolder m_folder;
  Status m_status = StatusOk;
  bool m_generated = false;

 private:
  std::string m_pathBefore;
  bool m_secureBefore = false;
};

/// The lines of the file that the library was configured with.
Bytes fixedKeys(int firstLine) {
  std::ifstream file(TRELVO_FIXED_KEYS);
  std::string line;
  std::string both;
  for (int number = 0; std::getline(file, line); ++number) {
    if (number == firstLine || number == firstLine + 1) {
      both += line;
    }
  }
  return bytes(both);
}

/// Opens what is behind the interface.
class Probe : public CryptoUtilityUbuntu {
 public:
  std::string& name() { return m_name; }
  const ICryptography* cryptography() const { return m_cryptography; }
  const unsigned char* keyArray() const { return m_key; }
  const unsigned char* ivArray() const { return m_iv; }
};

/// A store whose key comes from the test.
class OwnKeys : public CryptoUtilityAdaptationCommon {
 public:
  bool generateKey(unsigned int length, unsigned char* output, bool& generated) override {
    m_length = length;
    for (unsigned int i = 0; i < length; ++i) {
      output[i] = static_cast<unsigned char>(i);
    }
    generated = m_reportsGenerated;
    return m_succeeds;
  }
  bool getKeyAndIv(unsigned char*& key, unsigned char*& iv) override {
    return m_givesKey && CryptoUtilityAdaptationCommon::getKeyAndIv(key, iv);
  }

  unsigned int m_length = 0;
  bool m_succeeds = true;
  bool m_reportsGenerated = false;
  bool m_givesKey = true;
};

}  // namespace

TEST_F(CryptographyUtility, OpensAsAPlainPointerThatNobodyHolds) {
  ICryptographyUtility* const plain = ICryptographyUtility::open("sltdb", m_status, m_generated);
  ASSERT_NE(plain, nullptr);
  EXPECT_EQ(plain->referenceCount(), 0);
  EXPECT_NE(dynamic_cast<CryptoUtilityUbuntu*>(plain), nullptr);
  const Utility adopted(plain);
}

TEST_F(CryptographyUtility, TwoStoresHaveTheKeysThatTheBuildWasGiven) {
  m_generated = true;
  EXPECT_EQ(keyAndIv("sltdb"), fixedKeys(0));
  EXPECT_FALSE(m_generated);
  m_generated = true;
  EXPECT_EQ(keyAndIv("lssdb"), fixedKeys(2));
  EXPECT_FALSE(m_generated);
  EXPECT_NE(fixedKeys(0), fixedKeys(2));
}

TEST_F(CryptographyUtility, TheBuiltInKeysTouchNoFileAndNeedNoDevice) {
  unsetenv(kDeviceVariable);
  EXPECT_TRUE(open("sltdb"));
  EXPECT_TRUE(open("lssdb"));
  EXPECT_TRUE(m_folder.empty());
}

TEST_F(CryptographyUtility, OnlyTheExactNamesHaveBuiltInKeys) {
  for (const char* const name : {"Sltdb", "sltdb ", "sltd", "lssdb2"}) {
    EXPECT_TRUE(open(name)) << name;
    EXPECT_TRUE(m_generated) << name;
  }
}

TEST_F(CryptographyUtility, NoNameIsAnInvalidParameter) {
  for (const char* const name : {"", static_cast<const char*>(nullptr)}) {
    for (const bool before : {false, true}) {
      m_generated = before;
      EXPECT_FALSE(open(name));
      EXPECT_EQ(m_status, StatusInvalidParameter);
      EXPECT_EQ(m_generated, before);
    }
  }
  EXPECT_TRUE(m_folder.empty());
}

TEST_F(CryptographyUtility, DerivesWhatTheReferenceDerives) {
  for (const StoreRow& row : kStoreRows) {
    SCOPED_TRACE(row.name);
    setDevice(row.device);
    writeFile(m_folder.file(row.seedFile), textBytes(row.seed));
    m_generated = true;
    EXPECT_EQ(keyAndIv(row.name), bytes(row.keyAndIv));
    EXPECT_FALSE(m_generated);
    EXPECT_EQ(readFile(m_folder.file(row.seedFile)), textBytes(row.seed));
  }
}

TEST_F(CryptographyUtility, ANewStoreWritesTheTimeAsItsSeed) {
  const std::time_t before = std::time(nullptr);
  ASSERT_TRUE(open("abc"));
  const std::time_t after = std::time(nullptr);
  EXPECT_TRUE(m_generated);
  const Bytes content = readFile(seedFile());
  const std::string seed(content.begin(), content.end());
  ASSERT_EQ(seed.find_first_not_of("0123456789"), std::string::npos) << seed;
  EXPECT_GE(std::stoll(seed), before);
  EXPECT_LE(std::stoll(seed), after);
}

TEST_F(CryptographyUtility, TheSeedFileIsForItsOwnerAlone) {
  const mode_t before = umask(0);
  EXPECT_TRUE(open("abc"));
  umask(before);
  struct stat entry = {};
  ASSERT_EQ(stat(seedFile().c_str(), &entry), 0);
  EXPECT_EQ(entry.st_mode & 07777U, 0600U);
}

TEST_F(CryptographyUtility, ASecondOpenGivesTheSameKey) {
  const Bytes first = keyAndIv("abc");
  EXPECT_TRUE(m_generated);
  EXPECT_EQ(keyAndIv("abc"), first);
  EXPECT_FALSE(m_generated);
}

TEST_F(CryptographyUtility, ALostSeedFileMeansANewKey) {
  writeFile(seedFile(), textBytes("1000000000"));
  const Bytes first = keyAndIv("abc");
  EXPECT_FALSE(m_generated);
  ASSERT_TRUE(core::Directory::rmFile(seedFile()));
  EXPECT_NE(keyAndIv("abc"), first);
  EXPECT_TRUE(m_generated);
}

TEST_F(CryptographyUtility, AnotherDeviceHasAnotherKey) {
  writeFile(seedFile(), textBytes("1000000000"));
  const Bytes first = keyAndIv("abc");
  setDevice("device-2");
  EXPECT_NE(keyAndIv("abc"), first);
  EXPECT_FALSE(m_generated);
}

TEST_F(CryptographyUtility, StoresFirstOpenedInOneSecondShareTheirKey) {
  const std::string measurements = m_folder.file("b953dff81b1eb045f6d9223ac2e4898d");
  writeFile(seedFile(), textBytes("1000000000"));
  writeFile(measurements, textBytes("1000000000"));
  EXPECT_EQ(keyAndIv("measurements"), keyAndIv("abc"));
  writeFile(measurements, textBytes("1000000001"));
  EXPECT_NE(keyAndIv("measurements"), keyAndIv("abc"));
}

TEST_F(CryptographyUtility, TheSeedIsTheFirstWordInTheFile) {
  writeFile(seedFile(), textBytes("1000000000"));
  const Bytes expected = keyAndIv("abc");
  for (const char* const content :
       {"1000000000\n", " \t\r\n\v\f1000000000 2000000000", "1000000000\tx"}) {
    writeFile(seedFile(), textBytes(content));
    EXPECT_EQ(keyAndIv("abc"), expected);
    EXPECT_FALSE(m_generated);
  }
}

TEST_F(CryptographyUtility, AFileWithoutAWordGetsANewSeed) {
  for (const char* const content : {"", " ", "\n\t \r\n"}) {
    writeFile(seedFile(), textBytes(content));
    m_generated = false;
    EXPECT_TRUE(open("abc"));
    EXPECT_TRUE(m_generated);
    EXPECT_EQ(readFile(seedFile()).size(), 10U);  // the seconds have ten digits until 2286
  }
}

TEST_F(CryptographyUtility, BytesOfAnyValueMakeASeed) {
  writeFile(seedFile(), bytes("00 FF 80 7F"));
  const Bytes key = keyAndIv("abc");
  EXPECT_FALSE(m_generated);
  EXPECT_EQ(keyAndIv("abc"), key);
}

TEST_F(CryptographyUtility, AnEndlessSeedIsReadOnlyAsFarAsItCounts) {
  ASSERT_EQ(symlink("/dev/zero", seedFile().c_str()), 0);
  const Bytes endless = keyAndIv("abc");
  ASSERT_TRUE(core::Directory::rmFile(seedFile()));
  writeFile(seedFile(), Bytes(102, 0));
  EXPECT_EQ(keyAndIv("abc"), endless);
}

TEST_F(CryptographyUtility, WithoutADeviceThereIsNoKeyButTheSeedIsThere) {
  for (const bool empty : {false, true}) {
    if (empty) {
      setDevice("");
    } else {
      unsetenv(kDeviceVariable);
    }
    core::Directory::rmFile(seedFile());
    EXPECT_FALSE(open("abc"));
    EXPECT_EQ(m_status, StatusKeyFailure);
    EXPECT_TRUE(m_generated);
    EXPECT_EQ(readFile(seedFile()).size(), 10U);
  }
}

TEST_F(CryptographyUtility, AnUnwritableStorageDirectoryGoesUnnoticed) {
  core::Directory::setDefaultStoragePath(m_folder.file("not there"), false);
  EXPECT_TRUE(open("abc"));
  EXPECT_EQ(m_status, StatusOk);
  EXPECT_TRUE(m_generated);
  EXPECT_TRUE(m_folder.empty());
}

TEST_F(CryptographyUtility, NamesAreFilledUpWithBlanksTo16Characters) {
  for (const StoreRow& row : kStoreRows) {
    setDevice(row.device);
    ASSERT_TRUE(open(row.name));
    EXPECT_TRUE(core::Directory::pathExists(m_folder.file(row.seedFile))) << row.name;
  }
  Probe probe;
  ASSERT_EQ(probe.init("abc", m_generated), StatusOk);
  EXPECT_EQ(probe.name(), "abc             ");
  Probe longer;
  ASSERT_EQ(longer.init("twenty characters ok", m_generated), StatusOk);
  EXPECT_EQ(longer.name(), "twenty characters ok");
}

TEST_F(CryptographyUtility, KeyAndIvStandOneBehindTheOther) {
  Probe probe;
  ASSERT_EQ(probe.init("abc", m_generated), StatusOk);
  EXPECT_EQ(probe.keyArray() + 16, probe.ivArray());
  unsigned char* key = nullptr;
  unsigned char* iv = nullptr;
  EXPECT_TRUE(probe.getKeyAndIv(key, iv));
  EXPECT_EQ(key, probe.keyArray());
  EXPECT_EQ(iv, probe.ivArray());
}

TEST_F(CryptographyUtility, NoKeyIsGeneratedBeforeInit) {
  Probe probe;
  unsigned char output[32] = {};
  m_generated = true;
  EXPECT_FALSE(probe.generateKey(32, output, m_generated));
  EXPECT_FALSE(m_generated);
  ASSERT_EQ(probe.init("abc", m_generated), StatusOk);
  probe.name().clear();
  m_generated = true;
  EXPECT_FALSE(probe.generateKey(32, output, m_generated));
  EXPECT_FALSE(m_generated);
}

TEST_F(CryptographyUtility, GeneratesKeysOfAnyLength) {
  writeFile(seedFile(), textBytes("1000000000"));
  Probe probe;
  ASSERT_EQ(probe.init("abc", m_generated), StatusOk);
  Bytes longer(1000);
  EXPECT_TRUE(probe.generateKey(1000, longer.data(), m_generated));
  EXPECT_EQ(test::head(longer, 32), bytes(kStoreRows[0].keyAndIv));
  EXPECT_TRUE(probe.generateKey(0, nullptr, m_generated));
}

TEST_F(CryptographyUtility, EncryptsAsAes128CbcWithKeyAndIv) {
  const Utility utility = open("sltdb");
  ASSERT_TRUE(utility);
  const Bytes plain = nistPlain();
  unsigned char* secret = nullptr;
  unsigned long secretLength = 0;
  ASSERT_EQ(utility->encrypt(plain.data(), plain.size(), secret, secretLength), StatusOk);
  ASSERT_EQ(secretLength, plain.size() + 16);

  const Bytes keys = fixedKeys(0);
  unsigned char* same = nullptr;
  unsigned long sameLength = 0;
  ASSERT_EQ(test::opened()->encryptAes(plain.data(), plain.size(), keys.data(), 16,
                                       keys.data() + 16, 16, same, sameLength),
            StatusOk);
  EXPECT_EQ(Bytes(secret, secret + secretLength), Bytes(same, same + sameLength));
  EXPECT_TRUE(CryptoLinux::freeMemoryStatic(same));

  unsigned char* back = nullptr;
  unsigned long backLength = 0;
  ASSERT_EQ(utility->decrypt(secret, secretLength, back, backLength), StatusOk);
  EXPECT_EQ(Bytes(back, back + backLength), plain);
  EXPECT_TRUE(utility->freeMemory(secret));
  EXPECT_TRUE(utility->freeMemory(back));
}

TEST_F(CryptographyUtility, PassesOnWhatCryptographyRefuses) {
  const Utility utility = open("sltdb");
  unsigned char* result = nullptr;
  unsigned long length = 0;
  EXPECT_EQ(utility->encrypt(nullptr, 1, result, length), StatusInvalidParameter);
  EXPECT_EQ(utility->decrypt(nullptr, 1, result, length), StatusInvalidParameter);
  const Bytes noise(15, 1);
  EXPECT_EQ(utility->decrypt(noise.data(), noise.size(), result, length), StatusFailed);
}

TEST_F(CryptographyUtility, ClearKeepsTheSeedFile) {
  ASSERT_TRUE(open("abc"));
  ICryptographyUtility::clear("abc");
  EXPECT_TRUE(core::Directory::pathExists(seedFile()));
}

TEST_F(CryptographyUtility, LastsOnlyAsLongAsItsHolderInTheSetUp) {
  Utility utility = open("sltdb");
  EXPECT_EQ(gCryptoStatic.m_refCount, 1);
  utility.clear();
  EXPECT_EQ(gCryptoStatic.m_value, nullptr);
}

TEST(CryptoUtilityAdaptationCommon, TheBaseKeyIsPrintableAndFromTheTime) {
  CryptoUtilityAdaptationCommon utility;
  unsigned char output[200] = {};
  bool generated = false;
  const std::time_t before = std::time(nullptr);
  EXPECT_TRUE(utility.generateKey(sizeof output, output, generated));
  const std::time_t after = std::time(nullptr);
  EXPECT_TRUE(generated);
  bool found = false;
  for (std::time_t t = before; t <= after; ++t) {
    std::srand(static_cast<unsigned int>(t));
    bool same = true;
    for (const unsigned char byte : output) {
      same = std::rand() % 94 + 32 == byte && same;
    }
    found = found || same;
  }
  EXPECT_TRUE(found);
}

TEST(CryptoUtilityAdaptationCommon, InitAsksForKeyAndIvInOneGo) {
  OwnKeys utility;
  bool generated = true;
  EXPECT_EQ(utility.init("abc", generated), StatusOk);
  EXPECT_EQ(utility.m_length, 32U);
  EXPECT_FALSE(generated);
  unsigned char* key = nullptr;
  unsigned char* iv = nullptr;
  ASSERT_TRUE(utility.getKeyAndIv(key, iv));
  EXPECT_EQ(Bytes(key, key + 16), bytes("000102030405060708090a0b0c0d0e0f"));
  EXPECT_EQ(Bytes(iv, iv + 16), bytes("101112131415161718191a1b1c1d1e1f"));
}

TEST(CryptoUtilityAdaptationCommon, AFailureToMakeAKeyIsAKeyFailure) {
  OwnKeys utility;
  utility.m_succeeds = false;
  utility.m_reportsGenerated = true;
  bool generated = false;
  EXPECT_EQ(utility.init("abc", generated), StatusKeyFailure);
  EXPECT_TRUE(generated);
}

TEST(CryptoUtilityAdaptationCommon, BuiltInKeysAreNotGenerated) {
  OwnKeys utility;
  utility.m_succeeds = false;
  bool generated = true;
  EXPECT_EQ(utility.init("lssdb", generated), StatusOk);
  EXPECT_FALSE(generated);
  EXPECT_EQ(utility.m_length, 0U);
}

TEST(CryptoUtilityAdaptationCommon, InitAgainTakesTheOtherKey) {
  OwnKeys utility;
  bool generated = false;
  ASSERT_EQ(utility.init("lssdb", generated), StatusOk);
  ASSERT_EQ(utility.init("abc", generated), StatusOk);
  unsigned char* key = nullptr;
  unsigned char* iv = nullptr;
  ASSERT_TRUE(utility.getKeyAndIv(key, iv));
  EXPECT_EQ(Bytes(key, key + 4), bytes("00010203"));
}

TEST(CryptoUtilityAdaptationCommon, WithoutAKeyTheStateIsWrong) {
  OwnKeys utility;
  bool generated = false;
  const Bytes some(16, 1);
  unsigned char* result = nullptr;
  unsigned long length = 0;
  EXPECT_EQ(utility.encrypt(some.data(), 16, result, length), StatusWrongState);
  EXPECT_EQ(utility.decrypt(some.data(), 16, result, length), StatusWrongState);
  EXPECT_FALSE(utility.freeMemory(nullptr));
  ASSERT_EQ(utility.init("abc", generated), StatusOk);
  utility.m_givesKey = false;
  EXPECT_EQ(utility.encrypt(some.data(), 16, result, length), StatusWrongState);
  EXPECT_EQ(utility.decrypt(some.data(), 16, result, length), StatusWrongState);
  EXPECT_EQ(result, nullptr);
}

TEST(CryptoUtilityAdaptationCommon, WipesKeyAndIvWhenItDies) {
  alignas(Probe) static unsigned char storage[sizeof(Probe)];
  auto* const probe = new (static_cast<void*>(storage)) Probe();
  bool generated = false;
  ASSERT_EQ(probe->init("sltdb", generated), StatusOk);
  const auto at = static_cast<std::size_t>(probe->keyArray() - storage);
  ASSERT_EQ(Bytes(storage + at, storage + at + 32), fixedKeys(0));
  probe->~Probe();
  EXPECT_EQ(Bytes(storage + at, storage + at + 32), Bytes(32, 0));
}
