#pragma once

#include <trelvo/IStream.h>

#include <string>
#include <string_view>
#include <vector>

namespace trelvo::tool {

/// Where something stands in the input: the file's name as given, and the line, from 1.
struct ImportPlace {
  std::string_view file;
  unsigned long long line;
};

/// The bytes of one input, read once from front to back through a block of fixed size.
///
/// Ownership: the stream must outlive the source.
/// Failures: a stream that cannot be read any further counts as ended; ask the stream for the
/// reason. Threads: one at a time.
class ImportSource {
 public:
  /// What peek() and next() give behind the last byte.
  static constexpr int kEnd = -1;

  ImportSource(IStream& stream, std::string name);

  /// The next byte, 0 to 255, without taking it, or kEnd.
  int peek() { return m_position < m_filled || fill() ? m_block[m_position] : kEnd; }

  /// Takes the next byte, 0 to 255, or gives kEnd.
  int next();

  /// The first bytes of the input, as many as the block holds; meant for telling the format before
  /// anything is taken. The view is valid until the next call.
  std::string_view start();

  const std::string& name() const { return m_name; }

  /// Bytes taken so far.
  unsigned long long offset() const { return m_offset; }

  /// The line that the next byte stands in, from 1. A line ends with a line feed.
  unsigned long long line() const { return m_line; }

  ImportPlace place() const { return {m_name, m_line}; }

 private:
  bool fill();

  IStream& m_stream;
  std::string m_name;
  std::vector<unsigned char> m_block;
  size_t m_position = 0;
  size_t m_filled = 0;
  unsigned long long m_offset = 0;
  unsigned long long m_line = 1;
};

}  // namespace trelvo::tool
