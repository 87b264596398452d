#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "tests/tools/ImportInput.h"
#include "tests/tools/ToolFixture.h"

namespace trelvo::tool {
namespace {

namespace fs = std::filesystem;

constexpr const char* kFix =
    "$GPRMC,132820.60,A,4134.49821229,N,09345.03351845,W,3.252,92.308,180320,11.5985,E,D*1A\r\n";

/// A folder of its own for each test.
class ImportCommand : public ::testing::Test {
 protected:
  ImportCommand() {
    char name[] = "/tmp/trelvo-import-XXXXXX";
    m_folder = ::mkdtemp(name);
  }
  ~ImportCommand() override { fs::remove_all(m_folder); }

  std::string path(const std::string& name) const { return m_folder / name; }

  std::string file(const std::string& name, const std::string& content) const {
    std::ofstream(path(name), std::ios::binary) << content;
    return path(name);
  }

  static Bytes bytesOf(const std::string& name) {
    std::ifstream stream(name, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(stream), {});
  }

  size_t fileCount() const {
    return static_cast<size_t>(
        std::distance(fs::directory_iterator(m_folder), fs::directory_iterator()));
  }

  fs::path m_folder;
};

// Container (key 1, 2 properties): list 315 of one object (key 21, 2 properties): time stamp 205,
// measurement data 130; measurement id 317.
TEST_F(ImportCommand, WritesTheseBytes) {
  const std::string log = file("a.log", kFix);
  const Outcome outcome = runTool({"import", log, "-o", path("a.trelvo")});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out, "");
  const Wire expected = Wire()
                            .object(1, 2)
                            .value(15, 315)
                            .u32(1)
                            .value(13, 0)
                            .object(21, 2)
                            .value(6, 205)
                            .u32(1584538100)
                            .value(14, 130)
                            .u16(130)
                            .u8(1)
                            .u32(0xA00)
                            .u8(1)
                            .u16(0x03)
                            .u32(0x3B20FC15)
                            .u32(0xBD553B4C)
                            .u64(0x3FFAC47FAF9BF2C9)
                            .u64(0x405713B645A1CAC1)
                            .value(6, 317)
                            .u32(1);
  EXPECT_EQ(bytesOf(path("a.trelvo")), Bytes(expected));
}

TEST_F(ImportCommand, TellsWhatItWrote) {
  const std::string log = file("a.log", kFix);
  const Outcome outcome = runTool({"import", log, "-o", path("a.trelvo")});
  EXPECT_EQ(outcome.err,
            "trelvo: not stored, no place in the schema: RMC magnetic variation\n"
            "trelvo: wrote 1 container: 1 GNSS; " +
                std::to_string(fs::file_size(path("a.trelvo"))) + " bytes\n");
}

TEST_F(ImportCommand, ReportsTroubleWithFileAndLine) {
  const std::string log = file("a.log", std::string("$GPGGA,1*00\n") + kFix + "$GPGGA,2*00\n");
  const Outcome outcome = runTool({"import", log, "-o", path("a.trelvo")});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_NE(outcome.err.find("trelvo: 2 x sentence with a wrong checksum: " + log + ":1, " + log +
                             ":3\n"),
            std::string::npos)
      << outcome.err;
}

TEST_F(ImportCommand, TakesSeveralFilesOfDifferentFormats) {
  const Outcome outcome = runTool(
      {"import", examplePath("nmea/quectel-L70.log"), examplePath("geosubmit/geosubmit2.json"),
       examplePath("geosubmit/geosubmit1.json"), "-o", path("a.trelvo"), "--verify"});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.out, "18 containers read back, all equal\n");
  EXPECT_NE(outcome.err.find("18 containers: 18 GNSS, 1 GERAN, 1 E-UTRA, 4 WLAN;"),
            std::string::npos)
      << outcome.err;
}

TEST_F(ImportCommand, ReadsStandardInput) {
  const std::string text = kFix;
  const Outcome outcome =
      runTool({"import", "-", "-o", path("a.trelvo")}, Bytes(text.begin(), text.end()));
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_GT(fs::file_size(path("a.trelvo")), 0u);
}

TEST_F(ImportCommand, WrongUsageGives2) {
  const std::string log = file("a.log", kFix);
  const std::string out = path("a.trelvo");
  const std::vector<std::vector<std::string>> lines = {
      {"import", log},
      {"import", "-o", out},
      {"import", log, "-o", out, "--format", "gpx"},
      {"import", log, "-o", out, "--date", "yesterday"},
      {"import", log, "-o", out, "--date", "2020-02-30"},
      {"import", "-", "-", "-o", out},
      {"import", "-", "-o", out, "--verify"},
      {"import", log, "-o", "-", "--verify"},
      {"import", "/dev/null", "-o", out, "--verify"},
  };
  for (const auto& line : lines) {
    const Outcome outcome = runTool(line);
    EXPECT_EQ(outcome.status, 2) << ::testing::PrintToString(line);
    EXPECT_NE(outcome.err, "");
  }
  EXPECT_FALSE(fs::exists(out));
}

TEST_F(ImportCommand, HelpShowsAnExample) {
  const Outcome outcome = runTool({"import", "--help"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_NE(outcome.out.find("Examples:"), std::string::npos);
  EXPECT_NE(outcome.out.find("trelvo import drive.log"), std::string::npos);
}

TEST_F(ImportCommand, NothingReadableGives1AndNoFile) {
  for (const char* content :
       {"", "hello", "{\"items\": [}", "$GPGGA,1*00\n", "{\"items\": [{}]}"}) {
    const std::string input = file("input", content);
    const Outcome outcome = runTool({"import", input, "-o", path("out")});
    EXPECT_EQ(outcome.status, 1) << content;
    EXPECT_NE(outcome.err.find("trelvo: nothing could be read\n"), std::string::npos) << content;
    EXPECT_EQ(fileCount(), 1u) << content;
  }
}

TEST_F(ImportCommand, OneReadableFileAmongOthersIsEnough) {
  const Outcome outcome =
      runTool({"import", file("a", "hello"), file("b", kFix), "-o", path("out")});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_NE(outcome.err.find(
                "of none of the formats that trelvo import --help lists: " + path("a") + ":1"),
            std::string::npos)
      << outcome.err;
}

TEST_F(ImportCommand, ALogWithoutAFixMakesAnEmptyFile) {
  const Outcome outcome =
      runTool({"import", file("a", sentence("GPRMC,,V,,,,,,,,,,N")), "-o", path("out")});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(fs::file_size(path("out")), 0u);
  EXPECT_NE(outcome.err.find("wrote 0 containers; 0 bytes"), std::string::npos) << outcome.err;
}

TEST_F(ImportCommand, AMissingInputGives1AndNoFile) {
  const Outcome outcome = runTool({"import", file("a", kFix), path("absent"), "-o", path("out")});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.err.find("trelvo: " + path("absent") + ": No such file or directory\n"),
            std::string::npos)
      << outcome.err;
  EXPECT_EQ(fileCount(), 1u);
}

TEST_F(ImportCommand, AFolderAsInputGives1) {
  const Outcome outcome = runTool({"import", m_folder, "-o", path("out")});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.err.find("Is a directory"), std::string::npos) << outcome.err;
}

TEST_F(ImportCommand, AnOutputThatCannotBeMadeGives1) {
  const Outcome outcome = runTool({"import", file("a", kFix), "-o", path("absent/out")});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.err.find("absent/out: No such file or directory"), std::string::npos)
      << outcome.err;
}

TEST_F(ImportCommand, AFullDiskGives1) {
  const Outcome outcome = runTool({"import", file("a", kFix), "-o", "/dev/full"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.err.find("trelvo: /dev/full: No space left on device\n"), std::string::npos)
      << outcome.err;
  EXPECT_TRUE(fs::exists("/dev/full"));
}

TEST_F(ImportCommand, ADeviceIsWrittenInPlace) {
  const Outcome outcome = runTool({"import", file("a", kFix), "-o", "/dev/null"});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(ImportCommand, AFailedRunLeavesTheOldOutput) {
  const std::string out = file("out", "old");
  EXPECT_EQ(runTool({"import", file("a", kFix), path("absent"), "-o", out}).status, 1);
  EXPECT_EQ(bytesOf(out), (Bytes{'o', 'l', 'd'}));
  EXPECT_EQ(runTool({"import", path("a"), "-o", out}).status, 0);
  EXPECT_NE(bytesOf(out), (Bytes{'o', 'l', 'd'}));
}

TEST_F(ImportCommand, ASymbolicLinkStaysOne) {
  const std::string target = file("target", "old");
  fs::create_symlink(target, path("link"));
  EXPECT_EQ(runTool({"import", file("a", kFix), "-o", path("link")}).status, 0);
  EXPECT_TRUE(fs::is_symlink(path("link")));
  EXPECT_GT(bytesOf(target).size(), 3u);
}

TEST_F(ImportCommand, TheOutputMayReplaceItsInput) {
  const std::string log = file("a", kFix);
  EXPECT_EQ(runTool({"import", log, "-o", log}).status, 0);
  EXPECT_EQ(bytesOf(log).front(), 1u);
}

TEST_F(ImportCommand, TheSaidFormatIsUsed) {
  const std::string log = file("a", kFix);
  EXPECT_EQ(runTool({"import", log, "--format", "nmea", "-o", path("out")}).status, 0);
  EXPECT_EQ(runTool({"import", log, "--format", "geosubmit", "-o", path("out")}).status, 1);
}

TEST_F(ImportCommand, TheDateOptionDatesFixes) {
  const std::string log = file("a", sentence("GPGGA,132820,4130.0,N,09330.0,W,1,08,1.0,,,,,,"));
  const Outcome outcome =
      runTool({"import", log, "--date", "2020-03-18", "-o", path("out"), "--verify"});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_NE(outcome.err.find("dated by --date"), std::string::npos);
}

TEST_F(ImportCommand, WhatItWroteCanBeShown) {
  ASSERT_EQ(runTool({"import", examplePath("geosubmit/geosubmit2.json"), "-o", path("out")}).status,
            0);
  const Outcome outcome = runTool({"show", path("out")});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_NE(outcome.out.find("01:23:45:67:89:ab"), std::string::npos) << outcome.out;
}

// The program as a process of its own, fed by a pipe.
class Child {
 public:
  explicit Child(const std::string& arguments)
      : m_pipe(::popen(("ASAN_OPTIONS=quarantine_size_mb=1 exec '" TRELVO_PROGRAM "' " + arguments +
                        " 2>/dev/null")
                           .c_str(),
                       "w")) {}
  void write(const std::string& text) { std::fwrite(text.data(), 1, text.size(), m_pipe); }
  int finish() {
    const int status = ::pclose(m_pipe);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  std::FILE* m_pipe;
};

// The highest peak, in KiB, of all children so far.
long childrenPeak() {
  struct rusage usage {};
  ::getrusage(RUSAGE_CHILDREN, &usage);
  return usage.ru_maxrss;
}

long peakWith(int count, const std::string& before, const std::function<std::string(int)>& piece,
              const std::string& after) {
  Child child("import - -o /dev/null");
  child.write(before);
  for (int i = 0; i < count; ++i) {
    child.write(piece(i));
  }
  child.write(after);
  EXPECT_EQ(child.finish(), 0);
  return childrenPeak();
}

// What is kept to the end takes more than this for each of the larger inputs.
constexpr long kMoreKiB = 16 * 1024;

TEST_F(ImportCommand, TwentyThousandItemsTakeNoMoreMemoryThanTwoThousand) {
  const auto item = [](int i) {
    return std::string(i > 0 ? "," : "") +
           R"({"timestamp": 1405602028568, "position": {"latitude": 1.5, "longitude": 2.5},
               "cellTowers": [{"radioType": "lte", "cellId": )" +
           std::to_string(i) + R"(}],
               "wifiAccessPoints": [{"macAddress": "0123456789ab", "signalStrength": -70}]})";
  };
  const long few = peakWith(2000, "{\"items\": [", item, "]}");
  const long many = peakWith(20000, "{\"items\": [", item, "]}");
  EXPECT_LT(many, few + kMoreKiB);
}

TEST_F(ImportCommand, TwentyThousandEpochsTakeNoMoreMemoryThanTwoThousand) {
  const auto epoch = [](int i) {
    char time[16];
    std::snprintf(time, sizeof time, "%02d%02d%02d", i / 3600 % 24, i / 60 % 60, i % 60);
    return sentence(std::string("GPGGA,") + time +
                    ",4130.0,N,09330.0,W,1,08,1.0,278.0,M,-31.5,M,,");
  };
  const long few = peakWith(2000, "", epoch, "");
  const long many = peakWith(20000, "", epoch, "");
  EXPECT_LT(many, few + kMoreKiB);
}

}  // namespace
}  // namespace trelvo::tool
