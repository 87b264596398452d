#pragma once

#include <cstdint>
#include <cstdlib>
#include <new>
#include <utility>

// The bare tree that this library's wire form describes: one block for each generic object,
// property list, list storage, record, collection and element, with no wrapper, handle, count or
// virtual function. `Blocks` says where the fixed-size blocks come from.

namespace bench::bare {

/// Every block from the heap.
struct HeapBlocks {
  template <class T>
  static T* make() {
    return new T();
  }
  template <class T>
  static void drop(T* block) {
    delete block;
  }
};

/// Fixed-size blocks from lists of freed ones, a list a size, without bound.
class PooledBlocks {
 public:
  template <class T>
  static T* make() {
    Freed*& head = s_freed<sizeof(T)>;
    if (head == nullptr) {
      return ::new (std::malloc(sizeof(T))) T();
    }
    Freed* const block = std::exchange(head, head->next);
    return ::new (static_cast<void*>(block)) T();
  }
  template <class T>
  static void drop(T* block) {
    Freed*& head = s_freed<sizeof(T)>;
    head = ::new (static_cast<void*>(block)) Freed{head};
  }

 private:
  struct Freed {
    Freed* next;
  };
  template <std::size_t size>
  inline static Freed* s_freed = nullptr;
};

/// A growing array of plain values, its storage always from the heap.
template <class T>
struct List {
  T* items = nullptr;
  std::uint32_t count = 0;
  std::uint32_t room = 0;

  void reserve(std::uint32_t wanted) {
    items = static_cast<T*>(std::realloc(static_cast<void*>(items), wanted * sizeof(T)));
    room = wanted;
  }
  T& add() {
    if (count == room) {
      reserve(room == 0 ? 1 : 2 * room);
    }
    return items[count++];
  }
  void free() { std::free(static_cast<void*>(items)); }
  T* begin() const { return items; }
  T* end() const { return items + count; }
};

enum Tag : std::uint16_t { Uint32 = 6, Int64 = 7, Object = 13, Record = 14, Collection = 15 };

struct Value {
  std::uint16_t key = 0;
  std::uint16_t tag = 0;
  union {
    std::uint64_t bits = 0;
    void* target;
  };
};

struct ObjectNode {
  std::uint16_t key = 0;
  List<Value>* properties = nullptr;

  const Value* find(std::uint16_t wanted) const {
    for (const Value& value : *properties) {
      if (value.key == wanted) {
        return &value;
      }
    }
    return nullptr;
  }
};

using CollectionNode = List<Value*>;

struct RecordNode {
  std::uint16_t classId = 0;
  std::uint32_t mask = 0;
};

struct GeranDn : RecordNode {
  static constexpr std::uint16_t kId = 100;
  std::uint16_t mcc = 0, mnc = 0, lac = 0, cid = 0;
};
struct AreaRecord : RecordNode {
  static constexpr std::uint16_t kId = 104;
  std::int32_t latitude = 0, longitude = 0;
  std::uint32_t majorAxis = 0, minorAxis = 0;
  float angle = 0;
};
struct GeranFrequency : RecordNode {
  std::uint8_t bsic = 0;
  std::uint16_t arfcn = 0;
};
struct GeranNw : RecordNode {
  static constexpr std::uint16_t kId = 110;
  GeranFrequency* frequency = nullptr;
  std::uint16_t lac = 0, cid = 0;
  std::uint8_t rxLevel = 0;
};
struct GeranServingRecord : RecordNode {
  static constexpr std::uint16_t kId = 109;
  GeranNw* nw = nullptr;
  std::uint8_t frequency = 0, timingAdvance = 0;
};
struct EUtraDn : RecordNode {
  static constexpr std::uint16_t kId = 121;
  std::uint16_t mcc = 0, mnc = 0;
  std::uint32_t ucid = 0;
};
struct EUtraFrequency : RecordNode {
  std::uint16_t earfcn = 0, pci = 0;
};
struct EUtraNw : RecordNode {
  static constexpr std::uint16_t kId = 119;
  EUtraFrequency* frequency = nullptr;
  std::uint32_t ucid = 0;
  std::uint16_t tac = 0;
  std::uint8_t rsrp = 0, rsrq = 0;
};
struct EUtraServingRecord : RecordNode {
  static constexpr std::uint16_t kId = 118;
  EUtraNw* nw = nullptr;
  std::uint16_t timingAdvance = 0;
};
struct WlanDn : RecordNode {
  static constexpr std::uint16_t kId = 128;
  std::uint8_t length = 0;
  unsigned char bssid[8] = {};
};
struct WlanAp : RecordNode {
  static constexpr std::uint16_t kId = 129;
  std::uint16_t ssid = 0;
  std::int8_t rxLevel = 0, txLevel = 0;
  std::uint8_t rssi = 0, distance = 0, distanceUncertainty = 0, band = 0;
  std::int32_t apLatitude = 0, apLongitude = 0;
};
struct GnssData : RecordNode {
  static constexpr std::uint16_t kId = 130;
  std::uint16_t coverageMask = 0;
  std::int32_t latitude = 0, longitude = 0;
  std::uint32_t majorAxis = 0, minorAxis = 0;
  float angle = 0, altitude = 0, altitudeUncertainty = 0, horizontalCepUncertainty = 0;
  double speed = 0, speedUncertainty = 0, course = 0, courseUncertainty = 0;
};

/// Makes and drops the nodes.
template <class Blocks>
struct Nodes {
  static constexpr std::uint32_t kUsualProperties = 4;

  static ObjectNode* makeObject(std::uint16_t key, std::uint32_t properties = kUsualProperties) {
    auto* const object = Blocks::template make<ObjectNode>();
    object->key = key;
    object->properties = Blocks::template make<List<Value>>();
    object->properties->reserve(properties);
    return object;
  }

  template <class Record>
  static Record* makeRecord(std::uint32_t mask) {
    auto* const record = Blocks::template make<Record>();
    record->classId = Record::kId;
    record->mask = mask;
    return record;
  }

  static void drop(const Value& value) {
    switch (value.tag) {
      case Object:
        return dropObject(static_cast<ObjectNode*>(value.target));
      case Record:
        return dropRecord(static_cast<RecordNode*>(value.target));
      case Collection:
        return dropCollection(static_cast<CollectionNode*>(value.target));
      default:
        break;
    }
  }

  static void dropObject(ObjectNode* object) {
    for (const Value& value : *object->properties) {
      drop(value);
    }
    object->properties->free();
    Blocks::drop(object->properties);
    Blocks::drop(object);
  }

 private:
  static void dropCollection(CollectionNode* collection) {
    for (Value* const value : *collection) {
      drop(*value);
      Blocks::drop(value);
    }
    collection->free();
    Blocks::drop(collection);
  }

  template <class Nw>
  static void dropNw(Nw* nw) {
    Blocks::drop(nw->frequency);
    Blocks::drop(nw);
  }
  template <class Serving>
  static void dropServing(Serving* serving) {
    dropNw(serving->nw);
    Blocks::drop(serving);
  }

  static void dropRecord(RecordNode* record) {
    switch (record->classId) {
      case GeranDn::kId:
        return Blocks::drop(static_cast<GeranDn*>(record));
      case AreaRecord::kId:
        return Blocks::drop(static_cast<AreaRecord*>(record));
      case GeranNw::kId:
        return dropNw(static_cast<GeranNw*>(record));
      case GeranServingRecord::kId:
        return dropServing(static_cast<GeranServingRecord*>(record));
      case EUtraDn::kId:
        return Blocks::drop(static_cast<EUtraDn*>(record));
      case EUtraNw::kId:
        return dropNw(static_cast<EUtraNw*>(record));
      case EUtraServingRecord::kId:
        return dropServing(static_cast<EUtraServingRecord*>(record));
      case WlanDn::kId:
        return Blocks::drop(static_cast<WlanDn*>(record));
      case WlanAp::kId:
        return Blocks::drop(static_cast<WlanAp*>(record));
      case GnssData::kId:
        return Blocks::drop(static_cast<GnssData*>(record));
      default:
        break;
    }
  }
};

}  // namespace bench::bare
