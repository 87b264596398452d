#include "tools/trelvo/MmcliImporter.h"

#include <trelvo/schema/Utility.h>

#include <string>

#include "tests/tools/CellSupport.h"
#include "tests/tools/ImportSupport.h"
#include "tools/trelvo/ImportFix.h"
#include "tools/trelvo/JsonItems.h"

namespace trelvo::tool {
namespace {

using schema::PositionEstimate;

constexpr unsigned int kNow = 1700000000;

struct Import : ImportOutcome {
  explicit Import(const std::string& text, const ImportClock& clock = {{}, kNow}) {
    ProducedStream stream(text);
    ImportSource source(stream, "modem");
    any = MmcliImporter(source, report, target, clock).run();
  }
};

std::string cells(const std::string& list) {
  return R"({"modem":{"generic":{"cell-info":[)" + list + "]}}}\n";
}

std::string cell(const std::string& text) { return cells("\"" + text + "\""); }

std::string location(const std::string& members) {
  return R"({"modem":{"location":{)" + members + "}}}\n";
}

// RSRP -97.5 dBm is code 43: 1 + floor(42.5); RSRQ -11.25 dB is 17: 1 + floor(8.25 / 0.5).
TEST(MmcliImporter, ReadsEachTypeOfCellInOneAnswer) {
  const Import import(readExample("modem/mmcli-cell-info.json"));
  EXPECT_TRUE(import.any);
  ASSERT_EQ(import.size(), 1u);
  const auto lte = import.container().eutraMeasurement(0);
  ASSERT_TRUE(lte);
  EXPECT_EQ(lte->timeStamp(), kNow);
  EXPECT_EQ(*lte->dn(), schema::EUtraCellDn(262, 1, 0x1234507));
  auto serving = eutra(1300, 0x1A0, 43, 17);
  serving.setTac(0x6FFE);
  EXPECT_EQ(*lte->servingCellMeasurement()->nwMeasurement(), serving);
  EXPECT_EQ(lte->servingCellMeasurement()->timingAdvance(), 0u);
  expectNeighbour(*lte, 0, eutra(6300, 0x17, 36, 12));

  const auto umts = import.container().utraFddMeasurement(0);
  ASSERT_TRUE(umts);
  EXPECT_EQ(*umts->dn(), schema::UtraCellDn(310, 260, 0xD30156));
  EXPECT_EQ(umts->servingCellMeasurement()->lac(), 0x8BE3u);
  auto heard = utra(10562, 42, 36, 36);
  heard.setPathloss(110);
  EXPECT_EQ(*umts->servingCellMeasurement()->nwMeasurement(), heard);

  const auto gsm = import.container().geranMeasurement(0);
  ASSERT_TRUE(gsm);
  EXPECT_FALSE(gsm->dn());
  auto neighbour = geran(94, 0x3F, 21);
  neighbour.setLac(0x84CD);
  neighbour.setCid(0x2BAF);
  expectNeighbour(*gsm, 0, neighbour);
}

TEST(MmcliImporter, NamesAndCountsTheRest) {
  const Import import(readExample("modem/mmcli-cell-info.json"));
  for (const char* type : {"5gnr", "cdma", "tdscdma"}) {
    EXPECT_EQ(import.report.countOf(std::string("unknown radio type '") + type + "'"), 1u) << type;
  }
  for (const char* field :
       {"cell-info.timing advance", "cell-info.frequency fdd ul", "cell-info.frequency fdd dl"}) {
    EXPECT_TRUE(import.report.isNotStored(field)) << field;
  }
  EXPECT_EQ(import.report.countOf(kNoClock), 0u);
}

TEST(MmcliImporter, AServingGsmCellHasATimingAdvance) {
  const Import import(
      cell("cell type: gsm, serving: yes, operator id: 26207, lac: 84CD, ci: 2BAF, "
           "timing advance: 3, arfcn: 94, base station id: 3F, rx level: 63"));
  const auto gsm = import.container().geranMeasurement(0);
  EXPECT_EQ(*gsm->dn(), schema::GeranCellDn(262, 7, 0x84CD, 0x2BAF));
  EXPECT_EQ(gsm->servingCellMeasurement()->timingAdvance(), 3u);
  EXPECT_EQ(*gsm->servingCellMeasurement()->nwMeasurement(), geran(94, 0x3F, 63));
}

TEST(MmcliImporter, EveryReceivedLevelStaysTheSameCode) {
  for (int code = 0; code <= 63; ++code) {
    const Import import(cell("cell type: gsm, serving: yes, rx level: " + std::to_string(code)));
    EXPECT_EQ(import.container().geranMeasurement(0)->servingCellMeasurement()->rxLevel(), code);
  }
}

TEST(MmcliImporter, ValuesThatDoNotFitAreLeftOutAndCounted) {
  const Import import(
      cell("cell type: lte, serving: perhaps, operator id: 2620, tac: 10000, ci: 10000000, "
           "physical ci: 1F8, earfcn: 65536, rsrp: 0.000000, rsrq: x") +
      cell("cell type: gsm, serving: yes, base station id: 40, rx level: 64, ci: 10000, lac: -1") +
      cell("cell type: umts, serving: yes, psc: 512, path loss: 174, ecio: 20.5, rscp"));
  EXPECT_EQ(import.size(), 0u);
  for (const char* name :
       {"serving", "operator id", "tac", "physical ci", "earfcn", "rsrp", "rsrq", "base station id",
        "rx level", "lac", "psc", "path loss", "ecio", "rscp"}) {
    EXPECT_EQ(
        import.report.countOf(std::string("cell-info.") + name + " that cannot be read, left out"),
        1u)
        << name;
  }
  EXPECT_EQ(import.report.countOf("cell-info.ci that cannot be read, left out"), 2u);
  EXPECT_EQ(import.report.countOf(MmcliImporter::kEmptyDocument), 3u);
}

TEST(MmcliImporter, ElementsThatAreNoCellsAreCounted) {
  const Import import(cells(R"(7, null, {}, "", "cell type", "serving: yes")"));
  EXPECT_EQ(import.size(), 0u);
  EXPECT_EQ(import.report.countOf("modem.generic.cell-info of the wrong type, left out"), 3u);
  EXPECT_EQ(import.report.countOf("unknown radio type ''"), 3u);
  for (const char* text :
       {R"({"modem": {"generic": {"cell-info": "x"}}})", R"({"modem": {"generic": 5}})",
        R"({"modem": {"location": []}})", R"({"modem": {"location": {"3gpp": 1, "gps": true}}})"}) {
    EXPECT_EQ(Import(text).report.countOf(MmcliImporter::kEmptyDocument), 1u) << text;
  }
}

TEST(MmcliImporter, ReadsALocation) {
  const Import import(readExample("modem/mmcli-location.json"));
  ASSERT_EQ(import.size(), 1u);
  const auto lte = import.container().eutraMeasurement(0);
  ASSERT_TRUE(lte);
  EXPECT_EQ(lte->timeStamp(), kNow);
  EXPECT_EQ(*lte->dn(), schema::EUtraCellDn(262, 1, 0x1234507));
  schema::EUtraNwMeasurement area;
  area.setTac(0x6FFE);
  EXPECT_EQ(*lte->servingCellMeasurement()->nwMeasurement(), area);

  const auto fix = positionOf(import.container());
  EXPECT_EQ(fix->timeStamp(), kNow);
  EXPECT_NEAR(fix->latitude(), 38.889722, 5e-8);
  EXPECT_NEAR(fix->longitude(), -77.008889, 1e-7);
  EXPECT_FALSE(fix->valueExists(PositionEstimate::HasAltitude));
  EXPECT_EQ(import.report.countOf(kSeaLevel), 1u);
  EXPECT_TRUE(import.report.isNotStored("modem.location.gps.nmea"));
  EXPECT_TRUE(import.report.isNotStored("modem.location.gps.utc"));
  EXPECT_FALSE(import.report.isNotStored("modem.location.cdma-bs.latitude"));
  EXPECT_FALSE(import.report.isNotStored("modem.location.3gpp.lac beside a tracking area"));
}

TEST(MmcliImporter, TheNumbersOfALocationTellItsNetwork) {
  const auto registered = [](const std::string& cid, const std::string& lac,
                             const std::string& tac) {
    return location(R"("3gpp":{"cid":")" + cid + R"(","lac":")" + lac +
                    R"(","mcc":"310","mnc":"026",)" + R"("tac":")" + tac + R"("})");
  };
  const Import gsm(registered("2BAF", "84CD", "--"));
  EXPECT_EQ(*gsm.container().geranMeasurement(0)->dn(),
            schema::GeranCellDn(310, 26, 0x84CD, 0x2BAF));
  const Import umts(registered("1CEAD80", "CE00", "000000"));
  EXPECT_EQ(*umts.container().utraFddMeasurement(0)->dn(), schema::UtraCellDn(310, 26, 0x1CEAD80));
  EXPECT_EQ(umts.container().utraFddMeasurement(0)->servingCellMeasurement()->lac(), 0xCE00u);
  const Import lte(registered("2BAF", "84CD", "6FFE"));
  EXPECT_EQ(*lte.container().eutraMeasurement(0)->dn(), schema::EUtraCellDn(310, 26, 0x2BAF));
  EXPECT_TRUE(lte.report.isNotStored("modem.location.3gpp.lac beside a tracking area"));
  const Import none(registered("--", "--", "--"));
  EXPECT_EQ(none.size(), 0u);
  EXPECT_EQ(none.report.countOf(MmcliImporter::kEmptyDocument), 1u);
  const Import nr(registered("123456789", "FFFE", "A0F100"));
  EXPECT_EQ(nr.size(), 0u);
  EXPECT_EQ(nr.report.countOf("modem.location.3gpp.cid out of range, left out"), 1u);
  EXPECT_EQ(nr.report.countOf("modem.location.3gpp.tac out of range, left out"), 1u);
}

TEST(MmcliImporter, WithoutATimeThereAreNoTimeStamps) {
  const Import import(readExample("modem/mmcli-location.json"), {});
  EXPECT_EQ(import.container().eutraMeasurement(0)->timeStamp(), 0u);
  EXPECT_FALSE(positionOf(import.container())->valueExists(PositionEstimate::HasTimeStamp));
  EXPECT_EQ(import.report.countOf(kNoClock), 1u);
}

TEST(MmcliImporter, EachDocumentIsAContainer) {
  const std::string one = cell("cell type: lte, serving: yes, ci: 1");
  const Import import(one + one + "{\"modem\": {\"dbus-path\": \"/x\"}} 5 {\"modem\": 1} {}");
  EXPECT_EQ(import.size(), 2u);
  EXPECT_EQ(import.container(1).measurementId(), 2u);
  EXPECT_EQ(import.report.countOf(MmcliImporter::kEmptyDocument), 1u);
  EXPECT_EQ(import.report.countOf(MmcliImporter::kNoModem), 3u);
  EXPECT_TRUE(import.report.isNotStored("modem.dbus-path"));
}

TEST(MmcliImporter, StoresTheDocumentsAheadOfTheDamage) {
  const Import import(cell("cell type: lte, serving: yes, ci: 1") + "{\"modem\": ");
  EXPECT_TRUE(import.any);
  EXPECT_EQ(import.size(), 1u);
  std::ostringstream text;
  import.report.print(text);
  EXPECT_NE(text.str().find(JsonItems::kDamaged), std::string::npos) << text.str();
  EXPECT_FALSE(Import("").any);
}

}  // namespace
}  // namespace trelvo::tool
