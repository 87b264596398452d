#pragma once

#include <trelvo/Secret.h>
#include <trelvo/gom/SharedPointer.h>
#include <CLI/CLI.hpp>

#include <cstddef>
#include <string>

#include "tools/trelvo/KeyFile.h"

namespace trelvo::tool {

/// Where the pass phrase of a key is. With nothing set, it is asked for where the key wants one.
struct PassphraseOptions {
  std::string file;
  std::string variable;
};

/// One line of text that is wiped when it dies.
class SecretLine {
 public:
  SecretLine() = default;
  SecretLine(const SecretLine&) = delete;
  SecretLine& operator=(const SecretLine&) = delete;
  ~SecretLine();

  /// Reads up to the end of a line or of the input, byte by byte so as to take nothing behind it.
  /// @return false, errno telling why, when reading failed or was interrupted; EMSGSIZE stands for
  ///         a line of more than 1024 bytes, EILSEQ for a NUL byte.
  bool read(int descriptor);

  /// The line without its end, NUL-terminated.
  const char* text() const { return m_text; }

 private:
  bool take(char byte);

  char m_text[1025] = {};
  std::size_t m_size = 0;
};

/// Adds `--passphrase-file FILE` and `--passphrase-env VAR`, of which one may be given.
void addPassphraseOptions(CLI::App& command, PassphraseOptions& options);

/// The pass phrase for the private key `key`, which lies in the file `path`; an empty handle when
/// it wants none and none was given. Throws Failure.
gom::SharedPointer<Secret> passphraseFor(const PassphraseOptions& options, const std::string& path,
                                         const KeyFile& key);

}  // namespace trelvo::tool
