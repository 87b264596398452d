#include <pty.h>
#include <sys/stat.h>
#include <termios.h>
#include <trelvo/ICryptoLog.h>
#include <unistd.h>

#include <csignal>

#include "tests/tools/CryptoFixture.h"

namespace trelvo::tool {
namespace {

class LogCommand : public CryptoFixture {
 protected:
  static Bytes bytes(const std::string& text) { return {text.begin(), text.end()}; }

  Outcome write(const std::string& text, std::vector<std::string> options = {}) const {
    std::vector<std::string> line = {"log", "write", "--key", key("public.pem")};
    line.insert(line.end(), options.begin(), options.end());
    line.push_back(path("a.slog"));
    return runTool(line, bytes(text));
  }

  Outcome decrypt(const std::string& keyName, std::vector<std::string> options = {}) const {
    std::vector<std::string> line = {"log", "decrypt", "--key", key(keyName)};
    line.insert(line.end(), options.begin(), options.end());
    line.insert(line.end(), {path("a.slog"), path("text")});
    return runTool(line);
  }

  void expectText(const std::string& text) const {
    const Outcome outcome = decrypt("private_pkcs1.pem");
    EXPECT_EQ(outcome.status, kExitGood);
    EXPECT_EQ(outcome.out + outcome.err, "");
    EXPECT_EQ(textOf(path("text")), text);
  }

  void expectRefused(const Outcome& outcome, const std::string& message) const {
    EXPECT_EQ(outcome.status, kExitFailed);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "trelvo: " + message + "\n");
    EXPECT_FALSE(exists(path("text")));
  }
};

TEST_F(LogCommand, WhatIsWrittenComesBack) {
  std::string many;
  for (int i = 0; i < 30000; ++i) {
    many += "line " + std::to_string(i) + "\n";
  }
  const std::string wide(200000, 'x');
  for (const std::string& text :
       {std::string(), std::string("\n"), std::string("one"), std::string("one\ntwo\n"),
        std::string("one\n\n\ntwo"), wide, wide + "\n" + wide, many}) {
    for (const char* every : {"0", "1", "7", "10"}) {
      const Outcome outcome = write(text, {"--flush", every});
      EXPECT_EQ(outcome.status, kExitGood);
      EXPECT_EQ(outcome.out + outcome.err, "");
      expectText(text);
    }
  }
}

TEST_F(LogCommand, NothingOfTheTextStandsInTheFile) {
  write("a secret line\n");
  EXPECT_EQ(textOf(path("a.slog")).find("secret"), std::string::npos);
}

TEST_F(LogCommand, TheLibraryReadsIt) {
  write("one\ntwo\n");
  EXPECT_EQ(ICryptoLog::decrypt(path("a.slog").c_str(), path("text").c_str(),
                                key("private_pkcs8.pem").c_str(), {}),
            StatusOk);
  EXPECT_EQ(textOf(path("text")), "one\ntwo\n");
}

TEST_F(LogCommand, NewLogsAreForTheirOwnerAndOldOnesKeepTheirMode) {
  const mode_t before = ::umask(0);
  write("text\n");
  EXPECT_EQ(modeOf(path("a.slog")), 0600U);
  ::chmod(path("a.slog").c_str(), 0640);
  write("other\n");
  EXPECT_EQ(modeOf(path("a.slog")), 0640U);
  expectText("other\n");
  EXPECT_EQ(modeOf(path("text")), 0666U);
  ::chmod(path("text").c_str(), 0604);
  expectText("other\n");
  EXPECT_EQ(modeOf(path("text")), 0604U);
  ::umask(before);
}

// Each flush brings its lines to the file while the input goes on.
TEST_F(LogCommand, LinesAreFlushedAsTheyCome) {
  const Outcome outcome =
      shell("mkfifo in; $TRELVO log write --key " + key("public.pem") +
            " --flush 2 a.slog <in & exec 3>in\n"
            "decrypted() { $TRELVO log decrypt --key " +
            key("private_pkcs1.pem") +
            " a.slog -; }\n"
            "printf '1\\n2\\n3\\n' >&3\n"
            "until [ \"$(decrypted 2>/dev/null)\" = \"$(printf '1\\n2')\" ]; do sleep 0.01; done\n"
            "printf '4' >&3; printf '\\n' >&3\n"
            "until [ \"$(decrypted)\" = \"$(printf '1\\n2\\n3\\n4')\" ]; do sleep 0.01; done\n"
            "printf '5' >&3; exec 3>&-; wait $!; decrypted");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out, "1\n2\n3\n4\n5");
}

TEST_F(LogCommand, WhatWasFlushedSurvivesAKill) {
  const Outcome outcome =
      shell("mkfifo in; $TRELVO log write --key " + key("public.pem") +
            " --flush 1 a.slog <in & exec 3>in; echo one >&3\n"
            "decrypted() { $TRELVO log decrypt --key " +
            key("private_pkcs1.pem") +
            " a.slog -; }\n"
            "until [ \"$(decrypted 2>/dev/null)\" = one ]; do sleep 0.01; done\n"
            "kill -9 $!; wait $! 2>/dev/null; decrypted");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out, "one\n");
}

TEST_F(LogCommand, TextGoesThroughPipes) {
  file("plain", std::string(300000, 'a') + "\nend\n");
  const Outcome outcome = shell("cat plain | $TRELVO log write --key " + key("public.pem") +
                                " a.slog && $TRELVO log decrypt --key " + key("private_pkcs8.pem") +
                                " a.slog - | cmp - plain && echo same");
  EXPECT_EQ(outcome.out, "same\n");
}

// A redirection that appends must not lose what is there.
TEST_F(LogCommand, StandardOutputIsWrittenWhereItStands) {
  write("new\n");
  const Outcome outcome = shell("echo old >all; $TRELVO log decrypt --key " +
                                key("private_pkcs1.pem") + " a.slog - >>all; cat all");
  EXPECT_EQ(outcome.out, "old\nnew\n");
}

TEST_F(LogCommand, AReaderThatLeavesEarlyIsNoFailure) {
  write(std::string(3000000, 'a'));
  const Outcome outcome =
      shell("{ $TRELVO log decrypt --key " + key("private_pkcs1.pem") +
            " a.slog - 2>err; echo $? >>err; } | head -c 9 >/dev/null; cat err");
  EXPECT_EQ(outcome.out, "0\n");
}

TEST_F(LogCommand, ANulByteEndsTheLogWithWhatStandsAheadOfIt) {
  const Outcome outcome = write(std::string("one\ntw\0o\nthree\n", 14));
  expectRefused(outcome, "standard input: has a NUL byte in line 2; a log holds text only");
  expectText("one\ntw");
}

TEST_F(LogCommand, AKeyThatIsNoPublicOneIsTold) {
  for (const char* name : {"private_pkcs1.pem", "ec_public.pem", "certificate.pem"}) {
    const Outcome outcome =
        runTool({"log", "write", "--key", key(name), path("a.slog")}, bytes("text"));
    expectRefused(outcome, key(name) +
                               ": holds no usable public RSA key; make one by openssl rsa "
                               "-in PRIV.pem -pubout");
    EXPECT_FALSE(exists(path("a.slog")));
  }
  expectRefused(runTool({"log", "write", "--key", path("none"), path("a.slog")}),
                path("none") + ": No such file or directory");
}

TEST_F(LogCommand, ALogThatCannotBeMadeIsTold) {
  expectRefused(runTool({"log", "write", "--key", key("public.pem"), path("none/a.slog")}),
                path("none/a.slog") + ": No such file or directory");
}

TEST_F(LogCommand, AFullDiskIsTold) {
  const Bytes noise = bytesFor(60000);
  std::string text;
  for (const unsigned char byte : noise) {
    text += static_cast<char>(byte == 0 ? 1 : byte);
  }
  file("input", text);
  const Outcome outcome = shell("ulimit -f 8; trap '' XFSZ; $TRELVO log write --key " +
                                key("public.pem") + " a.slog <input 2>&1");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, "trelvo: a.slog: File too large\n");
}

TEST_F(LogCommand, AFullDeviceIsToldOnDecrypting) {
  write(std::string(500000, 'a'));
  const Outcome outcome =
      runTool({"log", "decrypt", "--key", key("private_pkcs1.pem"), path("a.slog"), "/dev/full"});
  expectRefused(outcome, "/dev/full: No space left on device");
}

TEST_F(LogCommand, AFileThatIsNoLogIsTold) {
  Wire claims;
  claims.u16(256).text(std::string(255, 'x'));
  for (const Bytes& content :
       {Bytes{}, Bytes{0}, bytes("plain text of some length, but no encrypted log at all"),
        Bytes{0, 0}, Bytes{73, 0}, Bytes{1, 8}, Bytes(claims)}) {
    file("a.slog", content);
    expectRefused(
        decrypt("private_pkcs1.pem"),
        path("a.slog") + ": is no encrypted log; give a file that trelvo log write wrote");
  }
  EXPECT_EQ(
      runTool({"log", "decrypt", "--key", key("private_pkcs1.pem"), path("none"), path("text")})
          .err,
      "trelvo: " + path("none") + ": No such file or directory\n");
  EXPECT_EQ(
      runTool({"log", "decrypt", "--key", key("private_pkcs1.pem"), m_folder, path("text")}).err,
      "trelvo: " + m_folder.string() + ": Is a directory\n");
}

TEST_F(LogCommand, AWrongKeyIsTold) {
  write("text\n");
  expectRefused(decrypt("other_private.pem"),
                key("other_private.pem") + ": does not open " + path("a.slog") +
                    "; give the private key whose public half the log was written with");
}

TEST_F(LogCommand, AKeyFileWithoutAPrivateKeyIsTold) {
  write("text\n");
  expectRefused(decrypt("public.pem"),
                key("public.pem") + ": holds no private key; give a PEM file that does");
  expectRefused(decrypt("none.pem"), key("none.pem") + ": No such file or directory");
  expectRefused(decrypt("ec_private.pem"), key("ec_private.pem") + ": holds no usable RSA key");
}

TEST_F(LogCommand, ADamagedLogGivesWhatStandsAheadOfTheDamage) {
  std::string text;
  for (int i = 0; i < 20000; ++i) {
    text += "line " + std::to_string(i * 7919) + "\n";
  }
  write(text);
  Bytes content = bytesOf(path("a.slog"));
  content[content.size() / 2] = static_cast<unsigned char>(~content[content.size() / 2]);
  file("a.slog", content);
  const Outcome outcome = decrypt("private_pkcs1.pem");
  EXPECT_EQ(outcome.status, kExitFailed);
  EXPECT_EQ(outcome.err, "trelvo: " + path("a.slog") +
                             ": is damaged; the text ahead of the damage was written\n");
  const std::string ahead = textOf(path("text"));
  EXPECT_GT(ahead.size(), 1000U);
  EXPECT_EQ(ahead.substr(0, 1000), text.substr(0, 1000));
}

TEST_F(LogCommand, ALogThatEndsEarlyGivesWhatIsThere) {
  write("one\ntwo\n", {"--flush", "1"});
  std::filesystem::resize_file(path("a.slog"), bytesOf(path("a.slog")).size() - 4);
  expectText("one\ntwo\n");
}

TEST_F(LogCommand, TheLogMayBeReplacedByItsText) {
  write("text\n");
  const Outcome outcome = runTool(
      {"log", "decrypt", "--key", key("private_pkcs1.pem"), path("a.slog"), path("a.slog")});
  EXPECT_EQ(outcome.status, kExitGood) << outcome.err;
  EXPECT_EQ(textOf(path("a.slog")), "text\n");
}

TEST_F(LogCommand, ALogThatMayNotBeWrittenIsTold) {
  ASSERT_EQ(::chmod(m_folder.c_str(), 0777), 0);
  write("text\n");
  ASSERT_EQ(::chmod(path("a.slog").c_str(), 0444), 0);
  if (::geteuid() == 0) {
    ASSERT_EQ(::seteuid(65534), 0);
  }
  const Outcome outcome =
      runTool({"log", "decrypt", "--key", path("none"), path("a.slog"), path("text")});
  if (::getuid() == 0) {
    ASSERT_EQ(::seteuid(0), 0);
  }
  expectRefused(outcome, path("a.slog") +
                             ": Permission denied; reading a log needs leave to write, so make a "
                             "copy");
}

TEST_F(LogCommand, WrongUsageGives2AndAMessage) {
  const std::string in = file("a.slog", "text");
  const std::vector<std::vector<std::string>> lines = {
      {"log"},
      {"log", "read"},
      {"log", "write"},
      {"log", "write", path("out")},
      {"log", "write", "--key", key("public.pem")},
      {"log", "write", "--key", key("public.pem"), "-"},
      {"log", "write", "--key", key("public.pem"), "--flush", "-1", path("out")},
      {"log", "write", "--key", key("public.pem"), "--flush", "often", path("out")},
      {"log", "decrypt", in, path("out")},
      {"log", "decrypt", "--key", key("private_pkcs1.pem"), in},
      {"log", "decrypt", "--key", key("private_pkcs1.pem"), "-", path("out")},
      {"log", "decrypt", "--key", key("private_pkcs1.pem"), "--passphrase", "x", in, path("out")},
      {"log", "decrypt", "--key", key("private_pkcs1.pem"), "--passphrase-env", "V",
       "--passphrase-file", "F", in, path("out")},
  };
  for (const std::vector<std::string>& line : lines) {
    const Outcome outcome = runTool(line);
    EXPECT_EQ(outcome.status, kExitUsage) << ::testing::PrintToString(line);
    EXPECT_EQ(outcome.out, "") << ::testing::PrintToString(line);
    EXPECT_EQ(outcome.err.rfind("trelvo: ", 0), 0U) << outcome.err;
  }
  EXPECT_FALSE(exists(path("out")));
}

TEST_F(LogCommand, HelpHasExamples) {
  for (const std::vector<std::string>& line : {std::vector<std::string>{"log", "--help"},
                                               {"log", "write", "--help"},
                                               {"log", "decrypt", "--help"}}) {
    const Outcome outcome = runTool(line);
    EXPECT_EQ(outcome.status, kExitGood);
    EXPECT_NE(outcome.out.find("trelvo log "), std::string::npos);
    EXPECT_NE(outcome.out.find("Examples:"), std::string::npos);
  }
}

class LogPassphrase : public LogCommand, public ::testing::WithParamInterface<const char*> {
 protected:
  LogPassphrase() { write("text\n"); }

  std::string protectedKey() const { return key(GetParam()); }

  void expectOpens(const std::vector<std::string>& options) const {
    const Outcome outcome = decrypt(GetParam(), options);
    EXPECT_EQ(outcome.status, kExitGood);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(textOf(path("text")), "text\n");
    std::filesystem::remove(path("text"));
  }
};

TEST_P(LogPassphrase, ComesFromTheFirstLineOfAFile) {
  const std::string phrase = kPassPhrase;
  for (const std::string& content : {phrase, phrase + "\n", phrase + "\r\n", phrase + "\nmore\n"}) {
    expectOpens({"--passphrase-file", file("phrase", content)});
  }
}

TEST_P(LogPassphrase, ComesFromAnEnvironmentVariable) {
  ::setenv("TRELVO_TEST_PHRASE", kPassPhrase, 1);
  expectOpens({"--passphrase-env", "TRELVO_TEST_PHRASE"});
}

TEST_P(LogPassphrase, AWrongOneIsTold) {
  const std::string message = protectedKey() + ": wrong pass phrase";
  for (const char* wrong : {"open sesam", "", "Open sesame", "open sesame "}) {
    expectRefused(decrypt(GetParam(), {"--passphrase-file", file("phrase", wrong)}), message);
    ::setenv("TRELVO_TEST_PHRASE", wrong, 1);
    expectRefused(decrypt(GetParam(), {"--passphrase-env", "TRELVO_TEST_PHRASE"}), message);
  }
}

TEST_P(LogPassphrase, WhatIsNoLineOfTextIsTold) {
  expectRefused(decrypt(GetParam(), {"--passphrase-file", path("none")}),
                path("none") + ": No such file or directory");
  expectRefused(decrypt(GetParam(), {"--passphrase-file", m_folder}),
                m_folder.string() + ": Is a directory");
  const std::string longest(1024, 'x');
  expectRefused(decrypt(GetParam(), {"--passphrase-file", file("phrase", longest)}),
                protectedKey() + ": wrong pass phrase");
  expectRefused(decrypt(GetParam(), {"--passphrase-file", file("phrase", longest + "x")}),
                path("phrase") + ": Message too long");
  expectRefused(
      decrypt(GetParam(), {"--passphrase-file", file("phrase", Bytes{'a', 0, 'b', '\n'})}),
      path("phrase") + ": Invalid or incomplete multibyte or wide character");
  ::unsetenv("TRELVO_TEST_PHRASE");
  expectRefused(decrypt(GetParam(), {"--passphrase-env", "TRELVO_TEST_PHRASE"}),
                "environment variable TRELVO_TEST_PHRASE: is not set; put the pass phrase there");
}

TEST_P(LogPassphrase, WithoutATerminalNobodyIsAsked) {
  const Outcome outcome =
      shell("$TRELVO log decrypt --key " + protectedKey() + " a.slog text 2>&1 </dev/null");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, "trelvo: " + protectedKey() +
                             ": is protected, and there is no terminal to ask for the pass phrase; "
                             "use --passphrase-file or --passphrase-env\n");
  EXPECT_FALSE(exists(path("text")));
}

/// A run of the program on a terminal of its own.
class Terminal {
 public:
  explicit Terminal(const std::vector<std::string>& arguments) {
    int descriptor = -1;
    m_child = ::forkpty(&descriptor, nullptr, nullptr, nullptr);
    if (m_child == 0) {
      std::vector<char*> argv;
      for (const std::string& argument : arguments) {
        argv.push_back(const_cast<char*>(argument.c_str()));
      }
      argv.push_back(nullptr);
      ::execv(TRELVO_PROGRAM, argv.data());
      ::_exit(127);
    }
    m_terminal = UniqueFd(descriptor);
  }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;
  ~Terminal() {
    if (m_child > 0) {
      ::kill(m_child, SIGKILL);
      ::waitpid(m_child, nullptr, 0);
    }
  }

  /// Waits until the program has printed `text`.
  void expect(const std::string& text) {
    while (m_output.find(text) == std::string::npos && readMore()) {
    }
    EXPECT_NE(m_output.find(text), std::string::npos) << m_output;
  }

  void type(const std::string& text) {
    EXPECT_EQ(::write(m_terminal.get(), text.data(), text.size()),
              static_cast<ssize_t>(text.size()));
  }

  bool shows() const {
    termios settings{};
    EXPECT_EQ(::tcgetattr(m_terminal.get(), &settings), 0);
    return (settings.c_lflag & ECHO) != 0;
  }

  /// Waits for the end. @return the status of waitpid(2).
  int end() {
    while (readMore()) {
    }
    int status = -1;
    EXPECT_EQ(::waitpid(m_child, &status, 0), m_child);
    m_child = -1;
    return status;
  }

  const std::string& output() const { return m_output; }

 private:
  bool readMore() {
    char block[256];
    const ssize_t got = ::read(m_terminal.get(), block, sizeof block);
    m_output.append(block, got > 0 ? static_cast<std::size_t>(got) : 0);
    return got > 0;
  }

  UniqueFd m_terminal;
  pid_t m_child = -1;
  std::string m_output;
};

TEST_P(LogPassphrase, IsAskedForAtTheTerminalAndNotShown) {
  Terminal terminal(
      {"trelvo", "log", "decrypt", "--key", protectedKey(), path("a.slog"), path("text")});
  terminal.expect("Pass phrase for " + protectedKey() + ": ");
  EXPECT_FALSE(terminal.shows());
  terminal.type(std::string(kPassPhrase) + "\n");
  const int status = terminal.end();
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
  EXPECT_EQ(terminal.output(), "Pass phrase for " + protectedKey() + ": \r\n");
  EXPECT_EQ(textOf(path("text")), "text\n");
}

TEST_P(LogPassphrase, AWrongOneAtTheTerminalIsTold) {
  Terminal terminal(
      {"trelvo", "log", "decrypt", "--key", protectedKey(), path("a.slog"), path("text")});
  terminal.expect(": ");
  terminal.type("sesame\n");
  EXPECT_EQ(WEXITSTATUS(terminal.end()), 1);
  EXPECT_NE(terminal.output().find("trelvo: " + protectedKey() + ": wrong pass phrase"),
            std::string::npos)
      << terminal.output();
  EXPECT_EQ(terminal.output().find("sesame"), std::string::npos);
}

TEST_P(LogPassphrase, AnInterruptLeavesTheTerminalAsItWas) {
  Terminal terminal(
      {"trelvo", "log", "decrypt", "--key", protectedKey(), path("a.slog"), path("text")});
  terminal.expect(": ");
  EXPECT_FALSE(terminal.shows());
  terminal.type("\x03");
  const int status = terminal.end();
  EXPECT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(WTERMSIG(status), SIGINT);
  EXPECT_TRUE(terminal.shows());
  EXPECT_FALSE(exists(path("text")));
}

INSTANTIATE_TEST_SUITE_P(Keys, LogPassphrase,
                         ::testing::Values("private_pkcs1_protected.pem",
                                           "private_pkcs8_protected.pem"));

TEST_F(LogCommand, AnUnprotectedKeyTakesAPassPhraseAndNeedsNone) {
  write("text\n");
  EXPECT_EQ(decrypt("private_pkcs1.pem", {"--passphrase-file", file("phrase", "any")}).status,
            kExitGood);
  EXPECT_EQ(textOf(path("text")), "text\n");
}

}  // namespace
}  // namespace trelvo::tool
