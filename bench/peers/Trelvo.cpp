// This library. `lib:trelvo` writes into a fresh stream, `lib:trelvo_room` into a buffer that has
// room from an earlier write; they read alike.

#include <trelvo/BufferStream.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/ValueCollection.h>
#include <trelvo/schema/Area.h>
#include <trelvo/schema/Coverage.h>
#include <trelvo/schema/EUtraCellDn.h>
#include <trelvo/schema/EUtraCellMeasurement.h>
#include <trelvo/schema/EUtraFrequencyInfo.h>
#include <trelvo/schema/EUtraNwMeasurement.h>
#include <trelvo/schema/EUtraServingCellMeasurement.h>
#include <trelvo/schema/GeranCellDn.h>
#include <trelvo/schema/GeranCellMeasurement.h>
#include <trelvo/schema/GeranFrequencyInfo.h>
#include <trelvo/schema/GeranNeighborCellInjection.h>
#include <trelvo/schema/GeranNwMeasurement.h>
#include <trelvo/schema/GeranServingCellInjection.h>
#include <trelvo/schema/GeranServingCellMeasurement.h>
#include <trelvo/schema/GnssMeasurement.h>
#include <trelvo/schema/GnssMeasurementData.h>
#include <trelvo/schema/Injection.h>
#include <trelvo/schema/MeasurementContainer.h>
#include <trelvo/schema/WlanApMeasurement.h>
#include <trelvo/schema/WlanDn.h>
#include <trelvo/schema/WlanMeasurement.h>

#include <algorithm>

#include "bench/WireBench.h"
#include "bench/peers/WireForm.h"

namespace bench {

namespace {

using namespace trelvo;
using gom::GenericObject;
using gom::SharedPointer;

// -- building -------------------------------------------------------------------------------------

SharedPointer<schema::GeranServingCellMeasurement> build(const GeranServing& s) {
  auto serving = schema::GeranServingCellMeasurement::create();
  serving->setFrequencyInfo(schema::GeranFrequencyInfo::create(s.bsic, s.arfcn));
  serving->setRxLevel(s.rxLevel);
  serving->setFrequency(s.frequency);
  serving->setTimingAdvance(s.timingAdvance);
  return serving;
}

SharedPointer<schema::GeranNwMeasurement> build(const GeranNeighbor& n) {
  auto neighbor =
      schema::GeranNwMeasurement::create(schema::GeranFrequencyInfo::create(n.bsic, n.arfcn));
  neighbor->setLac(n.lac);
  neighbor->setCid(n.cid);
  neighbor->setRxLevel(n.rxLevel);
  return neighbor;
}

SharedPointer<schema::GeranCellMeasurement> build(const GeranSample& sample) {
  const GeranServing& s = sample.serving;
  auto cell = schema::GeranCellMeasurement::create(
      schema::GeranCellDn::create(s.mcc, s.mnc, s.lac, s.cid), s.timeStamp);
  cell->setServingCellMeasurement(build(s));
  for (const GeranNeighbor& neighbor : sample.neighbors) {
    cell->addNwMeasurement(build(neighbor));
  }
  return cell;
}

SharedPointer<schema::Area> build(const Ellipse& e) {
  return schema::Area::create(e.latitude, e.longitude, e.majorAxis, e.minorAxis, e.angle);
}

SharedPointer<schema::GeranNeighborCellInjection> build(const CoveredNeighbor& neighbor) {
  auto injection = schema::GeranNeighborCellInjection::create();
  injection->setNeighborCellMeasurement(build(neighbor.cell));
  injection->setCoverage(build(neighbor.coverage));
  return injection;
}

SharedPointer<schema::GeranServingCellInjection> build(const CoveredServing& serving) {
  const GeranServing& s = serving.cell;
  auto injection = schema::GeranServingCellInjection::create(
      schema::GeranCellDn::create(s.mcc, s.mnc, s.lac, s.cid), s.timeStamp);
  injection->setServingCellMeasurement(build(s));
  injection->setCoverage(build(serving.coverage));
  for (const CoveredNeighbor& neighbor : serving.neighbors) {
    injection->addNeighborCellInjection(build(neighbor)->wrappedObject());
  }
  return injection;
}

SharedPointer<schema::Injection> build(const InjectionSample& sample) {
  auto injection = schema::Injection::create();
  for (const CoveredServing& cell : sample.cells) {
    injection->addGeranInjection(build(cell)->wrappedObject());
  }
  injection->setMeasurementId(sample.measurementId);
  return injection;
}

SharedPointer<schema::EUtraNwMeasurement> build(const EUtraCell& cell) {
  auto nw =
      schema::EUtraNwMeasurement::create(schema::EUtraFrequencyInfo::create(cell.earfcn, cell.pci));
  nw->setUcid(cell.ucid);
  nw->setTac(cell.tac);
  nw->setRsrp(cell.rsrp);
  nw->setRsrq(cell.rsrq);
  return nw;
}

SharedPointer<schema::EUtraCellMeasurement> build(const EUtraSample& sample) {
  const EUtraServing& s = sample.serving;
  auto cell = schema::EUtraCellMeasurement::create(
      schema::EUtraCellDn::create(s.mcc, s.mnc, s.ucid), s.timeStamp);
  auto serving = schema::EUtraServingCellMeasurement::create();
  serving->setNwMeasurement(build(s.cell));
  serving->setTimingAdvance(s.timingAdvance);
  cell->setServingCellMeasurement(serving);
  for (const EUtraCell& neighbor : sample.neighbors) {
    cell->addNwMeasurement(build(neighbor));
  }
  return cell;
}

SharedPointer<schema::WlanMeasurement> build(const Wlan& wlan) {
  const MacAddress address(wlan.bssid);
  auto dn = schema::WlanDn::create();
  dn->setBssid(address.bytes, sizeof address.bytes);
  auto measurement = schema::WlanMeasurement::create(dn, wlan.timeStamp);
  measurement->setElapsedRealtimeTimeStamp(wlan.elapsedRealtimeTimeStamp);
  auto ap = schema::WlanApMeasurement::create();
  ap->setSsid(wlan.ssid);
  ap->setRxLevel(wlan.rxLevel);
  ap->setRssi(wlan.rssi);
  ap->setDistance(wlan.distance);
  ap->setDistanceUncertainty(wlan.distanceUncertainty);
  ap->setBand(wlan.band);
  measurement->setWlanApMeasurement(ap);
  return measurement;
}

SharedPointer<schema::GnssMeasurement> build(const Gnss& fix) {
  schema::Coverage coverage(fix.latitude, fix.longitude, fix.majorAxis, fix.minorAxis, fix.angle,
                            fix.altitude, fix.altitudeUncertainty);
  coverage.setHorizontalCepUncertainty(fix.horizontalCepUncertainty);
  auto data = schema::GnssMeasurementData::create(coverage);
  data->setSpeed(fix.speed);
  data->setSpeedUncertainty(fix.speedUncertainty);
  data->setCourse(fix.course);
  data->setCourseUncertainty(fix.courseUncertainty);
  return schema::GnssMeasurement::create(fix.timeStamp, data);
}

SharedPointer<schema::MeasurementContainer> build(const ContainerSample& sample) {
  auto container = schema::MeasurementContainer::create();
  for (const EUtraSample& cell : sample.eutra) {
    container->addEUtraMeasurement(build(cell)->wrappedObject());
  }
  for (const Wlan& wlan : sample.wlans) {
    container->addWlanMeasurement(build(wlan)->wrappedObject());
  }
  for (const Gnss& fix : sample.gnss) {
    container->addGnssMeasurement(build(fix)->wrappedObject());
  }
  container->setMeasurementId(sample.measurementId);
  return container;
}

// -- reading fields -------------------------------------------------------------------------------

EUtraCell read(const schema::EUtraNwMeasurement& nw) {
  const auto frequency = nw.frequencyInfo();
  return {frequency->earfcn(), frequency->pci(), nw.ucid(), nw.tac(), nw.rsrp(), nw.rsrq()};
}

Wlan read(const schema::WlanMeasurement& wlan) {
  const auto ap = wlan.wlanApMeasurement();
  return {wlan.timeStamp(),   wlan.elapsedRealtimeTimeStamp(),
          wlan.dn()->bssid(), ap->ssid(),
          ap->rxLevel(),      ap->rssi(),
          ap->distance(),     ap->distanceUncertainty(),
          ap->band()};
}

Gnss read(const schema::GnssMeasurement& fix) {
  const auto data = fix.measurementData();
  const schema::Coverage& coverage = data->coverage();
  return {fix.timeStamp(),
          coverage.latitude(),
          coverage.longitude(),
          coverage.majorAxis(),
          coverage.minorAxis(),
          coverage.angle(),
          coverage.altitude(),
          coverage.altitudeUncertainty(),
          coverage.horizontalCepUncertainty(),
          data->speed(),
          data->speedUncertainty(),
          data->course(),
          data->courseUncertainty()};
}

template <class NwMeasurement, class Cell, class Read>
void forEachNeighbor(const Cell& cell, Read read) {
  const auto neighbors = cell.nwMeasurementCollection();
  for (const gom::Variant* const element : neighbors->items) {
    SharedPointer<gom::ObjectBase> record;
    if (element->getObjectValue(record) == StatusOk) {
      read(static_cast<const NwMeasurement&>(*record));
    }
  }
}

// A measurement or an injection.
template <class Cell>
GeranServing readServing(const Cell& cell) {
  const auto dn = cell.dn();
  const auto serving = cell.servingCellMeasurement();
  const auto frequency = serving->frequencyInfo();
  return {cell.timeStamp(),
          dn->mcc(),
          dn->mnc(),
          dn->lac(),
          dn->cid(),
          frequency->bsic(),
          frequency->arfcn(),
          serving->rxLevel(),
          serving->frequency(),
          serving->timingAdvance()};
}

GeranNeighbor read(const schema::GeranNwMeasurement& nw) {
  const auto info = nw.frequencyInfo();
  return {info->bsic(), info->arfcn(), nw.lac(), nw.cid(), nw.rxLevel()};
}

Ellipse read(const schema::Area& area) {
  return {area.latitude(), area.longitude(), area.majorAxis(), area.minorAxis(), area.angle()};
}

void readAll(const schema::GeranCellMeasurement& cell, Digest& digest) {
  digest(readServing(cell));
  forEachNeighbor<schema::GeranNwMeasurement>(cell,
                                              [&digest](const auto& nw) { digest(read(nw)); });
}

// Each member of a list as the injection that it holds.
template <class Member, class Read>
void forEachInjection(const SharedPointer<gom::ValueCollection>& list, Read read) {
  for (const gom::Variant* const element : list->items) {
    SharedPointer<GenericObject> object;
    if (element->getGenericObjectValue(object) == StatusOk) {
      read(*Member::create(object));
    }
  }
}

void readAll(const schema::Injection& injection, Digest& digest) {
  digest.add(injection.measurementId());
  forEachInjection<schema::GeranServingCellInjection>(
      injection.geranInjectionCollection(), [&digest](const auto& cell) {
        digest(readServing(cell));
        digest(read(*cell.coverage()));
        forEachInjection<schema::GeranNeighborCellInjection>(
            cell.neighborCellInjectionCollection(), [&digest](const auto& neighbor) {
              digest(read(*neighbor.neighborCellMeasurement()));
              digest(read(*neighbor.coverage()));
            });
      });
}

void readAll(const schema::EUtraCellMeasurement& cell, Digest& digest) {
  const auto dn = cell.dn();
  const auto serving = cell.servingCellMeasurement();
  digest(EUtraServing{cell.timeStamp(), dn->mcc(), dn->mnc(), dn->ucid(),
                      read(*serving->nwMeasurement()), serving->timingAdvance()});
  forEachNeighbor<schema::EUtraNwMeasurement>(cell,
                                              [&digest](const auto& nw) { digest(read(nw)); });
}

void readAll(const schema::MeasurementContainer& container, Digest& digest) {
  digest.add(container.measurementId());
  for (unsigned int i = 0; const auto cell = container.eutraMeasurement(i); ++i) {
    readAll(*cell, digest);
  }
  for (unsigned int i = 0; const auto wlan = container.wlanMeasurement(i); ++i) {
    digest(read(*wlan));
  }
  for (unsigned int i = 0; const auto fix = container.gnssMeasurement(i); ++i) {
    digest(read(*fix));
  }
}

// -- codec ----------------------------------------------------------------------------------------

template <class Sample>
struct WrapperFor;
template <>
struct WrapperFor<GeranSample> {
  using Type = schema::GeranCellMeasurement;
};
template <>
struct WrapperFor<ContainerSample> {
  using Type = schema::MeasurementContainer;
};
template <>
struct WrapperFor<InjectionSample> {
  using Type = schema::Injection;
};

template <class Sample, bool withRoom>
class TrelvoCodec {
  using Wrapper = typename WrapperFor<Sample>::Type;

 public:
  explicit TrelvoCodec(const Sample& sample) : m_sample(sample), m_kept(build(sample)) {
    static_cast<void>(m_kept->write(m_written));
    static_cast<void>(m_kept->write(m_output));
  }

  std::size_t encode() { return write(*build(m_sample)); }
  std::size_t write() { return write(*m_kept); }
  void decode() {
    auto wrapper = parse();
    benchmark::DoNotOptimize(wrapper);
  }
  std::uint64_t decodeAndRead() {
    if (!writesTheWireForm()) {
      return 0;
    }
    Digest digest;
    readAll(*parse(), digest);
    return digest.sum();
  }

 private:
  std::size_t write(const Wrapper& wrapper) {
    if constexpr (withRoom) {
      m_output.buffer().setWritePosition(0);
      static_cast<void>(wrapper.write(m_output));
      benchmark::ClobberMemory();
      return m_output.buffer().size();
    } else {
      BufferStream output;
      static_cast<void>(wrapper.write(output));
      benchmark::DoNotOptimize(output.buffer().data());
      benchmark::ClobberMemory();
      return output.buffer().size();
    }
  }

  SharedPointer<Wrapper> parse() {
    m_written.seekFromStart(0);
    return Wrapper::create(GenericObject::create(m_written));
  }

  // Looked at once: the bytes are those that the bare encoder of the floor makes.
  bool writesTheWireForm() {
    if (!m_checked) {
      const auto expected = wireForm(m_sample);
      const Buffer& written = m_written.buffer();
      m_checked = std::equal(expected.begin(), expected.end(), written.data(),
                             written.data() + written.size());
    }
    return m_checked;
  }

  const Sample& m_sample;
  SharedPointer<Wrapper> m_kept;
  BufferStream m_written;
  BufferStream m_output;
  bool m_checked = false;
};

template <class Sample>
using FreshCodec = TrelvoCodec<Sample, false>;
template <class Sample>
using RoomCodec = TrelvoCodec<Sample, true>;

const bool kRegistered = registerPeer<FreshCodec>("lib:trelvo") &&
                         registerPeer<RoomCodec>("lib:trelvo_room", Encode | Write | Linearity) &&
                         registerInjections<FreshCodec>("lib:trelvo") &&
                         registerInjections<RoomCodec>("lib:trelvo_room", Encode | Write);

// What the buffer's growth in 512-byte steps takes by itself, when nobody asks for room.
void growByAppending(benchmark::State& state) {
  const unsigned char element[63] = {};
  for (auto _ : state) {
    Buffer buffer;
    for (std::int64_t i = 0; i < state.range(0); ++i) {
      buffer.append(element, sizeof element);
    }
    benchmark::DoNotOptimize(buffer.data());
  }
}
BENCHMARK(growByAppending)->Name("wire/growth")->RangeMultiplier(10)->Range(10, 10000);

}  // namespace

}  // namespace bench
