// Uncertainty ellipses and their matrices beside GeographicLib and S2, and `floor`: the same
// formula written out in this file, where it can be inlined into the loop.
//
// One iteration is a million calls, a thousand passes over a thousand rows, which fit the caches;
// `per_call` is the time of one call. Compare within one run:
//   --benchmark_enable_random_interleaving --benchmark_repetitions=7

#include <benchmark/benchmark.h>
#include <s2/s2latlng.h>
#include <s2/s2latlng_rect.h>
#include <trelvo/Midpoint.h>
#include <trelvo/ShapeMatrix.h>
#include <trelvo/StateEstimate.h>
#include <trelvo/Symmetric2by2Matrix.h>
#include <trelvo/Symmetric4by4Matrix.h>
#include <trelvo/schema/Utility.h>

#include <GeographicLib/Math.hpp>
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <random>
#include <vector>

namespace {

using trelvo::Midpoint;
using trelvo::ShapeMatrix;
using trelvo::StateEstimate;
using trelvo::Symmetric2by2Matrix;
using trelvo::Symmetric4by4Matrix;
using trelvo::schema::Utility;

constexpr std::size_t kRows = 1000;
constexpr std::size_t kPasses = 1000;
constexpr double kPi = 3.141592653589793;
constexpr double kEccentricitySquared = 0.006694380004260814;

// Two ellipses near each other, in metres and in squared degrees.
struct Row {
  double latitude, major, minor, angle;
  Midpoint p1, p2;
  ShapeMatrix s1, s2;
  Symmetric4by4Matrix joint;
  S2LatLngRect box1, box2;
};

S2LatLngRect box(const Midpoint& centre, const ShapeMatrix& shape) {
  const S2LatLng half = S2LatLng::FromDegrees(std::sqrt(shape[0]), std::sqrt(shape[2]));
  const S2LatLng middle = S2LatLng::FromDegrees(centre.latitude(), centre.longitude());
  return S2LatLngRect::FromCenterSize(middle, S2LatLng(half.lat() * 2, half.lng() * 2));
}

std::vector<Row> makeRows() {
  std::mt19937_64 engine(34);
  const auto uniform = [&engine](double low, double high) {
    return low + (high - low) * (static_cast<double>(engine() >> 11) * 0x1p-53);
  };
  std::vector<Row> rows(kRows);
  for (Row& row : rows) {
    row.latitude = uniform(-80.0, 80.0);
    row.major = uniform(50.0, 5000.0);
    row.minor = uniform(50.0, 5000.0);
    row.angle = uniform(0.0, 180.0);
    row.p1 = Midpoint(row.latitude, uniform(-175.0, 175.0));
    row.p2 =
        Midpoint(row.latitude + uniform(-0.05, 0.05), row.p1.longitude() + uniform(-0.05, 0.05));
    row.s1.ellConvert(row.latitude, row.major, row.minor, row.angle);
    row.s2.ellConvert(row.latitude, row.minor, uniform(50.0, 5000.0), uniform(0.0, 180.0));
    const ShapeMatrix &a = row.s1, &d = row.s2;
    row.joint = Symmetric4by4Matrix(a[0], a[1], a[2], a[0] * 0.1, a[1] * 0.1, a[1] * 0.1,
                                    a[2] * 0.1, d[0], d[1], d[2]);
    row.box1 = box(row.p1, row.s1);
    row.box2 = box(row.p2, row.s2);
  }
  return rows;
}

const std::vector<Row>& rows() {
  static const std::vector<Row> kAll = makeRows();
  return kAll;
}

// Calls `kCall` for every row and sums what it gives, so that nothing is optimised away.
template <auto kCall>
void pass(benchmark::State& state) {
  const std::vector<Row>& all = rows();
  for (auto _ : state) {
    double sum = 0.0;
    for (std::size_t i = 0; i < kPasses; ++i) {
      for (const Row& row : all) sum += static_cast<double>(kCall(row));
      benchmark::DoNotOptimize(sum);
    }
  }
  const double calls = static_cast<double>(state.iterations()) * kRows * kPasses;
  state.counters["per_call"] =
      benchmark::Counter(calls, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

struct Packed {
  double e0, e1, e2;
};

Packed packed(const Symmetric2by2Matrix& m) { return {m[0], m[1], m[2]}; }

bool inverse(const Packed& m, Packed& result) {
  const double det = m.e0 * m.e2 - m.e1 * m.e1;
  if (std::fabs(det) < 1e-19) return false;
  const double r = 1.0 / det;
  result = {m.e2 * r, -(m.e1 * r), m.e0 * r};
  return true;
}

Packed congruence(const Packed& a, const Packed& b) {
  return {a.e0 * (b.e0 * b.e0) + 2.0 * b.e0 * b.e1 * a.e1 + a.e2 * (b.e1 * b.e1),
          a.e0 * b.e1 * b.e0 + a.e1 * (b.e1 * b.e1) + a.e1 * b.e0 * b.e2 + a.e2 * b.e2 * b.e1,
          a.e2 * (b.e2 * b.e2) + 2.0 * b.e1 * b.e2 * a.e1 + a.e0 * (b.e1 * b.e1)};
}

// -- floor ----------------------------------------------------------------------------------------

double floorEllConvert(const Row& row) {
  const double x = row.latitude * kPi / 180.0;
  const double s = std::sin(x), c = std::cos(x);
  const double w = std::sqrt(1.0 - s * (s * kEccentricitySquared));
  if (x == kPi / 2 || x == -kPi / 2) return 0.0;
  const double lon = w * 57.29577951308232 * (1.0 / (c * 6378137.0));
  const double lat = w * w * w * 57.29577951308232 * 1.578422502929283e-07;
  const double t = row.angle * kPi / 180.0;
  const double st = std::sin(t), ct = std::cos(t);
  const double aa = row.major * row.major, bb = row.minor * row.minor;
  return lat * lat * (bb * (st * st) + aa * (ct * ct)) + lat * lon * ((aa - bb) * st * ct) +
         lon * lon * (bb * (ct * ct) + aa * (st * st));
}

bool floorIntersect(const Row& row) {
  Packed i1, i2;
  if (!inverse(packed(row.s1), i1) || !inverse(packed(row.s2), i2)) return false;
  double lon2 = row.p2.longitude();
  if (lon2 - row.p1.longitude() > 180.0) {
    lon2 -= 360.0;
  } else if (lon2 - row.p1.longitude() < -180.0) {
    lon2 += 360.0;
  }
  const double d1 = i1.e0 * i1.e2 - i1.e1 * i1.e1, d2 = i2.e0 * i2.e2 - i2.e1 * i2.e1;
  const double lonHalf1 = std::sqrt(i1.e0 / d1), latHalf1 = std::sqrt(i1.e2 / d1);
  const double lonHalf2 = std::sqrt(i2.e0 / d2), latHalf2 = std::sqrt(i2.e2 / d2);
  const double south = std::max(row.p1.latitude() - latHalf1, row.p2.latitude() - latHalf2);
  const double north = std::min(row.p1.latitude() + latHalf1, row.p2.latitude() + latHalf2);
  const double west = std::max(row.p1.longitude() - lonHalf1, lon2 - lonHalf2);
  const double east = std::min(row.p1.longitude() + lonHalf1, lon2 + lonHalf2);
  return north > south && east > west;
}

double floorBDistance(const Row& row) {
  const Packed a = packed(row.s1), b = packed(row.s2);
  const Packed mean{(a.e0 + b.e0) / 2.0, (a.e1 + b.e1) / 2.0, (a.e2 + b.e2) / 2.0};
  Packed i{};
  inverse(mean, i);
  const double x = row.p1.latitude() - row.p2.latitude();
  const double y = row.p1.longitude() - row.p2.longitude();
  const double q =
      (x * 0.125 * i.e0 + y * 0.125 * i.e1) * x + (x * 0.125 * i.e1 + y * 0.125 * i.e2) * y;
  const double r = (mean.e0 * mean.e2 - mean.e1 * mean.e1) /
                   std::sqrt((a.e0 * a.e2 - a.e1 * a.e1) * (b.e0 * b.e2 - b.e1 * b.e1));
  return q + 0.5 * std::log(r);
}

double floorInverse2(const Row& row) {
  Packed i{};
  inverse(packed(row.s1), i);
  return i.e0 + i.e1 + i.e2;
}

double floorSum(const Row& row) {
  const Packed a = packed(row.s1), b = packed(row.s2);
  return a.e0 + b.e0 + (a.e1 + b.e1) + (a.e2 + b.e2);
}

double floorInverse4(const Row& row) {
  const Symmetric4by4Matrix& m = row.joint;
  const Packed a{m[0], m[1], m[2]}, b{m[3], m[4], m[6]}, d{m[7], m[8], m[9]};
  Packed ai, si;
  if (!inverse(a, ai)) return 0.0;
  const Packed bab = congruence(ai, b);
  if (!inverse({d.e0 - bab.e0, d.e1 - bab.e1, d.e2 - bab.e2}, si)) return 0.0;
  const Packed v = congruence(congruence(si, b), ai);
  const double c00 = ai.e0 * b.e0 + ai.e1 * b.e1, c01 = ai.e0 * b.e1 + ai.e1 * b.e2;
  const double c10 = ai.e1 * b.e0 + ai.e2 * b.e1, c11 = ai.e1 * b.e1 + ai.e2 * b.e2;
  return ai.e0 + v.e0 + (ai.e1 + v.e1) + (ai.e2 + v.e2) + (-si.e0 * c00 - si.e1 * c01) +
         (-si.e1 * c00 - si.e2 * c01) + (-si.e0 * c10 - si.e1 * c11) +
         (-si.e1 * c10 - si.e2 * c11) + si.e0 + si.e1 + si.e2;
}

// -- other libraries ------------------------------------------------------------------------------

// The same covariance from the same shape, by the library's own sine and cosine of degrees.
double geographicLibEllConvert(const Row& row) {
  double s, c, st, ct;
  GeographicLib::Math::sincosd(row.latitude, s, c);
  GeographicLib::Math::sincosd(row.angle, st, ct);
  const double w2 = 1.0 - kEccentricitySquared * s * s;
  const double w = std::sqrt(w2);
  const double degree = GeographicLib::Math::degree();
  const double lon = w / (c * 6378137.0 * degree);
  const double lat = w2 * w / (6335439.327202764 * degree);
  const double aa = row.major * row.major, bb = row.minor * row.minor;
  return lat * lat * (bb * st * st + aa * ct * ct) + lat * lon * (aa - bb) * st * ct +
         lon * lon * (bb * ct * ct + aa * st * st);
}

bool s2ReadyBoxes(const Row& row) { return row.box1.InteriorIntersects(row.box2); }

bool s2BoxesFromCovariance(const Row& row) {
  return box(row.p1, row.s1).InteriorIntersects(box(row.p2, row.s2));
}

// -- this library ---------------------------------------------------------------------------------

double ellConvert(const Row& row) {
  ShapeMatrix shape;
  shape.ellConvert(row.latitude, row.major, row.minor, row.angle);
  return shape[0] + shape[1] + shape[2];
}

bool intersect(const Row& row) { return Utility::intersect(row.p1, row.s1, row.p2, row.s2); }

double bDistance(const Row& row) { return Utility::bDistance(row.p1, row.s1, row.p2, row.s2); }

double inverse2(const Row& row) {
  Symmetric2by2Matrix i;
  i.invmat(row.s1);
  return i[0] + i[1] + i[2];
}

double sum(const Row& row) {
  const Symmetric2by2Matrix total = row.s1 + row.s2;
  return total[0] + total[1] + total[2];
}

double inverse4(const Row& row) {
  Symmetric4by4Matrix i;
  i.invmat(row.joint);
  return i[0] + i[1] + i[2] + i[3] + i[4] + i[5] + i[6] + i[7] + i[8] + i[9];
}

double reweight(const Row& row) {
  ShapeMatrix shape = row.s1;
  shape.reweightMeasurement(row.p1, StateEstimate(row.p2.latitude(), row.p2.longitude(), 0.0, 0.0),
                            1.0, 2.0, 4.0);
  return shape[0] + shape[1] + shape[2];
}

BENCHMARK(pass<ellConvert>)->Name("ellipse/ellConvert/trelvo")->Unit(benchmark::kMillisecond);
BENCHMARK(pass<floorEllConvert>)->Name("ellipse/ellConvert/floor")->Unit(benchmark::kMillisecond);
BENCHMARK(pass<geographicLibEllConvert>)
    ->Name("ellipse/ellConvert/GeographicLib")
    ->Unit(benchmark::kMillisecond);

BENCHMARK(pass<intersect>)->Name("ellipse/intersect/trelvo")->Unit(benchmark::kMillisecond);
BENCHMARK(pass<floorIntersect>)->Name("ellipse/intersect/floor")->Unit(benchmark::kMillisecond);
BENCHMARK(pass<s2ReadyBoxes>)->Name("ellipse/intersect/S2ready")->Unit(benchmark::kMillisecond);
BENCHMARK(pass<s2BoxesFromCovariance>)
    ->Name("ellipse/intersect/S2built")
    ->Unit(benchmark::kMillisecond);

BENCHMARK(pass<bDistance>)->Name("ellipse/bDistance/trelvo")->Unit(benchmark::kMillisecond);
BENCHMARK(pass<floorBDistance>)->Name("ellipse/bDistance/floor")->Unit(benchmark::kMillisecond);

BENCHMARK(pass<sum>)->Name("matrix/sum/trelvo")->Unit(benchmark::kMillisecond);
BENCHMARK(pass<floorSum>)->Name("matrix/sum/floor")->Unit(benchmark::kMillisecond);
BENCHMARK(pass<inverse2>)->Name("matrix/inverse2/trelvo")->Unit(benchmark::kMillisecond);
BENCHMARK(pass<floorInverse2>)->Name("matrix/inverse2/floor")->Unit(benchmark::kMillisecond);
BENCHMARK(pass<inverse4>)->Name("matrix/inverse4/trelvo")->Unit(benchmark::kMillisecond);
BENCHMARK(pass<floorInverse4>)->Name("matrix/inverse4/floor")->Unit(benchmark::kMillisecond);
BENCHMARK(pass<reweight>)->Name("matrix/reweight/trelvo")->Unit(benchmark::kMillisecond);

}  // namespace
