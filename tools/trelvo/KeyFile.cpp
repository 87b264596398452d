#include "tools/trelvo/KeyFile.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string_view>

#include "tools/trelvo/Failure.h"
#include "tools/trelvo/UniqueFd.h"

namespace trelvo::tool {

namespace {

/// The start of a file; wiped, since it may hold an unprotected key.
class KeyText {
 public:
  explicit KeyText(const std::string& path) {
    const UniqueFd file = openForReading(path.c_str());
    ssize_t got = file ? 1 : -1;
    while (got > 0 && m_size < sizeof m_text) {
      got = ::read(file.get(), m_text + m_size, sizeof m_text - m_size);
      m_size += got > 0 ? static_cast<std::size_t>(got) : 0;
    }
    if (got < 0) {
      throw Failure(path + ": " + std::strerror(errno));
    }
  }
  ~KeyText() { ::explicit_bzero(m_text, sizeof m_text); }
  KeyText(const KeyText&) = delete;
  KeyText& operator=(const KeyText&) = delete;

  bool has(std::string_view words) const {
    return std::string_view(m_text, m_size).find(words) != std::string_view::npos;
  }

 private:
  char m_text[32768] = {};
  std::size_t m_size = 0;
};

}  // namespace

KeyFile inspectKeyFile(const std::string& path) {
  const KeyText text(path);
  if (!text.has("PRIVATE KEY-----")) {
    throw Failure(path + ": holds no private key; give a PEM file that does");
  }
  return {text.has("ENCRYPTED")};
}

}  // namespace trelvo::tool
