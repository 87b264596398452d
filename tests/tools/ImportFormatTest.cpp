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
