#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <trelvo/ICryptoFile.h>
#include <trelvo/ICryptographyUtility.h>
#include <trelvo/core/Directory.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <utility>

#include "tests/tools/CryptoFixture.h"
#include "tools/trelvo/Failure.h"
#include "tools/trelvo/SealedStore.h"
#include "tools/trelvo/SealedStream.h"

namespace trelvo::tool {
namespace {

class SealCommand : public CryptoFixture {
 protected:
  Outcome seal(const std::string& name, const std::string& in, const std::string& out,
               const Bytes& input = {}) const {
    return runTool({"seal", "--storage", keys(), name, in, out}, input);
  }
  Outcome unseal(const std::string& name, const std::string& in, const std::string& out) const {
    return runTool({"unseal", "--storage", keys(), name, in, out});
  }
};

TEST_F(SealCommand, WhatIsSealedComesBackWhateverItsSize) {
  for (const std::size_t size : {0U, 1U, 511U, 512U, 513U, 65535U, 65536U, 65537U, 300001U}) {
    const Bytes content = bytesFor(size);
    const std::string in = file("plain", content);
    const Outcome sealed = seal("store", in, path("sealed"));
    EXPECT_EQ(sealed.status, kExitGood) << sealed.err;
    EXPECT_EQ(sealed.out + sealed.err, "");
    const Outcome unsealed = unseal("store", path("sealed"), path("back"));
    EXPECT_EQ(unsealed.status, kExitGood) << unsealed.err;
    EXPECT_EQ(unsealed.out + unsealed.err, "");
    EXPECT_EQ(bytesOf(path("sealed")).size(), size);
    // One byte may well be enciphered as itself.
    EXPECT_TRUE(size <= 1 || bytesOf(path("sealed")) != content) << size;
    EXPECT_EQ(bytesOf(path("back")), content) << size;
  }
}

TEST_F(SealCommand, TheSealedBytesAreThoseOfTheLibrary) {
  const Bytes content = bytesFor(5000);
  seal("store", file("plain", content), path("sealed"));
  core::Directory::setDefaultStoragePath(keys(), false);
  Status status = StatusFailed;
  bool generated = true;
  const Store store(ICryptographyUtility::open("store", status, generated));
  ASSERT_EQ(status, StatusOk);
  EXPECT_FALSE(generated);
  const gom::SharedPointer<ICryptoFile> opened(
      ICryptoFile::open(core::Directory::openFile(path("sealed"), 0, true), *store));
  Bytes back(content.size());
  EXPECT_EQ(opened->read(back.data(), static_cast<unsigned int>(back.size())), back.size());
  EXPECT_EQ(back, content);
}

TEST_F(SealCommand, NewSealedFilesAreForTheirOwnerWhateverTheUmask) {
  const std::string in = file("plain", "text");
  for (const mode_t mask : {0000U, 0022U, 0077U}) {
    const mode_t before = ::umask(mask);
    const std::string out = path("sealed" + std::to_string(mask));
    EXPECT_EQ(seal("store", in, out).status, kExitGood);
    EXPECT_EQ(::umask(before), mask);
    EXPECT_EQ(modeOf(out), 0600U);
  }
}

TEST_F(SealCommand, SeedsAreForTheirOwner) {
  seal("store", file("plain", "text"), path("sealed"));
  const auto seed = std::filesystem::directory_iterator(keys())->path();
  EXPECT_EQ(modeOf(seed), 0600U);
}

TEST_F(SealCommand, AnUnsealedFileHasTheModeOfAnyNewOne) {
  const mode_t before = ::umask(0027);
  seal("store", file("plain", "text"), path("sealed"));
  unseal("store", path("sealed"), path("back"));
  ::umask(before);
  EXPECT_EQ(modeOf(path("back")), 0640U);
}

TEST_F(SealCommand, FilesThatAreReplacedKeepTheirMode) {
  const std::string in = file("plain", "text");
  ::chmod(file("sealed", "old").c_str(), 0644);
  ::chmod(file("back", "old").c_str(), 0604);
  EXPECT_EQ(seal("store", in, path("sealed")).status, kExitGood);
  EXPECT_EQ(unseal("store", path("sealed"), path("back")).status, kExitGood);
  EXPECT_EQ(modeOf(path("sealed")), 0644U);
  EXPECT_EQ(modeOf(path("back")), 0604U);
  EXPECT_EQ(textOf(path("back")), "text");
}

TEST_F(SealCommand, AFileMayBeSealedAndUnsealedInItsOwnPlace) {
  const std::string name = file("file", "text");
  EXPECT_EQ(seal("store", name, name).status, kExitGood);
  EXPECT_NE(textOf(name), "text");
  EXPECT_EQ(unseal("store", name, name).status, kExitGood);
  EXPECT_EQ(textOf(name), "text");
}

TEST_F(SealCommand, ReadsStandardInputAndWritesStandardOutput) {
  const Bytes content = bytesFor(100001);
  EXPECT_EQ(seal("store", "-", path("sealed"), content).status, kExitGood);
  file("plain", content);
  const Outcome outcome = shell(
      "cat plain | $TRELVO seal --storage keys store - again && cmp sealed again &&"
      "$TRELVO unseal --storage keys store again - | cmp - plain && echo same");
  EXPECT_EQ(outcome.out, "same\n");
  EXPECT_EQ(outcome.status, 0);
}

TEST_F(SealCommand, AReaderThatLeavesEarlyIsNoFailure) {
  seal("store", file("plain", bytesFor(1000000)), path("sealed"));
  const Outcome outcome = shell(
      "{ $TRELVO unseal --storage keys store sealed - 2>err; echo $? >>err; } | head -c 9 "
      ">/dev/null;"
      "cat err");
  EXPECT_EQ(outcome.out, "0\n");
}

// A seed is the second of its making, so that names made one after the other could share a key.
TEST_F(SealCommand, TwoNamesHaveTwoKeys) {
  const std::string in = file("plain", bytesFor(64));
  seal("one", in, path("1"));
  seal("two", in, path("2"));
  EXPECT_NE(bytesOf(path("1")), bytesOf(path("2")));
  EXPECT_EQ(filesIn(keys()), 2U);
}

TEST_F(SealCommand, AnotherDeviceReadsNoise) {
  seal("store", file("plain", bytesFor(64)), path("sealed"));
  setDevice("device 2");
  EXPECT_EQ(unseal("store", path("sealed"), path("back")).status, kExitGood);
  EXPECT_NE(bytesOf(path("back")), bytesFor(64));
}

TEST_F(SealCommand, ABuiltInStoreNeedsNoDeviceAndNoSeed) {
  clearDevice();
  const std::string in = file("plain", "text");
  for (const char* name : {"sltdb", "lssdb"}) {
    EXPECT_EQ(seal(name, in, path("sealed")).status, kExitGood);
    EXPECT_EQ(unseal(name, path("sealed"), path("back")).status, kExitGood);
    EXPECT_EQ(textOf(path("back")), "text");
  }
  EXPECT_EQ(filesIn(keys()), 0U);
}

TEST_F(SealCommand, WithoutADeviceIdentityNothingIsMade) {
  const std::string in = file("plain", "text");
  const auto expectRefused = [&](const Outcome& outcome) {
    EXPECT_EQ(outcome.status, kExitFailed);
    EXPECT_EQ(outcome.err,
              "trelvo: store store: no key without a device identity; set ORVE_UNIQUE_DEVICE_ID\n");
  };
  clearDevice();
  expectRefused(seal("store", in, path("sealed")));
  expectRefused(unseal("store", in, path("sealed")));
  setDevice("");
  expectRefused(seal("store", in, path("sealed")));
  EXPECT_FALSE(exists(path("sealed")));
  EXPECT_EQ(filesIn(keys()), 0U);
}

TEST_F(SealCommand, UnsealingMakesNoKey) {
  seal("store", file("plain", "text"), path("sealed"));
  for (int i = 0; i < 2; ++i) {
    const Outcome outcome = unseal("stores", path("sealed"), path("back"));
    EXPECT_EQ(outcome.status, kExitFailed);
    EXPECT_EQ(outcome.err, "trelvo: store stores: has no key in " + keys() +
                               "; give the name and the --storage directory that the file was "
                               "sealed with\n");
  }
  EXPECT_EQ(filesIn(keys()), 1U);
  EXPECT_FALSE(exists(path("back")));
}

TEST_F(SealCommand, AnEmptySeedIsNoKey) {
  seal("store", file("plain", "text"), path("sealed"));
  std::filesystem::resize_file(std::filesystem::directory_iterator(keys())->path(), 0);
  EXPECT_EQ(unseal("store", path("sealed"), path("back")).status, kExitFailed);
  EXPECT_EQ(unseal("store", path("sealed"), path("back")).status, kExitFailed);
}

TEST_F(SealCommand, AKeyThatCannotBeKeptSealsNothing) {
  const Outcome outcome =
      runTool({"seal", "--storage", path("none"), "store", file("plain", "text"), path("sealed")});
  EXPECT_EQ(outcome.status, kExitFailed);
  EXPECT_EQ(outcome.err,
            "trelvo: " + path("none") +
                ": cannot keep a key there; give a directory by --storage that you may write to\n");
  EXPECT_FALSE(exists(path("sealed")));
}

TEST_F(SealCommand, MissingFilesAreTold) {
  Outcome outcome = seal("store", path("none"), path("sealed"));
  EXPECT_EQ(outcome.status, kExitFailed);
  EXPECT_EQ(outcome.err, "trelvo: " + path("none") + ": No such file or directory\n");
  outcome = seal("store", file("plain", "text"), path("none/sealed"));
  EXPECT_EQ(outcome.status, kExitFailed);
  EXPECT_EQ(outcome.err, "trelvo: " + path("none/sealed") + ": No such file or directory\n");
  outcome = unseal("store", path("none"), path("back"));
  EXPECT_EQ(outcome.status, kExitFailed);
  EXPECT_EQ(outcome.err, "trelvo: " + path("none") + ": No such file or directory\n");
  outcome = seal("store", m_folder, path("sealed"));
  EXPECT_EQ(outcome.status, kExitFailed);
  EXPECT_EQ(outcome.err, "trelvo: " + m_folder.string() + ": Is a directory\n");
  EXPECT_FALSE(exists(path("sealed")));
  EXPECT_FALSE(exists(path("back")));
}

TEST_F(SealCommand, SealedFilesHaveToBeSought) {
  const Outcome in = shell(
      "$TRELVO seal --storage keys s - sealed </dev/null;"
      "mkfifo pipe; (cat sealed >pipe &);"
      "$TRELVO unseal --storage keys s pipe back 2>&1");
  EXPECT_EQ(in.status, 1);
  EXPECT_EQ(in.out,
            "trelvo: pipe: cannot be sought, as a sealed file has to be; give a regular file\n");
  const Outcome out = shell(
      "(cat pipe >/dev/null &); echo text |"
      "$TRELVO seal --storage keys s - pipe 2>&1");
  EXPECT_EQ(out.status, 1);
  EXPECT_EQ(out.out,
            "trelvo: pipe: cannot be sought, as a sealed file has to be; give a regular file\n");
}

TEST_F(SealCommand, AFullDiskFailsAndLeavesTheOldFile) {
  const std::string in = file("plain", bytesFor(100000));
  file("sealed", "old");
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit limit{};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &limit), 0);
  const rlim_t before = std::exchange(limit.rlim_cur, 50000);
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
  const Outcome outcome = seal("store", in, path("sealed"));
  limit.rlim_cur = before;
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
  EXPECT_EQ(outcome.status, kExitFailed);
  EXPECT_EQ(outcome.err, "trelvo: " + path("sealed") + ": File too large\n");
  EXPECT_EQ(textOf(path("sealed")), "old");
  EXPECT_EQ(filesIn(m_folder), 3U);  // plain, sealed, keys
}

TEST_F(SealCommand, AFullDeviceIsToldOnUnsealing) {
  seal("store", file("plain", "text"), path("sealed"));
  const Outcome outcome = unseal("store", path("sealed"), "/dev/full");
  EXPECT_EQ(outcome.status, kExitFailed);
  EXPECT_EQ(outcome.err, "trelvo: /dev/full: No space left on device\n");
}

TEST_F(SealCommand, MoreThanTheCounterHoldsIsRefused) {
  const std::string large = file("large", "");
  std::filesystem::resize_file(large, 0x100000000);
  Outcome outcome = seal("store", large, path("sealed"));
  EXPECT_EQ(outcome.status, kExitFailed);
  EXPECT_EQ(outcome.err,
            "trelvo: " + large + ": larger than the 4 GiB that can be sealed; split it\n");
  EXPECT_FALSE(exists(path("sealed")));
  outcome = unseal("store", large, path("back"));
  EXPECT_EQ(outcome.status, kExitFailed);
  EXPECT_EQ(outcome.err, "trelvo: " + large + ": File too large\n");
}

TEST_F(SealCommand, WrongUsageGives2AndAMessage) {
  const std::string in = file("plain", "text");
  const std::vector<std::vector<std::string>> lines = {
      {"seal"},
      {"seal", "store"},
      {"seal", "store", in},
      {"seal", "store", in, path("out"), "more"},
      {"seal", "", in, path("out")},
      {"seal", "--storage", "", "store", in, path("out")},
      {"seal", "--key", "k", "store", in, path("out")},
      {"seal", "store", in, "-"},
      {"unseal", "store", in},
      {"unseal", "", in, path("out")},
      {"unseal", "store", "-", path("out")},
      {"show", "--sealed", "", in},
      {"show", "--storage", keys(), in},
      {"import", in, "-o", path("out"), "--storage", keys()},
      {"import", in, "-o", "-", "--sealed", "store"},
  };
  for (const std::vector<std::string>& line : lines) {
    const Outcome outcome = runTool(line);
    EXPECT_EQ(outcome.status, kExitUsage) << ::testing::PrintToString(line);
    EXPECT_EQ(outcome.out, "") << ::testing::PrintToString(line);
    EXPECT_EQ(outcome.err.rfind("trelvo: ", 0), 0U) << outcome.err;
  }
  EXPECT_FALSE(exists(path("out")));
  EXPECT_EQ(filesIn(keys()), 0U);
}

TEST_F(SealCommand, HelpHasExamplesAndTellsOfTheChecksumThatIsNotThere) {
  for (const char* command : {"seal", "unseal"}) {
    const Outcome outcome = runTool({command, "--help"});
    EXPECT_EQ(outcome.status, kExitGood);
    EXPECT_NE(outcome.out.find(std::string("  trelvo ") + command + " "), std::string::npos);
  }
  EXPECT_NE(runTool({"unseal", "--help"}).out.find("no checksum"), std::string::npos);
}

TEST_F(SealCommand, NothingIsWrittenWhereTheCounterWouldStartAgain) {
  const Store store = openStoreForSealing({"store", keys()});
  const UniqueFd descriptor(::open(path("sealed").c_str(), O_RDWR | O_CREAT, 0600));
  DescriptorStream below(descriptor.get());
  SealedStream stream(below, "sealed", *store);
  const unsigned char byte = 7;
  EXPECT_EQ(stream.write(&byte, 1), 1U);
  EXPECT_EQ(stream.error(), 0);
  EXPECT_EQ(stream.write(&byte, 0xFFFFFFFF), 0U);
  EXPECT_EQ(stream.error(), EFBIG);
  EXPECT_FALSE(stream.good());
  EXPECT_EQ(stream.write(&byte, 1), 0U);
  EXPECT_FALSE(stream.flush());
  EXPECT_EQ(stream.position(), 1U);
}

// The highest peak, in KiB, of all children so far.
long childrenPeak() {
  struct rusage usage {};
  ::getrusage(RUSAGE_CHILDREN, &usage);
  return usage.ru_maxrss;
}

TEST_F(SealCommand, FiftyMegabytesTakeNoMoreMemoryThanOne) {
  const auto peakWith = [this](const std::string& size) {
    const Outcome outcome =
        shell("export ASAN_OPTIONS=quarantine_size_mb=1; head -c " + size +
              " /dev/zero | $TRELVO seal --storage keys s - sealed &&"
              "$TRELVO unseal --storage keys s sealed - | tr -d '\\0' | wc -c; stat -c %s sealed");
    EXPECT_EQ(outcome.out, "0\n" + size + "\n");
    return childrenPeak();
  };
  const long few = peakWith("1000000");
  const long many = peakWith("50000000");
  EXPECT_LT(many, few + 16 * 1024);
}

class SealedContainers : public SealCommand {
 protected:
  std::string container() const {
    return file("plain.trelvo", Wire().object(1, 1).value(kTagUint32, 317).u32(42));
  }
  static constexpr unsigned int kTagUint32 = 6;
};

TEST_F(SealedContainers, ShowReadsWhatSealWrote) {
  seal("store", container(), path("sealed"));
  for (const char* mode : {"--json", "--ndjson", "--raw"}) {
    const Outcome plain = runTool({"show", mode, container()});
    const Outcome sealed =
        runTool({"show", mode, "--sealed", "store", "--storage", keys(), path("sealed")});
    EXPECT_EQ(sealed.status, kExitGood);
    EXPECT_EQ(sealed.out, plain.out);
    EXPECT_EQ(sealed.err, "");
  }
}

TEST_F(SealedContainers, ShowTellsAWrongKey) {
  seal("store", container(), path("sealed"));
  seal("other", container(), path("other"));
  const std::string wrong = ": holds no objects under the key of store ";
  const std::string advice = "; check the name, --storage and ORVE_UNIQUE_DEVICE_ID\n";
  Outcome outcome = runTool({"show", "--sealed", "other", "--storage", keys(), path("sealed")});
  EXPECT_EQ(outcome.status, kExitFailed);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "trelvo: " + path("sealed") + wrong + "other" + advice);
  setDevice("device 2");
  outcome = runTool({"show", "--json", "--sealed", "store", "--storage", keys(), path("sealed")});
  EXPECT_EQ(outcome.status, kExitFailed);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "trelvo: " + path("sealed") + wrong + "store" + advice);
}

TEST_F(SealedContainers, ShowTellsAMissingKeyAndAMissingDevice) {
  seal("store", container(), path("sealed"));
  Outcome outcome = runTool({"show", "--sealed", "none", "--storage", keys(), path("sealed")});
  EXPECT_EQ(outcome.status, kExitFailed);
  EXPECT_NE(outcome.err.find("store none: has no key in " + keys()), std::string::npos);
  clearDevice();
  outcome = runTool({"show", "--sealed", "store", "--storage", keys(), path("sealed")});
  EXPECT_EQ(outcome.status, kExitFailed);
  EXPECT_NE(outcome.err.find("set ORVE_UNIQUE_DEVICE_ID"), std::string::npos);
}

TEST_F(SealedContainers, ShowTellsDamageBehindTheFirstValue) {
  const Bytes two = joined({bytesOf(container()), Bytes{0xFF, 0xFF, 0xFF}});
  seal("store", file("plain", two), path("sealed"));
  const Outcome outcome =
      runTool({"show", "--sealed", "store", "--storage", keys(), path("sealed")});
  EXPECT_EQ(outcome.status, kExitFailed);
  EXPECT_NE(outcome.out.find("measurementId: 42"), std::string::npos);
  EXPECT_NE(outcome.err.find("sealed: stops at byte "), std::string::npos);
}

TEST_F(SealedContainers, AnEmptySealedFileShowsNothing) {
  seal("store", file("plain", ""), path("sealed"));
  const Outcome outcome =
      runTool({"show", "--sealed", "store", "--storage", keys(), path("sealed")});
  EXPECT_EQ(outcome.status, kExitGood);
  EXPECT_EQ(outcome.out + outcome.err, "");
}

TEST_F(SealedContainers, ShowReadsARedirectedFileButNoPipe) {
  seal("store", container(), path("sealed"));
  const std::string show = "$TRELVO show --sealed store --storage keys - 2>&1";
  EXPECT_EQ(shell(show + " <sealed").out,
            "MeasurementContainer\n  offset: 0\n  measurementId: 42\n");
  const Outcome piped = shell("cat sealed | " + show);
  EXPECT_EQ(piped.status, 1);
  EXPECT_EQ(piped.out,
            "trelvo: standard input: cannot be sought, as a sealed file has to be; give a regular "
            "file\n");
}

TEST_F(SealedContainers, ImportSealsAndVerifies) {
  const std::string log = file(
      "a.log",
      "$GPRMC,132820.60,A,4134.49821229,N,09345.03351845,W,3.252,92.308,180320,11.5985,E,D*1A\r\n");
  EXPECT_EQ(runTool({"import", log, "-o", path("plain")}).status, kExitGood);
  const Outcome outcome = runTool(
      {"import", log, "-o", path("sealed"), "--sealed", "store", "--storage", keys(), "--verify"});
  EXPECT_EQ(outcome.status, kExitGood);
  EXPECT_EQ(outcome.out, "1 containers read back, all equal\n");
  EXPECT_NE(outcome.err.find("; " + std::to_string(bytesOf(path("plain")).size()) + " bytes"),
            std::string::npos)
      << outcome.err;
  EXPECT_EQ(modeOf(path("sealed")), 0600U);
  EXPECT_NE(bytesOf(path("sealed")), bytesOf(path("plain")));
  EXPECT_EQ(unseal("store", path("sealed"), path("back")).status, kExitGood);
  EXPECT_EQ(bytesOf(path("back")), bytesOf(path("plain")));
}

TEST_F(SealedContainers, ImportWithoutADeviceMakesNoFile) {
  clearDevice();
  const Outcome outcome = runTool(
      {"import", container(), "-o", path("sealed"), "--sealed", "store", "--storage", keys()});
  EXPECT_EQ(outcome.status, kExitFailed);
  EXPECT_EQ(outcome.err,
            "trelvo: store store: no key without a device identity; set ORVE_UNIQUE_DEVICE_ID\n");
  EXPECT_FALSE(exists(path("sealed")));
}

}  // namespace
}  // namespace trelvo::tool
