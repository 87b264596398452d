#include <gtest/gtest.h>
#include <trelvo/schema/EUtraCellMeasurement.h>
#include <trelvo/schema/GeranCellMeasurement.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/tools/ContainerBytes.h"
#include "tests/tools/CryptoFixture.h"
#include "tests/tools/ImportInput.h"

namespace trelvo::tool {
namespace {

using nlohmann::json;

constexpr unsigned int kStart = 1700000000;

class ExportGeosubmit : public CryptoFixture {
 protected:
  Bytes imported(const std::string& name, const std::string& from) const {
    const Outcome outcome = runTool({"import", from, "-o", path(name)});
    EXPECT_EQ(outcome.status, kExitGood) << outcome.err;
    return bytesOf(path(name));
  }

  // Imports, exports and imports again; gives what the export said.
  std::string expectSameAfterTheWayBack(const std::string& input) const {
    const Bytes first = imported("first", input);
    const Outcome outcome =
        runTool({"export", path("first"), "--format", "geosubmit", "-o", path("report.json")});
    EXPECT_EQ(outcome.status, kExitGood) << outcome.err;
    EXPECT_EQ(imported("second", path("report.json")), first);
    EXPECT_EQ(runTool({"diff", path("first"), path("second")}).out, "");
    return outcome.err;
  }

  std::string report(const std::string& item) const {
    return file("report", "{\"items\": [" + item + "]}");
  }
};

TEST_F(ExportGeosubmit, TheExampleOfVersion2ComesOutAgain) {
  EXPECT_EQ(expectSameAfterTheWayBack(examplePath("geosubmit/geosubmit2.json")), "");
}

TEST_F(ExportGeosubmit, TheExampleOfVersion1ComesOutAgain) {
  EXPECT_EQ(expectSameAfterTheWayBack(examplePath("geosubmit/geosubmit1.json")), "");
}

TEST_F(ExportGeosubmit, EveryRadioNetworkComesOutAgain) {
  EXPECT_EQ(expectSameAfterTheWayBack(report(R"(
    {"timestamp": 1700000000999, "position": {"latitude": -50.123456, "longitude": 179.5,
      "accuracy": 12.3, "speed": 3.7, "heading": 271.3, "age": 2500},
     "cellTowers": [
      {"radioType": "gsm", "serving": 1, "mobileCountryCode": 262, "mobileNetworkCode": 7,
       "locationAreaCode": 77, "cellId": 1234, "signalStrength": -71, "timingAdvance": 3,
       "arfcn": 55, "age": 1000},
      {"radioType": "gsm", "serving": 0, "locationAreaCode": 78, "cellId": 1, "arfcn": 9,
       "signalStrength": -120},
      {"radioType": "wcdma", "serving": 1, "mobileCountryCode": 262, "mobileNetworkCode": 7,
       "locationAreaCode": 79, "cellId": 123456, "primaryScramblingCode": 44, "arfcn": 10588,
       "signalStrength": -90},
      {"radioType": "wcdma", "serving": 0, "cellId": 5, "signalStrength": -20},
      {"radioType": "lte", "serving": 1, "mobileCountryCode": 262, "mobileNetworkCode": 7,
       "locationAreaCode": 80, "cellId": 19088647, "primaryScramblingCode": 101,
       "signalStrength": -103, "timingAdvance": 40, "arfcn": 6300},
      {"radioType": "lte", "serving": 0, "primaryScramblingCode": 102, "signalStrength": -141}],
     "wifiAccessPoints": [
      {"macAddress": "01:23:45:67:89:ab", "signalStrength": -51, "age": 60000},
      {"macAddress": "01:23:45:67:89:ac"}]},
    {"position": {"latitude": 1.5, "longitude": 2.5, "heading": 179.99}},
    {"timestamp": 1700000001000,
     "cellTowers": [{"radioType": "gsm", "serving": 0, "cellId": 8}]})")),
            "");
}

TEST_F(ExportGeosubmit, TheDegreesOfEveryCodeLeadBackToIt) {
  std::string items;
  for (int i = 0; i < 500; ++i) {
    const double latitude = -89.99 + 0.3599 * i;
    const double longitude = -179.99 + 0.7199 * i;
    items += (i > 0 ? "," : "") + std::string("{\"position\": {\"latitude\": ") +
             std::to_string(latitude) + ", \"longitude\": " + std::to_string(longitude) +
             ", \"accuracy\": " + std::to_string(0.1 + i) +
             ", \"heading\": " + std::to_string(0.719 * i) + "}}";
  }
  EXPECT_EQ(expectSameAfterTheWayBack(report(items)), "");
}

// Fixes of receivers: what their containers hold beyond a report's position is told.
TEST_F(ExportGeosubmit, ReceiverLogsComeOutAgainUpToWhatIsTold) {
  imported("first", examplePath("nmea/ublox-neo-m9n-nmea.log"));
  const Outcome outcome =
      runTool({"export", path("first"), "--format", "geosubmit", "-o", path("report.json")});
  EXPECT_EQ(outcome.status, kExitGood);
  for (const char* field : {"altitude", "angle", "majorAxis", "minorAxis"}) {
    EXPECT_NE(outcome.err.find(std::string("trelvo: not carried by geosubmit: GnssMeasurement.") +
                               field + " ("),
              std::string::npos)
        << field << ": " << outcome.err;
  }
  imported("second", path("report.json"));
  const Outcome difference = runTool({"diff", path("first"), path("second")});
  EXPECT_EQ(difference.out.find("only there"), std::string::npos);
  EXPECT_EQ(difference.out.find("latitude"), std::string::npos);
  EXPECT_EQ(difference.out.find("timeStamp"), std::string::npos);
}

Outcome exported(const Bytes& input) {
  return runTool({"export", "-", "--format", "geosubmit"}, input);
}

TEST(ExportGeosubmitText, OfAFixAndAnAccessPoint) {
  const auto container = containerAt(50.625, 11.25, kStart);
  addAccessPoint(*container, 0x5f, kStart + 3);
  container->setMeasurementId(1);
  const Outcome outcome = exported(bytesOfObject(*container));
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.out,
            "{\"items\":[\n"
            "{\"timestamp\":1700000003000,"
            "\"position\":{\"latitude\":50.625,\"longitude\":11.25,\"age\":3000},"
            "\"wifiAccessPoints\":[{\"macAddress\":\"02:11:22:33:44:5f\",\"signalStrength\":-60}]}"
            "\n]}\n");
}

TEST(ExportGeosubmitText, TellsEachKindOfLossOnce) {
  const auto container = containerAt(50.625, 11.25, kStart);
  const auto again =
      schema::GnssMeasurement::create(*schema::PositionEstimate::create(50.625, 11.25, kStart));
  container->addGnssMeasurement(again->wrappedObject());
  const auto untimed = schema::WlanMeasurement::create();
  container->addWlanMeasurement(untimed->wrappedObject());
  container->setMeasurementId(9);
  const Bytes bytes = bytesOfObject(*container);
  const Outcome outcome =
      exported(joined({bytes, bytes, golden("pub_injection_eight_kinds_forward"),
                       Wire().object(77, 1).value(6, 5).u32(1)}));
  EXPECT_EQ(outcome.status, kExitGood);
  for (const char* line :
       {"WlanMeasurement without an address of 6 bytes (2 x, first in object 1)",
        "further GnssMeasurement of a container (2 x, first in object 1)",
        "measurementId other than the item's number (2 x, first in object 1)",
        "GeranServingCellInjection (", "GenericObject (1 x, first in object 4)"}) {
    const std::string whole = std::string("trelvo: not carried by geosubmit: ") + line;
    const std::size_t found = outcome.err.find(whole);
    EXPECT_NE(found, std::string::npos) << line << "\n" << outcome.err;
    EXPECT_EQ(outcome.err.find(whole, found + 1), std::string::npos) << line;
  }
}

TEST(ExportGeosubmitText, ACodeThatNoLevelHasIsToldAndLeftOut) {
  const auto nw = schema::EUtraNwMeasurement::create();
  nw->setRsrp(200);
  nw->setTac(7);
  const auto serving = schema::EUtraServingCellMeasurement::create();
  serving->setNwMeasurement(nw);
  const auto cell = schema::EUtraCellMeasurement::create();
  cell->setServingCellMeasurement(serving);
  const auto container = schema::MeasurementContainer::create();
  container->addEUtraMeasurement(cell->wrappedObject());
  const Outcome outcome = exported(bytesOfObject(*container));
  EXPECT_EQ(outcome.out,
            "{\"items\":[\n{\"cellTowers\":[{\"radioType\":\"lte\",\"serving\":1,"
            "\"locationAreaCode\":7}]}\n]}\n");
  EXPECT_EQ(outcome.err,
            "trelvo: not carried by geosubmit: EUtraCellMeasurement.rsrp (1 x, first in object "
            "1)\n");
}

TEST(ExportGeosubmitText, NeighboursOfASecondCellAreTold) {
  const auto cellWith = [](unsigned short cid, unsigned short neighbour) {
    auto cell =
        schema::GeranCellMeasurement::create(schema::GeranCellDn::create(262, 1, 7, cid), kStart);
    const auto nw = schema::GeranNwMeasurement::create();
    nw->setCid(neighbour);
    cell->addNwMeasurement(nw);
    return cell;
  };
  const auto container = schema::MeasurementContainer::create();
  container->addGeranMeasurement(cellWith(1, 11)->wrappedObject());
  container->addGeranMeasurement(cellWith(2, 12)->wrappedObject());
  const Outcome outcome = exported(bytesOfObject(*container));
  EXPECT_EQ(outcome.err,
            "trelvo: not carried by geosubmit: GeranNwMeasurement of a further cell (1 x, first in "
            "object 1)\n");
  const json towers = json::parse(outcome.out)["items"][0]["cellTowers"];
  ASSERT_EQ(towers.size(), 3u);
  EXPECT_EQ(
      towers[2].dump(),
      R"({"cellId":11,"mobileCountryCode":262,"mobileNetworkCode":1,"radioType":"gsm","serving":0})");
}

}  // namespace
}  // namespace trelvo::tool
