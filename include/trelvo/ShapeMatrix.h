#pragma once

#include <trelvo/Export.h>
#include <trelvo/Symmetric2by2Matrix.h>

namespace trelvo {

class Midpoint;
class StateEstimate;

/// The horizontal uncertainty of a position: a covariance in squared degrees.
///
///   element 0   variance of latitude
///   element 1   covariance of latitude and longitude
///   element 2   variance of longitude
///
/// ellConvert() makes one from an ellipse in metres. Its semi-axes count as standard deviations: no
/// factor of confidence is put in or taken out anywhere. Back to metres leads the square root of
/// a variance times the metres per degree, axis by axis; there is no decomposition into axes and
/// angle.
///
/// The matrix means what it says only while one degree of longitude has about the same length all
/// over the ellipse: not across a pole, nor for ellipses of many degrees.
///
/// A plain value: allocates nothing, throws nothing. Threads: as Symmetric2by2Matrix.
class TRELVO_EXPORT ShapeMatrix : public Symmetric2by2Matrix {
 public:
  /// All elements 0.0.
  ShapeMatrix() noexcept = default;
  /// Variance of latitude, covariance, variance of longitude.
  ShapeMatrix(double latVariance, double covariance, double lonVariance) noexcept
      : Symmetric2by2Matrix(latVariance, covariance, lonVariance) {}
  /// The same elements: what sums and products give becomes a shape again.
  ShapeMatrix(const Symmetric2by2Matrix& other) noexcept  // NOLINT(google-explicit-constructor)
      : Symmetric2by2Matrix(other) {}
  ShapeMatrix(const ShapeMatrix& other) noexcept = default;
  ~ShapeMatrix() override = default;

  ShapeMatrix& operator=(const ShapeMatrix& other) noexcept = default;

  /// Becomes the covariance of an ellipse at `latitude` (degrees); what was there before is lost.
  ///
  /// `majorAxis` is the semi-axis in metres that lies at `angle`, in degrees clockwise from north;
  /// `minorAxis` the one across. Either may be the longer one, and signs do not matter. With u, v
  /// the degrees per metre of Utility::meterInDegrees() northward and eastward:
  ///
  ///   element 0 = u^2 (minorAxis^2 sin^2 angle + majorAxis^2 cos^2 angle)
  ///   element 1 = u v (majorAxis^2 - minorAxis^2) sin angle cos angle
  ///   element 2 = v^2 (minorAxis^2 cos^2 angle + majorAxis^2 sin^2 angle)
  ///
  /// Equal axes give a covariance of exactly 0.0, whatever the angle.
  ///
  /// @return false, with the matrix unchanged, at 90.0 and -90.0 exactly. Within metres of a pole
  ///         the variance of longitude is that of no ellipse any more.
  ///
  /// Rounding, up to latitude 80 and for angles within a full turn, with A the longer axis: 1.8e-15
  /// of (u A)^2, 1.4e-15 of u v A^2 and 2.9e-15 of (v A)^2; at latitude 89 ten times that eastward.
  /// Much of an element that is small beside those can be rounding.
  /// Source: error ellipse, E. M. Mikhail and F. Ackermann, Observations and Least Squares, 1976.
  bool ellConvert(const double& latitude, const double& majorAxis, const double& minorAxis,
                  const double& angle) noexcept;

  /// Adds the uncertainty that unknown accelerations cause over a time: a circle of variance
  ///
  ///   x = (1/3 - 1/scale + 1/scale^2) timeStep^3 processNoise   square metres.
  ///
  /// `timeStep` in seconds, `processNoise` in m^2/s^3 (the density of white acceleration noise).
  /// `scale` is a plain number, not 0: x is processNoise times the integral of
  /// (s - timeStep/scale)^2 over the step, so 1 and infinity give the full timeStep^3/3, and 2 its
  /// least, a quarter of that. Adds timeStep * rate to `accumulated`, whatever the result is.
  ///
  /// @return false, with the matrix unchanged, at a pole. A negative x, as from a negative time
  ///         step, makes the matrix NaN, and a `scale` of 0.0 does, too.
  /// Source: Y. Bar-Shalom, X. R. Li, T. Kirubarajan, Estimation with Applications to Tracking and
  /// Navigation, 2001, section 6.2 (white noise acceleration).
  bool increaseUncertainty(const double& latitude, const double& timeStep,
                           const double& processNoise, const double& scale, const double& rate,
                           double& accumulated) noexcept;

  /// Lets both standard deviations grow linearly in time, as of something that moves at an unknown
  /// but constant rate: each deviation, in metres, gains timeStep * sqrt(rateVariance).
  ///
  /// `timeStep` in seconds, `rateVariance` in m^2/s^2. To the variances, in square metres, is added
  /// timeStep^2 rateVariance + 2 deviation timeStep sqrt(rateVariance). The covariance stays, so
  /// the correlation fades.
  ///
  /// @return false, with the matrix unchanged, at a pole. Where a variance, the rate variance or
  ///         what is to be added is negative, the matrix becomes NaN.
  bool increaseUncertaintyAtConstRate(const double& latitude, const double& timeStep,
                                      const double& rateVariance) noexcept;

  /// Makes the covariance of a measurement larger where the measurement lies far from `state`, so
  /// that an outlier pulls less: adds w d d^T, where d is the difference of the two in degrees.
  ///
  /// With q the squared Mahalanobis distance of d under this matrix (a plain number, as are the
  /// gates; lowerGate <= upperGate is expected, and both above 0):
  ///
  ///   q <= lowerGate^2   w = 0: nothing changes
  ///   q <= upperGate^2   w = (sqrt(q) / lowerGate - 1) / q: q becomes lowerGate sqrt(q)
  ///   above              w = 1 / (lowerGate upperGate) - 1 / q: q becomes lowerGate upperGate
  ///
  /// The longitude of `measurement` is brought to the side of the date line where `state` is. d is
  /// measurement - state + timeStep * rate: the rate is added, which suits a rate that points back
  /// in time, or a negative `timeStep`.
  ///
  /// @return false, with the matrix unchanged, where it cannot be inverted (see invmat()). A q that
  ///         is NaN changes nothing and gives true.
  /// Source: weights of P. J. Huber, Robust Estimation of a Location Parameter, 1964, cut off at
  /// the upper gate.
  bool reweightMeasurement(const Midpoint& measurement, const StateEstimate& state,
                           const double& timeStep, const double& lowerGate,
                           const double& upperGate) noexcept;
};

}  // namespace trelvo
