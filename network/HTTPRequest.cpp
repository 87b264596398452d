#include <trelvo/network/HTTPRequest.h>

#include <curl/curl.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstring>
#include <limits>
#include <new>
#include <string_view>
#include <system_error>

#include <trelvo/ConnectionInfo.h>
#include <trelvo/ICryptographyUtility.h>
#include <trelvo/ProxyInfo.h>
#include <trelvo/crypto/ICryptor.h>
#include <trelvo/network/ConnectionInfoContainer.h>
#include <trelvo/network/IConnectionManager.h>

namespace trelvo::network {

namespace {

constexpr long kBufferSize = 102400;
constexpr int kFound = 200;
constexpr int kMissing = 404;

template <class Value>
bool set(CURL* curl, CURLoption option, Value value) {
  return curl_easy_setopt(curl, option, value) == CURLE_OK;
}

// A transfer in which nothing moves calls neither the header nor the write callback.
int stopWhenCancelled(void* request, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
  return static_cast<HTTPRequest*>(request)->isCancelled() ? 1 : 0;
}

/// Whether a transfer may use `connection` under a mask of types that is not 0.
bool permitted(const ConnectionInfo& connection, int mask) {
  return (connection.type & static_cast<unsigned int>(mask)) != 0 &&
         !(connection.type == ConnectionInfo::TypeCellular && connection.roaming);
}

bool isSpace(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

/// What strtoll makes of `text` in base 10, with nothing read behind it.
long long decimal(std::string_view text) {
  const char* const end = text.data() + text.size();
  const char* first = std::find_if_not(text.data(), end, isSpace);
  if (end - first > 1 && first[0] == '+' && first[1] != '-') {
    ++first;
  }
  long long value = 0;
  if (std::from_chars(first, end, value).ec == std::errc::result_out_of_range) {
    using Limits = std::numeric_limits<long long>;
    value = *first == '-' ? Limits::min() : Limits::max();
  }
  return value;
}

}  // namespace

IHTTPRequest::~IHTTPRequest() = default;

IHTTPRequest* IHTTPRequest::create(const std::string& server, IConnectionManager* manager) try {
  std::unique_ptr<HTTPRequest> request(new (std::nothrow) HTTPRequest(server, manager));
  return request && request->initialize() ? request.release() : nullptr;
} catch (const std::bad_alloc&) {
  return nullptr;
}

HTTPRequest::HTTPRequest(const std::string& server, IConnectionManager* manager)
    : m_connectionManager(manager), m_server(server) {}

HTTPRequest::~HTTPRequest() {
  curl_easy_cleanup(m_curl);
  m_share.reset();
  if (m_curlGlobalInit) {
    curl_global_cleanup();
  }
  delete m_crc;
}

void HTTPRequest::ShareCleanup::operator()(void* share) const noexcept {
  curl_share_cleanup(share);
}

bool HTTPRequest::initialize() {
  if (m_connectionManager == nullptr || curl_global_init(0) != CURLE_OK) {
    return false;
  }
  m_curlGlobalInit = true;
  if (!makeTransport()) {
    return false;
  }
  useProxy();
  return true;
}

bool HTTPRequest::makeTransport() {
  m_share.reset(curl_share_init());
  m_curl = curl_easy_init();
  return m_share && m_curl != nullptr && set(m_curl, CURLOPT_HEADERFUNCTION, receiveHeader) &&
         set(m_curl, CURLOPT_HEADERDATA, this) && set(m_curl, CURLOPT_WRITEFUNCTION, receiveBody) &&
         set(m_curl, CURLOPT_WRITEDATA, this) && set(m_curl, CURLOPT_BUFFERSIZE, kBufferSize) &&
         set(m_curl, CURLOPT_XFERINFOFUNCTION, stopWhenCancelled) &&
         set(m_curl, CURLOPT_XFERINFODATA, this) && set(m_curl, CURLOPT_NOPROGRESS, 0L) &&
         // A cancel does not wait for the name server.
         set(m_curl, CURLOPT_QUICK_EXIT, 1L) &&
         curl_share_setopt(m_share.get(), CURLSHOPT_SHARE, CURL_LOCK_DATA_CONNECT) == CURLSHE_OK;
}

void HTTPRequest::useProxy() {
  ProxyInfo proxy;
  proxy.port = ProxyInfo::kDefaultPort;
  if (m_connectionManager->getProxy(createHttpUri(""), proxy) == StatusOk) {
    const std::string host(proxy.host, strnlen(proxy.host, sizeof proxy.host));
    set(m_curl, CURLOPT_PROXY, host.c_str());
    set(m_curl, CURLOPT_PROXYPORT, static_cast<long>(proxy.port));
  }
}

// libcurl 7.88 keeps a pointer to the last header of a handle's last answer beyond that header's
// life, and follows it when the next answer begins with a folded line. So no handle is used twice;
// what is worth keeping, the open connections, lies in the share.
bool HTTPRequest::renewTransport() {
  CURL* const fresh = curl_easy_duphandle(m_curl);
  if (fresh == nullptr) {
    return false;
  }
  curl_easy_cleanup(m_curl);
  m_curl = fresh;
  return set(m_curl, CURLOPT_SHARE, m_share.get());
}

int HTTPRequest::perform() {
  if (cancelled() || !renewTransport()) {
    return CURLE_ABORTED_BY_CALLBACK;
  }
  return curl_easy_perform(m_curl);
}

void HTTPRequest::cancel() { m_cancelled.store(true, std::memory_order_relaxed); }

bool HTTPRequest::isCancelled() { return cancelled(); }

void HTTPRequest::setAllowedConnectionType(int mask) { m_allowedConnectionTypes = mask; }

Status HTTPRequest::disableKeepAlive() { return cancelled() ? StatusCancelled : StatusOk; }

Status HTTPRequest::getStatusCode(int& code) const {
  if (cancelled()) {
    return StatusCancelled;
  }
  long answer = 0;
  if (curl_easy_getinfo(m_curl, CURLINFO_RESPONSE_CODE, &answer) != CURLE_OK) {
    return StatusFailed;
  }
  code = static_cast<int>(answer);
  return StatusOk;
}

Status HTTPRequest::lastErrorToStatus() const {
  return cancelled() ? StatusCancelled : StatusFailed;
}

std::string HTTPRequest::createHttpUri(const std::string& path) const {
  return "http://" + m_server + path;
}

bool HTTPRequest::commonContextSetup(const std::string& path) {
  return !set(m_curl, CURLOPT_URL, createHttpUri(path).c_str());
}

Status HTTPRequest::startMonitorUsedConnection() try {
  if (cancelled()) {
    return StatusCancelled;
  }
  if (m_allowedConnectionTypes == 0) {
    return StatusOk;
  }
  ConnectionInfoContainer present;
  const Status status = m_connectionManager->getConnections(present);
  if (status != StatusOk) {
    return status;
  }
  const bool any = std::any_of(present.begin(), present.end(), [this](const auto& connection) {
    return permitted(connection, m_allowedConnectionTypes);
  });
  return any ? m_connectionManager->startMonitorUsedConnection() : StatusNoConnection;
} catch (const std::bad_alloc&) {
  return StatusOutOfMemory;
}

Status HTTPRequest::stopMonitorUsedConnection() try {
  if (cancelled()) {
    return StatusCancelled;
  }
  if (m_allowedConnectionTypes == 0) {
    return StatusOk;
  }
  ConnectionInfoContainer used;
  m_connectionManager->stopMonitorUsedConnection(used);
  const bool all = std::all_of(used.begin(), used.end(), [this](const auto& connection) {
    return permitted(connection, m_allowedConnectionTypes);
  });
  return all ? StatusOk : StatusNoConnection;
} catch (const std::bad_alloc&) {
  return StatusOutOfMemory;
}

/// Runs a request without a local file; `onAnswer` gives its status once it was answered.
template <class OnAnswer>
Status HTTPRequest::performMonitored(OnAnswer onAnswer) {
  const Status started = startMonitorUsedConnection();
  if (started != StatusOk) {
    return started;
  }
  const bool answered = perform() == CURLE_OK && !cancelled();
  const Status status = answered ? onAnswer() : lastErrorToStatus();
  const Status stopped = stopMonitorUsedConnection();
  return stopped != StatusOk ? stopped : status;
}

Status HTTPRequest::doIsAvailable(int& code) {
  return performMonitored([&] { return getStatusCode(code); });
}

Status HTTPRequest::doGetRemoteFileModificationTime(int& code, unsigned int& time) {
  return performMonitored([&] {
    const Status status = getStatusCode(code);
    if (status != StatusOk || code != kFound) {
      return status;
    }
    long changed = 0;
    if (curl_easy_getinfo(m_curl, CURLINFO_FILETIME, &changed) != CURLE_OK) {
      return StatusFailed;
    }
    time = static_cast<unsigned int>(changed);
    return StatusOk;
  });
}

Status HTTPRequest::isAvailable(const std::string& path) try {
  commonContextSetup(path);
  if (!set(m_curl, CURLOPT_NOBODY, 1L)) {
    return StatusFailed;
  }
  int code = 0;
  Status status = doIsAvailable(code);
  if (!set(m_curl, CURLOPT_NOBODY, 0L)) {
    return StatusFailed;
  }
  if (status == StatusOk && code != kFound && code != kMissing) {
    status = doIsAvailable(code);
  }
  if (status != StatusOk) {
    return status;
  }
  return code == kFound ? StatusOk : StatusNotFound;
} catch (const std::bad_alloc&) {
  return StatusOutOfMemory;
}

Status HTTPRequest::getRemoteFileModificationTime(const std::string& path, unsigned int& time) try {
  commonContextSetup(path);
  if (!set(m_curl, CURLOPT_NOBODY, 1L) || !set(m_curl, CURLOPT_FILETIME, 1L)) {
    return StatusFailed;
  }
  int code = 0;
  Status status = doGetRemoteFileModificationTime(code, time);
  if (!set(m_curl, CURLOPT_FILETIME, 0L) || !set(m_curl, CURLOPT_NOBODY, 0L)) {
    return StatusFailed;
  }
  if (status == StatusOk && code != kFound && code != kMissing) {
    time = 0;
    status = doGetRemoteFileModificationTime(code, time);
  }
  if (status != StatusOk || code == kFound) {
    return status;
  }
  time = 0;
  return StatusNotFound;
} catch (const std::bad_alloc&) {
  return StatusOutOfMemory;
}

std::size_t HTTPRequest::receiveHeader(void* data, std::size_t size, std::size_t count,
                                       void* self) {
  constexpr std::string_view kName = "Content-Length:";
  auto& request = *static_cast<HTTPRequest*>(self);
  if (request.cancelled()) {
    return 0;
  }
  std::string_view line(static_cast<const char*>(data), size * count);
  if (request.m_contentLengthKnown || line.substr(0, kName.size()) != kName) {
    return line.size();
  }
  const long long length = decimal(line.substr(kName.size()));
  if (length >= 0) {
    request.m_contentLengthKnown = true;
    request.m_contentLength = length;
  }
  return line.size();
}

// NOLINTNEXTLINE(readability-non-const-parameter): the signature is libcurl's
std::size_t HTTPRequest::receiveBody(char* data, std::size_t size, std::size_t count, void* self) {
  auto& request = *static_cast<HTTPRequest*>(self);
  const auto length = static_cast<unsigned int>(size * count);
  if (request.cancelled() || length == 0) {
    return 0;
  }
  request.m_bytesReceived += length;
  const auto* const bytes = reinterpret_cast<const unsigned char*>(data);
  const bool taken = request.m_outStream == nullptr || request.takeBlock(bytes, length);
  return taken ? length : 0;
}

}  // namespace trelvo::network
