// The least that the wire form and its tree leave to do: built, written, read and dropped by the
// bare coder, with every block from the heap or the fixed-size ones from lists of freed ones.

#include <memory>

#include "bench/WireBench.h"
#include "bench/peers/FloorCoder.h"
#include "bench/peers/WireForm.h"

namespace bench {

namespace {

using namespace bare;

// -- building -------------------------------------------------------------------------------------

template <class Blocks>
class Builder {
 public:
  static ObjectNode* build(const GeranSample& sample) {
    const GeranServing& s = sample.serving;
    ObjectNode* const object = make::makeObject(2);
    add(object, 205, Uint32).bits = s.timeStamp;
    auto* const dn = addRecord<GeranDn>(object, 200, 0xF);
    dn->mcc = s.mcc, dn->mnc = s.mnc, dn->lac = s.lac, dn->cid = s.cid;
    addServing(object, s);
    for (const GeranNeighbor& n : sample.neighbors) {
      addElement(object, 303, Record)->target = build(n);
    }
    return object;
  }

  static ObjectNode* build(const InjectionSample& sample) {
    ObjectNode* const object = make::makeObject(5);
    for (const CoveredServing& cell : sample.cells) {
      addElement(object, 304, Object)->target = build(cell);
    }
    add(object, 317, Uint32).bits = sample.measurementId;
    return object;
  }

  static ObjectNode* build(const ContainerSample& sample) {
    ObjectNode* const object = make::makeObject(1);
    for (const EUtraSample& cell : sample.eutra) {
      addElement(object, 310, Object)->target = build(cell);
    }
    for (const Wlan& wlan : sample.wlans) {
      addElement(object, 314, Object)->target = build(wlan);
    }
    for (const Gnss& fix : sample.gnss) {
      addElement(object, 315, Object)->target = build(fix);
    }
    add(object, 317, Uint32).bits = sample.measurementId;
    return object;
  }

 private:
  using make = Nodes<Blocks>;

  static Value& add(ObjectNode* object, std::uint16_t key, Tag tag) {
    Value& value = object->properties->add() = Value();
    value.key = key;
    value.tag = tag;
    return value;
  }

  template <class Node>
  static Node* addRecord(ObjectNode* object, std::uint16_t key, std::uint32_t mask) {
    Node* const record = make::template makeRecord<Node>(mask);
    add(object, key, Record).target = record;
    return record;
  }

  static Value* addElement(ObjectNode* object, std::uint16_t key, Tag tag) {
    const Value* list = object->find(key);
    if (list == nullptr) {
      Value& value = add(object, key, Collection);
      value.target = Blocks::template make<CollectionNode>();
      list = &value;
    }
    Value* const element = Blocks::template make<Value>();
    element->tag = tag;
    static_cast<CollectionNode*>(list->target)->add() = element;
    return element;
  }

  static GeranNw* geranNw(std::uint32_t mask, std::uint8_t bsic, std::uint16_t arfcn) {
    auto* const nw = make::template makeRecord<GeranNw>(mask);
    nw->frequency = Blocks::template make<GeranFrequency>();
    nw->frequency->mask = 3;
    nw->frequency->bsic = bsic, nw->frequency->arfcn = arfcn;
    return nw;
  }

  static GeranNw* build(const GeranNeighbor& n) {
    GeranNw* const nw = geranNw(0xF, n.bsic, n.arfcn);
    nw->lac = n.lac, nw->cid = n.cid, nw->rxLevel = n.rxLevel;
    return nw;
  }

  static void addServing(ObjectNode* object, const GeranServing& s) {
    auto* const serving = addRecord<GeranServingRecord>(object, 202, 0x1A);
    serving->nw = geranNw(0x9, s.bsic, s.arfcn);
    serving->nw->rxLevel = s.rxLevel;
    serving->frequency = s.frequency, serving->timingAdvance = s.timingAdvance;
  }

  static void addArea(ObjectNode* object, const Ellipse& ellipse) {
    auto* const area = addRecord<AreaRecord>(object, 204, 0x3B);
    area->latitude = ellipse.latitude, area->longitude = ellipse.longitude;
    area->majorAxis = ellipse.majorAxis, area->minorAxis = ellipse.minorAxis;
    area->angle = ellipse.angle;
  }

  static ObjectNode* build(const CoveredNeighbor& neighbor) {
    ObjectNode* const object = make::makeObject(9);
    add(object, 203, Record).target = build(neighbor.cell);
    addArea(object, neighbor.coverage);
    return object;
  }

  static ObjectNode* build(const CoveredServing& serving) {
    const GeranServing& s = serving.cell;
    ObjectNode* const object = make::makeObject(6);
    auto* const dn = addRecord<GeranDn>(object, 200, 0xF);
    dn->mcc = s.mcc, dn->mnc = s.mnc, dn->lac = s.lac, dn->cid = s.cid;
    add(object, 205, Uint32).bits = s.timeStamp;
    addServing(object, s);
    addArea(object, serving.coverage);
    for (const CoveredNeighbor& neighbor : serving.neighbors) {
      addElement(object, 307, Object)->target = build(neighbor);
    }
    return object;
  }

  static EUtraNw* build(const EUtraCell& cell) {
    auto* const nw = make::template makeRecord<EUtraNw>(0x1F);
    nw->frequency = Blocks::template make<EUtraFrequency>();
    nw->frequency->mask = 3;
    nw->frequency->earfcn = cell.earfcn, nw->frequency->pci = cell.pci;
    nw->ucid = cell.ucid, nw->tac = cell.tac, nw->rsrp = cell.rsrp, nw->rsrq = cell.rsrq;
    return nw;
  }

  static ObjectNode* build(const EUtraSample& sample) {
    ObjectNode* const object = make::makeObject(14);
    add(object, 205, Uint32).bits = sample.serving.timeStamp;
    auto* const dn = addRecord<EUtraDn>(object, 200, 7);
    dn->mcc = sample.serving.mcc, dn->mnc = sample.serving.mnc, dn->ucid = sample.serving.ucid;
    auto* const serving = addRecord<EUtraServingRecord>(object, 202, 3);
    serving->nw = build(sample.serving.cell);
    serving->timingAdvance = sample.serving.timingAdvance;
    for (const EUtraCell& neighbor : sample.neighbors) {
      addElement(object, 303, Record)->target = build(neighbor);
    }
    return object;
  }

  static ObjectNode* build(const Wlan& wlan) {
    ObjectNode* const object = make::makeObject(20);
    add(object, 205, Uint32).bits = wlan.timeStamp;
    auto* const dn = addRecord<WlanDn>(object, 200, 1);
    dn->length = 6;
    const MacAddress address(wlan.bssid);
    std::memcpy(dn->bssid, address.bytes, sizeof address.bytes);
    add(object, 206, Int64).bits = static_cast<std::uint64_t>(wlan.elapsedRealtimeTimeStamp);
    auto* const ap = addRecord<WlanAp>(object, 129, 0x13B);
    ap->ssid = wlan.ssid, ap->rxLevel = wlan.rxLevel, ap->rssi = wlan.rssi;
    ap->distance = wlan.distance, ap->distanceUncertainty = wlan.distanceUncertainty;
    ap->band = wlan.band;
    return object;
  }

  static ObjectNode* build(const Gnss& fix) {
    ObjectNode* const object = make::makeObject(21);
    add(object, 205, Uint32).bits = fix.timeStamp;
    auto* const data = addRecord<GnssData>(object, 130, 0x1E00);
    data->coverageMask = 0xFF;
    data->latitude = fix.latitude, data->longitude = fix.longitude;
    data->majorAxis = fix.majorAxis, data->minorAxis = fix.minorAxis;
    data->angle = fix.angle, data->altitude = fix.altitude;
    data->altitudeUncertainty = fix.altitudeUncertainty;
    data->horizontalCepUncertainty = fix.horizontalCepUncertainty;
    data->speed = fix.speed, data->speedUncertainty = fix.speedUncertainty;
    data->course = fix.course, data->courseUncertainty = fix.courseUncertainty;
    return object;
  }
};

// -- reading fields -------------------------------------------------------------------------------

template <class Node>
const Node& target(const ObjectNode& object, std::uint16_t key) {
  return *static_cast<const Node*>(object.find(key)->target);
}

std::uint32_t number(const ObjectNode& object, std::uint16_t key) {
  return static_cast<std::uint32_t>(object.find(key)->bits);
}

template <class Read>
void forEach(const ObjectNode& object, std::uint16_t key, Read read) {
  if (const Value* const list = object.find(key)) {
    for (const Value* const element : *static_cast<CollectionNode*>(list->target)) {
      read(element->target);
    }
  }
}

EUtraCell read(const EUtraNw& nw) {
  return {nw.frequency->earfcn, nw.frequency->pci, nw.ucid, nw.tac, nw.rsrp, nw.rsrq};
}

void readEUtra(const ObjectNode& object, Digest& digest) {
  const auto& dn = target<EUtraDn>(object, 200);
  const auto& serving = target<EUtraServingRecord>(object, 202);
  digest(EUtraServing{number(object, 205), dn.mcc, dn.mnc, dn.ucid, read(*serving.nw),
                      serving.timingAdvance});
  forEach(object, 303, [&](const void* nw) { digest(read(*static_cast<const EUtraNw*>(nw))); });
}

void readWlan(const ObjectNode& object, Digest& digest) {
  const auto& dn = target<WlanDn>(object, 200);
  const auto& ap = target<WlanAp>(object, 129);
  std::uint64_t bssid = 0xFFFFU;
  for (unsigned int i = 0; i < 3; ++i) {
    bssid |= std::uint64_t{dn.bssid[i]} << (32U - 8U * i);
  }
  bssid = bssid << 24U | std::uint64_t{dn.bssid[3]} << 16U | std::uint64_t{dn.bssid[4]} << 8U |
          dn.bssid[5];
  digest(Wlan{number(object, 205), static_cast<std::int64_t>(object.find(206)->bits), bssid,
              ap.ssid, ap.rxLevel, ap.rssi, ap.distance, ap.distanceUncertainty, ap.band});
}

void readGnss(const ObjectNode& object, Digest& digest) {
  const auto& data = target<GnssData>(object, 130);
  digest(Gnss{number(object, 205), data.latitude, data.longitude, data.majorAxis, data.minorAxis,
              data.angle, data.altitude, data.altitudeUncertainty, data.horizontalCepUncertainty,
              data.speed, data.speedUncertainty, data.course, data.courseUncertainty});
}

GeranNeighbor read(const GeranNw& nw) {
  return {nw.frequency->bsic, nw.frequency->arfcn, nw.lac, nw.cid, nw.rxLevel};
}

Ellipse read(const AreaRecord& area) {
  return {area.latitude, area.longitude, area.majorAxis, area.minorAxis, area.angle};
}

void readGeran(const ObjectNode& object, Digest& digest) {
  const auto& dn = target<GeranDn>(object, 200);
  const auto& serving = target<GeranServingRecord>(object, 202);
  const GeranFrequency& frequency = *serving.nw->frequency;
  digest(GeranServing{number(object, 205), dn.mcc, dn.mnc, dn.lac, dn.cid, frequency.bsic,
                      frequency.arfcn, serving.nw->rxLevel, serving.frequency,
                      serving.timingAdvance});
}

void readAll(const GeranSample* /*kind*/, const ObjectNode& object, Digest& digest) {
  readGeran(object, digest);
  forEach(object, 303, [&](const void* nw) { digest(read(*static_cast<const GeranNw*>(nw))); });
}

void readInjected(const ObjectNode& object, Digest& digest) {
  readGeran(object, digest);
  digest(read(target<AreaRecord>(object, 204)));
  forEach(object, 307, [&digest](const void* element) {
    const auto& neighbor = *static_cast<const ObjectNode*>(element);
    digest(read(target<GeranNw>(neighbor, 203)));
    digest(read(target<AreaRecord>(neighbor, 204)));
  });
}

void readAll(const InjectionSample* /*kind*/, const ObjectNode& object, Digest& digest) {
  digest.add(number(object, 317));
  forEach(object, 304, [&digest](const void* member) {
    readInjected(*static_cast<const ObjectNode*>(member), digest);
  });
}

void readAll(const ContainerSample* /*kind*/, const ObjectNode& object, Digest& digest) {
  const auto with = [&digest](auto read) {
    return [&digest, read](const void* member) {
      read(*static_cast<const ObjectNode*>(member), digest);
    };
  };
  digest.add(number(object, 317));
  forEach(object, 310, with(readEUtra));
  forEach(object, 314, with(readWlan));
  forEach(object, 315, with(readGnss));
}

// -- codec ----------------------------------------------------------------------------------------

template <class Blocks>
struct Drop {
  void operator()(ObjectNode* object) const { Nodes<Blocks>::dropObject(object); }
};
template <class Blocks>
using Tree = std::unique_ptr<ObjectNode, Drop<Blocks>>;

std::size_t roomFor(const GeranSample& /*sample*/) { return 1024; }
std::size_t roomFor(const ContainerSample& sample) { return 4096 + 64 * sample.wlans.size(); }

std::size_t roomFor(const InjectionSample& sample) { return 4096 + 1024 * sample.cells.size(); }

template <class Sample, class Blocks>
class FloorCodec {
 public:
  explicit FloorCodec(const Sample& sample)
      : m_sample(sample),
        m_kept(Builder<Blocks>::build(sample)),
        m_bytes(roomFor(sample)),
        m_size(write()) {}

  std::size_t encode() {
    const Tree<Blocks> tree(Builder<Blocks>::build(m_sample));
    return write(*tree);
  }
  std::size_t write() { return write(*m_kept); }
  void decode() {
    Tree<Blocks> tree = parse();
    benchmark::DoNotOptimize(tree);
  }
  std::uint64_t decodeAndRead() {
    const Tree<Blocks> tree = parse();
    Digest digest;
    readAll(static_cast<const Sample*>(nullptr), *tree, digest);
    return digest.sum();
  }

  std::vector<unsigned char> bytes() const {
    return {m_bytes.begin(), m_bytes.begin() + static_cast<std::ptrdiff_t>(m_size)};
  }

 private:
  std::size_t write(const ObjectNode& object) {
    Writer out{m_bytes.data()};
    writeObject(object, out);
    benchmark::ClobberMemory();
    return static_cast<std::size_t>(out.at - m_bytes.data());
  }
  Tree<Blocks> parse() const {
    Reader in{m_bytes.data(), m_bytes.data() + m_size};
    return Tree<Blocks>(TreeReader<Blocks>::readObject(in));
  }

  const Sample& m_sample;
  Tree<Blocks> m_kept;
  std::vector<unsigned char> m_bytes;
  std::size_t m_size;
};

template <class Sample>
using HeapFloor = FloorCodec<Sample, HeapBlocks>;
template <class Sample>
using PooledFloor = FloorCodec<Sample, PooledBlocks>;

const bool kRegistered = registerPeer<HeapFloor>("floor:wire+malloc_tree") &&
                         registerPeer<PooledFloor>("floor:wire+pooled_tree") &&
                         registerInjections<HeapFloor>("floor:wire+malloc_tree") &&
                         registerInjections<PooledFloor>("floor:wire+pooled_tree");

}  // namespace

std::vector<unsigned char> wireForm(const GeranSample& sample) {
  return HeapFloor<GeranSample>(sample).bytes();
}
std::vector<unsigned char> wireForm(const ContainerSample& sample) {
  return HeapFloor<ContainerSample>(sample).bytes();
}
std::vector<unsigned char> wireForm(const InjectionSample& sample) {
  return HeapFloor<InjectionSample>(sample).bytes();
}

}  // namespace bench
