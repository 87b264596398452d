#include "tools/trelvo/NmeaReader.h"

#include <ostream>
#include <string>
#include <vector>

#include "tests/tools/ImportInput.h"

namespace trelvo::tool {
namespace {

struct Outcome {
  std::vector<std::string> bodies;
  std::vector<unsigned long long> lines;
  ImportReport report;
};

Outcome readAll(const std::string& text) {
  Outcome outcome;
  ProducedStream stream(text);
  ImportSource source(stream, "log");
  NmeaReader reader(source, outcome.report);
  NmeaSentence found;
  while (reader.next(found)) {
    outcome.bodies.push_back(found.text);
    outcome.lines.push_back(found.line);
  }
  return outcome;
}

using Bodies = std::vector<std::string>;

TEST(NmeaReader, GivesSentencesWithARightChecksum) {
  const Outcome outcome = readAll("$GPVTG,,T,,M,,N,,K,N*2C\r\n$GPBOD,,T,,M,,*47\r\n");
  EXPECT_EQ(outcome.bodies, (Bodies{"GPVTG,,T,,M,,N,,K,N", "GPBOD,,T,,M,,"}));
  EXPECT_TRUE(outcome.report.isEmpty());
}

TEST(NmeaReader, SplitsFieldsAtCommas) {
  ProducedStream stream(sentence("GPGLL,4808.9993,N,,"));
  ImportSource source(stream, "log");
  ImportReport report;
  NmeaReader reader(source, report);
  NmeaSentence found;
  ASSERT_TRUE(reader.next(found));
  ASSERT_EQ(found.fields.size(), 5u);
  EXPECT_EQ(found.field(0), "GPGLL");
  EXPECT_EQ(found.field(1), "4808.9993");
  EXPECT_EQ(found.field(3), "");
  EXPECT_EQ(found.field(5), "");
}

TEST(NmeaReader, TellsTheTypeOfAnyTalker) {
  NmeaSentence found;
  for (const char* address : {"GPGGA", "GNGGA", "PQGGA"}) {
    found.fields = {address};
    EXPECT_EQ(found.type(), "GGA");
  }
  found.fields = {"PMTK001"};
  EXPECT_EQ(found.type(), "PMTK001");
}

TEST(NmeaReader, TakesLowerCaseChecksumDigits) {
  EXPECT_EQ(readAll("$GPVTG,,T,,M,,N,,K,N*2c").bodies.size(), 1u);
}

TEST(NmeaReader, RefusesAWrongChecksumAndTellsWhere) {
  const Outcome outcome = readAll("# head\n$GPVTG,,T,,M,,N,,K,N*2D\r\n");
  EXPECT_TRUE(outcome.bodies.empty());
  EXPECT_EQ(outcome.report.countOf(NmeaReader::kWrongChecksum), 1u);
  std::ostringstream text;
  outcome.report.print(text);
  EXPECT_EQ(text.str(), "trelvo: 1 x sentence with a wrong checksum: log:2\n");
}

TEST(NmeaReader, RefusesASentenceWithoutAChecksum) {
  const Outcome outcome = readAll("$GPVTG,,T,,M,,N,,K,N\r\n$GPVTG,,T,,M,,N,,K,N*2\r\n");
  EXPECT_TRUE(outcome.bodies.empty());
  EXPECT_EQ(outcome.report.countOf(NmeaReader::kBrokenOff), 2u);
}

TEST(NmeaReader, FindsTheSentenceInsideABrokenOffOne) {
  const Outcome outcome = readAll("$GPGSA,A,1,,$GPVTG,,T,,M,,N,,K,N*2C\r\n");
  EXPECT_EQ(outcome.bodies, Bodies{"GPVTG,,T,,M,,N,,K,N"});
  EXPECT_EQ(outcome.report.countOf(NmeaReader::kBrokenOff), 1u);
}

TEST(NmeaReader, SeparatesSentencesThatRunTogether) {
  const Outcome outcome = readAll("$GPVTG,,T,,M,,N,,K,N*2C$GPBOD,,T,,M,,*47");
  EXPECT_EQ(outcome.bodies.size(), 2u);
  EXPECT_TRUE(outcome.report.isEmpty());
}

TEST(NmeaReader, ASentenceEndsAtNulBytesAndTheNextIsRead) {
  std::string text = "$GPRMC,000346.03,A,4808";
  text += std::string(12, '\0') + "    \r\n$GPVTG,,T,,M,,N,,K,N*2C\r\n";
  const Outcome outcome = readAll(text);
  EXPECT_EQ(outcome.bodies.size(), 1u);
  EXPECT_EQ(outcome.lines, std::vector<unsigned long long>{2});
  EXPECT_EQ(outcome.report.countOf(NmeaReader::kBrokenOff), 1u);
  EXPECT_EQ(outcome.report.countOf(NmeaReader::kStrayText), 0u);
}

TEST(NmeaReader, CountsStrayTextOnceALine) {
  const Outcome outcome = readAll("abc def\n\r\n ghi $GPVTG,,T,,M,,N,,K,N*2C jkl\n");
  EXPECT_EQ(outcome.bodies.size(), 1u);
  EXPECT_EQ(outcome.report.countOf(NmeaReader::kStrayText), 2u);
}

TEST(NmeaReader, LeavesCommentsAlone) {
  const Outcome outcome =
      readAll("# $GPVTG,,T,,M,,N,,K,N*2C\n#\n$GPVTG,,T,,M,,N,,K,N*2C # no comment");
  EXPECT_EQ(outcome.bodies.size(), 1u);
  EXPECT_EQ(outcome.report.countOf(NmeaReader::kStrayText), 1u);
}

TEST(NmeaReader, DropsTheDelayCookieOnceItIsNamed) {
  const std::string cut = "$GP|VTG,,T,,M,,|N,,K,N*2|C\r\n";
  EXPECT_TRUE(readAll(cut).bodies.empty());
  EXPECT_EQ(readAll("# Delay-Cookie: | 0.01\n" + cut).bodies, Bodies{"GPVTG,,T,,M,,N,,K,N"});
}

TEST(NmeaReader, GivesUpASentenceThatDoesNotEnd) {
  const Outcome outcome =
      readAll("$GP" + std::string(5000000, 'A') + "\r\n$GPVTG,,T,,M,,N,,K,N*2C\r\n");
  EXPECT_EQ(outcome.bodies.size(), 1u);
  EXPECT_EQ(outcome.report.countOf(NmeaReader::kTooLong), 1u);
  EXPECT_EQ(outcome.report.countOf(NmeaReader::kStrayText), 0u);
}

TEST(NmeaReader, ReadsTheLongestSentence) {
  const std::string body = "GPTXT," + std::string(NmeaReader::kMaxLength - 6, 'x');
  EXPECT_EQ(readAll(sentence(body)).bodies, Bodies{body});
  EXPECT_TRUE(readAll(sentence(body + "x")).bodies.empty());
}

TEST(NmeaReader, StandsEveryCutOfALog) {
  const std::string log = sentence("GPVTG,,T,,M,,N,,K,N") + sentence("GPBOD,,T,,M,,");
  for (size_t length = 0; length < log.size(); ++length) {
    EXPECT_LE(readAll(log.substr(0, length)).bodies.size(), 2u) << length;
  }
}

TEST(NmeaReader, StandsAllBytes) {
  std::string text;
  for (int i = 0; i < 4096; ++i) {
    text.push_back(static_cast<char>(i * 167 >> 3));
  }
  EXPECT_TRUE(readAll(text).bodies.empty());
}

// Counted once more by a few lines of Python that split the log at every dollar sign.
TEST(NmeaReader, FindsEveryGoodSentenceOfAColdStart) {
  const Outcome outcome = readAll(readExample("nmea/gp-320fw-2019-04-07-coldboot.log"));
  EXPECT_EQ(outcome.bodies.size(), 96u);
  EXPECT_EQ(outcome.report.countOf(NmeaReader::kWrongChecksum), 33u);
  EXPECT_EQ(outcome.report.countOf(NmeaReader::kBrokenOff), 8u);
}

struct LogCount {
  const char* name;
  size_t good;
  unsigned long long bad;
};

void PrintTo(const LogCount& log, std::ostream* out) { *out << log.name; }

class NmeaReaderOnLogs : public ::testing::TestWithParam<LogCount> {};

TEST_P(NmeaReaderOnLogs, FindsWhatIsThere) {
  const LogCount& expected = GetParam();
  const Outcome outcome = readAll(readExample(std::string("nmea/") + expected.name + ".log"));
  EXPECT_EQ(outcome.bodies.size(), expected.good);
  EXPECT_EQ(outcome.report.countOf(NmeaReader::kWrongChecksum) +
                outcome.report.countOf(NmeaReader::kBrokenOff),
            expected.bad);
}

INSTANTIATE_TEST_SUITE_P(
    All, NmeaReaderOnLogs,
    ::testing::Values(LogCount{"quectel-eg25-g", 861, 0}, LogCount{"ublox-neo-m9n-nmea", 1403, 0},
                      LogCount{"ublox-zed-f9p-nmea", 1015, 0}, LogCount{"quectel-L70", 115, 0},
                      LogCount{"isync", 134, 1}, LogCount{"bt451", 144, 0},
                      LogCount{"nl2008u", 127, 0}, LogCount{"haicom-305N", 325, 0},
                      LogCount{"telit-he910", 1558, 0}, LogCount{"telit-pls83-w", 225, 0},
                      LogCount{"sirfstarv-nmea", 367, 0}, LogCount{"garmin-geko201", 212, 1},
                      LogCount{"nmea-fuzzy-cases", 28, 0}, LogCount{"tcp-torture", 7, 0}));

TEST(NmeaReader, KnowsASentenceWhenItSeesOne) {
  EXPECT_TRUE(NmeaReader::looksLikeNmea("noise $ $GPGGA,1"));
  EXPECT_FALSE(NmeaReader::looksLikeNmea("$GPGGA"));
  EXPECT_FALSE(NmeaReader::looksLikeNmea("$12.50, please"));
  EXPECT_FALSE(NmeaReader::looksLikeNmea(""));
}

}  // namespace
}  // namespace trelvo::tool
