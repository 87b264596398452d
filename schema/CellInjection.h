#pragma once

// What the public classes of the cell injections have in common. Each holds a handle of its
// implementation, the wrapper that all technologies share as a template.

#include <trelvo/Status.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/gom/ValueCollection.h>
#include <trelvo/schema/InternalUtility.h>

#include "objects/MakeObject.h"
#include "schema/PropertyKeys.h"
#include "schema/WrapperFactory.h"

namespace trelvo::schema {

struct CellInjection {
  template <class T>
  using Handle = gom::SharedPointer<T>;

  /// A public object on `implementation`; an empty handle when that is empty or memory runs out.
  template <class Public, class Implementation>
  static Handle<Public> publish(const Handle<Implementation>& implementation) {
    return implementation ? gom::makeObject<Public>(implementation) : Handle<Public>();
  }

  /// A public object on a new implementation with these properties.
  template <class Public, class Implementation, class... Properties>
  static Handle<Public> create(const Properties&... properties) {
    const Handle<Implementation> made = gom::makeObject<Implementation>();
    return made && made->baseCreate(properties...) ? publish<Public>(made) : Handle<Public>();
  }

  /// A new implementation over the object of `other`. Out of memory it is empty, or without an
  /// object.
  template <class Traits, class Implementation>
  static Handle<Implementation> share(const Handle<Implementation>& other) {
    Handle<Implementation> made = gom::makeObject<Implementation>();
    if (made) {
      WrapperFactory::rewrap(*made, Traits::kObjectKey, object(other));
    }
    return made;
  }

  /// The implementation, or one that wraps nothing where an assignment ran out of memory.
  template <class Implementation>
  static Implementation& target(const Handle<Implementation>& implementation) {
    static Implementation nothing;
    return implementation ? *implementation : nothing;
  }

  template <class Implementation>
  static Handle<gom::GenericObject> object(const Handle<Implementation>& implementation) {
    return target(implementation).wrappedObject();
  }

  template <class Implementation>
  static unsigned int number(const Handle<Implementation>& implementation, unsigned short key) {
    unsigned int value = 0;
    if (const Handle<gom::GenericObject> wrapped = object(implementation)) {
      wrapped->getUint32Property(key, value);
    }
    return value;
  }

  template <class Implementation>
  static Status setNumber(const Handle<Implementation>& implementation, unsigned short key,
                          unsigned int value) {
    const Handle<gom::GenericObject> wrapped = object(implementation);
    return wrapped ? wrapped->setUint32Property(key, value) : StatusFailed;
  }

  template <class Implementation>
  static Status setObject(const Handle<Implementation>& implementation, unsigned short key,
                          const Handle<gom::ObjectBase>& value) {
    const Handle<gom::GenericObject> wrapped = object(implementation);
    return wrapped ? wrapped->setObjectProperty(key, value) : StatusFailed;
  }

  template <class Implementation>
  static Handle<gom::ValueCollection> neighbors(const Handle<Implementation>& implementation) {
    Handle<gom::ValueCollection> list;
    if (const Handle<gom::GenericObject> wrapped = object(implementation)) {
      wrapped->getCollectionProperty(kNeighborCellInjectionCollection, list);
    }
    return list;
  }

  template <class Implementation>
  static Status setNeighbors(const Handle<Implementation>& implementation,
                             const Handle<gom::ValueCollection>& list) {
    const Handle<gom::GenericObject> wrapped = object(implementation);
    return wrapped ? wrapped->setCollectionProperty(kNeighborCellInjectionCollection, list)
                   : StatusFailed;
  }

  template <class Traits, class Implementation>
  static Status addNeighbor(const Handle<Implementation>& implementation,
                            const Handle<gom::GenericObject>& neighbor) {
    if (!neighbor || neighbor->key() != Traits::kNeighborObjectKey) {
      return StatusWrongState;
    }
    Handle<gom::GenericObject> wrapped = object(implementation);
    return wrapped ? InternalUtility::addGenericObjectToCollection(
                         wrapped, kNeighborCellInjectionCollection, neighbor)
                   : StatusFailed;
  }
};

}  // namespace trelvo::schema
