#include <trelvo/StateEstimate.h>

namespace trelvo {

void StateEstimate::clear() noexcept {
  for (double& element : m_elements) element = 0.0;
}

StateEstimate& StateEstimate::operator+=(const StateEstimate& other) noexcept {
  for (unsigned int i = 0; i < m_elementCount; ++i) m_elements[i] += other.m_elements[i];
  return *this;
}

}  // namespace trelvo
