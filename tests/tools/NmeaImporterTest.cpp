#include "tools/trelvo/NmeaImporter.h"

#include <string>
#include <vector>

#include "tests/tools/ImportSupport.h"

namespace trelvo::tool {
namespace {

using schema::PositionEstimate;

struct Outcome {
  KeepingTarget target;
  ImportReport report;
  bool any = false;

  size_t size() const { return target.containers.size(); }
  gom::SharedPointer<PositionEstimate> fix(size_t index) const {
    return positionOf(*target.containers.at(index));
  }
};

void import(const std::string& text, Outcome& outcome, std::optional<NmeaDate> date = {}) {
  ProducedStream stream(text);
  ImportSource source(stream, "log");
  outcome.any = NmeaImporter(source, outcome.report, outcome.target, date).run();
}

// 2020-03-18 13:28:20 in Unix seconds.
constexpr unsigned int kStart = 1584538100;

std::string gga(const std::string& time, const std::string& rest) {
  return sentence("GPGGA," + time + "," + rest);
}

std::string goodGga(const std::string& time) {
  return gga(time, "4130.0,N,09330.0,W,1,08,1.0,278.0,M,-31.5,M,,");
}

std::string goodRmc(const std::string& time, const std::string& date = "180320") {
  return sentence("GPRMC," + time + ",A,4130.0,N,09330.0,W,10.0,92.0," + date + ",,,A");
}

TEST(NmeaImporter, OneEpochBecomesOneContainerWithOneFix) {
  Outcome outcome;
  import(goodGga("132820.00") + goodRmc("132820.00"), outcome);
  EXPECT_TRUE(outcome.any);
  ASSERT_EQ(outcome.size(), 1u);
  const auto& container = *outcome.target.containers[0];
  EXPECT_EQ(container.measurementId(), 1u);
  EXPECT_EQ(container.gnssMeasurementCollection()->count(), 1u);
  const auto fix = outcome.fix(0);
  EXPECT_EQ(fix->timeStamp(), kStart);
  EXPECT_NEAR(fix->latitude(), 41.5, 5e-8);
  EXPECT_NEAR(fix->longitude(), -93.5, 1e-7);
  EXPECT_EQ(fix->altitude(), 246.5);
  EXPECT_DOUBLE_EQ(fix->speed(), 10.0 * 1852 / 3600);
  EXPECT_EQ(fix->course(), 92.0);
  EXPECT_FALSE(fix->valueExists(PositionEstimate::HasMajorAxis));
  EXPECT_FALSE(fix->valueExists(PositionEstimate::HasHorizontalCepUncertainty));
}

TEST(NmeaImporter, NumbersContainersFrom1) {
  Outcome outcome;
  import(goodRmc("132820") + goodRmc("132821") + goodRmc("132822"), outcome);
  ASSERT_EQ(outcome.size(), 3u);
  for (unsigned int i = 0; i < 3; ++i) {
    EXPECT_EQ(outcome.target.containers[i]->measurementId(), i + 1);
    EXPECT_EQ(outcome.fix(i)->timeStamp(), kStart + i);
  }
}

TEST(NmeaImporter, SeveralTalkersOfOneTimeAreOneEpoch) {
  Outcome outcome;
  import(sentence("GPGGA,132820.0,4130.0,N,09330.0,W,1,08,1.0,278.0,M,-31.5,M,,") +
             sentence("GAGGA,132820.00,4130.1,N,09330.1,W,1,02,1.0,279.0,M,-31.5,M,,") +
             sentence("GNRMC,132820,A,4130.2,N,09330.2,W,1.0,2.0,180320,,,A"),
         outcome);
  ASSERT_EQ(outcome.size(), 1u);
  EXPECT_NEAR(outcome.fix(0)->latitude(), 41.5, 5e-8);
  EXPECT_EQ(outcome.fix(0)->altitude(), 246.5);
}

TEST(NmeaImporter, AFractionOfASecondMakesTwoEpochs) {
  Outcome outcome;
  import(goodRmc("132820.00") + goodRmc("132820.50"), outcome);
  ASSERT_EQ(outcome.size(), 2u);
  EXPECT_EQ(outcome.fix(0)->timeStamp(), kStart);
  EXPECT_EQ(outcome.fix(1)->timeStamp(), kStart);
}

TEST(NmeaImporter, ALateSentenceFindsItsEpoch) {
  Outcome outcome;
  import(goodRmc("132820") + goodRmc("132821") + sentence("GPGST,132820,1,20,10,45,8,9,30"),
         outcome);
  ASSERT_EQ(outcome.size(), 2u);
  EXPECT_EQ(outcome.fix(0)->majorAxis(), 20.0);
  EXPECT_FALSE(outcome.fix(1)->valueExists(PositionEstimate::HasMajorAxis));
}

TEST(NmeaImporter, AQualityAbove0OrStatusAMakesAFix) {
  Outcome outcome;
  import(gga("132820", "4130.0,N,09330.0,W,0,,,,,,,,") + goodRmc("132821") +
             gga("132822", "4130.0,N,09330.0,W,6,,,,,,,,") +
             sentence("GPRMC,132823,V,4130.0,N,09330.0,W,1.0,2.0,180320,,,N"),
         outcome);
  EXPECT_EQ(outcome.size(), 2u);
  EXPECT_EQ(outcome.report.countOf(NmeaImporter::kNoFix), 2u);
}

TEST(NmeaImporter, ALogWithoutAFixIsReadAndEmpty) {
  Outcome outcome;
  import(sentence("GPRMC,,V,,,,,,,,,,N") + sentence("GPGGA,,,,,,0,,,,,,,,"), outcome);
  EXPECT_TRUE(outcome.any);
  EXPECT_EQ(outcome.size(), 0u);
}

TEST(NmeaImporter, NothingButGarbageIsNothing) {
  Outcome outcome;
  import("hello\n$GPGGA,1*00\n", outcome);
  EXPECT_FALSE(outcome.any);
}

TEST(NmeaImporter, GstGivesTheEllipseAndTheHeightError) {
  Outcome outcome;
  import(goodRmc("132820") + sentence("GPGST,132820,004.0,008.7,004.4,132.5,006.8,007.2,14.25"),
         outcome);
  const auto fix = outcome.fix(0);
  EXPECT_EQ(fix->majorAxis(), 9.0);
  EXPECT_EQ(fix->minorAxis(), 4.0);
  EXPECT_NEAR(fix->angle(), 132.5, 1e-5);
  EXPECT_EQ(fix->altitudeUncertainty(), 14.25);
  EXPECT_TRUE(outcome.report.isNotStored("GST deviations of latitude and longitude"));
}

TEST(NmeaImporter, AxesBelowOneMetreAreStoredAs1AndCounted) {
  Outcome outcome;
  import(goodRmc("132820") + sentence("GPGST,132820,1,0.95,0.012,0,,,"), outcome);
  EXPECT_EQ(outcome.fix(0)->majorAxis(), 1.0);
  EXPECT_EQ(outcome.fix(0)->minorAxis(), 1.0);
  EXPECT_EQ(outcome.report.countOf(kSmallAxis), 2u);
}

TEST(NmeaImporter, OrientationsFoldIntoTheHalfCircle) {
  for (const auto& [given, stored] :
       {std::pair("180.0", 0.0), std::pair("190.5", 10.5), std::pair("359.5", 179.5),
        std::pair("-10", 170.0), std::pair("179.9999999", 0.0)}) {
    Outcome outcome;
    import(goodRmc("132820") + sentence(std::string("GPGST,132820,1,20,10,") + given + ",,,"),
           outcome);
    EXPECT_NEAR(outcome.fix(0)->angle(), stored, 2e-5) << given;
  }
}

TEST(NmeaImporter, CoursesPastTheHalfCircleBecomeNegative) {
  for (const auto& [given, stored] :
       {std::pair("180.0", -180.0), std::pair("221.25", -138.75), std::pair("359.9", -0.1),
        std::pair("360.0", 0.0), std::pair("179.9", 179.9)}) {
    Outcome outcome;
    import(sentence(std::string("GPRMC,132820,A,4130.0,N,09330.0,W,1.0,") + given + ",180320,,,A"),
           outcome);
    EXPECT_NEAR(outcome.fix(0)->course(), stored, 1e-9) << given;
  }
}

TEST(NmeaImporter, TheDateLineIsAtMinus180) {
  Outcome outcome;
  import(sentence("GPRMC,132820,A,9000.0,S,18000.0,E,1.0,2.0,180320,,,A"), outcome);
  EXPECT_EQ(outcome.fix(0)->longitude(), -180.0);
  EXPECT_EQ(outcome.fix(0)->latitude(), -90.0);
}

TEST(NmeaImporter, AnAltitudeWithoutSeparationIsLeftOut) {
  Outcome outcome;
  import(gga("132820", "4130.0,N,09330.0,W,1,08,1.0,278.0,M,,,,") + goodRmc("132820"), outcome);
  EXPECT_FALSE(outcome.fix(0)->valueExists(PositionEstimate::HasAltitude));
  EXPECT_EQ(outcome.report.countOf(kNoSeparation), 1u);
}

TEST(NmeaImporter, AnAltitudeOutOfRangeIsLeftOut) {
  Outcome outcome;
  import(gga("132820", "4130.0,N,09330.0,W,1,08,1.0,16400,M,-16.4,M,,") + goodRmc("132820") +
             gga("132821", "4130.0,N,09330.0,W,1,08,1.0,16400,M,-16.5,M,,"),
         outcome);
  ASSERT_EQ(outcome.size(), 2u);
  EXPECT_FALSE(outcome.fix(0)->valueExists(PositionEstimate::HasAltitude));
  EXPECT_EQ(outcome.fix(1)->altitude(), 16383.5);
  EXPECT_EQ(outcome.report.countOf(kBadAltitude), 1u);
}

TEST(NmeaImporter, AHeldAltitudeIsStoredAndCounted) {
  Outcome outcome;
  import(
      goodGga("132820") + sentence("GPGSA,A,2,05,12,30,,,,,,,,,,17.0,17.0,0.0") + goodRmc("132820"),
      outcome);
  EXPECT_EQ(outcome.fix(0)->altitude(), 246.5);
  EXPECT_EQ(outcome.report.countOf(kHeldAltitude), 1u);
}

TEST(NmeaImporter, VtgGivesMotionWhereRmcHasNone) {
  const std::string bare = sentence("GPRMC,132820,A,4130.0,N,09330.0,W,,,180320,,,A");
  Outcome knots;
  import(bare + sentence("GPVTG,200.0,T,,M,2.0,N,3.7,K,A"), knots);
  EXPECT_DOUBLE_EQ(knots.fix(0)->speed(), 2.0 * 1852 / 3600);
  EXPECT_EQ(knots.fix(0)->course(), -160.0);
  Outcome kilometres;
  import(bare + sentence("GPVTG,,T,,M,,N,3.6,K,A"), kilometres);
  EXPECT_DOUBLE_EQ(kilometres.fix(0)->speed(), 1.0);
  EXPECT_FALSE(kilometres.fix(0)->valueExists(PositionEstimate::HasCourse));
  Outcome nothing;
  import(bare + sentence("GPVTG,200.0,T,,M,2.0,N,3.7,K,N"), nothing);
  EXPECT_FALSE(nothing.fix(0)->valueExists(PositionEstimate::HasSpeed));
}

TEST(NmeaImporter, TheMotionOfAVoidRmcIsNotUsed) {
  Outcome outcome;
  import(sentence("GPRMC,132820,V,4130.0,N,09330.0,W,10.8,90.0,180320,,,S") +
             gga("132820", "4130.0,N,09330.0,W,8,08,1.0,278.0,M,-31.5,M,,"),
         outcome);
  ASSERT_EQ(outcome.size(), 1u);
  EXPECT_FALSE(outcome.fix(0)->valueExists(PositionEstimate::HasSpeed));
  EXPECT_EQ(outcome.fix(0)->timeStamp(), kStart);
  EXPECT_EQ(outcome.report.countOf(kSimulated), 1u);
}

TEST(NmeaImporter, BadFieldsAreLeftOutAndCounted) {
  Outcome outcome;
  import(sentence("GPRMC,132820,A,4130.0,N,09330.0,W,fast,2.0,180320,,,A") +
             sentence("GPRMC,132821,A,4130.0,N,09330.0,W,-1.0,2.0,180320,,,A"),
         outcome);
  ASSERT_EQ(outcome.size(), 2u);
  EXPECT_FALSE(outcome.fix(0)->valueExists(PositionEstimate::HasSpeed));
  EXPECT_FALSE(outcome.fix(1)->valueExists(PositionEstimate::HasSpeed));
  EXPECT_EQ(outcome.report.countOf(kBadNmeaField), 1u);
  EXPECT_EQ(outcome.report.countOf(kBadSpeed), 1u);
}

TEST(NmeaImporter, ABadPositionInGgaLeavesThatOfRmc) {
  Outcome outcome;
  import(gga("132820", "4199.0,N,09330.0,W,1,08,1.0,278.0,M,-31.5,M,,") + goodRmc("132820"),
         outcome);
  ASSERT_EQ(outcome.size(), 1u);
  EXPECT_NEAR(outcome.fix(0)->latitude(), 41.5, 5e-8);
}

TEST(NmeaImporter, AFixWithoutAUsablePositionIsCounted) {
  Outcome outcome;
  import(sentence("GPRMC,132820,A,9130.0,N,09330.0,W,1.0,2.0,180320,,,A") +
             sentence("GPRMC,132821,A,,,,,1.0,2.0,180320,,,A"),
         outcome);
  EXPECT_EQ(outcome.size(), 0u);
  EXPECT_EQ(outcome.report.countOf(kNoPosition), 2u);
}

TEST(NmeaImporter, ZdaGivesTheDateWhereRmcHasNone) {
  Outcome outcome;
  import(goodGga("132820.50") + sentence("GPZDA,132820.50,18,03,2020,00,00"), outcome);
  EXPECT_EQ(outcome.fix(0)->timeStamp(), kStart);
}

TEST(NmeaImporter, TheDateOfAVoidEpochIsNotBelieved) {
  Outcome outcome;
  import(sentence("GPRMC,132819,V,,,,,,,161206,,,N") + goodGga("132820") + goodRmc("132821"),
         outcome);
  ASSERT_EQ(outcome.size(), 2u);
  EXPECT_EQ(outcome.fix(0)->timeStamp(), kStart);
}

TEST(NmeaImporter, DatesOfARolledOverWeekNumberStay) {
  Outcome outcome;
  import(goodRmc("000425", "220899"), outcome);
  EXPECT_EQ(outcome.fix(0)->timeStamp(), 935280265u);
}

TEST(NmeaImporter, TheDayMovesOnAtMidnightWithoutANewDate) {
  Outcome outcome;
  import(goodRmc("235959") + goodGga("000000") + goodGga("000001"), outcome);
  ASSERT_EQ(outcome.size(), 3u);
  EXPECT_EQ(outcome.fix(1)->timeStamp(), outcome.fix(0)->timeStamp() + 1);
  EXPECT_EQ(outcome.fix(2)->timeStamp(), outcome.fix(0)->timeStamp() + 2);
}

TEST(NmeaImporter, AStepBackWithinTheDayStaysInIt) {
  Outcome outcome;
  import(goodRmc("132820") + goodGga("132720"), outcome);
  EXPECT_EQ(outcome.fix(1)->timeStamp(), kStart - 60);
}

TEST(NmeaImporter, FixesAheadOfTheFirstDateAreDatedBackwards) {
  Outcome outcome;
  import(goodGga("235958") + goodGga("235959") + goodGga("000000") + goodRmc("000001", "190320"),
         outcome);
  ASSERT_EQ(outcome.size(), 4u);
  for (size_t i = 1; i < 4; ++i) {
    EXPECT_EQ(outcome.fix(i)->timeStamp(), outcome.fix(0)->timeStamp() + i);
    EXPECT_EQ(outcome.target.containers[i]->measurementId(), i + 1);
  }
  EXPECT_EQ(outcome.fix(3)->timeStamp(), 1584576001u);
}

TEST(NmeaImporter, WithoutAnyDateFixesHaveNoTimeStampButAreStored) {
  Outcome outcome;
  import(goodGga("132820") + goodGga("132821"), outcome);
  ASSERT_EQ(outcome.size(), 2u);
  EXPECT_FALSE(outcome.fix(0)->valueExists(PositionEstimate::HasTimeStamp));
  EXPECT_NEAR(outcome.fix(0)->latitude(), 41.5, 5e-8);
  EXPECT_EQ(outcome.report.countOf(NmeaImporter::kNoDate), 2u);
}

TEST(NmeaImporter, TheOptionDatesALogWithoutDates) {
  Outcome outcome;
  import(goodGga("235959") + goodGga("000000"), outcome, NmeaDate{2020, 3, 18});
  ASSERT_EQ(outcome.size(), 2u);
  EXPECT_EQ(outcome.fix(0)->timeStamp(), 1584575999u);
  EXPECT_EQ(outcome.fix(1)->timeStamp(), 1584576000u);
  EXPECT_EQ(outcome.report.countOf(NmeaImporter::kAssumedDate), 2u);
}

TEST(NmeaImporter, ADateInTheLogWinsOverTheOption) {
  Outcome outcome;
  import(goodGga("132820") + goodRmc("132821"), outcome, NmeaDate{1999, 1, 1});
  EXPECT_EQ(outcome.fix(0)->timeStamp(), kStart);
  EXPECT_EQ(outcome.report.countOf(NmeaImporter::kAssumedDate), 0u);
}

std::string secondsOfDay(int from, int count, const std::string& rest) {
  std::string text;
  for (int i = from; i < from + count; ++i) {
    char time[16];
    std::snprintf(time, sizeof time, "%02d%02d%02d", i / 3600, i / 60 % 60, i % 60);
    text += gga(time, rest);
  }
  return text;
}

TEST(NmeaImporter, HoldsBackNoMoreThanItMay) {
  constexpr int kHeld = static_cast<int>(NmeaImporter::kMaxHeld);
  Outcome outcome;
  import(secondsOfDay(0, kHeld + 5, "4130.0,N,09330.0,W,1,08,1.0,,,,,,") + goodRmc("132820"),
         outcome);
  ASSERT_EQ(outcome.size(), static_cast<size_t>(kHeld) + 6);
  EXPECT_EQ(outcome.report.countOf(NmeaImporter::kNoDate), 5u);
  EXPECT_FALSE(outcome.fix(4)->valueExists(PositionEstimate::HasTimeStamp));
  EXPECT_EQ(outcome.fix(5)->timeStamp(), 1584489600u + 5);
}

TEST(NmeaImporter, FixesWithoutATimeOfDayAreStoredWithoutATimeStamp) {
  Outcome outcome;
  import(goodRmc("132820") + goodGga("") + goodRmc("") + goodGga("") + goodRmc(""), outcome);
  EXPECT_EQ(outcome.size(), 3u);
  EXPECT_EQ(outcome.report.countOf(NmeaImporter::kNoTime), 2u);
}

TEST(NmeaImporter, TimesThatDoNotExistAreCounted) {
  Outcome outcome;
  import(goodRmc("250000"), outcome);
  EXPECT_EQ(outcome.size(), 1u);
  EXPECT_EQ(outcome.report.countOf(kBadNmeaField), 1u);
}

TEST(NmeaImporter, AYearThat32BitsDoNotHoldLeavesTheTimeStampOut) {
  Outcome outcome;
  import(goodGga("132820") + sentence("GPZDA,132820,18,03,2120,00,00") + goodGga("132821") +
             sentence("GPZDA,132821,18,03,1969,00,00"),
         outcome);
  ASSERT_EQ(outcome.size(), 2u);
  EXPECT_FALSE(outcome.fix(0)->valueExists(PositionEstimate::HasTimeStamp));
  EXPECT_EQ(outcome.report.countOf(kBadTime), 2u);
}

std::string gns(const std::string& time, const std::string& rest,
                const std::string& talker = "GN") {
  return sentence(talker + "GNS," + time + "," + rest);
}

TEST(NmeaImporter, GnsAloneGivesPositionAndHeight) {
  Outcome outcome;
  import(gns("132820.00", "4130.0,N,09330.0,W,ANNN,14,1.3,250.8,50.0,,,V") +
             sentence("GPZDA,132820.00,18,03,2020,00,00"),
         outcome);
  ASSERT_EQ(outcome.size(), 1u);
  const auto fix = outcome.fix(0);
  EXPECT_EQ(fix->timeStamp(), kStart);
  EXPECT_NEAR(fix->latitude(), 41.5, 5e-8);
  EXPECT_NEAR(fix->longitude(), -93.5, 1e-7);
  EXPECT_NEAR(fix->altitude(), 300.8, 1e-4);
  EXPECT_TRUE(outcome.report.isNotStored("GNS number of satellites"));
  EXPECT_TRUE(outcome.report.isNotStored("GNS HDOP"));
  EXPECT_FALSE(outcome.report.isNotStored("GNS age and station of corrections"));
  EXPECT_FALSE(outcome.report.isNotStored("sentence GNS"));
}

TEST(NmeaImporter, OneConstellationWithAModeMakesAFix) {
  const auto fixes = [](const std::string& modes) {
    Outcome outcome;
    import(gns("132820", "4130.0,N,09330.0,W," + modes + ",14,1.3,250.8,50.0,,"), outcome);
    EXPECT_EQ(outcome.report.countOf(NmeaImporter::kNoFix), 1 - outcome.size()) << modes;
    return outcome.size();
  };
  for (const char* modes : {"A", "NA", "NNNNNA", "D", "E", "F", "M", "P", "R", "S"}) {
    EXPECT_EQ(fixes(modes), 1u) << modes;
  }
  for (const char* modes : {"", "N", "NN", "NNNNNN", "-", "V", "a"}) {
    EXPECT_EQ(fixes(modes), 0u) << modes;
  }
}

TEST(NmeaImporter, AGnsOfASimulatorIsCounted) {
  Outcome outcome;
  import(gns("132820", "4130.0,N,09330.0,W,NS,14,1.3,250.8,50.0,,"), outcome);
  EXPECT_EQ(outcome.size(), 1u);
  EXPECT_EQ(outcome.report.countOf(kSimulated), 1u);
}

TEST(NmeaImporter, GgaComesBeforeGnsAndGnsBeforeRmc) {
  const std::string other = "1000.0,N,02000.0,E,AA,14,1.3,1.0,2.0,,";
  for (const bool ggaFirst : {true, false}) {
    Outcome both;
    const std::string gga = goodGga("132820");
    import(ggaFirst ? gga + gns("132820", other) : gns("132820", other) + gga, both);
    ASSERT_EQ(both.size(), 1u);
    EXPECT_NEAR(both.fix(0)->latitude(), 41.5, 5e-8);
    EXPECT_EQ(both.fix(0)->altitude(), 246.5);
  }
  Outcome outcome;
  import(goodRmc("132820") + gns("132820", other), outcome);
  ASSERT_EQ(outcome.size(), 1u);
  EXPECT_NEAR(outcome.fix(0)->latitude(), 10.0, 5e-8);
  EXPECT_EQ(outcome.fix(0)->altitude(), 3.0);
}

TEST(NmeaImporter, AltitudeAndSeparationAreOfOneSentence) {
  Outcome outcome;
  import(gga("132820", "4130.0,N,09330.0,W,1,08,1.0,278.0,M,,M,,") +
             gns("132820", "4130.0,N,09330.0,W,AA,14,1.3,250.0,50.0,,"),
         outcome);
  EXPECT_EQ(outcome.fix(0)->altitude(), 300.0);
  Outcome none;
  import(gga("132820", "4130.0,N,09330.0,W,1,08,1.0,278.0,M,,M,,") +
             gns("132820", "4130.0,N,09330.0,W,AA,14,1.3,,50.0,,"),
         none);
  EXPECT_FALSE(none.fix(0)->valueExists(PositionEstimate::HasAltitude));
  EXPECT_EQ(none.report.countOf(kNoSeparation), 1u);
}

// As receivers with several constellations send it under differential corrections.
TEST(NmeaImporter, TheFirstTalkersGnsCarriesThePosition) {
  Outcome outcome;
  import(gns("122310.2", "3722.425671,N,12258.856215,W,DAAA,14,0.9,1005.543,6.5,,,V") +
             gns("122310.2", ",,,,,07,,,,5.2,23,V", "GP") + gns("122310.2", ",,,,,07,,,,,,V", "GL"),
         outcome);
  ASSERT_EQ(outcome.size(), 1u);
  EXPECT_NEAR(outcome.fix(0)->latitude(), 37.37376118, 5e-8);
  EXPECT_NEAR(outcome.fix(0)->altitude(), 1012.043, 1e-3);
  EXPECT_EQ(outcome.report.countOf(NmeaImporter::kNoFix), 0u);
  EXPECT_EQ(outcome.report.countOf(kBadNmeaField), 0u);
}

TEST(NmeaImporter, NamesSentencesItDoesNotRead) {
  Outcome outcome;
  import(sentence("GPGSV,1,1,00") + sentence("PMTK001,1") +
             sentence("GPGLL,4130.0,N,09330.0,W,132820,A,A"),
         outcome);
  EXPECT_TRUE(outcome.report.isNotStored("sentence GSV"));
  EXPECT_TRUE(outcome.report.isNotStored("sentence PMTK001"));
  EXPECT_TRUE(outcome.report.isNotStored("sentence GLL"));
  EXPECT_EQ(outcome.size(), 0u);
}

TEST(NmeaImporter, StandsEveryCutOfAnEpoch) {
  const std::string log = goodGga("132820") + sentence("GPVTG,200.0,T,,M,2.0,N,3.7,K,A") +
                          sentence("GPGST,132820,1,20,10,45,8,9,30") + goodRmc("132820");
  const size_t whole = goodGga("132820").size() - 2;
  for (size_t length = 0; length < log.size(); ++length) {
    Outcome outcome;
    import(log.substr(0, length), outcome);
    EXPECT_EQ(outcome.size(), length >= whole ? 1u : 0u) << length;
  }
}

}  // namespace
}  // namespace trelvo::tool
