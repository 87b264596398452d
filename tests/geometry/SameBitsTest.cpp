// Results that pass through no function of the C library's are the same on every processor, to the
// last bit: no fused multiply-add, no extended precision, no other order of operations.

#include <gtest/gtest.h>
#include <trelvo/Midpoint.h>
#include <trelvo/ShapeMatrix.h>
#include <trelvo/StateEstimate.h>
#include <trelvo/Symmetric4by4Matrix.h>
#include <trelvo/schema/Utility.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>

namespace trelvo {
namespace {

#include "tests/reference/bits_reference.inc"

using schema::Utility;

static_assert(std::numeric_limits<double>::is_iec559 && std::numeric_limits<float>::is_iec559);

ShapeMatrix shapeOf(const double (&e)[3]) { return {e[0], e[1], e[2]}; }

std::uint64_t bitsOf(double number) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &number, sizeof bits);
  return bits;
}

bool sameBits(double a, double b) { return bitsOf(a) == bitsOf(b); }

template <class Matrix, std::size_t N>
bool sameBits(const Matrix& matrix, const double (&expected)[N]) {
  for (unsigned int i = 0; i < N; ++i) {
    if (!sameBits(matrix[i], expected[i])) return false;
  }
  return true;
}

TEST(SameBits, OfTheInverseOf2By2) {
  for (const InverseBits& row : kInverses) {
    ShapeMatrix inverse;
    ASSERT_TRUE(inverse.invmat(shapeOf(row.m)));
    EXPECT_TRUE(sameBits(inverse, row.inverse)) << row.m[0];
  }
}

TEST(SameBits, OfTheTripleProduct) {
  for (const ProductBits& row : kProducts) {
    ShapeMatrix product;
    product.prodmat(shapeOf(row.a), shapeOf(row.b));
    EXPECT_TRUE(sameBits(product, row.product)) << row.a[0];
  }
}

TEST(SameBits, OfTheInverseOf4By4) {
  for (const Inverse4Bits& row : kInverses4) {
    Symmetric4by4Matrix m, inverse;
    for (unsigned int i = 0; i < 10; ++i) m[i] = row.m[i];
    ASSERT_TRUE(inverse.invmat(m));
    EXPECT_TRUE(sameBits(inverse, row.inverse)) << row.m[0];
  }
}

TEST(SameBits, OfDistancesInStandardDeviations) {
  for (const DistanceBits& row : kDistances) {
    const ShapeMatrix s1 = shapeOf(row.s1), s2 = shapeOf(row.s2);
    EXPECT_TRUE(sameBits(Utility::squaredDistance(row.lat1, row.lon1, row.lat2, row.lon2, s1),
                         row.toPoint));
    EXPECT_TRUE(sameBits(
        Utility::mDistance(Midpoint(row.lat1, row.lon1), s1, Midpoint(row.lat2, row.lon2), s2),
        row.between));
  }
}

TEST(SameBits, OfAMeasurementsWeight) {
  unsigned int changed = 0;
  for (const WeightBits& row : kWeights) {
    ShapeMatrix shape = shapeOf(row.m);
    const StateEstimate state(row.state[0], row.state[1], row.state[2], row.state[3]);
    ASSERT_TRUE(
        shape.reweightMeasurement(Midpoint(row.mLat, row.mLon), state, row.timeStep, 1.5, 40.0));
    EXPECT_TRUE(sameBits(shape, row.reweighted)) << row.mLat;
    changed += sameBits(shape, row.m) ? 0 : 1;
  }
  EXPECT_GT(changed, std::size(kWeights) / 2);
}

TEST(SameBits, OfAnglesInDegreesAndRadians) {
  for (const AngleBits& row : kAngles) {
    EXPECT_TRUE(sameBits(Utility::toRadians(row.degrees), row.inRadians)) << row.degrees;
    EXPECT_TRUE(sameBits(Utility::toDegrees(static_cast<float>(row.radians)), row.inDegrees))
        << row.radians;
  }
}

TEST(SameBits, OfCoordinatesAndTheirCodes) {
  for (const CodeBits& row : kCodes) {
    EXPECT_TRUE(sameBits(Utility::wgs84Latitude(row.code), row.latitude)) << row.code;
    EXPECT_TRUE(sameBits(Utility::wgs84Longitude(row.code), row.longitude)) << row.code;
    EXPECT_LE(row.code - Utility::latitude(row.latitude), 1) << row.code;
    EXPECT_GE(row.code, Utility::latitude(row.latitude));
  }
}

}  // namespace
}  // namespace trelvo
