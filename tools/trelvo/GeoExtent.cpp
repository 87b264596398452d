#include "tools/trelvo/GeoExtent.h"

#include <trelvo/schema/Utility.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

namespace trelvo::tool {

bool isPlace(double latitude, double longitude) {
  return std::abs(latitude) <= 90.0 && std::abs(longitude) <= 180.0;
}

void GeoExtent::add(double latitude, double longitude) {
  const double east = schema::Utility::deCompLonRollOver(longitude);
  const auto index = static_cast<int>(std::floor(east + 180.0));
  Slice& slice = m_slices[static_cast<std::size_t>(std::clamp(index, 0, kSlices - 1))];
  slice.west = std::min(slice.west, east);
  slice.east = std::max(slice.east, east);
  m_south = std::min(m_south, latitude);
  m_north = std::max(m_north, latitude);
}

// What is left of the circle when its widest gap is taken out.
GeoBox GeoExtent::box() const {
  std::vector<Slice> used;
  std::copy_if(m_slices.begin(), m_slices.end(), std::back_inserter(used),
               [](const Slice& slice) { return slice.west <= slice.east; });
  if (used.empty()) {
    return {};
  }
  std::size_t first = 0;
  double widest = used.front().west + 360.0 - used.back().east;
  for (std::size_t i = 1; i < used.size(); ++i) {
    const double gap = used[i].west - used[i - 1].east;
    if (gap > widest) {
      widest = gap;
      first = i;
    }
  }
  const double west = used[first].west;
  const double east = first == 0 ? used.back().east : used[first - 1].east + 360.0;
  return {m_south, west, m_north, east};
}

}  // namespace trelvo::tool
