// A process that writes a log is killed at a random moment; whatever it had flushed has to come
// out.

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "tests/crypto/KilledWriter.h"
#include "tests/crypto/Slog.h"

namespace trelvo::test {
namespace {

constexpr unsigned int kLines = 100000;

unsigned int below(std::mt19937& random, unsigned int end) {
  return static_cast<unsigned int>(random() % end);
}

/// Line `i`: its number, and enough that does not compress to fill blocks quickly.
std::string line(unsigned int i) {
  std::mt19937 random(i);
  std::string text = std::to_string(i);
  for (unsigned int length = below(random, 200); length > 0; --length) {
    text += static_cast<char>('!' + below(random, 90));
  }
  return text + "\n";
}

/// The first `count` lines.
std::string linesUntil(unsigned int count) {
  std::string text;
  for (unsigned int i = 0; i < count; ++i) {
    text += line(i);
  }
  return text;
}

/// Writes lines with a flush now and then, and reports how many are flushed.
void write(const std::string& path, unsigned int seed, const KilledWriter::Report& report) {
  std::mt19937 random(seed);
  const gom::SharedPointer<ICryptoLog> log = ICryptoLog::create(path.c_str(), publicKey().c_str());
  bool going = static_cast<bool>(log);
  for (unsigned int i = 0; going && i < kLines; ++i) {
    if (i == 0 || below(random, 5) == 0) {
      going = log->flush() && report(i);
    }
    log->puts(line(i).c_str());
  }
}

TEST(CryptoLogKill, ALogDecryptsToAPrefixWithAllThatWasFlushed) {
  const TempDirectory directory;
  const std::string path = directory / "a.slog";
  std::mt19937 random(1);
  for (unsigned int round = 0; round < killRounds() && !HasFailure(); ++round) {
    SCOPED_TRACE(::testing::Message() << "round " << round);
    const unsigned int flushed = KilledWriter::run(
        [&](const KilledWriter::Report& report) { write(path, round, report); }, random);
    const std::string text = textOf(path);
    const std::string expected = linesUntil(flushed);
    EXPECT_GE(text.size(), expected.size());
    EXPECT_EQ(text.substr(0, expected.size()), expected);
    const std::string all = linesUntil(flushed + 500);
    EXPECT_EQ(text, all.substr(0, text.size()));
  }
}

}  // namespace
}  // namespace trelvo::test
