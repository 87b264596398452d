#include "tools/trelvo/ImportFormat.h"

#include <string>

#include "tests/tools/ImportSupport.h"
#include "tools/trelvo/NmeaReader.h"

namespace trelvo::tool {
namespace {

TEST(ImportFormat, IsToldByTheFirstBytes) {
  EXPECT_EQ(formatOf("{\"items\": []}"), ImportFormat::Geosubmit);
  EXPECT_EQ(formatOf("\xEF\xBB\xBF \r\n\t{"), ImportFormat::Geosubmit);
  EXPECT_EQ(formatOf("$GPGGA,1"), ImportFormat::Nmea);
  EXPECT_EQ(formatOf("# a comment\n$GNRMC,"), ImportFormat::Nmea);
  EXPECT_EQ(formatOf("{\"class\": \"VERSION\"}\r\n$GPGGA,1"), ImportFormat::Nmea);
  EXPECT_EQ(formatOf("12:00:01 $GPGGA,1"), ImportFormat::Nmea);
  EXPECT_EQ(formatOf("{\"name\": \"$GPGGA,\"}"), ImportFormat::Geosubmit);
  EXPECT_EQ(formatOf("LTE,311,480,9728,9903886,0,-122.3,37.7,1000,21,1,1,2,0\n"),
            ImportFormat::Cells);
}

TEST(ImportFormat, OfJsonIsToldByTheDocumentsOwnMembers) {
  EXPECT_EQ(formatOf(R"({"modem": {"generic": {}}})"), ImportFormat::Mmcli);
  EXPECT_EQ(formatOf(R"({ "wifiAccessPoints" : [)"), ImportFormat::Geolocate);
  EXPECT_EQ(formatOf(R"({"considerIp": false, "cellTowers": [{"items": 1}]})"),
            ImportFormat::Geolocate);
  EXPECT_EQ(formatOf(R"({"cellTowers": [], "items": []})"), ImportFormat::Geosubmit);
  EXPECT_EQ(formatOf(R"({"items": [{"cellTowers": [], "modem": 1}]})"), ImportFormat::Geosubmit);
  EXPECT_EQ(formatOf(R"({"a": "modem", "b": ["modem"], "c": {"modem": 1}})"),
            ImportFormat::Geosubmit);
  EXPECT_EQ(formatOf(R"({"a\": \"modem": 1, "x": 2} {"modem": 3})"), ImportFormat::Geosubmit);
  for (const char* text :
       {"{", "{\"", "{\"modem", "{\"modem\"", "{\"modem\" ", "{\"a\\", "{}}}]", "{]{\"modem\":"}) {
    EXPECT_EQ(formatOf(text), ImportFormat::Geosubmit) << text;
  }
}

TEST(ImportFormat, OfTextIsToldByTheFirstLineThatShowsIt) {
  EXPECT_EQ(formatOf("BSS 00:19:a9:cd:c6:80(on wlan0)\n"), ImportFormat::Iw);
  EXPECT_EQ(formatOf("# iw dev wlan0 scan\nBSS xx:xx:a9:cd:c6:80 (on wlan0)"), ImportFormat::Iw);
  EXPECT_EQ(formatOf("AT\r\nOK\r\nAT+QENG=\"servingcell\"\r\n"), ImportFormat::Qeng);
  EXPECT_EQ(formatOf("+QENG: \"servingcell\",\"SEARCH\"\n"), ImportFormat::Qeng);
  EXPECT_EQ(formatOf("+QENG:\n$GPGGA,1"), ImportFormat::Qeng);
  EXPECT_EQ(formatOf("$GPGGA,1\n+QENG:\n"), ImportFormat::Nmea);
  for (const char* text : {"BSS 00:19:a9:cd:c6:80", "BSS Load:", "  BSS 00:19:a9:cd:c6:80(on w)",
                           "AT+CSQ", " +QENG:"}) {
    EXPECT_EQ(formatOf(text), ImportFormat::Auto) << text;
  }
}

TEST(ImportFormat, MayRemainUnknown) {
  for (const char* text : {"", " \n", "latitude,longitude\n1,2\n", "[1, 2]", "$5 a day"}) {
    EXPECT_EQ(formatOf(text), ImportFormat::Auto) << text;
  }
}

TEST(ImportFormat, AnUnknownOneIsCountedAndNothingRead) {
  ProducedStream stream(std::string("latitude,longitude\n"));
  ImportReport report;
  CountingTarget target;
  EXPECT_FALSE(importStream(stream, "a.csv", ImportFormat::Auto, {}, report, target));
  EXPECT_EQ(report.countOf(kUnknownFormat), 1u);
}

TEST(ImportFormat, CanBeSaid) {
  ProducedStream stream(std::string("latitude,longitude\n"));
  ImportReport report;
  CountingTarget target;
  EXPECT_FALSE(importStream(stream, "a.csv", ImportFormat::Nmea, {}, report, target));
  EXPECT_EQ(report.countOf(NmeaReader::kStrayText), 1u);
}

}  // namespace
}  // namespace trelvo::tool
