#include <trelvo/gom/GenericObject.h>

#include <algorithm>
#include <utility>

#include <trelvo/gom/CharacterData.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/ValueCollection.h>

#include "objects/MakeObject.h"
#include "objects/WireCodec.h"

namespace trelvo::gom {

namespace {

// Nearly every object of the schema has at most as many properties.
constexpr std::size_t kUsualProperties = 4;

}  // namespace

GenericObject::~GenericObject() = default;

SharedPointer<GenericObject> GenericObject::create(unsigned short key) {
  SharedPointer<GenericObject> object = makeObject<GenericObject>(key);
  if (object) {
    object->m_properties = Properties::create();
  }
  return object && object->m_properties ? object : SharedPointer<GenericObject>();
}

SharedPointer<GenericObject> GenericObject::create(IStream& stream) {
  SharedPointer<GenericObject> object = makeObject<GenericObject>();
  return object && object->read(stream) ? object : SharedPointer<GenericObject>();
}

SharedPointer<GenericObject> GenericObject::create(const GenericObject& other) {
  SharedPointer<GenericObject> object = create(other.m_key);
  if (!object || !other.m_properties) {
    return object;
  }
  for (const InternalVariant& property : other.m_properties->items) {
    if (object->addProperty(InternalVariant(property)) != StatusOk) {
      return {};
    }
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
    InternalVariant copy(0);
    if (copy.cloneFrom(property) != StatusOk || object->addProperty(std::move(copy)) != StatusOk) {
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

InternalVariant* GenericObject::findProperty(unsigned short key) noexcept {
  return const_cast<InternalVariant*>(std::as_const(*this).findProperty(key));
}

const InternalVariant* GenericObject::findProperty(unsigned short key) const noexcept {
  if (m_properties) {
    for (const InternalVariant& property : m_properties->items) {
      if (property.m_key == key) {
        return &property;
      }
    }
  }
  return nullptr;
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

Status GenericObject::addProperty(InternalVariant&& property) {
  if (!m_properties) {
    m_properties = Properties::create();
  }
  if (!m_properties) {
    return StatusOutOfMemory;
  }
  try {
    if (m_properties->items.empty()) {
      m_properties->items.reserve(kUsualProperties);
    }
    m_properties->items.push_back(std::move(property));
    return StatusOk;
  } catch (...) {
    return StatusOutOfMemory;
  }
}

template <class Getter, class T>
Status GenericObject::get(unsigned short key, Getter getter, T& value) const {
  const InternalVariant* const property = findProperty(key);
  return property == nullptr ? StatusNotFound : (property->*getter)(value);
}

template <class Setter, class T>
Status GenericObject::set(unsigned short key, Setter setter, const T& value) {
  if (InternalVariant* const present = findProperty(key)) {
    return (present->*setter)(value);
  }
  InternalVariant property(key);
  const Status status = (property.*setter)(value);
  return status == StatusOk ? addProperty(std::move(property)) : status;
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
  InternalVariant* const present = findProperty(key);
  if (present == nullptr) {
    return addProperty(InternalVariant(key, value));
  }
  if (present->dataType() != value.dataType()) {
    return StatusWrongState;
  }
  *present = InternalVariant(key, value);
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
  return get(key, &Variant::getInt8Value, value);
}
Status GenericObject::getUint8Property(unsigned short key, unsigned char& value) const {
  return get(key, &Variant::getUint8Value, value);
}
Status GenericObject::getInt16Property(unsigned short key, short& value) const {
  return get(key, &Variant::getInt16Value, value);
}
Status GenericObject::getUint16Property(unsigned short key, unsigned short& value) const {
  return get(key, &Variant::getUint16Value, value);
}
Status GenericObject::getInt32Property(unsigned short key, int& value) const {
  return get(key, &Variant::getInt32Value, value);
}
Status GenericObject::getUint32Property(unsigned short key, unsigned int& value) const {
  return get(key, &Variant::getUint32Value, value);
}
Status GenericObject::getInt64Property(unsigned short key, long long& value) const {
  return get(key, &Variant::getInt64Value, value);
}
Status GenericObject::getUint64Property(unsigned short key, unsigned long long& value) const {
  return get(key, &Variant::getUint64Value, value);
}
Status GenericObject::getFloatProperty(unsigned short key, float& value) const {
  return get(key, &Variant::getFloatValue, value);
}
Status GenericObject::getDoubleProperty(unsigned short key, double& value) const {
  return get(key, &Variant::getDoubleValue, value);
}
Status GenericObject::getBooleanProperty(unsigned short key, bool& value) const {
  return get(key, &Variant::getBooleanValue, value);
}
Status GenericObject::getStringProperty(unsigned short key,
                                        SharedPointer<CharacterData>& value) const {
  return get(key, &Variant::getStringValue, value);
}
Status GenericObject::getGenericObjectProperty(unsigned short key,
                                               SharedPointer<GenericObject>& value) const {
  return get(key, &Variant::getGenericObjectValue, value);
}
Status GenericObject::getObjectProperty(unsigned short key,
                                        SharedPointer<ObjectBase>& value) const {
  return get(key, &Variant::getObjectValue, value);
}
Status GenericObject::getCollectionProperty(unsigned short key,
                                            SharedPointer<ValueCollection>& value) const {
  return get(key, &Variant::getCollectionValue, value);
}

Status GenericObject::setInt8Property(unsigned short key, signed char value) {
  return set(key, &Variant::setInt8Value, value);
}
Status GenericObject::setUint8Property(unsigned short key, unsigned char value) {
  return set(key, &Variant::setUint8Value, value);
}
Status GenericObject::setInt16Property(unsigned short key, short value) {
  return set(key, &Variant::setInt16Value, value);
}
Status GenericObject::setUint16Property(unsigned short key, unsigned short value) {
  return set(key, &Variant::setUint16Value, value);
}
Status GenericObject::setInt32Property(unsigned short key, int value) {
  return set(key, &Variant::setInt32Value, value);
}
Status GenericObject::setUint32Property(unsigned short key, unsigned int value) {
  return set(key, &Variant::setUint32Value, value);
}
Status GenericObject::setInt64Property(unsigned short key, long long value) {
  return set(key, &Variant::setInt64Value, value);
}
Status GenericObject::setUint64Property(unsigned short key, unsigned long long value) {
  return set(key, &Variant::setUint64Value, value);
}
Status GenericObject::setFloatProperty(unsigned short key, float value) {
  return set(key, &Variant::setFloatValue, value);
}
Status GenericObject::setDoubleProperty(unsigned short key, double value) {
  return set(key, &Variant::setDoubleValue, value);
}
Status GenericObject::setBooleanProperty(unsigned short key, bool value) {
  return set(key, &Variant::setBooleanValue, value);
}
Status GenericObject::setStringProperty(unsigned short key,
                                        const SharedPointer<CharacterData>& value) {
  return set(key, &Variant::setStringValue, value);
}
Status GenericObject::setGenericObjectProperty(unsigned short key,
                                               const SharedPointer<GenericObject>& value) {
  return set(key, &Variant::setGenericObjectValue, value);
}
Status GenericObject::setObjectProperty(unsigned short key,
                                        const SharedPointer<ObjectBase>& value) {
  return set(key, &Variant::setObjectValue, value);
}
Status GenericObject::setCollectionProperty(unsigned short key,
                                            const SharedPointer<ValueCollection>& value) {
  return set(key, &Variant::setCollectionValue, value);
}

}  // namespace trelvo::gom
