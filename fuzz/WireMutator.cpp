#include "fuzz/WireMutator.h"

#include <trelvo/gom/Variant.h>

#include <algorithm>
#include <iterator>

namespace trelvo::fuzz {

namespace {

using gom::Variant;

constexpr unsigned int kFirstClass = 99;  // one ahead of the first there is
constexpr unsigned int kClasses = 38;
constexpr unsigned int kFirstKey = 200;
constexpr unsigned int kKeys = 120;
constexpr unsigned int kObjectKeys = 26;
constexpr unsigned int kMostLevels = 520;

Bytes little(unsigned int width, unsigned int number) {
  Bytes result;
  for (unsigned int i = 0; i < width; ++i) {
    result.push_back(static_cast<unsigned char>(number >> (8 * i)));
  }
  return result;
}

}  // namespace

bool WireMutator::mutate() {
  const WireOutline outline(m_bytes);
  if (outline.values().empty()) {
    return false;
  }
  const Value value = anyValue(outline);
  switch (below(9)) {
    case 0:
      remove(value);
      break;
    case 1:
      repeat(value);
      break;
    case 2:
      insertBefore(value, newValue());
      break;
    case 3:
      replace(value, newValue());
      break;
    case 4: {
      const Value& other = anyValue(outline);
      replace(value, Bytes(m_bytes.begin() + static_cast<std::ptrdiff_t>(other.begin),
                           m_bytes.begin() + static_cast<std::ptrdiff_t>(other.end)));
      break;
    }
    case 5:
      wrap(value);
      break;
    case 6:
      changeKey(value);
      break;
    case 7:
      changeTag(value);
      break;
    default:
      changeCount(outline);
  }
  return true;
}

unsigned int WireMutator::noise() { return static_cast<unsigned int>(m_random()); }

unsigned int WireMutator::below(std::size_t end) {
  return static_cast<unsigned int>(noise() % end);
}

const WireOutline::Value& WireMutator::anyValue(const WireOutline& outline) {
  return outline.values()[below(outline.values().size())];
}

/// A value of any type, with random content.
Bytes WireMutator::newValue() {
  const unsigned int tag = below(17);
  Bytes value = test::joined({little(2, tag), little(2, kFirstKey + below(kKeys))});
  switch (tag) {
    case Variant::TypeString:
      return test::joined({value, little(4, 4), little(4, noise())});
    case Variant::TypeGenericObject:
      return test::joined({value, little(2, below(kObjectKeys)), little(4, 0)});
    case Variant::TypeObject:
      return test::joined({value,
                           little(2, kFirstClass + below(kClasses)),
                           {1},
                           little(4, noise()),
                           little(4, noise())});
    case Variant::TypeCollection:
      return test::joined({value, little(4, 0)});
    default:
      break;
  }
  constexpr unsigned int kWidths[] = {0, 1, 1, 2, 2, 4, 4, 8, 8, 4, 8, 1};
  const Bytes wide = test::joined({little(4, noise()), little(4, noise())});
  return test::joined({value, test::head(wide, tag < std::size(kWidths) ? kWidths[tag] : 0)});
}

void WireMutator::put(std::size_t place, unsigned int width, unsigned int number) {
  const Bytes bytes = little(width, number);
  std::copy(bytes.begin(), bytes.end(), m_bytes.begin() + static_cast<std::ptrdiff_t>(place));
}

void WireMutator::count(std::size_t place, int change) {
  unsigned int number = 0;
  for (unsigned int i = 4; i-- > 0;) {
    number = number << 8U | m_bytes[place + i];
  }
  put(place, 4, number + static_cast<unsigned int>(change));
}

void WireMutator::insertBefore(const Value& value, const Bytes& bytes) {
  m_bytes.insert(m_bytes.begin() + static_cast<std::ptrdiff_t>(value.begin), bytes.begin(),
                 bytes.end());
  count(value.count, 1);
}

void WireMutator::remove(const Value& value) {
  m_bytes.erase(m_bytes.begin() + static_cast<std::ptrdiff_t>(value.begin),
                m_bytes.begin() + static_cast<std::ptrdiff_t>(value.end));
  count(value.count, -1);
}

void WireMutator::repeat(const Value& value) {
  const Bytes bytes(m_bytes.begin() + static_cast<std::ptrdiff_t>(value.begin),
                    m_bytes.begin() + static_cast<std::ptrdiff_t>(value.end));
  for (unsigned int times = 1U << below(5); times > 0; --times) {
    insertBefore(value, bytes);
  }
}

void WireMutator::replace(const Value& value, const Bytes& bytes) {
  remove(value);
  insertBefore(value, bytes);
}

/// Puts the value into a list, that one into another, and so on.
void WireMutator::wrap(const Value& value) {
  const unsigned int levels = below(8) == 0 ? below(kMostLevels) : 1;
  const Bytes list = test::joined({little(2, Variant::TypeCollection), little(2, 0), little(4, 1)});
  Bytes lists;
  for (unsigned int level = 0; level < levels; ++level) {
    lists.insert(lists.end(), list.begin(), list.end());
  }
  m_bytes.insert(m_bytes.begin() + static_cast<std::ptrdiff_t>(value.begin), lists.begin(),
                 lists.end());
}

void WireMutator::changeKey(const Value& value) {
  put(value.begin + 2, 2, kFirstKey + below(kKeys));
}

void WireMutator::changeTag(const Value& value) { put(value.begin, 2, below(18)); }

void WireMutator::changeCount(const WireOutline& outline) {
  constexpr unsigned int kCounts[] = {0, 1, 8, 9, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFE, 0xFFFFFFFF};
  const std::size_t place = outline.counts()[below(outline.counts().size())];
  if (below(2) == 0) {
    count(place, below(2) == 0 ? 1 : -1);
  } else {
    put(place, 4, kCounts[below(std::size(kCounts))]);
  }
}

}  // namespace trelvo::fuzz
