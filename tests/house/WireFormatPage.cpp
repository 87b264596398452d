#include "tests/house/WireFormatPage.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>

namespace {

using Lines = std::vector<std::string>;

Lines linesOf(const std::string& text) {
  std::istringstream stream(text);
  Lines lines;
  for (std::string line; std::getline(stream, line);) {
    lines.push_back(line);
  }
  return lines;
}

unsigned int number(const std::string& text) {
  return static_cast<unsigned int>(std::stoul(text, nullptr, 0));
}

/// All numbers of a heading: "Object keys 2, 3 and 4, ...".
std::vector<unsigned int> numbersOf(const std::string& text) {
  static const std::regex digits("\\d+");
  std::vector<unsigned int> numbers;
  for (std::sregex_iterator it(text.begin(), text.end(), digits), end; it != end; ++it) {
    numbers.push_back(number(it->str()));
  }
  return numbers;
}

/// Takes a page line by line; the heading last seen says what a table row means.
class Parser {
 public:
  WireFormatPage page;

  void take(const std::string& line) {
    if (line.rfind('#', 0) == 0) {
      takeHeading(line);
    } else if (line.rfind('|', 0) == 0) {
      takeRow(line);
    } else {
      takeMask(line);
    }
  }

 private:
  void takeHeading(const std::string& line) {
    static const std::regex recordHeading("### (?:(\\d+) )?`(\\w+)`");
    static const std::regex objectHeading("### Object keys? (.*), .*");
    m_record = nullptr;
    m_objectKeys.clear();
    std::smatch match;
    if (std::regex_match(line, match, recordHeading)) {
      m_record = &page.records[match[1].matched ? "record " + match[1].str() : match[2].str()];
      m_record->name = match[2];
    } else if (std::regex_match(line, match, objectHeading)) {
      m_objectKeys = numbersOf(match[1]);
    }
  }

  void takeMask(const std::string& line) {
    static const std::regex mask("[Mm]ask of (\\d) bytes?(?:, at most (0x[0-9A-F]+))?");
    std::smatch match;
    if (m_record != nullptr && std::regex_search(line, match, mask)) {
      m_record->maskBytes = number(match[1]);
      m_record->maskLimit = match[2].matched ? number(match[2]) : 0xFFFFFFFFULL;
    }
  }

  void takeRow(const std::string& line) {
    static const std::regex field(R"(\| (0x[0-9A-F]+|always) \| `\w+` \| `([^`]+)` \|.*)");
    static const std::regex property(R"(\| (\d+) \| `\w+` \| (\d+) \|.*)");
    static const std::regex classId(R"(\| (1\d\d) \| `(\w+)` \| (yes|no) \|)");
    static const std::regex objectKey(R"(\| (\d+) \| `(\w+)` \|)");
    std::smatch match;
    if (m_record != nullptr && std::regex_match(line, match, field)) {
      m_record->fields.push_back({match[1] == "always" ? 0 : number(match[1]), match[2]});
    } else if (!m_objectKeys.empty() && std::regex_match(line, match, property)) {
      takeProperty(number(match[1]), number(match[2]));
    } else if (std::regex_match(line, match, classId)) {
      page.classIds.push_back(
          {static_cast<unsigned short>(number(match[1])), match[2], match[3] == "yes"});
    } else if (std::regex_match(line, match, objectKey)) {
      page.objectKeys.push_back({static_cast<unsigned short>(number(match[1])), match[2]});
    }
  }

  void takeProperty(unsigned int key, unsigned int tag) {
    for (const unsigned int objectKey : m_objectKeys) {
      page.properties[{objectKey, key}] = tag;
    }
  }

  WireFormatPage::Record* m_record = nullptr;
  std::vector<unsigned int> m_objectKeys;
};

void appendInteger(unsigned long long value, unsigned int count, WireFormatPage::Bytes& bytes) {
  for (unsigned int i = 0; i < count; ++i) {
    bytes.push_back(static_cast<unsigned char>(value >> (8 * i)));
  }
}

/// The bytes of one line of a dump, when its offset is `offset`.
bool appendDumpLine(const std::string& line, WireFormatPage::Bytes& bytes) {
  static const std::regex form("([0-9A-F]{4})  ((?:[0-9A-F]{2} )*[0-9A-F]{2})(?:  .*)?");
  std::smatch match;
  if (!std::regex_match(line, match, form) || std::stoul(match[1], nullptr, 16) != bytes.size()) {
    return false;
  }
  const WireFormatPage::Bytes more = bytesOfHex(match[2]);
  bytes.insert(bytes.end(), more.begin(), more.end());
  return true;
}

}  // namespace

unsigned int WireFormatPage::Record::allBits() const {
  unsigned int bits = 0;
  for (const Field& field : fields) {
    bits |= field.mask;
  }
  return bits;
}

WireFormatPage WireFormatPage::parse(const std::string& text) {
  Parser parser;
  for (const std::string& line : linesOf(text)) {
    parser.take(line);
  }
  return parser.page;
}

WireFormatPage::Bytes WireFormatPage::recordBytes(const std::string& type,
                                                  unsigned int bits) const {
  Bytes bytes;
  appendRecord(records.at(type), bits, bytes);
  return bytes;
}

void WireFormatPage::appendRecord(const Record& record, unsigned int bits, Bytes& bytes) const {
  bytes.push_back(1);
  appendInteger(bits, record.maskBytes, bytes);
  for (const Field& field : record.fields) {
    if (field.mask == 0 || (bits & field.mask) != 0) {
      appendField(field.type, bytes);
    }
  }
}

void WireFormatPage::appendField(const std::string& type, Bytes& bytes) const {
  const auto nested = records.find(type);
  if (nested != records.end()) {
    appendRecord(nested->second, nested->second.allBits(), bytes);
    return;
  }
  unsigned int count = 6;
  if (type == "counted bytes") {
    bytes.push_back(static_cast<unsigned char>(count));
  } else {
    count = number(type.substr(1)) / 8;
  }
  for (unsigned int i = 0; i < count; ++i) {
    bytes.push_back(static_cast<unsigned char>(0x21 + bytes.size()));
  }
}

std::vector<WireFormatPage::Bytes> hexDumps(const std::string& text) {
  std::vector<WireFormatPage::Bytes> dumps;
  bool inside = false;
  for (const std::string& line : linesOf(text)) {
    if (!inside && line == "```hexdump") {
      inside = true;
      dumps.emplace_back();
    } else if (inside && (line == "```" || !appendDumpLine(line, dumps.back()))) {
      inside = false;
      if (line != "```") {
        dumps.back().clear();
      }
    }
  }
  return dumps;
}

WireFormatPage::Bytes bytesOfHex(const std::string& text) {
  std::string digits;
  std::copy_if(text.begin(), text.end(), std::back_inserter(digits),
               [](unsigned char c) { return std::isxdigit(c) != 0; });
  WireFormatPage::Bytes bytes;
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
    bytes.push_back(static_cast<unsigned char>(std::stoul(digits.substr(i, 2), nullptr, 16)));
  }
  return bytes;
}

std::string sourceFile(const std::string& path) {
  std::ifstream file(TRELVO_TEST_DATA "/../" + path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}
