// The plain cases against a server that nobody here wrote.

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <boost/crc.hpp>
#include <csignal>
#include <filesystem>
#include <string>
#include <system_error>
#include <thread>

#include <trelvo/core/Directory.h>

#include "tests/network/HTTPSupport.h"

namespace trelvo::test {
namespace {

/// nginx on a free port of the loopback interface, with all its files in one directory. It ends
/// with its owner, or else with the thread that started it.
class Nginx {
 public:
  explicit Nginx(const TemporaryDirectory& directory) {
    // It takes over a socket that listens already, so there is no port to guess and nothing to
    // wait for.
    const Descriptor listener(listenOnLoopback(16));
    m_address = "127.0.0.1:" + std::to_string(portOf(listener.get()));
    const Descriptor inherited(dup(listener.get()));
    const std::string variable = "NGINX=" + std::to_string(inherited.get()) + ";";
    const std::string config = directory.path("nginx.conf");
    const std::string prefix = directory.path("");
    std::filesystem::create_directory(directory.path("files"));
    writeFile(config, configuration());
    const char* const arguments[] = {TRELVO_NGINX,   "-p", prefix.c_str(), "-c",
                                     config.c_str(), "-e", "error.log",    nullptr};
    const char* const environment[] = {variable.c_str(), nullptr};
    m_process = fork();
    if (m_process == 0) {
      prctl(PR_SET_PDEATHSIG, SIGTERM);
      execve(TRELVO_NGINX, const_cast<char* const*>(arguments),
             const_cast<char* const*>(environment));
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
  access_log access.log;
  client_body_temp_path temp;
  proxy_temp_path temp;
  fastcgi_temp_path temp;
  uwsgi_temp_path temp;
  scgi_temp_path temp;
  root files;
  server {
    listen )" +
           address() +
           R"(;
    location /get-only/ {
      if ($request_method = HEAD) { return 405; }
      alias files/;
    }
    location /slow/ {
      alias files/;
      limit_rate 1k;
    }
    location /moved { return 301 /file; }
    location /refused { return 403; }
  }
}
)";
  }

  std::string m_address;
  pid_t m_process = -1;
};

class HTTPNginx : public HTTPTest {
 protected:
  HTTPNginx() : nginx(directory) {
    writeFile(directory.path("files/file"), body);
    connect(nginx.address());
  }

  Status get(const std::string& path) { return request->download(path, local, bytes); }

 public:
  std::string body = pattern(3000000);
  Nginx nginx;
};

TEST_F(HTTPNginx, DownloadsAFileWithItsChecksum) {
  boost::crc_32_type crc;
  crc.process_bytes(body.data(), body.size());
  request->setDataChecksum(crc.checksum(), 0, 3000000);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(get("/file"), StatusOk) << contentOfFile(directory.path("error.log"));
    EXPECT_EQ(bytes, 3000000U);
    EXPECT_TRUE(contentOfFile(local) == body);
  }
  request->setDataChecksum(crc.checksum() + 1, 0, 3000000);
  EXPECT_EQ(get("/file"), StatusChecksumMismatch);
}

TEST_F(HTTPNginx, DownloadsAnEmptyFile) {
  writeFile(directory.path("files/empty"), "");
  EXPECT_EQ(get("/empty"), StatusOk);
  EXPECT_EQ(bytes, 0U);
}

TEST_F(HTTPNginx, KnowsWhatIsThere) {
  EXPECT_EQ(request->isAvailable("/file"), StatusOk);
  EXPECT_EQ(request->isAvailable("/missing"), StatusNotFound);
  EXPECT_EQ(request->isAvailable("/moved"), StatusNotFound);
  EXPECT_EQ(request->isAvailable("/refused"), StatusNotFound);
  EXPECT_EQ(request->isAvailable("/get-only/file"), StatusOk);
  EXPECT_EQ(get("/missing"), StatusNotFound);
  EXPECT_EQ(get("/moved"), StatusFailed);
  EXPECT_EQ(get("/refused"), StatusFailed);
}

TEST_F(HTTPNginx, KnowsWhenAFileWasChanged) {
  ASSERT_TRUE(core::Directory::setFileModificationTime(directory.path("files/file"), 1234567890));
  unsigned int time = 0;
  EXPECT_EQ(request->getRemoteFileModificationTime("/file", time), StatusOk);
  EXPECT_EQ(time, 1234567890U);
  EXPECT_EQ(request->getRemoteFileModificationTime("/get-only/file", time), StatusOk);
  EXPECT_EQ(time, 0xFFFFFFFFU);
  EXPECT_EQ(request->getRemoteFileModificationTime("/missing", time), StatusNotFound);
  EXPECT_EQ(time, 0U);
}

TEST_F(HTTPNginx, IsLeftInTheMiddleOfASlowFile) {
  std::thread canceller([this] {
    std::error_code missing;
    while (std::filesystem::file_size(local, missing) == 0 || missing) {
      std::this_thread::yield();
    }
    request->cancel();
  });
  EXPECT_EQ(get("/slow/file"), StatusCancelled);
  canceller.join();
  EXPECT_LT(contentOfFile(local).size(), body.size());
  EXPECT_EQ(body.compare(0, contentOfFile(local).size(), contentOfFile(local)), 0);
}

}  // namespace
}  // namespace trelvo::test
