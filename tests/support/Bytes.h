#pragma once

#include <gtest/gtest.h>

#include <stdexcept>
#include <string_view>
#include <vector>

#include <trelvo/BufferStream.h>

namespace trelvo::test {

using Bytes = std::vector<unsigned char>;

/// The bytes that `hex` spells: two digits each, white space anywhere between them. Throws
/// std::invalid_argument for anything else, so that a slip in a test does not pass for fewer bytes.
inline Bytes bytes(std::string_view hex) {
  constexpr std::string_view kDigits = "0123456789abcdef0123456789ABCDEF";
  constexpr std::string_view kBlanks = " \t\r\n";
  Bytes result;
  unsigned int value = 0;
  bool half = false;
  for (const char c : hex) {
    const std::size_t digit = kDigits.find(c);
    if (digit == std::string_view::npos) {
      if (half || kBlanks.find(c) == std::string_view::npos) {
        throw std::invalid_argument("not hexadecimal digits in pairs");
      }
      continue;
    }
    value = value * 16 + static_cast<unsigned int>(digit % 16);
    half = !half;
    if (!half) {
      result.push_back(static_cast<unsigned char>(value));
      value = 0;
    }
  }
  if (half) {
    throw std::invalid_argument("an odd number of hexadecimal digits");
  }
  return result;
}

/// `parts`, one behind the other.
inline Bytes joined(std::initializer_list<Bytes> parts) {
  Bytes result;
  for (const Bytes& part : parts) {
    result.insert(result.end(), part.begin(), part.end());
  }
  return result;
}

/// The first `count` bytes.
inline Bytes head(const Bytes& content, std::size_t count) {
  return {content.begin(), content.begin() + static_cast<std::ptrdiff_t>(count)};
}

/// Writes `content` to `stream`; its read position is then 0.
inline void fill(BufferStream& stream, const Bytes& content) {
  EXPECT_EQ(stream.write(content.data(), static_cast<unsigned int>(content.size())),
            content.size());
}

/// All bytes that `stream` holds, wherever its read position stands.
inline Bytes contentOf(const BufferStream& stream) {
  const ReadOnlyBuffer& view = stream.buffer();
  return view.size() == 0 ? Bytes() : Bytes(view.data(), view.data() + view.size());
}

/// The wire form of `object`, whose write() must succeed.
template <class T>
Bytes written(const T& object) {
  BufferStream stream;
  EXPECT_TRUE(object.write(stream));
  return contentOf(stream);
}

/// What object.read() says to a stream of `content`.
template <class T>
[[nodiscard]] bool readFrom(T& object, const Bytes& content) {
  BufferStream stream;
  fill(stream, content);
  return object.read(stream);
}

}  // namespace trelvo::test
