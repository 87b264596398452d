// The reader of generic objects, and with it those of values, strings, lists and records.

#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/gom/Variant.h>

#include "fuzz/WireTarget.h"

namespace trelvo::fuzz {

namespace {

using gom::GenericObject;
using Handle = gom::SharedPointer<GenericObject>;

constexpr unsigned short kKey = 0x7A7A;

/// An object with one property, which a reader that fails has to leave alone.
Handle makeObject() {
  Handle object = GenericObject::create(kKey);
  require(object->setUint8Property(1, 1) == StatusOk, "a property can be set");
  return object;
}

/// Each property can be had by its key and as what it is.
void walk(GenericObject& object) {
  unsigned int count = 0;
  unsigned short key = 0;
  for (bool more = object.getFirstKey(key); more; more = object.getNextKey(key)) {
    ++count;
    gom::Variant value;
    require(object.propertyExists(key), "a key that the walk gives exists");
    require(object.getProperty(key, value) == StatusOk, "a key that the walk gives has a value");
  }
  require(count == object.propertyCount(), "the walk goes over all properties");
}

void checkObject(const Handle& object) {
  walk(*object);
  const Handle clone = object->clone();
  require(clone && writtenForm(*clone) == writtenForm(*object), "a clone is written alike");
}

void checkRefused(const Handle& object) {
  require(object->key() == kKey && object->propertyCount() == 1, "a failure changes nothing");
}

}  // namespace

void run(const Bytes& bytes) { checkReader(bytes, makeObject, checkObject, checkRefused); }

}  // namespace trelvo::fuzz
