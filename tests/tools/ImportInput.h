#pragma once

#include <gtest/gtest.h>
#include <trelvo/IStream.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>

namespace trelvo::tool {

/// A stream that only reads, from whatever `produce` gives: the next piece, empty at the end.
class ProducedStream : public IStream {
 public:
  explicit ProducedStream(std::function<std::string()> produce) : m_produce(std::move(produce)) {}

  /// Reads `text`.
  explicit ProducedStream(std::string text) : m_piece(std::move(text)) {}

  bool good() const override { return true; }
  bool seekFromStart(unsigned int) override { return false; }
  bool seekFromEnd(unsigned int) override { return false; }
  unsigned int offset() const override { return 0; }
  bool eof() const override { return false; }
  bool getSize(unsigned int&) override { return false; }
  bool canRead() const override { return true; }
  bool canSeek() const override { return false; }
  bool canWrite() const override { return false; }
  bool flush() override { return false; }
  unsigned int write(const unsigned char*, unsigned int) override { return 0; }

  unsigned int read(unsigned char* target, unsigned int count) override {
    unsigned int done = 0;
    while (done < count && (m_position < m_piece.size() || refill())) {
      const auto part = std::min<size_t>(count - done, m_piece.size() - m_position);
      std::memcpy(target + done, m_piece.data() + m_position, part);
      m_position += part;
      done += static_cast<unsigned int>(part);
    }
    return done;
  }

 private:
  bool refill() {
    m_piece = m_produce ? m_produce() : std::string();
    m_position = 0;
    return !m_piece.empty();
  }

  std::function<std::string()> m_produce;
  std::string m_piece;
  size_t m_position = 0;
};

inline std::string examplePath(const std::string& name) {
  return std::string(TRELVO_TEST_DATA) + "/../examples/data/" + name;
}

inline std::string readExample(const std::string& name) {
  std::ifstream file(examplePath(name), std::ios::binary);
  EXPECT_TRUE(file.good()) << name;
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

/// A sentence with its checksum and line end: "GPGGA,..." gives "$GPGGA,...*hh\r\n".
inline std::string sentence(const std::string& body) {
  int sum = 0;
  for (const char c : body) {
    sum ^= static_cast<unsigned char>(c);
  }
  char text[8];
  std::snprintf(text, sizeof text, "*%02X\r\n", static_cast<unsigned int>(sum));
  return "$" + body + text;
}

}  // namespace trelvo::tool
