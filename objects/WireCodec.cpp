#include "objects/WireCodec.h"

#include <algorithm>
#include <memory>
#include <new>
#include <typeinfo>
#include <utility>

#include <trelvo/gom/CharacterData.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/ValueCollection.h>
#include <trelvo/gom/Variant.h>
#include <trelvo/schema/ObjectBaseFactory.h>

#include "objects/LittleEndian.h"
#include "objects/RecordCodec.h"
#include "objects/VariantValue.h"

namespace trelvo::gom {

namespace {

constexpr unsigned int kVariantHeader = 4;
constexpr unsigned int kScalarRoom = 8;
// A count from a stream decides no allocation beyond this; lists grow by doubling from there.
constexpr unsigned int kTrustedCount = 8;

const RecordCodec* codecFor(const ObjectBase& record) noexcept {
  const RecordCodec* const codec = findRecordCodec(record.key());
  return codec != nullptr && typeid(record) == *codec->type ? codec : nullptr;
}

// A list's elements are variants as they are or, where an application made them, as properties.
bool isPlainVariant(const Variant& variant) noexcept {
  return typeid(variant) == typeid(Variant) || typeid(variant) == typeid(InternalVariant);
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
  if (typeid(*target) == typeid(T)) {
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

bool WireCodec::write(const Variant& variant, WireWriter& writer) {
  unsigned char* to = writer.reserve(kVariantHeader + kScalarRoom);
  to = storeWire(to, variant.m_type);
  to = storeWire(to, variant.m_key);
  const unsigned int width = scalarWidth(variant.m_type);
  if (width != 0) {
    std::memcpy(to, &variant.m_value, kScalarRoom);
    swapWireOrder(to, width);
  }
  writer.advance(to + width);
  switch (variant.m_type) {
    case Variant::TypeString:
      return writeTarget(variant.target<CharacterData>(), writer);
    case Variant::TypeGenericObject:
      return writeTarget(variant.target<GenericObject>(), writer);
    case Variant::TypeObject:
      return variant.m_value != 0 && writeRecord(*variant.target<ObjectBase>(), writer);
    case Variant::TypeCollection:
      return writeTarget(variant.target<ValueCollection>(), writer);
    default:
      return writer.endPiece();
  }
}

bool WireCodec::write(const GenericObject& object, WireWriter& writer) {
  unsigned char* to = writer.reserve(sizeof object.m_key + sizeof(unsigned int));
  to = storeWire(to, object.m_key);
  writer.advance(storeWire(to, object.propertyCount()));
  if (object.m_properties) {
    for (const InternalVariant& property : object.m_properties->items) {
      if (!write(property, writer)) {
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
            ? write(*item, writer)
            : writer.handOver([item](IStream& stream) { return item->write(stream); });
    if (!written) {
      return false;
    }
  }
  return writer.endPiece();
}

template <class T>
bool WireCodec::addTargetSize(const T* target, unsigned long long& total) noexcept {
  return target != nullptr && typeid(*target) == typeid(T) && addSize(*target, total);
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

bool WireCodec::addSize(const Variant& variant, unsigned long long& total) noexcept {
  total += kVariantHeader + scalarWidth(variant.m_type);
  switch (variant.m_type) {
    case Variant::TypeString:
      return addTargetSize(variant.target<CharacterData>(), total);
    case Variant::TypeGenericObject:
      return addTargetSize(variant.target<GenericObject>(), total);
    case Variant::TypeObject:
      return variant.m_value != 0 && addSize(*variant.target<ObjectBase>(), total);
    case Variant::TypeCollection:
      return addTargetSize(variant.target<ValueCollection>(), total);
    default:
      return true;
  }
}

bool WireCodec::addSize(const GenericObject& object, unsigned long long& total) noexcept {
  total += sizeof object.m_key + sizeof(unsigned int);
  if (!object.m_properties) {
    return true;
  }
  const auto& items = object.m_properties->items;
  return std::all_of(items.begin(), items.end(), [&total](const InternalVariant& property) {
    return addSize(property, total);
  });
}

bool WireCodec::addSize(const ValueCollection& list, unsigned long long& total) noexcept {
  total += sizeof(unsigned int);
  return std::all_of(list.items.begin(), list.items.end(), [&total](const Variant* item) {
    return item != nullptr && isPlainVariant(*item) && addSize(*item, total);
  });
}

bool WireCodec::read(Variant& variant, WireReader& reader) {
  variant.dropTarget();
  unsigned short type = variant.m_type;
  const bool complete = reader.get(type);
  variant.m_type = type;
  if (variant.holdsHandle()) {
    variant.m_value = 0;  // an earlier scalar's bytes are no pointer
  }
  return complete && reader.get(variant.m_key) && readPayload(variant, reader);
}

bool WireCodec::readPayload(Variant& variant, WireReader& reader) {
  switch (variant.m_type) {
    case Variant::TypeString:
      return readTarget<CharacterData>(variant, reader);
    case Variant::TypeGenericObject:
      return readTarget<GenericObject>(variant, reader);
    case Variant::TypeObject:
      return readRecord(variant, reader);
    case Variant::TypeCollection:
      return readTarget<ValueCollection>(variant, reader);
    default:
      return readScalar(variant, reader);
  }
}

bool WireCodec::readScalar(Variant& variant, WireReader& reader) {
  const unsigned int width = scalarWidth(variant.m_type);
  if (width != 0 && !reader.getImage(&variant.m_value, width)) {
    return false;
  }
  if (variant.m_type == Variant::TypeBoolean) {
    variant.store(variant.load<bool>());
  }
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
  SharedPointer<GenericObject::Properties> properties = GenericObject::Properties::create();
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
      if (!read(properties->items.emplace_back(static_cast<unsigned short>(0)), reader)) {
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
  if (level.tooDeep() || !reader.get(left)) {
    return false;
  }
  for (; left > 0; --left) {
    std::unique_ptr<Variant> item(Variant::create());
    if (!item || !read(*item, reader) || list.add(item.get()) != StatusOk) {
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
