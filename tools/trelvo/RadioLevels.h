#pragma once

#include <array>
#include <optional>
#include <string>

namespace trelvo::tool {

/// The measured quantities that cells report as codes.
enum class LevelScale {
  GeranRxLev,
  UtraFddRscp,
  UtraFddEcNo,
  UtraCarrierRssi,
  UtraTddRscp,
  EUtraRsrp,
  EUtraRsrq,
};

/// One scale: equal steps between two open ends. The lowest code means everything below `lowest`,
/// the highest everything from `highest` up; each code between them covers one step, its lower end
/// included.
struct LevelScaleInfo {
  LevelScale scale;
  const char* name;      ///< as the document calls it
  const char* field;     ///< the record field that holds the code
  const char* document;  ///< where the mapping is fixed
  const char* unit;      ///< "dBm" or "dB"
  double step;           ///< width of one code in `unit`
  int lowestCode;
  int highestCode;
  double lowest;   ///< where the lowest code ends, in `unit`
  double highest;  ///< where the highest code begins, in `unit`
};

/// All scales, in the order of LevelScale. This table is the only place that knows the mappings.
const std::array<LevelScaleInfo, 7>& levelScales();

/// The row of one scale.
const LevelScaleInfo& levelScale(LevelScale scale);

/// The levels that one code stands for: from `from` up to but not including `below`. The end that
/// the scale leaves open is empty. A code that the scale does not have leaves both empty.
struct LevelRange {
  std::optional<double> from;
  std::optional<double> below;

  /// Whether the code belongs to the scale.
  bool exists() const { return from || below; }
};

/// The code for `value` in the scale's unit (dBm or dB), always one of the scale's codes: the end
/// codes take everything beyond the ends. Empty for a NaN or an infinite value.
std::optional<int> levelCode(LevelScale scale, double value);

/// The levels that `code` stands for.
LevelRange levelRange(LevelScale scale, int code);

/// One level for `code`: where its step begins, for the lowest code one step below its end.
/// levelCode() of it gives `code` again. Empty for a code that the scale does not have.
std::optional<double> levelValue(LevelScale scale, int code);

/// The range in words: "-64 to -63 dBm", "below -110 dBm", "-48 dBm or above", or "no code of TS
/// 45.008" for a code that the scale does not have.
std::string levelText(LevelScale scale, int code);

}  // namespace trelvo::tool
