#include <trelvo/schema/Area.h>
#include <trelvo/schema/CdmaCellDn.h>
#include <trelvo/schema/CdmaFrequencyInfo.h>
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

#include "tests/golden/SchemaClass.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/Bytes.h"

namespace trelvo::test {

using namespace schema;  // NOLINT(google-build-using-namespace): a table of its classes

namespace {

Status setBssidBytes(Made& made, const Argument& argument, const Variables& /*variables*/) {
  Bytes content;
  {
    const AllocationsSucceed succeed;
    content = bytes(argument.text);
  }
  return objectOf<WlanDn>(made).setBssid(content.data(), static_cast<unsigned int>(content.size()));
}

std::vector<SchemaClass> cellNames() {
  return {Describe<GeranCellDn>("GeranCellDn")
              .made<>()
              .field("mcc", &GeranCellDn::setMcc)
              .field("mnc", &GeranCellDn::setMnc)
              .field("lac", &GeranCellDn::setLac)
              .field("cid", &GeranCellDn::setCid),
          Describe<UtraCellDn>("UtraCellDn")
              .made<>()
              .field("mcc", &UtraCellDn::setMcc)
              .field("mnc", &UtraCellDn::setMnc)
              .field("ucid", &UtraCellDn::setUcid),
          Describe<EUtraCellDn>("EUtraCellDn")
              .made<>()
              .field("mcc", &EUtraCellDn::setMcc)
              .field("mnc", &EUtraCellDn::setMnc)
              .field("ucid", &EUtraCellDn::setUcid),
          Describe<CdmaCellDn>("CdmaCellDn")
              .made<>()
              .field("sid", &CdmaCellDn::setSid)
              .field("nid", &CdmaCellDn::setNid)
              .field("bsid", &CdmaCellDn::setBsid)};
}

std::vector<SchemaClass> frequencyInfos() {
  return {Describe<GeranFrequencyInfo>("GeranFrequencyInfo")
              .made<>()
              .field("bsic", &GeranFrequencyInfo::setBsic)
              .field("arfcn", &GeranFrequencyInfo::setArfcn),
          Describe<UtraFddFrequencyInfo>("UtraFddFrequencyInfo")
              .made<>()
              .field("uarfcnDl", &UtraFddFrequencyInfo::setUarfcnDl)
              .field("pcpich", &UtraFddFrequencyInfo::setPcpich),
          Describe<UtraTddFrequencyInfo>("UtraTddFrequencyInfo")
              .made<>()
              .field("uarfcn", &UtraTddFrequencyInfo::setUarfcn)
              .field("cellParam", &UtraTddFrequencyInfo::setCellParam),
          Describe<EUtraFrequencyInfo>("EUtraFrequencyInfo")
              .made<>()
              .field("earfcn", &EUtraFrequencyInfo::setEarfcn)
              .field("pci", &EUtraFrequencyInfo::setPci),
          Describe<CdmaFrequencyInfo>("CdmaFrequencyInfo").made<>()};
}

std::vector<SchemaClass> nwMeasurements() {
  return {Describe<GeranNwMeasurement>("GeranNwMeasurement")
              .made<>()
              .field("frequencyInfo", &GeranNwMeasurement::setFrequencyInfo)
              .field("lac", &GeranNwMeasurement::setLac)
              .field("cid", &GeranNwMeasurement::setCid)
              .field("rxLevel", &GeranNwMeasurement::setRxLevel),
          Describe<UtraFddNwMeasurement>("UtraFddNwMeasurement")
              .made<>()
              .field("frequencyInfo", &UtraFddNwMeasurement::setFrequencyInfo)
              .field("ucid", &UtraFddNwMeasurement::setUcid)
              .field("uarfcnUl", &UtraFddNwMeasurement::setUarfcnUl)
              .field("utraCarrierRssi", &UtraFddNwMeasurement::setUtraCarrierRssi)
              .field("ecNo", &UtraFddNwMeasurement::setEcNo)
              .field("rscp", &UtraFddNwMeasurement::setRscp)
              .field("pathloss", &UtraFddNwMeasurement::setPathloss),
          Describe<UtraTddNwMeasurement>("UtraTddNwMeasurement")
              .made<>()
              .field("frequencyInfo", &UtraTddNwMeasurement::setFrequencyInfo)
              .field("ucid", &UtraTddNwMeasurement::setUcid)
              .field("utraCarrierRssi", &UtraTddNwMeasurement::setUtraCarrierRssi)
              .field("rscp", &UtraTddNwMeasurement::setRscp)
              .field("pathloss", &UtraTddNwMeasurement::setPathloss),
          Describe<EUtraNwMeasurement>("EUtraNwMeasurement")
              .made<>()
              .field("frequencyInfo", &EUtraNwMeasurement::setFrequencyInfo)
              .field("ucid", &EUtraNwMeasurement::setUcid)
              .field("tac", &EUtraNwMeasurement::setTac)
              .field("rsrp", &EUtraNwMeasurement::setRsrp)
              .field("rsrq", &EUtraNwMeasurement::setRsrq),
          Describe<CdmaNwMeasurement>("CdmaNwMeasurement")
              .made<>()
              .field("frequencyInfo", &CdmaNwMeasurement::setFrequencyInfo)};
}

std::vector<SchemaClass> servingCellMeasurements() {
  return {Describe<GeranServingCellMeasurement>("GeranServingCellMeasurement")
              .made<>()
              .field("nwMeasurement", &GeranServingCellMeasurement::setNwMeasurement)
              .field("timingAdvance", &GeranServingCellMeasurement::setTimingAdvance)
              .field("frequency", &GeranServingCellMeasurement::setFrequency)
              .field("rxLevel", &GeranServingCellMeasurement::setRxLevel)
              .field("frequencyInfo", &GeranServingCellMeasurement::setFrequencyInfo),
          Describe<UtraFddServingCellMeasurement>("UtraFddServingCellMeasurement")
              .made<>()
              .field("nwMeasurement", &UtraFddServingCellMeasurement::setNwMeasurement)
              .field("lac", &UtraFddServingCellMeasurement::setLac)
              .field("uarfcnUl", &UtraFddServingCellMeasurement::setUarfcnUl)
              .field("frequencyInfo", &UtraFddServingCellMeasurement::setFrequencyInfo),
          Describe<UtraTddServingCellMeasurement>("UtraTddServingCellMeasurement")
              .made<>()
              .field("nwMeasurement", &UtraTddServingCellMeasurement::setNwMeasurement)
              .field("lac", &UtraTddServingCellMeasurement::setLac)
              .field("timingAdvance", &UtraTddServingCellMeasurement::setTimingAdvance)
              .field("frequencyInfo", &UtraTddServingCellMeasurement::setFrequencyInfo),
          Describe<EUtraServingCellMeasurement>("EUtraServingCellMeasurement")
              .made<>()
              .field("nwMeasurement", &EUtraServingCellMeasurement::setNwMeasurement)
              .field("timingAdvance", &EUtraServingCellMeasurement::setTimingAdvance)
              .field("frequencyInfo", &EUtraServingCellMeasurement::setFrequencyInfo),
          Describe<CdmaServingCellMeasurement>("CdmaServingCellMeasurement")
              .made<>()
              .field("nwMeasurement", &CdmaServingCellMeasurement::setNwMeasurement)
              .field("frequencyInfo", &CdmaServingCellMeasurement::setFrequencyInfo)};
}

std::vector<SchemaClass> positions() {
  return {Describe<PositionEstimate>("PositionEstimate")
              .made<>()
              .field("timeStamp", &PositionEstimate::setTimeStamp)
              .field("latitude", &PositionEstimate::setLatitude)
              .field("longitude", &PositionEstimate::setLongitude)
              .field("horizontalCepUncertainty", &PositionEstimate::setHorizontalCepUncertainty)
              .field("horizontalAccuracy", &PositionEstimate::setHorizontalAccuracy)
              .field("majorAxis", &PositionEstimate::setMajorAxis)
              .field("minorAxis", &PositionEstimate::setMinorAxis)
              .field("angle", &PositionEstimate::setAngle)
              .field("altitude", &PositionEstimate::setAltitude)
              .field("altitudeUncertainty", &PositionEstimate::setAltitudeUncertainty)
              .field("altitudeAccuracy", &PositionEstimate::setAltitudeAccuracy)
              .field("speed", &PositionEstimate::setSpeed)
              .field("speedUncertainty", &PositionEstimate::setSpeedUncertainty)
              .field("course", &PositionEstimate::setCourse)
              .field("courseUncertainty", &PositionEstimate::setCourseUncertainty)
              .field("floorId", &PositionEstimate::setFloorId)
              .field("buildingId", &PositionEstimate::setBuildingId)
              .field("technology", &PositionEstimate::setTechnology)
              .field("source", &PositionEstimate::setSource)
              .field("measurementId", &PositionEstimate::setMeasurementId),
          Describe<GnssMeasurementData>("GnssMeasurementData")
              .made<>()
              .made<const Coverage&>()
              .field("coverage", &GnssMeasurementData::setCoverage)
              .field("speed", &GnssMeasurementData::setSpeed)
              .field("speedUncertainty", &GnssMeasurementData::setSpeedUncertainty)
              .field("course", &GnssMeasurementData::setCourse)
              .field("courseUncertainty", &GnssMeasurementData::setCourseUncertainty),
          Describe<Coverage>("Coverage")
              .made<>()
              .made<int, int, float>()
              .made<int, int, unsigned int, unsigned int, float>()
              .field("latitude", &Coverage::setLatitude)
              .field("longitude", &Coverage::setLongitude)
              .field("majorAxis", &Coverage::setMajorAxis)
              .field("minorAxis", &Coverage::setMinorAxis)
              .field("angle", &Coverage::setAngle)
              .field("altitude", &Coverage::setAltitude)
              .field("altitudeUncertainty", &Coverage::setAltitudeUncertainty)
              .field("horizontalCepUncertainty", &Coverage::setHorizontalCepUncertainty),
          Describe<Area>("Area")
              .made<>()
              .made<const Coverage&>()
              .made<int, int, unsigned int, unsigned int, float>()
              .field("latitude", &Area::setLatitude)
              .field("longitude", &Area::setLongitude)
              .field("majorAxis", &Area::setMajorAxis)
              .field("minorAxis", &Area::setMinorAxis)
              .field("angle", &Area::setAngle)
              .field("altitude", &Area::setAltitude)
              .field("altitudeUncertainty", &Area::setAltitudeUncertainty)};
}

std::vector<SchemaClass> wlanRecords() {
  return {Describe<WlanApMeasurement>("WlanApMeasurement")
              .made<>()
              .field("ssid", &WlanApMeasurement::setSsid)
              .field("rxLevel", &WlanApMeasurement::setRxLevel)
              .field("txLevel", &WlanApMeasurement::setTxLevel)
              .field("rssi", &WlanApMeasurement::setRssi)
              .field("distance", &WlanApMeasurement::setDistance)
              .field("distanceUncertainty", &WlanApMeasurement::setDistanceUncertainty)
              .field("band", &WlanApMeasurement::setBand)
              .field("apLatitude", &WlanApMeasurement::setApLatitude)
              .field("apLongitude", &WlanApMeasurement::setApLongitude),
          Describe<WlanDn>("WlanDn")
              .made<>()
              .made<unsigned long long>()
              .field<unsigned long long>("bssid", &WlanDn::setBssid)
              .field("bytes", setBssidBytes)};
}

}  // namespace

std::vector<SchemaClass> recordClasses() {
  std::vector<SchemaClass> classes;
  for (const auto& group : {cellNames(), frequencyInfos(), nwMeasurements(),
                            servingCellMeasurements(), positions(), wlanRecords()}) {
    classes.insert(classes.end(), group.begin(), group.end());
  }
  return classes;
}

}  // namespace trelvo::test
