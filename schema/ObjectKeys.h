#pragma once

namespace trelvo::schema {

// The object keys of the composite classes, as they stand on the wire at the head of the generic
// object. No class id of a flat record is among them.

inline constexpr unsigned short kMeasurementContainer = 1;
inline constexpr unsigned short kGeranCellMeasurement = 2;
inline constexpr unsigned short kUtraFddCellMeasurement = 3;
inline constexpr unsigned short kUtraTddCellMeasurement = 4;
inline constexpr unsigned short kInjection = 5;
inline constexpr unsigned short kGeranServingCellInjection = 6;
inline constexpr unsigned short kUtraFddServingCellInjection = 7;
inline constexpr unsigned short kUtraTddServingCellInjection = 8;
inline constexpr unsigned short kGeranNeighborCellInjection = 9;
inline constexpr unsigned short kUtraFddNeighborCellInjection = 10;
inline constexpr unsigned short kUtraTddNeighborCellInjection = 11;
inline constexpr unsigned short kCellularObjectInjection = 12;
inline constexpr unsigned short kGnssInjection = 13;
inline constexpr unsigned short kEUtraCellMeasurement = 14;
inline constexpr unsigned short kEUtraServingCellInjection = 15;
inline constexpr unsigned short kEUtraNeighborCellInjection = 16;
inline constexpr unsigned short kCdmaCellMeasurement = 17;
inline constexpr unsigned short kCdmaServingCellInjection = 18;
inline constexpr unsigned short kCdmaNeighborCellInjection = 19;
inline constexpr unsigned short kWlanMeasurement = 20;
inline constexpr unsigned short kGnssMeasurement = 21;
inline constexpr unsigned short kWlanInjection = 22;

}  // namespace trelvo::schema
