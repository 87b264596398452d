#include "tools/trelvo/RadioLevels.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace trelvo::tool {
namespace {

struct Mapping {
  LevelScale scale;
  double level;
  int code;
};

// Rows of the documents' own mapping tables: just below and at the borders of codes.
constexpr Mapping kMappings[] = {
    {LevelScale::GeranRxLev, -110.001, 0},  {LevelScale::GeranRxLev, -110, 1},
    {LevelScale::GeranRxLev, -109, 2},      {LevelScale::GeranRxLev, -70, 41},
    {LevelScale::GeranRxLev, -48.5, 62},    {LevelScale::GeranRxLev, -48, 63},
    {LevelScale::UtraFddRscp, -120.5, -5},  {LevelScale::UtraFddRscp, -120, -4},
    {LevelScale::UtraFddRscp, -116.5, -1},  {LevelScale::UtraFddRscp, -116, 0},
    {LevelScale::UtraFddRscp, -115, 1},     {LevelScale::UtraFddRscp, -25.5, 90},
    {LevelScale::UtraFddRscp, -25, 91},     {LevelScale::UtraFddEcNo, -24.5, 0},
    {LevelScale::UtraFddEcNo, -24, 1},      {LevelScale::UtraFddEcNo, -23.5, 2},
    {LevelScale::UtraFddEcNo, -0.5, 48},    {LevelScale::UtraFddEcNo, 0, 49},
    {LevelScale::UtraCarrierRssi, -101, 0}, {LevelScale::UtraCarrierRssi, -100, 1},
    {LevelScale::UtraCarrierRssi, -26, 75}, {LevelScale::UtraCarrierRssi, -25, 76},
    {LevelScale::UtraTddRscp, -115.5, 0},   {LevelScale::UtraTddRscp, -115, 1},
    {LevelScale::UtraTddRscp, -26, 90},     {LevelScale::UtraTddRscp, -25, 91},
    {LevelScale::EUtraRsrp, -140.5, 0},     {LevelScale::EUtraRsrp, -140, 1},
    {LevelScale::EUtraRsrp, -139, 2},       {LevelScale::EUtraRsrp, -45, 96},
    {LevelScale::EUtraRsrp, -44, 97},       {LevelScale::EUtraRsrq, -20, 0},
    {LevelScale::EUtraRsrq, -19.5, 1},      {LevelScale::EUtraRsrq, -19, 2},
    {LevelScale::EUtraRsrq, -3.5, 33},      {LevelScale::EUtraRsrq, -3, 34},
};

TEST(RadioLevels, LevelsGiveTheCodesOfTheDocuments) {
  for (const Mapping& row : kMappings) {
    EXPECT_EQ(levelCode(row.scale, row.level), row.code)
        << levelScale(row.scale).name << " at " << row.level;
  }
}

TEST(RadioLevels, EndCodesTakeEverythingBeyondTheEnds) {
  for (const LevelScaleInfo& row : levelScales()) {
    EXPECT_EQ(levelCode(row.scale, -1e300), row.lowestCode) << row.name;
    EXPECT_EQ(levelCode(row.scale, 1e300), row.highestCode) << row.name;
  }
}

TEST(RadioLevels, NoNumberHasNoCode) {
  for (const LevelScaleInfo& row : levelScales()) {
    EXPECT_EQ(levelCode(row.scale, std::numeric_limits<double>::quiet_NaN()), std::nullopt);
    EXPECT_EQ(levelCode(row.scale, std::numeric_limits<double>::infinity()), std::nullopt);
    EXPECT_EQ(levelCode(row.scale, -std::numeric_limits<double>::infinity()), std::nullopt);
  }
}

TEST(RadioLevels, EveryCodesRangeLeadsBackToTheCode) {
  for (const LevelScaleInfo& row : levelScales()) {
    for (int code = row.lowestCode; code <= row.highestCode; ++code) {
      const LevelRange range = levelRange(row.scale, code);
      EXPECT_EQ(levelCode(row.scale, levelValue(row.scale, code).value()), code) << row.name;
      EXPECT_EQ(range.from.has_value(), code != row.lowestCode) << row.name << " " << code;
      EXPECT_EQ(range.below.has_value(), code != row.highestCode) << row.name << " " << code;
      if (range.from) {
        EXPECT_EQ(levelCode(row.scale, *range.from), code) << row.name;
      }
      if (range.below) {
        EXPECT_EQ(levelCode(row.scale, std::nextafter(*range.below, -1e9)), code) << row.name;
        EXPECT_EQ(levelCode(row.scale, *range.below), code + 1) << row.name;
      }
    }
  }
}

TEST(RadioLevels, CodesOutsideTheScaleHaveNoLevel) {
  for (const LevelScaleInfo& row : levelScales()) {
    for (const int code : {row.lowestCode - 1, row.highestCode + 1, -1000, 1000}) {
      EXPECT_FALSE(levelRange(row.scale, code).exists()) << row.name << " " << code;
      EXPECT_EQ(levelValue(row.scale, code), std::nullopt) << row.name << " " << code;
    }
  }
}

TEST(RadioLevels, RangesReadAsText) {
  EXPECT_EQ(levelText(LevelScale::GeranRxLev, 0), "below -110 dBm");
  EXPECT_EQ(levelText(LevelScale::GeranRxLev, 47), "-64 to -63 dBm");
  EXPECT_EQ(levelText(LevelScale::GeranRxLev, 63), "-48 dBm or above");
  EXPECT_EQ(levelText(LevelScale::GeranRxLev, 64), "no code of TS 45.008");
  EXPECT_EQ(levelText(LevelScale::UtraFddEcNo, 49), "0 dB or above");
  EXPECT_EQ(levelText(LevelScale::EUtraRsrq, 1), "-19.5 to -19 dB");
  EXPECT_EQ(levelText(LevelScale::UtraFddRscp, -100), "no code of TS 25.133");
}

}  // namespace
}  // namespace trelvo::tool
