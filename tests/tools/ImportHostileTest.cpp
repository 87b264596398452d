// Every importer against damaged copies of what it reads: cut off at each byte, and with bits
// flipped. Nothing is fatal, and whatever comes out can be written and read back.

#include <trelvo/BufferStream.h>

#include <algorithm>
#include <cctype>
#include <random>
#include <string>

#include "tests/tools/ImportSupport.h"
#include "tools/trelvo/ImportFormat.h"

namespace trelvo::tool {
namespace {

struct Seed {
  const char* file;
  ImportFormat format;
  size_t most;  // bytes of it to use
};

void PrintTo(const Seed& seed, std::ostream* out) { *out << seed.file; }

const Seed kSeeds[] = {
    {"geosubmit/geosubmit1.json", ImportFormat::Geosubmit, 2000},
    {"geosubmit/geosubmit2.json", ImportFormat::Geosubmit, 2000},
    {"geolocate/geolocate-request-complete.json", ImportFormat::Geolocate, 2000},
    {"cell/cells.csv", ImportFormat::Cells, 2000},
    {"nmea/telit-pls83-w.log", ImportFormat::Nmea, 2500},
    {"wifi/iw-scan0.out", ImportFormat::Iw, 2000},
    {"modem/eg25-qeng-lte.txt", ImportFormat::Qeng, 2000},
    {"modem/made-up-qeng-gsm.txt", ImportFormat::Qeng, 2000},
    {"modem/made-up-qeng-wcdma.txt", ImportFormat::Qeng, 2000},
    {"modem/mmcli-cell-info.json", ImportFormat::Mmcli, 2000},
    {"modem/mmcli-location.json", ImportFormat::Mmcli, 2000},
};

// Writes what it gets and reads it back.
class ReadingBackTarget : public ImportTarget {
 private:
  void take(const schema::MeasurementContainer& container) override {
    compare(*container.wrappedObject());
  }
  void take(const schema::Injection& injection) override { compare(*injection.wrappedObject()); }

  static void compare(const gom::GenericObject& object) {
    BufferStream stream;
    ASSERT_TRUE(object.write(stream));
    const auto back = gom::GenericObject::create(stream);
    ASSERT_TRUE(back);
    EXPECT_TRUE(*back == object);
  }
};

void importAs(ImportFormat format, const std::string& text) {
  ProducedStream stream(text);
  ImportReport report;
  ReadingBackTarget target;
  const ImportClock clock = {{{2025, 9, 4}}, 1700000000};
  const bool any = importStream(stream, "damaged", format, clock, report, target);
  EXPECT_TRUE(any || target.count() == 0 || format == ImportFormat::Nmea);
}

class DamagedImport : public ::testing::TestWithParam<Seed> {
 protected:
  std::string text() const { return readExample(GetParam().file).substr(0, GetParam().most); }
};

TEST_P(DamagedImport, IsRecognised) {
  EXPECT_EQ(formatOf(readExample(GetParam().file)), GetParam().format);
}

TEST_P(DamagedImport, IsReadWhereverItIsCutOff) {
  const std::string whole = text();
  for (size_t length = 0; length <= whole.size(); ++length) {
    importAs(GetParam().format, whole.substr(0, length));
  }
}

TEST_P(DamagedImport, IsReadWithAnyBitFlipped) {
  const std::string whole = text();
  std::mt19937 random(20251121);
  for (int round = 0; round < 3000; ++round) {
    std::string damaged = whole;
    for (unsigned int flips = 1 + random() % 4; flips > 0; --flips) {
      damaged[random() % damaged.size()] ^= static_cast<char>(1U << random() % 8);
    }
    importAs(GetParam().format, damaged);
    if (round % 10 == 0) {
      importAs(ImportFormat::Auto, damaged);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, DamagedImport, ::testing::ValuesIn(kSeeds), [](const auto& seed) {
  std::string name = seed.param.file;
  std::replace_if(
      name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
  return name;
});

}  // namespace
}  // namespace trelvo::tool
