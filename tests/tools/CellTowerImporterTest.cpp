#include "tools/trelvo/CellTowerImporter.h"

#include <sys/resource.h>
#include <trelvo/schema/Area.h>
#include <trelvo/schema/CdmaServingCellInjection.h>
#include <trelvo/schema/EUtraServingCellInjection.h>
#include <trelvo/schema/GeranServingCellInjection.h>
#include <trelvo/schema/Utility.h>
#include <trelvo/schema/UtraFddServingCellInjection.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <limits>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/Load.h"
#include "tests/tools/ImportSupport.h"
#include "tests/tools/ToolFixture.h"
#include "tools/trelvo/ImportFix.h"
#include "tools/trelvo/ImportFormat.h"

namespace trelvo::tool {
namespace {

using schema::EUtraServingCellInjection;
using schema::Injection;
using schema::MeasurementContainer;
using schema::Utility;

constexpr const char* kHeader =
    "radio,mcc,net,area,cell,unit,lon,lat,range,samples,changeable,created,updated,averageSignal\n";

struct Imported {
  explicit Imported(const std::string& text) {
    ProducedStream stream(text);
    any = importStream(stream, "list", ImportFormat::Cells, {}, report, target);
  }

  size_t size() const { return target.injections.size(); }
  const Injection& injection(size_t index = 0) const { return *target.injections.at(index); }
  unsigned long long count(const char* kind) const { return report.countOf(kind); }

  KeepingTarget target;
  ImportReport report;
  bool any = false;
};

template <class Member>
gom::SharedPointer<Member> member(const gom::SharedPointer<gom::ValueCollection>& list,
                                  unsigned int index = 0) {
  return Member::create(MeasurementContainer::collectionItem(list, index));
}

gom::SharedPointer<EUtraServingCellInjection> lte(const Imported& imported) {
  auto tower = member<EUtraServingCellInjection>(imported.injection().eutraInjectionCollection());
  EXPECT_TRUE(tower);
  return tower;
}

// An LTE row in which one column was replaced.
std::string row(CellTowerColumn column, const std::string& text) {
  std::vector<std::string> texts = {"LTE", "311",         "480",        "9728", "9903886",
                                    "77",  "-122.393744", "37.788097",  "1000", "21",
                                    "1",   "1458613761",  "1491242559", "-90"};
  texts[static_cast<size_t>(column)] = text;
  std::string line = texts[0];
  for (size_t i = 1; i < texts.size(); ++i) {
    line += "," + texts[i];
  }
  return line + "\n";
}

std::string goodRow() { return row(CellTowerColumn::Radio, "LTE"); }

TEST(CellTowerImporter, AnLteRowBecomesAnEUtraInjection) {
  const Imported imported(goodRow());
  EXPECT_TRUE(imported.any);
  ASSERT_EQ(imported.size(), 1u);
  EXPECT_EQ(imported.injection().measurementId(), 1u);
  EXPECT_TRUE(imported.injection().valueExists(Injection::HasEUtraInjectionCollection));
  EXPECT_FALSE(imported.injection().valueExists(Injection::HasGeranInjectionCollection));
  const auto tower = lte(imported);
  EXPECT_EQ(*tower->dn(), schema::EUtraCellDn(311, 480, 9903886));
  EXPECT_EQ(tower->timeStamp(), 1491242559u);
  const auto nw = tower->servingCellMeasurement()->nwMeasurement();
  EXPECT_EQ(nw->tac(), 9728);
  EXPECT_EQ(nw->rsrp(), 51);  // -90 dBm
  EXPECT_EQ(nw->frequencyInfo()->pci(), 77);
  EXPECT_FALSE(nw->frequencyInfo()->valueExists(schema::EUtraFrequencyInfo::HasEarfcn));
  const auto area = tower->coverage();
  EXPECT_EQ(area->latitude(), 901659115);
  EXPECT_EQ(area->longitude(), -1460214244);
  EXPECT_EQ(area->majorAxis(), 1000u);
  EXPECT_EQ(area->minorAxis(), 1000u);
  EXPECT_EQ(area->angle(), 0.0f);
}

TEST(CellTowerImporter, AUmtsRowBecomesAUtraFddInjection) {
  const Imported imported("UMTS,202,1,2120,12842,400,23.4123167,38.8574351,500,6,1,1,2,-100\n");
  const auto tower = member<schema::UtraFddServingCellInjection>(
      imported.injection().utraFddInjectionCollection());
  ASSERT_TRUE(tower);
  EXPECT_EQ(*tower->dn(), schema::UtraCellDn(202, 1, 12842));
  EXPECT_EQ(tower->servingCellMeasurement()->lac(), 2120);
  const auto nw = tower->servingCellMeasurement()->nwMeasurement();
  EXPECT_EQ(nw->rscp(), 16);  // -100 dBm
  EXPECT_EQ(nw->frequencyInfo()->pcpich(), 400);
}

TEST(CellTowerImporter, AGsmRowBecomesAGeranInjection) {
  const Imported imported("GSM,208,10,30014,20669,,2.5112670,46.5992450,0,78,1,1,2,-64\n");
  const auto tower =
      member<schema::GeranServingCellInjection>(imported.injection().geranInjectionCollection());
  ASSERT_TRUE(tower);
  EXPECT_EQ(*tower->dn(), schema::GeranCellDn(208, 10, 30014, 20669));
  EXPECT_EQ(tower->servingCellMeasurement()->nwMeasurement()->rxLevel(), 47);  // -64 dBm
  EXPECT_EQ(tower->coverage()->majorAxis(), 1u);
  EXPECT_EQ(imported.count(CellTowerImporter::kSmallRange), 1u);
}

TEST(CellTowerImporter, ACdmaRowIsNamedBySidNidAndBid) {
  const Imported imported("CDMA,310,4183,22,7456,,-90.5,35.25,2000,3,1,1,2,-70\n");
  const auto tower =
      member<schema::CdmaServingCellInjection>(imported.injection().cdmaInjectionCollection());
  ASSERT_TRUE(tower);
  EXPECT_EQ(*tower->dn(), schema::CdmaCellDn(4183, 22, 7456));
  EXPECT_FALSE(tower->servingCellMeasurement());
  EXPECT_EQ(tower->coverage()->majorAxis(), 2000u);
  EXPECT_TRUE(imported.report.isNotStored("cell tower mcc of CDMA"));
  EXPECT_TRUE(imported.report.isNotStored("cell tower averageSignal of CDMA"));
}

TEST(CellTowerImporter, OtherRadiosAreCountedAndLeftOut) {
  const Imported imported(row(CellTowerColumn::Radio, "NR") +
                          row(CellTowerColumn::Radio, "lte\x1b") + row(CellTowerColumn::Radio, "") +
                          goodRow());
  EXPECT_EQ(imported.count("unknown radio type 'NR'"), 1u);
  EXPECT_EQ(imported.count("unknown radio type 'lte?'"), 1u);
  EXPECT_EQ(imported.count("unknown radio type ''"), 1u);
  EXPECT_EQ(imported.injection().eutraInjectionCollection()->count(), 1u);
}

TEST(CellTowerImporter, ARowWithoutACompleteIdentityIsLeftOut) {
  for (const auto column : {CellTowerColumn::Mcc, CellTowerColumn::Net, CellTowerColumn::Cell}) {
    for (const char* text : {"", "-1", "x", "-2", "268435456", "1.5", "99999999999999999999"}) {
      const Imported imported(row(column, text));
      EXPECT_FALSE(imported.any) << nameOf(column) << " " << text;
      EXPECT_EQ(imported.size(), 0u);
      EXPECT_EQ(imported.count(CellTowerImporter::kNoIdentity), 1u);
    }
  }
  for (const char* line : {"GSM,208,10,,20669,,2.5,46.5,10,78,1,1,2,\n",
                           "GSM,208,10,30014,65536,,2.5,46.5,10,78,1,1,2,\n",
                           "CDMA,310,4183,,7456,,-90.5,35.25,2000,3,1,1,2,\n",
                           "CDMA,310,32768,22,7456,,-90.5,35.25,2000,3,1,1,2,\n"}) {
    EXPECT_EQ(Imported(line).count(CellTowerImporter::kNoIdentity), 1u) << line;
  }
}

TEST(CellTowerImporter, TheEndsOfTheIdentitysRangesFit) {
  EXPECT_EQ(lte(Imported(row(CellTowerColumn::Cell, "268435455")))->dn()->ucid(), 268435455u);
  EXPECT_EQ(lte(Imported(row(CellTowerColumn::Cell, "0")))->dn()->ucid(), 0u);
  EXPECT_EQ(lte(Imported(row(CellTowerColumn::Net, "999")))->dn()->mnc(), 999);
  EXPECT_EQ(
      Imported(row(CellTowerColumn::Net, "1000")).count("cell tower net out of range, left out"),
      1u);
}

TEST(CellTowerImporter, AnAreaThatDoesNotFitIsLeftOutAndCounted) {
  const Imported imported(row(CellTowerColumn::Area, "65536"));
  EXPECT_EQ(imported.count("cell tower area out of range, left out"), 1u);
  const auto nw = lte(imported)->servingCellMeasurement()->nwMeasurement();
  EXPECT_FALSE(nw->valueExists(schema::EUtraNwMeasurement::HasTac));
  EXPECT_TRUE(nw->valueExists(schema::EUtraNwMeasurement::HasRsrp));
}

TEST(CellTowerImporter, UnknownUnitsAreNotStoredAndNotCounted) {
  for (const char* text : {"", "0", "-1"}) {
    const Imported imported(row(CellTowerColumn::Unit, text));
    const auto nw = lte(imported)->servingCellMeasurement()->nwMeasurement();
    EXPECT_FALSE(nw->frequencyInfo()) << text;
    EXPECT_EQ(imported.count("cell tower unit out of range, left out"), 0u);
  }
}

TEST(CellTowerImporter, AUnitThatDoesNotFitIsCounted) {
  EXPECT_EQ(lte(Imported(row(CellTowerColumn::Unit, "503")))
                ->servingCellMeasurement()
                ->nwMeasurement()
                ->frequencyInfo()
                ->pci(),
            503);
  for (const char* text : {"504", "-2"}) {
    const Imported imported(row(CellTowerColumn::Unit, text));
    EXPECT_FALSE(lte(imported)->servingCellMeasurement()->nwMeasurement()->frequencyInfo());
    EXPECT_EQ(imported.count("cell tower unit out of range, left out"), 1u) << text;
  }
}

TEST(CellTowerImporter, TheRangeIsRoundedToWholeMetres) {
  struct Case {
    const char* text;
    unsigned int metres;
    unsigned int small;
  };
  for (const Case& each : {Case{"0", 1, 1}, Case{"0.99", 1, 1}, Case{"1", 1, 0}, Case{"1.4", 1, 0},
                           Case{"1.5", 2, 0}, Case{"4294967295", 4294967295u, 0}}) {
    const Imported imported(row(CellTowerColumn::Range, each.text));
    EXPECT_EQ(lte(imported)->coverage()->majorAxis(), each.metres) << each.text;
    EXPECT_EQ(lte(imported)->coverage()->minorAxis(), each.metres) << each.text;
    EXPECT_EQ(imported.count(CellTowerImporter::kSmallRange), each.small) << each.text;
  }
}

TEST(CellTowerImporter, WithoutARangeTheCoverageIsThePositionAlone) {
  struct Case {
    const char* text;
    const char* complaint;
  };
  for (const Case& each : {Case{"", nullptr}, Case{"-1", "cell tower range out of range, left out"},
                           Case{"4294967296", "cell tower range out of range, left out"},
                           Case{"nan", "cell tower range out of range, left out"},
                           Case{"1e999", "cell tower range out of range, left out"},
                           Case{"far", "cell tower range is no number, left out"}}) {
    const Imported imported(row(CellTowerColumn::Range, each.text));
    const auto area = lte(imported)->coverage();
    EXPECT_TRUE(area->valueExists(schema::Area::HasLatitude | schema::Area::HasLongitude));
    EXPECT_FALSE(area->valueExists(schema::Area::HasMajorAxis)) << each.text;
    EXPECT_FALSE(area->valueExists(schema::Area::HasMinorAxis)) << each.text;
    EXPECT_EQ(each.complaint == nullptr ? 1u : imported.count(each.complaint), 1u) << each.text;
  }
}

TEST(CellTowerImporter, APositionThatDoesNotFitLeavesNoCoverage) {
  for (const auto& [column, text] : {std::pair{CellTowerColumn::Latitude, "90.1"},
                                     {CellTowerColumn::Latitude, ""},
                                     {CellTowerColumn::Latitude, "nan"},
                                     {CellTowerColumn::Longitude, "-180.1"},
                                     {CellTowerColumn::Longitude, "east"}}) {
    const Imported imported(row(column, text));
    EXPECT_FALSE(lte(imported)->coverage()) << text;
    EXPECT_EQ(imported.count(CellTowerImporter::kNoPosition), 1u) << text;
  }
}

TEST(CellTowerImporter, Longitude180IsStoredAsMinus180) {
  EXPECT_EQ(lte(Imported(row(CellTowerColumn::Longitude, "180")))->coverage()->longitude(),
            std::numeric_limits<int>::min());
}

TEST(CellTowerImporter, ATimeThatDoesNotFitIsLeftOut) {
  struct Case {
    const char* text;
    unsigned int counted;
  };
  for (const Case& each : {Case{"", 0}, Case{"0", 0}, Case{"4294967296", 1}}) {
    const Imported imported(row(CellTowerColumn::Updated, each.text));
    EXPECT_FALSE(lte(imported)->valueExists(EUtraServingCellInjection::HasTimeStamp)) << each.text;
    EXPECT_EQ(imported.count(kBadTime), each.counted) << each.text;
  }
  EXPECT_EQ(lte(Imported(row(CellTowerColumn::Updated, "4294967295")))->timeStamp(), 4294967295u);
}

TEST(CellTowerImporter, ALevelOf0IsUnknownAndOneThatDoesNotFitIsCounted) {
  struct Case {
    const char* text;
    unsigned int counted;
  };
  for (const Case& each : {Case{"", 0}, Case{"0", 0}, Case{"31", 1}, Case{"-201", 1}}) {
    const Imported imported(row(CellTowerColumn::AverageSignal, each.text));
    const auto nw = lte(imported)->servingCellMeasurement()->nwMeasurement();
    EXPECT_FALSE(nw->valueExists(schema::EUtraNwMeasurement::HasRsrp)) << each.text;
    EXPECT_EQ(imported.count("cell tower averageSignal out of range, left out"), each.counted);
  }
}

TEST(CellTowerImporter, NamesTheColumnsThatTheSchemaHasNoPlaceFor) {
  const Imported imported(goodRow());
  for (const char* column : {"samples", "changeable", "created"}) {
    EXPECT_TRUE(imported.report.isNotStored(std::string("cell tower ") + column)) << column;
  }
}

TEST(CellTowerImporter, AHundredRowsShareOneInjection) {
  std::string rows = kHeader;
  for (int i = 0; i < 201; ++i) {
    rows += row(CellTowerColumn::Cell, std::to_string(i));
    rows += row(CellTowerColumn::Radio, "NR");
  }
  const Imported imported(rows);
  ASSERT_EQ(imported.size(), 3u);
  EXPECT_EQ(imported.injection(0).eutraInjectionCollection()->count(), 100u);
  EXPECT_EQ(imported.injection(1).eutraInjectionCollection()->count(), 100u);
  EXPECT_EQ(imported.injection(2).eutraInjectionCollection()->count(), 1u);
  EXPECT_EQ(imported.injection(2).measurementId(), 3u);
  const auto last =
      member<EUtraServingCellInjection>(imported.injection(1).eutraInjectionCollection(), 99);
  EXPECT_EQ(last->dn()->ucid(), 199u);
}

TEST(CellTowerImporter, AHeaderAloneIsAnEmptyListAndBadRowsAloneAreNothing) {
  EXPECT_TRUE(Imported(kHeader).any);
  EXPECT_FALSE(Imported(std::string(kHeader) + row(CellTowerColumn::Radio, "NR")).any);
  EXPECT_FALSE(Imported("LTE,1\n").any);
  EXPECT_FALSE(Imported("").any);
}

TEST(CellTowerImporter, BadLinesAreReportedWithFileAndLine) {
  const Imported imported(kHeader + goodRow() + "LTE,1\n" + goodRow());
  EXPECT_TRUE(imported.any);
  std::ostringstream text;
  imported.report.print(text);
  EXPECT_EQ(text.str().rfind("trelvo: 1 x line that does not have fourteen columns: list:3\n", 0),
            0u)
      << text.str();
}

// Every row of the real list, against what sscanf makes of the same text.
TEST(CellTowerImporter, StoresEveryRowOfARealList) {
  const std::string text = readExample("cell/opencellid-san-francisco.csv");
  const Imported imported(text);
  EXPECT_EQ(imported.size(), 20u);
  std::istringstream lines(text);
  std::string line;
  std::getline(lines, line);
  unsigned int index = 0;
  for (; std::getline(lines, line); ++index) {
    unsigned int mcc = 0, mnc = 0, area = 0, cell = 0, range = 0, updated = 0;
    int unit = 0;
    double longitude = 0.0, latitude = 0.0;
    ASSERT_EQ(std::sscanf(line.c_str(), "LTE,%u,%u,%u,%u,%d,%lf,%lf,%u,%*u,%*u,%*u,%u", &mcc, &mnc,
                          &area, &cell, &unit, &longitude, &latitude, &range, &updated),
              9)
        << line;
    const auto tower = member<EUtraServingCellInjection>(
        imported.injection(index / 100).eutraInjectionCollection(), index % 100);
    ASSERT_TRUE(tower) << line;
    EXPECT_EQ(tower->dn()->mcc(), mcc);
    EXPECT_EQ(tower->dn()->mnc(), mnc);
    EXPECT_EQ(tower->dn()->ucid(), cell);
    EXPECT_EQ(tower->servingCellMeasurement()->nwMeasurement()->tac(), area);
    EXPECT_EQ(tower->timeStamp(), updated);
    EXPECT_NEAR(Utility::wgs84Latitude(tower->coverage()->latitude()), latitude, 5e-8);
    EXPECT_NEAR(Utility::wgs84Longitude(tower->coverage()->longitude()), longitude, 9e-8);
    EXPECT_EQ(tower->coverage()->majorAxis(), range);
    EXPECT_EQ(tower->coverage()->minorAxis(), range);
  }
  EXPECT_EQ(index, 1999u);
}

/// An output file of its own for each test.
class CellTowerCommand : public ::testing::Test {
 protected:
  CellTowerCommand() { ::close(::mkstemp(m_name)); }
  ~CellTowerCommand() override { std::filesystem::remove(m_name); }

  std::string out() const { return m_name; }

 private:
  char m_name[32] = "/tmp/trelvo-cells-XXXXXX";
};

Bytes bytesOf(const std::string& text) { return Bytes(text.begin(), text.end()); }

// Injection (key 5, 2 properties): list 304 of one object (key 6, 3 properties): identity 200, time
// stamp 205, coverage 204; measurement id 317.
TEST_F(CellTowerCommand, WritesTheseBytes) {
  const std::string list = "GSM,208,10,30014,20669,,90,45,1500,78,1,1,1570119413,\n";
  const Outcome outcome = runTool({"import", "-", "-o", out()}, bytesOf(list));
  EXPECT_EQ(outcome.status, kExitGood) << outcome.err;
  const Wire expected = Wire()
                            .object(5, 2)
                            .value(15, 304)
                            .u32(1)
                            .value(13, 0)
                            .object(6, 3)
                            .value(14, 200)
                            .u16(100)
                            .u8(1)
                            .u8(0x0F)
                            .u16(208)
                            .u16(10)
                            .u16(30014)
                            .u16(20669)
                            .value(6, 205)
                            .u32(1570119413)
                            .value(14, 204)
                            .u16(104)
                            .u8(1)
                            .u8(1)
                            .u16(0x3B)
                            .u32(0x40000000)
                            .u32(0x40000000)
                            .u32(1500)
                            .u32(1500)
                            .u32(0)
                            .value(6, 317)
                            .u32(1);
  std::ifstream file(out(), std::ios::binary);
  EXPECT_EQ(Bytes(std::istreambuf_iterator<char>(file), {}), Bytes(expected));
}

TEST_F(CellTowerCommand, ImportsListsBesideOtherFilesAndVerifiesThem) {
  const Outcome outcome =
      runTool({"import", examplePath("geosubmit/geosubmit2.json"), examplePath("cell/cells.csv"),
               examplePath("cell/opencellid-san-francisco.csv"), "-o", out(), "--verify"});
  EXPECT_EQ(outcome.status, kExitGood) << outcome.err;
  EXPECT_EQ(outcome.out, "22 containers read back, all equal\n");
  EXPECT_NE(outcome.err.find("trelvo: wrote 1 container: 1 GNSS, 1 E-UTRA, 2 WLAN; 21 injections: "
                             "1 GERAN, 1 UTRA FDD, 2000 E-UTRA; "),
            std::string::npos)
      << outcome.err;
}

TEST_F(CellTowerCommand, WhatItWroteCanBeShown) {
  ASSERT_EQ(runTool({"import", examplePath("cell/cells.csv"), "-o", out()}).status, kExitGood);
  const Outcome outcome = runTool({"show", out()});
  EXPECT_EQ(outcome.status, kExitGood) << outcome.err;
  EXPECT_NE(outcome.out.find("  geranInjectionCollection: 1 element\n"
                             "    [0] GeranServingCellInjection\n"
                             "      dn: GeranCellDn\n"
                             "        mcc: 208\n"
                             "        mnc: 10\n"
                             "        lac: 30014\n"
                             "        cid: 20669\n"
                             "      timeStamp: 1570119413 s (2019-10-03T16:16:53Z)\n"
                             "      coverage: Area\n"
                             "        latitude: 46.599244997 degrees (code 1111901296)\n"
                             "        longitude: 2.511266973 degrees (code 29960582)\n"
                             "        majorAxis: 1 m\n"
                             "        minorAxis: 1 m\n"),
            std::string::npos)
      << outcome.out;
}

TEST_F(CellTowerCommand, AHundredThousandRowsTakeNoMoreMemoryThanTwoThousand) {
  const auto peakWith = [](int rows) {
    std::FILE* pipe = ::popen("ASAN_OPTIONS=quarantine_size_mb=1 exec '" TRELVO_PROGRAM
                              "' import - -o /dev/null 2>/dev/null",
                              "w");
    for (int i = 0; i < rows; ++i) {
      std::fputs(row(CellTowerColumn::Cell, std::to_string(i)).c_str(), pipe);
    }
    EXPECT_EQ(::pclose(pipe), 0);
    struct rusage usage {};
    ::getrusage(RUSAGE_CHILDREN, &usage);
    return usage.ru_maxrss;
  };
  // Rows that were kept to the end would take about twice the margin.
  constexpr long kMarginKib = 16 * 1024;
  const long few = peakWith(2000);
  EXPECT_LT(peakWith(test::load(100000)), few + kMarginKib);
}

}  // namespace
}  // namespace trelvo::tool
