#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

// The measurements that every peer carries, as plain values. All fields are present.

namespace bench {

struct GeranNeighbor {
  std::uint8_t bsic;
  std::uint16_t arfcn;
  std::uint16_t lac;
  std::uint16_t cid;
  std::uint8_t rxLevel;
};

struct GeranServing {
  std::uint32_t timeStamp;
  std::uint16_t mcc;
  std::uint16_t mnc;
  std::uint16_t lac;
  std::uint16_t cid;
  std::uint8_t bsic;
  std::uint16_t arfcn;
  std::uint8_t rxLevel;
  std::uint8_t frequency;
  std::uint8_t timingAdvance;
};

struct EUtraCell {
  std::uint16_t earfcn;
  std::uint16_t pci;
  std::uint32_t ucid;
  std::uint16_t tac;
  std::uint8_t rsrp;
  std::uint8_t rsrq;
};

struct EUtraServing {
  std::uint32_t timeStamp;
  std::uint16_t mcc;
  std::uint16_t mnc;
  std::uint32_t ucid;
  EUtraCell cell;
  std::uint16_t timingAdvance;
};

struct Wlan {
  std::uint32_t timeStamp;
  std::int64_t elapsedRealtimeTimeStamp;
  std::uint64_t bssid;  // 64-bit form of a 6-byte address: FF FF in the middle
  std::uint16_t ssid;
  std::int8_t rxLevel;
  std::uint8_t rssi;
  std::uint8_t distance;
  std::uint8_t distanceUncertainty;
  std::uint8_t band;
};

struct Gnss {
  std::uint32_t timeStamp;
  std::int32_t latitude;
  std::int32_t longitude;
  std::uint32_t majorAxis;
  std::uint32_t minorAxis;
  float angle;
  float altitude;
  float altitudeUncertainty;
  float horizontalCepUncertainty;
  double speed;
  double speedUncertainty;
  double course;
  double courseUncertainty;
};

struct Ellipse {
  std::int32_t latitude;
  std::int32_t longitude;
  std::uint32_t majorAxis;
  std::uint32_t minorAxis;
  float angle;
};

/// Workload a: a GERAN cell and its neighbours.
struct GeranSample {
  GeranServing serving;
  std::vector<GeranNeighbor> neighbors;
};

struct EUtraSample {
  EUtraServing serving;
  std::vector<EUtraCell> neighbors;
};

/// Workloads b, c and i: a container.
struct ContainerSample {
  std::uint32_t measurementId;
  std::vector<EUtraSample> eutra;
  std::vector<Wlan> wlans;
  std::vector<Gnss> gnss;
};

struct CoveredNeighbor {
  GeranNeighbor cell;
  Ellipse coverage;
};

struct CoveredServing {
  GeranServing cell;
  Ellipse coverage;
  std::vector<CoveredNeighbor> neighbors;
};

/// Workload j: an injection.
struct InjectionSample {
  std::uint32_t measurementId;
  std::vector<CoveredServing> cells;
};

/// One serving cell and six neighbours.
GeranSample geranSample();
/// One E-UTRA cell with six neighbours, 20 access points, one fix.
ContainerSample mixedSample();
/// Access points alone.
ContainerSample wlanSample(std::size_t count);
/// 20 GERAN cells with six neighbours each, and where each of them is heard.
InjectionSample injectionSample();

/// The six bytes of an address, from its 64-bit form.
struct MacAddress {
  explicit MacAddress(std::uint64_t bssid) noexcept {
    for (unsigned int i = 0; i < 3; ++i) {
      bytes[i] = static_cast<unsigned char>(bssid >> (56U - 8U * i));
      bytes[3 + i] = static_cast<unsigned char>(bssid >> (16U - 8U * i));
    }
  }
  unsigned char bytes[6];
};

/// What is left of every field read, so that peers are seen to have read the same.
class Digest {
 public:
  template <class... Fields>
  void add(Fields... fields) noexcept {
    std::uint64_t weight = 1;
    ((m_sum += image(fields) * weight, weight += 2), ...);
  }

  void operator()(const GeranServing& s) noexcept {
    add(s.timeStamp, s.mcc, s.mnc, s.lac, s.cid, s.bsic, s.arfcn, s.rxLevel, s.frequency,
        s.timingAdvance);
  }
  void operator()(const GeranNeighbor& n) noexcept {
    add(n.bsic, n.arfcn, n.lac, n.cid, n.rxLevel);
  }
  void operator()(const Ellipse& e) noexcept {
    add(e.latitude, e.longitude, e.majorAxis, e.minorAxis, e.angle);
  }
  void operator()(const EUtraServing& s) noexcept {
    add(s.timeStamp, s.mcc, s.mnc, s.ucid, s.timingAdvance);
    (*this)(s.cell);
  }
  void operator()(const EUtraCell& c) noexcept {
    add(c.earfcn, c.pci, c.ucid, c.tac, c.rsrp, c.rsrq);
  }
  void operator()(const Wlan& w) noexcept {
    add(w.timeStamp, w.elapsedRealtimeTimeStamp, w.bssid, w.ssid, w.rxLevel, w.rssi, w.distance,
        w.distanceUncertainty, w.band);
  }
  void operator()(const Gnss& g) noexcept {
    add(g.timeStamp, g.latitude, g.longitude, g.majorAxis, g.minorAxis, g.angle, g.altitude,
        g.altitudeUncertainty, g.horizontalCepUncertainty, g.speed, g.speedUncertainty, g.course,
        g.courseUncertainty);
  }

  std::uint64_t sum() const noexcept { return m_sum; }

 private:
  static std::uint64_t image(double value) noexcept {
    return static_cast<std::uint64_t>(static_cast<std::int64_t>(value * 1024.0));
  }
  static std::uint64_t image(float value) noexcept { return image(static_cast<double>(value)); }
  template <class Integer>
  static std::uint64_t image(Integer value) noexcept {
    return static_cast<std::uint64_t>(value);
  }

  std::uint64_t m_sum = 0;
};

/// Hands every group of fields of `sample` to `sink`, in the order in which all peers do.
template <class Sink>
void visit(const GeranSample& sample, Sink& sink) {
  sink(sample.serving);
  for (const GeranNeighbor& neighbor : sample.neighbors) {
    sink(neighbor);
  }
}
template <class Sink>
void visit(const ContainerSample& sample, Sink& sink) {
  sink.add(sample.measurementId);
  for (const EUtraSample& cell : sample.eutra) {
    sink(cell.serving);
    for (const EUtraCell& neighbor : cell.neighbors) {
      sink(neighbor);
    }
  }
  for (const Wlan& wlan : sample.wlans) {
    sink(wlan);
  }
  for (const Gnss& fix : sample.gnss) {
    sink(fix);
  }
}

template <class Sink>
void visit(const InjectionSample& sample, Sink& sink) {
  sink.add(sample.measurementId);
  for (const CoveredServing& serving : sample.cells) {
    sink(serving.cell);
    sink(serving.coverage);
    for (const CoveredNeighbor& neighbor : serving.neighbors) {
      sink(neighbor.cell);
      sink(neighbor.coverage);
    }
  }
}

}  // namespace bench
