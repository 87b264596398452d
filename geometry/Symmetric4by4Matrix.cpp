#include <trelvo/Symmetric4by4Matrix.h>

#include "geometry/Packed2by2.h"

namespace trelvo {

using geometry::congruence;
using geometry::Packed2by2;

void Symmetric4by4Matrix::clear() noexcept {
  for (double& element : m_elements) element = 0.0;
}

bool Symmetric4by4Matrix::diagonalNonZero() const noexcept {
  return m_elements[0] != 0.0 && m_elements[2] != 0.0 && m_elements[7] != 0.0 &&
         m_elements[9] != 0.0;
}

Symmetric4by4Matrix& Symmetric4by4Matrix::operator+=(const Symmetric4by4Matrix& other) noexcept {
  for (unsigned int i = 0; i < m_elementCount; ++i) m_elements[i] += other.m_elements[i];
  return *this;
}

bool Symmetric4by4Matrix::invmat(const Symmetric4by4Matrix& m) noexcept {
  const Packed2by2 a{m[0], m[1], m[2]};
  const Packed2by2 b{m[3], m[4], m[6]};
  const Packed2by2 d{m[7], m[8], m[9]};

  Packed2by2 ai;
  if (!geometry::invert(a, ai)) return false;
  const Packed2by2 bab = congruence(ai, b);
  Packed2by2 si;
  if (!geometry::invert({d.e0 - bab.e0, d.e1 - bab.e1, d.e2 - bab.e2}, si)) return false;
  const Packed2by2 upper = geometry::sum(ai, congruence(congruence(si, b), ai));

  // The full product of ai and b, which is not symmetric.
  const double c00 = ai.e0 * b.e0 + ai.e1 * b.e1;
  const double c01 = ai.e0 * b.e1 + ai.e1 * b.e2;
  const double c10 = ai.e1 * b.e0 + ai.e2 * b.e1;
  const double c11 = ai.e1 * b.e1 + ai.e2 * b.e2;

  // One by one: a block copy of what was just stored would wait for the stores.
  m_elements[0] = upper.e0;
  m_elements[1] = upper.e1;
  m_elements[2] = upper.e2;
  m_elements[3] = -si.e0 * c00 - si.e1 * c01;
  m_elements[4] = -si.e1 * c00 - si.e2 * c01;
  m_elements[5] = -si.e0 * c10 - si.e1 * c11;
  m_elements[6] = -si.e1 * c10 - si.e2 * c11;
  m_elements[7] = si.e0;
  m_elements[8] = si.e1;
  m_elements[9] = si.e2;
  return true;
}

}  // namespace trelvo
