// Requests for a position, and what the older forms of reports have of their own.

#include <trelvo/schema/WlanMeasurement.h>

#include <string>

#include "tests/tools/CellSupport.h"
#include "tests/tools/ImportSupport.h"
#include "tools/trelvo/GeosubmitCells.h"
#include "tools/trelvo/GeosubmitImporter.h"
#include "tools/trelvo/ImportFormat.h"
#include "tools/trelvo/JsonItems.h"

namespace trelvo::tool {
namespace {

constexpr unsigned int kNow = 1700000000;

struct Import : ImportOutcome {
  explicit Import(const std::string& text, const ImportClock& clock = {{}, kNow},
                  ImportFormat format = ImportFormat::Geolocate) {
    ProducedStream stream(text);
    any = importStream(stream, "request", format, clock, report, target);
  }
};

TEST(Geolocate, ReadsTheDocumentedRequestForAccessPoints) {
  const Import import(readExample("geolocate/geolocate-request-wifi.json"));
  ASSERT_EQ(import.size(), 1u);
  ASSERT_EQ(import.container().wlanMeasurementCollection()->count(), 2u);
  const auto first = import.container().wlanMeasurement(0);
  EXPECT_EQ(first->timeStamp(), kNow);
  EXPECT_EQ(first->dn()->bssid(), 0x012345FFFF6789ABu);
  EXPECT_EQ(first->wlanApMeasurement()->rxLevel(), -51);
  const auto second = import.container().wlanMeasurement(1);
  EXPECT_EQ(second->dn()->bssid(), 0x012345FFFF6789CDu);
  EXPECT_FALSE(second->wlanApMeasurement());
  EXPECT_TRUE(import.report.isEmpty());
}

TEST(Geolocate, ReadsTheDocumentedRequestForACell) {
  const Import import(readExample("geolocate/geolocate-request-cell.json"));
  ASSERT_EQ(import.size(), 1u);
  const auto cell = import.container().utraFddMeasurement(0);
  ASSERT_TRUE(cell);
  EXPECT_EQ(cell->timeStamp(), kNow);
  EXPECT_EQ(*cell->dn(), schema::UtraCellDn(208, 1, 1234567));
  EXPECT_EQ(cell->servingCellMeasurement()->lac(), 2u);
  EXPECT_EQ(cell->servingCellMeasurement()->nwMeasurement()->rscp(), 56);
  EXPECT_TRUE(import.report.isEmpty());
}

TEST(Geolocate, ReadsTheDocumentedRequestWithEverything) {
  const Import import(readExample("geolocate/geolocate-request-complete.json"));
  ASSERT_EQ(import.size(), 1u);
  const auto cell = import.container().utraFddMeasurement(0);
  ASSERT_TRUE(cell);
  EXPECT_EQ(*cell->dn(), schema::UtraCellDn(208, 1, 1234567));
  EXPECT_EQ(*cell->servingCellMeasurement()->nwMeasurement(), utra({}, 3, 56, {}));
  EXPECT_EQ(cell->timeStamp(), kNow - 1);
  EXPECT_EQ(import.container().wlanMeasurementCollection()->count(), 2u);
  EXPECT_EQ(import.container().wlanMeasurement(0)->timeStamp(), kNow - 1);
  EXPECT_EQ(import.container().wlanMeasurement(1)->timeStamp(), kNow);
  for (const char* field :
       {"carrier", "considerIp", "homeMobileCountryCode", "fallbacks", "homeMobileNetworkCode",
        "bluetoothBeacons", "cellTowers.timingAdvance", "wifiAccessPoints.channel",
        "wifiAccessPoints.frequency", "wifiAccessPoints.signalToNoiseRatio"}) {
    EXPECT_TRUE(import.report.isNotStored(field)) << field;
  }
  EXPECT_FALSE(import.report.isNotStored("cellTowers.psc"));
}

TEST(Geolocate, WithoutATimeThereAreNoTimeStamps) {
  const Import import(readExample("geolocate/geolocate-request-complete.json"), {});
  EXPECT_EQ(import.container().utraFddMeasurement(0)->timeStamp(), 0u);
  EXPECT_EQ(import.container().wlanMeasurement(0)->timeStamp(), 0u);
  EXPECT_EQ(import.report.countOf(kNoClock), 1u);
}

TEST(Geolocate, ARadioTypeBesideTheListStandsForTowersWithoutOne) {
  const Import import(R"({"radioType": "lte", "cellTowers": [
      {"cellId": 1}, {"radioType": "gsm", "cellId": 2}]})");
  ASSERT_EQ(import.size(), 1u);
  EXPECT_EQ(import.container().eutraMeasurement(0)->dn()->ucid(), 1u);
  EXPECT_TRUE(import.container().geranMeasurement(0));
  EXPECT_FALSE(import.report.isNotStored("radioType"));
  EXPECT_EQ(import.report.countOf(kNoRadioType), 0u);
}

TEST(Geolocate, EachRequestIsAContainer) {
  const std::string one = R"({"wifiAccessPoints": [{"macAddress": "01:23:45:67:89:ab"}]})";
  const Import import(one + "\n" + one + "\n{}\n[1]\n" + one + "{");
  EXPECT_EQ(import.size(), 3u);
  EXPECT_TRUE(import.any);
  EXPECT_EQ(import.report.countOf(GeosubmitImporter::kEmptyItem), 1u);
  EXPECT_EQ(import.report.countOf(GeosubmitImporter::kNoObject), 1u);
  std::ostringstream text;
  import.report.print(text);
  EXPECT_NE(text.str().find(JsonItems::kDamaged), std::string::npos) << text.str();
}

TEST(Geolocate, AnEmptyRequestIsNothing) {
  EXPECT_FALSE(Import("{}").any);
  EXPECT_FALSE(Import("").any);
}

// The whole of the documented report of version 1.
TEST(GeosubmitVersion1, IsReadAsAWhole) {
  const Import import(readExample("geosubmit/geosubmit1.json"), {}, ImportFormat::Auto);
  ASSERT_EQ(import.size(), 1u);
  const auto fix = positionOf(import.container());
  EXPECT_EQ(fix->timeStamp(), 1405602028u);
  EXPECT_NEAR(fix->latitude(), -22.7539192, 5e-8);
  EXPECT_NEAR(fix->longitude(), -43.4371081, 1e-7);
  EXPECT_EQ(fix->horizontalCepUncertainty(), 10.0);
  EXPECT_EQ(fix->speed(), 3.6);
  EXPECT_EQ(fix->course(), 45.0);
  const auto cell = import.container().geranMeasurement(0);
  ASSERT_TRUE(cell);
  EXPECT_EQ(cell->timeStamp(), 1405602028u);
  EXPECT_EQ(*cell->dn(), schema::GeranCellDn(208, 1, 2, 12345));
  EXPECT_EQ(cell->servingCellMeasurement()->rxLevel(), 60u);
  EXPECT_EQ(cell->servingCellMeasurement()->timingAdvance(), 1u);
  EXPECT_EQ(import.container().wlanMeasurement(0)->dn()->bssid(), 0x012345FFFF6789ABu);
  EXPECT_EQ(import.container().wlanMeasurement(0)->wlanApMeasurement()->rxLevel(), -77);
  EXPECT_EQ(import.container().wlanMeasurement(1)->dn()->bssid(), 0x234567FFFF89ABCDu);
  EXPECT_FALSE(import.container().wlanMeasurement(1)->wlanApMeasurement());
}

TEST(GeosubmitVersion1, KnowsTheScramblingCodeByItsShortName) {
  const auto pcpich = [](const std::string& codes) {
    const Import import(R"({"items": [{"timestamp": 1405602028568, "radioType": "umts",
        "cellTowers": [{"cellId": 1, )" +
                            codes + "}]}]}",
                        {}, ImportFormat::Auto);
    return import.container().utraFddMeasurement(0)->servingCellMeasurement()->frequencyInfo();
  };
  EXPECT_EQ(pcpich(R"("psc": 3)")->pcpich(), 3u);
  EXPECT_EQ(pcpich(R"("psc": 3, "primaryScramblingCode": 4)")->pcpich(), 4u);
}

}  // namespace
}  // namespace trelvo::tool
