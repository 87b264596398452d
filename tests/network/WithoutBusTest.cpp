#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <trelvo/network/Connectivity.h>
#include <trelvo/network/IConnectionManager.h>

namespace trelvo {
namespace {

using com::ubuntu::location::connectivity::platform_default_manager;

class WithoutBus : public testing::Test {
 protected:
  WithoutBus() {
    if (mkdtemp(directory.data()) == nullptr) throw std::runtime_error("mkdtemp");
    setenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + path()).c_str(), 1);
  }
  ~WithoutBus() override { std::filesystem::remove_all(directory); }

  std::string path() const { return directory + "/bus"; }

  std::string directory = testing::TempDir() + "trelvo-nobus-XXXXXX";
};

TEST_F(WithoutBus, TheManagerIsRefusedWithARuntimeError) {
  EXPECT_THROW(platform_default_manager(), std::runtime_error);
}

TEST_F(WithoutBus, AnAddressThatIsNoneIsRefusedToo) {
  setenv("DBUS_SYSTEM_BUS_ADDRESS", "nonsense", 1);
  EXPECT_THROW(platform_default_manager(), std::runtime_error);
}

TEST_F(WithoutBus, TheConnectionManagerDoesNotOpen) {
  EXPECT_EQ(network::IConnectionManager::open(), nullptr);
}

/// Accepts connections, as the kernel does for a listening socket, and never says a word.
class SilentSocket {
 public:
  explicit SilentSocket(const std::string& path) : m_socket(socket(AF_UNIX, SOCK_STREAM, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    if (bind(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        listen(m_socket, 8) != 0) {
      throw std::runtime_error("listen");
    }
  }
  ~SilentSocket() { close(m_socket); }
  SilentSocket(const SilentSocket&) = delete;
  SilentSocket& operator=(const SilentSocket&) = delete;

 private:
  int m_socket;
};

TEST_F(WithoutBus, ABusThatNeverAnswersIsGivenUpSoon) {
  const SilentSocket silent(path());
  const auto start = std::chrono::steady_clock::now();
  EXPECT_THROW(platform_default_manager(), std::runtime_error);
  const auto waited = std::chrono::steady_clock::now() - start;
  EXPECT_GE(waited, std::chrono::seconds(1));
  EXPECT_LT(waited, std::chrono::seconds(10));  // two seconds, with room for a busy machine
}

}  // namespace
}  // namespace trelvo
