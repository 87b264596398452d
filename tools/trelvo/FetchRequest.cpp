#include "tools/trelvo/FetchRequest.h"

#include <algorithm>
#include <limits>
#include <new>

#include "tools/trelvo/Failure.h"

namespace trelvo::tool {
namespace {

using network::IHTTPRequest;

bool permitted(const ConnectionInfo& info, unsigned int mask) {
  const bool abroad = info.type == ConnectionInfo::TypeCellular && info.roaming;
  return (info.type & mask) != 0 && !abroad;
}

std::string namesOf(const network::ConnectionInfoContainer& connections) {
  std::string names;
  for (const ConnectionInfo& info : connections) {
    names += (names.empty() ? "" : ", ") + std::string(info.name);
  }
  return names;
}

void require(Status status, const std::string& address) {
  if (status != StatusOk) {
    throw Failure(address + ": encryption is not available; fetch it without");
  }
}

}  // namespace

FetchRequest::FetchRequest(const FetchOptions& options, const HttpUrl& url,
                           const std::optional<CipherKey>& cipher)
    : m_options(options),
      m_connections(openConnections()),
      m_request(std::make_unique<network::HTTPRequest>(url.server, m_connections.manager.get())) {
  if (!m_request->initialize()) {
    throw std::bad_alloc();
  }
  if (options.allowed != 0) {
    allow(options.allowed);
  }
  if (options.crc) {
    m_request->setDataChecksum(*options.crc, 0, std::numeric_limits<unsigned int>::max());
  }
  if (cipher) {
    decipher(*cipher);
  }
  if (options.seals()) {
    seal(options.store);
  }
}

// The request asks too, but cannot say what there is, nor that nobody knows.
void FetchRequest::allow(unsigned int mask) {
  const std::string start = m_options.address + ": ";
  if (!m_connections.kindKnown) {
    throw Failure(start +
                  "what kind of connection there is cannot be told without a system "
                  "bus; leave --allow out");
  }
  m_events = std::make_unique<MainLoopThread>();
  network::ConnectionInfoContainer present;
  if (m_connections.manager->getConnections(present) != StatusOk) {
    throw Failure(start + "the connections cannot be told; try again, or leave --allow out");
  }
  if (std::none_of(present.begin(), present.end(),
                   [mask](const ConnectionInfo& info) { return permitted(info, mask); })) {
    throw Failure(start + "--allow permits no connection that is there (" + namesOf(present) +
                  "); see trelvo net");
  }
  m_request->setAllowedConnectionType(static_cast<int>(mask));
}

void FetchRequest::decipher(const CipherKey& cipher) {
  require(m_request->setDataDecryption(IHTTPRequest::CipherAes, cipher.key.data(), kCipherBytes,
                                       cipher.iv.data(), kCipherBytes),
          m_options.address);
}

// The request opens the store by itself, but does not see that a new key could not be kept.
void FetchRequest::seal(const StoreOptions& store) {
  openStoreForSealing(store);
  const std::string& name = store.name;
  require(m_request->setDataEncryption(IHTTPRequest::CipherAes,
                                       reinterpret_cast<const unsigned char*>(name.c_str()),
                                       static_cast<unsigned int>(name.size()), nullptr, 0),
          m_options.address);
}

FetchEnd FetchRequest::end(Status status) const {
  FetchEnd end{status, 0, m_options.deciphers(), m_options.crc.has_value()};
  m_request->getStatusCode(end.code);
  return end;
}

}  // namespace trelvo::tool
