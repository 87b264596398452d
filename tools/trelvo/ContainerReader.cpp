#include "tools/trelvo/ContainerReader.h"

#include <trelvo/Status.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <vector>

#include "tools/trelvo/Failure.h"
#include "tools/trelvo/WireParser.h"

namespace trelvo::tool {
namespace {

/// Bytes that were read already, and behind them what is left of a stream.
class ReplayStream : public IStream {
 public:
  ReplayStream(const std::vector<unsigned char>& bytes, IStream& rest)
      : m_bytes(bytes), m_rest(rest) {}

  bool good() const override { return m_rest.good(); }
  bool seekFromStart(unsigned int) override { return false; }
  bool seekFromEnd(unsigned int) override { return false; }
  unsigned int offset() const override { return 0; }
  bool eof() const override { return m_taken == m_bytes.size() && m_rest.eof(); }
  bool getSize(unsigned int&) override { return false; }
  bool canRead() const override { return true; }
  bool canSeek() const override { return false; }
  bool canWrite() const override { return false; }
  unsigned int write(const unsigned char*, unsigned int) override { return 0; }
  bool flush() override { return true; }

  unsigned int read(unsigned char* target, unsigned int count) override {
    const auto part =
        static_cast<unsigned int>(std::min<std::size_t>(count, m_bytes.size() - m_taken));
    std::copy_n(m_bytes.data() + m_taken, part, target);
    m_taken += part;
    return part + (part < count ? m_rest.read(target + part, count - part) : 0);
  }

 private:
  const std::vector<unsigned char>& m_bytes;
  IStream& m_rest;
  std::size_t m_taken = 0;
};

/// Wants nothing of what a parser finds but whether it goes wrong.
class Unheeding : public WireHandler {
 public:
  void beginObject(const WireItem&, unsigned short, unsigned int) override {}
  void endObject() override {}
  void beginCollection(const WireItem&, unsigned int) override {}
  void endCollection() override {}
  void scalar(const WireItem&, std::uint64_t) override {}
  void string(const WireItem&, const std::string&) override {}
  void record(const WireItem&, const gom::ObjectBase&) override {}
};

}  // namespace

ContainerReader::ContainerReader(const std::string& file, const StoreOptions& store,
                                 const CommandContext& context)
    : m_input(file, store, context), m_capture(m_input.stream(), m_input.stream().position()) {}

bool ContainerReader::next(ContainerItem& item) {
  if (m_input.stream().eof()) {
    checkRead(m_input.stream(), m_input.name());
    return false;
  }
  const std::uint64_t offset = m_capture.position();
  m_capture.restart();
  const auto object = readObject();
  if (!object || object->key() == 0) {
    failAt(offset);
  }
  item = {offset, object, schema::MeasurementContainer::create(object),
          schema::Injection::create(object)};
  return true;
}

gom::SharedPointer<gom::GenericObject> ContainerReader::readObject() {
  try {
    return gom::GenericObject::create(m_capture);
  } catch (Status) {
    return {};
  }
}

// The library says only that an object cannot be read; the parser says why.
void ContainerReader::failAt(std::uint64_t offset) {
  checkRead(m_input.stream(), m_input.name());
  ReplayStream again(m_capture.bytes(), m_input.stream());
  Unheeding handler;
  WireParser parser(again, offset, handler);
  const bool isWhole = parser.parseObject();
  checkRead(m_input.stream(), m_input.name());
  if (isWhole) {
    throw std::bad_alloc();
  }
  m_input.fail(faultText(parser.fault()));
}

}  // namespace trelvo::tool
