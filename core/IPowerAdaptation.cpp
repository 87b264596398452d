#include <trelvo/IPowerAdaptation.h>

namespace trelvo {

IPowerAdaptation::~IPowerAdaptation() = default;

}  // namespace trelvo
