#pragma once

namespace trelvo::schema {

/// How a position came about: the bits of PositionEstimate::technology(). Other values are allowed
/// there and have no name here.
enum Technology : int {
  TechnologyGnss = 0x0001,         ///< From a satellite fix.
  TechnologyCellLac = 0x0010,      ///< From a GERAN location area.
  TechnologyCellNetwork = 0x0020,  ///< From a cellular network.
  TechnologyCellCountry = 0x0040,  ///< From the country of a cellular network.
  TechnologyCellRnc = 0x0800,      ///< From the area of a UTRA radio network controller.
  TechnologyCellENodeB = 0x1000,   ///< From the area of an E-UTRA base station.
};

}  // namespace trelvo::schema
