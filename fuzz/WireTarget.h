#pragma once

#include <trelvo/BufferStream.h>
#include <trelvo/IStream.h>
#include <trelvo/Status.h>

#include "fuzz/MemoryBound.h"
#include "fuzz/Target.h"
#include "tests/support/LimitedStream.h"

namespace trelvo::fuzz {

/// How reading may end: well, with false, or by throwing StatusInternal.
enum class Outcome { Read, Refused, Thrown };

/// Reads `object` from a stream of `size` bytes in bounded memory.
template <class T>
Outcome readFrom(T& object, IStream& stream, std::size_t size) {
  const MemoryBound bound(size);
  try {
    return object.read(stream) ? Outcome::Read : Outcome::Refused;
  } catch (const Status status) {
    require(status == StatusInternal, "a reader throws nothing but StatusInternal");
    return Outcome::Thrown;
  }
}

/// The wire form of `object`.
template <class T>
Bytes writtenForm(const T& object) {
  BufferStream memory;
  require(object.write(memory), "what was read can be written");
  return test::contentOf(memory);
}

/// The same by way of a stream that the library does not know.
template <class T>
Bytes foreignForm(const T& object) {
  test::LimitedStream foreign;
  require(object.write(foreign), "what was read can be written to a foreign stream");
  return foreign.taken();
}

/// `object` was read out of `taken` bytes, `fresh` is another one: what the one writes, the other
/// reads and writes again. Not so where an object of key 0 lies within: it is read as two bytes and
/// written as six.
template <class T>
void checkRoundTrip(const T& object, unsigned int taken, T& fresh) {
  const Bytes bytes = writtenForm(object);
  require(bytes.size() >= taken, "nothing that was read is lost");
  if (bytes.size() != taken) {
    return;
  }
  BufferStream memory;
  memory.write(bytes.data(), static_cast<unsigned int>(bytes.size()));
  require(readFrom(fresh, memory, bytes.size()) == Outcome::Read, "what is written can be read");
  require(memory.offset() == bytes.size(), "reading takes all that was written");
  require(writtenForm(fresh) == bytes, "what was read twice is written as before");
  require((object == fresh) == (fresh == object), "equality goes both ways");
}

/// A stream that ends early makes writing fail.
template <class T>
void checkFullStream(const T& object, unsigned int taken) {
  test::LimitedStream full(taken / 2);
  require(taken == 0 || !object.write(full), "a full stream makes writing fail");
}

/// Has objects that `make` gives read `input`, from memory and from a foreign stream: both have to
/// end the same way, and take as much. Calls `check` with an object that was read, and `refused`
/// with each that could not be.
template <class Make, class Check, class Refused>
void checkReader(const Bytes& input, Make make, Check check, Refused refused) {
  const auto object = make();
  const auto other = make();
  BufferStream memory;
  memory.write(input.data(), static_cast<unsigned int>(input.size()));
  test::LimitedStream foreign(input);
  const Outcome outcome = readFrom(*object, memory, input.size());
  require(readFrom(*other, foreign, input.size()) == outcome, "both kinds of stream end alike");
  if (outcome == Outcome::Read) {
    require(memory.offset() == foreign.offset(), "both kinds of stream give as many bytes");
    require(writtenForm(*object) == foreignForm(*other), "both kinds of stream have the same");
    checkRoundTrip(*object, memory.offset(), *make());
    checkFullStream(*object, memory.offset());
    check(object);
  } else {
    refused(object);
    refused(other);
  }
}

}  // namespace trelvo::fuzz
