#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "tests/tools/CryptoFixture.h"
#include "tests/tools/MapSupport.h"
#include "tools/trelvo/BarChart.h"
#include "tools/trelvo/GeoExtent.h"
#include "tools/trelvo/LevelHistogram.h"

namespace trelvo::tool {
namespace {

using nlohmann::ordered_json;

Bytes sevenKinds() { return golden("pub_container_seven_kinds_forward"); }
Bytes eightKinds() { return golden("pub_injection_eight_kinds_forward"); }

ordered_json statsOf(const Bytes& input) {
  const Outcome outcome = runTool({"stats", "--json", "-"}, input);
  EXPECT_EQ(outcome.status, kExitGood) << outcome.err;
  return ordered_json::parse(outcome.out);
}

/// A container with an access point heard at each of `levels`.
Bytes heardAt(const std::vector<int>& levels) {
  const auto container = schema::MeasurementContainer::create();
  for (const int level : levels) {
    const auto access =
        schema::WlanMeasurement::create(schema::WlanDn::create(0x0011223344556677), 1700000000);
    const auto heard = schema::WlanApMeasurement::create();
    EXPECT_EQ(heard->setRxLevel(static_cast<signed char>(level)), StatusOk);
    EXPECT_EQ(access->setWlanApMeasurement(heard), StatusOk);
    EXPECT_EQ(container->addWlanMeasurement(access->wrappedObject()), StatusOk);
  }
  return wireOf(*container);
}

TEST(StatsCommand, CountsKindsTimeAndExtent) {
  const Bytes input = joined({fixAt(circleAt(10.0, 20.0, 5.0F), 1700000000),
                              fixAt(circleAt(10.5, 20.25, 5.0F), 1700000060),
                              accessPointAt(circleAt(10.25, 20.125, 30.0F), 1)});
  const Outcome outcome = runTool({"stats", "-"}, input);
  EXPECT_EQ(outcome.status, kExitGood);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.out,
            "bytes                         " + std::to_string(input.size()) +
                "\n"
                "MeasurementContainer          2\n"
                "Injection                     1\n"
                "GnssMeasurement               2\n"
                "WlanInjection                 1\n"
                "positions                     2\n"
                "coverages                     1\n"
                "time                          2023-11-14T22:13:20Z to 2023-11-14T22:14:20Z, 60 s\n"
                "latitude                      10.000000 to 10.500000\n"
                "longitude                     20.000000 to 20.250000\n"
                "size                          27389 m east, 55305 m north\n");
}

TEST(StatsCommand, AnEmptyFileHoldsNothing) {
  const Outcome outcome = runTool({"stats", "-"});
  EXPECT_EQ(outcome.status, kExitGood);
  EXPECT_EQ(outcome.out,
            "bytes                         0\n"
            "positions                     0\n"
            "coverages                     0\n"
            "time                          none\n"
            "extent                        none\n");
  const ordered_json json = statsOf({});
  EXPECT_EQ(json["containers"], 0);
  EXPECT_TRUE(json["time"].is_null());
  EXPECT_TRUE(json["extent"].is_null());
  EXPECT_TRUE(json["levels"].empty());
}

TEST(StatsCommand, JsonHoldsTheCounts) {
  const ordered_json json = statsOf(joined({sevenKinds(), eightKinds()}));
  EXPECT_EQ(json["bytes"], sevenKinds().size() + eightKinds().size());
  EXPECT_EQ(json["containers"], 2);
  EXPECT_EQ(json["objects"]["MeasurementContainer"], 1);
  EXPECT_EQ(json["objects"]["Injection"], 1);
  EXPECT_EQ(json["objects"]["WlanMeasurement"], 1);
  EXPECT_EQ(json["records"]["WlanApMeasurement"], 2);
  EXPECT_GT(json["positions"], 0);
  EXPECT_GT(json["coverages"], 0);
  EXPECT_LE(json["time"]["from"], json["time"]["to"]);
  const ordered_json& wlan = json["levels"]["WLAN level"];
  EXPECT_EQ(wlan["unit"], "dBm");
  EXPECT_EQ(wlan["highest"], -40);
}

TEST(StatsCommand, LevelsBecomeAHistogram) {
  const Outcome outcome = runTool({"stats", "-"}, heardAt({-70, -66, -65, -80, -70}));
  EXPECT_NE(outcome.out.find("\nWLAN level, dBm: 5 from -80 to -65\n"
                             "  -80  ######################## 1\n"
                             "  -75  0\n"
                             "  -70  " +
                             std::string(71, '#') +
                             " 3\n"
                             "  -65  ######################## 1\n"),
            std::string::npos)
      << outcome.out;
  const ordered_json json = statsOf(heardAt({-70, -66, -65, -80, -70}));
  EXPECT_EQ(json["levels"]["WLAN level"]["bins"],
            ordered_json::parse(R"([{"from":-80,"below":-75,"count":1},
                                    {"from":-75,"below":-70,"count":0},
                                    {"from":-70,"below":-65,"count":3},
                                    {"from":-65,"below":-60,"count":1}])"));
}

TEST(StatsCommand, AnExtentMayCrossTheDateLine) {
  const Bytes input =
      joined({fixAt(circleAt(-17.0, 179.5, 5.0F), 1), fixAt(circleAt(-16.0, -179.5, 5.0F), 2)});
  EXPECT_NE(
      runTool({"stats", "-"}, input)
          .out.find("longitude                     179.500000 to -179.500000, across the date "
                    "line\n"),
      std::string::npos);
  const ordered_json extent = statsOf(input)["extent"];
  EXPECT_NEAR(extent["west"], 179.5, 1e-6);
  EXPECT_NEAR(extent["east"], -179.5, 1e-6);
  EXPECT_NEAR(extent["widthMetres"], 106740.0, 500.0);
}

TEST(StatsCommand, CountsWhatStandsAheadOfDamage) {
  Bytes input = fixAt(circleAt(52.5, 13.4, 25.0F));
  const std::size_t size = input.size();
  input.push_back(1);
  const Outcome outcome = runTool({"stats", "-"}, input);
  EXPECT_EQ(outcome.status, kExitFailed);
  EXPECT_NE(outcome.out.find("positions                     1\n"), std::string::npos);
  EXPECT_EQ(outcome.err, "trelvo: standard input: stops at byte " + std::to_string(size + 1) +
                             ": the input ends inside an object key\n");
}

TEST(StatsCommand, TheCommandLineIsChecked) {
  EXPECT_EQ(runTool({"stats"}).status, kExitUsage);
  EXPECT_EQ(runTool({"stats", "-", "--storage", "/tmp"}).status, kExitUsage);
  const Outcome missing = runTool({"stats", "/no/such"});
  EXPECT_EQ(missing.status, kExitFailed);
  EXPECT_EQ(missing.err, "trelvo: /no/such: No such file or directory\n");
}

/// A terminal of so many columns.
class Terminal {
 public:
  explicit Terminal(unsigned short columns) : m_master(::posix_openpt(O_RDWR | O_NOCTTY)) {
    EXPECT_EQ(::grantpt(m_master.get()), 0);
    EXPECT_EQ(::unlockpt(m_master.get()), 0);
    winsize size = {};
    size.ws_row = 24;
    size.ws_col = columns;
    EXPECT_EQ(::ioctl(m_master.get(), TIOCSWINSZ, &size), 0);
  }
  int descriptor() const { return m_master.get(); }

 private:
  UniqueFd m_master;
};

BarStyle styleOn(unsigned short columns, const char* locale) {
  ::setenv("LC_ALL", locale, 1);
  const Terminal terminal(columns);
  std::ostringstream text;
  CommandContext context{text, text};
  context.outputIsTerminal = true;
  context.outputDescriptor = terminal.descriptor();
  return barStyleFor(context);
}

TEST(BarChart, TakesTheTerminalsWidthAndCharacters) {
  EXPECT_EQ(styleOn(100, "de_DE.UTF-8").columns, 100U);
  EXPECT_TRUE(styleOn(100, "de_DE.UTF-8").unicode);
  EXPECT_TRUE(styleOn(100, "C.utf8").unicode);
  EXPECT_FALSE(styleOn(100, "C").unicode);
  EXPECT_EQ(styleOn(10, "C").columns, 40U);
  EXPECT_EQ(styleOn(1000, "C").columns, 160U);
  EXPECT_EQ(styleOn(0, "C").columns, 80U);
}

TEST(BarChart, IsPlainWhereThereIsNoTerminal) {
  ::setenv("LC_ALL", "C.UTF-8", 1);
  std::ostringstream text;
  const CommandContext context{text, text};
  EXPECT_FALSE(barStyleFor(context).unicode);
  EXPECT_EQ(barStyleFor(context).columns, 80U);
}

TEST(BarChart, TheLocaleIsTheFirstVariableThatIsSet) {
  ::setenv("LC_CTYPE", "C.UTF-8", 1);
  ::setenv("LANG", "C", 1);
  EXPECT_TRUE(styleOn(80, "").unicode);
  ::setenv("LC_CTYPE", "", 1);
  EXPECT_FALSE(styleOn(80, "").unicode);
  ::setenv("LANG", "C.UTF-8", 1);
  EXPECT_TRUE(styleOn(80, "").unicode);
}

TEST(BarChart, BarsHaveTheirShareOfTheWidth) {
  EXPECT_EQ(bar(10, 10, 5, false), "#####");
  EXPECT_EQ(bar(1, 1000, 5, false), "#");
  EXPECT_EQ(bar(0, 10, 5, false), "");
  EXPECT_EQ(bar(0, 0, 5, false), "");
  EXPECT_EQ(bar(10, 10, 2, true), "\u2588\u2588");
  EXPECT_EQ(bar(1, 2, 3, true), "\u2588\u258C");
  EXPECT_EQ(bar(1, 1000, 3, true), "\u258F");
}

TEST(GeoExtent, IsTheSmallestBox) {
  GeoExtent extent;
  EXPECT_TRUE(extent.isEmpty());
  extent.add(10.0, 170.0);
  EXPECT_FALSE(extent.isEmpty());
  EXPECT_EQ(extent.box().west, 170.0);
  EXPECT_EQ(extent.box().east, 170.0);
  extent.add(-20.0, -175.0);
  extent.add(5.0, 179.0);
  const GeoBox box = extent.box();
  EXPECT_EQ(box.south, -20.0);
  EXPECT_EQ(box.north, 10.0);
  EXPECT_EQ(box.west, 170.0);
  EXPECT_EQ(box.east, 185.0);
  EXPECT_EQ(box.eastward(-175.0), 185.0);
}

TEST(GeoExtent, TakesTheWayRoundThatIsShorter) {
  GeoExtent extent;
  extent.add(0.0, -100.0);
  extent.add(0.0, 70.0);
  EXPECT_EQ(extent.box().west, -100.0);
  EXPECT_EQ(extent.box().east, 70.0);
  extent.add(0.0, 180.0);  // -180
  EXPECT_EQ(extent.box().west, 70.0);
  EXPECT_EQ(extent.box().east, 260.0);
}

TEST(GeoExtent, APoleIsAPlaceAndANumberThatIsNoneIsNot) {
  EXPECT_TRUE(isPlace(90.0, 180.0));
  EXPECT_TRUE(isPlace(-90.0, -180.0));
  EXPECT_FALSE(isPlace(90.1, 0.0));
  EXPECT_FALSE(isPlace(0.0, 180.1));
  EXPECT_FALSE(isPlace(std::stod("nan"), 0.0));
  EXPECT_FALSE(isPlace(0.0, std::stod("inf")));
}

TEST(LevelHistogram, ABinHoldsItsBeginning) {
  LevelHistogram histogram(5);
  histogram.add(-70.0);
  histogram.add(-70.5);
  histogram.add(-65.0);
  EXPECT_EQ(histogram.count(-75), 1U);
  EXPECT_EQ(histogram.count(-70), 1U);
  EXPECT_EQ(histogram.count(-65), 1U);
  EXPECT_EQ(histogram.first(), -75);
  EXPECT_EQ(histogram.last(), -65);
  EXPECT_EQ(histogram.total(), 3U);
}

TEST(LevelHistogram, LevelsBeyondItsEndsCountAtThem) {
  LevelHistogram histogram(5);
  histogram.add(-1000.0);
  histogram.add(1000.0);
  EXPECT_EQ(histogram.count(-150), 1U);
  EXPECT_EQ(histogram.count(145), 1U);
}

using StatsFiles = CryptoFixture;

TEST_F(StatsFiles, ASealedFileCountsAsItsContent) {
  const std::string plain = file("plain", joined({sevenKinds(), eightKinds()}));
  ASSERT_EQ(runTool({"seal", "--storage", keys(), "drive", plain, path("sealed")}).status,
            kExitGood);
  EXPECT_EQ(runTool({"stats", "--sealed", "drive", "--storage", keys(), path("sealed")}).out,
            runTool({"stats", plain}).out);
}

}  // namespace
}  // namespace trelvo::tool
