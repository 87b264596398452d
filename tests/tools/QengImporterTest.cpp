#include "tools/trelvo/QengImporter.h"

#include <string>

#include "tests/tools/CellSupport.h"
#include "tests/tools/ImportSupport.h"

namespace trelvo::tool {
namespace {

constexpr unsigned int kNow = 1700000000;

struct Import : ImportOutcome {
  explicit Import(const std::string& text, const ImportClock& clock = {{}, kNow}) {
    ProducedStream stream(text);
    ImportSource source(stream, "modem");
    any = QengImporter(source, report, target, clock).run();
  }
};

const std::string kLte =
    "+QENG: \"servingcell\",\"NOCONN\",\"LTE\",\"FDD\",262,01,1A2D001,42,1300,3,5,5,B1F4,-97,-11,"
    "-65,14,33\n";

std::string answer(const std::string& text) { return "+QENG: " + text + "\n"; }

// RSRP -104 dBm is code 37: 1 + (-104 + 140); RSRQ -9 dB is 22: 1 + (-9 + 19.5) / 0.5.
TEST(QengImporter, ReadsARealDialogue) {
  const Import import(readExample("modem/eg25-qeng-lte.txt"));
  EXPECT_TRUE(import.any);
  ASSERT_EQ(import.size(), 1u);
  ASSERT_EQ(import.container().eutraMeasurementCollection()->count(), 1u);
  const auto cell = import.container().eutraMeasurement(0);
  EXPECT_EQ(cell->timeStamp(), kNow);
  EXPECT_EQ(*cell->dn(), schema::EUtraCellDn(214, 1, 0x7676A09));
  auto serving = eutra(6300, 188, 37, 22);
  serving.setTac(0x603);
  EXPECT_EQ(*cell->servingCellMeasurement()->nwMeasurement(), serving);
  ASSERT_EQ(cell->nwMeasurementCollection()->count(), 3u);
  expectNeighbour(*cell, 0, eutra(6300, 188, 36, 16));
  expectNeighbour(*cell, 1, eutra(1501, {}, {}, {}));
  expectNeighbour(*cell, 2, eutra(3250, {}, {}, {}));

  ASSERT_EQ(import.container().utraFddMeasurementCollection()->count(), 1u);
  const auto wcdma = import.container().utraFddMeasurement(0);
  EXPECT_FALSE(wcdma->dn());
  EXPECT_FALSE(wcdma->servingCellMeasurement());
  ASSERT_EQ(wcdma->nwMeasurementCollection()->count(), 2u);
  expectNeighbour(*wcdma, 0, utra(3062, {}, {}, {}));
  expectNeighbour(*wcdma, 1, utra(10713, {}, {}, {}));
  EXPECT_EQ(import.report.countOf(QengImporter::kStrayLine), 0u);
  EXPECT_EQ(import.report.countOf(QengImporter::kUnknownLayout), 0u);
}

TEST(QengImporter, NamesTheColumnsItHasNoPlaceFor) {
  const Import import(readExample("modem/eg25-qeng-lte.txt"));
  for (const char* kind :
       {"servingcell", "neighbourcell intra", "neighbourcell inter", "neighbourcell"}) {
    EXPECT_TRUE(import.report.isNotStored(std::string("QENG ") + kind + " further columns"))
        << kind;
  }
}

// RXLEV of -61 dBm is 1 + (-61 + 110), of -75 dBm 36; RSCP of -85 dBm is -5 + 1 + (-85 + 120),
// Ec/No of -9 dB is 1 + (-9 + 24) / 0.5.
TEST(QengImporter, ReadsADialogueOnAGsmCell) {
  const Import import(readExample("modem/made-up-qeng-gsm.txt"));
  ASSERT_EQ(import.size(), 1u);
  const auto cell = import.container().geranMeasurement(0);
  ASSERT_TRUE(cell);
  EXPECT_EQ(*cell->dn(), schema::GeranCellDn(262, 1, 0x550A, 0x2BB9));
  EXPECT_EQ(*cell->servingCellMeasurement()->nwMeasurement(), geran(94, 23, 50));
  auto neighbour = geran(78, 24, 36);
  neighbour.setLac(0x550A);
  neighbour.setCid(0x2BBA);
  expectNeighbour(*cell, 0, neighbour);
  expectNeighbour(*import.container().utraFddMeasurement(0), 0, utra(10713, 300, 31, 31));
  expectNeighbour(*import.container().eutraMeasurement(0), 0, eutra(1300, 188, 37, 22));
  EXPECT_EQ(import.report.countOf(QengImporter::kUnknownLayout), 0u);
}

TEST(QengImporter, ReadsADialogueOnAWcdmaCell) {
  const Import import(readExample("modem/made-up-qeng-wcdma.txt"));
  ASSERT_EQ(import.size(), 1u);
  const auto cell = import.container().utraFddMeasurement(0);
  ASSERT_TRUE(cell);
  EXPECT_EQ(*cell->dn(), schema::UtraCellDn(262, 1, 0xB8F3A21));
  EXPECT_EQ(cell->servingCellMeasurement()->lac(), 0x550Au);
  EXPECT_EQ(*cell->servingCellMeasurement()->nwMeasurement(), utra(10713, 42, 36, 35));
  expectNeighbour(*cell, 0, utra(10713, 43, 25, 21));
  expectNeighbour(*import.container().eutraMeasurement(0), 0, eutra(6300, 5, 40, 18));
}

TEST(QengImporter, NeighboursOnAnLteCellHaveColumnsOfTheirOwn) {
  const Import import(kLte + answer("\"neighbourcell\",\"WCDMA\",10713,3,16,2,43,-91,-14,9") +
                      answer("\"neighbourcell\",\"GSM\",78,1,2,3,255,0,24,-75,10"));
  ASSERT_EQ(import.size(), 1u);
  expectNeighbour(*import.container().utraFddMeasurement(0), 0, utra(10713, 43, 25, 21));
  expectNeighbour(*import.container().geranMeasurement(0), 0, geran(78, 24, 36));
}

TEST(QengImporter, NeighboursAheadOfTheServingCellShowTheirNetwork) {
  const Import import(answer("\"neighbourcell intra\",\"LTE\",6300,188,-12,-105,-75,-20,23,4,12") +
                      answer("\"neighbourcell\",\"WCDMA\",3062,3,16,2,-,-,-,-"));
  ASSERT_EQ(import.size(), 1u);
  EXPECT_EQ(import.report.countOf(QengImporter::kUnknownLayout), 0u);
  EXPECT_FALSE(import.container().eutraMeasurement(0)->dn());
  const Import unknown(answer("\"neighbourcell\",\"WCDMA\",3062,3,16,2,-,-,-,-"));
  EXPECT_EQ(unknown.size(), 0u);
  EXPECT_EQ(unknown.report.countOf(QengImporter::kUnknownLayout), 1u);
}

TEST(QengImporter, EachServingCellStartsAContainer) {
  const Import import(kLte + kLte + answer("\"servingcell\",\"SEARCH\"") + kLte);
  EXPECT_EQ(import.size(), 3u);
  EXPECT_EQ(import.report.countOf(QengImporter::kNoCell), 1u);
  EXPECT_EQ(import.container(2).measurementId(), 3u);
}

TEST(QengImporter, BesideA5GCellTheLteCellStandsAlone) {
  const Import import(answer("\"servingcell\",\"NOCONN\"") +
                      answer("\"LTE\",\"FDD\",262,01,1A2D001,42,1300,3,5,5,B1F4,-97,-11,-65,14,9") +
                      answer("\"NR5G-NSA\",262,01,99,-87,13,-11,627264,78"));
  ASSERT_EQ(import.size(), 1u);
  EXPECT_EQ(*import.container().eutraMeasurement(0)->dn(), schema::EUtraCellDn(262, 1, 0x1A2D001));
  EXPECT_EQ(import.report.countOf("unknown radio type 'NR5G-NSA'"), 1u);
  const Import alone(answer("\"servingcell\",\"NOCONN\",\"NR5G-SA\",\"TDD\",262,01,99"));
  EXPECT_EQ(alone.size(), 0u);
  EXPECT_EQ(alone.report.countOf("unknown radio type 'NR5G-SA'"), 1u);
}

TEST(QengImporter, ValuesThatDoNotFitAreLeftOutAndCounted) {
  const Import import(
      answer("\"servingcell\",\"NOCONN\",\"LTE\",\"FDD\",1000,x,10000000,504,65536,3,5,5,10000,0,"
             "-101,-65,14,33") +
      answer("\"neighbourcell intra\",\"LTE\",6300,503,,-201"));
  ASSERT_EQ(import.size(), 1u);
  const auto cell = import.container().eutraMeasurement(0);
  EXPECT_FALSE(cell->dn());
  EXPECT_FALSE(cell->servingCellMeasurement());
  expectNeighbour(*cell, 0, eutra(6300, 503, {}, {}));
  for (const char* name :
       {"MCC", "MNC", "cell identity", "code of the cell", "channel", "area code", "quality"}) {
    EXPECT_EQ(import.report.countOf(std::string("QENG ") + name + " that cannot be read, left out"),
              1u)
        << name;
  }
  EXPECT_EQ(import.report.countOf("QENG level that cannot be read, left out"), 2u);
  EXPECT_EQ(import.report.countOf(kEmptyTower), 1u);
}

TEST(QengImporter, CountsAnswersWithFewerColumns) {
  const Import import(kLte + answer("\"servingcell\",\"NOCONN\",\"LTE\",\"FDD\",262,01") +
                      answer("\"neighbourcell intra\",\"LTE\",6300,188,-12") +
                      answer("\"neighbourcell\"") + answer("\"other\",\"LTE\",1"));
  EXPECT_EQ(import.size(), 1u);
  EXPECT_EQ(import.report.countOf(QengImporter::kUnknownLayout), 3u);
  EXPECT_EQ(import.report.countOf("unknown radio type ''"), 1u);
}

TEST(QengImporter, WhatElseAModemSaysIsPassedOver) {
  const Import import("AT+QENG=\"servingcell\"\r\r\n+QENG:\r\n" + kLte.substr(7) +
                      "\r\nOK\r\nERROR\r\n+CME ERROR: 3\r\nRING\r\n+QENG:\r\nOK\r\n");
  EXPECT_EQ(import.size(), 1u);
  EXPECT_EQ(import.report.countOf(QengImporter::kStrayLine), 1u);
}

TEST(QengImporter, WithoutATimeThereAreNoTimeStamps) {
  const Import import(kLte, {});
  EXPECT_EQ(import.container().eutraMeasurement(0)->timeStamp(), 0u);
  EXPECT_EQ(import.report.countOf(kNoClock), 1u);
}

TEST(QengImporter, AContainerHasALimit) {
  std::string text = kLte;
  for (size_t i = 0; i < QengImporter::kMostCells; ++i) {
    text += answer("\"neighbourcell intra\",\"LTE\",6300,188,-12,-105");
  }
  const Import import(text);
  ASSERT_EQ(import.size(), 2u);
  EXPECT_EQ(import.container().eutraMeasurement(0)->nwMeasurementCollection()->count(),
            QengImporter::kMostCells - 1);
  EXPECT_EQ(import.container(1).eutraMeasurement(0)->nwMeasurementCollection()->count(), 1u);
}

TEST(QengImporter, NothingButOtherLinesIsNothing) {
  EXPECT_FALSE(Import("").any);
  EXPECT_FALSE(Import("AT\r\nOK\r\n").any);
  EXPECT_FALSE(Import("hello\n").any);
}

}  // namespace
}  // namespace trelvo::tool
