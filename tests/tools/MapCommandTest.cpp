#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "tests/tools/CryptoFixture.h"
#include "tests/tools/MapSupport.h"

namespace trelvo::tool {
namespace {

Outcome map(const Bytes& input, std::vector<std::string> more = {}) {
  std::vector<std::string> arguments = {"map", "-", "-o", "-"};
  arguments.insert(arguments.end(), more.begin(), more.end());
  return runTool(arguments, input);
}

std::string pictureOf(const Bytes& input, const std::vector<std::string>& more = {}) {
  const Outcome outcome = map(input, more);
  EXPECT_EQ(outcome.status, kExitGood) << outcome.err;
  EXPECT_EQ(outcome.err, "");
  return outcome.out;
}

std::size_t occurrences(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

std::string pathOf(const std::string& picture, const std::string& id) {
  return between(between(picture, "<path id=\"" + id + "\"", "/>"), "d=\"", "\"");
}

/// Pixels of a metre, by the scale bar.
double scaleOf(const std::string& picture) {
  // M left top, then down to the line, along it and up again.
  const std::vector<double> bar = numbersIn(pathOf(picture, "scale"));
  const std::string label = between(between(picture, "<path id=\"scale\"", "</text>"), "\">", "!");
  const std::vector<double> metres = numbersIn(label);
  EXPECT_EQ(bar.size(), 8U);
  EXPECT_EQ(metres.size(), 1U) << label;
  EXPECT_EQ(label.substr(label.size() - 2), " m");
  return bar[4] / metres[0];
}

/// The places of the dots.
std::vector<std::pair<double, double>> dotsOf(const std::string& picture) {
  std::vector<std::pair<double, double>> dots;
  const std::string mark = "<circle class=\"fix\" cx=\"";
  for (std::size_t at = picture.find(mark); at != std::string::npos;
       at = picture.find(mark, at + 1)) {
    const std::vector<double> numbers = numbersIn(picture.substr(at + mark.size(), 40));
    dots.emplace_back(numbers[0], numbers[1]);
  }
  return dots;
}

/// Whether all elements are closed in their order, as a parser sees them.
bool isNested(const std::string& xml) {
  std::vector<std::string> open;
  for (std::size_t at = xml.find('<'); at != std::string::npos; at = xml.find('<', at + 1)) {
    const std::size_t end = xml.find('>', at);
    const std::string tag = xml.substr(at + 1, end - at - 1);
    if (end == std::string::npos || tag.find('<') != std::string::npos) {
      return false;
    }
    const std::string name = tag.substr(0, tag.find_first_of(" /", 1));
    if (tag[0] == '/') {
      if (open.empty() || "/" + open.back() != tag) return false;
      open.pop_back();
    } else if (tag.back() != '/' && tag[0] != '?') {
      open.push_back(name);
    }
  }
  return open.empty();
}

schema::Coverage alongAStreet(unsigned int i) {
  return circleAt(52.5 + 0.00001 * i, 13.4 + 0.00002 * i, 8.0F);
}

TEST(MapCommand, DrawsATrackWithItsFurniture) {
  const std::string picture = pictureOf(track(100, alongAStreet));
  EXPECT_EQ(picture.find("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg "), 0U);
  EXPECT_NE(picture.find("<title id=\"title\">standard input</title>"), std::string::npos);
  EXPECT_NE(picture.find("<desc id=\"desc\">Map of 100 positions on "), std::string::npos);
  EXPECT_NE(picture.find("2023-11-14T22:13:20Z to 2023-11-14T22:14:59Z"), std::string::npos);
  EXPECT_NE(picture.find("viewBox=\"0 0 960 "), std::string::npos);
  EXPECT_EQ(occurrences(picture, "<circle class=\"fix\" cx="), 100U);
  EXPECT_EQ(occurrences(pathOf(picture, "circles"), "a"), 200U);
  EXPECT_NE(picture.find(">100 positions<"), std::string::npos);
  EXPECT_NE(picture.find(">100 error circles: radius of the circular error (CEP)<"),
            std::string::npos);
  EXPECT_NE(picture.find("id=\"north\""), std::string::npos);
  EXPECT_NE(picture.find(">start<"), std::string::npos);
  EXPECT_NE(picture.find(">end<"), std::string::npos);
  EXPECT_NE(picture.find(">track, in the order of the file<"), std::string::npos);
  EXPECT_TRUE(isNested(picture));
}

TEST(MapCommand, StandsForItself) {
  const std::string picture = pictureOf(joined(
      {track(300, alongAStreet), accessPointAt(circleAt(52.5, 13.4, 50.0F), 0x0011223344556677),
       cellAt(ellipseAt(52.501, 13.401, 300, 200, 30), 0x1234567)}));
  EXPECT_EQ(picture.find("<script"), std::string::npos);
  EXPECT_EQ(picture.find("href"), std::string::npos);
  EXPECT_EQ(picture.find("@import"), std::string::npos);
  EXPECT_EQ(occurrences(picture, "url("), 1U);
  EXPECT_EQ(occurrences(picture, "url(#area)"), 1U);
  EXPECT_EQ(occurrences(picture, "http"), 1U);  // the name of the language
}

TEST(MapCommand, AKnownDistanceHasItsLengthByTheScaleBar) {
  // Metres of one degree on the WGS84 ellipsoid at 45 degrees: 111131.8 north, 78846.8 east.
  const std::string picture =
      pictureOf(joined({fixAt(circleAt(44.995, 10.0, 1.0F)), fixAt(circleAt(45.005, 10.0, 1.0F)),
                        fixAt(circleAt(45.0, 10.02, 1.0F))}));
  const auto dots = dotsOf(picture);
  ASSERT_EQ(dots.size(), 3U);
  const double scale = scaleOf(picture);
  EXPECT_NEAR((dots[0].second - dots[1].second) / scale, 1111.318, 2.0);
  EXPECT_NEAR((dots[2].first - dots[1].first) / scale, 1576.936, 2.0);
  EXPECT_EQ(dots[0].first, dots[1].first);
  EXPECT_NEAR((dots[0].second + dots[1].second) / 2, dots[2].second, 0.11);
}

TEST(MapCommand, AnEllipseLiesAtItsAngleToScale) {
  const std::string picture = pictureOf(fixAt(ellipseAt(48.0, 11.0, 40, 10, 30.0)));
  const double scale = scaleOf(picture);
  // M top, then radii minor and major, angle, flags, and the way across.
  const std::vector<double> path = numbersIn(pathOf(picture, "ellipses"));
  ASSERT_EQ(path.size(), 16U);
  EXPECT_NEAR(path[2], 10 * scale, 0.1);
  EXPECT_NEAR(path[3], 40 * scale, 0.1);
  EXPECT_EQ(path[4], 30.0);
  EXPECT_NEAR(path[7], -2 * 40 * scale * 0.5, 0.2);
  EXPECT_NEAR(path[8], 2 * 40 * scale * std::sqrt(0.75), 0.2);
  const auto dot = dotsOf(picture).at(0);
  EXPECT_NEAR(path[0] + path[7] / 2, dot.first, 0.2);
  EXPECT_NEAR(path[1] + path[8] / 2, dot.second, 0.2);
  EXPECT_NE(picture.find(">1 error ellipse: semi-axes, one standard deviation<"),
            std::string::npos);
}

TEST(MapCommand, ACircleFarFromTheMiddleIsStretchedAsTheMapIs) {
  // Between the equator and 60 degrees north: at 60 a metre east is cos 30 / cos 60 as long as at
  // 30.
  const std::string picture = pictureOf(joined(
      {fixAt(circleAt(0.0, 10.0, 1000000.0F), 1), fixAt(circleAt(60.0, 10.0, 1000000.0F), 2)}));
  const std::vector<double> path = numbersIn(pathOf(picture, "circles"));
  ASSERT_EQ(path.size(), 32U);
  EXPECT_NEAR(path[19] / path[18], 1.7372, 0.01);  // with the ellipsoid's own flattening
  EXPECT_NEAR(std::abs(path[20]), 90.0, 0.2);
}

TEST(MapCommand, ATrackAcrossTheDateLineStaysTogether) {
  const std::string picture = pictureOf(joined(
      {fixAt(circleAt(-17.0, 179.995, 5.0F), 100), fixAt(circleAt(-17.0, -179.995, 5.0F), 200)}));
  const auto dots = dotsOf(picture);
  ASSERT_EQ(dots.size(), 2U);
  EXPECT_GT(dots[1].first, dots[0].first);
  EXPECT_NEAR((dots[1].first - dots[0].first) / scaleOf(picture), 1065.0, 4.0);
  EXPECT_NE(picture.find("\u00B0 W<"), std::string::npos);
  EXPECT_NE(picture.find("\u00B0 E<"), std::string::npos);
}

TEST(MapCommand, ASinglePositionIsShownWithItsSurroundings) {
  const std::string picture = pictureOf(fixAt(circleAt(52.5, 13.4, 25.0F)));
  EXPECT_EQ(dotsOf(picture).size(), 1U);
  EXPECT_EQ(pathOf(picture, "track"), "");
  EXPECT_EQ(picture.find(">start<"), std::string::npos);
  EXPECT_NE(picture.find(">1 position<"), std::string::npos);
  const std::vector<double> circle = numbersIn(pathOf(picture, "circles"));
  EXPECT_NEAR(circle[2], 25.0 * scaleOf(picture), 0.1);
  EXPECT_GT(circle[2], 100.0);
  EXPECT_TRUE(isNested(picture));
}

TEST(MapCommand, APositionWithoutUncertaintyIsADot) {
  const Bytes fix = fixAt(circleAt(90.0, 0.0, 0.0F));
  const std::string picture = pictureOf(fix);
  EXPECT_EQ(dotsOf(picture).size(), 1U);
  EXPECT_EQ(pathOf(picture, "circles"), "");
  EXPECT_EQ(picture.find("error circle"), std::string::npos);
}

TEST(MapCommand, TenThousandPositionsStayASmallPicture) {
  const std::string picture = pictureOf(track(10000, [](unsigned int i) {
    const double turn = i * 0.002;
    return ellipseAt(48.0 + 0.0005 * turn * std::sin(turn), 11.0 + 0.0008 * turn * std::cos(turn),
                     60, 20, (i % 180));
  }));
  EXPECT_LT(picture.size(), 150000U);
  EXPECT_TRUE(isNested(picture));
  EXPECT_NE(picture.find(" of 10,000 positions<"), std::string::npos);
  EXPECT_NE(picture.find(" of 10,000 error ellipses"), std::string::npos);
  EXPECT_GT(occurrences(pathOf(picture, "fixes"), "h0"), 150U);
}

TEST(MapCommand, ATrackBreaksWhereTimeDoes) {
  const std::string picture = pictureOf(
      joined({fixAt(circleAt(52.5, 13.4, 5.0F), 1000), fixAt(circleAt(52.501, 13.4, 5.0F), 1010),
              fixAt(circleAt(52.502, 13.4, 5.0F), 1611), fixAt(circleAt(52.503, 13.4, 5.0F), 2211),
              fixAt(circleAt(52.504, 13.4, 5.0F), 2210), fixAt(circleAt(53.5, 13.4, 5.0F), 2211)}));
  // 601 seconds, a second back, and 110 km in a second.
  const std::string path = pathOf(picture, "track");
  EXPECT_EQ(occurrences(path, "M") + occurrences(path, "m"), 2U) << path;
  EXPECT_EQ(occurrences(path, "l"), 2U) << path;
  EXPECT_NE(picture.find(">track, in the order of the file; 2 pieces<"), std::string::npos);
}

TEST(MapCommand, APositionAloneInTimeIsNoPieceOfALine) {
  const std::string picture = pictureOf(joined(
      {fixAt(circleAt(52.5, 13.4, 5.0F), 1000), fixAt(circleAt(52.501, 13.4, 5.0F), 5000),
       fixAt(circleAt(52.502, 13.4, 5.0F), 9000), fixAt(circleAt(52.503, 13.4, 5.0F), 9001)}));
  const std::string path = pathOf(picture, "track");
  EXPECT_EQ(occurrences(path, "M") + occurrences(path, "m"), 1U) << path;
  EXPECT_EQ(occurrences(path, "l"), 1U) << path;
}

TEST(MapCommand, SitesAreDrawnWithCoverageAndName) {
  const std::string picture =
      pictureOf(joined({accessPointAt(circleAt(52.5, 13.4, 30.0F), 0x0011223344556677),
                        cellAt(ellipseAt(52.502, 13.402, 200, 100, 45), 0x1234567)}));
  EXPECT_NE(picture.find("<title>00:11:22:33:44:55:66:77</title>"), std::string::npos);
  EXPECT_NE(picture.find("<title>262-7-74565/103</title>"), std::string::npos);
  EXPECT_NE(picture.find(">1 WLAN access point, 1 with coverage<"), std::string::npos);
  EXPECT_NE(picture.find(">1 E-UTRA cell, 1 with coverage<"), std::string::npos);
  const std::vector<double> cell = numbersIn(between(picture, "class=\"cov k4\" d=\"", "\""));
  ASSERT_EQ(cell.size(), 16U);
  EXPECT_NEAR(cell[3], 200 * scaleOf(picture), 0.1);
  EXPECT_NEAR(cell[4], 45.0, 0.11);
  EXPECT_TRUE(isNested(picture));
}

TEST(MapCommand, TilesOfALevelAreDrawnAndNamed) {
  const Bytes input = track(100, alongAStreet);
  EXPECT_EQ(pathOf(pictureOf(input), "tiles"), "");
  const std::string picture = pictureOf(input, {"--tiles", "19"});
  const unsigned long long id = schema::Utility::wlanRmTileId(52.5005, 13.401, 19);
  EXPECT_NE(picture.find(">" + std::to_string(id) + "<"), std::string::npos);
  EXPECT_NE(picture.find("WLAN RM tiles of level 19, "), std::string::npos);
  EXPECT_NE(pathOf(picture, "tiles"), "");
}

TEST(MapCommand, TilesTooSmallToSeeGiveWayToLargerOnes) {
  const Outcome outcome =
      map(joined({fixAt(circleAt(52.0, 13.0, 5.0F), 1), fixAt(circleAt(53.0, 14.0, 5.0F), 2)}),
          {"--tiles", "23"});
  EXPECT_EQ(outcome.status, kExitGood);
  EXPECT_EQ(outcome.err,
            "trelvo: standard input: tiles of level 23 are too small to draw here; level 12 "
            "drawn\n");
  EXPECT_NE(outcome.out.find("WLAN RM tiles of level 12, "), std::string::npos);
}

TEST(MapCommand, AnEllipseLargerThanTheEarthIsLeftOut) {
  const std::string picture =
      pictureOf(fixAt(ellipseAt(52.5, 13.4, 0xFFFFFFFF, 0xFFFFFFFF, 0)), {"--tiles", "6"});
  EXPECT_EQ(dotsOf(picture).size(), 1U);
  EXPECT_LT(picture.size(), 150000U);
  EXPECT_TRUE(isNested(picture));
}

TEST(MapCommand, ErrorsTooSmallToSeeAreToldInTheLegend) {
  const std::string picture = pictureOf(
      joined({fixAt(circleAt(52.0, 13.0, 5.0F), 1), fixAt(circleAt(53.0, 14.0, 5.0F), 2)}));
  EXPECT_EQ(pathOf(picture, "circles"), "");
  EXPECT_NE(picture.find(">2 error circles: none of a size that can be seen at this scale<"),
            std::string::npos);
}

// Beyond what is kept in memory, positions are dropped where they are closest; all are counted.
TEST(MapCommand, FortyThousandPositionsAreCountedAndTheEndsShown) {
  const std::string picture = pictureOf(track(40000, [](unsigned int i) {
    return circleAt(48.0 + 0.000001 * i, 11.0 + 0.000001 * i, 3.0F);
  }));
  EXPECT_NE(picture.find(" of 40,000 positions<"), std::string::npos);
  EXPECT_NE(picture.find("<desc id=\"desc\">Map of 40,000 positions on "), std::string::npos);
  EXPECT_LT(picture.size(), 150000U);
  const std::vector<double> start = numbersIn(between(picture, "class=\"start\" cx=\"", "r="));
  const std::vector<double> end = numbersIn(between(picture, "class=\"end\" cx=\"", "r="));
  ASSERT_EQ(start.size(), 2U);
  ASSERT_EQ(end.size(), 2U);
  EXPECT_GT(end[0] - start[0], 400.0);
}

TEST(MapCommand, TheTitleIsEscaped) {
  const std::string picture =
      pictureOf(fixAt(circleAt(52.5, 13.4, 25.0F)), {"--title", "a<b> & \"c\" \xC3\xA4 \xFF\x01"});
  EXPECT_NE(picture.find("<title id=\"title\">a&lt;b&gt; &amp; &quot;c&quot; \xC3\xA4 "
                         "\xEF\xBF\xBD\xEF\xBF\xBD</title>"),
            std::string::npos);
}

TEST(MapCommand, WithoutPositionsThereIsNothingToDraw) {
  const Outcome outcome = map(golden("pub_container_small"));
  EXPECT_EQ(outcome.status, kExitFailed);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err,
            "trelvo: standard input: has no positions and no places of cells or access points; "
            "there is nothing to draw\n");
}

TEST(MapCommand, WhatStandsAheadOfDamageIsDrawn) {
  Bytes input = fixAt(circleAt(52.5, 13.4, 25.0F));
  const std::size_t size = input.size();
  input.push_back(1);
  const Outcome outcome = map(input);
  EXPECT_EQ(outcome.status, kExitFailed);
  EXPECT_EQ(dotsOf(outcome.out).size(), 1U);
  EXPECT_EQ(outcome.err, "trelvo: standard input: stops at byte " + std::to_string(size + 1) +
                             ": the input ends inside an object key\n");
  EXPECT_EQ(map({1}).out, "");
  EXPECT_EQ(map({1}).status, kExitFailed);
}

TEST(MapCommand, TheCommandLineIsChecked) {
  EXPECT_EQ(runTool({"map"}).status, kExitUsage);
  EXPECT_EQ(runTool({"map", "-"}).status, kExitUsage);
  EXPECT_EQ(map({}, {"--tiles", "5"}).status, kExitUsage);
  EXPECT_EQ(map({}, {"--tiles", "24"}).status, kExitUsage);
  EXPECT_EQ(map({}, {"--tiles", "x"}).status, kExitUsage);
  EXPECT_EQ(map({}, {"--title", ""}).status, kExitUsage);
  EXPECT_EQ(map({}, {"--storage", "/tmp"}).status, kExitUsage);
  EXPECT_EQ(runTool({"map", "/no/such", "-o", "-"}).status, kExitFailed);
}

using MapFiles = CryptoFixture;

TEST_F(MapFiles, ASealedFileGivesTheSamePictureAsItsContent) {
  const std::string plain = file("drive.trelvo", track(20, alongAStreet));
  ASSERT_EQ(runTool({"seal", "--storage", keys(), "drive", plain, path("sealed")}).status,
            kExitGood);
  const Outcome fromPlain = runTool({"map", plain, "-o", path("plain.svg")});
  EXPECT_EQ(fromPlain.status, kExitGood) << fromPlain.err;
  EXPECT_EQ(fromPlain.out + fromPlain.err, "");
  EXPECT_EQ(runTool({"map", "--sealed", "drive", "--storage", keys(), path("sealed"), "-o",
                     path("sealed.svg"), "--title", "drive.trelvo"})
                .status,
            kExitGood);
  EXPECT_NE(textOf(path("plain.svg")).find("<title id=\"title\">drive.trelvo</title>"),
            std::string::npos);
  EXPECT_EQ(textOf(path("plain.svg")), textOf(path("sealed.svg")));
}

TEST_F(MapFiles, AFailureLeavesNoFile) {
  EXPECT_EQ(runTool({"map", "-", "-o", path("empty.svg")}).status, kExitFailed);
  EXPECT_FALSE(exists(path("empty.svg")));
  EXPECT_EQ(runTool({"map", "-", "-o", path("no/such.svg")}, track(2, alongAStreet)).status,
            kExitFailed);
  EXPECT_EQ(filesIn(m_folder.string()), 1U);  // the keys
}

TEST_F(MapFiles, IsWellFormedXmlForAParser) {
  file("drive.trelvo", track(50, alongAStreet));
  const Outcome parsed = shell(
      "$TRELVO map drive.trelvo -o drive.svg --tiles 18 --title 'a & b' && python3 -c '\n"
      "import xml.etree.ElementTree as tree\n"
      "root = tree.parse(\"drive.svg\").getroot()\n"
      "print(root.tag, len(list(root.iter())) > 100, root[0].text)'");
  EXPECT_EQ(parsed.status, 0);
  EXPECT_EQ(parsed.out, "{http://www.w3.org/2000/svg}svg True a & b\n");
}

// The picture of the README, which scripts/demo makes in the same way.
TEST_F(MapFiles, TheKeptPictureIsWhatTheProgramMakes) {
  const std::string root = std::string(TRELVO_TEST_DATA) + "/..";
  ASSERT_EQ(runTool({"import", root + "/examples/data/nmea/ublox-neo-m9n-nmea.log", "-o",
                     path("one.trelvo")})
                .status,
            kExitGood);
  const Outcome made = runTool({"map", path("one.trelvo"), "-o", path("map.svg"), "--tiles", "23",
                                "--title", "u-blox NEO-M9N at rest: one minute of fixes"});
  EXPECT_EQ(made.status, kExitGood);
  EXPECT_EQ(made.err, "");
  EXPECT_EQ(textOf(path("map.svg")), textOf(root + "/docs/demo-map.svg"));
}

TEST_F(MapFiles, AFullDiskIsAFailure) {
  file("drive.trelvo", track(50, alongAStreet));
  const Outcome full = shell("$TRELVO map drive.trelvo -o /dev/full 2>&1");
  EXPECT_EQ(full.status, 1);
  EXPECT_EQ(full.out, "trelvo: /dev/full: No space left on device\n");
}

}  // namespace
}  // namespace trelvo::tool
