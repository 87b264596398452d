#pragma once

#include <trelvo/Export.h>
#include <trelvo/ShapeMatrix.h>

namespace trelvo {

/// The horizontal covariance that goes with a StateEstimate, in squared degrees: a ShapeMatrix
/// under its own name.
class TRELVO_EXPORT StateEstimateCovariance : public ShapeMatrix {
 public:
  /// All elements 0.0.
  StateEstimateCovariance() noexcept = default;
  /// Variance of latitude, covariance, variance of longitude.
  StateEstimateCovariance(double latVariance, double covariance, double lonVariance) noexcept
      : ShapeMatrix(latVariance, covariance, lonVariance) {}
  StateEstimateCovariance(const StateEstimateCovariance& other) noexcept = default;
  ~StateEstimateCovariance() override = default;

  StateEstimateCovariance& operator=(const StateEstimateCovariance& other) noexcept = default;
  /// Takes over the elements of any shape.
  StateEstimateCovariance& operator=(const ShapeMatrix& shape) noexcept {
    ShapeMatrix::operator=(shape);
    return *this;
  }
};

}  // namespace trelvo
