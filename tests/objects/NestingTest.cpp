#include <gtest/gtest.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/ValueCollection.h>

#include <functional>
#include <thread>

#include "tests/support/AllocationFailure.h"
#include "tests/support/WireChecks.h"

namespace trelvo::gom {
namespace {

using test::Bytes;
using test::bytes;

constexpr unsigned int kDeepest = 512;

const Bytes& objectHead() {  // key 7, one property
  static const Bytes kBytes = bytes("07 00 01 00 00 00");
  return kBytes;
}
const Bytes& listHead() {  // one element
  static const Bytes kBytes = bytes("01 00 00 00");
  return kBytes;
}

using Kind = std::function<bool(unsigned int level)>;  // whether there is a list on that level

const Kind kObjects = [](unsigned int) { return false; };
const Kind kLists = [](unsigned int) { return true; };
const Kind kMixed = [](unsigned int level) { return level % 3 != 0; };

/// `levels` objects and lists, each the only content of the one around it, the outermost an object.
/// Inside the innermost is a property without a value.
Bytes nested(unsigned int levels, const Kind& isList) {
  Bytes content = objectHead();
  for (unsigned int level = 2; level <= levels; ++level) {
    const bool list = isList(level);
    const Bytes variant = bytes(list ? "0F 00 05 00" : "0D 00 05 00");
    content.insert(content.end(), variant.begin(), variant.end());
    const Bytes& head = list ? listHead() : objectHead();
    content.insert(content.end(), head.begin(), head.end());
  }
  const Bytes innermost = bytes("00 00 05 00");
  content.insert(content.end(), innermost.begin(), innermost.end());
  return content;
}

/// The same in a list.
Bytes nestedInList(unsigned int levels, const Kind& isList) {
  return test::joined({listHead(), bytes("0D 00 05 00"), nested(levels - 1, isList)});
}

SharedPointer<GenericObject> objectFrom(IStream& stream) { return GenericObject::create(stream); }

void expectReads(const Bytes& content, bool result) {
  BufferStream memory;
  test::fill(memory, content);
  test::LimitedStream foreign(content);
  for (IStream* const stream : {static_cast<IStream*>(&memory), static_cast<IStream*>(&foreign)}) {
    const SharedPointer<GenericObject> object = objectFrom(*stream);
    ASSERT_EQ(static_cast<bool>(object), result);
    if (result) {
      EXPECT_EQ(test::written(*object), content);
      EXPECT_EQ(test::writtenToForeign(*object), content);
      const SharedPointer<GenericObject> clone = object->clone();
      ASSERT_NE(clone, nullptr);
      EXPECT_TRUE(*clone == *object);
    }
  }
}

TEST(Nesting, Of512LevelsIsReadWrittenClonedComparedAndDestroyed) {
  for (const Kind& kind : {kObjects, kLists, kMixed}) {
    expectReads(nested(kDeepest, kind), true);
  }
}

TEST(Nesting, Of513LevelsGivesFalse) {
  for (const Kind& kind : {kObjects, kLists, kMixed}) {
    expectReads(nested(kDeepest + 1, kind), false);
  }
}

TEST(Nesting, CountsAnOutermostListToo) {
  for (const Kind& kind : {kObjects, kLists, kMixed}) {
    ValueCollection deepest;
    EXPECT_TRUE(test::readFrom(deepest, nestedInList(kDeepest, kind)));
    ValueCollection deeper;
    EXPECT_FALSE(test::readFrom(deeper, nestedInList(kDeepest + 1, kind)));
    ValueCollection foreign;
    EXPECT_FALSE(test::readFromForeign(foreign, nestedInList(kDeepest + 1, kind)));
  }
}

TEST(Nesting, AVariantIsNoLevel) {
  const Bytes variant = bytes("0D 00 05 00");
  Variant deepest;
  EXPECT_TRUE(test::readFrom(deepest, test::joined({variant, nested(kDeepest, kObjects)})));
  Variant deeper;
  EXPECT_FALSE(test::readFrom(deeper, test::joined({variant, nested(kDeepest + 1, kObjects)})));
}

TEST(Nesting, BrothersDoNotAddUp) {
  Bytes content = bytes("07 00 03 00 00 00");
  for (int i = 0; i < 3; ++i) {
    content = test::joined({content, bytes("0D 00 05 00"), nested(kDeepest - 1, kMixed)});
  }
  expectReads(content, true);
}

TEST(Nesting, FarBeyondTheLimitCostsNothing) {
  for (const Kind& kind : {kObjects, kLists}) {
    const Bytes content = nested(200000, kind);
    BufferStream stream;
    test::fill(stream, content);
    const test::Allocations allocations =
        test::allocationsOf([&stream] { EXPECT_EQ(objectFrom(stream), nullptr); });
    EXPECT_LE(allocations.bytes, content.size());
    EXPECT_EQ(allocations.leaked, 0);
  }
}

TEST(Nesting, UnwindsAfterAFailureAndAfterAThrow) {
  Bytes throwing = nested(100, kMixed);
  throwing.resize(throwing.size() - 4);
  const Bytes unknown = bytes("0E 00 05 00 63 00");
  throwing.insert(throwing.end(), unknown.begin(), unknown.end());
  for (int i = 0; i < 20; ++i) {
    BufferStream stream;
    test::fill(stream, throwing);
    EXPECT_THROW(static_cast<void>(objectFrom(stream)), Status);
    test::LimitedStream foreign(throwing);
    EXPECT_THROW(static_cast<void>(objectFrom(foreign)), Status);
    GenericObject object;
    EXPECT_FALSE(test::readFrom(object, nested(kDeepest + 1, kMixed)));
  }
  expectReads(nested(kDeepest, kMixed), true);
}

/// A stream that, whenever it is read from, reads an object of its own first.
class Curious : public test::LimitedStream {
 public:
  using LimitedStream::LimitedStream;
  unsigned int read(unsigned char* target, unsigned int count) override {
    GenericObject object;
    EXPECT_TRUE(test::readFrom(object, nested(10, kMixed)));
    return LimitedStream::read(target, count);
  }
};

TEST(Nesting, AStreamMayReadObjectsMeanwhile) {
  Curious stream(nested(kDeepest, kObjects));
  EXPECT_NE(objectFrom(stream), nullptr);
  Curious deeper(nested(kDeepest + 1, kObjects));
  EXPECT_EQ(objectFrom(deeper), nullptr);
}

/// An object of an application that reads itself through the library's read().
class Derived : public GenericObject {
 public:
  [[nodiscard]] bool read(IStream& stream) override {
    unsigned char mark = 0;
    return stream.readUint8(mark) && GenericObject::read(stream);
  }
};

TEST(Nesting, CountsThroughADerivedClass) {
  Derived object;
  EXPECT_TRUE(test::readFrom(object, test::joined({bytes("AA"), nested(kDeepest, kMixed)})));
  EXPECT_FALSE(test::readFrom(object, test::joined({bytes("AA"), nested(kDeepest + 1, kMixed)})));
}

TEST(Nesting, CountsForEachThread) {
  for (int i = 0; i < 2; ++i) {
    std::thread thread([] { expectReads(nested(kDeepest, kMixed), true); });
    expectReads(nested(kDeepest, kMixed), true);
    thread.join();
  }
}

}  // namespace
}  // namespace trelvo::gom
