// The destructors of the interfaces, so that each has its table in one place.

#include <trelvo/ISerializable.h>
#include <trelvo/gom/IValuable.h>

namespace trelvo {

ISerializable::~ISerializable() = default;
gom::IValuable::~IValuable() = default;

}  // namespace trelvo
