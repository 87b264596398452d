#pragma once

#include <typeinfo>

namespace trelvo {

/// Whether two types are the same. Inside the library the addresses nearly always settle it; an
/// equal type from another shared object costs a comparison of names.
inline bool isSameType(const std::type_info& a, const std::type_info& b) noexcept {
  return &a == &b || a == b;
}

/// Whether `object` is of the class `T` and not of one derived from it.
template <class T, class Object>
bool isExactly(const Object& object) noexcept {
  return isSameType(typeid(object), typeid(T));
}

}  // namespace trelvo
