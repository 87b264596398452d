#pragma once

// The wire forms of the flat records, each made in the source of its own family. A record that
// nests another, and the codec table of the factory, find them here.

#include <trelvo/IStream.h>

#include "objects/FieldTable.h"

namespace trelvo::schema {

class Area;
class CdmaCellDn;
class CdmaFrequencyInfo;
class CdmaNwMeasurement;
class CdmaServingCellMeasurement;
class Coverage;
class EUtraCellDn;
class EUtraFrequencyInfo;
class EUtraNwMeasurement;
class EUtraServingCellMeasurement;
class GeranCellDn;
class GeranFrequencyInfo;
class GeranNwMeasurement;
class GeranServingCellMeasurement;
class GnssMeasurementData;
class PositionEstimate;
class UtraCellDn;
class UtraFddFrequencyInfo;
class UtraFddNwMeasurement;
class UtraFddServingCellMeasurement;
class UtraTddFrequencyInfo;
class UtraTddNwMeasurement;
class UtraTddServingCellMeasurement;
class WlanApMeasurement;
class WlanDn;

}  // namespace trelvo::schema

namespace trelvo::gom {

extern template struct RecordAccess<schema::CdmaCellDn>;
extern template struct RecordAccess<schema::CdmaFrequencyInfo>;
extern template struct RecordAccess<schema::CdmaNwMeasurement>;
extern template struct RecordAccess<schema::CdmaServingCellMeasurement>;
extern template struct RecordAccess<schema::Coverage>;
extern template struct RecordAccess<schema::EUtraCellDn>;
extern template struct RecordAccess<schema::EUtraFrequencyInfo>;
extern template struct RecordAccess<schema::EUtraNwMeasurement>;
extern template struct RecordAccess<schema::EUtraServingCellMeasurement>;
extern template struct RecordAccess<schema::GeranCellDn>;
extern template struct RecordAccess<schema::GeranFrequencyInfo>;
extern template struct RecordAccess<schema::GeranNwMeasurement>;
extern template struct RecordAccess<schema::GeranServingCellMeasurement>;
extern template struct RecordAccess<schema::GnssMeasurementData>;
extern template struct RecordAccess<schema::PositionEstimate>;
extern template struct RecordAccess<schema::UtraCellDn>;
extern template struct RecordAccess<schema::UtraFddFrequencyInfo>;
extern template struct RecordAccess<schema::UtraFddNwMeasurement>;
extern template struct RecordAccess<schema::UtraFddServingCellMeasurement>;
extern template struct RecordAccess<schema::UtraTddFrequencyInfo>;
extern template struct RecordAccess<schema::UtraTddNwMeasurement>;
extern template struct RecordAccess<schema::UtraTddServingCellMeasurement>;
extern template struct RecordAccess<schema::WlanApMeasurement>;

// The two that are written by hand.
template <>
struct RecordAccess<schema::Area> : RecordVersion {
  static bool write(const schema::Area& area, WireWriter& writer);
  static bool addSize(const schema::Area& area, unsigned long long& total);
  static bool read(schema::Area& area, WireReader& reader);
};
template <>
struct RecordAccess<schema::WlanDn> : RecordVersion {
  static bool write(const schema::WlanDn& dn, WireWriter& writer);
  static bool addSize(const schema::WlanDn& dn, unsigned long long& total);
  static bool read(schema::WlanDn& dn, WireReader& reader);
};

}  // namespace trelvo::gom
