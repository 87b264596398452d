// Public operations that are no record's and no vector's, with each of their allocations failing.

#include <gtest/gtest.h>
#include <trelvo/DebugCommon.h>
#include <trelvo/ICryptoFile.h>
#include <trelvo/ICryptoLog.h>
#include <trelvo/ICryptography.h>
#include <trelvo/ICryptographyUtility.h>
#include <trelvo/ILog.h>
#include <trelvo/INetworkAdaptation.h>
#include <trelvo/NetworkAdaptation.h>
#include <trelvo/Secret.h>
#include <trelvo/core/Directory.h>
#include <trelvo/core/DirectoryLinux.h>
#include <trelvo/core/ISystemLocationSettings.h>
#include <trelvo/core/ITime.h>
#include <trelvo/core/SystemInfo.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <new>
#include <string>

#include "tests/core/TempDirectory.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/Bytes.h"

namespace trelvo::test {
namespace {

/// How an operation tells that memory has run out.
enum class Tells {
  ByItsResult,  ///< It lets no exception out.
  ByBadAlloc,   ///< std::bad_alloc passes through it.
  Either,
};

/// An operation. `run` gives whether the operation reports success, having checked what it made.
struct Row {
  const char* name;
  Tells tells;
  std::function<bool()> run;
};

const std::string kLongName = "a name that is too long for a short string to hold it";

/// A directory that outlives the runs.
const TempDirectory& directory() {
  static const TempDirectory made;
  return made;
}

std::string testData(const std::string& name) {
  return std::string(TRELVO_TEST_DATA) + "/crypto/golden/" + name;
}

// --- paths and directories ---

bool concatenates() {
  return core::Directory::concat("/" + kLongName, kLongName) == "/" + kLongName + "/" + kLongName;
}

bool appendsAPathOrKeepsIt() {
  std::string base = kLongName;
  try {
    core::Directory::appendPath(base, "further");
  } catch (const std::bad_alloc&) {
    EXPECT_EQ(base, kLongName);
    throw;
  }
  return base == kLongName + "/further";
}

bool makesAndRemovesAPath() {
  std::string path;
  {
    const AllocationsSucceed succeed;
    path = directory() / kLongName;
  }
  std::string deep = path + "/b/c";
  const bool made = core::Directory::mkPath(deep);
  EXPECT_TRUE(made);
  const bool removed = core::Directory::rmPath(path);
  const AllocationsSucceed succeed;
  EXPECT_EQ(removed, !core::Directory::pathExists(path));
  return removed;
}

bool keepsItsPlaces() {
  std::string found;
  bool secure = true;
  core::Directory::setDefaultStoragePath(directory() / kLongName, false);
  core::Directory::getDefaultStoragePath(found, secure);
  return found == directory() / kLongName && !secure;
}

bool knowsTheCurrentDirectory() { return core::Directory::currentDir().front() == '/'; }

bool answersForADirectory() {
  const core::DirectoryLinux handle(directory().path());
  core::IDirectory::Entry entry;
  const bool found = handle.getEntry(".", entry) && handle.subItemExists(".", entry.type);
  return found && handle.path() == directory().path() && handle.openSubDir(".") &&
         core::IDirectory::getEntryWithPath(directory() / ".", entry);
}

bool opensAnEntry() {
  const std::string path = directory() / kLongName + ".file";
  if (!core::Directory::createFile(path, 0)) {
    return false;
  }
  const core::DirectoryLinux handle(directory().path());
  core::IDirectory::Entry entry;
  entry.name = kLongName + ".file";
  return static_cast<bool>(handle.openFile(entry));
}

bool findsEntries() {
  core::IDirectory::Entries all;
  core::IDirectory::Entries found;
  for (const char* const name : {"aa", "ab", "b"}) {
    core::IDirectory::Entry entry;
    entry.name = name;
    all.insert(entry);
  }
  core::IDirectory::findEntriesStartWith(all, "a", found);
  return found.size() == 2;
}

// --- the system ---

bool tellsOfTheDevice() {
  std::string text;
  return core::SystemInfo::getPlatformId(text) && core::SystemInfo::getModelId(text) &&
         core::SystemInfo::getImei(text) && core::SystemInfo::getHomeMcc(text) &&
         core::SystemInfo::getImsi(text) && core::SystemInfo::getMMF(text);
}

bool makesLocationSettings() {
  const std::unique_ptr<core::ISystemLocationSettings> settings(
      core::ISystemLocationSettings::create());
  return settings != nullptr;
}

bool makesANetworkAdaptation() {
  const std::unique_ptr<INetworkAdaptation> adaptation(NetworkAdaptation::create());
  return adaptation != nullptr;
}

// --- cryptography ---

using Store = gom::SharedPointer<ICryptographyUtility>;

Store openStore(Status& status) {
  bool generated = false;
  return Store(ICryptographyUtility::open("sltdb", status, generated));
}

bool enciphersWithAStoresKey() {
  Status status = StatusOk;
  const Store store = openStore(status);
  if (!store) {
    EXPECT_EQ(status, StatusFailed);
    return false;
  }
  const unsigned char text[] = "a text of more than one block";
  unsigned char* secret = nullptr;
  unsigned char* plain = nullptr;
  unsigned long secretSize = 0;
  unsigned long size = 0;
  bool done = store->encrypt(text, sizeof text, secret, secretSize) == StatusOk;
  EXPECT_EQ(done, secret != nullptr);
  done = done && store->decrypt(secret, secretSize, plain, size) == StatusOk;
  EXPECT_EQ(done, plain != nullptr);
  EXPECT_TRUE(!done || std::memcmp(plain, text, sizeof text) == 0);
  store->freeMemory(plain);
  store->freeMemory(secret);
  return done;
}

bool opensABlockFileWithAStoresKey() {
  Status status = StatusOk;
  const Store store = openStore(status);
  const auto file = core::Directory::createFile(directory() / "blocks", 0);
  if (!store || !file) {
    return false;
  }
  const gom::SharedPointer<ICryptoFile> blocks(ICryptoFile::open(file, *store));
  return blocks && blocks->write(reinterpret_cast<const unsigned char*>("ab"), 2) == 2 &&
         blocks->flush();
}

bool decryptsWithAProtectedKey() {
  const gom::SharedPointer<ICryptography> cryptography = ICryptography::open();
  const gom::SharedPointer<Secret> passphrase = Secret::create("open sesame");
  if (!cryptography || !passphrase) {
    return false;
  }
  Bytes block;
  std::string key;
  std::string publicKey;
  {
    const AllocationsSucceed succeed;
    key = std::string(TRELVO_TEST_DATA) + "/crypto/data/private_pkcs8_protected.pem";
    publicKey = std::string(TRELVO_TEST_DATA) + "/crypto/data/public.pem";
  }
  const unsigned char text[] = "text";
  Buffer secret;
  Buffer plain;
  if (cryptography->encryptRsaPublic(ReadOnlyBuffer(text, 4), publicKey.c_str(), secret,
                                     crypto::PaddingOaep) != StatusOk) {
    EXPECT_EQ(secret.size(), 0U);
    return false;
  }
  const Status status =
      cryptography->decryptRsaPrivate(static_cast<const ReadOnlyBuffer&>(secret), key.c_str(),
                                      passphrase, plain, crypto::PaddingOaep);
  EXPECT_EQ(plain.size(), status == StatusOk ? 4U : 0U) << status;
  return status == StatusOk;
}

// --- logging ---

/// A platform that allocates nothing itself.
class FrugalPlatform : public DebugCommon {
 public:
  void formatTime(char* text, bool) override { std::strcpy(text, "time"); }
  void formatFileTime(char* text, bool) override { std::strcpy(text, "now"); }
  bool isAbsolutePath(const char* path) override { return *path == '/'; }
  int currentThreadNumber() override { return 1; }
  void writePlatform(const char*, const char*, int, const char*, va_list) override { ++lines; }
  using DebugCommon::m_defaultSetting;
  int lines = 0;
};

class FrugalLog : public ILog {
 public:
  void puts(const char*) override {}
  bool flush() override { return true; }
};

/// A platform that logs to a file, made while there is memory.
std::unique_ptr<FrugalPlatform> platform() {
  const AllocationsSucceed succeed;
  auto made = std::make_unique<FrugalPlatform>();
  made->readConfig(nullptr, (directory().path() + "/").c_str(), "log_of_a_long_name.log");
  return made;
}

bool namesLogFiles() {
  const auto engine = platform();
  return engine->makeLogFileName("/var/log/", "a_long_name_%t_%p.log") ==
             "/var/log/a_long_name_now_unk.log" &&
         engine->makeInternalLogFileName() == directory() / "log_of_a_long_name.slog";
}

bool readsAConfiguration() {
  FrugalPlatform engine;
  return !engine.readConfig(nullptr, (directory().path() + "/").c_str(), kLongName.c_str()) &&
         engine.m_defaultSetting.file != nullptr;
}

/// What is told by std::bad_alloc is a text that the engine keeps: lines are not.
bool writesLines() {
  const auto engine = platform();
  const int before = engine->lines;
  engine->addRef();
  engine->writeLogEll(Debug::LogLevelNote, false, "a component that is not configured", "%d", 1);
  engine->writeXmlEll("%s", "nowhere");
  engine->setInternalLog(new FrugalLog);
  return engine->lines == before + 2;
}

bool startsAnInternalLog() {
  std::unique_ptr<FrugalPlatform> engine = platform();
  {
    const AllocationsSucceed succeed;
    core::Directory::setPreinstalledFilesPath(directory().path());
    core::Directory::copyFile(testData("public.pem"), directory() / "publog.pem");
    DebugCommon::mPimpl = engine.get();
  }
  const gom::SharedPointer<ICryptoLog> log(ICryptoLog::createDebugInternalLog());
  DebugCommon::mPimpl = nullptr;
  return static_cast<bool>(log);
}

const Row kRows[] = {
    {"DirectoryConcat", Tells::ByBadAlloc, concatenates},
    {"DirectoryAppendPath", Tells::ByBadAlloc, appendsAPathOrKeepsIt},
    {"DirectoryMkPathAndRmPath", Tells::Either, makesAndRemovesAPath},
    {"DirectoryPlaces", Tells::ByBadAlloc, keepsItsPlaces},
    {"DirectoryCurrentDir", Tells::ByBadAlloc, knowsTheCurrentDirectory},
    {"DirectoryLinuxAnswers", Tells::Either, answersForADirectory},
    {"DirectoryLinuxOpenFile", Tells::Either, opensAnEntry},
    {"DirectoryFindEntries", Tells::ByBadAlloc, findsEntries},
    {"SystemInfo", Tells::ByBadAlloc, tellsOfTheDevice},
    {"SystemLocationSettings", Tells::Either, makesLocationSettings},
    {"NetworkAdaptation", Tells::ByItsResult, makesANetworkAdaptation},
    {"CryptographyUtility", Tells::ByItsResult, enciphersWithAStoresKey},
    {"CryptoFileOfAStore", Tells::Either, opensABlockFileWithAStoresKey},
    {"RsaWithAProtectedKey", Tells::ByItsResult, decryptsWithAProtectedKey},
    {"DebugCommonNames", Tells::ByBadAlloc, namesLogFiles},
    {"DebugCommonReadConfig", Tells::ByBadAlloc, readsAConfiguration},
    {"DebugCommonLines", Tells::ByBadAlloc, writesLines},
    {"CryptoLogOfTheEngine", Tells::ByItsResult, startsAnInternalLog},
};

class EveryOperation : public ::testing::TestWithParam<Row> {
 protected:
  EveryOperation() {
    // What the library keeps for good, it has already.
    core::Directory::setDefaultStoragePath(directory() / kLongName, false);
    core::Directory::setPreinstalledFilesPath(directory() / kLongName);
    EXPECT_EQ(chdir(directory().path().c_str()), 0) << "a path that is long enough";
    for (const char* const name :
         {"ORVE_DEVICE_TERMINAL_MODEL", "ORVE_DEVICE_MANUFACTURER", "ORVE_DEVICE_FIRMWARE_VERSION",
          "ORVE_IMEI_FRAGMENT", "ORVE_SIM_MCC", "ORVE_SIM_MNC"}) {
      setenv(name, "a value too long for a short string", 1);
    }
    EXPECT_NE(core::ITime::timeSinceBoot(), -1) << "the provider is there";
  }
};

TEST_P(EveryOperation, TellsThatMemoryRanOutAndKeepsNothing) {
  const Row& row = GetParam();
  bool done = false;
  unsigned int told = 0;
  EXPECT_GT(everyAllocationFails([&] {
              done = false;
              try {
                done = row.run();
                told += done ? 0 : 1;
                EXPECT_TRUE(done || row.tells != Tells::ByBadAlloc);
              } catch (const std::bad_alloc&) {
                ++told;
                EXPECT_NE(row.tells, Tells::ByItsResult);
              }
            }),
            0U);
  EXPECT_TRUE(done) << "the run that gets through";
  EXPECT_GT(told, 0U);
}

void PrintTo(const Row& row, std::ostream* out) {  // NOLINT(readability-identifier-naming)
  *out << row.name;
}

std::string nameOf(const ::testing::TestParamInfo<Row>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(Each, EveryOperation, ::testing::ValuesIn(kRows), nameOf);

}  // namespace
}  // namespace trelvo::test
