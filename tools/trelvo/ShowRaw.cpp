#include "tools/trelvo/ShowRaw.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>

#include "tools/trelvo/ShowRecords.h"
#include "tools/trelvo/ShowValue.h"

namespace trelvo::tool {
namespace {

constexpr std::size_t kBytesInLine = 12;
constexpr std::size_t kStringHeader = 8;
constexpr std::size_t kRecordHeader = 6;

std::string counted(unsigned int count, const char* one, const char* many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

std::string headerText(const WireItem& item) {
  return "key " + std::to_string(item.key) + ", tag " + std::to_string(item.tag) + " " +
         wireTagName(item.tag);
}

}  // namespace

void ShowRaw::beginObject(const WireItem& item, unsigned short objectKey, unsigned int count) {
  const std::string text =
      "object " + std::to_string(objectKey) + ", " + counted(count, "property", "properties");
  print(item, item.size, m_depth == 0 ? text : headerText(item) + ": " + text);
  ++m_depth;
}

void ShowRaw::beginCollection(const WireItem& item, unsigned int count) {
  print(item, item.size, headerText(item) + ": " + counted(count, "element", "elements"));
  ++m_depth;
}

void ShowRaw::scalar(const WireItem& item, std::uint64_t bits) {
  const bool hasValue = item.tag != TagNone && item.tag <= TagCollection;
  print(item, item.size,
        headerText(item) + (hasValue ? ": " + scalarToken(item.tag, bits).text : ""));
}

void ShowRaw::string(const WireItem& item, const std::string& bytes) {
  const ShowValue value = textValue(bytes);
  print(item, kStringHeader,
        headerText(item) + ": " +
            counted(static_cast<unsigned int>(bytes.size()), "byte", "bytes") +
            (value.value.kind == Token::Text ? " " + quoted(value.value.text) : ""));
}

void ShowRaw::record(const WireItem& item, const gom::ObjectBase& record) {
  const auto bytes = static_cast<unsigned int>(item.size - kRecordHeader);
  print(item, kRecordHeader,
        headerText(item) + ": class " + std::to_string(record.key()) + " " +
            recordClassName(record.key()) + ", " + counted(bytes, "byte", "bytes"));
}

// The header with the text behind it, then lines of plain bytes.
void ShowRaw::print(const WireItem& item, std::size_t headerSize, const std::string& text) {
  printBytes(item, 0, headerSize);
  m_out << std::string(3 * (kBytesInLine - std::min(headerSize, kBytesInLine)) + 2, ' ')
        << std::string(2 * m_depth, ' ') << text << '\n';
  for (std::size_t begin = headerSize; begin < item.size; begin += kBytesInLine) {
    printBytes(item, begin, std::min(begin + kBytesInLine, item.size));
    m_out << '\n';
  }
}

void ShowRaw::printBytes(const WireItem& item, std::size_t begin, std::size_t end) {
  constexpr char kDigits[] = "0123456789abcdef";
  char offset[32];
  std::snprintf(offset, sizeof offset, "%08" PRIx64 " ", item.offset + begin);
  std::string line = offset;
  for (std::size_t i = begin; i < end; ++i) {
    line += {' ', kDigits[item.bytes[i] >> 4], kDigits[item.bytes[i] & 15]};
  }
  m_out << line;
}

}  // namespace trelvo::tool
