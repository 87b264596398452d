#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

#include "tests/golden/Recipe.h"
#include "tests/support/LimitedStream.h"

namespace trelvo::test {
namespace {

class Golden : public ::testing::TestWithParam<std::string> {
 protected:
  /// Carries out the recipe, whose every step must succeed.
  void SetUp() override {
    ASSERT_TRUE(m_vector.recipe.build(m_built))
        << "status " << m_built.status << " from: " << m_vector.recipe.line(m_built.step);
  }

  const SchemaClass& type() const { return m_vector.recipe.resultClass(); }
  const Made& object() const { return m_vector.recipe.result(m_built); }

  Bytes written(const Made& made) const {
    BufferStream stream;
    EXPECT_TRUE(type().write(made, stream));
    return contentOf(stream);
  }

  /// The wire form of what `read` or `clone` made.
  Bytes writtenAgain(const Made& made) const {
    BufferStream stream;
    auto* const generic = dynamic_cast<gom::GenericObject*>(made.object.get());
    EXPECT_TRUE(generic != nullptr ? generic->write(stream) : type().write(made, stream));
    return contentOf(stream);
  }

  void expectSame(const Made& made) const {
    EXPECT_EQ(type().equal(object(), made), m_vector.recipe.equalAfterReading());
    EXPECT_EQ(writtenAgain(made), m_vector.content);
  }

  /// The object writes the vector's bytes.
  void expectWritten() const {
    EXPECT_EQ(written(object()), m_vector.content);
    LimitedStream foreign;
    EXPECT_TRUE(type().write(object(), foreign));
    EXPECT_EQ(foreign.taken(), m_vector.content);
  }

  /// The bytes, all of them, are read as the same object.
  void expectRead() const {
    BufferStream memory;
    fill(memory, m_vector.content);
    LimitedStream foreign(m_vector.content);
    for (IStream* const stream :
         {static_cast<IStream*>(&memory), static_cast<IStream*>(&foreign)}) {
      Made made;
      ASSERT_TRUE(type().read(made, *stream));
      EXPECT_TRUE(stream->eof());
      expectSame(made);
    }
  }

  /// So it is behind bytes of another kind, where no number of it is aligned.
  void expectAtOddOffsets() const {
    for (const unsigned int offset : {1U, 3U, 5U, 7U}) {
      Bytes padding(offset, 0xA5);
      BufferStream stream;
      fill(stream, padding);
      EXPECT_TRUE(type().write(object(), stream));
      EXPECT_EQ(contentOf(stream), joined({padding, m_vector.content}));

      EXPECT_EQ(stream.read(padding.data(), offset), offset);
      Made made;
      ASSERT_TRUE(type().read(made, stream)) << offset;
      EXPECT_TRUE(stream.eof());
      expectSame(made);
    }
  }

  /// A clone is equal, also in what is not on the wire.
  void expectCloned() const {
    Made copy;
    ASSERT_TRUE(type().clone(object(), copy));
    EXPECT_TRUE(type().equal(object(), copy));
    EXPECT_EQ(writtenAgain(copy), m_vector.content);
  }

  /// The generic object that was read is accepted by the composite's class.
  void expectWrapped() const {
    BufferStream stream;
    fill(stream, m_vector.content);
    const Handle<gom::GenericObject> object = gom::GenericObject::create(stream);
    Made wrapper;
    ASSERT_TRUE(type().wrap(wrapper, object));
    EXPECT_EQ(type().generic(wrapper), object);
    EXPECT_EQ(written(wrapper), m_vector.content);
  }

  Vector m_vector = loadVector(GetParam());
  Built m_built = m_vector.recipe.start();
};

TEST_P(Golden, IsWrittenReadClonedAndWrapped) {
  expectWritten();
  expectRead();
  expectAtOddOffsets();
  expectCloned();
  if (type().wrap) {
    expectWrapped();
  }
}

std::string nameOf(const ::testing::TestParamInfo<std::string>& info) { return info.param; }

INSTANTIATE_TEST_SUITE_P(Vectors, Golden, ::testing::ValuesIn(vectorNames()), nameOf);

TEST(GoldenVectors, AreAllThere) {
  EXPECT_EQ(vectorNames().size(), 239U);
  for (const auto& [name, type] : schemaClasses()) {
    const bool written = std::any_of(vectorNames().begin(), vectorNames().end(),
                                     [&name = name](const std::string& vector) {
                                       return loadVector(vector).recipe.resultClass().name == name;
                                     });
    EXPECT_TRUE(written || name == "ValueCollection") << name;
  }
}

TEST(Recipe, RefusesWhatItDoesNotKnow) {
  for (const char* const text :
       {"", "# nothing but a comment", "new v1 Unknown\nwrite v1", "new v1 GeranCellDn 5\nwrite v1",
        "new v1 GeranCellDn\nset v1 unknown 5\nwrite v1",
        "new v1 GeranCellDn\nset v2 mcc 5\nwrite v1", "new v1 GeranCellDn\nadd v1 mcc 5\nwrite v1",
        "new v1 GeranCellDn\nwrite v2", "new v1 GeranCellDn\nmake v1\nwrite v1",
        "new v1 GeranCellDn\nset v1 mcc\nwrite v1"}) {
    EXPECT_THROW(Recipe{text}, std::runtime_error) << text;
  }
}

TEST(Recipe, RefusesValuesThatDoNotFitTheirField) {
  for (const char* const value : {"65536", "-1", "5x", "v1"}) {
    const Recipe recipe(std::string("new v1 GeranCellDn\nset v1 mcc ") + value + "\nwrite v1");
    Built built = recipe.start();
    EXPECT_THROW(recipe.build(built), std::invalid_argument) << value;
  }
}

}  // namespace
}  // namespace trelvo::test
