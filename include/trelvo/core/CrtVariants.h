#pragma once

#include <trelvo/Export.h>

namespace trelvo::core {

/// The C library's functions, in the form that is safe on every platform.
class TRELVO_EXPORT CrtVariants {
 public:
  CrtVariants() = delete;

  /// Formats into `buffer`, at most `size` bytes with the terminating NUL, which is always there
  /// unless `size` is 0; `buffer` may then be null.
  /// @return the length of the whole text without NUL, even where it was cut (from `size` up);
  ///         below 0 when the arguments cannot be formatted.
  static int sprintf(char* buffer, unsigned int size, const char* format, ...)
      __attribute__((format(printf, 3, 4)));
};

}  // namespace trelvo::core
