#include <trelvo/schema/Utility.h>

#include <cstdint>

#include "objects/Saturate.h"

namespace trelvo::schema {
namespace {

constexpr unsigned long long kLowestTileId = 1ull << 12;
constexpr unsigned long long kHighestTileId = (1ull << 47) - 1;
constexpr double kMostRows = 4294967295.0;  // what 2^level saturates at in 32 bits

// Counts from 64 up give 0, where the built-in operators are undefined.
constexpr unsigned long long shiftLeft(unsigned long long value, std::uint64_t count) noexcept {
  return count < 64 ? value << count : 0;
}

constexpr unsigned long long marker(unsigned int level) noexcept {
  return shiftLeft(1, std::uint64_t{2} * level);
}

// Rows of the grid at `level`, and as many columns.
constexpr double rows(unsigned int level) noexcept {
  return level < 32 ? static_cast<double>(1ull << level) : kMostRows;
}

// The highest set bit of an id that has one.
inline unsigned int highestBit(unsigned long long id) noexcept {
  return 63u - static_cast<unsigned int>(__builtin_clzll(id));
}

struct TileIndex {
  unsigned long long latitude;
  unsigned long long longitude;
};

constexpr TileIndex tileIndex(unsigned long long id, unsigned int level) noexcept {
  const unsigned long long mask = (1ull << level) - 1;
  return {(id >> level) & mask, id & mask};
}

}  // namespace

unsigned long long Utility::wlanRmTileId(double latitude, double longitude,
                                         unsigned int level) noexcept {
  const double n = rows(level);
  // Truncation equals floor here: what lies below the first row saturates at row 0 either way.
  const auto latIndex = saturate<unsigned long long>((latitude + 90.0) / 180.0 * n);
  const auto lonIndex = saturate<unsigned long long>(n * ((longitude + 180.0) / 360.0));
  return marker(level) | shiftLeft(latIndex, level) | lonIndex;
}

unsigned int Utility::wlanRmTileLevel(unsigned long long id) noexcept {
  if (id < kLowestTileId || id > kHighestTileId) return 0;
  const unsigned int bit = highestBit(id);
  return bit % 2 == 0 ? bit / 2 : 0;
}

bool Utility::parseWlanRmTileId(unsigned long long id, double& latitude, double& longitude,
                                unsigned int& level) noexcept {
  level = wlanRmTileLevel(id);
  if (level == 0) return false;
  const TileIndex index = tileIndex(id, level);
  const double n = rows(level);
  latitude = -90.0 + static_cast<double>(index.latitude) / n * 180.0;
  longitude = -180.0 + static_cast<double>(index.longitude) / n * 360.0;
  return true;
}

bool Utility::wlanRmTileSizeInDegrees(unsigned long long id, double& latitudeSize,
                                      double& longitudeSize) noexcept {
  const unsigned int level = wlanRmTileLevel(id);
  if (level == 0) return false;
  latitudeSize = 180.0 / rows(level);
  longitudeSize = 360.0 / rows(level);
  return true;
}

unsigned long long Utility::wlanRmTileParentId(unsigned long long id, unsigned int level) noexcept {
  const unsigned int ownLevel = wlanRmTileLevel(id);
  if (ownLevel == 0) return 0;
  if (level > ownLevel) return marker(level);
  const TileIndex index = tileIndex(id, ownLevel);
  const unsigned int shift = ownLevel - level;
  return marker(level) | (index.latitude >> shift) << level | index.longitude >> shift;
}

}  // namespace trelvo::schema
