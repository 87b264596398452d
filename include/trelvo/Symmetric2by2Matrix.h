#pragma once

#include <trelvo/Export.h>

namespace trelvo {

/// A symmetric 2 by 2 matrix in three numbers: the covariance of two quantities.
///
///   element 0   row 0, column 0
///   element 1   row 0, column 1, and row 1, column 0
///   element 2   row 1, column 1
///
/// Nothing is checked: a matrix need not be positive definite, and infinities and NaN go through
/// the arithmetic as they go through its single steps. The operations are carried out in the order
/// in which the formulas stand here, without fused multiply-add, so results agree to the last bit
/// on every processor.
///
/// A plain value: allocates nothing, throws nothing. Threads: any number may read one matrix;
/// changing it takes one alone.
class TRELVO_EXPORT Symmetric2by2Matrix {
 public:
  /// All elements 0.0.
  Symmetric2by2Matrix() noexcept = default;
  /// Elements 0, 1, 2.
  Symmetric2by2Matrix(double element0, double element1, double element2) noexcept
      : m_elements{element0, element1, element2} {}
  Symmetric2by2Matrix(const Symmetric2by2Matrix& other) noexcept = default;
  virtual ~Symmetric2by2Matrix() = default;

  Symmetric2by2Matrix& operator=(const Symmetric2by2Matrix& other) noexcept = default;

  /// Makes all elements 0.0.
  void clear() noexcept;

  /// The determinant: (0)(2) - (1)^2. Near a singular matrix the difference cancels and has few
  /// correct digits.
  double det() const noexcept;
  /// The sum of the diagonal: (0) + (2).
  double trace() const noexcept;

  /// The element, writable. An index of 3 or more gives element 0.
  double& operator[](unsigned int index) noexcept {
    return m_elements[index < kElementCount ? index : 0];
  }
  /// The same for reading.
  const double& operator[](unsigned int index) const noexcept {
    return m_elements[index < kElementCount ? index : 0];
  }

  /// Becomes the inverse of `m`, which may be this matrix: (m2 r, -(m1 r), m0 r), r = 1 / det m.
  ///
  /// @return false, with this matrix unchanged, where |det m| is below 1e-19. The threshold is
  ///         absolute: it fits covariances in squared degrees, where 1e-19 is the determinant of a
  ///         circle with a standard deviation of 2 m. A matrix of other units wants scaling
  ///         first. A NaN determinant passes, and the inverse is then NaN.
  ///
  /// Rounding: an element errs by (3 + (|m0 m2| + m1^2) / |det m|) 1.1e-16 of itself at most. For a
  /// covariance that is 5e-16 without a correlation, and 1.2e-14 with one of 0.99.
  /// Source: G. Cramer, 1750 (rule of determinants).
  bool invmat(const Symmetric2by2Matrix& m) noexcept;

  /// Becomes the congruence b a b, which is symmetric again:
  ///
  ///   element 0 = a0 b0^2 + 2 b0 b1 a1 + a2 b1^2
  ///   element 1 = a0 b1 b0 + a1 b1^2 + a1 b0 b2 + a2 b2 b1
  ///   element 2 = a2 b2^2 + 2 b1 b2 a1 + a0 b1^2
  ///
  /// Each element is written as soon as it is computed, so this must be neither `a` nor `b`; those
  /// two may be the same.
  void prodmat(const Symmetric2by2Matrix& a, const Symmetric2by2Matrix& b) noexcept;

  /// Sum and difference, element by element.
  Symmetric2by2Matrix operator+(Symmetric2by2Matrix other) const noexcept;
  Symmetric2by2Matrix operator-(Symmetric2by2Matrix other) const noexcept;
  Symmetric2by2Matrix& operator+=(const Symmetric2by2Matrix& other) noexcept;
  Symmetric2by2Matrix& operator-=(const Symmetric2by2Matrix& other) noexcept;

  /// The upper triangle of the matrix product: ((0)d + (1)e, (0)e + (1)f, (1)e + (2)f), where d, e,
  /// f are `other`.
  ///
  /// The product of two symmetric matrices is symmetric only where they commute. Its lower left
  /// entry is dropped, also where it differs from the upper right one.
  Symmetric2by2Matrix operator*(Symmetric2by2Matrix other) const noexcept;

  /// Every element times `factor`.
  Symmetric2by2Matrix& operator*=(double factor) noexcept;
  Symmetric2by2Matrix operator*(double factor) const noexcept;

  /// Every element divided by `divisor`. Dividing by 0.0 changes nothing.
  Symmetric2by2Matrix& operator/=(double divisor) noexcept;
  Symmetric2by2Matrix operator/(double divisor) const noexcept;

  /// Has no effect.
  void dump() const noexcept {}

 private:
  static constexpr unsigned char kElementCount = 3;

  double m_elements[kElementCount] = {};
  unsigned char m_elementCount = kElementCount;
};

}  // namespace trelvo
