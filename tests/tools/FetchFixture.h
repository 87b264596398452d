#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tests/network/HTTPSupport.h"
#include "tests/tools/ToolFixture.h"

namespace trelvo::tool {

/// Runs `trelvo fetch` against a server of the test's own, on a machine without a system bus.
class FetchTest : public ::testing::Test {
 protected:
  FetchTest() {
    test::forgetProxies();
    ::setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent", 1);
  }

  void serve(test::ScriptedServer::Script script) {
    m_server = std::make_unique<test::ScriptedServer>(std::move(script));
  }
  void serveInTurn(std::vector<std::string> answers) {
    serve(test::inTurn(std::move(answers), questions));
  }

  std::string url() const { return "http://" + m_server->address() + "/file"; }

  /// Runs `trelvo fetch URL -o OUTPUT MORE...`.
  Outcome fetch(const std::vector<std::string>& more = {}) const {
    std::vector<std::string> arguments = {"fetch", url(), "-o", output};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return runTool(arguments);
  }

  void expectFailure(const Outcome& outcome, const std::string& problem) const {
    EXPECT_EQ(outcome.status, kExitFailed);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "trelvo: " + url() + ": " + problem + "\n");
    EXPECT_EQ(leftovers(), std::vector<std::string>());
  }

  /// The files beside those that the test made by file().
  std::vector<std::string> leftovers() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(m_work.path(""))) {
      names.push_back(entry.path().filename());
    }
    return names;
  }

  std::string content() const { return test::contentOfFile(output); }

  /// A file with `content`, away from the output.
  std::string file(const std::string& name, const std::string& content) const {
    test::writeFile(m_side.path(name), content);
    return m_side.path(name);
  }
  std::string sidePath(const std::string& name) const { return m_side.path(name); }

  test::Questions questions;

 private:
  test::TemporaryDirectory m_work;
  test::TemporaryDirectory m_side;
  std::unique_ptr<test::ScriptedServer> m_server;  // its script uses what stands above

 protected:
  const std::string output = m_work.path("output");
};

}  // namespace trelvo::tool
