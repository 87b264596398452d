#include <nlohmann/json.hpp>

#include <set>
#include <string>
#include <vector>

#include "tests/tools/ToolFixture.h"
#include "tools/trelvo/GeoResults.h"

namespace trelvo::tool {
namespace {

using nlohmann::json;
using Words = std::vector<std::string>;

Outcome geo(Words words) {
  words.insert(words.begin(), "geo");
  return runTool(words);
}

json answer(const Words& words) {
  const Outcome outcome = geo(words);
  EXPECT_EQ(outcome.status, kExitGood) << outcome.err;
  EXPECT_EQ(outcome.err, "");
  return json::parse(outcome.out);
}

// The expected numbers come from 40-digit arithmetic on the formulas.

TEST(GeoCommand, DistanceIsInMetres) {
  const json result = answer({"distance", "37.788", "-122.394", "37.771", "-122.428", "--json"});
  EXPECT_EQ(result.size(), 1u);
  EXPECT_NEAR(result.at("distanceMetres").get<double>(), 3535.835163649936, 5e-6);
}

TEST(GeoCommand, DistanceForPeopleIsOneLine) {
  EXPECT_EQ(geo({"distance", "10", "20", "10", "20"}).out, "distanceMetres: 0.0\n");
}

TEST(GeoCommand, BearingIsClockwiseFromNorth) {
  EXPECT_EQ(geo({"bearing", "0", "0", "0", "90"}).out, "bearingDegrees: 90.0\n");
  EXPECT_EQ(geo({"bearing", "0", "90", "0", "0"}).out, "bearingDegrees: 270.0\n");
  const json result = answer({"bearing", "37.788", "-122.394", "37.771", "-122.428", "--json"});
  EXPECT_NEAR(result.at("bearingDegrees").get<double>(), 237.69249148819148, 0.003);
}

TEST(GeoCommand, BearingTakesTheShorterWayOverTheDateLine) {
  EXPECT_NEAR(
      answer({"bearing", "0", "179", "0", "-179", "--json"})["bearingDegrees"].get<double>(), 90.0,
      1e-6);
  EXPECT_NEAR(
      answer({"bearing", "0", "-179", "0", "179", "--json"})["bearingDegrees"].get<double>(), 270.0,
      1e-6);
  // 180.5 degrees apart eastward, so west is 179.5 away.
  EXPECT_NEAR(
      answer({"bearing", "0", "-90.5", "0", "90", "--json"})["bearingDegrees"].get<double>(), 270.0,
      1e-6);
}

TEST(GeoCommand, ThereIsNoBearingFromAPole) {
  for (const Words& words : {Words{"bearing", "90", "0", "0", "0"},
                             Words{"bearing", "45", "10", "-45", "-170", "--json"}}) {
    const Outcome outcome = geo(words);
    EXPECT_EQ(outcome.status, kExitFailed);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err,
              "trelvo: no bearing from a pole, to the antipode or between points this close\n");
  }
}

TEST(GeoCommand, EllipseGivesItsCovarianceAndItsExtents) {
  const json result = answer({"ellipse", "60", "200", "50", "30", "--json"});
  const json& covariance = result.at("covarianceSquaredDegrees");
  EXPECT_NEAR(covariance.at("latitude").get<double>(), 2.4672315802567421e-6, 1e-20);
  EXPECT_NEAR(covariance.at("latitudeLongitude").get<double>(), 2.6119484512118616e-6, 1e-20);
  EXPECT_NEAR(covariance.at("longitude").get<double>(), 3.8138639440018731e-6, 1e-20);
  EXPECT_NEAR(result.at("extentDegrees").at("latitude").get<double>(), 1.5707423659711806e-3,
              1e-17);
  EXPECT_NEAR(result.at("extentDegrees").at("longitude").get<double>(), 1.9529116580126898e-3,
              1e-17);
  EXPECT_NEAR(result.at("extentMetres").at("north").get<double>(), 175.0, 1e-11);
  EXPECT_NEAR(result.at("extentMetres").at("east").get<double>(), 108.97247358851684, 1e-11);
}

TEST(GeoCommand, EllipseForPeopleIsIndented) {
  EXPECT_EQ(geo({"ellipse", "0", "0", "0", "0"}).out,
            "covarianceSquaredDegrees:\n"
            "  latitude: 0.0\n"
            "  latitudeLongitude: 0.0\n"
            "  longitude: 0.0\n"
            "extentDegrees:\n"
            "  latitude: 0.0\n"
            "  longitude: 0.0\n"
            "extentMetres:\n"
            "  north: 0.0\n"
            "  east: 0.0\n");
}

TEST(GeoCommand, ThereIsNoEllipseAtAPole) {
  for (const char* pole : {"90", "-90"}) {
    const Outcome outcome = geo({"ellipse", pole, "10", "10", "0"});
    EXPECT_EQ(outcome.status, kExitFailed);
    EXPECT_EQ(outcome.err, "trelvo: no ellipse at a pole\n");
  }
}

constexpr const char* kTileText =
    "id: 7344105718\n"
    "idHex: 0x1b5be28f6\n"
    "level: 16\n"
    "corner:\n"
    "  latitude: 37.7874755859375\n"
    "  longitude: -122.398681640625\n"
    "sizeDegrees:\n"
    "  latitude: 0.00274658203125\n"
    "  longitude: 0.0054931640625\n"
    "parent: 1836029051\n"
    "children: 29376401900 29376401901 29376532972 29376532973\n";

TEST(GeoCommand, ATileIsToldByPositionAndByIdentifier) {
  for (const Words& words : {Words{"tile", "37.788", "-122.394", "16"}, Words{"tile", "7344105718"},
                             Words{"tile", "0x1b5be28f6"}, Words{"tile", "0X1B5BE28F6"}}) {
    EXPECT_EQ(geo(words).out, kTileText) << words.back();
  }
}

TEST(GeoCommand, ATileAsJson) {
  EXPECT_EQ(answer({"tile", "7344105718", "--json"}),
            json::parse(R"({"id": 7344105718, "idHex": "0x1b5be28f6", "level": 16,
                "corner": {"latitude": 37.7874755859375, "longitude": -122.398681640625},
                "sizeDegrees": {"latitude": 0.00274658203125, "longitude": 0.0054931640625},
                "parent": 1836029051,
                "children": [29376401900, 29376401901, 29376532972, 29376532973]})"));
}

TEST(GeoCommand, TheCoarsestTileHasNoParentAndTheFinestNoChildren) {
  const json coarse = answer({"tile", "4096", "--json"});
  EXPECT_TRUE(coarse.at("parent").is_null());
  EXPECT_EQ(coarse.at("children"), json::parse("[16384, 16385, 16512, 16513]"));
  const json fine = answer({"tile", "70368744177664", "--json"});
  EXPECT_EQ(fine.at("level"), 23);
  EXPECT_EQ(fine.at("parent"), 17592186044416u);
  EXPECT_EQ(fine.at("children"), json::array());
  EXPECT_NE(geo({"tile", "4096"}).out.find("parent: none\n"), std::string::npos);
  EXPECT_NE(geo({"tile", "70368744177664"}).out.find("children: none\n"), std::string::npos);
}

TEST(GeoCommand, TheChildrenOfATileHaveItAsTheirParent) {
  for (unsigned int level = kCoarsestTile; level < kFinestTile; ++level) {
    const json tile = answer({"tile", "-89.999", "179.999", std::to_string(level), "--json"});
    std::set<unsigned long long> different;
    for (const json& child : tile.at("children")) {
      const auto id = child.get<unsigned long long>();
      different.insert(id);
      EXPECT_EQ(answer({"tile", std::to_string(id), "--json"}).at("parent"), tile.at("id"));
    }
    EXPECT_EQ(different.size(), 4u);
  }
}

TEST(GeoCommand, ATileAsGeojsonIsAClosedRingCounterClockwise) {
  const json feature = answer({"tile", "7344105718", "--geojson"});
  EXPECT_EQ(feature.at("type"), "Feature");
  EXPECT_EQ(feature.at("geometry"), json::parse(R"({"type": "Polygon", "coordinates": [[
      [-122.398681640625, 37.7874755859375], [-122.3931884765625, 37.7874755859375],
      [-122.3931884765625, 37.79022216796875], [-122.398681640625, 37.79022216796875],
      [-122.398681640625, 37.7874755859375]]]})"));
  EXPECT_EQ(feature.at("properties"), answer({"tile", "7344105718", "--json"}));
}

TEST(GeoCommand, WhatIsNoTileGives1AndAMessage) {
  for (const char* id : {"0", "5", "4095", "8192", "281474976710656", "18446744073709551615"}) {
    for (const char* form : {"--json", "--geojson"}) {
      const Outcome outcome = geo({"tile", id, form});
      EXPECT_EQ(outcome.status, kExitFailed) << id;
      EXPECT_EQ(outcome.out, "");
      EXPECT_EQ(outcome.err, std::string("trelvo: ") + id + " is no identifier of a tile\n");
    }
  }
}

TEST(GeoCommand, WrongUsageGives2AndAMessage) {
  const std::vector<Words> lines = {
      {},
      {"weigh"},
      {"distance", "1", "2", "3"},
      {"distance", "1", "2", "3", "4", "5"},
      {"distance", "90.5", "2", "3", "4"},
      {"distance", "1", "-180.5", "3", "4"},
      {"distance", "1", "2", "nan", "4"},
      {"distance", "1", "2", "inf", "4"},
      {"distance", "1", "2", "3", "4m"},
      {"distance", "1", "2", "3", ""},
      {"distance", "1", "2", "3", "4", "--geojson"},
      {"bearing", "1", "2", "3", "181"},
      {"ellipse", "1", "-1", "2", "3"},
      {"ellipse", "1", "1e300", "2", "3"},
      {"ellipse", "1", "1", "2", "361"},
      {"tile"},
      {"tile", "1", "2"},
      {"tile", "1", "2", "7", "8"},
      {"tile", "90", "2", "7"},
      {"tile", "1", "180", "7"},
      {"tile", "1", "2", "5"},
      {"tile", "1", "2", "24"},
      {"tile", "1", "2", "6.5"},
      {"tile", "-1"},
      {"tile", "0x"},
      {"tile", "4096.0"},
      {"tile", "18446744073709551616"},
      {"tile", "4096", "--json", "--geojson"},
  };
  for (const Words& line : lines) {
    const Outcome outcome = geo(line);
    EXPECT_EQ(outcome.status, kExitUsage) << ::testing::PrintToString(line);
    EXPECT_EQ(outcome.out, "") << ::testing::PrintToString(line);
    EXPECT_EQ(outcome.err.rfind("trelvo: ", 0), 0u) << ::testing::PrintToString(line);
  }
}

TEST(GeoCommand, TheEndsOfTheRangesBelongToThem) {
  EXPECT_EQ(geo({"distance", "-90", "-180", "90", "180"}).status, kExitGood);
  EXPECT_EQ(geo({"ellipse", "45", "2e7", "0", "-360"}).status, kExitGood);
  EXPECT_EQ(geo({"tile", "-90", "-180", "6"}).out.rfind("id: 4096\n", 0), 0u);
}

}  // namespace
}  // namespace trelvo::tool
