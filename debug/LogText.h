#pragma once

#include <cstddef>

namespace trelvo {

/// Room for the time texts and the process's name that a platform writes.
constexpr std::size_t kPlatformTextSize = 64;

/// The head of a line: time, thread number, component, prefix.
constexpr const char* kLineHead = "%s %d %-12s %s ";

constexpr const char* orEmpty(const char* text) noexcept { return text == nullptr ? "" : text; }

/// The format that a platform's log gets: prefix and format with a blank between them, in a block
/// of 128 bytes.
class PlatformFormat {
 public:
  PlatformFormat(const char* prefix, const char* format);

  const char* text() const noexcept { return m_text; }

 private:
  char m_text[128] = "";
};

}  // namespace trelvo
