// Holds the import of every receiver log in examples/data against an independent answer: gpsd's own
// reading of the same log, NAME.tpv.json, and of the error ellipses, NAME.gst.json.
//
// gpsd reports after single sentences, so that one epoch has several answers, the first of them
// incomplete. Position and time must be those of some answer of the epoch; height, speed and course
// those of the epoch's last answer that has them.

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tests/tools/ImportSupport.h"
#include "tools/trelvo/NmeaImporter.h"

namespace trelvo::tool {
namespace {

using nlohmann::json;
using schema::PositionEstimate;

// One step of the compact form in degrees, and half a unit of the answers' last digit.
constexpr double kLatitudeStep = 90.0 / 2147483648.0 + 6e-10;
constexpr double kLongitudeStep = 180.0 / 2147483648.0 + 6e-10;
// Answers have four digits of height, three of speed, four of course; heights are single precision.
constexpr double kHeightStep = 1e-3;
constexpr double kSpeedStep = 6e-4;
constexpr double kCourseStep = 6e-5;

struct Log {
  const char* name;
  size_t fixes;             // epochs with a GGA of quality above 0 or an RMC of status A
  size_t unanswered = 0;    // fixes that gpsd does not report
  size_t unmatched = 0;     // answers without a fix
  bool separation = true;   // whether GGA gives the geoid separation
  double rounding = 0;      // degrees by which RMC may differ from GGA; gpsd takes the later one
  long long dateShift = 0;  // seconds that gpsd adds to the log's own date
};

void PrintTo(const Log& log, std::ostream* out) { *out << log.name; }

constexpr long long kWeekRollOver = 1024LL * 7 * 86400;
constexpr double kFourDigitsOfMinutes = 0.00005 / 60;

const Log kLogs[] = {
    {"quectel-eg25-g", 23},
    {"ublox-neo-m9n-nmea", 61},
    {"ublox-zed-f9p-nmea", 29},
    {"quectel-L70", 16},
    // gpsd reports when the burst of a second is over, and the log ends within one.
    {"isync", 12, 1},
    // The same, at the end and where two recordings were joined. The first recording starts with a
    // GLL alone, which gpsd reads and the import does not.
    {"bt451", 14, 2, 1},
    {"nl2008u", 9},
    {"haicom-305N", 68},
    // gpsd puts in the separation of its own geoid model; the import leaves the height out.
    {"telit-he910", 187, 0, 0, false},
    {"telit-pls83-w", 10},
    {"sirfstarv-nmea", 59},
    {"gp-320fw-2019-04-07-coldboot", 2},
    // A simulator that sends GGA of quality 8 beside void RMC: gpsd believes RMC from the second
    // epoch on.
    {"garmin-geko201", 18, 17},
    {"nmea-fuzzy-cases", 14},
    // The RMC has fewer digits than the GGA; gpsd takes 2007 for a rolled-over week number of 2027.
    {"tcp-torture", 1, 0, 0, true, kFourDigitsOfMinutes, kWeekRollOver},
};

struct Answer {
  std::string time;                 // as given, with its fraction
  std::optional<long long> second;  // Unix time; gpsd gives none before it knows the date
  double latitude;
  double longitude;
  std::optional<double> height;
  std::optional<double> speed;
  std::optional<double> course;
};

std::vector<json> readLines(const std::string& name) {
  std::istringstream text(readExample(name));
  std::vector<json> lines;
  for (std::string line; std::getline(text, line);) {
    lines.push_back(json::parse(line));
  }
  return lines;
}

std::optional<double> numberIn(const json& object, const char* key) {
  const auto found = object.find(key);
  return found == object.end() ? std::nullopt : std::optional<double>(found->get<double>());
}

std::optional<long long> secondIn(const json& object, long long shift) {
  const auto found = object.find("time");
  if (found == object.end()) {
    return std::nullopt;
  }
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
  EXPECT_EQ(std::sscanf(found->get<std::string>().c_str(), "%d-%d-%dT%d:%d:%d", &year, &month, &day,
                        &hour, &minute, &second),
            6);
  return daysFromEpoch({year, month, day}) * 86400 + hour * 3600 + minute * 60 + second - shift;
}

std::vector<Answer> answersOf(const Log& log) {
  std::vector<Answer> answers;
  for (const json& line : readLines(std::string("nmea/") + log.name + ".tpv.json")) {
    if (line.at("mode").get<int>() >= 2 && line.contains("lat")) {
      answers.push_back({line.value("time", ""), secondIn(line, log.dateShift), line.at("lat"),
                         line.at("lon"), numberIn(line, "altHAE"), numberIn(line, "speed"),
                         numberIn(line, "track")});
    }
  }
  return answers;
}

using Fix = gom::SharedPointer<PositionEstimate>;

std::vector<Fix> fixesIn(const Log& log, const std::string& text) {
  ProducedStream stream(text);
  ImportSource source(stream, log.name);
  ImportReport report;
  KeepingTarget target;
  EXPECT_TRUE(NmeaImporter(source, report, target, std::nullopt).run());
  std::vector<Fix> fixes;
  for (const auto& container : target.containers) {
    fixes.push_back(positionOf(*container));
  }
  return fixes;
}

std::vector<Fix> fixesOf(const Log& log) {
  return fixesIn(log, readExample(std::string("nmea/") + log.name + ".log"));
}

bool matches(const Log& log, const PositionEstimate& fix, const Answer& answer) {
  return std::abs(fix.latitude() - answer.latitude) <= kLatitudeStep + log.rounding &&
         std::abs(fix.longitude() - answer.longitude) <= kLongitudeStep + log.rounding &&
         (!answer.second || *answer.second == fix.timeStamp());
}

std::vector<Answer> answersTo(const Log& log, const PositionEstimate& fix,
                              const std::vector<Answer>& all) {
  std::vector<Answer> found;
  std::copy_if(all.begin(), all.end(), std::back_inserter(found),
               [&](const Answer& answer) { return matches(log, fix, answer); });
  return found;
}

// Fixes of a receiver at rest a tenth of a second apart match each other's answers too: each takes
// those of the first moment that no earlier fix has taken.
std::vector<Answer> ofOneMoment(const std::vector<Answer>& answers, std::set<std::string>& taken) {
  std::vector<Answer> found;
  std::string moment;
  for (const Answer& answer : answers) {
    if (moment.empty() && !answer.time.empty() && taken.insert(answer.time).second) {
      moment = answer.time;
    }
    if (answer.time == moment) {
      found.push_back(answer);
    }
  }
  return found;
}

std::optional<double> last(const std::vector<Answer>& answers,
                           std::optional<double> Answer::*field) {
  std::optional<double> value;
  for (const Answer& answer : answers) {
    value = answer.*field ? answer.*field : value;
  }
  return value;
}

double turn(double degrees) { return std::remainder(degrees, 360.0); }

class NmeaAnswers : public ::testing::TestWithParam<Log> {};

TEST_P(NmeaAnswers, AsManyFixesComeOutAsWentIn) {
  EXPECT_EQ(fixesOf(GetParam()).size(), GetParam().fixes);
}

TEST_P(NmeaAnswers, EveryFixIsWhereAndWhenItWasSeen) {
  const std::vector<Answer> answers = answersOf(GetParam());
  size_t unanswered = 0;
  for (const Fix& fix : fixesOf(GetParam())) {
    unanswered += answersTo(GetParam(), *fix, answers).empty() ? 1 : 0;
  }
  EXPECT_EQ(unanswered, GetParam().unanswered);
}

TEST_P(NmeaAnswers, EveryAnswerHasItsFix) {
  const std::vector<Fix> fixes = fixesOf(GetParam());
  size_t unmatched = 0;
  for (const Answer& answer : answersOf(GetParam())) {
    const bool matched = std::any_of(fixes.begin(), fixes.end(), [&](const Fix& fix) {
      return matches(GetParam(), *fix, answer);
    });
    unmatched += matched ? 0 : 1;
  }
  EXPECT_EQ(unmatched, GetParam().unmatched);
}

TEST_P(NmeaAnswers, HeightsSpeedsAndCoursesAgree) {
  const std::vector<Answer> answers = answersOf(GetParam());
  std::set<std::string> taken;
  size_t compared = 0;
  for (const Fix& fix : fixesOf(GetParam())) {
    const std::vector<Answer> own = ofOneMoment(answersTo(GetParam(), *fix, answers), taken);
    const auto height = last(own, &Answer::height);
    EXPECT_TRUE(own.empty() || fix->valueExists(PositionEstimate::HasAltitude) ==
                                   (GetParam().separation && height));
    if (height && GetParam().separation) {
      EXPECT_NEAR(fix->altitude(), *height, kHeightStep) << fix->timeStamp();
    }
    if (const auto speed = last(own, &Answer::speed)) {
      EXPECT_TRUE(fix->valueExists(PositionEstimate::HasSpeed));
      EXPECT_NEAR(fix->speed(), *speed, kSpeedStep) << fix->timeStamp();
    }
    if (const auto course = last(own, &Answer::course)) {
      EXPECT_TRUE(fix->valueExists(PositionEstimate::HasCourse));
      EXPECT_NEAR(turn(fix->course() - *course), 0.0, kCourseStep) << fix->timeStamp();
    }
    compared += own.empty() ? 0 : 1;
  }
  EXPECT_EQ(compared, GetParam().fixes - GetParam().unanswered);
}

std::string nameOf(const ::testing::TestParamInfo<Log>& info) {
  std::string name = info.param.name;
  std::replace_if(
      name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
  return name;
}

// A log as a receiver leaves it that sends GNS in the place of GGA.
std::string withoutGga(const std::string& log) {
  std::istringstream lines(log);
  std::string kept;
  for (std::string line; std::getline(lines, line);) {
    kept += line.find("GGA,") == std::string::npos ? line + "\n" : std::string();
  }
  return kept;
}

class NmeaGns : public ::testing::TestWithParam<std::string> {};

TEST_P(NmeaGns, TellsWhatGgaTells) {
  const Log log{GetParam().c_str(), 0};
  const std::vector<Fix> expected = fixesOf(log);
  const std::vector<Fix> found =
      fixesIn(log, withoutGga(readExample(std::string("nmea/") + log.name + ".log")));
  ASSERT_EQ(found.size(), expected.size());
  const std::vector<Answer> answers = answersOf(log);
  for (size_t i = 0; i < found.size(); ++i) {
    EXPECT_FALSE(answersTo(log, *found[i], answers).empty()) << i;
    EXPECT_EQ(*found[i], *expected[i]) << i;
  }
}

INSTANTIATE_TEST_SUITE_P(Logs, NmeaGns, ::testing::Values("telit-pls83-w", "quectel-eg25-g"),
                         [](const auto& log) {
                           std::string name = log.param;
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

INSTANTIATE_TEST_SUITE_P(Logs, NmeaAnswers, ::testing::ValuesIn(kLogs), nameOf);

class NmeaEllipses : public ::testing::TestWithParam<std::string> {};

// The compact form has axes in whole metres, from 1 up, and angles and heights in single precision.
TEST_P(NmeaEllipses, AreThoseOfTheAnswers) {
  const Log log{GetParam().c_str(), 0};
  std::map<long long, json> ellipses;
  for (const json& line : readLines(std::string("nmea/") + log.name + ".gst.json")) {
    ellipses[*secondIn(line, 0)] = line;
  }
  size_t compared = 0;
  for (const Fix& fix : fixesOf(log)) {
    const auto found = ellipses.find(fix->timeStamp());
    if (found == ellipses.end()) {
      continue;
    }
    ++compared;
    const auto expectAxis = [](double stored, std::optional<double> given) {
      EXPECT_LE(std::abs(stored - std::max(given.value_or(1), 1.0)), 0.5);
    };
    const auto major = numberIn(found->second, "major");
    EXPECT_EQ(fix->valueExists(PositionEstimate::HasMajorAxis), major.has_value());
    if (major) {
      expectAxis(fix->majorAxis(), major);
      expectAxis(fix->minorAxis(), numberIn(found->second, "minor"));
      EXPECT_NEAR(fix->angle(), std::fmod(*numberIn(found->second, "orient"), 180.0), 2e-5);
    }
    EXPECT_NEAR(fix->altitudeUncertainty(), *numberIn(found->second, "alt"), 1e-5);
  }
  EXPECT_EQ(compared, ellipses.size());
}

INSTANTIATE_TEST_SUITE_P(Logs, NmeaEllipses,
                         ::testing::Values("ublox-neo-m9n-nmea", "ublox-zed-f9p-nmea",
                                           "quectel-L70", "isync"),
                         [](const auto& log) {
                           std::string name = log.param;
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

}  // namespace
}  // namespace trelvo::tool
