#pragma once

#include <trelvo/schema/EUtraCellMeasurement.h>
#include <trelvo/schema/GeranCellMeasurement.h>
#include <trelvo/schema/MeasurementContainer.h>
#include <trelvo/schema/UtraFddCellMeasurement.h>

#include "tools/trelvo/HeardCell.h"
#include "tools/trelvo/ImportTarget.h"

namespace trelvo::tool {

// What differs between the radio networks: the classes, and where the values of a cell go.
// setDn() leaves the network codes to dnOf(), as they go the same way everywhere; setHeard() is for
// what a serving cell and a neighbour have alike, setNeighbour() and setServing() for the rest.

struct GsmRadio {
  using Cell = schema::GeranCellMeasurement;
  using Serving = schema::GeranServingCellMeasurement;
  using Nw = schema::GeranNwMeasurement;
  using Dn = schema::GeranCellDn;
  static constexpr CellRadio kRadio = CellRadio::Gsm;
  static constexpr auto kAdd = &schema::MeasurementContainer::addGeranMeasurement;

  static void setDn(Dn& dn, const HeardCell& cell);
  static void setNeighbour(Nw& nw, const HeardCell& cell);
  static void setHeard(Nw& nw, const HeardCell& cell);
  static void setServing(Serving& serving, const HeardCell& cell);
};

struct WcdmaRadio {
  using Cell = schema::UtraFddCellMeasurement;
  using Serving = schema::UtraFddServingCellMeasurement;
  using Nw = schema::UtraFddNwMeasurement;
  using Dn = schema::UtraCellDn;
  static constexpr CellRadio kRadio = CellRadio::Wcdma;
  static constexpr auto kAdd = &schema::MeasurementContainer::addUtraFddMeasurement;

  static void setDn(Dn& dn, const HeardCell& cell);
  static void setNeighbour(Nw& nw, const HeardCell& cell);
  static void setHeard(Nw& nw, const HeardCell& cell);
  static void setServing(Serving& serving, const HeardCell& cell);
};

struct LteRadio {
  using Cell = schema::EUtraCellMeasurement;
  using Serving = schema::EUtraServingCellMeasurement;
  using Nw = schema::EUtraNwMeasurement;
  using Dn = schema::EUtraCellDn;
  static constexpr CellRadio kRadio = CellRadio::Lte;
  static constexpr auto kAdd = &schema::MeasurementContainer::addEUtraMeasurement;

  static void setDn(Dn& dn, const HeardCell& cell);
  static void setNeighbour(Nw& nw, const HeardCell& cell);
  static void setHeard(Nw& nw, const HeardCell& cell);
  static void setServing(Serving& serving, const HeardCell& cell);
};

/// The identity of a cell; without a field when the cell has none.
template <class Radio>
gom::SharedPointer<typename Radio::Dn> dnOf(const HeardCell& cell) {
  auto dn = made(Radio::Dn::create());
  if (cell.mcc) dn->setMcc(static_cast<unsigned short>(*cell.mcc));
  if (cell.mnc) dn->setMnc(static_cast<unsigned short>(*cell.mnc));
  Radio::setDn(*dn, cell);
  return dn;
}

/// What was heard of a cell as the serving one; without a field when that is nothing.
template <class Radio>
gom::SharedPointer<typename Radio::Serving> servingOf(const HeardCell& cell) {
  auto serving = made(Radio::Serving::create());
  const auto nw = made(Radio::Nw::create());
  Radio::setHeard(*nw, cell);
  if (!nw->isEmpty()) serving->setNwMeasurement(nw);
  Radio::setServing(*serving, cell);
  return serving;
}

}  // namespace trelvo::tool
