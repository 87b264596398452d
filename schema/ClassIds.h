#pragma once

namespace trelvo::schema {

/// The class ids of the flat records, as they stand on the wire.
enum ClassId : unsigned short {
  kGeranCellDn = 100,
  kUtraCellDn = 101,
  kGeranFrequencyInfo = 102,
  kUtraFddFrequencyInfo = 103,
  kArea = 104,
  kGeranCell = 105,
  kGeranNeighborCell = 106,
  kUtraFddCell = 107,
  kUtraFddNeighborCell = 108,
  kGeranServingCellMeasurement = 109,
  kGeranNwMeasurement = 110,
  kUtraFddServingCellMeasurement = 111,
  kUtraFddNwMeasurement = 112,
  kPositionEstimate = 113,
  kCellularObjectDn = 114,
  kCellularObject = 115,
  kEUtraCell = 116,
  kEUtraNeighborCell = 117,
  kEUtraServingCellMeasurement = 118,
  kEUtraNwMeasurement = 119,
  kEUtraFrequencyInfo = 120,
  kEUtraCellDn = 121,
  kCdmaCellDn = 122,
  kCdmaFrequencyInfo = 123,
  kCdmaCell = 124,
  kCdmaNeighborCell = 125,
  kCdmaServingCellMeasurement = 126,
  kCdmaNwMeasurement = 127,
  kWlanDn = 128,
  kWlanApMeasurement = 129,
  kGnssMeasurementData = 130,
  kUtraTddFrequencyInfo = 131,
  kUtraTddCell = 132,
  kUtraTddNeighborCell = 133,
  kUtraTddServingCellMeasurement = 134,
  kUtraTddNwMeasurement = 135,
  kWlan = 136,  // above what the factory serves
};

}  // namespace trelvo::schema
