#pragma once

#include <trelvo/Status.h>
#include <trelvo/network/HTTPRequest.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "tools/trelvo/CipherKey.h"
#include "tools/trelvo/Connections.h"
#include "tools/trelvo/FetchFailure.h"
#include "tools/trelvo/HttpUrl.h"
#include "tools/trelvo/MainLoopThread.h"
#include "tools/trelvo/SealedStore.h"

namespace trelvo::tool {

/// What a transfer is to keep to.
struct FetchOptions {
  std::string address;
  std::string output;
  std::optional<std::uint32_t> crc;
  std::string keyFile;
  std::string ivFile;
  StoreOptions store;        ///< whose key seals the output; no name: none
  unsigned int allowed = 0;  ///< bits of ConnectionInfo::Type; 0: any connection
  bool checkOnly = false;
  bool json = false;

  bool deciphers() const { return !keyFile.empty(); }
  bool seals() const { return !store.name.empty(); }
};

/// A library's request made ready by the options of the command line.
class FetchRequest {
 public:
  /// Opens the store and asks for the connections. The body is deciphered if there is a `cipher`.
  /// Throws Failure.
  FetchRequest(const FetchOptions& options, const HttpUrl& url,
               const std::optional<CipherKey>& cipher);

  network::HTTPRequest& operator*() { return *m_request; }
  network::HTTPRequest* operator->() { return m_request.get(); }

  /// How the request ended that gave `status`.
  FetchEnd end(Status status) const;

 private:
  void allow(unsigned int mask);
  void decipher(const CipherKey& cipher);
  void seal(const StoreOptions& store);

  const FetchOptions& m_options;
  Connections m_connections;
  std::unique_ptr<MainLoopThread> m_events;  // brings word of the connections
  std::unique_ptr<network::HTTPRequest> m_request;
};

}  // namespace trelvo::tool
