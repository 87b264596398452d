#pragma once

#include <new>
#include <utility>

#include <trelvo/Status.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::gom {

/// A new `T`, or an empty handle when memory runs out for it or for what its constructor makes.
template <class T, class... Arguments>
SharedPointer<T> makeObject(Arguments&&... arguments) {
  try {
    return SharedPointer<T>(new (std::nothrow) T(std::forward<Arguments>(arguments)...));
  } catch (const std::bad_alloc&) {
    return {};
  }
}

/// A copy of `*other` that shares its nested objects; empty for an empty handle too.
template <class T>
SharedPointer<T> copyObject(const SharedPointer<T>& other) {
  return other ? makeObject<T>(*other) : SharedPointer<T>();
}

/// `handle` when `condition` holds, else an empty handle. Moves what it is given, which spares the
/// counting of a copy.
template <class T>
SharedPointer<T> onlyIf(bool condition, SharedPointer<T> handle) {
  if (!condition) {
    handle.clear();
  }
  return handle;
}

/// `handle` when `status` is StatusOk, else an empty handle: how a factory ends whose setters may
/// refuse a value.
template <class T>
SharedPointer<T> unlessFailed(Status status, const SharedPointer<T>& handle) {
  return status == StatusOk ? handle : SharedPointer<T>();
}

}  // namespace trelvo::gom
