#include "tools/trelvo/DescriptorBuffer.h"

#include <algorithm>

namespace trelvo::tool {

DescriptorBuffer::int_type DescriptorBuffer::overflow(int_type character) {
  if (traits_type::eq_int_type(character, traits_type::eof())) {
    return traits_type::not_eof(character);
  }
  const char text = traits_type::to_char_type(character);
  return xsputn(&text, 1) == 1 ? character : traits_type::eof();
}

std::streamsize DescriptorBuffer::xsputn(const char* text, std::streamsize count) {
  constexpr std::streamsize kLargest = 1 << 30;
  const auto* bytes = reinterpret_cast<const unsigned char*>(text);
  std::streamsize put = 0;
  while (put < count) {
    const auto part = static_cast<unsigned int>(std::min(count - put, kLargest));
    const unsigned int taken = m_stream.write(bytes + put, part);
    put += taken;
    if (taken < part) {
      break;
    }
  }
  return put;
}

}  // namespace trelvo::tool
