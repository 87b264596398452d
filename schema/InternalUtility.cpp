#include <trelvo/schema/InternalUtility.h>

#include <cstddef>
#include <memory>
#include <new>

namespace trelvo::schema {

namespace {

// Most lists of neighbours and cells end with as many members.
constexpr std::size_t kUsualMembers = 8;

// An empty list with room for the usual members; an empty handle when memory runs out.
gom::SharedPointer<gom::ValueCollection> makeList() {
  gom::SharedPointer<gom::ValueCollection> list = gom::ValueCollection::create();
  try {
    if (list) {
      list->items.reserve(kUsualMembers);
    }
    return list;
  } catch (const std::bad_alloc&) {
    return {};
  }
}

// Appends an element of key 0 with `value` in it. The collection owns the element from then on.
template <class T>
Status append(gom::ValueCollection& collection, const gom::SharedPointer<T>& value,
              Status (gom::Variant::*set)(const gom::SharedPointer<T>&)) {
  std::unique_ptr<gom::Variant> element(gom::Variant::create());
  if (!element) {
    return StatusOutOfMemory;
  }
  Status status = ((*element).*set)(value);
  if (status == StatusOk) {
    status = collection.add(element.get());
  }
  if (status == StatusOk) {
    static_cast<void>(element.release());
  }
  return status;
}

template <class T>
Status addToCollection(gom::SharedPointer<gom::GenericObject>& object, unsigned short key,
                       const gom::SharedPointer<T>& value,
                       Status (gom::Variant::*set)(const gom::SharedPointer<T>&)) {
  gom::SharedPointer<gom::ValueCollection> collection;
  bool created = false;
  Status status = InternalUtility::getCollection(object, key, collection, created);
  if (status != StatusOk) {
    return status;
  }
  status = append(*collection, value, set);
  if (status != StatusOk && created) {
    object->removeProperty(key);
  }
  return status;
}

}  // namespace

Status InternalUtility::getCollection(gom::SharedPointer<gom::GenericObject>& object,
                                      unsigned short key,
                                      gom::SharedPointer<gom::ValueCollection>& collection,
                                      bool& created) {
  created = false;
  if (!object) {
    return StatusWrongState;
  }
  const Status present = object->getCollectionProperty(key, collection);
  if (present != StatusNotFound) {
    // A list that failed to read or to clone stands in its variant as an empty handle.
    return present == StatusOk && !collection ? StatusWrongState : present;
  }
  gom::SharedPointer<gom::ValueCollection> made = makeList();
  if (!made) {
    return StatusOutOfMemory;
  }
  const Status status = object->setCollectionProperty(key, made);
  created = status == StatusOk;
  if (created) {
    collection = made;
  }
  return status;
}

Status InternalUtility::addGenericObjectToCollection(
    gom::SharedPointer<gom::GenericObject>& object, unsigned short key,
    const gom::SharedPointer<gom::GenericObject>& value) {
  return addToCollection(object, key, value, &gom::Variant::setGenericObjectValue);
}

Status InternalUtility::addObjectBaseToCollection(
    gom::SharedPointer<gom::GenericObject>& object, unsigned short key,
    const gom::SharedPointer<gom::ObjectBase>& value) {
  return addToCollection(object, key, value, &gom::Variant::setObjectValue);
}

}  // namespace trelvo::schema
