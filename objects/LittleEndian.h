#pragma once

#include <algorithm>
#include <cstring>
#include <type_traits>

namespace trelvo {

/// Whether this processor's memory images already have the wire's byte order.
inline constexpr bool kHostIsLittleEndian = __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__;

/// Turns `size` bytes between host and wire order, in place.
inline void swapWireOrder(unsigned char* image, unsigned int size) noexcept {
  if constexpr (!kHostIsLittleEndian) {
    std::reverse(image, image + size);
  }
}

/// Stores `value`, least significant byte first. @return behind its last byte.
template <class T>
inline unsigned char* storeWire(unsigned char* to, T value) noexcept {
  static_assert(std::is_arithmetic_v<T> || std::is_enum_v<T>);
  std::memcpy(to, &value, sizeof(T));
  swapWireOrder(to, sizeof(T));
  return to + sizeof(T);
}

/// Loads a value stored least significant byte first.
template <class T>
inline T loadWire(const unsigned char* from) noexcept {
  static_assert((std::is_arithmetic_v<T> || std::is_enum_v<T>)&&!std::is_same_v<T, bool>);
  unsigned char image[sizeof(T)];
  // NOLINTNEXTLINE(clang-analyzer-core.NonNullParamChecker): it does not see that bytes are left
  std::memcpy(image, from, sizeof(T));
  swapWireOrder(image, sizeof(T));
  T value;
  std::memcpy(&value, image, sizeof(T));
  return value;
}

}  // namespace trelvo
