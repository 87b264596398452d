#pragma once

#include <gtest/gtest.h>

#include "tests/support/Bytes.h"
#include "tests/support/LimitedStream.h"

namespace trelvo::test {

/// The wire form of `object` as a stream gets it that the library does not know.
template <class T>
Bytes writtenToForeign(const T& object) {
  LimitedStream stream;
  EXPECT_TRUE(object.write(stream));
  return stream.taken();
}

/// What object.read() says to such a stream of `content`.
template <class T>
[[nodiscard]] bool readFromForeign(T& object, const Bytes& content) {
  LimitedStream stream(content);
  return object.read(stream);
}

/// `object` writes `expected` into either kind of stream; into a foreign one that ends early it
/// writes as much as there is room for and says false; a stream that is not good makes false.
template <class T>
void expectWrites(const T& object, const Bytes& expected) {
  EXPECT_EQ(written(object), expected);
  EXPECT_EQ(writtenToForeign(object), expected);
  for (unsigned int room = 0; room < expected.size(); ++room) {
    LimitedStream stream(room);
    EXPECT_FALSE(object.write(stream)) << "with room for " << room;
    EXPECT_EQ(stream.taken(), head(expected, room));
  }
  LimitedStream bad;
  bad.turnBad();
  EXPECT_FALSE(object.write(bad));
}

/// Reading `content` gives true and takes exactly all of it, from either kind of stream and with
/// more bytes behind; a stream that is not good makes false. `make` makes an object to read into,
/// `check` looks at one that was read.
template <class Make, class Check>
void expectReads(Make make, const Bytes& content, Check check) {
  const Bytes longer = joined({content, bytes("5A 5A 5A")});
  BufferStream stream;
  fill(stream, longer);
  auto fromBuffer = make();
  EXPECT_TRUE(fromBuffer->read(stream));
  EXPECT_EQ(stream.offset(), content.size());
  check(*fromBuffer);

  LimitedStream foreign(longer);
  auto fromForeign = make();
  EXPECT_TRUE(fromForeign->read(foreign));
  EXPECT_EQ(foreign.offset(), content.size());
  check(*fromForeign);

  LimitedStream bad(longer);
  bad.turnBad();
  EXPECT_FALSE(make()->read(bad));
}

/// Wherever `content` is cut off, reading gives false; `check` looks at what is left then.
template <class Make, class Check>
void expectCutOffFails(Make make, const Bytes& content, Check check) {
  for (unsigned int length = 0; length < content.size(); ++length) {
    SCOPED_TRACE(::testing::Message() << "cut off behind " << length << " bytes");
    const Bytes cut = head(content, length);
    auto fromBuffer = make();
    EXPECT_FALSE(readFrom(*fromBuffer, cut));
    check(*fromBuffer);

    auto fromForeign = make();
    EXPECT_FALSE(readFromForeign(*fromForeign, cut));
    check(*fromForeign);

    LimitedStream limited(content, length);
    auto fromLimited = make();
    EXPECT_FALSE(fromLimited->read(limited));
    check(*fromLimited);
  }
}

}  // namespace trelvo::test
