// Geodesy and tiles beside GeographicLib, S2, the haversine and arc tangent forms, and `floor`: the
// same formula written out in this file, where it can be inlined into the loop.
//
// One iteration is one pass over a million points; `per_call` is the time of one call. Nine of ten
// pairs are at most 2.83 degrees apart. Compare within one run:
//   --benchmark_enable_random_interleaving --benchmark_repetitions=7

#include <benchmark/benchmark.h>
#include <s2/s2cell_id.h>
#include <s2/s2latlng.h>
#include <trelvo/schema/Utility.h>

#include <GeographicLib/Geodesic.hpp>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <random>
#include <vector>

namespace {

using trelvo::schema::Utility;

constexpr std::size_t kPoints = 1000000;
constexpr double kPi = 3.141592653589793;
constexpr double kRadiansPerDegree = 0.017453292519943295;
constexpr double kSphereRadius = 6371010.0;
constexpr unsigned int kTileLevel = 16;

struct Pair {
  double lat1, lon1, lat2, lon2;
};

std::vector<Pair> makePairs() {
  std::mt19937_64 engine(33);
  const auto uniform = [&engine](double low, double high) {
    return low + (high - low) * (static_cast<double>(engine() >> 11) * 0x1p-53);
  };
  std::vector<Pair> pairs(kPoints);
  for (std::size_t i = 0; i < kPoints; ++i) {
    const double lat = uniform(-80.0, 80.0);
    const double lon = uniform(-175.0, 175.0);
    const bool near = i % 10 != 0;
    pairs[i] = {lat, lon, near ? lat + uniform(-2.0, 2.0) : uniform(-80.0, 80.0),
                near ? lon + uniform(-2.0, 2.0) : uniform(-175.0, 175.0)};
  }
  return pairs;
}

const std::vector<Pair>& pairs() {
  static const std::vector<Pair> kPairs = makePairs();
  return kPairs;
}

// Calls `kCall` for every pair and sums what it gives, so that nothing is optimised away.
template <auto kCall>
void pass(benchmark::State& state) {
  const std::vector<Pair>& all = pairs();
  for (auto _ : state) {
    double sum = 0.0;
    for (const Pair& pair : all) sum += static_cast<double>(kCall(pair));
    benchmark::DoNotOptimize(sum);
  }
  const double calls = static_cast<double>(state.iterations()) * kPoints;
  state.counters["per_call"] =
      benchmark::Counter(calls, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

double clamp(double value) { return value > 1.0 ? 1.0 : value < -1.0 ? -1.0 : value; }

// -- floor ----------------------------------------------------------------------------------------

double floorDistance(const Pair& p) {
  if (p.lat1 == p.lat2 && p.lon1 == p.lon2) return 0.0;
  const double x1 = p.lat1 * kRadiansPerDegree;
  const double x2 = p.lat2 * kRadiansPerDegree;
  const double s1 = std::sin(x1), c1 = std::cos(x1);
  const double s2 = std::sin(x2), c2 = std::cos(x2);
  const double k = clamp(c1 * c2 * std::cos((p.lon2 - p.lon1) * kRadiansPerDegree) + s1 * s2);
  return std::acos(k) * kSphereRadius;
}

double floorBearing(const Pair& p) {
  if (p.lat1 == p.lat2 && p.lon1 == p.lon2) return 0.0;
  if (-p.lat2 == p.lat1 && p.lon2 + 180.0 == p.lon1) return -1.0;
  const double x1 = p.lat1 * kRadiansPerDegree;
  const double x2 = p.lat2 * kRadiansPerDegree;
  const double s1 = std::sin(x1), c1 = std::cos(x1);
  const double s2 = std::sin(x2), c2 = std::cos(x2);
  const double k = clamp(c1 * c2 * std::cos((p.lon2 - p.lon1) * kRadiansPerDegree) + s1 * s2);
  if (k == 1.0 || k == -1.0 || std::fabs(p.lat1) == 90.0 || std::fabs(s1) == 1.0) return -1.0;
  const double b =
      std::acos(clamp((s2 - k * s1) / (c1 * std::sin(std::acos(k))))) / kRadiansPerDegree;
  if (b == 0.0 || b == 180.0) return b;
  const bool past = std::abs(static_cast<int>(p.lon1 - p.lon2)) > 180;
  return (p.lon1 > p.lon2) == past ? b : 360.0 - b;
}

double floorMeterInDegrees(const Pair& p) {
  const double x = p.lat1 * kPi / 180.0;
  const double s = std::sin(x), c = std::cos(x);
  const double w = std::sqrt(1.0 - s * (s * 0.006694380004260814));
  if (x == kPi / 2 || x == -kPi / 2) return 0.0;
  const double lon = w * 57.29577951308232 * (1.0 / (c * 6378137.0));
  return lon + w * w * w * 57.29577951308232 * 1.578422502929283e-07;
}

unsigned long long floorTileId(const Pair& p) {
  constexpr double n = 1u << kTileLevel;
  const auto row = static_cast<unsigned long long>((p.lat1 + 90.0) / 180.0 * n);
  const auto column = static_cast<unsigned long long>(n * ((p.lon1 + 180.0) / 360.0));
  return 1ull << (2 * kTileLevel) | row << kTileLevel | column;
}

unsigned long long powFloorTileId(const Pair& p) {
  unsigned int level = kTileLevel;
  benchmark::DoNotOptimize(level);
  const double n = static_cast<unsigned int>(std::pow(2.0, level));
  const auto row = static_cast<unsigned long long>(std::floor((p.lat1 + 90.0) / 180.0 * n));
  const auto column = static_cast<unsigned long long>(std::floor(n * ((p.lon1 + 180.0) / 360.0)));
  return 1ull << (2 * level) | row << level | column;
}

// -- other formulas and libraries -----------------------------------------------------------------

double haversine(const Pair& p) {
  const double lat = std::sin((p.lat2 - p.lat1) * (kRadiansPerDegree / 2));
  const double lon = std::sin((p.lon2 - p.lon1) * (kRadiansPerDegree / 2));
  const double h = lat * lat + std::cos(p.lat1 * kRadiansPerDegree) *
                                   std::cos(p.lat2 * kRadiansPerDegree) * lon * lon;
  return 2.0 * kSphereRadius * std::asin(std::sqrt(h));
}

double arcTangentBearing(const Pair& p) {
  const double x1 = p.lat1 * kRadiansPerDegree;
  const double x2 = p.lat2 * kRadiansPerDegree;
  const double x = (p.lon2 - p.lon1) * kRadiansPerDegree;
  const double c2 = std::cos(x2);
  const double b =
      std::atan2(std::sin(x) * c2, std::cos(x1) * std::sin(x2) - std::sin(x1) * c2 * std::cos(x));
  return b < 0.0 ? b / kRadiansPerDegree + 360.0 : b / kRadiansPerDegree;
}

double geographicLibDistance(const Pair& p) {
  double metres;
  GeographicLib::Geodesic::WGS84().Inverse(p.lat1, p.lon1, p.lat2, p.lon2, metres);
  return metres;
}

double geographicLibBearing(const Pair& p) {
  double azimuth1, azimuth2;
  GeographicLib::Geodesic::WGS84().Inverse(p.lat1, p.lon1, p.lat2, p.lon2, azimuth1, azimuth2);
  return azimuth1;
}

// The same two factors from the same shape, by the library's own sine of degrees.
double geographicLibMeterInDegrees(const Pair& p) {
  double s, c;
  GeographicLib::Math::sincosd(p.lat1, s, c);
  const double w2 = 1.0 - 0.006694380004260814 * s * s;
  const double w = std::sqrt(w2);
  const double degree = GeographicLib::Math::degree();
  return w / (c * 6378137.0 * degree) + w2 * w / (6335439.327202764 * degree);
}

double s2Distance(const Pair& p) {
  const S2LatLng first = S2LatLng::FromDegrees(p.lat1, p.lon1);
  const S2LatLng second = S2LatLng::FromDegrees(p.lat2, p.lon2);
  return first.GetDistance(second).radians() * kSphereRadius;
}

double s2Tile(const Pair& p) {
  const S2CellId leaf(S2LatLng::FromDegrees(p.lat1, p.lon1));
  return static_cast<double>(leaf.parent(kTileLevel).id());
}

// -- this library ---------------------------------------------------------------------------------

double distance(const Pair& p) {
  double metres;
  Utility::distance(p.lat1, p.lon1, p.lat2, p.lon2, metres);
  return metres;
}

double bearing(const Pair& p) {
  double degrees = -1.0;
  Utility::bearing(p.lat1, p.lon1, p.lat2, p.lon2, degrees);
  return degrees;
}

double meterInDegrees(const Pair& p) {
  double lon, lat;
  Utility::meterInDegrees(p.lat1, lon, lat);
  return lon + lat;
}

unsigned long long tileId(const Pair& p) {
  return Utility::wlanRmTileId(p.lat1, p.lon1, kTileLevel);
}

BENCHMARK(pass<distance>)->Name("geodesy/distance/trelvo")->Unit(benchmark::kMillisecond);
BENCHMARK(pass<floorDistance>)->Name("geodesy/distance/floor")->Unit(benchmark::kMillisecond);
BENCHMARK(pass<haversine>)->Name("geodesy/distance/haversine")->Unit(benchmark::kMillisecond);
BENCHMARK(pass<s2Distance>)->Name("geodesy/distance/S2")->Unit(benchmark::kMillisecond);
BENCHMARK(pass<geographicLibDistance>)
    ->Name("geodesy/distance/GeographicLib")
    ->Unit(benchmark::kMillisecond);

BENCHMARK(pass<bearing>)->Name("geodesy/bearing/trelvo")->Unit(benchmark::kMillisecond);
BENCHMARK(pass<floorBearing>)->Name("geodesy/bearing/floor")->Unit(benchmark::kMillisecond);
BENCHMARK(pass<arcTangentBearing>)->Name("geodesy/bearing/atan2")->Unit(benchmark::kMillisecond);
BENCHMARK(pass<geographicLibBearing>)
    ->Name("geodesy/bearing/GeographicLib")
    ->Unit(benchmark::kMillisecond);

BENCHMARK(pass<meterInDegrees>)
    ->Name("geodesy/meterInDegrees/trelvo")
    ->Unit(benchmark::kMillisecond);
BENCHMARK(pass<floorMeterInDegrees>)
    ->Name("geodesy/meterInDegrees/floor")
    ->Unit(benchmark::kMillisecond);
BENCHMARK(pass<geographicLibMeterInDegrees>)
    ->Name("geodesy/meterInDegrees/GeographicLib")
    ->Unit(benchmark::kMillisecond);

BENCHMARK(pass<tileId>)->Name("geodesy/tileId/trelvo")->Unit(benchmark::kMillisecond);
BENCHMARK(pass<floorTileId>)->Name("geodesy/tileId/floor")->Unit(benchmark::kMillisecond);
BENCHMARK(pass<powFloorTileId>)->Name("geodesy/tileId/powAndFloor")->Unit(benchmark::kMillisecond);
BENCHMARK(pass<s2Tile>)->Name("geodesy/tileId/S2CellId")->Unit(benchmark::kMillisecond);

}  // namespace
