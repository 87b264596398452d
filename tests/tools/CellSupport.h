#pragma once

#include <gtest/gtest.h>
#include <trelvo/gom/ValueCollection.h>
#include <trelvo/schema/EUtraCellMeasurement.h>
#include <trelvo/schema/GeranCellMeasurement.h>
#include <trelvo/schema/UtraFddCellMeasurement.h>

#include <iterator>
#include <optional>

namespace trelvo::tool {

/// The neighbour at `index` of a cell measurement is equal to `expected`.
template <class Cell, class Nw>
void expectNeighbour(const Cell& cell, unsigned int index, const Nw& expected) {
  const auto list = cell.nwMeasurementCollection();
  ASSERT_TRUE(list);
  ASSERT_LT(index, list->count());
  gom::SharedPointer<gom::ObjectBase> found;
  ASSERT_EQ((*std::next(list->first(), index))->getObjectValue(found), StatusOk);
  EXPECT_TRUE(expected.compare(found.get())) << index;
}

inline schema::GeranNwMeasurement geran(std::optional<unsigned short> arfcn,
                                        std::optional<unsigned char> bsic,
                                        std::optional<unsigned char> rxLevel) {
  schema::GeranNwMeasurement nw;
  const auto info = schema::GeranFrequencyInfo::create();
  if (arfcn) info->setArfcn(*arfcn);
  if (bsic) info->setBsic(*bsic);
  nw.setFrequencyInfo(info);
  if (rxLevel) nw.setRxLevel(*rxLevel);
  return nw;
}

inline schema::UtraFddNwMeasurement utra(std::optional<unsigned short> uarfcn,
                                         std::optional<unsigned short> pcpich,
                                         std::optional<signed char> rscp,
                                         std::optional<unsigned char> ecNo) {
  schema::UtraFddNwMeasurement nw;
  const auto info = schema::UtraFddFrequencyInfo::create();
  if (uarfcn) info->setUarfcnDl(*uarfcn);
  if (pcpich) info->setPcpich(*pcpich);
  nw.setFrequencyInfo(info);
  if (rscp) nw.setRscp(*rscp);
  if (ecNo) nw.setEcNo(*ecNo);
  return nw;
}

inline schema::EUtraNwMeasurement eutra(std::optional<unsigned short> earfcn,
                                        std::optional<unsigned short> pci,
                                        std::optional<unsigned char> rsrp,
                                        std::optional<unsigned char> rsrq) {
  schema::EUtraNwMeasurement nw;
  const auto info = schema::EUtraFrequencyInfo::create();
  if (earfcn) info->setEarfcn(*earfcn);
  if (pci) info->setPci(*pci);
  nw.setFrequencyInfo(info);
  if (rsrp) nw.setRsrp(*rsrp);
  if (rsrq) nw.setRsrq(*rsrq);
  return nw;
}

}  // namespace trelvo::tool
