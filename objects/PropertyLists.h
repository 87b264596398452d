#pragma once

#include <trelvo/gom/Collection.h>
#include <trelvo/gom/InternalVariant.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::gom {

/// Where generic objects get their property lists.
///
/// Built with TRELVO_POOL, the list of an object that dies is emptied and kept, with its storage,
/// for the next object of the thread: the storage is the one block of an object that BlockPool
/// cannot serve. Lists beyond the bound, and larger than usual ones, are not kept, and all kept
/// ones go when their thread ends. Without TRELVO_POOL every list is made and dies with its object.
class PropertyLists {
 public:
  PropertyLists() = delete;

  using List = Collection<InternalVariant>;

  /// How many lists a thread keeps at the most.
  static constexpr unsigned int kMaxKept = 262144;
  /// Lists with room for more properties are not kept.
  static constexpr unsigned int kMaxProperties = 8;

  /// An empty list; an empty handle when memory runs out.
  static SharedPointer<List> take() noexcept;
  /// Takes back the list of an object that dies; `list` may be empty.
  static void giveBack(SharedPointer<List>&& list) noexcept;
};

}  // namespace trelvo::gom
