// QDataStream: plain values one after another, without keys, presence or classes.

#include <QByteArray>
#include <QDataStream>

#include "bench/WireBench.h"

namespace bench {

namespace {

QDataStream& operator<<(QDataStream& out, const GeranNeighbor& n) {
  return out << n.bsic << n.arfcn << n.lac << n.cid << n.rxLevel;
}
QDataStream& operator>>(QDataStream& in, GeranNeighbor& n) {
  return in >> n.bsic >> n.arfcn >> n.lac >> n.cid >> n.rxLevel;
}

QDataStream& operator<<(QDataStream& out, const GeranServing& s) {
  return out << s.timeStamp << s.mcc << s.mnc << s.lac << s.cid << s.bsic << s.arfcn << s.rxLevel
             << s.frequency << s.timingAdvance;
}
QDataStream& operator>>(QDataStream& in, GeranServing& s) {
  return in >> s.timeStamp >> s.mcc >> s.mnc >> s.lac >> s.cid >> s.bsic >> s.arfcn >> s.rxLevel >>
         s.frequency >> s.timingAdvance;
}

QDataStream& operator<<(QDataStream& out, const EUtraCell& c) {
  return out << c.earfcn << c.pci << c.ucid << c.tac << c.rsrp << c.rsrq;
}
QDataStream& operator>>(QDataStream& in, EUtraCell& c) {
  return in >> c.earfcn >> c.pci >> c.ucid >> c.tac >> c.rsrp >> c.rsrq;
}

QDataStream& operator<<(QDataStream& out, const EUtraServing& s) {
  return out << s.timeStamp << s.mcc << s.mnc << s.ucid << s.cell << s.timingAdvance;
}
QDataStream& operator>>(QDataStream& in, EUtraServing& s) {
  return in >> s.timeStamp >> s.mcc >> s.mnc >> s.ucid >> s.cell >> s.timingAdvance;
}

QDataStream& operator<<(QDataStream& out, const Wlan& w) {
  return out << w.timeStamp << qint64{w.elapsedRealtimeTimeStamp} << quint64{w.bssid} << w.ssid
             << w.rxLevel << w.rssi << w.distance << w.distanceUncertainty << w.band;
}
QDataStream& operator>>(QDataStream& in, Wlan& w) {
  qint64 elapsed = 0;
  quint64 bssid = 0;
  in >> w.timeStamp >> elapsed >> bssid >> w.ssid >> w.rxLevel >> w.rssi >> w.distance >>
      w.distanceUncertainty >> w.band;
  w.elapsedRealtimeTimeStamp = elapsed;
  w.bssid = bssid;
  return in;
}

QDataStream& operator<<(QDataStream& out, const Gnss& g) {
  return out << g.timeStamp << g.latitude << g.longitude << g.majorAxis << g.minorAxis << g.angle
             << g.altitude << g.altitudeUncertainty << g.horizontalCepUncertainty << g.speed
             << g.speedUncertainty << g.course << g.courseUncertainty;
}
QDataStream& operator>>(QDataStream& in, Gnss& g) {
  return in >> g.timeStamp >> g.latitude >> g.longitude >> g.majorAxis >> g.minorAxis >> g.angle >>
         g.altitude >> g.altitudeUncertainty >> g.horizontalCepUncertainty >> g.speed >>
         g.speedUncertainty >> g.course >> g.courseUncertainty;
}

QDataStream& operator<<(QDataStream& out, const EUtraSample& sample);
QDataStream& operator>>(QDataStream& in, EUtraSample& sample);

template <class T>
QDataStream& operator<<(QDataStream& out, const std::vector<T>& values) {
  out << static_cast<quint32>(values.size());
  for (const T& value : values) {
    out << value;
  }
  return out;
}
template <class T>
QDataStream& operator>>(QDataStream& in, std::vector<T>& values) {
  quint32 count = 0;
  in >> count;
  for (; count > 0 && in.status() == QDataStream::Ok; --count) {
    in >> values.emplace_back();
  }
  return in;
}

QDataStream& operator<<(QDataStream& out, const EUtraSample& sample) {
  return out << sample.serving << sample.neighbors;
}
QDataStream& operator>>(QDataStream& in, EUtraSample& sample) {
  return in >> sample.serving >> sample.neighbors;
}

QDataStream& operator<<(QDataStream& out, const GeranSample& sample) {
  return out << sample.serving << sample.neighbors;
}
QDataStream& operator>>(QDataStream& in, GeranSample& sample) {
  return in >> sample.serving >> sample.neighbors;
}

QDataStream& operator<<(QDataStream& out, const ContainerSample& sample) {
  return out << sample.measurementId << sample.eutra << sample.wlans << sample.gnss;
}
QDataStream& operator>>(QDataStream& in, ContainerSample& sample) {
  return in >> sample.measurementId >> sample.eutra >> sample.wlans >> sample.gnss;
}

template <class Sample>
class QDataStreamCodec {
 public:
  explicit QDataStreamCodec(const Sample& sample) : m_sample(sample) {
    m_bytes.reserve(static_cast<int>(write()));
  }

  std::size_t encode() {
    const Sample built(m_sample);
    return write(built);
  }
  std::size_t write() { return write(m_sample); }
  void decode() {
    Sample sample = parse();
    benchmark::DoNotOptimize(sample);
  }
  std::uint64_t decodeAndRead() { return digestOf(parse()); }

 private:
  std::size_t write(const Sample& sample) {
    m_bytes.resize(0);
    QDataStream out(&m_bytes, QIODevice::WriteOnly);
    out << sample;
    benchmark::ClobberMemory();
    return static_cast<std::size_t>(m_bytes.size());
  }
  Sample parse() const {
    QDataStream in(m_bytes);
    Sample sample{};
    in >> sample;
    return sample;
  }

  const Sample& m_sample;
  QByteArray m_bytes;
};

const bool kRegistered = registerPeer<QDataStreamCodec>("QDataStream");

}  // namespace

}  // namespace bench
