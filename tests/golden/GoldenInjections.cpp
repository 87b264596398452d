#include <trelvo/schema/CdmaNeighborCellInjection.h>
#include <trelvo/schema/CdmaServingCellInjection.h>
#include <trelvo/schema/CellularObjectInjection.h>
#include <trelvo/schema/EUtraNeighborCellInjection.h>
#include <trelvo/schema/EUtraServingCellInjection.h>
#include <trelvo/schema/GeranNeighborCellInjection.h>
#include <trelvo/schema/GeranServingCellInjection.h>
#include <trelvo/schema/GnssInjection.h>
#include <trelvo/schema/Injection.h>
#include <trelvo/schema/UtraFddNeighborCellInjection.h>
#include <trelvo/schema/UtraFddServingCellInjection.h>
#include <trelvo/schema/UtraTddNeighborCellInjection.h>
#include <trelvo/schema/UtraTddServingCellInjection.h>
#include <trelvo/schema/WlanInjection.h>

#include "tests/golden/SchemaClass.h"

namespace trelvo::test {

using namespace schema;  // NOLINT(google-build-using-namespace): a table of its classes

namespace {

/// What the serving cell injections of all technologies have.
template <class Injection, class Dn>
Describe<Injection> servingCellInjection(const char* name) {
  return Describe<Injection>(name)
      .template made<>()
      .template made<Handle<Dn>, unsigned int>()
      .field("dn", &Injection::setDn)
      .field("timeStamp", &Injection::setTimeStamp)
      .field("servingCellMeasurement", &Injection::setServingCellMeasurement)
      .field("source", &Injection::setSource)
      .field("coverage", &Injection::setCoverage)
      .field("neighborCellInjectionCollection", &Injection::setNeighborCellInjectionCollection)
      .member("neighborCellInjection", &Injection::addNeighborCellInjection);
}

/// What the neighbour cell injections of all technologies have.
template <class Injection, class FrequencyInfo>
Describe<Injection> neighborCellInjection(const char* name) {
  return Describe<Injection>(name)
      .template made<>()
      .template made<Handle<FrequencyInfo>>()
      .field("frequencyInfo", &Injection::setFrequencyInfo)
      .field("neighborCellMeasurement", &Injection::setNeighborCellMeasurement)
      .field("coverage", &Injection::setCoverage);
}

}  // namespace

std::vector<SchemaClass> injectionClasses() {
  using Fdd = UtraFddServingCellInjection;
  using Tdd = UtraTddServingCellInjection;
  return {servingCellInjection<GeranServingCellInjection, GeranCellDn>("GeranServingCellInjection"),
          servingCellInjection<Fdd, UtraCellDn>("UtraFddServingCellInjection")
              .field("unreliableStateTimeStamp", &Fdd::setUnreliableStateTimeStamp),
          servingCellInjection<Tdd, UtraCellDn>("UtraTddServingCellInjection")
              .field("unreliableStateTimeStamp", &Tdd::setUnreliableStateTimeStamp),
          servingCellInjection<EUtraServingCellInjection, EUtraCellDn>("EUtraServingCellInjection"),
          servingCellInjection<CdmaServingCellInjection, CdmaCellDn>("CdmaServingCellInjection"),
          neighborCellInjection<GeranNeighborCellInjection, GeranFrequencyInfo>(
              "GeranNeighborCellInjection"),
          neighborCellInjection<UtraFddNeighborCellInjection, UtraFddFrequencyInfo>(
              "UtraFddNeighborCellInjection"),
          neighborCellInjection<UtraTddNeighborCellInjection, UtraTddFrequencyInfo>(
              "UtraTddNeighborCellInjection"),
          neighborCellInjection<EUtraNeighborCellInjection, EUtraFrequencyInfo>(
              "EUtraNeighborCellInjection"),
          neighborCellInjection<CdmaNeighborCellInjection, CdmaFrequencyInfo>(
              "CdmaNeighborCellInjection"),
          Describe<CellularObjectInjection>("CellularObjectInjection")
              .made<>()
              .field("timeStamp", &CellularObjectInjection::setTimeStamp)
              .field("coverage", &CellularObjectInjection::setCoverage),
          Describe<WlanInjection>("WlanInjection")
              .made<>()
              .made<Handle<WlanDn>, unsigned int, Handle<Area>>()
              .field("dn", &WlanInjection::setDn)
              .field("timeStamp", &WlanInjection::setTimeStamp)
              .field("wlanApMeasurement", &WlanInjection::setWlanApMeasurement)
              .field("coverage", &WlanInjection::setCoverage),
          Describe<GnssInjection>("GnssInjection")
              .made<>()
              .made<unsigned int, Handle<GnssMeasurementData>>()
              .field("timeStamp", &GnssInjection::setTimeStamp)
              .field("gnssMeasurementData", &GnssInjection::setGnssMeasurementData),
          Describe<Injection>("Injection")
              .made<>()
              .field("measurementId", &Injection::setMeasurementId)
              .field("geranInjectionCollection", &Injection::setGeranInjectionCollection)
              .field("utraFddInjectionCollection", &Injection::setUtraFddInjectionCollection)
              .field("utraTddInjectionCollection", &Injection::setUtraTddInjectionCollection)
              .field("eUtraInjectionCollection", &Injection::setEUtraInjectionCollection)
              .field("cdmaInjectionCollection", &Injection::setCdmaInjectionCollection)
              .field("wlanInjectionCollection", &Injection::setWlanInjectionCollection)
              .field("gnssInjectionCollection", &Injection::setGnssInjectionCollection)
              .field("cellularObjectInjectionCollection",
                     &Injection::setCellularObjectInjectionCollection)
              .member("geranInjection", &Injection::addGeranInjection)
              .member("utraFddInjection", &Injection::addUtraFddInjection)
              .member("utraTddInjection", &Injection::addUtraTddInjection)
              .member("eUtraInjection", &Injection::addEUtraInjection)
              .member("cdmaInjection", &Injection::addCdmaInjection)
              .member("wlanInjection", &Injection::addWlanInjection)
              .member("gnssInjection", &Injection::addGnssInjection)
              .member("cellularObjectInjection", &Injection::addCellularObjectInjection)};
}

}  // namespace trelvo::test
