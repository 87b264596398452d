#pragma once

// The one mechanism behind the flat records. A record declares `struct Fields;` privately and, in
// its source, states its fields once, in wire order:
//
//   struct GeranCellDn::Fields : gom::FieldTable<gom::Mask8,
//       gom::Field<HasMcc, &GeranCellDn::m_mcc>,
//       gom::Field<HasMnc, &GeranCellDn::m_mnc>> {};
//
// Everything else follows from the table: writing and reading (writeRecord, readRecord), equality
// (equalRecords), deep copies (cloneRecord), releasing and dumping nested objects (releaseHandles,
// dumpNested). The type of a member picks its wire form: integers, enumerations and floating point
// by their width, a handle as the whole form of the nested record.
//
// The table is plain C++: a misspelt member fails on its own row, and a backtrace reads
// Field<4u, &GeranCellDn::m_cid>::write.

#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include <trelvo/IStream.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/ObjectCollection.h>
#include <trelvo/gom/SharedPointer.h>

#include "objects/ExactType.h"
#include "objects/LittleEndian.h"
#include "objects/WireReader.h"
#include "objects/WireWriter.h"

namespace trelvo::gom {

/// One byte of mask; a number above all bits of the table is refused on reading.
struct Mask8 {
  using Image = unsigned char;
  static constexpr bool kChecked = true;
};
/// Two bytes of mask, checked likewise.
struct Mask16 {
  using Image = unsigned short;
  static constexpr bool kChecked = true;
};
/// Four bytes of mask, taken as they come.
struct Mask32 {
  using Image = unsigned int;
  static constexpr bool kChecked = false;
};
/// The class has no wire form.
struct NoWireForm {
  using Image = unsigned char;
  static constexpr bool kChecked = false;
};

template <class Member>
struct MemberTraits;
template <class Owner, class Value>
struct MemberTraits<Value Owner::*> {
  using Record = Owner;
  using Type = Value;
};

template <class T>
inline constexpr bool kIsHandle = false;
template <class T>
inline constexpr bool kIsHandle<SharedPointer<T>> = true;

template <class T>
inline constexpr bool kIsScalar = std::is_arithmetic_v<T> || std::is_enum_v<T>;

template <class Record>
struct RecordAccess;

/// Values are equal as such, handles when both are empty or both hold equal objects.
template <class T>
bool sameValue(const T& a, const T& b) {
  return a == b;
}
template <class T>
bool sameValue(const SharedPointer<T>& a, const SharedPointer<T>& b) {
  return a && b ? *a == *b : !a && !b;
}
/// Lists are equal when their elements are, pairwise and in order.
template <class T>
bool sameValue(const SharedPointer<ObjectCollection<T>>& a,
               const SharedPointer<ObjectCollection<T>>& b) {
  if (!a || !b) {
    return !a && !b;
  }
  if (a->items.size() != b->items.size()) {
    return false;
  }
  for (std::size_t i = 0; i < a->items.size(); ++i) {
    if (!sameValue(a->items[i], b->items[i])) {
      return false;
    }
  }
  return true;
}

/// Copies `from` into `to`, objects by their clone(). @return false when one has none.
template <class T>
bool cloneValue(const T& from, T& to) {
  to = from;
  return true;
}
template <class T>
bool cloneValue(const SharedPointer<T>& from, SharedPointer<T>& to) {
  if (!from) {
    return true;
  }
  if constexpr (std::is_base_of_v<ObjectBase, T>) {
    const SharedPointer<ObjectBase> copy(from->clone());
    to.reset(dynamic_cast<T*>(copy.get()));
  } else {
    to = from->clone();
  }
  return static_cast<bool>(to);
}

/// Dumps an object, or each object of a list.
template <class T>
void dumpValue(const SharedPointer<T>& object) {
  if (object) {
    object->dump();
  }
}
template <class T>
void dumpValue(const SharedPointer<ObjectCollection<T>>& list) {
  if (list) {
    for (const SharedPointer<T>& item : list->items) {
      dumpValue(item);
    }
  }
}

/// One field: its presence bit and its member. Rows stand in wire order.
template <unsigned int bit, auto member>
struct Field {
  using Record = typename MemberTraits<decltype(member)>::Record;
  using Value = typename MemberTraits<decltype(member)>::Type;
  static constexpr unsigned int kBit = bit;
  static constexpr unsigned int kForwardedBit = 0;
  static constexpr unsigned int kScalarRoom = kIsScalar<Value> ? sizeof(Value) : 0;
  static constexpr unsigned int room() { return kScalarRoom; }

  /// @return where the next field goes, with `room` bytes free there; null on failure.
  static unsigned char* write(const Record& record, unsigned int mask, unsigned char* to,
                              unsigned int room, WireWriter& writer) {
    if ((mask & bit) == 0) {
      return to;
    }
    if constexpr (kIsHandle<Value>) {
      return writeNested(record, to, room, writer);
    } else {
      return storeWire(to, record.*member);
    }
  }

  static bool addSize(const Record& record, unsigned int mask, unsigned long long& total) {
    if constexpr (kIsHandle<Value>) {
      return (mask & bit) == 0 || !(record.*member) || addNestedSize(*(record.*member), total);
    } else {
      total += (mask & bit) != 0 ? sizeof(Value) : 0;
      return true;
    }
  }

  static bool read(Record& record, unsigned int mask, WireReader& reader) {
    if ((mask & bit) == 0) {
      return true;
    }
    if constexpr (kIsHandle<Value>) {
      return readNested(record.*member, reader);
    } else {
      return reader.get(record.*member);
    }
  }

  static bool equal(const Record& a, const Record& b, unsigned int mask) {
    if constexpr (kIsHandle<Value>) {
      return sameValue(a.*member, b.*member);
    } else {
      return (mask & bit) == 0 || sameValue(a.*member, b.*member);
    }
  }

  static bool clone(const Record& from, Record& to) { return cloneValue(from.*member, to.*member); }

  static void release(Record& record, unsigned int mask) {
    if constexpr (kIsHandle<Value>) {
      if ((mask & bit) != 0) {
        (record.*member).clear();
      }
    }
  }

  static void dump(const Record& record, unsigned int mask) {
    if constexpr (kIsHandle<Value>) {
      if ((mask & bit) != 0) {
        dumpValue(record.*member);
      }
    }
  }

  static bool forwardedExists(const Record&, unsigned int) { return true; }
  static void unsetForwarded(Record&, unsigned int) {}

 private:
  static unsigned char* writeNested(const Record& record, unsigned char* to, unsigned int room,
                                    WireWriter& writer) {
    if (!(record.*member)) {
      return to;  // A bit without an object is written in the mask alone.
    }
    const auto& nested = *(record.*member);
    using Nested = std::remove_cv_t<std::remove_reference_t<decltype(nested)>>;
    writer.advance(to);
    const bool written =
        isExactly<Nested>(nested)
            ? RecordAccess<Nested>::write(nested, writer)
            : writer.handOver([&nested](IStream& stream) { return nested.write(stream); });
    return written ? writer.reserve(room) : nullptr;
  }

  template <class Nested>
  static bool addNestedSize(const Nested& nested, unsigned long long& total) {
    return isExactly<Nested>(nested) && RecordAccess<Nested>::addSize(nested, total);
  }

  template <class Nested>
  static bool readNested(SharedPointer<Nested>& target, WireReader& reader) {
    SharedPointer<Nested> nested = Nested::create();
    if (!nested || !RecordAccess<Nested>::read(*nested, reader)) {
      return false;
    }
    target = std::move(nested);
    return true;
  }
};

/// A field with a presence bit that is compared and copied but has no place on the wire.
template <unsigned int bit, auto member>
struct MemoryOnly : Field<bit, member> {
  using Record = typename Field<bit, member>::Record;
  static constexpr unsigned int room() { return 0; }

  static unsigned char* write(const Record& /*record*/, unsigned int /*mask*/, unsigned char* to,
                              unsigned int /*room*/, WireWriter& /*writer*/) {
    return to;
  }
  static bool addSize(const Record&, unsigned int, unsigned long long&) { return true; }
  static bool read(Record&, unsigned int, WireReader&) { return true; }
};

/// A field that equality does not look at, but for its bit in the masks.
template <unsigned int bit, auto member>
struct NotCompared : Field<bit, member> {
  using Record = typename Field<bit, member>::Record;

  static bool equal(const Record&, const Record&, unsigned int) { return true; }
};

/// A bit that is answered by the nested record in `member`, from its bit `nestedBit`. It has no
/// field of its own; see forwardedExist() and unsetForwarded().
template <unsigned int bit, auto member, unsigned int nestedBit>
struct Forwarded {
  using Record = typename MemberTraits<decltype(member)>::Record;
  static constexpr unsigned int kBit = bit;
  static constexpr unsigned int room() { return 0; }

  static unsigned char* write(const Record& /*record*/, unsigned int /*mask*/, unsigned char* to,
                              unsigned int /*room*/, WireWriter& /*writer*/) {
    return to;
  }
  static bool addSize(const Record&, unsigned int, unsigned long long&) { return true; }
  static bool read(Record&, unsigned int, WireReader&) { return true; }
  static bool equal(const Record&, const Record&, unsigned int) { return true; }
  static bool clone(const Record&, Record&) { return true; }
  static void release(Record&, unsigned int) {}
  static void dump(const Record&, unsigned int) {}

  static constexpr unsigned int kForwardedBit = bit;
  static bool forwardedExists(const Record& record, unsigned int mask) {
    return (mask & bit) == 0 || (record.*member && (record.*member)->valueExists(nestedBit));
  }
  static void unsetForwarded(Record& record, unsigned int mask) {
    if ((mask & bit) != 0 && record.*member) {
      (record.*member)->unset(nestedBit);
    }
  }
};

/// A part with a table of its own, held by value and always on the wire, behind the mask.
template <auto member>
struct Embedded {
  using Record = typename MemberTraits<decltype(member)>::Record;
  using Value = typename MemberTraits<decltype(member)>::Type;
  static constexpr unsigned int kBit = 0;
  static constexpr unsigned int room() { return 0; }

  static unsigned char* write(const Record& record, unsigned int /*mask*/, unsigned char* to,
                              unsigned int room, WireWriter& writer) {
    writer.advance(to);
    return RecordAccess<Value>::write(record.*member, writer) ? writer.reserve(room) : nullptr;
  }
  static bool addSize(const Record& record, unsigned int, unsigned long long& total) {
    return RecordAccess<Value>::addSize(record.*member, total);
  }
  static bool read(Record& record, unsigned int, WireReader& reader) {
    (record.*member).unset(~0U);
    return RecordAccess<Value>::read(record.*member, reader);
  }
  static bool equal(const Record& a, const Record& b, unsigned int) {
    return a.*member == b.*member;
  }
  static bool clone(const Record& from, Record& to) {
    to.*member = from.*member;
    return true;
  }
  static void release(Record&, unsigned int) {}
  static void dump(const Record& record, unsigned int) { (record.*member).dump(); }
  static bool forwardedExists(const Record&, unsigned int) { return true; }
  static void unsetForwarded(Record&, unsigned int) {}
  static constexpr unsigned int kForwardedBit = 0;
};

/// Takes a step unless one before it has failed. @return what came of it, or of that one.
template <class State, class Step>
State goOn(State state, Step step) {
  return state ? step() : state;
}

/// The fields of a record, in wire order. A record may have none.
template <class MaskForm, class... Rows>
struct FieldTable {
  using Mask = MaskForm;
  static constexpr unsigned int kAllBits = (Rows::kBit | ... | 0U);
  static_assert((Rows::kBit + ... + 0U) == kAllBits, "a presence bit stands in two rows");

  /// Version, mask and scalars.
  static constexpr unsigned int kRoom =
      1 + static_cast<unsigned int>(sizeof(typename Mask::Image)) + (Rows::room() + ... + 0U);
  static_assert(kRoom <= WireWriter::kMaxRoom);

  // Like equal() the whole of its one caller.
  template <class Record>
  [[gnu::always_inline]] static unsigned char* write(const Record& record,
                                                     [[maybe_unused]] unsigned int mask,
                                                     unsigned char* to, WireWriter& writer) {
    ((to = goOn(to, [&] { return Rows::write(record, mask, to, kRoom, writer); })), ...);
    return to;
  }
  template <class Record>
  static bool addSize(const Record& record, [[maybe_unused]] unsigned int mask,
                      unsigned long long& total) {
    bool good = true;
    ((good = goOn(good, [&] { return Rows::addSize(record, mask, total); })), ...);
    return good;
  }
  template <class Record>
  static bool read(Record& record, [[maybe_unused]] unsigned int mask, WireReader& reader) {
    bool good = true;
    ((good = goOn(good, [&] { return Rows::read(record, mask, reader); })), ...);
    return good;
  }
  template <class Record>
  [[gnu::always_inline]] static bool equal(const Record& a, const Record& b,
                                           [[maybe_unused]] unsigned int mask) {
    bool good = true;
    ((good = goOn(good, [&] { return Rows::equal(a, b, mask); })), ...);
    return good;
  }
  template <class Record>
  static bool clone(const Record& from, Record& to) {
    bool good = true;
    ((good = goOn(good, [&] { return Rows::clone(from, to); })), ...);
    return good;
  }
  template <class Record>
  static void release(Record& record, unsigned int mask) {
    (Rows::release(record, mask), ...);
  }
  template <class Record>
  static void dump(const Record& record, unsigned int mask) {
    (Rows::dump(record, mask), ...);
  }

  /// The bits that a nested record answers for.
  static constexpr unsigned int kForwardedBits = (Rows::kForwardedBit | ... | 0U);
  template <class Record>
  static bool forwardedExist(const Record& record, unsigned int mask) {
    bool good = true;
    ((good = goOn(good, [&] { return Rows::forwardedExists(record, mask); })), ...);
    return good;
  }
  template <class Record>
  static void unsetForwarded(Record& record, unsigned int mask) {
    (Rows::unsetForwarded(record, mask), ...);
  }
};

/// The version byte that every record starts with.
struct RecordVersion {
  static constexpr unsigned char kVersion = 1;

  static bool readVersion(WireReader& reader) {
    unsigned char version = 0;
    return reader.get(version) && version == kVersion;
  }
};

/// The wire form of a record with a table. Instantiated once, in the record's source (`template
/// struct gom::RecordAccess<...>`), and declared for the others in schema/Records.h. Its members
/// stand outside the class: `extern template` does not hold back what is inline.
template <class Record>
struct RecordAccess : RecordVersion {
  /// Writes version, mask and fields. @return false when the stream has failed.
  static bool write(const Record& record, WireWriter& writer);

  /// Adds the bytes that write() makes. @return false when they cannot be told.
  static bool addSize(const Record& record, unsigned long long& total);

  /// Reads version, mask and fields into a record whose bits are clear.
  static bool read(Record& record, WireReader& reader);

 private:
  template <class Mask>
  static bool readMask(Record& record, WireReader& reader);

  template <class AnyRecord>
  static auto& maskOf(AnyRecord& record) {
    if constexpr (std::is_base_of_v<ObjectBase, Record>) {
      return record.m_values;
    } else {
      return record.m_mask;  // a part held by value, with a mask of its own
    }
  }
};

template <class Record>
bool RecordAccess<Record>::write(const Record& record, WireWriter& writer) {
  using Fields = typename Record::Fields;
  const unsigned int mask = maskOf(record);
  unsigned char* to = writer.reserve(Fields::kRoom);
  to = storeWire(to, kVersion);
  to = storeWire(to, static_cast<typename Fields::Mask::Image>(mask));
  to = Fields::write(record, mask, to, writer);
  if (to == nullptr) {
    return false;
  }
  writer.advance(to);
  return true;
}

template <class Record>
bool RecordAccess<Record>::addSize(const Record& record, unsigned long long& total) {
  using Fields = typename Record::Fields;
  total += sizeof kVersion + sizeof(typename Fields::Mask::Image);
  return Fields::addSize(record, maskOf(record), total);
}

template <class Record>
bool RecordAccess<Record>::read(Record& record, WireReader& reader) {
  using Fields = typename Record::Fields;
  return readVersion(reader) && readMask<typename Fields::Mask>(record, reader) &&
         Fields::read(record, maskOf(record), reader) && reader.good();
}

template <class Record>
template <class Mask>
bool RecordAccess<Record>::readMask(Record& record, WireReader& reader) {
  typename Mask::Image mask{};
  const bool complete = reader.get(mask);
  if constexpr (Mask::kChecked) {
    if (!complete || mask > Record::Fields::kAllBits) {
      return false;
    }
  }
  maskOf(record) = mask;
  return complete;
}

/// write() of a record with a wire form.
template <class Record>
bool writeRecord(const Record& record, IStream& stream) {
  WireWriter writer(stream);
  return RecordAccess<Record>::write(record, writer) && writer.finish();
}

/// read() of a record with a wire form.
template <class Fields, class Record>
bool readRecord(Record& record, IStream& stream) {
  record.unset(Fields::kAllBits);
  WireReader reader(stream);
  return RecordAccess<Record>::read(record, reader);
}

/// operator== of a record.
template <class Fields, class Record>
bool equalRecords(const Record& a, const Record& b) {
  return a.values() == b.values() && Fields::equal(a, b, a.values()) && a.ObjectBase::operator==(b);
}

/// compare() of a record.
template <class Record>
bool compareRecords(const Record& record, const ObjectBase* other) {
  const auto* const same = dynamic_cast<const Record*>(other);
  return same != nullptr && record == *same;
}

/// clone() of a record: an independent copy with count 0, or null.
template <class Fields, class Record>
Record* cloneRecord(const Record& record) {
  auto copy = std::make_unique<Record>();
  if (copy->cloneFrom(record) != StatusOk || !Fields::clone(record, *copy)) {
    return nullptr;
  }
  return copy.release();
}

/// dump() of a record with nested objects: dumps those whose bit is set.
template <class Fields, class Record>
void dumpNested(const Record& record) {
  Fields::dump(record, record.values());
}

/// valueExists() of a record with forwarded bits.
template <class Fields, class Record>
bool forwardingValueExists(const Record& record, unsigned int mask) {
  const unsigned int own = mask & ~Fields::kForwardedBits;
  if (!Fields::forwardedExist(record, mask)) {
    return false;
  }
  return (own == 0 && mask != 0) || record.ObjectBase::valueExists(own);
}

/// What unset() of a record with nested objects does ahead of its base's: lets go of those that
/// `mask` names.
template <class Fields, class Record>
void releaseHandles(Record& record, unsigned int mask) {
  Fields::unsetForwarded(record, mask);
  Fields::release(record, mask);
}

}  // namespace trelvo::gom
