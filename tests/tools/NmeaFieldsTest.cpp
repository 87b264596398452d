#include "tools/trelvo/NmeaFields.h"

#include <gtest/gtest.h>

namespace trelvo::tool {
namespace {

TEST(NmeaFields, NumbersAreWholeFieldsOrNothing) {
  EXPECT_EQ(nmeaNumber("-31.442"), -31.442);
  EXPECT_EQ(nmeaNumber("+7"), 7.0);
  EXPECT_EQ(nmeaNumber("00460.0"), 460.0);
  EXPECT_EQ(nmeaNumber(".5"), 0.5);
  for (const char* bad :
       {"", "-", "+", "+-1", "1x", "x1", "1 ", " 1", "1,2", "inf", "nan", "1e5", "0x10"}) {
    EXPECT_FALSE(nmeaNumber(bad)) << bad;
  }
}

TEST(NmeaFields, TimesCountMicrosecondsFromMidnight) {
  EXPECT_EQ(nmeaTimeOfDay("000000"), 0);
  EXPECT_EQ(nmeaTimeOfDay("132820.60"), 48500600000);
  EXPECT_EQ(nmeaTimeOfDay("132820.6"), nmeaTimeOfDay("132820.600000"));
  EXPECT_EQ(nmeaTimeOfDay("132820."), nmeaTimeOfDay("132820"));
  EXPECT_EQ(nmeaTimeOfDay("235960"), 86400000000);
  EXPECT_EQ(nmeaTimeOfDay("000000.1234567"), 123456);
  for (const char* bad : {"", "12345", "240000", "006000", "000061", "1234567", "12345a",
                          "123456,7", "123456.x", "-12345"}) {
    EXPECT_FALSE(nmeaTimeOfDay(bad)) << bad;
  }
}

TEST(NmeaFields, DatesOfTwoDigitYearsRunFrom1980To2079) {
  const auto kept = nmeaDate("220899");
  ASSERT_TRUE(kept);
  EXPECT_EQ(kept->year, 1999);
  EXPECT_EQ(kept->month, 8);
  EXPECT_EQ(kept->day, 22);
  EXPECT_EQ(nmeaDate("010180")->year, 1980);
  EXPECT_EQ(nmeaDate("311279")->year, 2079);
  for (const char* bad :
       {"", "12345", "1234567", "001200", "320100", "011300", "300220", "290223"}) {
    EXPECT_FALSE(nmeaDate(bad)) << bad;
  }
}

TEST(NmeaFields, DatesInThreeFieldsMustExist) {
  EXPECT_TRUE(nmeaDate("29", "02", "2024"));
  EXPECT_TRUE(nmeaDate("29", "02", "2000"));
  EXPECT_FALSE(nmeaDate("29", "02", "1900"));
  EXPECT_FALSE(nmeaDate("9", "02", "2024"));
  EXPECT_FALSE(nmeaDate("29", "02", "24"));
  EXPECT_FALSE(nmeaDate("", "", ""));
}

TEST(NmeaFields, DaysCountFrom1970) {
  EXPECT_EQ(daysFromEpoch({1970, 1, 1}), 0);
  EXPECT_EQ(daysFromEpoch({1969, 12, 31}), -1);
  EXPECT_EQ(daysFromEpoch({2000, 2, 29}), 11016);
  EXPECT_EQ(daysFromEpoch({2000, 3, 1}), 11017);
  EXPECT_EQ(daysFromEpoch({2020, 3, 18}), 18339);
  EXPECT_EQ(daysFromEpoch({2038, 1, 19}), 24855);
}

TEST(NmeaFields, AnglesAreDegreesAndMinutes) {
  EXPECT_NEAR(*nmeaAngle("4134.49821229", "N", 'N', 'S'), 41.574970205, 1e-9);
  EXPECT_NEAR(*nmeaAngle("09345.03351845", "W", 'E', 'W'), -93.750558641, 1e-9);
  EXPECT_EQ(*nmeaAngle("18000.0000", "E", 'E', 'W'), 180.0);
  EXPECT_EQ(*nmeaAngle("0030", "S", 'N', 'S'), -0.5);
}

TEST(NmeaFields, AnglesNeedASignLetterAndMinutesBelow60) {
  EXPECT_FALSE(nmeaAngle("4134.5", "", 'N', 'S'));
  EXPECT_FALSE(nmeaAngle("4134.5", "E", 'N', 'S'));
  EXPECT_FALSE(nmeaAngle("4134.5", "NN", 'N', 'S'));
  EXPECT_FALSE(nmeaAngle("4160.0", "N", 'N', 'S'));
  EXPECT_FALSE(nmeaAngle("-4134.5", "N", 'N', 'S'));
  EXPECT_FALSE(nmeaAngle("", "N", 'N', 'S'));
}

}  // namespace
}  // namespace trelvo::tool
