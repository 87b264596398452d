#pragma once

#include <trelvo/Status.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/Injection.h>
#include <trelvo/schema/MeasurementContainer.h>

#include <new>

namespace trelvo::tool {

/// Where the containers of an import go: measurement containers and injections.
class ImportTarget {
 public:
  virtual ~ImportTarget() = default;

  /// Gives `container`, a MeasurementContainer or an Injection, the next measurement id, from 1,
  /// and hands it on. Throws Failure or ReaderGone when it cannot be taken.
  template <class Container>
  void put(Container& container) {
    container.setMeasurementId(static_cast<unsigned int>(++m_count));
    take(container);
  }

  /// Containers taken so far.
  unsigned long long count() const { return m_count; }

 private:
  virtual void take(const schema::MeasurementContainer& container) = 0;
  virtual void take(const schema::Injection& injection) = 0;

  unsigned long long m_count = 0;
};

/// Throws when a setter, of which the arguments are known to be good, ran out of memory.
inline void expectStored(Status status) {
  if (status != StatusOk) {
    throw std::bad_alloc();
  }
}

/// `handle`, of which a factory says that it is empty only when memory ran out; throws then.
template <class T>
gom::SharedPointer<T> made(gom::SharedPointer<T> handle) {
  if (!handle) {
    throw std::bad_alloc();
  }
  return handle;
}

}  // namespace trelvo::tool
