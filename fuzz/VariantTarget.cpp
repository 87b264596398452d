// The reader of values, on a blank one and on one that held a string.

#include <trelvo/gom/CharacterData.h>
#include <trelvo/gom/Variant.h>

#include <memory>

#include "fuzz/WireTarget.h"

namespace trelvo::fuzz {

namespace {

using gom::Variant;
using Handle = std::unique_ptr<Variant>;

Handle makeBlank() { return Handle(Variant::create()); }

Handle makeString() {
  Handle variant = makeBlank();
  const auto text = gom::CharacterData::create("before", 6);
  require(variant->setStringValue(text) == StatusOk, "a blank value takes a string");
  return variant;
}

void checkValue(const Handle& variant) {
  const Handle clone(variant->clone());
  require(clone && writtenForm(*clone) == writtenForm(*variant), "a clone is written alike");
  Variant copy(*variant);
  require(writtenForm(copy) == writtenForm(*variant), "a copy is written alike");
  const Variant moved(std::move(copy));
  require(writtenForm(moved) == writtenForm(*variant), "what was moved is written alike");
}

/// A failed read may leave a value that has a type and nothing else, of which there is no clone.
void checkRefused(const Handle& variant) {
  const Handle clone(variant->clone());
  require(!clone || clone->dataType() == variant->dataType(), "a clone is of the same type");
}

}  // namespace

void run(const Bytes& bytes) {
  const bool blank = bytes.empty() || bytes.front() % 2 == 0;
  checkReader(bytes, blank ? makeBlank : makeString, checkValue, checkRefused);
}

}  // namespace trelvo::fuzz
