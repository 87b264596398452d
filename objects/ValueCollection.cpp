#include <trelvo/gom/ValueCollection.h>

#include <algorithm>
#include <memory>

#include "objects/MakeObject.h"
#include "objects/WireCodec.h"

namespace trelvo::gom {

namespace {

bool sameElement(const Variant* a, const Variant* b) {
  return a != nullptr && b != nullptr ? *a == *b : a == b;
}

}  // namespace

ValueCollection::ValueCollection() = default;

ValueCollection::~ValueCollection() {
  for (const Variant* const item : items) {
    delete item;
  }
}

SharedPointer<ValueCollection> ValueCollection::create() { return makeObject<ValueCollection>(); }

SharedPointer<ValueCollection> ValueCollection::create(const ValueCollection& source) {
  SharedPointer<ValueCollection> list = create();
  if (!list || source.items.empty()) {
    return list;
  }
  // The first variant goes over to the new list, which dies here with it. The source is left a null
  // in its place, so that nothing is deleted twice.
  auto& first = const_cast<ValueCollection&>(source).items.front();
  if (list->add(first) == StatusOk) {
    first = nullptr;
  }
  return {};
}

SharedPointer<ValueCollection> ValueCollection::clone() const {
  SharedPointer<ValueCollection> list = create();
  if (!list) {
    return {};
  }
  for (const Variant* const item : items) {
    std::unique_ptr<Variant> copy(item != nullptr ? item->clone() : nullptr);
    if (!copy || list->add(copy.get()) != StatusOk) {
      return {};
    }
    static_cast<void>(copy.release());
  }
  return list;
}

bool ValueCollection::write(IStream& stream) const { return WireCodec::writeTo(*this, stream); }
bool ValueCollection::read(IStream& stream) { return WireCodec::readFrom(*this, stream); }

void ValueCollection::dump() const {
  for (const Variant* const item : items) {
    if (item != nullptr) {
      item->dump();
    }
  }
}

bool ValueCollection::operator==(const ValueCollection& other) const {
  return std::equal(items.begin(), items.end(), other.items.begin(), other.items.end(),
                    sameElement);
}

}  // namespace trelvo::gom
