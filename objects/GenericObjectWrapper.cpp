#include <trelvo/GenericObjectWrapper.h>

#include <trelvo/gom/ValueCollection.h>

namespace trelvo {

namespace {

using gom::GenericObject;
using gom::SharedPointer;

Status set(GenericObject& object, unsigned short key, int value) {
  return object.setInt32Property(key, value);
}
Status set(GenericObject& object, unsigned short key, unsigned int value) {
  return object.setUint32Property(key, value);
}
Status set(GenericObject& object, unsigned short key, long long value) {
  return object.setInt64Property(key, value);
}
Status set(GenericObject& object, unsigned short key, const SharedPointer<gom::ObjectBase>& value) {
  return object.setObjectProperty(key, value);
}
Status set(GenericObject& object, unsigned short key, const SharedPointer<GenericObject>& value) {
  return object.setGenericObjectProperty(key, value);
}
Status set(GenericObject& object, unsigned short key,
           const SharedPointer<gom::ValueCollection>& value) {
  return object.setCollectionProperty(key, value);
}

Status get(const GenericObject& object, unsigned short key, int& value) {
  return object.getInt32Property(key, value);
}
Status get(const GenericObject& object, unsigned short key, unsigned int& value) {
  return object.getUint32Property(key, value);
}
Status get(const GenericObject& object, unsigned short key, long long& value) {
  return object.getInt64Property(key, value);
}
Status get(const GenericObject& object, unsigned short key, SharedPointer<gom::ObjectBase>& value) {
  return object.getObjectProperty(key, value);
}
Status get(const GenericObject& object, unsigned short key, SharedPointer<GenericObject>& value) {
  return object.getGenericObjectProperty(key, value);
}
Status get(const GenericObject& object, unsigned short key,
           SharedPointer<gom::ValueCollection>& value) {
  return object.getCollectionProperty(key, value);
}

template <class T>
inline constexpr bool kIsHandle = false;
template <class T>
inline constexpr bool kIsHandle<SharedPointer<T>> = true;

}  // namespace

GenericObjectWrapper::~GenericObjectWrapper() = default;

SharedPointer<GenericObject> GenericObjectWrapper::clone() const {
  return m_object ? m_object->clone() : SharedPointer<GenericObject>();
}

void GenericObjectWrapper::dump() const {
  if (m_object) {
    m_object->dump();
  }
}

bool GenericObjectWrapper::valueExists(unsigned int /*mask*/) const { return false; }

bool GenericObjectWrapper::isEmpty() const { return !m_object || m_object->propertyCount() == 0; }

void GenericObjectWrapper::unset(unsigned int /*mask*/) {}

bool GenericObjectWrapper::write(IStream& stream) const {
  return m_object && m_object->write(stream);
}

bool GenericObjectWrapper::read(IStream& stream) { return m_object && m_object->read(stream); }

unsigned short GenericObjectWrapper::key() const noexcept {
  return m_object ? m_object->key() : static_cast<unsigned short>(0);
}

GenericObject& GenericObjectWrapper::object() {
  if (!m_object) {
    throw StatusFailed;
  }
  return *m_object;
}

const GenericObject& GenericObjectWrapper::object() const {
  return const_cast<GenericObjectWrapper*>(this)->object();
}

SharedPointer<GenericObjectWrapper> GenericObjectWrapper::create(unsigned short key) {
  SharedPointer<GenericObjectWrapper> wrapper(new GenericObjectWrapper);
  return wrapper->construct(key) ? wrapper : SharedPointer<GenericObjectWrapper>();
}

SharedPointer<GenericObjectWrapper> GenericObjectWrapper::create(
    const SharedPointer<GenericObject>& object) {
  if (!object) {
    throw StatusInternal;
  }
  SharedPointer<GenericObjectWrapper> wrapper(new GenericObjectWrapper);
  wrapper->construct(object);
  return wrapper;
}

Status GenericObjectWrapper::checkError(Status status, const char* /*action*/,
                                        const char* /*propertyName*/) const noexcept {
  return status;
}

template <class T>
Status GenericObjectWrapper::setProperty(unsigned short key, const T& value, const char* name) {
  return checkError(set(object(), key, value), "set", name);
}

template <class T>
Status GenericObjectWrapper::getProperty(unsigned short key, T& value, const char* name) const {
  const Status status = get(object(), key, value);
  // An optional property may be absent; for handles that is no error.
  if (kIsHandle<T> && (status == StatusOk || status == StatusNotFound)) {
    return status;
  }
  return checkError(status, "get", name);
}

template TRELVO_EXPORT Status GenericObjectWrapper::setProperty(unsigned short, const int&,
                                                                const char*);
template TRELVO_EXPORT Status GenericObjectWrapper::setProperty(unsigned short, const unsigned int&,
                                                                const char*);
template TRELVO_EXPORT Status GenericObjectWrapper::setProperty(unsigned short, const long long&,
                                                                const char*);
template TRELVO_EXPORT Status GenericObjectWrapper::setProperty(
    unsigned short, const SharedPointer<gom::ObjectBase>&, const char*);
template TRELVO_EXPORT Status GenericObjectWrapper::setProperty(unsigned short,
                                                                const SharedPointer<GenericObject>&,
                                                                const char*);
template TRELVO_EXPORT Status GenericObjectWrapper::setProperty(
    unsigned short, const SharedPointer<gom::ValueCollection>&, const char*);
template TRELVO_EXPORT Status GenericObjectWrapper::getProperty(unsigned short, int&,
                                                                const char*) const;
template TRELVO_EXPORT Status GenericObjectWrapper::getProperty(unsigned short, unsigned int&,
                                                                const char*) const;
template TRELVO_EXPORT Status GenericObjectWrapper::getProperty(unsigned short, long long&,
                                                                const char*) const;
template TRELVO_EXPORT Status GenericObjectWrapper::getProperty(unsigned short,
                                                                SharedPointer<gom::ObjectBase>&,
                                                                const char*) const;
template TRELVO_EXPORT Status GenericObjectWrapper::getProperty(unsigned short,
                                                                SharedPointer<GenericObject>&,
                                                                const char*) const;
template TRELVO_EXPORT Status GenericObjectWrapper::getProperty(
    unsigned short, SharedPointer<gom::ValueCollection>&, const char*) const;

bool GenericObjectWrapper::construct(unsigned short key) {
  m_object = GenericObject::create(key);
  return static_cast<bool>(m_object);
}

void GenericObjectWrapper::construct(const SharedPointer<GenericObject>& object) {
  m_object = object;
}

SharedPointer<gom::ObjectBase> GenericObjectWrapper::recordProperty(
    unsigned short key) const noexcept {
  SharedPointer<gom::ObjectBase> record;
  if (m_object) {
    m_object->getObjectProperty(key, record);
  }
  return record;
}

}  // namespace trelvo
