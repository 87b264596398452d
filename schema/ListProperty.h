#pragma once

#include <trelvo/Status.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/gom/ValueCollection.h>
#include <trelvo/schema/InternalUtility.h>

#include "objects/PropertyTable.h"
#include "schema/WrapperFactory.h"

namespace trelvo::schema {

/// A property that is a list of generic objects: its bit, its key, and the object key that a member
/// must have.
template <unsigned int bit, unsigned short key, unsigned short objectKey>
struct ListProperty : Property<bit, key> {
  static constexpr unsigned short kKey = key;
  static constexpr unsigned short kObjectKey = objectKey;
};

/// Appends `member` to the list at `propertyKey` of `object`; StatusWrongState when it is empty or
/// has another key than `objectKey`.
inline Status addMember(gom::SharedPointer<gom::GenericObject>& object,
                        const gom::SharedPointer<gom::GenericObject>& member,
                        unsigned short objectKey, unsigned short propertyKey) {
  if (!member || member->key() != objectKey) {
    return StatusWrongState;
  }
  return InternalUtility::addGenericObjectToCollection(object, propertyKey, member);
}

/// The list at `propertyKey`; empty when it is absent or of another type.
inline gom::SharedPointer<gom::ValueCollection> listProperty(const GenericObjectWrapper& wrapper,
                                                             unsigned short propertyKey) {
  return propertyOrDefault<gom::SharedPointer<gom::ValueCollection>>(wrapper, propertyKey,
                                                                     "collection");
}

}  // namespace trelvo::schema
