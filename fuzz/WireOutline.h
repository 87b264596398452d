#pragma once

#include <vector>

#include "fuzz/Target.h"

namespace trelvo::fuzz {

/// Where the values of a generic object's wire form lie, as far as the bytes make sense.
class WireOutline {
 public:
  static constexpr std::size_t kHeader = 4;  ///< A value's tag and key.

  struct Value {
    std::size_t begin;
    std::size_t end;
    std::size_t count;  ///< Where the count stands that counts it.
    unsigned int tag;
  };

  explicit WireOutline(const Bytes& bytes);

  /// Every value whose end was reached, a list behind its elements.
  const std::vector<Value>& values() const { return m_values; }

  /// Where counts of properties, elements and characters stand.
  const std::vector<std::size_t>& counts() const { return m_counts; }

 private:
  bool has(std::size_t size) const { return m_bytes.size() - m_place >= size; }
  bool number(unsigned int width, unsigned int& value);
  bool skip(std::size_t size);
  bool object();
  bool list();
  bool text();
  bool record();
  bool value(std::size_t count);
  bool payload(unsigned int tag);

  const Bytes& m_bytes;
  std::size_t m_place = 0;
  unsigned int m_level = 0;
  std::vector<Value> m_values;
  std::vector<std::size_t> m_counts;
};

}  // namespace trelvo::fuzz
