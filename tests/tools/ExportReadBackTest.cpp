#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cstdio>
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/Load.h"
#include "tests/tools/ContainerBytes.h"
#include "tests/tools/CryptoFixture.h"
#include "tests/tools/ImportInput.h"

namespace trelvo::tool {
namespace {

using nlohmann::json;

struct Place {
  double latitude;
  double longitude;
};
using Places = std::vector<Place>;

void collectPlaces(const json& value, Places& places) {
  if (value.is_object() && value.contains("latitude") && value.contains("longitude")) {
    places.push_back({value["latitude"]["value"], value["longitude"]["value"]});
  }
  if (value.is_structured()) {
    for (const json& inner : value) {
      collectPlaces(inner, places);
    }
  }
}

/// Files of the demo's data: fixes and known cells.
class ExportReadBack : public CryptoFixture {
 protected:
  void importExample(const std::string& name) {
    const Outcome outcome = runTool({"import", examplePath(name), "-o", path("a.trelvo")});
    EXPECT_EQ(outcome.status, kExitGood) << outcome.err;
    // As trelvo show tells them.
    collectPlaces(json::parse(runTool({"show", "--json", path("a.trelvo")}).out), m_places);
  }

  // Of what was imported.
  const Places& expectedPlaces() const { return m_places; }

  void exportAs(const std::string& format) const {
    const Outcome outcome = runTool(
        {"export", path("a.trelvo"), "--format", format, "--points", "-o", path("b." + format)});
    EXPECT_EQ(outcome.status, kExitGood) << outcome.err;
  }

  // The two numbers that `pattern` finds in each line it fits.
  Places placesIn(const std::string& command, const std::string& pattern,
                  bool isLatitudeFirst) const {
    const std::regex expression(pattern);
    Places places;
    std::istringstream lines(shell(command).out);
    for (std::string line; std::getline(lines, line);) {
      std::smatch found;
      if (std::regex_search(line, found, expression)) {
        const double first = std::stod(found[1]);
        const double second = std::stod(found[2]);
        places.push_back(isLatitudeFirst ? Place{first, second} : Place{second, first});
      }
    }
    return places;
  }

  static void expectSame(const Places& found, const Places& expected, double margin) {
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < found.size(); ++i) {
      ASSERT_NEAR(found[i].latitude, expected[i].latitude, margin) << i;
      ASSERT_NEAR(found[i].longitude, expected[i].longitude, margin) << i;
    }
  }

  void expectOgrReads(const std::string& format, const std::string& options = "") const {
    exportAs(format);
    expectSame(placesIn("ogrinfo -ro -al -q " + options + " b." + format + " | grep POINT",
                        R"(^  POINT Z? ?\((\S+) ([^ )]+))", false),
               expectedPlaces(), 2e-9);
  }

  void expectGpsbabelReads(const std::string& format, const std::string& options = "") const {
    exportAs(format);
    expectSame(
        placesIn("gpsbabel " + options + " -i " + format + " -f b." + format + " -o unicsv -F -",
                 R"(^\d+,([^,]+),([^,]+))", true),
        expectedPlaces(), 6e-7);
  }

 private:
  Places m_places;
};

constexpr const char* kFixes = "nmea/bt451.log";
constexpr const char* kCells = "cell/opencellid-san-francisco.csv";
constexpr const char* kColumns = "-oo X_POSSIBLE_NAMES=longitude -oo Y_POSSIBLE_NAMES=latitude";

TEST_F(ExportReadBack, OgrinfoReadsTheFixes) {
  importExample(kFixes);
  EXPECT_GT(expectedPlaces().size(), 10u);
  expectOgrReads("geojson");
  expectOgrReads("kml");
  expectOgrReads("gpx");
  expectOgrReads("csv", kColumns);
}

TEST_F(ExportReadBack, OgrinfoReadsTheKnownCells) {
  importExample(kCells);
  EXPECT_EQ(expectedPlaces().size(), 1999u);
  expectOgrReads("geojson");
  expectOgrReads("kml");
  expectOgrReads("gpx");
  expectOgrReads("csv", kColumns);
}

TEST_F(ExportReadBack, NdjsonHasALineForEachKnownCell) {
  importExample(kCells);
  exportAs("ndjson");
  EXPECT_EQ(shell("wc -l < b.ndjson").out, "1999\n");
}

TEST_F(ExportReadBack, GpsbabelReadsTheFixes) {
  importExample(kFixes);
  expectGpsbabelReads("geojson");
  expectGpsbabelReads("kml");
  expectGpsbabelReads("gpx", "-t");
}

TEST_F(ExportReadBack, GpsbabelReadsTheKnownCells) {
  importExample(kCells);
  expectGpsbabelReads("geojson");
  expectGpsbabelReads("kml");
  expectGpsbabelReads("gpx");
}

TEST_F(ExportReadBack, OgrinfoReadsEllipsesAsPolygonsOf64Points) {
  importExample(kCells);
  EXPECT_EQ(
      runTool({"export", path("a.trelvo"), "--format", "geojson", "-o", path("b.geojson")}).status,
      kExitGood);
  const std::string count = "ogrinfo -ro -al -so b.geojson | grep -E '^(Feature Count|Geometry): '";
  EXPECT_EQ(shell(count).out, "Geometry: Polygon\nFeature Count: 1999\n");
  const std::string points =
      "ogr2ogr -f CSV /vsistdout/ b.geojson -dialect sqlite -sql \"SELECT DISTINCT "
      "ST_NPoints(geometry) AS n, ST_IsValid(geometry) AS v FROM b\"";
  EXPECT_EQ(shell(points).out, "n,v\n\"65\",\"1\"\n");
}

TEST_F(ExportReadBack, GpxTimesAreIso8601InUtc) {
  importExample(kFixes);
  exportAs("gpx");
  const std::regex form(R"(<time>\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ</time>)");
  const std::string text = textOf(path("b.gpx"));
  const auto found = std::distance(std::sregex_iterator(text.begin(), text.end(), form), {});
  EXPECT_EQ(static_cast<std::size_t>(found), expectedPlaces().size());
  EXPECT_EQ(text.find("hdop"), std::string::npos);
}

// The highest peak, in KiB, of all children so far.
long childrenPeak() {
  struct rusage usage {};
  ::getrusage(RUSAGE_CHILDREN, &usage);
  return usage.ru_maxrss;
}

class ContainerMemory : public CryptoFixture {
 protected:
  ContainerMemory() {
    writeContainers("few", 1000);
    writeContainers("many", test::load(100000));
  }

  void writeContainers(const std::string& name, int count) const {
    const Bytes bytes = bytesAt(50.625, 11.25, 1700000000);
    std::ofstream stream(path(name), std::ios::binary);
    for (int i = 0; i < count; ++i) {
      stream.write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
    }
  }

  void expectBounded(const std::string& arguments) const {
    constexpr long kMoreKiB = 4 * 1024;  // what a hundred thousand containers kept would exceed
    const std::string program = "ASAN_OPTIONS=quarantine_size_mb=1 \"$TRELVO\" ";
    EXPECT_EQ(shell("ln -f few in; " + program + arguments).status, 0);
    const long few = childrenPeak();
    EXPECT_EQ(shell("ln -f many in; " + program + arguments).status, 0);
    EXPECT_LT(childrenPeak(), few + kMoreKiB) << arguments;
  }
};

TEST_F(ContainerMemory, ExportOfAHundredThousandTakesNoMoreThanOfAThousand) {
  for (const char* format : {"geojson", "gpx", "kml", "csv", "ndjson", "geosubmit"}) {
    expectBounded(std::string("export in -o /dev/null --format ") + format);
  }
}

TEST_F(ContainerMemory, DiffOfAHundredThousandTakesNoMoreThanOfAThousand) {
  expectBounded("diff in in");
}

TEST_F(ContainerMemory, ReplayOfAHundredThousandTakesNoMoreThanOfAThousand) {
  expectBounded("replay in --speed max > /dev/null");
}

}  // namespace
}  // namespace trelvo::tool
