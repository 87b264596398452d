#pragma once

#include <trelvo/Export.h>

namespace trelvo {

/// A symmetric 4 by 4 matrix in ten numbers: the covariance of a StateEstimate, packed by blocks of
/// 2 by 2 and not by rows.
///
///                      latitude  longitude   latitude rate  longitude rate
///   latitude           0         1           3              4
///   longitude          1         2           5              6
///   latitude rate      3         5           7              8
///   longitude rate     4         6           8              9
///
/// So 0, 1, 2 are the upper left block A and 7, 8, 9 the lower right block D, both in the order of
/// a Symmetric2by2Matrix; 3, 4, 5, 6 are the upper right block by rows; the diagonal is 0, 2, 7, 9.
///
/// Nothing is checked; infinities and NaN go through the arithmetic. Rounding as in
/// Symmetric2by2Matrix.
///
/// A plain value: allocates nothing, throws nothing. Threads: any number may read one matrix;
/// changing it takes one alone.
class TRELVO_EXPORT Symmetric4by4Matrix {
 public:
  /// All elements 0.0.
  Symmetric4by4Matrix() noexcept = default;
  /// Elements 0 to 9.
  Symmetric4by4Matrix(double element0, double element1, double element2, double element3,
                      double element4, double element5, double element6, double element7,
                      double element8, double element9) noexcept
      : m_elements{element0, element1, element2, element3, element4,
                   element5, element6, element7, element8, element9} {}
  Symmetric4by4Matrix(const Symmetric4by4Matrix& other) noexcept = default;
  virtual ~Symmetric4by4Matrix() = default;

  Symmetric4by4Matrix& operator=(const Symmetric4by4Matrix& other) noexcept = default;

  /// Makes all elements 0.0.
  void clear() noexcept;

  /// Whether the whole diagonal (0, 2, 7, 9) differs from 0.0, without any tolerance. A NaN
  /// differs.
  bool diagonalNonZero() const noexcept;

  /// The element, writable. An index above 9 gives element 0.
  double& operator[](unsigned int index) noexcept {
    return m_elements[index < kElementCount ? index : 0];
  }
  /// The same for reading.
  const double& operator[](unsigned int index) const noexcept {
    return m_elements[index < kElementCount ? index : 0];
  }

  /// Element by element.
  Symmetric4by4Matrix& operator+=(const Symmetric4by4Matrix& other) noexcept;

  /// Becomes the inverse of `m`, which may be this matrix, by blocks: with B the symmetric block of
  /// elements 3, 4, 6,
  ///
  ///   S = D - B A^-1 B,  lower right S^-1,  upper left A^-1 + A^-1 B S^-1 B A^-1,
  ///   upper right -A^-1 B S^-1, which has four independent entries.
  ///
  /// Element 5 of `m` is not read: element 4 stands for both off-diagonal entries of B. Where the
  /// two differ, the result is the inverse of another matrix than `m`.
  ///
  /// @return false, with this matrix unchanged, where the determinant of A or of S is below 1e-19
  ///         (absolute; see Symmetric2by2Matrix::invmat()). An invertible matrix whose block A is
  ///         singular is refused, too.
  ///
  /// Rounding: about the condition number of `m` times 2.2e-16 of the largest element.
  /// Source: I. Schur, 1917 (complement); T. Banachiewicz, 1937 (inverse by blocks).
  bool invmat(const Symmetric4by4Matrix& m) noexcept;

 private:
  static constexpr unsigned char kElementCount = 10;

  double m_elements[kElementCount] = {};
  unsigned char m_elementCount = kElementCount;
};

}  // namespace trelvo
