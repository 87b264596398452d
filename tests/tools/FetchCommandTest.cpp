#include <sys/stat.h>

#include <openssl/evp.h>

#include <memory>
#include <sstream>
#include <stdexcept>

#include <trelvo/ICryptoFile.h>
#include <trelvo/ICryptographyUtility.h>
#include <trelvo/core/Directory.h>

#include "tests/tools/FetchFixture.h"
#include "tests/tools/ToolProcess.h"

namespace trelvo::tool {
namespace {

using test::answer;
using test::found;

// The check value that every description of CRC-32 gives.
constexpr const char* kCheckText = "123456789";
constexpr const char* kCheckCrc = "cbf43926";

constexpr const char* kKey = "0123456789abcdef";
constexpr const char* kIv = "fedcba9876543210";

const unsigned char* bytesOf(const std::string& text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

/// AES-128-CBC by OpenSSL itself.
std::string enciphered(const std::string& text) {
  const std::unique_ptr<EVP_CIPHER_CTX, decltype(&::EVP_CIPHER_CTX_free)> context(
      ::EVP_CIPHER_CTX_new(), &::EVP_CIPHER_CTX_free);
  std::string result(text.size() + 16, '\0');
  auto* const target = reinterpret_cast<unsigned char*>(result.data());
  int size = 0;
  int last = 0;
  ::EVP_EncryptInit_ex(context.get(), ::EVP_aes_128_cbc(), nullptr, bytesOf(kKey), bytesOf(kIv));
  ::EVP_EncryptUpdate(context.get(), target, &size, bytesOf(text), static_cast<int>(text.size()));
  ::EVP_EncryptFinal_ex(context.get(), target + size, &last);
  result.resize(static_cast<std::size_t>(size) + static_cast<std::size_t>(last));
  return result;
}

TEST_F(FetchTest, WritesTheBodyAndSaysHowLongItIs) {
  const std::string body = test::pattern(300000);
  serveInTurn({found(body)});
  const Outcome outcome = fetch();
  EXPECT_EQ(outcome.status, kExitGood);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "trelvo: wrote 300000 bytes\n");
  EXPECT_EQ(content(), body);
  EXPECT_EQ(leftovers(), std::vector<std::string>{"output"});
  EXPECT_EQ(questions.all(), std::vector<std::string>{"GET /file"});
}

TEST_F(FetchTest, AnEmptyBodyGivesAnEmptyFile) {
  serveInTurn({found("")});
  EXPECT_EQ(fetch().err, "trelvo: wrote 0 bytes\n");
  EXPECT_EQ(std::filesystem::file_size(output), 0u);
}

TEST_F(FetchTest, ReplacesAnOlderFile) {
  test::writeFile(output, "an older and longer content");
  serveInTurn({found("new")});
  EXPECT_EQ(fetch().status, kExitGood);
  EXPECT_EQ(content(), "new");
}

TEST_F(FetchTest, ASymbolicLinkStays) {
  const std::string target = file("target", "old");
  std::filesystem::create_symlink(target, output);
  serveInTurn({found("new")});
  EXPECT_EQ(fetch().status, kExitGood);
  EXPECT_TRUE(std::filesystem::is_symlink(output));
  EXPECT_EQ(test::contentOfFile(target), "new");
}

TEST_F(FetchTest, AMissingFileIsReported) {
  serveInTurn({answer("404 Not Found", "Content-Length: 4\r\n", "gone")});
  expectFailure(fetch(), "the server has no such file; check the path");
}

TEST_F(FetchTest, AFailureLeavesAnOlderFileAlone) {
  test::writeFile(output, "older");
  serveInTurn({answer("404 Not Found", "Content-Length: 4\r\n", "gone")});
  EXPECT_EQ(fetch().status, kExitFailed);
  EXPECT_EQ(content(), "older");
  EXPECT_EQ(leftovers(), std::vector<std::string>{"output"});
}

TEST_F(FetchTest, ARedirectIsNotFollowed) {
  serveInTurn({answer("302 Found", "Location: /other\r\nContent-Length: 0\r\n", "")});
  expectFailure(fetch(),
                "the server answers 302; redirects are not followed, ask for the address that it "
                "has moved to");
  EXPECT_EQ(questions.all().size(), 1u);
}

TEST_F(FetchTest, AFailingServerIsReported) {
  serveInTurn({answer("503 Service Unavailable", "Content-Length: 0\r\n", "")});
  expectFailure(fetch(), "the server answers 503; try again later");
}

TEST_F(FetchTest, AnotherAnswerIsReported) {
  serveInTurn({answer("403 Forbidden", "Content-Length: 0\r\n", "")});
  expectFailure(fetch(), "the server answers 403; check the address");
}

TEST_F(FetchTest, AServerThatSaysNothingIsReported) {
  serve([](const test::Peer& peer) { peer.request(); });
  expectFailure(fetch(), "no answer; check the address and the network");
}

TEST_F(FetchTest, ATruncatedBodyIsReported) {
  serveInTurn({answer("200 OK", "Content-Length: 100\r\n", "not so long")});
  expectFailure(fetch(), "is shorter than the server said; fetch it again");
}

TEST_F(FetchTest, ATruncatedBodyWithoutAPlainLengthIsReported) {
  serveInTurn({answer("200 OK", "content-length: 100\r\n", "not so long")});
  expectFailure(fetch(), "the transfer broke off; fetch it again");
}

TEST_F(FetchTest, ARightChecksumPasses) {
  for (const std::string crc : {"cbf43926", "0xCBF43926"}) {
    serveInTurn({found(kCheckText)});
    EXPECT_EQ(fetch({"--crc", crc}).status, kExitGood) << crc;
    EXPECT_EQ(content(), kCheckText);
  }
}

TEST_F(FetchTest, AWrongChecksumIsReported) {
  serveInTurn({found(kCheckText)});
  expectFailure(fetch({"--crc", "cbf43927"}),
                "has another checksum or length than expected; check --crc, or fetch it again");
}

TEST_F(FetchTest, ABadChecksumIsWrongUsage) {
  serveInTurn({});
  for (const std::string crc : {"", "0x", "xyz", "12345678x", "123456789", "-1", "0", "0x0"}) {
    EXPECT_EQ(fetch({"--crc", crc}).status, kExitUsage) << crc;
  }
  EXPECT_EQ(fetch({"--crc", "0"}).err,
            "trelvo: --crc: 0 stands for no checksum; leave it out\n"
            "trelvo: run with --help for more\n");
}

TEST_F(FetchTest, DeciphersWithKeysOfBothForms) {
  const std::string body = test::pattern(70000);
  const std::string hexKey = file("key.hex", "30313233343536373839616263646566\n");
  const std::string hexIv = file("iv.hex", "66656463626139383736353433323130");
  for (const bool hex : {false, true}) {
    serveInTurn({found(enciphered(body))});
    const Outcome outcome = fetch({"--decrypt-key", hex ? hexKey : file("key", kKey),
                                   "--decrypt-iv", hex ? hexIv : file("iv", kIv)});
    EXPECT_EQ(outcome.status, kExitGood) << outcome.err;
    EXPECT_EQ(outcome.err, "trelvo: wrote 70000 bytes\n");
    EXPECT_EQ(content(), body);
  }
}

TEST_F(FetchTest, TheChecksumIsThatOfTheDecipheredBody) {
  serveInTurn({found(enciphered(kCheckText))});
  const Outcome outcome = fetch(
      {"--decrypt-key", file("key", kKey), "--decrypt-iv", file("iv", kIv), "--crc", kCheckCrc});
  EXPECT_EQ(outcome.status, kExitGood) << outcome.err;
  EXPECT_EQ(content(), kCheckText);
}

TEST_F(FetchTest, ABodyThatDoesNotFitTheKeyIsReported) {
  serveInTurn({found("fifteen bytes..")});
  expectFailure(fetch({"--decrypt-key", file("key", kKey), "--decrypt-iv", file("iv", kIv)}),
                "the body broke off or does not fit the key; check --decrypt-key and --decrypt-iv");
}

TEST_F(FetchTest, AMissingFileIsReportedWithDecryptionToo) {
  serveInTurn({answer("404 Not Found", "Content-Length: 0\r\n", "")});
  expectFailure(fetch({"--decrypt-key", file("key", kKey), "--decrypt-iv", file("iv", kIv)}),
                "the server has no such file; check the path");
}

TEST_F(FetchTest, AFileThatIsNoKeyIsReported) {
  serveInTurn({});
  const std::string iv = file("iv", kIv);
  for (const std::string& content :
       {std::string(), std::string(15, 'k'), std::string(17, 'k'), std::string(31, 'a'),
        std::string(32, 'x'), std::string(32, 'a') + "\n\n", std::string(100000, 'a')}) {
    const std::string key = file("key", content);
    const Outcome outcome = fetch({"--decrypt-key", key, "--decrypt-iv", iv});
    EXPECT_EQ(outcome.status, kExitFailed);
    EXPECT_EQ(outcome.err, "trelvo: " + key +
                               ": is no key; it has to hold 16 bytes, or 32 hexadecimal digits\n");
  }
  EXPECT_EQ(fetch({"--decrypt-key", iv, "--decrypt-iv", "/nonexistent"}).err,
            "trelvo: /nonexistent: No such file or directory\n");
  EXPECT_EQ(fetch({"--decrypt-key", "/tmp", "--decrypt-iv", iv}).err,
            "trelvo: /tmp: Is a directory\n");
  EXPECT_EQ(leftovers(), std::vector<std::string>());
  EXPECT_EQ(questions.all(), std::vector<std::string>());
}

/// What a sealed file holds, read through the library.
std::string unsealed(const std::string& path, const char* name, std::size_t size) {
  Status status = StatusFailed;
  bool isNew = true;
  const gom::SharedPointer<ICryptographyUtility> store(
      ICryptographyUtility::open(name, status, isNew));
  EXPECT_TRUE(store);
  EXPECT_FALSE(isNew);
  const gom::SharedPointer<ICryptoFile> file(
      ICryptoFile::open(core::Directory::openFile(path, 0, true), *store));
  std::string text(size, '\0');
  EXPECT_EQ(
      file->read(reinterpret_cast<unsigned char*>(text.data()), static_cast<unsigned int>(size)),
      size);
  return text;
}

TEST_F(FetchTest, SealsForItsOwnerOnly) {
  ::setenv("ORVE_UNIQUE_DEVICE_ID", "a-device", 1);
  const std::string body = test::pattern(5000);
  serveInTurn({found(body)});
  std::filesystem::create_directory(sidePath("keys"));
  const Outcome outcome = fetch({"--seal", "tiles", "--storage", sidePath("keys")});
  EXPECT_EQ(outcome.status, kExitGood) << outcome.err;
  EXPECT_EQ(outcome.err, "trelvo: wrote 5000 bytes\n");
  EXPECT_NE(content(), body);
  EXPECT_EQ(unsealed(output, "tiles", 5000), body);
  struct stat status = {};
  EXPECT_EQ(::stat(output.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0600u);
  EXPECT_FALSE(std::filesystem::is_empty(sidePath("keys")));
}

TEST_F(FetchTest, DeciphersAndSealsAtOnce) {
  ::setenv("ORVE_UNIQUE_DEVICE_ID", "a-device", 1);
  const std::string body = test::pattern(5000);
  serveInTurn({found(enciphered(body))});
  const Outcome outcome = fetch({"--decrypt-key", file("key", kKey), "--decrypt-iv",
                                 file("iv", kIv), "--seal", "tiles", "--storage", sidePath("")});
  EXPECT_EQ(outcome.status, kExitGood) << outcome.err;
  EXPECT_EQ(unsealed(output, "tiles", 5000), body);
}

TEST_F(FetchTest, SealingNeedsADevice) {
  ::unsetenv("ORVE_UNIQUE_DEVICE_ID");
  serveInTurn({});
  const Outcome outcome = fetch({"--seal", "tiles", "--storage", sidePath("")});
  EXPECT_EQ(outcome.status, kExitFailed);
  EXPECT_NE(outcome.err.find("set ORVE_UNIQUE_DEVICE_ID"), std::string::npos) << outcome.err;
  EXPECT_EQ(leftovers(), std::vector<std::string>());
}

TEST_F(FetchTest, SealingNeedsAPlaceForTheKey) {
  ::setenv("ORVE_UNIQUE_DEVICE_ID", "a-device", 1);
  serveInTurn({});
  const Outcome outcome = fetch({"--seal", "tiles", "--storage", "/nonexistent"});
  EXPECT_EQ(outcome.status, kExitFailed);
  EXPECT_EQ(outcome.err.rfind("trelvo: /nonexistent: cannot keep a key there; ", 0), 0u)
      << outcome.err;
  EXPECT_EQ(leftovers(), std::vector<std::string>());
}

TEST_F(FetchTest, AllowIsRefusedWhereTheKindCannotBeTold) {
  serveInTurn({});
  expectFailure(fetch({"--allow", "wlan,cellular"}),
                "what kind of connection there is cannot be told without a system bus; leave "
                "--allow out");
}

TEST_F(FetchTest, CheckTellsTheDate) {
  serveInTurn(
      {answer("200 OK", "Content-Length: 9\r\nLast-Modified: Fri, 13 Feb 2009 23:31:30 GMT\r\n",
              kCheckText)});
  const Outcome outcome = runTool({"fetch", url(), "--check"});
  EXPECT_EQ(outcome.status, kExitGood);
  EXPECT_EQ(outcome.out, url() + ": available, last changed 2009-02-13T23:31:30Z\n");
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(questions.all(), std::vector<std::string>{"HEAD /file"});
}

TEST_F(FetchTest, CheckStandsAServerWithoutDates) {
  serveInTurn({found(kCheckText), found(kCheckText)});
  EXPECT_EQ(runTool({"fetch", url(), "--check"}).out,
            url() + ": available, last changed at an unknown time\n");
  EXPECT_EQ(runTool({"fetch", url(), "--check", "--json"}).out,
            "{\"url\":\"" + url() + "\",\"available\":true,\"code\":200,\"lastChanged\":null}\n");
}

TEST_F(FetchTest, CheckOfAMissingFileFails) {
  const std::string missing = answer("404 Not Found", "Content-Length: 0\r\n", "");
  serveInTurn({missing, missing});
  expectFailure(runTool({"fetch", url(), "--check"}),
                "the server has no such file; check the path");
  const Outcome outcome = runTool({"fetch", url(), "--check", "--json"});
  EXPECT_EQ(outcome.status, kExitFailed);
  EXPECT_EQ(outcome.out,
            "{\"url\":\"" + url() + "\",\"available\":false,\"code\":404,\"lastChanged\":null}\n");
}

TEST_F(FetchTest, CheckTellsTheDateAsJson) {
  serveInTurn({answer("200 OK", "Last-Modified: Fri, 13 Feb 2009 23:31:30 GMT\r\n", "")});
  const Outcome outcome = runTool({"fetch", url(), "--check", "--json"});
  EXPECT_EQ(outcome.status, kExitGood);
  EXPECT_EQ(outcome.out, "{\"url\":\"" + url() +
                             "\",\"available\":true,\"code\":200,\"lastChanged\":{\"value\":"
                             "1234567890,\"utc\":\"2009-02-13T23:31:30Z\"}}\n");
}

TEST_F(FetchTest, CheckWithoutAnAnswerFails) {
  serve([](const test::Peer& peer) { peer.request(); });
  expectFailure(runTool({"fetch", url(), "--check"}),
                "no answer; check the address and the network");
}

TEST_F(FetchTest, WrongUsageGives2) {
  serveInTurn({});
  const std::string key = file("key", kKey);
  const std::vector<std::vector<std::string>> lines = {
      {"fetch"},
      {"fetch", url()},
      {"fetch", url(), "-o", output, "more"},
      {"fetch", url(), "-o", "-"},
      {"fetch", url(), "-o", output, "--check"},
      {"fetch", url(), "--check", "--crc", "1"},
      {"fetch", url(), "--check", "--seal", "x"},
      {"fetch", url(), "--check", "--decrypt-key", key, "--decrypt-iv", key},
      {"fetch", url(), "-o", output, "--json"},
      {"fetch", url(), "-o", output, "--decrypt-key", key},
      {"fetch", url(), "-o", output, "--decrypt-iv", key},
      {"fetch", url(), "-o", output, "--storage", "/tmp"},
      {"fetch", url(), "-o", output, "--seal", ""},
      {"fetch", url(), "-o", output, "--allow", "ethernet"},
      {"fetch", url(), "-o", output, "--allow", "wlan,ethernet"},
      {"fetch", "https://127.0.0.1/", "-o", output},
      {"fetch", "127.0.0.1/", "-o", output},
  };
  for (const std::vector<std::string>& line : lines) {
    const Outcome outcome = runTool(line);
    EXPECT_EQ(outcome.status, kExitUsage) << ::testing::PrintToString(line);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err.rfind("trelvo: ", 0), 0u) << outcome.err;
  }
  EXPECT_EQ(questions.all(), std::vector<std::string>());
}

TEST_F(FetchTest, HttpsIsRefusedClearly) {
  EXPECT_EQ(runTool({"fetch", "https://127.0.0.1/f", "-o", output}).err,
            "trelvo: https://127.0.0.1/f: only plain http is spoken; give an http:// address of "
            "the file\n"
            "trelvo: run with --help for more\n");
}

TEST_F(FetchTest, AnOutputThatCannotBeWrittenIsReported) {
  serveInTurn({});
  EXPECT_EQ(runTool({"fetch", url(), "-o", "/nonexistent/file"}).err,
            "trelvo: /nonexistent/file: No such file or directory\n");
  for (const std::string other : {"/dev/null", "/tmp"}) {
    const Outcome outcome = runTool({"fetch", url(), "-o", other});
    EXPECT_EQ(outcome.status, kExitFailed);
    EXPECT_EQ(outcome.err, "trelvo: " + other + ": is no regular file; name one, or a new one\n");
  }
  EXPECT_EQ(questions.all(), std::vector<std::string>());
}

TEST_F(FetchTest, HelpHasAnExampleAndTellsOfContainers) {
  const Outcome outcome = runTool({"fetch", "--help"});
  EXPECT_EQ(outcome.status, kExitGood);
  EXPECT_NE(outcome.out.find("  trelvo fetch http://"), std::string::npos);
  EXPECT_NE(outcome.out.find("as in a container"), std::string::npos);
}

/// The program itself, in a transfer of which only a part ever comes.
class FetchProgram : public FetchTest {
 protected:
  /// Serves the start of a body and then nothing.
  void serveAStart() {
    serve([](const test::Peer& peer) {
      peer.request();
      peer.send("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nstart");
      peer.waitForClose();
    });
  }

  /// Waits until the part of the body is in the temporary file.
  void waitForThePart() const {
    for (bool found = false; !found;) {
      for (const std::string& name : leftovers()) {
        std::error_code gone;
        const auto path = std::filesystem::path(output).replace_filename(name);
        found = found || (name != "output" && std::filesystem::file_size(path, gone) == 5);
      }
      std::this_thread::yield();
    }
  }
};

TEST_F(FetchProgram, AnInterruptLeavesNothingBehind) {
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    test::writeFile(output, "older");
    serveAStart();
    ToolProcess program({"fetch", url(), "-o", output});
    waitForThePart();
    program.signal(number);
    const Outcome outcome = program.finish();
    EXPECT_EQ(outcome.status, kExitFailed);
    EXPECT_EQ(outcome.err, "trelvo: " + url() + ": cancelled; fetch it again\n");
    EXPECT_EQ(content(), "older");
    EXPECT_EQ(leftovers(), std::vector<std::string>{"output"});
  }
}

TEST_F(FetchProgram, AnInterruptEndsACheck) {
  std::atomic<bool> asked = false;
  serve([&asked](const test::Peer& peer) {
    peer.request();
    asked = true;
    peer.waitForClose();
  });
  ToolProcess program({"fetch", url(), "--check"});
  while (!asked) {
    std::this_thread::yield();
  }
  program.signal(SIGINT);
  const Outcome outcome = program.finish();
  EXPECT_EQ(outcome.status, kExitFailed);
  EXPECT_EQ(outcome.err, "trelvo: " + url() + ": cancelled; fetch it again\n");
}

TEST_F(FetchProgram, AFullDiskIsSeen) {
  serveInTurn({found(test::pattern(300000))});
  // A limit on the size of files stands for the disk.
  const std::string command = "trap '' XFSZ; ulimit -f 8; '" TRELVO_PROGRAM "' fetch " + url() +
                              " -o " + output + " 2>" + sidePath("err");
  const int status = std::system(command.c_str());
  EXPECT_EQ(WEXITSTATUS(status), kExitFailed);
  EXPECT_EQ(test::contentOfFile(sidePath("err")),
            "trelvo: " + output + ": could not be written whole; is the disk full?\n");
  EXPECT_EQ(leftovers(), std::vector<std::string>());
}

TEST_F(FetchProgram, ShowsNoBarWithoutATerminal) {
  const std::string body(1000, 'b');
  serve([&body](const test::Peer& peer) {
    peer.request();
    peer.send(found(body));
  });
  ToolProcess program({"fetch", url(), "-o", output});
  EXPECT_EQ(program.finish().err, "trelvo: wrote 1000 bytes\n");
}

}  // namespace
}  // namespace trelvo::tool
