#include "tools/trelvo/RemoteSize.h"

#include <netdb.h>
#include <poll.h>
#include <strings.h>
#include <sys/socket.h>
#include <sys/types.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdlib>
#include <memory>

#include "tools/trelvo/UniqueFd.h"

namespace trelvo::tool {
namespace {

using std::chrono::steady_clock;

constexpr std::chrono::seconds kLongest(2);
constexpr std::size_t kLargestHead = 16384;
constexpr const char* kEndOfHead = "\r\n\r\n";

using Addresses = std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)>;

// These lead libcurl to a proxy; a connection past it would be another one than the download's.
bool usesProxy() {
  const char* const names[] = {"http_proxy", "all_proxy", "ALL_PROXY"};
  return std::any_of(std::begin(names), std::end(names),
                     [](const char* name) { return std::getenv(name) != nullptr; });
}

Addresses addressesOf(const HttpUrl& url) {
  addrinfo hints = {};
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* found = nullptr;
  static_cast<void>(::getaddrinfo(url.host.c_str(), url.port.c_str(), &hints, &found));
  return {found, &::freeaddrinfo};
}

std::string question(const HttpUrl& url) {
  return "HEAD " + url.path + " HTTP/1.1\r\nHost: " + url.server +
         "\r\nAccept: */*\r\nConnection: close" + kEndOfHead;
}

/// One short conversation with a server.
class Conversation {
 public:
  explicit Conversation(const std::vector<int>& until) {
    m_waited.push_back({-1, 0, 0});
    for (const int descriptor : until) {
      m_waited.push_back({descriptor, POLLIN, 0});
    }
  }

  bool connect(const addrinfo& address) {
    m_socket = UniqueFd(::socket(address.ai_family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    m_waited.front().fd = m_socket.get();
    static_cast<void>(::connect(m_socket.get(), address.ai_addr, address.ai_addrlen));
    int error = 0;
    socklen_t size = sizeof error;
    return waitFor(POLLOUT) &&
           ::getsockopt(m_socket.get(), SOL_SOCKET, SO_ERROR, &error, &size) == 0 && error == 0;
  }

  // A fresh connection takes so few bytes at once.
  bool ask(const std::string& text) const {
    return ::send(m_socket.get(), text.data(), text.size(), MSG_NOSIGNAL) ==
           static_cast<ssize_t>(text.size());
  }

  std::string head() {
    std::string text;
    while (text.find(kEndOfHead) == std::string::npos && text.size() < kLargestHead &&
           receive(text)) {
    }
    return text;
  }

 private:
  bool receive(std::string& text) {
    char block[1024];
    const ssize_t got = waitFor(POLLIN) ? ::recv(m_socket.get(), block, sizeof block, 0) : 0;
    text.append(block, got > 0 ? static_cast<std::size_t>(got) : 0);
    return got > 0;
  }

  // False when there is no time left or somebody ends the conversation.
  bool waitFor(short event) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(m_end - steady_clock::now());
    m_waited.front().events = event;
    const int timeout = static_cast<int>(std::max<std::int64_t>(left.count(), 0));
    return ::poll(m_waited.data(), m_waited.size(), timeout) == 1 && m_waited.front().revents != 0;
  }

  steady_clock::time_point m_end = steady_clock::now() + kLongest;
  UniqueFd m_socket;
  std::vector<pollfd> m_waited;  // the socket, and what ends the conversation
};

std::optional<std::uint64_t> numberIn(std::string text) {
  text.erase(0, text.find_first_not_of(" \t"));
  text.erase(text.find_last_not_of(" \t\r") + 1);
  std::uint64_t number = 0;
  const char* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number);
  return read.ec == std::errc() && read.ptr == end ? std::optional(number) : std::nullopt;
}

}  // namespace

std::optional<std::uint64_t> lengthInHead(const std::string& head) {
  constexpr const char kName[] = "\nContent-Length:";
  const std::size_t firstBlank = std::min(head.find(' '), head.size());
  if (head.compare(0, 5, "HTTP/") != 0 || head.compare(firstBlank, 4, " 200") != 0) {
    return std::nullopt;
  }
  for (std::size_t line = head.find('\n'); line != std::string::npos;
       line = head.find('\n', line + 1)) {
    if (::strncasecmp(head.c_str() + line, kName, sizeof kName - 1) == 0) {
      const std::size_t value = line + sizeof kName - 1;
      return numberIn(head.substr(value, head.find('\n', value) - value));
    }
  }
  return std::nullopt;
}

std::optional<std::uint64_t> askRemoteSize(const HttpUrl& url, const std::vector<int>& until) {
  const Addresses addresses = usesProxy() ? Addresses(nullptr, nullptr) : addressesOf(url);
  Conversation conversation(until);
  for (const addrinfo* each = addresses.get(); each != nullptr; each = each->ai_next) {
    if (conversation.connect(*each)) {
      return conversation.ask(question(url)) ? lengthInHead(conversation.head()) : std::nullopt;
    }
  }
  return std::nullopt;
}

}  // namespace trelvo::tool
