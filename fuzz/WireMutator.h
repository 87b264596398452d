#pragma once

#include <random>

#include "fuzz/WireOutline.h"

namespace trelvo::fuzz {

/// Changes the wire form of a generic object so that most of it still makes sense: whole values
/// come, go, move and are put into lists, and the counts follow; now and then a key, a tag or a
/// count says something else.
class WireMutator {
 public:
  WireMutator(Bytes& bytes, unsigned int seed) : m_bytes(bytes), m_random(seed) {}

  /// Makes one change. @return false when there is nothing that it could be made to.
  bool mutate();

 private:
  using Value = WireOutline::Value;

  unsigned int noise();
  unsigned int below(std::size_t end);
  const Value& anyValue(const WireOutline& outline);
  Bytes newValue();
  void count(std::size_t place, int change);
  void put(std::size_t place, unsigned int width, unsigned int number);
  void insertBefore(const Value& value, const Bytes& bytes);

  void remove(const Value& value);
  void repeat(const Value& value);
  void replace(const Value& value, const Bytes& bytes);
  void wrap(const Value& value);
  void changeKey(const Value& value);
  void changeTag(const Value& value);
  void changeCount(const WireOutline& outline);

  Bytes& m_bytes;
  std::mt19937 m_random;
};

}  // namespace trelvo::fuzz
