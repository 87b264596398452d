#include <trelvo/Symmetric2by2Matrix.h>

#include "geometry/Packed2by2.h"

namespace trelvo {

using geometry::packed;
using geometry::Packed2by2;

void Symmetric2by2Matrix::clear() noexcept {
  for (double& element : m_elements) element = 0.0;
}

double Symmetric2by2Matrix::det() const noexcept { return geometry::determinant(packed(*this)); }

double Symmetric2by2Matrix::trace() const noexcept { return m_elements[0] + m_elements[2]; }

bool Symmetric2by2Matrix::invmat(const Symmetric2by2Matrix& m) noexcept {
  Packed2by2 inverse;
  if (!geometry::invert(packed(m), inverse)) return false;
  m_elements[0] = inverse.e0;
  m_elements[1] = inverse.e1;
  m_elements[2] = inverse.e2;
  return true;
}

// Read anew for each element, since each is written as soon as it is computed.
void Symmetric2by2Matrix::prodmat(const Symmetric2by2Matrix& a,
                                  const Symmetric2by2Matrix& b) noexcept {
  m_elements[0] = geometry::congruence0(packed(a), packed(b));
  m_elements[1] = geometry::congruence1(packed(a), packed(b));
  m_elements[2] = geometry::congruence2(packed(a), packed(b));
}

Symmetric2by2Matrix Symmetric2by2Matrix::operator+(Symmetric2by2Matrix other) const noexcept {
  Symmetric2by2Matrix result;
  for (unsigned int i = 0; i < m_elementCount; ++i) {
    result.m_elements[i] = m_elements[i] + other.m_elements[i];
  }
  return result;
}

Symmetric2by2Matrix Symmetric2by2Matrix::operator-(Symmetric2by2Matrix other) const noexcept {
  Symmetric2by2Matrix result;
  for (unsigned int i = 0; i < m_elementCount; ++i) {
    result.m_elements[i] = m_elements[i] - other.m_elements[i];
  }
  return result;
}

Symmetric2by2Matrix& Symmetric2by2Matrix::operator+=(const Symmetric2by2Matrix& other) noexcept {
  for (unsigned int i = 0; i < m_elementCount; ++i) m_elements[i] += other.m_elements[i];
  return *this;
}

Symmetric2by2Matrix& Symmetric2by2Matrix::operator-=(const Symmetric2by2Matrix& other) noexcept {
  for (unsigned int i = 0; i < m_elementCount; ++i) m_elements[i] -= other.m_elements[i];
  return *this;
}

Symmetric2by2Matrix Symmetric2by2Matrix::operator*(Symmetric2by2Matrix other) const noexcept {
  const auto [a, b, c] = packed(*this);
  const auto [d, e, f] = packed(other);
  return {a * d + b * e, a * e + b * f, b * e + c * f};
}

Symmetric2by2Matrix& Symmetric2by2Matrix::operator*=(double factor) noexcept {
  for (unsigned int i = 0; i < m_elementCount; ++i) m_elements[i] *= factor;
  return *this;
}

Symmetric2by2Matrix Symmetric2by2Matrix::operator*(double factor) const noexcept {
  Symmetric2by2Matrix result;
  for (unsigned int i = 0; i < m_elementCount; ++i) result.m_elements[i] = m_elements[i] * factor;
  return result;
}

Symmetric2by2Matrix& Symmetric2by2Matrix::operator/=(double divisor) noexcept {
  if (divisor == 0.0) divisor = 1.0;
  for (unsigned int i = 0; i < m_elementCount; ++i) m_elements[i] /= divisor;
  return *this;
}

Symmetric2by2Matrix Symmetric2by2Matrix::operator/(double divisor) const noexcept {
  Symmetric2by2Matrix result;
  if (divisor == 0.0) divisor = 1.0;
  for (unsigned int i = 0; i < m_elementCount; ++i) result.m_elements[i] = m_elements[i] / divisor;
  return result;
}

}  // namespace trelvo
