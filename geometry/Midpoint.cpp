#include <trelvo/Midpoint.h>

#include <trelvo/schema/Utility.h>

namespace trelvo {

double Midpoint::distance(const Midpoint& other) const noexcept {
  double metres = 0.0;
  static_cast<void>(schema::Utility::distance(latitude(), longitude(), other.latitude(),
                                              other.longitude(), metres));
  return metres;
}

}  // namespace trelvo
