#include <trelvo/schema/CdmaCellMeasurement.h>
#include <trelvo/schema/EUtraCellMeasurement.h>
#include <trelvo/schema/GeranCellMeasurement.h>
#include <trelvo/schema/GnssMeasurement.h>
#include <trelvo/schema/MeasurementContainer.h>
#include <trelvo/schema/UtraFddCellMeasurement.h>
#include <trelvo/schema/UtraTddCellMeasurement.h>
#include <trelvo/schema/WlanMeasurement.h>

#include "tests/golden/SchemaClass.h"

namespace trelvo::test {

using namespace schema;  // NOLINT(google-build-using-namespace): a table of its classes

namespace {

/// What the cellular measurements of all technologies have.
template <class Measurement, class Dn, class NwMeasurement>
Describe<Measurement> cellMeasurement(const char* name) {
  return Describe<Measurement>(name)
      .template made<>()
      .template made<Handle<Dn>, unsigned int>()
      .field("dn", &Measurement::setDn)
      .field("timeStamp", &Measurement::setTimeStamp)
      .field("servingCellMeasurement", &Measurement::setServingCellMeasurement)
      .field("nwMeasurementCollection", &Measurement::setNwMeasurementCollection)
      .template member<const Handle<NwMeasurement>&>("nwMeasurement",
                                                     &Measurement::addNwMeasurement);
}

}  // namespace

std::vector<SchemaClass> measurementClasses() {
  using Fdd = UtraFddCellMeasurement;
  using Tdd = UtraTddCellMeasurement;
  using Container = MeasurementContainer;
  return {
      cellMeasurement<GeranCellMeasurement, GeranCellDn, GeranNwMeasurement>(
          "GeranCellMeasurement"),
      cellMeasurement<Fdd, UtraCellDn, UtraFddNwMeasurement>("UtraFddCellMeasurement")
          .field("unreliableStateTimeStamp", &Fdd::setUnreliableStateTimeStamp),
      cellMeasurement<Tdd, UtraCellDn, UtraTddNwMeasurement>("UtraTddCellMeasurement")
          .field("unreliableStateTimeStamp", &Tdd::setUnreliableStateTimeStamp),
      cellMeasurement<EUtraCellMeasurement, EUtraCellDn, EUtraNwMeasurement>(
          "EUtraCellMeasurement"),
      cellMeasurement<CdmaCellMeasurement, CdmaCellDn, CdmaNwMeasurement>("CdmaCellMeasurement"),
      Describe<WlanMeasurement>("WlanMeasurement")
          .made<>()
          .made<Handle<WlanDn>, unsigned int>()
          .field("dn", &WlanMeasurement::setDn)
          .field("timeStamp", &WlanMeasurement::setTimeStamp)
          .field("elapsedRealtimeTimeStamp", &WlanMeasurement::setElapsedRealtimeTimeStamp)
          .field("wlanApMeasurement", &WlanMeasurement::setWlanApMeasurement),
      Describe<GnssMeasurement>("GnssMeasurement")
          .made<>()
          .made<unsigned int, Handle<GnssMeasurementData>>()
          .field("timeStamp", &GnssMeasurement::setTimeStamp)
          .field("measurementData", &GnssMeasurement::setMeasurementData),
      Describe<gom::ValueCollection>("ValueCollection").made<>(),
      Describe<Container>("MeasurementContainer")
          .made<>()
          .field("measurementId", &Container::setMeasurementId)
          .field("geranMeasurementCollection", &Container::setGeranMeasurementCollection)
          .field("utraFddMeasurementCollection", &Container::setUtraFddMeasurementCollection)
          .field("utraTddMeasurementCollection", &Container::setUtraTddMeasurementCollection)
          .field("eUtraMeasurementCollection", &Container::setEUtraMeasurementCollection)
          .field("cdmaMeasurementCollection", &Container::setCdmaMeasurementCollection)
          .field("wlanMeasurementCollection", &Container::setWlanMeasurementCollection)
          .field("gnssMeasurementCollection", &Container::setGnssMeasurementCollection)
          .member("geranMeasurement", &Container::addGeranMeasurement)
          .member("utraFddMeasurement", &Container::addUtraFddMeasurement)
          .member("utraTddMeasurement", &Container::addUtraTddMeasurement)
          .member("eUtraMeasurement", &Container::addEUtraMeasurement)
          .member("cdmaMeasurement", &Container::addCdmaMeasurement)
          .member("wlanMeasurement", &Container::addWlanMeasurement)
          .member("gnssMeasurement", &Container::addGnssMeasurement)};
}

}  // namespace trelvo::test
