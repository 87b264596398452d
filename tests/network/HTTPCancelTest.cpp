// cancel(): from another thread, at every stage of a transfer.

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "tests/network/HTTPSupport.h"

namespace {

/// A name server that keeps quiet about "quiet.invalid" until somebody lets it speak.
class QuietNames {
 public:
  /// Called where a name is asked for.
  void wait() {
    std::unique_lock<std::mutex> lock(m_mutex);
    m_asked = true;
    m_changed.notify_all();
    m_changed.wait(lock, [this] { return m_mayAnswer; });
  }
  void waitUntilAsked() {
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait(lock, [this] { return m_asked; });
  }
  void answer() {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_mayAnswer = true;
    m_changed.notify_all();
  }

 private:
  std::mutex m_mutex;
  std::condition_variable m_changed;
  bool m_asked = false;      // guarded by m_mutex
  bool m_mayAnswer = false;  // guarded by m_mutex
};

// Never destroyed: libcurl's resolver thread may outlive the test.
QuietNames& quietNames() {
  static auto* const names = new QuietNames;
  return *names;
}

}  // namespace

// Takes the place of the C library's for the whole process.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): its names are reserved ones
extern "C" __attribute__((visibility("default"))) int getaddrinfo(const char* name,
                                                                  const char* service,
                                                                  const addrinfo* hints,
                                                                  addrinfo** result) {
  if (name != nullptr && std::strcmp(name, "quiet.invalid") == 0) {
    quietNames().wait();
    return EAI_NONAME;
  }
  static const auto next =
      reinterpret_cast<decltype(&getaddrinfo)>(dlsym(RTLD_NEXT, "getaddrinfo"));
  return next(name, service, hints, result);
}

namespace trelvo::test {
namespace {

using std::chrono::steady_clock;

// Two seconds are promised; a busy machine gets more.
constexpr auto kSoon = std::chrono::seconds(10);

class HTTPCancel : public HTTPTest {
 protected:
  /// Downloads on a thread of its own, calls `meanwhile`, cancels, and expects that the download
  /// soon ends as cancelled.
  void cancelDownload(const std::function<void()>& meanwhile) {
    Status status = StatusOk;
    std::thread transfer([&] { status = download(); });
    meanwhile();
    const auto before = steady_clock::now();
    request->cancel();
    transfer.join();
    EXPECT_LT(steady_clock::now() - before, kSoon);
    EXPECT_EQ(status, StatusCancelled);
    EXPECT_EQ(bytes, kUntouched);
    EXPECT_TRUE(request->isCancelled());
    server.reset();  // its script may use what the test owns
  }

  /// Returns when the local file has something in it.
  void waitForContent() const {
    std::error_code missing;
    while (std::filesystem::file_size(local, missing) == 0 || missing) {
      std::this_thread::yield();
    }
  }

  /// Serves `sent` and then nothing, and cancels when the server has sent it.
  void cancelBehind(const std::string& sent) {
    std::atomic<bool> stalled = false;
    serve([&](const Peer& peer) {
      peer.request();
      peer.send(sent);
      stalled = true;
      peer.waitForClose();
    });
    cancelDownload([&] {
      while (!stalled) {
        std::this_thread::yield();
      }
    });
  }
};

TEST_F(HTTPCancel, EndsATransferAndLeavesAPartialFile) {
  serve([](const Peer& peer) {
    peer.request();
    peer.send("HTTP/1.1 200 OK\r\nContent-Length: 1000000000\r\n\r\nsome");
    peer.waitForClose();
  });
  cancelDownload([this] { waitForContent(); });
  EXPECT_EQ(contentOfFile(local), "some");
}

TEST_F(HTTPCancel, EndsATransferThatKeepsComing) {
  serve([](const Peer& peer) {
    peer.request();
    peer.send("HTTP/1.1 200 OK\r\n\r\n");
    while (peer.send(std::string(1000, 'x'))) {
    }
  });
  cancelDownload([this] { waitForContent(); });
}

TEST_F(HTTPCancel, EndsATransferThatStallsBeforeTheAnswer) { cancelBehind(""); }

TEST_F(HTTPCancel, EndsATransferThatStallsInTheStatusLine) { cancelBehind("HTTP/1.1 2"); }

TEST_F(HTTPCancel, EndsATransferThatStallsInTheHeaders) {
  cancelBehind("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n");
}

TEST_F(HTTPCancel, EndsATransferThatStallsInAChunk) {
  cancelBehind("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nab");
}

TEST_F(HTTPCancel, EndsEndlessInterimAnswers) {
  std::atomic<bool> sending = false;
  serve([&](const Peer& peer) {
    peer.request();
    while (peer.send("HTTP/1.1 100 Continue\r\n\r\n")) {
      sending = true;
    }
  });
  cancelDownload([&] {
    while (!sending) {
      std::this_thread::yield();
    }
  });
}

TEST_F(HTTPCancel, EndsATransferThatNeverConnects) {
  // Nobody accepts, and there is no room for another connection.
  const Descriptor listener(listenOnLoopback(0));
  sockaddr_in address{};
  socklen_t size = sizeof address;
  ASSERT_EQ(getsockname(listener.get(), reinterpret_cast<sockaddr*>(&address), &size), 0);
  const Descriptor first(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  ASSERT_EQ(::connect(first.get(), reinterpret_cast<sockaddr*>(&address), size), 0);

  std::atomic<bool> begun = false;
  connect("127.0.0.1:" + std::to_string(portOf(listener.get())));
  request->setAllowedConnectionType(1);
  manager.onStart = [&] { begun = true; };
  cancelDownload([&] {
    while (!begun) {
      std::this_thread::yield();
    }
  });
}

TEST_F(HTTPCancel, DoesNotWaitForTheNameServer) {
  connect("quiet.invalid");
  cancelDownload([] { quietNames().waitUntilAsked(); });
  request.reset();
  quietNames().answer();
}

TEST_F(HTTPCancel, EndsTheOtherRequestsToo) {
  serve([](const Peer& peer) {
    peer.request();
    peer.waitForClose();
  });
  unsigned int time = 7;
  std::thread canceller([this] {
    while (server->connections() == 0) {
      std::this_thread::yield();
    }
    request->cancel();
  });
  EXPECT_EQ(request->isAvailable("/a"), StatusCancelled);
  canceller.join();
  EXPECT_EQ(request->getRemoteFileModificationTime("/a", time), StatusCancelled);
  EXPECT_EQ(time, 7U);
}

TEST_F(HTTPCancel, LastsForEver) {
  serve(inTurn({found("")}, questions));
  request->cancel();
  unsigned int time = 7;
  EXPECT_EQ(request->isAvailable("/a"), StatusCancelled);
  EXPECT_EQ(request->getRemoteFileModificationTime("/a", time), StatusCancelled);
  EXPECT_EQ(download(), StatusCancelled);
  EXPECT_EQ(time, 7U);
  EXPECT_EQ(server->connections(), 0U);
}

TEST_F(HTTPCancel, MakesTheCallbacksRefuse) {
  connect("127.0.0.1");
  char text[] = "Content-Length: 1";
  EXPECT_EQ(network::HTTPRequest::receiveHeader(text, 1, 17, request.get()), 17U);
  EXPECT_EQ(network::HTTPRequest::receiveBody(text, 17, 1, request.get()), 17U);
  request->cancel();
  EXPECT_EQ(network::HTTPRequest::receiveHeader(text, 1, 17, request.get()), 0U);
  EXPECT_EQ(network::HTTPRequest::receiveBody(text, 17, 1, request.get()), 0U);
}

TEST_F(HTTPCancel, MayComeFromManyThreadsAtOnce) {
  serve([](const Peer& peer) {
    peer.request();
    peer.send("HTTP/1.1 200 OK\r\n\r\n");
    while (peer.send("x")) {
    }
  });
  cancelDownload([this] {
    while (server->connections() == 0) {
      std::this_thread::yield();
    }
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int i = 0; i < 4; ++i) {
      threads.emplace_back([this] {
        request->cancel();
        EXPECT_TRUE(request->isCancelled());
      });
    }
    for (std::thread& thread : threads) {
      thread.join();
    }
  });
}

}  // namespace
}  // namespace trelvo::test
