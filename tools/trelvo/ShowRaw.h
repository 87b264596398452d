#pragma once

#include <ostream>
#include <string>

#include "tools/trelvo/WireParser.h"

namespace trelvo::tool {

/// Prints each item with the offset of its first byte, its bytes in hexadecimal, its key and its
/// type, and knows nothing of any schema:
///
///     00000010  06 00 cd 00 d2 02 96 49                  key 205, tag 6 uint32: 1234567890
class ShowRaw : public WireHandler {
 public:
  explicit ShowRaw(std::ostream& out) : m_out(out) {}

  void beginObject(const WireItem& item, unsigned short objectKey, unsigned int count) override;
  void endObject() override { --m_depth; }
  void beginCollection(const WireItem& item, unsigned int count) override;
  void endCollection() override { --m_depth; }
  void scalar(const WireItem& item, std::uint64_t bits) override;
  void string(const WireItem& item, const std::string& bytes) override;
  void record(const WireItem& item, const gom::ObjectBase& record) override;
  void brokenOff() override { m_depth = 0; }
  bool stopped() const override { return !m_out.good(); }

 private:
  void print(const WireItem& item, std::size_t headerSize, const std::string& text);
  void printBytes(const WireItem& item, std::size_t begin, std::size_t end);

  std::ostream& m_out;
  std::size_t m_depth = 0;
};

}  // namespace trelvo::tool
