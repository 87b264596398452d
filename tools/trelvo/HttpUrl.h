#pragma once

#include <string>

namespace trelvo::tool {

/// The parts of an address of the form http://HOST[:PORT][/PATH][?QUERY].
struct HttpUrl {
  std::string host;  ///< name or address; an IPv6 address without its brackets
  std::string port = "80";
  std::string server;  ///< host and port as they were given, for network::IHTTPRequest
  std::string path;    ///< path and query, beginning with "/"; escaped as it came
};

/// Takes `text` apart. Throws std::invalid_argument: what is wrong, and what to do.
HttpUrl parseHttpUrl(const std::string& text);

}  // namespace trelvo::tool
