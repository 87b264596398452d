#include "tools/trelvo/GeosubmitImporter.h"

#include <trelvo/schema/EUtraCellMeasurement.h>
#include <trelvo/schema/GeranCellMeasurement.h>
#include <trelvo/schema/UtraFddCellMeasurement.h>
#include <trelvo/schema/WlanMeasurement.h>

#include <string>
#include <vector>

#include "tests/tools/ImportSupport.h"
#include "tools/trelvo/GeosubmitCells.h"
#include "tools/trelvo/HeardAccessPoint.h"
#include "tools/trelvo/ImportFix.h"
#include "tools/trelvo/JsonItems.h"

namespace trelvo::tool {
namespace {

using schema::MeasurementContainer;
using schema::PositionEstimate;

struct Import : ImportOutcome {
  explicit Import(const std::string& text) {
    ProducedStream stream(text);
    ImportSource source(stream, "report");
    any = GeosubmitImporter(source, report, target).run();
  }
};

// One item with a time stamp of 1405602028 s and the given further members.
std::string item(const std::string& members) {
  return "{\"items\": [{\"timestamp\": 1405602028568" + (members.empty() ? "" : ", " + members) +
         "}]}";
}

std::string towers(const std::string& list) { return item("\"cellTowers\": [" + list + "]"); }

std::string accessPoints(const std::string& list) {
  return item("\"wifiAccessPoints\": [" + list + "]");
}

std::string position(const std::string& members) {
  return item("\"position\": {\"latitude\": 1.0, \"longitude\": 2.0" +
              (members.empty() ? "" : ", " + members) + "}");
}

TEST(GeosubmitImporter, ReadsTheDocumentedReportOfVersion2) {
  const Import import(readExample("geosubmit/geosubmit2.json"));
  ASSERT_EQ(import.size(), 1u);
  const MeasurementContainer& container = import.container();
  EXPECT_EQ(container.measurementId(), 1u);

  const auto fix = positionOf(container);
  EXPECT_EQ(fix->timeStamp(), 1405602027u);
  EXPECT_NEAR(fix->latitude(), -22.7539192, 5e-8);
  EXPECT_NEAR(fix->longitude(), -43.4371081, 1e-7);
  EXPECT_EQ(fix->horizontalCepUncertainty(), 10.0);
  EXPECT_EQ(fix->speed(), 3.6);
  EXPECT_EQ(fix->course(), 45.0);
  EXPECT_FALSE(fix->valueExists(PositionEstimate::HasAltitude));
  EXPECT_FALSE(fix->valueExists(PositionEstimate::HasAltitudeUncertainty));

  const auto cell = container.eutraMeasurement(0);
  ASSERT_TRUE(cell);
  EXPECT_EQ(cell->timeStamp(), 1405602025u);
  EXPECT_EQ(*cell->dn(), schema::EUtraCellDn(208, 1, 12345));
  const auto heard = cell->servingCellMeasurement();
  EXPECT_EQ(heard->timingAdvance(), 1u);
  EXPECT_EQ(heard->nwMeasurement()->tac(), 2u);
  EXPECT_EQ(heard->nwMeasurement()->rsrp(), 90u);
  EXPECT_EQ(heard->frequencyInfo()->pci(), 5u);

  ASSERT_EQ(container.wlanMeasurementCollection()->count(), 2u);
  const auto first = container.wlanMeasurement(0);
  EXPECT_EQ(first->timeStamp(), 1405602023u);
  EXPECT_EQ(first->dn()->bssid(), 0x012345FFFF6789ABu);
  EXPECT_EQ(first->wlanApMeasurement()->rxLevel(), -77);
  const auto second = container.wlanMeasurement(1);
  EXPECT_EQ(second->timeStamp(), 1405602028u);
  EXPECT_FALSE(second->wlanApMeasurement());
}

TEST(GeosubmitImporter, NamesWhatTheDocumentedReportHoldsInVain) {
  const Import import(readExample("geosubmit/geosubmit2.json"));
  for (const char* field : {"bluetoothBeacons", "position.pressure", "wifiAccessPoints.channel",
                            "wifiAccessPoints.frequency", "wifiAccessPoints.radioType",
                            "wifiAccessPoints.signalToNoiseRatio"}) {
    EXPECT_TRUE(import.report.isNotStored(field)) << field;
  }
  EXPECT_FALSE(import.report.isNotStored("position.latitude"));
  EXPECT_EQ(import.report.countOf(kSeaLevel), 1u);
  EXPECT_EQ(import.report.countOf(GeosubmitImporter::kLostAltitudeAccuracy), 1u);
}

TEST(GeosubmitImporter, ReadsTheFlatPositionOfVersion1) {
  const Import import(readExample("geosubmit/geosubmit1.json"));
  ASSERT_EQ(import.size(), 1u);
  EXPECT_NEAR(positionOf(import.container())->latitude(), -22.7539192, 5e-8);
  const auto cell = import.container().geranMeasurement(0);
  ASSERT_TRUE(cell);
  EXPECT_EQ(*cell->dn(), schema::GeranCellDn(208, 1, 2, 12345));
  EXPECT_EQ(cell->servingCellMeasurement()->rxLevel(), 60u);
  EXPECT_EQ(cell->servingCellMeasurement()->timingAdvance(), 1u);
  EXPECT_EQ(import.container().wlanMeasurementCollection()->count(), 2u);
}

TEST(GeosubmitImporter, WrapsLongitudeAndCourse) {
  const Import import(item(R"("position": {"latitude": 0, "longitude": 180, "heading": 270.5})"));
  EXPECT_EQ(positionOf(import.container())->longitude(), -180.0);
  EXPECT_EQ(positionOf(import.container())->course(), -89.5);
}

TEST(GeosubmitImporter, LeavesOutWhatIsOutOfRange) {
  const Import import(position(R"("accuracy": 0, "speed": -1, "heading": 1000)"));
  const auto fix = positionOf(import.container());
  EXPECT_FALSE(fix->valueExists(PositionEstimate::HasHorizontalCepUncertainty));
  EXPECT_FALSE(fix->valueExists(PositionEstimate::HasSpeed));
  EXPECT_FALSE(fix->valueExists(PositionEstimate::HasCourse));
  EXPECT_EQ(import.report.countOf(kBadRadius), 1u);
  EXPECT_EQ(import.report.countOf(kBadSpeed), 1u);
  EXPECT_EQ(import.report.countOf(kBadCourse), 1u);
}

TEST(GeosubmitImporter, CountsPositionsThatAreNone) {
  for (const char* text : {R"("position": {"latitude": 1})", R"("position": {})",
                           R"("position": {"latitude": 91, "longitude": 0})",
                           R"("position": {"latitude": "1", "longitude": 0})",
                           R"("position": {"latitude": 1, "longitude": 1000})"}) {
    const Import import(item(text));
    EXPECT_EQ(import.size(), 0u) << text;
    EXPECT_EQ(import.report.countOf(kNoPosition), 1u) << text;
    EXPECT_EQ(import.report.countOf(GeosubmitImporter::kEmptyItem), 1u) << text;
    EXPECT_FALSE(import.any) << text;
  }
}

TEST(GeosubmitImporter, StoresPositionsOfOtherSourcesAndCountsThem) {
  const Import import(position(R"("source": "fused")"));
  EXPECT_EQ(import.size(), 1u);
  EXPECT_EQ(import.report.countOf("position of source 'fused', stored as a GNSS measurement"), 1u);
  EXPECT_TRUE(Import(position(R"("source": "gps")")).report.isEmpty());
  EXPECT_TRUE(Import(position("")).report.isEmpty());
}

TEST(GeosubmitImporter, TakesTheAgeOffTheTimeStamp) {
  const auto stampOf = [](const std::string& text) {
    return positionOf(Import(text).container())->timeStamp();
  };
  EXPECT_EQ(stampOf(position("")), 1405602028u);
  EXPECT_EQ(stampOf(position(R"("age": 568)")), 1405602028u);
  EXPECT_EQ(stampOf(position(R"("age": 569)")), 1405602027u);
  EXPECT_EQ(stampOf(position(R"("age": null)")), 1405602028u);
  const Import negative(position(R"("age": -5)"));
  EXPECT_EQ(positionOf(negative.container())->timeStamp(), 1405602028u);
  EXPECT_EQ(negative.report.countOf("position.age out of range, left out"), 1u);
}

TEST(GeosubmitImporter, AnAgeAheadOf1970LeavesTheTimeStampOut) {
  const Import import(position(R"("age": 1405602028568)"));
  EXPECT_FALSE(positionOf(import.container())->valueExists(PositionEstimate::HasTimeStamp));
  EXPECT_EQ(import.report.countOf(kBadTime), 1u);
}

TEST(GeosubmitImporter, WithoutATimestampMeasurementsHaveNone) {
  const Import import(R"({"items": [{
      "position": {"latitude": 1, "longitude": 2, "age": 5},
      "wifiAccessPoints": [{"macAddress": "0123456789ab"}],
      "cellTowers": [{"radioType": "lte", "mobileCountryCode": 208}]}]})");
  ASSERT_EQ(import.size(), 1u);
  EXPECT_EQ(import.report.countOf(GeosubmitImporter::kNoTimestamp), 1u);
  EXPECT_NEAR(positionOf(import.container())->latitude(), 1.0, 5e-8);
  EXPECT_FALSE(import.container().gnssMeasurement(0)->valueExists(2));
  EXPECT_FALSE(import.container().wlanMeasurement(0)->valueExists(2));
  EXPECT_FALSE(import.container().eutraMeasurement(0)->valueExists(2));
}

TEST(GeosubmitImporter, RefusesTimestampsThatSecondsDoNotHold) {
  for (const char* stamp : {"0", "-1", "4294967295001", "1e300", "\"now\"", "true"}) {
    const Import import(std::string(R"({"items": [{"timestamp": )") + stamp +
                        R"(, "position": {"latitude": 1, "longitude": 2}}]})");
    EXPECT_EQ(import.report.countOf(GeosubmitImporter::kNoTimestamp), 1u) << stamp;
    EXPECT_EQ(import.size(), 1u) << stamp;
  }
}

TEST(GeosubmitImporter, GsmTowersBecomeGeranMeasurements) {
  const Import import(towers(R"(
      {"radioType": "gsm", "mobileCountryCode": 262, "mobileNetworkCode": 7,
       "locationAreaCode": 4711, "cellId": 815, "signalStrength": -83, "timingAdvance": 3,
       "arfcn": 77, "serving": 1},
      {"radioType": "gsm", "mobileCountryCode": 262, "mobileNetworkCode": 7,
       "locationAreaCode": 4712, "cellId": 816, "signalStrength": -95, "serving": 0})"));
  ASSERT_EQ(import.size(), 1u);
  EXPECT_TRUE(import.report.isEmpty());
  EXPECT_EQ(import.container().geranMeasurementCollection()->count(), 1u);
  const auto cell = import.container().geranMeasurement(0);
  EXPECT_EQ(*cell->dn(), schema::GeranCellDn(262, 7, 4711, 815));
  EXPECT_EQ(cell->servingCellMeasurement()->rxLevel(), 28u);
  EXPECT_EQ(cell->servingCellMeasurement()->timingAdvance(), 3u);
  EXPECT_EQ(cell->servingCellMeasurement()->frequencyInfo()->arfcn(), 77u);

  ASSERT_EQ(cell->nwMeasurementCollection()->count(), 1u);
  const auto expected = schema::GeranNwMeasurement::create();
  expected->setLac(4712);
  expected->setCid(816);
  expected->setRxLevel(16);
  gom::SharedPointer<gom::ObjectBase> neighbour;
  ASSERT_EQ((*cell->nwMeasurementCollection()->first())->getObjectValue(neighbour), StatusOk);
  EXPECT_TRUE(expected->compare(neighbour.get()));
}

TEST(GeosubmitImporter, WcdmaTowersBecomeUtraFddMeasurements) {
  for (const char* type : {"wcdma", "umts"}) {
    const Import import(towers(std::string(R"({"radioType": ")") + type + R"(",
        "mobileCountryCode": 262, "mobileNetworkCode": 7, "locationAreaCode": 4711,
        "cellId": 268435455, "signalStrength": -100, "primaryScramblingCode": 511,
        "arfcn": 10700})"));
    const auto cell = import.container().utraFddMeasurement(0);
    ASSERT_TRUE(cell);
    EXPECT_EQ(*cell->dn(), schema::UtraCellDn(262, 7, 268435455));
    EXPECT_EQ(cell->servingCellMeasurement()->lac(), 4711u);
    EXPECT_EQ(cell->servingCellMeasurement()->nwMeasurement()->rscp(), 16);
    EXPECT_EQ(cell->servingCellMeasurement()->frequencyInfo()->pcpich(), 511u);
    EXPECT_EQ(cell->servingCellMeasurement()->frequencyInfo()->uarfcnDl(), 10700u);
  }
}

TEST(GeosubmitImporter, NeighboursGoToTheServingTowerOfTheirOwnNetwork) {
  const Import import(towers(R"(
      {"radioType": "wcdma", "primaryScramblingCode": 1, "signalStrength": -90},
      {"radioType": "lte", "primaryScramblingCode": 7, "signalStrength": -110},
      {"radioType": "lte", "cellId": 1, "serving": 1},
      {"radioType": "lte", "primaryScramblingCode": 8, "signalStrength": -111})"));
  const MeasurementContainer& container = import.container();
  ASSERT_EQ(container.eutraMeasurementCollection()->count(), 1u);
  EXPECT_EQ(container.eutraMeasurement(0)->dn()->ucid(), 1u);
  EXPECT_EQ(container.eutraMeasurement(0)->nwMeasurementCollection()->count(), 2u);
  ASSERT_EQ(container.utraFddMeasurementCollection()->count(), 1u);
  EXPECT_FALSE(container.utraFddMeasurement(0)->dn());
  EXPECT_FALSE(container.utraFddMeasurement(0)->servingCellMeasurement());
  EXPECT_EQ(container.utraFddMeasurement(0)->nwMeasurementCollection()->count(), 1u);
}

TEST(GeosubmitImporter, TheFirstTowerServesWhenNoneIsMarked) {
  const Import import(towers(R"(
      {"radioType": "lte", "cellId": 1, "serving": 0}, {"radioType": "lte", "cellId": 2},
      {"radioType": "lte", "cellId": 3})"));
  ASSERT_EQ(import.container().eutraMeasurementCollection()->count(), 1u);
  EXPECT_EQ(import.container().eutraMeasurement(0)->dn()->ucid(), 2u);
  EXPECT_EQ(import.container().eutraMeasurement(0)->nwMeasurementCollection()->count(), 2u);
}

TEST(GeosubmitImporter, EachServingTowerIsAMeasurementOfItsOwn) {
  const Import import(towers(R"(
      {"radioType": "lte", "cellId": 1, "serving": 1},
      {"radioType": "lte", "cellId": 2, "serving": 1})"));
  EXPECT_EQ(import.container().eutraMeasurementCollection()->count(), 2u);
}

TEST(GeosubmitImporter, NamesWhatANeighbourCannotHold) {
  const Import import(towers(R"(
      {"radioType": "wcdma", "cellId": 1, "mobileCountryCode": 262, "serving": 1},
      {"radioType": "wcdma", "cellId": 2, "mobileCountryCode": 262},
      {"radioType": "wcdma", "cellId": 3, "mobileCountryCode": 208, "locationAreaCode": 5,
       "age": 2000, "timingAdvance": 1})"));
  for (const char* field : {"cellTowers network codes of a neighbour in another network",
                            "cellTowers.locationAreaCode of a WCDMA neighbour",
                            "cellTowers.age of a neighbour", "cellTowers.timingAdvance"}) {
    EXPECT_TRUE(import.report.isNotStored(field)) << field;
  }
}

TEST(GeosubmitImporter, AsuGivesTheLevelWhereThereIsNoOther) {
  const auto rxLevel = [](const std::string& asu) {
    const Import import(towers(R"({"radioType": "gsm", "cellId": 1, "asu": )" + asu + "}"));
    const auto serving = import.container().geranMeasurement(0)->servingCellMeasurement();
    return serving ? static_cast<int>(serving->rxLevel()) : -1;
  };
  EXPECT_EQ(rxLevel("0"), 0);
  EXPECT_EQ(rxLevel("10"), 18);
  EXPECT_EQ(rxLevel("31"), 60);
  EXPECT_EQ(rxLevel("32"), -1);
  EXPECT_EQ(rxLevel("99"), -1);
  EXPECT_EQ(rxLevel("-1"), -1);
  const Import wcdma(towers(R"({"radioType": "wcdma", "asu": -5})"));
  EXPECT_EQ(
      wcdma.container().utraFddMeasurement(0)->servingCellMeasurement()->nwMeasurement()->rscp(),
      -5);
  const Import lte(towers(R"({"radioType": "lte", "asu": 40})"));
  EXPECT_EQ(lte.container().eutraMeasurement(0)->servingCellMeasurement()->nwMeasurement()->rsrp(),
            41u);
}

TEST(GeosubmitImporter, LevelsThatNoRadioHearsAreLeftOut) {
  for (const char* level : {"0", "99", "-201", "2147483647"}) {
    const Import import(towers(
        std::string(R"({"radioType": "lte", "cellId": 1, "signalStrength": )") + level + "}"));
    EXPECT_FALSE(import.container().eutraMeasurement(0)->servingCellMeasurement()) << level;
    EXPECT_EQ(import.report.countOf("cellTowers.signalStrength out of range, left out"), 1u)
        << level;
  }
}

TEST(GeosubmitImporter, IdentitiesThatDoNotFitAreLeftOutAndNeverCut) {
  const Import gsm(towers(R"({"radioType": "gsm", "mobileCountryCode": 65536,
      "mobileNetworkCode": -1, "locationAreaCode": 65535, "cellId": 65536})"));
  const auto dn = gsm.container().geranMeasurement(0)->dn();
  const auto expected = schema::GeranCellDn::create();
  expected->setLac(65535);
  EXPECT_EQ(*dn, *expected);
  EXPECT_EQ(gsm.report.countOf("cellTowers.cellId out of range, left out"), 1u);
  EXPECT_EQ(gsm.report.countOf("cellTowers.mobileCountryCode out of range, left out"), 1u);
  EXPECT_EQ(gsm.report.countOf("cellTowers.mobileNetworkCode out of range, left out"), 1u);
  const Import lte(towers(R"({"radioType": "lte", "cellId": 268435456, "arfcn": 65536,
      "mobileCountryCode": 262.5})"));
  EXPECT_EQ(lte.size(), 0u);
  EXPECT_EQ(lte.report.countOf("cellTowers.cellId out of range, left out"), 1u);
  EXPECT_EQ(lte.report.countOf("cellTowers.arfcn out of range, left out"), 1u);
  EXPECT_EQ(lte.report.countOf(kEmptyTower), 1u);
}

TEST(GeosubmitImporter, CountsUnknownAndMissingRadioTypes) {
  const Import import(towers(R"({"radioType": "nr", "cellId": 1}, {"radioType": "cdma"},
      {"cellId": 1}, {"radioType": 5}, {"radioType": "lte", "cellId": 1}, 7)"));
  ASSERT_EQ(import.size(), 1u);
  EXPECT_EQ(import.report.countOf("unknown radio type 'nr'"), 1u);
  EXPECT_EQ(import.report.countOf("unknown radio type 'cdma'"), 1u);
  EXPECT_EQ(import.report.countOf(kNoRadioType), 2u);
  EXPECT_EQ(import.report.countOf("cellTowers of the wrong type, left out"), 1u);
  EXPECT_EQ(import.container().eutraMeasurementCollection()->count(), 1u);
}

TEST(GeosubmitImporter, AccessPointLevelsFillASignedByte) {
  const Import import(accessPoints(R"(
      {"macAddress": "01:23:45:67:89:ab", "signalStrength": -128},
      {"macAddress": "01-23-45-67-89-AB", "signalStrength": -129},
      {"macAddress": "0123456789ab", "signalStrength": -77.5})"));
  EXPECT_EQ(import.container().wlanMeasurement(0)->wlanApMeasurement()->rxLevel(), -128);
  EXPECT_FALSE(import.container().wlanMeasurement(1)->wlanApMeasurement());
  EXPECT_FALSE(import.container().wlanMeasurement(2)->wlanApMeasurement());
  EXPECT_EQ(import.report.countOf("wifiAccessPoints.signalStrength out of range, left out"), 2u);
}

TEST(GeosubmitImporter, CountsAccessPointsWithoutAnAddress) {
  const Import import(accessPoints(R"({"signalStrength": -70}, {"macAddress": "01:23:45:67:89"},
      {"macAddress": 5}, "x", {"macAddress": "01:23:45:67:89:ab"})"));
  EXPECT_EQ(import.container().wlanMeasurementCollection()->count(), 1u);
  EXPECT_EQ(import.report.countOf(kBadAddress), 3u);
  EXPECT_EQ(import.report.countOf("wifiAccessPoints of the wrong type, left out"), 1u);
}

TEST(GeosubmitImporter, ReadsAddressesInThreeSpellings) {
  const std::array<unsigned char, 6> bytes = {0x01, 0x23, 0x45, 0x67, 0x89, 0xab};
  for (const char* text : {"01:23:45:67:89:ab", "01-23-45-67-89-AB", "0123456789aB"}) {
    EXPECT_EQ(macAddress(text), bytes) << text;
  }
  for (const char* text : {"", "01:23:45:67:89:a", "01:23:45:67:89:abc", "01:23-45:67:89:ab",
                           "g1:23:45:67:89:ab", "01 23 45 67 89 ab", "0123456789a"}) {
    EXPECT_FALSE(macAddress(text)) << text;
  }
}

TEST(GeosubmitImporter, CountsItemsThatHoldNothing) {
  const Import import(R"({"items": [7, {}, {"timestamp": 1405602028568, "cellTowers": []}]})");
  EXPECT_EQ(import.size(), 0u);
  EXPECT_EQ(import.report.countOf(GeosubmitImporter::kNoObject), 1u);
  EXPECT_EQ(import.report.countOf(GeosubmitImporter::kEmptyItem), 2u);
  EXPECT_FALSE(import.any);
}

TEST(GeosubmitImporter, MembersOfTheWrongTypeAreCounted) {
  const Import import(item(R"("position": [1], "cellTowers": {}, "wifiAccessPoints": "x")"));
  for (const char* field : {"position", "cellTowers", "wifiAccessPoints"}) {
    EXPECT_EQ(import.report.countOf(std::string(field) + " of the wrong type, left out"), 1u)
        << field;
  }
}

TEST(GeosubmitImporter, AnEmptyListIsNoFailure) {
  EXPECT_TRUE(Import(R"({"items": []})").any);
  EXPECT_FALSE(Import(R"({"items": []} x)").any);
  EXPECT_FALSE(Import(R"({"other": []})").any);
  EXPECT_FALSE(Import("").any);
}

TEST(GeosubmitImporter, StoresTheItemsAheadOfTheDamageAndTellsWhere) {
  const Import import("{\"items\": [{\"position\": {\"latitude\": 1, \"longitude\": 2}},\n\n {]}");
  EXPECT_TRUE(import.any);
  EXPECT_EQ(import.size(), 1u);
  std::ostringstream text;
  import.report.print(text);
  EXPECT_NE(text.str().find(JsonItems::kDamaged), std::string::npos);
  EXPECT_NE(text.str().find("report:3\n"), std::string::npos) << text.str();
}

TEST(GeosubmitImporter, TellsTheLineOfEachTrouble) {
  const Import import("{\"items\": [\n{},\n{}]}");
  std::ostringstream text;
  import.report.print(text);
  EXPECT_NE(text.str().find("2 x item without observations: report:2, report:3\n"),
            std::string::npos)
      << text.str();
}

TEST(GeosubmitImporter, NumbersContainersAcrossDocuments) {
  const Import import(position("") + "\n" + position(""));
  ASSERT_EQ(import.size(), 2u);
  EXPECT_EQ(import.container(1).measurementId(), 2u);
}

}  // namespace
}  // namespace trelvo::tool
