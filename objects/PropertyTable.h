#pragma once

// The one mechanism behind valueExists() and unset() of the composite classes. A class declares
// `struct Properties;` privately and, in its source, states once which bit stands for which
// property:
//
//   struct WlanMeasurement::Properties : PropertyTable<
//       Property<0x1, 200>,   // dn
//       Property<0x2, 205>> {};  // timeStamp
//
// No mask is kept: a bit stands for the existence of the property.

#include <trelvo/gom/GenericObject.h>

namespace trelvo {

/// One property: its bit and its key.
template <unsigned int bit, unsigned short key>
struct Property {
  static constexpr unsigned int kBit = bit;

  static bool exists(const gom::GenericObject* object, unsigned int mask) {
    return (mask & bit) == 0 || (object != nullptr && object->propertyExists(key));
  }
  static void remove(gom::GenericObject& object, unsigned int mask) {
    if ((mask & bit) != 0) {
      object.removeProperty(key);
    }
  }
};

/// A bit that counts as set and that unset() leaves alone, whatever properties there are.
template <unsigned int bit>
struct PermanentProperty {
  static constexpr unsigned int kBit = bit;

  static bool exists(const gom::GenericObject*, unsigned int) { return true; }
  static void remove(gom::GenericObject&, unsigned int) {}
};

/// The properties of a class that have a bit.
template <class... Rows>
struct PropertyTable {
  static constexpr unsigned int kAllBits = (Rows::kBit | ... | 0U);
  static_assert((Rows::kBit + ... + 0U) == kAllBits, "a bit stands in two rows");

  /// Whether every property that `mask` names exists; none does without an object, and none for a
  /// bit outside the table. A mask of 0 gives `emptyMask`.
  static bool exist(const gom::SharedPointer<gom::GenericObject>& object, unsigned int mask,
                    bool emptyMask) {
    if ((mask & ~kAllBits) != 0) {
      return false;
    }
    if (mask == 0) {
      return emptyMask;
    }
    return (Rows::exists(object.get(), mask) && ...);
  }

  /// Removes the properties that `mask` names; other bits are ignored.
  static void remove(const gom::SharedPointer<gom::GenericObject>& object, unsigned int mask) {
    if (object) {
      (Rows::remove(*object, mask), ...);
    }
  }
};

}  // namespace trelvo
