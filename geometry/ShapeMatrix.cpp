#include <trelvo/ShapeMatrix.h>

#include <cmath>

#include <trelvo/Midpoint.h>
#include <trelvo/StateEstimate.h>

#include "geometry/GeodesyInline.h"
#include "geometry/Packed2by2.h"

namespace trelvo {
namespace {

using geometry::LocalScale;
using geometry::Packed2by2;
using geometry::SinCos;

constexpr SinCos kNorth{0.0, 1.0};

inline Packed2by2 ellipse(const LocalScale& scale, double a, double b,
                          const SinCos& direction) noexcept {
  const auto [s, c] = direction;
  const double lat = scale.latDegreesPerMeter;
  const double lon = scale.lonDegreesPerMeter;
  const double aa = a * a, bb = b * b;
  const double ss = s * s, cc = c * c;
  return {lat * lat * (bb * ss + aa * cc), lat * lon * ((aa - bb) * s * c),
          lon * lon * (bb * cc + aa * ss)};
}

// How the square of the Mahalanobis distance is weighed.
inline double outlierWeight(double squared, double lowerGate, double upperGate) noexcept {
  if (squared > upperGate * upperGate) return 1.0 / (lowerGate * upperGate) - 1.0 / squared;
  return (std::sqrt(squared) / lowerGate - 1.0) / squared;
}

inline void add(Symmetric2by2Matrix& matrix, const Packed2by2& more) noexcept {
  matrix[0] += more.e0;
  matrix[1] += more.e1;
  matrix[2] += more.e2;
}

}  // namespace

bool ShapeMatrix::ellConvert(const double& latitude, const double& majorAxis,
                             const double& minorAxis, const double& angle) noexcept {
  // Before the scale: so fewer numbers wait in memory for the sines to return.
  const SinCos direction = geometry::sinCos(angle * geometry::kPi / 180.0);
  LocalScale scale;
  if (!geometry::localScale(latitude, scale)) return false;
  const Packed2by2 shape = ellipse(scale, majorAxis, minorAxis, direction);
  (*this)[0] = shape.e0;
  (*this)[1] = shape.e1;
  (*this)[2] = shape.e2;
  return true;
}

bool ShapeMatrix::increaseUncertainty(const double& latitude, const double& timeStep,
                                      const double& processNoise, const double& scale,
                                      const double& rate, double& accumulated) noexcept {
  constexpr double kThird = 0.3333333333333333;
  const double t = timeStep;
  const double share = kThird - 1.0 / scale + 1.0 / (scale * scale);
  const double x = share * (t * t * t) * processNoise;
  const double s = std::sqrt(x);
  const double gain = t * rate;

  ShapeMatrix noise;
  const bool converted = noise.ellConvert(latitude, s, s, 0.0);
  *this += noise;
  accumulated += gain;
  return converted;
}

bool ShapeMatrix::increaseUncertaintyAtConstRate(const double& latitude, const double& timeStep,
                                                 const double& rateVariance) noexcept {
  LocalScale scale;
  if (!geometry::localScale(latitude, scale)) return false;
  const double latMeters = 1.0 / scale.latDegreesPerMeter;
  const double lonMeters = 1.0 / scale.lonDegreesPerMeter;
  const double latDeviation = std::sqrt(latMeters * (latMeters * (*this)[0]));
  const double lonDeviation = std::sqrt(lonMeters * (lonMeters * (*this)[2]));

  const double t = timeStep;
  const double r = rateVariance;
  const double p = t * t * r + 2.0 * latDeviation * t * std::sqrt(r);
  const double q = t * t * r + 2.0 * lonDeviation * t * std::sqrt(r);
  add(*this, ellipse(scale, std::sqrt(p), std::sqrt(q), kNorth));
  return true;
}

bool ShapeMatrix::reweightMeasurement(const Midpoint& measurement, const StateEstimate& state,
                                      const double& timeStep, const double& lowerGate,
                                      const double& upperGate) noexcept {
  const double mLon = geometry::besideReference(measurement.longitude(), state[1]);
  Packed2by2 inverse;
  if (!geometry::invert(geometry::packed(*this), inverse)) return false;

  // The rate is added whichever way it points: not predicted minus measured.
  const double dLat = (measurement.latitude() - state[0]) + timeStep * state[2];
  const double dLon = (mLon - state[1]) + timeStep * state[3];
  const double squared =
      dLat * dLat * inverse.e0 + 2.0 * inverse.e1 * dLat * dLon + dLon * dLon * inverse.e2;
  if (!(squared > lowerGate * lowerGate)) return true;

  const double w = outlierWeight(squared, lowerGate, upperGate);
  add(*this, {w * (dLat * dLat), w * dLat * dLon, w * (dLon * dLon)});
  return true;
}

}  // namespace trelvo
