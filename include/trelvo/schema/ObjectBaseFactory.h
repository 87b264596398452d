#pragma once

#include <trelvo/Export.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::schema {

/// Makes flat records by class id; this is how a Variant reads one from a stream.
class TRELVO_EXPORT ObjectBaseFactory {
 public:
  ObjectBaseFactory() = delete;

  /// A new record of the class with that id, with no field set; empty when memory runs out.
  /// Serves 100 to 135; any other id, schema::Wlan's 136 among them, throws StatusInternal.
  [[nodiscard]] static gom::SharedPointer<gom::ObjectBase> createObject(unsigned short classId);
};

}  // namespace trelvo::schema
