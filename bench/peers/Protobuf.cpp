// protobuf with presence, once with plain messages, once with everything on an arena.

#include <memory>
#include <vector>

#include "bench/WireBench.h"
#include "measurements.pb.h"

namespace bench {

namespace {

void fill(const GeranNeighbor& from, pb::GeranNeighbor& to) {
  to.set_bsic(from.bsic);
  to.set_arfcn(from.arfcn);
  to.set_lac(from.lac);
  to.set_cid(from.cid);
  to.set_rx_level(from.rxLevel);
}

void fill(const GeranServing& serving, pb::GeranMeasurement& to) {
  to.set_time_stamp(serving.timeStamp);
  to.set_mcc(serving.mcc);
  to.set_mnc(serving.mnc);
  to.set_lac(serving.lac);
  to.set_cid(serving.cid);
  to.mutable_serving()->set_bsic(serving.bsic);
  to.mutable_serving()->set_arfcn(serving.arfcn);
  to.mutable_serving()->set_rx_level(serving.rxLevel);
  to.set_frequency(serving.frequency);
  to.set_timing_advance(serving.timingAdvance);
}

void fill(const GeranSample& from, pb::GeranMeasurement& to) {
  fill(from.serving, to);
  for (const GeranNeighbor& neighbor : from.neighbors) {
    fill(neighbor, *to.add_neighbors());
  }
}

void fill(const EUtraCell& from, pb::EUtraCell& to) {
  to.set_earfcn(from.earfcn);
  to.set_pci(from.pci);
  to.set_ucid(from.ucid);
  to.set_tac(from.tac);
  to.set_rsrp(from.rsrp);
  to.set_rsrq(from.rsrq);
}

void fill(const EUtraSample& from, pb::EUtraMeasurement& to) {
  to.set_time_stamp(from.serving.timeStamp);
  to.set_mcc(from.serving.mcc);
  to.set_mnc(from.serving.mnc);
  to.set_ucid(from.serving.ucid);
  fill(from.serving.cell, *to.mutable_serving());
  to.set_timing_advance(from.serving.timingAdvance);
  for (const EUtraCell& neighbor : from.neighbors) {
    fill(neighbor, *to.add_neighbors());
  }
}

void fill(const Wlan& from, pb::WlanMeasurement& to) {
  to.set_time_stamp(from.timeStamp);
  to.set_elapsed_realtime_time_stamp(from.elapsedRealtimeTimeStamp);
  to.set_bssid(from.bssid);
  to.set_ssid(from.ssid);
  to.set_rx_level(from.rxLevel);
  to.set_rssi(from.rssi);
  to.set_distance(from.distance);
  to.set_distance_uncertainty(from.distanceUncertainty);
  to.set_band(from.band);
}

void fill(const Gnss& from, pb::GnssMeasurement& to) {
  to.set_time_stamp(from.timeStamp);
  to.set_latitude(from.latitude);
  to.set_longitude(from.longitude);
  to.set_major_axis(from.majorAxis);
  to.set_minor_axis(from.minorAxis);
  to.set_angle(from.angle);
  to.set_altitude(from.altitude);
  to.set_altitude_uncertainty(from.altitudeUncertainty);
  to.set_horizontal_cep_uncertainty(from.horizontalCepUncertainty);
  to.set_speed(from.speed);
  to.set_speed_uncertainty(from.speedUncertainty);
  to.set_course(from.course);
  to.set_course_uncertainty(from.courseUncertainty);
}

void fill(const ContainerSample& from, pb::MeasurementContainer& to) {
  to.set_measurement_id(from.measurementId);
  for (const EUtraSample& cell : from.eutra) {
    fill(cell, *to.add_eutra());
  }
  for (const Wlan& wlan : from.wlans) {
    fill(wlan, *to.add_wlans());
  }
  for (const Gnss& fix : from.gnss) {
    fill(fix, *to.add_gnss());
  }
}

void fill(const Ellipse& from, pb::Area& to) {
  to.set_latitude(from.latitude);
  to.set_longitude(from.longitude);
  to.set_major_axis(from.majorAxis);
  to.set_minor_axis(from.minorAxis);
  to.set_angle(from.angle);
}

void fill(const CoveredServing& from, pb::GeranServingInjection& to) {
  fill(from.cell, *to.mutable_measurement());
  fill(from.coverage, *to.mutable_coverage());
  for (const CoveredNeighbor& neighbor : from.neighbors) {
    pb::GeranNeighborInjection& added = *to.add_neighbors();
    fill(neighbor.cell, *added.mutable_measurement());
    fill(neighbor.coverage, *added.mutable_coverage());
  }
}

void fill(const InjectionSample& from, pb::Injection& to) {
  to.set_measurement_id(from.measurementId);
  for (const CoveredServing& cell : from.cells) {
    fill(cell, *to.add_geran());
  }
}

template <class To, class From>
void put(To& to, From value) {
  to = static_cast<To>(value);
}

EUtraCell read(const pb::EUtraCell& cell) {
  EUtraCell to{};
  put(to.earfcn, cell.earfcn());
  put(to.pci, cell.pci());
  put(to.ucid, cell.ucid());
  put(to.tac, cell.tac());
  put(to.rsrp, cell.rsrp());
  put(to.rsrq, cell.rsrq());
  return to;
}

Wlan read(const pb::WlanMeasurement& wlan) {
  Wlan to{};
  put(to.timeStamp, wlan.time_stamp());
  put(to.elapsedRealtimeTimeStamp, wlan.elapsed_realtime_time_stamp());
  put(to.bssid, wlan.bssid());
  put(to.ssid, wlan.ssid());
  put(to.rxLevel, wlan.rx_level());
  put(to.rssi, wlan.rssi());
  put(to.distance, wlan.distance());
  put(to.distanceUncertainty, wlan.distance_uncertainty());
  put(to.band, wlan.band());
  return to;
}

Gnss read(const pb::GnssMeasurement& fix) {
  return {fix.time_stamp(),
          fix.latitude(),
          fix.longitude(),
          fix.major_axis(),
          fix.minor_axis(),
          fix.angle(),
          fix.altitude(),
          fix.altitude_uncertainty(),
          fix.horizontal_cep_uncertainty(),
          fix.speed(),
          fix.speed_uncertainty(),
          fix.course(),
          fix.course_uncertainty()};
}

GeranServing readServing(const pb::GeranMeasurement& cell) {
  GeranServing to{};
  put(to.timeStamp, cell.time_stamp());
  put(to.mcc, cell.mcc());
  put(to.mnc, cell.mnc());
  put(to.lac, cell.lac());
  put(to.cid, cell.cid());
  put(to.bsic, cell.serving().bsic());
  put(to.arfcn, cell.serving().arfcn());
  put(to.rxLevel, cell.serving().rx_level());
  put(to.frequency, cell.frequency());
  put(to.timingAdvance, cell.timing_advance());
  return to;
}

EUtraServing readServing(const pb::EUtraMeasurement& cell) {
  EUtraServing to{};
  put(to.timeStamp, cell.time_stamp());
  put(to.mcc, cell.mcc());
  put(to.mnc, cell.mnc());
  put(to.ucid, cell.ucid());
  to.cell = read(cell.serving());
  put(to.timingAdvance, cell.timing_advance());
  return to;
}

GeranNeighbor read(const pb::GeranNeighbor& neighbor) {
  GeranNeighbor to{};
  put(to.bsic, neighbor.bsic());
  put(to.arfcn, neighbor.arfcn());
  put(to.lac, neighbor.lac());
  put(to.cid, neighbor.cid());
  put(to.rxLevel, neighbor.rx_level());
  return to;
}

Ellipse read(const pb::Area& area) {
  return {area.latitude(), area.longitude(), area.major_axis(), area.minor_axis(), area.angle()};
}

void readAll(const pb::GeranMeasurement& cell, Digest& digest) {
  digest(readServing(cell));
  for (const pb::GeranNeighbor& neighbor : cell.neighbors()) {
    digest(read(neighbor));
  }
}

void readAll(const pb::Injection& injection, Digest& digest) {
  digest.add(injection.measurement_id());
  for (const pb::GeranServingInjection& cell : injection.geran()) {
    digest(readServing(cell.measurement()));
    digest(read(cell.coverage()));
    for (const pb::GeranNeighborInjection& neighbor : cell.neighbors()) {
      digest(read(neighbor.measurement()));
      digest(read(neighbor.coverage()));
    }
  }
}

void readAll(const pb::MeasurementContainer& container, Digest& digest) {
  digest.add(container.measurement_id());
  for (const pb::EUtraMeasurement& cell : container.eutra()) {
    digest(readServing(cell));
    for (const pb::EUtraCell& neighbor : cell.neighbors()) {
      digest(read(neighbor));
    }
  }
  for (const pb::WlanMeasurement& wlan : container.wlans()) {
    digest(read(wlan));
  }
  for (const pb::GnssMeasurement& fix : container.gnss()) {
    digest(read(fix));
  }
}

template <class Sample>
struct MessageFor;
template <>
struct MessageFor<GeranSample> {
  using Type = pb::GeranMeasurement;
};
template <>
struct MessageFor<ContainerSample> {
  using Type = pb::MeasurementContainer;
};
template <>
struct MessageFor<InjectionSample> {
  using Type = pb::Injection;
};

// Where a message lives while it is used.
template <class Message>
struct Plain {
  Message message;
  Message& get() { return message; }
};
template <class Message>
struct OnArena {
  google::protobuf::Arena arena;
  Message* message = google::protobuf::Arena::CreateMessage<Message>(&arena);
  Message& get() { return *message; }
};

template <class Sample, template <class> class Place>
class ProtobufCodec {
  using Message = typename MessageFor<Sample>::Type;

 public:
  explicit ProtobufCodec(const Sample& sample) : m_sample(sample) {
    fill(m_sample, m_kept.get());
    m_bytes.resize(m_kept.get().ByteSizeLong());
    write(m_kept.get());
  }

  // Like this library with room: the bytes go into a block that is there already.
  std::size_t encode() {
    Place<Message> place;
    fill(m_sample, place.get());
    return write(place.get());
  }
  std::size_t write() { return write(m_kept.get()); }

  void decode() {
    Place<Message> place;
    parse(place.get());
    benchmark::DoNotOptimize(place);
  }
  std::uint64_t decodeAndRead() {
    Place<Message> place;
    parse(place.get());
    Digest digest;
    readAll(place.get(), digest);
    return digest.sum();
  }

 private:
  std::size_t write(const Message& message) {
    message.SerializeToArray(m_bytes.data(), static_cast<int>(m_bytes.size()));
    benchmark::ClobberMemory();
    return m_bytes.size();
  }
  void parse(Message& message) const {
    message.ParseFromArray(m_bytes.data(), static_cast<int>(m_bytes.size()));
  }

  const Sample& m_sample;
  Place<Message> m_kept;
  std::vector<unsigned char> m_bytes;
};

template <class Sample>
using PlainCodec = ProtobufCodec<Sample, Plain>;
template <class Sample>
using ArenaCodec = ProtobufCodec<Sample, OnArena>;

const bool kRegistered =
    registerPeer<PlainCodec>("protobuf") && registerPeer<ArenaCodec>("protobuf_arena") &&
    registerInjections<PlainCodec>("protobuf") && registerInjections<ArenaCodec>("protobuf_arena");

}  // namespace

}  // namespace bench
