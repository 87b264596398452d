#include "tools/trelvo/RawContainers.h"

#include <algorithm>

#include "tools/trelvo/WireParser.h"

namespace trelvo::tool {
namespace {

constexpr unsigned short kTimeStamp = 205;

/// Looks for the latest time stamp.
class StampFinder : public WireHandler {
 public:
  void beginObject(const WireItem&, unsigned short, unsigned int) override {}
  void endObject() override {}
  void beginCollection(const WireItem&, unsigned int) override {}
  void endCollection() override {}
  void scalar(const WireItem& item, std::uint64_t bits) override {
    if (item.key == kTimeStamp && item.tag == TagUint32) {
      m_latest = std::max(m_latest.value_or(0), static_cast<unsigned int>(bits));
    }
  }
  void string(const WireItem&, const std::string&) override {}
  void record(const WireItem&, const gom::ObjectBase&) override {}

  std::optional<unsigned int> latest() const { return m_latest; }

 private:
  std::optional<unsigned int> m_latest;
};

}  // namespace

bool RawContainers::next(RawContainer& container) {
  if (m_input.stream().eof()) {
    checkRead(m_input.stream(), m_input.name());
    return false;
  }
  const std::uint64_t offset = m_capture.position();
  m_capture.restart();
  StampFinder finder;
  WireParser parser(m_capture, offset, finder);
  if (!parser.parseObject()) {
    checkRead(m_input.stream(), m_input.name());
    m_input.fail(faultText(parser.fault()));
  }
  container = {++m_count, offset, m_capture.bytes(), finder.latest()};
  return true;
}

}  // namespace trelvo::tool
