#include <gtest/gtest.h>
#include <trelvo/schema/Utility.h>

#include <cmath>

#include "Ulps.h"

namespace trelvo::schema {
namespace {

#include "tests/reference/geodesy_reference.inc"

using test::kInfinity;
using test::kNaN;

constexpr unsigned int kLevelsToSweep[] = {6,  7,  8,  9,  10, 11, 12, 13, 14,
                                           15, 16, 17, 18, 19, 20, 21, 22, 23};

// pow and floor, as the formula is written; for levels where no shift leaves 64 bits.
unsigned long long idByPowAndFloor(double latitude, double longitude, unsigned int level) {
  const auto n = static_cast<double>(static_cast<unsigned int>(std::pow(2.0, level)));
  const double latIndex = std::floor((latitude + 90.0) / 180.0 * n);
  const double lonIndex = std::floor(n * ((longitude + 180.0) / 360.0));
  return (1ull << (2 * level)) | static_cast<unsigned long long>(latIndex) << level |
         static_cast<unsigned long long>(lonIndex);
}

// Tries every level, as the definition of a valid identifier reads.
unsigned int levelByTrial(unsigned long long id) {
  for (unsigned int level = 6; level <= 23; ++level) {
    if (id >> (2 * level) == 1) return level;
  }
  return 0;
}

TEST(Utility, TileIdAtTheSouthWestCornerIsTheBareMarker) {
  EXPECT_EQ(Utility::wlanRmTileId(-90.0, -180.0, 6), 4096u);
  EXPECT_EQ(Utility::wlanRmTileId(-90.0, -180.0, 23), 1ull << 46);
}

TEST(Utility, TileIdHoldsMarkerLatitudeAndLongitude) {
  // Row 32 of 64 starts at the equator, column 48 of 64 at 90 degrees east.
  EXPECT_EQ(Utility::wlanRmTileId(0.0, 90.0, 6), 0x1000u | 32u << 6 | 48u);
  EXPECT_EQ(Utility::wlanRmTileId(-90.0, 179.9, 6), 0x1000u | 63u);
  EXPECT_EQ(Utility::wlanRmTileId(89.9, -180.0, 6), 0x1000u | 63u << 6);
}

TEST(Utility, TileIdsMatchExactFractions) {
  for (const TileRow& row : kTileRows) {
    EXPECT_EQ(Utility::wlanRmTileId(row.latitude, row.longitude, row.level), row.id)
        << row.latitude << ' ' << row.longitude << ' ' << row.level;
  }
}

TEST(Utility, TileIdEqualsPowAndFloorOverTheGlobe) {
  test::Uniform uniform(22);
  for (int i = 0; i < 300000; ++i) {
    const double lat = uniform(-90.0, 91.0);
    const double lon = uniform(-180.0, 182.0);
    const auto level = static_cast<unsigned int>(uniform(0.0, 32.0));
    ASSERT_EQ(Utility::wlanRmTileId(lat, lon, level), idByPowAndFloor(lat, lon, level))
        << lat << ' ' << lon << ' ' << level;
  }
}

TEST(Utility, TileIdOfTheNorthPoleAliasesTheSouthernmostRow) {
  EXPECT_EQ(Utility::wlanRmTileId(90.0, 10.0, 9), Utility::wlanRmTileId(-90.0, 10.0, 9));
}

TEST(Utility, TileIdOf180EastFallsIntoTheLowestLatitudeBit) {
  EXPECT_EQ(Utility::wlanRmTileId(-90.0, 180.0, 6), 4096u + 64u);
  // The row above the equator has that bit clear, so 180 east lands in the next row's first column.
  EXPECT_EQ(Utility::wlanRmTileId(0.0, 180.0, 6), 0x1000u | 33u << 6);
}

TEST(Utility, TileIdBelowTheRangesCountsAsTheirStart) {
  EXPECT_EQ(Utility::wlanRmTileId(-90.5, -180.0, 6), 4096u);
  EXPECT_EQ(Utility::wlanRmTileId(-1e300, -1e300, 6), 4096u);
  EXPECT_EQ(Utility::wlanRmTileId(-kInfinity, -kInfinity, 6), 4096u);
  EXPECT_EQ(Utility::wlanRmTileId(kNaN, kNaN, 6), 4096u);
  EXPECT_EQ(Utility::wlanRmTileId(kNaN, 90.0, 6), 4096u + 48u);
}

TEST(Utility, TileIdAboveTheRangesSaturates) {
  EXPECT_EQ(Utility::wlanRmTileId(0.0, kInfinity, 6), 0xFFFFFFFFFFFFFFFFull);
  EXPECT_EQ(Utility::wlanRmTileId(kInfinity, -180.0, 6), 0xFFFFFFFFFFFFFFC0ull);
}

TEST(Utility, TileIdOutsideTheValidLevelsIsRejectedByTheLevel) {
  for (unsigned int level :
       {0u, 1u, 5u, 24u, 25u, 31u, 32u, 33u, 63u, 64u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
    EXPECT_EQ(Utility::wlanRmTileLevel(Utility::wlanRmTileId(-90.0, -180.0, level)), 0u) << level;
  }
  EXPECT_EQ(Utility::wlanRmTileId(10.0, 10.0, 0), 1u);
  EXPECT_EQ(Utility::wlanRmTileId(-90.0, -180.0, 31), 1ull << 62);
}

TEST(Utility, TileIdFromLevel32HasNoMarkerAndTheLargest32BitCount) {
  // Half of 4294967295 rows and columns.
  EXPECT_EQ(Utility::wlanRmTileId(0.0, 0.0, 32), 0x7FFFFFFF7FFFFFFFull);
  EXPECT_EQ(Utility::wlanRmTileId(0.0, 0.0, 63), 0x7FFFFFFFull | 1ull << 63);
  EXPECT_EQ(Utility::wlanRmTileId(0.0, 0.0, 64), 0x7FFFFFFFull);
  EXPECT_EQ(Utility::wlanRmTileId(0.0, 0.0, 0x80000000u), 0x7FFFFFFFull);
  EXPECT_EQ(Utility::wlanRmTileId(0.0, 0.0, 0xFFFFFFFFu), 0x7FFFFFFFull);
}

TEST(Utility, TileLevelIsHalfTheHighestBit) {
  EXPECT_EQ(Utility::wlanRmTileLevel(4096), 6u);
  EXPECT_EQ(Utility::wlanRmTileLevel(8191), 6u);
  EXPECT_EQ(Utility::wlanRmTileLevel(1ull << 46), 23u);
  EXPECT_EQ(Utility::wlanRmTileLevel((1ull << 47) - 1), 23u);
}

TEST(Utility, TileLevelRejectsOddPositionsAndOtherSizes) {
  EXPECT_EQ(Utility::wlanRmTileLevel(8192), 0u);
  EXPECT_EQ(Utility::wlanRmTileLevel(4095), 0u);
  EXPECT_EQ(Utility::wlanRmTileLevel(0), 0u);
  EXPECT_EQ(Utility::wlanRmTileLevel(1), 0u);
  EXPECT_EQ(Utility::wlanRmTileLevel(1ull << 47), 0u);
  EXPECT_EQ(Utility::wlanRmTileLevel(1ull << 48), 0u);
  EXPECT_EQ(Utility::wlanRmTileLevel(0xFFFFFFFFFFFFFFFFull), 0u);
}

TEST(Utility, TileLevelEqualsTryingEveryLevel) {
  test::Uniform uniform(23);
  for (int i = 0; i < 200000; ++i) {
    const unsigned long long id = uniform.bits() >> (i % 64);
    ASSERT_EQ(Utility::wlanRmTileLevel(id), levelByTrial(id)) << id;
  }
}

TEST(Utility, ParsingATileGivesItsSouthWestCorner) {
  for (const TileRow& row : kTileRows) {
    double lat = kNaN;
    double lon = kNaN;
    unsigned int level = 0;
    ASSERT_TRUE(Utility::parseWlanRmTileId(row.id, lat, lon, level)) << row.id;
    EXPECT_EQ(level, row.level);
    EXPECT_EQ(lat, row.south);
    EXPECT_EQ(lon, row.west);
  }
}

TEST(Utility, ParsedCornerIsWithinOneTileOfThePosition) {
  test::Uniform uniform(24);
  for (int i = 0; i < 100000; ++i) {
    const double lat = uniform(-90.0, 90.0);
    const double lon = uniform(-180.0, 180.0);
    const auto id = Utility::wlanRmTileId(lat, lon, kLevelsToSweep[i % 18]);
    double south = 0.0, west = 0.0, height = 0.0, width = 0.0;
    unsigned int level = 0;
    ASSERT_TRUE(Utility::parseWlanRmTileId(id, south, west, level));
    ASSERT_TRUE(Utility::wlanRmTileSizeInDegrees(id, height, width));
    ASSERT_TRUE(Utility::isPositionInsideArea(south, west, height, width, lat, lon))
        << lat << ' ' << lon << ' ' << level;
  }
}

TEST(Utility, ParsingNoTileClearsOnlyTheLevel) {
  for (unsigned long long id : {0ull, 4095ull, 8192ull, 1ull << 48}) {
    double lat = 1.5;
    double lon = 2.5;
    unsigned int level = 99;
    EXPECT_FALSE(Utility::parseWlanRmTileId(id, lat, lon, level));
    EXPECT_EQ(level, 0u);
    EXPECT_EQ(lat, 1.5);
    EXPECT_EQ(lon, 2.5);
  }
}

TEST(Utility, TileSizeHalvesWithEachLevel) {
  double expectedHeight = 180.0 / 64;
  double expectedWidth = 360.0 / 64;
  for (unsigned int level : kLevelsToSweep) {
    double height = 0.0;
    double width = 0.0;
    ASSERT_TRUE(Utility::wlanRmTileSizeInDegrees(1ull << (2 * level), height, width));
    EXPECT_EQ(height, expectedHeight);
    EXPECT_EQ(width, expectedWidth);
    expectedHeight /= 2;
    expectedWidth /= 2;
  }
}

TEST(Utility, TileSizeOfNoTileLeavesTheOutputs) {
  double height = 1.5;
  double width = 2.5;
  EXPECT_FALSE(Utility::wlanRmTileSizeInDegrees(8192, height, width));
  EXPECT_EQ(height, 1.5);
  EXPECT_EQ(width, 2.5);
}

TEST(Utility, ParentAtTheOwnLevelIsTheTileItself) {
  for (const TileRow& row : kTileRows) {
    EXPECT_EQ(Utility::wlanRmTileParentId(row.id, row.level), row.id);
  }
}

TEST(Utility, ParentIsTheTileOfTheSamePosition) {
  for (const TileRow& row : kTileRows) {
    for (unsigned int level = 6; level <= row.level; ++level) {
      EXPECT_EQ(Utility::wlanRmTileParentId(row.id, level),
                Utility::wlanRmTileId(row.latitude, row.longitude, level));
    }
  }
}

TEST(Utility, FourChildrenShareTheirParent) {
  test::Uniform uniform(25);
  for (int i = 0; i < 2000; ++i) {
    const unsigned int level = kLevelsToSweep[i % 17];
    const unsigned long long row = uniform.bits() >> (64 - level);
    const unsigned long long column = uniform.bits() >> (64 - level);
    const unsigned long long tile = 1ull << (2 * level) | row << level | column;
    for (unsigned long long child : {0ull, 1ull, 2ull, 3ull}) {
      const unsigned int below = level + 1;
      const unsigned long long id =
          1ull << (2 * below) | (2 * row + child / 2) << below | (2 * column + child % 2);
      ASSERT_EQ(Utility::wlanRmTileParentId(id, level), tile);
    }
  }
}

TEST(Utility, ParentBelowTheValidLevelsIsComputedAllTheSame) {
  const unsigned long long tile = 0x1000u | 63u << 6 | 32u;
  EXPECT_EQ(Utility::wlanRmTileParentId(tile, 5), 0x400u | 31u << 5 | 16u);
  EXPECT_EQ(Utility::wlanRmTileParentId(tile, 1), 4u | 1u << 1 | 1u);
  EXPECT_EQ(Utility::wlanRmTileParentId(tile, 0), 1u);
}

TEST(Utility, ParentAboveTheOwnLevelIsTheBareMarker) {
  const unsigned long long tile = 0x1000u | 63u << 6 | 32u;
  EXPECT_EQ(Utility::wlanRmTileParentId(tile, 7), 1ull << 14);
  EXPECT_EQ(Utility::wlanRmTileParentId(tile, 31), 1ull << 62);
  EXPECT_EQ(Utility::wlanRmTileParentId(tile, 32), 0u);
  EXPECT_EQ(Utility::wlanRmTileParentId(tile, 64), 0u);
  EXPECT_EQ(Utility::wlanRmTileParentId(tile, 0x80000000u), 0u);
  EXPECT_EQ(Utility::wlanRmTileParentId(tile, 0xFFFFFFFFu), 0u);
}

TEST(Utility, ParentOfNoTileIsZero) {
  EXPECT_EQ(Utility::wlanRmTileParentId(0, 6), 0u);
  EXPECT_EQ(Utility::wlanRmTileParentId(8192, 6), 0u);
  EXPECT_EQ(Utility::wlanRmTileParentId(1ull << 48, 6), 0u);
}

TEST(Utility, AreaHoldsItsSouthAndWestEdgesOnly) {
  const auto inside = [](double lat, double lon) {
    return Utility::isPositionInsideArea(10.0, 20.0, 1.0, 2.0, lat, lon);
  };
  EXPECT_TRUE(inside(10.0, 20.0));
  EXPECT_TRUE(inside(10.5, 21.0));
  EXPECT_TRUE(inside(std::nextafter(11.0, 0.0), std::nextafter(22.0, 0.0)));
  EXPECT_FALSE(inside(11.0, 21.0));
  EXPECT_FALSE(inside(10.5, 22.0));
  EXPECT_FALSE(inside(std::nextafter(10.0, 0.0), 21.0));
  EXPECT_FALSE(inside(10.5, std::nextafter(20.0, 0.0)));
}

TEST(Utility, AreaKnowsNothingOfTheDateLine) {
  EXPECT_TRUE(Utility::isPositionInsideArea(0.0, 179.0, 1.0, 2.0, 0.5, 180.5));
  EXPECT_FALSE(Utility::isPositionInsideArea(0.0, 179.0, 1.0, 2.0, 0.5, -179.5));
}

TEST(Utility, AreaWithNaNOrInfinity) {
  const double box[] = {10.0, 20.0, 1.0, 2.0, 10.5, 21.0};
  for (int i = 0; i < 6; ++i) {
    double v[6];
    for (int j = 0; j < 6; ++j) v[j] = i == j ? kNaN : box[j];
    EXPECT_FALSE(Utility::isPositionInsideArea(v[0], v[1], v[2], v[3], v[4], v[5])) << i;
  }
  EXPECT_FALSE(Utility::isPositionInsideArea(-kInfinity, 20.0, kInfinity, 2.0, 10.0, 21.0))
      << "infinity minus infinity is a NaN";
  EXPECT_TRUE(Utility::isPositionInsideArea(10.0, 20.0, kInfinity, kInfinity, 1e300, 1e300));
  EXPECT_FALSE(Utility::isPositionInsideArea(10.0, 20.0, 0.0, 2.0, 10.0, 21.0));
}

}  // namespace
}  // namespace trelvo::schema
