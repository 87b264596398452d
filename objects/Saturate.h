#pragma once

#include <limits>
#include <type_traits>

namespace trelvo {

/// Converts a floating point number to an integer in one way on every processor: truncates toward
/// zero, stops at the ends of `To`, and gives 0 for a NaN.
///
/// A plain cast is undefined outside the range of `To`, and processors disagree there.
template <class To, class From>
constexpr To saturate(From value) noexcept {
  static_assert(std::is_integral_v<To> && std::is_floating_point_v<From>);
  constexpr To kMin = std::numeric_limits<To>::min();
  constexpr To kMax = std::numeric_limits<To>::max();
  // The first whole number above the range is a power of two and exact in From; kMax need not be.
  constexpr To kHalf = kMax / 2 + 1;
  constexpr From kEnd = static_cast<From>(kHalf) * 2;

  if (value >= kEnd) return kMax;
  if (value > static_cast<From>(kMin)) return static_cast<To>(value);
  return value <= static_cast<From>(kMin) ? kMin : To{0};
}

}  // namespace trelvo
