#pragma once

#include <trelvo/Export.h>

namespace trelvo::gom {

/// Something with optional values, each named by one bit of a mask that the class defines.
class TRELVO_EXPORT IValuable {
 public:
  virtual ~IValuable();

  /// Whether all values named by `mask` are there.
  virtual bool valueExists(unsigned int mask) const = 0;

  /// Whether no value is there.
  virtual bool isEmpty() const = 0;

  /// Takes away the values named by `mask`.
  virtual void unset(unsigned int mask) = 0;

 protected:
  IValuable() = default;
  IValuable(const IValuable&) = default;
  IValuable& operator=(const IValuable&) = default;
};

}  // namespace trelvo::gom
