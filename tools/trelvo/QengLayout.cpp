#include "tools/trelvo/QengLayout.h"

#include <algorithm>
#include <iterator>

namespace trelvo::tool {

namespace {

using C = QengColumn;

constexpr CellRadio kGsm = CellRadio::Gsm;
constexpr CellRadio kWcdma = CellRadio::Wcdma;
constexpr CellRadio kLte = CellRadio::Lte;
constexpr auto kAny = std::nullopt;

// The columns' names are those of the modem's own manual.
constexpr QengLayout kLayouts[] = {
    // is_tdd, MCC, MNC, cellID, PCID, earfcn, band, UL and DL bandwidth, TAC, RSRP, RSRQ, RSSI,
    // SINR, srxlev
    {"servingcell",
     kLte,
     kAny,
     {C::Other, C::Mcc, C::Mnc, C::CellId, C::Code, C::Channel, C::Other, C::Other, C::Other,
      C::Area, C::Level, C::Quality}},
    // MCC, MNC, LAC, cellID, uarfcn, PSC, RAC, RSCP, ecio, and the physical channel
    {"servingcell",
     kWcdma,
     kAny,
     {C::Mcc, C::Mnc, C::Area, C::CellId, C::Channel, C::Code, C::Other, C::Level, C::Quality}},
    // MCC, MNC, LAC, cellID, bsic, arfcn, band, rxlev, and the idle mode and traffic channel
    {"servingcell",
     kGsm,
     kAny,
     {C::Mcc, C::Mnc, C::Area, C::CellId, C::Code, C::Channel, C::Other, C::Level}},
    // earfcn, PCID, RSRQ, RSRP, RSSI, SINR, srxlev, thresholds
    {"neighbourcell intra", kLte, kAny, {C::Channel, C::Code, C::Quality, C::Level}},
    {"neighbourcell inter", kLte, kAny, {C::Channel, C::Code, C::Quality, C::Level}},
    // uarfcn, priority, two thresholds, PSC, RSCP, ecno, srxlev
    {"neighbourcell",
     kWcdma,
     kLte,
     {C::Channel, C::Other, C::Other, C::Other, C::Code, C::Level, C::Quality}},
    // arfcn, priority, two thresholds, ncc_permitted, band, bsic, rssi, srxlev
    {"neighbourcell",
     kGsm,
     kLte,
     {C::Channel, C::Other, C::Other, C::Other, C::Other, C::Other, C::Code, C::Level}},
    // uarfcn, srxqual, PSC, RSCP, ecno, set, rank, srxlev
    {"neighbourcell",
     kWcdma,
     kWcdma,
     {C::Channel, C::Other, C::Code, C::Level, C::Quality, C::Other, C::Other, C::Other}},
    // earfcn, PCID, RSRP, RSRQ, srxlev
    {"neighbourcell", kLte, kWcdma, {C::Channel, C::Code, C::Level, C::Quality}},
    // MCC, MNC, LAC, cellID, bsic, arfcn, rxlev, c1, c2, c31, c32
    {"neighbourcell",
     kGsm,
     kGsm,
     {C::Mcc, C::Mnc, C::Area, C::CellId, C::Code, C::Channel, C::Level}},
    // uarfcn, PSC, RSCP, ecno
    {"neighbourcell", kWcdma, kGsm, {C::Channel, C::Code, C::Level, C::Quality}},
    // earfcn, PCID, RSRP, RSRQ
    {"neighbourcell", kLte, kGsm, {C::Channel, C::Code, C::Level, C::Quality}},
};

}  // namespace

size_t QengLayout::size() const {
  return static_cast<size_t>(std::find(columns.begin(), columns.end(), C::End) - columns.begin());
}

const QengLayout* qengLayout(std::string_view kind, CellRadio radio,
                             const std::optional<CellRadio>& servingRadio) {
  const auto* const found =
      std::find_if(std::begin(kLayouts), std::end(kLayouts), [&](const QengLayout& layout) {
        return layout.kind == kind && layout.radio == radio &&
               (!layout.whileOn || layout.whileOn == servingRadio);
      });
  return found == std::end(kLayouts) ? nullptr : found;
}

std::optional<CellRadio> qengRadio(std::string_view name) {
  if (name == "GSM") return kGsm;
  if (name == "WCDMA") return kWcdma;
  if (name == "LTE") return kLte;
  return std::nullopt;
}

}  // namespace trelvo::tool
