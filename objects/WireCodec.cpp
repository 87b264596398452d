#include "objects/WireCodec.h"

#include <algorithm>
#include <memory>
#include <new>
#include <utility>

#include <trelvo/gom/CharacterData.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/ValueCollection.h>
#include <trelvo/gom/Variant.h>
#include <trelvo/schema/ObjectBaseFactory.h>

#include "objects/ExactType.h"
#include "objects/LittleEndian.h"
#include "objects/PropertyLists.h"
#include "objects/RecordCodec.h"
#include "objects/VariantValue.h"

namespace trelvo::gom {

namespace {

constexpr unsigned int kVariantHeader = 4;
constexpr unsigned int kScalarRoom = 8;
// A count from a stream decides no allocation beyond this; lists grow by doubling from there.
constexpr unsigned int kTrustedCount = 8;

[[gnu::always_inline]] inline const RecordCodec* codecFor(const ObjectBase& record) noexcept {
  const RecordCodec* const codec = findRecordCodec(record.key());
  return codec != nullptr && isSameType(typeid(record), *codec->type) ? codec : nullptr;
}

// A used list keeps growing by doubling.
bool makeRoom(ValueCollection& list, unsigned int elements) noexcept {
  try {
    if (list.items.empty()) {
      list.items.reserve(elements);
    }
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

// A list's elements are variants as they are or, where an application made them, as properties.
bool isPlainVariant(const Variant& variant) noexcept {
  return isExactly<Variant>(variant) || isExactly<InternalVariant>(variant);
}

// Not a byte more than the width: the stream may have content behind. @return behind it.
unsigned char* storeScalar(unsigned char* to, const void* value, unsigned int width) noexcept {
  switch (width) {
    case 0:
      return to;
    case 1:
      std::memcpy(to, value, 1);
      break;
    case 2:
      std::memcpy(to, value, 2);
      break;
    case 4:
      std::memcpy(to, value, 4);
      break;
    default:
      std::memcpy(to, value, kScalarRoom);
  }
  swapWireOrder(to, width);
  return to + width;
}

}  // namespace

bool WireCodec::write(const CharacterData& text, WireWriter& writer) {
  writer.advance(storeWire(writer.reserve(sizeof text.m_length), text.m_length));
  return (text.m_length == 0 ||
          writer.bytes(reinterpret_cast<const unsigned char*>(text.m_text), text.m_length)) &&
         writer.endPiece();
}

template <class T>
bool WireCodec::writeTarget(const T* target, WireWriter& writer) {
  if (target == nullptr) {
    return false;
  }
  if (isExactly<T>(*target)) {
    return write(*target, writer);
  }
  return writer.handOver([target](IStream& stream) { return target->write(stream); });
}

bool WireCodec::writeRecord(const ObjectBase& record, WireWriter& writer) {
  writer.advance(storeWire(writer.reserve(sizeof(unsigned short)), record.key()));
  if (const RecordCodec* const codec = codecFor(record)) {
    return codec->write(record, writer) && writer.endPiece();
  }
  return writer.handOver([&record](IStream& stream) { return record.write(stream); });
}

// Part of the loops over properties and elements, where scalars are done without a call.
[[gnu::always_inline]] inline bool WireCodec::writeVariant(const Variant& variant,
                                                           WireWriter& writer) {
  unsigned char* to = writer.reserve(kVariantHeader + kScalarRoom);
  to = storeWire(to, variant.m_type);
  to = storeWire(to, variant.m_key);
  if (variant.holdsHandle()) {
    writer.advance(to);
    return writeHandle(variant, writer);
  }
  writer.advance(storeScalar(to, &variant.m_value, scalarWidth(variant.m_type)));
  return writer.endPiece();
}

bool WireCodec::write(const Variant& variant, WireWriter& writer) {
  return writeVariant(variant, writer);
}

bool WireCodec::writeHandle(const Variant& variant, WireWriter& writer) {
  switch (variant.m_type) {
    case Variant::TypeString:
      return writeTarget(variant.target<CharacterData>(), writer);
    case Variant::TypeGenericObject:
      return writeTarget(variant.target<GenericObject>(), writer);
    case Variant::TypeObject:
      return variant.m_value != 0 && writeRecord(*variant.target<ObjectBase>(), writer);
    default:
      return writeTarget(variant.target<ValueCollection>(), writer);
  }
}

bool WireCodec::write(const GenericObject& object, WireWriter& writer) {
  unsigned char* to = writer.reserve(sizeof object.m_key + sizeof(unsigned int));
  to = storeWire(to, object.m_key);
  writer.advance(storeWire(to, object.propertyCount()));
  if (object.m_properties) {
    for (const InternalVariant& property : object.m_properties->items) {
      if (!writeVariant(property, writer)) {
        return false;
      }
    }
  }
  return writer.endPiece();
}

bool WireCodec::write(const ValueCollection& list, WireWriter& writer) {
  writer.advance(storeWire(writer.reserve(sizeof(unsigned int)), list.count()));
  for (const Variant* const item : list.items) {
    if (item == nullptr) {
      return false;
    }
    const bool written =
        isPlainVariant(*item)
            ? writeVariant(*item, writer)
            : writer.handOver([item](IStream& stream) { return item->write(stream); });
    if (!written) {
      return false;
    }
  }
  return writer.endPiece();
}

template <class T>
bool WireCodec::addTargetSize(const T* target, unsigned long long& total) noexcept {
  return target != nullptr && isExactly<T>(*target) && addSize(*target, total);
}

bool WireCodec::addSize(const CharacterData& text, unsigned long long& total) noexcept {
  total += sizeof text.m_length + text.m_length;
  return true;
}

bool WireCodec::addSize(const ObjectBase& record, unsigned long long& total) noexcept {
  const RecordCodec* const codec = codecFor(record);
  total += sizeof(unsigned short);
  return codec != nullptr && codec->size(record, total);
}

// Part of the loops over properties and elements, as writeVariant().
[[gnu::always_inline]] inline bool WireCodec::addVariantSize(const Variant& variant,
                                                             unsigned long long& total) noexcept {
  total += kVariantHeader + scalarWidth(variant.m_type);
  return !variant.holdsHandle() || addHandleSize(variant, total);
}

bool WireCodec::addSize(const Variant& variant, unsigned long long& total) noexcept {
  return addVariantSize(variant, total);
}

bool WireCodec::addHandleSize(const Variant& variant, unsigned long long& total) noexcept {
  switch (variant.m_type) {
    case Variant::TypeString:
      return addTargetSize(variant.target<CharacterData>(), total);
    case Variant::TypeGenericObject:
      return addTargetSize(variant.target<GenericObject>(), total);
    case Variant::TypeObject:
      return variant.m_value != 0 && addSize(*variant.target<ObjectBase>(), total);
    default:
      return addTargetSize(variant.target<ValueCollection>(), total);
  }
}

bool WireCodec::addSize(const GenericObject& object, unsigned long long& total) noexcept {
  total += sizeof object.m_key + sizeof(unsigned int);
  if (object.m_properties) {
    for (const InternalVariant& property : object.m_properties->items) {
      if (!addVariantSize(property, total)) {
        return false;
      }
    }
  }
  return true;
}

bool WireCodec::addSize(const ValueCollection& list, unsigned long long& total) noexcept {
  total += sizeof(unsigned int);
  for (const Variant* const item : list.items) {
    if (item == nullptr || !isPlainVariant(*item) || !addVariantSize(*item, total)) {
      return false;
    }
  }
  return true;
}

// Any byte but 0 is true.
inline void WireCodec::normalize(Variant& variant) noexcept {
  if (variant.m_type == Variant::TypeBoolean) {
    variant.store(variant.load<bool>());
  }
}

// Part of the loops over properties and elements, as writeVariant(). Near the end of the bytes, and
// from other streams, a value arrives piece by piece.
[[gnu::always_inline]] inline bool WireCodec::readVariant(Variant& variant, WireReader& reader) {
  const unsigned char* const from = reader.peek(kVariantHeader + kScalarRoom);
  if (from == nullptr) {
    return readInPieces(variant, reader);
  }
  variant.dropTarget();
  variant.m_type = loadWire<unsigned short>(from);
  variant.m_key = loadWire<unsigned short>(from + sizeof variant.m_type);
  reader.skip(kVariantHeader);
  if (variant.holdsHandle()) {
    variant.m_value = 0;  // an earlier scalar's bytes are no pointer
    return readHandle(variant, reader);
  }
  const unsigned int width = scalarWidth(variant.m_type);
  storeScalar(reinterpret_cast<unsigned char*>(&variant.m_value), from + kVariantHeader, width);
  reader.skip(width);
  normalize(variant);
  return true;
}

bool WireCodec::read(Variant& variant, WireReader& reader) { return readVariant(variant, reader); }

bool WireCodec::readInPieces(Variant& variant, WireReader& reader) {
  variant.dropTarget();
  unsigned short type = variant.m_type;
  const bool complete = reader.get(type);
  variant.m_type = type;
  if (variant.holdsHandle()) {
    variant.m_value = 0;
  }
  if (!complete || !reader.get(variant.m_key)) {
    return false;
  }
  return variant.holdsHandle() ? readHandle(variant, reader) : readScalar(variant, reader);
}

bool WireCodec::readHandle(Variant& variant, WireReader& reader) {
  switch (variant.m_type) {
    case Variant::TypeString:
      return readTarget<CharacterData>(variant, reader);
    case Variant::TypeGenericObject:
      return readTarget<GenericObject>(variant, reader);
    case Variant::TypeObject:
      return readRecord(variant, reader);
    default:
      return readTarget<ValueCollection>(variant, reader);
  }
}

bool WireCodec::readScalar(Variant& variant, WireReader& reader) {
  const unsigned int width = scalarWidth(variant.m_type);
  if (width != 0 && !reader.getImage(&variant.m_value, width)) {
    return false;
  }
  normalize(variant);
  return reader.good();
}

template <class T>
bool WireCodec::readTarget(Variant& variant, WireReader& reader) {
  const SharedPointer<T> target(new (std::nothrow) T);
  if (!target || !read(*target, reader)) {
    return false;
  }
  variant.adopt(static_cast<Variant::Type>(variant.m_type), target.get());
  return reader.good();
}

bool WireCodec::readRecord(Variant& variant, WireReader& reader) {
  unsigned short classId = 0;
  if (!reader.get(classId) || classId == 0) {
    return false;
  }
  const RecordCodec* const codec = findRecordCodec(classId);
  const SharedPointer<ObjectBase> record =
      codec != nullptr ? codec->create() : schema::ObjectBaseFactory::createObject(classId);
  if (!record) {
    return false;
  }
  const bool complete =
      codec != nullptr
          ? codec->read(*record, reader)
          : reader.handOver([&record](IStream& stream) { return record->read(stream); });
  if (!complete) {
    return false;
  }
  variant.adopt(Variant::TypeObject, record.get());
  return reader.good();
}

bool WireCodec::read(GenericObject& object, WireReader& reader) {
  const WireReader::Level level(reader);
  SharedPointer<GenericObject::Properties> properties = PropertyLists::take();
  unsigned short key = 0;
  if (level.tooDeep() || !properties || !reader.get(key)) {
    return false;
  }
  if (key == 0) {
    return reader.good();
  }
  unsigned int left = 0;
  if (!reader.get(left)) {
    return false;
  }
  try {
    properties->items.reserve(std::min(left, kTrustedCount));
    for (; left > 0; --left) {
      if (!readVariant(properties->items.emplace_back(static_cast<unsigned short>(0)), reader)) {
        return false;
      }
    }
  } catch (const std::bad_alloc&) {
    return false;
  }
  object.m_key = key;
  object.m_properties = std::move(properties);
  return reader.good();
}

bool WireCodec::read(ValueCollection& list, WireReader& reader) {
  const WireReader::Level level(reader);
  unsigned int left = 0;
  if (level.tooDeep() || !reader.get(left) || !makeRoom(list, std::min(left, kTrustedCount))) {
    return false;
  }
  for (; left > 0; --left) {
    std::unique_ptr<Variant> item(Variant::create());
    if (!item || !readVariant(*item, reader) || list.add(item.get()) != StatusOk) {
      return false;
    }
    static_cast<void>(item.release());
  }
  return reader.good();
}

bool WireCodec::read(CharacterData& text, WireReader& reader) {
  delete[] std::exchange(text.m_text, nullptr);
  text.m_length = 0;
  unsigned int length = 0;
  if (!reader.get(length) || length == ~0U) {  // no room for the NUL behind so many
    return false;
  }
  return length == 0 ? reader.good() : readText(text, length, reader);
}

// Memory follows the bytes that arrive, not the length that the stream claims.
bool WireCodec::readText(CharacterData& text, unsigned int length, WireReader& reader) {
  unsigned int room = reader.plausible(length);
  unsigned int arrived = 0;
  text.m_text = new (std::nothrow) char[std::size_t{room} + 1];
  while (text.m_text != nullptr) {
    arrived +=
        reader.bytes(reinterpret_cast<unsigned char*>(text.m_text) + arrived, room - arrived);
    text.m_text[arrived] = '\0';
    if (arrived == length) {
      text.m_length = length;
      return reader.good();
    }
    if (arrived < room || reader.plausible(length - arrived) == 0) {
      return false;
    }
    room = length - room < room ? length : room * 2;
    std::unique_ptr<char[]> grown(new (std::nothrow) char[std::size_t{room} + 1]);
    if (grown) {
      std::memcpy(grown.get(), text.m_text, arrived);
    }
    delete[] std::exchange(text.m_text, grown.release());
  }
  return false;
}

}  // namespace trelvo::gom
