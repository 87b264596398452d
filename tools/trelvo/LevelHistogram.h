#pragma once

#include <trelvo/gom/ObjectBase.h>

#include <array>
#include <cstddef>

namespace trelvo::tool {

/// The levels that are counted, one histogram each.
enum class LevelKind { Wlan, Geran, UtraFdd, UtraTdd, EUtraRsrp, EUtraRsrq };
constexpr std::size_t kLevelKinds = 6;

/// How a kind is called and measured: "E-UTRA RSRP", "dBm".
struct LevelKindInfo {
  const char* name;
  const char* unit;
  int step;  ///< width of a bin, in `unit`
};
const LevelKindInfo& levelKind(LevelKind kind);

/// How many levels lie in each bin of equal width. A bin begins at a multiple of the step and holds
/// its beginning; codes count by the beginning of their range.
class LevelHistogram {
 public:
  explicit LevelHistogram(int step) : m_step(step) {}

  /// Counts a level from -150 to 149.
  void add(double level);

  unsigned long long total() const { return m_total; }
  double lowest() const { return m_lowest; }
  double highest() const { return m_highest; }

  /// The beginnings of the first and the last bin that hold something; total() must not be 0.
  int first() const { return begin(m_lowest); }
  int last() const { return begin(m_highest); }
  int step() const { return m_step; }

  /// The count of the bin that begins at `level`, a multiple of the step.
  unsigned long long count(int level) const { return m_bins[index(level)]; }

 private:
  static constexpr int kLowest = -150;
  static constexpr int kSize = 300;  // bins of the least width, 1

  int begin(double level) const;
  static std::size_t index(int level) { return static_cast<std::size_t>(level - kLowest); }

  int m_step;
  unsigned long long m_total = 0;
  double m_lowest = 0.0;
  double m_highest = 0.0;
  std::array<unsigned long long, kSize> m_bins = {};
};

/// All histograms of one input.
class LevelHistograms {
 public:
  LevelHistograms();

  /// Counts the levels that a record holds: of an access point, of a cell's network measurement,
  /// and of the one inside a serving cell's. A code that its scale does not have counts nowhere.
  void add(const gom::ObjectBase& record);

  const LevelHistogram& of(LevelKind kind) const {
    return m_histograms[static_cast<std::size_t>(kind)];
  }

 private:
  std::array<LevelHistogram, kLevelKinds> m_histograms;
};

}  // namespace trelvo::tool
