// A socket with nothing but the system's calls around it: what the machine can do at all.

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <string_view>
#include <vector>

#include "bench/Must.h"
#include "bench/http/DownloadBench.h"

namespace bench {

namespace {

constexpr std::size_t kBlock = 102400;

class Descriptor {
 public:
  explicit Descriptor(int number) : m_number(number) { must(number >= 0, "open"); }
  ~Descriptor() { close(m_number); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  operator int() const { return m_number; }

 private:
  int m_number;
};

class SocketDownload {
 public:
  static constexpr Served kServed = Served::Plain;

  void download(const Source& source, const std::string& path) {
    const Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600));
    ask(source);
    std::string_view block = withoutHead(receive());
    for (std::size_t stored = 0; stored < kBodySize; block = receive()) {
      stored += block.size();
      must(write(file, block.data(), block.size()) == static_cast<ssize_t>(block.size()), "write");
    }
  }

 private:
  void ask(const Source& source) {
    const std::string port = source.server.substr(source.server.find(':') + 1);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<in_port_t>(std::stoi(port)));
    const std::string request = "GET " + source.path + " HTTP/1.1\r\nHost: " + source.server +
                                "\r\nConnection: close\r\n\r\n";
    must(connect(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
             send(m_socket, request.data(), request.size(), 0) ==
                 static_cast<ssize_t>(request.size()),
         "asking for the body");
  }

  std::string_view receive() {
    const ssize_t size = recv(m_socket, m_block.data(), m_block.size(), 0);
    must(size >= 0, "recv");
    return {m_block.data(), static_cast<std::size_t>(size)};
  }

  /// nginx sends its head in one piece.
  static std::string_view withoutHead(std::string_view block) {
    const std::size_t end = block.find("\r\n\r\n");
    must(end != std::string_view::npos, "the head of the answer");
    return block.substr(end + 4);
  }

  Descriptor m_socket{socket(AF_INET, SOCK_STREAM, 0)};
  std::vector<char> m_block = std::vector<char>(kBlock);
};

const bool kRegistered = registerDownload<SocketDownload>("plain", "socket");

}  // namespace

}  // namespace bench
