#include <gtest/gtest.h>
#include <sys/stat.h>
#include <trelvo/CryptoLog.h>
#include <trelvo/DebugCommon.h>
#include <trelvo/ICryptoLog.h>
#include <trelvo/core/Directory.h>

#include <cstdio>
#include <memory>
#include <random>
#include <thread>

#include "tests/crypto/Slog.h"

namespace trelvo::test {
namespace {

using Log = gom::SharedPointer<ICryptoLog>;

Log createLog(const std::string& path) {
  Log log = ICryptoLog::create(path.c_str(), publicKey().c_str());
  EXPECT_TRUE(log);
  return log;
}

bool exists(const std::string& path) { return core::Directory::pathExists(path); }

unsigned int modeOf(const std::string& path) {
  struct stat status = {};
  EXPECT_EQ(::stat(path.c_str(), &status), 0);
  return status.st_mode & 0777U;
}

/// What the other implementation reads in a log.
std::string textByReference(const std::string& logPath) {
  const std::string command = "python3 '" TRELVO_TEST_DATA
                              "/reference/encrypted_files_reference.py' decrypt '" +
                              logPath + "' '" + privateKey() + "'";
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(::popen(command.c_str(), "r"), &::pclose);
  std::string text;
  char part[4096];
  for (std::size_t got = 1; got != 0;) {
    got = std::fread(part, 1, sizeof part, pipe.get());
    text.append(part, got);
  }
  return text;
}

std::string incompressible(std::size_t size) {
  std::mt19937 random(5);
  std::string text(size, ' ');
  for (char& c : text) {
    c = static_cast<char>('!' + random() % 90);
  }
  return text;
}

class GoldenLog : public ::testing::TestWithParam<std::string> {};

TEST_P(GoldenLog, DecryptsToItsText) {
  const TempDirectory directory;
  const std::string text = directory / "text";
  EXPECT_EQ(decryptLog(goldenFile(GetParam() + ".slog"), text), StatusOk);
  EXPECT_EQ(bytesOfFile(text), bytesOfFile(goldenFile(GetParam() + ".txt")));
}

INSTANTIATE_TEST_SUITE_P(All, GoldenLog, ::testing::Values("complete", "killed", "long", "empty"),
                         [](const auto& test) { return test.param; });

TEST(CryptoLog, WithoutTextItHoldsTheHeadAndAnEmptyStream) {
  const TempDirectory directory;
  const std::string path = directory / "a.slog";
  createLog(path).clear();
  const Bytes content = bytesOfFile(path);
  ASSERT_EQ(content.size(), 2U + 256U + 8U);
  EXPECT_EQ(head(content, 2), bytes("00 01"));
  EXPECT_EQ(textOf(path), "");
  EXPECT_EQ(textByReference(path), "");
}

TEST(CryptoLog, TheTextIsWhatWasPutWithNothingInBetween) {
  const TempDirectory directory;
  const std::string path = directory / "a.slog";
  Log log = createLog(path);
  log->puts("one");
  log->puts("");
  log->puts(nullptr);
  log->puts(" two\n");
  EXPECT_TRUE(log->flush());
  log->puts("three");
  log.clear();
  EXPECT_EQ(textOf(path), "one two\nthree");
  EXPECT_EQ(textByReference(path), "one two\nthree");
}

TEST(CryptoLog, TextLongerThanThePumpComesThrough) {
  const TempDirectory directory;
  const std::string path = directory / "a.slog";
  const std::string text = incompressible(300000);
  Log log = createLog(path);
  log->puts(text.c_str());
  EXPECT_TRUE(log->flush());
  log->puts(text.c_str());
  log.clear();
  EXPECT_EQ(textOf(path), text + text);
}

TEST(CryptoLog, TwoLogsForOneKeyDifferInHeadAndBody) {
  const TempDirectory directory;
  createLog(directory / "a.slog").clear();
  createLog(directory / "b.slog").clear();
  const Bytes a = bytesOfFile(directory / "a.slog");
  const Bytes b = bytesOfFile(directory / "b.slog");
  EXPECT_NE(slice(a, 2, 258), slice(b, 2, 258));
  EXPECT_NE(slice(a, 258, 266), slice(b, 258, 266));
}

TEST(CryptoLog, IsReadableFromItsFirstMoment) {
  const TempDirectory directory;
  const std::string path = directory / "a.slog";
  const Log log = createLog(path);
  EXPECT_EQ(bytesOfFile(path).size(), 258U);
  EXPECT_EQ(textOf(path), "");
}

TEST(CryptoLog, FlushMakesEverythingReadableWhileTheLogIsOpen) {
  const TempDirectory directory;
  const std::string path = directory / "a.slog";
  const Log log = createLog(path);
  std::string text;
  for (int i = 0; i < 40; ++i) {
    const std::string line = "line " + std::to_string(i) + incompressible(70) + "\n";
    log->puts(line.c_str());
    text += line;
    ASSERT_TRUE(log->flush());
    ASSERT_EQ(textOf(path), text);
  }
  EXPECT_TRUE(log->flush());
  EXPECT_EQ(textOf(path), text);
}

TEST(CryptoLog, ANewFileIsForItsOwnerAlone) {
  const TempDirectory directory;
  const std::string path = directory / "a.slog";
  createLog(path).clear();
  EXPECT_EQ(modeOf(path), 0600U);
}

TEST(CryptoLog, AnExistingFileIsEmptiedAndKeepsItsMode) {
  const TempDirectory directory;
  const std::string path = directory / "a.slog";
  putFile(path, Bytes(5000, 'x'));
  ASSERT_EQ(::chmod(path.c_str(), 0640), 0);
  createLog(path).clear();
  EXPECT_EQ(modeOf(path), 0640U);
  EXPECT_EQ(textOf(path), "");
}

TEST(CryptoLog, CreateGivesNullOnAnyFailureAndWithoutAKeyNoFile) {
  const TempDirectory directory;
  const std::string path = directory / "a.slog";
  EXPECT_EQ(ICryptoLog::create(path.c_str(), (directory / "missing.pem").c_str()), nullptr);
  EXPECT_EQ(ICryptoLog::create(path.c_str(), goldenFile("complete.txt").c_str()), nullptr);
  EXPECT_EQ(ICryptoLog::create(path.c_str(), nullptr), nullptr);
  EXPECT_FALSE(exists(path));
  EXPECT_EQ(ICryptoLog::create(nullptr, publicKey().c_str()), nullptr);
  EXPECT_EQ(ICryptoLog::create("", publicKey().c_str()), nullptr);
  EXPECT_EQ(ICryptoLog::create((directory / "no/such.slog").c_str(), publicKey().c_str()), nullptr);
  EXPECT_EQ(ICryptoLog::create("/dev/full", publicKey().c_str()), nullptr);
}

TEST(CryptoLog, DiesThroughTheInterfaceThatTheLoggerHolds) {
  const TempDirectory directory;
  const std::string path = directory / "a.slog";
  ICryptoLog* const log = ICryptoLog::create(path.c_str(), publicKey().c_str());
  ASSERT_NE(log, nullptr);
  EXPECT_EQ(log->referenceCount(), 0);
  const std::unique_ptr<ILog> owner(log);
  owner->puts("text");
}

TEST(CryptoLogDecrypt, AWrongPrivateKeyGivesKeyFailureAndNoOutput) {
  const TempDirectory directory;
  const std::string text = directory / "text";
  for (const std::string& key :
       {goldenFile("other_private.pem"), publicKey(), directory / "missing.pem"}) {
    EXPECT_EQ(
        ICryptoLog::decrypt(goldenFile("complete.slog").c_str(), text.c_str(), key.c_str(), {}),
        StatusKeyFailure);
  }
  EXPECT_EQ(ICryptoLog::decrypt(goldenFile("complete.slog").c_str(), text.c_str(), nullptr, {}),
            StatusKeyFailure);
  EXPECT_FALSE(exists(text));
}

TEST(CryptoLogDecrypt, AProtectedKeyWantsItsPassPhrase) {
  const TempDirectory directory;
  const std::string data = std::string(TRELVO_TEST_DATA) + "/crypto/data/";
  const std::string path = directory / "a.slog";
  Log log = ICryptoLog::create(path.c_str(), (data + "public.pem").c_str());
  ASSERT_TRUE(log);
  log->puts("text");
  log.clear();
  const std::string key = data + "private_pkcs8_protected.pem";
  const std::string text = directory / "text";
  EXPECT_EQ(ICryptoLog::decrypt(path.c_str(), text.c_str(), key.c_str(), {}), StatusKeyFailure);
  EXPECT_EQ(
      ICryptoLog::decrypt(path.c_str(), text.c_str(), key.c_str(), Secret::create("not that")),
      StatusKeyFailure);
  EXPECT_FALSE(exists(text));
  EXPECT_EQ(
      ICryptoLog::decrypt(path.c_str(), text.c_str(), key.c_str(), Secret::create("open sesame")),
      StatusOk);
  EXPECT_EQ(bytesOfFile(text), bytes("74 65 78 74"));  // "text"
}

TEST(CryptoLogDecrypt, AKeyBlockUnder32BytesGivesKeyFailure) {
  const TempDirectory directory;
  EXPECT_EQ(decryptLog(goldenFile("short_key.slog"), directory / "text"), StatusKeyFailure);
  EXPECT_FALSE(exists(directory / "text"));
}

TEST(CryptoLogDecrypt, MissingFilesGiveFileError) {
  const TempDirectory directory;
  EXPECT_EQ(decryptLog(directory / "missing.slog", directory / "text"), StatusFileError);
  EXPECT_FALSE(exists(directory / "text"));
  EXPECT_EQ(decryptLog(goldenFile("complete.slog"), directory / "no/such"), StatusFileError);
  EXPECT_EQ(ICryptoLog::decrypt(nullptr, "x", privateKey().c_str(), {}), StatusFileError);
  EXPECT_EQ(
      ICryptoLog::decrypt(goldenFile("complete.slog").c_str(), nullptr, privateKey().c_str(), {}),
      StatusFileError);
}

TEST(CryptoLogDecrypt, AFullDiskGivesFileError) {
  EXPECT_EQ(decryptLog(goldenFile("complete.slog"), "/dev/full"), StatusFileError);
  EXPECT_EQ(decryptLog(goldenFile("long.slog"), "/dev/full"), StatusFileError);
}

/// The least that makes a logging engine.
class Engine : public DebugCommon {
 public:
  explicit Engine(const std::string& fileName) { m_defaultSetting.fileName = fileName; }
  void formatTime(char* text, bool) override { *text = '\0'; }
  void formatFileTime(char* text, bool) override { *text = '\0'; }
  bool isAbsolutePath(const char* path) override { return *path == '/'; }
  int currentThreadNumber() override { return 1; }
  void writePlatform(const char*, const char*, int, const char*, va_list) override {}
};

/// Makes `engine` the logging instance, and the golden key the one that is delivered.
class Logging {
 public:
  Logging(DebugCommon* engine, const std::string& keyDirectory) {
    core::Directory::setPreinstalledFilesPath(keyDirectory);
    DebugCommon::mPimpl = engine;
  }
  ~Logging() {
    DebugCommon::mPimpl = nullptr;
    core::Directory::setPreinstalledFilesPath("/usr/share/qenl");
  }
  Logging(const Logging&) = delete;
  Logging& operator=(const Logging&) = delete;
};

TEST(InternalLog, StandsBesideTheDefaultFileWithTheDeliveredKey) {
  const TempDirectory directory;
  std::filesystem::copy_file(publicKey(), directory / "publog.pem");
  Engine engine(directory / "app.log");
  const Logging logging(&engine, directory.path());
  Log log = ICryptoLog::createDebugInternalLog();
  ASSERT_TRUE(log);
  log->puts("text\n");
  log.clear();
  EXPECT_EQ(textOf(directory / "app.slog"), "text\n");
}

TEST(InternalLog, IsNullWithoutAnEngineAKeyOrALogFile) {
  const TempDirectory directory;
  Engine engine(directory / "app.log");
  Engine console("console");
  {
    const Logging logging(&engine, directory.path());
    EXPECT_EQ(ICryptoLog::createDebugInternalLog(), nullptr);
  }
  std::filesystem::copy_file(publicKey(), directory / "publog.pem");
  {
    const Logging logging(&console, directory.path());
    EXPECT_EQ(ICryptoLog::createDebugInternalLog(), nullptr);
  }
  const Logging logging(nullptr, directory.path());
  EXPECT_EQ(ICryptoLog::createDebugInternalLog(), nullptr);
  EXPECT_TRUE(DebugCommon::lock());  // nobody has kept it
  DebugCommon::unlock();
}

TEST(CryptoLog, ThreadsHaveTheirOwn) {
  const TempDirectory directory;
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&directory, i] {
      const std::string path = directory / (std::to_string(i) + ".slog");
      Log log = createLog(path);
      const std::string text = incompressible(20000);
      log->puts(text.c_str());
      EXPECT_TRUE(log->flush());
      log.clear();
      EXPECT_EQ(textOf(path), text);
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
}

}  // namespace
}  // namespace trelvo::test
