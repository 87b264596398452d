#include <gtest/gtest.h>

#include <new>
#include <optional>
#include <random>
#include <string>

#include "tests/golden/Recipe.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/LimitedStream.h"

namespace trelvo::test {
namespace {

/// Reading never takes more memory than this, whatever the bytes say.
constexpr unsigned long long boundFor(std::size_t size) { return 64 * size + 4096; }

/// `content` as each kind of stream has it.
template <class Check>
void inEveryStream(const Bytes& content, Check check) {
  BufferStream memory;
  LimitedStream foreign(content);
  {
    const AllocationsSucceed succeed;
    fill(memory, content);
  }
  check(memory);
  check(foreign);
}

/// One golden vector, and what it has to stand.
class Sweep {
 public:
  explicit Sweep(const std::string& name) : m_vector(loadVector(name)) {}

  void failsCleanlyWhereverTheStreamEnds() const;
  void writesWhatThereIsRoomFor() const;
  void survivesFlippedBitsInBoundedMemory() const;
  void readsInBoundedMemory() const;
  void aStepThatRunsOutOfMemoryChangesNothing() const;
  void cloningOutOfMemoryGivesNothingAndLeavesTheOriginal() const;
  void readingOutOfMemoryGivesFalse() const;
  void writingOutOfMemoryThrowsBadAlloc() const;
  void wrappingOutOfMemoryGivesNothing() const;

 private:
  const SchemaClass& type() const { return m_vector.recipe.resultClass(); }
  bool isComposite() const { return type().wrap != nullptr; }
  const Bytes& content() const { return m_vector.content; }

  /// What a setter says that finds no memory. A serving cell measurement that cannot make the
  /// nested measurement for a value of it says that it is in the wrong state.
  Status outOfMemory(const Built& stopped) const {
    const std::string& line = m_vector.recipe.line(stopped.step);
    const bool forwards = type().name.find("ServingCellMeasurement") != std::string::npos &&
                          line.rfind("set ", 0) == 0;
    return forwards ? StatusWrongState : StatusOutOfMemory;
  }

  /// The object of the recipe.
  Built built() const {
    const AllocationsSucceed succeed;
    Built result = m_vector.recipe.start();
    EXPECT_TRUE(m_vector.recipe.build(result));
    return result;
  }
  Made& objectOf(Built& built) const { return const_cast<Made&>(m_vector.recipe.result(built)); }

  Bytes written(const Made& made) const {
    const AllocationsSucceed succeed;
    BufferStream stream;
    EXPECT_TRUE(type().write(made, stream));
    return contentOf(stream);
  }

  /// Reads a stream that ends too early, into a new object and into one that is full.
  void expectCutOffFails(IStream& first, IStream& second, std::size_t length) const {
    Made made;
    EXPECT_FALSE(type().read(made, first));
    Built full = built();
    Made& object = objectOf(full);
    EXPECT_FALSE(type().readInto(object, second));
    if (isComposite()) {
      EXPECT_EQ(written(object), content()) << "a composite keeps what it had";
    } else if (length <= 1) {
      EXPECT_TRUE(type().isEmpty(object)) << "a record has let go of its values";
    } else {
      written(object);
    }
  }

  /// Reads whatever `bytes` are; what was read can be written.
  void expectHarmless(const Bytes& bytes) const {
    inEveryStream(bytes, [this](IStream& stream) {
      Made made;
      try {
        if (type().read(made, stream)) {
          auto* const generic = dynamic_cast<gom::GenericObject*>(made.object.get());
          const AllocationsSucceed succeed;
          BufferStream again;
          EXPECT_TRUE(generic != nullptr ? generic->write(again) : type().write(made, again));
        }
      } catch (Status status) {
        EXPECT_TRUE(isComposite());
        EXPECT_EQ(status, StatusInternal);
      }
    });
  }

  Vector m_vector;
};

void Sweep::failsCleanlyWhereverTheStreamEnds() const {
  const Allocations allocations = allocationsOf([this] {
    for (unsigned int length = 0; length < content().size(); ++length) {
      SCOPED_TRACE(length);
      const AllocationsSucceed succeed;
      const Bytes cut = head(content(), length);
      BufferStream memory;
      fill(memory, cut);
      BufferStream alsoMemory;
      fill(alsoMemory, cut);
      expectCutOffFails(memory, alsoMemory, length);
      LimitedStream foreign(cut);
      LimitedStream limited(content(), length);
      expectCutOffFails(foreign, limited, length);
    }
  });
  EXPECT_EQ(allocations.leaked, 0);
}

void Sweep::writesWhatThereIsRoomFor() const {
  Built full = built();
  const Made& object = objectOf(full);
  for (unsigned int room = 0; room < content().size(); ++room) {
    LimitedStream stream(room);
    EXPECT_FALSE(type().write(object, stream));
    EXPECT_EQ(stream.taken(), head(content(), room));
  }
}

void Sweep::survivesFlippedBitsInBoundedMemory() const {
  constexpr int kRounds = 20;
  std::mt19937 random(20241121U + static_cast<unsigned int>(content().size()));
  unsigned long long bound = 0;
  const Allocations allocations = allocationsOf([&] {
    for (int round = 0; round < kRounds; ++round) {
      std::optional<Bytes> flipped;
      {
        const AllocationsSucceed succeed;
        flipped = content();
      }
      for (auto flips = random() % 3 + 1; flips > 0; --flips) {
        const auto bit = static_cast<std::size_t>(random()) % (8 * flipped->size());
        (*flipped)[bit / 8] = static_cast<unsigned char>((*flipped)[bit / 8] ^ (1U << bit % 8));
      }
      bound += 2 * boundFor(flipped->size());
      expectHarmless(*flipped);
    }
  });
  EXPECT_EQ(allocations.leaked, 0);
  EXPECT_LE(allocations.bytes, bound);
}

void Sweep::readsInBoundedMemory() const {
  const Allocations allocations = allocationsOf([this] {
    inEveryStream(content(), [this](IStream& stream) {
      Made made;
      EXPECT_TRUE(type().read(made, stream));
    });
  });
  EXPECT_LE(allocations.bytes, 2 * boundFor(content().size()));
  EXPECT_EQ(allocations.leaked, 0);
}

void Sweep::aStepThatRunsOutOfMemoryChangesNothing() const {
  everyAllocationFails([this] {
    std::optional<Built> made;
    {
      const AllocationsSucceed succeed;
      made = m_vector.recipe.start();
    }
    const bool complete = m_vector.recipe.build(*made);
    const AllocationsSucceed succeed;
    if (!complete) {
      EXPECT_EQ(made->status, outOfMemory(*made)) << m_vector.recipe.line(made->step);
      EXPECT_TRUE(m_vector.recipe.build(*made)) << "trying again goes on from there";
    }
    EXPECT_EQ(written(objectOf(*made)), content());
  });
}

void Sweep::cloningOutOfMemoryGivesNothingAndLeavesTheOriginal() const {
  everyAllocationFails([this] {
    Built source = built();
    Made copy;
    try {
      if (type().clone(objectOf(source), copy)) {
        EXPECT_TRUE(type().equal(objectOf(source), copy));
      }
    } catch (const std::bad_alloc&) {
      EXPECT_EQ(copy.object, nullptr);
    }
    EXPECT_EQ(written(objectOf(source)), content());
  });
}

void Sweep::readingOutOfMemoryGivesFalse() const {
  for (const bool inMemory : {true, false}) {
    everyAllocationFails([this, inMemory] {
      Built target = built();
      std::optional<LimitedStream> foreign;
      BufferStream memory;
      {
        const AllocationsSucceed succeed;
        foreign.emplace(content());
        fill(memory, content());
      }
      IStream& stream = inMemory ? static_cast<IStream&>(memory) : *foreign;
      Made& object = objectOf(target);
      const bool complete = type().readInto(object, stream);
      const AllocationsSucceed succeed;
      if (complete || isComposite()) {
        EXPECT_EQ(written(object), content());
      }
    });
    everyAllocationFails([this, inMemory] {
      std::optional<LimitedStream> foreign;
      BufferStream memory;
      {
        const AllocationsSucceed succeed;
        foreign.emplace(content());
        fill(memory, content());
      }
      Made made;
      if (type().read(made, inMemory ? static_cast<IStream&>(memory) : *foreign)) {
        Built original = built();
        EXPECT_EQ(type().equal(objectOf(original), made), m_vector.recipe.equalAfterReading());
      }
    });
  }
}

void Sweep::writingOutOfMemoryThrowsBadAlloc() const {
  everyAllocationFails([this] {
    Built source = built();
    BufferStream stream;
    try {
      EXPECT_TRUE(type().write(objectOf(source), stream));
    } catch (const std::bad_alloc&) {
      EXPECT_LE(contentOf(stream).size(), content().size());
    }
  });
}

void Sweep::wrappingOutOfMemoryGivesNothing() const {
  if (!isComposite()) {
    return;
  }
  everyAllocationFails([this] {
    Built source = built();
    Made wrapper;
    const Handle<gom::GenericObject> object = type().generic(objectOf(source));
    if (type().wrap(wrapper, object)) {
      EXPECT_EQ(type().generic(wrapper), object);
    }
    EXPECT_EQ(written(objectOf(source)), content());
  });
}

void forEveryVector(void (Sweep::*check)() const) {
  EXPECT_GT(vectorNames().size(), 0U);
  for (const std::string& name : vectorNames()) {
    SCOPED_TRACE(name);
    (Sweep(name).*check)();
  }
}

TEST(EveryVector, FailsCleanlyWhereverTheStreamEnds) {
  forEveryVector(&Sweep::failsCleanlyWhereverTheStreamEnds);
}
TEST(EveryVector, WritesWhatThereIsRoomFor) { forEveryVector(&Sweep::writesWhatThereIsRoomFor); }
TEST(EveryVector, SurvivesFlippedBitsInBoundedMemory) {
  forEveryVector(&Sweep::survivesFlippedBitsInBoundedMemory);
}
TEST(EveryVector, ReadsInBoundedMemory) { forEveryVector(&Sweep::readsInBoundedMemory); }
TEST(EveryVector, AStepThatRunsOutOfMemoryChangesNothing) {
  forEveryVector(&Sweep::aStepThatRunsOutOfMemoryChangesNothing);
}
TEST(EveryVector, CloningOutOfMemoryGivesNothingAndLeavesTheOriginal) {
  forEveryVector(&Sweep::cloningOutOfMemoryGivesNothingAndLeavesTheOriginal);
}
TEST(EveryVector, ReadingOutOfMemoryGivesFalse) {
  forEveryVector(&Sweep::readingOutOfMemoryGivesFalse);
}
TEST(EveryVector, WrappingOutOfMemoryGivesNothing) {
  forEveryVector(&Sweep::wrappingOutOfMemoryGivesNothing);
}
TEST(EveryVector, WritingOutOfMemoryThrowsBadAlloc) {
  forEveryVector(&Sweep::writingOutOfMemoryThrowsBadAlloc);
}

}  // namespace
}  // namespace trelvo::test
