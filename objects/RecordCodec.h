#pragma once

#include <typeinfo>

#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo {

class WireReader;
class WireWriter;

namespace gom {

/// The wire form of one class of flat records, without its class id. Serves exactly that class: a
/// derived one goes through its virtual functions.
struct RecordCodec {
  const std::type_info* type;
  SharedPointer<ObjectBase> (*create)();
  bool (*write)(const ObjectBase& record, WireWriter& writer);
  bool (*size)(const ObjectBase& record, unsigned long long& total);
  bool (*read)(ObjectBase& record, WireReader& reader);
};

/// The codec of a class id, or null for one out of range or without a wire form. The schema defines
/// it, beside its factory.
const RecordCodec* findRecordCodec(unsigned short classId) noexcept;

}  // namespace gom
}  // namespace trelvo
