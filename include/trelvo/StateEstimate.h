#pragma once

#include <trelvo/Export.h>

namespace trelvo {

/// A moving position: what a filter keeps of it.
///
///   element 0   latitude, degrees
///   element 1   longitude, degrees
///   element 2   latitude rate, degrees a second
///   element 3   longitude rate, degrees a second
///
/// Values are stored as they come. A plain value: allocates nothing, throws nothing. Threads: any
/// number may read one; changing it takes one alone.
class TRELVO_EXPORT StateEstimate {
 public:
  /// All elements 0.0.
  StateEstimate() noexcept = default;
  StateEstimate(double latitude, double longitude, double latitudeRate,
                double longitudeRate) noexcept
      : m_elements{latitude, longitude, latitudeRate, longitudeRate} {}
  StateEstimate(const StateEstimate& other) noexcept = default;
  ~StateEstimate() = default;

  StateEstimate& operator=(const StateEstimate& other) noexcept = default;

  /// Makes all elements 0.0.
  void clear() noexcept;

  /// The element, writable. An index of 4 or more gives element 0.
  double& operator[](unsigned int index) noexcept {
    return m_elements[index < kElementCount ? index : 0];
  }
  /// The same for reading.
  const double& operator[](unsigned int index) const noexcept {
    return m_elements[index < kElementCount ? index : 0];
  }

  /// Element by element; `other` may be this estimate.
  StateEstimate& operator+=(const StateEstimate& other) noexcept;

 private:
  static constexpr unsigned char kElementCount = 4;

  double m_elements[kElementCount] = {};
  unsigned char m_elementCount = kElementCount;
};

}  // namespace trelvo
