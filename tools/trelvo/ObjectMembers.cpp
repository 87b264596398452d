#include "tools/trelvo/ObjectMembers.h"

#include <trelvo/gom/ValueCollection.h>
#include <trelvo/schema/MeasurementContainer.h>

namespace trelvo::tool {

using gom::GenericObject;
using gom::SharedPointer;
using Take = std::function<void(const SharedPointer<GenericObject>&)>;

namespace {

void walkProperty(const GenericObject& object, unsigned short key, const Take& take) {
  SharedPointer<GenericObject> inner;
  SharedPointer<gom::ValueCollection> list;
  if (object.getGenericObjectProperty(key, inner) == StatusOk) {
    forEachObject(inner, take);
  } else if (object.getCollectionProperty(key, list) == StatusOk && list) {
    for (unsigned int i = 0; i < list->count(); ++i) {
      forEachObject(schema::MeasurementContainer::collectionItem(list, i), take);
    }
  }
}

}  // namespace

void forEachObject(const SharedPointer<GenericObject>& object, const Take& take) {
  if (!object) {
    return;
  }
  take(object);
  unsigned short key = 0;
  for (bool any = object->getFirstKey(key); any; any = object->getNextKey(key)) {
    walkProperty(*object, key, take);
  }
}

}  // namespace trelvo::tool
