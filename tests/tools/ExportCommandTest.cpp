#include <gtest/gtest.h>
#include <trelvo/schema/Area.h>
#include <trelvo/schema/EUtraServingCellInjection.h>
#include <trelvo/schema/GnssInjection.h>
#include <trelvo/schema/Utility.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "tests/tools/ContainerBytes.h"
#include "tests/tools/CryptoFixture.h"

namespace trelvo::tool {
namespace {

using nlohmann::json;

constexpr unsigned int kStart = 1700000000;  // 2023-11-14T22:13:20Z

Outcome exported(const Bytes& input, const std::string& format,
                 std::vector<std::string> options = {}) {
  options.insert(options.begin(), {"export", "-", "--format", format});
  return runTool(options, input);
}

std::string goodText(const Bytes& input, const std::string& format,
                     const std::vector<std::string>& options = {}) {
  const Outcome outcome = exported(input, format, options);
  EXPECT_EQ(outcome.status, kExitGood);
  EXPECT_EQ(outcome.err, "");
  return outcome.out;
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    lines.push_back(line);
  }
  return lines;
}

// A fix without uncertainty, and an access point heard with it.
Bytes fixAndAccessPoint() {
  const auto container = containerAt(50.625, 11.25, kStart);
  addAccessPoint(*container, 0x5f, kStart + 1);
  container->setMeasurementId(7);
  return bytesOfObject(*container);
}

Bytes fixWith(const schema::PositionEstimate& fix) {
  const auto container = schema::MeasurementContainer::create();
  EXPECT_EQ(container->addGnssMeasurement(schema::GnssMeasurement::create(fix)->wrappedObject()),
            StatusOk);
  return bytesOfObject(*container);
}

// An LTE cell with a circle of 1500 m.
Bytes knownCell() {
  const auto dn = schema::EUtraCellDn::create(262, 1, schema::EUtraCellDn::mergeUcid(0x12345, 7));
  const auto cell = schema::EUtraServingCellInjection::create();
  EXPECT_EQ(cell->setDn(dn), StatusOk);
  EXPECT_EQ(
      cell->setCoverage(schema::Area::create(schema::Utility::latitude(50.625),
                                             schema::Utility::longitude(11.25), 1500, 1500, 0.0f)),
      StatusOk);
  const auto injection = schema::Injection::create();
  EXPECT_EQ(injection->addEUtraInjection(cell->wrappedObject()), StatusOk);
  return bytesOfObject(*injection);
}

// A fix in an object of its own, with a property of the given text.
Bytes fixNamed(const std::string& text) {
  return joined(
      {Wire().object(21, 3).value(6, 205).u32(kStart),
       Wire().value(14, 130).u16(130).u8(1).u32(0).u8(1).u16(3).u32(0x48000000).u32(0x08000000),
       Wire().value(12, 999).u32(static_cast<unsigned int>(text.size())).text(text)});
}

constexpr const char* kHostile = "<&\"'>,\x01\r\n\xEF\xBF\xBF\xC3\xBC";

constexpr const char* kFixMembers =
    R"("timeStamp":1700000000,"timeStampUtc":"2023-11-14T22:13:20Z",)"
    R"("latitude":50.625000000,"latitudeCode":1207959552,)"
    R"("longitude":11.250000000,"longitudeCode":134217728)";

TEST(ExportCommand, GeoJsonOfAFixAndAnAccessPoint) {
  EXPECT_EQ(
      goodText(fixAndAccessPoint(), "geojson"),
      std::string(R"({"type":"FeatureCollection","features":[)") + "\n" +
          R"({"type":"Feature","geometry":{"type":"Point","coordinates":[11.250000000,50.625000000]},)"
          R"("properties":{"kind":"GnssMeasurement","container":1,"element":1,"offset":0,)"
          R"("measurementId":7,)" +
          kFixMembers + "}},\n" +
          R"({"type":"Feature","geometry":null,)"
          R"("properties":{"kind":"WlanMeasurement","container":1,"element":2,"offset":0,)"
          R"("measurementId":7,"timeStamp":1700000001,"timeStampUtc":"2023-11-14T22:13:21Z",)"
          R"("bssid":"02:11:22:33:44:5f","rxLevel":-60}})"
          "\n]}\n");
}

TEST(ExportCommand, NdjsonOfAFixAndAnAccessPoint) {
  EXPECT_EQ(goodText(fixAndAccessPoint(), "ndjson"),
            std::string(R"({"kind":"GnssMeasurement","container":1,"element":1,"offset":0,)"
                        R"("measurementId":7,)") +
                kFixMembers + "}\n" +
                R"({"kind":"WlanMeasurement","container":1,"element":2,"offset":0,)"
                R"("measurementId":7,"timeStamp":1700000001,)"
                R"("timeStampUtc":"2023-11-14T22:13:21Z","bssid":"02:11:22:33:44:5f",)"
                R"("rxLevel":-60})"
                "\n");
}

TEST(ExportCommand, CsvHasTheSameHeaderAlways) {
  const std::string header =
      "container,element,parent,kind,offset,measurementId,timeStamp,timeStampUtc,latitude,"
      "longitude,altitude,altitudeUncertainty,horizontalCepUncertainty,majorAxis,minorAxis,angle,"
      "angleDegrees,speed,speedUncertainty,course,courseUncertainty,mcc,mnc,lac,cid,ucid,ucidRncId,"
      "ucidCid,ucidENodeBId,ucidLcid,sid,nid,bsid,tac,bssid,bsic,arfcn,uarfcnDl,uarfcnUl,pcpich,"
      "uarfcn,cellParam,earfcn,pci,rxLevel,rxLevelFrom,rxLevelBelow,utraCarrierRssi,"
      "utraCarrierRssiFrom,utraCarrierRssiBelow,ecNo,ecNoFrom,ecNoBelow,rscp,rscpFrom,rscpBelow,"
      "rsrp,rsrpFrom,rsrpBelow,rsrq,rsrqFrom,rsrqBelow,pathloss,frequency,timingAdvance,txLevel,"
      "rssi,ssid,band,distance,distanceUncertainty,apLatitude,apLongitude,nwMeasurementLac,"
      "nwMeasurementCid,nwMeasurementUcid,nwMeasurementUcidRncId,nwMeasurementUcidCid,"
      "nwMeasurementUcidENodeBId,nwMeasurementUcidLcid,nwMeasurementBsic,nwMeasurementArfcn,"
      "nwMeasurementUarfcnDl,nwMeasurementPcpich,nwMeasurementUarfcn,nwMeasurementCellParam,"
      "nwMeasurementEarfcn,nwMeasurementPci,unreliableStateTimeStamp,unreliableStateTimeStampUtc,"
      "elapsedRealtimeTimeStamp,source,latitudeCode,longitudeCode,apLatitudeCode,apLongitudeCode,"
      "other\r\n";
  EXPECT_EQ(goodText({}, "csv"), header);
  EXPECT_EQ(goodText(fixAndAccessPoint(), "csv"),
            header +
                "1,1,,GnssMeasurement,0,7,1700000000,2023-11-14T22:13:20Z,50.625000000,"
                "11.250000000" +
                std::string(83, ',') + "1207959552,134217728,,,\r\n" +
                "1,2,,WlanMeasurement,0,7,1700000001,2023-11-14T22:13:21Z" + std::string(27, ',') +
                "02:11:22:33:44:5f" + std::string(10, ',') + "-60" + std::string(52, ',') + "\r\n");
}

TEST(ExportCommand, GpxOfAFixIsATrackPointAndOfAKnownCellAWaypoint) {
  EXPECT_EQ(
      goodText(joined({bytesAt(50.625, 11.25, kStart), knownCell()}), "gpx"),
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<gpx version=\"1.1\" creator=\"trelvo\" xmlns=\"http://www.topografix.com/GPX/1/1\">\n"
      "<wpt lat=\"50.625000000\" lon=\"11.250000000\"><name>262-1-19088647</name>"
      "<desc>EUtraServingCellInjection: mcc 262, mnc 1, ucid 19088647, ucidENodeBId 74565, "
      "ucidLcid 7, majorAxis 1500, minorAxis 1500, angle 0, angleDegrees 0.000000000</desc></wpt>\n"
      "<trk><trkseg>\n"
      "<trkpt lat=\"50.625000000\" lon=\"11.250000000\"><time>2023-11-14T22:13:20Z</time>"
      "<desc>GnssMeasurement</desc></trkpt>\n"
      "</trkseg></trk>\n"
      "</gpx>\n");
}

TEST(ExportCommand, KmlOfAKnownCellAsAPoint) {
  EXPECT_EQ(goodText(knownCell(), "kml"),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<kml xmlns=\"http://www.opengis.net/kml/2.2\">\n"
            "<Document>\n"
            "<name>trelvo</name>\n"
            "<Placemark><name>262-1-19088647</name><ExtendedData>"
            "<Data name=\"kind\"><value>EUtraServingCellInjection</value></Data>"
            "<Data name=\"offset\"><value>0</value></Data>"
            "<Data name=\"mcc\"><value>262</value></Data>"
            "<Data name=\"mnc\"><value>1</value></Data>"
            "<Data name=\"ucid\"><value>19088647</value></Data>"
            "<Data name=\"ucidENodeBId\"><value>74565</value></Data>"
            "<Data name=\"ucidLcid\"><value>7</value></Data>"
            "<Data name=\"latitude\"><value>50.625000000</value></Data>"
            "<Data name=\"latitudeCode\"><value>1207959552</value></Data>"
            "<Data name=\"longitude\"><value>11.250000000</value></Data>"
            "<Data name=\"longitudeCode\"><value>134217728</value></Data>"
            "<Data name=\"majorAxis\"><value>1500</value></Data>"
            "<Data name=\"minorAxis\"><value>1500</value></Data>"
            "<Data name=\"angle\"><value>0</value></Data>"
            "<Data name=\"angleDegrees\"><value>0.000000000</value></Data>"
            "</ExtendedData><Point><coordinates>11.250000000,50.625000000</coordinates></Point>"
            "</Placemark>\n"
            "</Document>\n"
            "</kml>\n");
}

TEST(ExportCommand, EmptyInputGivesValidEmptyFiles) {
  EXPECT_EQ(goodText({}, "geojson"), "{\"type\":\"FeatureCollection\",\"features\":[\n]}\n");
  EXPECT_EQ(goodText({}, "ndjson"), "");
  EXPECT_EQ(goodText({}, "geosubmit"), "{\"items\":[\n]}\n");
  EXPECT_EQ(goodText({}, "gpx"),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<gpx version=\"1.1\" creator=\"trelvo\" "
            "xmlns=\"http://www.topografix.com/GPX/1/1\">\n</gpx>\n");
}

json featuresOf(const Bytes& input, const std::vector<std::string>& options = {}) {
  return json::parse(goodText(input, "geojson", options))["features"];
}

schema::PositionEstimate fixAt(double latitude, double longitude) {
  return *schema::PositionEstimate::create(latitude, longitude, kStart);
}

TEST(ExportCommand, AnEllipseIsAPolygonOf64PointsThatSaysWhatItShows) {
  schema::PositionEstimate fix = fixAt(50.625, 11.25);
  fix.setMajorAxis(200);
  fix.setMinorAxis(100);
  fix.setAngle(30);
  fix.setHorizontalCepUncertainty(50);
  const json feature = featuresOf(fixWith(fix))[0];
  EXPECT_EQ(feature["geometry"]["type"], "Polygon");
  ASSERT_EQ(feature["geometry"]["coordinates"].size(), 1u);
  const json ring = feature["geometry"]["coordinates"][0];
  EXPECT_EQ(ring.size(), 65u);
  EXPECT_EQ(ring[0], ring[64]);
  double metres = 0.0;
  schema::Utility::distance(50.625, 11.25, ring[0][1], ring[0][0], metres);
  EXPECT_NEAR(metres, 200.0, 0.01);
  EXPECT_EQ(feature["properties"]["polygon"], "majorAxis, minorAxis, angle");
  EXPECT_EQ(feature["properties"]["majorAxis"], 200);
  EXPECT_NEAR(feature["properties"]["angleDegrees"], 30.0, 1e-5);
  EXPECT_EQ(feature["properties"]["latitude"], 50.625);
}

TEST(ExportCommand, ACircleIsAPolygonAndWithPointsAPoint) {
  schema::PositionEstimate fix = fixAt(50.625, 11.25);
  fix.setHorizontalCepUncertainty(50);
  fix.setAltitude(80.5);
  const json polygon = featuresOf(fixWith(fix))[0];
  EXPECT_EQ(polygon["geometry"]["type"], "Polygon");
  EXPECT_EQ(polygon["properties"]["polygon"], "horizontalCepUncertainty");
  const json point = featuresOf(fixWith(fix), {"--points"})[0];
  EXPECT_EQ(point["geometry"].dump(), R"({"coordinates":[11.25,50.625,80.5],"type":"Point"})");
  EXPECT_FALSE(point["properties"].contains("polygon"));
}

TEST(ExportCommand, AnEllipseAcrossTheAntimeridianIsAMultiPolygon) {
  schema::PositionEstimate fix = fixAt(10, 179.999);
  fix.setHorizontalCepUncertainty(5000);
  const json geometry = featuresOf(fixWith(fix))[0]["geometry"];
  EXPECT_EQ(geometry["type"], "MultiPolygon");
  EXPECT_EQ(geometry["coordinates"].size(), 2u);
}

TEST(ExportCommand, AnEllipseThatHoldsAPoleIsAPointAndThatIsTold) {
  schema::PositionEstimate fix = fixAt(89.9999, 11.25);
  fix.setHorizontalCepUncertainty(5000);
  const Outcome outcome = exported(fixWith(fix), "geojson");
  EXPECT_EQ(outcome.status, kExitGood);
  EXPECT_EQ(json::parse(outcome.out)["features"][0]["geometry"]["type"], "Point");
  EXPECT_EQ(outcome.err,
            "trelvo: not carried by geojson: outline of an ellipse that holds a pole or half the "
            "globe (1 x, first in object 1)\n");
}

TEST(ExportCommand, NeighboursAreFeaturesThatNameTheirCell) {
  const json features = featuresOf(golden("pub_eutra_serving_cell_injection_full"), {"--points"});
  ASSERT_EQ(features.size(), 3u);
  EXPECT_EQ(features[0]["properties"]["element"], 0);
  EXPECT_EQ(features[0]["properties"]["rsrp"], 97);
  EXPECT_EQ(features[0]["properties"]["nwMeasurementUcid"], 19088743);
  EXPECT_EQ(features[1]["properties"]["kind"], "EUtraNeighborCellInjection");
  EXPECT_EQ(features[1]["properties"]["earfcn"], 6300);
}

TEST(ExportCommand, EveryKnownFieldHasAColumn) {
  unsigned int objects = 0;
  for (const auto& entry :
       std::filesystem::directory_iterator(TRELVO_TEST_DATA "/golden/vectors")) {
    const bool isVector = entry.path().extension() == ".hex";
    const Bytes bytes = isVector ? golden(entry.path().stem()) : Bytes();
    const Outcome shown = runTool({"show", "-"}, bytes);
    if (!isVector || shown.status != kExitGood || shown.out.rfind("GenericObject", 0) == 0) {
      continue;  // a flat record, which no file holds bare
    }
    const std::string text = exported(bytes, "csv").out;
    for (const std::string& line : linesOf(text.substr(text.find("\r\n") + 2))) {
      EXPECT_EQ(line.substr(line.size() - 2), ",\r") << entry.path() << line;
      ++objects;
    }
  }
  EXPECT_GT(objects, 80u);
}

TEST(ExportCommand, ForeignFieldsStandInTheLastColumnOfCsv) {
  const std::string text = goodText(fixNamed("a\"b"), "csv");
  const std::string end = ",\"{\"\"property 999\"\":\"\"a\\\"\"b\"\"}\"\r\n";
  EXPECT_EQ(text.substr(text.size() - end.size()), end);
}

class ExportFile : public CryptoFixture {
 protected:
  // What python makes of a file.
  std::string python(const std::string& program) const {
    return shell("python3 -c '" + program + "' 2>&1").out;
  }
};

TEST_F(ExportFile, HostileTextGivesValidFiles) {
  file("a.trelvo", joined({fixNamed(kHostile), fixNamed(std::string("\xff\x00\xfe", 3))}));
  for (const char* format : {"geojson", "ndjson", "csv", "kml", "gpx"}) {
    const Outcome outcome = runTool({"export", path("a.trelvo"), "--format", format, "-o",
                                     path(std::string("b.") + format), "--points"});
    EXPECT_EQ(outcome.status, kExitGood) << outcome.err;
  }
  EXPECT_EQ(python("import json\n"
                   "f = json.load(open(\"b.geojson\"))[\"features\"]\n"
                   "print(ascii(f[0][\"properties\"][\"property 999\"]), "
                   "f[1][\"properties\"][\"property 999\"])"),
            "'<&\"\\'>,\\x01\\r\\n\\uffff\\xfc' ff00fe\n");
  EXPECT_EQ(
      python("import json\n"
             "print([ascii(json.loads(l)[\"property 999\"]) for l in open(\"b.ndjson\")][1])"),
      "'ff00fe'\n");
  EXPECT_EQ(python("import csv, json\n"
                   "r = list(csv.reader(open(\"b.csv\", newline=\"\")))\n"
                   "print(len(r), {len(x) for x in r}, "
                   "ascii(json.loads(r[1][-1])[\"property 999\"]))"),
            "3 {97} '<&\"\\'>,\\x01\\r\\n\\uffff\\xfc'\n");
  EXPECT_EQ(
      python("import xml.etree.ElementTree as t\n"
             "n = \"{http://www.opengis.net/kml/2.2}\"\n"
             "d = t.parse(\"b.kml\").findall(\".//\" + n + \"Data[@name=\\\"property 999\\\"]\")\n"
             "print(*[ascii(e[0].text) for e in d])"),
      "'<&\"\\'>,\\ufffd\\r\\n\\ufffd\\xfc' 'ff00fe'\n");
  EXPECT_EQ(python("import xml.etree.ElementTree as t\n"
                   "n = \"{http://www.topografix.com/GPX/1/1}\"\n"
                   "print(len(t.parse(\"b.gpx\").findall(\".//\" + n + \"desc\")))"),
            "2\n");
}

TEST_F(ExportFile, WritesTheFileUnderItsNameOnlyWhenItIsWhole) {
  const std::string input = file("a.trelvo", fixAndAccessPoint());
  EXPECT_EQ(runTool({"export", input, "--format", "ndjson", "-o", path("b")}).status, kExitGood);
  EXPECT_EQ(textOf(path("b")), goodText(fixAndAccessPoint(), "ndjson"));
  EXPECT_EQ(filesIn(m_folder), 3u);  // with the folder of keys
  const Outcome full = runTool({"export", input, "--format", "ndjson", "-o", "/dev/full"});
  EXPECT_EQ(full.status, kExitFailed);
  EXPECT_EQ(full.err, "trelvo: /dev/full: No space left on device\n");
}

TEST_F(ExportFile, DamageIsToldAndWhatStandsAheadIsExported) {
  Bytes bytes = joined({fixAndAccessPoint(), fixAndAccessPoint()});
  bytes.pop_back();
  const std::string input = file("a.trelvo", bytes);
  const Outcome outcome = runTool({"export", input, "--format", "geojson", "-o", path("b")});
  EXPECT_EQ(outcome.status, kExitFailed);
  EXPECT_EQ(outcome.err, "trelvo: " + input + ": stops at byte " + std::to_string(bytes.size()) +
                             ": the input ends inside a value of type uint32\n");
  EXPECT_EQ(json::parse(textOf(path("b")))["features"].size(), 2u);
}

TEST_F(ExportFile, ReadsSealedFiles) {
  file("a.trelvo", fixAndAccessPoint());
  EXPECT_EQ(shell("\"$TRELVO\" seal --storage keys s a.trelvo a.sealed").status, 0);
  EXPECT_EQ(shell("\"$TRELVO\" export a.sealed --format ndjson --sealed s --storage keys").out,
            goodText(fixAndAccessPoint(), "ndjson"));
}

TEST_F(ExportFile, AReaderThatGoesIsNoFailure) {
  Bytes bytes;
  for (int i = 0; i < 2000; ++i) {
    bytes = joined({bytes, fixAndAccessPoint()});
  }
  file("a.trelvo", bytes);
  EXPECT_EQ(shell("{ \"$TRELVO\" export a.trelvo --format ndjson; echo $? > status; } 2> errors | "
                  "head -n 1 > /dev/null; cat errors")
                .out,
            "");
  EXPECT_EQ(textOf(path("status")), "0\n");
}

TEST_F(ExportFile, RefusesWhatMakesNoSense) {
  const std::string input = file("a.trelvo", fixAndAccessPoint());
  EXPECT_EQ(runTool({"export", input}).status, kExitUsage);
  EXPECT_EQ(runTool({"export", input, "--format", "shp"}).status, kExitUsage);
  EXPECT_EQ(runTool({"export", "--format", "csv"}).status, kExitUsage);
  const Outcome missing = runTool({"export", path("none"), "--format", "csv"});
  EXPECT_EQ(missing.status, kExitFailed);
  EXPECT_EQ(missing.err, "trelvo: " + path("none") + ": No such file or directory\n");
}

}  // namespace
}  // namespace trelvo::tool
