#pragma once

#include <cstring>

#include <trelvo/gom/ReferenceCountable.h>
#include <trelvo/gom/Variant.h>

namespace trelvo::gom {

/// The payload bytes of a scalar type; 0 for every other tag.
inline unsigned int scalarWidth(unsigned short type) noexcept {
  static constexpr unsigned char kWidths[] = {0, 1, 1, 2, 2, 4, 4, 8, 8, 4, 8, 1};
  return type < sizeof kWidths ? kWidths[type] : 0;
}

// The value's bytes stand at the start of m_value, so that a scalar's place does not depend on the
// byte order of the processor.
template <class T>
T Variant::load() const noexcept {
  T value;
  std::memcpy(&value, &m_value, sizeof(T));
  return value;
}

template <>
inline bool Variant::load<bool>() const noexcept {
  return load<unsigned char>() != 0;
}

template <class T>
void Variant::store(T value) noexcept {
  static_assert(sizeof(T) <= sizeof m_value);
  std::memcpy(&m_value, &value, sizeof(T));
}

// Whatever the tag, a handle is kept as its counted base, which is all that counting needs.
template <class T>
T* Variant::target() const noexcept {
  return static_cast<T*>(load<ReferenceCountable*>());
}

inline void Variant::pinTarget() const noexcept {
  if (holdsHandle() && m_value != 0) {
    load<ReferenceCountable*>()->increment();
  }
}

inline void Variant::dropTarget() noexcept {
  if (holdsHandle() && m_value != 0) {
    load<ReferenceCountable*>()->decrement();
    m_value = 0;
  }
}

template <class T>
void Variant::adopt(Type type, T* value) noexcept {
  value->increment();
  dropTarget();
  m_type = type;
  m_value = 0;
  store<ReferenceCountable*>(value);
}

}  // namespace trelvo::gom
