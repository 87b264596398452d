#include <trelvo/Midpoint.h>

#include <trelvo/schema/Utility.h>

namespace trelvo {

double Midpoint::distance(const Midpoint& other) const noexcept {
  double metres = 0.0;
  const bool known = schema::Utility::distance(latitude(), longitude(), other.latitude(),
                                               other.longitude(), metres);
  return known ? metres : 0.0;
}

}  // namespace trelvo
