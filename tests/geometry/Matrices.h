#pragma once

#include <trelvo/Symmetric2by2Matrix.h>
#include <trelvo/Symmetric4by4Matrix.h>

#include <array>
#include <cmath>

#include "tests/geometry/Ulps.h"

namespace trelvo::test {

using Elements2 = std::array<double, 3>;
using Elements4 = std::array<double, 10>;

inline Elements2 elements(const Symmetric2by2Matrix& m) { return {m[0], m[1], m[2]}; }

inline Elements4 elements(const Symmetric4by4Matrix& m) {
  return {m[0], m[1], m[2], m[3], m[4], m[5], m[6], m[7], m[8], m[9]};
}

/// Bit for bit the same, signs of zeros too; every NaN is alike.
template <std::size_t N>
bool sameElements(const std::array<double, N>& a, const std::array<double, N>& b) {
  for (std::size_t i = 0; i < N; ++i) {
    if (!sameOutcome(a[i], b[i])) return false;
  }
  return true;
}

inline bool sameElements(const Symmetric2by2Matrix& m, const Elements2& expected) {
  return sameElements(elements(m), expected);
}

/// A covariance of deviations between 10^low and 10^high, correlated by up to `correlation`.
inline Elements2 randomCovariance(Uniform& uniform, double low, double high, double correlation) {
  const double s = std::pow(10.0, uniform(low, high));
  const double t = std::pow(10.0, uniform(low, high));
  return {s * s, uniform(-correlation, correlation) * s * t, t * t};
}

template <class Matrix>
Matrix matrixOf(const Elements2& e) {
  return {e[0], e[1], e[2]};
}

}  // namespace trelvo::test
