// Sends a measurement through a stream of the application's own, with a property of its own, and
// shows what a receiver makes of bytes that are cut off.
//
//   IStream              any channel of bytes; this one is a std::iostream, as a file or a socket
//   is GenericObject        a bag of properties; the schema's classes are views of it write(),
//   create()    into the wire form, and out of it

#include <cstdio>
#include <sstream>
#include <string>

#include <trelvo/trelvo.h>

namespace gom = trelvo::gom;
namespace schema = trelvo::schema;

namespace {

// The schema's keys end at 317; an application's own may stand anywhere above. Other programs carry
// such a property along without knowing it.
constexpr unsigned short kVehicle = 60000;

/// An IStream over a standard one. Reading and writing need only what is here; positions are for
/// users who seek.
class StandardStream : public trelvo::IStream {
 public:
  explicit StandardStream(std::iostream& stream) : m_stream(stream) {}

  bool good() const override { return m_stream.good(); }
  bool eof() const override { return m_stream.rdbuf()->sgetc() == std::char_traits<char>::eof(); }
  bool canRead() const override { return true; }
  bool canWrite() const override { return true; }
  bool canSeek() const override { return false; }
  bool seekFromStart(unsigned int) override { return false; }
  bool seekFromEnd(unsigned int) override { return false; }
  unsigned int offset() const override { return m_offset; }
  bool getSize(unsigned int&) override { return false; }

  unsigned int read(unsigned char* target, unsigned int count) override {
    m_stream.read(reinterpret_cast<char*>(target), count);
    const auto arrived = static_cast<unsigned int>(m_stream.gcount());
    m_offset += arrived;
    return arrived;
  }
  unsigned int write(const unsigned char* source, unsigned int count) override {
    return m_stream.write(reinterpret_cast<const char*>(source), count) ? count : 0;
  }
  bool flush() override { return static_cast<bool>(m_stream.flush()); }

 private:
  std::iostream& m_stream;
  unsigned int m_offset = 0;
};

gom::SharedPointer<gom::GenericObject> receive(const std::string& bytes) {
  std::stringstream channel(bytes);
  StandardStream stream(channel);
  return gom::GenericObject::create(stream);  // empty when the bytes are no object
}

}  // namespace

int main() {
  const auto container = schema::MeasurementContainer::create();
  const auto cell = schema::EUtraCellDn::create(262, 1, schema::EUtraCellDn::mergeUcid(0x12345, 7));
  if (!container || !cell) return 1;
  const auto heard = schema::EUtraCellMeasurement::create(cell, 1700000000);
  if (!heard || container->addEUtraMeasurement(heard->wrappedObject()) != trelvo::StatusOk)
    return 1;
  if (container->wrappedObject()->setUint32Property(kVehicle, 4711) != trelvo::StatusOk) return 1;

  std::stringstream channel;
  StandardStream stream(channel);
  if (!container->write(stream)) return 1;
  const std::string bytes = channel.str();
  std::printf("%zu bytes sent\n", bytes.size());

  const auto object = receive(bytes);
  const auto back = schema::MeasurementContainer::create(object);
  const auto received = back ? back->eutraMeasurement(0) : nullptr;
  if (!received || !received->dn()) return 1;
  unsigned int vehicle = 0;
  if (object->getUint32Property(kVehicle, vehicle) != trelvo::StatusOk) return 1;
  std::printf("vehicle %u heard eNodeB %X at %u\n", vehicle, received->dn()->eNodeBId(),
              received->timeStamp());

  unsigned int refused = 0;
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    if (!receive(bytes.substr(0, size))) ++refused;
  }
  std::printf("cut off anywhere, it is refused: %u of %zu\n", refused, bytes.size());
}
