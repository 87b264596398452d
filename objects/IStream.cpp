#include <trelvo/IStream.h>

#include "objects/LittleEndian.h"

namespace trelvo {

namespace {

template <class T>
bool readValue(IStream& stream, T& value) {
  unsigned char image[sizeof(T)];
  storeWire(image, value);
  const unsigned int arrived = stream.read(image, sizeof(T));
  value = loadWire<T>(image);
  return arrived == sizeof(T);
}

template <class T>
bool writeValue(IStream& stream, T value) {
  unsigned char image[sizeof(T)];
  storeWire(image, value);
  return stream.write(image, sizeof(T)) == sizeof(T);
}

}  // namespace

IStream::~IStream() = default;

bool IStream::readUint8(unsigned char& value) { return readValue(*this, value); }
bool IStream::readUint16(unsigned short& value) { return readValue(*this, value); }
bool IStream::readUint32(unsigned int& value) { return readValue(*this, value); }
bool IStream::readUint64(unsigned long long& value) { return readValue(*this, value); }
bool IStream::readFloat(float& value) { return readValue(*this, value); }
bool IStream::readDouble(double& value) { return readValue(*this, value); }

bool IStream::writeUint8(unsigned char value) { return writeValue(*this, value); }
bool IStream::writeUint16(unsigned short value) { return writeValue(*this, value); }
bool IStream::writeUint32(unsigned int value) { return writeValue(*this, value); }
bool IStream::writeUint64(unsigned long long value) { return writeValue(*this, value); }
bool IStream::writeFloat(float value) { return writeValue(*this, value); }
bool IStream::writeDouble(double value) { return writeValue(*this, value); }

}  // namespace trelvo
