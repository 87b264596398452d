#pragma once

#include <trelvo/Export.h>

namespace trelvo {

/// The HTTP proxy to use for a transfer: a fixed-size record that is copied, never shared.
///
/// A fresh record is the reset record: `size` 140, no host, port 0. Who asks for a proxy first sets
/// the port that is to hold where the platform names none, usually kDefaultPort.
struct TRELVO_EXPORT ProxyInfo {
  /// What `size` holds, whatever `sizeof` is.
  static constexpr unsigned int kSize = 140;
  /// The bytes of `host`, its end among them.
  static constexpr unsigned int kHostSize = 129;
  /// The port to start with.
  static constexpr unsigned int kDefaultPort = 8080;

  /// Makes it the reset record again.
  void reset() noexcept { *this = ProxyInfo(); }

  unsigned int size = kSize;  ///< Always 140. Nothing tests it.
  char host[kHostSize] = {};  ///< Name or address; ends with a NUL.
  unsigned int port = 0;      ///< TCP port.
};

}  // namespace trelvo
