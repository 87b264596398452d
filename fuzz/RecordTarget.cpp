// The readers of flat records. The first byte picks the class; what follows is the record.

#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/ObjectBaseFactory.h>

#include "fuzz/WireTarget.h"

namespace trelvo::fuzz {

namespace {

using gom::ObjectBase;
using Handle = gom::SharedPointer<ObjectBase>;

constexpr unsigned int kFirstClass = 100;
constexpr unsigned int kClasses = 36;

void checkRecord(const Handle& record) {
  const Handle clone(record->clone());
  require(clone && writtenForm(*clone) == writtenForm(*record), "a clone is written alike");
  require(record->compare(clone.get()) == clone->compare(record.get()), "equality goes both ways");
  clone->unset(record->values());
  require(clone->values() == 0, "all fields can be unset");
  writtenForm(*clone);
}

/// What a failed read leaves can be emptied, and is then like a new record.
void checkRefused(const Handle& record) {
  record->unset(record->values());
  require(record->values() == 0, "all fields can be unset after a failure");
}

}  // namespace

void run(const Bytes& bytes) {
  if (bytes.empty()) {
    return;
  }
  const auto classId = static_cast<unsigned short>(kFirstClass + bytes.front() % kClasses);
  const auto make = [classId] { return schema::ObjectBaseFactory::createObject(classId); };
  checkReader(Bytes(bytes.begin() + 1, bytes.end()), make, checkRecord, checkRefused);
}

}  // namespace trelvo::fuzz
