#include <trelvo/gom/Variant.h>

#include <memory>
#include <utility>

#include <trelvo/gom/CharacterData.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/InternalVariant.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/ValueCollection.h>

#include "objects/BlockPool.h"
#include "objects/VariantValue.h"
#include "objects/WireCodec.h"

namespace trelvo::gom {

template <class T>
Status Variant::setScalar(Type type, T value) noexcept {
  if (m_type != TypeNone && m_type != type) {
    return StatusWrongState;
  }
  m_type = type;
  store(value);
  return StatusOk;
}

template <class T>
Status Variant::getScalar(Type type, T& value) const noexcept {
  if (m_type != type) {
    return StatusWrongState;
  }
  value = load<T>();
  return StatusOk;
}

template <class T>
Status Variant::setHandle(Type type, const SharedPointer<T>& value) {
  if (!value || (m_type != TypeNone && m_type != type)) {
    return StatusWrongState;
  }
  adopt(type, value.get());
  return StatusOk;
}

template <class T>
Status Variant::getHandle(Type type, SharedPointer<T>& value) const {
  if (m_type != type) {
    return StatusWrongState;
  }
  value = SharedPointer<T>(target<T>());
  return StatusOk;
}

Variant::Variant(const Variant& other) noexcept
    : ISerializable(other), m_key(other.m_key), m_type(other.m_type), m_value(other.m_value) {
  pinTarget();
}

Variant::Variant(unsigned short key, const Variant& other) noexcept : Variant(other) {
  m_key = key;
}

Variant::Variant(Variant&& other) noexcept
    : ISerializable(other),
      m_key(other.m_key),
      m_type(std::exchange(other.m_type, static_cast<unsigned short>(TypeNone))),
      m_value(std::exchange(other.m_value, 0)) {}

Variant::~Variant() { dropTarget(); }

Variant& Variant::operator=(const Variant& other) {
  if (this != &other) {
    *this = Variant(other);
  }
  return *this;
}

Variant& Variant::operator=(Variant&& other) noexcept {
  if (this != &other) {
    // The old value goes last: it may be what keeps `other` alive.
    const Variant old(std::move(*this));
    m_key = other.m_key;
    m_type = std::exchange(other.m_type, static_cast<unsigned short>(TypeNone));
    m_value = std::exchange(other.m_value, 0);
  }
  return *this;
}

Variant* Variant::create() noexcept { return new (std::nothrow) Variant; }

Variant* Variant::clone() const {
  std::unique_ptr<Variant> copy(create());
  if (copy && copy->cloneFrom(*this) != StatusOk) {
    copy.reset();
  }
  return copy.release();
}

template <class T>
bool Variant::adoptClone(SharedPointer<T> clone) noexcept {
  if (clone) {
    adopt(static_cast<Type>(m_type), clone.get());
  }
  return static_cast<bool>(clone);
}

Status Variant::cloneFrom(const Variant& other) {
  if (this == &other) {
    return StatusOk;
  }
  const Variant old(std::move(*this));
  m_key = other.m_key;
  m_type = other.m_type;
  if (!holdsHandle()) {
    m_value = other.m_value;
    return StatusOk;
  }
  if (other.m_value == 0) {
    return StatusOutOfMemory;
  }
  bool cloned = false;
  switch (m_type) {
    case TypeString:
      cloned = adoptClone(other.target<CharacterData>()->clone());
      break;
    case TypeGenericObject:
      cloned = adoptClone(other.target<GenericObject>()->clone());
      break;
    case TypeObject:
      cloned = adoptClone(SharedPointer<ObjectBase>(other.target<ObjectBase>()->clone()));
      break;
    default:
      cloned = adoptClone(other.target<ValueCollection>()->clone());
  }
  return cloned ? StatusOk : StatusOutOfMemory;
}

bool Variant::write(IStream& stream) const { return WireCodec::writeTo(*this, stream); }
bool Variant::read(IStream& stream) { return WireCodec::readFrom(*this, stream); }

template <class T>
bool Variant::sameTarget(const Variant& other) const {
  return *target<T>() == *other.target<T>();
}

bool Variant::operator==(const Variant& other) const {
  if (m_key != other.m_key || m_type != other.m_type) {
    return false;
  }
  if (!holdsHandle() || m_value == 0 || other.m_value == 0) {
    return m_value == other.m_value;
  }
  switch (m_type) {
    case TypeString:
      return sameTarget<CharacterData>(other);
    case TypeGenericObject:
      return sameTarget<GenericObject>(other);
    case TypeObject:
      return target<ObjectBase>()->compare(other.target<ObjectBase>());
    default:
      return sameTarget<ValueCollection>(other);
  }
}

void Variant::dump() const {}

void* Variant::operator new(std::size_t size) { return BlockPool::allocate(size); }
void* Variant::operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return BlockPool::tryAllocate(size);
}
void Variant::operator delete(void* block, std::size_t size) noexcept {
  BlockPool::release(block, size);
}
void Variant::operator delete(void* block, const std::nothrow_t& /*tag*/) noexcept {
  BlockPool::releaseToHeap(block);
}

Status Variant::setInt8Value(signed char value) { return setScalar(TypeInt8, value); }
Status Variant::setUint8Value(unsigned char value) { return setScalar(TypeUint8, value); }
Status Variant::setInt16Value(short value) { return setScalar(TypeInt16, value); }
Status Variant::setUint16Value(unsigned short value) { return setScalar(TypeUint16, value); }
Status Variant::setInt32Value(int value) { return setScalar(TypeInt32, value); }
Status Variant::setUint32Value(unsigned int value) { return setScalar(TypeUint32, value); }
Status Variant::setInt64Value(long long value) { return setScalar(TypeInt64, value); }
Status Variant::setUint64Value(unsigned long long value) { return setScalar(TypeUint64, value); }
Status Variant::setFloatValue(float value) { return setScalar(TypeFloat, value); }
Status Variant::setDoubleValue(double value) { return setScalar(TypeDouble, value); }
Status Variant::setBooleanValue(bool value) { return setScalar(TypeBoolean, value); }
Status Variant::setStringValue(const SharedPointer<CharacterData>& value) {
  return setHandle(TypeString, value);
}
Status Variant::setGenericObjectValue(const SharedPointer<GenericObject>& value) {
  return setHandle(TypeGenericObject, value);
}
Status Variant::setObjectValue(const SharedPointer<ObjectBase>& value) {
  return setHandle(TypeObject, value);
}
Status Variant::setCollectionValue(const SharedPointer<ValueCollection>& value) {
  return setHandle(TypeCollection, value);
}

Status Variant::getInt8Value(signed char& value) const { return getScalar(TypeInt8, value); }
Status Variant::getUint8Value(unsigned char& value) const { return getScalar(TypeUint8, value); }
Status Variant::getInt16Value(short& value) const { return getScalar(TypeInt16, value); }
Status Variant::getUint16Value(unsigned short& value) const { return getScalar(TypeUint16, value); }
Status Variant::getInt32Value(int& value) const { return getScalar(TypeInt32, value); }
Status Variant::getUint32Value(unsigned int& value) const { return getScalar(TypeUint32, value); }
Status Variant::getInt64Value(long long& value) const { return getScalar(TypeInt64, value); }
Status Variant::getUint64Value(unsigned long long& value) const {
  return getScalar(TypeUint64, value);
}
Status Variant::getFloatValue(float& value) const { return getScalar(TypeFloat, value); }
Status Variant::getDoubleValue(double& value) const { return getScalar(TypeDouble, value); }
Status Variant::getBooleanValue(bool& value) const { return getScalar(TypeBoolean, value); }
Status Variant::getStringValue(SharedPointer<CharacterData>& value) const {
  return getHandle(TypeString, value);
}
Status Variant::getGenericObjectValue(SharedPointer<GenericObject>& value) const {
  return getHandle(TypeGenericObject, value);
}
Status Variant::getObjectValue(SharedPointer<ObjectBase>& value) const {
  return getHandle(TypeObject, value);
}
Status Variant::getCollectionValue(SharedPointer<ValueCollection>& value) const {
  return getHandle(TypeCollection, value);
}

InternalVariant::~InternalVariant() = default;

}  // namespace trelvo::gom
