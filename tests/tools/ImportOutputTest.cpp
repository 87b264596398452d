#include "tools/trelvo/ImportOutput.h"

#include <sys/stat.h>
#include <unistd.h>
#include <csignal>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "tests/tools/ImportSupport.h"
#include "tools/trelvo/DescriptorStream.h"
#include "tools/trelvo/Failure.h"
#include "tools/trelvo/ImportFix.h"
#include "tools/trelvo/OutputFile.h"

namespace trelvo::tool {
namespace {

namespace fs = std::filesystem;

class ImportOutput : public ::testing::Test {
 protected:
  ImportOutput() {
    char name[] = "/tmp/trelvo-output-XXXXXX";
    m_folder = ::mkdtemp(name);
  }
  ~ImportOutput() override { fs::remove_all(m_folder); }

  std::string path(const std::string& name) const { return m_folder / name; }

  // A container with a fix at the given height.
  static gom::SharedPointer<schema::MeasurementContainer> container(double altitude) {
    ImportFix fix;
    fix.latitude = 1.0;
    fix.longitude = 2.0;
    fix.altitude = altitude;
    fix.timeStamp = 5;
    ImportReport report;
    auto result = schema::MeasurementContainer::create();
    const auto measurement = makeGnssMeasurement(fix, {report, {"input", 1}});
    EXPECT_EQ(result->addGnssMeasurement(measurement->wrappedObject()), StatusOk);
    return result;
  }

  // Writes a container for each height; gives the file's name.
  std::string written(std::initializer_list<double> altitudes) const {
    OutputFile file(path("out"));
    DescriptorStream stream(file.descriptor());
    ContainerWriter writer(stream, "out");
    for (const double altitude : altitudes) {
      writer.put(*container(altitude));
    }
    writer.finish();
    file.commit();
    return path("out");
  }

  // What a verifier says when the import gives these heights again; empty when all is well.
  std::string complaint(std::initializer_list<double> altitudes) const {
    try {
      DescriptorStream stream(openForReading(path("out").c_str()));
      ContainerVerifier verifier(stream, "out");
      for (const double altitude : altitudes) {
        verifier.put(*container(altitude));
      }
      verifier.finish();
      return "";
    } catch (const Failure& error) {
      return error.what();
    }
  }

  fs::path m_folder;
};

TEST_F(ImportOutput, AppearsOnlyWhenCommitted) {
  {
    const OutputFile file(path("out"));
    EXPECT_FALSE(fs::exists(path("out")));
    EXPECT_TRUE(fs::exists(file.currentPath()));
  }
  EXPECT_TRUE(fs::is_empty(m_folder));
  OutputFile file(path("out"));
  file.commit();
  EXPECT_EQ(file.currentPath(), path("out"));
  EXPECT_TRUE(fs::exists(path("out")));
}

TEST_F(ImportOutput, AFileThatCannotBeRenamedIsAnError) {
  OutputFile file(path("out"));
  fs::create_directories(path("out/x"));
  EXPECT_THROW(file.commit(), Failure);
}

TEST_F(ImportOutput, ANewFileHasTheSaidModeAndAReplacedOneHandsItsOn) {
  const auto modeAfterWriting = [this](mode_t mode) {
    OutputFile file(path("out"), mode);
    file.commit();
    return static_cast<mode_t>(fs::status(path("out")).permissions());
  };
  const mode_t before = ::umask(0022);
  EXPECT_EQ(modeAfterWriting(kModePrivate), 0600U);
  EXPECT_EQ(modeAfterWriting(kModeShared), 0600U);
  fs::remove(path("out"));
  EXPECT_EQ(modeAfterWriting(kModeShared), 0644U);
  fs::permissions(path("out"), static_cast<fs::perms>(0666));
  EXPECT_EQ(modeAfterWriting(kModePrivate), 0666U);
  ::umask(before);
}

TEST_F(ImportOutput, TheVerifierAgreesWithTheSameContainers) {
  written({1.0, 2.0, 3.0});
  EXPECT_EQ(complaint({1.0, 2.0, 3.0}), "");
}

TEST_F(ImportOutput, TheVerifierFindsADifferentContainer) {
  written({1.0, 2.0, 3.0});
  EXPECT_EQ(complaint({1.0, 7.0, 3.0}), "out: container 2 reads back differently");
}

// As objects the two are equal: heights that differ by less than a metre are.
TEST_F(ImportOutput, TheVerifierFindsASingleDifferentByte) {
  written({1.0});
  EXPECT_EQ(complaint({1.5}), "out: container 1 reads back differently");
}

TEST_F(ImportOutput, TheVerifierFindsMissingAndFurtherContainers) {
  written({1.0});
  EXPECT_EQ(complaint({1.0, 2.0}), "out: container 2 cannot be read back");
  EXPECT_EQ(complaint({}), "out: holds more than was written");
}

TEST_F(ImportOutput, TheVerifierFindsADamagedFile) {
  const std::string file = written({1.0});
  fs::resize_file(file, fs::file_size(file) - 1);
  EXPECT_EQ(complaint({1.0}), "out: container 1 cannot be read back");
}

TEST_F(ImportOutput, AMissingFileCannotBeVerified) {
  EXPECT_EQ(complaint({}), "out: cannot be read back");
}

TEST_F(ImportOutput, AFullDiskIsAnErrorAndAClosedPipeIsNot) {
  OutputFile full("/dev/full");
  DescriptorStream stream(full.descriptor());
  ContainerWriter writer(stream, "full");
  writer.put(*container(1.0));
  EXPECT_THROW(writer.finish(), Failure);

  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  const UniqueFd output(ends[1]);
  ::close(ends[0]);
  ::signal(SIGPIPE, SIG_IGN);
  DescriptorStream pipe(output.get());
  ContainerWriter piped(pipe, "pipe");
  piped.put(*container(1.0));
  EXPECT_THROW(piped.finish(), ReaderGone);
}

TEST_F(ImportOutput, CountsWhatItTakes) {
  OutputFile file(path("out"));
  DescriptorStream stream(file.descriptor());
  ContainerWriter writer(stream, "out");
  EXPECT_EQ(writer.counts().text(), "0 containers");
  writer.put(*container(1.0));
  EXPECT_EQ(writer.counts().text(), "1 container: 1 GNSS");
  writer.put(*container(1.0));
  EXPECT_EQ(writer.counts().text(), "2 containers: 2 GNSS");
}

}  // namespace
}  // namespace trelvo::tool
