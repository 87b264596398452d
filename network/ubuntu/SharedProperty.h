#pragma once

#include <atomic>
#include <set>

#include <core/property.h>

namespace trelvo::network {

/// A property that one thread sets and any thread reads.
///
/// get() gives a reference, so a value once shown has to stay what it is: each value that occurs is
/// kept, once, and get() points at the present one. There are few in the life of a service. No lock
/// is held while the slots of a change are called, so a slot may wait for a thread that is in
/// get().
template <class T>
class SharedProperty : public ::core::Property<T> {
 public:
  SharedProperty() : m_present(&*m_values.insert(T{}).first) {}

  /// Only ever on one thread. The value can be read before the slots are called.
  void set(const T& news) override {
    m_present.store(&*m_values.insert(news).first, std::memory_order_release);
    ::core::Property<T>::set(news);
  }

  const T& get() const override { return *m_present.load(std::memory_order_acquire); }

 private:
  std::set<T> m_values;
  std::atomic<const T*> m_present;
};

}  // namespace trelvo::network
