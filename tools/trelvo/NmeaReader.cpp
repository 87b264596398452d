#include "tools/trelvo/NmeaReader.h"

#include <algorithm>

#include "tools/trelvo/ImportText.h"

namespace trelvo::tool {

namespace {

bool isBlank(int byte) { return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n'; }

bool isPrintable(int byte) { return byte >= ' ' && byte <= '~'; }

bool isAddressCharacter(char c) { return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'); }

int checksum(std::string_view text) {
  int sum = 0;
  for (const char c : text) {
    sum ^= static_cast<unsigned char>(c);
  }
  return sum;
}

void split(NmeaSentence& sentence) {
  std::string_view rest = sentence.text;
  sentence.fields.clear();
  for (size_t comma = rest.find(','); comma != std::string_view::npos; comma = rest.find(',')) {
    sentence.fields.push_back(rest.substr(0, comma));
    rest.remove_prefix(comma + 1);
  }
  sentence.fields.push_back(rest);
}

}  // namespace

std::string_view NmeaSentence::type() const {
  const std::string_view address = field(0);
  return address.size() == 5 ? address.substr(2) : address;
}

std::string_view NmeaSentence::field(size_t index) const {
  return index < fields.size() ? fields[index] : std::string_view();
}

bool NmeaReader::next(NmeaSentence& sentence) {
  while (findStart()) {
    sentence.line = m_source.line();
    take();
    if (!readBody(sentence)) {
      continue;
    }
    const std::optional<int> sum = readChecksum();
    if (!sum) {
      refuse(kBrokenOff, sentence.line);
    } else if (*sum != checksum(sentence.text)) {
      refuse(kWrongChecksum, sentence.line);
    } else {
      split(sentence);
      return true;
    }
  }
  return false;
}

int NmeaReader::peek() {
  while (m_source.peek() == m_dropped && m_dropped != ImportSource::kEnd) {
    m_source.next();
  }
  return m_source.peek();
}

int NmeaReader::take() {
  peek();
  const int byte = m_source.next();
  m_lineStart = byte == '\n';
  return byte;
}

// Leaves the '$' as the next byte.
bool NmeaReader::findStart() {
  for (int byte = peek(); byte != ImportSource::kEnd; byte = peek()) {
    if (byte == '$') {
      return true;
    }
    if (byte == '#' && m_lineStart) {
      skipComment();
      continue;
    }
    if (!isBlank(byte) && m_strayLine != m_source.line()) {
      m_strayLine = m_source.line();
      m_report.count(kStrayText, m_source.place());
    }
    take();
  }
  return false;
}

void NmeaReader::skipComment() {
  static constexpr std::string_view kCookie = "# Delay-Cookie: ";
  std::string start;
  for (int byte = peek(); byte != '\n' && byte != ImportSource::kEnd; byte = peek()) {
    if (start.size() <= kCookie.size()) {
      start.push_back(static_cast<char>(byte));
    }
    take();
  }
  if (start.size() > kCookie.size() && start.compare(0, kCookie.size(), kCookie) == 0 &&
      isPrintable(start.back()) && start.back() != '$') {
    m_dropped = static_cast<unsigned char>(start.back());
  }
}

// Takes everything up to and with the '*'.
bool NmeaReader::readBody(NmeaSentence& sentence) {
  sentence.text.clear();
  for (int byte = peek(); isPrintable(byte) && byte != '$'; byte = peek()) {
    if (byte == '*') {
      take();
      return true;
    }
    if (sentence.text.size() == kMaxLength) {
      return refuse(kTooLong, sentence.line);
    }
    take();
    sentence.text.push_back(static_cast<char>(byte));
  }
  return refuse(kBrokenOff, sentence.line);
}

std::optional<int> NmeaReader::readChecksum() {
  int sum = 0;
  for (int i = 0; i < 2; ++i) {
    const int digit = hexDigit(peek());
    if (digit < 0) {
      return std::nullopt;
    }
    sum = sum * 16 + digit;
    take();
  }
  return sum;
}

// The rest of a refused sentence's line is part of that trouble, no stray text of its own.
bool NmeaReader::refuse(const char* kind, unsigned long long line) {
  m_report.count(kind, {m_source.name(), line});
  m_strayLine = m_source.line();
  return false;
}

bool NmeaReader::looksLikeNmea(std::string_view text) {
  constexpr size_t kAddress = 5;
  for (size_t at = text.find('$'); at != std::string_view::npos; at = text.find('$', at + 1)) {
    const std::string_view rest = text.substr(at + 1, kAddress + 1);
    if (rest.size() > kAddress && rest[kAddress] == ',' &&
        std::all_of(rest.begin(), rest.end() - 1, isAddressCharacter)) {
      return true;
    }
  }
  return false;
}

}  // namespace trelvo::tool
