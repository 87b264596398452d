#include "bench/Samples.h"

#include <random>

namespace bench {

namespace {

constexpr std::uint32_t kTimeStamp = 1700000000;
constexpr unsigned int kNeighbors = 6;
constexpr std::size_t kMixedWlans = 20;
constexpr unsigned int kInjectedCells = 20;

// Deterministic values, spread over the range that is met in the field.
class Values {
 public:
  template <class T>
  T between(long long low, long long high) {
    const auto span = static_cast<unsigned long long>(high - low) + 1;
    return static_cast<T>(low + static_cast<long long>(m_engine() % span));
  }

 private:
  std::mt19937_64 m_engine{2024};
};

GeranNeighbor geranNeighbor(Values& values) {
  return {values.between<std::uint8_t>(0, 63), values.between<std::uint16_t>(0, 1023),
          values.between<std::uint16_t>(1, 65533), values.between<std::uint16_t>(0, 65535),
          values.between<std::uint8_t>(0, 63)};
}

Ellipse ellipse(Values& values) {
  return {values.between<std::int32_t>(-0x7FFFFFFF, 0x7FFFFFFF),
          values.between<std::int32_t>(-0x7FFFFFFF, 0x7FFFFFFF),
          values.between<std::uint32_t>(500, 20000), values.between<std::uint32_t>(100, 500),
          static_cast<float>(values.between<int>(0, 179))};
}

EUtraCell eutraCell(Values& values) {
  return {values.between<std::uint16_t>(0, 6599),      values.between<std::uint16_t>(0, 503),
          values.between<std::uint32_t>(1, 0xFFFFFFF), values.between<std::uint16_t>(1, 65533),
          values.between<std::uint8_t>(0, 97),         values.between<std::uint8_t>(0, 34)};
}

EUtraSample eutraSample(Values& values) {
  EUtraSample sample{{kTimeStamp, 262, 7, 0x1234567, eutraCell(values), 21}, {}};
  for (unsigned int i = 0; i < kNeighbors; ++i) {
    sample.neighbors.push_back(eutraCell(values));
  }
  return sample;
}

Wlan wlan(Values& values) {
  const auto high = values.between<std::uint64_t>(0, 0xFFFFFF);
  const auto low = values.between<std::uint64_t>(0, 0xFFFFFF);
  return {kTimeStamp,
          values.between<std::int64_t>(100000000000, 900000000000000),
          high << 40U | 0xFFFF000000U | low,
          values.between<std::uint16_t>(0, 65535),
          values.between<std::int8_t>(-95, -30),
          values.between<std::uint8_t>(0, 100),
          values.between<std::uint8_t>(1, 120),
          values.between<std::uint8_t>(1, 60),
          values.between<std::uint8_t>(0, 2)};
}

Gnss gnss() {
  return {kTimeStamp, 0x2F3A5B71, -0x12345678, 12,  9,     0.75F, 148.5F,
          3.25F,      4.5F,       13.875,      0.5, 87.25, 1.5};
}

}  // namespace

GeranSample geranSample() {
  Values values;
  GeranSample sample{{kTimeStamp, 262, 7, 4660, 41394, 43, 1021, 47, 3, 61}, {}};
  for (unsigned int i = 0; i < kNeighbors; ++i) {
    sample.neighbors.push_back(geranNeighbor(values));
  }
  return sample;
}

ContainerSample wlanSample(std::size_t count) {
  Values values;
  ContainerSample sample{42, {}, {}, {}};
  sample.wlans.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    sample.wlans.push_back(wlan(values));
  }
  return sample;
}

ContainerSample mixedSample() {
  Values values;
  ContainerSample sample = wlanSample(kMixedWlans);
  sample.eutra.push_back(eutraSample(values));
  sample.gnss.push_back(gnss());
  return sample;
}

InjectionSample injectionSample() {
  Values values;
  InjectionSample sample{42, {}};
  for (unsigned int i = 0; i < kInjectedCells; ++i) {
    CoveredServing serving{geranSample().serving, ellipse(values), {}};
    serving.cell.cid = values.between<std::uint16_t>(0, 65535);
    for (unsigned int j = 0; j < kNeighbors; ++j) {
      const GeranNeighbor cell = geranNeighbor(values);
      serving.neighbors.push_back({cell, ellipse(values)});
    }
    sample.cells.push_back(serving);
  }
  return sample;
}

}  // namespace bench
