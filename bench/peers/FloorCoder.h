#pragma once

#include <algorithm>
#include <cstring>

#include "bench/peers/FloorTree.h"

// The bare coder of this library's wire form for the records that the workloads hold. It writes
// into room that is there and checks every byte that it reads.

namespace bench::bare {

/// Writes at `at`, which has room enough.
struct Writer {
  unsigned char* at;

  template <class T>
  void put(T value) {
    std::memcpy(at, &value, sizeof(T));
    at += sizeof(T);
  }
  template <class T>
  void put(std::uint32_t mask, std::uint32_t bit, T value) {
    if ((mask & bit) != 0) {
      put(value);
    }
  }
};

/// Reads until the bytes end; `failed` tells when they did too early.
struct Reader {
  const unsigned char* at;
  const unsigned char* end;
  bool failed = false;

  template <class T>
  void get(T& value) {
    if (static_cast<std::size_t>(end - at) < sizeof(T)) {
      failed = true;
      return;
    }
    std::memcpy(&value, at, sizeof(T));
    at += sizeof(T);
  }
  template <class T>
  void get(std::uint32_t mask, std::uint32_t bit, T& value) {
    if ((mask & bit) != 0) {
      get(value);
    }
  }
  template <class Mask>
  std::uint32_t header(std::uint32_t limit) {
    std::uint8_t version = 0;
    Mask mask = 0;
    get(version);
    get(mask);
    failed = failed || version != 1 || mask > limit;
    return mask;
  }
};

/// The fields of each record in wire order, for a Writer and a Reader alike.
template <class Coder>
struct Put {
  Coder& coder;
  std::uint32_t mask;
  template <class T>
  void operator()(std::uint32_t bit, T& value) const {
    if constexpr (std::is_same_v<Coder, Writer>) {
      coder.put(mask, bit, value);
    } else {
      coder.get(mask, bit, value);
    }
  }
};

template <class Coder, class Record>
void codeFields(Coder& coder, Record& record) {
  const Put<Coder> field{coder, record.mask};
  using Plain = std::remove_const_t<Record>;
  if constexpr (std::is_same_v<Plain, GeranDn>) {
    field(1, record.mcc), field(2, record.mnc), field(4, record.lac), field(8, record.cid);
  } else if constexpr (std::is_same_v<Plain, AreaRecord>) {
    field(1, record.latitude), field(2, record.longitude), field(8, record.majorAxis);
    field(0x10, record.minorAxis), field(0x20, record.angle);
  } else if constexpr (std::is_same_v<Plain, GeranFrequency>) {
    field(1, record.bsic), field(2, record.arfcn);
  } else if constexpr (std::is_same_v<Plain, GeranNw>) {
    field(2, record.lac), field(4, record.cid), field(8, record.rxLevel);
  } else if constexpr (std::is_same_v<Plain, GeranServingRecord>) {
    field(8, record.frequency), field(2, record.timingAdvance);
  } else if constexpr (std::is_same_v<Plain, EUtraDn>) {
    field(1, record.mcc), field(2, record.mnc), field(4, record.ucid);
  } else if constexpr (std::is_same_v<Plain, EUtraFrequency>) {
    field(1, record.earfcn), field(2, record.pci);
  } else if constexpr (std::is_same_v<Plain, EUtraNw>) {
    field(16, record.ucid), field(2, record.tac), field(4, record.rsrp), field(8, record.rsrq);
  } else if constexpr (std::is_same_v<Plain, EUtraServingRecord>) {
    field(2, record.timingAdvance);
  } else {
    static_assert(std::is_same_v<Plain, WlanAp>);
    field(1, record.ssid), field(2, record.rxLevel), field(4, record.txLevel);
    field(0x100, record.rssi), field(8, record.distance), field(0x10, record.distanceUncertainty);
    field(0x20, record.band), field(0x40, record.apLatitude), field(0x80, record.apLongitude);
  }
}

// -- writing --------------------------------------------------------------------------------------

template <class Mask, class Record>
void writeFlat(const Record& record, Writer& out) {
  out.put(std::uint8_t{1});
  out.put(static_cast<Mask>(record.mask));
  codeFields(out, record);
}

template <class Nw>
void writeNw(const Nw& nw, Writer& out) {
  out.put(std::uint8_t{1});
  out.put(static_cast<std::uint8_t>(nw.mask));
  if ((nw.mask & 1) != 0) {
    writeFlat<std::uint8_t>(*nw.frequency, out);
  }
  codeFields(out, nw);
}

template <class Serving>
void writeServing(const Serving& serving, std::uint32_t nwBit, Writer& out) {
  out.put(std::uint8_t{1});
  out.put(static_cast<std::uint8_t>(serving.mask));
  if ((serving.mask & nwBit) != 0) {
    writeNw(*serving.nw, out);
  }
  codeFields(out, serving);
}

inline void writeArea(const AreaRecord& area, Writer& out) {
  out.put(std::uint8_t{1});
  writeFlat<std::uint16_t>(area, out);
}

inline void writeWlanDn(const WlanDn& dn, Writer& out) {
  out.put(std::uint8_t{1});
  out.put(static_cast<std::uint8_t>(dn.mask));
  if (dn.mask != 0) {
    out.put(dn.length);
    std::memcpy(out.at, dn.bssid, sizeof dn.bssid);
    out.at += dn.length;
  }
}

inline void writeGnss(const GnssData& data, Writer& out) {
  out.put(std::uint8_t{1});
  out.put(data.mask);
  out.put(std::uint8_t{1});
  out.put(data.coverageMask);
  out.put(data.coverageMask, 0x01, data.latitude);
  out.put(data.coverageMask, 0x02, data.longitude);
  out.put(data.coverageMask, 0x08, data.majorAxis);
  out.put(data.coverageMask, 0x10, data.minorAxis);
  out.put(data.coverageMask, 0x20, data.angle);
  out.put(data.coverageMask, 0x04, data.altitude);
  out.put(data.coverageMask, 0x40, data.altitudeUncertainty);
  out.put(data.coverageMask, 0x80, data.horizontalCepUncertainty);
  out.put(data.mask, 0x200, data.speed);
  out.put(data.mask, 0x400, data.speedUncertainty);
  out.put(data.mask, 0x800, data.course);
  out.put(data.mask, 0x1000, data.courseUncertainty);
}

inline void writeRecord(const RecordNode& record, Writer& out) {
  out.put(record.classId);
  switch (record.classId) {
    case GeranDn::kId:
      return writeFlat<std::uint8_t>(static_cast<const GeranDn&>(record), out);
    case AreaRecord::kId:
      return writeArea(static_cast<const AreaRecord&>(record), out);
    case GeranNw::kId:
      return writeNw(static_cast<const GeranNw&>(record), out);
    case GeranServingRecord::kId:
      return writeServing(static_cast<const GeranServingRecord&>(record), 16, out);
    case EUtraDn::kId:
      return writeFlat<std::uint8_t>(static_cast<const EUtraDn&>(record), out);
    case EUtraNw::kId:
      return writeNw(static_cast<const EUtraNw&>(record), out);
    case EUtraServingRecord::kId:
      return writeServing(static_cast<const EUtraServingRecord&>(record), 1, out);
    case WlanDn::kId:
      return writeWlanDn(static_cast<const WlanDn&>(record), out);
    case WlanAp::kId:
      return writeFlat<std::uint32_t>(static_cast<const WlanAp&>(record), out);
    default:
      return writeGnss(static_cast<const GnssData&>(record), out);
  }
}

inline void writeObject(const ObjectNode& object, Writer& out);

inline void writeValue(const Value& value, Writer& out) {
  out.put(value.tag);
  out.put(value.key);
  switch (value.tag) {
    case Uint32:
      return out.put(static_cast<std::uint32_t>(value.bits));
    case Int64:
      return out.put(value.bits);
    case Object:
      return writeObject(*static_cast<ObjectNode*>(value.target), out);
    case Record:
      return writeRecord(*static_cast<RecordNode*>(value.target), out);
    default: {
      const auto& elements = *static_cast<CollectionNode*>(value.target);
      out.put(elements.count);
      for (const Value* const element : elements) {
        writeValue(*element, out);
      }
    }
  }
}

inline void writeObject(const ObjectNode& object, Writer& out) {
  out.put(object.key);
  out.put(object.properties->count);
  for (const Value& value : *object.properties) {
    writeValue(value, out);
  }
}

// -- reading --------------------------------------------------------------------------------------

/// Reads trees. A failed read gives null and drops what was made.
template <class Blocks>
class TreeReader {
 public:
  static ObjectNode* readObject(Reader& in) {
    std::uint16_t key = 0;
    std::uint32_t count = 0;
    in.get(key);
    in.get(count);
    ObjectNode* const object = Nodes<Blocks>::makeObject(key, std::clamp(count, 1U, kTrusted));
    for (; count > 0 && !in.failed; --count) {
      readValue(object->properties->add() = Value(), in);
    }
    return object;
  }

 private:
  static constexpr std::uint32_t kTrusted = 8;

  static void readValue(Value& value, Reader& in) {
    in.get(value.tag);
    in.get(value.key);
    switch (value.tag) {
      case Uint32: {
        std::uint32_t number = 0;
        in.get(number);
        value.bits = number;
        return;
      }
      case Int64:
        return in.get(value.bits);
      case Object:
        value.target = readObject(in);
        return;
      case Record:
        value.target = readRecord(in);
        return;
      case Collection:
        value.target = readCollection(in);
        return;
      default:
        in.failed = true;
    }
  }

  static CollectionNode* readCollection(Reader& in) {
    std::uint32_t count = 0;
    in.get(count);
    auto* const collection = Blocks::template make<CollectionNode>();
    collection->reserve(std::clamp(count, 1U, kTrusted));
    for (; count > 0 && !in.failed; --count) {
      Value* const element = Blocks::template make<Value>();
      collection->add() = element;
      readValue(*element, in);
    }
    return collection;
  }

  template <class Mask, class Record>
  static Record* readFlat(Reader& in, std::uint32_t limit) {
    auto* const record = Blocks::template make<Record>();
    record->mask = in.header<Mask>(limit);
    codeFields(in, *record);
    return record;
  }

  template <class Nw, class Frequency>
  static Nw* readNw(Reader& in, std::uint32_t limit) {
    auto* const nw = Blocks::template make<Nw>();
    nw->mask = in.header<std::uint8_t>(limit);
    nw->frequency = readFlat<std::uint8_t, Frequency>(in, 3);
    codeFields(in, *nw);
    return nw;
  }

  template <class Serving, class Nw, class Frequency>
  static Serving* readServing(Reader& in, std::uint32_t limit, std::uint32_t nwLimit) {
    auto* const serving = Blocks::template make<Serving>();
    serving->mask = in.header<std::uint8_t>(limit);
    serving->nw = readNw<Nw, Frequency>(in, nwLimit);
    codeFields(in, *serving);
    return serving;
  }

  static AreaRecord* readArea(Reader& in) {
    std::uint8_t version = 0;
    in.get(version);
    in.failed = in.failed || version != 1;
    return readFlat<std::uint16_t, AreaRecord>(in, 0xFF);
  }

  static WlanDn* readWlanDn(Reader& in) {
    auto* const dn = Blocks::template make<WlanDn>();
    dn->mask = in.header<std::uint8_t>(1);
    in.get(dn->length);
    if ((dn->length != 6 && dn->length != 8) || in.end - in.at < dn->length) {
      in.failed = true;
      return dn;
    }
    std::memcpy(dn->bssid, in.at, dn->length);
    in.at += dn->length;
    return dn;
  }

  static GnssData* readGnss(Reader& in) {
    auto* const data = Blocks::template make<GnssData>();
    data->mask = in.header<std::uint32_t>(~0U);
    data->coverageMask = static_cast<std::uint16_t>(in.header<std::uint16_t>(0xFF));
    in.get(data->coverageMask, 0x01, data->latitude);
    in.get(data->coverageMask, 0x02, data->longitude);
    in.get(data->coverageMask, 0x08, data->majorAxis);
    in.get(data->coverageMask, 0x10, data->minorAxis);
    in.get(data->coverageMask, 0x20, data->angle);
    in.get(data->coverageMask, 0x04, data->altitude);
    in.get(data->coverageMask, 0x40, data->altitudeUncertainty);
    in.get(data->coverageMask, 0x80, data->horizontalCepUncertainty);
    in.get(data->mask, 0x200, data->speed);
    in.get(data->mask, 0x400, data->speedUncertainty);
    in.get(data->mask, 0x800, data->course);
    in.get(data->mask, 0x1000, data->courseUncertainty);
    return data;
  }

  static RecordNode* readRecord(Reader& in) {
    std::uint16_t classId = 0;
    in.get(classId);
    RecordNode* const record = readRecord(classId, in);
    record->classId = classId;
    return record;
  }

  static RecordNode* readRecord(std::uint16_t classId, Reader& in) {
    switch (classId) {
      case GeranDn::kId:
        return readFlat<std::uint8_t, GeranDn>(in, 0xF);
      case AreaRecord::kId:
        return readArea(in);
      case GeranNw::kId:
        return readNw<GeranNw, GeranFrequency>(in, 0xF);
      case GeranServingRecord::kId:
        return readServing<GeranServingRecord, GeranNw, GeranFrequency>(in, 0x1F, 0xF);
      case EUtraDn::kId:
        return readFlat<std::uint8_t, EUtraDn>(in, 7);
      case EUtraNw::kId:
        return readNw<EUtraNw, EUtraFrequency>(in, 0x1F);
      case EUtraServingRecord::kId:
        return readServing<EUtraServingRecord, EUtraNw, EUtraFrequency>(in, 7, 0x1F);
      case WlanDn::kId:
        return readWlanDn(in);
      case WlanAp::kId:
        return readFlat<std::uint32_t, WlanAp>(in, ~0U);
      default:
        return readGnss(in);
    }
  }
};

}  // namespace bench::bare
