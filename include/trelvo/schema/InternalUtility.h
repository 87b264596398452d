#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/gom/ValueCollection.h>

namespace trelvo::schema {

/// Adds to list properties of a generic object. Elements get the key 0: the key is the list's.
class TRELVO_EXPORT InternalUtility {
 public:
  InternalUtility() = delete;

  /// The list at `key`, made and stored when the property is absent; `created` says whether it was.
  /// @return StatusOk; StatusWrongState for a property of another type or an empty `object`;
  ///         StatusOutOfMemory.
  static Status getCollection(gom::SharedPointer<gom::GenericObject>& object, unsigned short key,
                              gom::SharedPointer<gom::ValueCollection>& collection, bool& created);

  /// Appends `value` to the list at `key`, sharing it. On failure nothing changes: a list made for
  /// it is taken out again.
  /// @return StatusOk; StatusWrongState for an empty handle or a property of another type;
  ///         StatusOutOfMemory.
  static Status addGenericObjectToCollection(gom::SharedPointer<gom::GenericObject>& object,
                                             unsigned short key,
                                             const gom::SharedPointer<gom::GenericObject>& value);

  /// The same for a flat record.
  static Status addObjectBaseToCollection(gom::SharedPointer<gom::GenericObject>& object,
                                          unsigned short key,
                                          const gom::SharedPointer<gom::ObjectBase>& value);
};

}  // namespace trelvo::schema
