#include <gtest/gtest.h>
#include <trelvo/Symmetric2by2Matrix.h>
#include <trelvo/Symmetric4by4Matrix.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <type_traits>

#include "tests/geometry/Matrices.h"
#include "tests/geometry/Ulps.h"

namespace trelvo {
namespace {

#include "tests/reference/ellipse_reference.inc"

using test::elements;
using test::Elements4;
using test::kInfinity;
using test::kNaN;
using test::sameElements;

using Matrix = Symmetric4by4Matrix;

static_assert(std::has_virtual_destructor_v<Matrix>);
static_assert(std::is_nothrow_copy_assignable_v<Matrix>);

constexpr Elements4 kCounting = {1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0, 9.0, 10.0};
constexpr Elements4 kZeros = {};

// Where the entries of the upper triangle stand in the packing.
constexpr unsigned int kPlaces[4][4] = {{0, 1, 3, 4}, {1, 2, 5, 6}, {3, 5, 7, 8}, {4, 6, 8, 9}};

Matrix matrixOf(const Elements4& e) {
  return {e[0], e[1], e[2], e[3], e[4], e[5], e[6], e[7], e[8], e[9]};
}

Matrix counting() { return matrixOf(kCounting); }

// A covariance-like matrix with strong diagonal blocks and a symmetric block between them.
Elements4 randomElements(test::Uniform& uniform) {
  Elements4 e;
  for (double& element : e) element = uniform(-1.0, 1.0);
  for (unsigned int i : {0u, 2u, 7u, 9u}) e[i] = std::fabs(e[i]) + 4.0;
  e[5] = e[4];
  return e;
}

double largest(const Elements4& e) {
  double found = 0.0;
  for (double element : e) found = std::max(found, std::fabs(element));
  return found;
}

TEST(Symmetric4by4Matrix, StartsWithZeros) { EXPECT_EQ(elements(Matrix()), kZeros); }

TEST(Symmetric4by4Matrix, TakesTenElementsInOrder) { EXPECT_EQ(elements(counting()), kCounting); }

TEST(Symmetric4by4Matrix, CopiesAndAssignsItsElements) {
  const Matrix m = counting();
  const Matrix copy(m);  // NOLINT(performance-unnecessary-copy-initialization)
  Matrix assigned;
  EXPECT_EQ(&(assigned = m), &assigned);
  EXPECT_EQ(elements(copy), kCounting);
  EXPECT_EQ(elements(assigned), kCounting);
  const Matrix& same = assigned;
  assigned = same;
  EXPECT_EQ(elements(assigned), kCounting);
}

TEST(Symmetric4by4Matrix, ClearMakesZeros) {
  Matrix m = counting();
  m[6] = kNaN;
  m.clear();
  EXPECT_EQ(elements(m), kZeros);
}

TEST(Symmetric4by4Matrix, IndexAboveNineGivesElementZero) {
  Matrix m = counting();
  const Matrix& constant = m;
  for (unsigned int index : {10u, 11u, 256u, 0x80000000u, 0xFFFFFFFFu}) {
    EXPECT_EQ(&m[index], &m[0]);
    EXPECT_EQ(&constant[index], &constant[0]);
  }
  EXPECT_NE(&m[9], &m[0]);
}

TEST(Symmetric4by4Matrix, AddsElementByElement) {
  Matrix m = counting();
  EXPECT_EQ(&(m += counting()), &m);
  EXPECT_EQ(elements(m), (Elements4{2.0, 4.0, 6.0, 8.0, 10.0, 12.0, 14.0, 16.0, 18.0, 20.0}));
  m += m;
  EXPECT_EQ(m[9], 40.0);
}

TEST(Symmetric4by4Matrix, DiagonalNonZeroLooksAtElements0And2And7And9) {
  EXPECT_TRUE(counting().diagonalNonZero());
  for (unsigned int i = 0; i < 10; ++i) {
    for (double zero : {0.0, -0.0}) {
      Matrix m = counting();
      m[i] = zero;
      EXPECT_EQ(m.diagonalNonZero(), i != 0 && i != 2 && i != 7 && i != 9) << i;
    }
  }
}

TEST(Symmetric4by4Matrix, DiagonalNonZeroKnowsNoTolerance) {
  Matrix m = counting();
  for (unsigned int i : {0u, 2u, 7u, 9u}) m[i] = 5e-324;
  EXPECT_TRUE(m.diagonalNonZero());
  for (unsigned int i : {0u, 2u, 7u, 9u}) m[i] = kNaN;
  EXPECT_TRUE(m.diagonalNonZero());
}

TEST(Symmetric4by4Matrix, InverseMatchesHighPrecision) {
  for (const BlockRow& row : kBlockRows) {
    Elements4 given, expected;
    std::copy(row.m, row.m + 10, given.begin());
    std::copy(row.inverse, row.inverse + 10, expected.begin());
    Matrix inverse;
    ASSERT_TRUE(inverse.invmat(matrixOf(given)));
    const double bound = row.ulps * 0x1p-52 * largest(expected);
    for (unsigned int i = 0; i < 10; ++i) EXPECT_NEAR(inverse[i], expected[i], bound) << i;
  }
}

TEST(Symmetric4by4Matrix, InverseIsComputedInTheOrderWritten) {
  test::Uniform uniform(50);
  for (int i = 0; i < 1000; ++i) {
    const Matrix m = matrixOf(randomElements(uniform));
    const Symmetric2by2Matrix a(m[0], m[1], m[2]), b(m[3], m[4], m[6]), d(m[7], m[8], m[9]);
    Symmetric2by2Matrix ai, bab, si, u, v;
    ASSERT_TRUE(ai.invmat(a));
    bab.prodmat(ai, b);
    ASSERT_TRUE(si.invmat(d - bab));
    u.prodmat(si, b);
    v.prodmat(u, ai);
    const Symmetric2by2Matrix upper = ai + v;
    const double c00 = ai[0] * b[0] + ai[1] * b[1], c01 = ai[0] * b[1] + ai[1] * b[2];
    const double c10 = ai[1] * b[0] + ai[2] * b[1], c11 = ai[1] * b[1] + ai[2] * b[2];
    Matrix inverse;
    ASSERT_TRUE(inverse.invmat(m));
    ASSERT_TRUE(sameElements(elements(inverse),
                             Elements4{upper[0], upper[1], upper[2], -si[0] * c00 - si[1] * c01,
                                       -si[1] * c00 - si[2] * c01, -si[0] * c10 - si[1] * c11,
                                       -si[1] * c10 - si[2] * c11, si[0], si[1], si[2]}));
  }
}

TEST(Symmetric4by4Matrix, MatrixTimesInverseIsTheUnit) {
  test::Uniform uniform(51);
  for (int n = 0; n < 10000; ++n) {
    const Matrix m = matrixOf(randomElements(uniform));
    Matrix inverse;
    ASSERT_TRUE(inverse.invmat(m));
    for (unsigned int i = 0; i < 4; ++i) {
      for (unsigned int j = 0; j < 4; ++j) {
        double entry = 0.0;
        for (unsigned int k = 0; k < 4; ++k) {
          entry += m[kPlaces[i][k]] * inverse[kPlaces[k][j]];
        }
        ASSERT_NEAR(entry, i == j ? 1.0 : 0.0, 1e-14) << i << ' ' << j;
      }
    }
  }
}

TEST(Symmetric4by4Matrix, InverseOfABlockDiagonalMatrixIsThatOfItsBlocks) {
  Matrix inverse;
  ASSERT_TRUE(inverse.invmat({2.0, 0.0, 4.0, 0.0, 0.0, 0.0, 0.0, 8.0, 0.0, 16.0}));
  EXPECT_EQ(elements(inverse), (Elements4{0.5, 0.0, 0.25, 0.0, 0.0, 0.0, 0.0, 0.125, 0.0, 0.0625}));
}

TEST(Symmetric4by4Matrix, InverseReadsElement4ForElement5) {
  test::Uniform uniform(52);
  for (int i = 0; i < 100; ++i) {
    Elements4 e = randomElements(uniform);
    Matrix equal, different;
    ASSERT_TRUE(equal.invmat(matrixOf(e)));
    e[5] = i % 2 == 0 ? kNaN : e[5] + 1.0;
    ASSERT_TRUE(different.invmat(matrixOf(e)));
    EXPECT_TRUE(sameElements(elements(equal), elements(different)));
  }
}

TEST(Symmetric4by4Matrix, InverseHasFourIndependentEntriesBetweenTheBlocks) {
  Matrix inverse;
  ASSERT_TRUE(inverse.invmat({4.0, 1.0, 3.0, 1.0, 0.5, 0.5, -1.0, 5.0, -1.0, 6.0}));
  EXPECT_NE(inverse[4], inverse[5]);
}

TEST(Symmetric4by4Matrix, SingularUpperLeftBlockIsRefusedAndChangesNothing) {
  Matrix m = counting();
  EXPECT_FALSE(m.invmat({1.0, 1.0, 1.0, 1.0, 0.0, 0.0, 1.0, 1.0, 0.0, 1.0}));
  EXPECT_EQ(elements(m), kCounting);
  // An invertible matrix, but zero in that block.
  EXPECT_FALSE(m.invmat({0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0}));
  EXPECT_EQ(elements(m), kCounting);
}

TEST(Symmetric4by4Matrix, SingularComplementIsRefusedAndChangesNothing) {
  Matrix m = counting();
  // D equals B A^-1 B.
  EXPECT_FALSE(m.invmat({1.0, 0.0, 1.0, 2.0, 0.0, 0.0, 3.0, 4.0, 0.0, 9.0}));
  EXPECT_EQ(elements(m), kCounting);
  EXPECT_FALSE(m.invmat(Matrix()));
  EXPECT_EQ(elements(m), kCounting);
}

TEST(Symmetric4by4Matrix, NearlySingularComplementStopsAtTheAbsoluteThreshold) {
  Matrix m = counting();
  EXPECT_FALSE(m.invmat({1.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 1e-10, 0.0, 0.9e-9}));
  EXPECT_EQ(elements(m), kCounting);
  EXPECT_TRUE(m.invmat({1.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 1e-9, 0.0, 1.1e-10}));
}

TEST(Symmetric4by4Matrix, InvertsInPlace) {
  test::Uniform uniform(53);
  Matrix m = matrixOf(randomElements(uniform));
  Matrix inverse;
  ASSERT_TRUE(inverse.invmat(m));
  ASSERT_TRUE(m.invmat(m));
  EXPECT_TRUE(sameElements(elements(m), elements(inverse)));
}

TEST(Symmetric4by4Matrix, InverseOfNaNOrInfinityIsNaN) {
  for (double odd : {kNaN, kInfinity, -kInfinity}) {
    for (unsigned int i = 0; i < 10; ++i) {
      if (i == 5) continue;  // not read
      test::Uniform uniform(54);
      Elements4 e = randomElements(uniform);
      e[i] = odd;
      Matrix inverse;
      ASSERT_TRUE(inverse.invmat(matrixOf(e)));
      const Elements4 result = elements(inverse);
      EXPECT_TRUE(std::any_of(result.begin(), result.end(), [](double x) { return std::isnan(x); }))
          << odd << " in element " << i;
    }
  }
}

}  // namespace
}  // namespace trelvo
