#pragma once

#include <typeinfo>

namespace trelvo {

/// Whether two types of different addresses are the same all the same: an equal type from another
/// shared object. Kept out of the callers' way, whose types the addresses nearly always settle.
[[gnu::noinline, gnu::cold]] inline bool isSameTypeElsewhere(const std::type_info& a,
                                                             const std::type_info& b) noexcept {
  return a == b;
}

/// Whether two types are the same.
inline bool isSameType(const std::type_info& a, const std::type_info& b) noexcept {
  return __builtin_expect(&a == &b, true) || isSameTypeElsewhere(a, b);
}

/// Whether `object` is of the class `T` and not of one derived from it.
template <class T, class Object>
bool isExactly(const Object& object) noexcept {
  return isSameType(typeid(object), typeid(T));
}

}  // namespace trelvo
