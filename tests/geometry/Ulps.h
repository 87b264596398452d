#pragma once

#include <cmath>
#include <limits>
#include <random>

namespace trelvo::test {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// How many units in the last place of `expected` lie between the two.
inline double ulpsBetween(double value, double expected) {
  const double magnitude = std::fabs(expected);
  return std::fabs(value - expected) / (std::nextafter(magnitude, kInfinity) - magnitude);
}

/// Bit for bit the same outcome: equal with equal signs, or both NaN.
inline bool sameOutcome(double a, double b) {
  if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b);
  return a == b && std::signbit(a) == std::signbit(b);
}

/// The same sequence of numbers with every standard library.
class Uniform {
 public:
  explicit Uniform(std::mt19937_64::result_type seed) : m_engine(seed) {}

  double operator()(double low, double high) {
    return low + (high - low) * (static_cast<double>(m_engine() >> 11) * 0x1p-53);
  }

  unsigned long long bits() { return m_engine(); }

 private:
  std::mt19937_64 m_engine;
};

}  // namespace trelvo::test
