#pragma once

#include <trelvo/Export.h>
#include <trelvo/gom/Variant.h>

namespace trelvo::gom {

/// The property of a GenericObject: a Variant that its list keeps by value under a key.
class TRELVO_EXPORT InternalVariant : public Variant {
 public:
  /// Blank, with a key.
  explicit InternalVariant(unsigned short key) noexcept : Variant(key) {}
  /// The value of `other` under another key; a handle is shared.
  InternalVariant(unsigned short key, const Variant& other) noexcept : Variant(key, other) {}
  InternalVariant(const InternalVariant& other) noexcept = default;
  InternalVariant(InternalVariant&& other) noexcept = default;
  ~InternalVariant() override;

  InternalVariant& operator=(const InternalVariant& other) = default;
  InternalVariant& operator=(InternalVariant&& other) noexcept = default;

  /// As Variant::cloneFrom.
  Status cloneFrom(const InternalVariant& other) { return Variant::cloneFrom(other); }
};

}  // namespace trelvo::gom
