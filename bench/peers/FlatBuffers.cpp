// FlatBuffers: written from back to front, read in place behind a verifier; no objects are built.

#include <flatbuffers/flatbuffers.h>

#include <vector>

#include "bench/WireBench.h"
#include "measurements_generated.h"

namespace bench {

namespace {

using flatbuffers::FlatBufferBuilder;
using flatbuffers::Offset;

Offset<fb::EUtraCell> put(FlatBufferBuilder& builder, const EUtraCell& cell) {
  return fb::CreateEUtraCell(builder, cell.earfcn, cell.pci, cell.ucid, cell.tac, cell.rsrp,
                             cell.rsrq);
}

Offset<fb::GeranCell> put(FlatBufferBuilder& builder, const GeranNeighbor& cell) {
  return fb::CreateGeranCell(builder, cell.bsic, cell.arfcn, cell.lac, cell.cid, cell.rxLevel);
}

Offset<fb::WlanMeasurement> put(FlatBufferBuilder& builder, const Wlan& wlan) {
  return fb::CreateWlanMeasurement(builder, wlan.timeStamp, wlan.elapsedRealtimeTimeStamp,
                                   wlan.bssid, wlan.ssid, wlan.rxLevel, wlan.rssi, wlan.distance,
                                   wlan.distanceUncertainty, wlan.band);
}

Offset<fb::GnssMeasurement> put(FlatBufferBuilder& builder, const Gnss& fix) {
  return fb::CreateGnssMeasurement(builder, fix.timeStamp, fix.latitude, fix.longitude,
                                   fix.majorAxis, fix.minorAxis, fix.angle, fix.altitude,
                                   fix.altitudeUncertainty, fix.horizontalCepUncertainty, fix.speed,
                                   fix.speedUncertainty, fix.course, fix.courseUncertainty);
}

Offset<fb::EUtraMeasurement> put(FlatBufferBuilder& builder, const EUtraSample& sample);

template <class Value>
auto putAll(FlatBufferBuilder& builder, const std::vector<Value>& values) {
  std::vector<decltype(put(builder, values.front()))> offsets;
  offsets.reserve(values.size());
  for (const Value& value : values) {
    offsets.push_back(put(builder, value));
  }
  return builder.CreateVector(offsets);
}

Offset<fb::EUtraMeasurement> put(FlatBufferBuilder& builder, const EUtraSample& sample) {
  const auto neighbors = putAll(builder, sample.neighbors);
  const auto cell = put(builder, sample.serving.cell);
  const EUtraServing& s = sample.serving;
  return fb::CreateEUtraMeasurement(builder, s.timeStamp, s.mcc, s.mnc, s.ucid, cell,
                                    s.timingAdvance, neighbors);
}

void finish(FlatBufferBuilder& builder, const GeranSample& sample) {
  const auto neighbors = putAll(builder, sample.neighbors);
  const GeranServing& s = sample.serving;
  builder.Finish(fb::CreateGeranMeasurement(builder, s.timeStamp, s.mcc, s.mnc, s.lac, s.cid,
                                            s.bsic, s.arfcn, s.rxLevel, s.frequency,
                                            s.timingAdvance, neighbors));
}

void finish(FlatBufferBuilder& builder, const ContainerSample& sample) {
  const auto eutra = putAll(builder, sample.eutra);
  const auto wlans = putAll(builder, sample.wlans);
  const auto gnss = putAll(builder, sample.gnss);
  builder.Finish(fb::CreateMeasurementContainer(builder, sample.measurementId, eutra, wlans, gnss));
}

EUtraCell read(const fb::EUtraCell& cell) {
  return {*cell.earfcn(), *cell.pci(), *cell.ucid(), *cell.tac(), *cell.rsrp(), *cell.rsrq()};
}

Wlan read(const fb::WlanMeasurement& wlan) {
  return {*wlan.time_stamp(), *wlan.elapsed_realtime_time_stamp(),
          *wlan.bssid(),      *wlan.ssid(),
          *wlan.rx_level(),   *wlan.rssi(),
          *wlan.distance(),   *wlan.distance_uncertainty(),
          *wlan.band()};
}

Gnss read(const fb::GnssMeasurement& fix) {
  return {*fix.time_stamp(),
          *fix.latitude(),
          *fix.longitude(),
          *fix.major_axis(),
          *fix.minor_axis(),
          *fix.angle(),
          *fix.altitude(),
          *fix.altitude_uncertainty(),
          *fix.horizontal_cep_uncertainty(),
          *fix.speed(),
          *fix.speed_uncertainty(),
          *fix.course(),
          *fix.course_uncertainty()};
}

void readAll(const fb::GeranMeasurement& cell, Digest& digest) {
  digest(GeranServing{*cell.time_stamp(), *cell.mcc(), *cell.mnc(), *cell.lac(), *cell.cid(),
                      *cell.bsic(), *cell.arfcn(), *cell.rx_level(), *cell.frequency(),
                      *cell.timing_advance()});
  for (const fb::GeranCell* const neighbor : *cell.neighbors()) {
    digest(GeranNeighbor{*neighbor->bsic(), *neighbor->arfcn(), *neighbor->lac(), *neighbor->cid(),
                         *neighbor->rx_level()});
  }
}

void readAll(const fb::MeasurementContainer& container, Digest& digest) {
  digest.add(*container.measurement_id());
  for (const fb::EUtraMeasurement* const cell : *container.eutra()) {
    digest(EUtraServing{*cell->time_stamp(), *cell->mcc(), *cell->mnc(), *cell->ucid(),
                        read(*cell->serving()), *cell->timing_advance()});
    for (const fb::EUtraCell* const neighbor : *cell->neighbors()) {
      digest(read(*neighbor));
    }
  }
  for (const fb::WlanMeasurement* const wlan : *container.wlans()) {
    digest(read(*wlan));
  }
  for (const fb::GnssMeasurement* const fix : *container.gnss()) {
    digest(read(*fix));
  }
}

template <class Sample>
struct RootFor;
template <>
struct RootFor<GeranSample> {
  using Type = fb::GeranMeasurement;
};
template <>
struct RootFor<ContainerSample> {
  using Type = fb::MeasurementContainer;
};

template <class Sample>
class FlatBuffersCodec {
  using Root = typename RootFor<Sample>::Type;

 public:
  explicit FlatBuffersCodec(const Sample& sample) : m_sample(sample) {
    encode();
    m_bytes.assign(m_builder.GetBufferPointer(),
                   m_builder.GetBufferPointer() + m_builder.GetSize());
  }

  std::size_t encode() {
    m_builder.Clear();
    finish(m_builder, m_sample);
    benchmark::ClobberMemory();
    return m_builder.GetSize();
  }
  std::size_t write() { return encode(); }

  void decode() {
    const Root* root = parse();
    benchmark::DoNotOptimize(root);
  }
  std::uint64_t decodeAndRead() {
    Digest digest;
    if (const Root* const root = parse()) {
      readAll(*root, digest);
    }
    return digest.sum();
  }

 private:
  const Root* parse() const {
    flatbuffers::Verifier verifier(m_bytes.data(), m_bytes.size(), 64, 10000000);
    return verifier.VerifyBuffer<Root>(nullptr) ? flatbuffers::GetRoot<Root>(m_bytes.data())
                                                : nullptr;
  }

  const Sample& m_sample;
  FlatBufferBuilder m_builder;
  std::vector<unsigned char> m_bytes;
};

// Nothing is built ahead of writing, so there is no write_prebuilt.
const bool kRegistered =
    registerPeer<FlatBuffersCodec>("FlatBuffers", Encode | Decode | DecodeRead | Linearity);

}  // namespace

}  // namespace bench
