#include "objects/PropertyLists.h"

#include <new>
#include <utility>
#include <vector>

namespace trelvo::gom {

#ifdef TRELVO_POOL

namespace {

using Lists = std::vector<SharedPointer<PropertyLists::List>>;

// Null before the thread gives back its first list, and again when it ends.
__attribute__((tls_model("initial-exec"))) thread_local Lists* gKept = nullptr;

struct Keeper {
  Keeper() noexcept { gKept = &lists; }
  ~Keeper() { gKept = nullptr; }
  Lists lists;
};

bool open() noexcept {
  static thread_local Keeper keeper;
  return gKept != nullptr;
}

void keep(SharedPointer<PropertyLists::List>&& list) noexcept {
  try {
    gKept->push_back(std::move(list));
  } catch (const std::bad_alloc&) {
    list.clear();  // it goes like any other
  }
}

}  // namespace

SharedPointer<PropertyLists::List> PropertyLists::take() noexcept {
  if (gKept == nullptr || gKept->empty()) {
    return List::create();
  }
  SharedPointer<List> list = std::move(gKept->back());
  gKept->pop_back();
  return list;
}

void PropertyLists::giveBack(SharedPointer<List>&& list) noexcept {
  if (!list || list->referenceCount() != 1 || list->items.capacity() > kMaxProperties) {
    return list.clear();
  }
  list->items.clear();
  if ((gKept != nullptr || open()) && gKept->size() < kMaxKept) {
    return keep(std::move(list));
  }
  list.clear();
}

#else

SharedPointer<PropertyLists::List> PropertyLists::take() noexcept { return List::create(); }

void PropertyLists::giveBack(SharedPointer<List>&& list) noexcept { list.clear(); }

#endif

}  // namespace trelvo::gom
