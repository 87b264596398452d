#include "tools/trelvo/LevelHistogram.h"

#include <trelvo/schema/EUtraNwMeasurement.h>
#include <trelvo/schema/EUtraServingCellMeasurement.h>
#include <trelvo/schema/GeranNwMeasurement.h>
#include <trelvo/schema/GeranServingCellMeasurement.h>
#include <trelvo/schema/UtraFddNwMeasurement.h>
#include <trelvo/schema/UtraFddServingCellMeasurement.h>
#include <trelvo/schema/UtraTddNwMeasurement.h>
#include <trelvo/schema/UtraTddServingCellMeasurement.h>
#include <trelvo/schema/WlanApMeasurement.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>

#include "tools/trelvo/RadioLevels.h"

namespace trelvo::tool {
namespace {

using Count = std::function<void(LevelKind, std::optional<double>)>;

constexpr std::array<LevelKindInfo, kLevelKinds> kKinds = {{
    {"WLAN level", "dBm", 5},
    {"GERAN RXLEV", "dBm", 5},
    {"UTRA FDD RSCP", "dBm", 5},
    {"UTRA TDD RSCP", "dBm", 5},
    {"E-UTRA RSRP", "dBm", 5},
    {"E-UTRA RSRQ", "dB", 1},
}};

void countLevels(const schema::WlanApMeasurement& heard, const Count& count) {
  if (heard.valueExists(schema::WlanApMeasurement::HasRxLevel)) {
    count(LevelKind::Wlan, heard.rxLevel());
  }
}

void countLevels(const schema::GeranNwMeasurement& heard, const Count& count) {
  if (heard.valueExists(schema::GeranNwMeasurement::HasRxLevel)) {
    count(LevelKind::Geran, levelValue(LevelScale::GeranRxLev, heard.rxLevel()));
  }
}

void countLevels(const schema::UtraFddNwMeasurement& heard, const Count& count) {
  if (heard.valueExists(schema::UtraFddNwMeasurement::HasRscp)) {
    count(LevelKind::UtraFdd, levelValue(LevelScale::UtraFddRscp, heard.rscp()));
  }
}

void countLevels(const schema::UtraTddNwMeasurement& heard, const Count& count) {
  if (heard.valueExists(schema::UtraTddNwMeasurement::HasRscp)) {
    count(LevelKind::UtraTdd, levelValue(LevelScale::UtraTddRscp, heard.rscp()));
  }
}

void countLevels(const schema::EUtraNwMeasurement& heard, const Count& count) {
  if (heard.valueExists(schema::EUtraNwMeasurement::HasRsrp)) {
    count(LevelKind::EUtraRsrp, levelValue(LevelScale::EUtraRsrp, heard.rsrp()));
  }
  if (heard.valueExists(schema::EUtraNwMeasurement::HasRsrq)) {
    count(LevelKind::EUtraRsrq, levelValue(LevelScale::EUtraRsrq, heard.rsrq()));
  }
}

template <class Serving>
void countInner(const Serving& serving, const Count& count) {
  if (const auto heard = serving.nwMeasurement()) {
    countLevels(*heard, count);
  }
}

/// Counts the levels of `record` when it is of the class that `count` takes.
template <class Record>
void countIf(const gom::ObjectBase& record, void (*countRecord)(const Record&, const Count&),
             const Count& count) {
  if (const auto* known = dynamic_cast<const Record*>(&record)) {
    countRecord(*known, count);
  }
}

}  // namespace

const LevelKindInfo& levelKind(LevelKind kind) { return kKinds[static_cast<std::size_t>(kind)]; }

void LevelHistogram::add(double level) {
  const double inside = std::clamp(level, double{kLowest}, double{kLowest + kSize - 1});
  m_lowest = m_total == 0 ? inside : std::min(m_lowest, inside);
  m_highest = m_total == 0 ? inside : std::max(m_highest, inside);
  ++m_total;
  ++m_bins[index(begin(inside))];
}

int LevelHistogram::begin(double level) const {
  return static_cast<int>(std::floor(level / m_step)) * m_step;
}

LevelHistograms::LevelHistograms()
    : m_histograms{LevelHistogram(kKinds[0].step), LevelHistogram(kKinds[1].step),
                   LevelHistogram(kKinds[2].step), LevelHistogram(kKinds[3].step),
                   LevelHistogram(kKinds[4].step), LevelHistogram(kKinds[5].step)} {}

void LevelHistograms::add(const gom::ObjectBase& record) {
  const Count count = [this](LevelKind kind, std::optional<double> level) {
    if (level) {
      m_histograms[static_cast<std::size_t>(kind)].add(*level);
    }
  };
  countIf<schema::WlanApMeasurement>(record, countLevels, count);
  countIf<schema::GeranNwMeasurement>(record, countLevels, count);
  countIf<schema::UtraFddNwMeasurement>(record, countLevels, count);
  countIf<schema::UtraTddNwMeasurement>(record, countLevels, count);
  countIf<schema::EUtraNwMeasurement>(record, countLevels, count);
  countIf<schema::GeranServingCellMeasurement>(record, countInner, count);
  countIf<schema::UtraFddServingCellMeasurement>(record, countInner, count);
  countIf<schema::UtraTddServingCellMeasurement>(record, countInner, count);
  countIf<schema::EUtraServingCellMeasurement>(record, countInner, count);
}

}  // namespace trelvo::tool
