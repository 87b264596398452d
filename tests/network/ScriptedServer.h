#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace trelvo::test {

/// A file descriptor, closed with its owner.
class Descriptor {
 public:
  explicit Descriptor(int fd) noexcept : m_fd(fd) {}
  ~Descriptor();
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int get() const noexcept { return m_fd; }

 private:
  int m_fd;
};

/// A socket that listens on a free port of the loopback interface, with room for `backlog`
/// connections that nobody accepted. Throws std::system_error.
int listenOnLoopback(int backlog);

/// The port that a socket is bound to.
unsigned int portOf(int socket);

/// One connection to a ScriptedServer, as its script sees it. Nothing waits for longer than half a
/// minute, nor beyond the life of the server.
class Peer {
 public:
  explicit Peer(int socket) noexcept : m_socket(socket) {}

  /// The head of the next request, up to the empty line. Empty when the client has closed.
  std::string request() const;

  /// Sends all of `bytes`. @return false when the client has closed.
  bool send(std::string_view bytes) const;

  /// Returns when the client closes.
  void waitForClose() const;

  /// Has the connection end in a reset instead of an orderly close.
  void resetOnClose() const;

 private:
  int m_socket;
};

/// An HTTP server on the loopback interface that says what a test tells it to, right or wrong.
///
/// It serves one connection after the other on a thread of its own: the script runs once for each,
/// and its return closes the connection.
class ScriptedServer {
 public:
  using Script = std::function<void(const Peer&)>;

  explicit ScriptedServer(Script script);
  /// Ends the connection that is open, if there is one.
  ~ScriptedServer();
  ScriptedServer(const ScriptedServer&) = delete;
  ScriptedServer& operator=(const ScriptedServer&) = delete;

  /// "127.0.0.1:" and the port.
  std::string address() const;
  unsigned int port() const { return portOf(m_listener.get()); }

  /// The connections that were accepted so far.
  unsigned int connections() const { return m_connections; }

 private:
  void serve();
  bool opened(int socket);

  Descriptor m_listener;
  Script m_script;
  std::atomic<unsigned int> m_connections = 0;
  std::mutex m_mutex;
  int m_open = -1;          // guarded by m_mutex
  bool m_stopping = false;  // guarded by m_mutex
  std::thread m_thread;
};

/// A complete answer with these header lines, each ended by CR LF, behind "Connection: close".
std::string answer(std::string_view status, std::string_view headers, std::string_view body);

/// The answer to a found file: "200 OK", the body and its length.
std::string found(std::string_view body);

/// What a server was asked: the first line of each request, without "HTTP/1.1".
class Questions {
 public:
  void add(const std::string& line);
  std::vector<std::string> all() const;

 private:
  mutable std::mutex m_mutex;
  std::vector<std::string> m_lines;  // guarded by m_mutex
};

/// Serves `answers` one after the other, each on a connection of its own; HEAD gets no body. What
/// was asked goes to `questions`, which outlives the script.
ScriptedServer::Script inTurn(std::vector<std::string> answers, Questions& questions);

}  // namespace trelvo::test
