#pragma once

#include <string>

#include <trelvo/ICryptoLog.h>

#include "tests/core/TempDirectory.h"
#include "tests/crypto/BlockFile.h"
#include "tests/support/Bytes.h"

namespace trelvo::test {

/// A file of tests/crypto/golden.
inline std::string goldenFile(const std::string& name) {
  return std::string(TRELVO_TEST_DATA) + "/crypto/golden/" + name;
}

inline const std::string& publicKey() {
  static const std::string path = goldenFile("public.pem");
  return path;
}

inline const std::string& privateKey() {
  static const std::string path = goldenFile("private.pem");
  return path;
}

/// Decrypts `logPath`, with the golden key, to a file beside it. @return the status.
inline Status decryptLog(const std::string& logPath, const std::string& textPath) {
  return ICryptoLog::decrypt(logPath.c_str(), textPath.c_str(), privateKey().c_str(), {});
}

/// The text of a log that has to be in order.
inline std::string textOf(const std::string& logPath) {
  const std::string textPath = logPath + ".txt";
  EXPECT_EQ(decryptLog(logPath, textPath), StatusOk);
  const Bytes text = bytesOfFile(textPath);
  return {text.begin(), text.end()};
}

}  // namespace trelvo::test
