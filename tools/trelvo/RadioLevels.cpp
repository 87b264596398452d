#include "tools/trelvo/RadioLevels.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace trelvo::tool {
namespace {

constexpr std::array<LevelScaleInfo, 7> kScales = {{
    // scale, name, field, document, unit, step, codes, where the open ends begin
    {LevelScale::GeranRxLev, "RXLEV", "rxLevel", "TS 45.008", "dBm", 1.0, 0, 63, -110.0, -48.0},
    {LevelScale::UtraFddRscp, "CPICH RSCP", "rscp", "TS 25.133", "dBm", 1.0, -5, 91, -120.0, -25.0},
    {LevelScale::UtraFddEcNo, "CPICH Ec/No", "ecNo", "TS 25.133", "dB", 0.5, 0, 49, -24.0, 0.0},
    {LevelScale::UtraCarrierRssi, "UTRA carrier RSSI", "utraCarrierRssi", "TS 25.133", "dBm", 1.0,
     0, 76, -100.0, -25.0},
    {LevelScale::UtraTddRscp, "P-CCPCH RSCP", "rscp", "TS 25.123", "dBm", 1.0, 0, 91, -115.0,
     -25.0},
    {LevelScale::EUtraRsrp, "RSRP", "rsrp", "TS 36.133", "dBm", 1.0, 0, 97, -140.0, -44.0},
    {LevelScale::EUtraRsrq, "RSRQ", "rsrq", "TS 36.133", "dB", 0.5, 0, 34, -19.5, -3.0},
}};

constexpr bool rowsAreConsistent() {
  for (std::size_t i = 0; i < kScales.size(); ++i) {
    const LevelScaleInfo& row = kScales[i];
    const double end = row.lowest + row.step * (row.highestCode - row.lowestCode - 1);
    if (row.scale != static_cast<LevelScale>(i) || end != row.highest) {
      return false;
    }
  }
  return true;
}
static_assert(rowsAreConsistent(), "a scale stands out of order, or its ends and steps disagree");

bool hasCode(const LevelScaleInfo& row, int code) {
  return code >= row.lowestCode && code <= row.highestCode;
}

double stepBegin(const LevelScaleInfo& row, int code) {
  return row.lowest + row.step * (code - row.lowestCode - 1);
}

std::string number(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", value);
  return text;
}

}  // namespace

const std::array<LevelScaleInfo, 7>& levelScales() { return kScales; }

const LevelScaleInfo& levelScale(LevelScale scale) {
  return kScales[static_cast<std::size_t>(scale)];
}

std::optional<int> levelCode(LevelScale scale, double value) {
  if (!std::isfinite(value)) {
    return std::nullopt;
  }
  const LevelScaleInfo& row = levelScale(scale);
  const double inside = std::clamp(value, row.lowest - row.step, row.highest);
  const int code =
      row.lowestCode + 1 + static_cast<int>(std::floor((inside - row.lowest) / row.step));
  // The division can round a value a hair below a step up to it.
  return inside < stepBegin(row, code) ? code - 1 : code;
}

LevelRange levelRange(LevelScale scale, int code) {
  const LevelScaleInfo& row = levelScale(scale);
  LevelRange range;
  if (hasCode(row, code) && code > row.lowestCode) {
    range.from = stepBegin(row, code);
  }
  if (hasCode(row, code) && code < row.highestCode) {
    range.below = stepBegin(row, code + 1);
  }
  return range;
}

std::optional<double> levelValue(LevelScale scale, int code) {
  const LevelScaleInfo& row = levelScale(scale);
  return hasCode(row, code) ? std::optional<double>(stepBegin(row, code)) : std::nullopt;
}

std::string levelText(LevelScale scale, int code) {
  const LevelScaleInfo& row = levelScale(scale);
  const LevelRange range = levelRange(scale, code);
  if (!range.exists()) {
    return std::string("no code of ") + row.document;
  }
  if (!range.from) {
    return "below " + number(*range.below) + " " + row.unit;
  }
  if (!range.below) {
    return number(*range.from) + " " + row.unit + " or above";
  }
  return number(*range.from) + " to " + number(*range.below) + " " + row.unit;
}

}  // namespace trelvo::tool
