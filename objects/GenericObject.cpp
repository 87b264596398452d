#include <trelvo/gom/GenericObject.h>

#include <algorithm>
#include <new>
#include <utility>

#include <trelvo/gom/CharacterData.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/ValueCollection.h>

#include "objects/MakeObject.h"
#include "objects/PropertyLists.h"
#include "objects/WireCodec.h"

namespace trelvo::gom {

namespace {

// Nearly every object of the schema has at most as many properties.
constexpr std::size_t kUsualProperties = 4;

}  // namespace

GenericObject::~GenericObject() { PropertyLists::giveBack(std::move(m_properties)); }

SharedPointer<GenericObject> GenericObject::create(unsigned short key) {
  SharedPointer<GenericObject> object = makeObject<GenericObject>(key);
  if (object) {
    object->m_properties = PropertyLists::take();
  }
  const bool whole = object && object->m_properties;
  return onlyIf(whole, std::move(object));
}

SharedPointer<GenericObject> GenericObject::create(IStream& stream) {
  SharedPointer<GenericObject> object = makeObject<GenericObject>();
  const bool complete = object && object->read(stream);
  return onlyIf(complete, std::move(object));
}

SharedPointer<GenericObject> GenericObject::create(const GenericObject& other) {
  SharedPointer<GenericObject> object = create(other.m_key);
  if (!object || !other.m_properties) {
    return object;
  }
  for (const InternalVariant& property : other.m_properties->items) {
    InternalVariant* const copy = object->appendProperty(property.m_key);
    if (copy == nullptr) {
      return {};
    }
    *copy = property;
  }
  return object;
}

SharedPointer<GenericObject> GenericObject::create(const SharedPointer<GenericObject>& other) {
  return other ? create(*other) : SharedPointer<GenericObject>();
}

SharedPointer<GenericObject> GenericObject::clone() const {
  SharedPointer<GenericObject> object = create(m_key);
  if (!object || !m_properties) {
    return object;
  }
  for (const InternalVariant& property : m_properties->items) {
    InternalVariant* const copy = object->appendProperty(property.m_key);
    if (copy == nullptr || copy->cloneFrom(property) != StatusOk) {
      return {};
    }
  }
  return object;
}

bool GenericObject::write(IStream& stream) const { return WireCodec::writeTo(*this, stream); }
bool GenericObject::read(IStream& stream) { return WireCodec::readFrom(*this, stream); }

unsigned int GenericObject::propertyCount() const noexcept {
  return m_properties ? m_properties->count() : 0;
}

bool GenericObject::propertyExists(unsigned short key) const noexcept {
  return findProperty(key) != nullptr;
}

// Part of all that looks for a property, so that none of it calls twice.
[[gnu::always_inline]] inline InternalVariant* GenericObject::find(
    unsigned short key) const noexcept {
  if (m_properties) {
    for (InternalVariant& property : m_properties->items) {
      if (property.m_key == key) {
        return &property;
      }
    }
  }
  return nullptr;
}

InternalVariant* GenericObject::findProperty(unsigned short key) noexcept { return find(key); }
const InternalVariant* GenericObject::findProperty(unsigned short key) const noexcept {
  return find(key);
}

bool GenericObject::getFirstKey(unsigned short& key) noexcept {
  if (propertyCount() == 0) {
    return false;
  }
  m_cursor = m_properties->items.data();
  key = m_cursor->key();
  return true;
}

bool GenericObject::getNextKey(unsigned short& key) noexcept {
  if (!m_properties) {
    return false;
  }
  m_cursor = const_cast<InternalVariant*>(m_properties->nextImpl(m_cursor));
  if (m_cursor == nullptr) {
    return false;
  }
  key = m_cursor->key();
  return true;
}

void GenericObject::dump() const {
  if (m_properties) {
    for (const InternalVariant& property : m_properties->items) {
      property.dump();
    }
  }
}

bool GenericObject::removeProperty(unsigned short key) {
  InternalVariant* const property = findProperty(key);
  if (property == nullptr) {
    return false;
  }
  auto& items = m_properties->items;
  items.erase(items.begin() + (property - items.data()));
  return true;
}

// A new property without a value; null when memory runs out.
inline InternalVariant* GenericObject::appendProperty(unsigned short key) {
  try {
    if (!m_properties) {
      m_properties = PropertyLists::take();
    }
    if (!m_properties) {
      return nullptr;
    }
    auto& items = m_properties->items;
    if (items.capacity() == 0) {
      items.reserve(kUsualProperties);
    }
    return &items.emplace_back(key);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

// Null when memory runs out for a new one.
InternalVariant* GenericObject::findOrAppendProperty(unsigned short key) {
  InternalVariant* const property = find(key);
  return property != nullptr ? property : appendProperty(key);
}

template <auto getter, class T>
Status GenericObject::get(unsigned short key, T& value) const {
  const InternalVariant* const property = find(key);
  return property == nullptr ? StatusNotFound : (property->*getter)(value);
}

template <auto setter, class T>
Status GenericObject::set(unsigned short key, const T& value) {
  InternalVariant* const property = findOrAppendProperty(key);
  return property == nullptr ? StatusOutOfMemory : (property->*setter)(value);
}

template <auto setter, class T>
Status GenericObject::setHandle(unsigned short key, const SharedPointer<T>& value) {
  return value ? set<setter>(key, value) : StatusWrongState;
}

Status GenericObject::getProperty(unsigned short key, Variant& value) const {
  const InternalVariant* const property = findProperty(key);
  if (property == nullptr) {
    return StatusNotFound;
  }
  value = static_cast<const Variant&>(*property);
  return StatusOk;
}

Status GenericObject::setProperty(unsigned short key, const Variant& value) {
  InternalVariant copy(key, value);  // `value` may stand in the list that grows here
  InternalVariant* property = findProperty(key);
  if (property == nullptr) {
    property = appendProperty(key);
  } else if (property->dataType() != copy.dataType()) {
    return StatusWrongState;
  }
  if (property == nullptr) {
    return StatusOutOfMemory;
  }
  *property = std::move(copy);
  return StatusOk;
}

bool GenericObject::operator==(const GenericObject& other) const {
  if (m_key != other.m_key || propertyCount() != other.propertyCount()) {
    return false;
  }
  if (propertyCount() == 0) {
    return true;
  }
  const auto& mine = m_properties->items;
  return std::equal(mine.begin(), mine.end(), other.m_properties->items.begin());
}

Status GenericObject::getInt8Property(unsigned short key, signed char& value) const {
  return get<&Variant::getInt8Value>(key, value);
}
Status GenericObject::getUint8Property(unsigned short key, unsigned char& value) const {
  return get<&Variant::getUint8Value>(key, value);
}
Status GenericObject::getInt16Property(unsigned short key, short& value) const {
  return get<&Variant::getInt16Value>(key, value);
}
Status GenericObject::getUint16Property(unsigned short key, unsigned short& value) const {
  return get<&Variant::getUint16Value>(key, value);
}
Status GenericObject::getInt32Property(unsigned short key, int& value) const {
  return get<&Variant::getInt32Value>(key, value);
}
Status GenericObject::getUint32Property(unsigned short key, unsigned int& value) const {
  return get<&Variant::getUint32Value>(key, value);
}
Status GenericObject::getInt64Property(unsigned short key, long long& value) const {
  return get<&Variant::getInt64Value>(key, value);
}
Status GenericObject::getUint64Property(unsigned short key, unsigned long long& value) const {
  return get<&Variant::getUint64Value>(key, value);
}
Status GenericObject::getFloatProperty(unsigned short key, float& value) const {
  return get<&Variant::getFloatValue>(key, value);
}
Status GenericObject::getDoubleProperty(unsigned short key, double& value) const {
  return get<&Variant::getDoubleValue>(key, value);
}
Status GenericObject::getBooleanProperty(unsigned short key, bool& value) const {
  return get<&Variant::getBooleanValue>(key, value);
}
Status GenericObject::getStringProperty(unsigned short key,
                                        SharedPointer<CharacterData>& value) const {
  return get<&Variant::getStringValue>(key, value);
}
Status GenericObject::getGenericObjectProperty(unsigned short key,
                                               SharedPointer<GenericObject>& value) const {
  return get<&Variant::getGenericObjectValue>(key, value);
}
Status GenericObject::getObjectProperty(unsigned short key,
                                        SharedPointer<ObjectBase>& value) const {
  return get<&Variant::getObjectValue>(key, value);
}
Status GenericObject::getCollectionProperty(unsigned short key,
                                            SharedPointer<ValueCollection>& value) const {
  return get<&Variant::getCollectionValue>(key, value);
}

Status GenericObject::setInt8Property(unsigned short key, signed char value) {
  return set<&Variant::setInt8Value>(key, value);
}
Status GenericObject::setUint8Property(unsigned short key, unsigned char value) {
  return set<&Variant::setUint8Value>(key, value);
}
Status GenericObject::setInt16Property(unsigned short key, short value) {
  return set<&Variant::setInt16Value>(key, value);
}
Status GenericObject::setUint16Property(unsigned short key, unsigned short value) {
  return set<&Variant::setUint16Value>(key, value);
}
Status GenericObject::setInt32Property(unsigned short key, int value) {
  return set<&Variant::setInt32Value>(key, value);
}
Status GenericObject::setUint32Property(unsigned short key, unsigned int value) {
  return set<&Variant::setUint32Value>(key, value);
}
Status GenericObject::setInt64Property(unsigned short key, long long value) {
  return set<&Variant::setInt64Value>(key, value);
}
Status GenericObject::setUint64Property(unsigned short key, unsigned long long value) {
  return set<&Variant::setUint64Value>(key, value);
}
Status GenericObject::setFloatProperty(unsigned short key, float value) {
  return set<&Variant::setFloatValue>(key, value);
}
Status GenericObject::setDoubleProperty(unsigned short key, double value) {
  return set<&Variant::setDoubleValue>(key, value);
}
Status GenericObject::setBooleanProperty(unsigned short key, bool value) {
  return set<&Variant::setBooleanValue>(key, value);
}
Status GenericObject::setStringProperty(unsigned short key,
                                        const SharedPointer<CharacterData>& value) {
  return setHandle<&Variant::setStringValue>(key, value);
}
Status GenericObject::setGenericObjectProperty(unsigned short key,
                                               const SharedPointer<GenericObject>& value) {
  return setHandle<&Variant::setGenericObjectValue>(key, value);
}
Status GenericObject::setObjectProperty(unsigned short key,
                                        const SharedPointer<ObjectBase>& value) {
  return setHandle<&Variant::setObjectValue>(key, value);
}
Status GenericObject::setCollectionProperty(unsigned short key,
                                            const SharedPointer<ValueCollection>& value) {
  return setHandle<&Variant::setCollectionValue>(key, value);
}

}  // namespace trelvo::gom
