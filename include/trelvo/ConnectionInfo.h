#pragma once

#include <trelvo/Export.h>

namespace trelvo {

/// One data connection of the device: a fixed-size record that is copied, never shared.
///
/// A fresh record is the reset record: no connection, `size` 160, `roaming` true, all else zero.
///
/// Threads: one at a time, as any plain record.
struct TRELVO_EXPORT ConnectionInfo {
  /// Bits of `type` and `bearer`; a mask of allowed connections is made of them too.
  enum Type : unsigned int {
    TypeNone = 0,
    TypeWlan = 1,
    TypeCellular = 2,
  };

  /// What `size` holds, whatever `sizeof` is.
  static constexpr unsigned int kSize = 160;
  /// The bytes of `name`, its end among them.
  static constexpr unsigned int kNameSize = 129;

  /// Makes it the reset record again.
  void reset() noexcept { *this = ConnectionInfo(); }

  unsigned int size = kSize;     ///< Always 160. Nothing tests it.
  unsigned int type = TypeNone;  ///< Bits of Type.
  bool connected = false;        ///< Whether data can pass now.
  bool roaming = true;           ///< On a cellular connection: transfers are refused. WLAN: false.
  unsigned int bearer = TypeNone;  ///< The same values as `type`.
  unsigned long long id = 0;       ///< Which connection it is; 0 is none.
  char name[kNameSize] = {};       ///< Ends with a NUL: "wifi", "cellular", "disconnected".
};

}  // namespace trelvo
