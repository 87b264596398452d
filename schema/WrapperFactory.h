#pragma once

#include <utility>

#include <trelvo/GenericObjectWrapper.h>
#include <trelvo/Status.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>

#include "objects/MakeObject.h"

namespace trelvo::schema {

/// How the composite classes are made. Each of them declares it a friend.
struct WrapperFactory {
  /// A `T` over a new object with that key; an empty handle when memory runs out.
  template <class T>
  static gom::SharedPointer<T> createWrapper(unsigned short objectKey) {
    gom::SharedPointer<T> wrapper = gom::makeObject<T>();
    const bool whole = wrapper && wrapper->construct(objectKey);
    return gom::onlyIf(whole, std::move(wrapper));
  }

  /// A `T` that shares `object`; an empty handle when that is empty or has another key.
  template <class T>
  static gom::SharedPointer<T> wrapObject(const gom::SharedPointer<gom::GenericObject>& object,
                                          unsigned short objectKey) {
    if (!object || object->key() != objectKey) {
      return {};
    }
    gom::SharedPointer<T> wrapper = gom::makeObject<T>();
    if (wrapper) {
      wrapper->construct(object);
    }
    return wrapper;
  }

  /// Makes `wrapper` show `object`, by way of a new object with that key; without memory for that
  /// one it shows nothing.
  template <class T>
  static void rewrap(T& wrapper, unsigned short objectKey,
                     const gom::SharedPointer<gom::GenericObject>& object) {
    if (wrapper.construct(objectKey)) {
      wrapper.construct(object);
    }
  }
};

/// Sets a property to a flat record of any class; an empty handle gives StatusWrongState. Throws
/// StatusFailed when `wrapper` has no object.
inline Status setRecordProperty(GenericObjectWrapper& wrapper, unsigned short key,
                                const gom::SharedPointer<gom::ObjectBase>& record,
                                const char* name) {
  return wrapper.setProperty(key, record, name);
}

/// The property, or 0 or an empty handle when it is absent or of another type, or `wrapper` has no
/// object. Never throws.
template <class T>
T propertyOrDefault(const GenericObjectWrapper& wrapper, unsigned short key, const char* name) {
  T value{};
  if (wrapper.wrappedObject()) {
    wrapper.getProperty(key, value, name);
  }
  return value;
}

}  // namespace trelvo::schema
