#include "PrivateBus.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <sys/prctl.h>

#include <gtest/gtest.h>

namespace trelvo::test {

namespace {

constexpr const char* kConfiguration = R"(<busconfig>
  <type>session</type>
  <listen>unix:path=%s/bus</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

std::string freshDirectory() {
  std::string directory = testing::TempDir() + "trelvo-bus-XXXXXX";
  if (mkdtemp(directory.data()) == nullptr) throw std::runtime_error("mkdtemp");
  return directory;
}

void check(const network::GioError& error, bool good) {
  if (!good) throw std::runtime_error(error.message());
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& arguments) {
  std::vector<const char*> words;
  for (const std::string& argument : arguments) words.push_back(argument.c_str());
  words.push_back(nullptr);
  GSubprocessLauncher* const launcher = g_subprocess_launcher_new(static_cast<GSubprocessFlags>(
      G_SUBPROCESS_FLAGS_STDOUT_PIPE | G_SUBPROCESS_FLAGS_STDERR_SILENCE));
  g_subprocess_launcher_set_child_setup(
      launcher, [](gpointer) { prctl(PR_SET_PDEATHSIG, SIGKILL); }, nullptr, nullptr);
  network::GioError error;
  m_process = g_subprocess_launcher_spawnv(launcher, words.data(), error.out());
  g_object_unref(launcher);
  check(error, m_process != nullptr);
}

ChildProcess::~ChildProcess() {
  g_subprocess_force_exit(m_process);
  g_subprocess_wait(m_process, nullptr, nullptr);
  g_object_unref(m_process);
}

std::string ChildProcess::readLine() {
  std::string line;
  char c = 0;
  GInputStream* const output = g_subprocess_get_stdout_pipe(m_process);
  while (g_input_stream_read(output, &c, 1, nullptr, nullptr) == 1 && c != '\n') line += c;
  return line;
}

void ChildProcess::signal(int number) { g_subprocess_send_signal(m_process, number); }

PrivateBus::PrivateBus() : m_directory(freshDirectory()) {
  const network::GioPointer<char> text(g_strdup_printf(kConfiguration, m_directory.c_str()));
  std::ofstream(m_directory + "/bus.conf") << text.get();
  setenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + m_directory + "/bus").c_str(), 1);
  start();
}

PrivateBus::~PrivateBus() {
  stop();
  std::filesystem::remove_all(m_directory);
}

void PrivateBus::start() {
  m_daemon = std::make_unique<ChildProcess>(
      std::vector<std::string>{TRELVO_DBUS_DAEMON, "--config-file=" + m_directory + "/bus.conf",
                               "--nofork", "--nopidfile", "--print-address=1"});
  ASSERT_FALSE(m_daemon->readLine().empty());
  network::GioError error;
  m_connection.reset(g_dbus_connection_new_for_address_sync(
      std::getenv("DBUS_SYSTEM_BUS_ADDRESS"),
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
      nullptr, nullptr, error.out()));
  check(error, m_connection != nullptr);
}

void PrivateBus::stop() {
  m_connection.reset();
  m_daemon.reset();
  std::filesystem::remove(m_directory + "/bus");
}

void PrivateBus::waitForService(const char* service, bool owned) {
  if (m_connection == nullptr && !owned) return;  // without a bus there are no services
  int seen = -1;
  const guint watch = g_bus_watch_name_on_connection(
      m_connection.get(), service, G_BUS_NAME_WATCHER_FLAGS_NONE,
      [](GDBusConnection*, const char*, const char*, gpointer data) {
        *static_cast<int*>(data) = 1;
      },
      [](GDBusConnection*, const char*, gpointer data) { *static_cast<int*>(data) = 0; }, &seen,
      nullptr);
  while (seen != (owned ? 1 : 0)) g_main_context_iteration(nullptr, TRUE);
  g_bus_unwatch_name(watch);
}

void PrivateBus::call(const char* service, const std::string& path, const char* interface,
                      const char* method, GVariant* arguments) {
  network::GioError error;
  const network::GioPointer<GVariant> reply(g_dbus_connection_call_sync(
      m_connection.get(), service, path.c_str(), interface, method, arguments, nullptr,
      G_DBUS_CALL_FLAGS_NONE, -1, nullptr, error.out()));
  check(error, reply != nullptr);
}

}  // namespace trelvo::test
