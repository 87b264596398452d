#include "tests/network/ScriptedServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <memory>
#include <system_error>
#include <utility>

namespace trelvo::test {

namespace {

constexpr std::string_view kEmptyLine = "\r\n\r\n";

void check(bool done, const char* what) {
  if (!done) {
    throw std::system_error(errno, std::generic_category(), what);
  }
}

void waitAtMostHalfAMinute(int socket) {
  const timeval limit{30, 0};
  setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
  setsockopt(socket, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
}

std::string questionOf(const std::string& request) {
  return request.substr(0, request.find(" HTTP/1.1\r\n"));
}

std::string headOf(const std::string& text) {
  return text.substr(0, text.find(kEmptyLine) + kEmptyLine.size());
}

}  // namespace

Descriptor::~Descriptor() {
  if (m_fd >= 0) {
    close(m_fd);
  }
}

int listenOnLoopback(int backlog) {
  const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  check(listener >= 0, "socket");
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  check(bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0, "bind");
  check(listen(listener, backlog) == 0, "listen");
  return listener;
}

unsigned int portOf(int socket) {
  sockaddr_in address{};
  socklen_t size = sizeof address;
  check(getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size) == 0, "getsockname");
  return ntohs(address.sin_port);
}

std::string Peer::request() const {
  std::string head;
  char byte = 0;
  // Byte by byte, so that nothing is taken of what follows.
  while (head.find(kEmptyLine) == std::string::npos) {
    if (recv(m_socket, &byte, 1, 0) != 1) {
      return {};
    }
    head += byte;
  }
  return head;
}

bool Peer::send(std::string_view bytes) const {
  while (!bytes.empty()) {
    const ssize_t sent = ::send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent <= 0) {
      return false;
    }
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

void Peer::waitForClose() const {
  std::array<char, 4096> ignored{};
  while (recv(m_socket, ignored.data(), ignored.size(), 0) > 0) {
  }
}

void Peer::resetOnClose() const {
  const linger now{1, 0};
  setsockopt(m_socket, SOL_SOCKET, SO_LINGER, &now, sizeof now);
}

ScriptedServer::ScriptedServer(Script script)
    : m_listener(listenOnLoopback(16)),
      m_script(std::move(script)),
      m_thread(&ScriptedServer::serve, this) {}

ScriptedServer::~ScriptedServer() {
  {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_stopping = true;
    if (m_open >= 0) {
      shutdown(m_open, SHUT_RDWR);
    }
  }
  shutdown(m_listener.get(), SHUT_RDWR);  // wakes accept()
  m_thread.join();
}

std::string ScriptedServer::address() const { return "127.0.0.1:" + std::to_string(port()); }

void ScriptedServer::serve() {
  while (true) {
    const Descriptor socket(accept4(m_listener.get(), nullptr, nullptr, SOCK_CLOEXEC));
    if (!opened(socket.get())) {
      return;
    }
    ++m_connections;
    waitAtMostHalfAMinute(socket.get());
    m_script(Peer(socket.get()));
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_open = -1;
  }
}

bool ScriptedServer::opened(int socket) {
  const std::lock_guard<std::mutex> guard(m_mutex);
  m_open = socket;
  return socket >= 0 && !m_stopping;
}

std::string answer(std::string_view status, std::string_view headers, std::string_view body) {
  std::string text = "HTTP/1.1 ";
  text.append(status).append("\r\nConnection: close\r\n").append(headers).append("\r\n");
  return text.append(body);
}

std::string found(std::string_view body) {
  return answer("200 OK", "Content-Length: " + std::to_string(body.size()) + "\r\n", body);
}

void Questions::add(const std::string& line) {
  const std::lock_guard<std::mutex> guard(m_mutex);
  m_lines.push_back(line);
}

std::vector<std::string> Questions::all() const {
  const std::lock_guard<std::mutex> guard(m_mutex);
  return m_lines;
}

ScriptedServer::Script inTurn(std::vector<std::string> answers, Questions& questions) {
  return [answers = std::move(answers), &questions,
          turn = std::make_shared<std::size_t>(0)](const Peer& peer) {
    const std::string request = peer.request();
    if (request.empty() || *turn == answers.size()) {
      return;
    }
    questions.add(questionOf(request));
    const std::string& text = answers[(*turn)++];
    peer.send(request.rfind("HEAD ", 0) == 0 ? headOf(text) : text);
  };
}

}  // namespace trelvo::test
