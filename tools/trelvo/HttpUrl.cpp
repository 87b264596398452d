#include "tools/trelvo/HttpUrl.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <stdexcept>

namespace trelvo::tool {
namespace {

constexpr const char* kScheme = "http://";
constexpr std::size_t kSchemeLength = 7;

std::string lower(std::string text) {
  for (char& c : text) {
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  return text;
}

void require(bool good, const char* problem) {
  if (!good) {
    throw std::invalid_argument(problem);
  }
}

bool isUnescaped(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte <= ' ' || byte == 0x7f;
}

bool isPort(const std::string& text) {
  unsigned int number = 0;
  const char* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number);
  return read.ec == std::errc() && read.ptr == end && number >= 1 && number <= 65535;
}

// Where the host ends in "host", "host:port", "[address]" and "[address]:port".
std::size_t endOfHost(const std::string& server) {
  if (server.front() != '[') {
    return std::min(server.find(':'), server.size());
  }
  const std::size_t bracket = server.find(']');
  require(bracket != std::string::npos, "the address lacks its ]; write [ADDRESS]:PORT");
  return bracket + 1;
}

void splitServer(HttpUrl& url) {
  const std::size_t end = endOfHost(url.server);
  const bool isBracketed = url.server.front() == '[';
  url.host = isBracketed ? url.server.substr(1, end - 2) : url.server.substr(0, end);
  require(!url.host.empty(), "names no server; write http://SERVER/PATH");
  if (end < url.server.size()) {
    url.port = url.server.substr(end + 1);
    require(url.server[end] == ':' && isPort(url.port),
            "names no port from 1 to 65535; correct what stands behind the server's name");
  }
}

}  // namespace

HttpUrl parseHttpUrl(const std::string& text) {
  const std::string start = lower(text.substr(0, kSchemeLength + 1));
  require(start != "https://", "only plain http is spoken; give an http:// address of the file");
  require(start.compare(0, kSchemeLength, kScheme) == 0,
          "is no http address; write http://SERVER/PATH");
  require(std::none_of(text.begin(), text.end(), isUnescaped),
          "holds a space or a control character; escape it as %20 and the like");
  const std::string rest = text.substr(kSchemeLength, text.find('#') - kSchemeLength);
  const std::size_t end = std::min(rest.find_first_of("/?"), rest.size());
  HttpUrl url;
  url.server = rest.substr(0, end);
  url.path = rest.substr(end);
  if (url.path.empty() || url.path.front() != '/') {
    url.path.insert(0, "/");
  }
  require(!url.server.empty(), "names no server; write http://SERVER/PATH");
  require(url.server.find('@') == std::string::npos,
          "holds a user's name, which would be sent for all to read; leave it out");
  splitServer(url);
  return url;
}

}  // namespace trelvo::tool
