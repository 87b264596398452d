#include "tools/trelvo/ShowRecords.h"

#include <trelvo/schema/Area.h>
#include <trelvo/schema/CdmaCellDn.h>
#include <trelvo/schema/CdmaNwMeasurement.h>
#include <trelvo/schema/CdmaServingCellMeasurement.h>
#include <trelvo/schema/Coverage.h>
#include <trelvo/schema/EUtraCellDn.h>
#include <trelvo/schema/EUtraFrequencyInfo.h>
#include <trelvo/schema/EUtraNwMeasurement.h>
#include <trelvo/schema/EUtraServingCellMeasurement.h>
#include <trelvo/schema/GeranCellDn.h>
#include <trelvo/schema/GeranFrequencyInfo.h>
#include <trelvo/schema/GeranNwMeasurement.h>
#include <trelvo/schema/GeranServingCellMeasurement.h>
#include <trelvo/schema/GnssMeasurementData.h>
#include <trelvo/schema/PositionEstimate.h>
#include <trelvo/schema/UtraCellDn.h>
#include <trelvo/schema/UtraFddFrequencyInfo.h>
#include <trelvo/schema/UtraFddNwMeasurement.h>
#include <trelvo/schema/UtraFddServingCellMeasurement.h>
#include <trelvo/schema/UtraTddFrequencyInfo.h>
#include <trelvo/schema/UtraTddNwMeasurement.h>
#include <trelvo/schema/UtraTddServingCellMeasurement.h>
#include <trelvo/schema/WlanApMeasurement.h>
#include <trelvo/schema/WlanDn.h>

namespace trelvo::tool {
namespace {

using schema::Area;
using schema::CdmaCellDn;
using schema::CdmaNwMeasurement;
using schema::CdmaServingCellMeasurement;
using schema::Coverage;
using schema::EUtraCellDn;
using schema::EUtraFrequencyInfo;
using schema::EUtraNwMeasurement;
using schema::EUtraServingCellMeasurement;
using schema::GeranCellDn;
using schema::GeranFrequencyInfo;
using schema::GeranNwMeasurement;
using schema::GeranServingCellMeasurement;
using schema::GnssMeasurementData;
using schema::PositionEstimate;
using schema::UtraCellDn;
using schema::UtraFddFrequencyInfo;
using schema::UtraFddNwMeasurement;
using schema::UtraFddServingCellMeasurement;
using schema::UtraTddFrequencyInfo;
using schema::UtraTddNwMeasurement;
using schema::UtraTddServingCellMeasurement;
using schema::WlanApMeasurement;
using schema::WlanDn;

constexpr unsigned int kAlways = 0;

/// One field of a record: how it is called and measured, which presence bit it has, and what writes
/// it.
template <class Record>
struct Field {
  const char* name;
  const char* unit;
  unsigned int bit;
  void (*show)(ShowWriter&, const Field&, const Record&);
};

template <class Record, std::size_t N>
void showFields(ShowWriter& writer, const Field<Record> (&fields)[N], const Record& record) {
  for (const Field<Record>& field : fields) {
    if (field.bit == kAlways || record.valueExists(field.bit)) {
      field.show(writer, field, record);
    }
  }
}

// What may stand in the last column of a field.

template <auto Get, class Record>
void number(ShowWriter& writer, const Field<Record>& field, const Record& record) {
  writer.value(field.name, {numberToken((record.*Get)()), field.unit, {}, ""});
}

template <auto Decode, auto Get, class Record>
void decoded(ShowWriter& writer, const Field<Record>& field, const Record& record) {
  ShowValue value = Decode((record.*Get)());
  value.unit = field.unit;
  writer.value(field.name, value);
}

template <LevelScale Scale, auto Get, class Record>
void level(ShowWriter& writer, const Field<Record>& field, const Record& record) {
  writer.value(field.name, codeValue(Scale, (record.*Get)()));
}

template <auto Get, class Record>
void nested(ShowWriter& writer, const Field<Record>& field, const Record& record) {
  const auto inner = (record.*Get)();
  if (inner) {
    showRecord(writer, field.name, *inner);
  }
}

void address(ShowWriter& writer, const Field<WlanDn>& field, const WlanDn& record) {
  unsigned int length = 0;
  const unsigned char* bytes = record.getBssid(length);
  writer.value(field.name, addressValue(bytes, length));
}

void source(ShowWriter& writer, const Field<PositionEstimate>& field,
            const PositionEstimate& record) {
  writer.value(field.name, {numberToken(static_cast<int>(record.source())), field.unit, {}, ""});
}

void building(ShowWriter& writer, const Field<PositionEstimate>& field,
              const PositionEstimate& record) {
  writer.value(field.name, textValue(record.buildingId()));
}

constexpr Field<Coverage> kCoverage[] = {
    {"latitude", "degrees", Coverage::HasLatitude, decoded<latitudeValue, &Coverage::latitude>},
    {"longitude", "degrees", Coverage::HasLongitude, decoded<longitudeValue, &Coverage::longitude>},
    {"majorAxis", "m", Coverage::HasMajorAxis, number<&Coverage::majorAxis>},
    {"minorAxis", "m", Coverage::HasMinorAxis, number<&Coverage::minorAxis>},
    {"angle", "rad", Coverage::HasAngle, decoded<angleValue, &Coverage::angle>},
    {"altitude", "m", Coverage::HasAltitude, number<&Coverage::altitude>},
    {"altitudeUncertainty", "m", Coverage::HasAltitudeUncertainty,
     number<&Coverage::altitudeUncertainty>},
    {"horizontalCepUncertainty", "m", Coverage::HasHorizontalCepUncertainty,
     number<&Coverage::horizontalCepUncertainty>},
};

void coverageOfArea(ShowWriter& writer, const Field<Area>&, const Area& record) {
  showFields(writer, kCoverage, record.coverage());
}

void coverageOfFix(ShowWriter& writer, const Field<GnssMeasurementData>& field,
                   const GnssMeasurementData& record) {
  writer.beginObject(field.name, "Coverage");
  showFields(writer, kCoverage, record.coverage());
  writer.endObject();
}

constexpr Field<Area> kArea[] = {
    {"coverage", "", kAlways, coverageOfArea},
};

constexpr Field<GeranCellDn> kGeranCellDn[] = {
    {"mcc", "", GeranCellDn::HasMcc, number<&GeranCellDn::mcc>},
    {"mnc", "", GeranCellDn::HasMnc, number<&GeranCellDn::mnc>},
    {"lac", "", GeranCellDn::HasLac, number<&GeranCellDn::lac>},
    {"cid", "", GeranCellDn::HasCid, number<&GeranCellDn::cid>},
};

constexpr Field<UtraCellDn> kUtraCellDn[] = {
    {"mcc", "", UtraCellDn::HasMcc, number<&UtraCellDn::mcc>},
    {"mnc", "", UtraCellDn::HasMnc, number<&UtraCellDn::mnc>},
    {"ucid", "", UtraCellDn::HasUcid, decoded<utraCellValue, &UtraCellDn::ucid>},
};

constexpr Field<EUtraCellDn> kEUtraCellDn[] = {
    {"mcc", "", EUtraCellDn::HasMcc, number<&EUtraCellDn::mcc>},
    {"mnc", "", EUtraCellDn::HasMnc, number<&EUtraCellDn::mnc>},
    {"ucid", "", EUtraCellDn::HasUcid, decoded<eutraCellValue, &EUtraCellDn::ucid>},
};

constexpr Field<CdmaCellDn> kCdmaCellDn[] = {
    {"sid", "", CdmaCellDn::HasSid, number<&CdmaCellDn::sid>},
    {"nid", "", CdmaCellDn::HasNid, number<&CdmaCellDn::nid>},
    {"bsid", "", CdmaCellDn::HasBsid, number<&CdmaCellDn::bsid>},
};

constexpr Field<GeranFrequencyInfo> kGeranFrequencyInfo[] = {
    {"bsic", "", GeranFrequencyInfo::HasBsic, number<&GeranFrequencyInfo::bsic>},
    {"arfcn", "", GeranFrequencyInfo::HasArfcn, number<&GeranFrequencyInfo::arfcn>},
};

constexpr Field<UtraFddFrequencyInfo> kUtraFddFrequencyInfo[] = {
    {"uarfcnDl", "", UtraFddFrequencyInfo::HasUarfcnDl, number<&UtraFddFrequencyInfo::uarfcnDl>},
    {"pcpich", "", UtraFddFrequencyInfo::HasPcpich, number<&UtraFddFrequencyInfo::pcpich>},
};

constexpr Field<UtraTddFrequencyInfo> kUtraTddFrequencyInfo[] = {
    {"uarfcn", "", UtraTddFrequencyInfo::HasUarfcn, number<&UtraTddFrequencyInfo::uarfcn>},
    {"cellParam", "", UtraTddFrequencyInfo::HasCellParam, number<&UtraTddFrequencyInfo::cellParam>},
};

constexpr Field<EUtraFrequencyInfo> kEUtraFrequencyInfo[] = {
    {"earfcn", "", EUtraFrequencyInfo::HasEarfcn, number<&EUtraFrequencyInfo::earfcn>},
    {"pci", "", EUtraFrequencyInfo::HasPci, number<&EUtraFrequencyInfo::pci>},
};

constexpr Field<GeranNwMeasurement> kGeranNwMeasurement[] = {
    {"frequencyInfo", "", GeranNwMeasurement::HasFrequencyInfo,
     nested<&GeranNwMeasurement::frequencyInfo>},
    {"lac", "", GeranNwMeasurement::HasLac, number<&GeranNwMeasurement::lac>},
    {"cid", "", GeranNwMeasurement::HasCid, number<&GeranNwMeasurement::cid>},
    {"rxLevel", "", GeranNwMeasurement::HasRxLevel,
     level<LevelScale::GeranRxLev, &GeranNwMeasurement::rxLevel>},
};

constexpr Field<UtraFddNwMeasurement> kUtraFddNwMeasurement[] = {
    {"frequencyInfo", "", UtraFddNwMeasurement::HasFrequencyInfo,
     nested<&UtraFddNwMeasurement::frequencyInfo>},
    {"ucid", "", UtraFddNwMeasurement::HasUcid,
     decoded<utraCellValue, &UtraFddNwMeasurement::ucid>},
    {"uarfcnUl", "", UtraFddNwMeasurement::HasUarfcnUl, number<&UtraFddNwMeasurement::uarfcnUl>},
    {"utraCarrierRssi", "", UtraFddNwMeasurement::HasUtraCarrierRssi,
     level<LevelScale::UtraCarrierRssi, &UtraFddNwMeasurement::utraCarrierRssi>},
    {"ecNo", "", UtraFddNwMeasurement::HasEcNo,
     level<LevelScale::UtraFddEcNo, &UtraFddNwMeasurement::ecNo>},
    {"rscp", "", UtraFddNwMeasurement::HasRscp,
     level<LevelScale::UtraFddRscp, &UtraFddNwMeasurement::rscp>},
    {"pathloss", "dB", UtraFddNwMeasurement::HasPathloss, number<&UtraFddNwMeasurement::pathloss>},
};

constexpr Field<UtraTddNwMeasurement> kUtraTddNwMeasurement[] = {
    {"frequencyInfo", "", UtraTddNwMeasurement::HasFrequencyInfo,
     nested<&UtraTddNwMeasurement::frequencyInfo>},
    {"ucid", "", UtraTddNwMeasurement::HasUcid,
     decoded<utraCellValue, &UtraTddNwMeasurement::ucid>},
    {"utraCarrierRssi", "", UtraTddNwMeasurement::HasUtraCarrierRssi,
     level<LevelScale::UtraCarrierRssi, &UtraTddNwMeasurement::utraCarrierRssi>},
    {"rscp", "", UtraTddNwMeasurement::HasRscp,
     level<LevelScale::UtraTddRscp, &UtraTddNwMeasurement::rscp>},
    {"pathloss", "dB", UtraTddNwMeasurement::HasPathloss, number<&UtraTddNwMeasurement::pathloss>},
};

constexpr Field<EUtraNwMeasurement> kEUtraNwMeasurement[] = {
    {"frequencyInfo", "", EUtraNwMeasurement::HasFrequencyInfo,
     nested<&EUtraNwMeasurement::frequencyInfo>},
    {"ucid", "", EUtraNwMeasurement::HasUcid, decoded<eutraCellValue, &EUtraNwMeasurement::ucid>},
    {"tac", "", EUtraNwMeasurement::HasTac, number<&EUtraNwMeasurement::tac>},
    {"rsrp", "", EUtraNwMeasurement::HasRsrp,
     level<LevelScale::EUtraRsrp, &EUtraNwMeasurement::rsrp>},
    {"rsrq", "", EUtraNwMeasurement::HasRsrq,
     level<LevelScale::EUtraRsrq, &EUtraNwMeasurement::rsrq>},
};

constexpr Field<CdmaNwMeasurement> kCdmaNwMeasurement[] = {
    {"frequencyInfo", "", CdmaNwMeasurement::HasFrequencyInfo,
     nested<&CdmaNwMeasurement::frequencyInfo>},
};

constexpr Field<GeranServingCellMeasurement> kGeranServing[] = {
    {"nwMeasurement", "", GeranServingCellMeasurement::HasNwMeasurement,
     nested<&GeranServingCellMeasurement::nwMeasurement>},
    {"frequency", "", GeranServingCellMeasurement::HasFrequency,
     number<&GeranServingCellMeasurement::frequency>},
    {"timingAdvance", "", GeranServingCellMeasurement::HasTimingAdvance,
     number<&GeranServingCellMeasurement::timingAdvance>},
};

constexpr Field<UtraFddServingCellMeasurement> kUtraFddServing[] = {
    {"nwMeasurement", "", UtraFddServingCellMeasurement::HasNwMeasurement,
     nested<&UtraFddServingCellMeasurement::nwMeasurement>},
    {"lac", "", UtraFddServingCellMeasurement::HasLac, number<&UtraFddServingCellMeasurement::lac>},
};

constexpr Field<UtraTddServingCellMeasurement> kUtraTddServing[] = {
    {"nwMeasurement", "", UtraTddServingCellMeasurement::HasNwMeasurement,
     nested<&UtraTddServingCellMeasurement::nwMeasurement>},
    {"lac", "", UtraTddServingCellMeasurement::HasLac, number<&UtraTddServingCellMeasurement::lac>},
    {"timingAdvance", "", UtraTddServingCellMeasurement::HasTimingAdvance,
     number<&UtraTddServingCellMeasurement::timingAdvance>},
};

constexpr Field<EUtraServingCellMeasurement> kEUtraServing[] = {
    {"nwMeasurement", "", EUtraServingCellMeasurement::HasNwMeasurement,
     nested<&EUtraServingCellMeasurement::nwMeasurement>},
    {"timingAdvance", "", EUtraServingCellMeasurement::HasTimingAdvance,
     number<&EUtraServingCellMeasurement::timingAdvance>},
};

constexpr Field<CdmaServingCellMeasurement> kCdmaServing[] = {
    {"nwMeasurement", "", CdmaServingCellMeasurement::HasNwMeasurement,
     nested<&CdmaServingCellMeasurement::nwMeasurement>},
};

constexpr Field<PositionEstimate> kPositionEstimate[] = {
    {"timeStamp", "s", PositionEstimate::HasTimeStamp,
     decoded<timeValue, &PositionEstimate::timeStamp>},
    {"latitude", "degrees", PositionEstimate::HasLatitude, number<&PositionEstimate::latitude>},
    {"longitude", "degrees", PositionEstimate::HasLongitude, number<&PositionEstimate::longitude>},
    {"horizontalCepUncertainty", "m", PositionEstimate::HasHorizontalCepUncertainty,
     number<&PositionEstimate::horizontalCepUncertainty>},
    {"majorAxis", "m", PositionEstimate::HasMajorAxis, number<&PositionEstimate::majorAxis>},
    {"minorAxis", "m", PositionEstimate::HasMinorAxis, number<&PositionEstimate::minorAxis>},
    {"angle", "degrees", PositionEstimate::HasAngle, number<&PositionEstimate::angle>},
    {"altitude", "m", PositionEstimate::HasAltitude, number<&PositionEstimate::altitude>},
    {"altitudeUncertainty", "m", PositionEstimate::HasAltitudeUncertainty,
     number<&PositionEstimate::altitudeUncertainty>},
    {"speed", "m/s", PositionEstimate::HasSpeed, number<&PositionEstimate::speed>},
    {"speedUncertainty", "m/s", PositionEstimate::HasSpeedUncertainty,
     number<&PositionEstimate::speedUncertainty>},
    {"course", "degrees", PositionEstimate::HasCourse, number<&PositionEstimate::course>},
    {"courseUncertainty", "degrees", PositionEstimate::HasCourseUncertainty,
     number<&PositionEstimate::courseUncertainty>},
    {"floorId", "", PositionEstimate::HasFloorId, number<&PositionEstimate::floorId>},
    {"buildingId", "", PositionEstimate::HasBuildingId, building},
    {"technology", "", PositionEstimate::HasTechnology,
     decoded<technologyValue, &PositionEstimate::technology>},
    {"source", "", PositionEstimate::HasSource, source},
    {"measurementId", "", PositionEstimate::HasMeasurementId,
     number<&PositionEstimate::measurementId>},
};

constexpr Field<GnssMeasurementData> kGnssMeasurementData[] = {
    {"coverage", "", kAlways, coverageOfFix},
    {"speed", "m/s", GnssMeasurementData::HasSpeed, number<&GnssMeasurementData::speed>},
    {"speedUncertainty", "m/s", GnssMeasurementData::HasSpeedUncertainty,
     number<&GnssMeasurementData::speedUncertainty>},
    {"course", "degrees", GnssMeasurementData::HasCourse, number<&GnssMeasurementData::course>},
    {"courseUncertainty", "degrees", GnssMeasurementData::HasCourseUncertainty,
     number<&GnssMeasurementData::courseUncertainty>},
};

constexpr Field<WlanDn> kWlanDn[] = {
    {"bssid", "", WlanDn::HasBssid, address},
};

constexpr Field<WlanApMeasurement> kWlanApMeasurement[] = {
    {"ssid", "", WlanApMeasurement::HasSsid, number<&WlanApMeasurement::ssid>},
    {"rxLevel", "dBm", WlanApMeasurement::HasRxLevel, number<&WlanApMeasurement::rxLevel>},
    {"txLevel", "dBm", WlanApMeasurement::HasTxLevel, number<&WlanApMeasurement::txLevel>},
    {"rssi", "", WlanApMeasurement::HasRssi, number<&WlanApMeasurement::rssi>},
    {"distance", "m", WlanApMeasurement::HasDistance, number<&WlanApMeasurement::distance>},
    {"distanceUncertainty", "m", WlanApMeasurement::HasDistanceUncertainty,
     number<&WlanApMeasurement::distanceUncertainty>},
    {"band", "", WlanApMeasurement::HasBand, number<&WlanApMeasurement::band>},
    {"apLatitude", "degrees", WlanApMeasurement::HasApLatitude,
     decoded<latitudeValue, &WlanApMeasurement::apLatitude>},
    {"apLongitude", "degrees", WlanApMeasurement::HasApLongitude,
     decoded<longitudeValue, &WlanApMeasurement::apLongitude>},
};

using ShowFunction = void (*)(ShowWriter&, const gom::ObjectBase&);

template <class Record, const auto& Fields>
void show(ShowWriter& writer, const gom::ObjectBase& object) {
  if (const auto* record = dynamic_cast<const Record*>(&object)) {
    showFields(writer, Fields, *record);
  }
}

void noFields(ShowWriter&, const gom::ObjectBase&) {}

struct RecordClass {
  unsigned short id;
  const char* name;
  ShowFunction show;
};

constexpr RecordClass kClasses[] = {
    {100, "GeranCellDn", show<GeranCellDn, kGeranCellDn>},
    {101, "UtraCellDn", show<UtraCellDn, kUtraCellDn>},
    {102, "GeranFrequencyInfo", show<GeranFrequencyInfo, kGeranFrequencyInfo>},
    {103, "UtraFddFrequencyInfo", show<UtraFddFrequencyInfo, kUtraFddFrequencyInfo>},
    {104, "Area", show<Area, kArea>},
    {105, "GeranCell", noFields},
    {106, "GeranNeighborCell", noFields},
    {107, "UtraFddCell", noFields},
    {108, "UtraFddNeighborCell", noFields},
    {109, "GeranServingCellMeasurement", show<GeranServingCellMeasurement, kGeranServing>},
    {110, "GeranNwMeasurement", show<GeranNwMeasurement, kGeranNwMeasurement>},
    {111, "UtraFddServingCellMeasurement", show<UtraFddServingCellMeasurement, kUtraFddServing>},
    {112, "UtraFddNwMeasurement", show<UtraFddNwMeasurement, kUtraFddNwMeasurement>},
    {113, "PositionEstimate", show<PositionEstimate, kPositionEstimate>},
    {114, "CellularObjectDn", noFields},
    {115, "CellularObject", noFields},
    {116, "EUtraCell", noFields},
    {117, "EUtraNeighborCell", noFields},
    {118, "EUtraServingCellMeasurement", show<EUtraServingCellMeasurement, kEUtraServing>},
    {119, "EUtraNwMeasurement", show<EUtraNwMeasurement, kEUtraNwMeasurement>},
    {120, "EUtraFrequencyInfo", show<EUtraFrequencyInfo, kEUtraFrequencyInfo>},
    {121, "EUtraCellDn", show<EUtraCellDn, kEUtraCellDn>},
    {122, "CdmaCellDn", show<CdmaCellDn, kCdmaCellDn>},
    {123, "CdmaFrequencyInfo", noFields},
    {124, "CdmaCell", noFields},
    {125, "CdmaNeighborCell", noFields},
    {126, "CdmaServingCellMeasurement", show<CdmaServingCellMeasurement, kCdmaServing>},
    {127, "CdmaNwMeasurement", show<CdmaNwMeasurement, kCdmaNwMeasurement>},
    {128, "WlanDn", show<WlanDn, kWlanDn>},
    {129, "WlanApMeasurement", show<WlanApMeasurement, kWlanApMeasurement>},
    {130, "GnssMeasurementData", show<GnssMeasurementData, kGnssMeasurementData>},
    {131, "UtraTddFrequencyInfo", show<UtraTddFrequencyInfo, kUtraTddFrequencyInfo>},
    {132, "UtraTddCell", noFields},
    {133, "UtraTddNeighborCell", noFields},
    {134, "UtraTddServingCellMeasurement", show<UtraTddServingCellMeasurement, kUtraTddServing>},
    {135, "UtraTddNwMeasurement", show<UtraTddNwMeasurement, kUtraTddNwMeasurement>},
};
constexpr RecordClass kUnknownClass = {0, "unknown", noFields};

const RecordClass& recordClass(unsigned short id) {
  constexpr unsigned short kFirst = kClasses[0].id;
  const bool known = id >= kFirst && id < kFirst + std::size(kClasses);
  return known ? kClasses[id - kFirst] : kUnknownClass;
}

}  // namespace

const char* recordClassName(unsigned short classId) { return recordClass(classId).name; }

void showRecord(ShowWriter& writer, std::string_view name, const gom::ObjectBase& record) {
  const RecordClass& described = recordClass(record.key());
  writer.beginObject(name, described.name);
  described.show(writer, record);
  writer.endObject();
}

}  // namespace trelvo::tool
