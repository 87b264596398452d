#include "tools/trelvo/ImportOutput.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <trelvo/BufferStream.h>
#include <trelvo/gom/GenericObject.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

namespace trelvo::tool {

namespace {

std::string message(const std::string& name, const char* reason) { return name + ": " + reason; }

std::string resolved(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr),
                                                         &std::free);
  return real ? real.get() : path;
}

// Whether a new file can take the place of what is there.
bool isReplaceable(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) != 0 || S_ISREG(status.st_mode);
}

UniqueFd openOutput(const std::string& path, bool isNew) {
  const int mode = isNew ? O_CREAT | O_EXCL : 0;
  return UniqueFd(::open(path.c_str(), O_WRONLY | O_CLOEXEC | mode, 0666));
}

bool sameBytes(const gom::GenericObject& left, const gom::GenericObject& right) {
  BufferStream first;
  BufferStream second;
  return left.write(first) && right.write(second) &&
         first.buffer().size() == second.buffer().size() &&
         std::memcmp(first.buffer().data(), second.buffer().data(), first.buffer().size()) == 0;
}

}  // namespace

ImportFile::ImportFile(const std::string& path) : m_final(resolved(path)) {
  const bool isNew = isReplaceable(m_final);
  m_current = isNew ? m_final + ".part-" + std::to_string(::getpid()) : m_final;
  m_descriptor = openOutput(m_current, isNew);
  if (!m_descriptor) {
    const int error = errno;
    m_current = m_final;
    throw ImportError(message(path, std::strerror(error)));
  }
}

ImportFile::~ImportFile() {
  if (m_current != m_final) {
    ::unlink(m_current.c_str());
  }
}

void ImportFile::commit() {
  if (m_current == m_final) {
    return;
  }
  const bool done = ::fsync(m_descriptor.get()) == 0 && m_descriptor.close() == 0 &&
                    std::rename(m_current.c_str(), m_final.c_str()) == 0;
  if (!done) {
    throw ImportError(message(m_final, std::strerror(errno)));
  }
  m_current = m_final;
}

ContainerWriter::ContainerWriter(int descriptor, std::string name)
    : m_stream(descriptor), m_name(std::move(name)) {}

template <class Container>
void ContainerWriter::writeOut(const Container& container) {
  if (!container.write(m_stream)) {
    fail();
  }
  m_counts.add(container);
}

void ContainerWriter::take(const schema::MeasurementContainer& container) { writeOut(container); }

void ContainerWriter::take(const schema::Injection& injection) { writeOut(injection); }

void ContainerWriter::finish() {
  if (!m_stream.flush()) {
    fail();
  }
}

void ContainerWriter::fail() const {
  if (m_stream.error() == EPIPE) {
    throw ReaderGone();
  }
  throw ImportError(message(m_name, std::strerror(m_stream.error())));
}

ContainerVerifier::ContainerVerifier(const std::string& path, std::string name)
    : m_stream(openForReading(path.c_str())), m_name(std::move(name)) {
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
  throw ImportError(message(m_name, reason.c_str()));
}

}  // namespace trelvo::tool
