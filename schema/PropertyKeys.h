#pragma once

#include "schema/ClassIds.h"

namespace trelvo::schema {

// The property keys of the composite classes, as they stand on the wire. Each number has one
// meaning wherever it occurs.

// A record that is the only one of its class stands under its class id.
inline constexpr unsigned short kApMeasurement = kWlanApMeasurement;
inline constexpr unsigned short kGnssData = kGnssMeasurementData;

// A cell, an access point, a fix.
inline constexpr unsigned short kDn = 200;
inline constexpr unsigned short kFrequencyInfo = 201;
inline constexpr unsigned short kServingCellMeasurement = 202;
inline constexpr unsigned short kNeighborMeasurement = 203;
inline constexpr unsigned short kCoverage = 204;
inline constexpr unsigned short kTimeStamp = 205;
inline constexpr unsigned short kElapsedRealtimeTimeStamp = 206;
inline constexpr unsigned short kUnreliableStateTimeStamp = 207;
inline constexpr unsigned short kSource = 208;

// Lists, and what containers and injections carry beside them.
inline constexpr unsigned short kGeranMeasurementCollection = 300;
inline constexpr unsigned short kUtraFddMeasurementCollection = 301;
inline constexpr unsigned short kUtraTddMeasurementCollection = 302;
inline constexpr unsigned short kNwMeasurementCollection = 303;
inline constexpr unsigned short kGeranInjectionCollection = 304;
inline constexpr unsigned short kUtraFddInjectionCollection = 305;
inline constexpr unsigned short kUtraTddInjectionCollection = 306;
inline constexpr unsigned short kNeighborCellInjectionCollection = 307;
inline constexpr unsigned short kCellularObjectInjectionCollection = 308;
inline constexpr unsigned short kGnssInjectionCollection = 309;
inline constexpr unsigned short kEUtraMeasurementCollection = 310;
inline constexpr unsigned short kEUtraInjectionCollection = 311;
inline constexpr unsigned short kCdmaMeasurementCollection = 312;
inline constexpr unsigned short kCdmaInjectionCollection = 313;
inline constexpr unsigned short kWlanMeasurementCollection = 314;
inline constexpr unsigned short kGnssMeasurementCollection = 315;
inline constexpr unsigned short kWlanInjectionCollection = 316;
inline constexpr unsigned short kMeasurementId = 317;

}  // namespace trelvo::schema
