#pragma once

#include <cmath>

#include <trelvo/Symmetric2by2Matrix.h>

// The arithmetic of symmetric 2 by 2 matrices, for all sources of this folder to inline. It stays
// out of the public headers: there a program's own compiler flags would decide how it rounds.

namespace trelvo::geometry {

/// The upper triangle of a symmetric 2 by 2 matrix.
struct Packed2by2 {
  double e0 = 0.0;
  double e1 = 0.0;
  double e2 = 0.0;
};

inline Packed2by2 packed(const Symmetric2by2Matrix& m) noexcept { return {m[0], m[1], m[2]}; }

inline Packed2by2 sum(const Packed2by2& a, const Packed2by2& b) noexcept {
  return {a.e0 + b.e0, a.e1 + b.e1, a.e2 + b.e2};
}

inline double determinant(const Packed2by2& m) noexcept { return m.e0 * m.e2 - m.e1 * m.e1; }

/// @return false, with `inverse` unchanged, below the absolute threshold. A NaN passes.
inline bool invert(const Packed2by2& m, Packed2by2& inverse) noexcept {
  constexpr double kSingular = 1e-19;
  const double det = determinant(m);
  if (std::fabs(det) < kSingular) return false;
  const double r = 1.0 / det;
  inverse = {m.e2 * r, -(m.e1 * r), m.e0 * r};
  return true;
}

// The three elements of b a b.
inline double congruence0(const Packed2by2& a, const Packed2by2& b) noexcept {
  return a.e0 * (b.e0 * b.e0) + 2.0 * b.e0 * b.e1 * a.e1 + a.e2 * (b.e1 * b.e1);
}

inline double congruence1(const Packed2by2& a, const Packed2by2& b) noexcept {
  return a.e0 * b.e1 * b.e0 + a.e1 * (b.e1 * b.e1) + a.e1 * b.e0 * b.e2 + a.e2 * b.e2 * b.e1;
}

inline double congruence2(const Packed2by2& a, const Packed2by2& b) noexcept {
  return a.e2 * (b.e2 * b.e2) + 2.0 * b.e1 * b.e2 * a.e1 + a.e0 * (b.e1 * b.e1);
}

inline Packed2by2 congruence(const Packed2by2& a, const Packed2by2& b) noexcept {
  return {congruence0(a, b), congruence1(a, b), congruence2(a, b)};
}

}  // namespace trelvo::geometry
