#include "tools/trelvo/WifiScanImporter.h"

#include <trelvo/schema/WlanMeasurement.h>

#include <cmath>
#include <nlohmann/json.hpp>
#include <string>

#include "tests/tools/ImportSupport.h"
#include "tools/trelvo/ImportFix.h"

namespace trelvo::tool {
namespace {

using schema::MeasurementContainer;
using schema::WlanApMeasurement;

constexpr unsigned int kNow = 1700000000;

struct Import : ImportOutcome {
  explicit Import(const std::string& text, const ImportClock& clock = {{}, kNow}) {
    ProducedStream stream(text);
    ImportSource source(stream, "scan");
    any = WifiScanImporter(source, report, target, clock).run();
  }

  const MeasurementContainer& scan(size_t index = 0) const { return container(index); }
  unsigned int count(size_t index = 0) const {
    return scan(index).wlanMeasurementCollection()->count();
  }
};

std::string entry(const std::string& fields, const std::string& end = "c6:80",
                  const std::string& interface = "wlan0") {
  return "BSS 00:19:a9:cd:" + end + "(on " + interface + ")\n" + fields;
}

gom::SharedPointer<WlanApMeasurement> heard(const std::string& signal) {
  const Import import(entry("\tsignal: " + signal + "\n"));
  EXPECT_EQ(import.size(), 1u) << signal;
  return import.scan().wlanMeasurement(0)->wlanApMeasurement();
}

// The number of a field in an answer: {"signal_dbm": -45.0}, or, where the parser took the line for
// a part of the heading before it, {"ht_operation_signal": "-45.00 dBm"}.
double answerFor(const nlohmann::json& answer, const std::string& field, const std::string& unit) {
  if (answer.contains(field + unit)) {
    return answer.at(field + unit).get<double>();
  }
  const std::string end = "_" + field;
  for (const auto& [key, value] : answer.items()) {
    if (key.size() > end.size() && key.compare(key.size() - end.size(), end.size(), end) == 0) {
      return std::stod(value.get<std::string>());
    }
  }
  ADD_FAILURE() << field << " has no answer";
  return 0;
}

// jc, https://github.com/kellyjonbrazil/jc, parsed the same scans.
class WifiScanAnswers : public ::testing::TestWithParam<const char*> {};

TEST_P(WifiScanAnswers, AreWhatIsStored) {
  const std::string name = std::string("wifi/") + GetParam();
  const Import import(readExample(name + ".out"));
  const auto answers = nlohmann::json::parse(readExample(name + ".json"));
  ASSERT_EQ(import.size(), 1u);
  ASSERT_EQ(import.count(), answers.size());
  for (unsigned int i = 0; i < answers.size(); ++i) {
    const nlohmann::json& answer = answers[i];
    const auto found = import.scan().wlanMeasurement(i);
    const auto address = macAddress(answer.at("bssid").get<std::string>());
    ASSERT_TRUE(address) << i;
    schema::WlanDn expected;
    expected.setBssid(address->data(), 6);
    EXPECT_EQ(*found->dn(), expected) << i;
    const double ageSeconds = answerFor(answer, "last_seen", "_ms") / 1000;
    EXPECT_EQ(found->timeStamp(), std::floor(kNow - ageSeconds)) << i;
    EXPECT_EQ(found->wlanApMeasurement()->rxLevel(), answerFor(answer, "signal", "_dbm")) << i;
    EXPECT_FALSE(found->wlanApMeasurement()->valueExists(WlanApMeasurement::HasRssi)) << i;
  }
}

INSTANTIATE_TEST_SUITE_P(Scans, WifiScanAnswers, ::testing::Values("iw-scan0", "iw-scan1"),
                         [](const auto& scan) { return std::string(scan.param).substr(3); });

TEST(WifiScanImporter, AStruckOutAddressIsCountedAndItsEntryLeftOut) {
  const Import import(readExample("wifi/iw-scan2.out"));
  EXPECT_EQ(import.size(), 0u);
  EXPECT_FALSE(import.any);
  EXPECT_EQ(import.report.countOf(kBadAddress), 1u);
  EXPECT_EQ(import.report.countOf(WifiScanImporter::kStrayLine), 0u);
}

TEST(WifiScanImporter, NamesWhatItHasNoPlaceFor) {
  const Import import(
      entry("\tlast seen: 4206.107s [boottime]\n\tTSF: 6 usec (7d, 00:56:02)\n"
            "\tfreq: 2412\n\tbeacon interval: 100 TUs\n\tcapability: ESS (0x1431)\n"
            "\tSSID: a\n\tERP: <no flags>\n\tWMM:\t * Parameter version 1\n"));
  for (const char* field :
       {"scan last seen [boottime]", "scan TSF", "scan freq", "scan beacon interval",
        "scan capability", "scan SSID", "scan information elements"}) {
    EXPECT_TRUE(import.report.isNotStored(field)) << field;
  }
  EXPECT_FALSE(import.report.isNotStored("scan ERP"));
  EXPECT_EQ(import.report.countOf(WifiScanImporter::kBadAge), 0u);
}

TEST(WifiScanImporter, SignalsAreRoundedToWholeDbm) {
  const auto level = [](const std::string& text) {
    return static_cast<int>(heard(text)->rxLevel());
  };
  EXPECT_EQ(level("-45.00 dBm"), -45);
  EXPECT_EQ(level("-57.49 dBm"), -57);
  EXPECT_EQ(level("-57.50 dBm"), -58);
  EXPECT_EQ(level("-128.00 dBm"), -128);
  EXPECT_EQ(level("127.00 dBm"), 127);
}

TEST(WifiScanImporter, UnspecificUnitsAreTheDriversOwnScale) {
  const auto found = heard("60/100");
  EXPECT_EQ(found->rssi(), 60u);
  EXPECT_FALSE(found->valueExists(WlanApMeasurement::HasRxLevel));
  EXPECT_EQ(heard("0/100")->rssi(), 0u);
  EXPECT_EQ(heard("100/100")->rssi(), 100u);
}

TEST(WifiScanImporter, SignalsThatCannotBeReadAreCounted) {
  for (const char* text : {"", "-45.00", "-45,00 dBm", "-129.00 dBm", "128.00 dBm", "nan dBm",
                           "101/100", "-1/100", "1.5/100", "x dBm", "1e2 dBm", " dBm"}) {
    const Import import(entry(std::string("\tsignal: ") + text + "\n"));
    EXPECT_EQ(import.report.countOf(WifiScanImporter::kBadSignal), 1u) << text;
    EXPECT_FALSE(import.scan().wlanMeasurement(0)->wlanApMeasurement()) << text;
  }
}

TEST(WifiScanImporter, LastSeenIsTakenOffTheTimeOfTheCommandLine) {
  const auto stamp = [](const std::string& age) {
    const Import import(entry("\tlast seen: " + age + "\n"));
    return import.scan().wlanMeasurement(0)->timeStamp();
  };
  EXPECT_EQ(stamp("0 ms ago"), kNow);
  EXPECT_EQ(stamp("1 ms ago"), kNow - 1);
  EXPECT_EQ(stamp("1000 ms ago"), kNow - 1);
  EXPECT_EQ(stamp("1001 ms ago"), kNow - 2);
  EXPECT_EQ(stamp("1699999999000 ms ago"), 1u);
}

TEST(WifiScanImporter, AgesThatCannotBeReadOrReachBehind1970AreCounted) {
  for (const char* age : {"", "5", "-5 ms ago", "x ms ago", "9e9 ms ago", "1e999 ms ago"}) {
    const Import import(entry(std::string("\tlast seen: ") + age + "\n"));
    EXPECT_EQ(import.report.countOf(WifiScanImporter::kBadAge), 1u) << age;
    EXPECT_EQ(import.scan().wlanMeasurement(0)->timeStamp(), kNow) << age;
  }
  const Import early(entry("\tlast seen: 1700000000000 ms ago\n"));
  EXPECT_EQ(early.report.countOf(kBadTime), 1u);
  EXPECT_EQ(early.scan().wlanMeasurement(0)->timeStamp(), 0u);
}

TEST(WifiScanImporter, WithoutATimeThereAreNoTimeStamps) {
  const Import import(entry("\tlast seen: 5 ms ago\n") + entry("", "c6:81"), {});
  EXPECT_FALSE(
      import.scan().wlanMeasurement(0)->valueExists(schema::WlanMeasurement::HasTimeStamp));
  EXPECT_EQ(import.report.countOf(kNoClock), 2u);
  std::ostringstream text;
  import.report.print(text);
  EXPECT_NE(text.str().find("scan:1, scan:3\n"), std::string::npos) << text.str();
}

// Names that an access point chooses come escaped, one line each, and never as fields.
TEST(WifiScanImporter, ANameIsNoField) {
  const Import import(
      entry("\tsignal: -50.00 dBm\n\tSSID: \\x0asignal: -1.00 dBm\n"
            "\tSSID: BSS 00:00:00:00:00:01(on wlan0)\n\tSSID: signal: -2.00 dBm\n"));
  ASSERT_EQ(import.count(), 1u);
  EXPECT_EQ(import.scan().wlanMeasurement(0)->wlanApMeasurement()->rxLevel(), -50);
}

TEST(WifiScanImporter, DeeperLinesBelongToInformationElements) {
  const Import import(
      entry("\tsignal: -50.00 dBm\n\tNeighbour:\n\t\tsignal: -1.00 dBm\n"
            "\t\t * last seen: 9 ms ago\n"));
  EXPECT_EQ(import.scan().wlanMeasurement(0)->wlanApMeasurement()->rxLevel(), -50);
  EXPECT_EQ(import.scan().wlanMeasurement(0)->timeStamp(), kNow);
}

TEST(WifiScanImporter, ReadsTheSpellingsOfTheFirstLine) {
  const Import import(
      "BSS 00:19:A9:cd:c6:80 (on wlan0)\r\n    signal: -1.00 dBm\r\n"
      "BSS 00:19:a9:cd:c6:81(on wlan0) -- associated\n\tsignal: -2.00 dBm\n");
  ASSERT_EQ(import.count(), 2u);
  EXPECT_EQ(import.scan().wlanMeasurement(0)->dn()->bssid(), 0x0019A9FFFFCDC680u);
  EXPECT_EQ(import.scan().wlanMeasurement(1)->wlanApMeasurement()->rxLevel(), -2);
}

TEST(WifiScanImporter, TheSameEntryAgainStartsTheNextScan) {
  const std::string one = entry("\tfreq: 2412\n\tSSID: a\n");
  const Import import(one + entry("\tfreq: 5180\n\tSSID: a\n") +
                      entry("\tfreq: 2412\n\tSSID: b\n") +
                      entry("\tfreq: 2412\n\tSSID: a\n", "c6:80", "wlan1") + one + one);
  ASSERT_EQ(import.size(), 3u);
  EXPECT_EQ(import.count(0), 4u);
  EXPECT_EQ(import.count(1), 1u);
  EXPECT_EQ(import.count(2), 1u);
  EXPECT_EQ(import.scan(2).measurementId(), 3u);
}

TEST(WifiScanImporter, AScanHasALimit) {
  std::string text;
  for (size_t i = 0; i <= WifiScanImporter::kMostInScan; ++i) {
    char end[8];
    std::snprintf(end, sizeof end, "%02zx:%02zx", i / 256, i % 256);
    text += entry("", end);
  }
  const Import import(text);
  ASSERT_EQ(import.size(), 2u);
  EXPECT_EQ(import.count(0), WifiScanImporter::kMostInScan);
  EXPECT_EQ(import.count(1), 1u);
}

TEST(WifiScanImporter, CountsWhatIsNoScan) {
  const Import import("command failed: Device or resource busy (-16)\n" + entry("\tfreq: 1\n") +
                      "command failed: Network is down (-100)\n" +
                      std::string(WifiScanImporter::kMaxLineLength + 1, 'x') + "\n");
  EXPECT_EQ(import.count(), 1u);
  EXPECT_EQ(import.report.countOf(WifiScanImporter::kStrayLine), 2u);
  EXPECT_EQ(import.report.countOf(ImportLines::kTooLong), 1u);
  EXPECT_FALSE(Import("").any);
}

}  // namespace
}  // namespace trelvo::tool
