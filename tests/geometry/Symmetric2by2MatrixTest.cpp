#include <gtest/gtest.h>
#include <trelvo/Symmetric2by2Matrix.h>

#include <algorithm>
#include <cmath>
#include <type_traits>

#include "tests/geometry/Matrices.h"
#include "tests/geometry/Ulps.h"

namespace trelvo {
namespace {

#include "tests/reference/ellipse_reference.inc"

using test::elements;
using test::Elements2;
using test::kInfinity;
using test::kNaN;
using test::sameElements;
using test::ulpsBetween;

using Matrix = Symmetric2by2Matrix;

static_assert(std::has_virtual_destructor_v<Matrix>);
static_assert(std::is_nothrow_copy_constructible_v<Matrix>);
static_assert(std::is_nothrow_copy_assignable_v<Matrix>);
static_assert(noexcept(std::declval<Matrix&>().invmat(std::declval<const Matrix&>())));

Matrix random(test::Uniform& uniform) {
  return {uniform(-2.0, 2.0), uniform(-2.0, 2.0), uniform(-2.0, 2.0)};
}

TEST(Symmetric2by2Matrix, StartsWithZeros) {
  EXPECT_EQ(elements(Matrix()), (Elements2{0.0, 0.0, 0.0}));
}

TEST(Symmetric2by2Matrix, CopiesAndAssignsItsElements) {
  const Matrix m(1.0, 2.0, 3.0);
  const Matrix copy(m);  // NOLINT(performance-unnecessary-copy-initialization)
  Matrix assigned;
  EXPECT_EQ(&(assigned = m), &assigned);
  EXPECT_EQ(elements(copy), (Elements2{1.0, 2.0, 3.0}));
  EXPECT_EQ(elements(assigned), (Elements2{1.0, 2.0, 3.0}));
}

TEST(Symmetric2by2Matrix, AssigningItselfKeepsTheElements) {
  Matrix m(1.0, 2.0, 3.0);
  const Matrix& same = m;
  m = same;
  EXPECT_EQ(elements(m), (Elements2{1.0, 2.0, 3.0}));
}

TEST(Symmetric2by2Matrix, ClearMakesZeros) {
  Matrix m(1.0, kNaN, kInfinity);
  m.clear();
  EXPECT_EQ(elements(m), (Elements2{0.0, 0.0, 0.0}));
}

TEST(Symmetric2by2Matrix, IndexFromThreeUpGivesElementZero) {
  Matrix m(1.0, 2.0, 3.0);
  const Matrix& constant = m;
  for (unsigned int index : {3u, 4u, 255u, 256u, 0x80000000u, 0xFFFFFFFFu}) {
    EXPECT_EQ(&m[index], &m[0]);
    EXPECT_EQ(&constant[index], &constant[0]);
  }
  m[3] = 5.0;
  EXPECT_EQ(elements(m), (Elements2{5.0, 2.0, 3.0}));
}

TEST(Symmetric2by2Matrix, DeterminantAndTrace) {
  EXPECT_EQ(Matrix(2.0, 3.0, 5.0).det(), 1.0);
  EXPECT_EQ(Matrix(2.0, 3.0, 5.0).trace(), 7.0);
  EXPECT_EQ(Matrix(1.0, 1.0, 1.0).det(), 0.0);
  EXPECT_TRUE(std::isnan(Matrix(kInfinity, kInfinity, 1.0).det()));
  EXPECT_TRUE(std::isnan(Matrix(kInfinity, 0.0, -kInfinity).trace()));
}

TEST(Symmetric2by2Matrix, InverseMatchesHighPrecision) {
  for (const InverseRow& row : kInverseRows) {
    Matrix inverse;
    ASSERT_TRUE(inverse.invmat({row.m[0], row.m[1], row.m[2]}));
    for (unsigned int i = 0; i < 3; ++i) {
      EXPECT_LE(ulpsBetween(inverse[i], row.inverse[i]), row.ulps) << row.m[0] << ", element " << i;
    }
  }
}

TEST(Symmetric2by2Matrix, InverseIsComputedInTheOrderWritten) {
  test::Uniform uniform(40);
  for (int i = 0; i < 10000; ++i) {
    const Matrix m = random(uniform);
    const double r = 1.0 / (m[0] * m[2] - m[1] * m[1]);
    Matrix inverse;
    ASSERT_TRUE(inverse.invmat(m));
    ASSERT_TRUE(sameElements(inverse, {m[2] * r, -(m[1] * r), m[0] * r}));
  }
}

TEST(Symmetric2by2Matrix, MatrixTimesInverseIsTheUnit) {
  test::Uniform uniform(41);
  for (int i = 0; i < 10000; ++i) {
    const Elements2 e = test::randomCovariance(uniform, -3.0, 0.0, 0.9);
    const Matrix m(e[0], e[1], e[2]);
    Matrix inverse;
    ASSERT_TRUE(inverse.invmat(m));
    const Matrix unit = m * inverse;
    // The lower left entry, which the product drops.
    const double lowerLeft = m[1] * inverse[0] + m[2] * inverse[1];
    const double stretch = std::sqrt(std::max(e[0] / e[2], e[2] / e[0]));
    EXPECT_NEAR(unit[0], 1.0, 1e-14);
    EXPECT_NEAR(unit[1], 0.0, 1e-14 * stretch);
    EXPECT_NEAR(lowerLeft, 0.0, 1e-14 * stretch);
    EXPECT_NEAR(unit[2], 1.0, 1e-14);
  }
}

TEST(Symmetric2by2Matrix, InverseOfTheUnitHasANegativeZero) {
  Matrix inverse;
  EXPECT_TRUE(inverse.invmat({1.0, 0.0, 1.0}));
  EXPECT_TRUE(sameElements(inverse, {1.0, -0.0, 1.0}));
}

TEST(Symmetric2by2Matrix, DeterminantBelowTheThresholdIsRefusedAndChangesNothing) {
  const double below = std::nextafter(1e-19, 0.0);
  for (double det : {0.5e-19, -0.5e-19, below, -below, 0.0, -0.0, 5e-324}) {
    Matrix target(1.0, 2.0, 3.0);
    EXPECT_FALSE(target.invmat({det, 0.0, 1.0})) << det;
    EXPECT_EQ(elements(target), (Elements2{1.0, 2.0, 3.0}));
  }
  Matrix target(1.0, 2.0, 3.0);
  EXPECT_FALSE(target.invmat({1e-3, 1e-3, 1e-3}));
  EXPECT_EQ(elements(target), (Elements2{1.0, 2.0, 3.0}));
}

TEST(Symmetric2by2Matrix, DeterminantOfExactlyTheThresholdInverts) {
  for (double det : {1e-19, -1e-19}) {
    Matrix inverse;
    EXPECT_TRUE(inverse.invmat({det, 0.0, 1.0}));
    EXPECT_TRUE(sameElements(inverse, {1.0 / det, -(0.0 * (1.0 / det)), det * (1.0 / det)}));
  }
}

TEST(Symmetric2by2Matrix, ThresholdIsAbsolute) {
  Matrix inverse;
  EXPECT_FALSE(inverse.invmat({1e-10, 0.0, 0.9e-9})) << "a perfectly conditioned matrix";
  EXPECT_TRUE(inverse.invmat({1e10, 0.0, 1e-28})) << "a badly conditioned one";
}

TEST(Symmetric2by2Matrix, NaNAndInfinityCountAsInvertible) {
  for (const Matrix& m : {Matrix(kNaN, 0.0, 1.0), Matrix(1.0, kNaN, 1.0), Matrix(1.0, 0.0, kNaN),
                          Matrix(kInfinity, kInfinity, 1.0)}) {
    Matrix inverse;
    EXPECT_TRUE(inverse.invmat(m));
    for (unsigned int i = 0; i < 3; ++i) EXPECT_TRUE(std::isnan(inverse[i]));
  }
  Matrix inverse;
  EXPECT_TRUE(inverse.invmat({kInfinity, 0.0, 1.0}));
  EXPECT_TRUE(sameElements(inverse, {0.0, -0.0, kNaN}));
}

TEST(Symmetric2by2Matrix, InvertsInPlace) {
  Matrix m(2.0, 0.0, 4.0);
  EXPECT_TRUE(m.invmat(m));
  EXPECT_EQ(elements(m), (Elements2{0.5, 0.0, 0.25}));
}

TEST(Symmetric2by2Matrix, ProductsMatchHighPrecision) {
  for (const ProductRow& row : kProductRows) {
    const Matrix a(row.a[0], row.a[1], row.a[2]);
    const Matrix b(row.b[0], row.b[1], row.b[2]);
    Matrix congruence;
    congruence.prodmat(a, b);
    const Matrix product = a * b;
    for (unsigned int i = 0; i < 3; ++i) {
      EXPECT_LE(ulpsBetween(congruence[i], row.congruence[i]), row.ulps);
      EXPECT_LE(ulpsBetween(product[i], row.product[i]), row.ulps);
    }
  }
}

TEST(Symmetric2by2Matrix, ProductsAreComputedInTheOrderWritten) {
  test::Uniform uniform(42);
  for (int i = 0; i < 10000; ++i) {
    const Matrix a = random(uniform), b = random(uniform);
    const double a0 = a[0], a1 = a[1], a2 = a[2], b0 = b[0], b1 = b[1], b2 = b[2];
    Matrix congruence;
    congruence.prodmat(a, b);
    ASSERT_TRUE(
        sameElements(congruence, {a0 * (b0 * b0) + 2.0 * b0 * b1 * a1 + a2 * (b1 * b1),
                                  a0 * b1 * b0 + a1 * (b1 * b1) + a1 * b0 * b2 + a2 * b2 * b1,
                                  a2 * (b2 * b2) + 2.0 * b1 * b2 * a1 + a0 * (b1 * b1)}));
    ASSERT_TRUE(sameElements(a * b, {a0 * b0 + a1 * b1, a0 * b1 + a1 * b2, a1 * b1 + a2 * b2}));
  }
}

TEST(Symmetric2by2Matrix, ProductDropsTheLowerLeftEntry) {
  // (1 2; 2 3) (5 7; 7 11) = (19 29; 31 47)
  EXPECT_EQ(elements(Matrix(1.0, 2.0, 3.0) * Matrix(5.0, 7.0, 11.0)),
            (Elements2{19.0, 29.0, 47.0}));
  EXPECT_EQ(elements(Matrix(5.0, 7.0, 11.0) * Matrix(1.0, 2.0, 3.0)),
            (Elements2{19.0, 31.0, 47.0}));
}

TEST(Symmetric2by2Matrix, CongruenceOfOneMatrixIsItsCube) {
  const Matrix m(1.0, 2.0, 3.0);
  Matrix cube;
  cube.prodmat(m, m);
  EXPECT_EQ(elements(cube), (Elements2{21.0, 34.0, 55.0}));
}

TEST(Symmetric2by2Matrix, CongruenceWritesEachElementAsSoonAsItIsComputed) {
  const Matrix b(5.0, 7.0, 11.0);
  Matrix m(1.0, 2.0, 3.0);
  m.prodmat(m, b);  // not for use: later elements see the earlier ones changed
  const double e0 = 1.0 * 25.0 + 2.0 * 5.0 * 7.0 * 2.0 + 3.0 * 49.0;
  const double e1 = e0 * 7.0 * 5.0 + 2.0 * 49.0 + 2.0 * 5.0 * 11.0 + 3.0 * 11.0 * 7.0;
  const double e2 = 3.0 * 121.0 + 2.0 * 7.0 * 11.0 * e1 + e0 * 49.0;
  EXPECT_EQ(elements(m), (Elements2{e0, e1, e2}));
}

TEST(Symmetric2by2Matrix, AddsAndSubtractsElementByElement) {
  const Matrix a(1.0, 2.0, 3.0), b(10.0, 30.0, 50.0);
  EXPECT_EQ(elements(a + b), (Elements2{11.0, 32.0, 53.0}));
  EXPECT_EQ(elements(a - b), (Elements2{-9.0, -28.0, -47.0}));
  Matrix m(a);
  EXPECT_EQ(&(m += b), &m);
  EXPECT_EQ(elements(m), (Elements2{11.0, 32.0, 53.0}));
  EXPECT_EQ(&(m -= b), &m);
  EXPECT_EQ(elements(m), (Elements2{1.0, 2.0, 3.0}));
}

TEST(Symmetric2by2Matrix, AddsAndSubtractsItself) {
  Matrix m(1.0, 2.0, 3.0);
  const Matrix& same = m;
  m += same;
  EXPECT_EQ(elements(m), (Elements2{2.0, 4.0, 6.0}));
  m -= same;
  EXPECT_EQ(elements(m), (Elements2{0.0, 0.0, 0.0}));
}

TEST(Symmetric2by2Matrix, ScalesEveryElement) {
  Matrix m(1.0, -2.0, 3.0);
  EXPECT_EQ(elements(m * 2.0), (Elements2{2.0, -4.0, 6.0}));
  EXPECT_EQ(elements(m / 2.0), (Elements2{0.5, -1.0, 1.5}));
  EXPECT_EQ(elements(m), (Elements2{1.0, -2.0, 3.0}));
  EXPECT_EQ(&(m *= 2.0), &m);
  EXPECT_EQ(elements(m), (Elements2{2.0, -4.0, 6.0}));
  EXPECT_EQ(&(m /= 4.0), &m);
  EXPECT_EQ(elements(m), (Elements2{0.5, -1.0, 1.5}));
}

TEST(Symmetric2by2Matrix, DividesInsteadOfMultiplyingByTheReciprocal) {
  const Matrix m(1.0, 5.0, 7.0);
  EXPECT_EQ(elements(m / 49.0), (Elements2{1.0 / 49.0, 5.0 / 49.0, 7.0 / 49.0}));
  EXPECT_NE((m / 49.0)[1], 5.0 * (1.0 / 49.0));
}

TEST(Symmetric2by2Matrix, DividingByZeroChangesNothing) {
  for (double zero : {0.0, -0.0}) {
    Matrix m(1.0, -0.0, kInfinity);
    EXPECT_TRUE(sameElements(m / zero, {1.0, -0.0, kInfinity}));
    m /= zero;
    EXPECT_TRUE(sameElements(m, {1.0, -0.0, kInfinity}));
  }
  EXPECT_EQ((Matrix(5e-324, 0.0, 1.0) / 5e-324)[0], 1.0) << "exactly zero only";
}

TEST(Symmetric2by2Matrix, NaNAndInfinityGoThroughTheArithmetic) {
  const Matrix m(kNaN, kInfinity, 1.0);
  EXPECT_TRUE(sameElements(m + Matrix(1.0, 1.0, 1.0), {kNaN, kInfinity, 2.0}));
  EXPECT_TRUE(sameElements(m - m, {kNaN, kNaN, 0.0}));
  EXPECT_TRUE(sameElements(m * 0.0, {kNaN, kNaN, 0.0}));
  EXPECT_TRUE(sameElements(m / kInfinity, {kNaN, kNaN, 0.0}));
  EXPECT_TRUE(sameElements(m / kNaN, {kNaN, kNaN, kNaN}));
  EXPECT_TRUE(sameElements(m * Matrix(1.0, 0.0, 1.0), {kNaN, kNaN, kNaN}));
  Matrix congruence;
  congruence.prodmat(Matrix(1.0, 0.0, 1.0), m);
  EXPECT_TRUE(sameElements(congruence, {kNaN, kNaN, kNaN}));
}

TEST(Symmetric2by2Matrix, DumpDoesNothing) {
  const Matrix m(1.0, 2.0, 3.0);
  m.dump();
  EXPECT_EQ(elements(m), (Elements2{1.0, 2.0, 3.0}));
}

}  // namespace
}  // namespace trelvo
