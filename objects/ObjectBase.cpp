#include <trelvo/gom/ObjectBase.h>

#include <trelvo/IStream.h>
#include <trelvo/gom/GenericObject.h>

namespace trelvo::gom {

ObjectBase::ObjectBase(unsigned short key) : m_key(key) {}
ObjectBase::ObjectBase(const ObjectBase& other) = default;
ObjectBase::~ObjectBase() = default;

void ObjectBase::dump() const {}

bool ObjectBase::valueExists(unsigned int mask) const {
  return mask != 0 && (m_values & mask) == mask;
}

bool ObjectBase::isEmpty() const {
  return m_values == 0 && (!m_extension || m_extension->propertyCount() == 0);
}

void ObjectBase::unset(unsigned int mask) { valueUnset(mask); }

bool ObjectBase::write(IStream& /*stream*/) const { throw StatusInternal; }
bool ObjectBase::read(IStream& /*stream*/) { throw StatusInternal; }

ObjectBase& ObjectBase::operator=(const ObjectBase& other) {
  if (this != &other) {
    m_key = other.m_key;
    m_extension = other.m_extension;
    m_values = other.m_values;
  }
  return *this;
}

Status ObjectBase::copy(const ObjectBase& other) {
  *this = other;
  if (!other.m_extension) {
    return StatusOk;
  }
  m_extension = GenericObject::create(other.m_extension);
  return m_extension ? StatusOk : StatusOutOfMemory;
}

Status ObjectBase::cloneFrom(const ObjectBase& other) {
  m_values = 0;
  const SharedPointer<GenericObject> source = other.m_extension;
  m_extension.clear();
  if (source) {
    m_extension = source->clone();
    if (!m_extension) {
      return StatusOutOfMemory;
    }
  }
  m_key = other.m_key;
  m_values = other.m_values;
  return StatusOk;
}

bool ObjectBase::operator==(const ObjectBase& other) const {
  if (m_key != other.m_key || m_values != other.m_values) {
    return false;
  }
  if (!m_extension || !other.m_extension) {
    return !m_extension && !other.m_extension;
  }
  return *m_extension == *other.m_extension;
}

GenericObject* ObjectBase::extension() {
  if (!m_extension) {
    m_extension = GenericObject::create(m_key);
  }
  return m_extension.get();
}

void ObjectBase::deleteExtension() { m_extension.clear(); }

bool ObjectBase::writeValueMask8(IStream& stream, unsigned int /*allBits*/) const {
  return stream.writeUint8(static_cast<unsigned char>(m_values));
}

bool ObjectBase::readValueMask8(IStream& stream, unsigned int limit) {
  unsigned char mask = 0;
  if (!stream.readUint8(mask) || mask > limit) {
    return false;
  }
  m_values = mask;
  return true;
}

}  // namespace trelvo::gom
