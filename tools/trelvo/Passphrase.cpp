#include "tools/trelvo/Passphrase.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <new>

#include "tools/trelvo/Failure.h"
#include "tools/trelvo/TerminalPrompt.h"
#include "tools/trelvo/UniqueFd.h"

namespace trelvo::tool {

namespace {

gom::SharedPointer<Secret> secretOf(const char* text) {
  gom::SharedPointer<Secret> secret = Secret::create(text);
  if (!secret) {
    throw std::bad_alloc();
  }
  return secret;
}

gom::SharedPointer<Secret> fromFile(const std::string& path) {
  const UniqueFd file = openForReading(path.c_str());
  SecretLine line;
  if (!file || !line.read(file.get())) {
    throw Failure(path + ": " + std::strerror(errno));
  }
  return secretOf(line.text());
}

gom::SharedPointer<Secret> fromEnvironment(const std::string& variable) {
  const char* const text = std::getenv(variable.c_str());
  if (text == nullptr) {
    throw Failure("environment variable " + variable + ": is not set; put the pass phrase there");
  }
  return secretOf(text);
}

gom::SharedPointer<Secret> fromTerminal(const std::string& path) {
  SecretLine line;
  if (!promptSecret("Pass phrase for " + path + ": ", line)) {
    throw Failure(path +
                  ": is protected, and there is no terminal to ask for the pass phrase; use "
                  "--passphrase-file or --passphrase-env");
  }
  return secretOf(line.text());
}

}  // namespace

SecretLine::~SecretLine() { ::explicit_bzero(m_text, sizeof m_text); }

bool SecretLine::read(int descriptor) {
  char byte = '\0';
  ssize_t got = 0;
  bool goesOn = true;
  while (goesOn && (got = ::read(descriptor, &byte, 1)) > 0 && byte != '\n') {
    goesOn = take(byte);
  }
  byte = '\0';
  if (m_size > 0 && m_text[m_size - 1] == '\r') {
    m_text[--m_size] = '\0';
  }
  return goesOn && got >= 0;
}

bool SecretLine::take(char byte) {
  if (byte == '\0' || m_size + 1 == sizeof m_text) {
    errno = byte == '\0' ? EILSEQ : EMSGSIZE;
    return false;
  }
  m_text[m_size++] = byte;
  return true;
}

void addPassphraseOptions(CLI::App& command, PassphraseOptions& options) {
  CLI::Option* file = command.add_option("--passphrase-file", options.file,
                                         "File whose first line is the key's pass phrase");
  file->type_name("FILE");
  command
      .add_option("--passphrase-env", options.variable,
                  "Environment variable that holds the key's pass phrase")
      ->type_name("VAR")
      ->excludes(file);
}

gom::SharedPointer<Secret> passphraseFor(const PassphraseOptions& options, const std::string& path,
                                         const KeyFile& key) {
  if (!options.file.empty()) {
    return fromFile(options.file);
  }
  if (!options.variable.empty()) {
    return fromEnvironment(options.variable);
  }
  return key.isProtected ? fromTerminal(path) : gom::SharedPointer<Secret>();
}

}  // namespace trelvo::tool
