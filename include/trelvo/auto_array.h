#pragma once

#include <trelvo/Export.h>

namespace trelvo {

/// Carries a block from one owner to the next by value; deletes nothing itself.
template <class T>
struct auto_array_proxy {
  T* pointer = nullptr;   ///< The block, made by array new, or null.
  unsigned int size = 0;  ///< Its elements.
};

/// Sole owner of a block made by array new.
///
/// It moves and never copies: by C++ moves, and by value through an auto_array_proxy, to which an
/// owner converts and from which the next one is made.
template <class T>
class auto_array {
 public:
  auto_array() noexcept = default;

  /// Takes over `block`, which holds `size` elements.
  auto_array(T* block, unsigned int size) noexcept : m_pointer(block), m_size(size) {}

  /// Takes over the carried block.
  auto_array(auto_array_proxy<T> proxy) noexcept  // NOLINT(google-explicit-constructor)
      : m_pointer(proxy.pointer), m_size(proxy.size) {}

  /// Takes over the block and leaves `other` empty.
  auto_array(auto_array&& other) noexcept : auto_array(other.handOut()) {}
  /// Deletes the old block, takes over the other's and leaves `other` empty.
  auto_array& operator=(auto_array&& other) noexcept {
    if (this != &other) {
      *this = other.handOut();
    }
    return *this;
  }
  auto_array(const auto_array&) = delete;
  auto_array& operator=(const auto_array&) = delete;

  ~auto_array() { delete[] m_pointer; }

  /// Deletes the old block and takes over the proxy's.
  auto_array& operator=(auto_array_proxy<T> proxy) noexcept {
    if (m_pointer != proxy.pointer) {
      delete[] m_pointer;
    }
    m_pointer = proxy.pointer;
    m_size = proxy.size;
    return *this;
  }

  /// Hands the block out and leaves this owner empty.
  operator auto_array_proxy<T>() noexcept { return handOut(); }  // NOLINT

  /// The block, or null.
  T* get() const noexcept { return m_pointer; }
  /// The elements of the block.
  unsigned int size() const noexcept { return m_size; }

  /// Deletes the block when there is one; then null and size 0.
  void reset() noexcept { *this = auto_array_proxy<T>(); }

 private:
  auto_array_proxy<T> handOut() noexcept {
    const auto_array_proxy<T> proxy{m_pointer, m_size};
    m_pointer = nullptr;
    m_size = 0;
    return proxy;
  }

  T* m_pointer = nullptr;
  unsigned int m_size = 0;
};

}  // namespace trelvo
