#include "tools/trelvo/ImportOutput.h"

#include <trelvo/BufferStream.h>
#include <trelvo/gom/GenericObject.h>

#include <cstring>
#include <utility>

#include "tools/trelvo/Failure.h"

namespace trelvo::tool {

namespace {

bool sameBytes(const gom::GenericObject& left, const gom::GenericObject& right) {
  BufferStream first;
  BufferStream second;
  return left.write(first) && right.write(second) &&
         first.buffer().size() == second.buffer().size() &&
         std::memcmp(first.buffer().data(), second.buffer().data(), first.buffer().size()) == 0;
}

}  // namespace

ContainerWriter::ContainerWriter(FileStream& stream, std::string name)
    : m_stream(stream), m_name(std::move(name)) {}

template <class Container>
void ContainerWriter::writeOut(const Container& container) {
  if (!container.write(m_stream)) {
    throwWriteFailure(m_stream, m_name);
  }
  m_counts.add(container);
}

void ContainerWriter::take(const schema::MeasurementContainer& container) { writeOut(container); }

void ContainerWriter::take(const schema::Injection& injection) { writeOut(injection); }

void ContainerWriter::finish() {
  if (!m_stream.flush()) {
    throwWriteFailure(m_stream, m_name);
  }
}

ContainerVerifier::ContainerVerifier(FileStream& stream, std::string name)
    : m_stream(stream), m_name(std::move(name)) {
  if (!m_stream.good()) {
    fail("cannot be read back");
  }
}

void ContainerVerifier::compare(const gom::SharedPointer<gom::GenericObject>& expected) {
  const auto found = gom::GenericObject::create(m_stream);
  const std::string which = "container " + std::to_string(count());
  if (!found) {
    fail(which + " cannot be read back");
  }
  if (*found != *expected || !sameBytes(*found, *expected)) {
    fail(which + " reads back differently");
  }
}

void ContainerVerifier::finish() {
  if (!m_stream.eof()) {
    fail("holds more than was written");
  }
}

void ContainerVerifier::fail(const std::string& reason) const {
  throw Failure(m_name + ": " + reason);
}

}  // namespace trelvo::tool
