#pragma once

namespace trelvo {

/// The order in which the library's static objects come up when it is loaded; they go down in
/// reverse when the process ends. Give the number to `__attribute__((init_priority(...)))`, which,
/// unlike the order within one file, does not depend on the order in which files are linked.
///
/// Everything else needs no set-up: a further object that does belongs in this list.
enum StartUp : int {
  kStartUpConnectionManager = 201,  ///< network::gConnectionManagerGenericStatic
  kStartUpCrypto = 202,             ///< gCryptoStatic
  kStartUpTimeProvider = 203,       ///< core::gTimeProvider
  kStartUpDispatcherKeys = 204,     ///< the threads' slots of the poll and the GLib dispatcher
  kStartUpDirectory = 205,          ///< the paths that core::Directory keeps
  kStartUpLogging = 206,            ///< the mutex of the logging engine
};

}  // namespace trelvo
