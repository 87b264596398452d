#include "objects/Saturate.h"

#include <gtest/gtest.h>

#include <cmath>

#include "Ulps.h"

namespace trelvo {
namespace {

using test::kInfinity;
using test::kNaN;

static_assert(saturate<int>(1e10) == 2147483647, "usable in constant expressions");
static_assert(saturate<unsigned int>(-3.0f) == 0, "usable in constant expressions");

TEST(Saturate, TruncatesTowardZero) {
  EXPECT_EQ(saturate<int>(2.999), 2);
  EXPECT_EQ(saturate<int>(-2.999), -2);
  EXPECT_EQ(saturate<int>(-0.999), 0);
  EXPECT_EQ(saturate<unsigned int>(7.5f), 7u);
  EXPECT_EQ(saturate<unsigned long long>(0.999), 0u);
}

TEST(Saturate, NaNGivesZero) {
  EXPECT_EQ(saturate<int>(kNaN), 0);
  EXPECT_EQ(saturate<unsigned int>(kNaN), 0u);
  EXPECT_EQ(saturate<unsigned long long>(kNaN), 0u);
  EXPECT_EQ(saturate<int>(std::nanf("")), 0);
}

TEST(Saturate, InfinitiesGiveTheEnds) {
  EXPECT_EQ(saturate<int>(kInfinity), 2147483647);
  EXPECT_EQ(saturate<int>(-kInfinity), -2147483647 - 1);
  EXPECT_EQ(saturate<unsigned int>(kInfinity), 0xFFFFFFFFu);
  EXPECT_EQ(saturate<unsigned int>(-kInfinity), 0u);
  EXPECT_EQ(saturate<unsigned long long>(kInfinity), 0xFFFFFFFFFFFFFFFFull);
  EXPECT_EQ(saturate<unsigned long long>(-kInfinity), 0ull);
}

TEST(Saturate, IntStopsAtBothEnds) {
  EXPECT_EQ(saturate<int>(2147483646.999), 2147483646);
  EXPECT_EQ(saturate<int>(2147483647.0), 2147483647);
  EXPECT_EQ(saturate<int>(2147483647.5), 2147483647);
  EXPECT_EQ(saturate<int>(2147483648.0), 2147483647);
  EXPECT_EQ(saturate<int>(-2147483647.5), -2147483647);
  EXPECT_EQ(saturate<int>(-2147483648.0), -2147483647 - 1);
  EXPECT_EQ(saturate<int>(-2147483648.5), -2147483647 - 1);
  EXPECT_EQ(saturate<int>(-1e300), -2147483647 - 1);
}

TEST(Saturate, IntFromSinglePrecisionStopsAtBothEnds) {
  EXPECT_EQ(saturate<int>(2147483520.0f), 2147483520);
  EXPECT_EQ(saturate<int>(2147483648.0f), 2147483647);
  EXPECT_EQ(saturate<int>(-2147483648.0f), -2147483647 - 1);
  EXPECT_EQ(saturate<int>(-2147483904.0f), -2147483647 - 1);
}

TEST(Saturate, UnsignedStopsAtBothEnds) {
  EXPECT_EQ(saturate<unsigned int>(4294967295.0), 4294967295u);
  EXPECT_EQ(saturate<unsigned int>(4294967295.5), 4294967295u);
  EXPECT_EQ(saturate<unsigned int>(4294967296.0), 4294967295u);
  EXPECT_EQ(saturate<unsigned int>(-0.5), 0u);
  EXPECT_EQ(saturate<unsigned int>(-1.0), 0u);
}

TEST(Saturate, UnsignedLongLongStopsAtBothEnds) {
  EXPECT_EQ(saturate<unsigned long long>(9223372036854775808.0), 9223372036854775808ull);
  EXPECT_EQ(saturate<unsigned long long>(18446744073709549568.0), 18446744073709549568ull);
  EXPECT_EQ(saturate<unsigned long long>(18446744073709551616.0), 18446744073709551615ull);
  EXPECT_EQ(saturate<unsigned long long>(-1e300), 0ull);
}

TEST(Saturate, SmallAndSignedWideTypesStopAtTheirEnds) {
  EXPECT_EQ(saturate<unsigned char>(255.9), 255);
  EXPECT_EQ(saturate<unsigned char>(256.0), 255);
  EXPECT_EQ(saturate<signed char>(-128.9), -128);
  EXPECT_EQ(saturate<signed char>(-129.0f), -128);
  EXPECT_EQ(saturate<long long>(9223372036854775808.0), 9223372036854775807ll);
  EXPECT_EQ(saturate<long long>(-1e19), -9223372036854775807ll - 1);
}

}  // namespace
}  // namespace trelvo
