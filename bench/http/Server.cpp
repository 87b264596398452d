#include "bench/http/Server.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <zlib.h>

#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <random>
#include <vector>

#include "bench/Must.h"
#include "bench/TemporaryFiles.h"
#include "bench/sealed/Counter.h"

namespace bench {

namespace {

constexpr std::size_t kPiece = 1 << 20;

/// A socket that listens on a free port of the loopback interface.
class Listener {
 public:
  Listener() : m_socket(socket(AF_INET, SOCK_STREAM, 0)) {
    m_address.sin_family = AF_INET;
    m_address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof m_address;
    auto* const address = reinterpret_cast<sockaddr*>(&m_address);
    must(m_socket >= 0 && bind(m_socket, address, size) == 0 && listen(m_socket, 16) == 0 &&
             getsockname(m_socket, address, &size) == 0,
         "listen");
  }
  ~Listener() { close(m_socket); }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  int get() const { return m_socket; }
  std::string address() const { return "127.0.0.1:" + std::to_string(ntohs(m_address.sin_port)); }

 private:
  int m_socket;
  sockaddr_in m_address{};
};

/// nginx with all its files in one directory. It takes over a socket that listens already, so there
/// is no port to guess and nothing to wait for, and it ends with this process, however that ends.
class Nginx {
 public:
  Nginx() : m_directory(temporaryFile("nginx")) {
    const Listener listener;
    m_address = listener.address();
    std::filesystem::create_directory(m_directory);
    std::ofstream(m_directory + "/nginx.conf") << configuration();
    const std::string variable = "NGINX=" + std::to_string(listener.get()) + ";";
    m_process = fork();
    must(m_process >= 0, "fork");
    if (m_process == 0) {
      prctl(PR_SET_PDEATHSIG, SIGTERM);
      const char* const environment[] = {variable.c_str(), nullptr};
      execle(BENCH_NGINX, BENCH_NGINX, "-p", m_directory.c_str(), "-c", "nginx.conf", "-e",
             "error.log", nullptr, environment);
      _exit(127);
    }
  }
  ~Nginx() {
    kill(m_process, SIGTERM);
    waitpid(m_process, nullptr, 0);
  }
  Nginx(const Nginx&) = delete;
  Nginx& operator=(const Nginx&) = delete;

  const std::string& address() const { return m_address; }
  std::string file(const std::string& path) const { return m_directory + path; }

 private:
  std::string configuration() const {
    // Its worker has to get into a directory that is its owner's alone.
    const std::string user = geteuid() == 0 ? "user root;" : "";
    return user + R"(
daemon off;
pid nginx.pid;
error_log error.log;
events { worker_connections 64; }
http {
  access_log off;
  sendfile on;
  client_body_temp_path temp;
  proxy_temp_path temp;
  fastcgi_temp_path temp;
  uwsgi_temp_path temp;
  scgi_temp_path temp;
  root .;
  server { listen )" +
           m_address + R"(; }
}
)";
  }

  std::string m_directory;
  std::string m_address;
  pid_t m_process = -1;
};

/// Hands the body to `sink` piece by piece: noise, always the same. @return its CRC-32.
template <class Sink>
unsigned int makeBody(Sink sink) {
  std::mt19937_64 engine(7);
  std::vector<std::uint64_t> piece(kPiece / sizeof(std::uint64_t));
  uLong crc = 0;
  for (std::size_t made = 0; made < kBodySize; made += kPiece) {
    for (std::uint64_t& value : piece) {
      value = engine();
    }
    const auto* const bytes = reinterpret_cast<const unsigned char*>(piece.data());
    crc = crc32_z(crc, bytes, kPiece);
    sink(bytes);
  }
  return static_cast<unsigned int>(crc);
}

void put(std::ofstream& file, const unsigned char* bytes, std::size_t size) {
  file.write(reinterpret_cast<const char*>(bytes), static_cast<std::streamsize>(size));
}

void makePlain(std::ofstream& file) {
  makeBody([&](const unsigned char* piece) { put(file, piece, kPiece); });
}

void makeEnciphered(std::ofstream& file) {
  const Context context(EVP_CIPHER_CTX_new());
  must(EVP_EncryptInit_ex(context.get(), EVP_aes_128_cbc(), nullptr, kKey.data(), kIv.data()) == 1,
       "EVP_EncryptInit_ex");
  std::vector<unsigned char> stored(kPiece + kKey.size());
  int size = 0;
  makeBody([&](const unsigned char* piece) {
    must(EVP_EncryptUpdate(context.get(), stored.data(), &size, piece, kPiece) == 1,
         "EVP_EncryptUpdate");
    put(file, stored.data(), static_cast<std::size_t>(size));
  });
  must(EVP_EncryptFinal_ex(context.get(), stored.data(), &size) == 1, "EVP_EncryptFinal_ex");
  put(file, stored.data(), static_cast<std::size_t>(size));
}

}  // namespace

Source sourceOf(Served form) {
  static const Nginx kServer;
  const bool plain = form == Served::Plain;
  const Source source{kServer.address(), plain ? "/plain" : "/enciphered"};
  const std::string path = kServer.file(source.path);
  if (!std::filesystem::exists(path)) {
    std::ofstream file(path, std::ios::binary);
    plain ? makePlain(file) : makeEnciphered(file);
    file.close();
    must(file.good(), "making the body");
  }
  return source;
}

unsigned int bodyChecksum() {
  static const unsigned int kChecksum = makeBody([](const unsigned char*) {});
  return kChecksum;
}

}  // namespace bench
