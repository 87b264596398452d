#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "tools/trelvo/MapData.h"

namespace trelvo::tool {

struct MapOptions {
  std::string title;
  std::optional<unsigned int> tileLevel;  ///< 6 to 23, nothing for no grid
};

/// Writes the map of `data`, which must not be empty, as an SVG 1.1 document that stands for
/// itself: no scripts, nothing from elsewhere. Lines and letters have one size whatever the map
/// shows, and the document has a few 100 KB at most.
///
/// @return what the picture leaves out or shows otherwise than asked, in words for the user.
std::vector<std::string> writeMap(std::ostream& out, const MapData& data,
                                  const MapOptions& options);

}  // namespace trelvo::tool
