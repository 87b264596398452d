#include "tools/trelvo/ContainerReader.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "tests/tools/CryptoFixture.h"
#include "tests/tools/ToolFixture.h"
#include "tools/trelvo/Failure.h"
#include "tools/trelvo/WireParser.h"

namespace trelvo::tool {
namespace {

Bytes container() { return golden("pub_container_seven_kinds_forward"); }
Bytes injection() { return golden("pub_injection_eight_kinds_forward"); }
Bytes unknown() { return Wire().object(99, 1).value(TagUint8, 5).u8(1); }

/// What a file gave: "offset kind" for each object, and behind them the failure.
std::vector<std::string> readFrom(const std::string& file, const StoreOptions& store,
                                  const Bytes& input) {
  const UniqueFd standard = fileOf(input);
  std::ostringstream out;
  std::ostringstream err;
  CommandContext context{out, err};
  context.inputDescriptor = standard.get();
  std::vector<std::string> read;
  try {
    ContainerReader reader(file, store, context);
    for (ContainerItem item; reader.next(item);) {
      read.push_back(std::to_string(item.offset) +
                     (item.container   ? " container"
                      : item.injection ? " injection"
                                       : " object") +
                     " to " + std::to_string(reader.position()));
    }
  } catch (const Failure& failure) {
    read.emplace_back(failure.what());
  }
  EXPECT_EQ(out.str() + err.str(), "");
  return read;
}

std::vector<std::string> readFrom(const Bytes& input) { return readFrom("-", {}, input); }

std::vector<std::string> threeObjects() {
  const std::size_t first = container().size();
  const std::size_t second = first + injection().size();
  const std::size_t third = second + unknown().size();
  return {"0 container to " + std::to_string(first),
          std::to_string(first) + " injection to " + std::to_string(second),
          std::to_string(second) + " object to " + std::to_string(third)};
}

TEST(ContainerReader, GivesEachObjectWithItsOffset) {
  EXPECT_EQ(readFrom(joined({container(), injection(), unknown()})), threeObjects());
}

TEST(ContainerReader, AnEmptyInputHoldsNothing) {
  EXPECT_EQ(readFrom(Bytes()), std::vector<std::string>());
}

TEST(ContainerReader, AContainerIsWhatWasWritten) {
  const UniqueFd standard = fileOf(container());
  std::ostringstream text;
  CommandContext context{text, text};
  context.inputDescriptor = standard.get();
  ContainerReader reader("-", {}, context);
  ContainerItem item;
  ASSERT_TRUE(reader.next(item));
  ASSERT_TRUE(item.container);
  EXPECT_FALSE(item.injection);
  EXPECT_EQ(item.container->measurementId(), 4711U);
  EXPECT_EQ(item.container->wlanMeasurementCollection()->count(), 1U);
}

TEST(ContainerReader, TellsDamageAsShowDoes) {
  const Bytes whole = joined({container(), injection()});
  for (std::size_t size = container().size() + 1; size < whole.size(); size += 17) {
    const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    const std::vector<std::string> read = readFrom(cut);
    ASSERT_EQ(read.size(), 2U) << size;
    EXPECT_EQ(read[0], threeObjects()[0]);
    EXPECT_EQ("trelvo: " + read[1] + "\n", runTool({"show", "-"}, cut).err) << size;
  }
}

TEST(ContainerReader, TellsWhatCannotBeRead) {
  EXPECT_EQ(readFrom(Wire().u16(0)),
            std::vector<std::string>(
                {"standard input: stops at byte 0: no object begins here (object key 0)"}));
  EXPECT_EQ(readFrom(Wire().object(1, 1).value(TagRecord, 7).u16(99)),
            std::vector<std::string>(
                {"standard input: stops at byte 10: unknown class id 99: records have 100 to 135, "
                 "and their length is not told"}));
  EXPECT_EQ(readFrom("/no/such/file", {}, {}),
            std::vector<std::string>({"/no/such/file: No such file or directory"}));
  EXPECT_EQ(readFrom("/tmp", {}, {}), std::vector<std::string>({"/tmp: Is a directory"}));
}

TEST(ContainerReader, ALargeClaimOnAShortInputFailsAtItsEnd) {
  EXPECT_EQ(readFrom(Wire().object(1, 1).value(TagCollection, 300).u32(0xFFFFFFFF)),
            std::vector<std::string>({"standard input: stops at byte 14: the input ends inside "
                                      "element 1 of 4294967295"}));
}

using SealedContainers = CryptoFixture;

TEST_F(SealedContainers, AreReadWithTheKeyOfTheirStore) {
  const std::string plain = file("plain", joined({container(), injection(), unknown()}));
  ASSERT_EQ(runTool({"seal", "--storage", keys(), "drive", plain, path("sealed")}).status,
            kExitGood);
  EXPECT_EQ(readFrom(path("sealed"), {"drive", keys()}, {}), threeObjects());
}

TEST_F(SealedContainers, AreNotReadWithAnotherKey) {
  const std::string plain = file("plain", container());
  ASSERT_EQ(runTool({"seal", "--storage", keys(), "drive", plain, path("sealed")}).status,
            kExitGood);
  setDevice("device 2");
  EXPECT_EQ(readFrom(path("sealed"), {"drive", keys()}, {}),
            std::vector<std::string>({path("sealed") +
                                      ": holds no objects under the key of store drive; check the "
                                      "name, --storage and ORVE_UNIQUE_DEVICE_ID"}));
}

}  // namespace
}  // namespace trelvo::tool
